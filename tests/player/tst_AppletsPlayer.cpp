#include "player/AppletsPlayer.h"
#include "player/AppletsPlayerSettings.h"
#include "player/AppView.h"
#include "PlayerFixture.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"

#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QSignalSpy>
#include <QTest>

#include <memory>

class tst_AppletsPlayer : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void constructionAttemptsTheOnlineStateConnection();
    void constructionLogsTheSettingsFile();
    void destructionIsLogged();

    void startRunsItsStepsInOrder();
    void startReportsAFailedApplet();
    void startProcessesTheCommandLine();
    void startDoesNotApplyTheHomePath();
    void aMissingPathShowsNoWindow();
    void anExistingFolderWithoutAnAppletShowsAnEmptyView();
    void anAppletIsShown();

    void startPathAndDefaultPath_data();
    void startPathAndDefaultPath();
    void theDefaultPathIsLoggedWhenItStepsIn();
    void aViewThatCannotBeMadeIsAFailure();
    void theParentWindowIsHandedToTheView();

    void theViewIsLoadedBeforeItIsShown();
    void theTitleIsTheApplicationsDisplayName();
    void theViewHasNoIcon();
    void theViewBelongsToItsParentWindow();
    void parentWindowIsTheParentOnlyIfThatIsAWindow();
    void splashScreensAreEmpty();
    void theParserIsAMember();

    void settingsAreALazyChild();
    void syncSettingsWritesAndNotifies();
    void documentsSeeThePlayer();
    void documentsCannotMakeAPlayer_data();
    void documentsCannotMakeAPlayer();
};

namespace {

const char plainLogger[] = "default";
const char playerCategory[] = "Zemrik.Tessaline.Player";

// Notes the calls of its virtual operations, and makes views only if it is told to.
class RecordingPlayer : public AppletsPlayer
{
public:
    explicit RecordingPlayer(const QString &defaultPath = QString())
    {
        m_defaultAppletPath = defaultPath;
    }

    bool startApplet(const QString &path) override
    {
        calls.append(QStringLiteral("startApplet ") + path);
        return forcedResult < 0 ? AppletsPlayer::startApplet(path) : forcedResult != 0;
    }

    AppView *createAppView(const QString &path, QWindow *parent) override
    {
        calls.append(QStringLiteral("createAppView ") + path);
        viewParent = parent;
        if (!makesViews)
            return nullptr;
        view.reset(AppletsPlayer::createAppView(path, parent));
        return view.get();
    }

    void showSplashScreen(QGuiApplication &app, const QString &text) override
    {
        calls.append(QStringLiteral("showSplashScreen \"%1\"").arg(text));
        splashApplication = &app;
    }

    void closeSplashScreen() override { calls.append(QStringLiteral("closeSplashScreen")); }

    QStringList calls;
    QGuiApplication *splashApplication = nullptr;
    QWindow *viewParent = nullptr;
    std::unique_ptr<AppView> view;
    int forcedResult = -1; // the result of startApplet; -1 asks the base
    bool makesViews = true;
};

QGuiApplication &application()
{
    return *static_cast<QGuiApplication *>(QCoreApplication::instance());
}

} // namespace

void tst_AppletsPlayer::init()
{
    PlayerFixture::reset();
    QVERIFY(QGuiApplication::allWindows().isEmpty());
}

void tst_AppletsPlayer::constructionAttemptsTheOnlineStateConnection()
{
    LogCapture log;

    AppletsPlayer player(nullptr);

    QCOMPARE(log.count(QtWarningMsg, plainLogger,
                       QStringLiteral("No such signal AppletsPlayer::onlineStateChanged(bool)")),
             1);
}

void tst_AppletsPlayer::constructionLogsTheSettingsFile()
{
    LogCapture log;

    AppletsPlayer player(nullptr);

    QCOMPARE(log.count(QtDebugMsg, playerCategory, QStringLiteral("Settings:")), 1);
    QCOMPARE(log.count(QtDebugMsg, playerCategory, QSettings().fileName()), 1);
}

void tst_AppletsPlayer::destructionIsLogged()
{
    auto player = std::make_unique<AppletsPlayer>(nullptr);
    LogCapture log;

    player.reset();

    QCOMPARE(log.count(QtDebugMsg, playerCategory, QStringLiteral("~AppletsPlayer")), 1);
}

void tst_AppletsPlayer::startRunsItsStepsInOrder()
{
    const AppletFolder applet;
    RecordingPlayer player;
    LogCapture log;

    QCOMPARE(player.start(application(), applet.path()), 0);

    QCOMPARE(player.calls, QStringList({"showSplashScreen \"\"", "startApplet " + applet.path(),
                                        "createAppView " + applet.path(), "closeSplashScreen"}));
    QCOMPARE(player.splashApplication, &application());
    QCOMPARE(log.count(QtDebugMsg, playerCategory, QStringLiteral("exitCode= 0")), 1);
}

