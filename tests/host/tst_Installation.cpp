#include "host/PlayerProcess.h"
#include "support/IsolatedHome.h"

#include <QFileInfo>
#include <QSet>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

// Installs the build into a folder of its own, and uses it as others do: runs the player from
// there, and builds a host program against it.
class tst_Installation : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void everythingIsInItsPlace_data();
    void everythingIsInItsPlace();
    void internalHeadersAreNotInstalled();
    void noFileNamesTheBuildTree();
    void metadataIsValid_data();
    void metadataIsValid();
    void anotherEngineFindsTheModule();
    void aHostProgramBuildsAndRuns();
    void thePlayerRunsWhereverThePrefixIsMoved();

private:
    bool run(const QString &program, const QStringList &arguments);

    QTemporaryDir m_dir;
    QString m_prefix;
    QByteArray m_output;
};

namespace {

QString buildDir()
{
    return QFileInfo(QString::fromLocal8Bit(qgetenv("TESSALINE_BIN_DIR"))).path();
}

} // namespace

bool tst_Installation::run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    const bool finished = process.waitForFinished(240000);
    m_output = process.readAll();
    return finished && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

void tst_Installation::initTestCase()
{
    m_prefix = m_dir.filePath(QStringLiteral("prefix"));
    QVERIFY2(run("cmake", {"--install", buildDir(), "--prefix", m_prefix}), m_output.constData());
}

void tst_Installation::everythingIsInItsPlace_data()
{
    QTest::addColumn<QString>("path");
    const char *const paths[] = {
        "bin/tessaline-player",
        "bin/tessaline-portal",
        "lib/qml/Zemrik/Tessaline/libTessaline.so",
        "lib/qml/Zemrik/Tessaline/plugins.qmltypes",
        "lib/qml/Zemrik/Tessaline/qmldir",
        "include/Tessaline/AppletsPlayer.h",
        "include/Tessaline/FileFolder.h",
        "include/Tessaline/files/FileFolder.h",
        "include/Tessaline/player/AppletsPlayer.h",
        "lib/cmake/Tessaline/TessalineConfig.cmake",
        "lib/cmake/Tessaline/TessalineConfigVersion.cmake",
        "share/applications/tessaline-player.desktop",
        "share/icons/hicolor/scalable/apps/tessaline-player.svg",
        "share/man/man1/tessaline-player.1",
        "share/man/man1/tessaline-portal.1",
        "share/metainfo/tessaline-player.metainfo.xml",
        "share/tessaline/examples/welcome/appinfo.json",
        "share/tessaline/examples/welcome/main.qml",
    };
    for (const char *path : paths)
        QTest::newRow(path) << path;
}

void tst_Installation::everythingIsInItsPlace()
{
    QFETCH(QString, path);
    const QFileInfo file(QDir(m_prefix).filePath(path));
    QVERIFY(file.isFile());
    QVERIFY(file.size() > 0);
    QVERIFY2(!file.isSymLink(), "links into the source tree");
}

void tst_Installation::internalHeadersAreNotInstalled()
{
    const QDir headers(m_prefix + QStringLiteral("/include/Tessaline"));
    QVERIFY(!headers.exists(QStringLiteral("plugin/PropertyHelper.h")));
    QVERIFY(!headers.exists(QStringLiteral("PropertyHelper.h")));
}

// The package's files have to work on other machines.
void tst_Installation::noFileNamesTheBuildTree()
{
    const QByteArray sourceDir = qgetenv("TESSALINE_SOURCE_DIR");
    QVERIFY(!sourceDir.isEmpty());
    const char *const files[] = {
        "lib/cmake/Tessaline/TessalineConfig.cmake", "lib/cmake/Tessaline/TessalineTargets.cmake",
        "lib/qml/Zemrik/Tessaline/plugins.qmltypes", "lib/qml/Zemrik/Tessaline/qmldir",
        "include/Tessaline/AppletsPlayer.h",
    };
    for (const char *path : files) {
        QFile file(QDir(m_prefix).filePath(QLatin1String(path)));
        QVERIFY2(file.open(QIODevice::ReadOnly), path);
        QVERIFY2(!file.readAll().contains(sourceDir), path);
    }
}

