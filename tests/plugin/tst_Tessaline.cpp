#include "plugin/Tessaline.h"

#include "files/File.h"
#include "files/FileFolder.h"
#include "files/FileInfo.h"
#include "files/Settings.h"
#include "logging/Logging.h"
#include "network/Network.h"
#include "player/AppletsPlayer.h"
#include "plugin/BinaryData.h"
#include "plugin/Device.h"
#include "plugin/Environment.h"
#include "plugin/FileUtility.h"
#include "plugin/StandardPaths.h"
#include "plugin/UrlInfo.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"

#include <QClipboard>
#include <QImage>
#include <QImageReader>
#include <qpa/qwindowsysteminterface.h>
#include <QPointer>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QScreen>
#include <QSettings>
#include <QSignalSpy>
#include <QSslSocket>
#include <QSysInfo>
#include <QTemporaryDir>

#include <functional>

namespace {

const char *const coreCategory = "Zemrik.Tessaline.Core";

// What follows the words in each line that holds them, in the order of the lines.
QStringList valuesAfter(const LogCapture &log, const QString &words)
{
    QStringList values;
    const auto messages = log.messages();
    for (const LogCapture::Message &message : messages) {
        const int at = message.text.indexOf(words);
        if (at >= 0 && message.category == coreCategory && message.type == QtDebugMsg)
            values.append(message.text.mid(at + words.size()).trimmed());
    }
    return values;
}

void setLogicalDotsPerInch(qreal dpi)
{
    QWindowSystemInterface::handleScreenLogicalDotsPerInchChange(QGuiApplication::primaryScreen(),
                                                                 dpi, dpi);
    QWindowSystemInterface::sendWindowSystemEvents(QEventLoop::AllEvents);
}

// A window of 60 x 40: the left half red, the right half blue.
const QByteArray twoColours = "import QtQuick 2.15\n"
                              "Rectangle { width: 60; height: 40; color: '#ff0000'\n"
                              "    Rectangle { x: 30; width: 30; height: 40; color: '#0000ff' } }";

class TwoColourWindow
{
public:
    TwoColourWindow()
    {
        QQmlComponent component(m_view.engine());
        component.setData(twoColours, QUrl());
        m_view.setContent(QUrl(), nullptr, component.create());
        m_view.show();
    }

    bool isExposed() { return QTest::qWaitForWindowExposed(&m_view); }

private:
    QQuickView m_view;
};

} // namespace

class tst_Tessaline : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void constructionLogsTheScreen();
    void systemValuesComeFromQt();
    void lazyChildrenAreMadeOnceAndOwned();
    void folderPropertiesAreNewObjectsAtEachRead();
    void objectsOfInvokablesBelongToTheScript_data();
    void objectsOfInvokablesBelongToTheScript();

    void homePathIsTheApplicationsPropertyFirst();
    void homePathDefaultsToTheSystems();
    void homePathIsResolvedOnce();
    void homePathIsCleaned();
    void writingTheHomePathMovesTheVariable();
    void writingTheSameHomePathDoesNothing();
    void unresolvedHomePathIsADot();
    void writingAnEmptyHomePathResolvesItAnew();

    void pathVariablesOfTheSystemCount_data();
    void pathVariablesOfTheSystemCount();
    void valuesAreNewWhenTheyAreSignalled();

    void loggingIsTheProcessesOne();
    void onlineStateIsTheNetworks();

    void scaleFactorFollowsTheScreen();
    void scaleFactorIsSignalledAtEachWrite_data();
    void scaleFactorIsSignalledAtEachWrite();
    void changeOfDensityIsLogged();
    void changeOfDensityIsSignalledOnlyWithoutOverride();

    void parentEngineServesWithoutContext();
    void membersTolerateAMissingEngine();
    void storagePathIsSignalledOnlyWhenItDiffers();
    void importPathsAreSignalledAtEachWrite();
    void removingAnImportPathIsSignalledIfItWasThere();
    void clearedComponentCacheReadsFilesAgain();
    void trimmedComponentCacheForgetsUnusedDocuments();
    void collectGarbageLogsAndCollects();

    void playerIsTheContextProperty();
    void playerIsNullFor_data();
    void playerIsNullFor();

    void grabsFailWithoutAWindow();
    void firstQuickWindowIsTaken();
    void clipboardGetsTheWholeWindowOrAPart_data();
    void clipboardGetsTheWholeWindowOrAPart();
    void fileGetsTheWindow_data();
    void fileGetsTheWindow();
    void grabToAnImpossibleFileFails_data();
    void grabToAnImpossibleFileFails();

    void dumpOfANullObject();
    void dumpOfAnObjectIsInOrder();
    void deletedObjectIsNull();
};