void tst_AppletsPlayer::startReportsAFailedApplet()
{
    RecordingPlayer player;
    player.forcedResult = 0;
    LogCapture log;

    QCOMPARE(player.start(application(), QStringLiteral("/x")), -1);

    QCOMPARE(player.calls,
             QStringList({"showSplashScreen \"\"", "startApplet /x", "closeSplashScreen"}));
    QCOMPARE(log.count(QtDebugMsg, playerCategory, QStringLiteral("exitCode= -1")), 1);
}

void tst_AppletsPlayer::startProcessesTheCommandLine()
{
    RecordingPlayer player;
    player.forcedResult = 1;
    player.commandLineParser()->parse({"player", "--frameless", "folder"});
    QVERIFY(player.commandLineParser()->frameless());

    QCOMPARE(player.start(application(), QString()), 0);

    // This program has no arguments.
    QVERIFY(!player.commandLineParser()->frameless());
    QCOMPARE(player.commandLineParser()->appletPath(), QString());
}

void tst_AppletsPlayer::startDoesNotApplyTheHomePath()
{
    // A parser of its own is what a derived player may answer with.
    class HomePlayer : public RecordingPlayer
    {
    public:
        AppletsCommandLineParser *commandLineParser() override
        {
            if (!m_parser) {
                m_parser = std::make_unique<AppletsCommandLineParser>();
                m_parser->parse({"player", "--home", "/elsewhere"});
            }
            return m_parser.get();
        }

    private:
        std::unique_ptr<AppletsCommandLineParser> m_parser;
    } player;
    player.forcedResult = 1;
    QCOMPARE(player.commandLineParser()->homePath(), QStringLiteral("/elsewhere"));
    const QByteArray home = qgetenv("HOME");

    player.start(application(), QString());

    QCOMPARE(qgetenv("HOME"), home);
    QVERIFY(!QCoreApplication::instance()->dynamicPropertyNames().contains(
        "Zemrik/Runtime/pathVariables.HOME"));
}

void tst_AppletsPlayer::aMissingPathShowsNoWindow()
{
    RecordingPlayer player;
    LogCapture log;

    QCOMPARE(player.start(application(), QStringLiteral("/no/such/folder")), -1);

    QVERIFY(!player.view);
    QVERIFY(QGuiApplication::allWindows().isEmpty());
    QCOMPARE(log.count(QtCriticalMsg, playerCategory, QStringLiteral("Start path not found")), 1);
    QCOMPARE(log.count(QtCriticalMsg, playerCategory, QStringLiteral("/no/such/folder")), 1);
}

void tst_AppletsPlayer::anExistingFolderWithoutAnAppletShowsAnEmptyView()
{
    const QTemporaryDir folder;
    RecordingPlayer player;

    QCOMPARE(player.start(application(), folder.path()), 0);

    QVERIFY(player.view->isVisible());
    QCOMPARE(player.view->source(), QUrl());
    QVERIFY(!player.view->rootObject());
}

void tst_AppletsPlayer::anAppletIsShown()
{
    const AppletFolder applet;
    RecordingPlayer player;
    LogCapture log;

    QVERIFY(player.startApplet(applet.path()));

    QVERIFY(player.view->isVisible());
    QVERIFY(player.view->rootObject());
    QCOMPARE(player.view->source(), QUrl::fromLocalFile(applet.filePath("main.qml")));
    QCOMPARE(log.count(QtDebugMsg, plainLogger, QStringLiteral("startApplet")), 1);
    QCOMPARE(log.count(QtDebugMsg, playerCategory, QStringLiteral("createAppView")), 1);
}

void tst_AppletsPlayer::startPathAndDefaultPath_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("defaultPath");
    QTest::addColumn<QString>("played");

    // "applet" and "default" exist, "missing" doesn't.
    QTest::newRow("path") << "applet"
                          << ""
                          << "applet";
    QTest::newRow("missing") << "missing"
                             << ""
                             << "";
    QTest::newRow("path and default") << "applet"
                                      << "default"
                                      << "applet";
    QTest::newRow("missing and default") << "missing"
                                         << "default"
                                         << "default";
    QTest::newRow("empty and default") << ""
                                       << "default"
                                       << "default";
    QTest::newRow("missing and missing default") << "missing"
                                                 << "missing"
                                                 << "";
    QTest::newRow("path and missing default") << "applet"
                                              << "missing"
                                              << "applet";
    QTest::newRow("empty") << ""
                           << ""
                           << "";
}

