#include "support/DevelopmentPortal.h"
#include "support/IsolatedHome.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslSocket>
#include <QTcpServer>
#include <QTcpSocket>

#include <atomic>
#include <csignal>
#include <thread>

// The program as a client and as its user on the command line see it.
class tst_DevelopmentPortal : public QObject
{
    Q_OBJECT

private slots:
    void helpAndVersion_data();
    void helpAndVersion();
    void badArgumentsEndWithAMessage_data();
    void badArgumentsEndWithAMessage();
    void takenPort_data();
    void takenPort();
    void certificateOfARunningPortalStays();
    void theManPageHasEveryOption();
    void theShippedProgramDoesNotFailOnPurpose();
    void endsCleanlyOnSignals_data();
    void endsCleanlyOnSignals();
    void endsWhileAnUploadTrickles_data();
    void endsWhileAnUploadTrickles();
    void info();
    void jsonForms();
    void tokens();
    void tokenRunsOut();
    void usersOfAFile();
    void usersFilesThatAreRefused_data();
    void usersFilesThatAreRefused();
    void onlyPicturesAreServedBesideTheUsersFile_data();
    void onlyPicturesAreServedBesideTheUsersFile();
    void selfByDefault();
    void self();
    void https();
    void httpsCertificateIsTrustedUnderBothNames_data();
    void httpsCertificateIsTrustedUnderBothNames();
    void eachStartMakesAnotherCertificate();
    void searchInPages();
    void searchErrors();
    void items();
    void itemsOfARelativeFolder();
    void privateItemsNeedAToken();
    void noWayOutOfTheFolder_data();
    void noWayOutOfTheFolder();
    void linkedFoldersLeadNowhere();
    void linksInsideAreFollowed();
    void missingThumbnailIsTold();
    void largeRequestsAreRefused();
    void unboundedRequestsAreRefused_data();
    void unboundedRequestsAreRefused();
    void otherMethodsAreRefused_data();
    void otherMethodsAreRefused();
    void refusedBodyIsNoRequest();
    void headHasNoBody();
    void failuresAreJson();
    void passwordsOfEveryKind_data();
    void passwordsOfEveryKind();
    void logHasNoSecrets();
    void logHasNoNames();
};

static const QString Rest = "/sharing/rest";

static int runProgram(const QStringList &arguments, QByteArray &output)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(DevelopmentPortal::program(), arguments);
    const bool ended = process.waitForFinished(10000);
    output = process.readAll();
    return ended ? process.exitCode() : -1;
}

// All that comes back until the portal closes the connection.
static QByteArray rawAnswer(const DevelopmentPortal &portal, const QByteArray &request)
{
    QTcpSocket socket;
    socket.connectToHost("127.0.0.1", portal.port());
    if (!socket.waitForConnected())
        return QByteArray();
    socket.write(request);
    QByteArray answer;
    while (socket.waitForReadyRead(10000))
        answer += socket.readAll();
    const bool closed = socket.state() == QAbstractSocket::UnconnectedState;
    return closed ? answer : "left open: " + answer;
}

// The number of the error that such an answer has in its body.
static int errorCodeIn(const QByteArray &answer)
{
    const QByteArray body = answer.mid(answer.indexOf("\r\n\r\n") + 4);
    return QJsonDocument::fromJson(body)["error"]["code"].toInt();
}

void tst_DevelopmentPortal::helpAndVersion_data()
{
    QTest::addColumn<QString>("option");
    QTest::addColumn<QByteArray>("words");
    QTest::newRow("help") << "--help" << QByteArray("--token-minutes");
    QTest::newRow("version") << "--version" << QByteArray("tessaline-portal ");
}

void tst_DevelopmentPortal::helpAndVersion()
{
    QFETCH(QString, option);
    QFETCH(QByteArray, words);
    QByteArray output;
    QCOMPARE(runProgram({option}, output), 0);
    QVERIFY2(output.contains(words), output.constData());
}

void tst_DevelopmentPortal::badArgumentsEndWithAMessage_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("words");

    QTest::newRow("folder") << QStringList{"--items", "/does/not/exist"}
                            << QByteArray("/does/not/exist");
    QTest::newRow("port") << QStringList{"--port", "70000"} << QByteArray("--port");
    QTest::newRow("minutes, few") << QStringList{"--token-minutes", "0.09"}
                                  << QByteArray("--token-minutes");
    QTest::newRow("minutes, many")
        << QStringList{"--token-minutes", "30001"} << QByteArray("--token-minutes");
    QTest::newRow("minutes, none")
        << QStringList{"--token-minutes", "nan"} << QByteArray("--token-minutes");
    QTest::newRow("users") << QStringList{"--users", "/does/not/exist"}
                           << QByteArray("/does/not/exist");
    QTest::newRow("folder that is a file")
        << QStringList{"--items", "/etc/passwd"} << QByteArray("/etc/passwd");
    QTest::newRow("users, no JSON")
        << QStringList{"--users", "/etc/passwd"} << QByteArray("isn't a JSON object");
    QTest::newRow("minutes, text") << QStringList{"--token-minutes", "ten"}
                                   << QByteArray("--token-minutes takes 0.1 to 30000");
    QTest::newRow("port, text") << QStringList{"--port", "http"} << QByteArray("--port takes");
    QTest::newRow("certificate without HTTPS")
        << QStringList{"--certificate", "x"} << QByteArray("--certificate needs --https");
    QTest::newRow("certificate, no folder")
        << QStringList{"--https", "--certificate", "/does/not/exist/x"}
        << QByteArray("can't write the certificate");
    QTest::newRow("flag") << QStringList{"--is-portal", "maybe"} << QByteArray("--is-portal");
    QTest::newRow("certificate without HTTPS or a name")
        << QStringList{"--certificate", ""} << QByteArray("--certificate needs --https");
    QTest::newRow("certificate without a name") << QStringList{"--https", "--certificate", ""}
                                                << QByteArray("--certificate needs the name");
    QTest::newRow("users without a name")
        << QStringList{"--users", ""} << QByteArray("can't read the users file");
    QTest::newRow("items without a name")
        << QStringList{"--items", ""} << QByteArray("there is no readable folder");
    QTest::newRow("no option's argument")
        << QStringList{"my-items"} << QByteArray("no option takes the argument \"my-items\"");
    QTest::newRow("option") << QStringList{"--nonsense"} << QByteArray("nonsense");
}