void tst_Tessaline::init()
{
    qGuiApp->setProperty("userHomePath", QVariant());
    FileUtility::setPathVariable("HOME", QString());
    FileUtility::setPathVariable("PICTURES", QString());
    setLogicalDotsPerInch(96);
}

void tst_Tessaline::constructionLogsTheScreen()
{
    LogCapture log;
    const Tessaline tessaline;

    const QScreen *screen = QGuiApplication::primaryScreen();
    const QVector<QPair<QString, double>> rows = {
        {"devicePixelRatio", qGuiApp->devicePixelRatio()},
        {"primaryScreen.physicalDotsPerInch", screen->physicalDotsPerInch()},
        {"primaryScreen.logicalDotsPerInch", 96},
        {"referenceDotsPerInch", 72},
    };
    QCOMPARE(log.messages().size(), rows.size());
    for (int i = 0; i < rows.size(); ++i) {
        QVERIFY2(log.messages().at(i).text.contains(rows.at(i).first), qPrintable(log.dump()));
        const double logged = valuesAfter(log, rows.at(i).first).value(0).toDouble();
        QVERIFY(qAbs(logged - rows.at(i).second) < 0.01);
    }
}

void tst_Tessaline::systemValuesComeFromQt()
{
    const Tessaline tessaline;
    QCOMPARE(tessaline.version(), QString("1.2.15"));
    QCOMPARE(tessaline.sslLibraryVersion(), QSslSocket::sslLibraryVersionString());
    QCOMPARE(tessaline.sslLibraryBuildVersion(), QSslSocket::sslLibraryBuildVersionString());
    QCOMPARE(tessaline.osName(), QSysInfo::productType());
    QCOMPARE(tessaline.osDisplayName(), QSysInfo::prettyProductName());
    QCOMPARE(tessaline.osVersion(), QSysInfo::productVersion());
    QCOMPARE(tessaline.kernelType(), QSysInfo::kernelType());
    QCOMPARE(tessaline.kernelVersion(), QSysInfo::kernelVersion());
    QCOMPARE(tessaline.qtVersion(), QString(qVersion()));
}

void tst_Tessaline::lazyChildrenAreMadeOnceAndOwned()
{
    Tessaline tessaline;
    const int before = tessaline.children().size();

    const QVector<QObject *> children{tessaline.settings(), tessaline.environment(),
                                      tessaline.device(), tessaline.standardPaths()};

    QCOMPARE(tessaline.children().size(), before + 4);
    for (const QObject *child : children)
        QCOMPARE(child->parent(), &tessaline);
    QCOMPARE(tessaline.settings(), children.at(0));
    QCOMPARE(tessaline.environment(), children.at(1));
    QCOMPARE(tessaline.device(), children.at(2));
    QCOMPARE(tessaline.standardPaths(), children.at(3));
    QCOMPARE(tessaline.settings()->fileName(), QSettings().fileName());
}

void tst_Tessaline::folderPropertiesAreNewObjectsAtEachRead()
{
    Tessaline tessaline;
    tessaline.setUserHomePath("/home/someone");
    const QScopedPointer<FileFolder> home(tessaline.userHomeFolder());
    const QScopedPointer<FileFolder> homeAgain(tessaline.userHomeFolder());
    const QScopedPointer<FileFolder> temporary(tessaline.temporaryFolder());
    const QScopedPointer<FileFolder> temporaryAgain(tessaline.temporaryFolder());

    QCOMPARE(home->path(), QString("/home/someone"));
    QCOMPARE(temporary->path(), QDir(QDir::tempPath()).absolutePath());
    QVERIFY(home != homeAgain);
    QVERIFY(temporary != temporaryAgain);
    for (QObject *folder : {home.data(), temporary.data()}) {
        QVERIFY(!folder->parent());
        QCOMPARE(QQmlEngine::objectOwnership(folder), QQmlEngine::CppOwnership);
    }
}

using Maker = std::function<QObject *(const Tessaline &)>;
Q_DECLARE_METATYPE(Maker)

