#include "network/NetworkRequest.h"
#include "plugin/FileUtility.h"
#include "RequestTesting.h"
#include "support/HttpServer.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"
#include "support/RawServer.h"
#include "support/SignalRecorder.h"
#include "support/SmallDisk.h"

#include <QDir>
#include <QFile>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace RequestTesting;

// What a request makes of the server's answer: states, status, headers, body, files, redirects.
class tst_NetworkRequestAnswer : public QObject
{
    Q_OBJECT

private slots:
    void answerGoesThroughTheStates();
    void statusAndHeadersComeWithTheFirstData();
    void answerWithoutDataHasNoStatus_data();
    void answerWithoutDataHasNoStatus();
    void statusTextIsNumberAndReason_data();
    void statusTextIsNumberAndReason();
    void headersKeepTheServersSpelling();
    void answerOfALocalFileHasNoStatus();
    void httpErrorIsAnErrorWithABody();
    void failureIsSignalledBeforeStateFour();
    void responseFollowsTheType_data();
    void responseFollowsTheType();
    void jsonNullIsNull();
    void textEndsAtAZeroByteButNotTheBytes();
    void textIsReadableWhileItArrives();
    void newSendDropsTheOldAnswer();

    void bodyGoesToTheFile();
    void fileReplacesAnOldOne();
    void emptyAnswerLeavesAnOldFileAlone();
    void pathVariablesAreResolved();
    void fileThatCannotBeOpenedLeavesTheBodyInMemory();
    void pathWithANulLeavesTheBodyInMemory();
    void pathCannotBeChangedWhileTheFileIsOpen();
    void pathMayBeSetBeforeTheFirstData();
    void pathSetBehindTheFirstDataIsForTheNextSend();
    void errorPageGoesToTheFileToo();
    void bigFileArrivesWhole();
    void secondDownloadStartsANewFile();
    void packedAnswerIsUnpackedUnlessAskedForPlain();
    void fullDiskFailsTheTransfer_data();
    void fullDiskFailsTheTransfer();

    void progressRisesFromOneHalf();
    void answerWithoutLengthShowsNoProgressUntilItsEnd();
    void answerOfTwoBytesHasProgress();
    void lastBytesSetTheProgressBehindItsEnd();
    void hugeLengthIsTakenAsItIsTold();
    void plainBodyShowsNoProgressOfItsUpload();

    void redirectIsFollowedAsAPlainGet_data();
    void redirectIsFollowedAsAPlainGet();
    void redirectKeepsTheStateUntilTheFinalData();
    void redirectIsNotFollowedWhenTurnedOff();
    void temporaryRedirectIsNeverFollowed();
    void redirectWithoutATargetEndsNormally();
    void relativeTargetIsNotResolved();
    void redirectsAreNotCounted();
    void redirectToALocalFileIsRefused();
    void bigBodyOfARedirectDoesNotBlock();
    void bodyOfARedirectIsReadAway_data();
    void bodyOfARedirectIsReadAway();
    void redirectTurnedOffInItsBodyHasNone();
    void redirectedDownloadGoesToTheFile();
};

void tst_NetworkRequestAnswer::answerGoesThroughTheStates()
{
    HttpServer server;
    NetworkRequest request;
    request.setUrl(server.url("/text/hello"));
    QList<int> states;
    connect(&request, &NetworkRequest::readyStateChanged,
            [&] { states.append(request.readyState()); });
    SignalRecorder recorder(&request);

    request.send();
    recorder.take();
    QVERIFY(finish(request));

    QCOMPARE(states, QList<int>({2, 3, 4}));
    QCOMPARE(recorder.names(),
             QStringList({"responseHeadersChanged", "readyStateChanged", "responseTextChanged",
                          "progressChanged", "responseChanged", "readyStateChanged"}));
    QCOMPARE(request.response(), QVariant("hello"));
    QCOMPARE(request.responseText(), QString("hello"));
    QCOMPARE(request.status(), 200);
    QCOMPARE(request.errorCode(), 0);
    QCOMPARE(request.errorText(), QString());
    QCOMPARE(request.progress(), 1.0);
}

void tst_NetworkRequestAnswer::statusAndHeadersComeWithTheFirstData()
{
    RawServer server;
    server.answer("HTTP/1.1 200 Fine\r\nX-A: b\r\nContent-Length: 6\r\n\r\n");
    NetworkRequest request;
    request.setUrl(server.url());
    request.send();
    const auto *reply = request.networkAccessManager()->findChild<QNetworkReply *>();
    QTRY_VERIFY(reply->hasRawHeader("X-A"));
    // The headers alone change nothing.
    QCOMPARE(request.readyState(), NetworkRequest::ReadyStateSending);
    QCOMPARE(request.status(), 0);

    server.sendMore("abc");
    QTRY_COMPARE(request.readyState(), NetworkRequest::ReadyStateProcessing);
    QCOMPARE(request.status(), 200);
    QCOMPARE(request.statusText(), QString("200 Fine"));
    QCOMPARE(request.responseHeaders().value("X-A").toString(), QString("b"));
    QCOMPARE(request.responseText(), QString("abc"));
    QVERIFY(!request.response().isValid());

    server.sendMore("def");
    QVERIFY(finish(request));
    QCOMPARE(request.response(), QVariant("abcdef"));
}

