#include "files/FileInfo.h"

#include "files/FileFolder.h"
#include "plugin/FileUtility.h"
#include "plugin/PropertyHelper.h"
#include "plugin/TessalineDebug.h"

#include <QFile>

FileInfo::FileInfo(QObject *parent)
    : TessalineObject(parent)
{
}

FileInfo::FileInfo(const QString &path, QObject *parent)
    : TessalineObject(parent)
    , m_fileInfo(FileUtility::resolvedPath(path, true))
    , m_exists(m_fileInfo.exists())
{
}

FileInfo::FileInfo(const QUrl &url, QObject *parent)
    : TessalineObject(parent)
    , m_fileInfo(FileUtility::resolvedPath(url, true))
    , m_exists(m_fileInfo.exists())
{
}

void FileInfo::setFilePath(const QString &path)
{
    const QString resolved = FileUtility::resolvedPath(path, true);
    if (resolved != filePath())
        setFile(resolved);
}

QUrl FileInfo::url() const
{
    return FileUtility::pathUrl(filePath());
}

void FileInfo::setUrl(const QUrl &url)
{
    if (url != this->url())
        setFile(FileUtility::resolvedPath(url, true));
}

QDateTime FileInfo::created() const
{
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED // the only call that falls back where there is no birth time
        return m_fileInfo.created();
    QT_WARNING_POP
}

FileFolder *FileInfo::fileFolder()
{
    return lazyChild(m_fileFolder, m_fileInfo.absolutePath(), this);
}

FileInfo::Permission FileInfo::permissions() const
{
    return static_cast<Permission>(static_cast<int>(QFile(filePath()).permissions()));
}

bool FileInfo::setPermissions(Permission permission)
{
    if (!QFile(filePath()).setPermissions(QFile::Permissions(permission))) {
        qCWarning(FRAMEWORK_FILE) << Q_FUNC_INFO << "Unable to set permissions to"
                                  << static_cast<int>(permission) << "on" << filePath();
        return false;
    }
    emit permissionsChanged();
    return true;
}

void FileInfo::refresh()
{
    m_fileInfo.refresh();
    m_exists = m_fileInfo.exists();
    emit filePathChanged();
}

bool FileInfo::hasExtendedProperty(const QString &name)
{
    Q_UNUSED(name)
    return false;
}

QJSValue FileInfo::getExtendedProperty(const QString &name)
{
    Q_UNUSED(name)
    return QJSValue();
}

bool FileInfo::setExtendedProperty(const QString &name, const QJSValue &value)
{
    Q_UNUSED(name)
    Q_UNUSED(value)
    return false;
}

void FileInfo::assignFile(const QString &path)
{
    m_fileInfo.setFile(path);
    m_exists = m_fileInfo.exists();
    if (m_fileFolder)
        m_fileFolder->setPath(m_fileInfo.absolutePath());
}

void FileInfo::setFile(const QString &path)
{
    assignFile(path);
    emit filePathChanged();
    emit permissionsChanged();
}

#include "moc_FileInfo.cpp"