void tst_Tessaline::objectsOfInvokablesBelongToTheScript_data()
{
    QTest::addColumn<Maker>("make");
    const auto row = [](const char *name, const Maker &make) { QTest::newRow(name) << make; };
    const QString path("/srv/x");
    const QUrl url("file:///srv/x");
    row("file", [=](const Tessaline &tessaline) { return tessaline.file(path); });
    row("file of a URL", [=](const Tessaline &tessaline) { return tessaline.file(url); });
    row("folder", [=](const Tessaline &tessaline) { return tessaline.fileFolder(path); });
    row("folder of a URL", [=](const Tessaline &tessaline) { return tessaline.fileFolder(url); });
    row("info", [=](const Tessaline &tessaline) { return tessaline.fileInfo(path); });
    row("info of a URL", [=](const Tessaline &tessaline) { return tessaline.fileInfo(url); });
    row("URL", [=](const Tessaline &tessaline) { return tessaline.urlInfo(url); });
    row("bytes", [=](const Tessaline &tessaline) { return tessaline.binaryData(path); });
}

// Also those that are handed on by native code: an engine takes only what it called for itself.
void tst_Tessaline::objectsOfInvokablesBelongToTheScript()
{
    QFETCH(Maker, make);
    const Tessaline tessaline;
    const QScopedPointer<QObject> object(make(tessaline));
    const QScopedPointer<QObject> another(make(tessaline));

    QVERIFY(object != another);
    QVERIFY(!object->parent());
    QCOMPARE(QQmlEngine::objectOwnership(object.data()), QQmlEngine::JavaScriptOwnership);
}

void tst_Tessaline::homePathIsTheApplicationsPropertyFirst()
{
    qGuiApp->setProperty("userHomePath", "/srv/home");
    Tessaline tessaline;
    QSignalSpy spy(&tessaline, &Tessaline::userHomePathChanged);
    LogCapture log;

    QCOMPARE(tessaline.userHomePath(), QString("/srv/home"));

    QCOMPARE(valuesAfter(log, "App property:"), QStringList("\"/srv/home\""));
    QVERIFY(valuesAfter(log, "Default:").isEmpty());
    QCOMPARE(FileUtility::homePath(), QString("/srv/home"));
    QCOMPARE(spy.count(), 0);
}

void tst_Tessaline::homePathDefaultsToTheSystems()
{
    Tessaline tessaline;
    LogCapture log;

    QCOMPARE(tessaline.userHomePath(), QDir::homePath());

    QCOMPARE(valuesAfter(log, "Default:"), QStringList('"' + QDir::homePath() + '"'));
    QVERIFY(valuesAfter(log, "App property:").isEmpty());
}

void tst_Tessaline::homePathIsResolvedOnce()
{
    qGuiApp->setProperty("userHomePath", "/srv/first");
    Tessaline tessaline;
    QCOMPARE(tessaline.userHomePath(), QString("/srv/first"));
    LogCapture log;

    qGuiApp->setProperty("userHomePath", "/srv/second");

    QCOMPARE(tessaline.userHomePath(), QString("/srv/first"));
    QCOMPARE(log.messages().size(), 0);
}

void tst_Tessaline::homePathIsCleaned()
{
    qGuiApp->setProperty("userHomePath", "/srv/home/");
    Tessaline tessaline;
    QCOMPARE(tessaline.userHomePath(), QDir("/srv/home/").path());
    QCOMPARE(FileUtility::homePath(), QString("/srv/home/"));
}

void tst_Tessaline::writingTheHomePathMovesTheVariable()
{
    Tessaline tessaline;
    QSignalSpy spy(&tessaline, &Tessaline::userHomePathChanged);
    LogCapture log;

    tessaline.setUserHomePath("/srv/new");

    QCOMPARE(tessaline.userHomePath(), QString("/srv/new"));
    QCOMPARE(tessaline.resolvedPath(QString("~/a")), QString("/srv/new/a"));
    QCOMPARE(spy.count(), 1);
    QVERIFY(log.count(QtDebugMsg, coreCategory, "/srv/new") == 1);
}

void tst_Tessaline::writingTheSameHomePathDoesNothing()
{
    Tessaline tessaline;
    tessaline.setUserHomePath("/srv/same");
    FileUtility::setHomePath("/srv/other");
    QSignalSpy spy(&tessaline, &Tessaline::userHomePathChanged);
    LogCapture log;

    tessaline.setUserHomePath("/srv/same");

    QCOMPARE(spy.count(), 0);
    QCOMPARE(log.messages().size(), 0);
    QCOMPARE(FileUtility::homePath(), QString("/srv/other"));
}

