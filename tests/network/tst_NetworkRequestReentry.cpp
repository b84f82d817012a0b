#include "network/NetworkFormData.h"
#include "network/NetworkRequest.h"
#include "RequestTesting.h"
#include "support/HttpServer.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"
#include "support/RawServer.h"

#include <QFile>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace RequestTesting;

// Handlers that send again, and forms sent while another is being uploaded: no reply and no body is
// deleted while it is in use.
class tst_NetworkRequestReentry : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void sendFromAHandlerIsRefusedUntilStateFour_data();
    void sendFromAHandlerIsRefusedUntilStateFour();
    void sendFromAHandlerThatWroteReadyStateReplacesTheTransfer_data();
    void sendFromAHandlerThatWroteReadyStateReplacesTheTransfer();
    void uploadFromAHandlerThatWroteReadyStateReplacesTheUpload();
    void sendForEverySignalEnds();
    void sendFromTheBodySignalGoesFirst();
    void chainOfSendsFromStateFour();
    void secondFormCancelsTheUploadAndIsRefused();
    void secondFormDuringTheAnswerCancelsItToo();
    void thirdFormIsNoWorse();
    void secondFormThatFailsCancelsTheUploadToo();
    void failedFormLeavesADownloadAlone();
    void failedFormDropsATransferLeftBehind_data();
    void failedFormDropsATransferLeftBehind();
    void sendFromTheHandlersOfAFailedFormGoesItsOwnWay_data();
    void sendFromTheHandlersOfAFailedFormGoesItsOwnWay();
    void sendKeepsTheMethodAndAddressItBeganWith();
    void secondPlainSendLeavesTheUploadAlone();
    void formBehindARedirectDoesNotCancelIt();

private:
    QTemporaryDir m_dir;
};

void tst_NetworkRequestReentry::initTestCase()
{
    silenceForms();
    qRegisterMetaType<QNetworkReply *>(); // for the spies
}

void tst_NetworkRequestReentry::sendFromAHandlerIsRefusedUntilStateFour_data()
{
    QTest::addColumn<QByteArray>("signal");
    for (const char *signal : {"responseHeadersChanged()", "progressChanged()", "responseChanged()",
                               "responseTextChanged()", "errorCodeChanged()", "errorTextChanged()",
                               "readyStateChanged()", "error()"})
        QTest::newRow(signal) << QByteArray(signal);
}

void tst_NetworkRequestReentry::sendFromAHandlerIsRefusedUntilStateFour()
{
    QFETCH(QByteArray, signal);
    HttpServer server;
    NetworkRequest request;
    request.setUrl(server.url("/status/404"));
    // First during the start of a transfer, then while the answer arrives, if the signal comes
    // then.
    for (const bool early : {true, false}) {
        const int count = server.requestCount();
        LogCapture log;
        std::unique_ptr<Once> once;
        const auto listen = [&] {
            once = std::make_unique<Once>(&request, signal.constData(), [&] { request.send(); });
        };
        if (early)
            listen();
        request.send();
        if (!early)
            listen();
        QVERIFY(finish(request));
        if (once->wasCalled())
            QCOMPARE(log.count(QtWarningMsg, network, "readyState error"), 1);
        QCOMPARE(server.requestCount(), count + 1);
        QCOMPARE(request.status(), 404);
    }
}

void tst_NetworkRequestReentry::sendFromAHandlerThatWroteReadyStateReplacesTheTransfer_data()
{
    QTest::addColumn<QByteArray>("signal");
    QTest::addColumn<QString>("path");
    for (const char *signal : {"responseHeadersChanged()", "progressChanged()", "responseChanged()",
                               "responseTextChanged()", "errorCodeChanged()", "errorTextChanged()",
                               "readyStateChanged()", "error()"}) {
        QTest::addRow("%s, in memory", signal) << QByteArray(signal) << QString();
        QTest::addRow("%s, to a file", signal) << QByteArray(signal) << m_dir.filePath("replaced");
    }
}

