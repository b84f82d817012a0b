#include "RequestTesting.h"
#include "support/ExternalServer.h"
#include "support/HttpServer.h"
#include "support/IsolatedHome.h"

#include <QCryptographicHash>
#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace RequestTesting;

// Against programs that know nothing of Qt: nginx, Python's HTTP and form parsers, and curl as the
// measure of what a download gives.
class tst_NetworkRequestPeers : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void nginxStoresWhatWasSent_data();
    void nginxStoresWhatWasSent();
    void nginxFileArrivesAsWithCurl_data();
    void nginxFileArrivesAsWithCurl();
    void nginxCompressesTheAnswer();
    void nginxRedirects();
    void nginxErrorPages();
    void nginxClosesEachConnection();
    void pythonReadsTheForm();
    void pythonReadsWhatCurlSends();
    void formOfManyFilesArrives();

private:
    bool startNginx();
    QString makeFile(const QString &name, const QByteArray &bytes) const;

    QTemporaryDir m_dir;
    ExternalServer m_nginx;
    ExternalServer m_python;
};

namespace {

QString sha256(const QByteArray &bytes)
{
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex());
}

bool curl(const QStringList &arguments, QByteArray *output = nullptr)
{
    QProcess process;
    process.start("curl", QStringList({"--silent", "--fail", "--noproxy", "*"}) + arguments);
    const bool done = process.waitForFinished() && process.exitCode() == 0;
    if (output)
        *output = process.readAllStandardOutput();
    return done;
}

const char nginxConfiguration[] = R"(daemon off;
error_log "%DIR%/error.log";
pid "%DIR%/pid";
worker_processes 1;
events {}
http {
    access_log off;
    client_body_temp_path "%DIR%/body";
    proxy_temp_path "%DIR%/proxy";
    fastcgi_temp_path "%DIR%/fastcgi";
    uwsgi_temp_path "%DIR%/uwsgi";
    scgi_temp_path "%DIR%/scgi";
    client_max_body_size 100m;
    gzip_types text/plain;
    types { text/plain txt; application/octet-stream bin; }
    server {
        listen 127.0.0.1:%PORT%;
        root "%DIR%/www";
        location /put/ { dav_methods PUT DELETE; }
        location /gzip/ { gzip on; gzip_min_length 1; }
        location /moved/ { return 302 http://127.0.0.1:%PORT%/gzip/text.txt; }
        location /close/ { keepalive_timeout 0; }
        location /forbidden/ { return 403; }
    }
}
)";

} // namespace

void tst_NetworkRequestPeers::initTestCase()
{
    silenceForms();
    QVERIFY2(startNginx(), qPrintable(m_nginx.output()));
    QVERIFY2(m_python.start("python3", {QFINDTESTDATA("formserver.py"), "%PORT%"}),
             qPrintable(m_python.output()));
}

bool tst_NetworkRequestPeers::startNginx()
{
    const QDir dir(m_nginx.path());
    for (const char *folder : {"www/put", "www/gzip", "www/close"})
        dir.mkpath(folder);
    // nginx drops root's rights, and its worker has to reach the folder.
    for (const char *folder : {"", "www", "www/put", "www/gzip", "www/close"})
        QFile::setPermissions(dir.filePath(folder), QFile::Permissions(0x7777));
    QFile::setPermissions(QDir::homePath(), QFile::Permissions(0x7755));
    writeFile(dir.filePath("www/gzip/text.txt"), QByteArray("hello nginx ").repeated(1000));
    writeFile(dir.filePath("www/close/text.txt"), "bye");
    writeFile(dir.filePath("www/small.bin"), HttpServer::pattern(10));
    writeFile(dir.filePath("www/big.bin"), HttpServer::pattern(10000000));
    writeFile(dir.filePath("www/empty.bin"), "");
    m_nginx.writeFile("nginx.conf", nginxConfiguration);
    return m_nginx.start("nginx", {"-p", "%DIR%", "-c", "%DIR%/nginx.conf"});
}

QString tst_NetworkRequestPeers::makeFile(const QString &name, const QByteArray &bytes) const
{
    return writeFile(m_dir.filePath(name), bytes);
}

void tst_NetworkRequestPeers::nginxStoresWhatWasSent_data()
{
    QTest::addColumn<QString>("body");
    QTest::newRow("text") << "hello";
    QTest::newRow("beyond ASCII") << "aü日";
    QTest::newRow("big") << QString(3000000, 'x');
}

void tst_NetworkRequestPeers::nginxStoresWhatWasSent()
{
    QFETCH(QString, body);
    const QString stored = m_nginx.path("www/put/file");
    NetworkRequest request;
    request.open("PUT", m_nginx.url("/put/file"));
    request.send(QVariant(body));
    QVERIFY(finish(request));
    QCOMPARE(request.errorText(), QString());
    QVERIFY(readFile(stored) == body.toUtf8());

    request.open("DELETE", m_nginx.url("/put/file"));
    request.send();
    QVERIFY(finish(request));
    QCOMPARE(request.errorText(), QString());
    QVERIFY(!QFile::exists(stored));
}

void tst_NetworkRequestPeers::nginxFileArrivesAsWithCurl_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("small") << "small.bin";
    QTest::newRow("big") << "big.bin";
}

