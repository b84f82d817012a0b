#include "plugin/JsonUtility.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"

#include <QFile>
#include <QJSEngine>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

class tst_JsonUtility : public QObject
{
    Q_OBJECT

private slots:
    void toBytesIsCompact();
    void toFormattedBytesIsIndented();
    void textsBeyondAsciiAreUtf8();
    void nullsAreWrittenAsNull();
    void zeroCharacterIsEscaped();

    void toVariantMapOfBytes_data();
    void toVariantMapOfBytes();
    void toVariantOfBytes_data();
    void toVariantOfBytes();
    void emptyTextsGiveEmptyMapOrInvalidValue();
    void unparsableTextIsLogged_data();
    void unparsableTextIsLogged();
    void arrayIsNoMapAndLoggedAsError0();
    void arrayIsAVariant();

    void nullsArePlaced_data();
    void nullsArePlaced();
    void nullsInATopLevelArrayArePlaced();
    void textFormsConvertNulls();
    void theWordNullInATextIsNoNull();
    void scriptsSeeNull();
    void withoutNullsTheTreeIsQts_data();
    void withoutNullsTheTreeIsQts();
    void convertNullValuesConvertsTreesOfQt();
    void convertNullValuesOfOtherContainers();

    void valuesOfAnObject_data();
    void valuesOfAnObject();
    void objectOfTextThatIsNoObject();
    void repeatedKeyTakesItsLastValue();
    void deepNestingIsUnparsable();

    void filesRoundTrip();
    void nullsFromAFileStayInvalid();
    void readFileOfNothing_data();
    void readFileOfNothing();
    void writeFileFails_data();
    void writeFileFails();
};

namespace {

const char category[] = "Zemrik.Runtime.Utility";

// A tree as text, with what JSON can't tell apart: "invalid" and "pointer" for the two nulls.
QString described(const QVariant &value)
{
    QStringList parts;
    if (!value.isValid())
        return QStringLiteral("invalid");
    switch (value.userType()) {
    case QMetaType::VoidStar:
        return value.value<void *>() ? QStringLiteral("?") : QStringLiteral("pointer");
    case QMetaType::QVariantList:
        for (const QVariant &element : value.toList())
            parts.append(described(element));
        return '[' + parts.join(',') + ']';
    case QMetaType::QVariantMap: {
        const QVariantMap map = value.toMap();
        for (auto it = map.begin(); it != map.end(); ++it)
            parts.append(it.key() + ':' + described(it.value()));
        return '{' + parts.join(',') + '}';
    }
    default:
        return value.typeName() + QString('(') + value.toString() + ')';
    }
}

bool writeBytes(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QByteArray readBytes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

void tst_JsonUtility::toBytesIsCompact()
{
    const QVariantMap map{{"b", QVariantList{1, true, "x"}}, {"a", 1.5}};
    QCOMPARE(JsonUtility::toBytes(map), QByteArray(R"({"a":1.5,"b":[1,true,"x"]})"));
    QCOMPARE(JsonUtility::toString(map), QStringLiteral(R"({"a":1.5,"b":[1,true,"x"]})"));
    QCOMPARE(JsonUtility::toBytes({}), QByteArray("{}"));
}

void tst_JsonUtility::toFormattedBytesIsIndented()
{
    const QVariantMap map{{"a", 1}, {"b", QVariantMap{{"c", "d"}}}};
    const QByteArray formatted = "{\n    \"a\": 1,\n    \"b\": {\n        \"c\": \"d\"\n    }\n}\n";
    QCOMPARE(JsonUtility::toFormattedBytes(map), formatted);
    QCOMPARE(JsonUtility::toFormattedString(map), QString::fromUtf8(formatted));
}

void tst_JsonUtility::textsBeyondAsciiAreUtf8()
{
    const QVariantMap map{{"a", QStringLiteral("ä€😀")}};
    QCOMPARE(JsonUtility::toBytes(map),
             QByteArray("{\"a\":\"\xc3\xa4\xe2\x82\xac\xf0\x9f\x98\x80\"}"));
    QCOMPARE(JsonUtility::toString(map), QStringLiteral("{\"a\":\"ä€😀\"}"));
    QCOMPARE(JsonUtility::toVariantMap(JsonUtility::toBytes(map), false), map);
    QCOMPARE(JsonUtility::toVariantMap(JsonUtility::toString(map)), map);
}

void tst_JsonUtility::nullsAreWrittenAsNull()
{
    const QVariantMap map{{"invalid", QVariant()},
                          {"nullptr", QVariant::fromValue(nullptr)},
                          {"pointer", QVariant(QMetaType::VoidStar, nullptr)}};
    QCOMPARE(JsonUtility::toBytes(map),
             QByteArray(R"({"invalid":null,"nullptr":null,"pointer":null})"));
}

void tst_JsonUtility::zeroCharacterIsEscaped()
{
    const QVariantMap map{{"a", QString("x") + QChar(0) + "y"}};
    QCOMPARE(JsonUtility::toString(map), QStringLiteral("{\"a\":\"x\\u0000y\"}"));
    QCOMPARE(JsonUtility::toVariantMap(JsonUtility::toString(map)), map);
}

void tst_JsonUtility::toVariantMapOfBytes_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("tree");
    QTest::newRow("values") << QByteArray(R"({"s":"x","i":1,"d":1.5,"b":true,"e":{},"l":[]})")
                            << "{b:bool(true),d:double(1.5),e:{},i:qlonglong(1),l:[],s:QString(x)}";
    QTest::newRow("nested") << QByteArray(R"({"a":[{"b":[1,[2]]}]})")
                            << "{a:[{b:[qlonglong(1),[qlonglong(2)]]}]}";
    QTest::newRow("empty object") << QByteArray("{}") << "{}";
    QTest::newRow("empty bytes") << QByteArray("") << "{}";
    QTest::newRow("null bytes") << QByteArray() << "{}";
    QTest::newRow("byte order mark") << QByteArray("\xef\xbb\xbf{\"a\":\"b\"}") << "{a:QString(b)}";
}

void tst_JsonUtility::toVariantMapOfBytes()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, tree);
    LogCapture log;
    QCOMPARE(described(JsonUtility::toVariantMap(json, false)), tree);
    QCOMPARE(described(JsonUtility::toVariantMap(json, true)), tree);
    QCOMPARE(log.messages().size(), 0);
}

