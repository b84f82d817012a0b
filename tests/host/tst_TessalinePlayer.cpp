#include "host/PlayerProcess.h"
#include "player/PlayerFixture.h"
#include "support/IsolatedHome.h"

#include <QLibraryInfo>
#include <QSet>
#include <QTest>

class tst_TessalinePlayer : public QObject
{
    Q_OBJECT

private slots:
    void aMissingFolderIsTheLastThingSaid();
    void aMissingFolderIsNotReplacedByTheDefaultApplet();
    void wrongOptionsEndTheProgram_data();
    void wrongOptionsEndTheProgram();

    void quitEndsTheProgram();
    void quitWhileLoadingEndsTheProgram();
    void closingTheWindowEndsTheProgram();
    void aFolderWithoutAnAppletShowsAnEmptyWindow();
    void anAppletWithoutAMainDocumentIsSaid_data();
    void anAppletWithoutAMainDocumentIsSaid();
    void aBrokenDocumentKeepsTheProgramRunning();
    void theDefaultAppletIsPlayedWithoutAnArgument();
    void theFirstArgumentIsPlayed();
    void anArgumentIsThePathItIs_data();
    void anArgumentIsThePathItIs();

    void theStoreHasTheProgramsName();
    void theHomeOptionIsApplied_data();
    void theHomeOptionIsApplied();
    void withoutTheHomeOptionTheHomeIsTheUsers();
    void documentsReachThePlayer();
    void importPathsAreAdded();
    void theModuleIsFoundFromAnywhere();
    void theSubModulesAreReachable();
    void onlyOneCopyOfTheLibraryIsLoaded();

    void theApplicationRunsAsItsLanguageIsWritten_data();
    void theApplicationRunsAsItsLanguageIsWritten();
    void debugOutputIsOffUnlessRulesTurnItOn_data();
    void debugOutputIsOffUnlessRulesTurnItOn();
    void whatAnAppletStoresAtItsEndReachesTheDisk();
};

namespace {

// An applet that runs the script when it is complete, and leaves once it has been drawn.
QByteArray telling(const QByteArray &script, const QByteArray &imports = QByteArray())
{
    return "import QtQuick 2.15\nimport QtQuick.Window 2.15\nimport Zemrik.Tessaline 1.0\n"
           + imports + "App {\n    id: app\n    width: 100; height: 100\n"
           + "    Component.onCompleted: {\n" + script + "\n    }\n"
           + "    Connections {\n        target: app.Window.window\n"
           + "        function onFrameSwapped() { Qt.quit() }\n    }\n}\n";
}

// One that tells where its document lies and leaves.
QByteArray tellingItsPlace()
{
    return telling("console.warn('played=' + Qt.resolvedUrl('.'));"
                   "console.warn('folder=' + app.folder.path)");
}

// The files that a process has mapped and whose name holds the words.
QSet<QString> mappedFiles(qint64 processId, const QString &words)
{
    QFile file(QStringLiteral("/proc/%1/maps").arg(processId));
    QSet<QString> files;
    if (!file.open(QIODevice::ReadOnly))
        return files;
    const QStringList lines = QString::fromLocal8Bit(file.readAll()).split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        const QString path = line.mid(line.indexOf(QLatin1Char('/')));
        if (line.contains(QLatin1Char('/')) && path.contains(words))
            files.insert(path);
    }
    return files;
}

} // namespace

void tst_TessalinePlayer::aMissingFolderIsTheLastThingSaid()
{
    PlayerProcess player({QStringLiteral("/no/such/folder")});

    QCOMPARE(player.exitCode(), 255);
    QVERIFY2(
        player.lastErrorLine().contains(QStringLiteral("Start path not found \"/no/such/folder\"")),
        qPrintable(player.errors()));
}

void tst_TessalinePlayer::aMissingFolderIsNotReplacedByTheDefaultApplet()
{
    PlayerProcess player({QString()}); // an argument, though an empty one

    QCOMPARE(player.exitCode(), 255);
    QVERIFY(player.lastErrorLine().contains(QStringLiteral("Start path not found \"\"")));
}

