#include "network/NetworkRequest.h"
#include "network/NetworkRequestHeaders.h"
#include "RequestTesting.h"
#include "support/HttpServer.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"
#include "support/RawServer.h"
#include "support/SignalRecorder.h"

#include <QBuffer>
#include <QJSEngine>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QQmlEngine>
#include <QSignalSpy>
#include <QTest>

using namespace RequestTesting;

// The object without regard to a server's answer: its properties, the guards of its states, and
// what each kind of body becomes.
class tst_NetworkRequest : public QObject
{
    Q_OBJECT

private slots:
    void defaults();
    void plainPropertiesStoreAndNotify_data();
    void plainPropertiesStoreAndNotify();
    void methodIsKeptInUpperCase();
    void asyncIsSignalledAtEachWrite();
    void urlLeadsToStateOne();
    void sameUrlLeavesTheStateAlone();
    void openSetsMethodAsyncAndUrlInThisOrder();
    void openWithoutAsyncMeansAsync();
    void openFromStateFourStartsAnew();
    void scriptMayWriteReadyState();
    void resetLeadsToStateOne();
    void runningRequestRefusesChanges_data();
    void runningRequestRefusesChanges();
    void errorChangesAreLogged();
    void headersAreAChild();

    void sendIsRefusedInState_data();
    void sendIsRefusedInState();
    void sendClearsTheLastTransferBeforeStateTwo();
    void sendKeepsTheBody();
    void valueThatIsNoBodySendsNothing_data();
    void valueThatIsNoBodySendsNothing();
    void scriptValueThatIsNoObjectSendsNothing();
    void nullSendsAnEmptyBody();
    void textIsSentAsUtf8();
    void scriptObjectIsSentLikeAMap();
    void whateverConvertsToAMapIsSentLikeOne_data();
    void whateverConvertsToAMapIsSentLikeOne();
    void mapBecomesAQuery_data();
    void mapBecomesAQuery();
    void mapBecomesAForm_data();
    void mapBecomesAForm();
    void queryDoesNotChangeTheUrl();
    void methodDecidesTheVerb_data();
    void methodDecidesTheVerb();
    void methodArgumentIsCaseInsensitive();
    void devicesAndBytesAreBodies();
    void nullBodyIsEmpty();
    void otherBodiesLeaveTheRequestInStateTwo();

    void defaultContentTypes_data();
    void defaultContentTypes();
    void restValues_data();
    void restValues();

    void requestWithoutAManagerMakesOne();
    void requestOfAnEngineTakesItsManager();
    void eachEngineHasAManagerOfItsOwn();
    void managerOfTheOwnerIsUsed();
    void managerIsConnectedAndDisconnected();
    void managersNewsIsLogged();
    void credentialsNeedNoManager();
    void credentialsClearTheAccessCache();
};

void tst_NetworkRequest::defaults()
{
    const NetworkRequest request;
    QCOMPARE(request.url(), QUrl());
    QCOMPARE(request.method(), QString("GET"));
    QVERIFY(request.headers());
    QCOMPARE(request.async(), false);
    QCOMPARE(request.followRedirects(), true);
    QCOMPARE(request.ignoreSslErrors(), false);
    QCOMPARE(request.uploadPrefix(), QString("@"));
    QCOMPARE(request.readyState(), NetworkRequest::ReadyStateUninitialized);
    QCOMPARE(request.status(), 0);
    QCOMPARE(request.statusText(), QString());
    QCOMPARE(request.errorCode(), 0);
    QCOMPARE(request.errorText(), QString());
    QVERIFY(!request.requestBody().isValid());
    QCOMPARE(request.responseType(), QString());
    QCOMPARE(request.responseHeaders(), QVariantMap());
    QCOMPARE(request.responsePath(), QString());
    QCOMPARE(request.responseText(), QString());
    QVERIFY(!request.response().isValid());
    QCOMPARE(request.progress(), 0.0);
    QCOMPARE(request.user(), QString());
    QCOMPARE(request.password(), QString());
    QCOMPARE(request.realm(), QString());
    QVERIFY(!request.networkAccessManager());
}

void tst_NetworkRequest::plainPropertiesStoreAndNotify_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("followRedirects") << QByteArray("followRedirects") << QVariant(false);
    QTest::newRow("ignoreSslErrors") << QByteArray("ignoreSslErrors") << QVariant(true);
    for (const char *name :
         {"uploadPrefix", "responseType", "responsePath", "user", "password", "realm"})
        QTest::newRow(name) << QByteArray(name) << QVariant("Value");
}

void tst_NetworkRequest::plainPropertiesStoreAndNotify()
{
    QFETCH(QByteArray, name);
    QFETCH(QVariant, value);
    NetworkRequest request;
    SignalRecorder recorder(&request);

    request.setProperty(name.constData(), value);
    request.setProperty(name.constData(), value);

    QCOMPARE(request.property(name.constData()), value);
    QCOMPARE(recorder.names(), QStringList(QString::fromLatin1(name + "Changed")));
}

