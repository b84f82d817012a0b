#include "catalogue/App.h"
#include "catalogue/AppDependency.h"
#include "catalogue/AppFolder.h"
#include "catalogue/AppInfo.h"
#include "files/FileFolder.h"
#include "files/Settings.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"
#include "support/SignalRecorder.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QSettings>
#include <QTest>

#include <memory>

// App as applets use it: documents in folders, loaded by an engine. The process has one engine,
// since none may start after the first one has gone.
class tst_App : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void itemWithoutAContextHasNothing();
    void itemFindsItsPlaceOnceItHasAContext();
    void itemIsPaintedWhiteByItsFillColour();
    void lifeIsLogged();

    void folderIsTheDocuments();
    void folderRefusesToMove();
    void folderRefusesToChangeTheDisk();
    void infoIsTheDocuments();
    void infoOfAFolderWithoutFilesIsEmpty();
    void appMayLieInTheResources();
    void baseUrlIsLogged();
    void pointersAreMadeOnce();

    void dependenciesAreListedInOrder();
    void dependenciesShowTheirFields();
    void dependenciesWithoutAnItemIdAreLeftOut();
    void dependenciesAreLogged();
    void dependencyIgnoresCase_data();
    void dependencyIgnoresCase();
    void dependencyTakesTheFirstMatch();
    void dependencyDoesNotForceTheList();
    void hostileDependencyLeadsNowhere();
    void damagedAppInfoIsHarmless_data();
    void damagedAppInfoIsHarmless();

    void environmentIsSetFromTheMetadata();
    void environmentReplacesWhatTheProcessHad();
    void environmentIsInPlaceBeforeTheItemIsComplete();

    void argumentsBelongToTheRootDocument();
    void argumentsOfANestedAppAreEmpty_data();
    void argumentsOfANestedAppAreEmpty();
    void componentOfTheRootDocumentBelongsToIt();

    void settingsAreNamedAfterTheItemId();
    void settingsAreNamedAfterTheFolderWithoutAnItemId();
    void appsWithOneFolderNameShareTheirSettings();
    void settingsFolderCanBeMoved();
    void settingsSurviveTheApp();
    void settingsOfAHostileItemIdAreRefused_data();
    void settingsOfAHostileItemIdAreRefused();

    void backButtonActionIsStored();
    void openUrlReachesTheDocumentAndTheLog();
    void colorChangedIsNotEmitted();

private:
    std::unique_ptr<QObject> load(const QUrl &url);
    std::unique_ptr<App> loadApp(const AppFolder &folder, const QString &document = "main.qml");
    QString settingsFolder() const { return QDir::homePath() + "/Zemrik/Halvora/Settings"; }

    std::unique_ptr<QQmlEngine> m_engine;
};

namespace {

const char core[] = "Zemrik.Tessaline.Core";
const QByteArray plainDocument = "import Zemrik.Tessaline 1.0\nApp {}\n";

QByteArray document(const QByteArray &body)
{
    return "import QtQuick 2.15\nimport Zemrik.Tessaline 1.0\n" + body;
}

QStringList namesOf(App *app)
{
    QStringList names;
    QQmlListProperty<AppDependency> list = app->dependencies();
    for (int i = 0; i < list.count(&list); ++i)
        names.append(list.at(&list, i)->name());
    return names;
}

QJsonObject jsonFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object()
                                          : QJsonObject();
}

} // namespace

void tst_App::initTestCase()
{
    m_engine = std::make_unique<QQmlEngine>();
    m_engine->addImportPath(qEnvironmentVariable("TESSALINE_QML_IMPORT_DIR"));
}

void tst_App::init()
{
    QDir(QDir::homePath() + "/Zemrik").removeRecursively();
    QSettings().clear();
}

std::unique_ptr<QObject> tst_App::load(const QUrl &url)
{
    QQmlComponent component(m_engine.get(), url);
    std::unique_ptr<QObject> object(component.create());
    if (!object)
        qCritical() << component.errors();
    return object;
}

