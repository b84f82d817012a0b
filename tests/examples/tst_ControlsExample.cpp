#include "examples/ExampleWindow.h"
#include "support/IsolatedHome.h"

// One sitting with the controls: each test goes on where the one before it stopped.
class tst_ControlsExample : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void theTailFollowsThePointer();
    void noTailIntoTheRectangle();
    void slidersSetTheCallout_data();
    void slidersSetTheCallout();
    void colorsReachTheTail();
    void thePanelFadesAndWakes();
    void aDisabledFaderStays();
    void theButtonCounts();
    void theButtonGlows();
    void flowsIntoColumns_data();
    void flowsIntoColumns();
    void looksLikeAPage_data();
    void looksLikeAPage();
    void printsNoWarning();

private:
    QQuickItem *item(const char *name) const { return m_window->item(name); }
    qreal unit() const { return m_window->view()->rootObject()->property("unit").toReal(); }
    // At that share of the item's width.
    void clickAt(const char *name, qreal share)
    {
        const QPointF point =
            item(name)->mapToScene(QPointF(item(name)->width() * share, item(name)->height() / 2));
        QTest::mouseClick(m_window->view(), Qt::LeftButton, Qt::NoModifier, point.toPoint());
    }
    QColor pixel(const QPointF &point) { return m_window->picture().pixelColor(point.toPoint()); }

    std::unique_ptr<ExampleWindow> m_window;
};

void tst_ControlsExample::initTestCase()
{
    m_window = std::make_unique<ExampleWindow>("controls");
    QVERIFY(m_window->isReady());
    QVERIFY(m_window->expose());
    m_window->resize(qRound(1280 * unit()), qRound(800 * unit()));
    QCOMPARE(m_window->text("title"), QString("Controls"));
}

void tst_ControlsExample::theTailFollowsThePointer()
{
    QQuickItem *area = item("calloutArea");
    QQuickItem *callout = item("callout");
    const QPointF tip(callout->x() + callout->width() / 2, callout->y() - 50 * unit());
    const QPointF inside = area->mapToScene(tip + QPointF(0, 35 * unit()));
    QVERIFY(pixel(inside) != QColor("white"));
    QTest::mouseClick(m_window->view(), Qt::LeftButton, Qt::NoModifier,
                      area->mapToScene(tip).toPoint());
    QVERIFY(qAbs(callout->property("originX").toReal() - tip.x()) <= 1);
    QVERIFY(qAbs(callout->property("originY").toReal() - tip.y()) <= 1);
    QTRY_COMPARE(pixel(inside), QColor("white"));
}

void tst_ControlsExample::noTailIntoTheRectangle()
{
    QQuickItem *callout = item("callout");
    const QVariant before = callout->property("originY");
    m_window->clickItem(callout);
    QCOMPARE(callout->property("originY"), before);
}

void tst_ControlsExample::slidersSetTheCallout_data()
{
    QTest::addColumn<QString>("slider");
    QTest::addColumn<QString>("property");
    QTest::addColumn<qreal>("value"); // at the right end, in units
    QTest::newRow("tailWidth") << "tailWidth"
                               << "tailWidth" << 60.0;
    QTest::newRow("width") << "calloutWidth"
                           << "width" << 180.0;
    QTest::newRow("height") << "calloutHeight"
                            << "height" << 120.0;
    QTest::newRow("radius") << "radius"
                            << "radius" << 24.0;
}

void tst_ControlsExample::slidersSetTheCallout()
{
    QFETCH(QString, slider);
    QFETCH(QString, property);
    QFETCH(qreal, value);
    clickAt(slider.toLatin1().constData(), 0.999);
    QTRY_VERIFY(
        qAbs(item("callout")->property(property.toLatin1().constData()).toReal() - value * unit())
        < 0.01);
}

void tst_ControlsExample::colorsReachTheTail()
{
    QQuickItem *callout = item("callout");
    const QPointF base = callout->mapToScene(QPointF(callout->width() / 2, -4 * unit()));
    m_window->click("color #ffe9a8");
    QCOMPARE(callout->property("color").value<QColor>(), QColor("#ffe9a8"));
    QTRY_COMPARE(pixel(base), QColor("#ffe9a8"));
}

void tst_ControlsExample::thePanelFadesAndWakes()
{
    clickAt("timeoutDuration", 0.001);
    clickAt("animationDuration", 0.1);
    m_window->click("startButton");
    QTRY_VERIFY(item("panel")->opacity() < 0.36);
    clickAt("timeoutDuration", 0.999);
    m_window->click("panel");
    QCOMPARE(item("panel")->opacity(), 1.0);
}

void tst_ControlsExample::aDisabledFaderStays()
{
    m_window->click("faderSwitch");
    QCOMPARE(item("panel")->opacity(), 1.0);
    clickAt("maximumOpacity", 0.5);
    m_window->click("startButton");
    QCOMPARE(item("panel")->opacity(), 1.0);
    m_window->click("stopButton");
    QVERIFY(qAbs(item("panel")->opacity() - 0.5) < 0.06);
}

void tst_ControlsExample::theButtonCounts()
{
    QCOMPARE(m_window->text("counts"),
             QString::fromUtf8("clicked 0 · doubleClicked 0 · pressAndHold 0"));
    m_window->click("star");
    QTRY_VERIFY(m_window->text("counts").startsWith("clicked 1 "));
    m_window->click("enabledSwitch");
    m_window->click("star");
    QVERIFY(m_window->text("counts").startsWith("clicked 1 "));
    m_window->click("enabledSwitch");
}

void tst_ControlsExample::theButtonGlows()
{
    QTest::mouseMove(m_window->view(), QPoint(5, 5));
    // Between two points of the star, where the glow is strongest.
    const QPointF beside =
        item("star")->mapToScene(QPointF(item("star")->width() / 2, item("star")->height() * 0.79));
    QTRY_COMPARE(pixel(beside), QColor("#ece2ea"));
    m_window->click("glowColor #e0563f");
    QTRY_VERIFY(pixel(beside).red() > 200 && pixel(beside).blue() < 150);
}

void tst_ControlsExample::flowsIntoColumns_data()
{
    ExampleWindow::addColumnRows();
}

void tst_ControlsExample::flowsIntoColumns()
{
    m_window->testColumns();
}

void tst_ControlsExample::looksLikeAPage_data()
{
    ExampleWindow::addSizeRows();
}

void tst_ControlsExample::looksLikeAPage()
{
    QFETCH(QSize, size);
    m_window->resize(size.width(), size.height());
    QTRY_COMPARE(pixel(QPointF(size.width() - 3, 3)), QColor("#7a3b69"));
    const QImage picture = m_window->picture();
    QCOMPARE(picture.pixelColor(3, picture.height() - 3), QColor("#f6f1f5"));
    QVERIFY(ExampleWindow::colorCount(picture) > 100);
    // No card sticks out.
    for (const char *name : {"tailWidth", "maximumOpacity", "buttonSize"}) {
        const QQuickItem *slider = item(name);
        QVERIFY(slider->mapToScene(QPointF(slider->width(), 0)).x() <= size.width() - 32);
    }
}

void tst_ControlsExample::printsNoWarning()
{
    QCOMPARE(m_window->warningCount(), 0);
}

TESSALINE_INPUT_TEST_MAIN(tst_ControlsExample)
#include "tst_ControlsExample.moc"
