#include "catalogue/AppDependency.h"
#include "catalogue/AppFolder.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"

#include <QSettings>
#include <QTest>

class tst_AppDependency : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void mapFillsTheFields_data();
    void mapFillsTheFields();
    void mapConstructorTouchesNoFile();
    void folderConstructorReadsTheItem();
    void emptyFolderIsNotResolvedYet();
    void typeIsAlwaysUndefined();
    void folderIsFoundInTheDataFolder();
    void moduleIsLookedForInTheDataFolderToo();
    void emptyItemIdStandsForTheDataFolder();
    void dataPathUsesTheItemsOwnName();
    void dataPathIsTheFolderOfAnAbsentItem();
    void dataPathResolvesTheFolderItself();
    void folderIsResolvedOnce();
    void hostileItemIdIsRefused_data();
    void hostileItemIdIsRefused();
    void hostileFileNameIsRefused_data();
    void hostileFileNameIsRefused();
    void damagedItemInfoIsHarmless_data();
    void damagedItemInfoIsHarmless();

private:
    void writeItem(const QString &itemId, const QByteArray &json);

    QTemporaryDir m_data;
};

namespace {

const char core[] = "Zemrik.Tessaline.Core";

QString folderOf(AppDependency &&dependency)
{
    return dependency.folderPath();
}

} // namespace

void tst_AppDependency::init()
{
    QDir(m_data.path()).removeRecursively();
    QVERIFY(QDir().mkpath(m_data.path()));
    QSettings().clear();
    QSettings().setValue("dataPath", m_data.path());
}

void tst_AppDependency::writeItem(const QString &itemId, const QByteArray &json)
{
    const QString folder = m_data.filePath(itemId);
    QVERIFY(QDir().mkpath(folder));
    QFile file(folder + "/iteminfo.json");
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(json) == json.size());
}

void tst_AppDependency::mapFillsTheFields_data()
{
    QTest::addColumn<QVariantMap>("map");
    QTest::addColumn<QString>("itemId");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("valid");

    const auto row = [](const char *title, const QVariantMap &map, const QString &itemId,
                        const QString &name,
                        bool valid) { QTest::newRow(title) << map << itemId << name << valid; };
    row("id and name", {{"itemId", "abc"}, {"name", "map"}}, "abc", "map", true);
    row("id only", {{"itemId", "abc"}}, "abc", "abc", true);
    row("empty name", {{"itemId", "abc"}, {"name", ""}}, "abc", "abc", true);
    row("name only", {{"name", "map"}}, "", "map", false);
    row("empty id", {{"itemId", ""}, {"name", "map"}}, "", "map", false);
    row("nothing", {}, "", "", false);
    row("number as id", {{"itemId", 7}}, "7", "7", true);
    row("list as id", {{"itemId", QVariantList{"a"}}}, "", "", false);
    row("map as id", {{"itemId", QVariantMap{{"a", 1}}}, {"name", "x"}}, "", "x", false);
}

void tst_AppDependency::mapFillsTheFields()
{
    QFETCH(QVariantMap, map);
    const AppDependency dependency(map);

    QTEST(dependency.itemId(), "itemId");
    QTEST(dependency.name(), "name");
    QTEST(dependency.isValid(), "valid");
    QCOMPARE(dependency.dependencyInfo(), map);
}

void tst_AppDependency::mapConstructorTouchesNoFile()
{
    QVERIFY(QDir(m_data.path()).removeRecursively());
    LogCapture log;

    const AppDependency dependency(QVariantMap{{"itemId", "abc"}});

    QVERIFY(!QFileInfo::exists(m_data.path()));
    QCOMPARE(log.messages().size(), 1);
    QCOMPARE(log.count(QtDebugMsg, core, "abc"), 1);
}

void tst_AppDependency::folderConstructorReadsTheItem()
{
    AppFolder folder;
    folder.itemInfo(R"({"title": "A title", "name": "map.tpk"})");
    LogCapture log;

    AppDependency dependency(folder.path());

    QCOMPARE(log.count(QtDebugMsg, core, folder.path()), 1);
    QCOMPARE(log.count(QtDebugMsg, core, "A title"), 1);
    QVERIFY(!dependency.isValid());
    QVERIFY(dependency.itemId().isEmpty() && dependency.name().isEmpty());
    QCOMPARE(dependency.folderPath(), folder.path());
    QCOMPARE(dependency.dataPath(), folder.filePath("map.tpk"));
}

// QDir has one path for "here" and for "nowhere".
void tst_AppDependency::emptyFolderIsNotResolvedYet()
{
    for (const char *path : {"", "."})
        QCOMPARE(folderOf(AppDependency(QString(path))), m_data.path());
}

void tst_AppDependency::typeIsAlwaysUndefined()
{
    const AppDependency dependency(
        QVariantMap{{"itemId", "abc"}, {"type", "App"}, {"typeString", "App"}});

    QCOMPARE(dependency.type(), AppDependency::Undefined);
    QCOMPARE(int(dependency.type()), 0);
    QCOMPARE(dependency.typeString(), QString("Undefined"));
}

void tst_AppDependency::folderIsFoundInTheDataFolder()
{
    writeItem("abc", R"({"title": "A title"})");
    AppDependency dependency(QVariantMap{{"itemId", "abc"}});
    LogCapture log;

    QCOMPARE(dependency.folderPath(), m_data.filePath("abc"));

    QCOMPARE(log.count(QtDebugMsg, core, "A title"), 1);
    QCOMPARE(log.count(QtDebugMsg, core, m_data.filePath("abc")), 1);
}