std::unique_ptr<App> tst_App::loadApp(const AppFolder &folder, const QString &document)
{
    std::unique_ptr<QObject> object = load(QUrl::fromLocalFile(folder.filePath(document)));
    std::unique_ptr<App> app(qobject_cast<App *>(object.get()));
    if (!app)
        qFatal("%s has no App as its root", qPrintable(document));
    object.release();
    return app;
}

void tst_App::itemWithoutAContextHasNothing()
{
    App app;
    LogCapture log;

    for (int read = 1; read <= 2; ++read) {
        QCOMPARE(app.folder(), static_cast<FileFolder *>(nullptr));
        QCOMPARE(log.count(QtCriticalMsg, core, "No context"), 2 * read - 1);
        QCOMPARE(app.info(), static_cast<AppInfo *>(nullptr));
        QCOMPARE(log.count(QtCriticalMsg, core, "No context"), 2 * read);
    }

    log.clear();
    QCOMPARE(app.settings(), static_cast<Settings *>(nullptr));
    QCOMPARE(log.count(QtCriticalMsg, core, "Null info"), 1);
    QCOMPARE(namesOf(&app), QStringList());
    QCOMPARE(app.dependency("x"), static_cast<AppDependency *>(nullptr));
    QCOMPARE(app.arguments(), QStringList());
    QCOMPARE(log.count(QtWarningMsg, core, "App is not the root object"), 1);
}

// A null answer isn't kept.
void tst_App::itemFindsItsPlaceOnceItHasAContext()
{
    AppFolder folder;
    folder.appInfo(R"({"dependencies": ["abc"]})").itemInfo(R"({"title": "Late"})");
    QQmlContext context(m_engine.get());
    context.setBaseUrl(QUrl::fromLocalFile(folder.filePath("main.qml")));
    App app;
    QVERIFY(!app.folder() && !app.info() && !app.settings());
    QCOMPARE(namesOf(&app), QStringList());

    QQmlEngine::setContextForObject(&app, &context);

    QCOMPARE(app.folder()->path(), folder.path());
    QCOMPARE(app.info()->title(), QString("Late"));
    QCOMPARE(namesOf(&app), QStringList("abc"));
    QVERIFY(app.settings());
}

void tst_App::itemIsPaintedWhiteByItsFillColour()
{
    const App app;

    QCOMPARE(app.fillColor(), QColor("white"));
    QCOMPARE(app.renderTarget(), QQuickPaintedItem::FramebufferObject);
    QCOMPARE(app.backButtonAction(), App::BackButtonQuit);
}

void tst_App::lifeIsLogged()
{
    AppFolder folder;
    folder.write("main.qml", plainDocument);
    LogCapture log;

    loadApp(folder).reset();

    QStringList steps;
    const QList<LogCapture::Message> messages = log.messages();
    for (const LogCapture::Message &message : messages) {
        for (const char *step : {"App::App", "App::classBegin", "App::componentComplete",
                                 "App::initializeEnvironment", "App::~App"}) {
            if (message.category == core && message.type == QtDebugMsg
                && message.text.contains(QString(step) + "("))
                steps.append(step);
        }
    }
    QCOMPARE(steps, QStringList({"App::App", "App::classBegin", "App::componentComplete",
                                 "App::initializeEnvironment", "App::~App"}));
}

void tst_App::folderIsTheDocuments()
{
    AppFolder folder;
    folder.write("sub/page.qml", plainDocument).write("sub/data.txt", "hello");

    const std::unique_ptr<App> app = loadApp(folder, "sub/page.qml");

    QCOMPARE(app->folder()->path(), folder.filePath("sub"));
    QCOMPARE(app->folder()->readTextFile("data.txt"), QString("hello"));
    QCOMPARE(app->folder()->parent(), app.get());
}

void tst_App::folderRefusesToMove()
{
    AppFolder folder;
    folder.write("main.qml", document("App { function move() { folder.path = '/' } }"));
    const std::unique_ptr<App> app = loadApp(folder);
    LogCapture log;

    QVERIFY(QMetaObject::invokeMethod(app.get(), "move"));

    QCOMPARE(app->folder()->path(), folder.path());
    QVERIFY2(log.dump().contains("This is a constant folder"), qPrintable(log.dump()));
}

