#pragma once

#include "plugin/TessalineObject.h"

#include <QQmlListProperty>
#include <QStorageInfo>
#include <QUrl>

class FileFolder;

// A volume: its place, its size and its kind. QML name: StorageInfo, creatable. Sizes are in bytes;
// a path that lies on no volume gives an object that isn't valid, with the sizes QStorageInfo then
// has.
class TESSALINE_EXPORT StorageInfo : public TessalineObject
{
    Q_OBJECT
    Q_PROPERTY(QString path READ path WRITE setPath NOTIFY pathChanged)
    Q_PROPERTY(QUrl url READ url WRITE setUrl NOTIFY pathChanged)
    Q_PROPERTY(FileFolder *folder READ folder NOTIFY pathChanged)
    Q_PROPERTY(qlonglong bytesAvailable READ bytesAvailable NOTIFY pathChanged)
    Q_PROPERTY(qlonglong bytesFree READ bytesFree NOTIFY pathChanged)
    Q_PROPERTY(qlonglong bytesTotal READ bytesTotal NOTIFY pathChanged)
    Q_PROPERTY(QString device READ device NOTIFY pathChanged)
    Q_PROPERTY(QString displayName READ displayName NOTIFY pathChanged)
    Q_PROPERTY(QString fileSystemType READ fileSystemType NOTIFY pathChanged)
    Q_PROPERTY(bool isReadOnly READ isReadOnly NOTIFY pathChanged)
    Q_PROPERTY(bool isReady READ isReady NOTIFY pathChanged)
    Q_PROPERTY(bool isRoot READ isRoot NOTIFY pathChanged)
    Q_PROPERTY(bool isValid READ isValid NOTIFY pathChanged)
    Q_PROPERTY(QString name READ name NOTIFY pathChanged)
    Q_PROPERTY(QQmlListProperty<StorageInfo> mountedVolumes READ mountedVolumes NOTIFY
                   mountedVolumesChanged)

public:
    // The root volume.
    explicit StorageInfo(QObject *parent = nullptr);
    // The volume that holds the path, which may begin with a path variable (see FileUtility).
    explicit StorageInfo(const QString &path, QObject *parent = nullptr);
    explicit StorageInfo(const QUrl &url, QObject *parent = nullptr);
    explicit StorageInfo(const QStorageInfo &volume, QObject *parent = nullptr);

    // The volume's root, not what was written. Every write of another path looks anew and emits
    // pathChanged(), also when it lies on the same volume.
    QString path() const { return m_volume.rootPath(); }
    void setPath(const QString &path);
    QUrl url() const;
    void setUrl(const QUrl &url);
    // Owned by this object, and replaced when the path changes.
    FileFolder *folder();
    qlonglong bytesAvailable() const { return m_volume.bytesAvailable(); }
    qlonglong bytesFree() const { return m_volume.bytesFree(); }
    qlonglong bytesTotal() const { return m_volume.bytesTotal(); }
    QString device() const { return QString::fromUtf8(m_volume.device()); }
    QString displayName() const { return m_volume.displayName(); }
    QString fileSystemType() const { return QString::fromUtf8(m_volume.fileSystemType()); }
    bool isReadOnly() const { return m_volume.isReadOnly(); }
    bool isReady() const { return m_volume.isReady(); }
    bool isRoot() const { return m_volume.isRoot(); }
    bool isValid() const { return m_volume.isValid(); }
    QString name() const { return m_volume.name(); }
    // Each read asks the system anew. Each access by index makes a new object, which belongs to the
    // script engine.
    QQmlListProperty<StorageInfo> mountedVolumes();

    // Takes the sizes anew. Emits mountedVolumesChanged() but not pathChanged(), so what is bound
    // to a size keeps its value.
    Q_INVOKABLE void refresh();

signals:
    void pathChanged();
    void mountedVolumesChanged();

private:
    static int volumeCount(QQmlListProperty<StorageInfo> *list);
    static StorageInfo *volumeAt(QQmlListProperty<StorageInfo> *list, int index);

    QStorageInfo m_volume;
    FileFolder *m_folder = nullptr;
    static QList<QStorageInfo> m_Volumes; // of the latest read of mountedVolumes, by any object
};