void tst_NetworkRequestAnswer::answerWithoutDataHasNoStatus_data()
{
    QTest::addColumn<QString>("method");
    QTest::addColumn<QString>("target");
    QTest::newRow("HEAD") << "HEAD"
                          << "/text/hello";
    QTest::newRow("204") << "GET"
                         << "/status/204";
    QTest::newRow("0 bytes") << "GET"
                             << "/text/";
}

void tst_NetworkRequestAnswer::answerWithoutDataHasNoStatus()
{
    QFETCH(QString, method);
    QFETCH(QString, target);
    HttpServer server;
    NetworkRequest request;
    QList<int> states;
    connect(&request, &NetworkRequest::readyStateChanged,
            [&] { states.append(request.readyState()); });
    QSignalSpy responseChanged(&request, &NetworkRequest::responseChanged);
    request.open(method, server.url(target));
    request.send();
    QVERIFY(finish(request));
    QCOMPARE(states, QList<int>({1, 2, 4}));
    QCOMPARE(request.status(), 0);
    QCOMPARE(request.statusText(), QString());
    QCOMPARE(request.responseHeaders(), QVariantMap());
    QCOMPARE(request.response(), QVariant(QString()));
    QCOMPARE(request.errorCode(), 0);
    QCOMPARE(request.progress(), 1.0);
    QCOMPARE(responseChanged.count(), 2);
}

void tst_NetworkRequestAnswer::statusTextIsNumberAndReason_data()
{
    QTest::addColumn<QByteArray>("statusLine");
    QTest::addColumn<QString>("statusText");
    QTest::newRow("usual") << QByteArray("HTTP/1.1 404 Not Found") << "404 Not Found";
    QTest::newRow("own words") << QByteArray("HTTP/1.1 200 All is well") << "200 All is well";
    QTest::newRow("no reason") << QByteArray("HTTP/1.1 200 ") << "200 ";
    QTest::newRow("unknown number") << QByteArray("HTTP/1.1 299 Odd") << "299 Odd";
}

void tst_NetworkRequestAnswer::statusTextIsNumberAndReason()
{
    QFETCH(QByteArray, statusLine);
    RawServer server;
    server.answer(statusLine + "\r\nContent-Length: 1\r\n\r\nx");
    NetworkRequest request;
    request.setUrl(server.url());
    request.send();
    QVERIFY(finish(request));
    QTEST(request.statusText(), "statusText");
    QCOMPARE(request.status(), statusLine.mid(9, 3).toInt());
}

void tst_NetworkRequestAnswer::headersKeepTheServersSpelling()
{
    RawServer server;
    server.answer("HTTP/1.1 200 OK\r\ncontent-LENGTH: 1\r\nX-Name: f\xc3\xbcr\r\nx-two: a\r\n"
                  "X-TWO: b\r\nX-Same: 1\r\nX-Same: 2\r\n\r\nx");
    NetworkRequest request;
    request.setUrl(server.url());
    request.send();
    QVERIFY(finish(request));
    const QVariantMap headers = request.responseHeaders();
    QCOMPARE(headers.value("content-LENGTH"), QVariant("1"));
    QCOMPARE(headers.value("X-Name"), QVariant("für"));
    // Qt joins equal names, and keeps the last spelling.
    QCOMPARE(headers.keys(), QStringList({"X-Name", "X-Same", "X-TWO", "content-LENGTH"}));
    QCOMPARE(headers.value("X-TWO"), QVariant("a, b"));
    QCOMPARE(headers.value("X-Same"), QVariant("1, 2"));
    QCOMPARE(headers.value("X-Name").type(), QVariant::String);
}

void tst_NetworkRequestAnswer::answerOfALocalFileHasNoStatus()
{
    const QTemporaryDir dir;
    NetworkRequest request;
    request.setUrl(QUrl::fromLocalFile(writeFile(dir.filePath("file"), "local")));
    QList<int> states;
    connect(&request, &NetworkRequest::readyStateChanged,
            [&] { states.append(request.readyState()); });
    request.send();
    QVERIFY(finish(request));
    QCOMPARE(states, QList<int>({2, 3, 4}));
    QCOMPARE(request.status(), 0);
    QCOMPARE(request.statusText(), QString(" ")); // what stands between number and reason
    QCOMPARE(request.response(), QVariant("local"));
    QCOMPARE(request.errorCode(), 0);
}

void tst_NetworkRequestAnswer::httpErrorIsAnErrorWithABody()
{
    HttpServer server;
    NetworkRequest request;
    request.setUrl(server.url("/nowhere"));
    request.send();
    QVERIFY(finish(request));
    QCOMPARE(request.status(), int(NetworkRequest::StatusCodeNotFound));
    QCOMPARE(request.errorCode(), int(QNetworkReply::ContentNotFoundError));
    QVERIFY(request.errorText().contains("Not Found"));
    QCOMPARE(request.response(), QVariant("not here"));
}

