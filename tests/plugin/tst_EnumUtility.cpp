#include "network/NetworkRequest.h"
#include "plugin/BinaryData.h"
#include "plugin/EnumUtility.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"

#include <QMetaEnum>
#include <QTest>

class tst_EnumUtility : public QObject
{
    Q_OBJECT

private slots:
    void enumeratorIsFoundByItsName_data();
    void enumeratorIsFoundByItsName();
    void enumeratorWithANullNameIsCritical();
    void enumeratorOfANullObjectIsCritical();
    void enumValueOfAText_data();
    void enumValueOfAText();
    void enumValueOfAVariant_data();
    void enumValueOfAVariant();
    void enumValueOfAnInvalidEnumIsCritical();
    void enumValueThroughMetaObjectAndObject();
    void enumValueOfAMissingEnumIsCritical();
    void enumValueName_data();
    void enumValueName();
    void enumValueNameOfAnInvalidEnumIsCritical();
    void enumValueNameThroughMetaObjectAndObject();
    void silentWhenTheCategoryIsOff();
};

namespace {

const char category[] = "Zemrik.Tessaline.Utility";

QMetaEnum textEncodings()
{
    return QMetaEnum::fromType<BinaryData::TextEncoding>();
}

const QMetaObject *binaryData()
{
    return &BinaryData::staticMetaObject;
}

} // namespace

void tst_EnumUtility::enumeratorIsFoundByItsName_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<bool>("found");
    QTest::newRow("known") << QByteArray("TextEncoding") << true;
    QTest::newRow("other case") << QByteArray("textEncoding") << false;
    QTest::newRow("unknown") << QByteArray("Encoding") << false;
    QTest::newRow("empty") << QByteArray("") << false;
}

void tst_EnumUtility::enumeratorIsFoundByItsName()
{
    QFETCH(QByteArray, name);
    QFETCH(bool, found);
    const BinaryData object;
    LogCapture log;
    const QMetaEnum ofClass = EnumUtility::enumerator(binaryData(), name.constData());
    const QMetaEnum ofObject = EnumUtility::enumerator(&object, name.constData());
    QCOMPARE(ofClass.isValid(), found);
    QCOMPARE(ofObject.isValid(), found);
    if (found)
        QCOMPARE(QByteArray(ofClass.name()), name);
    QCOMPARE(log.messages().size(), 0);
}

void tst_EnumUtility::enumeratorWithANullNameIsCritical()
{
    const BinaryData object;
    LogCapture log;
    QVERIFY(!EnumUtility::enumerator(binaryData(), nullptr).isValid());
    QCOMPARE(log.count(QtCriticalMsg, category, "Null enum name"), 1);
    QVERIFY(!EnumUtility::enumerator(&object, nullptr).isValid());
    QCOMPARE(log.count(QtCriticalMsg, category, "Null enum name"), 2);
}

void tst_EnumUtility::enumeratorOfANullObjectIsCritical()
{
    LogCapture log;
    QVERIFY(!EnumUtility::enumerator(static_cast<QObject *>(nullptr), "TextEncoding").isValid());
    QCOMPARE(log.count(QtCriticalMsg, category, "Null object TextEncoding"), 1);
}

void tst_EnumUtility::enumValueOfAText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("value");
    QTest::newRow("key") << "TextEncodingLatin1" << 1;
    QTest::newRow("lower case") << "textencodinglatin1" << 1;
    QTest::newRow("upper case") << "TEXTENCODINGUTF16" << 3;
    QTest::newRow("negative value") << "TextEncodingUnknown" << -1;
    QTest::newRow("unknown key") << "Latin1" << 77;
    QTest::newRow("number as text is no key") << "1" << 77;
    QTest::newRow("empty") << "" << 77;
}

void tst_EnumUtility::enumValueOfAText()
{
    QFETCH(QString, text);
    QFETCH(int, value);
    LogCapture log;
    QCOMPARE(EnumUtility::enumValue(textEncodings(), text, 77), value);
    QCOMPARE(log.messages().size(), 0);
}

void tst_EnumUtility::enumValueOfAVariant_data()
{
    QTest::addColumn<QVariant>("variant");
    QTest::addColumn<int>("value");
    QTest::newRow("number") << QVariant(2) << 2;
    QTest::newRow("negative number") << QVariant(-1) << -1;
    QTest::newRow("number that is no value") << QVariant(99) << 77;
    QTest::newRow("digit as text") << QVariant("3") << 3;
    QTest::newRow("number as text that is no value") << QVariant("99") << 77;
    QTest::newRow("double") << QVariant(1.0) << 1;
    QTest::newRow("key") << QVariant("TextEncodingLocal8Bit") << 2;
    QTest::newRow("key in lower case") << QVariant("textencodinglocal8bit") << 2;
    QTest::newRow("unknown text") << QVariant("nothing") << 77;
    QTest::newRow("invalid") << QVariant() << 77;
}

