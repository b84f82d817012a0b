#include "catalogue/AppInfoList.h"

#include "plugin/FileUtility.h"
#include "plugin/PathComponent.h"
#include "plugin/PropertyHelper.h"
#include "plugin/TessalineDebug.h"

#include <QDateTime>
#include <QDirIterator>
#include <QQmlEngine>
#include <QScopedValueRollback>
#include <QSettings>

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

/*!
    \qmltype AppInfoList
    \inqmlmodule Zemrik.Tessaline
    \brief The catalogue: the apps on this machine and on a portal, and the folders they live in.

    \badcode
    Portal {
        id: portal

        property url url: portalUrl
    }

    AppInfoList {
        id: catalogue

        portal: portal
        onRefreshComplete: console.log(filteredApps.length, "apps")
        Component.onCompleted: refresh()
    }

    ListView {
        model: catalogue.filteredApps
        delegate: Text { text: modelData.title }
    }
    \endcode

    Each app is known once, by its item id. One that is on this machine and on the portal is local,
    and its flags tell which of the two copies is newer. \l refresh() reads the disk and, if asked to,
    searches the portal; a sign-in searches by itself. A search that fails is only logged and never
    ends: set a time limit of your own, and then make a new object.

    The catalogue's folders lie below the user's home, unless the application's settings move them.

    \table
    \header \li Folder \li Default \li Key in the application's settings
    \row \li Apps \li \c{~/Zemrik/Halvora/Apps} \li appletsPath
    \row \li Templates \li \c{~/Zemrik/Halvora/Templates} \li templatesPath
    \row \li Tools \li \c{~/Zemrik/Halvora/Toolbox} \li toolboxPath
    \row \li Data \li \c{~/Zemrik/Halvora/Data} \li dataPath
    \row \li Modules \li \c{~/Zemrik/Halvora/Modules} \li modulesPath
    \row \li Settings \li \c{~/Zemrik/Halvora/Settings} \li settingsPath
    \row \li (cache) \li \c{~/Zemrik/Halvora/.cache} \li cachePath
    \endtable
*/

/*!
    \qmlproperty list<AppInfo> AppInfoList::apps
    \readonly
    All apps that the last refresh found, sorted. Read while it is empty, it is filled from the disk.
*/

/*!
    \qmlproperty list<AppInfo> AppInfoList::filteredApps
    \readonly
    Those of \l apps that pass the \l filter.
*/

/*!
    \qmlproperty AppFilter AppInfoList::filter
    \readonly
    What \l filteredApps shows. Its \c types, \c hidden and \c owner also decide what the next refresh
    reads from the disk.
*/

/*!
    \qmlproperty list<string> AppInfoList::tags
    \readonly
    The tags of the apps, without those that every app has.
*/

/*!
    \qmlproperty list<string> AppInfoList::owners
    \readonly
    The owners of the apps.
*/

/*!
    \qmlproperty list<string> AppInfoList::access
    \readonly
    The sharing levels of the apps.
*/

/*!
    \qmlproperty list<string> AppInfoList::searchPaths
    The folders where apps are looked for; path variables in them aren't resolved. An empty list
    stands for the default.
*/

/*!
    \qmlproperty string AppInfoList::dataPath
    \readonly
    The folder of the data items.
*/

/*!
    \qmlproperty int AppInfoList::onlineUpdatesCount
    \readonly
    How many local apps are older than the portal's copy.
*/

/*!
    \qmlproperty int AppInfoList::localUpdatesCount
    \readonly
    How many local apps are newer than the portal's copy.
*/

/*!
    \qmlproperty bool AppInfoList::isRefreshing
    \readonly
    True from the first request of a search to its last page, and for good after a search that failed.
*/

/*!
    \qmlproperty object AppInfoList::portal
    The portal to search: a \c Portal that declares \c{property url url: portalUrl} inline. Without one
    it is the public portal.
*/

/*!
    \qmlproperty string AppInfoList::searchQuery
    What a search asks the portal for. By default native applications without their installers, and
    code samples with the tags "app" and "qml".
*/

/*!
    \qmlproperty bool AppInfoList::signinRequired
    Whether the portal is searched, and its apps are listed, only while somebody is signed in. True by
    default.
*/

