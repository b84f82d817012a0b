#include "network/NetworkFormData.h"
#include "network/NetworkRequest.h"
#include "RequestTesting.h"
#include "support/HttpServer.h"
#include "support/IsolatedHome.h"
#include "support/RawServer.h"
#include "support/SignalRecorder.h"

#include <QFile>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>

using namespace RequestTesting;

// What goes wrong in a transfer: servers that misbehave, and aborts.
class tst_NetworkRequestFailure : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void brokenAnswerEndsAsAnError_data();
    void brokenAnswerEndsAsAnError();
    void answerLongerThanItsLengthIsCut();
    void brokenDownloadLeavesWhatCame();
    void nobodyListensIsAnError();
    void abortStopsAtTheNextData_data();
    void abortStopsAtTheNextData();
    void abortRemovesTheFile();
    void abortWithTheLastDataDropsTheAnswer();
    void abortOfAnIdleRequestDoesNothing();
    void abortDoesNotInterruptAStalledTransfer();
    void abortStopsAnUpload();
    void abortFromTheProgressOfAnUpload();
    void abortedRequestCanBeSentAgain();
    void abortBeforeARedirectTakesEffectBehindIt();
    void abortEndsALoopOfRedirects();
    void answerTooLongForMemoryFails_data();
    void answerTooLongForMemoryFails();
    void answerAsLongAsTheLimitIsKept();
    void limitDoesNotCountForAFile();
    void redirectWithoutATargetIsLimitedToo();

private:
    QTemporaryDir m_dir;
};

void tst_NetworkRequestFailure::initTestCase()
{
    silenceForms();
    qRegisterMetaType<QNetworkReply *>(); // for the spies
}

void tst_NetworkRequestFailure::brokenAnswerEndsAsAnError_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<RawServer::Ending>("ending");
    QTest::addColumn<QString>("text");

    const auto row = [](const char *name, const char *answer, RawServer::Ending ending,
                        const char *text = "") {
        QTest::newRow(name) << QByteArray(answer) << ending << QString::fromUtf8(text);
    };
    row("closed without an answer", "", RawServer::Close);
    row("reset without an answer", "", RawServer::Reset);
    row("closed in the status line", "HTTP/1.", RawServer::Close);
    row("reset in the headers", "HTTP/1.1 200 OK\r\nContent-Le", RawServer::Reset);
    row("closed in the headers", "HTTP/1.1 200 OK\r\nContent-Le", RawServer::Close);
    row("closed in the body", "HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nabc", RawServer::Close,
        "abc");
    row("closed in a chunk", "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n8\r\nabc",
        RawServer::Close, "abc");
    row("closed between chunks",
        "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n3\r\nabc\r\n", RawServer::Close,
        "abc");
    row("no HTTP at all", "SSH-2.0-OpenSSH\r\n\r\n", RawServer::Close);
}

void tst_NetworkRequestFailure::brokenAnswerEndsAsAnError()
{
    QFETCH(QByteArray, answer);
    QFETCH(RawServer::Ending, ending);
    RawServer server;
    server.answer(answer, ending);
    NetworkRequest request;
    request.setUrl(server.url());
    request.send();
    SignalRecorder recorder(&request);
    QVERIFY(finish(request));
    QVERIFY(request.errorCode() != 0);
    QVERIFY(!request.errorText().isEmpty());
    QCOMPARE(recorder.names().count("error"), 1);
    QVERIFY(recorder.names().indexOf("error") < recorder.names().lastIndexOf("readyStateChanged"));
    QTEST(request.responseText(), "text");
    QTEST(request.response().toString(), "text");
}

void tst_NetworkRequestFailure::answerLongerThanItsLengthIsCut()
{
    RawServer server;
    server.answer("HTTP/1.1 200 OK\r\nContent-Length: 3\r\n\r\nabcdef", RawServer::Close);
    NetworkRequest request;
    request.setUrl(server.url());
    request.send();
    QVERIFY(finish(request));
    QCOMPARE(request.response(), QVariant("abc"));
    QCOMPARE(request.errorCode(), 0);
}

