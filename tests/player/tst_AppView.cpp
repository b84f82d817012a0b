#include "catalogue/App.h"
#include "player/AppView.h"
#include "PlayerFixture.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"

#include <QMetaMethod>
#include <QProcess>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QTest>
#include <QTimer>

#include <memory>

class tst_AppView : public QObject
{
    Q_OBJECT

private slots:
    void init() { PlayerFixture::reset(); }

    void theMetaObjectHasOnePublicSlot();
    void theRootObjectFollowsTheView();
    void theSubModulesAreOnTheImportPath();
    void aMissingFolderBesideTheProgramIsLoggedAndSkipped();
    void theFolderBesideTheProgramIsOnTheImportPath();
    void addImportPathChecksOnlyIfAsked();
    void adjustPathPrefersTheParentOfTheProgramsFolder();
    void otherPathsStayAsTheyAre_data();
    void otherPathsStayAsTheyAre();

    void loadAppletShowsTheMainDocument();
    void theMetadataNamesTheMainDocument();
    void aFileInTheFolderLoadsTheSame_data();
    void aFileInTheFolderLoadsTheSame();
    void anAppletInResourcesLoads();
    void loadAppletLogsItsSteps();
    void documentsSeeTheVersion();
    void noAppletGivesAnEmptyView_data();
    void noAppletGivesAnEmptyView();
    void loadingAgainDropsWhatWasLoaded();
    void loadingAgainReadsChangedDocuments();
    void minimumSize_data();
    void minimumSize();
    void anAbsentMinimumLeavesTheWindowsAlone();
    void appletImportsAreAddedBeforeTheDocumentLoads();
    void aBrokenDocumentStillLoads_data();
    void aBrokenDocumentStillLoads();

    void warningsOfARunningDocumentArrive();
    void aWarningsMapHasTheErrorsParts();
    void aSecondBatchReplacesTheFirst();
    void aSilencedCategoryKeepsTheWarnings();
    void withoutAPlayerWarningsAreDropped();
    void theContextOfAWarningIsTheViewsOwnDocument_data();
    void theContextOfAWarningIsTheViewsOwnDocument();

    void showViewFollowsTheCommandLine_data();
    void showViewFollowsTheCommandLine();
    void withoutAPlayerTheViewIsShownPlainly();
    void showExpandedMaximizes();
    void quitClosesTheViewOnly();
    void quittingWhileLoadingEndsTheApplication_data();
    void quittingWhileLoadingEndsTheApplication();
    void quittingWhileLoadingLeavesOtherWindows();
    void anotherAppletIsShownAfterOneThatQuitWhileLoading();
    void closingDoesNotDeleteTheView();
    void whatADocumentDoesAtItsEndIsHarmless();
    void theViewOutlivesItsPlayer();

    void appComponentNeedsAContextOfTheView();
    void appComponentIsTheContextObject();
    void appComponentIsNullForOtherObjects();
};

namespace {

const char plainLogger[] = "default";
const char coreCategory[] = "Zemrik.Tessaline.Core";
const char playerCategory[] = "Zemrik.Tessaline.Player";
const char packageCategory[] = "Zemrik.Tessaline.Package";

class TestView : public AppView
{
public:
    using AppView::AppView;
    using AppView::warnings;

    QString appletImport; // added by the hook if it isn't empty

protected:
    void addAppletImports() override
    {
        if (!appletImport.isEmpty())
            addImportPath(appletImport, true);
    }
};

// Shows itself without asking the command line.
class SelfWilledView : public AppView
{
public:
    using AppView::AppView;
    void showView() override { show(); }
};

const char quittingDocument[] = "import QtQuick 2.15\nItem { Component.onCompleted: Qt.quit() }\n";
const int stillRunning = 7;

// The exit code of the event loop, which runs for that time at most.
int runApplication(int milliseconds)
{
    QTimer end;
    QObject::connect(&end, &QTimer::timeout, [] { QCoreApplication::exit(stillRunning); });
    end.start(milliseconds);
    return QCoreApplication::exec();
}

QQmlError error(const QString &description, int line = 3, int column = 4)
{
    QQmlError error;
    error.setUrl(QUrl(QStringLiteral("file:///applet/Main.qml")));
    error.setLine(line);
    error.setColumn(column);
    error.setDescription(description);
    return error;
}

// A copy of this program in <folder>/bin, run with the arguments; what it prints, as lines.
QStringList runInFolder(const QString &folder, const QStringList &arguments)
{
    const QString program = folder + QStringLiteral("/bin/program");
    QDir().mkpath(QFileInfo(program).path());
    if (!QFile::exists(program) && !QFile::copy(QCoreApplication::applicationFilePath(), program))
        return {};
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished() || process.exitCode() != 0)
        return {QString::fromLocal8Bit(process.readAllStandardError())};
    return QString::fromLocal8Bit(process.readAllStandardOutput())
        .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

} // namespace