// What an object that never asked for the home compares with.
void tst_Tessaline::unresolvedHomePathIsADot()
{
    Tessaline tessaline;
    QSignalSpy spy(&tessaline, &Tessaline::userHomePathChanged);

    tessaline.setUserHomePath(".");

    QCOMPARE(spy.count(), 0);
    QCOMPARE(tessaline.userHomePath(), QDir::homePath());
}

void tst_Tessaline::writingAnEmptyHomePathResolvesItAnew()
{
    Tessaline tessaline;
    tessaline.setUserHomePath("/srv/gone");
    QSignalSpy spy(&tessaline, &Tessaline::userHomePathChanged);

    tessaline.setUserHomePath(QString());

    QCOMPARE(spy.count(), 1);
    QCOMPARE(tessaline.userHomePath(), QDir::homePath());
}

void tst_Tessaline::pathVariablesOfTheSystemCount_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("value");
    QTest::newRow("settings") << "TST_STORED"
                              << "/stored";
    QTest::newRow("environment") << "TST_PROCESS"
                                 << "/process";
}

void tst_Tessaline::pathVariablesOfTheSystemCount()
{
    QFETCH(QString, name);
    QFETCH(QString, value);
    QSettings().setValue("Zemrik/Runtime/pathVariables/TST_STORED", "/stored");
    qputenv("TST_PROCESS", "/process");
    const Tessaline tessaline;

    QCOMPARE(tessaline.pathVariable(name), value);
    QCOMPARE(tessaline.resolvedPath('$' + name + "/a"), value + "/a");
    QCOMPARE(tessaline.resolvedPath(QUrl('$' + name + "/a")), value + "/a");
    QCOMPARE(tessaline.resolvedPathUrl('$' + name + "/a"), QUrl::fromLocalFile(value + "/a"));
    QCOMPARE(tessaline.pathVariable("TST_MISSING"), QString());
}

void tst_Tessaline::valuesAreNewWhenTheyAreSignalled()
{
    const QTemporaryDir folder;
    const QString path = QDir(folder.path()).canonicalPath();
    QQmlEngine engine;
    Tessaline tessaline(&engine);
    QStringList seen;
    connect(&tessaline, &Tessaline::userHomePathChanged, this,
            [&] { seen << tessaline.userHomePath() << FileUtility::homePath(); });
    connect(&tessaline, &Tessaline::offlineStoragePathChanged, this,
            [&] { seen << tessaline.offlineStoragePath(); });
    connect(&tessaline, &Tessaline::displayScaleFactorChanged, this,
            [&] { seen << QString::number(tessaline.displayScaleFactor()); });
    connect(&tessaline, &Tessaline::importPathListChanged, this,
            [&] { seen << tessaline.importPathList().value(0); });

    tessaline.setUserHomePath("/srv/seen");
    tessaline.setOfflineStoragePath("/srv/storage");
    tessaline.setDisplayScaleFactor(3);
    tessaline.addImportPath(path);

    QCOMPARE(seen, QStringList({"/srv/seen", "/srv/seen", "/srv/storage", "3", path}));
}

void tst_Tessaline::loggingIsTheProcessesOne()
{
    QVERIFY(!Logging::instance(true));
    const Tessaline tessaline;
    QVERIFY(!Logging::instance(true)); // not before it is asked for

    Logging *logging = tessaline.logging();

    QVERIFY(logging);
    QCOMPARE(logging, Logging::instance(true));
    QCOMPARE(Tessaline().logging(), logging);
    QVERIFY(!logging->parent());
}

void tst_Tessaline::onlineStateIsTheNetworks()
{
    Tessaline tessaline;
    QCOMPARE(tessaline.findChildren<Network *>(), QList<Network *>{tessaline.network()});
    QSignalSpy spy(&tessaline, &Tessaline::onlineStateChanged);
    LogCapture log;

    emit tessaline.network()->onlineStateChanged(true);
    emit tessaline.network()->onlineStateChanged(false);
    QCOMPARE(spy.count(), 2);
    QCOMPARE(spy.at(0).at(0).toBool(), true);
    QCOMPARE(spy.at(1).at(0).toBool(), false);

    for (int reads = 1; reads <= 2; ++reads) {
        QCOMPARE(tessaline.isOnline(), tessaline.network()->isOnline());
        QCOMPARE(
            log.count(QtCriticalMsg, "Zemrik.Tessaline.Network", "*** Deprectated function ***"),
            reads);
    }
}