void tst_AppletsPlayer::startPathAndDefaultPath()
{
    QFETCH(QString, path);
    QFETCH(QString, defaultPath);
    QFETCH(QString, played);
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("applet")));
    QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("default")));
    const auto inFolder = [&](const QString &name) {
        return name.isEmpty() ? name : folder.filePath(name);
    };
    RecordingPlayer player(inFolder(defaultPath));
    LogCapture log;

    QCOMPARE(player.startApplet(inFolder(path)), !played.isEmpty());

    player.calls.removeFirst();
    if (played.isEmpty()) {
        QVERIFY(player.calls.isEmpty());
        QCOMPARE(log.count(QtCriticalMsg, playerCategory, QStringLiteral("Start path not found")),
                 1);
    } else {
        QCOMPARE(player.calls, QStringList("createAppView " + inFolder(played)));
        QCOMPARE(log.count(QtCriticalMsg), 0);
    }
}

void tst_AppletsPlayer::theDefaultPathIsLoggedWhenItStepsIn()
{
    const AppletFolder applet;
    RecordingPlayer player(applet.path());
    LogCapture log;

    player.startApplet(applet.path());
    QCOMPARE(log.count(QtDebugMsg, playerCategory, QStringLiteral("defaultAppletPath")), 0);

    player.startApplet(QStringLiteral("/no/such/folder"));
    QCOMPARE(log.count(QtDebugMsg, playerCategory,
                       QStringLiteral("defaultAppletPath \"%1\"").arg(applet.path())),
             1);
}

void tst_AppletsPlayer::aViewThatCannotBeMadeIsAFailure()
{
    const AppletFolder applet;
    RecordingPlayer player;
    player.makesViews = false;

    QCOMPARE(player.start(application(), applet.path()), -1);
}

void tst_AppletsPlayer::theParentWindowIsHandedToTheView()
{
    const AppletFolder applet;
    QWindow window;
    RecordingPlayer player;
    player.makesViews = false;
    player.startApplet(applet.path());
    QVERIFY(!player.viewParent);

    player.setParent(&window);
    player.startApplet(applet.path());

    QCOMPARE(player.viewParent, &window);
    player.setParent(nullptr);
}

void tst_AppletsPlayer::theViewIsLoadedBeforeItIsShown()
{
    const AppletFolder applet("import QtQuick 2.15\n"
                              "import QtQuick.Window 2.15\n"
                              "Item {\n"
                              "    property var seen: []\n"
                              "    Component.onCompleted: seen.push('loaded')\n"
                              "    property bool shown: Window.visibility !== Window.Hidden\n"
                              "    onShownChanged: if (shown) seen.push('shown')\n"
                              "}\n");
    RecordingPlayer player;

    player.startApplet(applet.path());

    QCOMPARE(
        player.view->rootObject()->property("seen").value<QJSValue>().toVariant().toStringList(),
        QStringList({"loaded", "shown"}));
}

void tst_AppletsPlayer::theTitleIsTheApplicationsDisplayName()
{
    const AppletFolder applet;
    RecordingPlayer player;
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Display Name"));

    player.startApplet(applet.path());

    QCOMPARE(player.view->title(), QStringLiteral("Display Name"));
    QGuiApplication::setApplicationDisplayName(QString());
}

void tst_AppletsPlayer::theViewHasNoIcon()
{
    const AppletFolder applet;
    RecordingPlayer player;

    player.startApplet(applet.path());

    QVERIFY(player.view->icon().isNull());
}

void tst_AppletsPlayer::theViewBelongsToItsParentWindow()
{
    const AppletFolder applet;
    AppletsPlayer player(nullptr);
    auto window = std::make_unique<QWindow>();

    const QPointer<AppView> child = player.createAppView(applet.path(), window.get());
    const QPointer<AppView> topLevel = player.createAppView(applet.path(), nullptr);
    QCOMPARE(child->parent(), window.get());
    QVERIFY(!topLevel->parent());

    window.reset();
    QVERIFY(!child);
    QVERIFY(topLevel);
    delete topLevel;
}

void tst_AppletsPlayer::parentWindowIsTheParentOnlyIfThatIsAWindow()
{
    TessalineObject object;
    QWindow window;
    AppletsPlayer player(&object);
    QCOMPARE(player.parent(), &object);
    QVERIFY(!player.parentWindow());

    player.setParent(&window);
    QCOMPARE(player.parentWindow(), &window);

    player.setParent(nullptr);
    QVERIFY(!player.parentWindow());
}

void tst_AppletsPlayer::splashScreensAreEmpty()
{
    AppletsPlayer player(nullptr);
    LogCapture log;

    player.showSplashScreen(application(), QStringLiteral("text"));
    player.closeSplashScreen();

    QVERIFY(QGuiApplication::allWindows().isEmpty());
    QVERIFY2(log.messages().isEmpty(), qPrintable(log.dump()));
}

void tst_AppletsPlayer::theParserIsAMember()
{
    AppletsPlayer player(nullptr);

    QVERIFY(player.commandLineParser());
    QCOMPARE(player.commandLineParser(), player.commandLineParser());
}