void tst_Installation::metadataIsValid_data()
{
    QTest::addColumn<QString>("tool");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("path");

    QTest::newRow("desktop file") << "desktop-file-validate" << QStringList{}
                                  << "share/applications/tessaline-player.desktop";
    QTest::newRow("AppStream") << "appstreamcli" << QStringList{"validate", "--no-net"}
                               << "share/metainfo/tessaline-player.metainfo.xml";
    for (const char *page : {"tessaline-player.1", "tessaline-portal.1"})
        QTest::newRow(page) << "mandoc" << QStringList{"-T", "lint", "-W", "warning"}
                            << QString("share/man/man1/") + page;
}

void tst_Installation::metadataIsValid()
{
    QFETCH(QString, tool);
    QFETCH(QStringList, options);
    QFETCH(QString, path);
    QVERIFY2(!QStandardPaths::findExecutable(tool).isEmpty(), "scripts/setup test installs it");

    QVERIFY2(run(tool, options + QStringList{QDir(m_prefix).filePath(path)}), m_output.constData());
}

void tst_Installation::anotherEngineFindsTheModule()
{
    if (!qEnvironmentVariableIsEmpty("TESSALINE_SANITIZE"))
        QSKIP("Debian's qml program can't load a library built with sanitizers.");
    const QString document = m_dir.filePath(QStringLiteral("document.qml"));
    QFile file(document);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("import QtQuick 2.15\nimport Zemrik.Tessaline 1.0\nItem {\n"
               "    Component.onCompleted: console.warn('version=' + Tessaline.version)\n"
               "    Timer { interval: 1; running: true; onTriggered: Qt.quit() }\n}\n");
    file.close();

    PlayerProcess qml({"-I", m_prefix + "/lib/qml", document}, {"QT_LOGGING_RULES=*.debug=false"},
                      QStandardPaths::findExecutable(QStringLiteral("qml")));

    QVERIFY2(qml.exitCode() == 0, qPrintable(qml.errors()));
    QCOMPARE(qml.told(QStringLiteral("version")), QStringLiteral("1.2.15"));
}

void tst_Installation::aHostProgramBuildsAndRuns()
{
    const QString source =
        QString::fromLocal8Bit(qgetenv("TESSALINE_SOURCE_DIR")) + "/tests/host/outside";
    const QString build = m_dir.filePath(QStringLiteral("outside"));
    const QString flags = qEnvironmentVariableIsEmpty("TESSALINE_SANITIZE")
                              ? QString()
                              : "-fsanitize=" + qEnvironmentVariable("TESSALINE_SANITIZE");

    QVERIFY2(run("cmake", {"-G", "Ninja", "-S", source, "-B", build,
                           "-DCMAKE_PREFIX_PATH=" + m_prefix, "-DCMAKE_CXX_FLAGS=" + flags}),
             m_output.constData());
    QVERIFY2(run("cmake", {"--build", build}), m_output.constData());

    PlayerProcess host({}, {}, build + "/outside-host");
    QVERIFY2(host.exitCode() == 0, qPrintable(host.errors()));
    QCOMPARE(host.told(QStringLiteral("version")), QStringLiteral("1.2.15"));
}

void tst_Installation::thePlayerRunsWhereverThePrefixIsMoved()
{
    const QString moved = m_dir.filePath(QStringLiteral("moved"));
    QVERIFY(QDir().rename(m_prefix, moved));

    PlayerProcess player({}, {QStringLiteral("QT_LOGGING_RULES=Zemrik.*.debug=true")},
                         moved + "/bin/tessaline-player");
    QTRY_VERIFY2_WITH_TIMEOUT(player.errors().contains(QStringLiteral("exitCode= 0")),
                              qPrintable(player.errors()), 20000);

    QVERIFY2(player.errors().contains("Applet source: QUrl(\"file://" + moved
                                      + "/share/tessaline/examples/welcome/main.qml\")"),
             qPrintable(player.errors()));
    QVERIFY2(!player.errors().contains(QStringLiteral("Text:")), qPrintable(player.errors()));
    QFile maps(QStringLiteral("/proc/%1/maps").arg(player.processId()));
    QVERIFY(maps.open(QIODevice::ReadOnly));
    QSet<QByteArray> libraries;
    const QList<QByteArray> lines = maps.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.contains("libTessaline"))
            libraries.insert(line.mid(line.indexOf('/')));
    }
    QCOMPARE(libraries,
             QSet<QByteArray>{moved.toLocal8Bit() + "/lib/qml/Zemrik/Tessaline/libTessaline.so"});
}

TESSALINE_TEST_MAIN(tst_Installation)
#include "tst_Installation.moc"