void tst_DevelopmentPortal::badArgumentsEndWithAMessage()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, words);
    QByteArray output;
    // Where the mistake isn't noticed, it must not be the port that ends the program.
    if (!arguments.contains("--port"))
        arguments << "--port"
                  << "0";
    QCOMPARE(runProgram(arguments, output), 1);
    QVERIFY2(output.contains(words), output.constData());
}

void tst_DevelopmentPortal::takenPort_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("HTTP") << QStringList();
    QTest::newRow("HTTPS") << QStringList("--https");
}

void tst_DevelopmentPortal::takenPort()
{
    QFETCH(QStringList, arguments);
    DevelopmentPortal first;
    QVERIFY2(first.start(arguments), qPrintable(first.output()));
    DevelopmentPortal second;
    QVERIFY(!second.start(arguments + QStringList{"--port", QString::number(first.port())}));
    QVERIFY2(second.output().contains(QString("port %1 is taken").arg(first.port())),
             qPrintable(second.output()));
    QCOMPARE(second.exitCode(), 1);
}

void tst_DevelopmentPortal::certificateOfARunningPortalStays()
{
    DevelopmentPortal first;
    const QString path = first.path("portal.pem");
    QVERIFY2(first.start({"--https", "--certificate", path}), qPrintable(first.output()));
    const auto certificates = QSslCertificate::fromPath(path);
    QCOMPARE(certificates.size(), 1);
    DevelopmentPortal second;
    QVERIFY(
        !second.start({"--https", "--certificate", path, "--port", QString::number(first.port())}));
    QCOMPARE(QSslCertificate::fromPath(path), certificates);
}

void tst_DevelopmentPortal::theManPageHasEveryOption()
{
    QFile page(qEnvironmentVariable("TESSALINE_SOURCE_DIR") + "/packaging/tessaline-portal.1");
    QVERIFY(page.open(QIODevice::ReadOnly));
    const QByteArray text = page.readAll().replace("\\-", "-");
    QByteArray help;
    QCOMPARE(runProgram({"--help"}, help), 0);
    static const QRegularExpression option("--[a-z-]+");
    auto options = option.globalMatch(QString::fromUtf8(help));
    int count = 0;
    while (options.hasNext()) {
        const QByteArray name = options.next().captured().toUtf8();
        if (name == "--help-all") // Qt's own
            continue;
        QVERIFY2(text.contains(name), name.constData());
        ++count;
    }
    QVERIFY(count >= 10);
}

void tst_DevelopmentPortal::theShippedProgramDoesNotFailOnPurpose()
{
    QByteArray output;
    QCOMPARE(runProgram({"--fail", "data:status"}, output), 1);
    QVERIFY2(output.contains("Unknown option 'fail'"), output.constData());
}

void tst_DevelopmentPortal::endsCleanlyOnSignals_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGTERM") << SIGTERM;
}

void tst_DevelopmentPortal::endsCleanlyOnSignals()
{
    QFETCH(int, signal);
    DevelopmentPortal portal;
    QVERIFY2(portal.start(), qPrintable(portal.output()));
    QCOMPARE(::kill(static_cast<pid_t>(portal.processId()), signal), 0);
    QCOMPARE(portal.stop(), 0); // the signal of stop() comes second or too late
}

void tst_DevelopmentPortal::endsWhileAnUploadTrickles_data()
{
    QTest::addColumn<bool>("twice");
    QTest::addColumn<int>("atLeast");
    QTest::addColumn<int>("atMost");
    QTest::newRow("after its limit") << false << 2500 << 4900;
    QTest::newRow("at the second signal") << true << 0 << 2500;
}

