#include "catalogue/ItemPackage.h"

#include "catalogue/AppFolder.h"
#include "plugin/TessalineError.h"
#include "support/DevelopmentPortal.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"
#include "support/PortalElement.h"
#include "support/SignalRecorder.h"

#include <QNetworkAccessManager>
#include <QSignalSpy>

// One item that isn't an app, downloaded from the development portal.
class tst_ItemPackage : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();

    void defaults();
    void writingTheItemIdOnlyStores();
    void portalIsSignalledWhenItDiffers();
    void existsLooksInTheDataFolder();
    void whereItemsGo_data();
    void whereItemsGo();
    void signalsInTheirOrder();
    void progressOfEachStep();
    void tilePackageKeepsItsDataWithoutInformation();
    void moduleTagMovesThePathForGood();
    void informationDecidesByTypeAndTags_data();
    void informationDecidesByTypeAndTags();
    void downloadStoresTheIdAndSetsTheStatusAtOnce();
    void secondDownloadStartsAnew();
    void unknownItem();
    void folderThatCannotBeMade();
    void idsThatLeadElsewhere_data();
    void idsThatLeadElsewhere();
    void classBeginAndComponentCompleteAreLogged();
    void downloadGoesThroughTheEnginesManager();

private:
    QStringList download(const QString &id);

    QQmlEngine m_engine;
    DevelopmentPortal m_server;
    std::unique_ptr<QObject> m_portal;
    std::unique_ptr<ItemPackage> m_package;
};

namespace {

const char category[] = "Zemrik.Tessaline.Package";

QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList withoutProgress(QStringList names)
{
    names.removeAll("downloadProgress");
    return names;
}

} // namespace

void tst_ItemPackage::initTestCase()
{
    const QMap<QString, QByteArray> folder{{"data/qmldir", "module M"}};
    m_server.addItem("tiles", {{"title", "Tiles"}, {"type", "Tile Package"}, {"name", "t.tpk"}},
                     {{"t.tpk", "tiles"}, {"thumbnail.png", "picture"}});
    m_server.addItem("lower", {{"type", "tile package"}, {"name", "l.tpk"}}, {{"l.tpk", "l"}});
    m_server.addItem("noname", {{"type", "Tile Package"}, {"name", ""}}, {{"data", "n"}});
    m_server.addItem("data", {{"title", "Data"}, {"tags", QStringList{"DATA"}}}, folder);
    m_server.addItem("keyword", {{"typeKeywords", QStringList{"data", "Module"}}}, folder);
    m_server.addItem("module", {{"tags", QStringList{"x", "MODULE"}}}, folder);
    m_server.addItem("moduletiles",
                     {{"type", "Tile Package"}, {"tags", QStringList{"module"}}, {"name", "m.tpk"}},
                     {{"m.tpk", "m"}});
    QVERIFY2(m_server.start(), qPrintable(m_server.output()));
    m_portal = makePortalElement(m_engine, m_server.url());
    QVERIFY(m_portal);
}

void tst_ItemPackage::cleanupTestCase()
{
    m_package.reset();
    m_portal.reset();
}

void tst_ItemPackage::init()
{
    m_package.reset();
    QDir(QDir::homePath() + "/Zemrik").removeRecursively();
    m_package = std::make_unique<ItemPackage>();
    m_package->setNetworkAccessManager(m_engine.networkAccessManager());
    m_package->_setPortal(m_portal.get());
}

// The signals of a whole download.
QStringList tst_ItemPackage::download(const QString &id)
{
    SignalRecorder recorder(m_package.get());
    QSignalSpy complete(m_package.get(), &ItemPackage::downloadComplete);
    m_package->download(id);
    if (complete.isEmpty() && !complete.wait())
        qWarning() << "No downloadComplete for" << id;
    return recorder.names();
}

