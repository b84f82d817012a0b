#include "plugin/FileUtility.h"

#include "plugin/DebugUtility.h"
#include "plugin/LocalPath.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QSettings>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <new>
#include <sys/stat.h>
#include <unistd.h>
#include <utime.h>

namespace {

const char pathVariablesGroup[] = "Zemrik/Runtime/pathVariables";
const off_t maxPlainRead = 256LL * 1024 * 1024;

// Reads what has a size and can be read at any place. Without QFile's buffer and its questions about
// the kind of file, which catalogues of thousands of files feel.
bool readPlainFile(int handle, int maxSize, QByteArray &bytes)
{
    const off_t end =
        lseek(handle, 0, SEEK_END); // cheaper than fstat; -1 for a pipe, 0 for a device
    if (end <= 0 || end > std::min<off_t>(maxPlainRead, maxSize)) {
        lseek(handle, 0, SEEK_SET); // who reads it otherwise begins at its beginning
        return false;
    }
    bytes.resize(static_cast<int>(end));
    int size = 0;
    ssize_t count = 1;
    while (count > 0 && size < bytes.size()) {
        do {
            count = ::pread(handle, bytes.data() + size,
                            static_cast<std::size_t>(bytes.size() - size), size);
        } while (count < 0 && errno == EINTR);
        size += static_cast<int>(std::max<ssize_t>(count, 0));
    }
    bytes.truncate(size);
    return true;
}

// Asks for the size first, where there is one: what is too much isn't worth its memory.
QByteArray readAll(QFile &file, const QString &path, int maxSize)
{
    QByteArray bytes;
    if (file.size() <= maxSize)
        bytes = file.readAll();
    if (std::max<qint64>(file.size(), bytes.size()) <= maxSize)
        return bytes;
    qCWarning(CATEGORY_UTILITY) << "Too many bytes to read:" << path;
    return QByteArray();
}

QVariant applicationPathVariable(const QString &name)
{
    const QCoreApplication *application = QCoreApplication::instance();
    return application ? application->property(FileUtility::pathPropertyName(name).constData())
                       : QVariant();
}

QString settingsPathVariable(const QString &name)
{
    if (name.isEmpty())
        return QString(); // QSettings would print a warning of its own
    try {
        QSettings settings;
        settings.beginGroup(QLatin1String(pathVariablesGroup));
        return settings.value(name).toString().trimmed();
    } catch (const std::bad_alloc &) { // a damaged store, which asks for any amount of memory
        return QString();
    }
}

bool hasVariablePrefix(const QString &path)
{
    return !path.isEmpty() && (path.at(0) == QLatin1Char('$') || path.at(0) == QLatin1Char('~'));
}

// The separator that ends the variable's name: a "/" anywhere wins over a backslash before it.
int prefixEnd(const QString &path)
{
    const int slash = path.indexOf(QLatin1Char('/'));
    return slash >= 0 ? slash : path.indexOf(QLatin1Char('\\'));
}

// Kept out of line, so that a path without a variable doesn't pay for what one with it needs.
Q_NEVER_INLINE QString withVariableReplaced(const QString &path, bool system)
{
    const int separator = prefixEnd(path);
    const int end = separator < 0 ? path.length() : separator;
    QString name = path.mid(1, end - 1);
    if (name.isEmpty() && path.at(0) == QLatin1Char('~'))
        name = QStringLiteral("HOME");

    QString value;
    if (name.isEmpty()) {
        qCWarning(CATEGORY_UTILITY) << Q_FUNC_INFO << "Path variable name not specified";
    } else {
        value = FileUtility::pathVariable(name, QString(), system);
        if (!FileUtility::pathVariableExists(name, system))
            qCWarning(CATEGORY_UTILITY) << Q_FUNC_INFO << "Nonexistent Path variable" << name;
    }
    return value + path.mid(end);
}

// Lists the files below a folder. `open` holds the real paths of the folders that the walk is in:
// a link back to one of them would be followed for ever.
void listFiles(const QDir &dir, const QString &relativePath, QStringList &open, QStringList &list)
{
    if (!FileUtility::hasUsableName(dir.path()))
        return;
    const QString realPath = dir.canonicalPath();
    if (open.contains(realPath))
        return;
    open.append(realPath);
    const QFileInfoList entries =
        dir.entryInfoList(QDir::Dirs | QDir::Files | QDir::NoDotAndDotDot, QDir::Name);
    for (const QFileInfo &entry : entries) {
        const QString name = relativePath.isEmpty()
                                 ? entry.fileName()
                                 : relativePath + QDir::separator() + entry.fileName();
        if (entry.isDir())
            listFiles(QDir(entry.filePath()), name, open, list);
        else
            list.append(name);
    }
    open.removeLast();
}

} // namespace