void tst_NetworkRequest::methodIsKeptInUpperCase()
{
    NetworkRequest request;
    QSignalSpy changed(&request, &NetworkRequest::methodChanged);
    request.setMethod("post");
    QCOMPARE(request.method(), QString("POST"));
    QCOMPARE(changed.count(), 1);
    request.setMethod("POST");
    QCOMPARE(changed.count(), 1);
    request.setMethod("post"); // compared as it is given: another text
    QCOMPARE(request.method(), QString("POST"));
    QCOMPARE(changed.count(), 2);
}

void tst_NetworkRequest::asyncIsSignalledAtEachWrite()
{
    NetworkRequest request;
    QSignalSpy changed(&request, &NetworkRequest::asyncChanged);
    request.setAsync(true);
    request.setAsync(true);
    QCOMPARE(request.async(), true);
    QCOMPARE(changed.count(), 2);
}

void tst_NetworkRequest::urlLeadsToStateOne()
{
    NetworkRequest request;
    SignalRecorder recorder(&request);
    request.setUrl(QUrl("http://a/"));
    QCOMPARE(request.url(), QUrl("http://a/"));
    QCOMPARE(request.readyState(), NetworkRequest::ReadyStateInitialized);
    QCOMPARE(recorder.take(), QStringList({"urlChanged", "readyStateChanged"}));

    request.setUrl(QUrl("http://b/"));
    QCOMPARE(recorder.take(), QStringList({"urlChanged"}));
}

void tst_NetworkRequest::sameUrlLeavesTheStateAlone()
{
    NetworkRequest request;
    request.setUrl(QUrl());
    QCOMPARE(request.readyState(), NetworkRequest::UNSENT);
    request.setUrl(QUrl("http://a/"));
    request.setReadyState(NetworkRequest::DONE);
    request.open("GET", QUrl("http://a/"), true);
    QCOMPARE(request.readyState(), NetworkRequest::DONE);
}

void tst_NetworkRequest::openSetsMethodAsyncAndUrlInThisOrder()
{
    NetworkRequest request;
    SignalRecorder recorder(&request);
    request.open("put", QUrl("http://a/"), false);
    QCOMPARE(request.method(), QString("PUT"));
    QCOMPARE(request.async(), false);
    QCOMPARE(request.url(), QUrl("http://a/"));
    QCOMPARE(recorder.names(),
             QStringList({"methodChanged", "asyncChanged", "urlChanged", "readyStateChanged"}));
}

void tst_NetworkRequest::openWithoutAsyncMeansAsync()
{
    NetworkRequest request;
    request.open("GET", QUrl("http://a/"));
    QCOMPARE(request.async(), true);
}

void tst_NetworkRequest::openFromStateFourStartsAnew()
{
    NetworkRequest request;
    request.setUrl(QUrl("http://a/"));
    request.setReadyState(NetworkRequest::ReadyStateComplete);
    request.open("GET", QUrl("http://b/"));
    QCOMPARE(request.readyState(), NetworkRequest::OPENED);
}

void tst_NetworkRequest::scriptMayWriteReadyState()
{
    NetworkRequest request;
    QSignalSpy changed(&request, &NetworkRequest::readyStateChanged);
    for (int state : {3, 2, 4, 0, 1}) {
        QVERIFY(request.setProperty("readyState", state));
        QCOMPARE(int(request.readyState()), state);
    }
    request.setProperty("readyState", 1);
    QCOMPARE(changed.count(), 5);
}

void tst_NetworkRequest::resetLeadsToStateOne()
{
    NetworkRequest request;
    for (const auto state :
         {NetworkRequest::UNSENT, NetworkRequest::LOADING, NetworkRequest::DONE}) {
        request.setReadyState(state);
        request.reset();
        QCOMPARE(request.readyState(), NetworkRequest::ReadyStateInitialized);
    }
}

void tst_NetworkRequest::runningRequestRefusesChanges_data()
{
    QTest::addColumn<NetworkRequest::ReadyState>("state");
    QTest::addColumn<bool>("refused");
    QTest::newRow("0") << NetworkRequest::ReadyStateUninitialized << false;
    QTest::newRow("1") << NetworkRequest::ReadyStateInitialized << false;
    QTest::newRow("2") << NetworkRequest::ReadyStateSending << true;
    QTest::newRow("3") << NetworkRequest::ReadyStateProcessing << true;
    QTest::newRow("4") << NetworkRequest::ReadyStateComplete << false;
}