void tst_TessalinePlayer::wrongOptionsEndTheProgram_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("message");
    QTest::newRow("unknown") << QStringList{"--bogus"} << "Unknown option 'bogus'.";
    QTest::newRow("help") << QStringList{"--help"} << "Unknown option 'help'.";
    QTest::newRow("no value") << QStringList{"--show"} << "Missing value after '--show'.";
    QTest::newRow("value too much")
        << QStringList{"--frameless=yes"} << "Unexpected value after '--frameless'.";
}

void tst_TessalinePlayer::wrongOptionsEndTheProgram()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, message);
    PlayerProcess player(arguments);

    QCOMPARE(player.exitCode(), 1);
    QVERIFY2(player.errors().contains(message), qPrintable(player.errors()));
}

void tst_TessalinePlayer::quitEndsTheProgram()
{
    const AppletFolder applet(telling("console.warn('version=' + Tessaline.version)"));
    PlayerProcess player({applet.path()});

    QCOMPARE(player.exitCode(), 0);
    QCOMPARE(player.told(QStringLiteral("version")), QStringLiteral("1.2.15"));
}

void tst_TessalinePlayer::quitWhileLoadingEndsTheProgram()
{
    const AppletFolder applet("import QtQuick 2.15\nimport Zemrik.Tessaline 1.0\n"
                              "App { Component.onCompleted: { console.warn('at=the end'); "
                              "Qt.quit() } }\n");
    PlayerProcess player({applet.path()});

    QCOMPARE(player.exitCode(), 0);
    QCOMPARE(player.told(QStringLiteral("at")), QStringLiteral("the end"));
}

void tst_TessalinePlayer::closingTheWindowEndsTheProgram()
{
    const AppletFolder applet("import QtQuick 2.15\nimport QtQuick.Window 2.15\n"
                              "Item {\n    id: root\n"
                              "    Timer { interval: 1; running: root.Window.active\n"
                              "        onTriggered: root.Window.window.close() }\n}\n");
    PlayerProcess player({applet.path()});

    QCOMPARE(player.exitCode(), 0);
}

void tst_TessalinePlayer::aFolderWithoutAnAppletShowsAnEmptyWindow()
{
    const QTemporaryDir folder;
    PlayerProcess player({folder.path()}, {QStringLiteral("QT_LOGGING_RULES=Zemrik.*.debug=true")});

    QTRY_VERIFY2(player.errors().contains(QStringLiteral("exitCode= 0")),
                 qPrintable(player.errors()));
    QVERIFY2(player.errors().contains(QStringLiteral("No applet in %1\n").arg(folder.path())),
             qPrintable(player.errors()));
    QVERIFY(player.isRunning());
}

void tst_TessalinePlayer::anAppletWithoutAMainDocumentIsSaid_data()
{
    QTest::addColumn<QByteArray>("appInfo");
    QTest::newRow("empty") << QByteArray("{ \"mainFile\": \"\" }");
    QTest::newRow("no text") << QByteArray("{ \"mainFile\": {} }");
}

void tst_TessalinePlayer::anAppletWithoutAMainDocumentIsSaid()
{
    QFETCH(QByteArray, appInfo);
    const AppletFolder applet("import QtQuick 2.15\nItem {}\n", appInfo);
    PlayerProcess player({applet.path()});

    QTRY_VERIFY2(
        player.errors().contains(
            QStringLiteral("No main document is named by the applet in %1\n").arg(applet.path())),
        qPrintable(player.errors()));
    QVERIFY(player.isRunning());
}

void tst_TessalinePlayer::aBrokenDocumentKeepsTheProgramRunning()
{
    const AppletFolder applet("import QtQuick 2.15\nNoSuchType {}\n");
    PlayerProcess player({applet.path()}, {QStringLiteral("QT_LOGGING_RULES=Zemrik.*.debug=true")});

    QTRY_VERIFY2(player.errors().contains(QStringLiteral("exitCode= 0")),
                 qPrintable(player.errors()));
    QVERIFY(player.errors().contains(QStringLiteral("NoSuchType is not a type")));
    QVERIFY(player.isRunning());
}

