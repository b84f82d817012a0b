#include "catalogue/AppPackage.h"

#include "plugin/TessalineError.h"
#include "support/DevelopmentPortal.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"
#include "support/PortalElement.h"
#include "support/SignalRecorder.h"

#include <QFileInfo>
#include <QSettings>

// One app with its dependencies, downloaded from the development portal.
class tst_AppPackage : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();

    void appWithoutDependencies();
    void templatesGoToTheirFolder();
    void dependenciesComeInTheirOrder();
    void presentDependenciesAreNotFetched();
    void unknownItemEndsInError();
    void missingDependencyEndsInError();
    void hostileDependencyEndsInError();
    void hostileFileNameEndsInError();
    void writingTheAppInfoClearsTheError();
    void secondDownloadStartsAnew();
    void emptyIdIsAskedFor();
    void downloadIsLogged();

private:
    void download(const QString &id, const QString &keyword = "app");
    QString home(const QString &name) const { return QDir::homePath() + "/Zemrik/Halvora/" + name; }

    QQmlEngine m_engine;
    DevelopmentPortal m_server;
    std::unique_ptr<QObject> m_portal;
    std::unique_ptr<AppPackage> m_package;
};

namespace {

const char category[] = "Zemrik.Tessaline.Package";

QByteArray appInfo(const QStringList &dependencies)
{
    QStringList maps;
    for (const QString &id : dependencies)
        maps.append(QString("{\"itemId\": \"%1\"}").arg(id));
    return "{\"mainFile\": \"main.qml\", \"dependencies\": [" + maps.join(",").toUtf8() + "]}";
}

} // namespace

void tst_AppPackage::initTestCase()
{
    const auto addApp = [this](const QString &id, const QByteArray &json) {
        m_server.addItem(id, {{"title", id}, {"modified", qint64(1500000000000)}},
                         {{"data/appinfo.json", json}, {"data/main.qml", "Item {}"}});
    };
    addApp("simple", appInfo({}));
    addApp("depends", "{\"dependencies\": [{\"itemId\": \"tiles\"}, {\"name\": \"no id\"},"
                      "\"module\", {\"itemId\": \"tiles\"}]}");
    addApp("lost", appInfo({"nowhere", "tiles"}));
    addApp("hostile", appInfo({"../escaped"}));
    addApp("hostilename", appInfo({"badname"}));
    const QVariantMap tiles{{"title", "Tiles"}, {"type", "tile package"}, {"name", "t.tpk"}};
    m_server.addItem("tiles", tiles, {{"t.tpk", "tiles"}});
    m_server.addItem("badname", {{"type", "Tile Package"}, {"name", "../../escaped"}},
                     {{"data", "x"}});
    m_server.addItem("module", {{"title", "Module"}, {"tags", QStringList{"module"}}},
                     {{"data/qmldir", "module M"}});
    QVERIFY2(m_server.start(), qPrintable(m_server.output()));
    m_portal = makePortalElement(m_engine, m_server.url());
    QVERIFY(m_portal);
}

void tst_AppPackage::cleanupTestCase()
{
    m_package.reset();
    m_portal.reset();
}

void tst_AppPackage::init()
{
    m_package.reset();
    QDir(QDir::homePath() + "/Zemrik").removeRecursively();
    m_package = std::make_unique<AppPackage>();
    m_package->_setPortal(m_portal.get());
}

void tst_AppPackage::download(const QString &id, const QString &keyword)
{
    AppInfo found(QVariantMap{{"id", id},
                              {"type", "Native Application"},
                              {"typeKeywords", QStringList{keyword}}},
                  nullptr);
    m_package->_setAppInfo(&found);
    QCOMPARE(m_package->status(), ItemPackage::Null);
    m_package->download();
    QCOMPARE(m_package->status(), ItemPackage::Downloading);
}

void tst_AppPackage::appWithoutDependencies()
{
    SignalRecorder recorder(m_package.get());
    download("simple");
    QTRY_COMPARE(m_package->status(), ItemPackage::Ready);
    QStringList names = recorder.names();
    names.removeAll("progress");
    QCOMPARE(names,
             QStringList({"appInfoChanged", "statusChanged", "appInfoChanged", "statusChanged"}));
    QCOMPARE(m_package->appInfo()->path(), home("Apps/simple"));
    QCOMPARE(m_package->appInfo()->title(), QString("simple"));
    QVERIFY(QFile::exists(home("Apps/simple/main.qml")));
    QCOMPARE(QFileInfo(home("Apps/simple/iteminfo.json")).lastModified().toMSecsSinceEpoch(),
             1500000000000);
    QVERIFY(QDir(home(".cache/packages")).isEmpty());
    QCOMPARE(m_package->statusMessage(), QString());
}

void tst_AppPackage::templatesGoToTheirFolder()
{
    download("simple", "template");
    QTRY_COMPARE(m_package->status(), ItemPackage::Ready);
    QVERIFY(QFile::exists(home("Templates/simple/main.qml")));
}