void tst_NetworkRequest::runningRequestRefusesChanges()
{
    QFETCH(NetworkRequest::ReadyState, state);
    QFETCH(bool, refused);
    using Change = void (*)(NetworkRequest &);
    const QMap<QString, Change> changes{
        {"method", [](NetworkRequest &request) { request.setMethod("POST"); }},
        {"async", [](NetworkRequest &request) { request.setAsync(true); }},
        {"url", [](NetworkRequest &request) { request.setUrl(QUrl("http://b/")); }},
        {"open", [](NetworkRequest &request) { request.open("POST", QUrl("http://b/"), true); }},
    };
    for (auto change = changes.begin(); change != changes.end(); ++change) {
        NetworkRequest request;
        request.setUrl(QUrl("http://a/"));
        request.setReadyState(state);
        QSignalSpy error(&request, &NetworkRequest::error);

        (*change)(request);

        const bool changed =
            request.method() != "GET" || request.async() || request.url() != QUrl("http://a/");
        QVERIFY2(changed == !refused, qPrintable(change.key()));
        QCOMPARE(request.errorText(), refused ? QString("UNEXPECTED") : QString());
        if (refused)
            QCOMPARE(request.readyState(), state);
        QCOMPARE(error.count(), 0);
    }
}

void tst_NetworkRequest::errorChangesAreLogged()
{
    NetworkRequest request;
    request.setUrl(QUrl("unknown-scheme://a/"));
    LogCapture log;
    request.send();
    QVERIFY(finish(request));
    QCOMPARE(
        log.count(QtDebugMsg, network,
                  QString("void NetworkRequest::setErrorCode(int) %1").arg(request.errorCode())),
        1);
    QCOMPARE(log.count(QtDebugMsg, network,
                       QString("void NetworkRequest::setErrorText(const QString&) \"%1\"")
                           .arg(request.errorText().replace('"', "\\\""))),
             1);
    QCOMPARE(request.errorCode(), int(QNetworkReply::ProtocolUnknownError));
}

void tst_NetworkRequest::headersAreAChild()
{
    const NetworkRequest request;
    QCOMPARE(request.headers()->parent(), &request);
    QCOMPARE(request.property("headers").value<NetworkRequestHeaders *>(), request.headers());
}

void tst_NetworkRequest::sendIsRefusedInState_data()
{
    QTest::addColumn<NetworkRequest::ReadyState>("state");
    QTest::newRow("0") << NetworkRequest::ReadyStateUninitialized;
    QTest::newRow("2") << NetworkRequest::ReadyStateSending;
    QTest::newRow("3") << NetworkRequest::ReadyStateProcessing;
}

void tst_NetworkRequest::sendIsRefusedInState()
{
    QFETCH(NetworkRequest::ReadyState, state);
    const HttpServer server;
    NetworkRequest request;
    request.setUrl(server.url("/echo"));
    request.setReadyState(state);
    LogCapture log;
    SignalRecorder recorder(&request);

    request.send();
    request.send(QVariant("text"));
    request.send(QVariantMap{{"a", 1}});

    QCOMPARE(log.count(QtWarningMsg, network,
                       "void NetworkRequest::send(const QString&, const QUrl&, const QVariant&, "
                       "const QVariantMap&) readyState error"),
             3);
    QCOMPARE(request.errorText(), QString("UNEXPECTED"));
    QCOMPARE(request.errorCode(), 0);
    QCOMPARE(request.readyState(), state);
    QCOMPARE(recorder.names(), QStringList({"requestBodyChanged", "errorTextChanged",
                                            "requestBodyChanged", "requestBodyChanged"}));
    QTest::qWait(0);
    QCOMPARE(server.requestCount(), 0);
}

void tst_NetworkRequest::sendClearsTheLastTransferBeforeStateTwo()
{
    HttpServer server;
    NetworkRequest request;
    request.setUrl(server.url("/status/404"));
    request.send();
    QVERIFY(finish(request));
    QVERIFY(request.errorCode() != 0 && !request.errorText().isEmpty());
    QVERIFY(request.status() == 404 && !request.responseHeaders().isEmpty());
    QVERIFY(request.response().isValid() && request.progress() == 1.0);
    SignalRecorder recorder(&request);

    request.send();

    QCOMPARE(recorder.take(),
             QStringList({"requestBodyChanged", "responseHeadersChanged", "progressChanged",
                          "progressChanged", "responseChanged", "responseTextChanged",
                          "errorCodeChanged", "errorTextChanged", "readyStateChanged"}));
    QCOMPARE(request.readyState(), NetworkRequest::ReadyStateSending);
    QCOMPARE(request.status(), 0);
    QCOMPARE(request.statusText(), QString());
    QCOMPARE(request.responseHeaders(), QVariantMap());
    QCOMPARE(request.responseText(), QString());
    QVERIFY(!request.response().isValid());
    QCOMPARE(request.progress(), 0.0);
    QCOMPARE(request.errorCode(), 0);
    QCOMPARE(request.errorText(), QString());
    QVERIFY(finish(request));
}

