#include "catalogue/AppFolder.h"
#include "catalogue/AppInfoList.h"
#include "catalogue/AppPackage.h"
#include "support/DevelopmentPortal.h"
#include "support/HttpServer.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"
#include "support/PortalElement.h"
#include "support/RawServer.h"
#include "support/SignalRecorder.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLoggingCategory>
#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QSignalSpy>

#include <map>

// The list of apps: what of the disk gets into it, in which order, and how a portal's items meet
// it.
class tst_AppCatalogue : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void defaults();
    void settersSignalChangesOnly();
    void refreshSignalsInTheirOrder();
    void refreshWithoutSearch();
    void listsAreFilledWhenTheyAreRead();
    void handlersMayReadTheEmptyList();
    void filteredListIsOfTheAppsThatWereRead();
    void filteredListFollowsTheFilter();
    void hiddenFolders_data();
    void hiddenFolders();
    void onlyDirectSubfoldersCount();
    void onlyFoldersOfTheSelectedKindsAreRead_data();
    void onlyFoldersOfTheSelectedKindsAreRead();
    void ownerIsComparedExactly();
    void nullEntry();
    void collectedWords();
    void samePathTwiceGivesTwoEntries();
    void sorting_data();
    void sorting();
    void newOrderShowsAtTheNextRefresh();
    void findByIdAndPath();
    void refreshIsLogged();

    void searchRequest();
    void searchWithoutAPortalAsksThePublicOne();
    void firstPageIsOne();
    void everyPageIsLoggedAndHandledAgain();
    void everyPageTellsAllAppsBeforeIt_data();
    void everyPageTellsAllAppsBeforeIt();
    void pagesMeetTheListAsItIs();
    void anotherTokenChangesTheAddressesOfAllPages();
    void formerAppsMayGoOutOfAThumbnailsSignal();
    void foldersThatAreNoAppsAreNotRead();
    void thumbnails();
    void signOutOutOfAThumbnailsSignal();
    void portalItemsOfOtherTypesAreLeftOut();
    void ownerFilterLeavesPortalItemsAlone();
    void updatesAreCounted();
    void refreshDuringASearch();
    void signOutDuringASearch();
    void twoPortalsInOneProcess();
    void signInAndOutSignalInTheirOrder();
    void signInWithoutAutoRefresh();
    void objectThatIsNoPortal();
    void portalThatGoesAway();
    void itemThatComesTwiceIsOneApp();
    void itemsWithoutAnId();
    void searchGoesThroughTheEnginesManager();
    void anotherPortalIsNoLongerHeard();
    void itemDownloadedUpdatesItsApp();
    void onlineStateReadsTheListAgain();

private:
    AppInfoList *list() { return m_list.get(); }
    QStringList ids(bool filtered = false);
    void writeApp(const QString &folder, const QByteArray &itemInfo,
                  const QByteArray &appInfo = "{}");
    void usePortal(const QByteArray &answer);
    void usePortalOfPages(int count, const QByteArray &thumbnail = "t.png");
    void search();

    QQmlEngine m_engine;
    HttpServer m_server;
    std::unique_ptr<QObject> m_portal;
    std::unique_ptr<AppInfoList> m_list;
};

namespace {

const char core[] = "Zemrik.Tessaline.Core";
const char manager[] = "Zemrik.Tessaline.Manager";

HttpServer::Handler answering(const QByteArray &body)
{
    return [body](const HttpServer::Request &) {
        return HttpServer::Answer{body, 200, "application/json"};
    };
}

} // namespace

void tst_AppCatalogue::init()
{
    QDir(QDir::homePath() + "/Zemrik").removeRecursively();
    m_server.clearRequests();
    m_list = std::make_unique<AppInfoList>();
}

void tst_AppCatalogue::cleanup()
{
    m_list.reset();
    m_portal.reset();
}

QStringList tst_AppCatalogue::ids(bool filtered)
{
    QQmlListProperty<AppInfo> apps = filtered ? m_list->filteredApps() : m_list->apps();
    QStringList result;
    for (int i = 0; i < apps.count(&apps); ++i)
        result.append(apps.at(&apps, i)->itemId());
    return result;
}

void tst_AppCatalogue::writeApp(const QString &folder, const QByteArray &itemInfo,
                                const QByteArray &appInfo)
{
    QVERIFY(QDir().mkpath(home(folder)));
    for (const auto &[name, content] :
         {std::pair{"/appinfo.json", appInfo}, std::pair{"/iteminfo.json", itemInfo}}) {
        QFile file(home(folder) + QLatin1String(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), content.size());
    }
}

// A portal with one answer for every search.
void tst_AppCatalogue::usePortal(const QByteArray &answer)
{
    m_server.on("/sharing/rest/search", answering(answer));
    m_portal = makePortalElement(m_engine, m_server.url("").toString());
    m_list->setPortal(m_portal.get());
    m_list->setSigninRequired(false);
}

// A portal with one item on each page: i1, i2, ...
void tst_AppCatalogue::usePortalOfPages(int count, const QByteArray &thumbnail)
{
    usePortal("{}");
    m_server.on("/sharing/rest/search", [=](const HttpServer::Request &request) {
        const QUrlQuery form(QString::fromUtf8(request.body));
        const int page = form.queryItemValue("start").toInt();
        const QJsonObject item{{"id", QString("i%1").arg(page)},
                               {"thumbnail", QString::fromUtf8(thumbnail)}};
        const QJsonObject answer{{"results", QJsonArray{item}},
                                 {"nextStart", page < count ? page + 1 : -1}};
        return HttpServer::Answer{QJsonDocument(answer).toJson(), 200, "application/json"};
    });
}