void tst_NetworkRequestAnswer::failureIsSignalledBeforeStateFour()
{
    HttpServer server;
    NetworkRequest request;
    request.setUrl(server.url("/status/500"));
    request.send();
    SignalRecorder recorder(&request);
    QVERIFY(finish(request));
    QCOMPARE(recorder.names(),
             QStringList({"responseHeadersChanged", "readyStateChanged", "responseTextChanged",
                          "progressChanged", "errorCodeChanged", "errorTextChanged",
                          "responseChanged", "error", "readyStateChanged"}));
}

void tst_NetworkRequestAnswer::responseFollowsTheType_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QVariant>("response");

    const QVariantMap object{{"a", 1.0}, {"b", QVariantList{"x", true}}};
    const QByteArray json("{\"a\": 1, \"b\": [\"x\", true]}");
    QTest::newRow("json") << "json" << json << QVariant(object);
    QTest::newRow("json in any case") << "JSON" << json << QVariant(object);
    QTest::newRow("json array") << "json" << QByteArray("[1, 2]")
                                << QVariant(QVariantList{1.0, 2.0});
    QTest::newRow("what isn't JSON") << "json" << QByteArray("<html>") << QVariant(QVariantMap());
    QTest::newRow("JSON cut off") << "json" << QByteArray("{\"a\": [1") << QVariant(QVariantMap());
    QTest::newRow("JSON that isn't UTF-8")
        << "json" << QByteArray("{\"a\": \"\xff\"}") << QVariant(QVariantMap());
    QTest::newRow("text") << "text" << QByteArray("a\u00fc") << QVariant("aü");
    QTest::newRow("text in any case") << "Text" << QByteArray("a") << QVariant("a");
    QTest::newRow("empty type") << "" << QByteArray("a") << QVariant("a");
    QTest::newRow("text that isn't UTF-8")
        << "text" << QByteArray("a\xff\xfe") << QVariant("a\ufffd\ufffd");
    QTest::newRow("base64") << "Base64" << QByteArray("\x00\xff\x10", 3) << QVariant("AP8Q");
    QTest::newRow("unknown type") << "xml" << QByteArray("<a/>") << QVariant();
}

void tst_NetworkRequestAnswer::responseFollowsTheType()
{
    QFETCH(QString, type);
    QFETCH(QByteArray, body);
    HttpServer server;
    server.on("/body", [body](const HttpServer::Request &) { return HttpServer::Answer{body}; });
    NetworkRequest request;
    request.setUrl(server.url("/body"));
    request.setResponseType(type);
    request.send();
    const LogCapture silence;
    QVERIFY(finish(request));
    QTEST(request.response(), "response");
    if (!body.contains('\0'))
        QCOMPARE(request.responseText(), QString::fromUtf8(body));
}

void tst_NetworkRequestAnswer::jsonNullIsNull()
{
    HttpServer server;
    server.on("/null", [](const HttpServer::Request &) {
        return HttpServer::Answer{"{\"a\": null, \"b\": {\"c\": null}}"};
    });
    NetworkRequest request;
    request.setUrl(server.url("/null"));
    request.setResponseType("json");
    request.send();
    QVERIFY(finish(request));
    const QVariantMap map = request.response().toMap();
    QVERIFY(map.value("a").isValid() && map.value("a").isNull());
    const QVariant inner = map.value("b").toMap().value("c");
    QVERIFY(inner.isValid() && inner.isNull());
}

void tst_NetworkRequestAnswer::textEndsAtAZeroByteButNotTheBytes()
{
    HttpServer server;
    const QByteArray body("ab\0cd", 5);
    server.on("/zero", [body](const HttpServer::Request &) { return HttpServer::Answer{body}; });
    NetworkRequest request;
    request.setUrl(server.url("/zero"));
    request.send();
    QVERIFY(finish(request));
    QCOMPARE(request.responseText(), QString("ab"));
    QCOMPARE(request.response(), QVariant("ab"));

    request.setResponseType("base64");
    request.send();
    QVERIFY(finish(request));
    QCOMPARE(request.response().toString(), QString::fromLatin1(body.toBase64()));
}

void tst_NetworkRequestAnswer::textIsReadableWhileItArrives()
{
    RawServer server;
    server.answer("HTTP/1.1 200 OK\r\nContent-Length: 6\r\n\r\na\xe2\x82");
    NetworkRequest request;
    request.setUrl(server.url());
    QSignalSpy changed(&request, &NetworkRequest::responseTextChanged);
    request.send();
    QTRY_COMPARE(request.responseText(), QString("a\ufffd\ufffd"));
    QVERIFY(changed.count() >= 2);
    changed.clear();
    server.sendMore("\xac");
    QTRY_COMPARE(request.responseText(), QString("a\u20ac"));
    QCOMPARE(changed.count(), 1);
    server.sendMore("bc");
    QVERIFY(finish(request));
    QCOMPARE(request.responseText(), QString("a\u20acbc"));
}

void tst_NetworkRequestAnswer::newSendDropsTheOldAnswer()
{
    HttpServer server;
    NetworkRequest request;
    for (const char *word : {"first", "second"}) {
        request.setUrl(server.url("/text/" + QString(word)));
        request.send();
        QCOMPARE(request.responseText(), QString());
        QVERIFY(finish(request));
        QCOMPARE(request.response(), QVariant(word));
    }
}