void tst_NetworkRequest::sendKeepsTheBody()
{
    NetworkRequest request;
    QSignalSpy changed(&request, &NetworkRequest::requestBodyChanged);
    LogCapture silence;
    request.send(QVariant("text"));
    QCOMPARE(request.requestBody(), QVariant("text"));
    request.send(QVariant("text"));
    QCOMPARE(changed.count(), 2);
    request.send();
    QVERIFY(!request.requestBody().isValid());
}

void tst_NetworkRequest::valueThatIsNoBodySendsNothing_data()
{
    QTest::addColumn<QVariant>("body");
    QTest::addColumn<QString>("logged");
    QTest::newRow("number") << QVariant(1) << "QVariant(int, 1)";
    QTest::newRow("bool") << QVariant(true) << "QVariant(bool, true)";
    QTest::newRow("bytes") << QVariant(QByteArray("bytes")) << "QVariant(QByteArray, \"bytes\")";
    QTest::newRow("list") << QVariant(QVariantList{1}) << "QVariant(QVariantList, ";
    QTest::newRow("list of texts") << QVariant(QStringList{"a"}) << "QVariant(QStringList, ";
    QTest::newRow("date") << QVariant(QDateTime::currentDateTime()) << "QVariant(QDateTime, ";
    QTest::newRow("URL") << QVariant(QUrl("http://a/")) << "QVariant(QUrl, ";
}

void tst_NetworkRequest::valueThatIsNoBodySendsNothing()
{
    QFETCH(QVariant, body);
    QFETCH(QString, logged);
    const HttpServer server;
    NetworkRequest request;
    request.setUrl(server.url("/echo"));
    LogCapture log;
    SignalRecorder recorder(&request);

    request.send(body);

    QCOMPARE(recorder.names(), QStringList({"requestBodyChanged"}));
    QCOMPARE(log.count(QtWarningMsg, network, "void NetworkRequest::send(const QVariant&) TODO"),
             1);
    QCOMPARE(log.count(QtWarningMsg, network,
                       "void NetworkRequest::send(const QVariant&) body: " + logged),
             1);
    QCOMPARE(log.count(QtWarningMsg), 2);
    QCOMPARE(request.readyState(), NetworkRequest::ReadyStateInitialized);
    QCOMPARE(request.errorText(), QString());
}

void tst_NetworkRequest::scriptValueThatIsNoObjectSendsNothing()
{
    NetworkRequest request;
    request.setUrl(QUrl("http://a/"));
    LogCapture log;
    request.send(QJSValue("text"), QVariantMap());
    request.send(QJSValue(1), QVariantMap());
    QCOMPARE(log.count(QtDebugMsg, network,
                       "void NetworkRequest::send(const QJSValue&, const QVariantMap&) UNEXPECTED"),
             2);
    QCOMPARE(log.count(QtWarningMsg), 0);
    QCOMPARE(request.readyState(), NetworkRequest::ReadyStateInitialized);
}

void tst_NetworkRequest::nullSendsAnEmptyBody()
{
    RawServer server;
    server.answer(RawServer::ok("x"));
    NetworkRequest request;
    request.open("POST", server.url());
    for (const QVariant &body : {QVariant(), QVariant::fromValue(nullptr), QVariant(QString()),
                                 QVariant(QVariant::Int), QVariant(QByteArray())}) {
        request.send(body);
        QVERIFY(finish(request));
        QCOMPARE(RawServer::bodyPart(server.lastRequest()), QByteArray());
        QCOMPARE(RawServer::header(server.lastRequest(), "Content-Length"), QByteArray("0"));
    }
    QCOMPARE(server.requests().size(), 5);
}

void tst_NetworkRequest::textIsSentAsUtf8()
{
    HttpServer server;
    NetworkRequest request;
    request.open("POST", server.url("/echo"));
    request.send(QVariant("aü日"));
    QVERIFY(finish(request));
    QCOMPARE(server.lastRequest().body, QByteArray("aü日"));
    QCOMPARE(server.lastRequest().header("Content-Type"),
             QByteArray("application/x-www-form-urlencoded"));
    QCOMPARE(request.responseText(), QString("aü日"));
}

void tst_NetworkRequest::scriptObjectIsSentLikeAMap()
{
    HttpServer server;
    QJSEngine engine;
    NetworkRequest request;
    request.open("POST", server.url("/echo"));
    const QJSValue object = engine.evaluate("({b: 2, a: 'x y', c: true, d: 1.5, e: null})");
    request.send(QVariant::fromValue(object));
    QVERIFY(finish(request));
    QCOMPARE(server.lastRequest().body, QByteArray("a=x y&b=2&c=true&d=1.5&e"));
}

