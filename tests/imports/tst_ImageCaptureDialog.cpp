#include "imports/DialogStage.h"
#include "support/IsolatedHome.h"

#include <QCamera>
#include <QCameraInfo>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QStandardPaths>

namespace {

const int okButton = 0x400;

} // namespace

// The capture dialog with the synthetic camera, in real windows.
class tst_ImageCaptureDialog : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void hasItsProperties_data();
    void hasItsProperties();
    void beginsHiddenAndTitled();
    void opensAtTheRightSize_data();
    void opensAtTheRightSize();
    void sizeFollowsTheParent();
    void sizeIsWholeOnAndroidOnly();
    void contentCoversThePadding();
    void cameraIsLoadedOnlyWhileVisible();
    void cameraIsSetUpForPortraits();
    void liveViewMoves();
    void liveViewKeepsItsProportions();
    void clickInTheLiveViewDoesNothing();
    void closeButtonRejects();
    void closingTheWindowRejects();
    void closeButtonsShowForWindowModalDialogsOnly_data();
    void closeButtonsShowForWindowModalDialogsOnly();
    void gearShowsThePanel();
    void panelSlidesAndFadesIn();
    void panelStaysUntilItsCloseButton();
    void runsFromTheRightWhereTheApplicationDoes();
    void panelHoldsTheSettings();
    void panelScrolls();
    void shutterLiesAtTheBottom();
    void shutterTakesAPicture_data();
    void shutterTakesAPicture();
    void pictureIsSignalledBeforeTheDialogEnds();
    void captureLogsWhatTheCameraTells();
    void fileNameIsTheTime();
    void twoPicturesHaveTheirOwnNames();
    void twoPicturesInOneSecondHaveTheSameName();
    void capturePathDecidesTheFolder();
    void folderThatIsMissingKeepsTheDialogOpen();
    void cancelKeepsTheLastUrl();
    void escapeRejects();
    void returnTakesNothing();
    void bindingsFollowTheUrl();
    void iconsStandOutFromAnyGround_data();
    void iconsStandOutFromAnyGround();
    void looksLikeACamera();
    void exampleOfTheDocumentationRuns();

private:
    // The document with the dialog and handlers that count.
    bool showDialog(const QString &properties = QString(), const QString &root = QString("Item"))
    {
        return m_stage->show(
            QString("property int acceptedCount: 0; property int rejectedCount: 0\n"
                    "property url seen: theSubject.imageUrl\n"
                    "ImageCaptureDialog { id: theSubject; %1\n"
                    "onAccepted: acceptedCount++; onRejected: rejectedCount++ }")
                .arg(properties),
            root);
    }
    bool showOpenDialog(const QString &properties = QString())
    {
        return showDialog(properties) && m_stage->openDialog() && viewIsLive();
    }
    bool viewIsLive()
    {
        return QTest::qWaitFor([this] { return colorAtTheCorner() != QColor("grey"); });
    }
    // The live view's ground shows in the middle of the picture's top edge.
    QColor colorAtTheCorner()
    {
        const QRectF view = DialogStage::rectOf(item("videoOutput"));
        const QRectF picture = m_stage->insideSubject("videoOutput.contentRect").toRectF();
        return DialogStage::pixel(m_stage->dialogWindow()->grabWindow(),
                                  view.topLeft() + picture.topLeft()
                                      + QPointF(picture.width() / 2, 12));
    }
    QQuickItem *item(const QString &id) { return m_stage->innerItem(id); }
    QQuickItem *button(const QString &name, const QString &parent = QString("videoOutput"))
    {
        return DialogStage::itemWithPicture(item(parent), "ImageButton", name);
    }
    QVariant property(const char *name) { return m_stage->subject()->property(name); }
    int count(const char *name) { return m_stage->root()->property(name).toInt(); }
    qreal scale() { return m_stage->insideSubject("Tessaline.displayScaleFactor").toReal(); }
    bool isOpen() { return property("visible").toBool(); }

    std::unique_ptr<DialogStage> m_stage;
    QString m_pictures;
};