void tst_NetworkRequestAnswer::bodyGoesToTheFile()
{
    HttpServer server;
    const QTemporaryDir dir;
    NetworkRequest request;
    request.setUrl(server.url("/bytes/1000"));
    request.setResponsePath(dir.filePath("file"));
    request.send();
    SignalRecorder recorder(&request);
    QVERIFY(finish(request));
    QVERIFY(readFile(dir.filePath("file")) == HttpServer::pattern(1000));
    QCOMPARE(request.responseText(), QString());
    QVERIFY(!request.response().isValid());
    QVERIFY(recorder.names().contains("responseTextChanged"));
    QVERIFY(!recorder.names().contains("responseChanged"));
    QCOMPARE(request.responsePath(), dir.filePath("file"));
    QCOMPARE(request.progress(), 1.0);
}

void tst_NetworkRequestAnswer::fileReplacesAnOldOne()
{
    HttpServer server;
    const QTemporaryDir dir;
    writeFile(dir.filePath("file"), QByteArray(1000, 'o'));
    NetworkRequest request;
    request.setUrl(server.url("/text/new"));
    request.setResponsePath(dir.filePath("file"));
    request.send();
    QVERIFY(finish(request));
    QCOMPARE(readFile(dir.filePath("file")), QByteArray("new"));
}

void tst_NetworkRequestAnswer::emptyAnswerLeavesAnOldFileAlone()
{
    HttpServer server;
    const QTemporaryDir dir;
    writeFile(dir.filePath("old"), "old");
    NetworkRequest request;
    QSignalSpy responseChanged(&request, &NetworkRequest::responseChanged);
    request.setUrl(server.url("/text/"));
    for (const char *name : {"old", "none"}) {
        request.setResponsePath(dir.filePath(name));
        request.send();
        responseChanged.clear();
        QVERIFY(finish(request));
        QCOMPARE(responseChanged.count(), 1);
        QCOMPARE(request.response(), QVariant(QString()));
    }
    QCOMPARE(readFile(dir.filePath("old")), QByteArray("old"));
    QVERIFY(!QFile::exists(dir.filePath("none")));
}

void tst_NetworkRequestAnswer::pathVariablesAreResolved()
{
    HttpServer server;
    NetworkRequest request;
    request.setUrl(server.url("/text/hello"));
    request.setResponsePath("~/in-home");
    request.send();
    QVERIFY(finish(request));
    QCOMPARE(readFile(FileUtility::resolvedPath(QString("~/in-home"), true)), QByteArray("hello"));
    QVERIFY(QFile::exists(QDir::home().filePath("in-home")));
    QCOMPARE(request.responsePath(), QString("~/in-home"));
}

void tst_NetworkRequestAnswer::fileThatCannotBeOpenedLeavesTheBodyInMemory()
{
    RawServer server;
    server.answer("HTTP/1.1 200 OK\r\nContent-Length: 6\r\n\r\nabc");
    const QTemporaryDir dir;
    const QString path = dir.filePath("missing/file");
    NetworkRequest request;
    request.setUrl(server.url());
    request.setResponsePath(path);
    request.send();
    QTRY_COMPARE(request.responseText(), QString("abc"));
    QCOMPARE(request.errorText(), "Cannot open " + path);
    QCOMPARE(request.errorCode(), 0);
    QVERIFY(QDir(dir.path()).mkdir("missing")); // too late: the beginning is in memory
    server.sendMore("def");
    QVERIFY(finish(request));
    QCOMPARE(request.response(), QVariant("abcdef"));
    QCOMPARE(request.errorText(), QString());
    QVERIFY(!QFile::exists(path));

    request.send(); // and the next transfer tries again
    QTRY_VERIFY(request.status() == 200);
    server.sendMore("def");
    QVERIFY(finish(request));
    QCOMPARE(readFile(path), QByteArray("abcdef"));
}

void tst_NetworkRequestAnswer::pathWithANulLeavesTheBodyInMemory()
{
    RawServer server;
    server.answer("HTTP/1.1 200 OK\r\nContent-Length: 3\r\n\r\nabc");
    const QTemporaryDir dir;
    const QString other = dir.filePath("other");
    QVERIFY(FileUtility::writeFile(other, "kept"));
    NetworkRequest request;
    request.setUrl(server.url());
    request.setResponsePath(other + QChar(0) + ".part");
    request.send();
    QVERIFY(finish(request));
    QCOMPARE(request.response(), QVariant("abc"));
    QCOMPARE(readFile(other), QByteArray("kept"));
}

void tst_NetworkRequestAnswer::pathCannotBeChangedWhileTheFileIsOpen()
{
    RawServer server;
    server.answer("HTTP/1.1 200 OK\r\nContent-Length: 6\r\n\r\nabc");
    const QTemporaryDir dir;
    const QString path = dir.filePath("file");
    NetworkRequest request;
    request.setUrl(server.url());
    request.setResponsePath(path);
    QSignalSpy changed(&request, &NetworkRequest::responsePathChanged);
    request.send();
    QTRY_VERIFY(QFile::exists(path));

    request.setResponsePath(path);
    QCOMPARE(request.errorText(), QString());
    request.setResponsePath(dir.filePath("other"));
    QCOMPARE(request.errorText(), QString("Error: responsePath cannot be set when file is open"));
    QCOMPARE(request.responsePath(), path);
    QCOMPARE(changed.count(), 0);

    server.sendMore("def");
    QVERIFY(finish(request));
    QCOMPARE(readFile(path), QByteArray("abcdef"));
    request.setResponsePath(QString());
    QCOMPARE(changed.count(), 1);
}

