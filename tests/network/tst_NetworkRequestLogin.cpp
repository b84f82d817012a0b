#include "RequestTesting.h"
#include "support/HttpServer.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"
#include "support/RawServer.h"

#include <QAuthenticator>
#include <QNetworkAccessManager>
#include <QTemporaryDir>
#include <QTest>

using namespace RequestTesting;

// Challenges of a server: credentials are a matter of all requests on a manager.
class tst_NetworkRequestLogin : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void credentialsAnswerTheChallenge();
    void noCredentialsFail();
    void wrongCredentialsFail_data();
    void wrongCredentialsFail();
    void differentCredentialsOnOneManagerDoNotLoop();
    void everyRequestOfTheManagerAnswers();
    void lastNonEmptyValueWins();
    void emptyValuesLeaveTheAuthenticatorAlone();
    void credentialsAreKeptForTheNextRequest();
    void changedCredentialsAreUsedAtOnce();
    void changedCredentialsCancelWhatRuns_data();
    void changedCredentialsCancelWhatRuns();
    void plainBodyIsSentAgain();
    void formIsNotSentAgain();
};

namespace {

// Lets in whoever says user:secret.
void protect(HttpServer &server)
{
    server.on("/protected", [](const HttpServer::Request &request) {
        if (request.header("Authorization") == "Basic " + QByteArray("user:secret").toBase64())
            return HttpServer::Answer{"welcome " + request.body};
        // Not of a type that the server compresses: Qt leaks the state of its decompression when a
        // compressed answer asks for credentials.
        return HttpServer::Answer{"who?",
                                  401,
                                  "application/octet-stream",
                                  {{"WWW-Authenticate", "Basic realm=\"Tests\""}}};
    });
}

} // namespace

void tst_NetworkRequestLogin::initTestCase()
{
    silenceForms();
}

void tst_NetworkRequestLogin::credentialsAnswerTheChallenge()
{
    HttpServer server;
    protect(server);
    NetworkRequest request;
    request.setUrl(server.url("/protected"));
    request.setUser("user");
    request.setPassword("secret");
    LogCapture log;
    request.send();
    QVERIFY(finish(request));
    QCOMPARE(request.status(), 200);
    QCOMPARE(request.response(), QVariant("welcome "));
    QCOMPARE(server.requestCount(), 2);
    QVERIFY(!server.requests().first().hasHeader("Authorization"));
    QCOMPARE(log.count(QtDebugMsg, network,
                       "void NetworkRequest::onAuthenticationRequired(QNetworkReply*, "
                       "QAuthenticator*) Begin"),
             1);
    QVERIFY(!log.dump().contains("secret"));
}

void tst_NetworkRequestLogin::noCredentialsFail()
{
    HttpServer server;
    protect(server);
    NetworkRequest request;
    request.setUrl(server.url("/protected"));
    request.send();
    QVERIFY(finish(request));
    QCOMPARE(request.errorCode(), int(QNetworkReply::AuthenticationRequiredError));
    QCOMPARE(request.status(), 401);
    QCOMPARE(request.response(), QVariant("who?"));
    QCOMPARE(server.requestCount(), 1);
}

void tst_NetworkRequestLogin::wrongCredentialsFail_data()
{
    QTest::addColumn<QString>("realm");
    QTest::newRow("no realm") << QString();
    QTest::newRow("the server's realm") << "Tests";
    QTest::newRow("another realm") << "Elsewhere";
}

void tst_NetworkRequestLogin::wrongCredentialsFail()
{
    QFETCH(QString, realm);
    HttpServer server;
    protect(server);
    NetworkRequest request;
    request.setUrl(server.url("/protected"));
    request.setUser("user");
    request.setPassword("wrong");
    request.setRealm(realm);
    request.send();
    QVERIFY(finish(request));
    QCOMPARE(request.errorCode(), int(QNetworkReply::AuthenticationRequiredError));
    QCOMPARE(request.status(), 401);
    QVERIFY(server.requestCount() < 5);
}