void tst_NetworkRequestReentry::sendFromAHandlerThatWroteReadyStateReplacesTheTransfer()
{
    QFETCH(QByteArray, signal);
    QFETCH(QString, path);
    HttpServer server;
    server.on("/first", [](const HttpServer::Request &) {
        return HttpServer::Answer{QByteArray(100000, '1'), 404};
    });
    server.on("/second", [](const HttpServer::Request &) {
        return HttpServer::Answer{QByteArray(100000, '2')};
    });
    NetworkRequest request;
    request.setUrl(server.url("/first"));
    request.setResponsePath(path);
    request.send();
    const Once once(&request, signal.constData(), [&] {
        request.setReadyState(NetworkRequest::OPENED);
        request.setUrl(server.url("/second"));
        request.send();
    });
    if (!path.isEmpty() && signal == "responseChanged()") {
        QVERIFY(finish(request)); // a file has no response
        QVERIFY(!once.wasCalled());
        return;
    }
    QVERIFY(QTest::qWaitFor([&] { return once.wasCalled(); }));
    QVERIFY(finish(request));
    QCOMPARE(request.status(), 200);
    QCOMPARE(request.errorCode(), 0);
    QCOMPARE(server.lastRequest().target, QByteArray("/second"));
    if (path.isEmpty()) {
        QCOMPARE(request.responseText(), QString(100000, '2'));
    } else {
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray(100000, '2'));
    }
    QTRY_COMPARE(replyCount(*request.networkAccessManager()), 0);
}

void tst_NetworkRequestReentry::uploadFromAHandlerThatWroteReadyStateReplacesTheUpload()
{
    // The handler runs while the reply reads the body that it takes away.
    HttpServer server;
    const QString path = makeFile(m_dir, "upload", 1000000);
    for (const QVariant &body : {form(path), QVariant("plain")}) {
        NetworkRequest request;
        request.open("POST", server.url("/echo"));
        request.send(form(path));
        bool sent = false;
        connect(&request, &NetworkRequest::progressChanged, [&] {
            if (sent || request.progress() < 0.1)
                return;
            sent = true;
            request.reset();
            request.send(body);
        });
        QVERIFY(QTest::qWaitFor([&] { return sent; }));
        QVERIFY(finish(request));
        QCOMPARE(request.errorCode(), 0);
        if (body.type() == QVariant::String)
            QCOMPARE(server.lastRequest().body, QByteArray("plain"));
        else
            QVERIFY(server.lastRequest().parts.value("f").content == HttpServer::pattern(1000000));
        QTRY_COMPARE(replyCount(*request.networkAccessManager()), 0);
        QTRY_VERIFY(!request.findChild<NetworkFormData *>());
    }
}

void tst_NetworkRequestReentry::sendForEverySignalEnds()
{
    HttpServer server;
    NetworkRequest request;
    const LogCapture silence;
    int calls = 0;
    for (auto signal :
         {&NetworkRequest::requestBodyChanged, &NetworkRequest::responseHeadersChanged,
          &NetworkRequest::progressChanged, &NetworkRequest::responseChanged,
          &NetworkRequest::responseTextChanged, &NetworkRequest::errorTextChanged,
          &NetworkRequest::errorCodeChanged, &NetworkRequest::error}) {
        connect(&request, signal, [&] {
            ++calls;
            request.send();
        });
    }
    request.setUrl(server.url("/status/404"));
    request.send();
    QVERIFY(finish(request));
    QVERIFY(calls > 8 && calls < 1000);
    QCOMPARE(server.requestCount(), 1);
}

void tst_NetworkRequestReentry::sendFromTheBodySignalGoesFirst()
{
    HttpServer server;
    NetworkRequest request;
    request.open("POST", server.url("/echo"));
    const Once once(&request, "requestBodyChanged()", [&] { request.send(QVariant("inner")); });
    const LogCapture silence;
    request.send(QVariant("outer"));
    QCOMPARE(request.errorText(), QString("UNEXPECTED")); // for the outer one
    QVERIFY(finish(request));
    QCOMPARE(server.requestCount(), 1);
    QCOMPARE(server.lastRequest().body, QByteArray("inner"));
    QCOMPARE(request.requestBody(), QVariant("inner"));
}

void tst_NetworkRequestReentry::chainOfSendsFromStateFour()
{
    HttpServer server;
    NetworkRequest request;
    QStringList answers;
    connect(&request, &NetworkRequest::readyStateChanged, [&] {
        if (request.readyState() != NetworkRequest::DONE)
            return;
        answers.append(request.responseText());
        if (answers.size() < 20) {
            request.setUrl(server.url(QString("/text/%1").arg(answers.size())));
            request.send();
        }
    });
    request.setUrl(server.url("/text/0"));
    request.send();
    QTRY_COMPARE(answers.size(), 20);
    for (int i = 0; i < 20; ++i)
        QCOMPARE(answers.at(i), QString::number(i));
}