QString FileUtility::resolvedPath(const QString &path, bool system)
{
    // Runs before every file operation: most paths have no variable and just come back.
    return hasVariablePrefix(path) ? withVariableReplaced(path, system) : path;
}

QString FileUtility::resolvedPath(const QUrl &url, bool system)
{
    if (url.scheme() == QLatin1String("qrc"))
        return QLatin1Char(':') + url.path(QUrl::FullyDecoded);
    if (url.isLocalFile())
        return resolvedPath(url.toLocalFile(), system);
    const QString path = url.path(QUrl::FullyDecoded);
    return path.isEmpty() ? QString() : resolvedPath(path, system);
}

QUrl FileUtility::resolvedPathUrl(const QString &path, bool system)
{
    return pathUrl(resolvedPath(path, system));
}

QUrl FileUtility::pathUrl(const QString &path)
{
    const QFileInfo info(path);
    const bool resource =
        info.exists() ? !info.isNativePath() : path.startsWith(QLatin1String(":/"));
    return resource ? resourcePathUrl(path) : QUrl::fromLocalFile(path);
}

QUrl FileUtility::resourcePathUrl(const QString &path)
{
    return QUrl(QStringLiteral("qrc:///") + path.mid(2));
}

QString FileUtility::pathVariable(const QString &name, const QString &defaultValue, bool system)
{
    if (name.isEmpty()) {
        qCWarning(CATEGORY_UTILITY) << Q_FUNC_INFO << "Empty name";
        return defaultValue;
    }

    const QVariant property = applicationPathVariable(name);
    QString value;
    if (property.isValid() && !property.isNull())
        value = property.toString();
    if (system && value.isEmpty())
        value = settingsPathVariable(name);
    if (system && value.isEmpty()) {
        const QByteArray variable = name.toUtf8();
        if (!qEnvironmentVariableIsEmpty(variable.constData()))
            value = QString::fromUtf8(qgetenv(variable.constData()));
    }
    if (value.isEmpty()) {
        value = defaultPathVariable(name);
        if (!value.isEmpty()) {
            qCDebug(CATEGORY_UTILITY) << Q_FUNC_INFO << "Setting default" << name << "=" << value;
            setPathVariable(name, value);
        }
    }
    return value;
}

void FileUtility::setPathVariable(const QString &name, const QString &value)
{
    if (name.isEmpty()) {
        qCWarning(CATEGORY_UTILITY) << Q_FUNC_INFO << "Empty name, value=" << value;
        return;
    }
    if (QCoreApplication *application = QCoreApplication::instance())
        application->setProperty(pathPropertyName(name).constData(),
                                 value.isEmpty() ? QVariant() : QVariant(value));
}

int FileUtility::pathVariableType(const QString &name, bool system)
{
    const QVariant property = applicationPathVariable(name);
    if (property.isValid() && !property.isNull())
        return PathVariableApplication;
    if (!system)
        return PathVariableNone;
    if (!settingsPathVariable(name).isEmpty())
        return PathVariableSettings;
    if (!qEnvironmentVariableIsEmpty(name.toUtf8().constData()))
        return PathVariableEnvironment;
    return PathVariableNone;
}

bool FileUtility::pathVariableExists(const QString &name, bool system)
{
    return pathVariableType(name, system) != PathVariableNone;
}

QStringList FileUtility::pathVariableNames()
{
    QStringList names;
    const QCoreApplication *application = QCoreApplication::instance();
    if (!application)
        return names;
    const QByteArray prefix = pathPropertyName(QString());
    const QList<QByteArray> properties = application->dynamicPropertyNames();
    for (const QByteArray &property : properties) {
        if (property.startsWith(prefix))
            names.append(QString::fromUtf8(property.mid(prefix.size())));
    }
    return names;
}

QVariantMap FileUtility::pathVariablesMap()
{
    QVariantMap map;
    const QStringList names = pathVariableNames();
    for (const QString &name : names)
        map.insert(name, pathVariable(name, QString(), true));
    return map;
}

QString FileUtility::defaultPathVariable(const QString &name)
{
    if (name == QLatin1String("HOME"))
        return defaultHomePath();
    if (name == QLatin1String("TEMP"))
        return defaultTempPath();
    return QString();
}

QByteArray FileUtility::pathPropertyName(const QString &name)
{
    return QByteArray(pathVariablesGroup) + '.' + name.toUtf8();
}

