#include "files/FileInfo.h"

#include "files/FileFolder.h"
#include "plugin/FileUtility.h"
#include "plugin/PropertyHelper.h"
#include "plugin/TessalineDebug.h"

#include <QFile>

/*!
    \qmltype FileInfo
    \inqmlmodule Zemrik.Tessaline
    \inherits TessalineObject
    \brief What the disk knows about a file or folder.

    \badcode
    FileInfo {
        id: photo
        filePath: "~/Pictures/photo.jpg"
    }

    Text {
        text: photo.exists ? photo.fileName + ", " + photo.size + " bytes" : "no photo"
    }
    \endcode

    \l exists is of the moment when \l filePath was set. The other answers are of the moment when they
    are first asked for after that, and kept, unless the file is missing. refresh() asks again.

    \sa FileFolder::fileInfo(), ExifInfo
*/

/*!
    \qmlproperty string FileInfo::filePath
    The file's path, as given. It may begin with a path variable, as in \c{"~/photo.jpg"}.
*/

/*!
    \qmlproperty url FileInfo::url
    The same as a URL: a \c file URL, or a \c qrc URL for a resource.
*/

/*!
    \qmlproperty bool FileInfo::exists
    \readonly
    Whether there is such a file or folder. False for a symbolic link whose target is missing.
*/

/*!
    \qmlproperty int FileInfo::size
    \readonly
    The file's size in bytes; 0 if there is no such file.
*/

/*!
    \qmlproperty string FileInfo::path
    \readonly
    The path without the file's name.
*/

/*!
    \qmlproperty string FileInfo::fileName
    \readonly
    The name without the path: "archive.tar.gz".
*/

/*!
    \qmlproperty string FileInfo::baseName
    \readonly
    The name up to its first dot: "archive".
*/

/*!
    \qmlproperty string FileInfo::suffix
    \readonly
    What follows the name's last dot: "gz".
*/

/*!
    \qmlproperty date FileInfo::created
    \readonly
    When the file was made; where the file system doesn't know, when its metadata last changed.
*/

/*!
    \qmlproperty date FileInfo::lastModified
    \readonly
    When the content last changed.
*/

/*!
    \qmlproperty bool FileInfo::isFile
    \readonly
    Whether it is a file, or a symbolic link to one.
*/

/*!
    \qmlproperty bool FileInfo::isFolder
    \readonly
    Whether it is a folder, or a symbolic link to one.
*/

/*!
    \qmlproperty bool FileInfo::isReadable
    \readonly
    Whether this user may read it.
*/

/*!
    \qmlproperty bool FileInfo::isWritable
    \readonly
    Whether this user may write it.
*/

/*!
    \qmlproperty bool FileInfo::isNativePath
    \readonly
    Whether the path is one of the disk. A resource's is not.
*/

/*!
    \qmlproperty bool FileInfo::isSymLink
    \readonly
    Whether it is a symbolic link.
*/

/*!
    \qmlproperty string FileInfo::symLinkTarget
    \readonly
    The absolute path to which a symbolic link leads; empty for anything else.
*/

/*!
    \qmlproperty FileFolder FileInfo::folder
    \readonly
    The folder that holds the file. Always the same object, which moves along with \l filePath.
*/

/*!
    \qmlproperty enumeration FileInfo::permissions
    Who may do what, a combination of \c FileInfo.ReadOwner, \c FileInfo.WriteOwner,
    \c FileInfo.ExeOwner, the same for \c User (who asks), \c Group and \c Other. 0 if there is no
    such file.
*/

/*!
    \qmlmethod bool FileInfo::setPermissions(enumeration permission)
    As setting \l permissions to \a permission, but returns whether it could be done.
*/

/*!
    \qmlmethod void FileInfo::refresh()
    Asks the disk again.
*/

/*!
    \qmlmethod bool FileInfo::hasExtendedProperty(string name)
    Returns false, whatever the \a name: no file has extended properties.
*/

/*!
    \qmlmethod var FileInfo::getExtendedProperty(string name)
    Undefined, whatever the \a name: no file has extended properties.
*/

/*!
    \qmlmethod bool FileInfo::setExtendedProperty(string name, var value)
    Stores no \a value under any \a name and returns false: no file has extended properties.
*/

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
