#include "imaging/QExifValue.h"
#include "support/IsolatedHome.h"

#include <QTest>
#include <QTextCodec>

Q_DECLARE_METATYPE(QExifValue)
Q_DECLARE_METATYPE(QExifValue::TextEncoding)

class tst_QExifValue : public QObject
{
    Q_OBJECT

private slots:
    void typesAndCounts_data();
    void typesAndCounts();
    void onlyTheSharedValueIsNull();
    void equalityComparesTheShare();
    void singleNumbersAcceptNarrowerTypes();
    void conversionsThatDoNotFitGiveNothing();
    void vectorsComeBack();
    void textsComeBack_data();
    void textsComeBack();
    void prefixesTellTheEncoding_data();
    void prefixesTellTheEncoding();
    void encodedTextsBeginWithTheirPrefix();
    void jisNeedsItsCodec();
    void datesHaveTwentyItems();
    void zerosInsideATextStay();
};

void tst_QExifValue::typesAndCounts_data()
{
    QTest::addColumn<QExifValue>("value");
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("count");

    QTest::newRow("null") << QExifValue() << 1 << 0;
    QTest::newRow("byte") << QExifValue(quint8(7)) << 1 << 1;
    QTest::newRow("bytes") << QExifValue(QVector<quint8>{1, 2, 3}) << 1 << 3;
    QTest::newRow("text") << QExifValue(QString("x")) << 2 << 2;
    QTest::newRow("empty text") << QExifValue(QString()) << 2 << 1;
    QTest::newRow("short") << QExifValue(quint16(7)) << 3 << 1;
    QTest::newRow("shorts") << QExifValue(QVector<quint16>{1, 2}) << 3 << 2;
    QTest::newRow("long") << QExifValue(quint32(7)) << 4 << 1;
    QTest::newRow("no long") << QExifValue(QVector<quint32>()) << 4 << 0;
    QTest::newRow("rational") << QExifValue(QExifURational(1, 2)) << 5 << 1;
    QTest::newRow("undefined") << QExifValue(QByteArray("ab")) << 7 << 2;
    QTest::newRow("ASCII text") << QExifValue("x", QExifValue::AsciiEncoding) << 7 << 9;
    QTest::newRow("local text") << QExifValue("x", QExifValue::UndefinedEncoding) << 7 << 9;
    QTest::newRow("signed long") << QExifValue(qint32(-7)) << 9 << 1;
    QTest::newRow("signed rationals")
        << QExifValue(QVector<QExifSRational>{{-1, 2}, {3, 4}}) << 10 << 2;
    QTest::newRow("date") << QExifValue(QDateTime({2020, 1, 2}, {3, 4, 5})) << 2 << 20;
}

void tst_QExifValue::typesAndCounts()
{
    QFETCH(QExifValue, value);
    QTEST(value.type(), "type");
    QTEST(value.count(), "count");
}

void tst_QExifValue::onlyTheSharedValueIsNull()
{
    QVERIFY(QExifValue().isNull());
    QVERIFY(!QExifValue(QVector<quint8>()).isNull());
    QVERIFY(!QExifValue(QByteArray()).isNull());
    QVERIFY(QExifValue() == QExifValue());
}

void tst_QExifValue::equalityComparesTheShare()
{
    const QExifValue value(quint16(5));
    const QExifValue copy(value);
    QExifValue assigned;
    assigned = value;
    QVERIFY(copy == value);
    QVERIFY(assigned == value);
    QVERIFY(!(QExifValue(quint16(5)) == value));
}

void tst_QExifValue::singleNumbersAcceptNarrowerTypes()
{
    const QExifValue byte(quint8(200));
    const QExifValue number(quint16(60000));
    const QExifValue wide(quint32(4000000000u));
    const QExifValue negative(qint32(-2));

    QCOMPARE(byte.toByte(), quint8(200));
    QCOMPARE(byte.toShort(), quint16(200));
    QCOMPARE(byte.toLong(), 200u);
    QCOMPARE(byte.toSignedLong(), 200);
    QCOMPARE(number.toByte(), quint8(0));
    QCOMPARE(number.toShort(), quint16(60000));
    QCOMPARE(number.toLong(), 60000u);
    QCOMPARE(wide.toShort(), quint16(0));
    QCOMPARE(wide.toLong(), 4000000000u);
    QCOMPARE(wide.toSignedLong(), -294967296);
    QCOMPARE(negative.toSignedLong(), -2);
    QCOMPARE(negative.toLong(), 4294967294u);
}

