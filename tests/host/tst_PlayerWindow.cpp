#include "host/PlayerProcess.h"
#include "player/PlayerFixture.h"
#include "support/IsolatedHome.h"

#include <QGuiApplication>
#include <QScreen>
#include <QStandardPaths>
#include <QTest>

// The player's window as an X server has it: what it asks a window manager for, and what it draws.
class tst_PlayerWindow : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void theWindowAsksForItsState_data();
    void theWindowAsksForItsState();
    void settingsStandInForOptions();
    void theTitleIsTheProgramsName();
    void theMinimumSizeComesFromTheMetadata_data();
    void theMinimumSizeComesFromTheMetadata();
    void theAppletIsDrawn();
    void anAppletWithoutAColourIsWhite();
    void quitTakesTheWindowAway();
};

namespace {

const QByteArray redApplet = "import QtQuick 2.15\n"
                             "Rectangle { width: 300; height: 200; color: '#ff0000' }\n";

QString output(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished();
    return QString::fromLocal8Bit(process.readAllStandardOutput());
}

// The player's X window, as "0x..."; empty if there is none.
QString windowId()
{
    const QString tree = output(QStringLiteral("xwininfo"), {"-root", "-tree"});
    const QRegularExpression line(
        QStringLiteral("(0x[0-9a-f]+) \"Tessaline Player\": \\(\"tessaline-player\""));
    return line.match(tree).captured(1);
}

// All properties of the player's window, its hints spelled out.
QString windowProperties()
{
    return output(QStringLiteral("xprop"), {"-id", windowId()});
}

QImage grabWindow()
{
    return QGuiApplication::primaryScreen()
        ->grabWindow(windowId().toULongLong(nullptr, 16))
        .toImage();
}

bool isMapped()
{
    const QString id = windowId();
    return !id.isEmpty()
           && output(QStringLiteral("xwininfo"), {"-id", id})
                  .contains(QStringLiteral("IsViewable"));
}

} // namespace

void tst_PlayerWindow::initTestCase()
{
    for (const char *program : {"xprop", "xwininfo"})
        QVERIFY2(!QStandardPaths::findExecutable(QLatin1String(program)).isEmpty(), program);
}

void tst_PlayerWindow::theWindowAsksForItsState_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QStringList>("asked");
    QTest::addColumn<QStringList>("notAsked");

    const QString fullscreen = QStringLiteral("_NET_WM_STATE_FULLSCREEN");
    const QString maximized = QStringLiteral("_NET_WM_STATE_MAXIMIZED_VERT");
    const QString minimized = QStringLiteral("Initial state is Iconic State");
    // Flags, functions and decorations: a window without a frame has a 0 in the third place.
    const QString framed = QStringLiteral("_MOTIF_WM_HINTS(_MOTIF_WM_HINTS) = 0x3, 0x3e, 0x7e,");
    const QString frameless = QStringLiteral("_MOTIF_WM_HINTS(_MOTIF_WM_HINTS) = 0x2, 0x1, 0x0,");

    QTest::newRow("nothing") << QStringList{} << QStringList{framed}
                             << QStringList{fullscreen, maximized, minimized};
    QTest::newRow("normal") << QStringList{"--show", "normal"} << QStringList{framed}
                            << QStringList{fullscreen, maximized, minimized};
    QTest::newRow("maximized") << QStringList{"--show", "maximized"}
                               << QStringList{framed, maximized}
                               << QStringList{fullscreen, minimized};
    QTest::newRow("minimized") << QStringList{"--show", "minimized"}
                               << QStringList{framed, minimized}
                               << QStringList{fullscreen, maximized};
    QTest::newRow("fullscreen") << QStringList{"--show", "FullScreen"} << QStringList{fullscreen}
                                << QStringList{maximized, minimized, frameless};
    QTest::newRow("frameless") << QStringList{"--frameless"} << QStringList{frameless}
                               << QStringList{fullscreen, maximized, minimized};
    QTest::newRow("frameless and fullscreen")
        << QStringList{"--frameless", "--show", "fullscreen"} << QStringList{frameless, fullscreen}
        << QStringList{maximized, minimized};
}

void tst_PlayerWindow::theWindowAsksForItsState()
{
    QFETCH(QStringList, arguments);
    QFETCH(QStringList, asked);
    QFETCH(QStringList, notAsked);
    const AppletFolder applet(redApplet);
    PlayerProcess player(arguments + QStringList{applet.path()});

    QTRY_VERIFY2(isMapped(), qPrintable(player.errors()));

    const QString properties = windowProperties();
    for (const QString &words : asked)
        QVERIFY2(properties.contains(words), qPrintable(properties));
    for (const QString &words : notAsked)
        QVERIFY2(!properties.contains(words), qPrintable(words + "\n" + properties));
}