void tst_Tessaline::scaleFactorFollowsTheScreen()
{
    Tessaline tessaline;
    QCOMPARE(tessaline.displayScaleFactor(), 96 / 72.0);

    setLogicalDotsPerInch(144);
    QCOMPARE(tessaline.displayScaleFactor(), 2.0);

    tessaline.setDisplayScaleFactor(1.5);
    QCOMPARE(tessaline.displayScaleFactor(), 1.5);

    tessaline.setDisplayScaleFactor(-1);
    QCOMPARE(tessaline.displayScaleFactor(), 2.0);
}

void tst_Tessaline::scaleFactorIsSignalledAtEachWrite_data()
{
    QTest::addColumn<double>("factor");
    QTest::addColumn<double>("read");
    QTest::addColumn<int>("resets");
    QTest::newRow("override") << 3.0 << 3.0 << 0;
    QTest::newRow("zero") << 0.0 << 96 / 72.0 << 2;
    QTest::newRow("negative") << -1.0 << 96 / 72.0 << 2;
}

void tst_Tessaline::scaleFactorIsSignalledAtEachWrite()
{
    QFETCH(double, factor);
    QFETCH(double, read);
    QFETCH(int, resets);
    Tessaline tessaline;
    QSignalSpy spy(&tessaline, &Tessaline::displayScaleFactorChanged);
    LogCapture log;

    tessaline.setDisplayScaleFactor(factor);
    tessaline.setDisplayScaleFactor(factor);

    QCOMPARE(spy.count(), 2);
    QCOMPARE(tessaline.displayScaleFactor(), read);
    QCOMPARE(log.count(QtDebugMsg, coreCategory, "Reset to default scale factor"), resets);
}

void tst_Tessaline::changeOfDensityIsLogged()
{
    const Tessaline tessaline;
    LogCapture log;

    setLogicalDotsPerInch(120);

    const auto messages = log.messages();
    QCOMPARE(messages.size(), 4);
    QVERIFY(messages.at(0).text.endsWith("120"));
    const QStringList labels{"devicePixelRatio 1", "primaryScreen.physicalDotsPerInch",
                             "primaryScreen.logicalDotsPerInch 120"};
    for (int i = 0; i < labels.size(); ++i) {
        QCOMPARE(messages.at(i + 1).category, QByteArray(coreCategory));
        QVERIFY2(messages.at(i + 1).text.contains(labels.at(i)), qPrintable(log.dump()));
    }
}

void tst_Tessaline::changeOfDensityIsSignalledOnlyWithoutOverride()
{
    Tessaline tessaline;
    QSignalSpy spy(&tessaline, &Tessaline::displayScaleFactorChanged);

    setLogicalDotsPerInch(144);
    QCOMPARE(spy.count(), 1);

    tessaline.setDisplayScaleFactor(1.0);
    spy.clear();
    setLogicalDotsPerInch(192);
    QCOMPARE(spy.count(), 0);

    tessaline.setDisplayScaleFactor(0);
    spy.clear();
    setLogicalDotsPerInch(96);
    QCOMPARE(spy.count(), 1);
}

void tst_Tessaline::parentEngineServesWithoutContext()
{
    QQmlEngine engine;
    engine.setOfflineStoragePath("/srv/storage");
    const Tessaline tessaline(&engine);
    LogCapture log;

    QVERIFY(!qmlEngine(&tessaline));
    QCOMPARE(tessaline.engine(), &engine);
    QCOMPARE(tessaline.offlineStoragePath(), QString("/srv/storage"));
    QCOMPARE(tessaline.importPathList(), engine.importPathList());
    QCOMPARE(log.messages().size(), 0);
}

void tst_Tessaline::membersTolerateAMissingEngine()
{
    Tessaline tessaline;
    QSignalSpy storageSpy(&tessaline, &Tessaline::offlineStoragePathChanged);
    QSignalSpy importSpy(&tessaline, &Tessaline::importPathListChanged);
    using Call = std::function<void()>;
    const QVector<Call> calls{
        [&] { QVERIFY(!tessaline.engine()); },
        [&] { QVERIFY(tessaline.offlineStoragePath().isEmpty()); },
        [&] { QVERIFY(tessaline.importPathList().isEmpty()); },
        [&] { QVERIFY(!tessaline.player()); },
        [&] { tessaline.setOfflineStoragePath("/srv/storage"); },
        [&] { tessaline.setImportPathList({"/srv/qml"}); },
        [&] { tessaline.addImportPath("/srv/qml"); },
        [&] { tessaline.removeImportPath("/srv/qml"); },
        [&] { tessaline.clearComponentCache(); },
        [&] { tessaline.trimComponentCache(); },
        [&] { tessaline.collectGarbage(); },
    };
    for (const Call &call : calls) {
        LogCapture log;
        call();
        QCOMPARE(log.count(QtCriticalMsg, coreCategory, "Null engine"), 1);
    }
    QCOMPARE(storageSpy.count(), 0);
    QCOMPARE(importSpy.count(), 0);
}

