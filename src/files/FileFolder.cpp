#include "files/FileFolder.h"

#include "files/File.h"
#include "files/FileInfo.h"
#include "files/Settings.h"
#include "plugin/FileUtility.h"
#include "plugin/JsonUtility.h"
#include "plugin/ScriptValue.h"
#include "plugin/StringUtility.h"
#include "plugin/TessalineDebug.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace {

// A pattern or a list of patterns.
QStringList nameFilters(const QVariant &nameFilter)
{
    const QVariant filter = plainValue(nameFilter);
    return filter.canConvert<QStringList>() ? filter.toStringList()
                                            : QStringList(filter.toString());
}

// Whether a symbolic link leads to one of the folders that the path to it goes through. Following
// it would find the same link again, and so on.
bool leadsBack(const QFileInfo &entry)
{
    if (!entry.isSymLink())
        return false;
    const QString destination = entry.canonicalFilePath();
    QString step = QDir::cleanPath(entry.absolutePath());
    for (;;) {
        if (QFileInfo(step).canonicalFilePath() == destination)
            return true;
        const QString above = QFileInfo(step).path();
        if (above == step)
            return false;
        step = above;
    }
}

// The path with its links resolved, also of a file or folder that is not there yet.
QString futureCanonicalPath(const QString &path)
{
    QString existing = QDir::cleanPath(QFileInfo(path).absoluteFilePath());
    QString rest;
    while (!QFileInfo::exists(existing) && QFileInfo(existing).path() != existing) {
        rest.prepend(QLatin1Char('/') + QFileInfo(existing).fileName());
        existing = QFileInfo(existing).path();
    }
    return QDir::cleanPath(QFileInfo(existing).canonicalFilePath() + rest);
}

bool liesBelow(const QString &path, const QString &folder)
{
    const QString top = QFileInfo(folder).canonicalFilePath();
    const QString prefix = top.endsWith(QLatin1Char('/')) ? top : top + QLatin1Char('/');
    return futureCanonicalPath(path).startsWith(prefix);
}

// Collects the names of a tree's files or folders, relative to its top.
class NameWalk
{
public:
    enum Kind { Files, Folders };

    NameWalk(Kind kind, const QStringList &filters, bool subFolders)
        : m_kind(kind)
        , m_filters(filters)
        , m_subFolders(subFolders)
    {
    }

    QStringList names(const QDir &top)
    {
        collect(top, QString());
        return m_names;
    }

private:
    void collect(const QDir &dir, const QString &prefix)
    {
        const QFileInfoList entries = dir.entryInfoList(m_filters, entryFlags(), QDir::Name);
        for (const QFileInfo &entry : entries) {
            const QString name = prefix + entry.fileName();
            const bool isFolder = entry.isDir();
            if (isFolder == (m_kind == Folders))
                m_names.append(name);
            if (isFolder && m_subFolders && !leadsBack(entry))
                collect(QDir(entry.filePath()), name + QDir::separator());
        }
    }

    QDir::Filters entryFlags() const
    {
        const QDir::Filters folders = QDir::Dirs | QDir::NoDotAndDotDot;
        return m_kind == Folders ? folders : folders | QDir::Files;
    }

    const Kind m_kind;
    const QStringList m_filters;
    const bool m_subFolders;
    QStringList m_names;
};

qint64 treeSize(const QDir &dir)
{
    const QFileInfoList entries = dir.entryInfoList(QDir::Files | QDir::Dirs | QDir::NoSymLinks
                                                        | QDir::Hidden | QDir::NoDotAndDotDot,
                                                    QDir::Unsorted);
    qint64 size = 0;
    for (const QFileInfo &entry : entries)
        size += entry.isDir() ? treeSize(QDir(entry.filePath())) : entry.size();
    return size;
}

enum class Coding { None, Base64, Hex };

// The coding that an option of readFile or writeFile asks for; an unknown one is none.
Coding codingOption(const QVariantMap &options, const QString &name)
{
    const QString text = options.value(name).toString();
    if (text.compare(QLatin1String("base64"), Qt::CaseInsensitive) == 0)
        return Coding::Base64;
    if (text.compare(QLatin1String("hex"), Qt::CaseInsensitive) == 0)
        return Coding::Hex;
    return Coding::None;
}

