#include "examples/ExampleWindow.h"
#include "support/IsolatedHome.h"

#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QProcess>
#include <QQmlListReference>
#include <QStandardPaths>

namespace {

const QColor red("#ff0000"), green("#00ff00"), blue("#0000ff"), yellow("#ffff00");
const QColor cyan("#00ffff"), magenta("#ff00ff");

bool run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    return process.waitForFinished() && process.exitStatus() == QProcess::NormalExit
           && process.exitCode() == 0;
}

// The colours in the middle of the four quarters: top left, top right, bottom left, bottom right.
QStringList quarters(const QImage &image)
{
    QStringList names;
    for (int y : {image.height() / 4, image.height() * 3 / 4}) {
        for (int x : {image.width() / 4, image.width() * 3 / 4})
            names.append(image.pixelColor(x, y).name());
    }
    return names;
}

QStringList namesOf(const QList<QColor> &colors)
{
    QStringList names;
    for (const QColor &color : colors)
        names.append(color.name());
    return names;
}

QQuickItem *findText(QQuickItem *parent, const QString &text)
{
    if (parent->isVisible() && parent->property("text").toString() == text)
        return parent;
    for (QQuickItem *child : parent->childItems()) {
        if (QQuickItem *found = findText(child, text))
            return found;
    }
    return nullptr;
}

bool isNear(const QColor &a, const QColor &b)
{
    return qAbs(a.red() - b.red()) < 24 && qAbs(a.green() - b.green()) < 24
           && qAbs(a.blue() - b.blue()) < 24;
}

} // namespace

// One sitting with the photos example: each test begins in the pictures folder.
class tst_PhotosExample : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void startsInThePicturesFolder();
    void gridShowsThePictures();
    void onlyWhatIsInSightIsDecoded();
    void foldersWithoutPicturesSaySo();
    void upLeadsToTheFolderAbove();
    void foldersCanBeTyped();
    void missingFolderIsSaid();
    void damagedFilesAreSaid_data();
    void damagedFilesAreSaid();
    void namesWithSignsAreShown();
    void tagsAreReadable_data();
    void tagsAreReadable();
    void pictureWithoutTags();
    void positionInDegreesMinutesSeconds_data();
    void positionInDegreesMinutesSeconds();
    void neighboursByKeysButtonsAndSwipes();
    void turnedPicturesStandUpright();
    void operationsAreSaved_data();
    void operationsAreSaved();
    void cropByDragging();
    void cropFrameCanBeMovedAndResized();
    void cropByKeys();
    void scaleKeepsTheProportions();
    void undoGoesBackStepByStep();
    void savingAsJpeg();
    void replacingAFile();
    void namesThatCantBeSaved_data();
    void namesThatCantBeSaved();
    void failedSavingIsSaid();
    void folderIsNeverReplaced();
    void longNamesAreSaved();
    void leavingAsksForUnsavedChanges();
    void keysAloneSuffice();
    void chooserOpensItsPicture();
    void fitsTheWindow_data();
    void fitsTheWindow();
    void printsNoWarning();

private:
    void openPhoto(const QString &name);
    void edit(const QString &name);
    void fill(const QString &objectName, const QString &text);
    void saveAs(const QString &name);
    void drag(const QPointF &from, const QPointF &to);
    void key(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    bool isShown(const QString &objectName) const;
    QString tag(const QString &key) const { return m_window->text("tag " + key, "value"); }
    QString path(const QString &name) const { return m_pictures.filePath(name); }
    QImage image(const QString &name) const { return QImage(path(name)); }
    QRectF shown(const QString &objectName) const;

    QDir m_pictures;
    std::unique_ptr<ExampleWindow> m_window;
};