void tst_NetworkRequestLogin::differentCredentialsOnOneManagerDoNotLoop()
{
    // Each of them overwrites what the other one said, at each challenge.
    HttpServer server;
    protect(server);
    QNetworkAccessManager manager;
    NetworkRequest first;
    NetworkRequest second;
    int number = 0;
    for (NetworkRequest *request : {&first, &second}) {
        request->setNetworkAccessManager(&manager);
        request->setUser(QString("user %1").arg(++number));
        request->setPassword("wrong");
        request->setUrl(server.url("/protected"));
    }
    first.send();
    second.send();
    QVERIFY(finish(first) && finish(second));
    QCOMPARE(first.status(), 401);
    QCOMPARE(second.status(), 401);
    // Both end. How often Qt tries before depends on how the challenges of the two fall together.
    QVERIFY2(server.requestCount() < 100, qPrintable(QString::number(server.requestCount())));
}

void tst_NetworkRequestLogin::everyRequestOfTheManagerAnswers()
{
    HttpServer server;
    protect(server);
    QNetworkAccessManager manager;
    NetworkRequest idle;
    idle.setNetworkAccessManager(&manager);
    idle.setUser("user");
    idle.setPassword("secret");
    NetworkRequest request;
    request.setNetworkAccessManager(&manager);
    request.setUrl(server.url("/protected"));
    request.send();
    QVERIFY(finish(request));
    QCOMPARE(request.response(), QVariant("welcome "));
}

void tst_NetworkRequestLogin::lastNonEmptyValueWins()
{
    HttpServer server;
    protect(server);
    QNetworkAccessManager manager;
    NetworkRequest first;
    NetworkRequest second;
    NetworkRequest third;
    for (NetworkRequest *request : {&first, &second, &third})
        request->setNetworkAccessManager(&manager);
    first.setUser("nobody");
    first.setPassword("secret");
    second.setUser("user");
    // The third has nothing to say, and asks.
    third.setUrl(server.url("/protected"));
    third.send();
    QVERIFY(finish(third));
    QCOMPARE(third.response(), QVariant("welcome "));
}

void tst_NetworkRequestLogin::emptyValuesLeaveTheAuthenticatorAlone()
{
    QNetworkAccessManager manager;
    NetworkRequest request;
    request.setNetworkAccessManager(&manager);
    QAuthenticator authenticator;
    const auto challenge = [&] {
        emit manager.authenticationRequired(nullptr, &authenticator);
        return QStringList{authenticator.user(), authenticator.password(), authenticator.realm()};
    };
    authenticator.setUser("u");
    authenticator.setPassword("p");
    authenticator.setRealm("r");
    QCOMPARE(challenge(), QStringList({"u", "p", "r"}));
    request.setRealm("realm");
    QCOMPARE(challenge(), QStringList({"u", "p", "realm"}));
    request.setUser("user");
    QCOMPARE(challenge(), QStringList({"user", "p", "realm"}));
    request.setPassword("password");
    QCOMPARE(challenge(), QStringList({"user", "password", "realm"}));
}

void tst_NetworkRequestLogin::credentialsAreKeptForTheNextRequest()
{
    HttpServer server;
    protect(server);
    QNetworkAccessManager manager;
    NetworkRequest request;
    request.setNetworkAccessManager(&manager);
    request.setUrl(server.url("/protected"));
    request.setUser("user");
    request.setPassword("secret");
    request.send();
    QVERIFY(finish(request));
    server.clearRequests();
    NetworkRequest other;
    other.setNetworkAccessManager(&manager);
    other.setUrl(server.url("/protected"));
    other.send();
    QVERIFY(finish(other));
    QCOMPARE(other.response(), QVariant("welcome "));
    QCOMPARE(server.requestCount(), 1); // without a challenge
}

void tst_NetworkRequestLogin::changedCredentialsAreUsedAtOnce()
{
    HttpServer server;
    protect(server);
    NetworkRequest request;
    request.setUrl(server.url("/protected"));
    request.setUser("user");
    request.setPassword("secret");
    request.send();
    QVERIFY(finish(request));
    QCOMPARE(request.status(), 200);

    request.setPassword("wrong");
    request.send();
    QVERIFY(finish(request));
    QCOMPARE(request.status(), 401);

    request.setPassword("secret");
    request.send();
    QVERIFY(finish(request));
    QCOMPARE(request.status(), 200);
}

