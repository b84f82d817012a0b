#include "imports/DialogStage.h"
#include "support/IsolatedHome.h"

#include <QCamera>
#include <QCameraImageProcessing>
#include <QElapsedTimer>

// The camera's settings and the documents that they are made of, with the synthetic camera.
class tst_CameraProperties : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void helpersAreNotExported_data();
    void helpersAreNotExported();
    void rowsStandInTheirOrder();
    void withoutACameraItSaysSo();
    void withoutACameraEverythingIsHarmless();
    void choicesHaveIconsValuesAndLabels_data();
    void choicesHaveIconsValuesAndLabels();
    void flashModeIsNotChanged();
    void flashFollowsTheCamera();
    void whiteBalanceIsChosen_data();
    void whiteBalanceIsChosen();
    void sliderSetsTheCamera_data();
    void sliderSetsTheCamera();
    void sliderFollowsTheCamera_data();
    void sliderFollowsTheCamera();
    void contrastBrightensThePicture();
    void switchTurnsAutoOrientation();
    void orientationIsShown();
    void cameraBoxIsHidden();
    void cameraBoxChangesTheDevice();

    void chooserHasItsDefaults();
    void chooserLaysOutItsColumns();
    void sectionTogglesTheChooser_data();
    void sectionTogglesTheChooser();
    void collapsedRowExpands();
    void gridGrowsSlowly();
    void clickOnACellSelects();
    void doubleClickOnACellCollapses();
    void currentCellIsHighlighted();
    void indexForValueComparesLoosely();
    void valueWithoutARowShowsNothing();

    void sectionHasItsLook();
    void sliderHasItsRange();
    void textHasItsLook();

private:
    bool showProperties(const QString &more = QString())
    {
        return m_stage->show(
                   "Rectangle { anchors.fill: parent; color: \"#404040\" }\n"
                   "Camera { id: theCamera; captureMode: Camera.CaptureStillImage }\n"
                   "VideoOutput { id: theOutput; x: 400; width: 400; height: 300; source: "
                   "theCamera }\n"
                   "Inner.CameraProperties { id: theSubject; width: 240; camera: theCamera;"
                   " videoOutput: theOutput }\n"
                   + more)
               && QTest::qWaitFor([this] { return script("theCamera.cameraStatus").toInt() == 8; });
    }
    bool showChooser(const QString &properties = QString())
    {
        return m_stage->show(
            "property var chosen: []\n"
            "Rectangle { anchors.fill: parent; color: \"#404040\" }\n"
            "ListModel { id: rows\n"
            "ListElement { icon: \"images/gear.png\"; value: 3; label: \"Three\" }\n"
            "ListElement { icon: \"images/close.png\"; value: 5; label: \"Five\" }\n"
            "ListElement { icon: \"images/camera.png\"; value: 7; label: \"Seven\" }\n"
            "}\n"
            "Inner.CameraPropertyChooser { id: theSubject; width: 240; model: rows;"
            " label: \"Number\"; value: 5\n"
            "onSelected: { chosen = chosen.concat([value]) }\n"
            + properties + "}\n");
    }
    QVariant script(const QString &text) { return DialogStage::evaluate(m_stage->root(), text); }
    QQuickItem *subject() { return qobject_cast<QQuickItem *>(m_stage->subject()); }
    QQuickItem *chooser(int index)
    {
        return DialogStage::itemsOf(subject(), "CameraPropertyChooser").value(index);
    }
    QQuickItem *slider(int index)
    {
        return DialogStage::itemsOf(subject(), "CameraPropertySlider").value(index);
    }
    static QQuickItem *grid(QQuickItem *chooser)
    {
        return DialogStage::itemsOf(chooser, "QQuickGridView").value(0);
    }
    static QQuickItem *section(QQuickItem *row)
    {
        return DialogStage::itemsOf(row, "CameraPropertySection").value(0);
    }
    static QQuickItem *cell(QQuickItem *chooser, int index)
    {
        QQuickItem *found = nullptr;
        QMetaObject::invokeMethod(grid(chooser), "itemAtIndex", Q_RETURN_ARG(QQuickItem *, found),
                                  Q_ARG(int, index));
        return found;
    }
    static QString currentLabel(QQuickItem *chooser)
    {
        return DialogStage::evaluate(grid(chooser), "propertyItem.currentItem.label").toString();
    }
    // Opens the chooser, and waits until its grid has grown.
    static bool expand(QQuickItem *chooser)
    {
        DialogStage::click(section(chooser));
        const bool grown = QTest::qWaitFor([chooser] {
            const QString full = "Math.ceil(model.count / columns) * itemHeight";
            const qreal height = DialogStage::evaluate(grid(chooser), full).toReal();
            return height > 0 && grid(chooser)->height() == height;
        });
        chooser->window()->grabWindow(); // everything stands in its place now
        return grown;
    }
    QColor ground()
    {
        const QRectF picture = script("theOutput.contentRect").toRectF();
        return DialogStage::pixel(m_stage->window()->grabWindow(),
                                  QPointF(400, 0) + picture.topLeft() + QPointF(20, 8));
    }

    std::unique_ptr<DialogStage> m_stage;
};

