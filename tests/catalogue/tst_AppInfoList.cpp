#include "catalogue/AppInfoList.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"
#include "support/SignalRecorder.h"

#include <QSettings>
#include <QTest>

class tst_AppInfoList : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void defaultFolders_data();
    void defaultFolders();
    void constructorMakesItsFolders();
    void constructorLeavesTemplatesAndToolboxAlone();
    void settingsMoveTheFolders_data();
    void settingsMoveTheFolders();
    void settingsAreUsedAsTheyStand();
    void settingOfTheFirstAppsPathIsMade();
    void appsSettingIsReadEachTime();
    void dataSettingIsReadOnce();
    void unknownFolderTypeGivesAnEmptyFolder();

    void searchPathsReadTheDefault();
    void searchPathsAreStoredAndSignalled();
    void searchPathsDropEmptyParts();
    void searchPathsOfSeparatorsGiveNoFolder();
    void dataPathIsTheDataFolder();

    void cacheHoldsPackages();
    void cacheSettingMovesTheCache();
    void cacheSettingIsReadOnce();
    void lostCacheIsMadeAgain();
    void cacheThatCannotBeMadeIsLogged();
    void subfolderThatCannotBeMadeIsLogged();
    void parserStatusIsLogged();

private:
    QString m_home;
    QTemporaryDir m_work;
};

namespace {

const char core[] = "Zemrik.Tessaline.Core";

void setSetting(const QString &key, const QVariant &value)
{
    QSettings().setValue(key, value);
}

// A path that can't become a folder, because a file is in its way.
QString blockedPath(const QDir &dir)
{
    QFile file(dir.filePath("file"));
    if (!file.open(QIODevice::WriteOnly))
        qFatal("%s can't be written", qPrintable(file.fileName()));
    return dir.filePath("file/folder");
}

} // namespace

// A home without a catalogue, no settings, and an empty current folder.
void tst_AppInfoList::init()
{
    m_home = QDir::homePath();
    QDir(m_home + "/Zemrik").removeRecursively();
    QSettings().clear();
    QDir(m_work.path()).removeRecursively();
    QVERIFY(QDir().mkpath(m_work.path()));
    QVERIFY(QDir::setCurrent(m_work.path()));
}

void tst_AppInfoList::defaultFolders_data()
{
    QTest::addColumn<AppInfoList::FolderType>("type");
    QTest::addColumn<QString>("name");

    QTest::newRow("apps") << AppInfoList::Apps << "Apps";
    QTest::newRow("templates") << AppInfoList::Templates << "Templates";
    QTest::newRow("tools") << AppInfoList::Tools << "Toolbox";
    QTest::newRow("data") << AppInfoList::Data << "Data";
    QTest::newRow("modules") << AppInfoList::Modules << "Modules";
    QTest::newRow("settings") << AppInfoList::Settings << "Settings";
}

void tst_AppInfoList::defaultFolders()
{
    QFETCH(AppInfoList::FolderType, type);
    QFETCH(QString, name);
    const AppInfoList list(nullptr);

    const QString expected = m_home + "/Zemrik/Halvora/" + name;
    QCOMPARE(list.folderDir(type).path(), expected);
    QCOMPARE(list.folderPath(type), expected);
}

void tst_AppInfoList::constructorMakesItsFolders()
{
    const AppInfoList list(nullptr);

    const QDir top(m_home + "/Zemrik/Halvora");
    for (const char *name : {"Apps", "Data", "Modules", "Settings", ".cache", ".cache/packages"})
        QVERIFY2(QFileInfo(top.filePath(name)).isDir(), name);
}

void tst_AppInfoList::constructorLeavesTemplatesAndToolboxAlone()
{
    const AppInfoList list(nullptr);

    QVERIFY(!list.folderDir(AppInfoList::Templates).exists());
    QVERIFY(!list.folderDir(AppInfoList::Tools).exists());
}