void tst_DevelopmentPortal::endsWhileAnUploadTrickles()
{
    QFETCH(bool, twice);
    QFETCH(int, atLeast);
    QFETCH(int, atMost);
    DevelopmentPortal portal;
    QVERIFY2(portal.start(), qPrintable(portal.output()));

    std::atomic<bool> done{false};
    std::thread client([&done, port = portal.port()] {
        QTcpSocket socket;
        socket.connectToHost("127.0.0.1", port);
        socket.waitForConnected();
        socket.write("POST /sharing/rest/info HTTP/1.1\r\nHost: x\r\nContent-Length: 1000\r\n\r\n");
        while (!done && socket.state() == QAbstractSocket::ConnectedState) {
            socket.write("x");
            socket.waitForBytesWritten(100);
            QThread::msleep(100);
        }
    });
    QTest::qWait(500); // the request has begun
    QElapsedTimer timer;
    timer.start();
    if (twice) {
        ::kill(static_cast<pid_t>(portal.processId()), SIGINT);
        QTest::qWait(500);
    }
    const int exitCode = portal.stop();
    const qint64 elapsed = timer.elapsed();
    done = true;
    client.join();
    QCOMPARE(exitCode, 0);
    QVERIFY2(portal.output().contains("ended in the middle of a request"),
             qPrintable(portal.output()));
    QVERIFY2(elapsed >= atLeast && elapsed <= atMost, qPrintable(QString::number(elapsed)));
}

void tst_DevelopmentPortal::info()
{
    DevelopmentPortal portal;
    QVERIFY2(portal.start(), qPrintable(portal.output()));
    const QJsonObject info = portal.call(Rest + "/info", {{"f", "json"}}, true).json;
    QCOMPARE(info["owningSystemUrl"].toString(), portal.url());
    QCOMPARE(info["authInfo"].toObject()["tokenServicesUrl"].toString(),
             portal.url() + Rest + "/generateToken");
}

void tst_DevelopmentPortal::jsonForms()
{
    DevelopmentPortal portal;
    QVERIFY2(portal.start(), qPrintable(portal.output()));
    for (const bool get : {false, true}) {
        const auto compact = portal.call(Rest + "/info", {{"f", "json"}}, get);
        QVERIFY(!compact.body.contains('\n'));
        QVERIFY(compact.contentType.startsWith("application/json"));
        const auto indented = portal.call(Rest + "/info", {{"f", "pjson"}}, get);
        QVERIFY(indented.body.contains("\n    \"authInfo\""));
        QCOMPARE(indented.json, compact.json);
    }
    const auto nothing = portal.call(Rest + "/nothing", {{"f", "json"}});
    QCOMPARE(nothing.status, 404);
    const QJsonObject error = nothing.json["error"].toObject();
    QCOMPARE(error.keys(), QStringList({"code", "details", "message"}));
    QVERIFY(error["details"].isArray());
}

void tst_DevelopmentPortal::tokens()
{
    DevelopmentPortal portal;
    QVERIFY2(portal.start(), qPrintable(portal.output()));
    for (const bool get : {false, true}) {
        const qint64 before = QDateTime::currentMSecsSinceEpoch();
        const QJsonObject answer =
            portal
                .call(Rest + "/generateToken",
                      {{"username", "demo"}, {"password", "demo"}, {"expiration", "120"}}, get)
                .json;
        QCOMPARE(answer["token"].toString().size(), 64);
        QCOMPARE(answer["ssl"], QJsonValue(false));
        const double life = answer["expires"].toDouble() - before;
        QVERIFY2(life >= 7200000 && life < 7260000, qPrintable(QString::number(life)));
    }
    QVERIFY(portal.token() != portal.token());
    QCOMPARE(portal.token("demo", "Demo"), QString());
    QCOMPARE(portal.token("nobody", "demo"), QString());
    QCOMPARE(portal.token("nobody", ""), QString());
    const auto wrong =
        portal.call(Rest + "/generateToken", {{"username", "demo"}, {"password", "x"}});
    QCOMPARE(wrong.status, 200);
    QCOMPARE(wrong.errorCode(), 400);
    QCOMPARE(portal.call(Rest + "/portals/self", {{"token", "invented"}}).errorCode(), 498);
}

void tst_DevelopmentPortal::tokenRunsOut()
{
    DevelopmentPortal portal;
    QVERIFY2(portal.start({"--token-minutes", "0.1"}), qPrintable(portal.output()));
    const QString token = portal.token();
    QCOMPARE(portal.call(Rest + "/portals/self", {{"token", token}}).errorCode(), 0);
    QTRY_COMPARE_WITH_TIMEOUT(portal.call(Rest + "/portals/self", {{"token", token}}).errorCode(),
                              498, 10000);
}

void tst_DevelopmentPortal::usersOfAFile()
{
    DevelopmentPortal portal;
    portal.writeFile("users.json", "{\"jo\": {\"password\": \"@secret\", \"fullName\": \"Jo Doe\","
                                   "\"thumbnail\": \"jo.png\"}}");
    portal.writeFile("jo.png", "a picture");
    QVERIFY2(portal.start({"--users", portal.path("users.json")}), qPrintable(portal.output()));

    QCOMPARE(portal.token(), QString()); // no "demo" any more
    QVERIFY(!portal.token("jo", "@secret").isEmpty());
    const auto marked =
        portal.call(Rest + "/generateToken", {{"username", "jo"}, {"#password", "@secret"}});
    QVERIFY(!marked.json["token"].toString().isEmpty());
    const auto user = portal.call(Rest + "/community/users/jo", {{"f", "json"}});
    QCOMPARE(user.json["username"].toString(), QString("jo"));
    QCOMPARE(user.json["fullName"].toString(), QString("Jo Doe"));
    QVERIFY(!user.body.contains("secret"));
    QCOMPARE(portal.call(Rest + "/community/users/joe").errorCode(), 400);
    QCOMPARE(portal.call(Rest + "/community/users/jo/info/jo.png", {}, true).body,
             QByteArray("a picture"));
    QCOMPARE(portal.call(Rest + "/community/users/jo/info/users.json", {}, true).status, 404);
}