void tst_JsonUtility::toVariantOfBytes_data()
{
    toVariantMapOfBytes_data();
    QTest::newRow("array") << QByteArray(R"(["x",{"a":1}])") << "[QString(x),{a:qlonglong(1)}]";
    QTest::newRow("empty array") << QByteArray("[]") << "[]";
}

void tst_JsonUtility::toVariantOfBytes()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, tree);
    LogCapture log;
    QCOMPARE(described(JsonUtility::toVariant(json, false)), tree);
    QCOMPARE(described(JsonUtility::toVariant(json, true)), tree);
    QCOMPARE(log.messages().size(), 0);
}

void tst_JsonUtility::emptyTextsGiveEmptyMapOrInvalidValue()
{
    LogCapture log;
    QVERIFY(!JsonUtility::toVariant(QString()).isValid());
    QVERIFY(!JsonUtility::toVariant(QString("")).isValid());
    QCOMPARE(described(JsonUtility::toVariant(QByteArray(), true)), QString("{}"));
    QCOMPARE(described(JsonUtility::toVariantMap(QString())), QString("{}"));
    QCOMPARE(described(JsonUtility::toVariantMap(QString(""))), QString("{}"));
    QCOMPARE(log.messages().size(), 0);
}

void tst_JsonUtility::unparsableTextIsLogged_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("no JSON") << QByteArray("hello");
    QTest::newRow("cut off") << QByteArray("{\"a\":[1,");
    QTest::newRow("bare value") << QByteArray("5");
    QTest::newRow("bare null") << QByteArray("null");
    QTest::newRow("rest after the object") << QByteArray("{} x");
    QTest::newRow("no UTF-8") << QByteArray("{\"a\":\"\xff\xfe\"}");
    QTest::newRow("only space") << QByteArray(" \n");
}

