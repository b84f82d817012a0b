#include "network/NetworkFormData.h"
#include "network/NetworkRequest.h"
#include "RequestTesting.h"
#include "support/HttpServer.h"
#include "support/IsolatedHome.h"
#include "support/RawServer.h"

#include <QFile>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace RequestTesting;

// Requests and managers that go away while a transfer runs.
class tst_NetworkRequestLifetime : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void requestDestroyedInAnyState_data();
    void requestDestroyedInAnyState();
    void uploadOfADestroyedRequestGoesOn_data();
    void uploadOfADestroyedRequestGoesOn();
    void downloadsOfDestroyedRequestsFreeTheirConnections();
    void requestDestroyedFromItsHandlers_data();
    void requestDestroyedFromItsHandlers();
    void managerDestroyedDuringATransfer();
    void managerReplacedDuringATransfer();
    void replyThatIsStillThereIsDeletedAtOnce();

private:
    QTemporaryDir m_dir;
};

void tst_NetworkRequestLifetime::initTestCase()
{
    silenceForms();
    qRegisterMetaType<QNetworkReply *>(); // for the spies
}

void tst_NetworkRequestLifetime::requestDestroyedInAnyState_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<bool>("ownManager");
    for (const int state : {0, 1, 2, 3, 4}) {
        QTest::addRow("%d, shared manager", state) << state << false;
        QTest::addRow("%d, own manager", state) << state << true;
    }
}

void tst_NetworkRequestLifetime::requestDestroyedInAnyState()
{
    QFETCH(int, state);
    QFETCH(bool, ownManager);
    RawServer server;
    QNetworkAccessManager manager;
    QSignalSpy finished(&manager, &QNetworkAccessManager::finished);
    auto request = std::make_unique<NetworkRequest>();
    if (!ownManager)
        request->setNetworkAccessManager(&manager);
    if (state >= 1)
        request->setUrl(server.url());
    if (state >= 2) {
        request->send();
        QTRY_COMPARE(server.requests().size(), 1);
    }
    if (state >= 3)
        server.sendMore("HTTP/1.1 200 OK\r\nContent-Length: 6\r\n\r\nabc");
    if (state >= 4)
        server.sendMore("def");
    QTRY_COMPARE(int(request->readyState()), state);
    const QPointer<QNetworkAccessManager> used = request->networkAccessManager();

    request.reset();

    // The answer, or its rest, comes when nobody waits for it any more.
    if (state == 2)
        server.sendMore(RawServer::ok("abcdef"));
    if (state == 3)
        server.sendMore("def");
    if (ownManager) {
        QTRY_VERIFY(used.isNull());
    } else {
        QTRY_COMPARE(replyCount(manager), 0);
        QCOMPARE(finished.count(), state >= 2 ? 1 : 0);
    }
}

void tst_NetworkRequestLifetime::uploadOfADestroyedRequestGoesOn_data()
{
    QTest::addColumn<bool>("ownManager");
    QTest::newRow("shared manager") << false;
    QTest::newRow("own manager") << true;
}

void tst_NetworkRequestLifetime::uploadOfADestroyedRequestGoesOn()
{
    QFETCH(bool, ownManager);
    RawServer server;
    server.setPaused(true);
    server.answer(RawServer::ok(QByteArray(1000000, 'x')));
    QNetworkAccessManager manager;
    auto request = std::make_unique<NetworkRequest>();
    if (!ownManager)
        request->setNetworkAccessManager(&manager);
    request->open("POST", server.url());
    request->send(form(makeFile(m_dir, "upload", 10000000)));
    QTRY_VERIFY(request->progress() > 0.0);
    const QPointer<NetworkFormData> body = request->findChild<NetworkFormData *>();
    const QPointer<QNetworkAccessManager> used = request->networkAccessManager();

    request.reset();
    QVERIFY(body);
    server.setPaused(false);

    QTRY_COMPARE(server.requests().size(), 1);
    QVERIFY(server.lastRequest().contains(HttpServer::pattern(10000000)));
    QTRY_VERIFY(body.isNull());
    QTRY_COMPARE(replyCount(manager), 0);
    if (ownManager)
        QTRY_VERIFY(used.isNull());
}

