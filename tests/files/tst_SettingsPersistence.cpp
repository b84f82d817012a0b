#include "files/Settings.h"
#include "support/IsolatedHome.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQmlExpression>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>

// Declared properties over several processes. The test starts itself with "--child": that process
// loads a document with a Settings element, evaluates an expression, prints its value as JSON and
// ends as a program does. What needs no second process is evaluated in this one.
class tst_SettingsPersistence : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void declaredValuesAreStoredByTheFirstRun_data() { stores(); }
    void declaredValuesAreStoredByTheFirstRun();
    void changesLastToTheNextProcess_data() { stores(); }
    void changesLastToTheNextProcess();
    void clearedTextIsDeclaredAnewInTheNextProcess_data() { stores(); }
    void clearedTextIsDeclaredAnewInTheNextProcess();
    void untypedPropertyTakesTheStoredTextAsItIs();
    void boolValueReadsTheTextOfAnIniStore();
    void unconvertibleValueStaysInTheFile_data();
    void unconvertibleValueStaysInTheFile();
    void declarationsOfAClassAreThoseOfItsDocument();
    void hostileJsonFileLeavesTheDeclaredValues_data();
    void hostileJsonFileLeavesTheDeclaredValues();
    void nullsAndBlanksStayInTheFile();
    void anotherNotifyConventionStillDropsSevenCharacters();

private:
    void stores();
    QString document(const QString &declarations);
    QString run(const QString &declarations, const QString &expression);
    QString runHere(const QString &declarations, const QString &expression);
    QByteArray storedFile() const;
    bool writeStore(const QByteArray &bytes) const;

    QTemporaryDir m_dir;
    QQmlEngine *m_engine = nullptr;
    QString m_type;
    QString m_store;
};

// What a document of an applet can't make by itself: elements over a file in a chosen format.
class IniStore : public Settings
{
    Q_OBJECT

public:
    explicit IniStore(QObject *parent = nullptr)
        : Settings(qEnvironmentVariable("STORE"), QSettings::IniFormat, parent)
    {
    }
};

class JsonStore : public Settings
{
    Q_OBJECT

public:
    explicit JsonStore(QObject *parent = nullptr)
        : Settings(qEnvironmentVariable("STORE"), jsonFormat(), parent)
    {
    }
};

// Its notify signal isn't named after the property with "Changed", but has as many letters more.
class MoodStore : public JsonStore
{
    Q_OBJECT
    Q_PROPERTY(int mood MEMBER m_mood NOTIFY moodShifted)

signals:
    void moodShifted();

private:
    int m_mood = 1;
};

namespace {

const char allTypes[] = R"(
    property int count: 1
    property real ratio: 0.5
    property bool flag: true
    property string text: "initial"
    property url link: "http://initial/"
    property color tint: "#010203"
    property date day: new Date(2020, 1, 2, 3, 4, 5)
    property var list: ["one", { three: 3 }]
    property var map: ({ a: 1 })
    property QtObject inner: QtObject { id: target; property int size: 7 }
    property alias alias: target.size
)";

const char readAll[] = "[s.count, s.ratio, s.flag, s.text, s.link.toString(), s.tint.toString(), "
                       "s.day.getTime() - new Date(2020, 1, 2, 3, 4, 5).getTime(), s.list, s.map, "
                       "s.alias]";

const char changeAll[] = "(s.count = 2, s.ratio = 1.25, s.flag = false, s.text = ' new ', "
                         "s.link = 'http://new/', s.tint = '#80010203', "
                         "s.day = new Date(s.day.getTime() + 1000), s.list = [[], { b: [null] }], "
                         "s.map = { c: { d: 'e' } }, s.alias = 8, 0)";

QQmlEngine *newEngine(QObject *parent)
{
    auto *engine = new QQmlEngine(parent);
    engine->addImportPath(qEnvironmentVariable("TESSALINE_QML_IMPORT_DIR"));
    qmlRegisterType<IniStore>("Stores", 1, 0, "IniStore");
    qmlRegisterType<JsonStore>("Stores", 1, 0, "JsonStore");
    qmlRegisterType<MoodStore>("Stores", 1, 0, "MoodStore");
    return engine;
}

// The value as JSON, with "s" for the document's settings.
QString evaluate(QQmlEngine *engine, const QString &document, const QString &code, QString *error)
{
    QQmlComponent component(engine, QUrl::fromLocalFile(document));
    const std::unique_ptr<QObject> root(component.create());
    if (!root) {
        *error = component.errorString();
        return QString();
    }
    QQmlExpression expression(qmlContext(root.get()), root.get(),
                              QStringLiteral("JSON.stringify((%1))").arg(code));
    const QString result = expression.evaluate().toString();
    if (expression.hasError())
        *error = expression.error().toString();
    return result;
}