void tst_ImageCaptureDialog::initTestCase()
{
    m_stage = std::make_unique<DialogStage>();
    QCOMPARE(QCameraInfo::availableCameras().size(), 2);
    m_pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    QVERIFY(QDir().mkpath(m_pictures));
}

void tst_ImageCaptureDialog::init()
{
    m_stage->beginLog();
}

void tst_ImageCaptureDialog::cleanup()
{
    m_stage->endTest();
}

void tst_ImageCaptureDialog::cleanupTestCase()
{
    m_stage.reset();
}

void tst_ImageCaptureDialog::hasItsProperties_data()
{
    DialogStage::addPropertyColumns();
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    QTest::newRow("capturePath") << QByteArray("QString") << true << QVariant(pictures);
    QTest::newRow("imagePath") << QByteArray("QString") << true << QVariant(QString());
    QTest::newRow("imageUrl") << QByteArray("QUrl") << true << QVariant(QUrl());
    QTest::newRow("fullScreen") << QByteArray("bool") << false << QVariant(false);
    QTest::newRow("sizeRatio") << QByteArray("double") << false << QVariant(0.95);
}

void tst_ImageCaptureDialog::hasItsProperties()
{
    QVERIFY(showDialog());
    m_stage->testProperty();
}

void tst_ImageCaptureDialog::beginsHiddenAndTitled()
{
    QVERIFY(showDialog());
    QCOMPARE(property("visible").toBool(), false);
    QCOMPARE(property("title").toString(), QString("Capture"));
    QCOMPARE(property("standardButtons").toInt(), 0);
    QCOMPARE(m_stage->insideSubject("dialog").value<QObject *>(), m_stage->subject());

    QVERIFY(m_stage->openDialog());
    QCOMPARE(m_stage->dialogWindow()->title(), QString("Capture"));
}

void tst_ImageCaptureDialog::opensAtTheRightSize_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("Item") << QSize(760, 570);
    QTest::newRow("Window") << QSize(600, 400);
    QTest::newRow("ApplicationWindow") << QSize(600, 400);
}

void tst_ImageCaptureDialog::opensAtTheRightSize()
{
    QVERIFY(showDialog(QString(), QTest::currentDataTag()));
    QVERIFY(m_stage->openDialog());
    QFETCH(QSize, size);
    QTRY_COMPARE(m_stage->dialogWindow()->size(), size);
    QCOMPARE(property("width").toInt(), size.width());
    QCOMPARE(property("height").toInt(), size.height());
    QVERIFY(viewIsLive());
}

void tst_ImageCaptureDialog::sizeFollowsTheParent()
{
    QVERIFY(showDialog());
    QVERIFY(m_stage->openDialog());
    m_stage->window()->resize(640, 500);
    QTRY_COMPARE(m_stage->dialogWindow()->size(), QSize(608, 475));
}

void tst_ImageCaptureDialog::sizeIsWholeOnAndroidOnly()
{
    QVERIFY(showDialog());
    const bool android = m_stage->insideSubject("Qt.platform.os === \"android\"").toBool();
    QCOMPARE(property("fullScreen").toBool(), android);
    QCOMPARE(property("sizeRatio").toReal(), android ? 1 : 0.95);
}

void tst_ImageCaptureDialog::contentCoversThePadding()
{
    QVERIFY(showDialog());
    QVERIFY(m_stage->openDialog());
    const QSizeF size = m_stage->dialogWindow()->size();
    // Left, right and top; Qt's padding stays at the bottom.
    QTRY_COMPARE(DialogStage::rectOf(item("dialogItem")),
                 QRectF(0, 0, size.width(), size.height() - 12));
    QCOMPARE(item("dialogItem")->property("color").value<QColor>(), QColor("grey"));
    QCOMPARE(DialogStage::rectOf(item("videoOutput")), DialogStage::rectOf(item("dialogItem")));
}