void tst_PhotosExample::initTestCase()
{
    for (const char *program : {"convert", "exiftool"}) {
        QVERIFY2(!QStandardPaths::findExecutable(QLatin1String(program)).isEmpty(),
                 qPrintable(QStringLiteral("scripts/setup test installs ") + program));
    }
    m_pictures.setPath(QStandardPaths::writableLocation(QStandardPaths::PicturesLocation));
    for (const char *folder : {"Damaged", "Empty/Inside", "Many", "Positions"})
        QVERIFY(m_pictures.mkpath(folder));

    // Red and green above, blue and yellow below.
    const QStringList quarters{"-size",   "200x100",   "xc:red",  "xc:lime", "+append", "(",
                               "xc:blue", "xc:yellow", "+append", ")",       "-append"};
    QVERIFY(run("convert", quarters + QStringList{path("quarters.png")}));
    QVERIFY(run("convert", quarters + QStringList{"-quality", "95", path("100% #1 ä.jpg")}));
    for (const char *name : {"tour.jpg", "motorola.jpg", "turned.jpg"})
        QVERIFY(run("convert", quarters + QStringList{"-quality", "95", path(name)}));
    const QStringList tags{"-Make=Kestrel",
                           "-Model=Kestrel K2",
                           "-ExposureTime=1/250",
                           "-FNumber=5.6",
                           "-ISO=200",
                           "-ExposureCompensation=-1.5",
                           "-FocalLength=35",
                           "-EXIF:Flash#=25",
                           "-MeteringMode#=5",
                           "-DateTimeOriginal=2024:07:14 10:23:41",
                           "-UserComment=Above the pass",
                           "-LensInfo=24 70 2.8 2.8",
                           "-ColorSpace#=1",
                           "-FileSource#=3",
                           "-Orientation#=1",
                           "-ExifVersion=0232",
                           "-GPSLatitude=46.5",
                           "-GPSLatitudeRef=N",
                           "-GPSLongitude=8.25",
                           "-GPSLongitudeRef=E",
                           "-GPSAltitude=12.5",
                           "-GPSAltitudeRef#=1",
                           "-GPSImgDirection=213.5",
                           "-GPSImgDirectionRef=T",
                           "-GPSDateStamp=2024:07:14",
                           "-GPSTimeStamp=08:05:41"};
    const QStringList exif{"-q", "-overwrite_original"};
    QVERIFY(run("exiftool", exif + tags + QStringList{"-ExifByteOrder=II", path("tour.jpg")}));
    QVERIFY(run("exiftool", exif + tags + QStringList{"-ExifByteOrder=MM", path("motorola.jpg")}));
    QVERIFY(run("exiftool", exif + QStringList{"-Orientation#=6", path("turned.jpg")}));

    QVERIFY(run("convert", {"-size", "32x24", "xc:teal", path("Many/0.png")}));
    for (int i = 1; i < 90; ++i)
        QVERIFY(QFile::copy(path("Many/0.png"), path(QStringLiteral("Many/%1.png").arg(i))));

    QFile whole(path("quarters.png"));
    QVERIFY(whole.open(QIODevice::ReadOnly));
    QFile cut(path("Damaged/cut.png")), text(path("Damaged/text.jpg")), none(path("Damaged/a.jpg"));
    QVERIFY(cut.open(QIODevice::WriteOnly) && cut.write(whole.readAll().chopped(40)) > 0);
    QVERIFY(text.open(QIODevice::WriteOnly) && text.write("<b>no picture</b>") > 0);
    QVERIFY(none.open(QIODevice::WriteOnly));
    QFile tour(path("tour.jpg")), header(path("Damaged/header.jpg"));
    QVERIFY(tour.open(QIODevice::ReadOnly));
    QVERIFY(header.open(QIODevice::WriteOnly) && header.write(tour.read(300)) == 300);
    header.close();
    cut.close();
    text.close();
    none.close();

    m_window = std::make_unique<ExampleWindow>("photos");
    QVERIFY(m_window->isReady());
    QVERIFY(m_window->expose());
    m_window->view()->requestActivate();
    QVERIFY(QTest::qWaitForWindowActive(m_window->view()));
    m_window->resize(900, 640);
}

// Back to the start, with what the last test wrote taken away.
void tst_PhotosExample::init()
{
    if (!m_window)
        return;
    QObject *root = m_window->view()->rootObject();
    QMetaObject::invokeMethod(root->findChild<QObject *>("chooserDialog"), "close");
    if (root->property("page") == "edit")
        QMetaObject::invokeMethod(m_window->item("editPage"), "discard");
    for (QQuickItem *tile : m_window->items("tileImage"))
        QTRY_VERIFY(tile->property("status").toInt() != 2); // loading
    for (const QString &name : m_pictures.entryList({"out*"}, QDir::Files))
        QVERIFY(m_pictures.remove(name));
    QVariant opened;
    QMetaObject::invokeMethod(root, "openFolder", Q_RETURN_ARG(QVariant, opened),
                              Q_ARG(QVariant, m_pictures.path()));
    QVERIFY(opened.toBool());
    if (root->property("page") == "photo")
        QMetaObject::invokeMethod(root, "showGrid");
    QTRY_VERIFY(isShown("grid"));
}

bool tst_PhotosExample::isShown(const QString &objectName) const
{
    const QQuickItem *item = m_window->item(objectName);
    return item && item->isVisible();
}

QRectF tst_PhotosExample::shown(const QString &objectName) const
{
    const QQuickItem *item = m_window->item(objectName);
    return item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
}

void tst_PhotosExample::key(int key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(m_window->view(), Qt::Key(key), modifiers);
}

void tst_PhotosExample::openPhoto(const QString &name)
{
    QTRY_VERIFY(m_window->item("tile " + name));
    m_window->picture(); // puts items where they belong
    m_window->click("tile " + name);
    QTRY_VERIFY(isShown("stage"));
    QCOMPARE(m_window->text("photoName"), name);
}

void tst_PhotosExample::edit(const QString &name)
{
    openPhoto(name);
    m_window->picture();
    m_window->click("editButton");
    QTRY_VERIFY(isShown("edited"));
    m_window->picture();
}