/*!
    \qmlproperty string AppInfoList::nullTitle
    The title of a first entry that stands for no app; empty, the default, for none. Takes effect at
    the next refresh.
*/

/*!
    \qmlproperty url AppInfoList::nullThumbnail
    The picture of the entry that stands for no app.
*/

/*!
    \qmlproperty bool AppInfoList::autoRefresh
    Whether a sign-in starts a search. True by default.
*/

/*!
    \qmlmethod void AppInfoList::refresh(bool search = false)
    Reads the disk anew and, with \a search, asks the portal: \l refreshComplete() then comes after
    the last page of the answer.
*/

/*!
    \qmlmethod void AppInfoList::sortByName(enumeration order)
    Sorts by title from the next refresh on; \a order is \c AppInfoList.Ascending or
    \c AppInfoList.Descending.
*/

/*!
    \qmlmethod void AppInfoList::sortByDate(enumeration order)
    Sorts by the date of the last change from the next refresh on; \a order is as in \l sortByName().
*/

/*!
    \qmlmethod void AppInfoList::clearSort()
    Sorts by title, ascending, from the next refresh on.
*/

/*!
    \qmlsignal AppInfoList::refreshStart()
    A call of \l refresh() has begun.
*/

/*!
    \qmlsignal AppInfoList::refreshComplete()
    The disk has been read and the search, if there was one, has ended. The portal's apps are in the
    list from the \c appsChanged that follows.
*/

/*!
    \qmlsignal AppInfoList::error(TessalineError error)
    Isn't emitted, so \a error never comes; a search that fails is only logged.
*/

/*!
    \qmlmethod string AppInfoList::folderPath(enumeration type)
    Returns the path of the catalogue's folder for \a type; the first search path of those that have
    several.

    \value AppInfoList.Apps      the apps
    \value AppInfoList.Templates the templates
    \value AppInfoList.Tools     the tools
    \value AppInfoList.Data      the data items
    \value AppInfoList.Modules   the modules
    \value AppInfoList.Settings  the settings of the apps
*/

namespace {

const QLatin1Char pathSeparator(';');

QString folderSetting(const char *key, const char *defaultPath)
{
    return QSettings()
        .value(QLatin1String(key),
               FileUtility::resolvedPath(QString::fromLatin1(defaultPath), true))
        .toString();
}

QDir madeFolder(const QString &path)
{
    const QDir dir(path);
    FileUtility::mkpath(dir);
    return dir;
}

QStringList splitPaths(const QString &paths)
{
    return paths.split(pathSeparator, Qt::SkipEmptyParts);
}

const int searchPageSize = 50;
const int sortByDateKind = 1;

QString defaultSearchQuery()
{
    return QStringLiteral(
        "((type:\"Native Application\" AND NOT type:\"Native Application Installer\") OR "
        "(tags:\"app\" AND tags:\"qml\" AND type:\"Code Sample\"))");
}

// By name. QDir::entryList() would gather and sort a QFileInfo of each.
QStringList folderNames(const QDir &dir)
{
    QStringList names;
    QDirIterator entries(dir.path(), QDir::Dirs | QDir::NoDotAndDotDot);
    while (entries.hasNext()) {
        entries.next();
        names.append(entries.fileName());
    }
    names.sort();
    return names;
}

void sortIgnoringCase(QStringList &list)
{
    list.sort(Qt::CaseInsensitive);
}

} // namespace

AppInfoList::AppInfoList(QObject *parent)
    : TessalineObject(parent)
    , m_portalObject(nullptr)
    , m_searchQuery(defaultSearchQuery())
{
    m_request.setMethod(QStringLiteral("POST"));
    m_request.setResponseType(QStringLiteral("json"));
    m_request.setUploadPrefix(QString()); // a hostile token must not name a file to send
    FileUtility::mkpath(appsSearchPath(0));
    m_dataFolder = madeFolder(folderSetting("dataPath", "~/Zemrik/Halvora/Data"));
    m_modulesFolder = madeFolder(folderSetting("modulesPath", "~/Zemrik/Halvora/Modules"));
    m_settingsFolder = madeFolder(folderSetting("settingsPath", "~/Zemrik/Halvora/Settings"));
    connect(&m_filter, &AppFilter::filterChanged, this, &AppInfoList::onFilterChanged);
    connect(&m_request, &NetworkRequest::readyStateChanged, this,
            &AppInfoList::onReadyStateChanged);
    cacheDir(Packages);
}