void tst_ImageCaptureDialog::cameraIsLoadedOnlyWhileVisible()
{
    QVERIFY(showDialog());
    QCOMPARE(m_stage->insideSubject("camera.cameraState").toInt(), int(QCamera::UnloadedState));
    QVERIFY(m_stage->openDialog());
    QTRY_COMPARE(m_stage->insideSubject("camera.cameraState").toInt(), int(QCamera::ActiveState));
    QTRY_COMPARE(m_stage->insideSubject("camera.cameraStatus").toInt(), int(QCamera::ActiveStatus));
    QMetaObject::invokeMethod(m_stage->subject(), "close");
    QTRY_COMPARE(m_stage->insideSubject("camera.cameraStatus").toInt(),
                 int(QCamera::UnloadedStatus));
}

void tst_ImageCaptureDialog::cameraIsSetUpForPortraits()
{
    QVERIFY(showDialog());
    QVERIFY(m_stage->openDialog());
    QTRY_COMPARE(m_stage->insideSubject("camera.exposure.exposureCompensation").toReal(), -1.0);
    QCOMPARE(m_stage->insideSubject("camera.exposure.exposureMode").toInt(),
             int(QCameraExposure::ExposurePortrait));
    QCOMPARE(m_stage->insideSubject("camera.captureMode").toInt(), int(QCamera::CaptureStillImage));
}

void tst_ImageCaptureDialog::liveViewMoves()
{
    QVERIFY(showOpenDialog());
    const QImage first = m_stage->dialogWindow()->grabWindow();
    QTRY_VERIFY(m_stage->dialogWindow()->grabWindow() != first);
    // The back camera's own ground, brought up by no setting.
    QTRY_VERIFY(DialogStage::isNear(colorAtTheCorner(), QColor(40, 90, 60)));
}

void tst_ImageCaptureDialog::liveViewKeepsItsProportions()
{
    QVERIFY(showOpenDialog());
    QCOMPARE(item("videoOutput")->property("fillMode").toInt(), 1); // PreserveAspectFit
    QCOMPARE(m_stage->insideSubject("videoOutput.source === camera").toBool(), true);
    QTRY_COMPARE(m_stage->insideSubject("videoOutput.contentRect.width * 3 / 4").toReal(),
                 item("videoOutput")->height());
    // The grey ground beside it.
    QCOMPARE(DialogStage::pixel(m_stage->dialogWindow()->grabWindow(), QPointF(2, 200)),
             QColor("grey"));
}

void tst_ImageCaptureDialog::clickInTheLiveViewDoesNothing()
{
    QVERIFY(showOpenDialog());
    DialogStage::click(item("videoOutput"));
    DialogStage::tap(item("videoOutput"));
    QVERIFY(isOpen());
    QVERIFY(!item("cameraPropertiesPanel")->isVisible());
    QVERIFY(QDir(m_pictures).entryList(QDir::Files).isEmpty());
}

void tst_ImageCaptureDialog::closeButtonRejects()
{
    QVERIFY(showOpenDialog());
    QQuickItem *close = button("close");
    QVERIFY(close && close->isVisible());
    const QRectF view = DialogStage::rectOf(item("videoOutput"));
    QCOMPARE(DialogStage::rectOf(close).topRight(), view.topRight() + QPointF(-10, 10));
    DialogStage::click(close);
    QTRY_VERIFY(!isOpen());
    QCOMPARE(count("rejectedCount"), 1);
    QCOMPARE(count("acceptedCount"), 0);
}

void tst_ImageCaptureDialog::closingTheWindowRejects()
{
    QVERIFY(showOpenDialog());
    m_stage->dialogWindow()->close();
    QTRY_VERIFY(!isOpen());
    QCOMPARE(count("rejectedCount"), 1);
    QCOMPARE(count("acceptedCount"), 0);
}

void tst_ImageCaptureDialog::closeButtonsShowForWindowModalDialogsOnly_data()
{
    QTest::addColumn<bool>("shown");
    QTest::newRow("Qt.WindowModal") << true;
    QTest::newRow("Qt.ApplicationModal") << false;
    QTest::newRow("Qt.NonModal") << false;
}