void tst_NetworkRequest::whateverConvertsToAMapIsSentLikeOne_data()
{
    QTest::addColumn<QVariant>("body");
    QTest::newRow("hash") << QVariant(QVariantHash{{"b", 2}, {"a", "x"}});
    QTest::newRow("JSON object") << QVariant(QJsonObject{{"b", 2}, {"a", "x"}});
}

void tst_NetworkRequest::whateverConvertsToAMapIsSentLikeOne()
{
    QFETCH(QVariant, body);
    HttpServer server;
    NetworkRequest request;
    request.open("POST", server.url("/echo"));
    request.send(body);
    QVERIFY(finish(request));
    QCOMPARE(server.lastRequest().body, QByteArray("a=x&b=2"));
}

void tst_NetworkRequest::mapBecomesAQuery_data()
{
    QTest::addColumn<QString>("method");
    QTest::addColumn<QString>("query");
    QTest::addColumn<QVariantMap>("body");
    QTest::addColumn<QByteArray>("expected");

    const QVariantMap one{{"a", 1}};
    QTest::newRow("GET") << "GET"
                         << "" << one << QByteArray("GET /p?a=1 HTTP/1.1");
    QTest::newRow("HEAD") << "HEAD"
                          << "" << one << QByteArray("HEAD /p?a=1 HTTP/1.1");
    QTest::newRow("DELETE") << "DELETE"
                            << "" << one << QByteArray("DELETE /p?a=1 HTTP/1.1");
    QTest::newRow("any other method is a GET") << "PATCH"
                                               << "" << one << QByteArray("GET /p?a=1 HTTP/1.1");
    QTest::newRow("items of the URL are repeated behind a second ?")
        << "GET"
        << "?x=1" << one << QByteArray("GET /p?x=1?x=1&a=1 HTTP/1.1");
    QTest::newRow("keys in their order") << "GET"
                                         << "" << QVariantMap{{"b", "2"}, {"a", "1"}, {"B", "3"}}
                                         << QByteArray("GET /p?B=3&a=1&b=2 HTTP/1.1");
    QTest::newRow("empty map") << "GET"
                               << "" << QVariantMap() << QByteArray("GET /p? HTTP/1.1");
    QTest::newRow("reserved characters") << "GET"
                                         << "" << QVariantMap{{"a", "x&y=z?+ /%"}}
                                         << QByteArray("GET /p?a=x%26y%3Dz?+%20/%25 HTTP/1.1");
    QTest::newRow("# ends the query, as in any URL text")
        << "GET"
        << "" << QVariantMap{{"a", "x#y"}, {"b", 1}} << QByteArray("GET /p?a=x HTTP/1.1");
    QTest::newRow("text beyond ASCII")
        << "GET"
        << "" << QVariantMap{{"a", "ü"}} << QByteArray("GET /p?a=%C3%BC HTTP/1.1");
    QTest::newRow("line breaks can't leave the request line")
        << "GET"
        << "" << QVariantMap{{"a", "1 HTTP/1.1\r\nX: y\r\n\r\n"}}
        << QByteArray("GET /p?a=1%20HTTP/1.1%0D%0AX:%20y%0D%0A%0D%0A HTTP/1.1");
}

void tst_NetworkRequest::mapBecomesAQuery()
{
    QFETCH(QString, method);
    QFETCH(QString, query);
    QFETCH(QVariantMap, body);
    RawServer server;
    server.answer("HTTP/1.1 204 No Content\r\n\r\n");
    NetworkRequest request;
    request.open(method, server.url("/p" + query));

    request.send(QVariant(body));

    QVERIFY(finish(request));
    QTEST(requestLine(server.lastRequest()), "expected");
    QCOMPARE(RawServer::bodyPart(server.lastRequest()), QByteArray());
    QCOMPARE(RawServer::header(server.lastRequest(), "Content-Type"),
             QByteArray("application/x-www-form-urlencoded"));
}

void tst_NetworkRequest::mapBecomesAForm_data()
{
    QTest::addColumn<QString>("method");
    QTest::addColumn<QString>("query");
    QTest::addColumn<QVariantMap>("body");
    QTest::addColumn<QByteArray>("expectedBody");

    QTest::newRow("POST") << "POST"
                          << "" << QVariantMap{{"b", 2}, {"a", true}} << QByteArray("a=true&b=2");
    QTest::newRow("PUT") << "PUT"
                         << "" << QVariantMap{{"a", 1}} << QByteArray("a=1");
    QTest::newRow("items of the URL come first")
        << "POST"
        << "?x=1" << QVariantMap{{"a", 1}} << QByteArray("x=1&a=1");
    QTest::newRow("empty map") << "POST"
                               << "" << QVariantMap() << QByteArray();
    QTest::newRow("line breaks") << "POST"
                                 << "" << QVariantMap{{"a", "1\r\n2"}} << QByteArray("a=1%0D%0A2");
    QTest::newRow("prefix inside a value is text")
        << "POST"
        << "" << QVariantMap{{"a", "x@y"}} << QByteArray("a=x@y");
}