void tst_AppCatalogue::search()
{
    QSignalSpy complete(list(), &AppInfoList::refreshComplete);
    list()->refresh(true);
    QVERIFY(complete.wait());
}

void tst_AppCatalogue::defaults()
{
    QCOMPARE(list()->searchQuery(),
             QString("((type:\"Native Application\" AND NOT type:\"Native Application Installer\") "
                     "OR (tags:\"app\" AND tags:\"qml\" AND type:\"Code Sample\"))"));
    QVERIFY(list()->signinRequired() && list()->autoRefresh() && !list()->isRefreshing());
    QCOMPARE(list()->nullTitle(), QString());
    QCOMPARE(list()->nullThumbnail(), QUrl());
    QCOMPARE(list()->onlineUpdatesCount() + list()->localUpdatesCount(), 0);
    QVERIFY(list()->tags().isEmpty() && list()->owners().isEmpty() && list()->access().isEmpty());
    QVERIFY(!list()->portal());
}

void tst_AppCatalogue::settersSignalChangesOnly()
{
    m_portal = makePortalElement(m_engine, m_server.url("").toString());
    SignalRecorder recorder(list());
    for (int i = 0; i < 2; ++i) {
        list()->setPortal(m_portal.get());
        list()->setSigninRequired(false);
        list()->setAutoRefresh(false);
        list()->setSearchQuery("q");
        list()->setNullTitle("t");
        list()->setNullThumbnail(QUrl("http://x"));
    }
    QCOMPARE(recorder.names(),
             QStringList({"portalChanged", "signinRequiredChanged", "autoRefreshChanged"}));
    QCOMPARE(list()->searchQuery(), QString("q"));
    QCOMPARE(m_server.requestCount(), 0); // no search by itself
}

void tst_AppCatalogue::refreshSignalsInTheirOrder()
{
    SignalRecorder recorder(list());
    list()->refresh(false);
    QCOMPARE(recorder.take(),
             QStringList({"refreshStart", "tagsChanged", "ownersChanged", "accessChanged",
                          "countsChanged", "appsChanged", "filteredAppsChanged", "countsChanged",
                          "refreshComplete"}));
    list()->refresh(true); // not signed in
    QCOMPARE(recorder.take().last(), QString("refreshComplete"));
    QVERIFY(!list()->isRefreshing());
}

void tst_AppCatalogue::refreshWithoutSearch()
{
    usePortal("{}");
    list()->refresh();
    list()->refresh(false);
    QVERIFY(!list()->isRefreshing());
    QTest::qWait(0);
    QCOMPARE(m_server.requestCount(), 0);
}

void tst_AppCatalogue::listsAreFilledWhenTheyAreRead()
{
    writeApp("Apps/a", "{\"id\": \"a\"}");
    QCOMPARE(ids(), QStringList({"a"})); // without a refresh
    writeApp("Apps/b", "{\"id\": \"b\"}");
    QCOMPARE(ids(), QStringList({"a"}));
    list()->refresh();
    QCOMPARE(ids(), QStringList({"a", "b"}));
}

// Reading an empty list fills it, which tells of counts and words: a handler of that may read it too.
void tst_AppCatalogue::handlersMayReadTheEmptyList()
{
    int calls = 0;
    const auto read = [this, &calls] {
        ++calls;
        QCOMPARE(ids(), QStringList());
        QCOMPARE(ids(true), QStringList());
    };
    for (const auto signal :
         {&AppInfoList::countsChanged, &AppInfoList::tagsChanged, &AppInfoList::ownersChanged,
          &AppInfoList::accessChanged, &AppInfoList::filteredAppsChanged})
        connect(list(), signal, this, read);
    QCOMPARE(ids(), QStringList());
    QCOMPARE(calls, 4);
    list()->refresh();
    QVERIFY(calls > 4);
    writeApp("Apps/a", "{\"id\": \"a\"}");
    disconnect(list(), nullptr, this, nullptr);
    QCOMPARE(ids(), QStringList({"a"}));
}

void tst_AppCatalogue::filteredListIsOfTheAppsThatWereRead()
{
    writeApp("Apps/a", "{\"id\": \"a\"}");
    QCOMPARE(ids(true), QStringList()); // nothing has been read from the disk
    QCOMPARE(ids(), QStringList({"a"}));
    QCOMPARE(ids(true), QStringList({"a"}));
    list()->refresh();
    QCOMPARE(ids(true), QStringList({"a"}));
    QCOMPARE(ids(true), QStringList({"a"}));
}

void tst_AppCatalogue::filteredListFollowsTheFilter()
{
    writeApp("Apps/a", "{\"id\": \"a\", \"title\": \"First\"}");
    writeApp("Apps/b", "{\"id\": \"b\", \"title\": \"Second\"}");
    list()->refresh();
    QCOMPARE(ids(true), QStringList({"a", "b"}));
    SignalRecorder recorder(list());
    list()->filter()->setText("sec");
    QCOMPARE(recorder.names(), QStringList({"filteredAppsChanged", "countsChanged"}));
    QCOMPARE(ids(true), QStringList({"b"}));
    QCOMPARE(ids(), QStringList({"a", "b"}));
    list()->filter()->setText("nothing");
    QCOMPARE(ids(true), QStringList());
    QCOMPARE(ids(true), QStringList()); // each read does the work again
    list()->filter()->setText("");
    QCOMPARE(ids(true), QStringList({"a", "b"}));
}