void tst_PhotosExample::fill(const QString &objectName, const QString &text)
{
    m_window->picture();
    m_window->click(objectName);
    QTRY_VERIFY(m_window->item(objectName)->hasActiveFocus());
    QGuiApplication::clipboard()->setText(text);
    key(Qt::Key_A, Qt::ControlModifier);
    key(Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(m_window->text(objectName), text);
}

void tst_PhotosExample::saveAs(const QString &name)
{
    m_window->click("saveButton");
    QTRY_VERIFY(isShown("nameField"));
    fill("nameField", name);
    m_window->click("saveApply");
}

// Positions as parts of the picture's width and height.
void tst_PhotosExample::drag(const QPointF &from, const QPointF &to)
{
    const QRectF frame = shown("cropFrame");
    const auto place = [&frame](const QPointF &part) {
        return QPointF(frame.x() + part.x() * frame.width(), frame.y() + part.y() * frame.height())
            .toPoint();
    };
    QTest::mousePress(m_window->view(), Qt::LeftButton, Qt::NoModifier, place(from));
    QTest::mouseMove(m_window->view(), place((from + to) / 2));
    QTest::mouseMove(m_window->view(), place(to));
    QTest::mouseRelease(m_window->view(), Qt::LeftButton, Qt::NoModifier, place(to));
}

void tst_PhotosExample::startsInThePicturesFolder()
{
    QCOMPARE(m_window->text("pathField"), m_pictures.path());
    QCOMPARE(m_window->text("summary"), QString("5 pictures  ·  4 folders"));
    QVERIFY(!isShown("folderFailure"));
}

void tst_PhotosExample::gridShowsThePictures()
{
    for (const char *name : {"quarters.png", "tour.jpg"}) {
        QQuickItem *tile = m_window->item(QLatin1String("tile ") + name);
        QVERIFY(tile);
        QQuickItem *picture = ExampleWindow::findItem(tile, "tileImage");
        QTRY_COMPARE(picture->property("status").toInt(), 1);
        const QImage window = m_window->picture();
        const QRectF place =
            picture->mapRectToScene(QRectF(0, 0, picture->width(), picture->height()));
        const QList<QColor> expected{red, green, blue, yellow};
        for (int i = 0; i < 4; ++i) {
            const QPointF at = place.topLeft()
                               + QPointF(place.width() * (i % 2 ? 0.75 : 0.25),
                                         place.height() * (i > 1 ? 0.75 : 0.25));
            QVERIFY2(isNear(window.pixelColor(at.toPoint()), expected[i]),
                     qPrintable(window.pixelColor(at.toPoint()).name()));
        }
    }
}

void tst_PhotosExample::onlyWhatIsInSightIsDecoded()
{
    m_window->picture();
    m_window->click("tile Many");
    QTRY_COMPARE(m_window->text("summary"), QString("90 pictures"));
    QTRY_VERIFY(!m_window->items("tileImage").isEmpty());
    const auto inSight = [this] {
        const QRectF window(0, -200, 900, 1040); // the view may begin the next row
        for (QQuickItem *item : m_window->items("tileImage")) {
            if (!window.intersects(
                    item->mapRectToScene(QRectF(0, 0, item->width(), item->height()))))
                return false;
        }
        return true;
    };
    QTRY_VERIFY(inSight());
    QVERIFY(m_window->items("tileImage").size() < 45);
    for (QQuickItem *item : m_window->items("tileImage")) {
        QVERIFY(item->property("asynchronous").toBool());
        QVERIFY(item->property("sourceSize").toSize().width() <= 256);
    }
    QVERIFY(!m_window->item("tile 9.png")); // the last one by name
    key(Qt::Key_End);
    QTRY_VERIFY(isShown("tile 9.png"));
    QTRY_VERIFY(m_window->items("tileImage").size() < 45);
    QTRY_VERIFY(inSight());
}

void tst_PhotosExample::foldersWithoutPicturesSaySo()
{
    m_window->picture();
    m_window->click("tile Empty");
    QTRY_COMPARE(m_window->text("summary"), QString("No pictures in this folder  ·  1 folder"));
    QVERIFY(!isShown("emptyText"));
    m_window->picture();
    m_window->click("tile Inside");
    QTRY_VERIFY(isShown("emptyText"));
    QCOMPARE(m_window->text("emptyText"), QString("No pictures here"));
}

void tst_PhotosExample::upLeadsToTheFolderAbove()
{
    m_window->picture();
    m_window->click("tile Many");
    QTRY_COMPARE(m_window->text("pathField"), path("Many"));
    m_window->click("upButton");
    QTRY_COMPARE(m_window->text("pathField"), m_pictures.path());
    QCOMPARE(m_window->item("grid")->property("currentIndex").toInt(), 2); // where it came from
    key(Qt::Key_Return);
    QTRY_COMPARE(m_window->text("pathField"), path("Many"));
    key(Qt::Key_Backspace);
    QTRY_COMPARE(m_window->text("pathField"), m_pictures.path());
}

void tst_PhotosExample::foldersCanBeTyped()
{
    fill("pathField", "~");
    key(Qt::Key_Return);
    QTRY_COMPARE(m_window->text("pathField"), QDir::homePath());
    fill("pathField", path("Empty"));
    key(Qt::Key_Return);
    QTRY_COMPARE(m_window->text("summary"), QString("No pictures in this folder  ·  1 folder"));
}

void tst_PhotosExample::missingFolderIsSaid()
{
    fill("pathField", path("None"));
    key(Qt::Key_Return);
    QTRY_VERIFY(isShown("folderFailure"));
    QCOMPARE(m_window->text("folderFailure"), "There is no folder “" + path("None") + "”.");
    QCOMPARE(m_window->text("summary"), QString("5 pictures  ·  4 folders"));
    key(Qt::Key_Escape);
    QTRY_VERIFY(!isShown("folderFailure"));
    QCOMPARE(m_window->text("pathField"), m_pictures.path());
}

void tst_PhotosExample::damagedFilesAreSaid_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("nothing in it") << "a.jpg";
    QTest::newRow("cut short") << "cut.png";
    QTest::newRow("text") << "text.jpg";
    QTest::newRow("a header without pixels") << "header.jpg";
}