void tst_TessalinePlayer::theDefaultAppletIsPlayedWithoutAnArgument()
{
    PlayerProcess player({}, {QStringLiteral("QT_LOGGING_RULES=Zemrik.*.debug=true")});
    const QString folder = QDir::cleanPath(QString::fromLocal8Bit(qgetenv("TESSALINE_BIN_DIR"))
                                           + QStringLiteral("/../examples/welcome"));

    QTRY_VERIFY2(player.errors().contains(QStringLiteral("exitCode= 0")),
                 qPrintable(player.errors()));
    QVERIFY2(player.errors().contains(
                 QStringLiteral("Applet source: QUrl(\"file://%1/main.qml\")").arg(folder)),
             qPrintable(player.errors()));
    QVERIFY2(!player.errors().contains(QStringLiteral("Text:")), qPrintable(player.errors()));
}

void tst_TessalinePlayer::theFirstArgumentIsPlayed()
{
    const AppletFolder first(telling("console.warn('played=first')"));
    const AppletFolder second(telling("console.warn('played=second')"));
    PlayerProcess player({first.path(), second.path()});

    QCOMPARE(player.exitCode(), 0);
    QCOMPARE(player.told(QStringLiteral("played")), QStringLiteral("first"));
}

void tst_TessalinePlayer::anArgumentIsThePathItIs_data()
{
    QTest::addColumn<QString>("argument");
    QTest::addColumn<QString>("name"); // of the folder below the working directory
    QTest::newRow("name") << "app"
                          << "app";
    QTest::newRow("with a step") << "./app/"
                                 << "app";
    QTest::newRow("up and down") << "app/../other"
                                 << "other";
    QTest::newRow("this folder") << "."
                                 << "";
    QTest::newRow("like the home") << "~"
                                   << "~";
    QTest::newRow("like a variable") << "$HOME"
                                     << "$HOME";
    QTest::newRow("like a variable, deeper") << "$HOME/app"
                                             << "$HOME/app";
    QTest::newRow("like a URL") << "a:b"
                                << "a:b";
    QTest::newRow("like a resource") << ":x"
                                     << ":x";
    QTest::newRow("like a resource's URL") << "qrc:"
                                           << "qrc:";
}

// The shell has resolved what its user meant: the rest is the name of a folder.
void tst_TessalinePlayer::anArgumentIsThePathItIs()
{
    QFETCH(QString, argument);
    QFETCH(QString, name);
    AppletFolder folder;
    folder.write(QStringLiteral("app/main.qml"), tellingItsPlace()); // for the step up
    const QString place = QStringLiteral("./") + name; // ":x" alone is taken as a resource
    folder.write(place + QStringLiteral("/main.qml"), tellingItsPlace());
    folder.write(place + QStringLiteral("/appinfo.json"), "{}");
    const QString expected =
        name.isEmpty() ? folder.path() : folder.path() + QLatin1Char('/') + name;

    PlayerProcess player({argument}, {}, PlayerProcess::builtProgram(), folder.path());

    QCOMPARE(player.exitCode(), 0);
    QCOMPARE(QDir::cleanPath(QUrl(player.told(QStringLiteral("played"))).toLocalFile()), expected);
    QCOMPARE(QDir::cleanPath(player.told(QStringLiteral("folder"))), expected);
}

void tst_TessalinePlayer::theStoreHasTheProgramsName()
{
    const AppletFolder applet(telling("console.warn('organization=' + Qt.application.organization);"
                                      "console.warn('name=' + Qt.application.name);"
                                      "console.warn('path=' + Tessaline.player.settings.path)"));
    PlayerProcess player({applet.path()});

    QCOMPARE(player.exitCode(), 0);
    QCOMPARE(player.told(QStringLiteral("organization")), QStringLiteral("Zemrik"));
    QCOMPARE(player.told(QStringLiteral("name")), QStringLiteral("Tessaline Player"));
    QCOMPARE(player.told(QStringLiteral("path")),
             QDir::homePath() + QStringLiteral("/.config/Zemrik/Tessaline Player.conf"));
}

void tst_TessalinePlayer::theHomeOptionIsApplied_data()
{
    QTest::addColumn<QString>("option");
    QTest::addColumn<QString>("home"); // %1 is the working directory, %2 the user's home
    QTest::newRow("absolute") << "/no/such/home"
                              << "/no/such/home";
    QTest::newRow("relative") << "h"
                              << "%1/h";
    QTest::newRow("relative, with steps") << "./a/h/"
                                          << "%1/a/h";
    QTest::newRow("below the home") << "~/h"
                                    << "%2/h";
    QTest::newRow("the home itself") << "~"
                                     << "%2";
    QTest::newRow("with a variable") << "$FOLDER/h"
                                     << "/from/the/environment/h";
    QTest::newRow("like a resource") << ":h"
                                     << "%1/:h";
}