void AppInfoList::classBegin()
{
    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO;
}

void AppInfoList::componentComplete()
{
    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO;
    if (QQmlEngine *engine = qmlEngine(this))
        m_request.setNetworkAccessManager(engine->networkAccessManager());
}

QQmlListProperty<AppInfo> AppInfoList::apps()
{
    // What the reading tells may have a handler that reads the list in its turn.
    if (m_apps.isEmpty() && !m_isReading) {
        refreshApplets();
        sortApplets();
    }
    return QQmlListProperty<AppInfo>(this, nullptr, appCount, appAt);
}

QQmlListProperty<AppInfo> AppInfoList::filteredApps()
{
    if (m_filteredApps.isEmpty())
        refreshFilteredApplets();
    return QQmlListProperty<AppInfo>(this, nullptr, filteredAppCount, filteredAppAt);
}

int AppInfoList::appCount(QQmlListProperty<AppInfo> *property)
{
    return static_cast<AppInfoList *>(property->object)->m_apps.size();
}

AppInfo *AppInfoList::appAt(QQmlListProperty<AppInfo> *property, int index)
{
    return static_cast<AppInfoList *>(property->object)->m_apps.value(index);
}

int AppInfoList::filteredAppCount(QQmlListProperty<AppInfo> *property)
{
    return static_cast<AppInfoList *>(property->object)->m_filteredApps.size();
}

AppInfo *AppInfoList::filteredAppAt(QQmlListProperty<AppInfo> *property, int index)
{
    return static_cast<AppInfoList *>(property->object)->m_filteredApps.value(index);
}

void AppInfoList::setPortal(QObject *portal)
{
    QObject *former = m_portalObject.portal();
    if (former == portal)
        return;
    if (former && m_portalObject.isPortal())
        disconnect(former, SIGNAL(signedInChanged()), this, SLOT(onSignedInChanged()));
    m_portalObject.setPortal(portal);
    if (portal && m_portalObject.isPortal())
        connect(portal, SIGNAL(signedInChanged()), this, SLOT(onSignedInChanged()));
    emit portalChanged();
}

void AppInfoList::setSigninRequired(bool required)
{
    if (assignIfChanged(m_signinRequired, required))
        emit signinRequiredChanged();
}

void AppInfoList::setAutoRefresh(bool autoRefresh)
{
    if (assignIfChanged(m_autoRefresh, autoRefresh))
        emit autoRefreshChanged();
}

bool AppInfoList::isSignedIn() const
{
    return m_portalObject.isPortal() && m_portalObject.isSignedIn();
}

void AppInfoList::setRefreshing(bool refreshing)
{
    if (assignIfChanged(m_isRefreshing, refreshing))
        emit isRefreshingChanged();
}

void AppInfoList::refresh(bool search)
{
    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO << (search ? "true" : "false");
    emit refreshStart();
    appListChanged();
    if (search && (isSignedIn() || !m_signinRequired)) {
        searchPortal();
        return;
    }
    emit refreshComplete();
}

void AppInfoList::refresh()
{
    refresh(false);
}

void AppInfoList::appListChanged()
{
    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO;
    clearApplets();
    refreshApplets();
    emit appsChanged();
    onFilterChanged();
}

void AppInfoList::clearApplets()
{
    m_tags.clear();
    m_owners.clear();
    m_access.clear();
    m_tagsPresent = {};
    m_ownersPresent = {};
    m_accessPresent = {};
    m_apps.clear();
    forgetIndex();
    m_onlineUpdatesCount = 0;
    m_localUpdatesCount = 0;
}

void AppInfoList::onFilterChanged()
{
    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO;
    m_filteredApps.clear(); // filled again when it is read
    emit filteredAppsChanged();
    emit countsChanged();
}

void AppInfoList::refreshFilteredApplets()
{
    for (AppInfo *app : qAsConst(m_apps)) {
        if (m_filter.matches(app))
            m_filteredApps.append(app);
    }
    sortApplets();
}