void tst_PhotosExample::damagedFilesAreSaid()
{
    QFETCH(QString, name);
    m_window->picture();
    m_window->click("tile Damaged");
    QTRY_VERIFY(m_window->item("tile " + name));
    QVERIFY(ExampleWindow::findItem(m_window->item("tile " + name), "tileText")->isVisible());
    openPhoto(name);
    QTRY_VERIFY(isShown("photoFailure"));
    QVERIFY(!m_window->item("editButton")->isEnabled());
    key(Qt::Key_E);
    QVERIFY(!isShown("edited"));
}

void tst_PhotosExample::namesWithSignsAreShown()
{
    openPhoto("100% #1 ä.jpg");
    QTRY_COMPARE(m_window->item("photo")->property("status").toInt(), 1);
    QCOMPARE(tag("name"), QString("100% #1 ä.jpg"));
}

void tst_PhotosExample::tagsAreReadable_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("little-endian") << "tour.jpg";
    QTest::newRow("big-endian") << "motorola.jpg";
}

void tst_PhotosExample::tagsAreReadable()
{
    QFETCH(QString, name);
    openPhoto(name);
    QMap<QString, QString> expected{
        {"image271", "Kestrel"},
        {"image272", "Kestrel K2"},
        {"image274", "Upright"},
        {"extended33434", "1/250 s"},
        {"extended33437", "f/5.6"},
        {"extended34855", "200"},
        {"extended36864", "2.32"},
        {"extended36867", "2024-07-14 10:23:41"},
        {"extended37121", "Y Cb Cr"},
        {"extended37380", "-1.5 EV"},
        {"extended37383", "Pattern"},
        {"extended37385", "Fired, automatic"},
        {"extended37386", "35 mm"},
        {"extended37510", "Above the pass"},
        {"extended40961", "sRGB"},
        {"extended41728", "Digital camera"},
        {"extended42034", "24–70 mm f/2.8"},
        {"latitude", "46° 30′ 0.00″ N"},
        {"longitude", "8° 15′ 0.00″ E"},
        {"altitude", "12.5 m below the sea"},
        {"gps0", "2.3.0.0"},
        {"gps7", "08:05:41"},
        {"gps17", "213.5° true"},
        {"gps29", "2024-07-14"},
    };
    // Of a single byte nothing is left in a big-endian file.
    if (name == "motorola.jpg")
        expected["extended41728"] = "Unknown (0)";
    for (auto row = expected.begin(); row != expected.end(); ++row)
        QCOMPARE(row.key() + ": " + tag(row.key()), row.key() + ": " + row.value());
    QCOMPARE(m_window->text("tag extended33434", "name"), QString("Exposure time"));
    QCOMPARE(m_window->text("tag image271", "name"), QString("Camera maker"));
    QVERIFY(!m_window->item("tag image34665")); // where the others lie
    QVERIFY(!isShown("noExif"));
}

void tst_PhotosExample::pictureWithoutTags()
{
    openPhoto("quarters.png");
    QVERIFY(isShown("noExif"));
    QCOMPARE(tag("name"), QString("quarters.png"));
    QVERIFY(tag("bytes").endsWith(" bytes"));
    QVERIFY(!m_window->item("tag latitude"));
}

void tst_PhotosExample::positionInDegreesMinutesSeconds_data()
{
    QTest::addColumn<QString>("latitude");
    QTest::addColumn<QString>("longitude");
    QTest::addColumn<QString>("latitudeText");
    QTest::addColumn<QString>("longitudeText");
    QTest::newRow("south east") << "-33.8568"
                                << "151.2153"
                                << "33° 51′ 24.48″ S"
                                << "151° 12′ 55.08″ E";
    QTest::newRow("north west") << "40.6892"
                                << "-74.0445"
                                << "40° 41′ 21.12″ N"
                                << "74° 2′ 40.20″ W";
    QTest::newRow("rounds up to whole degrees") << "9.9999999"
                                                << "-0.9999999"
                                                << "10° 0′ 0.00″ N"
                                                << "1° 0′ 0.00″ W";
    QTest::newRow("nought") << "0"
                            << "0"
                            << "0° 0′ 0.00″ N"
                            << "0° 0′ 0.00″ E";
}