void tst_AppletsPlayer::settingsAreALazyChild()
{
    qRegisterMetaType<AppletsPlayerSettings *>(); // as the module does when it is imported
    AppletsPlayer player(nullptr);
    QVERIFY(player.findChildren<AppletsPlayerSettings *>().isEmpty());

    AppletsPlayerSettings *settings = player.settings();

    QCOMPARE(settings->parent(), &player);
    QCOMPARE(player.settings(), settings);
    QCOMPARE(player.property("settings").value<AppletsPlayerSettings *>(), settings);
}

void tst_AppletsPlayer::syncSettingsWritesAndNotifies()
{
    AppletsPlayer player(nullptr);
    QSignalSpy spy(&player, &AppletsPlayer::settingsChanged);
    player.settings()->setHome(QStringLiteral("/written"));
    QVERIFY(!QFile::exists(player.settings()->fileName())
            || QSettings(player.settings()->fileName(), QSettings::IniFormat)
                   .value(QStringLiteral("home"))
                   .isNull());

    player.syncSettings();

    QFile file(player.settings()->fileName());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll().contains("home=/written"));
    QCOMPARE(spy.count(), 1);
}

void tst_AppletsPlayer::documentsSeeThePlayer()
{
    AppletsPlayer player(nullptr);
    QQmlEngine engine;
    engine.addImportPath(QString::fromLocal8Bit(qgetenv("TESSALINE_QML_IMPORT_DIR")));
    engine.rootContext()->setContextProperty(QStringLiteral("player"), &player);
    QQmlComponent component(&engine);
    component.setData("import QtQml 2.15\n"
                      "import Zemrik.Tessaline 1.0\n"
                      "QtObject {\n"
                      "    property AppPlayer typed: player\n"
                      "    property AppPlayerSettings settings: typed.settings\n"
                      "    property string home: settings.home\n"
                      "    property real scale: settings.displayScale\n"
                      "    property string url: settings.portalUrl\n"
                      "    property string username: settings.portalUsername\n"
                      "    property string path: settings.path\n"
                      "    property int syncs: 0\n"
                      "    property string playError\n"
                      "    property var changes: Connections {\n"
                      "        target: player\n"
                      "        function onSettingsChanged() { ++syncs }\n"
                      "        function onPlayError(error) { playError = error }\n"
                      "    }\n"
                      "    function change() {\n"
                      "        settings.home = '/from/qml'\n"
                      "        settings.displayScale = 2\n"
                      "        settings.portalUrl = ' http://other '\n"
                      "        settings.portalUsername = 'ada'\n"
                      "        player.syncSettings()\n"
                      "        settings.synchronize()\n"
                      "    }\n"
                      "}\n",
                      QUrl());
    const std::unique_ptr<QObject> object(component.create());
    QVERIFY2(object, qPrintable(component.errorString()));
    QCOMPARE(object->property("home").toString(), QString());
    QCOMPARE(object->property("path").toString(), QSettings().fileName());

    QVERIFY(QMetaObject::invokeMethod(object.get(), "change"));
    emit player.playError(QStringLiteral("told"));

    QCOMPARE(object->property("home").toString(), QStringLiteral("/from/qml"));
    QCOMPARE(object->property("scale").toDouble(), 2.0);
    QCOMPARE(object->property("url").toString(), QStringLiteral("http://other"));
    QCOMPARE(object->property("username").toString(), QStringLiteral("ada"));
    QCOMPARE(object->property("syncs").toInt(), 1);
    QCOMPARE(object->property("playError").toString(), QStringLiteral("told"));
}

void tst_AppletsPlayer::documentsCannotMakeAPlayer_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::newRow("player") << QByteArray("AppPlayer");
    QTest::newRow("settings") << QByteArray("AppPlayerSettings");
}

void tst_AppletsPlayer::documentsCannotMakeAPlayer()
{
    QFETCH(QByteArray, type);
    QQmlEngine engine;
    engine.addImportPath(QString::fromLocal8Bit(qgetenv("TESSALINE_QML_IMPORT_DIR")));
    QQmlComponent component(&engine);

    component.setData("import Zemrik.Tessaline 1.0\n" + type + " {}\n", QUrl());

    QVERIFY(component.isError());
    QVERIFY2(component.errorString().contains(
                 QLatin1String("The Zemrik type " + type + " is not creatable")),
             qPrintable(component.errorString()));
}

// The application gets no arguments: start() has the player's command line process them.
int main(int argc, char **argv)
{
    IsolatedHome home;
    int applicationArgc = 1;
    QGuiApplication application(applicationArgc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Zemrik Tests"));
    QCoreApplication::setApplicationName(QStringLiteral("tst_AppletsPlayer"));
    tst_AppletsPlayer test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_AppletsPlayer.moc"