void tst_AppView::theMetaObjectHasOnePublicSlot()
{
    const QMetaObject &metaObject = AppView::staticMetaObject;
    QCOMPARE(metaObject.className(), "AppView");
    QCOMPARE(metaObject.superClass()->className(), "QQuickView");
    QCOMPARE(metaObject.propertyCount(), metaObject.propertyOffset());
    QCOMPARE(metaObject.methodCount() - metaObject.methodOffset(), 1);
    const QMetaMethod method = metaObject.method(metaObject.methodOffset());
    QCOMPARE(method.methodSignature(), QByteArray("onWarnings(QList<QQmlError>)"));
    QCOMPARE(method.methodType(), QMetaMethod::Slot);
    QCOMPARE(method.access(), QMetaMethod::Public);
    QCOMPARE(method.parameterNames(), QList<QByteArray>{"warnings"});
}

void tst_AppView::theRootObjectFollowsTheView()
{
    const AppletFolder applet("import QtQuick 2.15\nItem { width: 100; height: 50 }\n");
    AppView view(nullptr, nullptr);
    QCOMPARE(view.resizeMode(), QQuickView::SizeRootObjectToView);
    QVERIFY(view.loadApplet(applet.path()));
    QCOMPARE(view.size(), QSize(100, 50));
    view.show();

    view.resize(300, 200);

    QTRY_COMPARE(view.rootObject()->width(), 300.0);
    QCOMPARE(view.rootObject()->height(), 200.0);
}

void tst_AppView::theSubModulesAreOnTheImportPath()
{
    AppView view(nullptr, nullptr);
    QVERIFY(view.engine()->importPathList().contains(QStringLiteral("qrc:/imports")));
}

void tst_AppView::aMissingFolderBesideTheProgramIsLoggedAndSkipped()
{
    const QString folder = QDir(QCoreApplication::applicationDirPath()).filePath("qml");
    QVERIFY(!QFile::exists(folder));
    LogCapture log;

    AppView view(nullptr, nullptr);

    QCOMPARE(log.count(QtDebugMsg, coreCategory,
                       QStringLiteral("Path doesn't exist \"%1\"").arg(folder)),
             1);
    QCOMPARE(log.count(QtDebugMsg, coreCategory, QStringLiteral("\":/imports\"")), 1);
    QVERIFY(!view.engine()->importPathList().contains(folder));
}

void tst_AppView::theFolderBesideTheProgramIsOnTheImportPath()
{
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkpath("bin/qml"));

    const QStringList paths = runInFolder(folder.path(), {"--import-paths"});

    QVERIFY2(paths.contains(folder.filePath("bin/qml")), qPrintable(paths.join('\n')));
    QVERIFY(paths.contains(QStringLiteral("qrc:/imports")));
}

void tst_AppView::addImportPathChecksOnlyIfAsked()
{
    const QTemporaryDir folder;
    AppView view(nullptr, nullptr);
    const QStringList before = view.engine()->importPathList();
    LogCapture log;

    view.addImportPath(QStringLiteral("/no/such/folder"), true);
    QCOMPARE(log.count(QtDebugMsg, coreCategory,
                       QStringLiteral("Path doesn't exist \"/no/such/folder\"")),
             1);
    QCOMPARE(view.engine()->importPathList(), before);

    view.addImportPath(QStringLiteral(":/no/such/resource"), false);
    QCOMPARE(log.count(QtDebugMsg, coreCategory, QStringLiteral("\":/no/such/resource\"")), 1);
    QCOMPARE(log.count(QtDebugMsg, coreCategory, QStringLiteral("Path doesn't exist")), 1);
    QCOMPARE(view.engine()->importPathList().first(), QStringLiteral("qrc:/no/such/resource"));

    view.addImportPath(folder.path(), true);
    QCOMPARE(view.engine()->importPathList().first(), QDir(folder.path()).canonicalPath());
}