void tst_App::folderRefusesToChangeTheDisk()
{
    AppFolder folder;
    folder.write(
        "main.qml",
        document("App { readonly property bool written:"
                 " folder.writeTextFile('a.txt', 'a') || folder.removeFile('main.qml') }"));
    LogCapture log;

    const std::unique_ptr<App> app = loadApp(folder);

    QCOMPARE(app->property("written"), QVariant(false));
    QVERIFY(!folder.contains("a.txt") && folder.contains("main.qml"));
    QVERIFY2(log.dump().contains("This is a read only folder"), qPrintable(log.dump()));
}

void tst_App::infoIsTheDocuments()
{
    AppFolder folder;
    folder.appInfo(R"({"version": {"major": 3}})").itemInfo(R"({"title": "Hello"})");
    folder.write("main.qml",
                 document("App { readonly property string text: info.title + info.version }"));

    const std::unique_ptr<App> app = loadApp(folder);

    QCOMPARE(app->property("text"), QVariant("Hello3.0.1"));
    QCOMPARE(app->info()->path(), folder.path());
    QCOMPARE(app->info()->parent(), app.get());
    QVERIFY(app->info()->isValid());
}

void tst_App::infoOfAFolderWithoutFilesIsEmpty()
{
    AppFolder folder;
    folder.write("main.qml", plainDocument);

    const std::unique_ptr<App> app = loadApp(folder);

    QVERIFY(app->info());
    QVERIFY(!app->info()->isLocal() && app->info()->itemInfo().isEmpty());
    QCOMPARE(namesOf(app.get()), QStringList());
}

void tst_App::appMayLieInTheResources()
{
    const std::unique_ptr<QObject> object = load(QUrl("qrc:/tests/resourceapp/main.qml"));
    const auto app = qobject_cast<App *>(object.get());

    QVERIFY(app);
    QCOMPARE(app->folder()->path(), QString(":/tests/resourceapp"));
    QCOMPARE(app->info()->title(), QString("From the resources"));
    QCOMPARE(namesOf(app), QStringList("one"));
}

void tst_App::baseUrlIsLogged()
{
    AppFolder folder;
    folder.write("main.qml", plainDocument);
    const QString url = QUrl::fromLocalFile(folder.filePath("main.qml")).toString();
    LogCapture log;

    const std::unique_ptr<App> app = loadApp(folder);
    QCOMPARE(log.count(QtDebugMsg, core, "baseUrl QUrl(\"" + url + "\")"), 1);
    app->folder();
    QCOMPARE(log.count(QtDebugMsg, core, "baseUrl QUrl(\"" + url + "\")"), 2);
}

void tst_App::pointersAreMadeOnce()
{
    AppFolder folder;
    folder.write("main.qml", plainDocument);
    const std::unique_ptr<App> app = loadApp(folder);

    QCOMPARE(app->folder(), app->folder());
    QCOMPARE(app->info(), app->info());
    QCOMPARE(app->settings(), app->settings());
    QVERIFY(app->settings());
}

void tst_App::dependenciesAreListedInOrder()
{
    AppFolder folder;
    folder.appInfo(R"({"dependencies": ["zz", {"itemId": "aa", "name": "Map"}, "mm"]})");
    folder.write("main.qml", document("App { readonly property string text:"
                                      " dependencies.length + dependencies[1].itemId }"));

    const std::unique_ptr<App> app = loadApp(folder);

    QCOMPARE(namesOf(app.get()), QStringList({"zz", "Map", "mm"}));
    QCOMPARE(app->property("text"), QVariant("3aa"));
    QQmlListProperty<AppDependency> list = app->dependencies();
    QCOMPARE(list.at(&list, 0)->parent(), app.get());
    QVERIFY(!list.append && !list.clear);
}