void tst_CameraProperties::initTestCase()
{
    m_stage = std::make_unique<DialogStage>();
}

void tst_CameraProperties::init()
{
    m_stage->beginLog();
}

void tst_CameraProperties::cleanup()
{
    m_stage->endTest();
}

void tst_CameraProperties::cleanupTestCase()
{
    m_stage.reset();
}

void tst_CameraProperties::helpersAreNotExported_data()
{
    QTest::addColumn<QString>("type");
    for (const char *type : {"CameraProperties", "CameraPropertyChooser", "CameraPropertySection",
                             "CameraPropertySlider", "CameraPropertyText", "CameraComboBox"})
        QTest::newRow(type) << type;
}

void tst_CameraProperties::helpersAreNotExported()
{
    QFETCH(QString, type);
    QQmlComponent component(m_stage->engine());
    component.setData(QString("import QtQuick 2.15\nimport Zemrik.Tessaline 1.0\n"
                              "import Zemrik.Tessaline.Dialogs 1.0\n%1 {}")
                          .arg(type)
                          .toUtf8(),
                      QUrl("file:///stage.qml"));
    QVERIFY2(component.errorString().contains(type + " is not a type"),
             qPrintable(component.errorString()));
}

void tst_CameraProperties::rowsStandInTheirOrder()
{
    QVERIFY(showProperties());
    QCOMPARE(subject()->property("spacing").toReal(), 8.0);
    QStringList rows;
    for (QQuickItem *row : subject()->childItems()) {
        const QString type = QString::fromLatin1(row->metaObject()->className());
        QString label = row->property("label").toString();
        if (label.isEmpty())
            label = row->property("text").toString();
        if (type.startsWith("CameraComboBox"))
            label.clear();
        rows.append(type.section("_QML", 0, 0) + " " + label);
    }
    QCOMPARE(rows,
             QStringList({"CameraPropertyChooser Flash", "CameraPropertyChooser White Balance",
                          "CameraPropertySlider Contrast", "CameraPropertySlider Saturation",
                          "CameraPropertySlider Sharpening", "CameraPropertySection Orientation",
                          "Switch ", "CameraPropertyText Orientation:0 false",
                          "CameraPropertySection Camera", "CameraComboBox "}));
    QCOMPARE(m_stage->count(QtCriticalMsg, "No Camera"), 0);
}

void tst_CameraProperties::withoutACameraItSaysSo()
{
    m_stage->expectWarning("No Camera");
    QVERIFY(m_stage->show("Inner.CameraProperties { id: theSubject }"));
    QCOMPARE(m_stage->count(QtCriticalMsg, "No Camera"), 1);
}

void tst_CameraProperties::withoutACameraEverythingIsHarmless()
{
    m_stage->expectWarning("No Camera");
    QVERIFY(m_stage->show("Inner.CameraProperties { id: theSubject; width: 240 }"));
    for (int i = 0; i < 2; ++i) {
        QVERIFY(expand(chooser(i)));
        DialogStage::click(cell(chooser(i), 2));
        DialogStage::click(section(chooser(i)));
    }
    slider(0)->setProperty("value", 0.4);
    DialogStage::click(DialogStage::itemsOf(subject(), "Switch").first());
}