void tst_QExifValue::conversionsThatDoNotFitGiveNothing()
{
    const QExifValue two(QVector<quint32>{1, 2});
    QCOMPARE(two.toLong(), 0u);
    QCOMPARE(two.toSignedLong(), 0);
    QVERIFY(two.toShortVector().isEmpty());
    QVERIFY(two.toSignedLongVector().isEmpty());
    QVERIFY(two.toByteArray().isEmpty());
    QVERIFY(two.toString().isEmpty());
    QVERIFY(!two.toDateTime().isValid());
    QCOMPARE(QExifValue(QVector<quint32>()).toLong(), 0u);
    QCOMPARE(two.toRational(), QExifURational(0, 0));
    QCOMPARE(QExifValue(QVector<QExifURational>{{1, 2}, {3, 4}}).toRational(),
             QExifURational(0, 0));
    QCOMPARE(QExifValue(QExifURational(1, 2)).toSignedRational(), QExifSRational(0, 0));
    QVERIFY(QExifValue(QExifURational(1, 2)).toSignedRationalVector().isEmpty());
    QCOMPARE(QExifValue(QVector<quint8>{1, 2}).toByte(), quint8(0));
    QCOMPARE(QExifValue(QVector<quint16>{1, 2}).toShort(), quint16(0));
    QCOMPARE(QExifValue(QExifURational(1, 2)).toLong(), 0u);
    QVERIFY(QExifValue(QByteArray("ab")).toByteVector().isEmpty());
    QVERIFY(QExifValue(quint8('a')).toByteArray().isEmpty());
    QVERIFY(QExifValue(quint8('a')).toString().isEmpty());
    QVERIFY(QExifValue(QByteArray("no prefix, no text")).toString().isEmpty());
    QVERIFY(!QExifValue(QString("nineteen characters")).toDateTime().isValid());
    QVERIFY(QExifValue().toString().isEmpty());
    QCOMPARE(QExifValue().toByte(), quint8(0));
    QCOMPARE(QExifValue(QString("x")).encoding(), QExifValue::NoEncoding);
    QCOMPARE(QExifValue(QString::fromLatin1("ASCII\0\0\0x", 9)).encoding(), QExifValue::NoEncoding);
}

void tst_QExifValue::vectorsComeBack()
{
    const QVector<quint8> bytes{1, 255};
    const QVector<quint16> shorts{1, 65535};
    const QVector<quint32> longs{1, 4294967295u};
    const QVector<qint32> signedLongs{-1, 2147483647};
    const QVector<QExifURational> rationals{{1, 2}, {4294967295u, 0}};
    const QVector<QExifSRational> signedRationals{{-1, 2}, {3, -4}};
    QCOMPARE(QExifValue(bytes).toByteVector(), bytes);
    QCOMPARE(QExifValue(shorts).toShortVector(), shorts);
    QCOMPARE(QExifValue(longs).toLongVector(), longs);
    QCOMPARE(QExifValue(signedLongs).toSignedLongVector(), signedLongs);
    QCOMPARE(QExifValue(rationals).toRationalVector(), rationals);
    QCOMPARE(QExifValue(signedRationals).toSignedRationalVector(), signedRationals);
    QCOMPARE(QExifValue(QExifURational(1, 2)).toRational(), QExifURational(1, 2));
    QCOMPARE(QExifValue(QExifSRational(-1, 2)).toSignedRational(), QExifSRational(-1, 2));
    QCOMPARE(QExifValue(QByteArray("a\0b", 3)).toByteArray(), QByteArray("a\0b", 3));
    QCOMPARE(QExifValue(QString("\u00e4b")).toByteArray(), QByteArray("\xe4"
                                                                      "b"));
}