void tst_NetworkRequestFailure::brokenDownloadLeavesWhatCame()
{
    RawServer server;
    server.answer("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nabc", RawServer::Close);
    NetworkRequest request;
    request.setUrl(server.url());
    request.setResponsePath(m_dir.filePath("broken"));
    request.send();
    QVERIFY(finish(request));
    QVERIFY(request.errorCode() != 0);
    QFile file(m_dir.filePath("broken"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("abc"));
}

void tst_NetworkRequestFailure::nobodyListensIsAnError()
{
    QTcpServer closed;
    QVERIFY(closed.listen(QHostAddress::LocalHost));
    const quint16 port = closed.serverPort();
    closed.close();
    NetworkRequest request;
    request.setUrl(QUrl(QString("http://127.0.0.1:%1/").arg(port)));
    request.send();
    QVERIFY(finish(request));
    QCOMPARE(request.errorCode(), int(QNetworkReply::ConnectionRefusedError));
    QCOMPARE(request.status(), 0);
}

void tst_NetworkRequestFailure::abortStopsAtTheNextData_data()
{
    QTest::addColumn<bool>("inStateThree");
    QTest::newRow("before the first data") << false;
    QTest::newRow("behind the first data") << true;
}

void tst_NetworkRequestFailure::abortStopsAtTheNextData()
{
    QFETCH(bool, inStateThree);
    RawServer server;
    NetworkRequest request;
    request.setUrl(server.url());
    request.send();
    QTRY_COMPARE(server.requests().size(), 1);
    server.sendMore("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n");
    if (inStateThree) {
        server.sendMore("abc");
        QTRY_COMPARE(request.readyState(), NetworkRequest::LOADING);
    }
    QSignalSpy error(&request, &NetworkRequest::error);
    SignalRecorder recorder(&request);

    request.abort();
    QCOMPARE(recorder.names(), QStringList());
    server.sendMore("def");

    QVERIFY(finish(request));
    QCOMPARE(request.errorCode(), int(QNetworkReply::OperationCanceledError));
    QCOMPARE(error.count(), 1);
    QCOMPARE(request.status(), 200);
    QCOMPARE(request.statusText(), inStateThree ? QString("200 OK") : QString());
    QVERIFY(!request.response().isValid());
    QCOMPARE(request.responseText(), inStateThree ? QString("abc") : QString());
    QCOMPARE(recorder.names(),
             QStringList({"progressChanged", "errorCodeChanged", "errorTextChanged",
                          "responseChanged", "error", "readyStateChanged"}));
    QTRY_COMPARE(server.openConnectionCount(), 0);
}

void tst_NetworkRequestFailure::abortRemovesTheFile()
{
    RawServer server;
    server.answer("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nabc");
    const QString path = m_dir.filePath("aborted");
    NetworkRequest request;
    request.setUrl(server.url());
    request.setResponsePath(path);
    request.send();
    QTRY_VERIFY(QFile::exists(path));
    request.abort();
    QVERIFY(QFile::exists(path));
    server.sendMore("def");
    QVERIFY(finish(request));
    QCOMPARE(request.errorCode(), int(QNetworkReply::OperationCanceledError));
    QVERIFY(!QFile::exists(path));
}

void tst_NetworkRequestFailure::abortWithTheLastDataDropsTheAnswer()
{
    HttpServer server;
    NetworkRequest request;
    connect(&request, &NetworkRequest::responseTextChanged, [&] {
        if (request.readyState() == NetworkRequest::LOADING)
            request.abort();
    });
    request.setUrl(server.url("/text/hello"));
    for (const QString &path : {QString(), m_dir.filePath("last")}) {
        request.setResponsePath(path);
        request.send();
        QVERIFY(finish(request));
        QCOMPARE(request.errorCode(), 0); // the transfer itself went well
        QVERIFY(!request.response().isValid());
        QVERIFY(!QFile::exists(m_dir.filePath("last")));
    }
}

void tst_NetworkRequestFailure::abortOfAnIdleRequestDoesNothing()
{
    HttpServer server;
    NetworkRequest request;
    SignalRecorder recorder(&request);
    request.abort();
    QCOMPARE(recorder.names(), QStringList());
    request.setUrl(server.url("/text/hello"));
    request.abort();
    request.send();
    QVERIFY(finish(request));
    QCOMPARE(request.response(), QVariant("hello"));
    recorder.take();
    request.abort();
    QCOMPARE(recorder.names(), QStringList());
    QCOMPARE(request.response(), QVariant("hello"));
}

void tst_NetworkRequestFailure::abortDoesNotInterruptAStalledTransfer()
{
    RawServer server;
    HttpServer second;
    server.answer("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nabc");
    NetworkRequest request;
    request.setUrl(server.url());
    request.send();
    QTRY_COMPARE(request.readyState(), NetworkRequest::LOADING);
    request.abort();

    // Another transfer on the same manager comes and goes meanwhile.
    NetworkRequest other;
    other.setNetworkAccessManager(request.networkAccessManager());
    other.setUrl(second.url("/text/x"));
    other.send();
    QVERIFY(finish(other));
    QCOMPARE(request.readyState(), NetworkRequest::LOADING);
    QCOMPARE(server.openConnectionCount(), 1);

    server.sendMore("x");
    QVERIFY(finish(request));
    QCOMPARE(request.errorCode(), int(QNetworkReply::OperationCanceledError));
}

void tst_NetworkRequestFailure::abortStopsAnUpload()
{
    RawServer server;
    server.setPaused(true);
    NetworkRequest request;
    request.open("POST", server.url());
    request.send(form(makeFile(m_dir, "upload", 20000000)));
    QTRY_VERIFY(request.progress() > 0.0);
    request.abort();
    QCOMPARE(request.readyState(), NetworkRequest::ReadyStateSending);
    QSignalSpy error(&request, &NetworkRequest::error);
    server.setPaused(false);
    QVERIFY(finish(request));
    QCOMPARE(request.errorCode(), int(QNetworkReply::OperationCanceledError));
    QCOMPARE(error.count(), 1);
    QCOMPARE(server.requests().size(), 0);
    QTRY_VERIFY(!request.findChild<NetworkFormData *>());
    QTRY_COMPARE(server.openConnectionCount(), 0);
}

void tst_NetworkRequestFailure::abortFromTheProgressOfAnUpload()
{
    RawServer server;
    NetworkRequest request;
    request.open("POST", server.url());
    connect(&request, &NetworkRequest::progressChanged, [&] {
        if (request.progress() > 0.1)
            request.abort();
    });
    request.send(form(makeFile(m_dir, "upload", 3000000)));
    QVERIFY(finish(request));
    QCOMPARE(request.errorCode(), int(QNetworkReply::OperationCanceledError));
    QCOMPARE(server.requests().size(), 0);
}

void tst_NetworkRequestFailure::abortedRequestCanBeSentAgain()
{
    RawServer server;
    server.answer("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nabc");
    server.answer(RawServer::ok("second"));
    NetworkRequest request;
    request.setUrl(server.url());
    request.send();
    QTRY_COMPARE(request.readyState(), NetworkRequest::LOADING);
    request.abort();
    server.sendMore("x");
    QVERIFY(finish(request));
    request.send();
    QVERIFY(finish(request));
    QCOMPARE(request.response(), QVariant("second"));
    QCOMPARE(request.errorCode(), 0);
}

void tst_NetworkRequestFailure::abortBeforeARedirectTakesEffectBehindIt()
{
    RawServer server;
    HttpServer target;
    NetworkRequest request;
    request.setUrl(server.url());
    request.send();
    QTRY_COMPARE(server.requests().size(), 1);
    request.abort();
    server.sendMore("HTTP/1.1 302 Found\r\nContent-Length: 5\r\nLocation: "
                    + target.url("/text/there").toEncoded() + "\r\n\r\nmoved");
    QVERIFY(finish(request));
    QCOMPARE(request.errorCode(), int(QNetworkReply::OperationCanceledError));
    QVERIFY(!request.response().isValid());
}

void tst_NetworkRequestFailure::abortEndsALoopOfRedirects()
{
    HttpServer server;
    const QByteArray target = server.url("/loop").toEncoded();
    server.on("/loop", [=](const HttpServer::Request &) {
        return HttpServer::Answer{"moved", 302, "text/plain", {{"Location", target}}};
    });
    NetworkRequest request;
    request.setUrl(server.url("/loop"));
    request.send();
    QTRY_VERIFY(server.requestCount() > 5);
    QSignalSpy error(&request, &NetworkRequest::error);
    request.abort();
    const int count = server.requestCount();
    QVERIFY(finish(request));
    QCOMPARE(request.errorCode(), int(QNetworkReply::OperationCanceledError));
    QCOMPARE(error.count(), 1);
    QVERIFY(!request.response().isValid());
    QVERIFY(server.requestCount() <= count + 2);
}

void tst_NetworkRequestFailure::answerTooLongForMemoryFails_data()
{
    QTest::addColumn<bool>("inPieces");
    QTest::newRow("with its last data") << false;
    QTest::newRow("with more to come") << true;
}

void tst_NetworkRequestFailure::answerTooLongForMemoryFails()
{
    QFETCH(bool, inPieces);
    RawServer server;
    NetworkRequest request;
    request.setResponseLimit(1000);
    request.setUrl(server.url());
    request.send();
    QTRY_COMPARE(server.requests().size(), 1);
    QSignalSpy error(&request, &NetworkRequest::error);
    if (inPieces) {
        server.sendMore("HTTP/1.1 200 OK\r\nContent-Length: 2000\r\n\r\n" + QByteArray(999, 'x'));
        QTRY_COMPARE(request.responseText().size(), 999);
        server.sendMore("xx");
        QTRY_VERIFY(!request.errorText().isEmpty());
        QCOMPARE(request.readyState(), NetworkRequest::LOADING);
        server.sendMore("x");
    } else {
        server.sendMore(RawServer::ok(QByteArray(1001, 'x')));
    }
    QVERIFY(finish(request));
    QCOMPARE(request.errorCode(), int(QNetworkReply::OperationCanceledError));
    QCOMPARE(request.errorText(), QString("The response is too long for memory"));
    QCOMPARE(error.count(), 1);
    QVERIFY(!request.response().isValid());
    QCOMPARE(request.responseText(), QString());

    server.answer(RawServer::ok("short"));
    request.send();
    QVERIFY(finish(request));
    QCOMPARE(request.errorCode(), 0);
    QCOMPARE(request.response(), QVariant("short"));
}

void tst_NetworkRequestFailure::answerAsLongAsTheLimitIsKept()
{
    HttpServer server;
    NetworkRequest request;
    request.setResponseLimit(100000);
    request.setResponseType("base64");
    request.setUrl(server.url("/bytes/100000"));
    request.send();
    QVERIFY(finish(request));
    QCOMPARE(request.errorCode(), 0);
    QCOMPARE(request.response().toByteArray(), HttpServer::pattern(100000).toBase64());
}

void tst_NetworkRequestFailure::limitDoesNotCountForAFile()
{
    HttpServer server;
    NetworkRequest request;
    request.setResponseLimit(1000);
    request.setResponsePath(m_dir.filePath("unlimited"));
    request.setUrl(server.url("/bytes/100000"));
    request.send();
    QVERIFY(finish(request));
    QCOMPARE(request.errorCode(), 0);
    QVERIFY(readFile(m_dir.filePath("unlimited")) == HttpServer::pattern(100000));
}

void tst_NetworkRequestFailure::redirectWithoutATargetIsLimitedToo()
{
    // Its body waits in the reply until the end.
    RawServer server;
    NetworkRequest request;
    request.setResponseLimit(1000);
    request.setUrl(server.url());
    request.send();
    QTRY_COMPARE(server.requests().size(), 1);
    server.sendMore("HTTP/1.1 302 Found\r\nContent-Length: 3000\r\n\r\n" + QByteArray(2000, 'x'));
    QTRY_COMPARE(request.errorText(), QString("The response is too long for memory"));
    server.sendMore("x");
    QVERIFY(finish(request));
    QCOMPARE(request.errorCode(), int(QNetworkReply::OperationCanceledError));
    QVERIFY(!request.response().isValid());
}

TESSALINE_TEST_MAIN(tst_NetworkRequestFailure)
#include "tst_NetworkRequestFailure.moc"