void tst_AppCatalogue::hiddenFolders_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<bool>("hidden");
    QTest::addColumn<bool>("listed");
    QTest::newRow("plain") << "old" << true << true;
    QTest::newRow("underscore, hidden") << "_old" << true << false;
    QTest::newRow("underscore, shown") << "_old" << false << true;
    QTest::newRow("underscore inside") << "o_ld" << true << true;
    // QDir doesn't list it either way.
    QTest::newRow("dot, hidden") << ".old" << true << false;
    QTest::newRow("dot, shown") << ".old" << false << false;
}

void tst_AppCatalogue::hiddenFolders()
{
    QFETCH(QString, folder);
    QFETCH(bool, hidden);
    writeApp("Apps/" + folder, "{\"id\": \"x\"}");
    list()->filter()->setHidden(hidden);
    list()->refresh();
    QTEST(!ids().isEmpty(), "listed");
}

void tst_AppCatalogue::onlyDirectSubfoldersCount()
{
    writeApp("Apps/a", "{\"id\": \"a\"}");
    writeApp("Apps/folder/deep", "{\"id\": \"deep\"}");
    QVERIFY(QDir().mkpath(home("Apps/empty")));
    writeApp("Apps", "{\"id\": \"top\"}");
    list()->refresh();
    QCOMPARE(ids(), QStringList({"a"}));
}

void tst_AppCatalogue::onlyFoldersOfTheSelectedKindsAreRead_data()
{
    QTest::addColumn<int>("types");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("none") << 0 << QStringList();
    QTest::newRow("apps") << 1 << QStringList({"app"});
    QTest::newRow("templates") << 2 << QStringList({"template"});
    QTest::newRow("tools") << 4 << QStringList({"tool"});
    // A template among the apps counts as soon as both the folder and its kind are selected.
    QTest::newRow("apps and templates") << 3 << QStringList({"app", "stray template", "template"});
    QTest::newRow("all") << 7 << QStringList({"app", "stray template", "template", "tool"});
}

void tst_AppCatalogue::onlyFoldersOfTheSelectedKindsAreRead()
{
    QFETCH(int, types);
    const auto info = [](const QByteArray &id, const QByteArray &keyword) {
        return "{\"id\": \"" + id + "\", \"title\": \"" + id + "\", \"typeKeywords\": [\"" + keyword
               + "\"]}";
    };
    writeApp("Apps/a", info("app", "App"));
    writeApp("Apps/t", info("stray template", "Template"));
    writeApp("Templates/t", info("template", "Template"));
    writeApp("Toolbox/t", info("tool", "Tool"));
    list()->filter()->_setTypes(types);
    list()->refresh();
    QTEST(ids(), "expected");
}

void tst_AppCatalogue::ownerIsComparedExactly()
{
    writeApp("Apps/a", "{\"id\": \"a\", \"owner\": \"jo\"}");
    writeApp("Apps/b", "{\"id\": \"b\", \"owner\": \"Jo\"}");
    writeApp("Apps/c", "{\"id\": \"c\"}");
    list()->filter()->setOwner("jo");
    list()->refresh();
    QCOMPARE(ids(), QStringList({"a"}));
    QCOMPARE(list()->owners(), QStringList({"jo"}));
}

void tst_AppCatalogue::nullEntry()
{
    writeApp("Apps/a", "{\"id\": \"a\", \"title\": \" first\"}");
    list()->setNullTitle("No app");
    list()->setNullThumbnail(QUrl::fromLocalFile("/tmp/none.png"));
    list()->refresh();
    QCOMPARE(ids(), QStringList({"", "a"}));
    QQmlListProperty<AppInfo> apps = list()->apps();
    AppInfo *entry = apps.at(&apps, 0);
    QCOMPARE(entry->title(), QString("No app"));
    QCOMPARE(entry->path(), QString("."));
    QCOMPARE(entry->sortKey(), QString());
    QVERIFY(!entry->isLocal() && !entry->isPublished());
    QCOMPARE(entry->thumbnail(), QUrl::fromLocalFile("/tmp/none.png")); // though there is no file
    QCOMPARE(ids(true), QStringList({"", "a"}));
    list()->filter()->setLocal(true);
    QCOMPARE(ids(true), QStringList({"a"}));
}

void tst_AppCatalogue::collectedWords()
{
    writeApp("Apps/a", "{\"id\": \"a\", \"tags\": [\"beta\", \"App\", \"qml\", \"Alpha\", \"APP\"],"
                       "\"owner\": \"jo\", \"access\": \"public\"}");
    writeApp("Apps/b", "{\"id\": \"b\", \"tags\": [\"beta\", \"app\", \"Qml\", \"QML\", \"Beta\"],"
                       "\"owner\": \"Al\", \"access\": \"org\"}");
    writeApp("Apps/c", "{\"id\": \"c\", \"tags\": [\"\"], \"owner\": \"\"}");
    list()->refresh();
    QStringList tags = list()->tags();
    QCOMPARE(tags.mid(0, 2), QStringList({"Alpha", "APP"})); // only five spellings are left out
    tags = tags.mid(2);
    tags.sort();
    QCOMPARE(tags, QStringList({"Beta", "beta"}));
    QCOMPARE(list()->owners(), QStringList({"Al", "jo"}));
    QCOMPARE(list()->access(), QStringList({"org", "public"}));
    QVERIFY(QDir(home("Apps")).removeRecursively());
    list()->refresh();
    QVERIFY(list()->tags().isEmpty() && list()->owners().isEmpty() && list()->access().isEmpty());
}

