#include "network/NetworkFormData.h"
#include "network/NetworkRequest.h"
#include "RequestTesting.h"
#include "support/HttpServer.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"
#include "support/RawServer.h"
#include "support/SignalRecorder.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace RequestTesting;

// Requests byte by byte: the headers of every request, and forms with files.
class tst_NetworkRequestForm : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void plainRequestCarriesOnlyTheDefaults();
    void headersAreSentAsTheyStand();
    void contentTypeOfTheScriptIsKept_data();
    void contentTypeOfTheScriptIsKept();
    void keyThatWasOnlyReadIsNoHeader();
    void clearedHeadersAreNotSent();
    void headerThatWouldBreakTheRequestIsLeftOut_data();
    void headerThatWouldBreakTheRequestIsLeftOut();
    void headersOfTheArgumentAreSent();

    void formIsByteForByte();
    void fieldsComeBeforeFiles();
    void fieldsAreTheTextOfTheirValues();
    void namesAreNotEscaped();
    void pieceOfAFileIsSent_data();
    void pieceOfAFileIsSent();
    void filePartsAreReadByAnotherParser();
    void methodOfAForm_data();
    void methodOfAForm();
    void contentTypeOfTheScriptIsReplaced();
    void prefixDecides_data();
    void prefixDecides();
    void emptyPrefixMakesAQuery();
    void otherPrefixIsPossible();

    void missingFileFailsWithoutARequest();
    void missingFileClearsTheLastAnswer();
    void missingFileFailsUnlessATransferRuns_data();
    void missingFileFailsUnlessATransferRuns();
    void requestCanBeSentAfterAFailedForm();
    void secondFileMissingSendsNothing();

    void uploadFillsTheFirstHalfOfTheProgress();
    void bodyExistsOnlyDuringTheTransfer();
    void uploadOfManyReadsArrivesWhole();
    void fileThatShrinksFailsTheTransfer();
    void fileThatGrowsIsSentAsItWas();
    void formIsNotSentAgainAfterARedirect();

private:
    QString makeFile(const QString &name, const QByteArray &bytes) const;

    QTemporaryDir m_dir;
};

namespace {

// Header lines without those that Qt adds by itself.
QStringList ownHeaders(const QByteArray &request)
{
    QStringList lines =
        QString::fromUtf8(RawServer::headerPart(request)).split("\r\n", Qt::SkipEmptyParts);
    lines.removeFirst();
    for (const char *name : {"Host:", "Connection:", "Accept-Encoding:", "Accept-Language:"}) {
        lines.erase(std::remove_if(lines.begin(), lines.end(),
                                   [name](const QString &line) { return line.startsWith(name); }),
                    lines.end());
    }
    return lines;
}

// The answer of a server that got the whole request.
QByteArray received(RawServer &server, NetworkRequest &request, const QVariantMap &body)
{
    const int count = server.requests().size();
    request.send(QVariant(body));
    if (!finish(request) || server.requests().size() != count + 1)
        return QByteArray();
    return server.lastRequest();
}

QByteArray boundaryOf(const QByteArray &request)
{
    const QByteArray prefix("multipart/form-data; boundary=");
    const QByteArray type = RawServer::header(request, "Content-Type");
    return type.startsWith(prefix) ? type.mid(prefix.size()) : QByteArray();
}

} // namespace

void tst_NetworkRequestForm::initTestCase()
{
    silenceForms();
}

QString tst_NetworkRequestForm::makeFile(const QString &name, const QByteArray &bytes) const
{
    return writeFile(m_dir.filePath(name), bytes);
}

void tst_NetworkRequestForm::plainRequestCarriesOnlyTheDefaults()
{
    RawServer server;
    server.answer(RawServer::ok("x"));
    NetworkRequest request;
    request.setUrl(server.url("/path"));
    request.send();
    QVERIFY(finish(request));
    const QByteArray host = "127.0.0.1:" + QByteArray::number(server.url().port());
    QCOMPARE(server.lastRequest(), "GET /path HTTP/1.1\r\n"
                                   "Host: "
                                       + host
                                       + "\r\n"
                                         "Content-Type: application/x-www-form-urlencoded\r\n"
                                         "Connection: Keep-Alive\r\n"
                                         "Accept-Encoding: gzip, deflate\r\n"
                                         "Accept-Language: "
                                       + RawServer::header(server.lastRequest(), "Accept-Language")
                                       + "\r\n"
                                         "User-Agent: Mozilla/5.0\r\n\r\n");
}