QByteArray encoded(const QByteArray &bytes, Coding coding)
{
    switch (coding) {
    case Coding::Base64:
        return bytes.toBase64();
    case Coding::Hex:
        return bytes.toHex();
    case Coding::None:
        break;
    }
    return bytes;
}

QByteArray decoded(const QVariant &content, Coding coding)
{
    switch (coding) {
    case Coding::Base64:
        return QByteArray::fromBase64(content.toString().toLatin1());
    case Coding::Hex:
        return QByteArray::fromHex(content.toString().toLatin1());
    case Coding::None:
        break;
    }
    return content.toByteArray();
}

} // namespace

FileFolder::FileFolder(QObject *parent)
    : FileFolder(QDir(QDir::tempPath()), parent)
{
}

FileFolder::FileFolder(const QString &path, QObject *parent)
    : FileFolder(QDir(FileUtility::resolvedPath(path, true)), parent)
{
}

FileFolder::FileFolder(const QUrl &url, QObject *parent)
    : FileFolder(QDir(FileUtility::resolvedPath(url, true)), parent)
{
}

FileFolder::FileFolder(const QDir &dir, QObject *parent)
    : TessalineObject(parent)
    , m_dir(dir)
{
    connect(this, &FileFolder::pathChanged, this, &FileFolder::existsChanged);
    connect(this, &FileFolder::pathChanged, this, &FileFolder::onPathChanged);
}

void FileFolder::setPath(const QString &path)
{
    if (refusesMove(Q_FUNC_INFO))
        return;
    const QString resolved = FileUtility::resolvedPath(path, true);
    if (resolved == m_dir.absolutePath())
        return;
    m_dir.setPath(resolved);
    emit pathChanged();
}

QUrl FileFolder::url() const
{
    return FileUtility::pathUrl(path());
}

void FileFolder::setUrl(const QUrl &url)
{
    setPath(FileUtility::resolvedPath(url, true));
}

bool FileFolder::exists() const
{
    // Asked about an empty path, QDir repeats what it said of the path before.
    return !path().isEmpty() && m_dir.exists();
}

qlonglong FileFolder::size() const
{
    if (m_cachedSize < 0)
        m_cachedSize = treeSize(m_dir);
    return m_cachedSize;
}

bool FileFolder::cdUp()
{
    if (refusesMove(Q_FUNC_INFO) || !m_dir.cdUp())
        return false;
    emit pathChanged();
    return true;
}

bool FileFolder::cd(const QString &path)
{
    if (refusesMove(Q_FUNC_INFO) || !m_dir.cd(path))
        return false;
    emit pathChanged();
    return true;
}

QStringList FileFolder::fileNames(const QVariant &nameFilter, bool subFolders) const
{
    return NameWalk(NameWalk::Files, nameFilters(nameFilter), subFolders).names(m_dir);
}

QStringList FileFolder::folderNames(const QVariant &nameFilter, bool subFolders) const
{
    return NameWalk(NameWalk::Folders, nameFilters(nameFilter), subFolders).names(m_dir);
}

bool FileFolder::makeFolder()
{
    if (refusesChange(Q_FUNC_INFO))
        return false;
    if (path().isEmpty()) {
        qCWarning(FRAMEWORK_FILE) << Q_FUNC_INFO << "No path";
        return false;
    }
    if (exists())
        return true;

    const QDir parent(QFileInfo(path()).path());
    if (!parent.mkpath(m_dir.dirName())) {
        qCWarning(FRAMEWORK_FILE) << Q_FUNC_INFO << "Error creating:" << parent << m_dir.dirName();
        return false;
    }
    emit existsChanged();
    return true;
}

bool FileFolder::removeFolder()
{
    if (refusesChange(Q_FUNC_INFO))
        return false;
    if (path().isEmpty()) {
        qCWarning(FRAMEWORK_FILE) << Q_FUNC_INFO << "No path";
        return false;
    }
    if (!exists())
        return true;

    qCDebug(FRAMEWORK_FILE) << Q_FUNC_INFO << m_dir.path();
    if (!m_dir.removeRecursively())
        return false;
    emit existsChanged();
    emit sizeChanged();
    return true;
}