void tst_AppCatalogue::samePathTwiceGivesTwoEntries()
{
    writeApp("Apps/a", "{\"id\": \"a\"}");
    list()->setSearchPaths({home("Apps"), home("Apps")});
    list()->refresh();
    QCOMPARE(ids(), QStringList({"a", "a"}));
}

void tst_AppCatalogue::sorting_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<AppInfoList::SortOrder>("order");
    QTest::addColumn<QStringList>("expected");
    const QStringList byName{"c", "b", "a"};
    const QStringList byDate{"b", "a", "c"};
    QTest::newRow("none") << "" << AppInfoList::Ascending << byName;
    QTest::newRow("name") << "name" << AppInfoList::Ascending << byName;
    QTest::newRow("name, descending")
        << "name" << AppInfoList::Descending << QStringList({"a", "b", "c"});
    QTest::newRow("date") << "date" << AppInfoList::Ascending << byDate;
    QTest::newRow("date, descending")
        << "date" << AppInfoList::Descending << QStringList({"c", "a", "b"});
    QTest::newRow("order that isn't one") << "name" << AppInfoList::SortOrder(7) << byName;
}

void tst_AppCatalogue::sorting()
{
    QFETCH(QString, kind);
    QFETCH(AppInfoList::SortOrder, order);
    writeApp("Apps/1", "{\"id\": \"a\", \"title\": \"Zeta\"}");
    writeApp("Apps/2", "{\"id\": \"b\", \"title\": \"beta\"}");
    writeApp("Apps/3", "{\"id\": \"c\", \"title\": \"Alpha\"}");
    int day = 1;
    for (const char *app : {"2", "1", "3"}) {
        for (const char *file : {"appinfo.json", "iteminfo.json"}) {
            QFile out(home(QString("Apps/%1/%2").arg(app, file)));
            QVERIFY(out.open(QIODevice::ReadWrite));
            QVERIFY(out.setFileTime(QDateTime(QDate(2020, 1, day), QTime(12, 0)),
                                    QFileDevice::FileModificationTime));
        }
        ++day;
    }
    if (kind == "name")
        list()->sortByName(order);
    else if (kind == "date")
        list()->sortByDate(order);
    list()->refresh();
    QTEST(ids(), "expected");
    QTEST(ids(true), "expected");
    list()->clearSort();
    list()->refresh();
    QCOMPARE(ids(), QStringList({"c", "b", "a"}));
}

void tst_AppCatalogue::newOrderShowsAtTheNextRefresh()
{
    writeApp("Apps/1", "{\"id\": \"a\", \"title\": \"A\"}");
    writeApp("Apps/2", "{\"id\": \"b\", \"title\": \"B\"}");
    list()->refresh();
    SignalRecorder recorder(list());
    list()->sortByName(AppInfoList::Descending);
    QCOMPARE(recorder.names(), QStringList());
    QCOMPARE(ids(), QStringList({"a", "b"}));
    list()->refresh();
    QCOMPARE(ids(), QStringList({"b", "a"}));
}

void tst_AppCatalogue::findByIdAndPath()
{
    writeApp("Apps/1", "{\"id\": \"abc\", \"title\": \"A\"}");
    writeApp("Apps/2", "{\"id\": \"abc\", \"title\": \"B\"}");
    list()->refresh();
    QCOMPARE(list()->findById("abc")->title(), QString("A")); // the first one
    QVERIFY(!list()->findById("ABC"));
    QCOMPARE(list()->findByPath(home("Apps/2"))->title(), QString("B"));
    QVERIFY(!list()->findByPath(home("apps/2")));
    QVariantMap item;
    QVERIFY(!list()->findPortalItem("abc", item));
}

void tst_AppCatalogue::refreshIsLogged()
{
    writeApp("Apps/1", "{\"id\": \"a\"}");
    LogCapture log;
    list()->refresh();
    QCOMPARE(log.count(QtDebugMsg, core, "refresh(bool) false"), 1);
    QCOMPARE(log.count(QtDebugMsg, core, "AppInfos # 1 Online updates 0 Local updates 0"), 1);
    list()->refresh(true);
    QCOMPARE(log.count(QtDebugMsg, core, "refresh(bool) true"), 1);
    list()->classBegin();
    QCOMPARE(log.count(QtDebugMsg, core, "classBegin"), 1);
}

void tst_AppCatalogue::searchRequest()
{
    usePortal("{\"results\": [{\"id\": \"x\"}]}");
    list()->setAutoRefresh(false);
    m_portal->setProperty("token", "@token&x");
    list()->setSearchQuery("owner:\"jo\" AND x");
    LogCapture log;
    search();
    const HttpServer::Request request = m_server.lastRequest();
    QCOMPARE(request.method, QByteArray("POST"));
    QCOMPARE(request.target, QByteArray("/sharing/rest/search"));
    const QUrlQuery form(QString::fromUtf8(request.body));
    QCOMPARE(form.queryItems().size(), 5);
    const auto value = [&form](const char *key) {
        return form.queryItemValue(QLatin1String(key), QUrl::FullyDecoded);
    };
    QCOMPARE(value("f"), QString("pjson"));
    QCOMPARE(value("start"), QString("1"));
    QCOMPARE(value("num"), QString("50"));
    QCOMPARE(value("q"), QString("owner:\"jo\" AND x"));
    QCOMPARE(value("token"), QString("@token&x"));
    QVariantMap item;
    QVERIFY(list()->findPortalItem("x", item));
    QVERIFY(!list()->findPortalItem("X", item));
}