void tst_JsonUtility::unparsableTextIsLogged()
{
    QFETCH(QByteArray, json);
    QJsonParseError error;
    QJsonDocument::fromJson(json, &error);
    QVERIFY(error.error != QJsonParseError::NoError);
    const QString words = QStringLiteral("Error %1 Offset %2 \"%3\"")
                              .arg(error.error)
                              .arg(error.offset)
                              .arg(error.errorString());

    LogCapture log;
    QVERIFY(JsonUtility::toVariantMap(json, true).isEmpty());
    QCOMPARE(
        log.count(QtDebugMsg, category,
                  "static QVariantMap JsonUtility::toVariantMap(const QByteArray&, bool) " + words),
        1);
    QCOMPARE(described(JsonUtility::toVariant(json, false)), QString("{}"));
    QCOMPARE(log.count(QtDebugMsg, category,
                       "static QVariant JsonUtility::toVariant(const QByteArray&, bool) " + words),
             1);
    QCOMPARE(log.messages().size(), 2);
}

void tst_JsonUtility::arrayIsNoMapAndLoggedAsError0()
{
    LogCapture log;
    QCOMPARE(JsonUtility::toVariantMap(QByteArray("[{\"a\":1}]"), true), QVariantMap());
    QCOMPARE(log.count(QtDebugMsg, category, "Error 0 Offset 0 \"no error occurred\""), 1);
    QCOMPARE(JsonUtility::toVariantMap(QString("[]")), QVariantMap());
    QCOMPARE(log.count(QtDebugMsg, category, "Error 0"), 2);
}

void tst_JsonUtility::arrayIsAVariant()
{
    QCOMPARE(described(JsonUtility::toVariant(QString("[\"a\"]"))), QString("[QString(a)]"));
}

void tst_JsonUtility::nullsArePlaced_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("converted");
    QTest::newRow("member") << QByteArray(R"({"a":null})") << "{a:pointer}";
    QTest::newRow("member of a member")
        << QByteArray(R"({"a":{"b":{"c":null}}})") << "{a:{b:{c:pointer}}}";
    QTest::newRow("element stays invalid") << QByteArray(R"({"a":[null]})") << "{a:[invalid]}";
    QTest::newRow("member of an element")
        << QByteArray(R"({"a":[{"b":null}]})") << "{a:[{b:pointer}]}";
    QTest::newRow("element of a list in a list stays invalid")
        << QByteArray(R"({"a":[[null]]})") << "{a:[[invalid]]}";
    QTest::newRow("all below a list in a list stays invalid")
        << QByteArray(R"({"a":[[{"b":null,"c":[{"d":null}]}]]})")
        << "{a:[[{b:invalid,c:[{d:invalid}]}]]}";
    QTest::newRow("list of an element")
        << QByteArray(R"({"a":[{"b":[null,{"c":null}]}]})") << "{a:[{b:[invalid,{c:pointer}]}]}";
    QTest::newRow("beside a list in a list")
        << QByteArray(R"({"a":[[{"b":null}],{"c":null}],"d":null})")
        << "{a:[[{b:invalid}],{c:pointer}],d:pointer}";
}

void tst_JsonUtility::nullsArePlaced()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, converted);
    const QString unconverted = QString(converted).replace("pointer", "invalid");

    QCOMPARE(described(JsonUtility::toVariantMap(json, true)), converted);
    QCOMPARE(described(JsonUtility::toVariant(json, true)), converted);
    QCOMPARE(described(JsonUtility::toVariantMap(json, false)), unconverted);
    QCOMPARE(described(JsonUtility::toVariant(json, false)), unconverted);

    QVariantMap map = JsonUtility::toVariantMap(json, false);
    JsonUtility::convertNullValues(map);
    QCOMPARE(described(map), converted);
}

void tst_JsonUtility::nullsInATopLevelArrayArePlaced()
{
    const QByteArray json = R"([null,{"a":null},[{"b":null}]])";
    QCOMPARE(described(JsonUtility::toVariant(json, true)),
             QString("[invalid,{a:pointer},[{b:invalid}]]"));
    QCOMPARE(described(JsonUtility::toVariant(json, false)),
             QString("[invalid,{a:invalid},[{b:invalid}]]"));

    QVariantList list = JsonUtility::toVariant(json, false).toList();
    JsonUtility::convertNullValues(list);
    QCOMPARE(described(list), QString("[invalid,{a:pointer},[{b:invalid}]]"));
}

