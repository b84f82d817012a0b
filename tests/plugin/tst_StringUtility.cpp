#include "plugin/StringUtility.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"

#include <QColor>
#include <QFile>
#include <QJSEngine>
#include <QLine>
#include <QTemporaryDir>
#include <QTest>

// The locale of the tests is C.UTF-8, so that the local encoding is UTF-8.
class tst_StringUtility : public QObject
{
    Q_OBJECT

private slots:
    void encodingsHaveTheirNumbers();
    void toStringDecodes_data();
    void toStringDecodes();
    void toStringOfANullArray_data();
    void toStringOfANullArray();
    void toStringKeepsToTheBytesOfAnArray();
    void toStringOfTooManyBytesWarns_data();
    void toStringOfTooManyBytesWarns();
    void toStringOfAnUndefinedEncodingWarns();
    void toStringDataEncodes_data();
    void toStringDataEncodes();
    void toStringDataOfAnUndefinedEncodingWarns();
    void toValueDataTakesTextsAndBytes_data();
    void toValueDataTakesTextsAndBytes();
    void toValueDataTakesVariantsThatConvert();
    void toValueDataRefusesTheRest_data();
    void toValueDataRefusesTheRest();
    void toValueDataRefusesVariantsThatDoNotConvert();
    void readFileDecodesUtf8_data();
    void readFileDecodesUtf8();
    void writeFileEncodesUtf8();
    void writeFileFails_data();
    void writeFileFails();
};

namespace {

const int utf8 = StringUtility::TextEncodingUtf8;
const int latin1 = StringUtility::TextEncodingLatin1;
const int local = StringUtility::TextEncodingLocal8Bit;
const int utf16 = StringUtility::TextEncodingUtf16;
const int unknown = StringUtility::TextEncodingUnknown;

QByteArray hex(const char *digits)
{
    return QByteArray::fromHex(digits);
}

bool writeBytes(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

} // namespace

void tst_StringUtility::encodingsHaveTheirNumbers()
{
    QCOMPARE(unknown, -1);
    QCOMPARE(utf8, 0);
    QCOMPARE(latin1, 1);
    QCOMPARE(local, 2);
    QCOMPARE(utf16, 3);
}

void tst_StringUtility::toStringDecodes_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("encoding");
    QTest::addColumn<QString>("text");

    QTest::newRow("UTF-8") << hex("61c3a4e282ac") << utf8 << QStringLiteral("aä€");
    QTest::newRow("UTF-8 ends at a zero byte") << hex("610062") << utf8 << "a";
    QTest::newRow("UTF-8 of no bytes") << QByteArray("") << utf8 << "";
    QTest::newRow("Latin-1") << hex("61e4") << latin1 << QStringLiteral("aä");
    QTest::newRow("Latin-1 ends at a zero byte") << hex("e400e4") << latin1 << QStringLiteral("ä");
    QTest::newRow("local") << hex("c3a4") << local << QStringLiteral("ä");
    QTest::newRow("local ends at a zero byte") << hex("610062") << local << "a";
    QTest::newRow("UTF-16") << hex("6100ac20") << utf16 << QStringLiteral("a€");
    QTest::newRow("UTF-16 ends at a zero unit") << hex("610000006200") << utf16 << "a";
    QTest::newRow("UTF-16 passes a zero byte") << hex("00016100") << utf16 << QStringLiteral("Āa");
    QTest::newRow("UTF-16 of an odd number of bytes") << hex("610062") << utf16 << "ab";
    QTest::newRow("UTF-16 of no bytes") << QByteArray("") << utf16 << "";
}

void tst_StringUtility::toStringDecodes()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, encoding);
    QFETCH(QString, text);
    QCOMPARE(StringUtility::toString(bytes, encoding), text);
}

void tst_StringUtility::toStringOfANullArray_data()
{
    QTest::addColumn<int>("encoding");
    QTest::newRow("UTF-8") << utf8;
    QTest::newRow("Latin-1") << latin1;
    QTest::newRow("local") << local;
}

void tst_StringUtility::toStringOfANullArray()
{
    QFETCH(int, encoding);
    QVERIFY(StringUtility::toString(QByteArray(), encoding).isNull());
    QVERIFY(!StringUtility::toString(QByteArray(""), encoding).isNull());
}