void tst_NetworkRequestLifetime::downloadsOfDestroyedRequestsFreeTheirConnections()
{
    // The manager has six connections to a server; a reply with a full buffer would keep its own.
    HttpServer server;
    QNetworkAccessManager manager;
    for (const QString &path : {QString(), m_dir.filePath("file")}) {
        std::vector<std::unique_ptr<NetworkRequest>> requests;
        bool loading = false;
        for (int i = 0; i < 8; ++i) {
            requests.push_back(std::make_unique<NetworkRequest>());
            requests.back()->setNetworkAccessManager(&manager);
            requests.back()->setUrl(server.url("/bytes/20000000"));
            NetworkRequest *request = requests.back().get();
            connect(request, &NetworkRequest::readyStateChanged, this, [request, &loading] {
                loading = loading || request->readyState() == NetworkRequest::LOADING;
            });
            if (!path.isEmpty())
                requests.back()->setResponsePath(path + QString::number(i));
            requests.back()->send();
        }
        QTRY_VERIFY(loading);
        requests.clear();

        NetworkRequest last;
        last.setNetworkAccessManager(&manager);
        last.setUrl(server.url("/text/hello"));
        last.send();
        QVERIFY(finish(last));
        QTRY_COMPARE(replyCount(manager), 0);
    }
}

void tst_NetworkRequestLifetime::requestDestroyedFromItsHandlers_data()
{
    QTest::addColumn<QByteArray>("signal");
    for (const char *signal : {"responseHeadersChanged()", "progressChanged()", "responseChanged()",
                               "responseTextChanged()", "errorCodeChanged()", "errorTextChanged()",
                               "readyStateChanged()", "error()"})
        QTest::newRow(signal) << QByteArray(signal);
}

void tst_NetworkRequestLifetime::requestDestroyedFromItsHandlers()
{
    // What a script's destroy() does.
    QFETCH(QByteArray, signal);
    HttpServer server;
    QNetworkAccessManager manager;
    const QPointer<NetworkRequest> request = new NetworkRequest;
    request->setNetworkAccessManager(&manager);
    request->setUrl(server.url("/status/404"));
    request->send();
    const Once once(request, signal.constData(), [&] { request->deleteLater(); });
    QTRY_VERIFY(request.isNull());
    QTRY_COMPARE(replyCount(manager), 0);
}

void tst_NetworkRequestLifetime::managerDestroyedDuringATransfer()
{
    RawServer server;
    HttpServer second;
    NetworkRequest request;
    auto manager = std::make_unique<QNetworkAccessManager>();
    request.setNetworkAccessManager(manager.get());
    request.open("POST", server.url());
    request.send(form(makeFile(m_dir, "upload", 1000)));
    QTRY_COMPARE(server.requests().size(), 1);

    manager.reset();

    QVERIFY(!request.networkAccessManager());
    request.setUser("user"); // nothing to clear
    request.reset();
    request.setUrl(second.url("/text/hello"));
    request.send();
    QVERIFY(finish(request));
    QCOMPARE(request.response(), QVariant("hello"));
}

void tst_NetworkRequestLifetime::managerReplacedDuringATransfer()
{
    RawServer server;
    QNetworkAccessManager manager;
    {
        NetworkRequest request;
        request.setNetworkAccessManager(&manager);
        request.setUrl(server.url());
        request.send();
        QTRY_COMPARE(server.requests().size(), 1);
        request.setNetworkAccessManager(nullptr);
        server.sendMore(RawServer::ok("hello"));
        QTRY_COMPARE(request.responseText(), QString("hello")); // the reply itself is still heard
    }
    QTRY_COMPARE(replyCount(manager), 0);
}

void tst_NetworkRequestLifetime::replyThatIsStillThereIsDeletedAtOnce()
{
    RawServer server;
    QNetworkAccessManager manager;
    NetworkRequest request;
    request.setNetworkAccessManager(&manager);
    request.setUrl(server.url());
    request.send();
    const QPointer<QNetworkReply> reply = manager.findChild<QNetworkReply *>();
    QVERIFY(reply);
    QTRY_COMPARE(server.requests().size(), 1);
    request.reset();
    QVERIFY(reply);
    request.send();
    QVERIFY(reply.isNull());
    QCOMPARE(replyCount(manager), 1);
}

TESSALINE_TEST_MAIN(tst_NetworkRequestLifetime)
#include "tst_NetworkRequestLifetime.moc"