void tst_AppView::adjustPathPrefersTheParentOfTheProgramsFolder()
{
    const QTemporaryDir folder;
    const QDir dir(folder.path());
    QVERIFY(dir.mkpath("both") && dir.mkpath("bin/both") && dir.mkpath("bin/beside")
            && dir.mkpath("above"));
    const QString program = dir.filePath("bin");

    const QStringList adjusted =
        runInFolder(folder.path(), {"--adjust", "both", "beside", "above", "neither"});

    QCOMPARE(adjusted, QStringList({program + "/../both", program + "/beside",
                                    program + "/../above", "neither"}));
}

void tst_AppView::otherPathsStayAsTheyAre_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("resource") << ":/imports";
    QTest::newRow("absolute") << QDir::tempPath();
    QTest::newRow("nowhere") << "no/such/path";
    QTest::newRow("with a percent sign") << "%1/%2";
}

void tst_AppView::otherPathsStayAsTheyAre()
{
    QFETCH(QString, path);
    const AppView view(nullptr, nullptr);
    QCOMPARE(view.adjustPath(path), path);
}

void tst_AppView::loadAppletShowsTheMainDocument()
{
    const AppletFolder applet("import QtQuick 2.15\nItem { objectName: 'main' }\n");
    AppView view(nullptr, nullptr);

    QVERIFY(view.loadApplet(applet.path()));

    QCOMPARE(view.source(), QUrl::fromLocalFile(applet.filePath("main.qml")));
    QCOMPARE(view.rootObject()->objectName(), QStringLiteral("main"));
    QVERIFY(!view.isVisible());
}

void tst_AppView::theMetadataNamesTheMainDocument()
{
    AppletFolder applet("import QtQuick 2.15\nItem { objectName: 'main' }\n",
                        "{ \"mainFile\": \"start/First.qml\" }");
    applet.write("start/First.qml", "import QtQuick 2.15\nItem { objectName: 'first' }\n");
    AppView view(nullptr, nullptr);

    QVERIFY(view.loadApplet(applet.path()));

    QCOMPARE(view.source(), QUrl::fromLocalFile(applet.filePath("start/First.qml")));
    QCOMPARE(view.rootObject()->objectName(), QStringLiteral("first"));
}

void tst_AppView::aFileInTheFolderLoadsTheSame_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("main document") << "main.qml";
    QTest::newRow("another document") << "Other.qml";
    QTest::newRow("a document that isn't there") << "None.QML";
    QTest::newRow("another file") << "readme.txt";
}

void tst_AppView::aFileInTheFolderLoadsTheSame()
{
    QFETCH(QString, file);
    AppletFolder applet;
    applet.write("Other.qml", "import QtQuick 2.15\nItem {}\n");
    AppView view(nullptr, nullptr);

    QVERIFY(view.loadApplet(applet.filePath(file)));

    QCOMPARE(view.source(), QUrl::fromLocalFile(applet.filePath("main.qml")));
}

void tst_AppView::anAppletInResourcesLoads()
{
    AppView view(nullptr, nullptr);

    QVERIFY(view.loadApplet(QStringLiteral(":/player/applet")));

    QCOMPARE(view.source(), QUrl(QStringLiteral("qrc:/player/applet/main.qml")));
    QCOMPARE(view.rootObject()->objectName(), QStringLiteral("in resources"));
}

void tst_AppView::loadAppletLogsItsSteps()
{
    const AppletFolder applet;
    AppView view(nullptr, nullptr);
    LogCapture log;

    view.loadApplet(applet.path());

    const QString path = QLatin1Char('"') + applet.path() + QLatin1Char('"');
    QCOMPARE(log.count(QtDebugMsg, plainLogger, path), 1);
    QCOMPARE(log.count(QtDebugMsg, coreCategory, "Instantiate applet: " + path), 1);
    QCOMPARE(log.count(QtDebugMsg, coreCategory, QStringLiteral("minimum size 0 x 0")), 1);
    QCOMPARE(log.count(QtDebugMsg, coreCategory, QStringLiteral("Applet source:")), 1);
    QCOMPARE(log.count(QtDebugMsg, coreCategory, QStringLiteral("/main.qml")), 1);
}