void tst_TessalinePlayer::theHomeOptionIsApplied()
{
    QFETCH(QString, option);
    QFETCH(QString, home);
    const QTemporaryDir folder;
    home.replace(QStringLiteral("%1"), folder.path()).replace("%2", QDir::homePath());
    const AppletFolder applet(telling("console.warn('home=' + Tessaline.userHomePath);"
                                      "console.warn('path=' + Tessaline.resolvedPath('~/x'))"));
    PlayerProcess player({QStringLiteral("--home"), option, applet.path()},
                         {QStringLiteral("FOLDER=/from/the/environment")},
                         PlayerProcess::builtProgram(), folder.path());

    QCOMPARE(player.exitCode(), 0);
    QCOMPARE(player.told(QStringLiteral("home")), home);
    QCOMPARE(player.told(QStringLiteral("path")), home + QStringLiteral("/x"));
}

void tst_TessalinePlayer::withoutTheHomeOptionTheHomeIsTheUsers()
{
    const AppletFolder applet(telling("console.warn('home=' + Tessaline.userHomePath)"));
    PlayerProcess player({applet.path()});

    QCOMPARE(player.exitCode(), 0);
    QCOMPARE(player.told(QStringLiteral("home")), QDir::homePath());
}

void tst_TessalinePlayer::documentsReachThePlayer()
{
    const AppletFolder applet(
        telling("console.warn('same=' + (Tessaline.player === player));"
                "console.warn('type=' + Tessaline.instanceOf(player, 'AppletsPlayer'));"
                "console.warn('url=' + player.settings.portalUrl)"));
    PlayerProcess player({applet.path()});

    QCOMPARE(player.exitCode(), 0);
    QCOMPARE(player.told(QStringLiteral("same")), QStringLiteral("true"));
    QCOMPARE(player.told(QStringLiteral("type")), QStringLiteral("true"));
    QCOMPARE(player.told(QStringLiteral("url")), QStringLiteral("http://portal.zemrik.example"));
}

void tst_TessalinePlayer::importPathsAreAdded()
{
    AppletFolder modules;
    modules.write("one/One/qmldir", "module One\nA 1.0 A.qml\n");
    modules.write("one/One/A.qml", "import QtQuick 2.15\nItem { property string name: 'A' }\n");
    modules.write("two/Two/qmldir", "module Two\nB 1.0 B.qml\n");
    modules.write("two/Two/B.qml", "import QtQuick 2.15\nItem { property string name: 'B' }\n");
    AppletFolder applet("import QtQuick 2.15\nimport One 1.0\nimport Two 1.0\n"
                        "Item {\n    A { id: a }\n    B { id: b }\n"
                        "    Component.onCompleted: console.warn('names=' + a.name + b.name)\n"
                        "    Timer { interval: 1; running: true; onTriggered: Qt.quit() }\n}\n");
    // The second one relative to the working directory, which is the root.
    PlayerProcess player({QStringLiteral("--import"), modules.filePath("one"),
                          QStringLiteral("--import"), modules.filePath("two").mid(1),
                          applet.path()});

    QCOMPARE(player.exitCode(), 0);
    QCOMPARE(player.told(QStringLiteral("names")), QStringLiteral("AB"));
}

// The working directory of these processes is the root, and no variable names the module's place.
void tst_TessalinePlayer::theModuleIsFoundFromAnywhere()
{
    const AppletFolder applet(telling("console.warn('first=' + Tessaline.importPathList[0])"));
    PlayerProcess player({QStringLiteral("--import"), QDir::tempPath(), applet.path()});

    QCOMPARE(player.exitCode(), 0);
    QCOMPARE(player.told(QStringLiteral("first")),
             QString::fromLocal8Bit(qgetenv("TESSALINE_QML_IMPORT_DIR")));
}

void tst_TessalinePlayer::theSubModulesAreReachable()
{
    const AppletFolder applet(telling("console.warn('paths=' + Tessaline.importPathList)"));
    PlayerProcess player({applet.path()});

    QCOMPARE(player.exitCode(), 0);
    QVERIFY(player.told(QStringLiteral("paths")).split(QLatin1Char(',')).contains("qrc:/imports"));
}