void tst_CameraProperties::choicesHaveIconsValuesAndLabels_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QStringList>("choices");
    QTest::newRow("flash") << 0
                           << QStringList({"images/camera_flash_auto.png 1 Auto",
                                           "images/camera_flash_off.png 2 Off",
                                           "images/camera_flash_redeye.png 8 Red Eye",
                                           "images/camera_flash_fill.png 16 Fill"});
    QTest::newRow("white balance")
        << 1
        << QStringList({"images/camera_auto_mode.png 0 Auto",
                        "images/camera_white_balance_sunny.png 2 Sunlight",
                        "images/camera_white_balance_cloudy.png 3 Cloudy",
                        "images/camera_white_balance_incandescent.png 5 Tungsten",
                        "images/camera_white_balance_flourescent.png 6 Fluorescent"});
}

void tst_CameraProperties::choicesHaveIconsValuesAndLabels()
{
    QVERIFY(showProperties());
    QFETCH(int, row);
    QFETCH(QStringList, choices);
    QQuickItem *view = grid(chooser(row));
    QCOMPARE(view->property("count").toInt(), choices.size());
    QVERIFY(expand(chooser(row)));
    QStringList found;
    for (int i = 0; i < choices.size(); ++i) {
        found.append(
            DialogStage::evaluate(
                view, QString("(function(r) { return r.icon + ' ' + r.value + ' ' + r.label })"
                              "(model.get(%1))")
                          .arg(i))
                .toString());
        QQuickItem *icon = DialogStage::itemsOf(cell(chooser(row), i), "QQuickImage").value(0);
        QTRY_COMPARE(icon->property("status").toInt(), 1);
        QQuickItem *label = DialogStage::itemsOf(cell(chooser(row), i), "QQuickText").value(0);
        QVERIFY(!label->property("truncated").toBool());
    }
    QCOMPARE(found, choices);
}

void tst_CameraProperties::flashModeIsNotChanged()
{
    QVERIFY(showProperties());
    QCOMPARE(currentLabel(chooser(0)), QString("Auto"));
    QVERIFY(expand(chooser(0)));
    DialogStage::click(cell(chooser(0), 3));
    // The value goes to another name, with a capital.
    QTRY_COMPARE(script("theCamera.flash.Mode").toInt(), int(QCameraExposure::FlashFill));
    QCOMPARE(script("theCamera.flash.mode").toInt(), int(QCameraExposure::FlashAuto));
    QCOMPARE(grid(chooser(0))->property("currentIndex").toInt(), 0);
    DialogStage::doubleClick(cell(chooser(0), 1));
    QCOMPARE(currentLabel(chooser(0)), QString("Auto"));
    QCOMPARE(chooser(0)->property("expanded").toBool(), false);
    QCOMPARE(script("theCamera.flash.mode").toInt(), int(QCameraExposure::FlashAuto));
}

void tst_CameraProperties::flashFollowsTheCamera()
{
    QVERIFY(showProperties());
    script("theCamera.flash.mode = Camera.FlashRedEyeReduction");
    QTRY_COMPARE(currentLabel(chooser(0)), QString("Red Eye"));
}

void tst_CameraProperties::whiteBalanceIsChosen_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("mode");
    QTest::addColumn<QColor>("color");
    QTest::addColumn<QString>("label");
    QTest::newRow("sunlight") << 1 << int(QCameraImageProcessing::WhiteBalanceSunlight)
                              << QColor(255, 200, 0) << "Sunlight";
    QTest::newRow("cloudy") << 2 << int(QCameraImageProcessing::WhiteBalanceCloudy)
                            << QColor(90, 110, 130) << "Cloudy";
    QTest::newRow("tungsten") << 3 << int(QCameraImageProcessing::WhiteBalanceTungsten)
                              << QColor(0, 80, 255) << "Tungsten";
    QTest::newRow("fluorescent") << 4 << int(QCameraImageProcessing::WhiteBalanceFluorescent)
                                 << QColor(0, 230, 120) << "Fluorescent";
    QTest::newRow("auto") << 0 << int(QCameraImageProcessing::WhiteBalanceAuto)
                          << QColor(40, 90, 60) << "Auto";
}