void tst_AppView::documentsSeeTheVersion()
{
    const AppletFolder applet("import QtQuick 2.15\n"
                              "Item { property var seen: [productVersion, buildNum] }\n");
    AppView view(nullptr, nullptr);

    view.loadApplet(applet.path());

    QCOMPARE(view.rootObject()->property("seen").value<QJSValue>().toVariant().toStringList(),
             QStringList({"1.2.15", "1.2.15"}));
    QCOMPARE(view.rootContext()->contextProperty("productVersion").userType(),
             int(QMetaType::QString));
}

void tst_AppView::noAppletGivesAnEmptyView_data()
{
    QTest::addColumn<QString>("path");
    const QString folder = QDir::homePath();
    QTest::newRow("empty") << "";
    QTest::newRow("folder without metadata") << folder;
    QTest::newRow("file in such a folder") << folder + "/x.txt";
    QTest::newRow("missing folder") << folder + "/missing";
}

void tst_AppView::noAppletGivesAnEmptyView()
{
    QFETCH(QString, path);
    TestView view(nullptr, nullptr);
    LogCapture log;

    QVERIFY(!view.loadApplet(path));

    QCOMPARE(view.source(), QUrl());
    QVERIFY(!view.rootObject());
    QCOMPARE(log.count(QtDebugMsg, coreCategory, QStringLiteral("Instantiate applet:")), 0);
    QVERIFY(view.rootContext()->contextProperty("productVersion").isValid());
}

void tst_AppView::loadingAgainDropsWhatWasLoaded()
{
    const AppletFolder applet;
    AppView view(nullptr, nullptr);
    QVERIFY(view.loadApplet(applet.path()));
    const QPointer<QQuickItem> first = view.rootObject();

    QVERIFY(!view.loadApplet(QStringLiteral("/no/such/folder")));

    QVERIFY(!first);
    QCOMPARE(view.source(), QUrl());
    QVERIFY(!view.rootObject());
}

void tst_AppView::loadingAgainReadsChangedDocuments()
{
    AppletFolder applet("import QtQuick 2.15\nPart {}\n");
    applet.write("Part.qml", "import QtQuick 2.15\nItem { objectName: 'before' }\n");
    AppView view(nullptr, nullptr);
    QVERIFY(view.loadApplet(applet.path()));
    QCOMPARE(view.rootObject()->objectName(), QStringLiteral("before"));

    applet.write("Part.qml", "import QtQuick 2.15\nItem { objectName: 'afterwards' }\n");
    QVERIFY(view.loadApplet(applet.path()));

    QCOMPARE(view.rootObject()->objectName(), QStringLiteral("afterwards"));
}

void tst_AppView::minimumSize_data()
{
    QTest::addColumn<QByteArray>("display");
    QTest::addColumn<QSize>("minimum");

    QTest::newRow("none") << QByteArray("{}") << QSize(0, 0);
    QTest::newRow("width only") << QByteArray("{ \"desktop\": { \"minimumWidth\": 640 } }")
                                << QSize(640, 0);
    QTest::newRow("height only") << QByteArray("{ \"desktop\": { \"minimumHeight\": 480 } }")
                                 << QSize(0, 480);
    QTest::newRow("both") << QByteArray(
        "{ \"desktop\": { \"minimumWidth\": 640, \"minimumHeight\": 480 } }")
                          << QSize(640, 480);
    QTest::newRow("zero and negative")
        << QByteArray("{ \"desktop\": { \"minimumWidth\": 0, \"minimumHeight\": -1 } }")
        << QSize(0, 0);
    QTest::newRow("texts") << QByteArray(
        "{ \"desktop\": { \"minimumWidth\": \"320\", \"minimumHeight\": \"x\" } }")
                           << QSize(320, 0);
    QTest::newRow("not an object") << QByteArray("[640, 480]") << QSize(0, 0);
    QTest::newRow("other platforms")
        << QByteArray("{ \"phone\": { \"minimumWidth\": 640 }, \"minimumWidth\": 640 }")
        << QSize(0, 0);
}

