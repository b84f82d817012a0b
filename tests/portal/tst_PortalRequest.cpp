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
    void otherStatusIsOnlyLogged();
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
        QVERIFY(!error->parent());
    }
    QCOMPARE(map.value("a").toInt(), body.contains("\"a\"") ? 1 : 0);
}

void tst_PortalRequest::otherStatusIsOnlyLogged()
{
    HttpServer server;
    LogCapture log;
    PortalRequest request;
    request.setResponseType("json");
    QSignalSpy plain(&request, qOverload<>(&PortalRequest::completed));
    QSignalSpy map(&request, qOverload<QVariantMap>(&PortalRequest::completed));
    QSignalSpy error(&request, qOverload<TessalineError *>(&PortalRequest::error));
    request.setUrl(server.url("/status/500"));
    request.send(QVariant(QVariantMap()));
    QTRY_COMPARE(int(request.readyState()), 4);
    QCOMPARE(plain.count() + map.count() + error.count(), 0);
    QCOMPARE(log.count(QtCriticalMsg, category, "statusCode"), 1);
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