void tst_NetworkRequestForm::headersAreSentAsTheyStand()
{
    RawServer server;
    server.answer(RawServer::ok("x"));
    NetworkRequest request;
    request.setUrl(server.url());
    NetworkRequestHeaders *headers = request.headers();
    headers->setUserAgent("Tests/1.0");
    headers->setReferer("http://referer/");
    headers->setValue("x-lower", 5);
    headers->setValue("X-Utf8", "ü");
    headers->setValue("X-Tab", "a\tb");
    headers->setValue("X-Bool", true);
    request.send();
    QVERIFY(finish(request));
    // In the order of the keys.
    QCOMPARE(ownHeaders(server.lastRequest()),
             QStringList({"Content-Type: application/x-www-form-urlencoded",
                          "Referer: http://referer/", "User-Agent: Tests/1.0", "X-Bool: true",
                          "X-Tab: a\tb", "X-Utf8: ü", "x-lower: 5"}));
}

void tst_NetworkRequestForm::contentTypeOfTheScriptIsKept_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("usual key") << "Content-Type" << QByteArray("application/json");
    // In another spelling it doesn't keep the default away, and of two the one whose key comes
    // later is sent.
    QTest::newRow("lower case, behind the default")
        << "content-type" << QByteArray("application/json");
    QTest::newRow("upper case, before the default")
        << "CONTENT-TYPE" << QByteArray("application/x-www-form-urlencoded");
}

void tst_NetworkRequestForm::contentTypeOfTheScriptIsKept()
{
    QFETCH(QString, key);
    RawServer server;
    server.answer(RawServer::ok("x"));
    NetworkRequest request;
    request.open("POST", server.url());
    request.headers()->setValue(key, "application/json");
    request.send(QVariant("{}"));
    QVERIFY(finish(request));
    QTEST(RawServer::header(server.lastRequest(), "Content-Type"), "expected");
    QCOMPARE(RawServer::headerPart(server.lastRequest()).toLower().count("content-type"), 1);
}

void tst_NetworkRequestForm::keyThatWasOnlyReadIsNoHeader()
{
    RawServer server;
    server.answer(RawServer::ok("x"));
    NetworkRequest request;
    request.setUrl(server.url());
    request.headers()->insert("X-Read", QVariant());
    request.headers()->insert("Content-Type", QVariant());
    request.send();
    QVERIFY(finish(request));
    QVERIFY(RawServer::header(server.lastRequest(), "X-Read").isNull());
    QCOMPARE(RawServer::header(server.lastRequest(), "Content-Type"),
             QByteArray("application/x-www-form-urlencoded"));
}

void tst_NetworkRequestForm::clearedHeadersAreNotSent()
{
    RawServer server;
    server.answer(RawServer::ok("x"));
    NetworkRequest request;
    request.setUrl(server.url());
    request.headers()->setValue("X-A", "a");
    request.headers()->clear();
    request.send();
    QVERIFY(finish(request));
    QVERIFY(RawServer::header(server.lastRequest(), "X-A").isNull());
}

void tst_NetworkRequestForm::headerThatWouldBreakTheRequestIsLeftOut_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("value");
    QTest::newRow("line break in the value") << "X-Bad"
                                             << "a\r\nX-Evil: b";
    QTest::newRow("line feed") << "X-Bad"
                               << "a\nX-Evil: b";
    QTest::newRow("carriage return") << "X-Bad"
                                     << "a\rX-Evil: b";
    QTest::newRow("end of the headers") << "X-Bad"
                                        << "a\r\n\r\nGET /evil HTTP/1.1\r\n\r\n";
    QTest::newRow("zero byte") << "X-Bad" << QString(QChar(0)) + "X-Evil";
    QTest::newRow("line break in the name") << "X-Bad\r\nX-Evil"
                                            << "a";
    QTest::newRow("colon in the name") << "X-Evil: a\tX-Bad"
                                       << "a";
    QTest::newRow("blank in the name") << "X-Evil Bad"
                                       << "a";
    QTest::newRow("empty name") << ""
                                << "X-Evil";
    QTest::newRow("content type with a break") << "Content-Type"
                                               << "text/plain\r\nX-Evil: b";
}