void tst_AppCatalogue::searchWithoutAPortalAsksThePublicOne()
{
    RawServer proxy; // nothing leaves this machine
    proxy.answer(
        "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nContent-Length: 2\r\n\r\n{}");
    QNetworkProxy::setApplicationProxy(
        QNetworkProxy(QNetworkProxy::HttpProxy, "127.0.0.1", quint16(proxy.url().port())));
    list()->setSigninRequired(false);
    LogCapture log;
    QSignalSpy complete(list(), &AppInfoList::refreshComplete);
    list()->refresh(true);
    const bool ended = complete.wait();
    QNetworkProxy::setApplicationProxy(QNetworkProxy());
    QVERIFY(ended);
    QVERIFY2(
        proxy.lastRequest().startsWith("POST http://portal.zemrik.example/sharing/rest/search "),
        proxy.lastRequest().constData());
    QVERIFY(log.count(QtWarningMsg, manager, "Using default url:") > 0);
}

void tst_AppCatalogue::firstPageIsOne()
{
    usePortal("{}");
    QStringList starts;
    m_server.on("/sharing/rest/search", [&starts](const HttpServer::Request &request) {
        const QUrlQuery form(QString::fromUtf8(request.body));
        starts.append(form.queryItemValue("start"));
        const char *const answers[] = {"{\"nextStart\": 7}", "{\"nextStart\": 8}",
                                       "{\"nextStart\": -1}"};
        return HttpServer::Answer{answers[qMin(starts.size(), 3) - 1], 200, "application/json"};
    });
    search();
    QCOMPARE(starts, QStringList({"1", "7", "8"}));
}

void tst_AppCatalogue::everyPageIsLoggedAndHandledAgain()
{
    usePortalOfPages(3, "");
    LogCapture log;
    search();
    for (const char *words :
         {"Count 1", "Count 2", "Count 3", "nextStart 2", "nextStart 3", "nextStart -1",
          "Search for next page of items 2", "Search for next page of items 3", "Search completed"})
        QVERIFY2(log.count(QtDebugMsg, manager, words) == 1, words);
    QCOMPARE(log.count(QtDebugMsg, manager, "Using default thumbnail"), 1 + 2 + 3);
    QCOMPARE(ids(), QStringList({"i1", "i2", "i3"}));
}

// With and without the log lines of each item, which make all of them be handled anew.
void tst_AppCatalogue::everyPageTellsAllAppsBeforeIt_data()
{
    QTest::addColumn<bool>("logged");
    QTest::newRow("logged") << true;
    QTest::newRow("quiet") << false;
}

void tst_AppCatalogue::everyPageTellsAllAppsBeforeIt()
{
    QFETCH(bool, logged);
    QLoggingCategory::setFilterRules(logged ? "*.debug=true" : "*.debug=false");
    for (const char *id : {"i1", "i2", "i3", "i4"})
        writeApp(QByteArray("Apps/") + id, QByteArray("{\"id\": \"") + id + "\"}");
    usePortalOfPages(3);
    list()->refresh(true);
    std::map<QString, int> changes;
    for (const QString &id : ids())
        connect(list()->findById(id), &AppInfo::thumbnailChanged, this,
                [&changes, id] { ++changes[id]; });
    QTRY_VERIFY(!list()->isRefreshing());
    QLoggingCategory::setFilterRules(QString());
    QCOMPARE(changes, (std::map<QString, int>{{"i1", 3}, {"i2", 2}, {"i3", 1}}));
    for (const char *number : {"1", "2", "3"}) {
        QVariantMap item;
        QVERIFY(list()->findPortalItem(QString("i") + number, item));
        QVERIFY(item.value("thumbnailUrl")
                    .toUrl()
                    .path()
                    .endsWith("/i" + QString(number) + "/info/t.png"));
    }
}

// Between two pages the list is read anew, and then an app gets the id of an item to come.
void tst_AppCatalogue::pagesMeetTheListAsItIs()
{
    writeApp("Apps/a", "{\"id\": \"i1\"}");
    writeApp("Apps/b", "{\"id\": \"other\"}");
    usePortalOfPages(3);
    list()->refresh(true);
    AppInfo *former = list()->findById("i1");
    QSignalSpy formerChanged(former, &AppInfo::thumbnailChanged);
    QVERIFY(formerChanged.wait()); // page 1
    list()->refresh(false);
    AppInfo *app = list()->findById("i1");
    AppInfo *other = list()->findById("other");
    QVERIFY(app != former);
    QSignalSpy changed(app, &AppInfo::thumbnailChanged);
    QSignalSpy otherChanged(other, &AppInfo::thumbnailChanged);
    QVERIFY(changed.wait()); // page 2
    QCOMPARE(otherChanged.count(), 0);
    other->setItemId("i3");
    QTRY_VERIFY(!list()->isRefreshing());
    QCOMPARE(formerChanged.count(), 1);
    QCOMPARE(changed.count(), 2);
    QCOMPARE(otherChanged.count(), 1);
    delete former;
}

void tst_AppCatalogue::anotherTokenChangesTheAddressesOfAllPages()
{
    QLoggingCategory::setFilterRules("*.debug=false");
    writeApp("Apps/a", "{\"id\": \"i1\"}");
    usePortalOfPages(3);
    list()->setAutoRefresh(false);
    m_portal->setProperty("token", "one");
    list()->refresh(true);
    QSignalSpy changed(list()->findById("i1"), &AppInfo::thumbnailChanged);
    QVERIFY(changed.wait());
    m_portal->setProperty("token", "two");
    QTRY_VERIFY(!list()->isRefreshing());
    QLoggingCategory::setFilterRules(QString());
    for (const char *id : {"i1", "i2", "i3"}) {
        QVariantMap item;
        QVERIFY(list()->findPortalItem(id, item));
        QCOMPARE(item.value("thumbnailUrl").toUrl().query(), QString("token=two"));
    }
}

