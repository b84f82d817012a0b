#include "catalogue/AppPackage.h"

#include "catalogue/AppFolder.h"
#include "catalogue/AppInfoList.h"
#include "plugin/TessalineError.h"
#include "support/DevelopmentPortal.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"
#include "support/PortalElement.h"
#include "support/SignalRecorder.h"

#include <QBuffer>
#include <QDirIterator>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>
#include <QNetworkAccessManager>
#include <QSignalSpy>

// One app with its dependencies, downloaded from the development portal.
class tst_AppPackage : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();

    void appWithoutDependencies();
    void traceOfOneDownload();
    void kindsGoToTheirFolders_data();
    void kindsGoToTheirFolders();
    void packageDoesNotChangeTheFolder();
    void unpackedDependencyIsFetchedEachTime();
    void dependenciesComeInTheirOrder();
    void presentDependenciesAreNotFetched();
    void unknownItemEndsInError();
    void missingDependencyEndsInError();
    void hostileDependencyEndsInError();
    void hostileFileNameEndsInError();
    void writingTheAppInfoClearsTheError();
    void secondDownloadStartsAnew();
    void secondDownloadDropsTheDependency();
    void writingTheAppInfoDropsTheDownload_data();
    void writingTheAppInfoDropsTheDownload();
    void downloadOutOfAnErrorStartsAnew();
    void tilesOfAnEarlierProcessAreFetchedAgain();
    void emptyIdIsAskedFor();
    void nullAppInfoLeavesTheId();
    void writingTheAppInfoSignalsInItsOrder();
    void ownAppInfoIsNoSource();
    void dependenciesGoThroughAManagerOfTheirOwn();
    void manyDependenciesThatAreThere();
    void downloadIsLogged();

private:
    void download(const QString &id, const QString &keyword = "app");

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
    addApp("disguised", "{\"type\": \"Tool\"}");
    QImage image(4, 4, QImage::Format_RGB32);
    image.fill(Qt::blue);
    QBuffer picture;
    picture.open(QIODevice::WriteOnly);
    image.save(&picture, "JPG");
    m_server.addItem("trace",
                     {{"title", "Trace"},
                      {"thumbnail", "thumbnail/photo.jpg"},
                      {"modified", qint64(1500000000000)}},
                     {{"data/appinfo.json", appInfo({"tiles", "module"})},
                      {"data/main.qml", "Item {}"},
                      {"photo.jpg", picture.data()}});
    addApp("hostile", appInfo({"../escaped"}));
    QStringList many;
    for (int i = 0; i < 20000; ++i)
        many.append("here");
    addApp("many", appInfo(many));
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