void tst_NetworkRequestLogin::changedCredentialsCancelWhatRuns_data()
{
    QTest::addColumn<QByteArray>("property");
    for (const char *property : {"user", "password", "realm"})
        QTest::newRow(property) << QByteArray(property);
}

void tst_NetworkRequestLogin::changedCredentialsCancelWhatRuns()
{
    // The manager's connections go, and with them whatever would have told of their transfers.
    QFETCH(QByteArray, property);
    RawServer downloadServer;
    RawServer uploadServer;
    downloadServer.answer("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nabc");
    uploadServer.setPaused(true);
    const QTemporaryDir dir;
    const QString path = writeFile(dir.filePath("upload"), HttpServer::pattern(10000000));
    QNetworkAccessManager manager;
    NetworkRequest download;
    download.setNetworkAccessManager(&manager);
    download.setUrl(downloadServer.url());
    download.send();
    NetworkRequest upload;
    upload.setNetworkAccessManager(&manager);
    upload.open("POST", uploadServer.url());
    upload.send(form(path));
    QTRY_COMPARE(download.readyState(), NetworkRequest::LOADING);
    QTRY_VERIFY(upload.progress() > 0.0);
    QSignalSpy downloadError(&download, &NetworkRequest::error);
    QSignalSpy uploadError(&upload, &NetworkRequest::error);

    NetworkRequest other;
    other.setNetworkAccessManager(&manager);
    other.setProperty(property.constData(), "value");
    QCOMPARE(download.readyState(), NetworkRequest::LOADING); // not from within the call
    upload.setProperty(property.constData(), "value");        // one that runs itself

    QVERIFY(finish(download));
    QVERIFY(finish(upload));
    QCOMPARE(download.errorCode(), int(QNetworkReply::OperationCanceledError));
    QCOMPARE(upload.errorCode(), int(QNetworkReply::OperationCanceledError));
    QCOMPARE(downloadError.count(), 1);
    QCOMPARE(uploadError.count(), 1);
    QCOMPARE(download.responseText(), QString("abc"));
    QTRY_COMPARE(replyCount(manager), 0);

    // Both can be sent again, over the same manager.
    HttpServer server;
    download.setUrl(server.url("/text/hello"));
    download.send();
    upload.setUrl(server.url("/echo"));
    upload.send(form(writeFile(dir.filePath("small"), "small")));
    QVERIFY(finish(download));
    QVERIFY(finish(upload));
    QCOMPARE(download.response(), QVariant("hello"));
    QCOMPARE(upload.errorCode(), 0);
    QCOMPARE(server.requestCount(), 2);
}

void tst_NetworkRequestLogin::plainBodyIsSentAgain()
{
    HttpServer server;
    protect(server);
    NetworkRequest request;
    request.open("POST", server.url("/protected"));
    request.setUser("user");
    request.setPassword("secret");
    request.send(QVariant("body"));
    QVERIFY(finish(request));
    QCOMPARE(request.response(), QVariant("welcome body"));
}

void tst_NetworkRequestLogin::formIsNotSentAgain()
{
    // The body can be read once only: the second try never gets one.
    RawServer server;
    server.answer("HTTP/1.1 401 Unauthorized\r\nWWW-Authenticate: Basic realm=\"Tests\"\r\n"
                  "Content-Length: 4\r\n\r\nwho?");
    const QTemporaryDir dir;
    NetworkRequest request;
    request.open("POST", server.url());
    request.setUser("user");
    request.setPassword("secret");
    request.send(form(writeFile(dir.filePath("file"), QByteArray(1000, 'x'))));
    QVERIFY(finish(request));
    QCOMPARE(request.errorCode(), int(QNetworkReply::ContentReSendError));
    QCOMPARE(server.requests().size(), 1);
}

TESSALINE_TEST_MAIN(tst_NetworkRequestLogin)
#include "tst_NetworkRequestLogin.moc"