void tst_NetworkRequestReentry::secondFormCancelsTheUploadAndIsRefused()
{
    RawServer server;
    HttpServer second;
    server.setPaused(true);
    const QString path = makeFile(m_dir, "upload", 20000000);
    NetworkRequest request;
    request.open("POST", server.url());
    request.send(form(path));
    QTRY_VERIFY(request.progress() > 0.0);
    const QPointer<NetworkFormData> body = request.findChild<NetworkFormData *>();
    QSignalSpy error(&request, &NetworkRequest::error);
    LogCapture log;

    request.send(form(path));

    QCOMPARE(log.count(QtWarningMsg, network, "readyState error"), 1);
    QCOMPARE(request.errorText(), QString("UNEXPECTED"));
    QCOMPARE(request.readyState(), NetworkRequest::ReadyStateSending);
    QVERIFY(body); // the reply may still read it
    QCOMPARE(error.count(), 0);

    QVERIFY(finish(request));
    QCOMPARE(request.errorCode(), int(QNetworkReply::OperationCanceledError));
    QCOMPARE(error.count(), 1);
    QTRY_VERIFY(body.isNull());
    QTRY_VERIFY(!request.findChild<NetworkFormData *>());
    QCOMPARE(log.count(QtWarningMsg), 1); // nothing read a closed device

    server.setPaused(false);
    request.setUrl(second.url("/echo"));
    request.send(form(makeFile(m_dir, "small", 10)));
    QVERIFY(finish(request));
    QCOMPARE(request.errorCode(), 0);
    QCOMPARE(second.lastRequest().parts.value("f").content, HttpServer::pattern(10));
}

void tst_NetworkRequestReentry::secondFormDuringTheAnswerCancelsItToo()
{
    RawServer server;
    server.answer("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nabc");
    const QString path = makeFile(m_dir, "upload", 1000);
    NetworkRequest request;
    request.open("POST", server.url());
    request.send(form(path));
    QTRY_COMPARE(request.readyState(), NetworkRequest::LOADING);
    const LogCapture silence;
    request.send(form(path));
    QCOMPARE(request.readyState(), NetworkRequest::LOADING);
    QCOMPARE(request.errorText(), QString("UNEXPECTED"));
    QVERIFY(finish(request));
    QCOMPARE(request.errorCode(), int(QNetworkReply::OperationCanceledError));
    QCOMPARE(request.responseText(), QString("abc"));
}

void tst_NetworkRequestReentry::thirdFormIsNoWorse()
{
    RawServer server;
    server.setPaused(true);
    const QString path = makeFile(m_dir, "upload", 20000000);
    NetworkRequest request;
    request.open("POST", server.url());
    request.send(form(path));
    QTRY_VERIFY(request.progress() > 0.0);
    QSignalSpy error(&request, &NetworkRequest::error);
    const LogCapture silence;
    request.send(form(path));
    request.send(form(path));
    QCOMPARE(request.readyState(), NetworkRequest::ReadyStateSending);
    QVERIFY(finish(request));
    QCOMPARE(error.count(), 1);
    QTRY_VERIFY(!request.findChild<NetworkFormData *>());
}

void tst_NetworkRequestReentry::secondFormThatFailsCancelsTheUploadToo()
{
    RawServer server;
    server.setPaused(true);
    NetworkRequest request;
    request.open("POST", server.url());
    request.send(form(makeFile(m_dir, "upload", 20000000)));
    QTRY_VERIFY(request.progress() > 0.0);
    QSignalSpy error(&request, &NetworkRequest::error);

    const LogCapture silence;
    request.send(form("/no/such/file"));

    QCOMPARE(request.readyState(), NetworkRequest::ReadyStateSending);
    QCOMPARE(request.errorText(), QString("UNEXPECTED"));
    QVERIFY(finish(request));
    QCOMPARE(request.errorCode(), int(QNetworkReply::OperationCanceledError));
    QCOMPARE(error.count(), 1);
}

void tst_NetworkRequestReentry::failedFormLeavesADownloadAlone()
{
    RawServer server;
    server.answer("HTTP/1.1 200 OK\r\nContent-Length: 6\r\n\r\nabc");
    const QString path = m_dir.filePath("download");
    NetworkRequest request;
    request.setUrl(server.url());
    request.setResponsePath(path);
    request.send();
    QTRY_COMPARE(request.readyState(), NetworkRequest::LOADING);
    const LogCapture silence;
    request.send(form("/no/such/file"));
    QCOMPARE(request.readyState(), NetworkRequest::LOADING);
    server.sendMore("def");
    QVERIFY(finish(request));
    QCOMPARE(readFile(path), QByteArray("abcdef"));
    QCOMPARE(request.errorCode(), 0);
}

void tst_NetworkRequestReentry::failedFormDropsATransferLeftBehind_data()
{
    QTest::addColumn<QVariant>("body");
    QTest::newRow("plain") << QVariant("plain");
    QTest::newRow("form") << form(writeFile(m_dir.filePath("behind"), HttpServer::pattern(10000)));
}