void tst_CameraProperties::whiteBalanceIsChosen()
{
    QFETCH(int, index);
    QVERIFY(showProperties());
    if (index == 0)
        script("theCamera.imageProcessing.whiteBalanceMode = "
               "CameraImageProcessing.WhiteBalanceCloudy");
    QVERIFY(expand(chooser(1)));
    DialogStage::click(cell(chooser(1), index));
    QTEST(script("theCamera.imageProcessing.whiteBalanceMode").toInt(), "mode");
    QTEST(currentLabel(chooser(1)), "label");
    QCOMPARE(grid(chooser(1))->property("currentIndex").toInt(), index);
    QFETCH(QColor, color);
    QTRY_VERIFY(DialogStage::isNear(ground(), color));
}

void tst_CameraProperties::sliderSetsTheCamera_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("value");
    QTest::newRow("Contrast") << 0 << "theCamera.imageProcessing.contrast";
    QTest::newRow("Saturation") << 1 << "theCamera.imageProcessing.saturation";
    QTest::newRow("Sharpening") << 2 << "theCamera.imageProcessing.sharpeningLevel";
}

void tst_CameraProperties::sliderSetsTheCamera()
{
    QVERIFY(showProperties());
    QFETCH(int, row);
    QFETCH(QString, value);
    QCOMPARE(slider(row)->property("label").toString(), QString(QTest::currentDataTag()));
    QCOMPARE(slider(row)->property("value").toReal(), 0.0);
    QQuickItem *groove = DialogStage::itemsOf(slider(row), "Slider").first();

    // Dragged to the right end, by mouse: it follows while it is dragged.
    QQuickWindow *window = m_stage->window();
    const QPoint middle = DialogStage::center(groove);
    const QRect rect = DialogStage::rectOf(groove).toRect();
    QTest::mousePress(window, Qt::LeftButton, Qt::NoModifier, middle);
    for (int x = middle.x(); x < rect.right(); x += 6)
        QTest::mouseMove(window, QPoint(x, middle.y()));
    QTest::mouseMove(window, QPoint(rect.right() + 20, middle.y()));
    QTRY_COMPARE(script(value).toReal(), 1.0);
    QTest::mouseRelease(window, Qt::LeftButton, Qt::NoModifier, QPoint(rect.right(), middle.y()));
    QTRY_COMPARE(script(value).toReal(), 1.0);

    // A click near the left end, and a key.
    QTest::mouseClick(window, Qt::LeftButton, Qt::NoModifier, QPoint(rect.left() + 1, middle.y()));
    QTRY_COMPARE(script(value).toReal(), -1.0);
    window->requestActivate();
    QVERIFY(QTest::qWaitForWindowActive(window));
    groove->forceActiveFocus();
    QTest::keyClick(window, Qt::Key_Right);
    QTRY_VERIFY(script(value).toReal() > -1.0);
    QVERIFY(qFuzzyCompare(script(value).toReal(), -0.8));
}

void tst_CameraProperties::sliderFollowsTheCamera_data()
{
    sliderSetsTheCamera_data();
}

void tst_CameraProperties::sliderFollowsTheCamera()
{
    QVERIFY(showProperties());
    QFETCH(int, row);
    QFETCH(QString, value);
    QQuickItem *groove = DialogStage::itemsOf(slider(row), "Slider").first();
    DialogStage::click(groove);
    script(value + " = 0.6");
    QTRY_VERIFY(qFuzzyCompare(slider(row)->property("value").toReal(), 0.6));
    // A value between two steps: the slider rounds it, the camera keeps it.
    script(value + " = -0.5");
    QTRY_VERIFY(slider(row)->property("value").toReal() < -0.3);
    QCOMPARE(script(value).toReal(), -0.5);
}

void tst_CameraProperties::contrastBrightensThePicture()
{
    QVERIFY(showProperties());
    QTRY_VERIFY(DialogStage::isNear(ground(), QColor(40, 90, 60)));
    slider(0)->setProperty("value", 1);
    QTRY_VERIFY(ground().value() > 120);
}