// Nobody but the catalogue's user owns them.
void tst_AppCatalogue::formerAppsMayGoOutOfAThumbnailsSignal()
{
    for (const char *id : {"i1", "i2"})
        writeApp(QByteArray("Apps/") + id, QByteArray("{\"id\": \"") + id + "\"}");
    usePortal("{\"results\": [{\"id\": \"i1\"}, {\"id\": \"i2\"}]}");
    list()->refresh(true);
    AppInfo *second = list()->findById("i2");
    int calls = 0;
    connect(list()->findById("i1"), &AppInfo::thumbnailChanged, this, [&] {
        ++calls;
        list()->refresh(false);
        delete second;
    });
    QTRY_VERIFY(!list()->isRefreshing());
    QCOMPARE(calls, 1);
    QCOMPARE(ids(), QStringList({"i1", "i2"}));
}

void tst_AppCatalogue::foldersThatAreNoAppsAreNotRead()
{
    writeApp("Apps/a", "{\"id\": \"a\"}");
    writeApp("Apps/none", "{\"id\": damaged");
    QVERIFY(QFile::remove(home("Apps/none/appinfo.json")));
    LogCapture log;
    list()->refresh();
    QCOMPARE(ids(), QStringList({"a"}));
    QCOMPARE(log.count(QtDebugMsg, "Zemrik.Runtime.Utility", "Error"), 0);
}

void tst_AppCatalogue::thumbnails()
{
    writeApp("Apps/here", "{\"id\": \"here\"}");
    QFile picture(home("Apps/here/thumbnail.png"));
    QVERIFY(picture.open(QIODevice::WriteOnly));
    usePortal(
        "{\"results\": [{\"id\": \"none\"}, {\"id\": \"some\", \"thumbnail\": \"thumbnail/a.png\"},"
        " {\"id\": \"here\", \"thumbnail\": \"thumbnail/b.png\"}]}");
    list()->setAutoRefresh(false);
    m_portal->setProperty("token", "tok");
    list()->refresh(true);
    // The app that is in the list while the page comes in; the end of the search makes new ones.
    QSignalSpy changed(list()->findById("here"), &AppInfo::thumbnailChanged);
    QTRY_VERIFY(!list()->isRefreshing());
    QCOMPARE(changed.count(), 1);
    QCOMPARE(list()->findById("none")->thumbnail(), QUrl("qrc:///images/defaultThumbnail.png"));
    QCOMPARE(list()->findById("some")->thumbnail(),
             QUrl(m_server.url("").toString()
                  + "/sharing/rest/content/items/some/info/thumbnail/a.png?token=tok"));
    QCOMPARE(list()->findById("here")->thumbnail(),
             QUrl::fromLocalFile(home("Apps/here/thumbnail.png")));
}

void tst_AppCatalogue::signOutOutOfAThumbnailsSignal()
{
    QByteArray items;
    for (int i = 0; i < 50; ++i) {
        const QByteArray id = "i" + QByteArray::number(i);
        writeApp("Apps/" + id, "{\"id\": \"" + id + "\"}");
        items += (i > 0 ? ", " : "") + ("{\"id\": \"" + id + "\", \"thumbnail\": \"t.png\"}");
    }
    usePortal("{\"results\": [" + items + "]}");
    m_portal->setProperty("token", "t"); // starts the search
    int changes = 0;
    for (int i = 0; i < 50; ++i)
        connect(list()->findById("i" + QString::number(i)), &AppInfo::thumbnailChanged, this,
                [this, &changes] {
                    if (++changes == 3)
                        m_portal->setProperty("token", "");
                });
    QTRY_VERIFY(!list()->isRefreshing());
    QCOMPARE(changes, 50);
    QVariantMap item;
    QVERIFY(!list()->findPortalItem("i0", item));
}

void tst_AppCatalogue::portalItemsOfOtherTypesAreLeftOut()
{
    usePortal("{\"results\": [{\"id\": \"app\", \"tags\": [\"one\"]},"
              " {\"id\": \"tool\", \"typeKeywords\": [\"Tool\"], \"tags\": [\"two\"]}]}");
    search();
    QCOMPARE(ids(), QStringList({"app"}));
    QCOMPARE(list()->tags(), QStringList({"one"}));
}

void tst_AppCatalogue::ownerFilterLeavesPortalItemsAlone()
{
    usePortal("{\"results\": [{\"id\": \"a\", \"owner\": \"al\"}]}");
    list()->filter()->setOwner("jo");
    search();
    QCOMPARE(ids(), QStringList({"a"}));
}

void tst_AppCatalogue::updatesAreCounted()
{
    for (const char *id : {"older", "newer", "alone"})
        writeApp(QString("Apps/") + id, QByteArray("{\"id\": \"") + id + "\"}");
    usePortal("{\"results\": [{\"id\": \"older\", \"modified\": 4000000000000},"
              " {\"id\": \"newer\", \"modified\": 1000000000000}, {\"id\": \"portal\"}]}");
    LogCapture log;
    search();
    QCOMPARE(list()->onlineUpdatesCount(), 1);
    QCOMPARE(list()->localUpdatesCount(), 1);
    QVERIFY(list()->findById("older")->isUpdateAvailable());
    QVERIFY(list()->findById("newer")->isUpdatedLocally());
    AppInfo *alone = list()->findById("alone");
    QVERIFY(!alone->isUpdateAvailable() && !alone->isUpdatedLocally());
    QCOMPARE(log.count(QtDebugMsg, core, "AppInfos # 4 Online updates 1 Local updates 1"), 1);
    list()->filter()->setUpdateAvailable(true);
    QCOMPARE(ids(true), QStringList({"older"}));
    QMetaObject::invokeMethod(m_portal.get(), "signOut"); // was signed out already: no change
    QCOMPARE(list()->onlineUpdatesCount(), 1);
}

