#include "catalogue/AppInfo.h"
#include "catalogue/AppInfoList.h"

#include "support/DevelopmentPortal.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"
#include "support/PortalElement.h"
#include "support/SignalRecorder.h"

#include <QQmlListReference>

// The catalogue's search, over the pages of a portal of 120 apps.
class tst_PortalSearch : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();

    void withoutSigninNothingIsSearched();
    void searchGoesOverThreePages();
    void localAppsAreMergedById();
    void signOutDropsThePortalsApps();
    void signInSearchesByItself();
    void refusedSearchNeverEnds();

private:
    bool holds(const QString &id) { return m_list->findById(id) != nullptr; }

    QQmlEngine m_engine;
    DevelopmentPortal m_server;
    std::unique_ptr<QObject> m_portal;
    std::unique_ptr<AppInfoList> m_list;
};

namespace {

const int Count = 120;
const char manager[] = "Zemrik.Tessaline.Manager";

int appCount(AppInfoList *list)
{
    return QQmlListReference(list, "apps").count();
}

} // namespace

void tst_PortalSearch::initTestCase()
{
    for (int i = 0; i < Count; ++i)
        m_server.addItem(QString("app%1").arg(i, 3, 10, QChar('0')),
                         {{"title", QString("App %1").arg(i)},
                          {"typeKeywords", QStringList{"app"}},
                          {"tags", QStringList{"app", QString("t%1").arg(i % 2)}},
                          {"modified", qint64(4000000000000)}});
    m_server.addItem("installer", {{"type", "Native Application Installer"}});
    QVERIFY2(m_server.start(), qPrintable(m_server.output()));
    m_portal = makePortalElement(m_engine, m_server.url());
    QVERIFY(m_portal);
}

void tst_PortalSearch::cleanupTestCase()
{
    m_list.reset();
    m_portal.reset();
}

void tst_PortalSearch::init()
{
    m_list.reset();
    QDir(QDir::homePath() + "/Zemrik").removeRecursively();
    QMetaObject::invokeMethod(m_portal.get(), "signOut");
    m_list = std::make_unique<AppInfoList>(nullptr);
    m_list->setPortal(m_portal.get());
}

void tst_PortalSearch::withoutSigninNothingIsSearched()
{
    SignalRecorder recorder(m_list.get());
    m_list->refresh(true);
    QCOMPARE(recorder.names().first(), QString("refreshStart"));
    QCOMPARE(recorder.names().last(), QString("refreshComplete"));
    QVERIFY(!m_list->isRefreshing());
    QCOMPARE(appCount(m_list.get()), 0);
}

void tst_PortalSearch::searchGoesOverThreePages()
{
    LogCapture log;
    m_list->setSigninRequired(false);
    SignalRecorder recorder(m_list.get());
    m_list->refresh(true);
    QVERIFY(m_list->isRefreshing());
    QCOMPARE(recorder.take(),
             QStringList({"refreshStart", "tagsChanged", "ownersChanged", "accessChanged",
                          "countsChanged", "appsChanged", "filteredAppsChanged", "countsChanged",
                          "isRefreshingChanged"}));
    QTRY_COMPARE(recorder.names(),
                 QStringList({"isRefreshingChanged", "refreshComplete", "tagsChanged",
                              "ownersChanged", "accessChanged", "countsChanged", "appsChanged",
                              "filteredAppsChanged", "countsChanged"}));
    QCOMPARE(appCount(m_list.get()), Count);
    QVERIFY(!holds("installer"));
    QCOMPARE(m_list->tags(), QStringList({"t0", "t1"}));
    QCOMPARE(log.count(QtDebugMsg, manager, "Search for next page of items 51"), 1);
    QCOMPARE(log.count(QtDebugMsg, manager, "Search for next page of items 101"), 1);
    QCOMPARE(log.count(QtDebugMsg, manager, "Search for next page"), 2);
    QCOMPARE(log.count(QtDebugMsg, manager, "Search completed"), 1);
    QVariantMap item;
    QVERIFY(m_list->findPortalItem("app119", item));
    QVERIFY(item.value("thumbnailUrl").toUrl().toString().contains("defaultThumbnail.png"));
}

void tst_PortalSearch::localAppsAreMergedById()
{
    const QString folder = QDir::homePath() + "/Zemrik/Halvora/Apps/app007";
    QVERIFY(QDir().mkpath(folder));
    for (const auto &file : {qMakePair(QString("appinfo.json"), QByteArray("{}")),
                             qMakePair(QString("iteminfo.json"),
                                       QByteArray("{\"id\": \"app007\", \"title\": \"Local\"}"))}) {
        QFile out(folder + '/' + file.first);
        QVERIFY(out.open(QIODevice::WriteOnly));
        QCOMPARE(out.write(file.second), file.second.size());
    }
    m_list->setSigninRequired(false);
    m_list->refresh(true);
    QTRY_VERIFY(!m_list->isRefreshing());
    QTRY_COMPARE(appCount(m_list.get()), Count);
    AppInfo *app = m_list->findById("app007");
    QVERIFY(app && app->isLocal());
    QCOMPARE(app->title(), QString("Local"));
    QVERIFY(app->isUpdateAvailable()); // the portal's is from the year 2096
    QCOMPARE(m_list->onlineUpdatesCount(), 1);
    QVERIFY(!m_list->findById("app008")->isLocal());
}

void tst_PortalSearch::signInSearchesByItself()
{
    QVERIFY(signIn(m_portal.get(), "demo", "demo"));
    QVERIFY(m_list->isRefreshing());
    QTRY_COMPARE(appCount(m_list.get()), Count);
}

void tst_PortalSearch::signOutDropsThePortalsApps()
{
    QVERIFY(signIn(m_portal.get(), "demo", "demo"));
    QTRY_COMPARE(appCount(m_list.get()), Count);
    QMetaObject::invokeMethod(m_portal.get(), "signOut");
    QCOMPARE(appCount(m_list.get()), 0);
    QVariantMap item;
    QVERIFY(!m_list->findPortalItem("app000", item));
}

void tst_PortalSearch::refusedSearchNeverEnds()
{
    LogCapture log;
    m_list->setSigninRequired(false);
    m_list->setSearchQuery("(type:");
    m_list->refresh(true);
    QTRY_COMPARE(log.count(QtCriticalMsg, "Zemrik.Tessaline.Network", "Invalid search query."), 1);
    QVERIFY(m_list->isRefreshing());
    m_list->refresh(true);
    QCOMPARE(log.count(QtCriticalMsg, manager, "Refresh already in progress"), 1);
}

TESSALINE_TEST_MAIN(tst_PortalSearch)
#include "tst_PortalSearch.moc"