bool FileFolder::removeFolder(const QString &folderName, bool recursive)
{
    if (refusesChange(Q_FUNC_INFO))
        return false;
    // Not by the constructor, to which an empty path is the working folder of the process.
    QDir target;
    target.setPath(filePath(folderName));
    if (!target.exists())
        return true;

    qCDebug(FRAMEWORK_FILE) << Q_FUNC_INFO << target.path() << recursive << folderName;
    return recursive ? target.removeRecursively() : target.rmdir(target.path());
}

bool FileFolder::makePath(const QString &path) const
{
    if (refusesChange(Q_FUNC_INFO))
        return false;
    if (m_dir.mkpath(path))
        return true;
    qCWarning(FRAMEWORK_FILE) << Q_FUNC_INFO << "Error creating:" << path;
    return false;
}

bool FileFolder::removePath(const QString &path) const
{
    if (refusesChange(Q_FUNC_INFO))
        return false;
    if (m_dir.rmpath(path))
        return true;
    qCWarning(FRAMEWORK_FILE) << Q_FUNC_INFO << "Error removing:" << path;
    return false;
}

QString FileFolder::filePath(const QString &fileName) const
{
    return QDir::cleanPath(m_dir.absoluteFilePath(fileName));
}

QString FileFolder::relativeFilePath(const QString &fileName) const
{
    return m_dir.relativeFilePath(fileName);
}

QUrl FileFolder::fileUrl(const QString &fileName) const
{
    const QString path = filePath(fileName);
    if (QFileInfo(path).isNativePath())
        return QUrl::fromLocalFile(path);
    // A resource path with its colon as the end of the scheme: ":/a" is "qrc:/a".
    QUrl url;
    url.setScheme(QStringLiteral("qrc"));
    url.setPath(path.mid(1));
    return url;
}

bool FileFolder::fileExists(const QString &fileName) const
{
    return m_dir.exists(fileName);
}

bool FileFolder::removeFile(const QString &fileName)
{
    if (!fileExists(fileName))
        return true;
    if (refusesChange(Q_FUNC_INFO))
        return false;
    return m_dir.remove(fileName);
}

bool FileFolder::renameFile(const QString &oldFileName, const QString &newFileName)
{
    if (refusesChange(Q_FUNC_INFO))
        return false;
    if (m_dir.rename(oldFileName, newFileName))
        return true;
    qCWarning(FRAMEWORK_FILE) << Q_FUNC_INFO << "dir:" << m_dir << "oldFileName:" << oldFileName
                              << "newFileName:" << newFileName;
    return false;
}

bool FileFolder::copyFile(const QString &fileName, const QString &filePath)
{
    const QFileInfo source(m_dir.absoluteFilePath(fileName));
    if (!source.exists()) {
        qCCritical(FRAMEWORK_FILE) << Q_FUNC_INFO << "File doesn't exist:" << source.filePath();
        return false;
    }
    if (!source.isReadable()) {
        qCCritical(FRAMEWORK_FILE) << Q_FUNC_INFO << "File is not readable:" << source.filePath();
        return false;
    }
    const QString target = FileUtility::resolvedPath(filePath, true);
    if (source.isDir())
        return copyFolder(source.filePath(), target);
    if (QFileInfo::exists(target)) {
        qCCritical(FRAMEWORK_FILE) << Q_FUNC_INFO << "Target file already exists:" << target;
        return false;
    }
    // Opening a pipe waits for its other end, and a device may never end.
    if (!source.isFile() || !QFile::copy(source.filePath(), target)) {
        qCWarning(FRAMEWORK_FILE) << Q_FUNC_INFO << "File copy failed: " << source.filePath()
                                  << "to" << target;
        return false;
    }
    return true;
}