void tst_PhotosExample::positionInDegreesMinutesSeconds()
{
    QFETCH(QString, latitude);
    QFETCH(QString, longitude);
    QFETCH(QString, latitudeText);
    QFETCH(QString, longitudeText);
    const QString name = QString("at%1.jpg").arg(latitude);
    QVERIFY(QFile::copy(path("100% #1 ä.jpg"), path("Positions/" + name)));
    QVERIFY(run("exiftool", {"-q", "-overwrite_original", "-GPSLatitude=" + latitude,
                             "-GPSLatitudeRef=" + latitude, "-GPSLongitude=" + longitude,
                             "-GPSLongitudeRef=" + longitude, path("Positions/" + name)}));
    m_window->picture();
    m_window->click("tile Positions");
    openPhoto(name);
    QCOMPARE(tag("latitude"), latitudeText);
    QCOMPARE(tag("longitude"), longitudeText);
}

void tst_PhotosExample::neighboursByKeysButtonsAndSwipes()
{
    openPhoto("quarters.png");
    QCOMPARE(m_window->text("counter"), QString("3 of 5"));
    key(Qt::Key_Right);
    QCOMPARE(m_window->text("photoName"), QString("tour.jpg"));
    QCOMPARE(tag("image271"), QString("Kestrel"));
    m_window->click("nextButton");
    QCOMPARE(m_window->text("photoName"), QString("turned.jpg"));
    QVERIFY(!isShown("nextButton"));
    key(Qt::Key_Right);
    QCOMPARE(m_window->text("photoName"), QString("turned.jpg"));

    const QPoint middle = shown("stage").center().toPoint();
    QTest::mousePress(m_window->view(), Qt::LeftButton, Qt::NoModifier, middle);
    QTest::mouseMove(m_window->view(), middle + QPoint(100, 0));
    QTest::mouseRelease(m_window->view(), Qt::LeftButton, Qt::NoModifier, middle + QPoint(200, 0));
    QCOMPARE(m_window->text("photoName"), QString("tour.jpg"));
    key(Qt::Key_Left);
    QCOMPARE(m_window->text("photoName"), QString("quarters.png"));
    key(Qt::Key_Escape);
    QTRY_VERIFY(isShown("grid"));
    QVERIFY(m_window->item("tile quarters.png")->property("selected").toBool());
}

void tst_PhotosExample::turnedPicturesStandUpright()
{
    openPhoto("turned.jpg");
    QCOMPARE(tag("image274"), QString("Turned by 90° left"));
    QTRY_COMPARE(m_window->item("photo")->property("status").toInt(), 1);
    QVERIFY(m_window->item("photo")->property("paintedHeight").toReal()
            > m_window->item("photo")->property("paintedWidth").toReal());
    m_window->picture();
    m_window->click("editButton");
    QTRY_COMPARE(m_window->text("editState"), QString("200 × 400 pixels"));
    saveAs("out.png");
    QTRY_COMPARE(m_window->text("editState"), QString("200 × 400 pixels  ·  Saved as out.png"));
    const QStringList found = quarters(image("out.png"));
    const QList<QColor> expected{blue, red, yellow, green};
    for (int i = 0; i < 4; ++i)
        QVERIFY2(isNear(QColor(found[i]), expected[i]), qPrintable(found[i]));
}

void tst_PhotosExample::operationsAreSaved_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QList<QColor>>("colors");
    QTest::newRow("turn left") << "rotateLeft" << QSize(200, 400)
                               << QList<QColor>{green, yellow, red, blue};
    QTest::newRow("turn right") << "rotateRight" << QSize(200, 400)
                                << QList<QColor>{blue, red, yellow, green};
    QTest::newRow("mirror") << "mirrorHorizontally" << QSize(400, 200)
                            << QList<QColor>{green, red, yellow, blue};
    QTest::newRow("flip") << "mirrorVertically" << QSize(400, 200)
                          << QList<QColor>{blue, yellow, red, green};
    QTest::newRow("invert") << "invert" << QSize(400, 200)
                            << QList<QColor>{cyan, magenta, yellow, blue};
}

void tst_PhotosExample::operationsAreSaved()
{
    QFETCH(QString, button);
    QFETCH(QSize, size);
    QFETCH(QList<QColor>, colors);
    edit("quarters.png");
    QVERIFY(!m_window->item("undo")->isEnabled());
    m_window->click(button);
    m_window->picture();
    saveAs("out.png");
    QTRY_VERIFY(m_window->text("editState").endsWith("Saved as out.png"));
    QCOMPARE(image("out.png").size(), size);
    QCOMPARE(quarters(image("out.png")), namesOf(colors));
    // What is seen is what was saved.
    const QImage window = m_window->picture();
    QCOMPARE(quarters(window.copy(shown("edited").toRect())), namesOf(colors));

    m_window->click("undo");
    saveAs("out-undone.png");
    QTRY_VERIFY(m_window->text("editState").endsWith("Saved as out-undone.png"));
    QCOMPARE(image("out-undone.png"), image("quarters.png").convertToFormat(QImage::Format_RGB32));
}

