#include "archives/ArchiveMaker.h"
#include "catalogue/AppFolder.h"
#include "catalogue/AppInfoList.h"
#include "catalogue/AppPackage.h"
#include "support/DevelopmentPortal.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"
#include "support/PortalElement.h"
#include "support/SignalRecorder.h"

// The failures after which nobody is told anything: the owner stays where it was, and only the log
// says why. Who waits has to set a limit.
class tst_SilentStops : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void appStaysDownloading_data();
    void appStaysDownloading();
    void appWhoseFolderCannotBeMadeStaysDownloading();
    void appWhoseEntriesOverlapStaysDownloading();
    void appWithDamagedEntriesIsReady();
    void itemStaysDownloading_data();
    void itemStaysDownloading();
    void tilesThatFailedAreFetchedAgain_data();
    void tilesThatFailedAreFetchedAgain();
    void searchNeverEnds_data();
    void searchNeverEnds();
    void aFreshObjectSucceeds();

private:
    void start(const QStringList &rules);
    void downloadApp(const QString &id);

    QQmlEngine m_engine;
    QTemporaryDir m_work;
    std::unique_ptr<DevelopmentPortal> m_server;
    std::unique_ptr<QObject> m_portal;
    std::unique_ptr<AppPackage> m_package;
};

namespace {

const char package[] = "Zemrik.Tessaline.Package";
const char manager[] = "Zemrik.Tessaline.Manager";
const char network[] = "Zemrik.Tessaline.Network";
const QByteArray tiles(100000, 't');

QStringList withoutProgress(QStringList names)
{
    names.removeAll("progress");
    names.removeAll("downloadProgress");
    return names;
}

} // namespace

void tst_SilentStops::initTestCase()
{
    QVERIFY(ArchiveMaker::make("overlapping", m_work.filePath("overlapping.zip")));
    QVERIFY(ArchiveMaker::make("incomplete_app", m_work.filePath("incomplete_app.zip")));
}

void tst_SilentStops::init()
{
    m_package.reset();
    m_portal.reset();
    QDir(QDir::homePath() + "/Zemrik").removeRecursively();
}

void tst_SilentStops::start(const QStringList &rules)
{
    m_server = std::make_unique<DevelopmentPortal>();
    m_server->addItem("app", {{"title", "An app"}, {"thumbnail", "t.png"}},
                      {{"data/appinfo.json", "{\"dependencies\": [\"item\"]}"},
                       {"data/main.qml", "Item {}"},
                       {"t.png", "picture"}});
    m_server->addItem("item", {{"title", "An item"}, {"thumbnail", "t.png"}},
                      {{"data/a.txt", "text"}, {"t.png", "picture"}});
    m_server->addItem("mapped", {}, {{"data/appinfo.json", "{\"dependencies\": [\"tiles\"]}"}});
    m_server->addItem("tiles", {{"type", "Tile Package"}, {"name", "t.tpk"}}, {{"t.tpk", tiles}});
    m_server->addItem("overlapping", {},
                      {{"data", ArchiveMaker::read(m_work.filePath("overlapping.zip"))}});
    m_server->addItem("incomplete", {},
                      {{"data", ArchiveMaker::read(m_work.filePath("incomplete_app.zip"))}});
    QStringList arguments;
    for (const QString &rule : rules)
        arguments << "--fail" << rule;
    QVERIFY2(m_server->start(arguments), qPrintable(m_server->output()));
    m_portal = makePortalElement(m_engine, m_server->url());
    m_package = std::make_unique<AppPackage>();
    m_package->_setPortal(m_portal.get());
}

void tst_SilentStops::downloadApp(const QString &id)
{
    AppInfo found(QVariantMap{{"id", id}}, nullptr);
    m_package->_setAppInfo(&found);
    m_package->download();
}

void tst_SilentStops::appStaysDownloading_data()
{
    QTest::addColumn<QString>("rule");
    QTest::addColumn<QByteArray>("category");
    QTest::addColumn<QString>("critical");
    QTest::addColumn<bool>("unpacked");

    QTest::newRow("HTTP error at the information")
        << "item:status" << QByteArray(manager) << "statusCode" << false;
    QTest::newRow("HTTP error at the data")
        << "data:status" << QByteArray(manager) << "statusCode" << false;
    QTest::newRow("HTTP error at the thumbnail")
        << "thumbnail:status" << QByteArray(manager) << "statusCode" << true;
    QTest::newRow("damaged archive")
        << "data:damaged" << QByteArray(package) << "Error opening package:" << false;
    QTest::newRow("truncated archive")
        << "data:truncated" << QByteArray(package) << "Error opening package:" << false;
    QTest::newRow("JSON error in place of the archive")
        << "data:error" << QByteArray(package) << "Error opening package:" << false;
    QTest::newRow("HTTP error at a dependency's information")
        << "item:status:2" << QByteArray(manager) << "statusCode" << true;
    QTest::newRow("HTTP error at a dependency's data")
        << "data:status:2" << QByteArray(manager) << "statusCode" << true;
    QTest::newRow("damaged archive of a dependency")
        << "data:damaged:2" << QByteArray(package) << "Error opening package:" << true;
    QTest::newRow("HTTP error at a dependency's thumbnail")
        << "thumbnail:status:2" << QByteArray(manager) << "statusCode" << true;
}