void tst_ItemPackage::defaults()
{
    const ItemPackage package;
    QCOMPARE(package.status(), ItemPackage::Null);
    QCOMPARE(package.itemId(), QString());
    QCOMPARE(package.title(), QString());
    QVERIFY(!package.portal());
    QVERIFY(QDir(home("Data")).exists());
    QCOMPARE(int(ItemPackage::Null), 0);
    QCOMPARE(int(ItemPackage::Ready), 1);
    QCOMPARE(int(ItemPackage::Downloading), 2);
    QCOMPARE(int(ItemPackage::Error), 3);
}

void tst_ItemPackage::writingTheItemIdOnlyStores()
{
    SignalRecorder recorder(m_package.get());
    m_package->setItemId("abc");
    QCOMPARE(m_package->itemId(), QString("abc"));
    QCOMPARE(recorder.names(), QStringList());
}

void tst_ItemPackage::portalIsSignalledWhenItDiffers()
{
    SignalRecorder recorder(m_package.get());
    m_package->_setPortal(m_portal.get());
    QCOMPARE(recorder.names(), QStringList());
    m_package->_setPortal(nullptr);
    QCOMPARE(recorder.names(), QStringList({"portalChanged"}));
    QVERIFY(!m_package->portal());
}

void tst_ItemPackage::existsLooksInTheDataFolder()
{
    LogCapture log;
    QVERIFY(!m_package->exists("abc"));
    QCOMPARE(log.count(QtDebugMsg, category, "abc"), 1);
    QVERIFY(QDir().mkpath(home("Data/abc")));
    QVERIFY(m_package->exists("abc"));
    QVERIFY(m_package->exists("")); // the folder itself
    QFile file(home("Data/file"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(!m_package->exists("file"));
}

void tst_ItemPackage::whereItemsGo_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("found");
    QTest::newRow("tile package") << "tiles"
                                  << "Data/tiles/t.tpk" << QByteArray("tiles") << true;
    QTest::newRow("tile package in lower case") << "lower"
                                                << "Data/lower/l.tpk" << QByteArray("l") << true;
    QTest::newRow("tile package without a name")
        << "noname"
        << "Data/noname/noname.zip" << QByteArray("n") << true;
    QTest::newRow("tile package with the module's tag")
        << "moduletiles"
        << "Data/moduletiles/m.tpk" << QByteArray("m") << true;
    QTest::newRow("data") << "data"
                          << ".cache/packages/data/qmldir" << QByteArray("module M") << false;
    QTest::newRow("keywords") << "keyword"
                              << ".cache/packages/keyword/qmldir" << QByteArray("module M")
                              << false;
    QTest::newRow("module") << "module"
                            << ".cache/packages/module/qmldir" << QByteArray("module M") << false;
}

void tst_ItemPackage::whereItemsGo()
{
    QFETCH(QString, id);
    QFETCH(QString, file);
    download(id);
    QCOMPARE(m_package->status(), ItemPackage::Ready);
    QTEST(read(home(file)), "content");
    QTEST(m_package->exists(id), "found");
    QVERIFY(!QFile::exists(home(".cache/packages/" + id + ".zip")));
    const bool unpacked = file.startsWith(".cache");
    QCOMPARE(QFile::exists(home(".cache/packages/" + id + "/iteminfo.json")), unpacked);
}

void tst_ItemPackage::signalsInTheirOrder()
{
    QList<ItemPackage::Status> statuses;
    for (const auto signal : {&ItemPackage::downloadStarted, &ItemPackage::downloadComplete,
                              &ItemPackage::statusChanged})
        connect(m_package.get(), signal, this,
                [this, &statuses] { statuses.append(m_package->status()); });
    QCOMPARE(withoutProgress(download("data")), QStringList({"statusChanged", "downloadStarted",
                                                             "statusChanged", "downloadComplete"}));
    QCOMPARE(statuses,
             QList<ItemPackage::Status>({ItemPackage::Downloading, ItemPackage::Downloading,
                                         ItemPackage::Ready, ItemPackage::Ready}));
    QCOMPARE(m_package->title(), QString("Data"));
}

void tst_ItemPackage::progressOfEachStep()
{
    QList<QPair<int, int>> values;
    int before = 0; // times that 100 came before downloadStarted
    connect(m_package.get(), &ItemPackage::downloadProgress, this,
            [&values](int percentage, int seconds) {
                values.append({percentage, seconds});
            });
    connect(m_package.get(), &ItemPackage::downloadStarted, this, [&values, &before] {
        before = values.count({100, 0});
    });
    download("tiles"); // with a picture: three steps
    QCOMPARE(before, 1);
    QCOMPARE(values.count({100, 0}), 3);
    for (const auto &value : qAsConst(values))
        QVERIFY(value.first >= 0 && value.first <= 100 && value.second == 0);
}

void tst_ItemPackage::tilePackageKeepsItsDataWithoutInformation()
{
    LogCapture log;
    download("tiles");
    QCOMPARE(QDir(home("Data/tiles")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList({"t.tpk"})); // nobody made Data/tiles/tiles
    QCOMPARE(log.count(QtWarningMsg, category, "Error setting date/time"), 1);
}

void tst_ItemPackage::moduleTagMovesThePathForGood()
{
    LogCapture log;
    QVERIFY(QDir().mkpath(home("Data/one")));
    QVERIFY(QDir().mkpath(home("Modules/two")));
    QVERIFY(m_package->exists("one") && !m_package->exists("two"));
    download("keyword"); // among the keywords it has no effect
    QVERIFY(m_package->exists("one") && !m_package->exists("two"));
    QCOMPARE(log.count(QtDebugMsg, category, "Module:"), 0);
    download("module");
    QVERIFY(!m_package->exists("one") && m_package->exists("two"));
    QCOMPARE(log.count(QtDebugMsg, category, "Module:"), 1);
    download("data");
    QVERIFY(!m_package->exists("one") && m_package->exists("two"));
    download("tiles");
    QCOMPARE(read(home("Modules/tiles/t.tpk")), QByteArray("tiles"));
}

void tst_ItemPackage::informationDecidesByTypeAndTags_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("line");
    QTest::newRow("tag") << "data"
                         << "isData= true isTilePackage false";
    QTest::newRow("keyword") << "keyword"
                             << "isData= true isTilePackage false";
    QTest::newRow("tiles") << "lower"
                           << "isData= false isTilePackage true";
    QTest::newRow("neither") << "module"
                             << "isData= false isTilePackage false";
}

void tst_ItemPackage::informationDecidesByTypeAndTags()
{
    QFETCH(QString, id);
    QFETCH(QString, line);
    LogCapture log;
    download(id);
    QVERIFY2(log.count(QtDebugMsg, category, line) == 1, qPrintable(log.dump()));
}

void tst_ItemPackage::downloadStoresTheIdAndSetsTheStatusAtOnce()
{
    m_package->download("data");
    QCOMPARE(m_package->itemId(), QString("data"));
    QCOMPARE(m_package->status(), ItemPackage::Downloading);
    QVERIFY(QDir(home(".cache/packages")).exists());
    QTRY_COMPARE(m_package->status(), ItemPackage::Ready);
}

void tst_ItemPackage::secondDownloadStartsAnew()
{
    SignalRecorder recorder(m_package.get());
    m_package->download("tiles");
    m_package->download("data");
    QTRY_COMPARE(m_package->status(), ItemPackage::Ready);
    QCOMPARE(withoutProgress(recorder.names()), QStringList({"statusChanged", "downloadStarted",
                                                             "statusChanged", "downloadComplete"}));
    QVERIFY(QFile::exists(home(".cache/packages/data/qmldir")));
    QVERIFY(!QFile::exists(home("Data/tiles")));
}

void tst_ItemPackage::unknownItem()
{
    SignalRecorder recorder(m_package.get());
    std::unique_ptr<TessalineError> error;
    connect(m_package.get(), &ItemPackage::downloadError, this,
            [&error](TessalineError *e) { error.reset(e); });
    m_package->download("nowhere");
    QTRY_VERIFY(error);
    QCOMPARE(error->message(), QString("Item does not exist or is inaccessible."));
    QVERIFY(!error->parent());
    QCOMPARE(withoutProgress(recorder.names()), QStringList({"statusChanged", "downloadError"}));
    QCOMPARE(m_package->status(), ItemPackage::Downloading); // never Error
}

void tst_ItemPackage::folderThatCannotBeMade()
{
    QVERIFY(QDir().mkpath(home("Data")));
    QFile file(home("Data/tiles")); // in the folder's way
    QVERIFY(file.open(QIODevice::WriteOnly));
    LogCapture log;
    SignalRecorder recorder(m_package.get());
    std::unique_ptr<TessalineError> error;
    connect(m_package.get(), &ItemPackage::downloadError, this,
            [&error](TessalineError *e) { error.reset(e); });
    m_package->download("tiles");
    QTRY_VERIFY(error);
    QCOMPARE(error->message(), QString("Error creating:"));
    QCOMPARE(error->details(), home("Data/tiles"));
    QCOMPARE(log.count(QtCriticalMsg, category, "Unable to create:"), 1);
    QCOMPARE(withoutProgress(recorder.names()), QStringList({"statusChanged", "downloadError"}));
    QCOMPARE(m_package->status(), ItemPackage::Downloading);
}

void tst_ItemPackage::idsThatLeadElsewhere_data()
{
    QTest::addColumn<QString>("id");
    QTest::newRow("step") << "..";
    QTest::newRow("dot") << ".";
    QTest::newRow("path") << "../Apps";
    QTest::newRow("absolute") << "/etc";
    QTest::newRow("NUL") << QString("a") + QChar(0);
}

void tst_ItemPackage::idsThatLeadElsewhere()
{
    QFETCH(QString, id);
    LogCapture log;
    QVERIFY(!m_package->exists(id));
    QCOMPARE(log.count(QtCriticalMsg, category, "Not an item id:"), 1);
    std::unique_ptr<TessalineError> error;
    connect(m_package.get(), &ItemPackage::downloadError, this,
            [&error](TessalineError *e) { error.reset(e); });
    m_package->download(id);
    QVERIFY(error); // before any request
    QCOMPARE(error->details(), id);
    QVERIFY(QDir(home(".cache/packages")).isEmpty());
}

void tst_ItemPackage::classBeginAndComponentCompleteAreLogged()
{
    LogCapture log;
    m_package->classBegin();
    m_package->componentComplete();
    QCOMPARE(log.count(QtDebugMsg, category, "classBegin"), 1);
    QCOMPARE(log.count(QtDebugMsg, category, "componentComplete"), 1);
}

void tst_ItemPackage::downloadGoesThroughTheEnginesManager()
{
    QSignalSpy finished(m_engine.networkAccessManager(), &QNetworkAccessManager::finished);
    QQmlComponent component(&m_engine);
    component.setData("import Zemrik.Tessaline 1.0\nItemPackage {}", QUrl());
    const std::unique_ptr<QObject> made(component.create());
    auto *package = qobject_cast<ItemPackage *>(made.get());
    QVERIFY2(package, qPrintable(component.errorString()));
    package->_setPortal(m_portal.get());
    package->download("data");
    QTRY_COMPARE(package->status(), ItemPackage::Ready);
    QCOMPARE(finished.count(), 2);

    ItemPackage own; // that no engine made, and no owner gave a manager
    own._setPortal(m_portal.get());
    own.download("data");
    QTRY_COMPARE(own.status(), ItemPackage::Ready);
    QCOMPARE(finished.count(), 2);
}

TESSALINE_TEST_MAIN(tst_ItemPackage)
#include "tst_ItemPackage.moc"