void tst_NetworkRequest::mapBecomesAForm()
{
    QFETCH(QString, method);
    QFETCH(QString, query);
    QFETCH(QVariantMap, body);
    RawServer server;
    server.answer(RawServer::ok("x"));
    NetworkRequest request;
    request.open(method, server.url("/p" + query));

    request.send(QVariant(body));

    QVERIFY(finish(request));
    QCOMPARE(requestLine(server.lastRequest()), (method + " /p" + query + " HTTP/1.1").toUtf8());
    QTEST(RawServer::bodyPart(server.lastRequest()), "expectedBody");
    QCOMPARE(RawServer::header(server.lastRequest(), "Content-Type"),
             QByteArray("application/x-www-form-urlencoded"));
}

void tst_NetworkRequest::queryDoesNotChangeTheUrl()
{
    RawServer server;
    server.answer(RawServer::ok("x"));
    NetworkRequest request;
    request.setUrl(server.url("/p?x=1"));
    request.send(QVariant(QVariantMap{{"a", 1}}));
    QVERIFY(finish(request));
    QCOMPARE(requestLine(server.lastRequest()), QByteArray("GET /p?x=1?x=1&a=1 HTTP/1.1"));
    QCOMPARE(request.url(), server.url("/p?x=1"));
}

void tst_NetworkRequest::methodDecidesTheVerb_data()
{
    QTest::addColumn<QString>("method");
    QTest::addColumn<QByteArray>("verb");
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("GET") << "GET" << QByteArray("GET") << QByteArray();
    QTest::newRow("HEAD") << "HEAD" << QByteArray("HEAD") << QByteArray();
    QTest::newRow("POST") << "POST" << QByteArray("POST") << QByteArray("text");
    QTest::newRow("PUT") << "PUT" << QByteArray("PUT") << QByteArray("text");
    QTest::newRow("DELETE") << "DELETE" << QByteArray("DELETE") << QByteArray();
    QTest::newRow("OPTIONS") << "OPTIONS" << QByteArray("GET") << QByteArray();
    QTest::newRow("empty") << "" << QByteArray("GET") << QByteArray();
}

void tst_NetworkRequest::methodDecidesTheVerb()
{
    QFETCH(QString, method);
    RawServer server;
    server.answer("HTTP/1.1 204 No Content\r\n\r\n");
    NetworkRequest request;
    request.open(method, server.url());

    request.send(QVariant("text"));

    QVERIFY(finish(request));
    const QByteArray received = server.lastRequest();
    QTEST(received.left(received.indexOf(' ')), "verb");
    QTEST(RawServer::bodyPart(received), "body");
}

void tst_NetworkRequest::methodArgumentIsCaseInsensitive()
{
    HttpServer server;
    NetworkRequest request;
    request.setUrl(server.url("/echo"));
    for (const char *method : {"post", "Put"}) {
        request.send(QString::fromLatin1(method), server.url("/echo"), QByteArray("x"),
                     QVariantMap());
        QVERIFY(finish(request));
        QCOMPARE(server.lastRequest().method, QByteArray(method).toUpper());
        QCOMPARE(server.lastRequest().body, QByteArray("x"));
    }
}

void tst_NetworkRequest::devicesAndBytesAreBodies()
{
    HttpServer server;
    NetworkRequest request;
    request.setUrl(server.url("/echo"));
    QBuffer device;
    device.setData("from a device");
    device.open(QIODevice::ReadOnly);
    for (const char *method : {"POST", "PUT"}) {
        device.seek(0);
        request.send(method, server.url("/echo"), QVariant::fromValue<QIODevice *>(&device),
                     QVariantMap());
        QVERIFY(finish(request));
        QCOMPARE(request.responseText(), QString("from a device"));
    }
    QCOMPARE(server.lastRequest().header("Content-Length"), QByteArray("13"));
}

void tst_NetworkRequest::nullBodyIsEmpty()
{
    RawServer server;
    server.answer(RawServer::ok("x"));
    NetworkRequest request;
    request.setUrl(server.url());
    for (const char *method : {"POST", "PUT"}) {
        request.send(method, server.url(), QVariant(), QVariantMap());
        QVERIFY(finish(request));
        QVERIFY(server.lastRequest().startsWith(method));
        QCOMPARE(RawServer::header(server.lastRequest(), "Content-Length"), QByteArray("0"));
    }
}