void tst_DevelopmentPortal::usersFilesThatAreRefused_data()
{
    QTest::addColumn<QByteArray>("users");
    QTest::addColumn<QString>("words");
    QTest::newRow("empty name") << QByteArray(R"({"": {"password": "x"}})")
                                << "the name of a user is empty";
    QTest::newRow("no password") << QByteArray(R"({"jo": {}})")
                                 << "the user \"jo\" has no password";
}

void tst_DevelopmentPortal::usersFilesThatAreRefused()
{
    QFETCH(QByteArray, users);
    QFETCH(QString, words);
    DevelopmentPortal portal;
    portal.writeFile("users.json", users);
    QVERIFY(!portal.start({"--users", portal.path("users.json")}));
    QVERIFY2(portal.output().contains(words), qPrintable(portal.output()));
}

void tst_DevelopmentPortal::onlyPicturesAreServedBesideTheUsersFile_data()
{
    QTest::addColumn<QString>("picture");
    QTest::newRow("the users file") << "users.json";
    QTest::newRow("a link to it") << "link.png";
    QTest::newRow("a link to elsewhere") << "out.png";
    QTest::newRow("elsewhere") << "../secret.png";
}

void tst_DevelopmentPortal::onlyPicturesAreServedBesideTheUsersFile()
{
    QFETCH(QString, picture);
    DevelopmentPortal portal;
    portal.writeFile("secret.png", "secret words");
    portal.writeFile("users/users.json", "{\"jo\": {\"password\": \"secret\", \"thumbnail\": \""
                                             + picture.toUtf8() + "\"}}");
    QVERIFY(QFile::link(portal.path("users/users.json"), portal.path("users/link.png")));
    QVERIFY(QFile::link(portal.path("secret.png"), portal.path("users/out.png")));
    QVERIFY2(portal.start({"--users", portal.path("users/users.json")}),
             qPrintable(portal.output()));
    const auto answer = portal.call(Rest + "/community/users/jo/info/" + picture, {}, true);
    QCOMPARE(answer.status, 404);
    QVERIFY(!answer.body.contains("secret"));
}

void tst_DevelopmentPortal::selfByDefault()
{
    DevelopmentPortal portal;
    QVERIFY2(portal.start(), qPrintable(portal.output()));
    QCOMPARE(portal.call(Rest + "/portals/self").json,
             QJsonObject({{"name", "Development"},
                          {"portalName", "Tessaline development portal"},
                          {"isPortal", true},
                          {"supportsSceneServices", false}}));
}

void tst_DevelopmentPortal::https()
{
    DevelopmentPortal portal;
    portal.addItem("file", {}, {{"data", QByteArray(300000, 'x')}});
    QVERIFY2(portal.start({"--https"}), qPrintable(portal.output()));
    QVERIFY(portal.url().startsWith("https://127.0.0.1:"));
    const QJsonObject info = portal.call(Rest + "/info").json;
    QCOMPARE(info["owningSystemUrl"].toString(), portal.url());
    QCOMPARE(info["authInfo"].toObject()["tokenServicesUrl"].toString(),
             portal.url() + Rest + "/generateToken");
    const QJsonObject token =
        portal.call(Rest + "/generateToken", {{"username", "demo"}, {"password", "demo"}}).json;
    QCOMPARE(token["ssl"], QJsonValue(true));
    QCOMPARE(token["token"].toString().size(), 64);
    QCOMPARE(portal.call(Rest + "/content/items/file/data").body, QByteArray(300000, 'x'));
    QCOMPARE(portal.stop(), 0);
}

void tst_DevelopmentPortal::httpsCertificateIsTrustedUnderBothNames_data()
{
    QTest::addColumn<QString>("host");
    QTest::addColumn<bool>("trusted");
    QTest::newRow("address") << "127.0.0.1" << true;
    QTest::newRow("name") << "localhost" << true;
    QTest::newRow("another name") << "elsewhere.example" << false;
}

void tst_DevelopmentPortal::httpsCertificateIsTrustedUnderBothNames()
{
    QFETCH(QString, host);
    DevelopmentPortal portal;
    QVERIFY2(portal.start({"--https", "--certificate", portal.path("portal.pem")}),
             qPrintable(portal.output()));
    const auto certificates = QSslCertificate::fromPath(portal.path("portal.pem"));
    QCOMPARE(certificates.size(), 1);
    QVERIFY(certificates.first().effectiveDate() < QDateTime::currentDateTime());
    // Longer than the longest token, which the component renews with the same certificate.
    QVERIFY(certificates.first().expiryDate() > QDateTime::currentDateTime().addSecs(30000 * 60));

    QSslSocket socket;
    QSslConfiguration configuration = socket.sslConfiguration();
    configuration.setCaCertificates(certificates);
    socket.setSslConfiguration(configuration);
    socket.connectToHostEncrypted("127.0.0.1", portal.port(), host);
    QTEST(socket.waitForEncrypted(10000), "trusted");
}