void tst_AppCatalogue::refreshDuringASearch()
{
    usePortal("{}");
    LogCapture log;
    list()->refresh(true);
    SignalRecorder recorder(list());
    list()->refresh(true);
    QCOMPARE(recorder.take(),
             QStringList({"refreshStart", "tagsChanged", "ownersChanged", "accessChanged",
                          "countsChanged", "appsChanged", "filteredAppsChanged", "countsChanged"}));
    QCOMPARE(log.count(QtCriticalMsg, manager, "Refresh already in progress"), 1);
    QTRY_VERIFY(!list()->isRefreshing());
    QCOMPARE(recorder.names().count("refreshComplete"), 1); // of the first call
    QCOMPARE(m_server.requestCount(), 1);
}

void tst_AppCatalogue::signOutDuringASearch()
{
    DevelopmentPortal server;
    for (int i = 0; i < 120; ++i)
        server.addItem(QString("app%1").arg(i), {{"access", "private"}});
    QVERIFY2(server.start({"--fail", "search:slow:2"}), qPrintable(server.output()));
    m_portal = makePortalElement(m_engine, server.url());
    list()->setPortal(m_portal.get());
    LogCapture log;
    QVERIFY(signIn(m_portal.get(), "demo", "demo"));
    QTRY_COMPARE(log.count(QtDebugMsg, manager, "Search for next page of items 51"), 1);
    QVariantMap item;
    QVERIFY(list()->findPortalItem("app0", item));

    QMetaObject::invokeMethod(m_portal.get(), "signOut");
    QVERIFY(!list()->findPortalItem("app0", item)); // gone at once
    QCOMPARE(ids(), QStringList());
    QVERIFY(list()->isRefreshing()); // the page under way is still waited for
    // The rest of the search sees what everybody sees: nothing.
    QTRY_VERIFY(!list()->isRefreshing());
    QCOMPARE(ids(), QStringList());
    QCOMPARE(list()->onlineUpdatesCount(), 0);
    QVERIFY(signIn(m_portal.get(), "demo", "demo"));
    QTRY_COMPARE(ids().size(), 120);
}

void tst_AppCatalogue::twoPortalsInOneProcess()
{
    DevelopmentPortal servers[2];
    std::unique_ptr<QObject> portals[2];
    AppInfoList lists[2];
    AppPackage packages[2];
    for (int i = 0; i < 2; ++i) {
        const QString id = QString("app%1").arg(i);
        servers[i].addItem(id, {{"access", "private"}}, {{"data/appinfo.json", "{}"}});
        QVERIFY2(servers[i].start(), qPrintable(servers[i].output()));
        portals[i] = makePortalElement(m_engine, servers[i].url());
        lists[i].setPortal(portals[i].get());
        packages[i]._setPortal(portals[i].get());
        startSignIn(portals[i].get(), "demo", "demo");
    }
    QTRY_VERIFY(lists[0].findById("app0") && lists[1].findById("app1"));
    QVERIFY(!lists[0].findById("app1") && !lists[1].findById("app0"));
    QVERIFY(portals[0]->property("token") != portals[1]->property("token"));

    for (int i = 0; i < 2; ++i) {
        packages[i]._setAppInfo(lists[i].findById(QString("app%1").arg(i)));
        packages[i].download();
    }
    QTRY_VERIFY(packages[0].status() == ItemPackage::Ready
                && packages[1].status() == ItemPackage::Ready);
    QMetaObject::invokeMethod(portals[0].get(), "signOut");
    QVERIFY(lists[0].findById("app0")->isLocal());
    QVERIFY(!lists[1].findById("app1")->isLocal()); // that list has not been read again
    lists[1].refresh();
    QVERIFY(lists[1].findById("app0") && lists[1].findById("app1")->isLocal());
}

void tst_AppCatalogue::signInAndOutSignalInTheirOrder()
{
    const QStringList read{"tagsChanged", "ownersChanged",       "accessChanged", "countsChanged",
                           "appsChanged", "filteredAppsChanged", "countsChanged"};
    usePortal("{\"results\": [{\"id\": \"x\"}]}");
    list()->setSigninRequired(true);
    LogCapture log;
    SignalRecorder recorder(list());
    m_portal->setProperty("token", "t");
    QCOMPARE(recorder.take(), QStringList("isRefreshingChanged") + read);
    QCOMPARE(log.count(QtDebugMsg, core, "onSignedInChanged() true"), 1);
    QTRY_COMPARE(recorder.names(), QStringList({"isRefreshingChanged", "refreshComplete"}) + read);
    recorder.take();
    m_portal->setProperty("token", "other"); // still signed in
    QCOMPARE(recorder.take(), QStringList());
    m_portal->setProperty("token", "");
    QCOMPARE(recorder.take(), read);
    QCOMPARE(log.count(QtDebugMsg, core, "onSignedInChanged() false"), 1);
    QCOMPARE(m_server.requestCount(), 1);
}