bool FileFolder::copyFolder(const QString &source, const QString &target)
{
    const QFileInfo folder(source);
    if (!folder.isDir()) {
        if (copyFile(source, target))
            return true;
        qCCritical(FRAMEWORK_FILE) << Q_FUNC_INFO << "copyFile failed:" << source << "->" << target;
        return false;
    }
    if (!folder.isReadable()) {
        qCCritical(FRAMEWORK_FILE) << Q_FUNC_INFO << "Folder is not readable:" << source;
        return false;
    }
    if (leadsBack(folder) || liesBelow(target, source)) {
        qCCritical(FRAMEWORK_FILE)
            << Q_FUNC_INFO << "Folder copied into itself:" << source << "->" << target;
        return false;
    }
    // Not by the constructor, to which an empty path is the working folder of the process.
    QDir targetDir;
    targetDir.setPath(target);
    if (!targetDir.exists()) {
        const QFileInfo made(QDir::cleanPath(target));
        if (!QDir(made.path()).mkpath(made.fileName())) {
            qCCritical(FRAMEWORK_FILE)
                << Q_FUNC_INFO << "mkpath failed:" << made.fileName() << "(" << made.path() << ")";
            return false;
        }
    }
    return copyEntries(QDir(source), targetDir);
}

bool FileFolder::copyEntries(const QDir &source, const QDir &target)
{
    const QStringList entries = source.entryList(QDir::Files | QDir::Dirs | QDir::Hidden
                                                     | QDir::System | QDir::NoDotAndDotDot,
                                                 QDir::Unsorted);
    return std::all_of(entries.begin(), entries.end(), [&](const QString &entry) {
        return copyFolder(source.filePath(entry), target.filePath(entry));
    });
}

File *FileFolder::file(const QString &fileName) const
{
    return givenToScript(new File(filePath(fileName)));
}

FileInfo *FileFolder::fileInfo(const QString &fileName) const
{
    return givenToScript(new FileInfo(filePath(fileName)));
}

FileFolder *FileFolder::folder(const QString &folderName) const
{
    return givenToScript(new FileFolder(filePath(folderName)));
}

QVariant FileFolder::readFile(const QString &fileName, const QVariantMap &options) const
{
    return encoded(FileUtility::readFile(filePath(fileName)),
                   codingOption(options, QStringLiteral("encode")));
}

bool FileFolder::writeFile(const QString &fileName, const QVariant &content,
                           const QVariantMap &options)
{
    if (refusesChange(Q_FUNC_INFO))
        return false;
    const Coding coding = codingOption(options, QStringLiteral("decode"));
    return FileUtility::writeFile(filePath(fileName), decoded(plainValue(content), coding));
}

QVariantMap FileFolder::readJsonFile(const QString &fileName) const
{
    return JsonUtility::readFile(filePath(fileName));
}

bool FileFolder::writeJsonFile(const QString &fileName, const QVariantMap &json)
{
    return !refusesChange(Q_FUNC_INFO) && JsonUtility::writeFile(filePath(fileName), json);
}

QString FileFolder::readTextFile(const QString &fileName) const
{
    return StringUtility::readFile(filePath(fileName));
}

bool FileFolder::writeTextFile(const QString &fileName, const QString &text)
{
    return !refusesChange(Q_FUNC_INFO) && StringUtility::writeFile(filePath(fileName), text);
}

Settings *FileFolder::settingsFile(const QString &fileName) const
{
    const QString name = fileName.isEmpty() ? QStringLiteral("settings.ini") : fileName;
    return givenToScript(new Settings(m_dir.filePath(name), QSettings::IniFormat));
}

void FileFolder::refresh()
{
    m_dir.refresh();
    m_cachedSize = -1;
    emit existsChanged();
    emit sizeChanged();
}

void FileFolder::onPathChanged()
{
    m_cachedSize = -1;
    emit sizeChanged();
}

bool FileFolder::refusesMove(const char *function) const
{
    if (m_constant)
        qCWarning(FRAMEWORK_FILE) << function << "This is a constant folder" << m_dir;
    return m_constant;
}

bool FileFolder::refusesChange(const char *function) const
{
    if (m_readOnly)
        qCWarning(FRAMEWORK_FILE) << function << "This is a read only folder" << m_dir;
    return m_readOnly;
}

#include "moc_FileFolder.cpp"
