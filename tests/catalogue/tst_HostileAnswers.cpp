#include "archives/ZipWriter.h"
#include "catalogue/AppFolder.h"
#include "catalogue/AppInfoList.h"
#include "catalogue/AppPackage.h"
#include "support/HttpServer.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"
#include "support/PortalElement.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMetaProperty>
#include <QQmlListReference>
#include <QSignalSpy>

// A portal that answers what no portal should.
class tst_HostileAnswers : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void tokenThatNamesAFileIsTextInEveryRequest();
    void wrongTypesOfAnItemsKeys_data();
    void wrongTypesOfAnItemsKeys();
    void wrongTypesOfTheAnswersKeys_data();
    void wrongTypesOfTheAnswersKeys();
    void answersThatAreNoObject_data();
    void answersThatAreNoObject();
    void anAnswerWithoutABodyHasNoStatus();
    void tenMegabytesInOneItem();
    void tenMegabytesOfItems();
    void deepAnswer();
    void wrongTypesInTheItemsInformation();

private:
    void search(const QByteArray &answer);
    void checkLocalAppIsUnchanged();

    QQmlEngine m_engine;
    HttpServer m_server;
    std::unique_ptr<QObject> m_portal;
    std::unique_ptr<AppInfoList> m_list;
};

namespace {

const QByteArray localInfo = "{\"id\": \"local\", \"title\": \"Local\"}";

void write(const QString &path, const QByteArray &content)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("%s can't be written", qPrintable(path));
}

QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

HttpServer::Handler answering(const QByteArray &body, const QByteArray &type = "application/json")
{
    return [body, type](const HttpServer::Request &) {
        return HttpServer::Answer{body, 200, type};
    };
}

const QList<QPair<const char *, QByteArray>> &wrongValues()
{
    static const QList<QPair<const char *, QByteArray>> values{
        {"null", "null"},          {"bool", "true"},
        {"number", "42"},          {"negative", "-1"},
        {"huge number", "1e308"},  {"beyond 64 bits", "99999999999999999999999999"},
        {"fraction", "0.1"},       {"text", "\"text\""},
        {"empty text", "\"\""},    {"controls", "\"a\\u0000b\\n\\ud800\""},
        {"steps", "\"../../..\""}, {"list", "[1, null, {}, [\"x\"], \"y\"]"},
        {"empty list", "[]"},      {"object", "{\"id\": \"x\", \"list\": [1]}"},
        {"empty object", "{}"},
    };
    return values;
}

void readAllProperties(const QObject *object)
{
    const QMetaObject *metaObject = object->metaObject();
    for (int i = 0; i < metaObject->propertyCount(); ++i)
        metaObject->property(i).read(object);
}

} // namespace

void tst_HostileAnswers::init()
{
    QDir(QDir::homePath() + "/Zemrik").removeRecursively();
    write(home("Apps/local/appinfo.json"), "{}");
    write(home("Apps/local/iteminfo.json"), localInfo);
    m_server.clearRequests();
    m_portal = makePortalElement(m_engine, m_server.url("").toString());
    m_list = std::make_unique<AppInfoList>();
    // With the engine's manager: one connection for all of them.
    QQmlEngine::setContextForObject(m_list.get(), m_engine.rootContext());
    m_list->componentComplete();
    m_list->setPortal(m_portal.get());
    m_list->setSigninRequired(false);
    m_list->filter()->_setTypes(AppInfo::App | AppInfo::Template | AppInfo::Tool);
}

void tst_HostileAnswers::cleanup()
{
    m_list.reset();
    m_portal.reset();
}

// To the end of the search, and every property of all that came of it.
void tst_HostileAnswers::search(const QByteArray &answer)
{
    m_server.on("/sharing/rest/search", answering(answer));
    QSignalSpy complete(m_list.get(), &AppInfoList::refreshComplete);
    m_list->refresh(true);
    QVERIFY(complete.wait(20000));
    QVERIFY(!m_list->isRefreshing());
    const QQmlListReference apps(m_list.get(), "apps");
    for (int i = 0; i < apps.count(); ++i) {
        auto *app = qobject_cast<AppInfo *>(apps.at(i));
        readAllProperties(app);
        QVERIFY2(!app->itemId().contains('/'), qPrintable(app->itemId()));
    }
    const QQmlListReference filtered(m_list.get(), "filteredApps");
    QVERIFY(filtered.count() <= apps.count());
    checkLocalAppIsUnchanged();
}