void tst_PhotosExample::cropByDragging()
{
    edit("quarters.png");
    m_window->click("crop");
    QTRY_VERIFY(isShown("cropFrame"));
    m_window->picture();
    QVERIFY(!m_window->item("cropApply")->isEnabled());
    drag({0.25, 0.25}, {1.02, 0.75}); // beyond the edge: up to it
    const QRect area = m_window->item("cropFrame")->property("area").toRectF().toRect();
    QCOMPARE(area, QRect(100, 50, 300, 100));
    QCOMPARE(m_window->text("question"), QString("300 × 100 pixels"));
    m_window->picture();
    m_window->click("cropApply");
    QTRY_VERIFY(!isShown("cropFrame"));
    m_window->picture();
    saveAs("out.png");
    QTRY_COMPARE(image("out.png").size(), QSize(300, 100));
    QCOMPARE(image("out.png"),
             image("quarters.png").convertToFormat(QImage::Format_RGB32).copy(area));
    m_window->click("undo");
    QTRY_VERIFY(m_window->text("editState").startsWith("400 × 200"));
}

void tst_PhotosExample::cropFrameCanBeMovedAndResized()
{
    edit("quarters.png");
    m_window->click("crop");
    QTRY_VERIFY(isShown("cropFrame"));
    m_window->picture();
    const auto area = [this] { return m_window->item("cropFrame")->property("area").toRectF(); };
    drag({0.25, 0.25}, {0.75, 0.75});
    QCOMPARE(area(), QRectF(100, 50, 200, 100));
    drag({0.5, 0.5}, {0.6, 0.6});
    QCOMPARE(area(), QRectF(140, 70, 200, 100));
    drag({0.5, 0.5}, {0.95, 0.95}); // stays inside
    QCOMPARE(area(), QRectF(200, 100, 200, 100));
    drag({0.5, 0.5}, {0.25, 0.75}); // by its corner
    QCOMPARE(area(), QRectF(100, 150, 300, 50));
    key(Qt::Key_Escape);
    QTRY_VERIFY(!isShown("cropFrame"));
    QVERIFY(!m_window->item("undo")->isEnabled());
}

void tst_PhotosExample::cropByKeys()
{
    edit("quarters.png");
    m_window->click("crop");
    QTRY_VERIFY(isShown("cropFrame"));
    m_window->picture();
    const auto area = [this] { return m_window->item("cropFrame")->property("area").toRectF(); };
    key(Qt::Key_Left);
    QCOMPARE(area(), QRectF(40, 20, 320, 160));
    key(Qt::Key_Left);
    QVERIFY(area().x() < 40);
    QCOMPARE(area().width(), 320.0);
    key(Qt::Key_Up, Qt::ShiftModifier);
    QVERIFY(area().height() < 160);
    QCOMPARE(area().y(), 20.0);
    const QRectF wanted = area();
    key(Qt::Key_Return);
    QTRY_VERIFY(
        m_window->text("editState").startsWith(QString("320 × %1 pixels").arg(wanted.height())));
}

void tst_PhotosExample::scaleKeepsTheProportions()
{
    edit("quarters.png");
    m_window->click("scale");
    QTRY_VERIFY(isShown("widthField"));
    QCOMPARE(m_window->text("heightField"), QString("200"));
    fill("widthField", "100");
    QCOMPARE(m_window->text("heightField"), QString("50"));
    fill("heightField", "75");
    QCOMPARE(m_window->text("widthField"), QString("150"));
    m_window->click("scaleApply");
    QTRY_VERIFY(m_window->text("editState").startsWith("150 × 75 pixels"));
    m_window->picture();
    saveAs("out.png");
    QTRY_COMPARE(image("out.png").size(), QSize(150, 75));
    QCOMPARE(quarters(image("out.png")), namesOf({red, green, blue, yellow}));
}

void tst_PhotosExample::undoGoesBackStepByStep()
{
    edit("quarters.png");
    QStringList seen;
    const auto look = [this] {
        return quarters(m_window->picture().copy(shown("edited").toRect())).join(' ');
    };
    seen.append(look());
    for (const char *step : {"rotateRight", "invert", "mirrorVertically"}) {
        m_window->click(step);
        m_window->picture();
        seen.append(look());
    }
    QCOMPARE(QSet<QString>(seen.begin(), seen.end()).size(), 4);
    for (int i = 2; i >= 0; --i) {
        key(Qt::Key_Z, Qt::ControlModifier);
        m_window->picture();
        QCOMPARE(look(), seen[i]);
    }
    QVERIFY(!m_window->item("undo")->isEnabled());
    key(Qt::Key_Escape); // nothing to ask for
    QTRY_VERIFY(isShown("stage"));
}