// Bytes without a terminator, and at an odd address: the sanitizers look on.
void tst_StringUtility::toStringKeepsToTheBytesOfAnArray()
{
    const std::vector<char> memory{'x', 'a', 0, 'b', 0};
    const QByteArray bytes = QByteArray::fromRawData(memory.data() + 1, 4);
    QCOMPARE(StringUtility::toString(bytes, utf16), QStringLiteral("ab"));
    QCOMPARE(StringUtility::toString(bytes, utf8), QStringLiteral("a"));

    const std::vector<char> unended{'a', 'b', 'c'};
    const QByteArray raw = QByteArray::fromRawData(unended.data(), 3);
    QCOMPARE(StringUtility::toString(raw, utf8), QStringLiteral("abc"));
    QCOMPARE(StringUtility::toString(raw, latin1), QStringLiteral("abc"));
    QCOMPARE(StringUtility::toString(raw, local), QStringLiteral("abc"));
    const LogCapture log;
    QCOMPARE(StringUtility::toString(raw, 9), QStringLiteral("abc"));
}

void tst_StringUtility::toStringOfTooManyBytesWarns_data()
{
    QTest::addColumn<int>("encoding");
    QTest::newRow("UTF-8") << int(StringUtility::TextEncodingUtf8);
    QTest::newRow("Latin-1") << int(StringUtility::TextEncodingLatin1);
    QTest::newRow("local") << int(StringUtility::TextEncodingLocal8Bit);
    QTest::newRow("UTF-16") << int(StringUtility::TextEncodingUtf16);
}

void tst_StringUtility::toStringOfTooManyBytesWarns()
{
    QFETCH(int, encoding);
    // Only claims to be that long: nobody may look at it.
    const QByteArray bytes = QByteArray::fromRawData("x", StringUtility::maxTextBytes + 1);
    LogCapture log;
    QCOMPARE(StringUtility::toString(bytes, encoding), QString());
    QCOMPARE(log.count(QtWarningMsg, "default", "Too many bytes for a text:"), 1);
}

void tst_StringUtility::toStringOfAnUndefinedEncodingWarns()
{
    LogCapture log;
    QCOMPARE(StringUtility::toString(hex("c3a40062"), 4), QStringLiteral("ä"));
    QCOMPARE(log.count(QtWarningMsg, "default", "Undefined encoding: 4"), 1);
    QCOMPARE(StringUtility::toString("abc", unknown), QStringLiteral("abc"));
    QCOMPARE(log.count(QtWarningMsg, "default", "Undefined encoding: -1"), 1);
}

void tst_StringUtility::toStringDataEncodes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("encoding");
    QTest::addColumn<QByteArray>("bytes");

    const QString withZero = QString("a") + QChar(0) + "b";
    QTest::newRow("UTF-8") << QStringLiteral("aä€") << utf8 << hex("61c3a4e282ac");
    QTest::newRow("UTF-8 passes a zero") << withZero << utf8 << hex("610062");
    QTest::newRow("Latin-1") << QStringLiteral("aä€") << latin1 << hex("61e43f");
    QTest::newRow("local") << QStringLiteral("ä") << local << hex("c3a4");
    QTest::newRow("UTF-16 without byte order mark")
        << QStringLiteral("a€") << utf16 << hex("6100ac20");
    QTest::newRow("UTF-16 surrogates") << QStringLiteral("😀") << utf16 << hex("3dd800de");
    QTest::newRow("UTF-16 ends at a zero unit") << withZero << utf16 << hex("6100");
    QTest::newRow("UTF-16 of nothing") << QString() << utf16 << QByteArray();
}

void tst_StringUtility::toStringDataEncodes()
{
    QFETCH(QString, text);
    QFETCH(int, encoding);
    QFETCH(QByteArray, bytes);
    QCOMPARE(StringUtility::toStringData(text, encoding), bytes);
}

void tst_StringUtility::toStringDataOfAnUndefinedEncodingWarns()
{
    LogCapture log;
    QCOMPARE(StringUtility::toStringData(QStringLiteral("aä"), 17), hex("61e4"));
    QCOMPARE(log.count(QtWarningMsg, "default", "Undefined encoding: 17"), 1);
}

