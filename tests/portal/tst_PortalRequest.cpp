#include "portal/PortalRequest.h"

#include "plugin/TessalineError.h"
#include "support/HttpServer.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"

#include <QSignalSpy>

#include <memory>

class tst_PortalRequest : public QObject
{
    Q_OBJECT

private slots:
    void answers_data();
    void answers();
    void otherStatusIsOnlyLogged_data();
    void otherStatusIsOnlyLogged();
    void answersAreLogged();
    void requestIsUsedAgain();
    void valuesThatBeginWithAtAreText();
};

static const char category[] = "Zemrik.Tessaline.Manager";

void tst_PortalRequest::answers_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<int>("maps");
    QTest::addColumn<int>("plain");
    QTest::addColumn<int>("errors");

    QTest::newRow("object") << "json" << QByteArray("{\"a\": 1}") << 1 << 0 << 0;
    QTest::newRow("type in another case") << "JSON" << QByteArray("{\"a\": 1}") << 1 << 0 << 0;
    QTest::newRow("array") << "json" << QByteArray("[1]") << 1 << 0 << 0;
    QTest::newRow("no JSON") << "json" << QByteArray("words") << 1 << 0 << 0;
    QTest::newRow("error") << "json" << QByteArray("{\"error\": {\"message\": \"m\"}}") << 0 << 0
                           << 1;
    QTest::newRow("error without message")
        << "json" << QByteArray("{\"error\": {}}") << 0 << 0 << 1;
    QTest::newRow("error of other words")
        << "Json" << QByteArray("{\"error\": {\"code\": 400, \"details\": [\"d\"]}}") << 0 << 0
        << 1;
    QTest::newRow("error that is a text")
        << "json" << QByteArray("{\"error\": \"text\"}") << 0 << 0 << 1;
    QTest::newRow("error that is null") << "json" << QByteArray("{\"error\": null}") << 0 << 0 << 1;
    QTest::newRow("error in another case")
        << "json" << QByteArray("{\"Error\": {}, \"a\": 1}") << 1 << 0 << 0;
    QTest::newRow("no type") << "" << QByteArray("{\"error\": {}}") << 0 << 1 << 0;
    QTest::newRow("text") << "text" << QByteArray("{\"error\": {}}") << 0 << 1 << 0;
}

void tst_PortalRequest::answers()
{
    QFETCH(QString, type);
    QFETCH(QByteArray, body);
    HttpServer server;
    server.on("/x", [body](const HttpServer::Request &) { return HttpServer::Answer{body}; });
    LogCapture log;
    PortalRequest request;
    request.setMethod("POST");
    request.setResponseType(type);
    QVariantMap map;
    int maps = 0;
    connect(&request, qOverload<QVariantMap>(&PortalRequest::completed), this,
            [&](const QVariantMap &answer) {
                map = answer;
                ++maps;
            });
    QSignalSpy plain(&request, qOverload<>(&PortalRequest::completed));
    std::unique_ptr<TessalineError> error;
    connect(&request, qOverload<TessalineError *>(&PortalRequest::error), this,
            [&error](TessalineError *e) { error.reset(e); });
    request.setUrl(server.url("/x"));
    request.send(QVariant(QVariantMap{{"token", ""}}));
    QTRY_COMPARE(int(request.readyState()), 4);
    QTEST(maps, "maps");
    QTEST(plain.count(), "plain");
    QTEST(error ? 1 : 0, "errors");
    QCOMPARE(log.count(QtCriticalMsg, category, "error"), error ? 1 : 0);
    if (error) {
        QCOMPARE(error->message(), body.contains("\"m\"") ? QString("m") : QString());
        QCOMPARE(error->code(), 0);
        QCOMPARE(error->details(), QString());
        QVERIFY(!error->parent());
    }
    QCOMPARE(map.value("a").toInt(), body.contains("\"a\"") ? 1 : 0);
}

void tst_PortalRequest::otherStatusIsOnlyLogged_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("words");
    QTest::newRow("created") << "/status/201"
                             << "statusCode 201 \"201 Created\"";
    QTest::newRow("not found") << "/status/404"
                               << "statusCode 404 \"404 Not Found\"";
    QTest::newRow("server error") << "/status/500"
                                  << "statusCode 500 \"500 Internal Server Error\"";
    QTest::newRow("no content") << "/status/204"
                                << "statusCode 0 \"\"";
}

void tst_PortalRequest::otherStatusIsOnlyLogged()
{
    QFETCH(QString, target);
    QFETCH(QString, words);
    HttpServer server;
    LogCapture log;
    PortalRequest request;
    request.setResponseType("json");
    QSignalSpy plain(&request, qOverload<>(&PortalRequest::completed));
    QSignalSpy map(&request, qOverload<QVariantMap>(&PortalRequest::completed));
    QSignalSpy error(&request, qOverload<TessalineError *>(&PortalRequest::error));
    request.setUrl(server.url(target));
    request.send(QVariant(QVariantMap()));
    QTRY_COMPARE(int(request.readyState()), 4);
    QCOMPARE(plain.count() + map.count() + error.count(), 0);
    QVERIFY2(log.count(QtCriticalMsg, category, words) == 1, qPrintable(log.dump()));
    QCOMPARE(log.count(QtCriticalMsg), 1);
}

void tst_PortalRequest::answersAreLogged()
{
    HttpServer server;
    server.on("/error", [](const HttpServer::Request &) {
        return HttpServer::Answer{"{\"error\": {\"message\": \"m\"}}"};
    });
    LogCapture log;
    PortalRequest request;
    request.setResponseType("json");
    std::unique_ptr<TessalineError> error;
    connect(&request, qOverload<TessalineError *>(&PortalRequest::error), this,
            [&error](TessalineError *e) { error.reset(e); });
    request.setUrl(server.url("/error"));
    request.send(QVariant(QVariantMap()));
    QTRY_VERIFY(error);
    // One line for each state, the text, and the map as a whole.
    QCOMPARE(log.count(QtDebugMsg, category, "ReadyStateInitialized"), 1);
    QCOMPARE(log.count(QtDebugMsg, category, "ReadyStateComplete"), 1);
    QCOMPARE(log.count(QtDebugMsg, category, "{\\\"error\\\": {\\\"message\\\""), 1);
    QVERIFY2(log.count(QtCriticalMsg, category, "error QMap((\"error\", QVariant(QVariantMap, ")
                 == 1,
             qPrintable(log.dump()));
}

void tst_PortalRequest::requestIsUsedAgain()
{
    HttpServer server;
    PortalRequest request;
    QSignalSpy plain(&request, qOverload<>(&PortalRequest::completed));
    request.setUrl(server.url("/text/a"));
    for (int i = 1; i <= 2; ++i) {
        request.send(QVariant(QVariantMap()));
        QTRY_COMPARE(plain.count(), i);
    }
    QVERIFY(!request.portal());
}

void tst_PortalRequest::valuesThatBeginWithAtAreText()
{
    HttpServer server;
    PortalRequest request;
    request.setMethod("POST");
    request.setUrl(server.url("/x"));
    request.send(QVariant(QVariantMap{{"token", "@/etc/passwd"}}));
    QTRY_COMPARE(int(request.readyState()), 4);
    const HttpServer::Request sent = server.lastRequest();
    const QByteArray body = QUrl::fromPercentEncoding(sent.body).toUtf8();
    QVERIFY2(body == "token=@/etc/passwd", body.constData());
    QVERIFY(sent.parts.isEmpty());
}

TESSALINE_TEST_MAIN(tst_PortalRequest)
#include "tst_PortalRequest.moc"