int runChild(const QStringList &arguments)
{
    QCoreApplication::setOrganizationName(QStringLiteral("Zemrik Tests"));
    QCoreApplication::setApplicationName(QStringLiteral("tst_SettingsPersistence"));
    QObject owner;
    QString error;
    const QString result =
        evaluate(newEngine(&owner), arguments.value(0), arguments.value(1), &error);
    std::fputs(qUtf8Printable(result), stdout);
    std::fputs(qUtf8Printable(error), stderr);
    return error.isEmpty() ? 0 : 1;
}

} // namespace

void tst_SettingsPersistence::initTestCase()
{
    QLoggingCategory::setFilterRules("*.debug=false");
    m_engine = newEngine(this);
}

// A file of its own for each case: QSettings keeps what it knows of files it has had open.
void tst_SettingsPersistence::init()
{
    static int number = 0;
    m_store = m_dir.filePath(QStringLiteral("store%1").arg(++number));
    qputenv("STORE", QFile::encodeName(m_store));
    QFile::remove(QSettings().fileName());
    m_type = "JsonStore";
}

void tst_SettingsPersistence::stores()
{
    QTest::addColumn<QString>("type");

    QTest::newRow("native store") << "Settings";
    QTest::newRow("INI file") << "IniStore";
    QTest::newRow("JSON file") << "JsonStore";
}

// The file of a new document with such an element.
QString tst_SettingsPersistence::document(const QString &declarations)
{
    static int number = 0;
    QFile file(m_dir.filePath(QStringLiteral("Document%1.qml").arg(++number)));
    if (file.open(QIODevice::WriteOnly))
        file.write(QStringLiteral("import QtQuick 2.15\n"
                                  "import Zemrik.Tessaline 1.0\n"
                                  "import Stores 1.0\n"
                                  "QtObject { property Settings s: %1 {%2} }\n")
                       .arg(m_type, declarations)
                       .toUtf8());
    return file.fileName();
}

// What the expression gave in a process of its own, or what went wrong there.
QString tst_SettingsPersistence::run(const QString &declarations, const QString &expression)
{
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_LOGGING_RULES", "*.debug=false");
    child.setProcessEnvironment(environment);
    child.start(QCoreApplication::applicationFilePath(),
                {"--child", document(declarations), expression});
    if (!child.waitForFinished())
        return child.errorString();
    const QByteArray errors = child.readAllStandardError();
    if (child.exitStatus() != QProcess::NormalExit || child.exitCode() != 0 || !errors.isEmpty())
        return QStringLiteral("exit code %1: ").arg(child.exitCode()) + QString::fromUtf8(errors);
    return QString::fromUtf8(child.readAllStandardOutput());
}

// The same in this process.
QString tst_SettingsPersistence::runHere(const QString &declarations, const QString &expression)
{
    QString error;
    const QString result = evaluate(m_engine, document(declarations), expression, &error);
    return error.isEmpty() ? result : error;
}