void tst_AppView::minimumSize()
{
    QFETCH(QByteArray, display);
    QFETCH(QSize, minimum);
    const AppletFolder applet("import QtQuick 2.15\nItem {}\n", "{ \"display\": " + display + " }");
    AppView view(nullptr, nullptr);
    LogCapture log;

    QVERIFY(view.loadApplet(applet.path()));

    QCOMPARE(view.minimumSize(), minimum);
    QCOMPARE(log.count(QtDebugMsg, coreCategory, QStringLiteral("minimum size ")), 1);
}

void tst_AppView::anAbsentMinimumLeavesTheWindowsAlone()
{
    const AppletFolder small;
    const AppletFolder wide("import QtQuick 2.15\nItem {}\n",
                            "{ \"display\": { \"desktop\": { \"minimumWidth\": 640 } } }");
    AppView view(nullptr, nullptr);
    view.setMinimumSize(QSize(10, 20));

    view.loadApplet(small.path());
    QCOMPARE(view.minimumSize(), QSize(10, 20));

    view.loadApplet(wide.path());
    QCOMPARE(view.minimumSize(), QSize(640, 20));

    view.loadApplet(small.path());
    QCOMPARE(view.minimumSize(), QSize(640, 20));
}

void tst_AppView::appletImportsAreAddedBeforeTheDocumentLoads()
{
    AppletFolder applet("import QtQuick 2.15\nimport Extra 1.0\nExtraItem {}\n");
    AppletFolder extra;
    extra.write("Extra/qmldir", "module Extra\nExtraItem 1.0 ExtraItem.qml\n");
    extra.write("Extra/ExtraItem.qml", "import QtQuick 2.15\nItem { objectName: 'extra' }\n");
    TestView view(nullptr, nullptr);
    view.appletImport = extra.path();

    QVERIFY(view.loadApplet(applet.path()));

    QVERIFY(view.rootObject());
    QCOMPARE(view.rootObject()->objectName(), QStringLiteral("extra"));
}

void tst_AppView::aBrokenDocumentStillLoads_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QString>("text");
    QTest::newRow("syntax") << QByteArray("import QtQuick 2.15\nItem { width: }\n")
                            << "Expected token";
    QTest::newRow("import") << QByteArray("import QtQuick 2.15\nimport No.Such 1.0\nItem {}\n")
                            << "No.Such";
    QTest::newRow("type") << QByteArray("import QtQuick 2.15\nNoSuchType {}\n")
                          << "NoSuchType is not a type";
    QTest::newRow("creation") << QByteArray("import QtQuick 2.15\n"
                                            "Item { required property int missing }\n")
                              << "Required property missing";
}

// Such errors come from no engine signal; the view prints them, and has to pass them on itself.
void tst_AppView::aBrokenDocumentStillLoads()
{
    QFETCH(QByteArray, document);
    QFETCH(QString, text);
    const AppletFolder applet(document);
    ArgumentPlayer player;
    TestView view(&player, nullptr);
    LogCapture log;

    QVERIFY(view.loadApplet(applet.path()));

    QCOMPARE(view.status(), QQuickView::Error);
    QCOMPARE(view.warnings().size(), 1);
    const QVariantMap warning = view.warnings().first().toMap();
    QVERIFY2(warning.value("description").toString().contains(text), qPrintable(log.dump()));
    QCOMPARE(warning.value("url").toUrl(), QUrl::fromLocalFile(applet.filePath("main.qml")));
    QCOMPARE(log.count(QtWarningMsg, playerCategory, QStringLiteral("Text:")), 1);
}

void tst_AppView::warningsOfARunningDocumentArrive()
{
    const AppletFolder applet("import QtQuick 2.15\n"
                              "Item {\n"
                              "    property var broken: noSuchName\n"
                              "    function fail() { noSuchFunction() }\n"
                              "}\n");
    ArgumentPlayer player;
    TestView view(&player, nullptr);

    QVERIFY(view.loadApplet(applet.path()));
    QCOMPARE(view.status(), QQuickView::Ready);
    QCOMPARE(view.warnings().size(), 1);
    QCOMPARE(view.warnings().first().toMap().value("line").toInt(), 3);

    QMetaObject::invokeMethod(view.rootObject(), "fail");
    QCOMPARE(view.warnings().size(), 1);
    QCOMPARE(view.warnings().first().toMap().value("line").toInt(), 4);
}

