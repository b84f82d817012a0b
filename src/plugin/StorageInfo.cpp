#include "plugin/StorageInfo.h"

#include "files/FileFolder.h"
#include "plugin/FileUtility.h"
#include "plugin/PropertyHelper.h"
#include "plugin/TessalineDebug.h"

/*!
    \qmltype StorageInfo
    \inqmlmodule Zemrik.Tessaline
    \brief A volume: its place, its size and its kind.

    Without a \l path it is the root volume.

    \qml
    ProgressBar {
        maximumValue: volume.bytesTotal
        value: volume.bytesTotal - volume.bytesAvailable

        StorageInfo {
            id: volume
            path: "~"
        }
    }
    \endqml

    All properties but \l mountedVolumes change together, with the signal of \l path.
*/

/*!
    \qmlproperty string StorageInfo::path
    The folder at the top of the volume. Write any path on the volume, also one that begins with a
    path variable; it reads back as the top. A path that isn't there gives an object that
    isn't valid. Each write of a path other than the top takes all values anew and notifies.
*/

/*!
    \qmlproperty url StorageInfo::url
    The same as a URL.
*/

/*!
    \qmlproperty FileFolder StorageInfo::folder
    \readonly
    The folder at the top of the volume, the same object until the path changes.
*/

/*!
    \qmlproperty int StorageInfo::bytesAvailable
    \readonly
    Bytes that this user may still write.
*/

/*!
    \qmlproperty int StorageInfo::bytesFree
    \readonly
    Bytes that are free, some of them perhaps for the administrator only.
*/

/*!
    \qmlproperty int StorageInfo::bytesTotal
    \readonly
    The size of the volume in bytes.
*/

/*!
    \qmlproperty string StorageInfo::device
    \readonly
    The device or file system that the volume is on, such as "/dev/sda1".
*/

/*!
    \qmlproperty string StorageInfo::displayName
    \readonly
    The volume's name, or its path if it has none.
*/

/*!
    \qmlproperty string StorageInfo::fileSystemType
    \readonly
    The kind of file system, such as "ext4".
*/

/*!
    \qmlproperty bool StorageInfo::isReadOnly
    \readonly
    True if nothing can be written to the volume.
*/

/*!
    \qmlproperty bool StorageInfo::isReady
    \readonly
    True if the volume can be used; false for an empty drive, for instance.
*/

/*!
    \qmlproperty bool StorageInfo::isRoot
    \readonly
    True for the system's root volume.
*/

/*!
    \qmlproperty bool StorageInfo::isValid
    \readonly
    False if the path lies on no volume.
*/

/*!
    \qmlproperty string StorageInfo::name
    \readonly
    The volume's label; may be empty.
*/

/*!
    \qmlproperty list<StorageInfo> StorageInfo::mountedVolumes
    \readonly
    All volumes that are mounted, asked anew at each read of the property. Each access to an element
    makes a new object.
*/

/*!
    \qmlmethod void StorageInfo::refresh()
    Takes the sizes anew and emits \c{mountedVolumesChanged()}. What is bound to a size keeps its
    value, since the path has not changed: read the sizes after the call.
*/

QList<QStorageInfo> StorageInfo::m_Volumes;

StorageInfo::StorageInfo(QObject *parent)
    : StorageInfo(QStorageInfo::root(), parent)
{
}

StorageInfo::StorageInfo(const QString &path, QObject *parent)
    : StorageInfo(QStorageInfo(FileUtility::resolvedPath(path, true)), parent)
{
}

StorageInfo::StorageInfo(const QUrl &url, QObject *parent)
    : StorageInfo(QStorageInfo(FileUtility::resolvedPath(url, true)), parent)
{
}

StorageInfo::StorageInfo(const QStorageInfo &volume, QObject *parent)
    : TessalineObject(parent)
    , m_volume(volume)
{
}

void StorageInfo::setPath(const QString &path)
{
    const QString resolved = FileUtility::resolvedPath(path, true);
    if (resolved == m_volume.rootPath())
        return;

    qCDebug(FRAMEWORK_FILE) << Q_FUNC_INFO << m_volume.rootPath() << resolved;
    delete m_folder;
    m_folder = nullptr;
    // A new one: setPath() and refresh() keep the old volume's state for a path that isn't there.
    m_volume = QStorageInfo(resolved);
    emit pathChanged();
}

QUrl StorageInfo::url() const
{
    return FileUtility::pathUrl(m_volume.rootPath());
}

void StorageInfo::setUrl(const QUrl &url)
{
    if (url != this->url())
        setPath(FileUtility::resolvedPath(url, true));
}

FileFolder *StorageInfo::folder()
{
    return lazyChild(m_folder, m_volume.rootPath(), this);
}

void StorageInfo::refresh()
{
    m_volume.refresh();
    emit mountedVolumesChanged();
}

QQmlListProperty<StorageInfo> StorageInfo::mountedVolumes()
{
    m_Volumes = QStorageInfo::mountedVolumes();
    return QQmlListProperty<StorageInfo>(this, nullptr, volumeCount, volumeAt);
}

int StorageInfo::volumeCount(QQmlListProperty<StorageInfo> *list)
{
    Q_UNUSED(list)
    return m_Volumes.size();
}

StorageInfo *StorageInfo::volumeAt(QQmlListProperty<StorageInfo> *list, int index)
{
    Q_UNUSED(list)
    // A list that a script keeps can be longer than what another read has found since.
    if (index < 0 || index >= m_Volumes.size())
        return nullptr;
    return givenToScript(new StorageInfo(m_Volumes.at(index)));
}

#include "moc_StorageInfo.cpp"