void tst_AppDependency::moduleIsLookedForInTheDataFolderToo()
{
    QCOMPARE(folderOf(AppDependency(QVariantMap{{"itemId", "abc"}, {"type", "Module"}})),
             m_data.filePath("abc"));
}

void tst_AppDependency::emptyItemIdStandsForTheDataFolder()
{
    AppDependency dependency(QVariantMap{{"name", "map"}});

    QCOMPARE(dependency.folderPath(), m_data.path());
    QCOMPARE(dependency.dataPath(), m_data.path());
    QCOMPARE(dependency.name(), QString("map"));
}

void tst_AppDependency::dataPathUsesTheItemsOwnName()
{
    writeItem("abc", R"({"name": "map.tpk"})");
    AppDependency dependency(QVariantMap{{"itemId", "abc"}, {"name", "basemap"}});

    QCOMPARE(dependency.name(), QString("basemap"));
    QCOMPARE(dependency.dataPath(), m_data.filePath("abc/map.tpk"));
}

void tst_AppDependency::dataPathIsTheFolderOfAnAbsentItem()
{
    AppDependency dependency(QVariantMap{{"itemId", "abc"}, {"name", "basemap"}});

    QCOMPARE(dependency.dataPath(), m_data.filePath("abc"));
    QVERIFY(!QFileInfo::exists(m_data.filePath("abc")));
}

void tst_AppDependency::dataPathResolvesTheFolderItself()
{
    writeItem("abc", R"({"name": "map.tpk"})");

    AppDependency dependency(QVariantMap{{"itemId", "abc"}});
    LogCapture log;

    QCOMPARE(dependency.dataPath(), m_data.filePath("abc/map.tpk"));

    QCOMPARE(log.count(QtDebugMsg, core, m_data.filePath("abc")), 1);
}

// The catalogue that is asked makes its folders, so one that stays away wasn't asked.
void tst_AppDependency::folderIsResolvedOnce()
{
    writeItem("abc", R"({"name": "map.tpk"})");
    AppDependency dependency(QVariantMap{{"itemId", "abc"}});
    QCOMPARE(dependency.folderPath(), m_data.filePath("abc"));
    const QString catalogue = QDir::homePath() + "/Zemrik";
    QVERIFY(QDir(catalogue).removeRecursively());
    writeItem("abc", R"({"name": "later.tpk"})");

    QCOMPARE(dependency.folderPath(), m_data.filePath("abc"));
    QCOMPARE(dependency.dataPath(), m_data.filePath("abc/map.tpk"));

    QVERIFY(!QFileInfo::exists(catalogue));
}

void tst_AppDependency::hostileItemIdIsRefused_data()
{
    QTest::addColumn<QString>("itemId");

    QTest::newRow("this folder") << ".";
    QTest::newRow("folder above") << "..";
    QTest::newRow("path up") << "../../secret";
    QTest::newRow("path down") << "a/b";
    QTest::newRow("absolute") << "/etc";
    QTest::newRow("slash") << "/";
    QTest::newRow("resource") << ":images";
    QTest::newRow("NUL") << QString::fromLatin1("a\0b", 3);
}

void tst_AppDependency::hostileItemIdIsRefused()
{
    QFETCH(QString, itemId);
    const QString catalogue = QDir::homePath() + "/Zemrik";
    QDir(catalogue).removeRecursively();
    AppDependency dependency(QVariantMap{{"itemId", itemId}});
    LogCapture log;

    QCOMPARE(dependency.folderPath(), QString());
    QCOMPARE(dependency.dataPath(), QString());

    QCOMPARE(dependency.itemId(), itemId);
    QCOMPARE(log.count(QtCriticalMsg, core, "Invalid item id"), 2);
    QVERIFY(!QFileInfo::exists(catalogue));
}

void tst_AppDependency::hostileFileNameIsRefused_data()
{
    QTest::addColumn<QByteArray>("json");

    QTest::newRow("folder above") << QByteArray(R"({"name": ".."})");
    QTest::newRow("this folder") << QByteArray(R"({"name": "."})");
    QTest::newRow("path up") << QByteArray(R"({"name": "../secret"})");
    QTest::newRow("absolute") << QByteArray(R"({"name": "/etc/passwd"})");
    QTest::newRow("resource") << QByteArray(R"({"name": ":/images/defaultThumbnail.png"})");
    QTest::newRow("NUL") << QByteArray(R"({"name": "a\u0000b"})");
}

void tst_AppDependency::hostileFileNameIsRefused()
{
    QFETCH(QByteArray, json);
    writeItem("abc", json);
    AppDependency dependency(QVariantMap{{"itemId", "abc"}});
    LogCapture log;

    QCOMPARE(dependency.dataPath(), m_data.filePath("abc"));
    QCOMPARE(log.count(QtCriticalMsg, core, "Invalid file name"), 1);
}

void tst_AppDependency::damagedItemInfoIsHarmless_data()
{
    QTest::addColumn<QByteArray>("json");

    QTest::newRow("empty") << QByteArray();
    QTest::newRow("array") << QByteArray("[]");
    QTest::newRow("cut off") << QByteArray("{\"name\": \"a");
    QTest::newRow("name is a list") << QByteArray(R"({"name": [1]})");
    QTest::newRow("name is null") << QByteArray(R"({"name": null})");
    QTest::newRow("name is an object") << QByteArray(R"({"name": {"a": 1}, "title": []})");
}

void tst_AppDependency::damagedItemInfoIsHarmless()
{
    QFETCH(QByteArray, json);
    writeItem("abc", json);

    QCOMPARE(AppDependency(QVariantMap{{"itemId", "abc"}}).dataPath(), m_data.filePath("abc"));
}

TESSALINE_TEST_MAIN(tst_AppDependency)
#include "tst_AppDependency.moc"
