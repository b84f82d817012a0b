#include "examples/ExampleWindow.h"
#include "support/DevelopmentPortal.h"
#include "support/IsolatedHome.h"

#include <QDir>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

// The launcher showing itself in the real player, as scripts/run has it where there is no display.
class tst_LauncherTour : public QObject
{
    Q_OBJECT

private slots:
    void signsInDownloadsAndStartsAnApp();
};

void tst_LauncherTour::signsInDownloadsAndStartsAnApp()
{
    const QString source = qEnvironmentVariable("TESSALINE_SOURCE_DIR");
    DevelopmentPortal portal;
    QVERIFY2(portal.start({"--items", source + "/examples/items"}), qPrintable(portal.output()));
    QTemporaryDir pictures;

    QProcess player;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("LAUNCHER_PORTAL", portal.url());
    environment.insert("LAUNCHER_USER", "demo");
    environment.insert("LAUNCHER_PASSWORD", "demo");
    environment.insert("LAUNCHER_TOUR", pictures.path());
    // The player lets go of the OpenGL driver before the leaks are looked for: what the driver
    // keeps could not be told apart.
    environment.insert("ASAN_OPTIONS", qEnvironmentVariable("ASAN_OPTIONS") + ":detect_leaks=0");
    player.setProcessEnvironment(environment);
    player.setProcessChannelMode(QProcess::MergedChannels);
    player.start(qEnvironmentVariable("TESSALINE_BIN_DIR") + "/tessaline-player",
                 {source + "/examples/launcher"});
    const bool ended = player.waitForFinished(150000);
    const QByteArray output = player.readAll();
    QVERIFY2(ended, output.constData());
    QVERIFY2(output.contains("qml: tour: done\n"), output.constData());
    QVERIFY2(player.exitCode() == 0, output.constData());

    const QDir folder(pictures.path());
    const QStringList names = folder.entryList({"launcher-*.png"}, QDir::Files, QDir::Name);
    QCOMPARE(names.size(), 8);
    for (const QString &name : names) {
        const QImage picture(folder.filePath(name));
        QVERIFY2(ExampleWindow::colorCount(picture) > 50, qPrintable(name));
    }
    QVERIFY(QFile::exists(QDir::homePath() + "/Zemrik/Halvora/Apps/tide-table/main.qml"));
}

TESSALINE_INPUT_TEST_MAIN(tst_LauncherTour)
#include "tst_LauncherTour.moc"
