#pragma once

#include "plugin/TessalineObject.h"

#include <QDir>
#include <QStringList>
#include <QUrl>
#include <QVariant>
#include <QVariantMap>

class File;
class FileInfo;
class Settings;

// A folder: navigating, listing, reading and writing whole files by name, making, removing and
// copying. QML name: FileFolder, creatable.
//
// The folder's own path or URL may begin with a path variable (see FileUtility); file names given
// to the methods are relative to the folder and are taken as they are. Whatever is refused gives
// false or an empty value and a log line under FRAMEWORK_FILE. Objects that a method returns are
// new and belong to the script engine.
class TESSALINE_EXPORT FileFolder : public TessalineObject
{
    Q_OBJECT
    Q_PROPERTY(QString path READ path WRITE setPath NOTIFY pathChanged)
    Q_PROPERTY(QUrl url READ url WRITE setUrl NOTIFY pathChanged)
    Q_PROPERTY(bool exists READ exists NOTIFY existsChanged)
    Q_PROPERTY(QString folderName READ folderName NOTIFY pathChanged)
    Q_PROPERTY(qlonglong size READ size NOTIFY sizeChanged)

public:
    // The system's folder for temporary files.
    explicit FileFolder(QObject *parent = nullptr);
    explicit FileFolder(const QString &path, QObject *parent = nullptr);
    explicit FileFolder(const QUrl &url, QObject *parent = nullptr);
    explicit FileFolder(const QDir &dir, QObject *parent = nullptr);

    QString path() const { return m_dir.absolutePath(); }
    void setPath(const QString &path);
    QUrl url() const;
    void setUrl(const QUrl &url);
    bool exists() const;
    QString folderName() const { return m_dir.dirName(); }
    // Bytes of all files below the folder, without symbolic links. Computed at the first read and
    // kept until the path changes or refresh() is called.
    qlonglong size() const;

    // A constant folder refuses to move, a read-only one refuses to change the disk. Scripts can
    // neither set nor see this.
    bool isConstant() const { return m_constant; }
    void setConstant(bool constant) { m_constant = constant; }
    bool isReadOnly() const { return m_readOnly; }
    void setReadOnly(bool readOnly) { m_readOnly = readOnly; }

    Q_INVOKABLE bool cdUp();
    Q_INVOKABLE bool cd(const QString &path);
    // Names relative to the folder, sorted by name in each folder, a folder directly before its
    // contents. The filter is a pattern or a list of patterns; with subFolders it decides about
    // folders too, and one that doesn't match isn't walked.
    Q_INVOKABLE QStringList fileNames(const QVariant &nameFilter = QVariant(QLatin1String("*")),
                                      bool subFolders = false) const;
    Q_INVOKABLE QStringList folderNames(const QVariant &nameFilter = QVariant(QLatin1String("*")),
                                        bool subFolders = false) const;
    // True also when the folder is there already.
    Q_INVOKABLE bool makeFolder();
    // With everything in it. True also when there is no such folder.
    Q_INVOKABLE bool removeFolder();
    // Without `recursive` only an empty folder goes; with it, of a link only the link. Refused for
    // the folder itself and for one above it.
    Q_INVOKABLE bool removeFolder(const QString &folderName, bool recursive = false);
    Q_INVOKABLE bool makePath(const QString &path) const;
    // Removes the last folder of the path and those above it as far as they are empty.
    Q_INVOKABLE bool removePath(const QString &path) const;
    // Empty if the folder has no path, which would make a name one of the disk's root.
    Q_INVOKABLE QString filePath(const QString &fileName) const;
    Q_INVOKABLE QString relativeFilePath(const QString &fileName) const;
    Q_INVOKABLE QUrl fileUrl(const QString &fileName) const;
    Q_INVOKABLE bool fileExists(const QString &fileName) const;
    // True also when there is no such file.
    Q_INVOKABLE bool removeFile(const QString &fileName);
    Q_INVOKABLE bool renameFile(const QString &oldFileName, const QString &newFileName);
    // The target is a path of its own, which may begin with a path variable. Files are never
    // overwritten; a folder is merged into one that is there.
    Q_INVOKABLE bool copyFile(const QString &fileName, const QString &filePath);
    Q_INVOKABLE File *file(const QString &fileName) const;
    Q_INVOKABLE FileInfo *fileInfo(const QString &fileName) const;
    Q_INVOKABLE FileFolder *folder(const QString &folderName) const;
    // Bytes; the option "encode" ("base64" or "hex") gives them encoded. Empty if unreadable.
    Q_INVOKABLE QVariant readFile(const QString &fileName,
                                  const QVariantMap &options = QVariantMap()) const;
    // Text or bytes, of an ArrayBuffer or of a typed array; the option "decode" ("base64" or "hex") says how the text encodes the bytes.
    Q_INVOKABLE bool writeFile(const QString &fileName, const QVariant &content,
                               const QVariantMap &options = QVariantMap());
    Q_INVOKABLE QVariantMap readJsonFile(const QString &fileName) const;
    Q_INVOKABLE bool writeJsonFile(const QString &fileName, const QVariantMap &json);
    // UTF-8.
    Q_INVOKABLE QString readTextFile(const QString &fileName) const;
    Q_INVOKABLE bool writeTextFile(const QString &fileName, const QString &text);
    // An INI file in the folder, "settings.ini" for an empty name; null if it can't have one.
    Q_INVOKABLE Settings *settingsFile(const QString &fileName) const;
    // Asks the disk anew.
    Q_INVOKABLE void refresh();

    // Copies a file, or a folder with everything in it; false at the first failure, which leaves
    // what was copied until then. Links are followed. A folder can't be copied into itself.
    bool copyFolder(const QString &source, const QString &target);

signals:
    void pathChanged();
    void existsChanged();
    void sizeChanged();

private slots:
    void onPathChanged();

private:
    void announceMove();
    // Whether the folder's guard forbids what `function` is about to do, which is then logged.
    bool refusesMove(const char *function) const;
    bool refusesChange(const char *function) const;
    // Whether the folder has a path, and that and the name can be one of the disk; if not, logged.
    bool leadsSomewhere(const char *function, const QString &name = QString()) const;
    bool canChange(const char *function, const QString &name = QString()) const
    {
        return !refusesChange(function) && leadsSomewhere(function, name);
    }
    bool leadsUp(const QString &path) const;
    bool copyEntries(const QDir &source, const QDir &target);

    QDir m_dir;
    bool m_constant = false;
    bool m_readOnly = false;
    mutable qint64 m_cachedSize = -1;
};
