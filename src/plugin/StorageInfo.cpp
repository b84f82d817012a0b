#include "plugin/StorageInfo.h"

#include "files/FileFolder.h"
#include "plugin/FileUtility.h"
#include "plugin/PropertyHelper.h"
#include "plugin/TessalineDebug.h"

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
    m_volume.setPath(resolved);
    m_volume.refresh();
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