void tst_TessalinePlayer::onlyOneCopyOfTheLibraryIsLoaded()
{
    const AppletFolder applet("import QtQuick 2.15\nimport Zemrik.Tessaline 1.0\n"
                              "App { Component.onCompleted: console.warn('version=' + "
                              "Tessaline.version) }\n");
    PlayerProcess player({applet.path()});
    QTRY_VERIFY2(!player.told(QStringLiteral("version")).isNull(), qPrintable(player.errors()));

    QCOMPARE(mappedFiles(player.processId(), QStringLiteral("libTessaline")),
             QSet<QString>{QString::fromLocal8Bit(qgetenv("TESSALINE_QML_IMPORT_DIR"))
                           + QStringLiteral("/Zemrik/Tessaline/libTessaline.so")});
}

void tst_TessalinePlayer::theApplicationRunsAsItsLanguageIsWritten_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<bool>("fromTheRight");
    QTest::newRow("English") << "en" << false;
    QTest::newRow("German") << "de" << false;
    QTest::newRow("Arabic") << "ar" << true;
    QTest::newRow("Hebrew") << "he" << true;
}

void tst_TessalinePlayer::theApplicationRunsAsItsLanguageIsWritten()
{
    QFETCH(QString, language);
    QFETCH(bool, fromTheRight);
    QVERIFY2(
        QFile::exists(QLibraryInfo::location(QLibraryInfo::TranslationsPath) + "/qtbase_ar.qm"),
        "scripts/setup installs Qt's catalogues");
    const AppletFolder applet(
        telling("console.warn('rtl=' + (Qt.application.layoutDirection === Qt.RightToLeft))"));
    PlayerProcess player({applet.path()}, {"LANGUAGE=" + language});
    QCOMPARE(player.exitCode(), 0);
    QCOMPARE(player.told("rtl"), QString(fromTheRight ? "true" : "false"));
}

void tst_TessalinePlayer::debugOutputIsOffUnlessRulesTurnItOn_data()
{
    QTest::addColumn<QString>("rules");
    QTest::addColumn<bool>("plain");
    QTest::addColumn<bool>("player");
    QTest::addColumn<bool>("documents");
    QTest::newRow("no rules") << "" << false << false << false;
    QTest::newRow("all") << "*.debug=true" << true << true << true;
    QTest::newRow("player only") << "Zemrik.Tessaline.Player.debug=true" << false << true << false;
    QTest::newRow("documents only") << "qml.debug=true" << false << false << true;
}

void tst_TessalinePlayer::debugOutputIsOffUnlessRulesTurnItOn()
{
    QFETCH(QString, rules);
    QFETCH(bool, plain);
    QFETCH(bool, player);
    QFETCH(bool, documents);
    const AppletFolder applet(telling("console.log('a log'); console.warn('a warning')"));
    PlayerProcess process({applet.path()}, {QStringLiteral("QT_LOGGING_RULES=") + rules});

    QCOMPARE(process.exitCode(), 0);
    const QString errors = process.errors();
    QCOMPARE(errors.contains(QStringLiteral("playerProperty=")), plain);
    QCOMPARE(errors.contains(QStringLiteral("exitCode= 0")), player);
    QCOMPARE(errors.contains(QStringLiteral("a log")), documents);
    QVERIFY(errors.contains(QStringLiteral("a warning")));
}

void tst_TessalinePlayer::whatAnAppletStoresAtItsEndReachesTheDisk()
{
    const AppletFolder applet(
        telling("console.warn('settings=' + app.settings.path)", "// no further imports\n")
            .replace("id: app", "id: app\n    Component.onDestruction: "
                                "settings.setValue('last', 'words')"));
    PlayerProcess player({applet.path()});

    QCOMPARE(player.exitCode(), 0);
    QFile settings(player.told(QStringLiteral("settings")));
    QVERIFY2(settings.open(QIODevice::ReadOnly), qPrintable(player.errors()));
    QVERIFY(settings.readAll().contains("words"));
}

TESSALINE_TEST_MAIN(tst_TessalinePlayer)
#include "tst_TessalinePlayer.moc"
