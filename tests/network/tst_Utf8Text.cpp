#include "network/Utf8Text.h"
#include "support/IsolatedHome.h"

#include <QElapsedTimer>
#include <QTest>

#include <random>

class tst_Utf8Text : public QObject
{
    Q_OBJECT

private slots:
    void pieceByPieceEqualsTheWhole_data();
    void pieceByPieceEqualsTheWhole();
    void randomBytesInRandomPiecesEqualTheWhole();
    void textEndsAtAZeroByte();
    void clearedTextStartsAgain();
    void readingAfterEachPieceTakesLinearTime();
};

namespace {

// What a single decoding of all bytes gives.
QString reference(const QByteArray &bytes)
{
    const int zero = bytes.indexOf('\0');
    return QString::fromUtf8(zero < 0 ? bytes : bytes.left(zero));
}

} // namespace

void tst_Utf8Text::pieceByPieceEqualsTheWhole_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("ASCII") << QByteArray("plain text");
    QTest::newRow("two, three and four bytes") << QByteArray("a\u00fcb\u65e5c\U0001f600d");
    QTest::newRow("cut off in a character") << QByteArray("a\xf0\x9f\x98");
    QTest::newRow("continuation without a beginning") << QByteArray("a\x80\x80z\xbf");
    QTest::newRow("beginning without continuation") << QByteArray("\xc3z\xe2z\xf0z\xe2\x82z");
    QTest::newRow("overlong") << QByteArray("\xc0\x80\xe0\x80\x80\xf0\x80\x80\x80z");
    QTest::newRow("surrogates") << QByteArray("\xed\xa0\x80\xed\xb0\x80z");
    QTest::newRow("bytes that never occur") << QByteArray("\xf5\xf8\xfc\xfe\xffz");
    QTest::newRow("byte order mark in front") << QByteArray("\xef\xbb\xbfz");
    QTest::newRow("byte order marks inside")
        << QByteArray("a\xef\xbb\xbf\xef\xbb\xbfz\xef\xbb\xbf");
    QTest::newRow("two byte order marks in front") << QByteArray("\xef\xbb\xbf\xef\xbb\xbfz");
    QTest::newRow("zero in a character") << QByteArray("a\xe2\x82\0\xacz", 6);
    QTest::newRow("empty") << QByteArray();
}

void tst_Utf8Text::pieceByPieceEqualsTheWhole()
{
    QFETCH(QByteArray, bytes);
    for (int step = 1; step <= bytes.size() + 1; ++step) {
        Utf8Text text;
        for (int size = qMin(step, bytes.size());; size = qMin(size + step, bytes.size())) {
            const QByteArray sofar = bytes.left(size);
            QCOMPARE(text.text(sofar), reference(sofar));
            QCOMPARE(text.text(sofar), reference(sofar)); // reading changes nothing
            if (size == bytes.size())
                break;
        }
    }
}

void tst_Utf8Text::randomBytesInRandomPiecesEqualTheWhole()
{
    // Mostly bytes that matter to the decoding.
    const QByteArray alphabet(
        "a\x80\xbf\xc0\xc3\xe0\xe2\x82\xac\xed\xa0\xef\xbb\xbf\xf0\x9f\xf4\xff");
    std::mt19937 random(4711);
    for (int round = 0; round < 3000; ++round) {
        QByteArray bytes;
        Utf8Text text;
        const unsigned pieces = 1 + random() % 8;
        for (unsigned piece = 0; piece < pieces; ++piece) {
            for (unsigned i = random() % 6; i > 0; --i)
                bytes += alphabet.at(static_cast<int>(random() % unsigned(alphabet.size())));
            if (random() % 4 != 0 && text.text(bytes) != reference(bytes))
                QFAIL(bytes.toHex().constData());
        }
        QCOMPARE(text.text(bytes), reference(bytes));
    }
}

void tst_Utf8Text::textEndsAtAZeroByte()
{
    Utf8Text text;
    QCOMPARE(text.text(QByteArray("ab\0cd", 5)), QString("ab"));
    QCOMPARE(text.text(QByteArray("ab\0cdef", 7)), QString("ab"));
    text.clear();
    QCOMPARE(text.text(QByteArray("\0cd", 3)), QString());
}

void tst_Utf8Text::clearedTextStartsAgain()
{
    Utf8Text text;
    text.text("first");
    text.clear();
    QCOMPARE(text.text("2"), QString("2"));
}

void tst_Utf8Text::readingAfterEachPieceTakesLinearTime()
{
    // 64 MB in 16 KB pieces: decoding all of it at each read would take 2,000 times one decoding.
    const int piece = 16384;
    const int pieces = 4000;
    QByteArray bytes;
    bytes.reserve(piece * pieces);
    Utf8Text text;
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < pieces; ++i) {
        bytes.append(QByteArray(piece, 'x'));
        QVERIFY(text.text(bytes).size() == bytes.size());
    }
    QVERIFY2(timer.elapsed() < 10000, qPrintable(QString::number(timer.elapsed())));
}

TESSALINE_TEST_MAIN(tst_Utf8Text)
#include "tst_Utf8Text.moc"