void tst_NetworkRequestPeers::nginxFileArrivesAsWithCurl()
{
    QFETCH(QString, name);
    const QString url = m_nginx.url("/" + name).toString();
    QVERIFY(curl({"-o", m_dir.filePath("curl"), url}));
    NetworkRequest request;
    request.setUrl(QUrl(url));
    request.setResponsePath(m_dir.filePath("own"));
    request.send();
    QVERIFY(finish(request));
    QVERIFY(readFile(m_dir.filePath("own")) == readFile(m_dir.filePath("curl")));
    QVERIFY(QFile::exists(m_dir.filePath("own")));
}

void tst_NetworkRequestPeers::nginxCompressesTheAnswer()
{
    NetworkRequest request;
    request.setUrl(m_nginx.url("/gzip/text.txt"));
    request.send();
    QVERIFY(finish(request));
    QCOMPARE(request.responseHeaders().value("Content-Encoding"), QVariant("gzip"));
    QCOMPARE(request.responseText(), QString("hello nginx ").repeated(1000));
}

void tst_NetworkRequestPeers::nginxRedirects()
{
    NetworkRequest request;
    request.open("POST", m_nginx.url("/moved/"));
    request.send(QVariant(QVariantMap{{"a", 1}}));
    QVERIFY(finish(request));
    QCOMPARE(request.status(), 200);
    QVERIFY(request.responseText().startsWith("hello nginx"));
}

void tst_NetworkRequestPeers::nginxErrorPages()
{
    NetworkRequest request;
    request.setUrl(m_nginx.url("/forbidden/"));
    request.send();
    QVERIFY(finish(request));
    QCOMPARE(request.statusText(), QString("403 Forbidden"));
    QVERIFY(request.responseText().contains("<center>nginx"));
}

void tst_NetworkRequestPeers::nginxClosesEachConnection()
{
    NetworkRequest request;
    request.setUrl(m_nginx.url("/close/text.txt"));
    for (int i = 0; i < 5; ++i) {
        request.send();
        QVERIFY(finish(request));
        QCOMPARE(request.response(), QVariant("bye"));
    }
}

void tst_NetworkRequestPeers::pythonReadsTheForm()
{
    const QByteArray bytes = HttpServer::pattern(500000);
    const QByteArray lines("line\r\n--line\n\r\n");
    NetworkRequest request;
    request.setResponseType("json");
    request.open("POST", m_python.url("/"));
    request.send(QVariant(
        QVariantMap{{"title", "aü日"},
                    {"number", 42},
                    {"picture", "@" + makeFile("picture.png", bytes) + ";filename=q.png"},
                    {"slice", "@" + makeFile("picture.png", bytes) + ";offset=123457;size=200000"},
                    {"lines", "@" + makeFile("lines.txt", lines) + ";type=text/x-lines"},
                    {"empty", "@" + makeFile("empty.zip", QByteArray())}}));
    QVERIFY(finish(request));
    QCOMPARE(request.errorText(), QString());

    const QVariantMap fields = request.response().toMap().value("fields").toMap();
    const auto check = [&fields](const QString &name, const QString &fileName, const QString &type,
                                 const QByteArray &content) {
        const QVariantMap field = fields.value(name).toMap();
        QCOMPARE(field.value("fileName").toString(), fileName);
        QCOMPARE(field.value("contentType").toString(), type);
        QCOMPARE(field.value("size").toInt(), content.size());
        QCOMPARE(field.value("sha256").toString(), sha256(content));
    };
    QCOMPARE(fields.size(), 6);
    check("title", QString(), QString(), "aü日");
    check("number", QString(), QString(), "42");
    check("picture", "q.png", "image/png", bytes);
    check("slice", "picture.png", "image/png", bytes.mid(123457, 200000));
    check("lines", "lines.txt", "text/x-lines", lines);
    check("empty", "empty.zip", "application/zip", QByteArray());
}

void tst_NetworkRequestPeers::pythonReadsWhatCurlSends()
{
    // The same form from both senders is the same to the server.
    const QString path = makeFile("note.txt", HttpServer::pattern(100000));
    QByteArray byCurl;
    QVERIFY(curl({"-F", "title=x", "-F", "file=@" + path + ";type=text/plain;filename=q.txt",
                  m_python.url("/").toString()},
                 &byCurl));
    NetworkRequest request;
    request.open("POST", m_python.url("/"));
    request.send(QVariant(
        QVariantMap{{"title", "x"}, {"file", "@" + path + ";type=text/plain;filename=q.txt"}}));
    QVERIFY(finish(request));
    QCOMPARE(request.responseText(), QString::fromUtf8(byCurl));
}

void tst_NetworkRequestPeers::formOfManyFilesArrives()
{
    QVariantMap body;
    for (int i = 0; i < 200; ++i) {
        const QString name = QString("file-%1").arg(i);
        body.insert(name, "@" + makeFile(name, QByteArray(i, 'x')));
    }
    NetworkRequest request;
    request.setResponseType("json");
    request.open("PUT", m_python.url("/"));
    request.send(QVariant(body));
    QVERIFY(finish(request));
    const QVariantMap fields = request.response().toMap().value("fields").toMap();
    QCOMPARE(fields.size(), 200);
    QCOMPARE(fields.value("file-199").toMap().value("size").toInt(), 199);
    QCOMPARE(request.response().toMap().value("method"), QVariant("PUT"));
}

TESSALINE_TEST_MAIN(tst_NetworkRequestPeers)
#include "tst_NetworkRequestPeers.moc"