QString FileUtility::homePath()
{
    return pathVariable(QStringLiteral("HOME"), QString(), true);
}

bool FileUtility::setHomePath(const QString &path)
{
    setPathVariable(QStringLiteral("HOME"), path);
    return QFileInfo::exists(path);
}

QString FileUtility::defaultHomePath()
{
    return QDir::homePath();
}

QString FileUtility::defaultTempPath()
{
    return QDir::tempPath();
}

bool FileUtility::mkpath(const QDir &dir)
{
    if (dir.exists())
        return true;
    return QDir(QFileInfo(dir.path()).path()).mkpath(dir.dirName());
}

bool FileUtility::mkpath(const QString &path)
{
    return mkpath(QDir(path));
}

bool FileUtility::setHidden(const QString &path, bool hidden)
{
    Q_UNUSED(path)
    Q_UNUSED(hidden)
    return true;
}

QStringList FileUtility::dirEntryList(const QDir &dir)
{
    QStringList list;
    dirEntryList(dir, QString(), list);
    return list;
}

void FileUtility::dirEntryList(const QDir &dir, const QString &relativePath, QStringList &list)
{
    QStringList open;
    listFiles(dir, relativePath, open, list);
}

bool FileUtility::hasUsableName(const QString &path)
{
    if (Q_LIKELY(!path.contains(QChar::Null)))
        return true;
    qCWarning(CATEGORY_UTILITY) << Q_FUNC_INFO << "Name with a NUL:" << path;
    return false;
}

QByteArray FileUtility::readFile(const QString &path, int maxSize)
{
    if (!hasUsableName(path))
        return QByteArray();
    if (!path.startsWith(QLatin1Char('/'))) {
        QFile file(path);
        return !path.isEmpty() && file.open(QIODevice::ReadOnly) ? readAll(file, path, maxSize)
                                                                 : QByteArray();
    }
    const int handle = ::open(LocalPath(path).constData(), O_RDONLY | O_CLOEXEC);
    if (handle < 0)
        return QByteArray();
    QByteArray bytes;
    if (readPlainFile(handle, maxSize, bytes)) {
        ::close(handle);
        return bytes;
    }
    QFile file; // of the same handle: the writer of a pipe would find the first reader gone
    return file.open(handle, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)
               ? readAll(file, path, maxSize)
               : QByteArray();
}

bool FileUtility::writeFile(const QString &path, const QByteArray &data)
{
    QFile file(path);
    if (!hasUsableName(path) || !file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    // QFile::write counts what is only buffered; the flush tells whether the disk took it.
    return file.write(data) >= data.size() && file.flush();
}

std::optional<qint64> FileUtility::lastModified(const QString &path)
{
    if (!hasUsableName(path))
        return std::nullopt;
    struct stat status;
    if (path.startsWith(QLatin1Char('/')) && ::stat(LocalPath(path).constData(), &status) == 0)
        return status.st_mtim.tv_sec * Q_INT64_C(1000) + status.st_mtim.tv_nsec / 1000000;
    const QDateTime time =
        QFileInfo(path).lastModified(); // none of a resource that wasn't given one
    return time.isValid() ? std::make_optional(time.toMSecsSinceEpoch()) : std::nullopt;
}

bool FileUtility::copyDateTime(const QString &fromFilePath, const QString &toFilePath)
{
    const QFileInfo source(fromFilePath);
    if (!source.exists()) {
        qCWarning(CATEGORY_UTILITY) << Q_FUNC_INFO << "fromFilePath not found:" << fromFilePath;
        return false;
    }
    if (!QFileInfo::exists(toFilePath)) {
        qCWarning(CATEGORY_UTILITY) << Q_FUNC_INFO << "toFilePath not found:" << toFilePath;
        return false;
    }
    return setDateTime(toFilePath, source.lastRead(), source.lastModified());
}

bool FileUtility::setDateTime(const QString &filePath, const QDateTime &lastRead,
                              const QDateTime &lastModified)
{
    if (!hasUsableName(filePath))
        return false;
    // The deprecated conversion, for what it gives outside of 32 bits and for an invalid date.
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    // Once where both are the same: each conversion asks the disk for the time zone.
    const uint modified = lastModified.toTime_t();
    const utimbuf times = {lastRead == lastModified ? modified : lastRead.toTime_t(), modified};
    QT_WARNING_POP
    if (utime(filePath.toLocal8Bit().constData(), &times) == 0)
        return true;
    const int error = errno;
    qCWarning(CATEGORY_UTILITY) << Q_FUNC_INFO << "error:" << error << "file:" << filePath
                                << "times:" << lastRead << lastModified;
    return false;
}
