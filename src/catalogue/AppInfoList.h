#pragma once

#include "catalogue/AppFilter.h"
#include "catalogue/AppInfo.h"
#include "network/NetworkRequest.h"
#include "plugin/TessalineGlobal.h"
#include "plugin/TessalineObject.h"
#include "portal/PortalObject.h"

#include <QDir>
#include <QHash>
#include <QList>
#include <QPointer>
#include <QQmlListProperty>
#include <QQmlParserStatus>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QVariantMap>
#include <QVector>

class TessalineError;

// The catalogue: the apps on this machine and those that a portal publishes, merged into one list
// in which each is known once by its item id. QML name: AppInfoList. refresh() reads the disk and,
// if asked to, searches the portal; a search that fails is logged and never ends, so that every
// later one is refused: who waits sets a limit of its own and makes a new object.
//
// It is also the map of the catalogue's folders below the user's home. Each lies at its default
// place unless a value in the application's QSettings moves it; such a value is used as it stands,
// without path variables. A folder that can't be made is logged at critical level, and its QDir is
// handed out all the same.
//
// Who needs a folder makes a temporary AppInfoList and asks it; that reads settings and makes the
// folders which don't exist yet.
class TESSALINE_EXPORT AppInfoList : public TessalineObject, public QQmlParserStatus
{
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    Q_PROPERTY(QQmlListProperty<AppInfo> apps READ apps NOTIFY appsChanged)
    Q_PROPERTY(QQmlListProperty<AppInfo> filteredApps READ filteredApps NOTIFY filteredAppsChanged)
    Q_PROPERTY(AppFilter *filter READ filter CONSTANT)
    Q_PROPERTY(QStringList tags READ tags NOTIFY tagsChanged)
    Q_PROPERTY(QStringList owners READ owners NOTIFY ownersChanged)
    Q_PROPERTY(QStringList access READ access NOTIFY accessChanged)
    Q_PROPERTY(
        QStringList searchPaths READ appsSearchPaths WRITE setSearchPaths NOTIFY searchPathsChanged)
    Q_PROPERTY(QString dataPath READ dataPath CONSTANT)
    Q_PROPERTY(int onlineUpdatesCount READ onlineUpdatesCount NOTIFY countsChanged)
    Q_PROPERTY(int localUpdatesCount READ localUpdatesCount NOTIFY countsChanged)
    Q_PROPERTY(bool isRefreshing READ isRefreshing NOTIFY isRefreshingChanged)
    Q_PROPERTY(QObject *portal READ portal WRITE setPortal NOTIFY portalChanged)
    Q_PROPERTY(QString searchQuery READ searchQuery WRITE setSearchQuery)
    Q_PROPERTY(bool signinRequired READ signinRequired WRITE setSigninRequired NOTIFY
                   signinRequiredChanged)
    Q_PROPERTY(QString nullTitle READ nullTitle WRITE setNullTitle)
    Q_PROPERTY(QUrl nullThumbnail READ nullThumbnail WRITE setNullThumbnail)
    Q_PROPERTY(bool autoRefresh READ autoRefresh WRITE setAutoRefresh NOTIFY autoRefreshChanged)

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

    enum SortOrder : int { Ascending = 0, Descending = 1 };
    Q_ENUM(SortOrder)

    explicit AppInfoList(QObject *parent = nullptr);

    void classBegin() override;
    void componentComplete() override;

    // Read when empty, the lists are filled first.
    QQmlListProperty<AppInfo> apps();
    QQmlListProperty<AppInfo> filteredApps();
    AppFilter *filter() { return &m_filter; }
    // Collected from the apps.
    QStringList tags() const { return m_tags; }
    QStringList owners() const { return m_owners; }
    QStringList access() const { return m_access; }
    // Where apps are looked for; the first one also takes new ones.
    QStringList appsSearchPaths() const;
    // Stores and signals also what it has already; an empty list brings the default back.
    void setSearchPaths(const QStringList &paths);
    QString dataPath() const;
    int onlineUpdatesCount() const { return m_onlineUpdatesCount; }
    int localUpdatesCount() const { return m_localUpdatesCount; }
    // From the first request of a search to its last page.
    bool isRefreshing() const { return m_isRefreshing; }
    QObject *portal() const { return m_portalObject.portal(); }
    void setPortal(QObject *portal);
    QString searchQuery() const { return m_searchQuery; }
    void setSearchQuery(const QString &query) { m_searchQuery = query; }
    // Whether a search, and the portal's items in the list, need a signed-in user.
    bool signinRequired() const { return m_signinRequired; }
    void setSigninRequired(bool required);
    // A first entry that stands for no app, made where the title isn't empty.
    QString nullTitle() const { return m_nullTitle; }
    void setNullTitle(const QString &title) { m_nullTitle = title; }
    QUrl nullThumbnail() const { return m_nullThumbnail; }
    void setNullThumbnail(const QUrl &thumbnail) { m_nullThumbnail = thumbnail; }
    // Search by itself when the portal is signed in.
    bool autoRefresh() const { return m_autoRefresh; }
    void setAutoRefresh(bool autoRefresh);

