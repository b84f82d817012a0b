#include "portal/PortalPackageRequest.h"

#include "plugin/TessalineError.h"
#include "portal/PortalObject.h"
#include "support/DevelopmentPortal.h"
#include "support/HttpServer.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"
#include "support/PortalElement.h"
#include "support/SignalRecorder.h"
#include "support/UnprivilegedUser.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>
#include <QJsonDocument>
#include <QSignalSpy>

// Against the development portal, with the archives that it packs.
class tst_PortalPackageRequest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();

    void completeRun();
    void thumbnails_data();
    void thumbnails();
    void whatGoesToThePortal();
    void infoOnlyStopsAfterTheInformation();
    void withoutUnpackingTheDownloadStays();
    void withoutUnpackingAnExistingFolderIsFilled();
    void withoutAPictureTheEndComesInTheSameCall();
    void errorOfThePortal();
    void damagedArchiveStopsInSilence();
    void missingDataStopInSilence();
    void missingThumbnailStopsAfterTheData();
    void idsThatLeadElsewhereAreRefused_data();
    void idsThatLeadElsewhereAreRefused();
    void fileNamesThatLeadElsewhereAreRefused();
    void packageThatCannotBeRemoved();
    void thumbnailThatCannotBeConverted();
    void thumbnailThatCannotBeDeleted();
    void secondRequestStartsAnew_data();
    void secondRequestStartsAnew();
    void secondRequestOutOfASignalOfTheFirst();
    void secondRequestOutOfAnyProgress();
    void secondRequestOutOfAStep_data();
    void secondRequestOutOfAStep();
    void idIsTakenOverForEveryRun();
    void signalsAreDeclaredInTheirOrder();

private:
    QString output(const QString &name) const { return m_work->filePath("output/" + name); }
    QJsonObject savedInfo(const QString &id) const;

    QQmlEngine m_engine;
    DevelopmentPortal m_server;
    std::unique_ptr<QObject> m_element;
    std::unique_ptr<PortalObject> m_portal;
    std::unique_ptr<QTemporaryDir> m_work;
    std::unique_ptr<PortalPackageRequest> m_request;
};