void tst_NetworkRequest::otherBodiesLeaveTheRequestInStateTwo()
{
    HttpServer server;
    NetworkRequest request;
    request.setUrl(server.url("/echo"));
    LogCapture log;
    request.send("POST", server.url("/echo"), QVariant(1), QVariantMap());
    QCOMPARE(log.count(QtDebugMsg, network, "UNEXPECTED"), 1);
    QCOMPARE(request.readyState(), NetworkRequest::ReadyStateSending);
    QTest::qWait(0);
    QCOMPARE(server.requestCount(), 0);
}

void tst_NetworkRequest::defaultContentTypes_data()
{
    QTest::addColumn<QString>("suffix");
    QTest::addColumn<QString>("type");
    const QList<QPair<const char *, const char *>> types{{"png", "image/png"},
                                                         {"jpg", "image/jpeg"},
                                                         {"jpeg", "image/jpeg"},
                                                         {"jfif", "image/jpeg"},
                                                         {"gif", "image/gif"},
                                                         {"tif", "image/tiff"},
                                                         {"tiff", "image/tiff"},
                                                         {"txt", "text/plain"},
                                                         {"csv", "text/plain"},
                                                         {"zip", "application/zip"},
                                                         {"mp3", "audio/basic"},
                                                         {"mpeg", "audio/basic"},
                                                         {"xml", "text/xml"},
                                                         {"", "application/octet-stream"},
                                                         {"PNG", "application/octet-stream"},
                                                         {"bin", "application/octet-stream"}};
    for (const auto &type : types)
        QTest::addRow("'%s'", type.first) << QString(type.first) << QString(type.second);
}

void tst_NetworkRequest::defaultContentTypes()
{
    QFETCH(QString, suffix);
    QTEST(NetworkRequest::defaultContentType(suffix), "type");
}

void tst_NetworkRequest::restValues_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("invalid") << QVariant() << QString();
    QTest::newRow("null text") << QVariant(QString()) << QString();
    QTest::newRow("null pointer") << QVariant::fromValue(nullptr) << QString();
    QTest::newRow("int") << QVariant(-42) << "-42";
    QTest::newRow("double has six digits") << QVariant(1234567.89) << "1.23457e+06";
    QTest::newRow("small double") << QVariant(0.5) << "0.5";
    QTest::newRow("text") << QVariant("a b") << "a b";
    QTest::newRow("texts") << QVariant(QStringList{"a", "b,c"}) << "a,b,c";
    QTest::newRow("list") << QVariant(
        QVariantList{1, 2.5, "x", true, QVariant(), QVariantList{3, 4}})
                          << "1,2.5,x,true,,3,4";
    QTest::newRow("empty list") << QVariant(QVariantList()) << "";
    QTest::newRow("true") << QVariant(true) << "true";
    QTest::newRow("false") << QVariant(false) << "false";
    QTest::newRow("other numbers are bools") << QVariant(qlonglong(7)) << "true";
    QTest::newRow("other zeros too") << QVariant(uint(0)) << "false";
    QTest::newRow("map") << QVariant(QVariantMap{{"a", 1}}) << "{\n    \"a\": 1\n}\n";
}

void tst_NetworkRequest::restValues()
{
    QFETCH(QVariant, value);
    QTEST(NetworkRequest::encodeRestValue(value), "text");
}

void tst_NetworkRequest::requestWithoutAManagerMakesOne()
{
    HttpServer server;
    NetworkRequest request;
    request.setUrl(server.url("/text/hello"));
    QVERIFY(!request.networkAccessManager());
    request.send();
    QVERIFY(request.networkAccessManager());
    QCOMPARE(request.networkAccessManager()->parent(), &request);
    QVERIFY(finish(request));
    QCOMPARE(request.responseText(), QString("hello"));
    const QNetworkAccessManager *manager = request.networkAccessManager();
    request.send();
    QCOMPARE(request.networkAccessManager(), manager);
    QVERIFY(finish(request));
}

void tst_NetworkRequest::requestOfAnEngineTakesItsManager()
{
    QQmlEngine engine;
    NetworkRequest request;
    request.classBegin();
    request.componentComplete();
    QVERIFY(!request.networkAccessManager()); // no engine, no manager

    QQmlEngine::setContextForObject(&request, engine.rootContext());
    request.classBegin();
    QVERIFY(!request.networkAccessManager());
    request.componentComplete();
    QCOMPARE(request.networkAccessManager(), engine.networkAccessManager());
}

void tst_NetworkRequest::eachEngineHasAManagerOfItsOwn()
{
    QQmlEngine engines[2];
    NetworkRequest requests[2];
    for (int i = 0; i < 2; ++i) {
        QQmlEngine::setContextForObject(&requests[i], engines[i].rootContext());
        requests[i].componentComplete();
        QCOMPARE(requests[i].networkAccessManager(), engines[i].networkAccessManager());
    }
    QVERIFY(requests[0].networkAccessManager() != requests[1].networkAccessManager());
}