void tst_AppPackage::dependenciesComeInTheirOrder()
{
    LogCapture log;
    QStringList messages;
    connect(m_package.get(), &AppPackage::statusMessageChanged, this,
            [this, &messages] { messages.append(m_package->statusMessage()); });
    download("depends");
    QTRY_COMPARE(m_package->status(), ItemPackage::Ready);
    QCOMPARE(messages, QStringList({"Downloading dependency 1 of 4\r\nTiles",
                                    "Downloading dependency 3 of 4\r\nModule"})
                           + messages.mid(2));
    QCOMPARE(log.count(QtWarningMsg, category, "No itemId property"), 1);
    QVERIFY(QFile::exists(home("Data/tiles/t.tpk")));
    QVERIFY(QFile::exists(home(".cache/packages/module/qmldir")));
    QVERIFY(!QFile::exists(home("Data/module")));
}

void tst_AppPackage::presentDependenciesAreNotFetched()
{
    QVERIFY(QDir().mkpath(home("Data/nowhere")));
    QVERIFY(QDir().mkpath(home("Data/tiles")));
    download("lost");
    QTRY_COMPARE(m_package->status(), ItemPackage::Ready);
    QVERIFY(QDir(home("Data/tiles")).isEmpty());
    QCOMPARE(m_package->statusMessage(), QString());
}

void tst_AppPackage::unknownItemEndsInError()
{
    SignalRecorder recorder(m_package.get());
    download("nowhere");
    QTRY_COMPARE(m_package->status(), ItemPackage::Error);
    QCOMPARE(m_package->error()->message(), QString("Item does not exist or is inaccessible."));
    QCOMPARE(recorder.names().mid(recorder.names().size() - 2),
             QStringList({"errorChanged", "statusChanged"}));
    QVERIFY(!QFile::exists(home("Apps/nowhere")));
}

void tst_AppPackage::missingDependencyEndsInError()
{
    download("lost");
    QTRY_COMPARE(m_package->status(), ItemPackage::Error);
    QVERIFY(QFile::exists(home("Apps/lost/appinfo.json"))); // nothing is rolled back
    QVERIFY(!QFile::exists(home("Data/tiles")));            // and what follows isn't tried
}

void tst_AppPackage::hostileDependencyEndsInError()
{
    LogCapture log;
    download("hostile");
    QTRY_COMPARE(m_package->status(), ItemPackage::Error);
    QVERIFY(log.count(QtCriticalMsg, category, "Not a file name:") > 0);
    QVERIFY(!QFile::exists(home("escaped")));
}

void tst_AppPackage::hostileFileNameEndsInError()
{
    SignalRecorder recorder(m_package.get());
    download("hostilename");
    QTRY_VERIFY(recorder.names().contains("errorChanged"));
    QCOMPARE(m_package->status(), ItemPackage::Error);
    QVERIFY(!QFile::exists(home("Data/escaped")));
    QVERIFY(!QFile::exists(home("escaped")));
}

void tst_AppPackage::writingTheAppInfoClearsTheError()
{
    download("nowhere");
    QTRY_COMPARE(m_package->status(), ItemPackage::Error);
    m_package->_setAppInfo(nullptr);
    QCOMPARE(m_package->status(), ItemPackage::Null);
    QCOMPARE(m_package->error()->message(), QString());
}

void tst_AppPackage::secondDownloadStartsAnew()
{
    SignalRecorder recorder(m_package.get());
    download("depends");
    m_package->download();
    QTRY_COMPARE(m_package->status(), ItemPackage::Ready);
    QCOMPARE(recorder.names().count("statusChanged"), 2); // Downloading and Ready, once each
    QVERIFY(QFile::exists(home("Apps/depends/main.qml")));
    QVERIFY(QFile::exists(home("Data/tiles/t.tpk")));

    download("depends");
    download("simple"); // another app
    QTRY_COMPARE(m_package->status(), ItemPackage::Ready);
    QCOMPARE(m_package->appInfo()->path(), home("Apps/simple"));
}

void tst_AppPackage::emptyIdIsAskedFor()
{
    download(QString()); // no check is made; there is nothing at that address
    QTRY_COMPARE(m_package->status(), ItemPackage::Error);
}

void tst_AppPackage::downloadIsLogged()
{
    LogCapture log;
    m_package->classBegin();
    QCOMPARE(log.count(QtDebugMsg, category, "classBegin"), 1);
    m_package->_setAppInfo(nullptr);
    QCOMPARE(log.count(QtDebugMsg, category, "Null app info"), 1);
    download("depends");
    QTRY_COMPARE(m_package->status(), ItemPackage::Ready);
    QCOMPARE(log.count(QtDebugMsg, category, home(".cache/packages")) > 0, true);
    for (const char *words : {"\"depends\" dependencies:", "100 %"})
        QVERIFY2(log.count(QtDebugMsg, category, words) > 0, words);
    QCOMPARE(log.count(QtWarningMsg, category, "No itemId property 2"), 1);
}

TESSALINE_TEST_MAIN(tst_AppPackage)
#include "tst_AppPackage.moc"