void AppInfoList::refreshApplets()
{
    const QScopedValueRollback<bool> reading(m_isReading, true);
    // Only the folders of the kinds that the filter selects.
    const int types = m_filter.types();
    QString paths;
    if (types & AppInfo::App)
        paths += appsSearchPath(-1) + pathSeparator;
    if (types & AppInfo::Template)
        paths += templatesSearchPath(-1) + pathSeparator;
    if (types & AppInfo::Tool)
        paths += toolboxSearchPath(-1) + pathSeparator;
    refreshApplets(paths);
    if (isSignedIn() || !m_signinRequired)
        refreshPortalItems();
    sortApplets();
    updateLists();
    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO << "AppInfos #" << m_apps.size() << "Online updates"
                            << m_onlineUpdatesCount << "Local updates" << m_localUpdatesCount;
    emit countsChanged();
}

void AppInfoList::refreshApplets(const QString &paths)
{
    clearApplets();
    if (!m_nullTitle.isEmpty())
        addNullEntry();
    const QStringList folders = splitPaths(paths);
    for (const QString &folder : folders)
        addApplets(folder);
}

// Has no item id, so that it sorts first.
void AppInfoList::addNullEntry()
{
    auto *entry = new AppInfo(QString(), nullptr);
    entry->setTitle(m_nullTitle);
    entry->setThumbnailPath(m_nullThumbnail);
    entry->setNullEntry();
    addApplet(entry);
}

void AppInfoList::addApplets(const QString &path)
{
    const QDir dir(path);
    const QStringList names = folderNames(dir);
    for (const QString &name : names) {
        if (m_filter.hidden()
            && (name.startsWith(QLatin1Char('.')) || name.startsWith(QLatin1Char('_'))))
            continue;
        auto app = AppInfo::fromFolder(dir.filePath(name));
        if (!app || !m_filter.matchesTypes(app.get()))
            continue;
        if (!m_filter.owner().isEmpty() && m_filter.owner() != app->owner())
            continue;
        addAppInfo(app.get());
        addApplet(app.release());
    }
}

void AppInfoList::Collection::add(const QString &text, QStringList &list)
{
    if (text.isEmpty() || present.contains(text))
        return;
    present.insert(text);
    list.append(text);
}

void AppInfoList::addAppInfo(AppInfo *app)
{
    const QStringList tags = app->tags();
    for (const QString &tag : tags)
        m_tagsPresent.add(tag, m_tags);
    m_ownersPresent.add(app->owner(), m_owners);
    m_accessPresent.add(app->access(), m_access);
}

void AppInfoList::addApplet(AppInfo *app)
{
    m_apps.append(app);
    forgetIndex();
    if (m_filter.matches(app))
        m_filteredApps.append(app);
}

void AppInfoList::updateLists()
{
    // Every app has these.
    for (const char *word : {"Qml", "qml", "QML", "app", "App"})
        m_tags.removeAll(QLatin1String(word));
    sortIgnoringCase(m_tags);
    sortIgnoringCase(m_owners);
    sortIgnoringCase(m_access);
    emit tagsChanged();
    emit ownersChanged();
    emit accessChanged();
}

// Local apps learn from the portal's items whether they are current; other items become apps.
void AppInfoList::refreshPortalItems()
{
    QHash<QString, AppInfo *> byId;
    for (auto it = m_apps.crbegin(); it != m_apps.crend(); ++it)
        byId.insert((*it)->itemId(), *it); // backwards, so that the first of equal ids stays
    for (const QVariantMap &item : qAsConst(m_portalItems)) {
        const QString id = item.value(QStringLiteral("id")).toString();
        if (AppInfo *app = byId.value(id)) {
            app->statusUpdate(item);
            m_onlineUpdatesCount += app->isUpdateAvailable() ? 1 : 0;
            m_localUpdatesCount += app->isUpdatedLocally() ? 1 : 0;
            if (m_filter.matches(app))
                m_filteredApps.append(app);
            continue;
        }
        auto app = std::make_unique<AppInfo>(item, nullptr);
        if (!m_filter.matchesTypes(app.get()))
            continue;
        addAppInfo(app.get());
        byId.insert(id, app.get());
        addApplet(app.release());
    }
}