void tst_HostileAnswers::checkLocalAppIsUnchanged()
{
    AppInfo *local = m_list->findById("local");
    QVERIFY(local && local->isLocal());
    QCOMPARE(local->title(), QString("Local"));
    QCOMPARE(read(home("Apps/local/iteminfo.json")), localInfo);
    QCOMPARE(QDir(home("Apps")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList({"local"}));
}

void tst_HostileAnswers::tokenThatNamesAFileIsTextInEveryRequest()
{
    const QString secret = QDir::homePath() + "/secret.txt";
    write(secret, "words of a secret file");
    const QString archive = QDir::homePath() + "/app.zip";
    QFile::remove(archive);
    write(QDir::homePath() + "/pack/appinfo.json", "{\"dependencies\": [\"tiles\"]}");
    ZipWriter writer;
    writer.setPath(archive);
    QVERIFY(writer.addFile(QDir::homePath() + "/pack/appinfo.json", "appinfo.json"));
    writer.close();

    const QString items = "/sharing/rest/content/items/";
    m_server.on("/sharing/rest/info",
                answering("{\"owningSystemUrl\": \"\", \"authInfo\": {\"tokenServicesUrl\": \""
                          + m_server.url("/token").toString().toUtf8() + "\"}}"));
    m_server.on("/token",
                answering("{\"token\": \"@" + secret.toUtf8() + "\", \"expires\": "
                          + QByteArray::number(QDateTime::currentMSecsSinceEpoch() + 600000)
                          + ", \"ssl\": false}"));
    m_server.on("/sharing/rest/portals/self", answering("{}"));
    m_server.on("/sharing/rest/community/users/jo", answering("{}"));
    m_server.on("/sharing/rest/search",
                answering("{\"results\": [{\"id\": \"app\", \"thumbnail\": \"t.png\"}]}"));
    m_server.on((items + "app").toUtf8(), answering("{\"id\": \"app\", \"thumbnail\": \"t.png\"}"));
    m_server.on((items + "app/data").toUtf8(), answering(read(archive), "application/zip"));
    m_server.on((items + "app/info/t.png").toUtf8(), answering("picture", "image/png"));
    m_server.on((items + "tiles").toUtf8(),
                answering("{\"id\": \"tiles\", \"type\": \"Tile Package\", \"name\": \"t.tpk\"}"));
    m_server.on((items + "tiles/data").toUtf8(), answering("tiles", "text/plain"));

    QVERIFY(signIn(m_portal.get(), "jo", "@" + secret)); // a password of that kind, too
    QTRY_VERIFY(!m_list->isRefreshing());
    QVERIFY(m_list->findById("app"));
    AppPackage package;
    package._setPortal(m_portal.get());
    package._setAppInfo(m_list->findById("app"));
    package.download();
    QTRY_COMPARE(package.status(), ItemPackage::Ready);

    int withToken = 0;
    for (const HttpServer::Request &request : m_server.requests()) {
        QVERIFY2(!request.body.contains("words of"), request.path.constData());
        QVERIFY2(request.parts.isEmpty(), request.path.constData());
        const QByteArray body = QUrl::fromPercentEncoding(request.body).toUtf8();
        if (request.path == "/token")
            QVERIFY2(body.contains("#password=@" + secret.toUtf8()), body.constData());
        else if (request.path != "/sharing/rest/info")
            QVERIFY2(body.contains("token=@" + secret.toUtf8()), body.constData());
        withToken += body.contains("token=@") ? 1 : 0;
    }
    QCOMPARE(withToken, 8); // self, user, search, and two items with their files
}

void tst_HostileAnswers::wrongTypesOfAnItemsKeys_data()
{
    QTest::addColumn<QByteArray>("key");
    for (const char *key :
         {"id", "title", "snippet", "description", "tags", "typeKeywords", "type", "thumbnail",
          "thumbnailUrl", "licenseInfo", "accessInformation", "access", "owner", "avgRating",
          "numRatings", "created", "modified", "size"})
        QTest::newRow(key) << QByteArray(key);
}

void tst_HostileAnswers::wrongTypesOfAnItemsKeys()
{
    QFETCH(QByteArray, key);
    // Of new items, of one that is here, and beside a good one.
    QByteArray results;
    int number = 0;
    for (const auto &value : wrongValues()) {
        const QByteArray member = ", \"" + key + "\": " + value.second + "}, ";
        results += "{\"id\": \"new" + QByteArray::number(++number) + "\"" + member;
        results += "{\"id\": \"local\"" + member;
    }
    search("{\"results\": [" + results + "{\"id\": \"good\", \"title\": \"Good\"}]}");
    QVERIFY(m_list->findById("good"));
    QCOMPARE(m_list->findById("good")->title(), QString("Good"));
}

void tst_HostileAnswers::wrongTypesOfTheAnswersKeys_data()
{
    QTest::addColumn<QByteArray>("member");
    for (const char *key : {"results", "total", "start", "num", "query"}) {
        for (const auto &value : wrongValues())
            QTest::addRow("%s, %s", key, value.first)
                << "\"" + QByteArray(key) + "\": " + value.second;
    }
    QTest::newRow("nextStart, negative") << QByteArray("\"nextStart\": -5");
    QTest::newRow("nextStart, null") << QByteArray("\"nextStart\": null");
    QTest::newRow("nextStart, text") << QByteArray("\"nextStart\": \"more\"");
    QTest::newRow("nextStart, list") << QByteArray("\"nextStart\": [1]");
    QTest::newRow("nextStart, object") << QByteArray("\"nextStart\": {\"a\": 1}");
    QTest::newRow("nextStart, beyond an int") << QByteArray("\"nextStart\": 1e300");
}

void tst_HostileAnswers::wrongTypesOfTheAnswersKeys()
{
    QFETCH(QByteArray, member);
    search("{" + member + "}");
}

void tst_HostileAnswers::answersThatAreNoObject_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::newRow("blank") << QByteArray(" ");
    QTest::newRow("list") << QByteArray("[{\"id\": \"x\"}]");
    QTest::newRow("text") << QByteArray("\"results\"");
    QTest::newRow("HTML") << QByteArray("<html>no portal</html>");
    QTest::newRow("cut off") << QByteArray("{\"results\": [{\"id\": \"x\"}");
    QTest::newRow("NUL") << QByteArray("{\"results\": [\0]}", 16);
}

