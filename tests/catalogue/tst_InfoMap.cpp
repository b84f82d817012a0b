#include "catalogue/InfoMap.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"

#include <QFile>
#include <QLoggingCategory>
#include <QTemporaryDir>
#include <QTest>

class tst_InfoMap : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data();
    void init();

    void isEmptyAtFirst();
    void readsWhatTheFileSaid();
    void allOfItIsTheSame();
    void isChangedInPlace();
    void copiesAreTheirOwn();
    void ofAMap();
    void ofNothing_data();
    void ofNothing();
    void damageIsToldAtTheReading();

private:
    InfoMap read(const QByteArray &json) const;

    QTemporaryDir m_dir;
};

InfoMap tst_InfoMap::read(const QByteArray &json) const
{
    QFile file(m_dir.filePath("info.json"));
    if (!file.open(QIODevice::WriteOnly) || file.write(json) != json.size())
        qFatal("no file");
    file.close();
    return InfoMap::read(file.fileName());
}

// A text is parsed at once where somebody may read what is wrong with it, else when it's needed.
void tst_InfoMap::initTestCase_data()
{
    QTest::addColumn<bool>("logged");
    QTest::newRow("parsed at once") << true;
    QTest::newRow("parsed when needed") << false;
}

void tst_InfoMap::init()
{
    QFETCH_GLOBAL(bool, logged);
    QLoggingCategory::setFilterRules(logged ? "*.debug=true" : "*.debug=false");
}

void tst_InfoMap::isEmptyAtFirst()
{
    const InfoMap info;
    QVERIFY(info.isEmpty());
    QVERIFY(!info.contains(""));
    QVERIFY(!info.value("a").isValid());
    QCOMPARE(info.value("a", 1), QVariant(1));
    QCOMPARE(info.map(), QVariantMap());
}

// What was in it when it was read, whatever becomes of the file.
void tst_InfoMap::readsWhatTheFileSaid()
{
    const InfoMap info = read(R"({"title": "One", "tags": ["a", "b"], "nothing": null})");
    QVERIFY(QFile::remove(m_dir.filePath("info.json")));
    QVERIFY(!info.isEmpty());
    QCOMPARE(info.value("title"), QVariant("One"));
    QCOMPARE(info.value("tags").toStringList(), QStringList({"a", "b"}));
    QVERIFY(info.contains("nothing"));
    QVERIFY(!info.value("nothing", "default").isValid());
    QVERIFY(!info.contains("missing"));
    QCOMPARE(info.value("missing", "default"), QVariant("default"));
}

// Before and after all of it was asked for.
void tst_InfoMap::allOfItIsTheSame()
{
    const InfoMap info = read(R"({"a": 1, "b": {"c": 2.5}})");
    const QVariantMap map{{"a", qint64(1)}, {"b", QVariantMap{{"c", 2.5}}}};
    const auto check = [&] {
        QVERIFY(!info.isEmpty());
        QVERIFY(info.contains("a"));
        QCOMPARE(info.value("a"), map.value("a"));
        QCOMPARE(info.value("b"), map.value("b"));
        QCOMPARE(info.value("c", 3), QVariant(3));
    };
    check();
    QCOMPARE(info.map(), map);
    check();
}

void tst_InfoMap::isChangedInPlace()
{
    InfoMap info = read(R"({"a": 1, "b": 2})");
    info.map().insert("a", "new");
    info.map().insert("c", 3);
    QCOMPARE(info.value("a"), QVariant("new"));
    QCOMPARE(info.value("b"), QVariant(2));
    QVERIFY(info.contains("c"));
    info.map().clear();
    QVERIFY(info.isEmpty());
    QVERIFY(!info.contains("b"));
}

void tst_InfoMap::copiesAreTheirOwn()
{
    const InfoMap info = read(R"({"a": 1})");
    InfoMap copy = info;
    copy.map().insert("a", 2);
    QCOMPARE(info.value("a"), QVariant(1));
    QCOMPARE(copy.value("a"), QVariant(2));
}

void tst_InfoMap::ofAMap()
{
    InfoMap info = read(R"({"a": 1})");
    info = QVariantMap{{"b", 2}};
    QVERIFY(!info.contains("a"));
    QCOMPARE(info.map(), QVariantMap({{"b", 2}}));
}

void tst_InfoMap::ofNothing_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("empty file") << QByteArray();
    QTest::newRow("empty object") << QByteArray("{}");
    QTest::newRow("list") << QByteArray("[1, 2]");
    QTest::newRow("damaged") << QByteArray(R"({"a": 1, )");
}

void tst_InfoMap::ofNothing()
{
    QFETCH(QByteArray, json);
    InfoMap info = read(json);
    QVERIFY(info.isEmpty());
    QVERIFY(!info.contains("a"));
    QCOMPARE(info.value("a", 5), QVariant(5));
    info.map().insert("a", 1);
    QCOMPARE(info.map(), QVariantMap({{"a", 1}}));
    QVERIFY(InfoMap::read(m_dir.filePath("missing.json")).isEmpty());
}

// And not at some later time, when somebody asks for a key.
void tst_InfoMap::damageIsToldAtTheReading()
{
    QFETCH_GLOBAL(bool, logged);
    if (!logged)
        return;
    LogCapture log;
    const InfoMap info = read(R"({"a": 1, )");
    QCOMPARE(log.count(QtDebugMsg, "Zemrik.Runtime.Utility",
                       "static QVariantMap JsonUtility::toVariantMap(const QByteArray&, bool) "
                       "Error 1 Offset 9 \"unterminated object\""),
             1);
    QVERIFY(!info.value("a").isValid());
    QCOMPARE(log.count(QtDebugMsg, "Zemrik.Runtime.Utility", "Error"), 1);
}

TESSALINE_TEST_MAIN(tst_InfoMap)
#include "tst_InfoMap.moc"