void tst_AppView::aWarningsMapHasTheErrorsParts()
{
    ArgumentPlayer player;
    TestView view(&player, nullptr);
    QQmlError warning = error(QStringLiteral("It went wrong"), 12, 34);
    warning.setObject(&player);
    LogCapture log;

    view.onWarnings({warning});

    QCOMPARE(view.warnings(), QVariantList{QVariantMap({
                                  {"url", QUrl("file:///applet/Main.qml")},
                                  {"line", 12},
                                  {"column", 34},
                                  {"description", "It went wrong"},
                                  {"text", "file:///applet/Main.qml:12:34: It went wrong"},
                                  {"context", ""},
                              })});
    const QVariantMap map = view.warnings().first().toMap();
    QCOMPARE(map.value("url").userType(), int(QMetaType::QUrl));
    QCOMPARE(map.value("line").userType(), int(QMetaType::Int));
    QCOMPARE(map.value("column").userType(), int(QMetaType::Int));
    QCOMPARE(map.value("context").userType(), int(QMetaType::QString));
    QCOMPARE(log.count(QtWarningMsg, playerCategory, QStringLiteral("Object: AppletsPlayer(0x")),
             1);
    QCOMPARE(log.count(QtWarningMsg, playerCategory,
                       QStringLiteral("Text: \"file:///applet/Main.qml:12:34: It went wrong\"")),
             1);
}

void tst_AppView::aSecondBatchReplacesTheFirst()
{
    ArgumentPlayer player;
    TestView view(&player, nullptr);

    view.onWarnings({error(QStringLiteral("a")), error(QStringLiteral("b"))});
    QCOMPARE(view.warnings().size(), 2);
    QCOMPARE(view.warnings().at(1).toMap().value("description").toString(), QStringLiteral("b"));

    view.onWarnings({error(QStringLiteral("c"))});
    QCOMPARE(view.warnings().size(), 1);
    QCOMPARE(view.warnings().first().toMap().value("description").toString(), QStringLiteral("c"));

    view.onWarnings({});
    QVERIFY(view.warnings().isEmpty());
}

void tst_AppView::aSilencedCategoryKeepsTheWarnings()
{
    ArgumentPlayer player;
    TestView view(&player, nullptr);
    QLoggingCategory::setFilterRules(QStringLiteral("Zemrik.Tessaline.Player.warning=false"));
    LogCapture log;

    view.onWarnings({error(QStringLiteral("a"))});
    QLoggingCategory::setFilterRules(QString());

    QCOMPARE(log.count(QtWarningMsg), 0);
    QCOMPARE(view.warnings().size(), 1);
}

void tst_AppView::withoutAPlayerWarningsAreDropped()
{
    TestView view(nullptr, nullptr);
    LogCapture log;

    view.onWarnings({error(QStringLiteral("a"))});

    QCOMPARE(log.count(QtWarningMsg), 0);
    QVERIFY(view.warnings().isEmpty());
}

void tst_AppView::theContextOfAWarningIsTheViewsOwnDocument_data()
{
    QTest::addColumn<QUrl>("engineUrl");
    QTest::addColumn<QUrl>("contextUrl");
    QTest::addColumn<QString>("name");

    const QUrl engineUrl("file:///engine/Start.qml");
    QTest::newRow("file") << engineUrl << QUrl("file:///host/Window.ui.qml") << "Window";
    QTest::newRow("resource") << engineUrl << QUrl("qrc:/host/View.qml") << "View";
    QTest::newRow("engine's own") << engineUrl << QUrl() << "Start";
}

void tst_AppView::theContextOfAWarningIsTheViewsOwnDocument()
{
    QFETCH(QUrl, engineUrl);
    QFETCH(QUrl, contextUrl);
    QFETCH(QString, name);
    ArgumentPlayer player;
    TestView view(&player, nullptr);
    view.engine()->setBaseUrl(engineUrl);
    QQmlContext context(view.rootContext());
    if (!contextUrl.isEmpty())
        context.setBaseUrl(contextUrl);
    QQmlEngine::setContextForObject(&view, &context);

    view.onWarnings({error(QStringLiteral("a"))});

    QCOMPARE(view.warnings().first().toMap().value("context").toString(), name);
}