void tst_AppInfoList::settingsMoveTheFolders_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<AppInfoList::FolderType>("type");
    QTest::addColumn<bool>("made");

    QTest::newRow("apps") << "appletsPath" << AppInfoList::Apps << true;
    QTest::newRow("templates") << "templatesPath" << AppInfoList::Templates << false;
    QTest::newRow("tools") << "toolboxPath" << AppInfoList::Tools << false;
    QTest::newRow("data") << "dataPath" << AppInfoList::Data << true;
    QTest::newRow("modules") << "modulesPath" << AppInfoList::Modules << true;
    QTest::newRow("settings") << "settingsPath" << AppInfoList::Settings << true;
}

void tst_AppInfoList::settingsMoveTheFolders()
{
    QFETCH(QString, key);
    QFETCH(AppInfoList::FolderType, type);
    const QString path = m_work.filePath("moved/here");
    setSetting(key, path);

    const AppInfoList list(nullptr);

    QCOMPARE(list.folderPath(type), path);
    QTEST(QFileInfo(path).isDir(), "made");
}

void tst_AppInfoList::settingsAreUsedAsTheyStand()
{
    setSetting("dataPath", "~/x");

    const AppInfoList list(nullptr);

    QCOMPARE(list.dataPath(), QString("~/x"));
    QVERIFY(QFileInfo(m_work.filePath("~/x")).isDir());
    QVERIFY(!QFileInfo::exists(m_home + "/x"));
}

void tst_AppInfoList::settingOfTheFirstAppsPathIsMade()
{
    setSetting("appletsPath", m_work.filePath("one") + ";" + m_work.filePath("two"));

    const AppInfoList list(nullptr);

    QCOMPARE(list.folderPath(AppInfoList::Apps), m_work.filePath("one"));
    QCOMPARE(list.appsSearchPaths(), QStringList({m_work.filePath("one"), m_work.filePath("two")}));
    QVERIFY(QFileInfo(m_work.filePath("one")).isDir());
    QVERIFY(!QFileInfo::exists(m_work.filePath("two")));
}

void tst_AppInfoList::appsSettingIsReadEachTime()
{
    const AppInfoList list(nullptr);

    setSetting("appletsPath", "/later");

    QCOMPARE(list.folderPath(AppInfoList::Apps), QString("/later"));
    QCOMPARE(list.appsSearchPaths(), QStringList("/later"));
}

void tst_AppInfoList::dataSettingIsReadOnce()
{
    const AppInfoList list(nullptr);

    setSetting("dataPath", "/later");

    QCOMPARE(list.dataPath(), m_home + "/Zemrik/Halvora/Data");
}

void tst_AppInfoList::unknownFolderTypeGivesAnEmptyFolder()
{
    const AppInfoList list(nullptr);

    for (const int type : {-1, 6, 1000}) {
        QCOMPARE(list.folderDir(AppInfoList::FolderType(type)), QDir(""));
        QCOMPARE(list.folderPath(AppInfoList::FolderType(type)), QDir("").path());
    }
}

void tst_AppInfoList::searchPathsReadTheDefault()
{
    const AppInfoList list(nullptr);

    QCOMPARE(list.appsSearchPaths(), QStringList(m_home + "/Zemrik/Halvora/Apps"));
}

void tst_AppInfoList::searchPathsAreStoredAndSignalled()
{
    AppInfoList list(nullptr);
    SignalRecorder recorder(&list);

    list.setSearchPaths({"/one", "/two"});

    QCOMPARE(recorder.take(), QStringList("searchPathsChanged"));
    QCOMPARE(list.appsSearchPaths(), QStringList({"/one", "/two"}));
    QCOMPARE(list.folderPath(AppInfoList::Apps), QString("/one"));
    QVERIFY(!QFileInfo::exists("/one"));

    list.setSearchPaths({"/one", "/two"});
    QCOMPARE(recorder.take(), QStringList("searchPathsChanged"));

    list.setSearchPaths({});
    QCOMPARE(list.appsSearchPaths(), QStringList(m_home + "/Zemrik/Halvora/Apps"));
}