void tst_PlayerWindow::settingsStandInForOptions()
{
    QSettings store(QStringLiteral("Zemrik"), QStringLiteral("Tessaline Player"));
    store.setValue(QStringLiteral("frameless"), true);
    store.setValue(QStringLiteral("show"), QStringLiteral("fullscreen"));
    store.sync();
    const AppletFolder applet(redApplet);
    PlayerProcess player({QStringLiteral("--show="), applet.path()});

    QTRY_VERIFY2(isMapped(), qPrintable(player.errors()));
    const QString properties = windowProperties();
    store.clear();
    store.sync();

    QVERIFY2(properties.contains(QStringLiteral("_NET_WM_STATE_FULLSCREEN")),
             qPrintable(properties));
    QVERIFY2(
        properties.contains(QStringLiteral("_MOTIF_WM_HINTS(_MOTIF_WM_HINTS) = 0x2, 0x1, 0x0")),
        qPrintable(properties));
}

void tst_PlayerWindow::theTitleIsTheProgramsName()
{
    const AppletFolder applet(redApplet);
    PlayerProcess player({applet.path()});

    QTRY_VERIFY2(isMapped(), qPrintable(player.errors()));

    const QString properties = windowProperties();
    QVERIFY2(
        properties.contains(QStringLiteral("_NET_WM_NAME(UTF8_STRING) = \"Tessaline Player\"")),
        qPrintable(properties));
    QVERIFY2(!properties.contains(QStringLiteral("_NET_WM_ICON(")), qPrintable(properties));
}

void tst_PlayerWindow::theMinimumSizeComesFromTheMetadata_data()
{
    QTest::addColumn<QByteArray>("desktop");
    QTest::addColumn<QString>("hint");
    QTest::newRow("both") << QByteArray("{ \"minimumWidth\": 640, \"minimumHeight\": 480 }")
                          << "program specified minimum size: 640 by 480";
    QTest::newRow("width only") << QByteArray("{ \"minimumWidth\": 640 }")
                                << "program specified minimum size: 640 by 0";
    QTest::newRow("none") << QByteArray("{}") << "";
}

void tst_PlayerWindow::theMinimumSizeComesFromTheMetadata()
{
    QFETCH(QByteArray, desktop);
    QFETCH(QString, hint);
    const AppletFolder applet(redApplet, "{ \"display\": { \"desktop\": " + desktop + " } }");
    PlayerProcess player({applet.path()});

    QTRY_VERIFY2(isMapped(), qPrintable(player.errors()));

    const QString properties = windowProperties();
    if (hint.isEmpty())
        QVERIFY2(!properties.contains(QStringLiteral("minimum size: 640")), qPrintable(properties));
    else
        QVERIFY2(properties.contains(hint), qPrintable(properties));
}

void tst_PlayerWindow::theAppletIsDrawn()
{
    const AppletFolder applet(redApplet);
    PlayerProcess player({applet.path()});

    QTRY_VERIFY2(isMapped(), qPrintable(player.errors()));

    QTRY_COMPARE(grabWindow().pixelColor(150, 100), QColor(Qt::red));
    QCOMPARE(grabWindow().size(), QSize(300, 200));
}

void tst_PlayerWindow::anAppletWithoutAColourIsWhite()
{
    const AppletFolder applet("import QtQuick 2.15\nimport Zemrik.Tessaline 1.0\n"
                              "App {\n    width: 300; height: 200\n"
                              "    Rectangle { width: 100; height: 100; color: '#0000ff' }\n}\n");
    PlayerProcess player({applet.path()});

    QTRY_VERIFY2(isMapped(), qPrintable(player.errors()));

    QTRY_COMPARE(grabWindow().pixelColor(50, 50), QColor(Qt::blue));
    QCOMPARE(grabWindow().pixelColor(250, 150), QColor(Qt::white));
}

void tst_PlayerWindow::quitTakesTheWindowAway()
{
    const AppletFolder applet("import QtQuick 2.15\n"
                              "Rectangle {\n    width: 300; height: 200; color: '#ff0000'\n"
                              "    Timer { interval: 300; running: true; onTriggered: Qt.quit() }\n"
                              "}\n");
    // Under the leak checker: Mesa's driver is unloaded with blocks of its own still allocated, and
    // what belongs to no library any more can't be suppressed. Runs without it are checked off
    // screen.
    PlayerProcess player({applet.path()}, {"ASAN_OPTIONS=" + qEnvironmentVariable("ASAN_OPTIONS")
                                           + ":detect_leaks=0"});

    QTRY_VERIFY2(isMapped(), qPrintable(player.errors()));

    QVERIFY2(player.exitCode() == 0, qPrintable(player.errors()));
    QVERIFY(windowId().isEmpty());
}

TESSALINE_TEST_MAIN(tst_PlayerWindow)
#include "tst_PlayerWindow.moc"
