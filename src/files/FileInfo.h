#pragma once

#include "plugin/TessalineObject.h"

#include <QDateTime>
#include <QFileInfo>
#include <QJSValue>
#include <QUrl>

class FileFolder;

// What the disk knows about a file, and its permissions. QML name: FileInfo, creatable.
//
// A path or URL may begin with a path variable (see FileUtility). Whether the file exists is of the
// moment when the path was set or refresh() was called; other answers are of the first time that
// they are asked for after that, as QFileInfo keeps them.
class TESSALINE_EXPORT FileInfo : public TessalineObject
{
    Q_OBJECT
    Q_PROPERTY(QString filePath READ filePath WRITE setFilePath NOTIFY filePathChanged)
    Q_PROPERTY(QUrl url READ url WRITE setUrl NOTIFY filePathChanged)
    Q_PROPERTY(bool exists READ exists NOTIFY filePathChanged)
    Q_PROPERTY(qlonglong size READ size NOTIFY filePathChanged)
    Q_PROPERTY(QString path READ path NOTIFY filePathChanged)
    Q_PROPERTY(QString fileName READ fileName NOTIFY filePathChanged)
    Q_PROPERTY(QString baseName READ baseName NOTIFY filePathChanged)
    Q_PROPERTY(QString suffix READ suffix NOTIFY filePathChanged)
    Q_PROPERTY(QDateTime created READ created NOTIFY filePathChanged)
    Q_PROPERTY(QDateTime lastModified READ lastModified NOTIFY filePathChanged)
    Q_PROPERTY(bool isFile READ isFile NOTIFY filePathChanged)
    Q_PROPERTY(bool isFolder READ isFolder NOTIFY filePathChanged)
    Q_PROPERTY(bool isReadable READ isReadable NOTIFY filePathChanged)
    Q_PROPERTY(bool isWritable READ isWritable NOTIFY filePathChanged)
    Q_PROPERTY(bool isNativePath READ isNativePath NOTIFY filePathChanged)
    Q_PROPERTY(bool isSymLink READ isSymLink NOTIFY filePathChanged)
    Q_PROPERTY(QString symLinkTarget READ symLinkTarget NOTIFY filePathChanged)
    Q_PROPERTY(FileFolder *folder READ fileFolder NOTIFY filePathChanged)
    Q_PROPERTY(
        Permission permissions READ permissions WRITE setPermissions NOTIFY permissionsChanged)

public:
    // QFile's numbers. The underlying type is given because a value combines them.
    enum Permission : int {
        ReadOwner = 16384,
        WriteOwner = 8192,
        ExeOwner = 4096,
        ReadUser = 1024,
        WriteUser = 512,
        ExeUser = 256,
        ReadGroup = 64,
        WriteGroup = 32,
        ExeGroup = 16,
        ReadOther = 4,
        WriteOther = 2,
        ExeOther = 1
    };
    Q_ENUM(Permission)

    explicit FileInfo(QObject *parent = nullptr);
    explicit FileInfo(const QString &path, QObject *parent = nullptr);
    explicit FileInfo(const QUrl &url, QObject *parent = nullptr);

    QString filePath() const { return m_fileInfo.filePath(); }
    virtual void setFilePath(const QString &path);
    QUrl url() const;
    virtual void setUrl(const QUrl &url);
    bool exists() const { return m_exists; }
    qlonglong size() const { return m_fileInfo.size(); }
    QString path() const { return m_fileInfo.path(); }
    QString fileName() const { return m_fileInfo.fileName(); }
    QString baseName() const { return m_fileInfo.baseName(); }
    QString suffix() const { return m_fileInfo.suffix(); }
    // The birth time where the file system has one, otherwise the last change of the metadata.
    QDateTime created() const;
    QDateTime lastModified() const { return m_fileInfo.lastModified(); }
    bool isFile() const { return m_fileInfo.isFile(); }
    bool isFolder() const { return m_fileInfo.isDir(); }
    bool isReadable() const { return m_fileInfo.isReadable(); }
    bool isWritable() const { return m_fileInfo.isWritable(); }
    bool isNativePath() const { return m_fileInfo.isNativePath(); }
    bool isSymLink() const { return m_fileInfo.isSymLink(); }
    QString symLinkTarget() const { return m_fileInfo.symLinkTarget(); }
    // The folder that holds the file: always the same object, a child of this one.
    FileFolder *fileFolder();
    Permission permissions() const;
    // False, with a warning, if the file's permissions could not be changed.
    Q_INVOKABLE bool setPermissions(FileInfo::Permission permission);

    // Asks the disk anew.
    Q_INVOKABLE void refresh();
    // No file has extended properties: false, undefined and false.
    Q_INVOKABLE bool hasExtendedProperty(const QString &name);
    Q_INVOKABLE QJSValue getExtendedProperty(const QString &name);
    Q_INVOKABLE bool setExtendedProperty(const QString &name, const QJSValue &value);

signals:
    void filePathChanged();
    void permissionsChanged();

protected:
    const QFileInfo &fileInfo() const { return m_fileInfo; }
    // Moves to a resolved path, and the folder with it, without a signal.
    void assignFile(const QString &path);
    // The same, signalled.
    void setFile(const QString &path);

private:
    QFileInfo m_fileInfo;
    // QFileInfo remembers that a file is there but not that it is missing; this remembers both.
    bool m_exists = false;
    FileFolder *m_fileFolder = nullptr;
};