void tst_AppView::showViewFollowsTheCommandLine_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("state");
    QTest::addColumn<bool>("frameless");

    QTest::newRow("nothing") << QStringList{} << int(Qt::WindowNoState) << false;
    QTest::newRow("default") << QStringList{"--show", "default"} << int(Qt::WindowNoState) << false;
    QTest::newRow("normal") << QStringList{"--show", "normal"} << int(Qt::WindowNoState) << false;
    QTest::newRow("minimized") << QStringList{"--show", "minimized"} << int(Qt::WindowMinimized)
                               << false;
    QTest::newRow("maximized") << QStringList{"--show", "maximized"} << int(Qt::WindowMaximized)
                               << false;
    QTest::newRow("fullscreen") << QStringList{"--show", "fullscreen"} << int(Qt::WindowFullScreen)
                                << false;
    QTest::newRow("frameless") << QStringList{"--frameless"} << int(Qt::WindowNoState) << true;
    QTest::newRow("frameless and fullscreen")
        << QStringList{"--frameless", "--show", "fullscreen"} << int(Qt::WindowFullScreen) << true;
}

void tst_AppView::showViewFollowsTheCommandLine()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, state);
    QFETCH(bool, frameless);
    ArgumentPlayer player(arguments);
    AppView view(&player, nullptr);

    view.showView();

    QVERIFY(view.isVisible());
    QCOMPARE(int(view.windowState()), state);
    QCOMPARE(view.flags().testFlag(Qt::FramelessWindowHint), frameless);
}

void tst_AppView::withoutAPlayerTheViewIsShownPlainly()
{
    AppView view(nullptr, nullptr);

    view.showView();

    QVERIFY(view.isVisible());
    QVERIFY(!view.flags().testFlag(Qt::FramelessWindowHint));
}

void tst_AppView::showExpandedMaximizes()
{
    AppView view(nullptr, nullptr);

    view.showExpanded();

    QVERIFY(view.isVisible());
    QCOMPARE(view.windowState(), Qt::WindowMaximized);
}

void tst_AppView::quitClosesTheViewOnly()
{
    const AppletFolder applet("import QtQuick 2.15\nItem { function leave() { Qt.quit() } }\n");
    ArgumentPlayer player;
    AppView view(&player, nullptr);
    AppView other(&player, nullptr);
    view.loadApplet(applet.path());
    view.showView();
    other.showView();

    QMetaObject::invokeMethod(view.rootObject(), "leave");

    QVERIFY(!view.isVisible());
    QVERIFY(other.isVisible());
}

void tst_AppView::quittingWhileLoadingEndsTheApplication_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<bool>("selfWilled");
    QTest::newRow("usual") << QStringList{} << false;
    QTest::newRow("fullscreen") << QStringList{"--show", "fullscreen"} << false;
    QTest::newRow("a view with a showView of its own") << QStringList{} << true;
}

// As the document is loaded there is neither a window to close nor an event loop to end.
void tst_AppView::quittingWhileLoadingEndsTheApplication()
{
    QFETCH(QStringList, arguments);
    QFETCH(bool, selfWilled);
    const AppletFolder applet(quittingDocument);
    ArgumentPlayer player(arguments);
    const std::unique_ptr<AppView> view = selfWilled
                                              ? std::make_unique<SelfWilledView>(&player, nullptr)
                                              : std::make_unique<AppView>(&player, nullptr);

    QVERIFY(view->loadApplet(applet.path()));
    view->showView();

    QCOMPARE(view->isVisible(), selfWilled);
    QCOMPARE(runApplication(20000), 0);
    QVERIFY(!view->isVisible());
    QVERIFY(view->rootObject());
}

void tst_AppView::quittingWhileLoadingLeavesOtherWindows()
{
    const AppletFolder applet(quittingDocument);
    ArgumentPlayer player;
    AppView other(&player, nullptr);
    AppView view(&player, nullptr);
    other.showView();

    view.loadApplet(applet.path());
    view.showView();

    QCOMPARE(runApplication(50), stillRunning);
    QVERIFY(!view.isVisible());
    QVERIFY(other.isVisible());
}