void tst_NetworkRequestAnswer::pathMayBeSetBeforeTheFirstData()
{
    RawServer server;
    const QTemporaryDir dir;
    NetworkRequest request;
    request.setUrl(server.url());
    request.send();
    QTRY_COMPARE(server.requests().size(), 1);
    request.setResponsePath(dir.filePath("file"));
    server.sendMore(RawServer::ok("hello"));
    QVERIFY(finish(request));
    QCOMPARE(readFile(dir.filePath("file")), QByteArray("hello"));
}

void tst_NetworkRequestAnswer::pathSetBehindTheFirstDataIsForTheNextSend()
{
    // A file that lacks the beginning would be of no use.
    RawServer server;
    server.answer("HTTP/1.1 200 OK\r\nContent-Length: 6\r\n\r\nabc");
    server.answer(RawServer::ok("second"));
    const QTemporaryDir dir;
    const QString path = writeFile(dir.filePath("file"), "old");
    NetworkRequest request;
    request.setUrl(server.url());
    request.send();
    QTRY_COMPARE(request.responseText(), QString("abc"));
    request.setResponsePath(path);
    QCOMPARE(request.responsePath(), path);
    server.sendMore("def");
    QVERIFY(finish(request));
    QCOMPARE(request.response(), QVariant("abcdef"));
    QCOMPARE(request.errorCode(), 0);
    QCOMPARE(readFile(path), QByteArray("old"));

    request.send();
    QVERIFY(finish(request));
    QCOMPARE(readFile(path), QByteArray("second"));
}

void tst_NetworkRequestAnswer::errorPageGoesToTheFileToo()
{
    HttpServer server;
    const QTemporaryDir dir;
    NetworkRequest request;
    request.setUrl(server.url("/status/503"));
    request.setResponsePath(dir.filePath("file"));
    request.send();
    QVERIFY(finish(request));
    QCOMPARE(request.status(), 503);
    QCOMPARE(request.errorCode(), int(QNetworkReply::ServiceUnavailableError));
    QCOMPARE(readFile(dir.filePath("file")), QByteArray("status 503"));
}

void tst_NetworkRequestAnswer::bigFileArrivesWhole()
{
    // Far beyond the bound of the reply's buffer.
    const int size = 20 * 1024 * 1024;
    HttpServer server;
    const QTemporaryDir dir;
    NetworkRequest request;
    request.setUrl(server.url("/bytes/" + QString::number(size)));
    request.setResponsePath(dir.filePath("file"));
    request.send();
    QVERIFY(finish(request));
    QVERIFY(readFile(dir.filePath("file")) == HttpServer::pattern(size));
}

void tst_NetworkRequestAnswer::secondDownloadStartsANewFile()
{
    RawServer server;
    server.answer("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nunfinished");
    server.answer(RawServer::ok("second"));
    const QTemporaryDir dir;
    NetworkRequest request;
    request.setUrl(server.url());
    request.setResponsePath(dir.filePath("file"));
    request.send();
    QTRY_VERIFY(QFile::exists(dir.filePath("file")));
    request.reset(); // a script gives up on the first
    request.send();
    QVERIFY(finish(request));
    QCOMPARE(readFile(dir.filePath("file")), QByteArray("second"));
    QCOMPARE(request.errorCode(), 0);
}

void tst_NetworkRequestAnswer::packedAnswerIsUnpackedUnlessAskedForPlain()
{
    // What scripts can do against an answer that unpacks to very much.
    const QByteArray bytes(3000000, 'x');
    const QByteArray packed = qCompress(bytes).mid(4); // behind Qt's own length
    RawServer server;
    server.answer("HTTP/1.1 200 OK\r\nContent-Encoding: deflate\r\nContent-Length: "
                  + QByteArray::number(packed.size()) + "\r\n\r\n" + packed);
    const QTemporaryDir dir;
    const QString path = dir.filePath("file");
    NetworkRequest request;
    request.setUrl(server.url());
    request.setResponsePath(path);
    request.send();
    QVERIFY(finish(request));
    QCOMPARE(RawServer::header(server.lastRequest(), "Accept-Encoding"),
             QByteArray("gzip, deflate"));
    QVERIFY(readFile(path) == bytes);

    request.headers()->setValue("Accept-Encoding", "identity");
    request.send();
    QVERIFY(finish(request));
    QCOMPARE(RawServer::header(server.lastRequest(), "Accept-Encoding"), QByteArray("identity"));
    QVERIFY(readFile(path) == packed);
}

void tst_NetworkRequestAnswer::fullDiskFailsTheTransfer_data()
{
    QTest::addColumn<int>("size");
    QTest::newRow("noticed at the end") << 10000;
    QTest::newRow("noticed on the way") << 3000000;
}