void tst_SilentStops::appStaysDownloading()
{
    QFETCH(QString, rule);
    QFETCH(QByteArray, category);
    QFETCH(QString, critical);
    start({rule});
    LogCapture log;
    SignalRecorder recorder(m_package.get());
    downloadApp("app");
    QTRY_VERIFY2(log.count(QtCriticalMsg, category.constData(), critical) == 1,
                 qPrintable(log.dump()));
    QCOMPARE(m_package->status(), ItemPackage::Downloading);
    QCOMPARE(m_package->error()->message(), QString());
    QStringList names = withoutProgress(recorder.names());
    QCOMPARE(names.removeAll("errorChanged"), 0);
    QCOMPARE(names.removeAll("statusChanged"), 1); // to Downloading
    QTEST(QFile::exists(home("Apps/app/main.qml")), "unpacked");
}

void tst_SilentStops::appWhoseFolderCannotBeMadeStaysDownloading()
{
    start({});
    QVERIFY(QDir().mkpath(home("Apps")));
    QFile file(home("Apps/app")); // in the folder's way
    QVERIFY(file.open(QIODevice::WriteOnly));
    LogCapture log;
    downloadApp("app");
    QTRY_COMPARE(log.count(QtCriticalMsg, package, "Unable to create:"), 1);
    QCOMPARE(m_package->status(), ItemPackage::Downloading);
    QVERIFY(QFile::exists(home(".cache/packages/app.zip"))); // nothing is cleaned up
}

void tst_SilentStops::appWhoseEntriesOverlapStaysDownloading()
{
    start({});
    LogCapture log;
    downloadApp("overlapping");
    QTRY_COMPARE(log.count(QtCriticalMsg, package, "Error extracting from package:"), 1);
    QCOMPARE(m_package->status(), ItemPackage::Downloading);
    QVERIFY(QFile::exists(home(".cache/packages/overlapping.zip")));
    QVERIFY(QDir(home("Apps/overlapping")).isEmpty());
}

// Single entries don't stop the others: the app counts as downloaded, and the log alone tells what
// it lacks.
void tst_SilentStops::appWithDamagedEntriesIsReady()
{
    start({});
    LogCapture log;
    SignalRecorder recorder(m_package.get());
    downloadApp("incomplete");
    QTRY_COMPARE(m_package->status(), ItemPackage::Ready);
    QCOMPARE(m_package->error()->message(), QString());
    QCOMPARE(recorder.names().count("errorChanged"), 0);
    const auto logged = [&log](QtMsgType type, const QString &words) {
        return log.count(type, "default", "UnZipFile::extractCurrentFile" + words) == 1;
    };
    QVERIFY(logged(QtWarningMsg, ":Extracting: \"wrong.txt\""));
    QVERIFY(logged(QtCriticalMsg, " - unzReadCurrentFile -3"));
    QVERIFY(logged(QtCriticalMsg, ":Extracting: \"broken.txt\""));
    QCOMPARE(log.count(QtCriticalMsg), 2);

    const QString app = home("Apps/incomplete/");
    QCOMPARE(ArchiveMaker::read(app + "wrong.txt"), QByteArray("content"));
    QVERIFY(QFile::exists(app + "broken.txt")); // as far as it could be read: not at all
    QCOMPARE(ArchiveMaker::read(app + "broken.txt"), QByteArray());
    QCOMPARE(ArchiveMaker::read(app + "main.qml"), QByteArray("Item {}"));
    QVERIFY(QFile::exists(app + "iteminfo.json"));
    QVERIFY(!QFile::exists(home(".cache/packages/incomplete.zip")));
}