void tst_Tessaline::storagePathIsSignalledOnlyWhenItDiffers()
{
    QQmlEngine engine;
    Tessaline tessaline(&engine);
    QSignalSpy spy(&tessaline, &Tessaline::offlineStoragePathChanged);

    tessaline.setOfflineStoragePath("/srv/storage");
    tessaline.setOfflineStoragePath("/srv/storage");

    QCOMPARE(spy.count(), 1);
    QCOMPARE(engine.offlineStoragePath(), QString("/srv/storage"));
}

void tst_Tessaline::importPathsAreSignalledAtEachWrite()
{
    const QTemporaryDir folders; // the engine takes only folders that exist
    const QString a = QDir(folders.path()).canonicalPath();
    const QTemporaryDir otherFolder;
    const QString b = QDir(otherFolder.path()).canonicalPath();
    QQmlEngine engine;
    Tessaline tessaline(&engine);
    QSignalSpy spy(&tessaline, &Tessaline::importPathListChanged);

    tessaline.setImportPathList({a});
    tessaline.setImportPathList({a});
    QCOMPARE(spy.count(), 2);
    QCOMPARE(engine.importPathList(), QStringList(a));

    tessaline.addImportPath(b);
    QCOMPARE(spy.count(), 3);
    QCOMPARE(tessaline.importPathList(), QStringList({b, a}));
}

void tst_Tessaline::removingAnImportPathIsSignalledIfItWasThere()
{
    const QTemporaryDir folder;
    const QString path = QDir(folder.path()).canonicalPath();
    const QString other = QDir::rootPath();
    QQmlEngine engine;
    Tessaline tessaline(&engine);
    tessaline.setImportPathList({path, other});
    QSignalSpy spy(&tessaline, &Tessaline::importPathListChanged);

    tessaline.removeImportPath(path);
    QCOMPARE(tessaline.importPathList(), QStringList(other));
    QCOMPARE(spy.count(), 1);

    tessaline.removeImportPath(path);
    QCOMPARE(tessaline.importPathList(), QStringList(other));
    QCOMPARE(spy.count(), 1);
}

namespace {

int versionIn(QQmlEngine &engine, const QString &path)
{
    QQmlComponent component(&engine, QUrl::fromLocalFile(path));
    const QScopedPointer<QObject> object(component.create());
    return object ? object->property("version").toInt() : -1;
}

bool writeVersion(const QString &path, int version)
{
    return FileUtility::writeFile(path, "import QtQml 2.15\nQtObject { property int version: "
                                            + QByteArray::number(version) + " }");
}

} // namespace

void tst_Tessaline::clearedComponentCacheReadsFilesAgain()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("Version.qml");
    QQmlEngine engine;
    Tessaline tessaline(&engine);
    QVERIFY(writeVersion(path, 1));
    QCOMPARE(versionIn(engine, path), 1);
    QVERIFY(writeVersion(path, 2));
    QCOMPARE(versionIn(engine, path), 1);

    tessaline.clearComponentCache();

    QCOMPARE(versionIn(engine, path), 2);
}

void tst_Tessaline::trimmedComponentCacheForgetsUnusedDocuments()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("Version.qml");
    QQmlEngine engine;
    Tessaline tessaline(&engine);
    QVERIFY(writeVersion(path, 1));
    QVERIFY(QQmlComponent(&engine, QUrl::fromLocalFile(path)).isReady()); // compiled, no object
    QVERIFY(writeVersion(path, 2));

    QCoreApplication::processEvents(); // the loader lets go of the document
    tessaline.trimComponentCache();

    QCOMPARE(versionIn(engine, path), 2);
}

void tst_Tessaline::collectGarbageLogsAndCollects()
{
    QQmlEngine engine;
    Tessaline tessaline(&engine);
    QPointer<QObject> object(new QObject);
    engine.newQObject(object); // the wrapper owns it, and nothing holds the wrapper
    LogCapture log;

    tessaline.collectGarbage();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

    QVERIFY(!object);
    QCOMPARE(log.count(QtDebugMsg, coreCategory, "collectGarbage"), 1);
}