void tst_NetworkRequestForm::headerThatWouldBreakTheRequestIsLeftOut()
{
    QFETCH(QString, name);
    QFETCH(QString, value);
    RawServer server;
    server.answer(RawServer::ok("x"));
    NetworkRequest request;
    request.setUrl(server.url());
    request.headers()->insert(name, value);
    request.headers()->setValue("X-Good", "good");
    LogCapture log;

    request.send();

    QVERIFY(finish(request));
    QCOMPARE(server.requests().size(), 1);
    QCOMPARE(ownHeaders(server.lastRequest()),
             QStringList({"Content-Type: application/x-www-form-urlencoded", "X-Good: good",
                          "User-Agent: Mozilla/5.0"}));
    QCOMPARE(log.count(QtWarningMsg, network, "Header can't be sent"), 1);
    QVERIFY(!log.dump().contains(value) || value.isEmpty() || value == "a");
}

void tst_NetworkRequestForm::headersOfTheArgumentAreSent()
{
    RawServer server;
    server.answer(RawServer::ok("x"));
    NetworkRequest request;
    request.setUrl(server.url());
    request.headers()->setValue("X-Own", "own");
    request.send(QVariantMap{{"a", 1}}, QVariantMap{{"X-Given", "given"}});
    QVERIFY(finish(request));
    QCOMPARE(RawServer::header(server.lastRequest(), "X-Given"), QByteArray("given"));
    QVERIFY(RawServer::header(server.lastRequest(), "X-Own").isNull());
}

void tst_NetworkRequestForm::formIsByteForByte()
{
    RawServer server;
    server.answer(RawServer::ok("x"));
    const QByteArray picture = HttpServer::pattern(5000);
    NetworkRequest request;
    request.open("POST", server.url("/upload"));

    const qint64 before = QDateTime::currentMSecsSinceEpoch();
    const QByteArray bytes = received(
        server, request,
        {{"title", "x"}, {"a", "@" + makeFile("picture.png", picture) + ";filename=q.png"}});
    const qint64 after = QDateTime::currentMSecsSinceEpoch();

    QCOMPARE(requestLine(bytes), QByteArray("POST /upload HTTP/1.1"));
    const QByteArray boundary = boundaryOf(bytes);
    QVERIFY(boundary.startsWith(QByteArray(27, '-')));
    const qint64 time = boundary.mid(27).toLongLong();
    QVERIFY(time >= before && time <= after);
    const QByteArray expected =
        "--" + boundary
        + "\r\n"
          "Content-Disposition: form-data; name=\"title\"\r\n"
          "\r\n"
          "x\r\n"
          "--"
        + boundary
        + "\r\n"
          "Content-Disposition: form-data; name=\"a\"; filename=\"q.png\"\r\n"
          "Content-Type: image/png\r\n"
          "\r\n"
        + picture
        + "\r\n"
          "--"
        + boundary + "--\r\n";
    QVERIFY(RawServer::bodyPart(bytes) == expected);
    QCOMPARE(RawServer::header(bytes, "Content-Length"), QByteArray::number(expected.size()));
    QVERIFY(RawServer::header(bytes, "Transfer-Encoding").isNull());
}

void tst_NetworkRequestForm::fieldsComeBeforeFiles()
{
    RawServer server;
    server.answer(RawServer::ok("x"));
    const QString path = makeFile("file", "x");
    NetworkRequest request;
    request.open("POST", server.url());
    const QByteArray bytes =
        received(server, request,
                 {{"b", "@" + path}, {"a", "@" + path}, {"z", "1"}, {"c", "2"}, {"C", "3"}});
    QStringList names;
    auto match = QRegularExpression("name=\"(\\w)\"")
                     .globalMatch(QString::fromUtf8(RawServer::bodyPart(bytes)));
    while (match.hasNext())
        names.append(match.next().captured(1));
    QCOMPARE(names, QStringList({"C", "c", "z", "a", "b"}));
}