void tst_SilentStops::itemStaysDownloading_data()
{
    QTest::addColumn<QString>("rule");
    QTest::addColumn<QByteArray>("category");
    QTest::addColumn<QString>("critical");
    QTest::addColumn<bool>("started");

    QTest::newRow("HTTP error at the information")
        << "item:status" << QByteArray(manager) << "statusCode" << false;
    QTest::newRow("HTTP error at the data")
        << "data:status" << QByteArray(manager) << "statusCode" << true;
    QTest::newRow("HTTP error at the thumbnail")
        << "thumbnail:status" << QByteArray(manager) << "statusCode" << true;
    QTest::newRow("damaged archive")
        << "data:damaged" << QByteArray(package) << "Error opening package:" << true;
}

void tst_SilentStops::itemStaysDownloading()
{
    QFETCH(QString, rule);
    QFETCH(QByteArray, category);
    QFETCH(QString, critical);
    QFETCH(bool, started);
    start({rule});
    ItemPackage item;
    item._setPortal(m_portal.get());
    LogCapture log;
    SignalRecorder recorder(&item);
    item.download("item");
    QTRY_VERIFY2(log.count(QtCriticalMsg, category.constData(), critical) == 1,
                 qPrintable(log.dump()));
    QCOMPARE(item.status(), ItemPackage::Downloading);
    QStringList expected{"statusChanged"};
    if (started)
        expected << "downloadStarted";
    QCOMPARE(withoutProgress(recorder.names()), expected);
}

void tst_SilentStops::tilesThatFailedAreFetchedAgain_data()
{
    QTest::addColumn<QString>("rule");
    QTest::addColumn<QByteArray>("category");
    QTest::addColumn<QString>("critical");
    QTest::newRow("HTTP error") << "data:status:2" << QByteArray(manager) << "statusCode";
    QTest::newRow("broken connection")
        << "data:truncated:2" << QByteArray(package) << "Download incomplete:";
}

// The folder, which tells that the tiles are there, is made before they come.
void tst_SilentStops::tilesThatFailedAreFetchedAgain()
{
    QFETCH(QString, rule);
    QFETCH(QByteArray, category);
    QFETCH(QString, critical);
    start({rule});
    LogCapture log;
    downloadApp("mapped");
    QTRY_VERIFY2(log.count(QtCriticalMsg, category.constData(), critical) == 1,
                 qPrintable(log.dump()));
    QCOMPARE(m_package->status(), ItemPackage::Downloading);
    QVERIFY(ItemPackage().exists("tiles"));
    if (category == package)
        QVERIFY(QDir(home("Data/tiles")).isEmpty()); // a half would pass for the whole
    m_package = std::make_unique<AppPackage>();
    m_package->_setPortal(m_portal.get());
    downloadApp("mapped");
    QTRY_COMPARE(m_package->status(), ItemPackage::Ready);
    QFile file(home("Data/tiles/t.tpk"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), tiles);
    QVERIFY(QDir(home(".cache/packages")).isEmpty());
}

void tst_SilentStops::searchNeverEnds_data()
{
    QTest::addColumn<QString>("rule");
    QTest::addColumn<QString>("critical");
    QTest::newRow("HTTP error") << "search:status"
                                << "statusCode";
    QTest::newRow("JSON error") << "search:error"
                                << "Failed on purpose.";
}

void tst_SilentStops::searchNeverEnds()
{
    QFETCH(QString, rule);
    QFETCH(QString, critical);
    start({rule});
    AppInfoList list;
    list.setPortal(m_portal.get());
    list.setSigninRequired(false);
    LogCapture log;
    SignalRecorder recorder(&list);
    list.refresh(true);
    QTRY_VERIFY2(log.count(QtCriticalMsg, network, critical) == 1, qPrintable(log.dump()));
    QVERIFY(list.isRefreshing());
    QCOMPARE(recorder.names().count("refreshComplete"), 0);
    QCOMPARE(recorder.names().count("error"), 0);

    recorder.take();
    list.refresh(true); // refused, but the disk is read
    QCOMPARE(log.count(QtCriticalMsg, manager, "Refresh already in progress"), 1);
    QVERIFY(recorder.names().contains("appsChanged"));
    QCOMPARE(recorder.names().count("refreshComplete"), 0);
}

void tst_SilentStops::aFreshObjectSucceeds()
{
    start({"data:status:1"});
    LogCapture log;
    downloadApp("app");
    QTRY_COMPARE(log.count(QtCriticalMsg, manager, "statusCode"), 1);
    QCOMPARE(m_package->status(), ItemPackage::Downloading);
    m_package = std::make_unique<AppPackage>();
    m_package->_setPortal(m_portal.get());
    downloadApp("app");
    QTRY_COMPARE(m_package->status(), ItemPackage::Ready);
    QVERIFY(QFile::exists(home("Apps/app/main.qml")));
}

TESSALINE_TEST_MAIN(tst_SilentStops)
#include "tst_SilentStops.moc"