void tst_NetworkRequestAnswer::fullDiskFailsTheTransfer()
{
    QFETCH(int, size);
    SmallDisk disk(64);
    if (!disk.isMounted())
        QSKIP(qPrintable("No full disk without a mount of its own: " + disk.reason()));
    QVERIFY(disk.fillUpTo(4));
    HttpServer server;
    NetworkRequest request;
    request.setUrl(server.url("/bytes/" + QString::number(size)));
    request.setResponsePath(disk.filePath("file"));
    QSignalSpy error(&request, &NetworkRequest::error);
    request.send();
    LogCapture log;
    QVERIFY(finish(request));
    QCOMPARE(request.errorText(), "Cannot write " + disk.filePath("file"));
    QCOMPARE(request.errorCode(), int(QNetworkReply::OperationCanceledError));
    QCOMPARE(error.count(), 1);
    QCOMPARE(log.count(QtWarningMsg, network, "Cannot write"), 1);
    QVERIFY(!QFile::exists(disk.filePath("file")));

    request.setResponsePath(QString());
    request.send();
    QVERIFY(finish(request));
    QCOMPARE(request.errorCode(), 0);
}

void tst_NetworkRequestAnswer::progressRisesFromOneHalf()
{
    RawServer server;
    server.answer("HTTP/1.1 200 OK\r\nContent-Length: 8\r\n\r\nab");
    NetworkRequest request;
    request.setUrl(server.url());
    QList<double> values;
    connect(&request, &NetworkRequest::progressChanged, [&] { values.append(request.progress()); });
    request.send();
    QCOMPARE(values, QList<double>({0.0}));
    QTRY_COMPARE(request.progress(), 0.625);
    server.sendMore("cdef");
    QTRY_COMPARE(request.progress(), 0.875);
    server.sendMore("gh");
    QVERIFY(finish(request));
    QCOMPARE(values, QList<double>({0.0, 0.625, 0.875, 1.0}));
}

void tst_NetworkRequestAnswer::answerWithoutLengthShowsNoProgressUntilItsEnd()
{
    RawServer server;
    server.answer("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n3\r\nabc\r\n");
    NetworkRequest request;
    request.setUrl(server.url());
    request.send();
    QTRY_COMPARE(request.responseText(), QString("abc"));
    QCOMPARE(request.progress(), 0.0);
    server.sendMore("2\r\nde\r\n0\r\n\r\n");
    QVERIFY(finish(request));
    QCOMPARE(request.responseText(), QString("abcde"));
    QCOMPARE(request.progress(), 1.0);
}

void tst_NetworkRequestAnswer::answerOfTwoBytesHasProgress()
{
    // Beyond the first ten milliseconds the end is estimated as well.
    RawServer server;
    server.answer("HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\na");
    NetworkRequest request;
    request.setUrl(server.url());
    request.send();
    QTRY_COMPARE(request.progress(), 0.75);
    QElapsedTimer timer;
    timer.start();
    QTRY_VERIFY(timer.elapsed() > 15);
    server.sendMore("b");
    QVERIFY(finish(request));
    QCOMPARE(request.progress(), 1.0);
}

void tst_NetworkRequestAnswer::lastBytesSetTheProgressBehindItsEnd()
{
    // The body of a redirect is read at the end only, and this one ends too early.
    RawServer server;
    server.answer("HTTP/1.1 301 Moved Permanently\r\nContent-Length: 8\r\n\r\nab",
                  RawServer::Close);
    NetworkRequest request;
    request.setUrl(server.url());
    request.send();
    QList<double> values;
    connect(&request, &NetworkRequest::progressChanged, [&] { values.append(request.progress()); });
    QVERIFY(finish(request));
    QCOMPARE(values, QList<double>({1.0, 0.625}));
    QCOMPARE(request.response(), QVariant("ab"));
}

void tst_NetworkRequestAnswer::hugeLengthIsTakenAsItIsTold()
{
    // The estimate multiplies it by the time that went by.
    RawServer server;
    NetworkRequest request;
    request.setUrl(server.url());
    request.send();
    QElapsedTimer timer;
    timer.start();
    QTRY_COMPARE(server.requests().size(), 1);
    QTRY_VERIFY(timer.elapsed() > 15);
    server.sendMore("HTTP/1.1 200 OK\r\nContent-Length: 9223372036854775807\r\n\r\nab");
    QTRY_COMPARE(request.responseText(), QString("ab"));
    QCOMPARE(request.progress(), 0.5);
    server.end(RawServer::Close);
    QVERIFY(finish(request));
    QVERIFY(request.errorCode() != 0);
    QCOMPARE(request.response(), QVariant("ab"));
}

void tst_NetworkRequestAnswer::plainBodyShowsNoProgressOfItsUpload()
{
    RawServer server;
    NetworkRequest request;
    request.open("POST", server.url());
    QSignalSpy changed(&request, &NetworkRequest::progressChanged);
    request.send(QVariant(QString(2000000, 'x')));
    QCOMPARE(changed.count(), 1); // that of the beginning
    QTRY_COMPARE(server.requests().size(), 1);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(request.progress(), 0.0);
    server.sendMore(RawServer::ok("thanks"));
    QVERIFY(finish(request));
    QCOMPARE(request.progress(), 1.0);
}