void tst_NetworkRequestForm::fieldsAreTheTextOfTheirValues()
{
    HttpServer server;
    NetworkRequest request;
    request.open("POST", server.url("/echo"));
    request.send(QVariant(QVariantMap{{"file", "@" + makeFile("file", "x")},
                                      {"int", 42},
                                      {"double", 1234567.5},
                                      {"bool", true},
                                      {"text", "ü\r\n--x"},
                                      {"empty", ""},
                                      {"null", QVariant()}}));
    QVERIFY(finish(request));
    const auto parts = server.lastRequest().parts;
    QCOMPARE(parts.value("int").content, QByteArray("42"));
    QCOMPARE(parts.value("double").content, QByteArray("1234567.5"));
    QCOMPARE(parts.value("bool").content, QByteArray("true"));
    QCOMPARE(parts.value("text").content, QByteArray("ü\r\n--x"));
    QCOMPARE(parts.value("empty").content, QByteArray());
    QVERIFY(parts.contains("null"));
    QCOMPARE(parts.value("null").content, QByteArray());
    QCOMPARE(parts.size(), 7);
}

void tst_NetworkRequestForm::namesAreNotEscaped()
{
    RawServer server;
    server.answer(RawServer::ok("x"));
    NetworkRequest request;
    request.open("POST", server.url());
    const QByteArray bytes = received(
        server, request,
        {{"a\"ü", "x"}, {"f", "@" + makeFile("file", "x") + ";filename=\"q\";type=weird type"}});
    QVERIFY(bytes.contains("form-data; name=\"a\"ü\"\r\n\r\nx\r\n"));
    QVERIFY(bytes.contains("name=\"f\"; filename=\"\"q\"\"\r\nContent-Type: weird type\r\n\r\n"));
}

void tst_NetworkRequestForm::pieceOfAFileIsSent_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("whole") << "" << QByteArray("0123456789abcdef");
    QTest::newRow("first ten") << ";offset=0;size=10" << QByteArray("0123456789");
    QTest::newRow("rest") << ";offset=10" << QByteArray("abcdef");
    QTest::newRow("middle") << ";size=3;offset=4" << QByteArray("456");
    QTest::newRow("beyond the end") << ";offset=100" << QByteArray();
    QTest::newRow("clipped") << ";offset=14;size=100" << QByteArray("ef");
    QTest::newRow("size that isn't a number") << ";size=all" << QByteArray();
    QTest::newRow("negative size") << ";size=-7" << QByteArray();
    QTest::newRow("negative offset") << ";offset=-7" << QByteArray("0123456789abcdef");
}

void tst_NetworkRequestForm::pieceOfAFileIsSent()
{
    QFETCH(QString, options);
    QFETCH(QByteArray, expected);
    RawServer server;
    server.answer(RawServer::ok("x"));
    NetworkRequest request;
    request.open("POST", server.url());
    const QByteArray bytes = received(
        server, request, {{"f", "@" + makeFile("file.txt", "0123456789abcdef") + options}});
    QVERIFY(bytes.endsWith("name=\"f\"; filename=\"file.txt\"\r\nContent-Type: text/plain\r\n\r\n"
                           + expected + "\r\n--" + boundaryOf(bytes) + "--\r\n"));
}

void tst_NetworkRequestForm::filePartsAreReadByAnotherParser()
{
    HttpServer server;
    const QByteArray big = HttpServer::pattern(300000);
    NetworkRequest request;
    request.open("POST", server.url("/echo"));
    request.send(QVariant(QVariantMap{
        {"empty", "@" + makeFile("empty.zip", "")},
        {"big", "@" + makeFile("big.bin", big)},
        {"slice", "@" + makeFile("big.bin", big) + ";offset=100000;size=100001;type=a/b"},
        {"field", "value"}}));
    QVERIFY(finish(request));
    const auto parts = server.lastRequest().parts;
    QCOMPARE(parts.size(), 4);
    QCOMPARE(parts.value("empty").fileName, QByteArray("empty.zip"));
    QCOMPARE(parts.value("empty").contentType, QByteArray("application/zip"));
    QCOMPARE(parts.value("empty").content, QByteArray());
    QVERIFY(parts.value("big").content == big);
    QVERIFY(parts.value("slice").content == big.mid(100000, 100001));
    QCOMPARE(parts.value("slice").contentType, QByteArray("a/b"));
    QCOMPARE(parts.value("field").content, QByteArray("value"));
}