void tst_DevelopmentPortal::eachStartMakesAnotherCertificate()
{
    QSet<QByteArray> numbers;
    for (int i = 0; i < 2; ++i) {
        DevelopmentPortal portal;
        QVERIFY2(portal.start({"--https", "--certificate", portal.path("portal.pem")}),
                 qPrintable(portal.output()));
        const auto certificates = QSslCertificate::fromPath(portal.path("portal.pem"));
        QCOMPARE(certificates.size(), 1);
        numbers.insert(certificates.first().serialNumber());
    }
    QCOMPARE(numbers.size(), 2);
}

void tst_DevelopmentPortal::self()
{
    DevelopmentPortal portal;
    QVERIFY2(portal.start({"--name", "N", "--portal-name", "P", "--is-portal", "false",
                           "--scene-services", "true"}),
             qPrintable(portal.output()));
    const QJsonObject self = portal.call(Rest + "/portals/self").json;
    QCOMPARE(self, QJsonObject({{"name", "N"},
                                {"portalName", "P"},
                                {"isPortal", false},
                                {"supportsSceneServices", true}}));
    const QJsonObject mine = portal.call(Rest + "/portals/self", {{"token", portal.token()}}).json;
    QCOMPARE(mine["user"].toObject()["username"].toString(), QString("demo"));
}

void tst_DevelopmentPortal::searchInPages()
{
    DevelopmentPortal portal;
    for (int i = 0; i < 5; ++i)
        portal.addItem(QString("item%1").arg(i), {{"tags", QStringList{"page"}}});
    portal.addItem("other", {});
    QVERIFY2(portal.start(), qPrintable(portal.output()));

    int next = 1;
    QStringList ids;
    QList<int> starts;
    while (next > 0 && starts.size() < 10) {
        starts.append(next);
        const QJsonObject page =
            portal.call(Rest + "/search", {{"q", "tags:page"}, {"start", next}, {"num", 2}}).json;
        QCOMPARE(page["total"].toInt(), 5);
        QCOMPARE(page["start"].toInt(), next);
        for (const QJsonValue item : page["results"].toArray())
            ids.append(item.toObject()["id"].toString());
        next = page["nextStart"].toInt();
    }
    QCOMPARE(ids, QStringList({"item0", "item1", "item2", "item3", "item4"}));
    QCOMPARE(starts, QList<int>({1, 3, 5}));
    QCOMPARE(next, -1);
}

void tst_DevelopmentPortal::searchErrors()
{
    DevelopmentPortal portal;
    QVERIFY2(portal.start(), qPrintable(portal.output()));
    const auto wrong = portal.call(Rest + "/search", {{"q", "(type:\"x\""}});
    QCOMPARE(wrong.status, 200);
    QCOMPARE(wrong.errorCode(), 400);
    QVERIFY(!wrong.json["error"].toObject()["details"].toArray().isEmpty());
    const QJsonObject beyond =
        portal.call(Rest + "/search", {{"start", "2147483647"}, {"num", "-1"}}).json;
    QCOMPARE(beyond["nextStart"].toInt(), -1);
    QVERIFY(beyond["results"].toArray().isEmpty());
}

void tst_DevelopmentPortal::items()
{
    DevelopmentPortal portal;
    portal.addItem("app", {{"title", "An app"}},
                   {{"data/appinfo.json", "{}"}, {"thumbnail.png", "png"}});
    portal.addItem("bare", {}, {{"appinfo.json", "{}"}});
    portal.addItem("file", {{"name", "tiles.tpk"}, {"thumbnail", "thumbnail/photo.jpg"}},
                   {{"tiles.tpk", QByteArray(300000, 'x')}, {"photo.jpg", "jpg"}});
    portal.addItem("empty", {});
    QVERIFY2(portal.start(), qPrintable(portal.output()));

    const QString items = Rest + "/content/items/";
    const QJsonObject app = portal.call(items + "app", {{"f", "pjson"}}).json;
    QCOMPARE(app["id"].toString(), QString("app"));
    QCOMPARE(app["title"].toString(), QString("An app"));
    QCOMPARE(app["type"].toString(), QString("Native Application"));
    QCOMPARE(app["thumbnail"].toString(), QString("thumbnail/thumbnail.png"));
    QVERIFY(portal.call(items + "app/data").body.startsWith("PK\3\4"));
    QCOMPARE(portal.call(items + "app/data").body.size(), app["size"].toInt());
    QVERIFY(portal.call(items + "bare/data").body.startsWith("PK\3\4"));
    QCOMPARE(portal.call(items + "file/data").body, QByteArray(300000, 'x'));
    QCOMPARE(portal.call(items + "app/info/thumbnail/thumbnail.png", {}, true).body,
             QByteArray("png"));
    QCOMPARE(portal.call(items + "file/info/thumbnail/photo.jpg").body, QByteArray("jpg"));

    const auto missing = portal.call(items + "none", {{"f", "json"}});
    QCOMPARE(missing.status, 200);
    QCOMPARE(missing.errorCode(), 400);
    QCOMPARE(portal.call(items + "none/data").status, 400);
    QCOMPARE(portal.call(items + "empty/data").status, 404);
    QCOMPARE(portal.call(items + "app/info/iteminfo.json").status, 404);
}