void tst_NetworkRequestAnswer::redirectIsFollowedAsAPlainGet_data()
{
    QTest::addColumn<int>("status");
    for (const int status : {301, 302, 303})
        QTest::addRow("%d", status) << status;
}

void tst_NetworkRequestAnswer::redirectIsFollowedAsAPlainGet()
{
    QFETCH(int, status);
    HttpServer server;
    HttpServer target;
    NetworkRequest request;
    request.open("POST", server.url(QString("/redirect/%1?").arg(status)
                                    + target.url("/text/there").toString()));
    request.headers()->setUserAgent("Tests/1.0");
    request.headers()->setValue("X-Token", "secret");

    request.send(QVariant(QVariantMap{{"a", 1}}));

    QVERIFY(finish(request));
    QCOMPARE(server.lastRequest().method, QByteArray("POST"));
    QCOMPARE(server.lastRequest().header("X-Token"), QByteArray("secret"));
    const HttpServer::Request second = target.lastRequest();
    QCOMPARE(second.method, QByteArray("GET"));
    QCOMPARE(second.target, QByteArray("/text/there"));
    QVERIFY(!second.hasHeader("X-Token"));
    QVERIFY(!second.hasHeader("Content-Type"));
    QVERIFY(second.header("User-Agent") != "Tests/1.0");
    QCOMPARE(second.body, QByteArray());
    QCOMPARE(request.response(), QVariant("there"));
    QCOMPARE(request.status(), 200);
    QCOMPARE(request.errorCode(), 0);
    QCOMPARE(request.method(), QString("POST"));
}

void tst_NetworkRequestAnswer::redirectKeepsTheStateUntilTheFinalData()
{
    RawServer target;
    RawServer server;
    server.answer("HTTP/1.1 302 Found\r\nContent-Length: 5\r\nLocation: "
                  + target.url("/there").toEncoded() + "\r\n\r\nmoved");
    NetworkRequest request;
    request.setUrl(server.url());
    request.send();
    SignalRecorder recorder(&request);
    QTRY_COMPARE(target.requests().size(), 1);
    QCOMPARE(request.readyState(), NetworkRequest::ReadyStateSending);
    QCOMPARE(request.responseText(), QString());
    QCOMPARE(request.responseHeaders(), QVariantMap());
    QCOMPARE(recorder.names(), QStringList());
    target.sendMore(RawServer::ok("here"));
    QVERIFY(finish(request));
    QCOMPARE(request.response(), QVariant("here"));
}

void tst_NetworkRequestAnswer::redirectIsNotFollowedWhenTurnedOff()
{
    HttpServer server;
    NetworkRequest request;
    request.setUrl(server.url("/redirect/302?" + server.url("/text/x").toString()));
    request.setFollowRedirects(false);
    request.send();
    QVERIFY(finish(request));
    QCOMPARE(server.requestCount(), 1);
    QCOMPARE(request.status(), 302);
    QCOMPARE(request.errorCode(), 0);
    QCOMPARE(request.response(), QVariant("moved"));
}

void tst_NetworkRequestAnswer::temporaryRedirectIsNeverFollowed()
{
    HttpServer server;
    NetworkRequest request;
    for (const int status : {307, 308}) {
        server.clearRequests();
        request.setUrl(
            server.url(QString("/redirect/%1?").arg(status) + server.url("/text/x").toString()));
        request.send();
        QVERIFY(finish(request));
        QCOMPARE(server.requestCount(), 1);
        QCOMPARE(request.status(), status);
        QCOMPARE(request.errorCode(), 0);
        QCOMPARE(request.response(), QVariant("moved"));
    }
}

void tst_NetworkRequestAnswer::redirectWithoutATargetEndsNormally()
{
    HttpServer server;
    NetworkRequest request;
    QList<int> states;
    connect(&request, &NetworkRequest::readyStateChanged,
            [&] { states.append(request.readyState()); });
    for (const int status : {301, 302, 303}) {
        states.clear();
        request.setUrl(server.url("/redirect/" + QString::number(status)));
        request.send();
        QVERIFY(finish(request));
        QCOMPARE(states, QList<int>({1, 2, 4})); // its data don't count on the way
        QCOMPARE(request.status(), status);
        QCOMPARE(request.statusText(), QString());
        QCOMPARE(request.responseHeaders(), QVariantMap());
        QCOMPARE(request.errorCode(), 0);
        QCOMPARE(request.response(), QVariant("moved"));
    }
}

void tst_NetworkRequestAnswer::relativeTargetIsNotResolved()
{
    HttpServer server;
    NetworkRequest request;
    request.setUrl(server.url("/redirect/302?/text/x"));
    request.send();
    QVERIFY(finish(request));
    QCOMPARE(server.requestCount(), 1);
    QCOMPARE(request.errorCode(), int(QNetworkReply::ProtocolUnknownError));
}

void tst_NetworkRequestAnswer::redirectsAreNotCounted()
{
    HttpServer server;
    std::atomic_int hops{0};
    const QByteArray self = server.url("/loop").toEncoded();
    server.on("/loop", [&](const HttpServer::Request &) {
        if (++hops > 60)
            return HttpServer::Answer{"enough"};
        return HttpServer::Answer{"", 302, "text/plain", {{"Location", self}}};
    });
    NetworkRequest request;
    request.setUrl(server.url("/loop"));
    request.send();
    QVERIFY(finish(request));
    QCOMPARE(server.requestCount(), 61);
    QCOMPARE(request.response(), QVariant("enough"));
}