// Signed in by its properties, but of another kind: it is kept and neither heard nor searched.
void tst_AppCatalogue::objectThatIsNoPortal()
{
    QQmlComponent component(&m_engine);
    component.setData("import QtQml 2.15\nQtObject { property bool signedIn: true }", QUrl());
    const std::unique_ptr<QObject> object(component.create());
    SignalRecorder recorder(list());
    LogCapture log;
    list()->setPortal(object.get());
    QCOMPARE(log.count(QtWarningMsg, manager, "Not a portal object"), 1);
    QCOMPARE(recorder.take(), QStringList("portalChanged"));
    QCOMPARE(list()->portal(), object.get());
    object->setProperty("signedIn", false);
    object->setProperty("signedIn", true);
    QCOMPARE(recorder.take(), QStringList());
    list()->refresh(true);
    QCOMPARE(recorder.names().last(), QString("refreshComplete"));
    QVERIFY(!list()->isRefreshing());
}

void tst_AppCatalogue::portalThatGoesAway()
{
    usePortal("{\"results\": [{\"id\": \"x\"}]}");
    list()->setSigninRequired(true);
    m_portal->setProperty("token", "t");
    QTRY_COMPARE(ids(), QStringList("x"));
    m_portal.reset();
    QVERIFY(!list()->portal());
    list()->refresh(true); // nobody is signed in any more
    QVERIFY(!list()->isRefreshing());
    QCOMPARE(ids(), QStringList());
}

void tst_AppCatalogue::itemThatComesTwiceIsOneApp()
{
    usePortal("{\"results\": [{\"id\": \"x\", \"title\": \"first\", \"modified\": 1},"
              " {\"id\": \"x\", \"title\": \"second\", \"modified\": 2}, {\"id\": \"X\"}]}");
    search();
    QStringList found = ids();
    found.sort();
    QCOMPARE(found, QStringList({"X", "x"}));
    QCOMPARE(list()->findById("x")->title(), QString("first"));
    QVERIFY(list()->findById("x")->isUpdateAvailable());
    QCOMPARE(list()->onlineUpdatesCount(), 1);
    found = ids(true);
    found.sort();
    QCOMPARE(found, QStringList({"X", "x"}));
}

// The first app without an id is the one that they meet.
void tst_AppCatalogue::itemsWithoutAnId()
{
    usePortal("{\"results\": [{\"title\": \"a\"}, {\"title\": \"b\"}, 7]}");
    search();
    QCOMPARE(ids(), QStringList(""));
    QCOMPARE(list()->findById("")->title(), QString("a"));
}

void tst_AppCatalogue::searchGoesThroughTheEnginesManager()
{
    usePortal("{}");
    QQmlComponent component(&m_engine);
    component.setData("import Zemrik.Tessaline 1.0\nAppInfoList { signinRequired: false }", QUrl());
    const std::unique_ptr<QObject> object(component.create());
    auto *made = qobject_cast<AppInfoList *>(object.get());
    QVERIFY2(made, qPrintable(component.errorString()));
    made->setPortal(m_portal.get());
    QSignalSpy finished(m_engine.networkAccessManager(), &QNetworkAccessManager::finished);
    made->refresh(true);
    QTRY_VERIFY(!made->isRefreshing());
    QCOMPARE(finished.count(), 1);
    search(); // a list that no engine made has a manager of its own
    QCOMPARE(finished.count(), 1);
}

void tst_AppCatalogue::signInWithoutAutoRefresh()
{
    usePortal("{}");
    list()->setSigninRequired(true);
    list()->setAutoRefresh(false);
    SignalRecorder recorder(list());
    m_portal->setProperty("token", "t");
    QVERIFY(!list()->isRefreshing());
    QVERIFY(recorder.names().contains("appsChanged"));
    m_portal->setProperty("token", "");
    list()->setAutoRefresh(true);
    m_portal->setProperty("token", "t");
    QVERIFY(list()->isRefreshing());
}

void tst_AppCatalogue::anotherPortalIsNoLongerHeard()
{
    usePortal("{}");
    const auto second = makePortalElement(m_engine, m_server.url("").toString());
    list()->setPortal(second.get());
    SignalRecorder recorder(list());
    m_portal->setProperty("token", "t");
    QCOMPARE(recorder.names(), QStringList());
    second->setProperty("token", "t");
    QVERIFY(recorder.take().contains("appsChanged"));
    list()->setPortal(nullptr);
    recorder.take();
    second->setProperty("token", "");
    QCOMPARE(recorder.names(), QStringList());
}

void tst_AppCatalogue::itemDownloadedUpdatesItsApp()
{
    writeApp("Apps/a", "{\"id\": \"a\"}");
    usePortal("{\"results\": [{\"id\": \"a\", \"modified\": 4000000000000}]}");
    SignalRecorder recorder(list());
    list()->itemDownloaded("a"); // not in the portal's items yet
    QCOMPARE(recorder.names(), QStringList());
    search();
    recorder.take();
    list()->itemDownloaded("a");
    QCOMPARE(recorder.names().count("appsChanged"), 1);
    list()->itemDownloaded("b");
    QCOMPARE(recorder.names().count("appsChanged"), 1);
}

void tst_AppCatalogue::onlineStateReadsTheListAgain()
{
    SignalRecorder recorder(list());
    for (const bool online : {true, false})
        QVERIFY(QMetaObject::invokeMethod(list(), "onOnlineStateChanged", Q_ARG(bool, online)));
    QCOMPARE(recorder.names().count("appsChanged"), 2);
}

TESSALINE_TEST_MAIN(tst_AppCatalogue)
#include "tst_AppCatalogue.moc"