void tst_DevelopmentPortal::itemsOfARelativeFolder()
{
    DevelopmentPortal portal;
    portal.addItem("one", {{"title", "One"}}, {{"data/sub/file.txt", "text"}});
    QVERIFY2(portal.start({"--items", QDir::current().relativeFilePath(portal.path("items"))}),
             qPrintable(portal.output()));
    const DevelopmentPortal::Answer data =
        portal.call("/sharing/rest/content/items/one/data", {{"token", portal.token()}});
    QVERIFY2(data.status == 200, data.body.constData());
    QVERIFY2(data.body.startsWith("PK"), data.body.constData());
    QVERIFY(data.body.contains("sub/file.txt"));
}

void tst_DevelopmentPortal::privateItemsNeedAToken()
{
    DevelopmentPortal portal;
    portal.addItem("mine", {{"access", "private"}}, {{"data", "text"}});
    QVERIFY2(portal.start(), qPrintable(portal.output()));
    const QString item = Rest + "/content/items/mine";
    const QVariantMap fields{{"token", portal.token()}};

    QCOMPARE(portal.call(item).errorCode(), 400);
    QCOMPARE(portal.call(item + "/data").status, 400);
    QCOMPARE(portal.call(Rest + "/search").json["total"].toInt(), 0);
    QCOMPARE(portal.call(item, fields).json["id"].toString(), QString("mine"));
    QCOMPARE(portal.call(item + "/data", fields, true).body, QByteArray("text"));
    QCOMPARE(portal.call(Rest + "/search", fields).json["total"].toInt(), 1);
}

void tst_DevelopmentPortal::noWayOutOfTheFolder_data()
{
    QTest::addColumn<QByteArray>("target");
    QTest::newRow("steps in the id") << QByteArray("/content/items/../secret/data");
    QTest::newRow("encoded steps") << QByteArray("/content/items/%2e%2e%2fsecret/data");
    QTest::newRow("dots") << QByteArray("/content/items/../data");
    QTest::newRow("steps in a resource") << QByteArray("/content/items/app/info/../../secret.txt");
    QTest::newRow("encoded resource") << QByteArray("/content/items/app/info/..%2f..%2fsecret.txt");
    QTest::newRow("absolute") << QByteArray("/content/items/app/info//etc/passwd");
    QTest::newRow("NUL") << QByteArray("/content/items/app%00/data");
    QTest::newRow("thumbnail that steps out")
        << QByteArray("/content/items/out/info/../../secret.txt");
    QTest::newRow("link") << QByteArray("/content/items/link/data");
}

void tst_DevelopmentPortal::noWayOutOfTheFolder()
{
    QFETCH(QByteArray, target);
    DevelopmentPortal portal;
    portal.writeFile("secret.txt", "secret words");
    portal.writeFile("secret/data", "secret words");
    portal.addItem("app", {}, {{"data", "open"}});
    portal.addItem("out", {{"thumbnail", "../../secret.txt"}, {"name", "../../secret.txt"}});
    portal.addItem("link", {});
    QVERIFY(QFile::link(portal.path("secret.txt"), portal.path("items/link/data")));
    QVERIFY2(portal.start(), qPrintable(portal.output()));

    QTcpSocket socket; // a client that leaves the path as it is
    socket.connectToHost("127.0.0.1", portal.port());
    QVERIFY(socket.waitForConnected());
    socket.write("GET " + Rest.toLatin1() + target + " HTTP/1.0\r\nConnection: close\r\n\r\n");
    QByteArray answer;
    while (socket.waitForReadyRead(5000))
        answer += socket.readAll();
    QVERIFY2(answer.startsWith("HTTP/1.1 40"), answer.constData());
    QVERIFY(!answer.contains("secret words"));
    QVERIFY(!answer.contains("root:"));
}

void tst_DevelopmentPortal::linkedFoldersLeadNowhere()
{
    DevelopmentPortal portal;
    portal.writeFile("outside/iteminfo.json", "{\"title\": \"secret words\"}");
    portal.writeFile("outside/appinfo.json", "{}");
    portal.addItem("linked-data", {});
    portal.addItem("linked-folder", {}, {{"appinfo.json", "{}"}});
    portal.writeFile("items/linked-info/appinfo.json", "{}");
    const QString outside = portal.path("outside");
    QVERIFY(QFile::link(outside, portal.path("items/linked-item")));
    QVERIFY(QFile::link(outside, portal.path("items/linked-data/data")));
    QVERIFY(QFile::link(outside, portal.path("items/linked-folder/outside")));
    QVERIFY(
        QFile::link(outside + "/iteminfo.json", portal.path("items/linked-info/iteminfo.json")));
    QVERIFY(QFile::link(portal.path("items"), portal.path("items/linked-data/up")));
    QVERIFY2(portal.start(), qPrintable(portal.output()));
    QVERIFY2(portal.output().contains("linked-item leads out of the folder of items: left out"),
             qPrintable(portal.output()));

    const QJsonObject found = portal.call(Rest + "/search").json;
    QCOMPARE(found["total"].toInt(), 2);
    QVERIFY(!QJsonDocument(found).toJson().contains("secret words"));
    QCOMPARE(portal.call(Rest + "/content/items/linked-item/data").status, 400);
    QCOMPARE(portal.call(Rest + "/content/items/linked-data/data").status, 404);
    const auto packed = portal.call(Rest + "/content/items/linked-folder/data");
    QCOMPARE(packed.status, 200);
    QVERIFY(!packed.body.contains("outside"));
}