void tst_AppInfoList::searchPathsDropEmptyParts()
{
    AppInfoList list(nullptr);

    list.setSearchPaths({"", "/one;/two", "", "/three"});

    QCOMPARE(list.appsSearchPaths(), QStringList({"/one", "/two", "/three"}));
    QCOMPARE(list.folderPath(AppInfoList::Apps), QString("/one"));
}

void tst_AppInfoList::searchPathsOfSeparatorsGiveNoFolder()
{
    AppInfoList list(nullptr);

    list.setSearchPaths({";", ";"});

    QCOMPARE(list.appsSearchPaths(), QStringList());
    QCOMPARE(list.folderDir(AppInfoList::Apps), QDir(""));
}

void tst_AppInfoList::dataPathIsTheDataFolder()
{
    const AppInfoList list(nullptr);

    QCOMPARE(list.dataPath(), list.folderPath(AppInfoList::Data));
}

void tst_AppInfoList::cacheHoldsPackages()
{
    AppInfoList list(nullptr);
    const QString cache = m_home + "/Zemrik/Halvora/.cache";

    QCOMPARE(list.cacheDir().path(), cache);
    QCOMPARE(list.cacheDir(AppInfoList::CacheDir(0)).path(), cache + "/packages");
    QCOMPARE(list.cacheDir(AppInfoList::CacheDir(1)).path(), cache);
    QCOMPARE(list.cacheDir(AppInfoList::CacheDir(-7)).path(), cache);
    QCOMPARE(list.cacheDir(QString("a/b")).path(), cache + "/a/b");
    QVERIFY(QFileInfo(cache + "/a/b").isDir());
}

void tst_AppInfoList::cacheSettingMovesTheCache()
{
    setSetting("cachePath", m_work.filePath("cache"));

    AppInfoList list(nullptr);

    QCOMPARE(list.cacheDir().path(), m_work.filePath("cache"));
    QVERIFY(QFileInfo(m_work.filePath("cache/packages")).isDir());
}

void tst_AppInfoList::cacheSettingIsReadOnce()
{
    AppInfoList list(nullptr);

    setSetting("cachePath", m_work.filePath("later"));

    QCOMPARE(list.cacheDir().path(), m_home + "/Zemrik/Halvora/.cache");
    QVERIFY(!QFileInfo::exists(m_work.filePath("later")));
}

void tst_AppInfoList::lostCacheIsMadeAgain()
{
    AppInfoList list(nullptr);
    QVERIFY(list.cacheDir().removeRecursively());
    LogCapture log;

    QVERIFY(list.cacheDir(AppInfoList::Packages).exists());
    QCOMPARE(log.count(QtCriticalMsg), 0);
}

void tst_AppInfoList::cacheThatCannotBeMadeIsLogged()
{
    const QString path = blockedPath(QDir(m_work.path()));
    setSetting("cachePath", path);
    LogCapture log;

    AppInfoList list(nullptr);

    QCOMPARE(log.count(QtCriticalMsg, core, "Error creating \"" + path + "\""), 1);
    QCOMPARE(log.count(QtCriticalMsg, core, "Error creating subdir: \"" + path + "/packages\""), 1);
    log.clear();
    QCOMPARE(list.cacheDir().path(), path);
    QCOMPARE(log.count(QtCriticalMsg, core, "Error creating"), 1);
}

void tst_AppInfoList::subfolderThatCannotBeMadeIsLogged()
{
    AppInfoList list(nullptr);
    const QString path = blockedPath(list.cacheDir());
    LogCapture log;

    QCOMPARE(list.cacheDir(QString("file/folder")).path(), path);

    QCOMPARE(log.count(QtCriticalMsg), 1);
    QCOMPARE(log.count(QtCriticalMsg, core, "Error creating subdir:"), 1);
}

void tst_AppInfoList::parserStatusIsLogged()
{
    AppInfoList list(nullptr);
    LogCapture log;

    list.classBegin();
    list.componentComplete();

    QCOMPARE(log.count(QtDebugMsg, core, "classBegin"), 1);
    QCOMPARE(log.count(QtDebugMsg, core, "componentComplete"), 1);
}

TESSALINE_TEST_MAIN(tst_AppInfoList)
#include "tst_AppInfoList.moc"