void tst_NetworkRequest::managerOfTheOwnerIsUsed()
{
    class Manager : public QNetworkAccessManager
    {
    public:
        int requests = 0;

    protected:
        QNetworkReply *createRequest(Operation operation, const QNetworkRequest &request,
                                     QIODevice *body) override
        {
            ++requests;
            return QNetworkAccessManager::createRequest(operation, request, body);
        }
    };
    HttpServer server;
    Manager manager;
    {
        NetworkRequest request;
        request.setNetworkAccessManager(&manager);
        request.setUrl(server.url("/text/hello"));
        request.send();
        QVERIFY(finish(request));
    }
    QCOMPARE(manager.requests, 1); // and it is still alive
}

void tst_NetworkRequest::managerIsConnectedAndDisconnected()
{
    class Manager : public QNetworkAccessManager
    {
    public:
        int count(const char *signal) const { return receivers(signal); }
    };
    const char *const watched[] = {
        SIGNAL(authenticationRequired(QNetworkReply *, QAuthenticator *)),
        SIGNAL(encrypted(QNetworkReply *)),
        SIGNAL(finished(QNetworkReply *)),
        SIGNAL(networkAccessibleChanged(QNetworkAccessManager::NetworkAccessibility)),
        SIGNAL(proxyAuthenticationRequired(QNetworkProxy, QAuthenticator *)),
        SIGNAL(sslErrors(QNetworkReply *, QList<QSslError>)),
    };
    Manager first;
    Manager second;
    {
        NetworkRequest request;
        request.setNetworkAccessManager(&first);
        for (const char *signal : watched)
            QVERIFY2(first.count(signal) == 1, signal);
        request.setNetworkAccessManager(&second);
        QCOMPARE(request.networkAccessManager(), &second);
        for (const char *signal : watched) {
            QVERIFY2(first.count(signal) == 0, signal);
            QVERIFY2(second.count(signal) == 1, signal);
        }
        request.setNetworkAccessManager(nullptr);
        for (const char *signal : watched)
            QVERIFY2(second.count(signal) == 0, signal);
        request.setNetworkAccessManager(&second);
    }
    for (const char *signal : watched)
        QVERIFY2(second.count(signal) == 0, signal);
}

void tst_NetworkRequest::managersNewsIsLogged()
{
    QNetworkAccessManager manager;
    NetworkRequest request;
    request.setNetworkAccessManager(&manager);
    LogCapture log;
    QMetaObject::invokeMethod(&request, "onNetworkAccessibleChanged",
                              QGenericArgument("QNetworkAccessManager::NetworkAccessibility",
                                               QByteArray(8, '\0').data()));
    QCOMPARE(log.count(QtDebugMsg, network,
                       "void NetworkRequest::onNetworkAccessibleChanged("
                       "QNetworkAccessManager::NetworkAccessibility)"),
             1);
    QMetaObject::invokeMethod(&request, "onProxyAuthenticationRequired",
                              Q_ARG(QNetworkProxy, QNetworkProxy()),
                              Q_ARG(QAuthenticator *, nullptr));
    QCOMPARE(log.count(QtDebugMsg, network,
                       "void NetworkRequest::onProxyAuthenticationRequired(const QNetworkProxy&, "
                       "QAuthenticator*)"),
             1);
    QMetaObject::invokeMethod(&request, "onEncrypted", Q_ARG(QNetworkReply *, nullptr));
    QCOMPARE(log.messages().size(), 2);
}

void tst_NetworkRequest::credentialsNeedNoManager()
{
    NetworkRequest request;
    SignalRecorder recorder(&request);
    request.setUser("user");
    request.setPassword("secret");
    request.setRealm("realm");
    QCOMPARE(recorder.names(), QStringList({"userChanged", "passwordChanged", "realmChanged"}));
    QVERIFY(!request.networkAccessManager());
}

void tst_NetworkRequest::credentialsClearTheAccessCache()
{
    // The cache holds connections as well: after it was cleared, the next request needs a new one.
    HttpServer server;
    NetworkRequest request;
    request.setUrl(server.url("/text/x"));
    const auto connection = [&] {
        request.send();
        return finish(request) ? server.lastRequest().connection : -1;
    };
    int last = connection();
    QCOMPARE(connection(), last);
    for (const char *name : {"user", "password", "realm"}) {
        request.setProperty(name, "value");
        const int next = connection();
        QVERIFY2(next > 0 && next != last, name);
        request.setProperty(name, "value"); // no change, no clearing
        QCOMPARE(connection(), next);
        last = next;
    }
}

TESSALINE_TEST_MAIN(tst_NetworkRequest)
#include "tst_NetworkRequest.moc"