void tst_DevelopmentPortal::linksInsideAreFollowed()
{
    DevelopmentPortal portal;
    portal.addItem("one", {}, {{"build/appinfo.json", "{}"}});
    QVERIFY(QFile::link("build", portal.path("items/one/data")));
    QVERIFY(QFile::link("one", portal.path("items/two")));
    QVERIFY2(portal.start(), qPrintable(portal.output()));
    for (const char *id : {"one", "two"}) {
        const auto data = portal.call(Rest + "/content/items/" + id + "/data");
        QCOMPARE(data.status, 200);
        QVERIFY(data.body.contains("appinfo.json"));
        QVERIFY(!data.body.contains("build"));
    }
}

void tst_DevelopmentPortal::missingThumbnailIsTold()
{
    DevelopmentPortal portal;
    portal.addItem("none", {});
    portal.addItem("named", {{"thumbnail", "photo.jpg"}});
    QVERIFY2(portal.start(), qPrintable(portal.output()));
    const QString line = "tessaline-portal: named has no file for its thumbnail \"photo.jpg\"\n";
    QVERIFY2(portal.output().contains(line), qPrintable(portal.output()));
    QCOMPARE(portal.output().count("thumbnail"), 1);
}

void tst_DevelopmentPortal::largeRequestsAreRefused()
{
    DevelopmentPortal portal;
    QVERIFY2(portal.start(), qPrintable(portal.output()));
    QTcpSocket socket;
    socket.connectToHost("127.0.0.1", portal.port());
    QVERIFY(socket.waitForConnected());
    socket.write("POST /sharing/rest/search HTTP/1.1\r\nHost: x\r\nContent-Type: text/plain\r\n"
                 "Connection: close\r\nContent-Length: 1000000000\r\n\r\n");
    socket.write(QByteArray(100000, 'x'));
    QByteArray answer;
    while (!answer.contains("\r\n") && socket.waitForReadyRead(10000))
        answer += socket.readAll();
    QVERIFY2(answer.startsWith("HTTP/1.1 413"), answer.constData());
    socket.abort();
    QCOMPARE(portal.call(Rest + "/search").status, 200); // and it still answers others
}

void tst_DevelopmentPortal::unboundedRequestsAreRefused_data()
{
    QTest::addColumn<QByteArray>("request");
    QTest::addColumn<QByteArray>("status");
    const QByteArray post = "POST /sharing/rest/search HTTP/1.1\r\nHost: x\r\n";
    const QByteArray form = "Content-Type: application/x-www-form-urlencoded\r\n";
    QTest::newRow("chunks") << post + form + "Transfer-Encoding: chunked\r\n\r\n"
                            << QByteArray("411");
    QTest::newRow("no length") << post + form + "\r\n" << QByteArray("411");
    QTest::newRow("packed body") << post + form
                                        + "Content-Encoding: gzip\r\nContent-Length: 100\r\n\r\n"
                                 << QByteArray("415");
    QTest::newRow("long form") << post + form + "Content-Length: 1048577\r\n\r\n"
                               << QByteArray("413");
    // The library's own bound for a plain form, which is lower.
    QTest::newRow("plain form of 9,000 bytes")
        << post + form + "Content-Length: 9000\r\n\r\nq=" + QByteArray(8998, 'x')
        << QByteArray("413");
    QTest::newRow("long address") << "GET /sharing/rest/search?q=" + QByteArray(9000, 'x')
                                         + " HTTP/1.1\r\nHost: x\r\n\r\n"
                                  << QByteArray("414");
    QTest::newRow("long header") << post + "X-Long: " + QByteArray(9000, 'x') + "\r\n\r\n"
                                 << QByteArray("400");
}

void tst_DevelopmentPortal::unboundedRequestsAreRefused()
{
    QFETCH(QByteArray, request);
    QFETCH(QByteArray, status);
    DevelopmentPortal portal;
    QVERIFY2(portal.start(), qPrintable(portal.output()));
    const QByteArray answer = rawAnswer(portal, request);
    QVERIFY2(answer.startsWith("HTTP/1.1 " + status), answer.constData());
    QVERIFY2(errorCodeIn(answer) == status.toInt(), answer.constData());
    QCOMPARE(portal.call(Rest + "/search").status, 200);
}

void tst_DevelopmentPortal::otherMethodsAreRefused_data()
{
    QTest::addColumn<QByteArray>("method");
    for (const char *method : {"PUT", "PATCH", "DELETE", "PRI", "OPTIONS", "TRACE", "CONNECT"})
        QTest::newRow(method) << QByteArray(method);
}

void tst_DevelopmentPortal::otherMethodsAreRefused()
{
    QFETCH(QByteArray, method);
    DevelopmentPortal portal;
    QVERIFY2(portal.start(), qPrintable(portal.output()));
    const QByteArray head = method + " /sharing/rest/info HTTP/1.1\r\nHost: x\r\n";
    // Without a length too: it is answered before a byte of the body is waited for.
    for (const QByteArray length : {"Content-Length: 200000000\r\n", ""}) {
        const QByteArray answer = rawAnswer(portal, head + length + "\r\n");
        QVERIFY2(answer.startsWith("HTTP/1.1 405"), answer.constData());
        QVERIFY2(answer.contains("Allow: GET, HEAD, POST\r\n"), answer.constData());
        QCOMPARE(errorCodeIn(answer), 405);
    }
}