namespace {

const char package[] = "Zemrik.Tessaline.Package";
const char manager[] = "Zemrik.Tessaline.Manager";
const qint64 Modified = 1500000000000;

QByteArray picture(const char *format, const QSize &size = QSize(8, 8))
{
    QImage image(size, size.width() > 8 ? QImage::Format_Grayscale8 : QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

// A picture whose header claims another size.
QByteArray claiming(int width, int height)
{
    QByteArray bytes = picture("JPG");
    const int frame = bytes.indexOf("\xff\xc0"); // marker, length, precision, height, width
    for (const auto &[place, value] : {std::pair(frame + 5, height), std::pair(frame + 7, width)}) {
        bytes[place] = static_cast<char>(value >> 8);
        bytes[place + 1] = static_cast<char>(value & 0xff);
    }
    return bytes;
}

QStringList withoutProgress(QStringList names)
{
    names.removeAll("progress");
    return names;
}

} // namespace

void tst_PortalPackageRequest::initTestCase()
{
    const QMap<QString, QByteArray> app{{"data/appinfo.json", "{\"a\": 1}"},
                                        {"data/sub/main.qml", "Item {}"},
                                        {"photo.jpg", picture("JPG")},
                                        {"logo.jpeg", picture("JPG")},
                                        {"upper.JPG", picture("JPG")},
                                        {"damaged.jpg", "no picture"},
                                        {"thumbnail.png", picture("PNG")},
                                        {"huge.jpg", claiming(65500, 65500)},
                                        {"large.jpg", picture("JPG", QSize(8001, 8000))}};
    const auto info = [](const QString &thumbnail) {
        return QVariantMap{{"title", "An app"}, {"modified", Modified}, {"thumbnail", thumbnail}};
    };
    m_server.addItem("jpg", info("thumbnail/photo.jpg"), app);
    m_server.addItem("png", info("thumbnail/thumbnail.png"), app);
    m_server.addItem("jpeg", info("logo.jpeg"), app);
    m_server.addItem("upper", info("upper.JPG"), app);
    m_server.addItem("damaged", info("damaged.jpg"), app);
    m_server.addItem("huge", info("huge.jpg"), app);
    m_server.addItem("large", info("large.jpg"), app);
    m_server.addItem("none", info(""), app);
    m_server.addItem("lost", info("lost.png"), app);
    m_server.addItem("broken", info(""), {{"data", "PK no archive"}});
    m_server.addItem("nodata", info(""));
    QMap<QString, QByteArray> withFolder = app;
    withFolder.insert("data/thumbnail.png/file", "in the picture's way");
    m_server.addItem("blocked", info("photo.jpg"), withFolder);
    QMap<QString, QByteArray> withPicture = app;
    withPicture.insert("data/thumbnail.png", "an older picture");
    m_server.addItem("replaced", info("photo.jpg"), withPicture);
    QVERIFY2(m_server.start(), qPrintable(m_server.output()));
    m_element = makePortalElement(m_engine, m_server.url());
    QVERIFY(m_element);
    m_portal = std::make_unique<PortalObject>(m_element.get(), nullptr);
    QVERIFY(m_portal->isPortal());
}

void tst_PortalPackageRequest::cleanupTestCase()
{
    m_request.reset();
    m_element.reset();
}

void tst_PortalPackageRequest::init()
{
    m_work = std::make_unique<QTemporaryDir>();
    m_request = std::make_unique<PortalPackageRequest>();
    m_request->setNetworkAccessManager(m_engine.networkAccessManager());
    m_request->setPortal(m_portal.get());
    m_request->packageFolder = QDir(m_work->filePath("packages"));
    m_request->outputFolder = QDir(m_work->filePath("output"));
    QVERIFY(QDir(m_work->path()).mkpath("packages"));
}

QJsonObject tst_PortalPackageRequest::savedInfo(const QString &id) const
{
    QFile file(output(id + "/iteminfo.json"));
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object()
                                          : QJsonObject();
}

void tst_PortalPackageRequest::completeRun()
{
    LogCapture log;
    SignalRecorder recorder(m_request.get());
    const QString zip = m_work->filePath("packages/jpg.zip");
    connect(m_request.get(), &PortalPackageRequest::itemInfoReady, this, [this, zip] {
        QVERIFY(!QFile::exists(zip));
        QVERIFY(!QFile::exists(output("jpg")));
    });
    connect(m_request.get(), &PortalPackageRequest::dataReady, this, [this, zip] {
        QVERIFY(!QFile::exists(zip));
        QCOMPARE(savedInfo("jpg")["thumbnail"].toString(), QString("thumbnail/photo.jpg"));
        QVERIFY(QFile::exists(output("jpg/sub/main.qml")));
        QVERIFY(!QFile::exists(output("jpg/thumbnail.png")));
    });
    QList<double> progress;
    connect(m_request.get(), &PortalPackageRequest::progress, this,
            [&progress](double value) { progress.append(value); });
    m_request->request("jpg", false);
    QTRY_COMPARE(withoutProgress(recorder.names()),
                 QStringList({"itemInfoReady", "dataReady", "thumbnailReady", "ready"}));

    QCOMPARE(progress.count(1.0), 3);
    QCOMPARE(QDir(output("jpg")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList({"appinfo.json", "iteminfo.json", "sub", "thumbnail.png"}));
    QCOMPARE(QImageReader::imageFormat(output("jpg/thumbnail.png")), QByteArray("png"));
    QCOMPARE(savedInfo("jpg")["thumbnail"].toString(), QString("thumbnail/thumbnail.png"));
    QCOMPARE(savedInfo("jpg")["title"].toString(), QString("An app"));
    QCOMPARE(m_request->itemInfo.value("thumbnail").toString(), QString("thumbnail/thumbnail.png"));
    QCOMPARE(QFileInfo(output("jpg/iteminfo.json")).lastModified().toMSecsSinceEpoch(), Modified);
    QVERIFY(QDir(m_work->filePath("packages")).isEmpty());
    QCOMPARE(log.count(QtDebugMsg, package, "Unpackaging to:"), 1);
    QCOMPARE(log.count(QtDebugMsg, package, "appinfo.json, sub/main.qml"), 1);
    QCOMPARE(log.count(QtDebugMsg, package, "Writing"), 3);
    QCOMPARE(log.count(QtCriticalMsg), 0);
    QCOMPARE(log.count(QtWarningMsg), 0);
}

void tst_PortalPackageRequest::thumbnails_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("writings");
    QTest::addColumn<QString>("critical");

    QTest::newRow("png of that name") << "png"
                                      << "thumbnail.png"
                                      << "thumbnail/thumbnail.png" << 1 << "";
    QTest::newRow("jpeg stays") << "jpeg"
                                << "thumbnail.jpeg"
                                << "thumbnail/thumbnail.jpeg" << 2 << "";
    QTest::newRow("JPG stays") << "upper"
                               << "thumbnail.JPG"
                               << "thumbnail/thumbnail.JPG" << 2 << "";
    QTest::newRow("damaged jpg stays") << "damaged"
                                       << "thumbnail.jpg"
                                       << "thumbnail/thumbnail.jpg" << 2 << "Thumbnail load failed";
    QTest::newRow("jpg that claims 4 gigapixels stays")
        << "huge"
        << "thumbnail.jpg"
        << "thumbnail/thumbnail.jpg" << 2 << "Thumbnail load failed";
    QTest::newRow("jpg of a few pixels too many stays")
        << "large"
        << "thumbnail.jpg"
        << "thumbnail/thumbnail.jpg" << 2 << "Thumbnail load failed";
    QTest::newRow("none") << "none"
                          << ""
                          << "" << 1 << "";
}

void tst_PortalPackageRequest::thumbnails()
{
    QFETCH(QString, id);
    QFETCH(QString, file);
    QFETCH(QString, critical);
    LogCapture log;
    SignalRecorder recorder(m_request.get());
    m_request->request(id, false);
    QTRY_COMPARE(withoutProgress(recorder.names()),
                 QStringList({"itemInfoReady", "dataReady", "thumbnailReady", "ready"}));
    const QStringList pictures = QDir(output(id)).entryList({"thumbnail.*"}, QDir::Files);
    QCOMPARE(pictures, file.isEmpty() ? QStringList() : QStringList(file));
    QTEST(savedInfo(id)["thumbnail"].toString(), "text");
    QTEST(log.count(QtDebugMsg, package, "Writing"), "writings");
    QCOMPARE(log.count(QtCriticalMsg), critical.isEmpty() ? 0 : 1);
    if (!critical.isEmpty())
        QCOMPARE(log.count(QtCriticalMsg, package, critical), 1);
}

void tst_PortalPackageRequest::whatGoesToThePortal()
{
    HttpServer server;
    const auto answer = [](const QByteArray &body) {
        return [body](const HttpServer::Request &) { return HttpServer::Answer{body}; };
    };
    const QByteArray item = "/sharing/rest/content/items/abc";
    server.on(item, answer("{\"id\": \"abc\", \"thumbnail\": \"pictures/a b.png\"}"));
    server.on(item + "/data", answer("bytes"));
    server.on(item + "/info/pictures/a b.png", answer("picture"));
    const auto element = makePortalElement(m_engine, server.url("").toString());
    element->setProperty("token", "tok&en");
    PortalObject portal(element.get());
    m_request->setPortal(&portal);
    QVERIFY(QDir(m_work->path()).mkpath("output/abc"));
    QSignalSpy info(m_request.get(), &PortalPackageRequest::itemInfoReady);
    QSignalSpy ready(m_request.get(), &PortalPackageRequest::ready);
    m_request->request("abc", true);
    QVERIFY(info.wait());
    m_request->requestData(false);
    QVERIFY(ready.wait());

    QStringList seen;
    for (const HttpServer::Request &request : server.requests())
        seen.append(QString("%1 %2 %3").arg(request.method, request.target, request.body));
    QCOMPARE(seen, QStringList({"POST " + item + " f=pjson&token=tok%26en",
                                "POST " + item + "/data token=tok%26en",
                                "POST " + item + "/info/pictures/a%20b.png token=tok%26en"}));
    // The picture lies at the top of the folder, and the item keeps the portal's form of its path.
    QVERIFY(QFile::exists(output("abc/thumbnail.png")));
    QCOMPARE(savedInfo("abc")["thumbnail"].toString(), QString("thumbnail/thumbnail.png"));
    // Without a date the file's time is the start of the epoch.
    QCOMPARE(QFileInfo(output("abc/iteminfo.json")).lastModified().toMSecsSinceEpoch(), 0);
}

void tst_PortalPackageRequest::infoOnlyStopsAfterTheInformation()
{
    SignalRecorder recorder(m_request.get());
    m_request->request("none", true);
    QTRY_COMPARE(withoutProgress(recorder.names()), QStringList({"itemInfoReady"}));
    QCOMPARE(m_request->itemInfo.value("id").toString(), QString("none"));
    QVERIFY(QDir(m_work->filePath("packages")).isEmpty());

    m_request->requestData(true); // the owner goes on
    QTRY_VERIFY(recorder.names().contains("ready"));
    QVERIFY(QFile::exists(output("none/appinfo.json")));
}

void tst_PortalPackageRequest::withoutUnpackingTheDownloadStays()
{
    LogCapture log;
    QSignalSpy ready(m_request.get(), &PortalPackageRequest::ready);
    m_request->packageFileName = "file.bin";
    m_request->request("none", true);
    QSignalSpy info(m_request.get(), &PortalPackageRequest::itemInfoReady);
    QVERIFY(info.wait());
    m_request->requestData(false);
    QVERIFY(ready.wait());
    QVERIFY(QFile::exists(m_work->filePath("packages/file.bin")));
    QVERIFY(!QFile::exists(output("none"))); // nobody made the folder
    QCOMPARE(log.count(QtWarningMsg, package, "Error setting date/time"), 1);
}

void tst_PortalPackageRequest::withoutUnpackingAnExistingFolderIsFilled()
{
    LogCapture log;
    QVERIFY(QDir(m_work->path()).mkpath("output/jpg"));
    QSignalSpy info(m_request.get(), &PortalPackageRequest::itemInfoReady);
    QSignalSpy ready(m_request.get(), &PortalPackageRequest::ready);
    m_request->request("jpg", true);
    QVERIFY(info.wait());
    m_request->requestData(false);
    QVERIFY(ready.wait());
    QVERIFY(QFile::exists(m_work->filePath("packages/jpg.zip")));
    QCOMPARE(QDir(output("jpg")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList({"iteminfo.json", "thumbnail.png"}));
    QCOMPARE(log.count(QtDebugMsg, package, "Unpackaging to:"), 0);
    QCOMPARE(log.count(QtWarningMsg) + log.count(QtCriticalMsg), 0);
}

void tst_PortalPackageRequest::withoutAPictureTheEndComesInTheSameCall()
{
    bool within = false;
    QStringList late;
    SignalRecorder recorder(m_request.get());
    connect(m_request.get(), &PortalPackageRequest::dataReady, this, [&] {
        within = true;
        QMetaObject::invokeMethod(
            this, [&within] { within = false; }, Qt::QueuedConnection);
    });
    connect(m_request.get(), &PortalPackageRequest::ready, this, [&] {
        if (!within)
            late.append("ready");
    });
    m_request->request("none", false);
    QTRY_VERIFY(recorder.names().contains("ready"));
    QCOMPARE(withoutProgress(recorder.names()),
             QStringList({"itemInfoReady", "dataReady", "thumbnailReady", "ready"}));
    QCOMPARE(late, QStringList());
}

void tst_PortalPackageRequest::errorOfThePortal()
{
    LogCapture log;
    SignalRecorder recorder(m_request.get());
    TessalineError *error = nullptr;
    connect(m_request.get(), &PortalPackageRequest::error, this,
            [&error](TessalineError *e) { error = e; });
    m_request->request("unknown", false);
    QTRY_VERIFY(error);
    const std::unique_ptr<TessalineError> owned(error);
    QCOMPARE(withoutProgress(recorder.names()), QStringList({"error"}));
    QCOMPARE(error->message(), QString("Item does not exist or is inaccessible."));
    QCOMPARE(error->details(), QString());
    QCOMPARE(error->code(), 0);
    QVERIFY(!error->parent());
    QCOMPARE(log.count(QtCriticalMsg, manager, "error"), 1);
}

void tst_PortalPackageRequest::damagedArchiveStopsInSilence()
{
    LogCapture log;
    SignalRecorder recorder(m_request.get());
    m_request->request("broken", false);
    QTRY_COMPARE(log.count(QtCriticalMsg, package, "Error opening package:"), 1);
    QCOMPARE(withoutProgress(recorder.names()), QStringList({"itemInfoReady"}));
    QVERIFY(QFile::exists(m_work->filePath("packages/broken.zip")));
    QVERIFY(QDir(output("broken")).isEmpty());
}

void tst_PortalPackageRequest::missingDataStopInSilence()
{
    LogCapture log;
    SignalRecorder recorder(m_request.get());
    m_request->request("nodata", false);
    QTRY_COMPARE(log.count(QtCriticalMsg, manager, "statusCode"), 1);
    QCOMPARE(withoutProgress(recorder.names()), QStringList({"itemInfoReady"}));
    QVERIFY(!QFile::exists(output("nodata")));
}

void tst_PortalPackageRequest::missingThumbnailStopsAfterTheData()
{
    LogCapture log;
    SignalRecorder recorder(m_request.get());
    m_request->request("lost", false);
    QTRY_COMPARE(log.count(QtCriticalMsg, manager, "statusCode"), 1);
    QCOMPARE(withoutProgress(recorder.names()), QStringList({"itemInfoReady", "dataReady"}));
    QVERIFY(QFile::exists(output("lost/appinfo.json")));
}

void tst_PortalPackageRequest::idsThatLeadElsewhereAreRefused_data()
{
    QTest::addColumn<QString>("id");
    QTest::newRow("step") << "..";
    QTest::newRow("dot") << ".";
    QTest::newRow("path") << "../other";
    QTest::newRow("absolute") << "/etc";
    QTest::newRow("slash") << "a/b";
    QTest::newRow("NUL") << QString("a") + QChar(0) + "b";
}

void tst_PortalPackageRequest::idsThatLeadElsewhereAreRefused()
{
    QFETCH(QString, id);
    LogCapture log;
    SignalRecorder recorder(m_request.get());
    std::unique_ptr<TessalineError> error;
    connect(m_request.get(), &PortalPackageRequest::error, this,
            [&error](TessalineError *e) { error.reset(e); });
    m_request->request(id, false);
    QCOMPARE(recorder.names(), QStringList({"error"}));
    QCOMPARE(log.count(QtCriticalMsg, package, "Not a file name:"), 1);
    QVERIFY(!QFile::exists(m_work->filePath("output")));
}

void tst_PortalPackageRequest::fileNamesThatLeadElsewhereAreRefused()
{
    LogCapture log;
    std::unique_ptr<TessalineError> error;
    connect(m_request.get(), &PortalPackageRequest::error, this,
            [&error](TessalineError *e) { error.reset(e); });
    m_request->packageFileName = "../escaped";
    m_request->request("none", false);
    QTRY_VERIFY(error);
    QCOMPARE(log.count(QtCriticalMsg, package, "Not a file name:"), 1);
    QVERIFY(!QFile::exists(m_work->filePath("escaped")));
}

void tst_PortalPackageRequest::packageThatCannotBeRemoved()
{
    LogCapture log;
    QSignalSpy ready(m_request.get(), &PortalPackageRequest::ready);
    QVERIFY(QFile::setPermissions(m_work->path(), QFile::Permissions(0x7777)));
    const UnprivilegedUser user;
    const QString folder = m_work->filePath("mine");
    QVERIFY(QDir(m_work->path()).mkpath("mine"));
    m_request->packageFolder = QDir(folder);
    int steps = 0;
    connect(m_request.get(), &PortalPackageRequest::progress, this, [&](double value) {
        steps += value == 1.0 ? 1 : 0;
        if (steps == 2) // the data are there, unpacking comes next
            QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner);
    });
    m_request->request("none", false);
    QVERIFY(ready.wait());
    QCOMPARE(log.count(QtWarningMsg, package, "Error removing package:"), 1);
    QVERIFY(QFile::exists(folder + "/none.zip"));
    QVERIFY(QFile::exists(output("none/appinfo.json")));
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

void tst_PortalPackageRequest::thumbnailThatCannotBeConverted()
{
    LogCapture log;
    QSignalSpy ready(m_request.get(), &PortalPackageRequest::ready);
    m_request->request("blocked", false);
    QVERIFY(ready.wait());
    QCOMPARE(log.count(QtCriticalMsg, package, "Thumbnail convert failed"), 1);
    QVERIFY(QFile::exists(output("blocked/thumbnail.jpg"))); // the JPEG remains
    QCOMPARE(savedInfo("blocked")["thumbnail"].toString(), QString("thumbnail/thumbnail.jpg"));
}

void tst_PortalPackageRequest::thumbnailThatCannotBeDeleted()
{
    LogCapture log;
    QSignalSpy ready(m_request.get(), &PortalPackageRequest::ready);
    QVERIFY(QFile::setPermissions(m_work->path(), QFile::Permissions(0x7777)));
    QVERIFY(QFile::setPermissions(m_work->filePath("packages"), QFile::Permissions(0x7777)));
    const UnprivilegedUser user;
    int steps = 0;
    connect(m_request.get(), &PortalPackageRequest::progress, this, [&](double value) {
        steps += value == 1.0 ? 1 : 0;
        if (steps == 3) // the picture is there, converting comes next
            QFile::setPermissions(output("replaced"), QFile::ReadOwner | QFile::ExeOwner);
    });
    m_request->request("replaced", false);
    QVERIFY(ready.wait());
    QCOMPARE(log.count(QtCriticalMsg, package, "Thumbnail delete failed"), 1);
    QVERIFY(QFile::exists(output("replaced/thumbnail.jpg")));
    QCOMPARE(QImageReader::imageFormat(output("replaced/thumbnail.png")), QByteArray("png"));
    QFile::setPermissions(output("replaced"),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

void tst_PortalPackageRequest::secondRequestStartsAnew_data()
{
    QTest::addColumn<QString>("rule");
    QTest::addColumn<QStringList>("before"); // signals of the first run
    QTest::newRow("during the information") << "item:slow:1" << QStringList();
    QTest::newRow("during the data") << "data:slow:1" << QStringList({"itemInfoReady"});
    QTest::newRow("during the thumbnail")
        << "thumbnail:slow:1" << QStringList({"itemInfoReady", "dataReady"});
}

void tst_PortalPackageRequest::secondRequestStartsAnew()
{
    QFETCH(QString, rule);
    QFETCH(QStringList, before);
    DevelopmentPortal server;
    for (const char *id : {"first", "second"})
        server.addItem(id, {{"title", id}, {"thumbnail", "t.png"}},
                       {{"data/appinfo.json", "{}"}, {"t.png", id}});
    QVERIFY2(server.start({"--fail", rule}), qPrintable(server.output()));
    const auto element = makePortalElement(m_engine, server.url());
    PortalObject portal(element.get());
    m_request->setPortal(&portal);
    SignalRecorder recorder(m_request.get());
    LogCapture log;
    m_request->request("first", false);
    // Until the slow answer is under way.
    QTRY_VERIFY(log.count(QtDebugMsg, manager, "ReadyStateProcessing") > before.size());
    QCOMPARE(withoutProgress(recorder.take()), before);
    m_request->request("second", false);
    QTRY_COMPARE(withoutProgress(recorder.names()),
                 QStringList({"itemInfoReady", "dataReady", "thumbnailReady", "ready"}));
    QCOMPARE(savedInfo("second")["title"].toString(), QString("second"));
    QFile picture(output("second/thumbnail.png"));
    QVERIFY(picture.open(QIODevice::ReadOnly));
    QCOMPARE(picture.readAll(), QByteArray("second"));
    QCOMPARE(QFile::exists(output("first/appinfo.json")), before.contains("dataReady"));
    QCOMPARE(log.count(QtWarningMsg) + log.count(QtCriticalMsg), 0);
}

void tst_PortalPackageRequest::secondRequestOutOfASignalOfTheFirst()
{
    bool again = true;
    connect(m_request.get(), &PortalPackageRequest::progress, this, [&](double value) {
        if (again && value > 0) {
            again = false;
            m_request->request("png", false);
        }
    });
    QSignalSpy ready(m_request.get(), &PortalPackageRequest::ready);
    m_request->request("jpg", false);
    QVERIFY(ready.wait());
    QVERIFY(!again);
    QVERIFY(QFile::exists(output("png/appinfo.json")));
    QVERIFY(!QFile::exists(output("jpg")));
}

// A request that is used again tells its former progress before it is under way: from there, too, a
// second run starts anew.
void tst_PortalPackageRequest::secondRequestOutOfAnyProgress()
{
    LogCapture log;
    QSignalSpy ready(m_request.get(), &PortalPackageRequest::ready);
    m_request->request("png", false);
    QVERIFY(ready.wait());
    bool done = false;
    for (int last = 1; !done; ++last) {
        QDir(m_work->filePath("output")).removeRecursively();
        int number = 0;
        QStringList names;
        const auto progress = connect(m_request.get(), &PortalPackageRequest::progress, this, [&] {
            if (++number != last)
                return;
            m_request->request("none", false);
            names.append("again");
        });
        const auto data = connect(m_request.get(), &PortalPackageRequest::dataReady, this, [&] {
            names.append(m_request->itemInfo.value("id").toString());
        });
        ready.clear();
        m_request->request("jpg", false);
        QVERIFY(ready.wait());
        disconnect(progress);
        disconnect(data);
        done = !names.contains("again"); // there were fewer steps
        const QString id = done ? "jpg" : "none";
        QCOMPARE(ready.count(), 1);
        QCOMPARE(names.last(), id);
        QCOMPARE(savedInfo(id)["id"].toString(), id);
        QVERIFY(QFile::exists(output(id + "/appinfo.json")));
        QCOMPARE(QDir(output("none")).entryList({"thumbnail.*"}), QStringList());
        QVERIFY2(log.count(QtWarningMsg) + log.count(QtCriticalMsg) == 0,
                 qPrintable(QString("%1: %2").arg(last).arg(log.dump())));
        QVERIFY(last < 100);
    }
}

void tst_PortalPackageRequest::secondRequestOutOfAStep_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<QStringList>("before"); // the last one starts the second run
    const QStringList steps{"itemInfoReady", "dataReady", "thumbnailReady", "ready"};
    for (const char *id : {"jpg", "none"}) {
        for (int i = 0; i < steps.size(); ++i)
            QTest::addRow("%s, %s", id, qPrintable(steps.at(i)))
                << QString(id) << QStringList(steps.mid(0, i + 1));
    }
}

void tst_PortalPackageRequest::secondRequestOutOfAStep()
{
    QFETCH(QString, id);
    QFETCH(QStringList, before);
    LogCapture log;
    SignalRecorder recorder(m_request.get());
    bool again = false;
    const auto restart = [this, &again, &recorder, before] {
        if (again || withoutProgress(recorder.names()) != before)
            return;
        again = true;
        m_request->request("png", false);
    };
    using Request = PortalPackageRequest;
    for (const auto step :
         {&Request::itemInfoReady, &Request::dataReady, &Request::thumbnailReady, &Request::ready})
        connect(m_request.get(), step, this, restart);
    m_request->request(id, false);
    QTRY_COMPARE(withoutProgress(recorder.names()),
                 before + QStringList({"itemInfoReady", "dataReady", "thumbnailReady", "ready"}));
    QCOMPARE(savedInfo("png")["id"].toString(), QString("png"));
    QVERIFY(QFile::exists(output("png/thumbnail.png")));
    QCOMPARE(QFile::exists(output(id + "/appinfo.json")), before.size() > 1);
    QVERIFY2(log.count(QtWarningMsg) + log.count(QtCriticalMsg) == 0, qPrintable(log.dump()));
}

void tst_PortalPackageRequest::idIsTakenOverForEveryRun()
{
    QSignalSpy ready(m_request.get(), &PortalPackageRequest::ready);
    for (const char *id : {"none", "png"}) {
        m_request->request(id, false);
        QVERIFY(ready.wait());
        QVERIFY(QFile::exists(output(QString(id) + "/appinfo.json")));
    }
    QCOMPARE(ready.count(), 2);
}

void tst_PortalPackageRequest::signalsAreDeclaredInTheirOrder()
{
    const auto signatures = [](const QMetaObject &type) {
        QStringList list;
        for (int i = type.methodOffset(); i < type.methodCount(); ++i) {
            if (type.method(i).methodType() == QMetaMethod::Signal)
                list.append(QString::fromLatin1(type.method(i).methodSignature()));
        }
        return list;
    };
    QCOMPARE(signatures(PortalPackageRequest::staticMetaObject),
             QStringList({"progress(double)", "itemInfoReady()", "dataReady()", "thumbnailReady()",
                          "ready()", "error(TessalineError*)"}));
    QCOMPARE(signatures(PortalRequest::staticMetaObject),
             QStringList({"completed(QVariantMap)", "completed()", "error(TessalineError*)"}));
}

TESSALINE_TEST_MAIN(tst_PortalPackageRequest)
#include "tst_PortalPackageRequest.moc"