void tst_Tessaline::playerIsTheContextProperty()
{
    QQmlEngine engine;
    const Tessaline tessaline(&engine);
    AppletsPlayer player(nullptr);
    engine.rootContext()->setContextProperty("player", &player);
    LogCapture log;

    QCOMPARE(tessaline.player(), &player);
    QCOMPARE(log.messages().size(), 0);
}

void tst_Tessaline::playerIsNullFor_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<int>("emptyLines");
    QTest::newRow("no property") << QVariant() << 1;
    QTest::newRow("a null object") << QVariant::fromValue<QObject *>(nullptr) << 0;
    QTest::newRow("another object") << QVariant::fromValue<QObject *>(this) << 0;
    QTest::newRow("a text") << QVariant("player") << 0;
}

void tst_Tessaline::playerIsNullFor()
{
    QFETCH(QVariant, value);
    QFETCH(int, emptyLines);
    QQmlEngine engine;
    const Tessaline tessaline(&engine);
    if (value.isValid())
        engine.rootContext()->setContextProperty("player", value);
    LogCapture log;

    QVERIFY(!tessaline.player());
    QCOMPARE(log.count(QtDebugMsg, coreCategory, "Empty player property"), emptyLines);
}

void tst_Tessaline::grabsFailWithoutAWindow()
{
    Tessaline tessaline;
    QWindow plainWindow; // a window, but no Quick window
    LogCapture log;

    QVERIFY(!tessaline.window());
    QVERIFY(tessaline.grabWindow(QRect()).isNull());
    QVERIFY(!tessaline.grabWindowToClipboard());
    QVERIFY(!tessaline.grabWindowToFile("~/grab.png"));

    QCOMPARE(log.count(QtCriticalMsg, coreCategory, "No QuickWindow found"), 4);
    QVERIFY(!QFile::exists(QDir::home().filePath("grab.png")));
}

void tst_Tessaline::firstQuickWindowIsTaken()
{
    const Tessaline tessaline;
    QWindow plainWindow;
    QQuickWindow first;
    QQuickWindow second;

    QQuickWindow *expected = nullptr;
    const QWindowList windows = QGuiApplication::topLevelWindows();
    for (int i = windows.size() - 1; i >= 0; --i) {
        if (auto *window = qobject_cast<QQuickWindow *>(windows.at(i)))
            expected = window;
    }
    QVERIFY(expected);
    QCOMPARE(tessaline.window(), expected);
}

void tst_Tessaline::clipboardGetsTheWholeWindowOrAPart_data()
{
    QTest::addColumn<QRect>("rect");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QColor>("left");
    QTest::addColumn<QColor>("right");
    const QColor red("#ff0000");
    const QColor blue("#0000ff");
    QTest::newRow("whole") << QRect() << QSize(60, 40) << red << blue;
    QTest::newRow("part") << QRect(20, 5, 20, 10) << QSize(20, 10) << red << blue;
    QTest::newRow("right half") << QRect(30, 0, 30, 40) << QSize(30, 40) << blue << blue;
    QTest::newRow("invalid: no width") << QRect(5, 5, 0, 10) << QSize(60, 40) << red << blue;
    QTest::newRow("invalid: negative") << QRect(5, 5, -3, -3) << QSize(60, 40) << red << blue;
}

void tst_Tessaline::clipboardGetsTheWholeWindowOrAPart()
{
    QFETCH(QRect, rect);
    QFETCH(QSize, size);
    QFETCH(QColor, left);
    QFETCH(QColor, right);
    Tessaline tessaline;
    TwoColourWindow window;
    QVERIFY(window.isExposed());
    QGuiApplication::clipboard()->clear();

    QVERIFY(tessaline.grabWindowToClipboard(rect));

    const QImage image = QGuiApplication::clipboard()->image();
    QCOMPARE(image.size(), size);
    QCOMPARE(image.pixelColor(1, 1), left);
    QCOMPARE(image.pixelColor(size.width() - 2, size.height() - 2), right);
}

void tst_Tessaline::fileGetsTheWindow_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("format");
    QTest::newRow("png") << "~/whole.png" << QDir::home().filePath("whole.png")
                         << QByteArray("png");
    QTest::newRow("bmp") << "~/whole.bmp" << QDir::home().filePath("whole.bmp")
                         << QByteArray("bmp");
    QTest::newRow("jpeg") << "~/whole.jpg" << QDir::home().filePath("whole.jpg")
                          << QByteArray("jpeg");
    QTest::newRow("path variable")
        << "$PICTURES/a.png" << QDir::home().filePath("p/a.png") << QByteArray("png");
    QTest::newRow("relative") << "relative.png" << QDir::current().filePath("relative.png")
                              << QByteArray("png");
}