void tst_EnumUtility::enumValueOfAVariant()
{
    QFETCH(QVariant, variant);
    QFETCH(int, value);
    LogCapture log;
    QCOMPARE(EnumUtility::enumValue(textEncodings(), variant, 77), value);
    QCOMPARE(log.messages().size(), 0);
}

void tst_EnumUtility::enumValueOfAnInvalidEnumIsCritical()
{
    LogCapture log;
    QCOMPARE(EnumUtility::enumValue(QMetaEnum(), QString("some key"), 5), 5);
    QCOMPARE(log.count(QtCriticalMsg, category, "Invalid metaEnum \"some key\""), 1);
    QCOMPARE(EnumUtility::enumValue(QMetaEnum(), QVariant(12), 6), 6);
    QCOMPARE(log.count(QtCriticalMsg, category, "Invalid metaEnum QVariant(int, 12)"), 1);
    QCOMPARE(log.messages().size(), 2);
}

void tst_EnumUtility::enumValueThroughMetaObjectAndObject()
{
    const NetworkRequest request;
    const QMetaObject *metaObject = &NetworkRequest::staticMetaObject;
    const QString key = "readystatecomplete";
    QCOMPARE(EnumUtility::enumValue(metaObject, "ReadyState", key, -7), 4);
    QCOMPARE(EnumUtility::enumValue(metaObject, "ReadyState", QVariant(key), -7), 4);
    QCOMPARE(EnumUtility::enumValue(metaObject, "ReadyState", QVariant(4), -7), 4);
    QCOMPARE(EnumUtility::enumValue(&request, "ReadyState", key, -7), 4);
    QCOMPARE(EnumUtility::enumValue(&request, "ReadyState", QVariant(key), -7), 4);
    QCOMPARE(EnumUtility::enumValue(&request, "ReadyState", QVariant(99), -7), -7);
}

void tst_EnumUtility::enumValueOfAMissingEnumIsCritical()
{
    LogCapture log;
    QCOMPARE(EnumUtility::enumValue(binaryData(), "Nothing", QString("key"), 8), 8);
    QCOMPARE(log.count(QtCriticalMsg, category, "Invalid metaEnum \"key\""), 1);
    const QObject *none = nullptr;
    QCOMPARE(EnumUtility::enumValue(none, "TextEncoding", QVariant("key"), 8), 8);
    QCOMPARE(log.count(QtCriticalMsg, category, "Null object TextEncoding"), 1);
    QCOMPARE(log.count(QtCriticalMsg, category, "Invalid metaEnum QVariant"), 1);
}

void tst_EnumUtility::enumValueName_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("value") << 3 << QByteArray("TextEncodingUtf16");
    QTest::newRow("negative value") << -1 << QByteArray("TextEncodingUnknown");
    QTest::newRow("no value") << 4 << QByteArray();
}

void tst_EnumUtility::enumValueName()
{
    QFETCH(int, value);
    QFETCH(QByteArray, name);
    const char *found = EnumUtility::enumValueName(textEncodings(), value);
    QCOMPARE(found == nullptr, name.isNull());
    QCOMPARE(QByteArray(found), name);
}

void tst_EnumUtility::enumValueNameOfAnInvalidEnumIsCritical()
{
    LogCapture log;
    QVERIFY(!EnumUtility::enumValueName(QMetaEnum(), 1));
    QCOMPARE(log.count(QtCriticalMsg, category, "Invalid metaEnum"), 1);
}

void tst_EnumUtility::enumValueNameThroughMetaObjectAndObject()
{
    const BinaryData object;
    QCOMPARE(QByteArray(EnumUtility::enumValueName(binaryData(), "TextEncoding", 1)),
             QByteArray("TextEncodingLatin1"));
    QCOMPARE(QByteArray(EnumUtility::enumValueName(&object, "TextEncoding", 2)),
             QByteArray("TextEncodingLocal8Bit"));
    LogCapture log;
    QVERIFY(!EnumUtility::enumValueName(&object, "Nothing", 2));
    QCOMPARE(log.count(QtCriticalMsg, category, "Invalid metaEnum"), 1);
}

void tst_EnumUtility::silentWhenTheCategoryIsOff()
{
    QLoggingCategory::setFilterRules("Zemrik.Tessaline.Utility=false");
    LogCapture log;
    EnumUtility::enumValueName(QMetaEnum(), 1);
    EnumUtility::enumerator(binaryData(), nullptr);
    QCOMPARE(log.messages().size(), 0);
    QLoggingCategory::setFilterRules(QString());
}

TESSALINE_TEST_MAIN(tst_EnumUtility)
#include "tst_EnumUtility.moc"