void tst_NetworkRequestForm::methodOfAForm_data()
{
    QTest::addColumn<QString>("method");
    QTest::addColumn<QByteArray>("verb");
    QTest::newRow("PUT") << "PUT" << QByteArray("PUT");
    for (const char *method : {"POST", "GET", "HEAD", "DELETE", "PATCH"})
        QTest::newRow(method) << method << QByteArray("POST");
}

void tst_NetworkRequestForm::methodOfAForm()
{
    QFETCH(QString, method);
    RawServer server;
    server.answer(RawServer::ok("x"));
    NetworkRequest request;
    request.open(method, server.url("/p?x=1"));
    const QByteArray bytes =
        received(server, request, {{"f", "@" + makeFile("file", "x")}, {"a", "1"}});
    QFETCH(QByteArray, verb);
    QCOMPARE(requestLine(bytes), verb + " /p?x=1 HTTP/1.1"); // no items of the URL in the form
    QVERIFY(!RawServer::bodyPart(bytes).contains("\"x\""));
    QCOMPARE(request.method(), method);
}

void tst_NetworkRequestForm::contentTypeOfTheScriptIsReplaced()
{
    RawServer server;
    server.answer(RawServer::ok("x"));
    NetworkRequest request;
    request.open("POST", server.url());
    request.headers()->setValue("Content-Type", "application/json");
    request.headers()->setValue("X-A", "a");
    const QByteArray bytes = received(server, request, {{"f", "@" + makeFile("file", "x")}});
    QVERIFY(!boundaryOf(bytes).isEmpty());
    QCOMPARE(RawServer::header(bytes, "X-A"), QByteArray("a"));
    QCOMPARE(request.headers()->value("Content-Type").toString(), QString("application/json"));
}

void tst_NetworkRequestForm::prefixDecides_data()
{
    QTest::addColumn<QString>("prefix");
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("isFile");
    const QString path = makeFile("file", "x");
    QTest::newRow("default") << "@"
                             << "@" + path << true;
    QTest::newRow("not in front") << "@"
                                  << " @" + path << false;
    QTest::newRow("longer") << "file:"
                            << "file:" + path << true;
    QTest::newRow("other case") << "file:"
                                << "FILE:" + path << false;
    QTest::newRow("empty") << ""
                           << "@" + path << false;
}

void tst_NetworkRequestForm::prefixDecides()
{
    QFETCH(QString, prefix);
    QFETCH(QString, value);
    QFETCH(bool, isFile);
    RawServer server;
    server.answer(RawServer::ok("x"));
    NetworkRequest request;
    request.open("POST", server.url());
    request.setUploadPrefix(prefix);
    const QByteArray bytes = received(server, request, {{"f", value}});
    QVERIFY(!bytes.isEmpty());
    QCOMPARE(!boundaryOf(bytes).isEmpty(), isFile);
}

void tst_NetworkRequestForm::emptyPrefixMakesAQuery()
{
    RawServer server;
    server.answer(RawServer::ok("x"));
    NetworkRequest request;
    request.setUrl(server.url("/p"));
    request.setUploadPrefix(QString());
    QCOMPARE(requestLine(received(server, request, {{"f", "@/tmp/x.png"}})),
             QByteArray("GET /p?f=@/tmp/x.png HTTP/1.1"));
}

void tst_NetworkRequestForm::otherPrefixIsPossible()
{
    HttpServer server;
    NetworkRequest request;
    request.setUrl(server.url("/echo"));
    request.setUploadPrefix("file:");
    request.send(
        QVariant(QVariantMap{{"f", "file:" + makeFile("file", "bytes")}, {"at", "@text"}}));
    QVERIFY(finish(request));
    QCOMPARE(server.lastRequest().parts.value("f").content, QByteArray("bytes"));
    QCOMPARE(server.lastRequest().parts.value("at").content, QByteArray("@text"));
}

