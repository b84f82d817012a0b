#include "catalogue/AppFolder.h"
#include "catalogue/AppInfoList.h"
#include "catalogue/AppPackage.h"
#include "plugin/TessalineError.h"
#include "support/DevelopmentPortal.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"

#include <QElapsedTimer>
#include <QJsonDocument>

#include <cstdio>
#include <random>

// A portal without a QML engine: native classes know it by its class name.
class Portal_Fixed : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString url MEMBER m_url)
    Q_PROPERTY(QString token MEMBER m_token)
    Q_PROPERTY(bool signedIn MEMBER m_signedIn)

public:
    explicit Portal_Fixed(const QString &url)
        : m_url(url)
    {
    }

    QString m_url;
    QString m_token;
    bool m_signedIn = false;
};

// The process is killed in the middle of a download, fifty times: what lies on the disk then must
// not keep the catalogue from opening or the next download from succeeding.
class tst_KilledDownload : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void anyMomentMayBeTheLast();

private:
    QByteArray startDownload(QProcess &process);
    void checkCatalogue();
    void checkNextDownload();

    DevelopmentPortal m_server;
    QByteArray m_content;
};

namespace {

const int fileCount = 20;
const int killCount = 50;
const QStringList otherFiles{"appinfo.json", "iteminfo.json", ".info.json"};

QByteArray otherJson(const QString &name)
{
    return "{\"id\": \"other\", \"title\": \"Another app\", \"pinned\": true, \"file\": \""
           + name.toUtf8() + "\"}";
}

QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// True when the download and its dependency are through.
bool download(const QString &url)
{
    Portal_Fixed portal(url);
    AppPackage package;
    package._setPortal(&portal);
    AppInfo found(QVariantMap{{"id", "app"}}, nullptr);
    package._setAppInfo(&found);
    package.download();
    return QTest::qWaitFor([&package] { return package.status() == ItemPackage::Ready; }, 20000);
}

} // namespace

void tst_KilledDownload::initTestCase()
{
    std::mt19937 random(4711);
    m_content.resize(20000); // doesn't pack well: a download of some size
    for (char &byte : m_content)
        byte = static_cast<char>(random());
    QMap<QString, QByteArray> files{{"data/appinfo.json", "{\"dependencies\": [\"tiles\"]}"},
                                    {"thumbnail.png", "picture"}};
    for (int i = 0; i < fileCount; ++i)
        files.insert(QString("data/folder%1/file%2.bin").arg(i % 5).arg(i), m_content);
    m_server.addItem("app", {{"title", "The app"}}, files);
    m_server.addItem("tiles", {{"type", "Tile Package"}, {"name", "t.tpk"}},
                     {{"t.tpk", m_content}});
    QVERIFY2(m_server.start({"--quiet"}), qPrintable(m_server.output()));

    QVERIFY(QDir().mkpath(home("Apps/other")));
    for (const QString &name : otherFiles) {
        QFile file(home("Apps/other/" + name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(otherJson(name)), otherJson(name).size());
    }
}

// This program once more, as a download of its own process. It tells when it begins.
QByteArray tst_KilledDownload::startDownload(QProcess &process)
{
    process.start(QCoreApplication::applicationFilePath(), {"--download", m_server.url()});
    QByteArray output;
    while (!output.contains("begins") && process.waitForReadyRead(20000))
        output += process.readAllStandardOutput();
    return output;
}

void tst_KilledDownload::checkCatalogue()
{
    for (const QString &name : otherFiles)
        QCOMPARE(read(home("Apps/other/" + name)), otherJson(name));
    AppInfoList list;
    list.refresh();
    AppInfo *other = list.findById("other");
    QVERIFY(other && other->title() == "Another app" && other->pinned());
    QQmlListProperty<AppInfo> apps = list.apps();
    for (int i = 0; i < apps.count(&apps); ++i)
        delete apps.at(&apps, i); // the list doesn't own them
}

void tst_KilledDownload::checkNextDownload()
{
    QVERIFY(download(m_server.url()));
    for (int i = 0; i < fileCount; ++i)
        QCOMPARE(read(home(QString("Apps/app/folder%1/file%2.bin").arg(i % 5).arg(i))), m_content);
    QVERIFY(QJsonDocument::fromJson(read(home("Apps/app/iteminfo.json"))).isObject());
    QCOMPARE(read(home("Apps/app/thumbnail.png")), QByteArray("picture"));
    QCOMPARE(read(home("Data/tiles/t.tpk")), m_content);
    QVERIFY(QDir(home(".cache/packages")).isEmpty());
}

void tst_KilledDownload::anyMomentMayBeTheLast()
{
    LogCapture log; // of fifty whole downloads
    QProcess whole;
    QElapsedTimer timer;
    QVERIFY(startDownload(whole).contains("begins"));
    timer.start();
    QVERIFY(whole.waitForFinished(20000));
    QCOMPARE(whole.exitCode(), 0);
    const int duration = static_cast<int>(timer.elapsed());

    std::mt19937 random(20);
    std::uniform_int_distribution<int> moments(0, qMax(duration, 10));
    int underWay = 0;
    for (int i = 0; i < killCount; ++i) {
        // From nothing, over a whole one, and over what the last one left.
        if (i % 3 == 0)
            QDir(home("Apps/app")).removeRecursively();
        if (i % 3 != 1)
            QDir(home("Data/tiles")).removeRecursively();
        QProcess process;
        QVERIFY(startDownload(process).contains("begins"));
        process.waitForFinished(moments(random));
        process.kill();
        process.waitForFinished();
        underWay += process.exitStatus() == QProcess::CrashExit ? 1 : 0;
        checkCatalogue();
        if (i % 4 != 1)
            checkNextDownload();
        if (QTest::currentTestFailed())
            QFAIL(qPrintable(QString("after kill %1").arg(i)));
    }
    QVERIFY2(underWay >= killCount / 3, qPrintable(QString::number(underWay)));
}

int main(int argc, char **argv)
{
    if (argc != 3 || qstrcmp(argv[1], "--download") != 0)
        return runIsolatedTest<tst_KilledDownload>(argc, argv);
    QGuiApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Zemrik Tests"));
    QCoreApplication::setApplicationName(QStringLiteral("tst_KilledDownload"));
    std::puts("begins");
    std::fflush(stdout);
    return download(QString::fromLocal8Bit(argv[2])) ? 0 : 1;
}

#include "tst_KilledDownload.moc"