void tst_CameraProperties::switchTurnsAutoOrientation()
{
    QVERIFY(showProperties());
    QQuickItem *button = DialogStage::itemsOf(subject(), "Switch").first();
    QQuickItem *text = DialogStage::itemsOf(subject(), "CameraPropertyText").first();
    QCOMPARE(button->property("checked").toBool(), false);
    DialogStage::click(button);
    QTRY_COMPARE(script("theOutput.autoOrientation").toBool(), true);
    QTRY_VERIFY(text->property("text").toString().endsWith(" true"));
    // Until its handle has arrived, Qt's switch takes a press for the first half of a drag.
    QTRY_VERIFY(DialogStage::evaluate(button, "__panel.__handle.x === __panel.max").toBool());
    DialogStage::tap(button);
    QTRY_COMPARE(script("theOutput.autoOrientation").toBool(), false);
    // It follows the view also after it was clicked.
    script("theOutput.autoOrientation = true");
    QTRY_COMPARE(button->property("checked").toBool(), true);
    script("theOutput.autoOrientation = false");
    QTRY_COMPARE(button->property("checked").toBool(), false);
}

void tst_CameraProperties::orientationIsShown()
{
    QVERIFY(showProperties());
    script("theOutput.orientation = 90");
    QTRY_COMPARE(
        DialogStage::itemsOf(subject(), "CameraPropertyText").first()->property("text").toString(),
        QString("Orientation:90 false"));
}

void tst_CameraProperties::cameraBoxIsHidden()
{
    QVERIFY(showProperties());
    QQuickItem *box = DialogStage::itemsOf(subject(), "CameraComboBox").first();
    QVERIFY(!box->isVisible());
    QCOMPARE(box->property("textRole").toString(), QString("displayName"));
    QCOMPARE(box->property("count").toInt(), 2);
    QCOMPARE(box->property("camera"), script("theCamera"));
}

void tst_CameraProperties::cameraBoxChangesTheDevice()
{
    QVERIFY(showProperties());
    QQuickItem *box = DialogStage::itemsOf(subject(), "CameraComboBox").first();
    script("theCamera.deviceId = \"synthetic-front\"");
    box->setProperty("visible", true);
    QCOMPARE(box->property("currentIndex").toInt(), 1);
    QCOMPARE(box->property("currentText").toString(), QString("Front camera"));
    QTRY_VERIFY(DialogStage::isNear(ground(), QColor(120, 40, 90)));

    m_stage->window()->requestActivate();
    QVERIFY(QTest::qWaitForWindowActive(m_stage->window()));
    box->forceActiveFocus();
    QTest::keyClick(m_stage->window(), Qt::Key_Up);
    QTRY_COMPARE(script("theCamera.deviceId").toString(), QString("synthetic-back"));
    QTRY_COMPARE(script("theCamera.cameraState").toInt(), int(QCamera::ActiveState));
    QTRY_VERIFY(DialogStage::isNear(ground(), QColor(40, 90, 60)));
}

void tst_CameraProperties::chooserHasItsDefaults()
{
    QVERIFY(m_stage->show(
        "Inner.CameraPropertyChooser { id: theSubject; width: 240; model: ListModel {} }"));
    const qreal scale = script("Tessaline.displayScaleFactor").toReal();
    QCOMPARE(subject()->property("spacing").toReal(), 5.0);
    QCOMPARE(subject()->property("collapsedHeight").toInt(), int(scale * 30));
    QCOMPARE(subject()->property("columns").toInt(), 2);
    QCOMPARE(subject()->property("itemWidth").toInt(), 120);
    QCOMPARE(subject()->property("itemHeight").toInt(), 60);
    QCOMPARE(subject()->property("expanded").toBool(), false);
    QVERIFY(!subject()->property("value").isValid());
    QVERIFY(subject()->property("label").toString().isEmpty());
    QVERIFY(subject()->metaObject()->indexOfSignal("selected(QVariant)") >= 0);
}