void tst_NetworkRequestForm::missingFileFailsWithoutARequest()
{
    HttpServer server;
    NetworkRequest request;
    request.open("POST", server.url("/echo"));
    SignalRecorder recorder(&request);
    QList<int> states;
    connect(&request, &NetworkRequest::readyStateChanged,
            [&] { states.append(request.readyState()); });

    request.send(QVariant(QVariantMap{{"f", "@/no/such/file;size=3"}}));

    QCOMPARE(states, QList<int>({2, 4}));
    QCOMPARE(request.errorCode(), -1);
    QCOMPARE(request.errorText(), QString("Cannot open /no/such/file"));
    QCOMPARE(recorder.names(),
             QStringList({"requestBodyChanged", "responseHeadersChanged", "progressChanged",
                          "responseChanged", "responseTextChanged", "readyStateChanged",
                          "errorCodeChanged", "errorTextChanged", "error", "readyStateChanged"}));
    QTest::qWait(0);
    QCOMPARE(server.requestCount(), 0);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!request.findChild<NetworkFormData *>());
}

void tst_NetworkRequestForm::missingFileClearsTheLastAnswer()
{
    HttpServer server;
    NetworkRequest request;
    request.setUrl(server.url("/text/hello"));
    request.send();
    QVERIFY(finish(request));
    request.send(QVariant(QVariantMap{{"f", "@/no/such/file"}}));
    QCOMPARE(request.readyState(), NetworkRequest::DONE);
    QCOMPARE(request.status(), 0);
    QCOMPARE(request.statusText(), QString());
    QCOMPARE(request.responseHeaders(), QVariantMap());
    QCOMPARE(request.responseText(), QString());
    QVERIFY(!request.response().isValid());
    QCOMPARE(request.progress(), 0.0);
}

void tst_NetworkRequestForm::missingFileFailsUnlessATransferRuns_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<bool>("refused");
    QTest::newRow("0") << 0 << false;
    QTest::newRow("1") << 1 << false;
    QTest::newRow("2") << 2 << true;
    QTest::newRow("3") << 3 << true;
    QTest::newRow("4") << 4 << false;
}

void tst_NetworkRequestForm::missingFileFailsUnlessATransferRuns()
{
    QFETCH(int, state);
    QFETCH(bool, refused);
    NetworkRequest request;
    request.setReadyState(NetworkRequest::ReadyState(state));
    LogCapture log;
    request.send(form("/no/such/file"));
    QCOMPARE(int(request.readyState()), refused ? state : 4);
    QCOMPARE(request.errorCode(), refused ? 0 : -1);
    QCOMPARE(request.errorText(),
             refused ? QString("UNEXPECTED") : QString("Cannot open /no/such/file"));
    QCOMPARE(log.count(QtWarningMsg, network, "readyState error"), refused ? 1 : 0);
}

void tst_NetworkRequestForm::requestCanBeSentAfterAFailedForm()
{
    HttpServer server;
    NetworkRequest request;
    request.open("POST", server.url("/echo"));
    request.send(QVariant(QVariantMap{{"f", "@/no/such/file"}}));
    request.send(QVariant(QVariantMap{{"f", "@" + makeFile("file", "x")}}));
    QCOMPARE(request.errorText(), QString());
    QVERIFY(finish(request));
    QCOMPARE(request.errorCode(), 0);
    QCOMPARE(server.lastRequest().parts.value("f").content, QByteArray("x"));
}

void tst_NetworkRequestForm::secondFileMissingSendsNothing()
{
    HttpServer server;
    NetworkRequest request;
    request.open("POST", server.url("/echo"));
    request.send(
        QVariant(QVariantMap{{"a", "@" + makeFile("file", "x")}, {"b", "@/no/such/file"}}));
    QCOMPARE(request.errorText(), QString("Cannot open /no/such/file"));
    QTest::qWait(0);
    QCOMPARE(server.requestCount(), 0);
}

void tst_NetworkRequestForm::uploadFillsTheFirstHalfOfTheProgress()
{
    RawServer server;
    server.answer("HTTP/1.1 200 OK\r\nContent-Length: 8\r\n\r\nab");
    NetworkRequest request;
    request.open("POST", server.url());
    QList<double> values;
    connect(&request, &NetworkRequest::progressChanged, [&] {
        values.append(request.progress());
        QCOMPARE(request.progress() <= 0.5, request.readyState() < NetworkRequest::LOADING);
    });
    request.send(QVariant(QVariantMap{{"f", "@" + makeFile("file", QByteArray(2000000, 'u'))}}));
    QTRY_COMPARE(request.responseText(), QString("ab"));
    server.sendMore("cdefgh");
    QVERIFY(finish(request));

    QVERIFY(values.size() > 100);
    QVERIFY(std::is_sorted(values.begin(), values.end()));
    QVERIFY(std::any_of(values.begin(), values.end(),
                        [](double value) { return value > 0.1 && value < 0.2; }));
    QCOMPARE(values.mid(values.indexOf(0.5)), QList<double>({0.5, 0.625, 1.0}));
}

