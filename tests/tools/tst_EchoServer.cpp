#include "support/ExternalServer.h"
#include "support/IsolatedHome.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

// tessaline-echo as curl sees it.
class tst_EchoServer : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void helpTellsThePaths();
    void certificateOfARunningServerStays();
    void badArgumentsEndWithAMessage_data();
    void badArgumentsEndWithAMessage();
    void echoTellsMethodQueryAndHeaders();
    void echoTellsTheBody_data();
    void echoTellsTheBody();
    void echoTellsFieldsAndFiles();
    void bytesHaveTheirLength_data();
    void bytesHaveTheirLength();
    void bytesComeAtTheirRate();
    void redirectsLeadToEcho();
    void statusIsAnswered();
    void httpsHasACertificateToTrust();

private:
    static QString program()
    {
        return qEnvironmentVariable("TESSALINE_BIN_DIR") + "/tessaline-echo";
    }
    static QByteArray curl(const QStringList &arguments);
    QJsonObject json(const QStringList &arguments) const;
    QString url(const QString &target) const { return m_server.url(target).toEncoded(); }

    ExternalServer m_server;
};

void tst_EchoServer::initTestCase()
{
    QVERIFY2(m_server.start(program(), {"--port", "%PORT%"}), qPrintable(m_server.output()));
}

QByteArray tst_EchoServer::curl(const QStringList &arguments)
{
    QProcess process;
    process.start("curl", QStringList({"--silent", "--noproxy", "*"}) + arguments);
    return process.waitForFinished() && process.exitCode() == 0
               ? process.readAllStandardOutput()
               : "curl failed: " + QByteArray::number(process.exitCode());
}

QJsonObject tst_EchoServer::json(const QStringList &arguments) const
{
    return QJsonDocument::fromJson(curl(arguments)).object();
}

void tst_EchoServer::helpTellsThePaths()
{
    QProcess process;
    process.start(program(), {"--help"});
    QVERIFY(process.waitForFinished());
    const QByteArray output = process.readAll();
    for (const char *path : {"/echo", "/bytes/N", "/redirect/N", "/status/N"})
        QVERIFY2(output.contains(path), path);
    QVERIFY2(!output.contains("openssl"), output.constData()); // no option takes a key
}

void tst_EchoServer::certificateOfARunningServerStays()
{
    m_server.writeFile("portal.pem", "the certificate of another");
    QProcess process;
    process.start(program(), {"--port", QString::number(m_server.port()), "--https",
                              "--certificate", m_server.path("portal.pem")});
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 1);
    QFile file(m_server.path("portal.pem"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("the certificate of another"));
}

void tst_EchoServer::badArgumentsEndWithAMessage_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("words");
    QTest::newRow("port") << QStringList{"--port", "70000"} << QByteArray("--port");
    QTest::newRow("port that is taken")
        << QStringList{"--port", QString::number(m_server.port())} << QByteArray("is taken");
    QTest::newRow("certificate alone")
        << QStringList{"--port", "0", "--certificate", "a.pem"} << QByteArray("needs --https");
    QTest::newRow("certificate alone, without a name")
        << QStringList{"--port", "0", "--certificate", ""} << QByteArray("needs --https");
    QTest::newRow("certificate without a name")
        << QStringList{"--port", "0", "--https", "--certificate", ""}
        << QByteArray("needs the name of a file");
    QTest::newRow("no option's argument")
        << QStringList{"--port", "0", "x"} << QByteArray("no option takes the argument \"x\"");
    QTest::newRow("no room for the certificate")
        << QStringList{"--port", "0", "--https", "--certificate", "/no/a.pem"}
        << QByteArray("/no/a.pem");
}

void tst_EchoServer::badArgumentsEndWithAMessage()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, words);
    QProcess process;
    process.start(program(), arguments);
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 1);
    const QByteArray output = process.readAllStandardError();
    QVERIFY2(output.contains(words), output.constData());
}

void tst_EchoServer::echoTellsMethodQueryAndHeaders()
{
    const QJsonObject answer = json({"-H", "X-Client: a b", url("/echo?a=1%202&b=c+d")});
    QCOMPARE(answer["method"].toString(), QString("GET"));
    QCOMPARE(answer["path"].toString(), QString("/echo"));
    QCOMPARE(answer["query"].toObject(), QJsonObject({{"a", "1 2"}, {"b", "c d"}}));
    QCOMPARE(answer["headers"].toObject()["X-Client"].toString(), QString("a b"));
    for (const char *own : {"LOCAL_ADDR", "LOCAL_PORT", "REMOTE_ADDR", "REMOTE_PORT"})
        QVERIFY2(!answer["headers"].toObject().contains(own), own);
    QCOMPARE(json({"-X", "DELETE", url("/echo")})["method"].toString(), QString("DELETE"));
}