void tst_CameraProperties::chooserLaysOutItsColumns()
{
    QVERIFY(showChooser("columns: 3"));
    QCOMPARE(subject()->property("itemWidth").toInt(), 80);
    QCOMPARE(subject()->property("itemHeight").toInt(), 40);
    QVERIFY(expand(subject()));
    QCOMPARE(grid(subject())->height(), 40.0);
    QCOMPARE(cell(subject(), 2)->position(), QPointF(160, 0));
    subject()->setProperty("columns", 1);
    QTRY_COMPARE(grid(subject())->height(), 360.0);
}

void tst_CameraProperties::sectionTogglesTheChooser_data()
{
    DialogStage::addPointerRows();
}

void tst_CameraProperties::sectionTogglesTheChooser()
{
    QVERIFY(showChooser());
    QCOMPARE(section(subject())->property("text").toString(), QString("Number"));
    QVERIFY(!section(subject())->property("active").toBool());
    DialogStage::press(section(subject()));
    QTRY_VERIFY(subject()->property("expanded").toBool());
    QVERIFY(section(subject())->property("active").toBool());
    QVERIFY(grid(subject())->isVisible());
    DialogStage::press(section(subject()));
    QTRY_VERIFY(!subject()->property("expanded").toBool());
    QVERIFY(!grid(subject())->isVisible());
}

void tst_CameraProperties::collapsedRowExpands()
{
    QVERIFY(showChooser());
    QQuickItem *row = subject()->childItems().at(1);
    QVERIFY(row->isVisible());
    QCOMPARE(row->height(), subject()->property("collapsedHeight").toReal());
    QVERIFY(DialogStage::itemWithPicture(row, "QQuickImage", "close"));
    QCOMPARE(DialogStage::itemsOf(row, "QQuickText").first()->property("text").toString(),
             QString("Five"));
    subject()->setProperty("value", 7);
    QCOMPARE(DialogStage::itemsOf(row, "QQuickText").first()->property("text").toString(),
             QString("Seven"));
    DialogStage::click(row);
    QTRY_VERIFY(subject()->property("expanded").toBool());
    QVERIFY(!row->isVisible());
}

void tst_CameraProperties::gridGrowsSlowly()
{
    QVERIFY(showChooser());
    QList<qreal> heights;
    QQuickItem *view = grid(subject());
    connect(view, &QQuickItem::heightChanged, this, [&] { heights.append(view->height()); });
    QElapsedTimer time;
    time.start();
    DialogStage::click(section(subject()));
    QTRY_COMPARE(view->height(), 120.0); // two rows of 60
    view->disconnect(this);
    QVERIFY2(time.elapsed() >= 100, qPrintable(QString::number(time.elapsed())));
    QVERIFY(std::is_sorted(heights.begin(), heights.end()));
}

void tst_CameraProperties::clickOnACellSelects()
{
    QVERIFY(showChooser());
    QVERIFY(expand(subject()));
    DialogStage::click(cell(subject(), 2));
    DialogStage::tap(cell(subject(), 0));
    QTRY_COMPARE(script("chosen.join()").toString(), QString("7,3"));
    // It stays open, and the value is whose it was.
    QVERIFY(subject()->property("expanded").toBool());
    QCOMPARE(grid(subject())->property("currentIndex").toInt(), 1);
}

void tst_CameraProperties::doubleClickOnACellCollapses()
{
    QVERIFY(showChooser());
    QVERIFY(expand(subject()));
    DialogStage::doubleClick(cell(subject(), 2));
    QTRY_VERIFY(!subject()->property("expanded").toBool());
    // Once for the click and once for the double click.
    QCOMPARE(script("chosen.join()").toString(), QString("7,7"));
}

void tst_CameraProperties::currentCellIsHighlighted()
{
    QVERIFY(showChooser());
    QVERIFY(expand(subject()));
    auto *highlight = grid(subject())->property("highlightItem").value<QQuickItem *>();
    QCOMPARE(highlight->property("color").value<QColor>(), QColor("#80000000"));
    QCOMPARE(highlight->property("radius").toInt(), 5);
    QTRY_COMPARE(highlight->position(), cell(subject(), 1)->position());
    QCOMPARE(grid(subject())->property("cellWidth").toReal(), 120.0);
    QCOMPARE(grid(subject())->property("cellHeight").toReal(), 60.0);
    for (int i = 0; i < 3; ++i) {
        QQuickItem *label = DialogStage::itemsOf(cell(subject(), i), "QQuickText").first();
        QCOMPARE(DialogStage::evaluate(label, "style === Text.Raised").toBool(), i == 1);
        QCOMPARE(DialogStage::evaluate(label, "style === Text.Sunken").toBool(), i != 1);
        QCOMPARE(label->property("styleColor").value<QColor>(), QColor("black"));
    }
}