void tst_ImageCaptureDialog::closeButtonsShowForWindowModalDialogsOnly()
{
    QVERIFY(showOpenDialog(QString("modality: %1").arg(QTest::currentDataTag())));
    QTEST(button("close")->isVisible(), "shown");
    m_stage->insideSubject("cameraPropertiesPanel.show()");
    QTRY_VERIFY(item("cameraPropertiesPanel")->isVisible());
    QTEST(button("close", "cameraPropertiesPanel")->isVisible(), "shown");
}

void tst_ImageCaptureDialog::gearShowsThePanel()
{
    QVERIFY(showOpenDialog());
    QQuickItem *gear = button("gear");
    QQuickItem *panel = item("cameraPropertiesPanel");
    QCOMPARE(panel->opacity(), 0.0);
    QVERIFY(gear->isVisible() && !panel->isVisible());
    const QRectF view = DialogStage::rectOf(item("videoOutput"));
    QCOMPARE(DialogStage::rectOf(gear).bottomLeft(), view.bottomLeft() + QPointF(10, -10));

    DialogStage::click(gear);
    QTRY_COMPARE(panel->opacity(), 1.0);
    QVERIFY(!gear->isVisible());
    QTRY_COMPARE(panel->x(), 0.0);
    QCOMPARE(panel->width(), scale() * 200);
    QCOMPARE(panel->height(), item("dialogItem")->height());
    QCOMPARE(panel->property("color").value<QColor>(), QColor("#80808080"));

    DialogStage::tap(button("close", "cameraPropertiesPanel"));
    QTRY_VERIFY(!panel->isVisible());
    QCOMPARE(panel->opacity(), 0.0);
    QVERIFY(gear->isVisible());
    QVERIFY(isOpen());
    DialogStage::tap(gear);
    QTRY_COMPARE(panel->opacity(), 1.0);
}

void tst_ImageCaptureDialog::panelSlidesAndFadesIn()
{
    QVERIFY(showOpenDialog());
    QQuickItem *panel = item("cameraPropertiesPanel");
    QCOMPARE(panel->x(), -panel->width());
    QList<qreal> places;
    QList<qreal> opacities;
    connect(panel, &QQuickItem::xChanged, this, [&] { places.append(panel->x()); });
    connect(panel, &QQuickItem::opacityChanged, this, [&] { opacities.append(panel->opacity()); });
    QElapsedTimer time;
    time.start();
    DialogStage::click(button("gear"));
    QTRY_VERIFY(panel->opacity() == 1 && panel->x() == 0);
    panel->disconnect(this);
    QVERIFY2(time.elapsed() >= 100, qPrintable(QString::number(time.elapsed())));
    // How many steps there are is the machine's speed.
    QVERIFY(std::is_sorted(places.begin(), places.end()));
    QVERIFY(std::is_sorted(opacities.begin(), opacities.end()));
}

void tst_ImageCaptureDialog::panelStaysUntilItsCloseButton()
{
    QVERIFY(showOpenDialog());
    DialogStage::click(button("gear"));
    QTRY_COMPARE(item("cameraPropertiesPanel")->opacity(), 1.0);
    QTest::keyClick(m_stage->dialogWindow(), Qt::Key_Escape);
    QTRY_VERIFY(!isOpen());
    QVERIFY(m_stage->openDialog());
    QCOMPARE(item("cameraPropertiesPanel")->opacity(), 1.0);
    // A dialog made anew begins without it.
    QVERIFY(showOpenDialog());
    QVERIFY(!item("cameraPropertiesPanel")->isVisible());
}