void tst_AppView::anotherAppletIsShownAfterOneThatQuitWhileLoading()
{
    const AppletFolder quitting("import QtQuick 2.15\n"
                                "Item {\n"
                                "    Component.onCompleted: Qt.quit()\n"
                                "    Component.onDestruction: Qt.quit()\n"
                                "}\n");
    const AppletFolder staying;
    ArgumentPlayer player;
    AppView view(&player, nullptr);

    view.loadApplet(quitting.path());
    view.loadApplet(staying.path());
    view.showView();

    QCOMPARE(runApplication(50), stillRunning);
    QVERIFY(view.isVisible());
}

void tst_AppView::closingDoesNotDeleteTheView()
{
    const AppletFolder applet;
    ArgumentPlayer player;
    const QPointer<AppView> view = new AppView(&player, nullptr);
    view->loadApplet(applet.path());
    view->showView();

    emit view->engine()->quit();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

    QVERIFY(view);
    QVERIFY(!view->isVisible());
    QVERIFY(view->rootObject());
    delete view;
}

// The document goes while the view is half gone: neither signal may reach the view any more.
void tst_AppView::whatADocumentDoesAtItsEndIsHarmless()
{
    const AppletFolder applet(
        "import QtQuick 2.15\n"
        "Item { Component.onDestruction: { Qt.quit(); noSuchFunction() } }\n");
    ArgumentPlayer player;
    auto view = std::make_unique<TestView>(&player, nullptr);
    view->loadApplet(applet.path());
    view->showView();
    LogCapture log;

    view.reset();

    QCOMPARE(log.count(QtWarningMsg, playerCategory, QStringLiteral("Text:")), 0);
}

void tst_AppView::theViewOutlivesItsPlayer()
{
    auto player = std::make_unique<ArgumentPlayer>(QStringList{QStringLiteral("--frameless")});
    TestView view(player.get(), nullptr);

    player.reset();
    view.onWarnings({error(QStringLiteral("a"))});
    view.showView();

    QVERIFY(view.warnings().isEmpty());
    QVERIFY(view.isVisible());
}

void tst_AppView::appComponentNeedsAContextOfTheView()
{
    const AppView view(nullptr, nullptr);
    LogCapture log;

    QVERIFY(!view.appComponent());

    QCOMPARE(log.count(QtCriticalMsg, playerCategory, QStringLiteral("Null engine")), 1);
}

void tst_AppView::appComponentIsTheContextObject()
{
    App app;
    AppView view(nullptr, nullptr);
    QQmlEngine::setContextForObject(&view, view.rootContext());
    view.rootContext()->setContextObject(&app);
    LogCapture log;

    QCOMPARE(view.appComponent(), &app);

    QCOMPARE(log.count(QtDebugMsg, packageCategory, QStringLiteral("rootContext QQmlContext(")), 1);
    QCOMPARE(log.count(QtDebugMsg, packageCategory, QStringLiteral("App(")), 1);
}

void tst_AppView::appComponentIsNullForOtherObjects()
{
    QObject object;
    AppView view(nullptr, nullptr);
    QQmlEngine::setContextForObject(&view, view.rootContext());
    QVERIFY(!view.appComponent());

    view.rootContext()->setContextObject(&object);
    QVERIFY(!view.appComponent());
}

namespace {

// The child processes: this program, copied to a folder that a test has filled.
int printAdjustedPaths(const AppView &view, const QStringList &paths)
{
    for (const QString &path : paths)
        printf("%s\n", qPrintable(view.adjustPath(path)));
    return 0;
}

int printImportPaths(const AppView &view)
{
    const QStringList paths = view.engine()->importPathList();
    for (const QString &path : paths)
        printf("%s\n", qPrintable(path));
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc > 1 && qstrncmp(argv[1], "--", 2) == 0) {
        IsolatedHome home;
        QGuiApplication application(argc, argv);
        const AppView view(nullptr, nullptr);
        const QStringList arguments = QCoreApplication::arguments();
        return arguments.at(1) == QLatin1String("--adjust")
                   ? printAdjustedPaths(view, arguments.mid(2))
                   : printImportPaths(view);
    }
    return runIsolatedTest<tst_AppView>(argc, argv);
}
#include "tst_AppView.moc"