void tst_NetworkRequestAnswer::redirectToALocalFileIsRefused()
{
    const QTemporaryDir dir;
    writeFile(dir.filePath("secret"), "secret");
    HttpServer server;
    NetworkRequest request;
    request.setUrl(
        server.url("/redirect/302?" + QUrl::fromLocalFile(dir.filePath("secret")).toString()));
    request.send();
    LogCapture log;
    QVERIFY(finish(request));
    QCOMPARE(request.response(), QVariant("moved"));
    QCOMPARE(log.count(QtWarningMsg, network, "Redirect refused"), 1);
}

void tst_NetworkRequestAnswer::bigBodyOfARedirectDoesNotBlock()
{
    // With a path the reply's buffer is bounded, and nobody reads the body of a redirect.
    const QByteArray body(2000000, 'x');
    HttpServer server;
    const QByteArray target = server.url("/text/there").toEncoded();
    server.on("/moved", [=](const HttpServer::Request &) {
        return HttpServer::Answer{body, 302, "text/plain", {{"Location", target}}};
    });
    server.on("/lost", [=](const HttpServer::Request &) { return HttpServer::Answer{body, 302}; });
    const QTemporaryDir dir;
    NetworkRequest request;
    request.setResponsePath(dir.filePath("file"));
    request.setUrl(server.url("/moved"));
    request.send();
    QVERIFY(finish(request));
    QCOMPARE(readFile(dir.filePath("file")), QByteArray("there"));

    request.setUrl(server.url("/lost"));
    request.send();
    QVERIFY(finish(request));
    QVERIFY(readFile(dir.filePath("file")) == body);
}

void tst_NetworkRequestAnswer::bodyOfARedirectIsReadAway_data()
{
    QTest::addColumn<bool>("toFile");
    QTest::newRow("in memory") << false;
    QTest::newRow("to a file") << true;
}

void tst_NetworkRequestAnswer::bodyOfARedirectIsReadAway()
{
    // Whatever its length, the reply never holds more of it than its buffer takes.
    QFETCH(bool, toFile);
    HttpServer target;
    RawServer server;
    const QTemporaryDir dir;
    const QString path = dir.filePath("file");
    NetworkRequest request;
    if (toFile)
        request.setResponsePath(path);
    request.setUrl(server.url());
    request.send();
    QTRY_COMPARE(server.requests().size(), 1);
    const QPointer<QNetworkReply> reply =
        request.networkAccessManager()->findChild<QNetworkReply *>();
    int pieces = 0;
    qint64 held = 0;
    connect(reply, &QNetworkReply::readyRead, this, [&] {
        ++pieces;
        held = qMax(held, reply->bytesAvailable());
    });
    server.sendMore("HTTP/1.1 302 Found\r\nContent-Length: 3000000\r\nLocation: "
                    + target.url("/text/there").toEncoded() + "\r\n\r\n");
    for (int i = 1; i < 30; ++i) {
        const int before = pieces;
        server.sendMore(QByteArray(100000, 'x'));
        QTRY_VERIFY(pieces > before);
    }
    QCOMPARE(held, qint64(0));
    QVERIFY(reply->readBufferSize() > 0);
    QCOMPARE(request.readyState(), NetworkRequest::ReadyStateSending);
    server.sendMore(QByteArray(100000, 'x'));
    QVERIFY(finish(request));
    QCOMPARE(request.status(), 200);
    if (toFile)
        QCOMPARE(readFile(path), QByteArray("there"));
    else
        QCOMPARE(request.response(), QVariant("there"));
}

void tst_NetworkRequestAnswer::redirectTurnedOffInItsBodyHasNone()
{
    // Its beginning is gone already, and a body without one would mislead.
    HttpServer target;
    RawServer server;
    server.answer("HTTP/1.1 302 Found\r\nContent-Length: 6\r\nLocation: "
                  + target.url("/text/there").toEncoded() + "\r\n\r\nabc");
    NetworkRequest request;
    request.setUrl(server.url());
    request.send();
    QTRY_COMPARE(request.status(), 302);
    request.setFollowRedirects(false);
    server.sendMore("def");
    QVERIFY(finish(request));
    QCOMPARE(request.status(), 302);
    QCOMPARE(request.errorCode(), 0);
    QCOMPARE(request.responseText(), QString());
    QCOMPARE(target.requestCount(), 0);
}

void tst_NetworkRequestAnswer::redirectedDownloadGoesToTheFile()
{
    HttpServer server;
    const QTemporaryDir dir;
    NetworkRequest request;
    request.setUrl(server.url("/redirect/301?" + server.url("/bytes/3000000").toString()));
    request.setResponsePath(dir.filePath("file"));
    request.send();
    QVERIFY(finish(request));
    QVERIFY(readFile(dir.filePath("file")) == HttpServer::pattern(3000000));
}

TESSALINE_TEST_MAIN(tst_NetworkRequestAnswer)
#include "tst_NetworkRequestAnswer.moc"