// For the pages of a search, which don't change the list.
const QHash<QString, AppInfo *> &AppInfoList::appsById()
{
    if (!m_appsById.isEmpty())
        return m_appsById;
    for (auto it = m_apps.crbegin(); it != m_apps.crend(); ++it) {
        m_appsById.insert((*it)->itemId(), *it); // backwards, so that the first of equal ids stays
        connect(*it, &AppInfo::itemIdChanged, this, &AppInfoList::forgetIndex,
                Qt::UniqueConnection);
    }
    return m_appsById;
}

void AppInfoList::forgetIndex()
{
    m_appsById.clear();
    m_foundApps.clear();
    m_soughtItems = 0;
}

void AppInfoList::clearPortalItems()
{
    m_portalItems.clear();
    m_portalItemIds.clear();
    m_addressedItems = 0;
    m_foundApps.clear();
    m_soughtItems = 0;
}

AppInfo *AppInfoList::findById(const QString &id)
{
    for (AppInfo *app : qAsConst(m_apps)) {
        if (app->itemId() == id)
            return app;
    }
    return nullptr;
}

AppInfo *AppInfoList::findByPath(const QString &path) const
{
    for (AppInfo *app : m_apps) {
        if (app->path() == path)
            return app;
    }
    return nullptr;
}

bool AppInfoList::findPortalItem(const QString &id, QVariantMap &item) const
{
    for (const QVariantMap &candidate : m_portalItems) {
        if (candidate.value(QStringLiteral("id")) == QVariant(id)) {
            item = candidate;
            return true;
        }
    }
    return false;
}

void AppInfoList::itemDownloaded(const QString &id)
{
    QVariantMap item;
    AppInfo *app = findById(id);
    if (!app || !findPortalItem(id, item))
        return;
    app->statusUpdate(item);
    appListChanged();
}

void AppInfoList::searchPortal()
{
    if (m_isRefreshing) {
        qCCritical(FRAMEWORK_MANAGER) << Q_FUNC_INFO << "Refresh already in progress";
        return;
    }
    qCDebug(FRAMEWORK_MANAGER) << Q_FUNC_INFO;
    setRefreshing(true);
    clearPortalItems();
    startSearch(1);
}

void AppInfoList::startSearch(int start)
{
    const QVariantMap parameters{
        {QStringLiteral("token"), m_portalObject.token()},
        {QStringLiteral("f"), QStringLiteral("pjson")},
        {QStringLiteral("start"), start},
        {QStringLiteral("num"), searchPageSize},
        {QStringLiteral("q"), m_searchQuery},
    };
    const QUrl url(m_portalObject.restUrl() + QLatin1String("/search"));
    m_request.setUrl(url);
    qCDebug(FRAMEWORK_MANAGER) << Q_FUNC_INFO << url << parameters;
    m_request.send(QVariant(parameters));
}

void AppInfoList::onReadyStateChanged()
{
    qCDebug(FRAMEWORK_NETWORK) << Q_FUNC_INFO << m_request.readyState();
    if (m_request.readyState() != NetworkRequest::ReadyStateComplete)
        return;
    if (m_request.status() != NetworkRequest::StatusCodeOK) {
        qCCritical(FRAMEWORK_NETWORK)
            << Q_FUNC_INFO << "statusCode" << m_request.status() << m_request.statusText();
        return;
    }
    const QVariantMap map = m_request.response().toMap();
    if (map.contains(QStringLiteral("error")))
        qCCritical(FRAMEWORK_NETWORK) << Q_FUNC_INFO << "error" << map;
    else
        processResponse(map);
}