void tst_EchoServer::echoTellsTheBody_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("body");
    QTest::addColumn<QJsonValue>("told");
    QTest::newRow("text") << "text/plain"
                          << "a=1&b" << QJsonValue("a=1&b");
    QTest::newRow("form") << "application/x-www-form-urlencoded"
                          << "a=1&b=%C3%BC+x" << QJsonValue(QJsonObject{{"a", "1"}, {"b", "ü x"}});
}

void tst_EchoServer::echoTellsTheBody()
{
    QFETCH(QString, type);
    QFETCH(QString, body);
    QFETCH(QJsonValue, told);
    for (const QString method : {"POST", "PUT"}) {
        const QJsonObject answer = json(
            {"-X", method, "-H", "Content-Type: " + type, "--data-binary", body, url("/echo")});
        QCOMPARE(answer["method"].toString(), method);
        QCOMPARE(answer[told.isObject() ? "fields" : "body"], told);
        QCOMPARE(answer["bodySize"].toInt(), body.toUtf8().size());
    }
}

void tst_EchoServer::echoTellsFieldsAndFiles()
{
    const int size = 3000000; // more than it keeps of anything
    m_server.writeFile("big.txt", QString(size, 'x'));
    const QJsonObject answer =
        json({"-F", "title=Harbour", "-F", "f=@" + m_server.path("big.txt"), "-F",
              "g=@" + m_server.path("big.txt") + ";filename=g.png", url("/echo")});
    QCOMPARE(answer["fields"].toObject(), QJsonObject({{"title", "Harbour"}}));
    const QJsonArray files = answer["files"].toArray();
    QCOMPARE(files.size(), 2);
    QCOMPARE(files[0].toObject(), QJsonObject({{"name", "f"},
                                               {"fileName", "big.txt"},
                                               {"contentType", "text/plain"},
                                               {"size", size}}));
    QCOMPARE(files[1].toObject()["fileName"].toString(), QString("g.png"));
}

void tst_EchoServer::bytesHaveTheirLength_data()
{
    QTest::addColumn<int>("size");
    QTest::newRow("none") << 0;
    QTest::newRow("one") << 1;
    QTest::newRow("many") << 1000003;
}

void tst_EchoServer::bytesHaveTheirLength()
{
    QFETCH(int, size);
    const QByteArray bytes = curl({url(QString("/bytes/%1").arg(size))});
    QCOMPARE(bytes.size(), size);
    QCOMPARE(bytes.count('\n'), size / 61); // whole lines, in the right places
    for (int i = 60; i < size; i += 61)
        QVERIFY2(bytes.at(i) == '\n', qPrintable(QString::number(i)));
}

void tst_EchoServer::bytesComeAtTheirRate()
{
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(curl({url("/bytes/3000?rate=10000")}).size(), 3000);
    QVERIFY2(timer.elapsed() >= 290, qPrintable(QString::number(timer.elapsed())));
}

void tst_EchoServer::redirectsLeadToEcho()
{
    const QByteArray head = curl({"-D", "-", url("/redirect/2")});
    QVERIFY2(head.startsWith("HTTP/1.1 302"), head.constData());
    QVERIFY2(head.contains("Location: " + url("/redirect/1").toLatin1()), head.constData());
    QCOMPARE(json({"-L", url("/redirect/2")})["path"].toString(), QString("/echo"));
}

void tst_EchoServer::statusIsAnswered()
{
    QCOMPARE(curl({"-o", "/dev/null", "-w", "%{http_code}", url("/status/503")}),
             QByteArray("503"));
    QCOMPARE(curl({"-w", "%{http_code}", url("/status/204")}), QByteArray("204"));
}

void tst_EchoServer::httpsHasACertificateToTrust()
{
    ExternalServer server;
    const QString certificate = server.path("certificate.pem");
    QVERIFY2(server.start(program(), {"--port", "%PORT%", "--https", "--certificate", certificate}),
             qPrintable(server.output()));
    QUrl url = server.url("/redirect/1");
    url.setScheme("https");
    const QByteArray answer = curl({"--cacert", certificate, "-D", "-", url.toString()});
    url.setPath("/echo");
    QVERIFY2(answer.contains("Location: " + url.toEncoded()), answer.constData());
    QCOMPARE(curl({url.toString()}), QByteArray("curl failed: 60"));
}

TESSALINE_TEST_MAIN(tst_EchoServer)

#include "tst_EchoServer.moc"
