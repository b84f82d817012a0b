#include "plugin/ColorUtility.h"
#include "support/IsolatedHome.h"

#include <QTest>

#include <cstdlib>

class tst_ColorUtility : public QObject
{
    Q_OBJECT

private slots:
    void contrastIsBlackOrWhite_data();
    void contrastIsBlackOrWhite();
    void tintReplacesOrBlends_data();
    void tintReplacesOrBlends();
    void alphaColorIsACopyWithAlpha();
    void randomColorIsANamedOneButNotBlackOrWhite();
    void randomColorFollowsTheSequenceOfRand();
};

void tst_ColorUtility::contrastIsBlackOrWhite_data()
{
    QTest::addColumn<QColor>("color");
    QTest::addColumn<QColor>("contrast");

    const QColor black(0, 0, 0);
    const QColor white(255, 255, 255);
    QTest::newRow("white") << white << black;
    QTest::newRow("black") << black << white;
    QTest::newRow("at the turn, 4128") << QColor(129, 129, 129) << black;
    QTest::newRow("just below it, 4127") << QColor(129, 134, 112) << white;
    QTest::newRow("grey below it, 4096") << QColor(128, 128, 128) << white;
    QTest::newRow("red") << QColor(255, 0, 0) << white;
    QTest::newRow("green") << QColor(0, 255, 0) << white;
    QTest::newRow("yellow") << QColor(255, 255, 0) << black;
    QTest::newRow("blue") << QColor(0, 0, 255) << white;
    QTest::newRow("alpha does not count") << QColor(255, 255, 255, 0) << black;
    QTest::newRow("invalid is black") << QColor() << white;
}

void tst_ColorUtility::contrastIsBlackOrWhite()
{
    QFETCH(QColor, color);
    QFETCH(QColor, contrast);
    QCOMPARE(ColorUtility::contrastColor(color, QColor()), contrast);
    QCOMPARE(ColorUtility::contrastColor(color, QColor(10, 20, 30, 0)), contrast);
}

void tst_ColorUtility::tintReplacesOrBlends_data()
{
    QTest::addColumn<QColor>("color");
    QTest::addColumn<QColor>("tint");
    QTest::addColumn<QRgb>("result");

    const QColor white(Qt::white);
    const QColor black(Qt::black);
    QTest::newRow("opaque") << white << QColor(1, 2, 3) << qRgba(1, 2, 3, 255);
    QTest::newRow("into black") << white << QColor(255, 0, 100, 51) << qRgba(51, 0, 20, 255);
    QTest::newRow("into white") << black << QColor(255, 0, 100, 51) << qRgba(255, 204, 224, 255);
    QTest::newRow("nearly opaque") << black << QColor(0, 0, 0, 254) << qRgba(1, 1, 1, 255);
    QTest::newRow("hardly any") << black << QColor(0, 0, 0, 1) << qRgba(254, 254, 254, 255);
}

void tst_ColorUtility::tintReplacesOrBlends()
{
    QFETCH(QColor, color);
    QFETCH(QColor, tint);
    QFETCH(QRgb, result);
    const QColor blended = ColorUtility::contrastColor(color, tint);
    QVERIFY(blended.isValid());
    QCOMPARE(blended.rgba(), result);
}

void tst_ColorUtility::alphaColorIsACopyWithAlpha()
{
    QCOMPARE(ColorUtility::alphaColor(QColor(1, 2, 3), 0.5).rgba(), qRgba(1, 2, 3, 128));
    QCOMPARE(ColorUtility::alphaColor(QColor(1, 2, 3, 4), 1).rgba(), qRgba(1, 2, 3, 255));
    QCOMPARE(ColorUtility::alphaColor(QColor(1, 2, 3), 0).rgba(), qRgba(1, 2, 3, 0));
}

void tst_ColorUtility::randomColorIsANamedOneButNotBlackOrWhite()
{
    QSet<QRgb> named;
    for (const QString &name : QColor::colorNames())
        named.insert(QColor(name).rgba());
    QSet<QRgb> seen;
    for (int i = 0; i < 5000; ++i) {
        const QColor color = ColorUtility::randomColor();
        QVERIFY(named.contains(color.rgba()));
        QVERIFY(color != QColor(Qt::black));
        QVERIFY(color != QColor(Qt::white));
        seen.insert(color.rgba());
    }
    named.remove(QColor(Qt::black).rgba());
    named.remove(QColor(Qt::white).rgba());
    QCOMPARE(seen, named);
}

void tst_ColorUtility::randomColorFollowsTheSequenceOfRand()
{
    const auto sequence = [] {
        QList<QColor> colors;
        for (int i = 0; i < 10; ++i)
            colors.append(ColorUtility::randomColor());
        return colors;
    };
    std::srand(42);
    const QList<QColor> first = sequence();
    const QList<QColor> other = sequence();
    std::srand(42);
    QCOMPARE(sequence(), first);
    QVERIFY(other != first);
}

TESSALINE_TEST_MAIN(tst_ColorUtility)
#include "tst_ColorUtility.moc"
