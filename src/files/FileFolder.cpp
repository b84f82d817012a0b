#include "files/FileFolder.h"

#include "files/File.h"
#include "files/FileInfo.h"
#include "plugin/FileUtility.h"
#include "plugin/TessalineDebug.h"

#include <QDebug>
#include <QFileInfo>
#include <QJSValue>

namespace {

// Where a walk collects names.
struct NameWalk
{
    QStringList filters;
    bool subFolders;
    bool folders; // names of folders instead of files
    QStringList names;

    void run(const QDir &dir, const QString &prefix)
    {
        const QDir::Filters flags = QDir::Dirs | QDir::NoDotAndDotDot
                                    | (folders ? QDir::Filters() : QDir::Filters(QDir::Files));
        const QFileInfoList entries = dir.entryInfoList(filters, flags, QDir::Name);
        for (const QFileInfo &entry : entries) {
            const QString name =
                prefix.isEmpty() ? entry.fileName() : prefix + QDir::separator() + entry.fileName();
            const bool isFolder = entry.isDir();
            if (isFolder == folders)
                names.append(name);
            if (isFolder && subFolders)
                run(QDir(entry.filePath()), name);
        }
    }
};

QStringList nameFilters(const QVariant &nameFilter)
{
    // A list from a script comes wrapped.
    const QVariant filter = nameFilter.userType() == qMetaTypeId<QJSValue>()
                                ? nameFilter.value<QJSValue>().toVariant()
                                : nameFilter;
    return filter.canConvert<QStringList>() ? filter.toStringList()
                                            : QStringList(filter.toString());
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
    if (m_constant) {
        qCWarning(FRAMEWORK_FILE) << Q_FUNC_INFO << "This is a constant folder" << m_dir;
        return;
    }
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

qlonglong FileFolder::size() const
{
    return m_cachedSize;
}

bool FileFolder::cdUp()
{
    if (m_constant) {
        qCWarning(FRAMEWORK_FILE) << Q_FUNC_INFO << "This is a constant folder" << m_dir;
        return false;
    }
    if (!m_dir.cdUp())
        return false;
    emit pathChanged();
    return true;
}

bool FileFolder::cd(const QString &path)
{
    if (m_constant) {
        qCWarning(FRAMEWORK_FILE) << Q_FUNC_INFO << "This is a constant folder" << m_dir;
        return false;
    }
    if (!m_dir.cd(path))
        return false;
    emit pathChanged();
    return true;
}

QStringList FileFolder::fileNames(const QVariant &nameFilter, bool subFolders) const
{
    NameWalk walk{nameFilters(nameFilter), subFolders, false, {}};
    walk.run(m_dir, QString());
    return walk.names;
}

QStringList FileFolder::folderNames(const QVariant &nameFilter, bool subFolders) const
{
    NameWalk walk{nameFilters(nameFilter), subFolders, true, {}};
    walk.run(m_dir, QString());
    return walk.names;
}

bool FileFolder::makeFolder()
{
    return m_dir.mkpath(QStringLiteral("."));
}

bool FileFolder::removeFolder()
{
    return m_dir.removeRecursively();
}

bool FileFolder::removeFolder(const QString &folderName, bool recursive)
{
    QDir target(filePath(folderName));
    return recursive ? target.removeRecursively() : target.rmdir(target.path());
}

bool FileFolder::makePath(const QString &path) const
{
    return m_dir.mkpath(path);
}

bool FileFolder::removePath(const QString &path) const
{
    return m_dir.rmpath(path);
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
    return QUrl::fromLocalFile(filePath(fileName));
}

bool FileFolder::fileExists(const QString &fileName) const
{
    return m_dir.exists(fileName);
}

bool FileFolder::removeFile(const QString &fileName)
{
    return m_dir.remove(fileName);
}

bool FileFolder::renameFile(const QString &oldFileName, const QString &newFileName)
{
    return m_dir.rename(oldFileName, newFileName);
}

bool FileFolder::copyFile(const QString &fileName, const QString &filePath)
{
    return QFile::copy(m_dir.absoluteFilePath(fileName), filePath);
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
    Q_UNUSED(options)
    return FileUtility::readFile(filePath(fileName));
}

bool FileFolder::writeFile(const QString &fileName, const QVariant &content,
                           const QVariantMap &options)
{
    Q_UNUSED(options)
    return FileUtility::writeFile(filePath(fileName), content.toByteArray());
}

QVariantMap FileFolder::readJsonFile(const QString &fileName) const
{
    Q_UNUSED(fileName)
    return QVariantMap();
}

bool FileFolder::writeJsonFile(const QString &fileName, const QVariantMap &json)
{
    Q_UNUSED(fileName)
    Q_UNUSED(json)
    return false;
}

QString FileFolder::readTextFile(const QString &fileName) const
{
    return QString::fromUtf8(FileUtility::readFile(filePath(fileName)));
}

bool FileFolder::writeTextFile(const QString &fileName, const QString &text)
{
    return FileUtility::writeFile(filePath(fileName), text.toUtf8());
}

Settings *FileFolder::settingsFile(const QString &fileName) const
{
    Q_UNUSED(fileName)
    return nullptr;
}

void FileFolder::refresh()
{
    m_dir.refresh();
    m_cachedSize = -1;
    emit existsChanged();
    emit sizeChanged();
}

bool FileFolder::copyFolder(const QString &source, const QString &target)
{
    Q_UNUSED(source)
    Q_UNUSED(target)
    return false;
}

void FileFolder::onPathChanged()
{
    m_cachedSize = -1;
    emit sizeChanged();
}

#include "moc_FileFolder.cpp"