void tst_PhotosExample::savingAsJpeg()
{
    edit("quarters.png");
    m_window->click("mirrorHorizontally");
    saveAs("out.JPG");
    QTRY_VERIFY(m_window->text("editState").endsWith("Saved as out.JPG"));
    QCOMPARE(QImageReader(path("out.JPG")).format(), QByteArray("jpeg"));
    const QStringList found = quarters(image("out.JPG"));
    QVERIFY2(isNear(QColor(found[0]), green), qPrintable(found[0]));
    // It is the picture that the page before shows now, and the grid has it too.
    key(Qt::Key_Escape);
    QTRY_VERIFY(isShown("stage"));
    QCOMPARE(m_window->text("photoName"), QString("out.JPG"));
    key(Qt::Key_Escape);
    QTRY_VERIFY(m_window->item("tile out.JPG"));
}

void tst_PhotosExample::replacingAFile()
{
    QVERIFY(QFile::copy(path("quarters.png"), path("out.png")));
    edit("quarters.png");
    m_window->click("invert");
    m_window->click("saveButton");
    QTRY_VERIFY(isShown("nameField"));
    QCOMPARE(m_window->text("nameField"), QString("quarters-edited.png"));
    QCOMPARE(m_window->text("saveApply"), QString("Save"));
    fill("nameField", "out.png");
    QCOMPARE(m_window->text("saveApply"), QString("Replace"));
    QVERIFY(m_window->text("saveHint").contains("will be replaced"));
    QCOMPARE(image("out.png"), image("quarters.png"));
    m_window->picture();
    m_window->click("saveApply");
    QTRY_COMPARE(quarters(image("out.png")), namesOf({cyan, magenta, yellow, blue}));
    QCOMPARE(m_pictures.entryList({".part*"}, QDir::Files | QDir::Hidden), QStringList());
}

void tst_PhotosExample::namesThatCantBeSaved_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("empty") << "";
    QTest::newRow("another folder") << "../out.png";
    QTest::newRow("unknown format") << "out.xyz";
    QTest::newRow("no format") << "out";
}

void tst_PhotosExample::namesThatCantBeSaved()
{
    QFETCH(QString, name);
    edit("quarters.png");
    m_window->click("saveButton");
    QTRY_VERIFY(isShown("nameField"));
    fill("nameField", name.isEmpty() ? " " : name);
    QVERIFY(!m_window->item("saveApply")->isEnabled());
    QVERIFY(m_window->text("saveHint")
                .contains(name.endsWith("png") || name.isEmpty() ? "without" : "format"));
    key(Qt::Key_Return);
    QVERIFY(isShown("nameField"));
    QVERIFY(m_pictures.entryList({"out*"}).isEmpty());
}

void tst_PhotosExample::failedSavingIsSaid()
{
    QVERIFY(m_pictures.mkpath("Gone"));
    QVERIFY(QFile::copy(path("quarters.png"), path("Gone/quarters.png")));
    QVariant opened;
    QMetaObject::invokeMethod(m_window->view()->rootObject(), "openFolder",
                              Q_RETURN_ARG(QVariant, opened), Q_ARG(QVariant, path("Gone")));
    edit("quarters.png");
    m_window->click("invert");
    QVERIFY(QDir(path("Gone")).removeRecursively());
    saveAs("out.png");
    QTRY_VERIFY(isShown("editFailure"));
    QCOMPARE(m_window->text("editFailure"),
             "“out.png” could not be saved in " + path("Gone") + ".");
    // Nothing is lost.
    key(Qt::Key_Escape);
    key(Qt::Key_Escape);
    QTRY_VERIFY(isShown("discardButton"));
}

void tst_PhotosExample::folderIsNeverReplaced()
{
    QVERIFY(m_pictures.mkpath("folder.png/inside"));
    edit("quarters.png");
    m_window->click("invert");
    saveAs("folder.png");
    QTRY_VERIFY(isShown("editFailure"));
    QVERIFY(QDir(path("folder.png/inside")).exists());
    QCOMPARE(m_pictures.entryList({".part*"}, QDir::Files | QDir::Hidden), QStringList());
    QVERIFY(QDir(path("folder.png")).removeRecursively());
}

void tst_PhotosExample::longNamesAreSaved()
{
    const QString name = "out" + QString(248, 'x') + ".png";
    edit("quarters.png");
    m_window->click("invert");
    saveAs(name);
    QTRY_VERIFY(m_window->text("editState").endsWith("Saved as " + name));
    QCOMPARE(quarters(image(name)), namesOf({cyan, magenta, yellow, blue}));
    QVERIFY(!isShown("editFailure"));
}

void tst_PhotosExample::leavingAsksForUnsavedChanges()
{
    edit("quarters.png");
    m_window->click("invert");
    m_window->click("doneButton");
    QTRY_VERIFY(isShown("discardButton"));
    m_window->picture();
    m_window->click("cancelButton");
    QTRY_VERIFY(!isShown("discardButton"));
    QVERIFY(m_window->item("undo")->isEnabled());
    m_window->click("doneButton");
    QTRY_VERIFY(isShown("discardButton"));
    m_window->picture();
    m_window->click("discardButton");
    QTRY_VERIFY(isShown("stage"));
    QCOMPARE(m_window->text("photoName"), QString("quarters.png"));
}