void tst_QExifValue::textsComeBack_data()
{
    QTest::addColumn<QExifValue::TextEncoding>("encoding");
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << QExifValue::NoEncoding << QString("Zo\u00eb \u20ac");
    QTest::newRow("ASCII") << QExifValue::AsciiEncoding << QString("x");
    QTest::newRow("Unicode") << QExifValue::UnicodeEncoding << QString("Zo\u00eb \u20ac");
    QTest::newRow("local") << QExifValue::UndefinedEncoding << QString("Zo\u00eb \u20ac");
}

void tst_QExifValue::textsComeBack()
{
    QFETCH(QExifValue::TextEncoding, encoding);
    QFETCH(QString, text);
    const QExifValue value(text, encoding);
    QCOMPARE(value.encoding(), encoding);
    QCOMPARE(value.toString(), text);
}

void tst_QExifValue::prefixesTellTheEncoding_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QExifValue::TextEncoding>("encoding");
    QTest::newRow("ASCII") << QByteArray("ASCII\0\0\0x", 9) << QExifValue::AsciiEncoding;
    QTest::newRow("JIS") << QByteArray("JIS\0\0\0\0\0x", 9) << QExifValue::JisEncoding;
    QTest::newRow("Unicode") << QByteArray("UNICODE\0x", 9) << QExifValue::UnicodeEncoding;
    QTest::newRow("undefined") << QByteArray(9, '\0') << QExifValue::UndefinedEncoding;
    QTest::newRow("prefix only") << QByteArray("ASCII\0\0\0", 8) << QExifValue::NoEncoding;
    QTest::newRow("lower case") << QByteArray("ascii\0\0\0x", 9) << QExifValue::NoEncoding;
    QTest::newRow("padded with spaces") << QByteArray("ASCII   x") << QExifValue::NoEncoding;
}

void tst_QExifValue::prefixesTellTheEncoding()
{
    QFETCH(QByteArray, bytes);
    QTEST(QExifValue(bytes).encoding(), "encoding");
}

void tst_QExifValue::encodedTextsBeginWithTheirPrefix()
{
    QCOMPARE(QExifValue("x", QExifValue::AsciiEncoding).toByteArray(),
             QByteArray("ASCII\0\0\0x", 9));
    QCOMPARE(QExifValue("x", QExifValue::UndefinedEncoding).toByteArray(),
             QByteArray("\0\0\0\0\0\0\0\0x", 9));
    const QByteArray unicode = QExifValue("x", QExifValue::UnicodeEncoding).toByteArray();
    QCOMPARE(unicode.left(8), QByteArray("UNICODE\0", 8));
    QCOMPARE(unicode.mid(8), QTextCodec::codecForName("UTF-16")->fromUnicode("x"));
}

void tst_QExifValue::jisNeedsItsCodec()
{
    const QExifValue value("x", QExifValue::JisEncoding);
    const QByteArray bytes("JIS\0\0\0\0\0\x23\x78", 10);
    if (QTextCodec::codecForName("JIS X 0208")) {
        QCOMPARE(value.encoding(), QExifValue::JisEncoding);
    } else {
        QVERIFY(value.isNull());
        QCOMPARE(QExifValue(bytes).toString(), QString());
    }
}

void tst_QExifValue::datesHaveTwentyItems()
{
    const QDateTime date({2021, 12, 31}, {23, 59, 58});
    QCOMPARE(QExifValue(date).toString(), QString("2021:12:31 23:59:58"));
    QCOMPARE(QExifValue(date).toDateTime(), date);
    QVERIFY(!QExifValue(QString("2021:12:31 23:59:5")).toDateTime().isValid());
    QVERIFY(!QExifValue(QString("2021:12:31 23:59:58 ")).toDateTime().isValid());
    QVERIFY(!QExifValue(QByteArray("2021:12:31 23:59:58\0", 20)).toDateTime().isValid());
}

void tst_QExifValue::zerosInsideATextStay()
{
    const QByteArray bytes("ASCII\0\0\0a\0b", 11);
    QCOMPARE(QExifValue(bytes).toString().size(), 3);
}

TESSALINE_TEST_MAIN(tst_QExifValue)
#include "tst_QExifValue.moc"