void tst_ImageCaptureDialog::runsFromTheRightWhereTheApplicationDoes()
{
    QVERIFY(showDialog()); // the library's translator is installed, which resets the direction
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    QVERIFY(m_stage->openDialog());
    const QRectF view = DialogStage::rectOf(item("videoOutput"));
    QTRY_COMPARE(DialogStage::rectOf(button("close")).topLeft(), view.topLeft() + QPointF(10, 10));
    QCOMPARE(DialogStage::rectOf(button("gear")).bottomRight(),
             view.bottomRight() - QPointF(10, 10));
    QQuickItem *panel = item("cameraPropertiesPanel");
    QTRY_COMPARE(panel->x(), view.width());
    DialogStage::click(button("gear"));
    QTRY_VERIFY(panel->opacity() == 1 && panel->x() == view.width() - panel->width());
    QCOMPARE(DialogStage::rectOf(button("close", "cameraPropertiesPanel")).left(), panel->x() + 8);
    // The settings' cells begin at the right.
    QQuickItem *flash = DialogStage::itemsOf(panel, "CameraPropertyChooser").first();
    flash->setProperty("expanded", true);
    QQuickItem *grid = DialogStage::itemsOf(flash, "QQuickGridView").first();
    QTRY_COMPARE(grid->height(), 2 * flash->property("itemHeight").toReal());
    const auto icons = DialogStage::itemsOf(grid, "QQuickImage");
    QCOMPARE(icons.size(), 4);
    for (QQuickItem *icon : icons)
        QVERIFY(DialogStage::rectOf(grid).contains(DialogStage::rectOf(icon)));
    QVERIFY(DialogStage::center(icons.at(0)).x() > DialogStage::center(icons.at(1)).x());

    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
    QTRY_COMPARE(panel->x(), 0.0);
    QTRY_COMPARE(DialogStage::rectOf(button("close")).topRight(),
                 view.topRight() + QPointF(-10, 10));
}

void tst_ImageCaptureDialog::panelHoldsTheSettings()
{
    QVERIFY(showOpenDialog());
    DialogStage::click(button("gear"));
    QQuickItem *panel = item("cameraPropertiesPanel");
    QTRY_COMPARE(panel->opacity(), 1.0);
    QQuickItem *title = button("close", "cameraPropertiesPanel")->parentItem();
    QCOMPARE(title->property("color").value<QColor>(), QColor("#60000000"));
    QCOMPARE(title->width(), panel->width());
    const auto flickables = DialogStage::itemsOf(panel, "QQuickFlickable");
    QCOMPARE(flickables.size(), 1);
    QVERIFY(flickables.first()->clip());
    const auto settings = DialogStage::itemsOf(flickables.first(), "CameraProperties");
    QCOMPARE(settings.size(), 1);
    QCOMPARE(settings.first()->property("camera"), m_stage->insideSubject("camera"));
    QCOMPARE(settings.first()->property("videoOutput"), m_stage->insideSubject("videoOutput"));
    QCOMPARE(m_stage->count(QtCriticalMsg, "No Camera"), 0);
}