void tst_PhotosExample::keysAloneSuffice()
{
    key(Qt::Key_Home);
    for (int i = 0; i < 6; ++i)
        key(Qt::Key_Right);
    QTRY_VERIFY(m_window->item("tile quarters.png")->property("selected").toBool());
    key(Qt::Key_Return);
    QTRY_VERIFY(isShown("stage"));
    key(Qt::Key_Return);
    QTRY_VERIFY(isShown("edited"));
    while (!m_window->item("mirrorHorizontally")->hasActiveFocus())
        key(Qt::Key_Tab);
    key(Qt::Key_Space);
    QTRY_VERIFY(m_window->item("undo")->isEnabled());
    key(Qt::Key_S, Qt::ControlModifier);
    QTRY_VERIFY(m_window->item("nameField")->hasActiveFocus());
    m_window->type("out"); // over the name, which is selected up to its format
    QCOMPARE(m_window->text("nameField"), QString("out.png"));
    key(Qt::Key_Return);
    QTRY_COMPARE(quarters(image("out.png")), namesOf({green, red, yellow, blue}));
    key(Qt::Key_Escape);
    QTRY_VERIFY(isShown("stage"));
    key(Qt::Key_Escape);
    QTRY_VERIFY(isShown("grid"));
}

void tst_PhotosExample::chooserOpensItsPicture()
{
    QVariant opened;
    QMetaObject::invokeMethod(m_window->view()->rootObject(), "openFolder",
                              Q_RETURN_ARG(QVariant, opened), Q_ARG(QVariant, path("Many")));
    m_window->picture();
    m_window->click("chooserButton");
    auto *dialog = m_window->view()->rootObject()->findChild<QObject *>("chooserDialog");
    QTRY_VERIFY(dialog->property("visible").toBool());
    QQmlListReference content(dialog, "data");
    QQuickWindow *window = nullptr;
    for (int i = 0; i < content.count() && !window; ++i) {
        auto *item = qobject_cast<QQuickItem *>(content.at(i));
        window = item ? item->window() : nullptr;
    }
    QVERIFY(window && QTest::qWaitForWindowExposed(window));
    QQuickItem *name = nullptr;
    QTRY_VERIFY((name = findText(window->contentItem(), "quarters.png")));
    window->grabWindow(); // puts items where they belong
    const QPointF place = name->mapToScene(QPointF(name->width() / 2, -30)); // above its name
    QTest::mouseDClick(window, Qt::LeftButton, Qt::NoModifier, place.toPoint());
    QTRY_VERIFY(isShown("stage"));
    QCOMPARE(m_window->text("photoName"), QString("quarters.png"));
    m_window->view()->requestActivate(); // no window manager does it here
    QVERIFY(QTest::qWaitForWindowActive(m_window->view()));
    QTRY_VERIFY(m_window->item("photoPage")->hasActiveFocus());
    key(Qt::Key_Escape);
    QTRY_VERIFY(isShown("grid"));
    QCOMPARE(m_window->text("pathField"), m_pictures.path());
}

void tst_PhotosExample::fitsTheWindow_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("telephone") << QSize(360, 640);
    QTest::newRow("tablet") << QSize(768, 1024);
    QTest::newRow("desktop") << QSize(1280, 800);
}

void tst_PhotosExample::fitsTheWindow()
{
    QFETCH(QSize, size);
    m_window->resize(size.width(), size.height());
    const QRectF window(QPointF(), size);
    QTRY_VERIFY(window.contains(shown("chooserButton")));
    QTRY_VERIFY(window.contains(shown("pathField")));
    QVERIFY(ExampleWindow::colorCount(m_window->picture()) > 20);
    edit("quarters.png");
    QVERIFY(window.contains(shown("saveButton")));
    for (const char *tool : {"rotateLeft", "undo", "crop"})
        QVERIFY2(window.contains(shown(tool)), tool);
    QVERIFY(shown("edited").height() > size.height() / 8.0);
    QVERIFY(window.contains(shown("edited")));
    for (const char *tool : {"crop", "scale"}) {
        m_window->click(tool);
        m_window->picture();
        QTRY_VERIFY(
            window.contains(shown(tool == QByteArray("crop") ? "cancelButton" : "scaleCancel")));
    }
    m_window->click("saveButton");
    m_window->picture();
    QTRY_VERIFY(window.contains(shown("saveCancel")));
    QTRY_VERIFY(window.contains(shown("nameField")));
    m_window->resize(900, 640);
}

void tst_PhotosExample::printsNoWarning()
{
    QCOMPARE(m_window->warningCount(), 0);
    m_window.reset();
}

TESSALINE_INPUT_TEST_MAIN(tst_PhotosExample)

#include "tst_PhotosExample.moc"