void tst_StringUtility::toValueDataTakesTextsAndBytes_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<int>("encoding");
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("text in UTF-8") << "'\\u00e4'" << utf8 << hex("c3a4");
    QTest::newRow("text in UTF-16") << "'\\u00e4'" << utf16 << hex("e400");
    QTest::newRow("empty text") << "''" << utf8 << QByteArray();
    QTest::newRow("bytes as they are")
        << "new Uint8Array([0, 128, 255]).buffer" << utf16 << hex("0080ff");
    QTest::newRow("no bytes") << "new ArrayBuffer(0)" << utf8 << QByteArray();
}

void tst_StringUtility::toValueDataTakesTextsAndBytes()
{
    QFETCH(QString, script);
    QFETCH(int, encoding);
    QFETCH(QByteArray, bytes);

    QJSEngine engine;
    LogCapture log;
    QCOMPARE(StringUtility::toValueData(engine.evaluate(script), encoding), bytes);
    QCOMPARE(log.count(QtWarningMsg), 0);
}

void tst_StringUtility::toValueDataTakesVariantsThatConvert()
{
    QJSEngine engine;
    const QJSValue value = engine.toScriptValue(QColor(255, 0, 0));
    QVERIFY(value.isVariant());
    QCOMPARE(StringUtility::toValueData(value, utf16), QByteArray("#ff0000"));
    QCOMPARE(StringUtility::toValueData(engine.toScriptValue(hex("ff00fe")), utf8), hex("ff00fe"));
}

void tst_StringUtility::toValueDataRefusesTheRest_data()
{
    QTest::addColumn<QString>("script");
    QTest::newRow("number") << "5";
    QTest::newRow("bool") << "true";
    QTest::newRow("null") << "null";
    QTest::newRow("undefined") << "undefined";
    QTest::newRow("object") << "({ a: 'b' })";
    QTest::newRow("list") << "[1, 2]";
    QTest::newRow("date") << "new Date(0)";
    QTest::newRow("typed array") << "new Uint8Array([1])";
    QTest::newRow("function") << "(function() {})";
}

void tst_StringUtility::toValueDataRefusesTheRest()
{
    QFETCH(QString, script);
    QJSEngine engine;
    LogCapture log;
    QVERIFY(StringUtility::toValueData(engine.evaluate(script), utf8).isEmpty());
    QCOMPARE(log.count(QtWarningMsg, "default", "Unsupported data type:"), 1);
    QCOMPARE(log.count(QtWarningMsg), 1);
}

void tst_StringUtility::toValueDataRefusesVariantsThatDoNotConvert()
{
    QJSEngine engine;
    const QJSValue value = engine.toScriptValue(QLine(1, 2, 3, 4));
    QVERIFY(value.isVariant());
    LogCapture log;
    QVERIFY(StringUtility::toValueData(value, utf8).isEmpty());
    QCOMPARE(log.count(QtWarningMsg, "default", "Unsupported variant type: QVariant(QLine"), 1);
    QCOMPARE(log.count(QtWarningMsg), 1);
}

void tst_StringUtility::readFileDecodesUtf8_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    QTest::newRow("text") << hex("61c3a4") << QStringLiteral("aä");
    QTest::newRow("ends at a zero byte") << hex("610062") << "a";
    QTest::newRow("empty") << QByteArray() << QString();
}

void tst_StringUtility::readFileDecodesUtf8()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, text);
    const QTemporaryDir dir;
    const QString path = dir.filePath("file.txt");
    QVERIFY(writeBytes(path, bytes));
    QCOMPARE(StringUtility::readFile(path), text);
    QCOMPARE(StringUtility::readFile(path).isNull(), text.isNull());
    QVERIFY(StringUtility::readFile(dir.filePath("missing.txt")).isNull());
}

void tst_StringUtility::writeFileEncodesUtf8()
{
    const QTemporaryDir dir;
    const QString path = dir.filePath("file.txt");
    QVERIFY(StringUtility::writeFile(path, QStringLiteral("a much longer text")));
    QVERIFY(StringUtility::writeFile(path, QStringLiteral("aä")));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), hex("61c3a4"));
}

void tst_StringUtility::writeFileFails_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("no folder") << "/nonexistent/file.txt";
    QTest::newRow("a folder") << "/";
    QTest::newRow("full disk") << "/dev/full";
}

void tst_StringUtility::writeFileFails()
{
    QFETCH(QString, path);
    QVERIFY(!StringUtility::writeFile(path, "text"));
}

TESSALINE_TEST_MAIN(tst_StringUtility)
#include "tst_StringUtility.moc"
