#include "imports/DialogStage.h"
#include "support/IsolatedHome.h"

#include <QCameraInfo>
#include <QDir>
#include <QStandardPaths>

// The capture dialog on a machine without any camera: no media service plug-in is found.
class tst_NoCamera : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void opensAndCloses();
    void shutterTakesNothing();
    void settingsAreHarmless();

private:
    bool showOpenDialog()
    {
        return m_stage->show("property int acceptedCount: 0\n"
                             "ImageCaptureDialog { id: theSubject; onAccepted: acceptedCount++ }")
               && m_stage->openDialog();
    }
    QQuickItem *button(const QString &name)
    {
        return DialogStage::itemWithPicture(m_stage->innerItem("videoOutput"), "ImageButton", name);
    }
    bool isOpen() { return m_stage->subject()->property("visible").toBool(); }

    std::unique_ptr<DialogStage> m_stage;
};

void tst_NoCamera::initTestCase()
{
    if (!QCameraInfo::availableCameras().isEmpty())
        QSKIP("This machine has a camera");
    m_stage = std::make_unique<DialogStage>();
}

void tst_NoCamera::init()
{
    m_stage->beginLog();
    // Qt Multimedia's own words: each time that a camera is made, and when it is to take a picture.
    m_stage->expectWarning("no service found for");
    m_stage->expectWarning("Device does not support images capture.");
}

void tst_NoCamera::cleanup()
{
    if (!m_stage)
        return;
    m_stage->endTest();
}

void tst_NoCamera::cleanupTestCase()
{
    m_stage.reset();
}

void tst_NoCamera::opensAndCloses()
{
    QVERIFY(showOpenDialog());
    QCOMPARE(DialogStage::pixel(m_stage->dialogWindow()->grabWindow(), QPointF(200, 200)),
             QColor("grey"));
    DialogStage::click(button("close"));
    QTRY_VERIFY(!isOpen());
    QVERIFY(m_stage->openDialog());
    QTest::keyClick(m_stage->dialogWindow(), Qt::Key_Escape);
    QTRY_VERIFY(!isOpen());
}

void tst_NoCamera::shutterTakesNothing()
{
    QVERIFY(showOpenDialog());
    DialogStage::click(button("camera"));
    DialogStage::click(button("camera"));
    QVERIFY(isOpen());
    QCOMPARE(m_stage->root()->property("acceptedCount").toInt(), 0);
    QCOMPARE(m_stage->subject()->property("imageUrl").toUrl(), QUrl());
    const QDir pictures(QStandardPaths::writableLocation(QStandardPaths::PicturesLocation));
    QVERIFY(pictures.entryList(QDir::Files).isEmpty());
}

void tst_NoCamera::settingsAreHarmless()
{
    QVERIFY(showOpenDialog());
    DialogStage::click(button("gear"));
    QQuickItem *panel = m_stage->innerItem("cameraPropertiesPanel");
    QTRY_COMPARE(panel->opacity(), 1.0);
    // There is a camera object, it just has no service.
    QCOMPARE(m_stage->count(QtCriticalMsg, "No Camera"), 0);
    QQuickItem *balance = DialogStage::itemsOf(panel, "CameraPropertyChooser").at(1);
    balance->setProperty("expanded", true);
    QQuickItem *grid = DialogStage::itemsOf(balance, "QQuickGridView").first();
    QTRY_VERIFY(grid->height() > 100);
    QQuickItem *cell = nullptr;
    QMetaObject::invokeMethod(grid, "itemAtIndex", Q_RETURN_ARG(QQuickItem *, cell), Q_ARG(int, 1));
    DialogStage::click(cell);
    DialogStage::itemsOf(panel, "CameraPropertySlider").first()->setProperty("value", 0.4);
}

TESSALINE_INPUT_TEST_MAIN(tst_NoCamera)
#include "tst_NoCamera.moc"