void tst_CameraProperties::indexForValueComparesLoosely()
{
    QVERIFY(showChooser());
    QCOMPARE(script("theSubject.indexForValue(7)").toInt(), 2);
    QCOMPARE(script("theSubject.indexForValue('3')").toInt(), 0);
    script("rows.append({ icon: '', value: 7, label: 'Seven again' })");
    QCOMPARE(script("theSubject.indexForValue(7)").toInt(), 2);
}

void tst_CameraProperties::valueWithoutARowShowsNothing()
{
    QVERIFY(showChooser());
    subject()->setProperty("value", 4);
    QQuickItem *row = subject()->childItems().at(1);
    QCOMPARE(DialogStage::itemsOf(row, "QQuickText").first()->property("text").toString(),
             QString());
    QCOMPARE(grid(subject())->property("currentIndex").toInt(), -1);
}

void tst_CameraProperties::sectionHasItsLook()
{
    QVERIFY(m_stage->show("Item { width: 300; height: 60\n"
                          "Inner.CameraPropertySection { id: theSubject; text: \"Title\" } }"));
    QCOMPARE(subject()->width(), 300.0);
    QCOMPARE(script("theSubject.active").toBool(), false);
    const char *look =
        "[theSubject.font.pointSize, theSubject.font.bold,"
        " theSubject.style === Text.Raised, theSubject.style === Text.Sunken].join()";
    QCOMPARE(script(look).toString(), QString("14,false,false,true"));
    QCOMPARE(subject()->property("color").value<QColor>(), QColor("white"));
    QCOMPARE(subject()->property("styleColor").value<QColor>(), QColor("black"));
    script("theSubject.active = true");
    QCOMPARE(script(look).toString(), QString("14,true,true,false"));

    QQuickItem *line = DialogStage::itemsOf(subject(), "QQuickRectangle").first();
    QCOMPARE(line->property("color").value<QColor>(), QColor("#40ffffff"));
    QCOMPARE(line->size(), QSizeF(300, 1));
    QCOMPARE(line->y(), subject()->height() - 1);
}

void tst_CameraProperties::sliderHasItsRange()
{
    QVERIFY(m_stage->show(
        "Inner.CameraPropertySlider { id: theSubject; width: 240; label: \"Much\" }"));
    QQuickItem *slider = DialogStage::itemsOf(subject(), "Slider").first();
    QCOMPARE(slider->property("minimumValue").toReal(), -1.0);
    QCOMPARE(slider->property("maximumValue").toReal(), 1.0);
    QCOMPARE(slider->property("stepSize").toReal(), 0.2);
    QCOMPARE(slider->property("tickmarksEnabled").toBool(), true);
    QCOMPARE(slider->property("updateValueWhileDragging").toBool(), true);
    QCOMPARE(section(subject())->property("text").toString(), QString("Much"));
    subject()->setProperty("value", 0.4);
    QCOMPARE(slider->property("value").toReal(), 0.4);
}

void tst_CameraProperties::textHasItsLook()
{
    QVERIFY(m_stage->show("Item { width: 120; height: 60\n"
                          "Inner.CameraPropertyText { id: theSubject;"
                          " text: \"Word Averylongwordthatfitsnowhereatall\" } }"));
    QCOMPARE(subject()->width(), 120.0);
    QCOMPARE(script("theSubject.font.pointSize").toInt(), 14);
    QCOMPARE(subject()->property("color").value<QColor>(), QColor("white"));
    QVERIFY(subject()->property("lineCount").toInt() > 2);
    QVERIFY(subject()->property("contentWidth").toReal() <= 120);
}

TESSALINE_INPUT_TEST_MAIN(tst_CameraProperties)
#include "tst_CameraProperties.moc"