void tst_Tessaline::fileGetsTheWindow()
{
    QFETCH(QString, path);
    QFETCH(QString, file);
    QFETCH(QByteArray, format);
    Tessaline tessaline;
    QVERIFY(QDir::home().mkpath("p"));
    tessaline.setPathVariable("PICTURES", QDir::home().filePath("p"));
    TwoColourWindow window;
    QVERIFY(window.isExposed());

    QVERIFY(tessaline.grabWindowToFile(path, QRect(0, 0, 60, 20)));

    QCOMPARE(QImageReader::imageFormat(file), format);
    const QImage image(file);
    QVERIFY(QFile::remove(file));
    QCOMPARE(image.size(), QSize(60, 20));
    QVERIFY(image.pixelColor(10, 10).red() > 250 && image.pixelColor(10, 10).blue() < 5);
    QVERIFY(image.pixelColor(50, 10).blue() > 250 && image.pixelColor(50, 10).red() < 5);
}

void tst_Tessaline::grabToAnImpossibleFileFails_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("no folder") << "~/missing/a.png";
    QTest::newRow("unknown suffix") << "~/a.unknown";
    QTest::newRow("no path") << "";
    QTest::newRow("full disk") << "~/full.png";
}

void tst_Tessaline::grabToAnImpossibleFileFails()
{
    QFETCH(QString, path);
    Tessaline tessaline;
    QFile::link("/dev/full", QDir::home().filePath("full.png"));
    TwoColourWindow window;
    QVERIFY(window.isExposed());
    QVERIFY(!tessaline.grabWindowToFile(path));
}

void tst_Tessaline::dumpOfANullObject()
{
    const Tessaline tessaline;
    LogCapture log;

    QCOMPARE(tessaline.objectToString(nullptr), QString("null"));
    QCOMPARE(log.messages().size(), 1);
    QCOMPARE(log.messages().at(0).type, QtDebugMsg);
    QCOMPARE(log.messages().at(0).category, QByteArray(coreCategory));
    QVERIFY(log.messages().at(0).text.contains("QObject(0x0)"));
}

void tst_Tessaline::dumpOfAnObjectIsInOrder()
{
    const Tessaline tessaline;
    QScreen *screen = QGuiApplication::primaryScreen();
    Device device;
    LogCapture log;

    QCOMPARE(tessaline.objectToString(&device), QString());

    QStringList expected{"static className QObject"};
    const QMetaObject *metaObject = device.metaObject();
    for (int i = 0; i < metaObject->propertyCount(); ++i)
        expected << QString("property %1 typeName %2 isEnumType false")
                        .arg(metaObject->property(i).name(), metaObject->property(i).typeName());
    for (int i = 0; i < metaObject->methodCount(); ++i)
        expected << QString("method %1 signature %2")
                        .arg(QString::fromLatin1(metaObject->method(i).name()),
                             QString::fromLatin1(metaObject->method(i).methodSignature()));
    expected << " metaObject className Device"
             << "   metaObject className TessalineObject"
             << "     metaObject className QObject";
    const auto messages = log.messages();
    QCOMPARE(messages.size(), expected.size());
    for (int i = 0; i < expected.size(); ++i) {
        QCOMPARE(messages.at(i).category, QByteArray(coreCategory));
        QCOMPARE(messages.at(i).type, QtDebugMsg);
        QVERIFY2(messages.at(i).text.endsWith(expected.at(i)), qPrintable(messages.at(i).text));
    }

    log.clear();
    tessaline.objectToString(screen);
    QCOMPARE(
        log.count(QtDebugMsg, coreCategory,
                  "property primaryOrientation typeName Qt::ScreenOrientation isEnumType true"),
        1);
}

void tst_Tessaline::deletedObjectIsNull()
{
    QQmlEngine engine;
    const Tessaline tessaline(&engine);
    auto *object = new QObject;
    const QJSValue value = engine.newQObject(object);
    QCOMPARE(tessaline.typeOf(value), QString("QObject"));

    delete object;

    QCOMPARE(tessaline.typeOf(value), QString("null"));
    QVERIFY(!tessaline.instanceOf(value, QJSValue("QObject")));
}

TESSALINE_TEST_MAIN(tst_Tessaline)
#include "tst_Tessaline.moc"