void AppInfoList::processResponse(const QVariantMap &map)
{
    const int nextStart = map.value(QStringLiteral("nextStart")).toInt();
    const QVariantList results = map.value(QStringLiteral("results")).toList();
    for (const QVariant &result : results) {
        const QVariantMap item = result.toMap();
        const QString id = item.value(QStringLiteral("id")).toString();
        if (staysInFolder(id)) {
            m_portalItems.append(item);
            m_portalItemIds.append(id);
        } else
            qCCritical(FRAMEWORK_MANAGER) << Q_FUNC_INFO << "Not an item id:" << id;
    }
    qCDebug(FRAMEWORK_MANAGER) << Q_FUNC_INFO << "Count" << m_portalItems.size();
    processSearchResults();
    qCDebug(FRAMEWORK_MANAGER) << Q_FUNC_INFO << "nextStart" << nextStart;
    if (nextStart >= 1) {
        qCDebug(FRAMEWORK_MANAGER) << Q_FUNC_INFO << "Search for next page of items" << nextStart;
        startSearch(nextStart);
        return;
    }
    qCDebug(FRAMEWORK_MANAGER) << Q_FUNC_INFO << "Search completed";
    setRefreshing(false);
    emit refreshComplete();
    appListChanged();
}

// All items again at each page: each app that is one of them is told. Their addresses change with
// the token only, and their apps with the list.
void AppInfoList::processSearchResults()
{
    const QHash<QString, AppInfo *> &byId = appsById();
    for (; m_soughtItems < m_portalItemIds.size(); ++m_soughtItems) {
        if (AppInfo *app = byId.value(m_portalItemIds.at(m_soughtItems)))
            m_foundApps.append(app);
    }
    addressItems();
    // A handler may sign out, which drops the items, or read the list anew and free the former apps.
    const QVector<QPointer<AppInfo>> shown = m_foundApps;
    for (const QPointer<AppInfo> &app : shown) {
        if (app)
            emit app->thumbnailChanged();
    }
}

void AppInfoList::addressItems()
{
    const QString itemsUrl = m_portalObject.restUrl() + QLatin1String("/content/items/");
    const QString token = m_portalObject.token();
    const QString base = itemsUrl + QLatin1Char(' ') + token;
    if (m_addressBase != base || FRAMEWORK_MANAGER().isDebugEnabled())
        m_addressedItems = 0; // each item's log line, too
    m_addressBase = base;
    for (; m_addressedItems < m_portalItems.size(); ++m_addressedItems) {
        QVariantMap &item = m_portalItems[m_addressedItems];
        const QString &id = m_portalItemIds.at(m_addressedItems);
        item.insert(QStringLiteral("thumbnailUrl"), thumbnailUrl(item, id, itemsUrl, token));
    }
}

QUrl AppInfoList::thumbnailUrl(const QVariantMap &item, const QString &id, const QString &itemsUrl,
                               const QString &token)
{
    const QString thumbnail = item.value(QStringLiteral("thumbnail")).toString();
    if (thumbnail.isEmpty()) {
        qCDebug(FRAMEWORK_MANAGER) << Q_FUNC_INFO << "Using default thumbnail" << id;
        return FileUtility::resolvedPathUrl(QStringLiteral(":/images/defaultThumbnail.png"), true);
    }
    return QUrl(itemsUrl + id + QLatin1String("/info/") + thumbnail + QLatin1String("?token=")
                + token);
}

// The keys are computed once for both lists: the date of a local app lists its folder.
template <typename Key, typename KeyOf>
void AppInfoList::sortBy(KeyOf keyOf)
{
    QHash<AppInfo *, Key> keys;
    keys.reserve(m_apps.size());
    std::vector<std::pair<Key, AppInfo *>> keyed;
    const bool descending = m_sortOrder == Descending;
    for (QList<AppInfo *> *list : {&m_apps, &m_filteredApps}) {
        keyed.clear();
        for (AppInfo *app : qAsConst(*list)) {
            const auto known = keys.constFind(app);
            const auto key = known == keys.constEnd() ? keys.insert(app, keyOf(app)) : known;
            keyed.emplace_back(key.value(), app);
        }
        std::stable_sort(keyed.begin(), keyed.end(), [descending](const auto &a, const auto &b) {
            return descending ? b.first < a.first : a.first < b.first;
        });
        std::transform(keyed.begin(), keyed.end(), list->begin(),
                       [](const auto &entry) { return entry.second; });
    }
}

void AppInfoList::sortApplets()
{
    if (m_sortKind == sortByDateKind)
        sortBy<QDateTime>([](AppInfo *app) { return app->modified(); });
    else
        sortBy<QString>([](AppInfo *app) { return app->sortKey(); });
}

void AppInfoList::sortByName(SortOrder order)
{
    m_sortOrder = order;
    m_sortKind = 0;
}