void tst_DevelopmentPortal::refusedBodyIsNoRequest()
{
    DevelopmentPortal portal;
    QVERIFY2(portal.start(), qPrintable(portal.output()));
    const QByteArray hidden = "GET /sharing/rest/info HTTP/1.1\r\nHost: x\r\n\r\n";
    for (const QByteArray head :
         {"POST /a HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\n",
          "POST /a HTTP/1.1\r\nContent-Encoding: gzip\r\nContent-Length: 100\r\n\r\n",
          "PUT /a HTTP/1.1\r\nContent-Length: 100\r\n\r\n",
          "GET /a HTTP/1.1\r\nContent-Length: 100\r\n\r\n"}) {
        QTcpSocket socket;
        socket.connectToHost("127.0.0.1", portal.port());
        QVERIFY(socket.waitForConnected());
        socket.write(head);
        QVERIFY(socket.waitForReadyRead(10000));
        socket.write(hidden); // behind the answer: nothing has read it by the way
        QByteArray answer = socket.readAll();
        while (socket.waitForReadyRead(10000))
            answer += socket.readAll();
        QCOMPARE(socket.state(), QAbstractSocket::UnconnectedState);
        QVERIFY2(answer.startsWith("HTTP/1.1 4"), answer.constData());
        QCOMPARE(answer.count("HTTP/1.1 "), 1);
    }
}

void tst_DevelopmentPortal::headHasNoBody()
{
    DevelopmentPortal portal;
    QVERIFY2(portal.start(), qPrintable(portal.output()));
    const QByteArray answer =
        rawAnswer(portal, "HEAD /sharing/rest/info HTTP/1.1\r\nHost: x\r\n\r\n");
    QVERIFY2(answer.startsWith("HTTP/1.1 200"), answer.constData());
    QVERIFY2(answer.endsWith("\r\n\r\n"), answer.constData());
}

void tst_DevelopmentPortal::failuresAreJson()
{
    DevelopmentPortal portal;
    portal.addItem("gone", {}, {{"data", "text"}});
    QVERIFY2(portal.start(), qPrintable(portal.output()));
    QVERIFY(QFile::remove(portal.path("items/gone/data")));
    const auto gone = portal.call(Rest + "/content/items/gone/data");
    QCOMPARE(gone.status, 500);
    QCOMPARE(gone.errorCode(), 500);
    QVERIFY(gone.contentType.startsWith("application/json"));
    const auto indented = portal.call(Rest + "/content/items/gone/data", {{"f", "pjson"}});
    QVERIFY2(indented.body.startsWith("{\n    \"error\""), indented.body.constData());
}

void tst_DevelopmentPortal::passwordsOfEveryKind_data()
{
    QTest::addColumn<QString>("password");
    QTest::addColumn<bool>("good");
    QTest::newRow("right") << "sécret" << true;
    QTest::newRow("empty") << "" << false;
    QTest::newRow("beginning of it") << "sécre" << false;
    QTest::newRow("more than it") << "sécrets" << false;
    QTest::newRow("other case") << "Sécret" << false;
    QTest::newRow("very long") << QString(5000, 's') << false;
}

void tst_DevelopmentPortal::passwordsOfEveryKind()
{
    QFETCH(QString, password);
    DevelopmentPortal portal;
    portal.writeFile("users.json", "{\"jo\": {\"password\": \"sécret\"}}");
    QVERIFY2(portal.start({"--users", portal.path("users.json")}), qPrintable(portal.output()));
    QTEST(!portal.token("jo", password).isEmpty(), "good");
}

void tst_DevelopmentPortal::logHasNoSecrets()
{
    DevelopmentPortal portal;
    QVERIFY2(portal.start(), qPrintable(portal.output()));
    const QVariantMap fields{{"username", "demo"}, {"password", "demo-pass"}, {"token", "t0ken"}};
    portal.call(Rest + "/generateToken", fields, true);
    portal.call(Rest + "/portals/self", fields, true);
    QCOMPARE(portal.stop(), 0);
    QVERIFY2(portal.output().contains("GET /sharing/rest/portals/self 200\n"),
             qPrintable(portal.output()));
    QVERIFY(!portal.output().contains("demo-pass"));
    QVERIFY(!portal.output().contains("t0ken"));
}

void tst_DevelopmentPortal::logHasNoNames()
{
    DevelopmentPortal portal;
    QVERIFY2(portal.start(), qPrintable(portal.output()));
    portal.call(Rest + "/community/users/demo", {}, true);
    portal.call(Rest + "/community/users/demo/info/demo.png", {}, true);
    portal.call(Rest + "//community/users/demo", {}, true);
    rawAnswer(portal, "GET /sharing/rest/community%2Fusers%2Fdemo HTTP/1.1\r\n\r\n");
    QCOMPARE(portal.stop(), 0);
    QVERIFY2(portal.output().contains("GET /sharing/rest/community/users/* 200\n"),
             qPrintable(portal.output()));
    QVERIFY2(!portal.output().contains("demo"), qPrintable(portal.output()));
}

TESSALINE_TEST_MAIN(tst_DevelopmentPortal)
#include "tst_DevelopmentPortal.moc"