void tst_JsonUtility::textFormsConvertNulls()
{
    QCOMPARE(described(JsonUtility::toVariantMap(QString(R"({"a":null})"))),
             QString("{a:pointer}"));
    QCOMPARE(described(JsonUtility::toVariant(QString(R"([{"a":null}])"))),
             QString("[{a:pointer}]"));
    QCOMPARE(described(JsonUtility::toVariant(QString(R"({"a":1})"))), QString("{a:qlonglong(1)}"));
}

void tst_JsonUtility::theWordNullInATextIsNoNull()
{
    const QString json = R"({"NULL":"Null","a":"null","b":"\u006eull"})";
    QCOMPARE(described(JsonUtility::toVariantMap(json)),
             QString("{NULL:QString(Null),a:QString(null),b:QString(null)}"));
}

void tst_JsonUtility::scriptsSeeNull()
{
    QJSEngine engine;
    const QByteArray json = R"({"a":null,"b":[null]})";
    engine.globalObject().setProperty("converted",
                                      engine.toScriptValue(JsonUtility::toVariantMap(json, true)));
    engine.globalObject().setProperty("plain",
                                      engine.toScriptValue(JsonUtility::toVariantMap(json, false)));
    QVERIFY(engine.evaluate("converted.a === null").toBool());
    QVERIFY(engine.evaluate("converted.b[0] === undefined").toBool());
    QVERIFY(engine.evaluate("plain.a === undefined && 'a' in plain").toBool());
}

void tst_JsonUtility::withoutNullsTheTreeIsQts_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("numbers") << QByteArray(
        R"({"n":[0,-0,-0.0,1,1.0,1e3,-2.5,9007199254740993,9223372036854775808,1e300,5e-324]})");
    QTest::newRow("keys in other orders")
        << QByteArray(R"({"b":1,"a":2,"ä":3,"B":4,"":5,"aa":6,"€":7,"z":{"b":1,"a":2}})");
    QTest::newRow("escapes") << QByteArray(R"({"\u00e4\n":"\"\\\/\b\f\n\r\t\ud83d\ude00\u0000"})");
    QTest::newRow("same keys in many records")
        << QByteArray(R"({"l":[{"id":1,"name":"a"},{"name":"b","id":2},{"id":3,"x":{"id":4}}]})");
    QTest::newRow("bools") << QByteArray(R"({"t":true,"f":false})");
}

void tst_JsonUtility::withoutNullsTheTreeIsQts()
{
    QFETCH(QByteArray, json);
    const QVariantMap expected = QJsonDocument::fromJson(json).object().toVariantMap();
    QVERIFY(!expected.isEmpty());
    QCOMPARE(described(JsonUtility::toVariantMap(json, true)), described(expected));
    QCOMPARE(JsonUtility::toVariantMap(json, true), expected);
    QCOMPARE(JsonUtility::toVariant(json, false), QVariant(expected));
}

// Qt's parser has a null type of its own, which the two functions take for a null as well.
void tst_JsonUtility::convertNullValuesConvertsTreesOfQt()
{
    QVariantMap map = QJsonDocument::fromJson(R"({"a":null,"b":{"c":null},"d":[{"e":null}]})")
                          .object()
                          .toVariantMap();
    JsonUtility::convertNullValues(map);
    QCOMPARE(described(map), QString("{a:pointer,b:{c:pointer},d:[{e:pointer}]}"));
}

void tst_JsonUtility::convertNullValuesOfOtherContainers()
{
    QVariantMap map{{"hash", QVariantHash{{"a", QVariant()}}},
                    {"names", QStringList{"x", "y"}},
                    {"text", "kept"},
                    {"number", 5}};
    JsonUtility::convertNullValues(map);
    QCOMPARE(described(map), QString("{hash:{a:pointer},names:[QString(x),QString(y)],"
                                     "number:int(5),text:QString(kept)}"));
}

void tst_JsonUtility::valuesOfAnObject_data()
{
    QTest::addColumn<QString>("key");
    for (const char *key : {"a", "b", "bool", "double", "integer", "list", "map", "null", "text",
                            "", "missing", "über"})
        QTest::newRow(key) << QString::fromUtf8(key);
}