void tst_App::dependenciesShowTheirFields()
{
    AppFolder folder;
    folder.appInfo(R"({"dependencies": [{"itemId": "aa", "name": "Map", "type": "Data"}]})");
    folder.write("main.qml", document(R"(
App {
    readonly property AppDependency early: dependency("map")
    readonly property AppDependency map: dependencies.length > 0 ? dependency("map") : null
    readonly property bool isUndefined: map.type === AppDependency.Undefined
    readonly property var fields: [map.typeString, map.itemId, map.name, map.folderPath, map.dataPath]
    readonly property var types: [AppDependency.Undefined, AppDependency.App, AppDependency.Template,
                                  AppDependency.Tool, AppDependency.Data, AppDependency.Module]
})"));

    const std::unique_ptr<App> app = loadApp(folder);

    const QString path = QDir::homePath() + "/Zemrik/Halvora/Data/aa";
    QCOMPARE(app->property("early").value<AppDependency *>(),
             nullptr); // bound before the list is made
    QCOMPARE(app->property("isUndefined"), QVariant(true));
    QCOMPARE(app->property("fields").toStringList(),
             QStringList({"Undefined", "aa", "Map", path, path}));
    QCOMPARE(app->property("types").toStringList(), QStringList({"0", "1", "2", "3", "4", "5"}));
}

void tst_App::dependenciesWithoutAnItemIdAreLeftOut()
{
    AppFolder folder;
    folder.appInfo(R"({"dependencies": [{}, {"name": "no id"}, 5, "abc", "", null]})");
    folder.write("main.qml", plainDocument);

    const std::unique_ptr<App> app = loadApp(folder);

    QCOMPARE(namesOf(app.get()), QStringList("abc"));
    // The empty object makes nothing; the invalid ones stay behind as children.
    QCOMPARE(app->findChildren<AppDependency *>().size(), 3);
}

void tst_App::dependenciesAreLogged()
{
    AppFolder folder;
    folder.appInfo(R"({"dependencies": ["one", {"itemId": "two"}]})");
    folder.write("main.qml", plainDocument);
    LogCapture log;

    const std::unique_ptr<App> app = loadApp(folder);

    QCOMPARE(log.count(QtDebugMsg, core, "one, two"), 1);
}

void tst_App::dependencyIgnoresCase_data()
{
    QTest::addColumn<QString>("call");
    QTest::addColumn<QString>("itemId");

    QTest::newRow("name") << "dependency('Map')"
                          << "a1";
    QTest::newRow("name in another case") << "dependency('mAP')"
                                          << "a1";
    QTest::newRow("name that is an id") << "dependency('B2')"
                                        << "b2";
    QTest::newRow("by item id") << "dependency('itemId', 'A1')"
                                << "a1";
    QTest::newRow("by type") << "dependency('typeString', 'undefined')"
                             << "a1";
    QTest::newRow("part of a name") << "dependency('Ma')"
                                    << "";
    QTest::newRow("unknown value") << "dependency('itemId', 'x')"
                                   << "";
    QTest::newRow("unknown property") << "dependency('nothing', 'x')"
                                      << "";
}

void tst_App::dependencyIgnoresCase()
{
    QFETCH(QString, call);
    AppFolder folder;
    folder.appInfo(R"({"dependencies": [{"itemId": "a1", "name": "Map"}, "b2"]})");
    folder.write("main.qml", document("App { function find() { let d = " + call.toUtf8()
                                      + "; return d ? d.itemId : '' } }"));
    const std::unique_ptr<App> app = loadApp(folder);

    QVariant found;
    QVERIFY(QMetaObject::invokeMethod(app.get(), "find", Q_RETURN_ARG(QVariant, found)));

    QTEST(found.toString(), "itemId");
}

void tst_App::dependencyTakesTheFirstMatch()
{
    AppFolder folder;
    folder.appInfo(
        R"({"dependencies": [{"itemId": "a", "name": "X"}, {"itemId": "b", "name": "x"}]})");
    folder.write("main.qml", plainDocument);
    const std::unique_ptr<App> app = loadApp(folder);

    QCOMPARE(app->dependency("x")->itemId(), QString("a"));
}

void tst_App::dependencyDoesNotForceTheList()
{
    AppFolder folder;
    folder.appInfo(R"({"dependencies": ["abc"]})").write("main.qml", plainDocument);
    QQmlComponent component(m_engine.get(), QUrl::fromLocalFile(folder.filePath("main.qml")));

    const std::unique_ptr<QObject> object(component.beginCreate(m_engine->rootContext()));
    const auto app = qobject_cast<App *>(object.get());
    QVERIFY(app);

    QVERIFY(!app->dependency("abc"));
    component.completeCreate();
    QVERIFY(app->dependency("abc"));
}

void tst_App::hostileDependencyLeadsNowhere()
{
    AppFolder folder;
    folder.appInfo(R"({"dependencies": ["../../secret", "..", "fine"]})");
    folder.write("main.qml", plainDocument);
    const std::unique_ptr<App> app = loadApp(folder);
    LogCapture log;

    QCOMPARE(app->dependency("../../secret")->folderPath(), QString());
    QCOMPARE(app->dependency("..")->dataPath(), QString());
    QCOMPARE(log.count(QtCriticalMsg, core, "Invalid item id"), 2);
    QCOMPARE(app->dependency("fine")->folderPath(), QDir::homePath() + "/Zemrik/Halvora/Data/fine");
}

void tst_App::damagedAppInfoIsHarmless_data()
{
    QTest::addColumn<QByteArray>("json");

    QTest::newRow("empty") << QByteArray();
    QTest::newRow("array") << QByteArray("[]");
    QTest::newRow("cut off") << QByteArray("{\"dependencies\": [");
    QTest::newRow("texts") << QByteArray(R"({"dependencies": "a", "environment": "A=b"})");
    QTest::newRow("numbers") << QByteArray(R"({"dependencies": 1, "environment": 2})");
    QTest::newRow("null") << QByteArray(R"({"dependencies": null, "environment": null})");
    QTest::newRow("wrong way round") << QByteArray(R"({"dependencies": {}, "environment": [1]})");
    QTest::newRow("names that are none")
        << QByteArray(R"({"environment": {"": "a", "A=B": "c", "\u0000": "d"}})");
}

void tst_App::damagedAppInfoIsHarmless()
{
    QFETCH(QByteArray, json);
    AppFolder folder;
    folder.appInfo(json).itemInfo(json).write("main.qml", plainDocument);

    const std::unique_ptr<App> app = loadApp(folder);

    QVERIFY(app->info() && app->folder() && app->settings());
    QVERIFY(app->info()->isValid());
    QCOMPARE(namesOf(app.get()), QStringList());
}

void tst_App::environmentIsSetFromTheMetadata()
{
    AppFolder folder;
    folder.appInfo(R"({"environment": {"TST_APP_TEXT": "ä b", "TST_APP_NUMBER": 5}})");
    folder.write("main.qml", plainDocument);

    const std::unique_ptr<App> app = loadApp(folder);

    QCOMPARE(qgetenv("TST_APP_TEXT"), QByteArray("ä b"));
    QCOMPARE(qgetenv("TST_APP_NUMBER"), QByteArray("5"));
}

void tst_App::environmentReplacesWhatTheProcessHad()
{
    qputenv("TST_APP_OLD", "process");
    qputenv("TST_APP_OTHER", "process");
    AppFolder folder;
    folder.appInfo(R"({"environment": {"TST_APP_OLD": "app"}})").write("main.qml", plainDocument);

    const std::unique_ptr<App> app = loadApp(folder);

    QCOMPARE(qgetenv("TST_APP_OLD"), QByteArray("app"));
    QCOMPARE(qgetenv("TST_APP_OTHER"), QByteArray("process"));
}

// Anchors take effect in the item's own completion, so the width changes while it completes.
void tst_App::environmentIsInPlaceBeforeTheItemIsComplete()
{
    qunsetenv("TST_APP_EARLY");
    AppFolder folder;
    folder.appInfo(R"({"environment": {"TST_APP_EARLY": "there"}})");
    folder.write("main.qml", document(R"(
Item {
    property string seen: "no completion"
    width: 100
    App {
        anchors.fill: parent
        onWidthChanged: parent.seen = Tessaline.environment.value("TST_APP_EARLY", "absent")
    }
})"));

    const std::unique_ptr<QObject> item = load(QUrl::fromLocalFile(folder.filePath("main.qml")));

    QCOMPARE(item->property("seen"), QVariant("there"));
}

void tst_App::argumentsBelongToTheRootDocument()
{
    AppFolder folder;
    folder.write("main.qml", plainDocument);
    folder.write("inside.qml", document("Item { property App app: App {} }"));
    LogCapture log;

    const std::unique_ptr<App> app = loadApp(folder);
    QCOMPARE(app->arguments(), QCoreApplication::arguments());
    QVERIFY(!app->arguments().isEmpty());

    // It is the document that counts, not the place in it.
    const std::unique_ptr<QObject> item = load(QUrl::fromLocalFile(folder.filePath("inside.qml")));
    QCOMPARE(item->property("app").value<App *>()->arguments(), QCoreApplication::arguments());
    QCOMPARE(log.count(QtWarningMsg), 0);
}

void tst_App::argumentsOfANestedAppAreEmpty_data()
{
    QTest::addColumn<QByteArray>("main");

    QTest::newRow("inside another document's root") << QByteArray("Outer {}");
    QTest::newRow("in a Loader") << QByteArray(
        "Loader { property App app: item; source: 'Inner.qml' }");
    QTest::newRow("made by a script")
        << QByteArray("Item { property App app:"
                      " Qt.createComponent('Inner.qml').createObject(this) }");
}

void tst_App::argumentsOfANestedAppAreEmpty()
{
    QFETCH(QByteArray, main);
    AppFolder folder;
    folder.write("Inner.qml", plainDocument);
    folder.write("Outer.qml", document("Item { property App app: App {} }"));
    folder.write("main.qml", document(main));
    const std::unique_ptr<QObject> item = load(QUrl::fromLocalFile(folder.filePath("main.qml")));
    const auto app = item->property("app").value<App *>();
    QVERIFY(app);
    LogCapture log;

    QCOMPARE(app->arguments(), QStringList());
    QCOMPARE(log.count(QtWarningMsg, core, "App is not the root object"), 1);
    QCOMPARE(app->arguments(), QStringList());
    QCOMPARE(log.count(QtWarningMsg, core, "App is not the root object"), 2);
}

// The engine gives the root of a component the context of the document that uses it.
void tst_App::componentOfTheRootDocumentBelongsToIt()
{
    AppFolder folder;
    folder.appInfo("{}").itemInfo(R"({"title": "Outside"})");
    folder.write("part/Inner.qml", plainDocument).write("part/iteminfo.json", "{}");
    folder.write("main.qml", document("import 'part'\nItem { property App app: Inner {} }"));
    const std::unique_ptr<QObject> item = load(QUrl::fromLocalFile(folder.filePath("main.qml")));
    const auto app = item->property("app").value<App *>();
    QVERIFY(app);

    QCOMPARE(app->arguments(), QCoreApplication::arguments());
    QCOMPARE(app->folder()->path(), folder.path());
    QCOMPARE(app->info()->title(), QString("Outside"));
}

void tst_App::settingsAreNamedAfterTheItemId()
{
    AppFolder folder;
    folder.itemInfo(R"({"id": "abc"})").write("main.qml", plainDocument);
    const std::unique_ptr<App> app = loadApp(folder);
    LogCapture log;

    QCOMPARE(app->settings()->path(), settingsFolder() + "/abc.json");
    QCOMPARE(app->settings()->format(), Settings::jsonFormat());
    QCOMPARE(app->settings()->parent(), app.get());
    QCOMPARE(log.count(QtDebugMsg, core, settingsFolder() + "/abc.json"), 1);
}

void tst_App::settingsAreNamedAfterTheFolderWithoutAnItemId()
{
    AppFolder folder;
    folder.write("my.app/main.qml", plainDocument);
    const std::unique_ptr<App> app = loadApp(folder, "my.app/main.qml");

    QCOMPARE(app->settings()->path(), settingsFolder() + "/my.app.json");
}

void tst_App::appsWithOneFolderNameShareTheirSettings()
{
    AppFolder folder;
    folder.write("one/app/main.qml", plainDocument).write("two/app/main.qml", plainDocument);
    const std::unique_ptr<App> one = loadApp(folder, "one/app/main.qml");
    const std::unique_ptr<App> two = loadApp(folder, "two/app/main.qml");

    one->settings()->setValue("key", "value");

    QCOMPARE(two->settings()->value("key"), QVariant("value"));
    QCOMPARE(one->settings()->path(), two->settings()->path());
}

void tst_App::settingsFolderCanBeMoved()
{
    AppFolder folder;
    folder.itemInfo(R"({"id": "abc"})").write("main.qml", plainDocument);
    QSettings().setValue("settingsPath", folder.filePath("settings"));

    const std::unique_ptr<App> app = loadApp(folder);

    QCOMPARE(app->settings()->path(), folder.filePath("settings/abc.json"));
}

void tst_App::settingsSurviveTheApp()
{
    AppFolder folder;
    folder.itemInfo(R"({"id": "abc"})");
    folder.write("main.qml", document("App { Component.onCompleted: {"
                                      " settings.setValue('count', settings.value('count', 0) + 1);"
                                      " settings.setValue('group/name', 'x') } }"));

    for (int start = 1; start <= 2; ++start) {
        loadApp(folder).reset();
        QCOMPARE(jsonFile(settingsFolder() + "/abc.json"),
                 QJsonObject({{"count", start}, {"group/name", "x"}}));
    }
    QVERIFY(!folder.contains("abc.json"));
}

void tst_App::settingsOfAHostileItemIdAreRefused_data()
{
    QTest::addColumn<QByteArray>("itemId");

    QTest::newRow("folder above") << QByteArray("..");
    QTest::newRow("this folder") << QByteArray(".");
    QTest::newRow("path up") << QByteArray("../escaped");
    QTest::newRow("path down") << QByteArray("a/b");
    QTest::newRow("absolute") << QByteArray("/tmp/escaped");
    QTest::newRow("resource") << QByteArray(":/escaped");
    QTest::newRow("NUL") << QByteArray("a\\u0000b");
}

void tst_App::settingsOfAHostileItemIdAreRefused()
{
    QFETCH(QByteArray, itemId);
    AppFolder folder;
    folder.itemInfo("{\"id\": \"" + itemId + "\"}").write("main.qml", plainDocument);
    const std::unique_ptr<App> app = loadApp(folder);
    LogCapture log;

    for (int read = 1; read <= 2; ++read) {
        QCOMPARE(app->settings(), static_cast<Settings *>(nullptr));
        QCOMPARE(log.count(QtCriticalMsg, core, "Invalid item id"), read);
    }
    QVERIFY(!QFileInfo::exists(QDir::homePath() + "/Zemrik"));
}

void tst_App::backButtonActionIsStored()
{
    AppFolder folder;
    folder.write("main.qml", document("App { backButtonAction: App.BackButtonIgnore }"));
    const std::unique_ptr<App> app = loadApp(folder);
    SignalRecorder recorder(app.get());

    QCOMPARE(app->backButtonAction(), App::BackButtonIgnore);
    for (const auto action : {App::BackButtonQuit, App::BackButtonSignal, App::BackButtonIgnore}) {
        QVERIFY(app->setProperty("backButtonAction", action));
        QCOMPARE(app->property("backButtonAction").toInt(), int(action));
    }
    QCOMPARE(recorder.names(), QStringList());
}

void tst_App::openUrlReachesTheDocumentAndTheLog()
{
    AppFolder folder;
    folder.write("main.qml",
                 document("App { property url last; property bool back: false;"
                          " onOpenUrl: last = url; onBackButtonClicked: back = true }"));
    const std::unique_ptr<App> app = loadApp(folder);
    LogCapture log;

    emit app->openUrl(QUrl("hello://there/x"));
    emit app->backButtonClicked();

    QCOMPARE(app->property("last"), QVariant(QUrl("hello://there/x")));
    QCOMPARE(app->property("back"), QVariant(true));
    QCOMPARE(log.count(QtDebugMsg, core, "hello://there/x"), 1);
}

void tst_App::colorChangedIsNotEmitted()
{
    App app;
    SignalRecorder recorder(&app);

    app.setFillColor(Qt::red);

    QVERIFY(recorder.names().contains("fillColorChanged"));
    QVERIFY(!recorder.names().contains("colorChanged"));
}

TESSALINE_TEST_MAIN(tst_App)
#include "tst_App.moc"