void tst_NetworkRequestReentry::failedFormDropsATransferLeftBehind()
{
    QFETCH(QVariant, body);
    RawServer server;
    NetworkRequest request;
    request.open("POST", server.url());
    request.send(body);
    QTRY_COMPARE(server.requests().size(), 1);
    request.reset();
    request.send(form("/no/such/file"));
    QCOMPARE(request.readyState(), NetworkRequest::DONE);
    QCOMPARE(request.errorCode(), -1);
    QTRY_COMPARE(replyCount(*request.networkAccessManager()), 0);

    // Neither its answer nor its end is taken for this one's.
    QSignalSpy state(&request, &NetworkRequest::readyStateChanged);
    QSignalSpy error(&request, &NetworkRequest::error);
    server.sendMore(RawServer::ok("late"));
    QTRY_COMPARE(server.openConnectionCount(), 0);
    QCOMPARE(state.count(), 0);
    QCOMPARE(error.count(), 0);
    QCOMPARE(request.errorCode(), -1);
    QCOMPARE(request.responseText(), QString());
}

void tst_NetworkRequestReentry::sendFromTheHandlersOfAFailedFormGoesItsOwnWay_data()
{
    QTest::addColumn<QByteArray>("signal");
    for (const char *signal : {"errorCodeChanged()", "errorTextChanged()", "error()"})
        QTest::newRow(signal) << QByteArray(signal);
}

void tst_NetworkRequestReentry::sendFromTheHandlersOfAFailedFormGoesItsOwnWay()
{
    QFETCH(QByteArray, signal);
    HttpServer server;
    NetworkRequest request;
    request.open("POST", server.url("/echo"));
    const Once once(&request, signal.constData(), [&] {
        request.setReadyState(NetworkRequest::OPENED);
        request.send(QVariant("second"));
    });
    request.send(form("/no/such/file"));
    QVERIFY(once.wasCalled());
    QCOMPARE(request.readyState(), NetworkRequest::ReadyStateSending);
    QCOMPARE(request.errorCode(), 0);
    QCOMPARE(request.errorText(), QString());
    QVERIFY(finish(request));
    QCOMPARE(request.response(), QVariant("second"));
    QCOMPARE(request.errorCode(), 0);
}

void tst_NetworkRequestReentry::sendKeepsTheMethodAndAddressItBeganWith()
{
    // The state still allows the writes while a transfer begins; they are for the next one.
    HttpServer server;
    NetworkRequest request;
    request.open("POST", server.url("/text/first"));
    const Once once(&request, "responseHeadersChanged()", [&] {
        request.setMethod("PUT");
        request.setUrl(server.url("/text/second"));
    });
    request.send(QVariant("body"));
    QVERIFY(once.wasCalled());
    QVERIFY(finish(request));
    QCOMPARE(request.response(), QVariant("first"));
    QCOMPARE(server.lastRequest().method, QByteArray("POST"));
    request.send(QVariant("body"));
    QVERIFY(finish(request));
    QCOMPARE(request.response(), QVariant("second"));
    QCOMPARE(server.lastRequest().method, QByteArray("PUT"));
}

void tst_NetworkRequestReentry::secondPlainSendLeavesTheUploadAlone()
{
    RawServer server;
    server.setPaused(true);
    server.answer(RawServer::ok("thanks"));
    NetworkRequest request;
    request.open("POST", server.url());
    request.send(form(makeFile(m_dir, "upload", 3000000)));
    QTRY_VERIFY(request.progress() > 0.0);
    const LogCapture silence;
    request.send(QVariant("plain"));
    QCOMPARE(request.errorText(), QString("UNEXPECTED"));
    server.setPaused(false);
    QVERIFY(finish(request));
    QCOMPARE(request.errorCode(), 0);
    QCOMPARE(request.response(), QVariant("thanks"));
}

void tst_NetworkRequestReentry::formBehindARedirectDoesNotCancelIt()
{
    RawServer target;
    HttpServer server;
    NetworkRequest request;
    request.open("POST", server.url("/redirect/302?" + target.url("/there").toString()));
    request.send(form(makeFile(m_dir, "upload", 10)));
    QTRY_COMPARE(target.requests().size(), 1);
    const LogCapture silence;
    request.send(form(makeFile(m_dir, "upload", 10)));
    QCOMPARE(request.errorText(), QString("UNEXPECTED"));
    target.sendMore(RawServer::ok("there"));
    QVERIFY(finish(request));
    QCOMPARE(request.response(), QVariant("there"));
    QCOMPARE(request.errorCode(), 0);
}

TESSALINE_TEST_MAIN(tst_NetworkRequestReentry)
#include "tst_NetworkRequestReentry.moc"