void tst_HostileAnswers::answersThatAreNoObject()
{
    QFETCH(QByteArray, answer);
    search(answer);
    QVERIFY(!m_list->findById("x"));
}

// The request learns the status with the first byte.
void tst_HostileAnswers::anAnswerWithoutABodyHasNoStatus()
{
    m_server.on("/sharing/rest/search", answering(QByteArray()));
    LogCapture log;
    m_list->refresh(true);
    QTRY_COMPARE(log.count(QtCriticalMsg, "Zemrik.Tessaline.Network", "statusCode 0"), 1);
    QVERIFY(m_list->isRefreshing());
}

void tst_HostileAnswers::tenMegabytesInOneItem()
{
    const QByteArray text(10 * 1024 * 1024, 'x');
    search("{\"results\": [{\"id\": \"big\", \"title\": \"" + text + "\"}]}");
    QCOMPARE(m_list->findById("big")->title().size(), text.size());
}

void tst_HostileAnswers::tenMegabytesOfItems()
{
    QByteArray results;
    int count = 0;
    for (; results.size() < 10 * 1024 * 1024; ++count)
        results += (count ? ",{\"id\": \"i" : "{\"id\": \"i") + QByteArray::number(count)
                   + "\", \"title\": \"" + QByteArray(400, 't') + "\", \"tags\": [\"t"
                   + QByteArray::number(count) + "\"]}";
    search("{\"results\": [" + results + "]}");
    QCOMPARE(QQmlListReference(m_list.get(), "apps").count(), count + 1);
}

void tst_HostileAnswers::deepAnswer()
{
    const int depth = 500000;
    search("{\"results\": " + QByteArray(depth, '[') + QByteArray(depth, ']') + "}");
    QCOMPARE(QQmlListReference(m_list.get(), "apps").count(), 1);
}

void tst_HostileAnswers::wrongTypesInTheItemsInformation()
{
    // One download per value, all keys wrong at once: what comes of it is in the app's own folder.
    for (const auto &value : wrongValues()) {
        QByteArray members;
        for (const char *key :
             {"title", "type", "typeKeywords", "tags", "modified", "name", "owner"})
            members +=
                QByteArray(members.isEmpty() ? "" : ", ") + "\"" + key + "\": " + value.second;
        m_server.on("/sharing/rest/content/items/app", answering("{" + members + "}"));
        m_server.on("/sharing/rest/content/items/app/data", answering("no archive", "text/plain"));
        LogCapture log;
        AppPackage package;
        package._setPortal(m_portal.get());
        AppInfo found(QVariantMap{{"id", "app"}}, nullptr);
        package._setAppInfo(&found);
        package.download();
        QTRY_VERIFY2(log.count(QtCriticalMsg, "Zemrik.Tessaline.Package", "Error opening package:")
                         == 1,
                     value.first);
        QCOMPARE(read(home("Apps/local/iteminfo.json")), localInfo);
    }
    QCOMPARE(QDir(home("Apps")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList({"app", "local"}));
}

TESSALINE_TEST_MAIN(tst_HostileAnswers)
#include "tst_HostileAnswers.moc"
