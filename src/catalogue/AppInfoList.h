#pragma once

#include "plugin/TessalineGlobal.h"
#include "plugin/TessalineObject.h"

#include <QDir>
#include <QQmlParserStatus>
#include <QString>
#include <QStringList>

// The catalogue's folders below the user's home. Each lies at its default place unless a value in
// the application's QSettings moves it; such a value is used as it stands, without path variables.
// A folder that can't be made is logged at critical level, and its QDir is handed out all the same.
//
// Who needs a folder makes a temporary AppInfoList and asks it; that reads settings and makes the
// folders which don't exist yet.
class TESSALINE_EXPORT AppInfoList : public TessalineObject, public QQmlParserStatus
{
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    Q_PROPERTY(
        QStringList searchPaths READ appsSearchPaths WRITE setSearchPaths NOTIFY searchPathsChanged)
    Q_PROPERTY(QString dataPath READ dataPath CONSTANT)

public:
    enum FolderType : int {
        Apps = 0,
        Templates = 1,
        Tools = 2,
        Data = 3,
        Modules = 4,
        Settings = 5
    };
    Q_ENUM(FolderType)

    // Any other value means the cache itself.
    enum CacheDir : int { Packages = 0 };
    Q_ENUM(CacheDir)

    enum SortOrder { Ascending = 0, Descending = 1 };
    Q_ENUM(SortOrder)

    explicit AppInfoList(QObject *parent = nullptr);

    void classBegin() override;
    void componentComplete() override;

    // Where apps are looked for; the first one also takes new ones.
    QStringList appsSearchPaths() const;
    // Stores and signals also what it has already; an empty list brings the default back.
    void setSearchPaths(const QStringList &paths);
    QString dataPath() const;

    Q_INVOKABLE QString folderPath(FolderType type) const;

    // QDir("") for a type that isn't in the enum.
    QDir folderDir(FolderType type) const;
    // These make the folder if it isn't there. A sub-folder's name is taken as it stands.
    QDir &cacheDir();
    QDir cacheDir(CacheDir dir);
    QDir cacheDir(const QString &subfolder);

signals:
    void searchPathsChanged();

private:
    static QString searchPath(const QString &paths, int index, const QString &defaultPath);
    static QString defaultAppsSearchPath();
    static QString defaultTemplatesSearchPath();
    static QString defaultToolboxSearchPath();
    QString appsSearchPath(int index) const;
    QString templatesSearchPath(int index) const;
    QString toolboxSearchPath(int index) const;

    // Joined by ";"; empty for the default.
    QString m_appsSearchPaths;
    QString m_templatesSearchPaths;
    QString m_toolboxSearchPaths;
    QDir m_dataFolder;
    QDir m_modulesFolder;
    QDir m_cacheFolder;
    QDir m_settingsFolder;
};