    Q_INVOKABLE QString folderPath(AppInfoList::FolderType type) const;
    // Reads the disk; with `search` asks the portal too, and refreshComplete() comes after its last
    // page.
    Q_INVOKABLE void refresh(bool search);
    Q_INVOKABLE void refresh();
    // The new order shows at the next refresh.
    Q_INVOKABLE void sortByName(AppInfoList::SortOrder order);
    Q_INVOKABLE void sortByDate(AppInfoList::SortOrder order);
    Q_INVOKABLE void clearSort();

    // The first app of that id or folder; null if there is none.
    AppInfo *findById(const QString &id);
    AppInfo *findByPath(const QString &path) const;
    // Looks in the results of this object's last search only.
    bool findPortalItem(const QString &id, QVariantMap &item) const;
    void itemDownloaded(const QString &id);

    // QDir("") for a type that isn't in the enum.
    QDir folderDir(FolderType type) const;
    // These make the folder if it isn't there. A sub-folder's name is taken as it stands.
    QDir &cacheDir();
    QDir cacheDir(CacheDir dir);
    QDir cacheDir(const QString &subfolder);

signals:
    void appsChanged();
    void filteredAppsChanged();
    void portalChanged();
    void tagsChanged();
    void ownersChanged();
    void accessChanged();
    void refreshStart();
    void refreshComplete();
    void error(TessalineError *error); // nothing emits it
    void countsChanged();
    void isRefreshingChanged();
    void signinRequiredChanged();
    void autoRefreshChanged();
    void searchPathsChanged();

private slots:
    void onOnlineStateChanged(bool online);
    void onSignedInChanged();
    void onFilterChanged();
    void onReadyStateChanged();

private:
    // A list with, beside it, what is in it already.
    struct Collection
    {
        void add(const QString &text, QStringList &list);
        QSet<QString> present;
    };

    bool isSignedIn() const;
    void setRefreshing(bool refreshing);
    void appListChanged();
    void clearApplets();
    void refreshApplets();
    void refreshApplets(const QString &paths);
    void refreshFilteredApplets();
    void refreshPortalItems();
    void addNullEntry();
    void addApplets(const QString &path);
    void addAppInfo(AppInfo *app);
    void addApplet(AppInfo *app);
    void updateLists();
    void sortApplets();
    template <typename Key, typename KeyOf>
    void sortBy(KeyOf keyOf);
    const QHash<QString, AppInfo *> &appsById();
    void forgetIndex();
    void clearPortalItems();
    void searchPortal();
    void startSearch(int start);
    void processResponse(const QVariantMap &map);
    void processSearchResults();
    void addressItems();
    static QUrl thumbnailUrl(const QVariantMap &item, const QString &id, const QString &itemsUrl,
                             const QString &token);
    static int appCount(QQmlListProperty<AppInfo> *property);
    static AppInfo *appAt(QQmlListProperty<AppInfo> *property, int index);
    static int filteredAppCount(QQmlListProperty<AppInfo> *property);
    static AppInfo *filteredAppAt(QQmlListProperty<AppInfo> *property, int index);

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

    AppFilter m_filter;
    QStringList m_tags;
    QStringList m_owners;
    QStringList m_access;
    Collection m_tagsPresent;
    Collection m_ownersPresent;
    Collection m_accessPresent;
    // The objects have no parent and outlive the list: a script may hold them.
    QList<AppInfo *> m_apps;
    QList<AppInfo *> m_filteredApps;
    int m_onlineUpdatesCount = 0;
    int m_localUpdatesCount = 0;
    PortalObject m_portalObject;
    bool m_isRefreshing = false;
    bool m_isReading = false; // the disk
    QString m_searchQuery;
    NetworkRequest m_request;
    QList<QVariantMap> m_portalItems;       // of the last search
    QStringList m_portalItemIds;            // theirs, in the same order
    QString m_addressBase;                  // what their thumbnails' addresses were made from
    int m_addressedItems = 0;               // how many of them have such an address
    QHash<QString, AppInfo *> m_appsById;   // the first app of each id; empty: to be made
    QVector<QPointer<AppInfo>> m_foundApps; // those of the search's items, by that index
    int m_soughtItems = 0;                  // how many items these are of
    bool m_signinRequired = true;
    bool m_autoRefresh = true;
    QString m_nullTitle;
    QUrl m_nullThumbnail;
    int m_sortOrder = Ascending;
    int m_sortKind = 0; // 0 by name, 1 by date
};