void tst_JsonUtility::valuesOfAnObject()
{
    QFETCH(QString, key);
    const QByteArray json = R"({"text":"t\u00e4","integer":1500000000123,"double":1.5,"bool":true,
        "null":null,"list":[1,null,{"x":null}],"map":{"x":null,"y":[]},"":"empty","über":"ü",
        "a":1,"b":2,"a":3})";
    const QJsonObject object = JsonUtility::toObject(json);
    const QVariantMap map = JsonUtility::toVariantMap(json, false);
    const QVariant value = JsonUtility::value(object, key, "default");
    const QVariant expected = map.value(key, "default");
    QCOMPARE(described(value), described(expected));
    QCOMPARE(value.userType(), expected.userType());
    QCOMPARE(described(JsonUtility::toVariantMap(object)), described(map));
}

void tst_JsonUtility::objectOfTextThatIsNoObject()
{
    LogCapture log;
    QVERIFY(JsonUtility::toObject("").isEmpty());
    QCOMPARE(log.messages().size(), 0);
    QVERIFY(JsonUtility::toObject("[1]").isEmpty());
    QVERIFY(JsonUtility::toObject("{").isEmpty());
    QCOMPARE(log.count(QtDebugMsg, category, "Error"), 2);
    QVERIFY(!JsonUtility::value(QJsonObject(), "key").isValid());
}

void tst_JsonUtility::repeatedKeyTakesItsLastValue()
{
    QCOMPARE(described(JsonUtility::toVariantMap(QByteArray(R"({"a":1,"b":2,"a":"x"})"), true)),
             QString("{a:QString(x),b:qlonglong(2)}"));
}

void tst_JsonUtility::deepNestingIsUnparsable()
{
    LogCapture log;
    const QByteArray deep = "{\"a\":" + QByteArray(100000, '[') + QByteArray(100000, ']') + '}';
    QVERIFY(JsonUtility::toVariantMap(deep, true).isEmpty());
    QCOMPARE(log.count(QtDebugMsg, category, "too deeply nested document"), 1);
}

void tst_JsonUtility::filesRoundTrip()
{
    const QTemporaryDir dir;
    const QString path = dir.filePath("file.json");
    const QVariantMap map{{"a", QStringLiteral("ä")}, {"b", QVariantList{"x", true}}};
    QVERIFY(JsonUtility::writeFile(path, map));
    QCOMPARE(readBytes(path), JsonUtility::toFormattedBytes(map));
    QCOMPARE(JsonUtility::readFile(path), map);

    QVERIFY(JsonUtility::writeFile(path, {})); // a shorter one leaves nothing of the old one
    QCOMPARE(readBytes(path), QByteArray("{\n}\n"));
}

void tst_JsonUtility::nullsFromAFileStayInvalid()
{
    const QTemporaryDir dir;
    const QString path = dir.filePath("file.json");
    QVERIFY(writeBytes(path, R"({"a":null,"b":[{"c":null}]})"));
    QCOMPARE(described(JsonUtility::readFile(path)), QString("{a:invalid,b:[{c:invalid}]}"));
}

void tst_JsonUtility::readFileOfNothing_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("missing") << QByteArray();
    QTest::newRow("no JSON") << QByteArray("[Settings]\na=b\n");
}

void tst_JsonUtility::readFileOfNothing()
{
    QFETCH(QByteArray, content);
    const QTemporaryDir dir;
    const QString path = dir.filePath("file.json");
    if (!content.isNull())
        QVERIFY(writeBytes(path, content));
    const LogCapture log;
    QCOMPARE(JsonUtility::readFile(path), QVariantMap());
}

void tst_JsonUtility::writeFileFails_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("no folder") << "/nonexistent/file.json";
    QTest::newRow("a folder") << "/";
    QTest::newRow("full disk") << "/dev/full";
}

void tst_JsonUtility::writeFileFails()
{
    QFETCH(QString, path);
    QVERIFY(!JsonUtility::writeFile(path, {{"a", 1}}));
}

TESSALINE_TEST_MAIN(tst_JsonUtility)
#include "tst_JsonUtility.moc"