QByteArray tst_SettingsPersistence::storedFile() const
{
    QFile file(m_store);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool tst_SettingsPersistence::writeStore(const QByteArray &bytes) const
{
    QFile file(m_store);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

void tst_SettingsPersistence::declaredValuesAreStoredByTheFirstRun()
{
    QFETCH(QString, type);
    m_type = type;

    const QString initial = run(allTypes, readAll);
    QCOMPARE(initial, QString(R"([1,0.5,true,"initial","http://initial/","#010203",0,)"
                              R"(["one",{"three":3}],{"a":1},7])"));

    // The values come from the store now, not from the declarations.
    QString other = allTypes;
    other.replace("count: 1", "count: 100").replace("0.5", "100").replace("true", "false");
    other.replace("initial", "other").replace("#010203", "red").replace("2020", "2000");
    other.replace("\"one\", { three: 3 }", "0").replace("a: 1", "z: 0").replace("7", "70");
    QCOMPARE(run(other, readAll), initial);
}

void tst_SettingsPersistence::changesLastToTheNextProcess()
{
    QFETCH(QString, type);
    m_type = type;

    QCOMPARE(run(allTypes, changeAll), QString("0"));

    const QString expected(R"([2,1.25,false," new ","http://new/","#80010203",1000,)"
                           R"([[],{"b":[null]}],{"c":{"d":"e"}},8])");
    QCOMPARE(run(allTypes, readAll), expected);
}

void tst_SettingsPersistence::clearedTextIsDeclaredAnewInTheNextProcess()
{
    QFETCH(QString, type);
    m_type = type;

    QCOMPARE(run("property string text: 'declared'", "s.text = ' ', s.contains('text')"),
             QString("false"));
    QCOMPARE(run("property string text: 'declared'", "[s.text, s.contains('text')]"),
             QString(R"(["declared",true])"));
}

void tst_SettingsPersistence::untypedPropertyTakesTheStoredTextAsItIs()
{
    const QString declarations = "property var number: 0; property var flag: true";
    const QString change = "(s.number = 5, s.flag = false, 0)";

    m_type = "IniStore";
    QCOMPARE(run(declarations, change), QString("0"));
    QCOMPARE(run(declarations, "[s.number, s.flag]"), QString(R"(["5","false"])"));

    init();
    m_type = "JsonStore";
    QCOMPARE(run(declarations, change), QString("0"));
    QCOMPARE(run(declarations, "[s.number, s.flag]"), QString("[5,false]"));
}

void tst_SettingsPersistence::boolValueReadsTheTextOfAnIniStore()
{
    m_type = "IniStore";
    QCOMPARE(run("", "(s.setValue('b', false), s.setValue('n', 2.5), s.value('b'))"),
             QString("false"));
    QCOMPARE(run("", "[s.value('b'), s.boolValue('b', true), s.value('n'), s.numberValue('n')]"),
             QString(R"(["false",false,"2.5",2.5])"));
}

void tst_SettingsPersistence::unconvertibleValueStaysInTheFile_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("JSON map") << "JsonStore"
                              << QByteArray("{\n    \"count\": {\n        \"a\": 1\n    }\n}\n");
    QTest::newRow("JSON list") << "JsonStore"
                               << QByteArray("{\n    \"count\": [\n        1\n    ]\n}\n");
    QTest::newRow("JSON text") << "JsonStore" << QByteArray("{\n    \"count\": \"many\"\n}\n");
    QTest::newRow("INI list") << "IniStore" << QByteArray("[General]\ncount=a, b\n");
    QTest::newRow("INI text") << "IniStore" << QByteArray("[General]\ncount=many\n");
}

void tst_SettingsPersistence::unconvertibleValueStaysInTheFile()
{
    QFETCH(QString, type);
    QFETCH(QByteArray, content);
    m_type = type;
    QVERIFY(writeStore(content));

    QCOMPARE(runHere("property int count: 1", "s.count"), QString("1"));
    QCOMPARE(storedFile(), content);

    QCOMPARE(runHere("property int count: 1", "s.count = 2"), QString("2"));
    QCOMPARE(runHere("property int count: 1", "s.count"), QString("2"));
}

// Only the declarations nearest to the object count: those of a document that adds some hide those
// of the document it is made from.
void tst_SettingsPersistence::declarationsOfAClassAreThoseOfItsDocument()
{
    QFile file(m_dir.filePath("Derived.qml"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("import QtQuick 2.15\nimport Stores 1.0\nJsonStore { property int inner: 1 }\n");
    file.close();

    const QString keys = "['inner', 'outer'].filter(function(key) { return s.contains(key) })";
    m_type = "Derived";
    QCOMPARE(runHere("", keys), QString(R"(["inner"])"));
    init();
    m_type = "Derived";
    QCOMPARE(runHere("property int outer: 2", keys), QString(R"(["outer"])"));
}

void tst_SettingsPersistence::hostileJsonFileLeavesTheDeclaredValues_data()
{
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("empty") << QByteArray();
    QTest::newRow("not JSON") << QByteArray("count=5");
    QTest::newRow("array") << QByteArray("[5]");
    QTest::newRow("truncated") << QByteArray(R"({"count": 5)");
    QTest::newRow("deep") << "{\"count\":" + QByteArray(100000, '[') + "}";
    QTest::newRow("binary") << QByteArray::fromHex("00ff7b22636f756e74223a357d");
    QTest::newRow("other keys") << QByteArray(
        R"({"": 1, "/": 2, "path": "/x", "fallbacksEnabled": false, "objectName": "o"})");
}

void tst_SettingsPersistence::hostileJsonFileLeavesTheDeclaredValues()
{
    QFETCH(QByteArray, content);
    QVERIFY(writeStore(content));

    QCOMPARE(runHere("property int count: 1; property string text: 'd'; property var list: [1]",
                     "[s.count, s.text, s.list, s.fallbacksEnabled, s.objectName]"),
             QString(R"([1,"d",[1],true,""])"));
    const QJsonObject stored = QJsonDocument::fromJson(storedFile()).object();
    QCOMPARE(stored.value("count"), QJsonValue(1));
    QCOMPARE(stored.value("list"), QJsonValue(QJsonArray{1}));
}

// They count as not set, but they are in the file, so the first run has nothing to store.
void tst_SettingsPersistence::nullsAndBlanksStayInTheFile()
{
    const QByteArray content = "{\n    \"blank\": \" \",\n    \"nil\": null\n}\n";
    QVERIFY(writeStore(content));

    QCOMPARE(runHere("property int nil: 1; property string blank: 'd'", "[s.nil, s.blank]"),
             QString(R"([1,"d"])"));
    QCOMPARE(storedFile(), content);
}

void tst_SettingsPersistence::anotherNotifyConventionStillDropsSevenCharacters()
{
    m_type = "MoodStore";
    QCOMPARE(runHere("", "s.mood = 5, s.value('mood')"), QString("5"));
    QCOMPARE(runHere("", "s.mood"), QString("5"));
}

int main(int argc, char **argv)
{
    if (argc == 4 && qstrcmp(argv[1], "--child") == 0) {
        QGuiApplication application(argc, argv);
        return runChild(application.arguments().mid(2));
    }
    return runIsolatedTest<tst_SettingsPersistence>(argc, argv);
}

#include "tst_SettingsPersistence.moc"