void tst_ImageCaptureDialog::panelScrolls()
{
    QVERIFY(showDialog());
    QVERIFY(m_stage->openDialog());
    m_stage->window()->resize(360, 300);
    DialogStage::click(button("gear"));
    QTRY_COMPARE(item("cameraPropertiesPanel")->opacity(), 1.0);
    QQuickItem *flickable =
        DialogStage::itemsOf(item("cameraPropertiesPanel"), "QQuickFlickable").first();
    QTRY_VERIFY(flickable->property("contentHeight").toReal() > flickable->height());
    const QPointF place = DialogStage::center(flickable);
    QWheelEvent wheel(place, place, QPoint(), QPoint(0, -240), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(m_stage->dialogWindow(), &wheel);
    QTRY_VERIFY(flickable->property("contentY").toReal() > 0);
}

void tst_ImageCaptureDialog::shutterLiesAtTheBottom()
{
    QVERIFY(showOpenDialog());
    const QRectF view = DialogStage::rectOf(item("videoOutput"));
    const QRectF shutter = DialogStage::rectOf(button("camera"));
    QCOMPARE(shutter.size(), QSizeF(scale() * 60, scale() * 40));
    QVERIFY(qAbs(shutter.center().x() - view.center().x()) <= 0.5);
    QCOMPARE(shutter.bottom(), view.bottom() - 20);
}

void tst_ImageCaptureDialog::shutterTakesAPicture_data()
{
    DialogStage::addPointerRows();
}

void tst_ImageCaptureDialog::shutterTakesAPicture()
{
    QVERIFY(showOpenDialog());
    DialogStage::press(button("camera"));
    QTRY_VERIFY(!isOpen());
    QCOMPARE(count("acceptedCount"), 1);
    QCOMPARE(count("rejectedCount"), 0);

    const QString path = property("imagePath").toString();
    QCOMPARE(QFileInfo(path).path(), m_pictures);
    const QImage picture(path, "JPEG");
    QCOMPARE(picture.size(), QSize(1280, 960));
    QCOMPARE(property("imageUrl").toUrl(), QUrl::fromLocalFile(path));
    QVERIFY(QFile::remove(path));
}

void tst_ImageCaptureDialog::pictureIsSignalledBeforeTheDialogEnds()
{
    QVERIFY(showOpenDialog());
    // A handler of the document reads the new values.
    QSignalSpy accepted(m_stage->subject(), SIGNAL(accepted()));
    QSignalSpy path(m_stage->subject(), SIGNAL(imagePathChanged()));
    QSignalSpy url(m_stage->subject(), SIGNAL(imageUrlChanged()));
    DialogStage::click(button("camera"));
    QTRY_COMPARE(accepted.count(), 1);
    QCOMPARE(path.count(), 1);
    QCOMPARE(url.count(), 1);
    QCOMPARE(property("clickedButton").toInt(), okButton);
    QVERIFY(QFile::remove(property("imagePath").toString()));
}

void tst_ImageCaptureDialog::captureLogsWhatTheCameraTells()
{
    QVERIFY(showOpenDialog());
    DialogStage::click(button("camera"));
    QTRY_VERIFY(!isOpen());
    const QString path = property("imagePath").toString();
    QCOMPARE(m_stage->count(QtDebugMsg, "Image Metadata Callback :  CameraModel Synthetic"), 1);
    QCOMPARE(m_stage->count(QtDebugMsg, "Camera image path changed:  " + path), 1);
    QCOMPARE(m_stage->count(QtDebugMsg, "onImageSaved " + path), 1);
    QVERIFY(QFile::remove(path));
}

void tst_ImageCaptureDialog::fileNameIsTheTime()
{
    QVERIFY(showOpenDialog());
    const QDateTime before = QDateTime::currentDateTime();
    DialogStage::click(button("camera"));
    QTRY_VERIFY(!isOpen());
    const QDateTime after = QDateTime::currentDateTime();
    const QString name = QFileInfo(property("imagePath").toString()).fileName();
    QVERIFY2(QRegularExpression("^IMG-[0-9]{8}-[0-9]{6}\\.jpg$").match(name).hasMatch(),
             qPrintable(name));
    const QString time = name.mid(4, 15);
    QVERIFY(time >= before.toString("yyyyMMdd-HHmmss")
            && time <= after.toString("yyyyMMdd-HHmmss"));
    QVERIFY(QFile::remove(property("imagePath").toString()));
}

void tst_ImageCaptureDialog::twoPicturesHaveTheirOwnNames()
{
    QVERIFY(showOpenDialog());
    DialogStage::click(button("camera"));
    QTRY_VERIFY(!isOpen());
    const QString first = property("imagePath").toString();
    const QString second = QDateTime::currentDateTime().toString("ss");
    QTRY_VERIFY(QDateTime::currentDateTime().toString("ss") != second);

    QVERIFY(m_stage->openDialog());
    QVERIFY(viewIsLive());
    DialogStage::click(button("camera"));
    QTRY_COMPARE(count("acceptedCount"), 2);
    QVERIFY(property("imagePath").toString() != first);
    QCOMPARE(QDir(m_pictures).entryList(QDir::Files).size(), 2);
    QVERIFY(QFile::remove(first));
    QVERIFY(QFile::remove(property("imagePath").toString()));
}

void tst_ImageCaptureDialog::twoPicturesInOneSecondHaveTheSameName()
{
    QVERIFY(showOpenDialog());
    // From the beginning of a second there is time for both.
    QTRY_VERIFY(QTime::currentTime().msec() < 300);
    m_stage->insideSubject("dialogItem.capture()");
    QTRY_VERIFY(!isOpen());
    const QString first = property("imagePath").toString();
    QVERIFY(m_stage->openDialog());
    QTRY_VERIFY(m_stage->insideSubject("camera.imageCapture.ready").toBool());
    m_stage->insideSubject("dialogItem.capture()");
    QTRY_COMPARE(count("acceptedCount"), 2);
    if (property("imagePath").toString() != first)
        QSKIP("The machine took more than a second for two pictures");
    QCOMPARE(QDir(m_pictures).entryList(QDir::Files).size(), 1);
    QVERIFY(QFile::remove(first));
}

void tst_ImageCaptureDialog::capturePathDecidesTheFolder()
{
    const QString folder = QDir::homePath() + "/Elsewhere 1#2";
    QVERIFY(QDir().mkpath(folder));
    QVERIFY(showOpenDialog(QString("capturePath: \"%1\"").arg(folder)));
    DialogStage::click(button("camera"));
    QTRY_COMPARE(count("acceptedCount"), 1);
    const QString path = property("imagePath").toString();
    QCOMPARE(QFileInfo(path).path(), folder);
    QVERIFY(QFileInfo(path).size() > 0);
    QCOMPARE(property("imageUrl").toUrl().toLocalFile(), path);
}

void tst_ImageCaptureDialog::folderThatIsMissingKeepsTheDialogOpen()
{
    m_stage->expectWarning("QCameraImageCapture error: \"Can't write"); // Qt Multimedia's own words
    QVERIFY(showOpenDialog("capturePath: \"/nowhere/at/all\""));
    QSignalSpy failed(m_stage->insideSubject("camera.imageCapture").value<QObject *>(),
                      SIGNAL(captureFailed(int, QString)));
    DialogStage::click(button("camera"));
    QTRY_COMPARE(failed.count(), 1);
    QVERIFY(isOpen());
    QCOMPARE(property("imagePath").toString(), QString());
    QCOMPARE(property("imageUrl").toUrl(), QUrl());
}

void tst_ImageCaptureDialog::cancelKeepsTheLastUrl()
{
    QVERIFY(showOpenDialog());
    DialogStage::click(button("camera"));
    QTRY_VERIFY(!isOpen());
    const QUrl url = property("imageUrl").toUrl();
    const QString path = property("imagePath").toString();
    QVERIFY(m_stage->openDialog());
    DialogStage::click(button("close"));
    QTRY_COMPARE(count("rejectedCount"), 1);
    QCOMPARE(property("imageUrl").toUrl(), url);
    QCOMPARE(property("imagePath").toString(), path);
    QVERIFY(QFile::remove(path));
}

void tst_ImageCaptureDialog::escapeRejects()
{
    QVERIFY(showOpenDialog());
    QTest::keyClick(m_stage->dialogWindow(), Qt::Key_Escape);
    QTRY_VERIFY(!isOpen());
    QCOMPARE(count("rejectedCount"), 1);
    QCOMPARE(property("imageUrl").toUrl(), QUrl());
}

void tst_ImageCaptureDialog::returnTakesNothing()
{
    QVERIFY(showOpenDialog());
    // Qt's dialog would end as accepted, without a picture.
    QTest::keyClick(m_stage->dialogWindow(), Qt::Key_Return);
    QTest::keyClick(m_stage->dialogWindow(), Qt::Key_Enter);
    QVERIFY(isOpen());
    QCOMPARE(count("acceptedCount"), 0);
    QVERIFY(QDir(m_pictures).entryList(QDir::Files).isEmpty());
}

void tst_ImageCaptureDialog::bindingsFollowTheUrl()
{
    QVERIFY(showOpenDialog());
    DialogStage::click(button("camera"));
    QTRY_COMPARE(count("acceptedCount"), 1);
    QCOMPARE(m_stage->root()->property("seen").toUrl(), property("imageUrl").toUrl());
    QVERIFY(!m_stage->root()->property("seen").toUrl().isEmpty());
    QVERIFY(QFile::remove(property("imagePath").toString()));
}

void tst_ImageCaptureDialog::iconsStandOutFromAnyGround_data()
{
    QTest::addColumn<QColor>("ground");
    QTest::newRow("the dialog's own grey") << QColor("grey");
    QTest::newRow("white") << QColor("white");
    QTest::newRow("black") << QColor("black");
    QTest::newRow("a green picture") << QColor(40, 90, 60);
}

void tst_ImageCaptureDialog::iconsStandOutFromAnyGround()
{
    QFETCH(QColor, ground);
    QVERIFY(showDialog());
    QVERIFY(m_stage->openDialog());
    m_stage->insideSubject("camera.stop()");
    item("dialogItem")->setProperty("color", ground);
    // Without frames the ground shows everywhere.
    item("videoOutput")->setProperty("source", QVariant());
    for (const char *name : {"close", "gear", "camera"}) {
        QQuickItem *icon = button(name);
        QTRY_COMPARE(DialogStage::pixel(m_stage->dialogWindow()->grabWindow(),
                                        DialogStage::rectOf(icon).topLeft() - QPointF(2, 0)),
                     ground);
        QTRY_VERIFY2(DialogStage::contrastOf(icon, m_stage->dialogWindow()->grabWindow(), ground)
                         >= 3.0,
                     name);
    }
}

void tst_ImageCaptureDialog::looksLikeACamera()
{
    QVERIFY(showOpenDialog());
    QTest::mouseMove(m_stage->dialogWindow(), QPoint(300, 200));
    DialogStage::click(button("gear"));
    QQuickItem *panel = item("cameraPropertiesPanel");
    QTRY_VERIFY(panel->opacity() == 1 && panel->x() == 0);
    QQuickItem *balance = DialogStage::itemsOf(panel, "CameraPropertyChooser").at(1);
    balance->setProperty("expanded", true);
    QQuickItem *grid = DialogStage::itemsOf(balance, "QQuickGridView").first();
    QTRY_COMPARE(grid->height(), 3 * balance->property("itemHeight").toReal());
    // The panel lets the picture through: video on both sides of its edge, darker on the left.
    const QImage picture = m_stage->dialogWindow()->grabWindow();
    QCOMPARE(picture.size(), QSize(760, 570));
    QVERIFY(DialogStage::pixel(picture, QPointF(panel->width() - 2, 500))
            != DialogStage::pixel(picture, QPointF(panel->width() + 2, 500)));
    DialogStage::keepPicture(picture, "image-capture-dialog.png");
}

void tst_ImageCaptureDialog::exampleOfTheDocumentationRuns()
{
    const QString source = QString::fromLocal8Bit(qgetenv("TESSALINE_SOURCE_DIR"));
    QFile file(source + "/docs/camera-and-chooser.md");
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString example =
        QString::fromUtf8(file.readAll()).section("```qml\n", 1, 1).section("```", 0, 0);
    QQmlComponent component(m_stage->engine());
    component.setData(example.toUtf8(), QUrl("file:///tmp/example/main.qml"));
    QObject *root = component.create();
    QVERIFY2(root, qPrintable(component.errorString()));
    QVERIFY(m_stage->showRoot(root));

    const auto press = [this](const QString &text) {
        for (QQuickItem *button :
             DialogStage::itemsOf(m_stage->window()->contentItem(), "Button")) {
            if (button->property("text").toString() == text)
                DialogStage::click(button);
        }
    };
    QObject *camera = DialogStage::evaluate(root->children().first(), "camera").value<QObject *>();
    QVERIFY(camera);
    press("Take a picture");
    QTRY_VERIFY(camera->property("visible").toBool());
    QTRY_VERIFY(DialogStage::inside(camera, "camera.imageCapture.ready").toBool());
    DialogStage::inside(camera, "dialogItem.capture()");
    QTRY_VERIFY(!camera->property("visible").toBool());
    QVERIFY(QFile::exists(camera->property("imagePath").toString()));

    QObject *chooser =
        DialogStage::evaluate(root->children().first(), "chooser").value<QObject *>();
    press("Choose a picture");
    QTRY_VERIFY(chooser->property("visible").toBool());
    QTRY_COMPARE(chooser->property("imageUrl"), camera->property("imageUrl"));
    QVERIFY(QFile::remove(camera->property("imagePath").toString()));
}

TESSALINE_INPUT_TEST_MAIN(tst_ImageCaptureDialog)
#include "tst_ImageCaptureDialog.moc"