// Everything that comes to lie on the disk, at the signal where it is first seen.
void tst_AppPackage::traceOfOneDownload()
{
    QStringList trace;
    const auto note = [this, &trace](const QString &event) {
        QStringList files;
        QDirIterator walk(home(""), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (walk.hasNext())
            files.append(QDir(home("")).relativeFilePath(walk.next()));
        files.sort();
        trace.append(event + ": " + files.join(' '));
    };
    connect(m_package.get(), &AppPackage::progress, this, [&](int percentage, int seconds) {
        QCOMPARE(seconds, 0);
        if (percentage == 100 && m_package->status() == ItemPackage::Downloading)
            note("100");
    });
    connect(m_package.get(), &AppPackage::statusChanged, this,
            [&] { note("status " + QString::number(m_package->status())); });
    connect(m_package.get(), &AppPackage::appInfoChanged, this, [&] {
        if (m_package->status() == ItemPackage::Downloading)
            note("app");
    });
    connect(m_package.get(), &AppPackage::statusMessageChanged, this, [&] { note("message"); });
    download("trace");
    QTRY_COMPARE(m_package->status(), ItemPackage::Ready);

    const QString app = "Apps/trace/appinfo.json Apps/trace/iteminfo.json Apps/trace/main.qml";
    const QString done = app + " Apps/trace/thumbnail.png";
    const QString mark = ".cache/packages/tiles.incomplete ";
    const QString tiles = done + " Data/tiles/t.tpk";
    // Each request tells its end before the owner goes on; one that is used again first tells where
    // it was.
    const QStringList expected{
        "status 2: ",
        "100: ",                                     // the information
        "100: .cache/packages/trace.zip",            // the data
        "100: " + app + " Apps/trace/thumbnail.jpg", // the picture
        "app: " + done,
        "100: " + done,            // the first dependency's information
        "message: " + mark + done, // they aren't whole yet
        "100: " + mark + tiles,
        "100: " + tiles, // the second one's, told again and anew
        "100: " + tiles,
        "100: " + tiles, // its data, told again
        "message: " + tiles,
        "100: .cache/packages/module.zip " + tiles,
        "status 1: .cache/packages/module/iteminfo.json .cache/packages/module/qmldir " + tiles,
    };
    for (int i = 0; i < qMax(trace.size(), expected.size()); ++i)
        QCOMPARE(trace.value(i), expected.value(i));
    QCOMPARE(QImageReader::imageFormat(home("Apps/trace/thumbnail.png")), QByteArray("png"));
    QCOMPARE(QFileInfo(home("Apps/trace/iteminfo.json")).lastModified().toMSecsSinceEpoch(),
             1500000000000);
    QCOMPARE(m_package->appInfo()->itemInfo().value("thumbnail").toString(),
             QString("thumbnail/thumbnail.png"));

    // The catalogue finds it at its next refresh; the picture is newer than the portal's date.
    AppInfoList list;
    AppInfo *found = list.findById("trace");
    QVERIFY(!found);
    list.refresh();
    found = list.findById("trace");
    QVERIFY(found && found->isLocal() && found->isValid());
    found->statusUpdate(QVariantMap{{"modified", qint64(1500000000000)}});
    QVERIFY(found->isUpdatedLocally() && !found->isUpdateAvailable());
}

void tst_AppPackage::kindsGoToTheirFolders_data()
{
    QTest::addColumn<QString>("keyword");
    QTest::addColumn<QString>("folder");
    QTest::newRow("app") << "app"
                         << "Apps";
    QTest::newRow("template") << "Template"
                              << "Templates";
    QTest::newRow("tool") << "tool"
                          << "Toolbox";
    QTest::newRow("neither") << "other"
                             << "Apps";
}

void tst_AppPackage::kindsGoToTheirFolders()
{
    QFETCH(QString, keyword);
    QFETCH(QString, folder);
    download("simple", keyword);
    QTRY_COMPARE(m_package->status(), ItemPackage::Ready);
    QVERIFY(QFile::exists(home(folder + "/simple/main.qml")));
}

void tst_AppPackage::packageDoesNotChangeTheFolder()
{
    download("disguised"); // its appinfo.json says that it is a tool
    QTRY_COMPARE(m_package->status(), ItemPackage::Ready);
    QVERIFY(QFile::exists(home("Apps/disguised/main.qml")));
    QVERIFY(!QFile::exists(home("Toolbox/disguised")));
    QCOMPARE(m_package->appInfo()->type(), AppInfo::Tool);
}

void tst_AppPackage::unpackedDependencyIsFetchedEachTime()
{
    QStringList messages;
    const auto listen = [this, &messages] {
        connect(m_package.get(), &AppPackage::statusMessageChanged, this,
                [this, &messages] { messages.append(m_package->statusMessage()); });
    };
    const auto run = [this] {
        download("trace");
        QTRY_COMPARE(m_package->status(), ItemPackage::Ready);
    };
    const QStringList both{"Downloading dependency 1 of 2\r\nTiles",
                           "Downloading dependency 2 of 2\r\nModule"};
    listen();
    run();
    QCOMPARE(messages, both);
    m_package = std::make_unique<AppPackage>();
    m_package->_setPortal(m_portal.get());
    listen();
    run(); // the tiles are found, the module isn't
    QCOMPARE(messages, both + both.mid(1));
    run(); // the module has sent this object to the Modules folder, where the tiles aren't either
    QCOMPARE(messages, both + both.mid(1) + both);
    QVERIFY(QFile::exists(home("Modules/tiles/t.tpk")));
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

void tst_AppPackage::secondDownloadDropsTheDependency()
{
    QStringList events;
    bool again = false;
    connect(m_package.get(), &AppPackage::statusMessageChanged, this, [&] {
        if (again)
            return;
        again = true;
        events.append("again");
        m_package->download();
    });
    connect(m_package.get(), &AppPackage::statusChanged, this,
            [&] { events.append(QString("status %1").arg(m_package->status())); });
    download("depends");
    connect(m_package.get(), &AppPackage::appInfoChanged, this, [&] { events.append("app"); });
    QTRY_COMPARE(m_package->status(), ItemPackage::Ready);
    QCOMPARE(events, QStringList({"status 2", "app", "again", "app", "status 1"}));
    QFile tiles(home("Data/tiles/t.tpk"));
    QVERIFY(tiles.open(QIODevice::ReadOnly));
    QCOMPARE(tiles.readAll(), QByteArray("tiles"));
    QTest::qWait(200); // what was dropped could come later
    QCOMPARE(events.size(), 5);
}

void tst_AppPackage::writingTheAppInfoDropsTheDownload_data()
{
    QTest::addColumn<QString>("signal");
    QTest::newRow("while the app comes") << "progress";
    QTest::newRow("when the app has come") << "appInfoChanged";
    QTest::newRow("while a dependency comes") << "statusMessageChanged";
}

void tst_AppPackage::writingTheAppInfoDropsTheDownload()
{
    QFETCH(QString, signal);
    download("depends");
    AppInfo other(QVariantMap{{"id", "simple"}}, nullptr);
    bool written = false;
    const auto write = [&] {
        if (written)
            return;
        written = true;
        m_package->_setAppInfo(&other);
    };
    if (signal == "progress")
        connect(m_package.get(), &AppPackage::progress, this, write);
    else if (signal == "appInfoChanged")
        connect(m_package.get(), &AppPackage::appInfoChanged, this, write);
    else
        connect(m_package.get(), &AppPackage::statusMessageChanged, this, write);
    QTRY_VERIFY(written);
    QCOMPARE(m_package->status(), ItemPackage::Null);
    SignalRecorder recorder(m_package.get());
    QTest::qWait(300);
    QCOMPARE(recorder.names(), QStringList());
    m_package->download();
    QTRY_COMPARE(m_package->status(), ItemPackage::Ready);
    QCOMPARE(m_package->appInfo()->title(), QString("simple"));
}

void tst_AppPackage::downloadOutOfAnErrorStartsAnew()
{
    connect(m_package.get(), &AppPackage::errorChanged, this, [this] {
        QVERIFY(QDir().mkpath(home("Data/nowhere")));
        m_package->download();
    });
    download("lost");
    QSignalSpy statuses(m_package.get(), &AppPackage::statusChanged);
    QTRY_COMPARE(m_package->status(), ItemPackage::Ready);
    QCOMPARE(statuses.count(), 1); // never Error
}

void tst_AppPackage::tilesOfAnEarlierProcessAreFetchedAgain()
{
    for (const QString &name : {home("Data/tiles"), home(".cache/packages")})
        QVERIFY(QDir().mkpath(name));
    for (const QString &name :
         {home("Data/tiles/t.tpk"), home(".cache/packages/tiles.incomplete")}) {
        QFile file(name);
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    download("depends");
    QTRY_COMPARE(m_package->status(), ItemPackage::Ready);
    QCOMPARE(QFileInfo(home("Data/tiles/t.tpk")).size(), 5);
    QVERIFY(!QFile::exists(home(".cache/packages/tiles.incomplete")));
}

void tst_AppPackage::emptyIdIsAskedFor()
{
    download(QString()); // no check is made; there is nothing at that address
    QTRY_COMPARE(m_package->status(), ItemPackage::Error);
}

void tst_AppPackage::nullAppInfoLeavesTheId()
{
    download("simple");
    QTRY_COMPARE(m_package->status(), ItemPackage::Ready);
    m_package->_setAppInfo(nullptr);
    QCOMPARE(m_package->appInfo()->itemId(), QString());
    QVERIFY(!m_package->appInfo()->isLocal());
    m_package->download();
    QTRY_COMPARE(m_package->status(), ItemPackage::Ready);
    QCOMPARE(m_package->appInfo()->itemId(), QString("simple"));
}

void tst_AppPackage::writingTheAppInfoSignalsInItsOrder()
{
    download("nowhere");
    QTRY_COMPARE(m_package->status(), ItemPackage::Error);
    QStringList seen;
    const auto note = [this, &seen](const char *signal) {
        return [this, &seen, signal] {
            seen.append(QString("%1 %2 %3")
                            .arg(signal)
                            .arg(m_package->status())
                            .arg(m_package->error()->message().isEmpty() ? "cleared" : "set"));
        };
    };
    connect(m_package.get(), &AppPackage::appInfoChanged, this, note("appInfo"));
    connect(m_package.get(), &AppPackage::statusChanged, this, note("status"));
    connect(m_package.get(), &AppPackage::errorChanged, this, note("error"));
    connect(m_package->error(), &TessalineError::objectChanged, this, note("object"));
    const QStringList expected{"appInfo 3 set", "status 0 set", "object 0 cleared"};
    AppInfo other(QVariantMap{{"id", "simple"}}, nullptr);
    m_package->_setAppInfo(&other);
    QCOMPARE(seen, expected);
}

// The member is emptied before the object that is written is looked at.
void tst_AppPackage::ownAppInfoIsNoSource()
{
    download("simple");
    QTRY_COMPARE(m_package->status(), ItemPackage::Ready);
    m_package->_setAppInfo(m_package->appInfo());
    QCOMPARE(m_package->status(), ItemPackage::Null);
    QCOMPARE(m_package->appInfo()->itemId(), QString());
}

void tst_AppPackage::dependenciesGoThroughAManagerOfTheirOwn()
{
    QSignalSpy finished(m_engine.networkAccessManager(), &QNetworkAccessManager::finished);
    QQmlComponent component(&m_engine);
    component.setData("import Zemrik.Tessaline 1.0\nAppPackage {}", QUrl());
    const std::unique_ptr<QObject> made(component.create());
    auto *package = qobject_cast<AppPackage *>(made.get());
    QVERIFY2(package, qPrintable(component.errorString()));
    package->_setPortal(m_portal.get());
    AppInfo found(QVariantMap{{"id", "depends"}}, nullptr);
    package->_setAppInfo(&found);
    package->download();
    QTRY_COMPARE(package->status(), ItemPackage::Ready);
    QVERIFY(QFile::exists(home("Data/tiles/t.tpk")));
    QCOMPARE(finished.count(), 2); // the app's information and its data
}

// A hostile package names more than anybody needs.
void tst_AppPackage::manyDependenciesThatAreThere()
{
    QVERIFY(QDir().mkpath(home("Data/here")));
    download("many");
    QTRY_COMPARE(m_package->status(), ItemPackage::Ready);
    QCOMPARE(m_package->appInfo()->dependencies().size(), 20000);
    QCOMPARE(m_package->statusMessage(), QString());
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
    for (const QString &words :
         {"packages QDir( \"" + home(".cache/packages"), "output QDir( \"" + home("Apps"),
          QString("\"depends\" dependencies:"), QString("100 %")})
        QVERIFY2(log.count(QtDebugMsg, category, words) > 0, qPrintable(words));
    QCOMPARE(log.count(QtWarningMsg, category, "No itemId property 2"), 1);
}

TESSALINE_TEST_MAIN(tst_AppPackage)
#include "tst_AppPackage.moc"