void tst_NetworkRequestForm::bodyExistsOnlyDuringTheTransfer()
{
    RawServer server;
    server.setPaused(true);
    NetworkRequest request;
    request.open("POST", server.url());
    server.answer(RawServer::ok("x"));
    QVERIFY(!request.findChild<NetworkFormData *>());
    request.send(QVariant(QVariantMap{{"f", "@" + makeFile("file", QByteArray(100, 'x'))}}));
    const QPointer<NetworkFormData> body = request.findChild<NetworkFormData *>();
    QVERIFY(body);
    QCOMPARE(body->parent(), &request);
    server.setPaused(false);
    QVERIFY(finish(request));
    QTRY_VERIFY(body.isNull());
}

void tst_NetworkRequestForm::uploadOfManyReadsArrivesWhole()
{
    HttpServer server;
    const QByteArray bytes = HttpServer::pattern(1024 * 1024);
    NetworkRequest request;
    request.open("PUT", server.url("/text/thanks"));
    request.send(QVariant(QVariantMap{{"f", "@" + makeFile("file", bytes)}}));
    QVERIFY(finish(request));
    QVERIFY(server.lastRequest().parts.value("f").content == bytes);
    QCOMPARE(request.response(), QVariant("thanks"));
}

void tst_NetworkRequestForm::fileThatShrinksFailsTheTransfer()
{
    RawServer server;
    server.setPaused(true);
    const QString path = makeFile("file", QByteArray(30000000, 'x'));
    NetworkRequest request;
    request.open("POST", server.url());
    request.send(QVariant(QVariantMap{{"f", "@" + path}}));
    QTRY_VERIFY(request.progress() > 0.0); // under way, and stuck
    QVERIFY(QFile::resize(path, 1000));
    server.setPaused(false);
    QVERIFY(finish(request));
    QVERIFY(request.errorCode() != 0);
    QCOMPARE(server.requests().size(), 0);
    QVERIFY(server.partialRequest().size() < 30000000);
}

void tst_NetworkRequestForm::fileThatGrowsIsSentAsItWas()
{
    RawServer server;
    server.answer(RawServer::ok("thanks"));
    const QByteArray bytes = HttpServer::pattern(500000);
    const QString path = makeFile("growing", bytes);
    NetworkRequest request;
    request.open("POST", server.url());
    request.send(QVariant(QVariantMap{{"f", "@" + path}, {"g", "@" + path + ";offset=1"}}));
    const Once once(&request, "progressChanged()", [&path] { // it has only just begun
        QFile file(path);
        if (!file.open(QIODevice::Append) || file.write(QByteArray(100000, 'x')) != 100000)
            qFatal("Can't make the file grow");
    });
    QVERIFY(finish(request));
    QVERIFY(once.wasCalled());
    QCOMPARE(request.errorCode(), 0);
    QCOMPARE(server.requests().size(), 1);
    const QByteArray body = RawServer::bodyPart(server.lastRequest());
    const QByteArray boundary = boundaryOf(server.lastRequest());
    QVERIFY(body.contains(bytes + "\r\n--" + boundary + "\r\n"));
    QVERIFY(body.endsWith(bytes.mid(1) + "\r\n--" + boundary + "--\r\n"));
}

void tst_NetworkRequestForm::formIsNotSentAgainAfterARedirect()
{
    HttpServer server;
    NetworkRequest request;
    request.open("POST", server.url("/redirect/302?" + server.url("/text/there").toString()));
    request.send(QVariant(QVariantMap{{"f", "@" + makeFile("file", "x")}}));
    QVERIFY(finish(request));
    QCOMPARE(server.requestCount(), 2);
    QCOMPARE(server.lastRequest().method, QByteArray("GET"));
    QCOMPARE(request.response(), QVariant("there"));
}

TESSALINE_TEST_MAIN(tst_NetworkRequestForm)
#include "tst_NetworkRequestForm.moc"