void AppInfoList::sortByDate(SortOrder order)
{
    m_sortOrder = order;
    m_sortKind = sortByDateKind;
}

void AppInfoList::clearSort()
{
    m_sortOrder = 0;
    m_sortKind = 0;
}

void AppInfoList::onSignedInChanged()
{
    const bool signedIn = isSignedIn();
    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO << signedIn;
    if (!signedIn)
        clearPortalItems();
    else if (m_autoRefresh)
        searchPortal();
    appListChanged();
}

void AppInfoList::onOnlineStateChanged(bool online)
{
    Q_UNUSED(online)
    appListChanged();
}

QStringList AppInfoList::appsSearchPaths() const
{
    return splitPaths(appsSearchPath(-1));
}

void AppInfoList::setSearchPaths(const QStringList &paths)
{
    m_appsSearchPaths = paths.join(pathSeparator);
    emit searchPathsChanged();
}

QString AppInfoList::dataPath() const
{
    return folderPath(Data);
}

QString AppInfoList::folderPath(FolderType type) const
{
    return folderDir(type).path();
}

QDir AppInfoList::folderDir(FolderType type) const
{
    switch (type) {
    case Apps:
        return QDir(appsSearchPath(0));
    case Templates:
        return QDir(templatesSearchPath(0));
    case Tools:
        return QDir(toolboxSearchPath(0));
    case Data:
        return m_dataFolder;
    case Modules:
        return m_modulesFolder;
    case Settings:
        return m_settingsFolder;
    }
    return QDir(QString());
}

QDir &AppInfoList::cacheDir()
{
    if (m_cacheFolder.path().isEmpty() || m_cacheFolder.path() == QLatin1String("."))
        m_cacheFolder.setPath(folderSetting("cachePath", "~/Zemrik/Halvora/.cache"));
    if (m_cacheFolder.exists())
        return m_cacheFolder;

    if (!FileUtility::mkpath(m_cacheFolder))
        qCCritical(FRAMEWORK_CORE) << Q_FUNC_INFO << "Error creating" << m_cacheFolder.path();
    FileUtility::setHidden(m_cacheFolder.path(), true);
    return m_cacheFolder;
}

QDir AppInfoList::cacheDir(CacheDir dir)
{
    return dir == Packages ? cacheDir(QStringLiteral("packages")) : cacheDir();
}

QDir AppInfoList::cacheDir(const QString &subfolder)
{
    const QDir dir(cacheDir().filePath(subfolder));
    if (!FileUtility::mkpath(dir))
        qCCritical(FRAMEWORK_CORE) << Q_FUNC_INFO << "Error creating subdir:" << dir.path();
    return dir;
}

// One element of the joined paths, the last one for an index past the end; all of them, joined, for
// a negative index.
QString AppInfoList::searchPath(const QString &paths, int index, const QString &defaultPath)
{
    const QString &joined = paths.isEmpty() ? defaultPath : paths;
    if (index < 0)
        return joined;
    const QStringList parts = splitPaths(joined);
    return parts.isEmpty() ? QString() : parts.at(qMin(index, parts.size() - 1));
}

// The settings are asked each time: a host may move a folder while a catalogue lives.
QString AppInfoList::defaultAppsSearchPath()
{
    return folderSetting("appletsPath", "~/Zemrik/Halvora/Apps");
}

QString AppInfoList::defaultTemplatesSearchPath()
{
    return folderSetting("templatesPath", "~/Zemrik/Halvora/Templates");
}

QString AppInfoList::defaultToolboxSearchPath()
{
    return folderSetting("toolboxPath", "~/Zemrik/Halvora/Toolbox");
}

QString AppInfoList::appsSearchPath(int index) const
{
    return searchPath(m_appsSearchPaths, index, defaultAppsSearchPath());
}

QString AppInfoList::templatesSearchPath(int index) const
{
    return searchPath(m_templatesSearchPaths, index, defaultTemplatesSearchPath());
}

QString AppInfoList::toolboxSearchPath(int index) const
{
    return searchPath(m_toolboxSearchPaths, index, defaultToolboxSearchPath());
}

#include "moc_AppInfoList.cpp"
