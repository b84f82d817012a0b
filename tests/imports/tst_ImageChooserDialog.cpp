#include "imports/DialogStage.h"
#include "support/IsolatedHome.h"

#include <QDir>
#include <QElapsedTimer>
#include <QPainter>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QTimer>

namespace {

const int okButton = 0x400;
const int cancelButton = 0x400000;

// A landscape under a sky, another for each number.
bool paintLandscape(const QString &path, int number)
{
    const QSize size = number % 3 == 2 ? QSize(450, 600) : QSize(800, 600);
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    QLinearGradient sky(0, 0, 0, size.height());
    sky.setColorAt(0, QColor::fromHsv((200 + number * 47) % 360, 130, 225));
    sky.setColorAt(1, QColor::fromHsv((40 + number * 23) % 360, 60, 250));
    painter.fillRect(image.rect(), sky);
    painter.setBrush(QColor(255, 240, 200));
    painter.drawEllipse(QPointF(size.width() * (0.2 + 0.15 * (number % 5)), 140), 46, 46);
    for (int hill = 0; hill < 3; ++hill) {
        painter.setBrush(QColor::fromHsv((120 + number * 29) % 360, 90, 150 - hill * 40));
        painter.drawEllipse(QPointF(size.width() * (0.1 + 0.4 * ((hill + number) % 3)),
                                    size.height() + 60 + hill * 40),
                            size.width() * 0.6, 330 - hill * 60);
    }
    painter.end();
    return QDir().mkpath(QFileInfo(path).path()) && image.save(path);
}

bool paint(const QString &path, const QColor &color, const QSize &size = QSize(60, 40))
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    return QDir().mkpath(QFileInfo(path).path()) && image.save(path);
}

} // namespace

// The chooser dialog in a tree of generated pictures, in real windows.
class tst_ImageChooserDialog : public QObject
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
    void osFrameFollowsTheModality_data();
    void osFrameFollowsTheModality();
    void opensAtTheRightSize_data();
    void opensAtTheRightSize();
    void sizeFollowsTheParent();
    void gridHasItsGeometry();
    void listsPicturesThenTheWayUpThenFolders();
    void filterDecidesAboutFilesOnly();
    void listingIsReadAtEachOpening();
    void withoutFoldersNoTildeEntries();
    void folderWithoutPicturesOffersCancelAlone_data();
    void folderWithoutPicturesOffersCancelAlone();
    void cellsShowWhatTheyStandFor();
    void picturesAreDrawn();
    void namesWithSpecialCharactersAreDrawn();
    void clickSelects_data();
    void clickSelects();
    void selectionDecidesTheButtons();
    void selectionIsHighlighted();
    void doubleClickTakesAPicture();
    void doubleClickOpensAFolder();
    void doubleClickGoesUp();
    void wayUpIsListedAtTheTopOfTheFileSystem();
    void fileThatBeginsWithATildeIsTakenForAFolder();
    void folderStaysBetweenOpenings();
    void folderThatStaysSelectedOffersCancelAlone();
    void folderThatHasBecomeEmptyOffersCancelAlone_data();
    void folderThatHasBecomeEmptyOffersCancelAlone();
    void folderThatIsChangedIsReadAnew();
    void okButtonTakesThePicture();
    void cancelKeepsTheSelection();
    void escapeRejects();
    void returnTakesThePicture();
    void returnIsRefusedWhileAFolderIsSelected();
    void arrowKeysSelect();
    void runsFromTheRightWhereTheApplicationDoes();
    void bindingsFollowTheSelection();
    void manyPicturesDontFreeze();
    void longFoldersShowWhereTheViewStands();
    void iconsStandOutFromAnyGround_data();
    void iconsStandOutFromAnyGround();
    void thumbnailsHaveThePixelsOfTheScreen();
    void dangerousFilesHaveNoThumbnail();
    void closingTheWindowRejects();
    void looksLikeABrowser();

private:
    bool showDialog(const QString &properties = QString(), const QString &root = QString("Item"))
    {
        return m_stage->show(
            QString("property int acceptedCount: 0; property int rejectedCount: 0\n"
                    "property url seen: theSubject.imageUrl\n"
                    "ImageChooserDialog { id: theSubject; %1\n"
                    "onAccepted: acceptedCount++; onRejected: rejectedCount++ }")
                .arg(properties),
            root);
    }
    bool showOpenDialog(const QString &properties = QString(), const QString &folder = QString())
    {
        if (!showDialog(properties))
            return false;
        if (!folder.isEmpty())
            setFolder(folder);
        return m_stage->openDialog();
    }
    void setFolder(const QString &path)
    {
        m_stage->insideSubject(QString("imagesFolder.path = \"%1\"").arg(path));
    }
    QString folder() { return m_stage->insideSubject("imagesFolder.path").toString(); }
    QQuickItem *view() { return m_stage->innerItem("imagesView"); }
    QStringList entries() { return m_stage->insideSubject("imagesView.model").toStringList(); }
    QString selected()
    {
        return m_stage->insideSubject("imagesView.model[imagesView.currentIndex]").toString();
    }
    // The cell of an entry; it must be on screen.
    QQuickItem *cell(const QString &entry)
    {
        const int index = entries().indexOf(entry);
        QQuickItem *found = nullptr;
        if (!QTest::qWaitFor([&] {
                QMetaObject::invokeMethod(view(), "itemAtIndex", Q_RETURN_ARG(QQuickItem *, found),
                                          Q_ARG(int, index));
                return found != nullptr;
            }))
            qWarning("No cell for %s", qPrintable(entry));
        return found;
    }
    QQuickItem *imageOf(const QString &entry)
    {
        return DialogStage::itemsOf(cell(entry), "QQuickImage").value(0);
    }
    QQuickItem *textOf(const QString &entry)
    {
        return DialogStage::itemsOf(cell(entry), "QQuickText").value(0);
    }
    QQuickItem *frameOf(const QString &entry)
    {
        return DialogStage::itemsOf(cell(entry), "QQuickRectangle").value(0);
    }
    QQuickItem *pushButton(const QString &text)
    {
        for (QQuickItem *item :
             DialogStage::itemsOf(m_stage->dialogWindow()->contentItem(), "Button")) {
            if (item->property("text").toString() == text && item->isVisible())
                return item;
        }
        return nullptr;
    }
    QVariant property(const char *name) { return m_stage->subject()->property(name); }
    int buttons() { return property("standardButtons").toInt(); }
    int count(const char *name) { return m_stage->root()->property(name).toInt(); }
    qreal scale() { return m_stage->insideSubject("Tessaline.displayScaleFactor").toReal(); }
    bool isOpen() { return property("visible").toBool(); }

    std::unique_ptr<DialogStage> m_stage;
    QString m_pictures;
};

void tst_ImageChooserDialog::initTestCase()
{
    m_stage = std::make_unique<DialogStage>();
    m_pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    QVERIFY(paint(m_pictures + "/blue.png", Qt::blue));
    QVERIFY(paint(m_pictures + "/red.jpg", Qt::red));
    QVERIFY(paint(m_pictures + "/green.bmp", Qt::green));
    QVERIFY(paint(m_pictures + "/Holidays/beach.jpg", Qt::yellow, QSize(40, 60)));
    QVERIFY(paint(m_pictures + "/Holidays/100% #1? sea.png", Qt::cyan));
    QVERIFY(QDir(m_pictures).mkpath("Holidays/2026"));
    QVERIFY(QDir(m_pictures).mkpath("Empty"));
    QVERIFY(paint(m_pictures + "/Odd/~tilde.png", Qt::magenta));
}

void tst_ImageChooserDialog::init()
{
    m_stage->beginLog();
}

void tst_ImageChooserDialog::cleanup()
{
    m_stage->endTest();
}

void tst_ImageChooserDialog::cleanupTestCase()
{
    m_stage.reset();
}

void tst_ImageChooserDialog::hasItsProperties_data()
{
    DialogStage::addPropertyColumns();
    QTest::newRow("showFolders") << QByteArray("bool") << true << QVariant(true);
    QTest::newRow("imagePath") << QByteArray("QString") << true << QVariant(QString());
    QTest::newRow("imageUrl") << QByteArray("QUrl") << true << QVariant(QUrl());
    QTest::newRow("fullScreen") << QByteArray("bool") << false << QVariant(false);
    QTest::newRow("sizeRatio") << QByteArray("double") << false << QVariant(0.9);
    QTest::newRow("osFrame") << QByteArray("bool") << false << QVariant(true);
}

void tst_ImageChooserDialog::hasItsProperties()
{
    QVERIFY(showDialog());
    m_stage->testProperty();
}

void tst_ImageChooserDialog::beginsHiddenAndTitled()
{
    QVERIFY(showDialog());
    QCOMPARE(property("visible").toBool(), false);
    QCOMPARE(property("title").toString(), QString("Images"));
    QCOMPARE(buttons(), okButton | cancelButton);
    QCOMPARE(m_stage->insideSubject("filter.join()").toString(), QString("*.jpg,*.png"));
    QCOMPARE(m_stage->insideSubject("dialog").value<QObject *>(), m_stage->subject());
    QCOMPARE(folder(), m_pictures);
}

void tst_ImageChooserDialog::osFrameFollowsTheModality_data()
{
    QTest::addColumn<bool>("osFrame");
    QTest::newRow("Qt.WindowModal") << true;
    QTest::newRow("Qt.NonModal") << true;
    QTest::newRow("Qt.ApplicationModal") << false;
}

void tst_ImageChooserDialog::osFrameFollowsTheModality()
{
    QVERIFY(showDialog(QString("modality: %1").arg(QTest::currentDataTag())));
    QTEST(property("osFrame").toBool(), "osFrame");
}

void tst_ImageChooserDialog::opensAtTheRightSize_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("Item") << QSize(720, 540);
    QTest::newRow("Window") << QSize(600, 400);
    QTest::newRow("ApplicationWindow") << QSize(600, 400);
}

void tst_ImageChooserDialog::opensAtTheRightSize()
{
    QVERIFY(showDialog(QString(), QTest::currentDataTag()));
    QVERIFY(m_stage->openDialog());
    QFETCH(QSize, size);
    QTRY_COMPARE(m_stage->dialogWindow()->size(), size);
    QCOMPARE(property("width").toInt(), size.width());
    QCOMPARE(property("height").toInt(), size.height());
    QCOMPARE(m_stage->dialogWindow()->title(), QString("Images"));
}

void tst_ImageChooserDialog::sizeFollowsTheParent()
{
    QVERIFY(showOpenDialog());
    m_stage->window()->resize(600, 500);
    QTRY_COMPARE(m_stage->dialogWindow()->size(), QSize(540, 450));
}

void tst_ImageChooserDialog::gridHasItsGeometry()
{
    QVERIFY(showOpenDialog());
    QCOMPARE(view()->property("cellWidth").toReal(), scale() * 130);
    QCOMPARE(view()->property("cellHeight").toReal(), scale() * 130 * 1.12);
    QVERIFY(view()->clip());
    QVERIFY(view()->hasFocus());
    QVERIFY(view()->property("highlightFollowsCurrentItem").toBool());
    // Over Qt's padding at the left, right and top, clear of the buttons at the bottom.
    QQuickItem *content = view()->parentItem();
    QQuickItem *padded = content->parentItem();
    QCOMPARE(content->position(), QPointF(-12, -12));
    QCOMPARE(content->size(), padded->size() + QSizeF(24, 12));
    QCOMPARE(view()->position(), QPointF(10, 10));
    QCOMPARE(view()->size(), content->size() - QSizeF(20, 60));
    QVERIFY(DialogStage::rectOf(view()).bottom()
            <= DialogStage::rectOf(pushButton("Cancel")).top());
}

void tst_ImageChooserDialog::listsPicturesThenTheWayUpThenFolders()
{
    QVERIFY(showOpenDialog());
    QCOMPARE(entries(), QStringList({"blue.png", "red.jpg", "~", "~Empty", "~Holidays", "~Odd"}));
}

void tst_ImageChooserDialog::filterDecidesAboutFilesOnly()
{
    QVERIFY(showOpenDialog("filter: [ \"*.bmp\" ]"));
    QCOMPARE(entries(), QStringList({"green.bmp", "~", "~Empty", "~Holidays", "~Odd"}));
}

void tst_ImageChooserDialog::listingIsReadAtEachOpening()
{
    QVERIFY(showOpenDialog());
    QTest::keyClick(m_stage->dialogWindow(), Qt::Key_Escape);
    QTRY_VERIFY(!isOpen());
    QVERIFY(paint(m_pictures + "/new.png", Qt::white));
    QVERIFY(!entries().contains("new.png"));
    QVERIFY(m_stage->openDialog());
    QVERIFY(entries().contains("new.png"));
    QVERIFY(QFile::remove(m_pictures + "/new.png"));
}

void tst_ImageChooserDialog::withoutFoldersNoTildeEntries()
{
    QVERIFY(showOpenDialog("showFolders: false"));
    QCOMPARE(entries(), QStringList({"blue.png", "red.jpg"}));
}

void tst_ImageChooserDialog::folderWithoutPicturesOffersCancelAlone_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<bool>("showFolders");
    QTest::addColumn<int>("entryCount");
    QTest::newRow("nothing in it") << "/Empty" << true << 1;
    QTest::newRow("folders not shown") << "/Empty" << false << 0;
    QTest::newRow("subfolders with pictures") << "/.." << true << -1;
}

void tst_ImageChooserDialog::folderWithoutPicturesOffersCancelAlone()
{
    QFETCH(QString, folder);
    QFETCH(bool, showFolders);
    QFETCH(int, entryCount);
    QVERIFY(showOpenDialog(QString("showFolders: %1").arg(showFolders ? "true" : "false"),
                           QDir::cleanPath(m_pictures + folder)));
    QCOMPARE(buttons(), cancelButton);
    QTRY_VERIFY(!pushButton("OK"));
    QVERIFY(pushButton("Cancel"));
    if (entryCount >= 0)
        QCOMPARE(entries().size(), entryCount);
    else
        QVERIFY(entries().contains("~Pictures"));
    QTest::keyClick(m_stage->dialogWindow(), Qt::Key_Return);
    QVERIFY(isOpen());
    QCOMPARE(property("imagePath").toString(), QString());
}

void tst_ImageChooserDialog::cellsShowWhatTheyStandFor()
{
    QVERIFY(showOpenDialog());
    QCOMPARE(cell("red.jpg")->size(), QSizeF(scale() * 130, scale() * 130 * 1.12));
    QCOMPARE(cell("red.jpg")->property("isSubFolder").toBool(), false);
    QCOMPARE(cell("~Odd")->property("isSubFolder").toBool(), true);
    QCOMPARE(cell("~Odd")->property("subFolderName").toString(), QString("Odd"));
    QCOMPARE(cell("~")->property("subFolderName").toString(), QString());

    QCOMPARE(imageOf("red.jpg")->property("source").toUrl(),
             QUrl::fromLocalFile(m_pictures + "/red.jpg"));
    QVERIFY(imageOf("~Odd")->property("source").toUrl().path().endsWith("/images/folder_open.png"));
    QVERIFY(imageOf("~")->property("source").toUrl().path().endsWith(
        "/images/folder_open-arrow_up.png"));
    for (const char *entry : {"red.jpg", "~Odd", "~"}) {
        QCOMPARE(imageOf(entry)->property("fillMode").toInt(), 1);   // PreserveAspectFit
        QTRY_COMPARE(imageOf(entry)->property("status").toInt(), 1); // Ready
        // A square with a margin of 5, and the picture with one of 2.
        QQuickItem *frame = frameOf(entry);
        QCOMPARE(frame->position(), QPointF(5, 5));
        QCOMPARE(frame->size(), QSizeF(scale() * 130 - 10, scale() * 130 - 10));
        QCOMPARE(imageOf(entry)->position(), QPointF(2, 2));
        QCOMPARE(imageOf(entry)->size(), frame->size() - QSizeF(4, 4));
        QCOMPARE(DialogStage::evaluate(frame, "border.color == \"#d3d3d3\"").toBool(), true);
    }
    QCOMPARE(DialogStage::evaluate(frameOf("red.jpg"), "border.width").toInt(), 1);
    QCOMPARE(DialogStage::evaluate(frameOf("~Odd"), "border.width").toInt(), 0);
    QCOMPARE(DialogStage::evaluate(frameOf("~"), "border.width").toInt(), 0);

    QCOMPARE(textOf("red.jpg")->property("text").toString(), QString("red.jpg"));
    QCOMPARE(textOf("~Odd")->property("text").toString(), QString("Odd"));
    QVERIFY(textOf("~Odd")->isVisible());
    QVERIFY(!textOf("~")->isVisible());
    QCOMPARE(DialogStage::evaluate(textOf("~Odd"),
                                   "[font.pointSize, fontSizeMode === Text.Fit, minimumPointSize,"
                                   " wrapMode === Text.NoWrap, elide === Text.ElideRight].join()")
                 .toString(),
             QString("12,true,10,true,true"));
}

void tst_ImageChooserDialog::picturesAreDrawn()
{
    QVERIFY(showOpenDialog());
    const QPointF blue = DialogStage::center(imageOf("blue.png"));
    const QPointF red = DialogStage::center(imageOf("red.jpg"));
    QTRY_COMPARE(DialogStage::pixel(m_stage->dialogWindow()->grabWindow(), blue), QColor(Qt::blue));
    QTRY_VERIFY(DialogStage::pixel(m_stage->dialogWindow()->grabWindow(), red).red() > 240);
    // Three to two: the ground shows above.
    const QPointF above = DialogStage::rectOf(imageOf("blue.png")).topLeft() + QPointF(20, 4);
    QVERIFY(DialogStage::pixel(m_stage->dialogWindow()->grabWindow(), above) != QColor(Qt::blue));
}

void tst_ImageChooserDialog::namesWithSpecialCharactersAreDrawn()
{
    QVERIFY(showOpenDialog(QString(), m_pictures + "/Holidays"));
    const QPointF sea = DialogStage::center(imageOf("100% #1? sea.png"));
    QTRY_COMPARE(DialogStage::pixel(m_stage->dialogWindow()->grabWindow(), sea), QColor(Qt::cyan));
    DialogStage::click(cell("100% #1? sea.png"));
    QCOMPARE(property("imageUrl").toUrl().toLocalFile(), m_pictures + "/Holidays/100% #1? sea.png");
}

void tst_ImageChooserDialog::clickSelects_data()
{
    DialogStage::addPointerRows();
}

void tst_ImageChooserDialog::clickSelects()
{
    QVERIFY(showOpenDialog());
    DialogStage::press(cell("red.jpg"));
    QTRY_COMPARE(selected(), QString("red.jpg"));
    QCOMPARE(property("imagePath").toString(), m_pictures + "/red.jpg");
    QCOMPARE(property("imageUrl").toUrl(), QUrl::fromLocalFile(m_pictures + "/red.jpg"));
    QVERIFY(isOpen());
}

void tst_ImageChooserDialog::selectionDecidesTheButtons()
{
    QVERIFY(showOpenDialog());
    QVERIFY(pushButton("OK") && pushButton("Cancel"));
    DialogStage::click(cell("red.jpg"));
    DialogStage::click(cell("~Odd"));
    QTRY_VERIFY(!pushButton("OK"));
    QCOMPARE(buttons(), cancelButton);
    QVERIFY(pushButton("Cancel"));
    // A folder leaves the picture's path.
    QCOMPARE(property("imagePath").toString(), m_pictures + "/red.jpg");
    DialogStage::click(cell("blue.png"));
    QTRY_VERIFY(pushButton("OK"));
    QCOMPARE(buttons(), okButton | cancelButton);
    DialogStage::click(cell("~"));
    QTRY_VERIFY(!pushButton("OK"));
}

void tst_ImageChooserDialog::selectionIsHighlighted()
{
    QVERIFY(showOpenDialog());
    DialogStage::click(cell("~Odd"));
    auto *highlight = view()->property("highlightItem").value<QQuickItem *>();
    QCOMPARE(highlight->property("color").value<QColor>(), QColor("lightsteelblue"));
    QCOMPARE(highlight->property("radius").toInt(), 5);
    QTRY_COMPARE(highlight->position(), cell("~Odd")->position());
    const QPointF edge = DialogStage::rectOf(cell("~Odd")).topLeft() + QPointF(20, 2);
    QTRY_COMPARE(DialogStage::pixel(m_stage->dialogWindow()->grabWindow(), edge),
                 QColor("lightsteelblue"));
}

void tst_ImageChooserDialog::doubleClickTakesAPicture()
{
    QVERIFY(showOpenDialog());
    DialogStage::doubleClick(cell("red.jpg"));
    QTRY_VERIFY(!isOpen());
    QCOMPARE(count("acceptedCount"), 1);
    QCOMPARE(count("rejectedCount"), 0);
    QCOMPARE(property("imagePath").toString(), m_pictures + "/red.jpg");
    QCOMPARE(property("clickedButton").toInt(), okButton);
}

void tst_ImageChooserDialog::doubleClickOpensAFolder()
{
    QVERIFY(showOpenDialog());
    DialogStage::doubleClick(cell("~Holidays"));
    QTRY_COMPARE(folder(), m_pictures + "/Holidays");
    QVERIFY(isOpen());
    QCOMPARE(entries(), QStringList({"100% #1? sea.png", "beach.jpg", "~", "~2026"}));
    QCOMPARE(buttons(), okButton | cancelButton);
    DialogStage::doubleClick(cell("~2026"));
    QTRY_COMPARE(folder(), m_pictures + "/Holidays/2026");
    QCOMPARE(entries(), QStringList({"~"}));
    QCOMPARE(buttons(), cancelButton);
}

void tst_ImageChooserDialog::doubleClickGoesUp()
{
    QVERIFY(showOpenDialog(QString(), m_pictures + "/Holidays"));
    DialogStage::doubleClick(cell("~"));
    QTRY_COMPARE(folder(), m_pictures);
    QVERIFY(isOpen());
    QCOMPARE(entries().first(), QString("blue.png"));
}

void tst_ImageChooserDialog::wayUpIsListedAtTheTopOfTheFileSystem()
{
    QVERIFY(showOpenDialog(QString(), "/"));
    QCOMPARE(folder(), QString("/"));
    QCOMPARE(entries().indexOf("~"),
             entries().size() - 1 - QDir("/").entryList(QDir::Dirs | QDir::NoDotAndDotDot).size());
    DialogStage::doubleClick(cell("~"));
    QCOMPARE(folder(), QString("/"));
    QVERIFY(isOpen());
}

void tst_ImageChooserDialog::fileThatBeginsWithATildeIsTakenForAFolder()
{
    QVERIFY(showOpenDialog(QString(), m_pictures + "/Odd"));
    QCOMPARE(entries(), QStringList({"~tilde.png", "~"}));
    QCOMPARE(cell("~tilde.png")->property("isSubFolder").toBool(), true);
    QCOMPARE(textOf("~tilde.png")->property("text").toString(), QString("tilde.png"));
    QVERIFY(imageOf("~tilde.png")->property("source").toUrl().path().endsWith("folder_open.png"));
    // It is the first entry and selected: no Ok.
    QCOMPARE(buttons(), cancelButton);
    QCOMPARE(property("imagePath").toString(), QString());
    DialogStage::doubleClick(cell("~tilde.png"));
    QVERIFY(isOpen());
    QCOMPARE(folder(), m_pictures + "/Odd");
}

void tst_ImageChooserDialog::folderStaysBetweenOpenings()
{
    QVERIFY(showOpenDialog());
    DialogStage::doubleClick(cell("~Holidays"));
    QTRY_COMPARE(folder(), m_pictures + "/Holidays");
    QTest::keyClick(m_stage->dialogWindow(), Qt::Key_Escape);
    QTRY_VERIFY(!isOpen());
    QVERIFY(m_stage->openDialog());
    QCOMPARE(folder(), m_pictures + "/Holidays");
    QCOMPARE(entries().first(), QString("100% #1? sea.png"));
}

void tst_ImageChooserDialog::folderThatStaysSelectedOffersCancelAlone()
{
    QVERIFY(showOpenDialog());
    DialogStage::click(cell("~Odd"));
    QTest::keyClick(m_stage->dialogWindow(), Qt::Key_Escape);
    QTRY_VERIFY(!isOpen());
    QVERIFY(m_stage->openDialog());
    // The list is the same, and so is the selection.
    QCOMPARE(selected(), QString("~Odd"));
    QCOMPARE(buttons(), cancelButton);
    QTest::keyClick(m_stage->dialogWindow(), Qt::Key_Return);
    QVERIFY(isOpen());
}

void tst_ImageChooserDialog::folderThatHasBecomeEmptyOffersCancelAlone_data()
{
    QTest::addColumn<QString>("selection");
    QTest::newRow("the first was selected") << "one.png";
    QTest::newRow("the last was selected") << "two.png";
}

void tst_ImageChooserDialog::folderThatHasBecomeEmptyOffersCancelAlone()
{
    QFETCH(QString, selection);
    const QString folder = QDir::homePath() + "/fleeting";
    QVERIFY(paint(folder + "/one.png", Qt::red));
    QVERIFY(paint(folder + "/two.png", Qt::blue));
    QVERIFY(showOpenDialog("showFolders: false", folder));
    DialogStage::click(cell(selection));
    QTest::keyClick(m_stage->dialogWindow(), Qt::Key_Escape);
    QTRY_VERIFY(!isOpen());
    QVERIFY(QDir(folder).removeRecursively());
    QVERIFY(QDir().mkpath(folder));

    QVERIFY(m_stage->openDialog());
    QCOMPARE(entries(), QStringList());
    QCOMPARE(buttons(), cancelButton);
    QCOMPARE(property("imagePath").toString(), folder + "/" + selection);
    QTest::keyClick(m_stage->dialogWindow(), Qt::Key_Return);
    QVERIFY(isOpen());
}

void tst_ImageChooserDialog::folderThatIsChangedIsReadAnew()
{
    QVERIFY(showOpenDialog());
    setFolder(m_pictures + "/Holidays");
    QCOMPARE(entries().first(), QString("100% #1? sea.png"));
    QCOMPARE(property("imagePath").toString(), m_pictures + "/Holidays/100% #1? sea.png");
}

void tst_ImageChooserDialog::okButtonTakesThePicture()
{
    QVERIFY(showOpenDialog());
    DialogStage::click(cell("red.jpg"));
    DialogStage::click(pushButton("OK"));
    QTRY_VERIFY(!isOpen());
    QCOMPARE(count("acceptedCount"), 1);
    QCOMPARE(property("imagePath").toString(), m_pictures + "/red.jpg");
}

void tst_ImageChooserDialog::cancelKeepsTheSelection()
{
    QVERIFY(showOpenDialog());
    DialogStage::click(cell("red.jpg"));
    DialogStage::click(pushButton("Cancel"));
    QTRY_VERIFY(!isOpen());
    QCOMPARE(count("rejectedCount"), 1);
    QCOMPARE(count("acceptedCount"), 0);
    QCOMPARE(property("imagePath").toString(), m_pictures + "/red.jpg");
    QCOMPARE(property("imageUrl").toUrl(), QUrl::fromLocalFile(m_pictures + "/red.jpg"));
}

void tst_ImageChooserDialog::escapeRejects()
{
    QVERIFY(showOpenDialog());
    QTest::keyClick(m_stage->dialogWindow(), Qt::Key_Escape);
    QTRY_VERIFY(!isOpen());
    QCOMPARE(count("rejectedCount"), 1);
}

void tst_ImageChooserDialog::returnTakesThePicture()
{
    QVERIFY(showOpenDialog());
    DialogStage::click(cell("red.jpg"));
    QTest::keyClick(m_stage->dialogWindow(), Qt::Key_Return);
    QTRY_VERIFY(!isOpen());
    QCOMPARE(count("acceptedCount"), 1);
    QCOMPARE(property("imagePath").toString(), m_pictures + "/red.jpg");
}

void tst_ImageChooserDialog::returnIsRefusedWhileAFolderIsSelected()
{
    QVERIFY(showOpenDialog());
    DialogStage::click(cell("~Odd"));
    QTest::keyClick(m_stage->dialogWindow(), Qt::Key_Return);
    QTest::keyClick(m_stage->dialogWindow(), Qt::Key_Enter);
    QVERIFY(isOpen());
    QCOMPARE(count("acceptedCount"), 0);
    QTest::keyClick(m_stage->dialogWindow(), Qt::Key_Escape);
    QTRY_VERIFY(!isOpen());
    QCOMPARE(count("rejectedCount"), 1);
}

void tst_ImageChooserDialog::arrowKeysSelect()
{
    QVERIFY(showOpenDialog());
    QCOMPARE(selected(), QString("blue.png"));
    QTest::keyClick(m_stage->dialogWindow(), Qt::Key_Right);
    QCOMPARE(selected(), QString("red.jpg"));
    QTest::keyClick(m_stage->dialogWindow(), Qt::Key_Right);
    QCOMPARE(selected(), QString("~"));
    QCOMPARE(buttons(), cancelButton);
    QTest::keyClick(m_stage->dialogWindow(), Qt::Key_Left);
    QTest::keyClick(m_stage->dialogWindow(), Qt::Key_Return);
    QTRY_VERIFY(!isOpen());
    QCOMPARE(property("imagePath").toString(), m_pictures + "/red.jpg");
    // And again at the next opening, from where the selection was.
    QVERIFY(m_stage->openDialog());
    QTest::keyClick(m_stage->dialogWindow(), Qt::Key_Left);
    QCOMPARE(selected(), QString("blue.png"));
}

void tst_ImageChooserDialog::runsFromTheRightWhereTheApplicationDoes()
{
    QVERIFY(showDialog()); // the library's translator is installed, which resets the direction
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    QVERIFY(m_stage->openDialog());
    const QRectF area = DialogStage::rectOf(view());
    QTRY_COMPARE(DialogStage::rectOf(cell("blue.png")).right(), area.right());
    QVERIFY(DialogStage::center(cell("red.jpg")).x() < DialogStage::center(cell("blue.png")).x());
    QVERIFY(area.contains(DialogStage::rectOf(cell("~Empty"))));
    // The keys go where they point.
    QTest::keyClick(m_stage->dialogWindow(), Qt::Key_Left);
    QCOMPARE(selected(), QString("red.jpg"));
    QTest::keyClick(m_stage->dialogWindow(), Qt::Key_Right);
    QCOMPARE(selected(), QString("blue.png"));
    // A long folder's mark stands in the other margin.
    QQuickItem *mark = view()->parentItem()->childItems().at(1);
    QVERIFY(mark->x() + mark->width() <= view()->x());
    DialogStage::click(cell("red.jpg"));
    QCOMPARE(selected(), QString("red.jpg"));
}

void tst_ImageChooserDialog::bindingsFollowTheSelection()
{
    QVERIFY(showOpenDialog());
    DialogStage::click(cell("red.jpg"));
    QTRY_COMPARE(m_stage->root()->property("seen").toUrl(),
                 QUrl::fromLocalFile(m_pictures + "/red.jpg"));
}

void tst_ImageChooserDialog::manyPicturesDontFreeze()
{
    // Photographs as a camera makes them, slow to read: the same one under 2,000 names.
    const QString many = QDir::homePath() + "/many";
    QImage noise(4000, 3000, QImage::Format_RGB32);
    QRandomGenerator::global()->fillRange(reinterpret_cast<quint32 *>(noise.bits()),
                                          noise.width() * noise.height());
    QVERIFY(QDir().mkpath(many) && noise.save(many + "/0000.jpg"));
    for (int i = 1; i < 2000; ++i) {
        const QString name = QString("%1/%2.jpg").arg(many).arg(i, 4, 10, QChar('0'));
        QVERIFY(QFile::link(many + "/0000.jpg", name));
    }
    QVERIFY(showDialog());
    setFolder(m_pictures + "/Empty");
    QVERIFY(m_stage->openDialog());

    QElapsedTimer gap;
    qint64 longest = 0;
    QTimer beat;
    connect(&beat, &QTimer::timeout, this, [&] { longest = qMax(longest, gap.restart()); });
    gap.start();
    beat.start(0);

    setFolder(many);
    QCOMPARE(entries().size(), 2001);
    QTRY_COMPARE_WITH_TIMEOUT(imageOf("0000.jpg")->property("status").toInt(), 1, 20000);
    const int cells = view()->property("contentItem").value<QQuickItem *>()->childItems().size();
    QVERIFY2(cells < 200, qPrintable(QString::number(cells)));
    for (int i = 0; i < 20; ++i) {
        QTest::keyClick(m_stage->dialogWindow(), Qt::Key_Down);
        QTest::qWait(1);
    }
    m_stage->insideSubject("imagesView.positionViewAtEnd()");
    QTRY_COMPARE_WITH_TIMEOUT(imageOf("1999.jpg")->property("status").toInt(), 1, 20000);
    beat.stop();
    // The stage keeps what is logged.
    printf("INFO   : longest gap of the event loop: %lld ms\n", static_cast<long long>(longest));
    QVERIFY2(longest < 700, qPrintable(QString("%1 ms").arg(longest)));
}

void tst_ImageChooserDialog::longFoldersShowWhereTheViewStands()
{
    QVERIFY(showOpenDialog(QString(), m_pictures + "/Holidays"));
    QQuickItem *mark = view()->parentItem()->childItems().at(1);
    QVERIFY(!mark->isVisible());
    const QString many = QDir::homePath() + "/some";
    QVERIFY(paint(many + "/00.jpg", Qt::gray));
    for (int i = 1; i < 60; ++i)
        QVERIFY(QFile::copy(many + "/00.jpg",
                            QString("%1/%2.jpg").arg(many).arg(i, 2, 10, QChar('0'))));
    setFolder(many);
    QTRY_VERIFY(mark->isVisible());
    QCOMPARE(mark->y(), view()->y());
    QVERIFY(mark->x() >= view()->x() + view()->width());
    // The view only guesses its height until it has made the last row.
    QTRY_VERIFY(
        m_stage->insideSubject("imagesView.positionViewAtEnd(), imagesView.atYEnd").toBool());
    QTRY_COMPARE(qRound(mark->y() + mark->height()), qRound(view()->y() + view()->height()));
}

void tst_ImageChooserDialog::iconsStandOutFromAnyGround_data()
{
    QTest::addColumn<QString>("ground");
    QTest::newRow("light window") << "#efefef";
    QTest::newRow("dark window") << "#2d2d2d";
    QTest::newRow("highlight") << "lightsteelblue";
}

void tst_ImageChooserDialog::iconsStandOutFromAnyGround()
{
    QFETCH(QString, ground);
    const QString images = "qrc:/imports/Zemrik/Tessaline/Dialogs/images/";
    for (const char *name : {"folder", "folder-picture", "folder-arrow_up", "folder_open",
                             "folder_open-picture", "folder_open-arrow_up"}) {
        QVERIFY(m_stage->show(
            QString("Rectangle { id: theSubject; anchors.fill: parent; color: \"%1\"\n"
                    "Image { width: 32; height: 32; source: \"%2%3.png\" } }")
                .arg(ground, images, name)));
        auto *subject = qobject_cast<QQuickItem *>(m_stage->subject());
        QQuickItem *icon = DialogStage::itemsOf(subject, "QQuickImage").first();
        QTRY_VERIFY2(DialogStage::contrastOf(icon, m_stage->window()->grabWindow(), QColor(ground))
                         >= 3.0,
                     name);
    }
}

void tst_ImageChooserDialog::thumbnailsHaveThePixelsOfTheScreen()
{
    QVERIFY(paint(m_pictures + "/Large/photo.jpg", Qt::darkGreen, QSize(1600, 1200)));
    QVERIFY(showOpenDialog(QString(), m_pictures + "/Large"));
    const qreal pixels = scale() * 130 * m_stage->dialogWindow()->devicePixelRatio();
    QTRY_COMPARE(imageOf("photo.jpg")->property("status").toInt(), 1);
    // Neither the whole photograph in memory nor less than is shown.
    const QSize loaded = imageOf("photo.jpg")->property("sourceSize").toSize();
    QCOMPARE(loaded, QSize(int(pixels), int(pixels)));
    // The shorter side fills the cell.
    QVERIFY(qAbs(imageOf("photo.jpg")->implicitHeight() - pixels) <= 1);
    QVERIFY(imageOf("photo.jpg")->implicitWidth() < pixels * 1.4);
    QVERIFY(QDir(m_pictures + "/Large").removeRecursively());
}

// Whose header claims more than its bytes can hold, and documents under the name of a photo.
void tst_ImageChooserDialog::dangerousFilesHaveNoThumbnail()
{
    const QString dangerous = QDir::homePath() + "/dangerous";
    QVERIFY(paint(dangerous + "/good 100%.png", Qt::red));
    QVERIFY(paint(dangerous + "/bmp.png", Qt::red)); // of another kind, but a picture
    QImage image(8, 8, QImage::Format_RGB32);
    image.fill(Qt::red);
    QVERIFY(image.save(dangerous + "/bmp.png", "BMP"));
    QVERIFY(image.save(dangerous + "/huge.png", "BMP"));
    QFile huge(dangerous + "/huge.png");
    const qint32 side = 12000;
    QVERIFY(huge.open(QIODevice::ReadWrite) && huge.seek(18));
    for (int i = 0; i < 2; ++i)
        QCOMPARE(huge.write(reinterpret_cast<const char *>(&side), 4), qint64(4));
    huge.close();
    QVERIFY(image.save(dangerous + "/icon.jpg", "ICO"));
    QFile drawing(dangerous + "/drawing.jpg");
    QVERIFY(drawing.open(QIODevice::WriteOnly));
    drawing.write("<svg xmlns='http://www.w3.org/2000/svg' width='8' height='8'/>");
    drawing.close();

    const QStringList refused{"huge.png", "icon.jpg", "drawing.jpg"};
    for (const QString &name : refused)
        m_stage->expectWarning("Failed to get image from provider: image://picturecheck/"
                               + QUrl::toPercentEncoding(dangerous + "/" + name, "/"));
    QVERIFY(showOpenDialog(QString(), dangerous));
    QTRY_COMPARE(imageOf("good 100%.png")->property("status").toInt(), 1); // Ready
    QTRY_COMPARE(imageOf("bmp.png")->property("status").toInt(), 1);
    for (const QString &name : refused) {
        QCOMPARE(imageOf(name)->property("source").toUrl(), QUrl());
        QCOMPARE(imageOf(name)->property("status").toInt(), 0);
        QVERIFY(textOf(name)->isVisible());
    }
    DialogStage::click(cell("huge.png")); // whether to take it is the applet's question
    QCOMPARE(property("imagePath").toString(), dangerous + "/huge.png");
}

void tst_ImageChooserDialog::closingTheWindowRejects()
{
    QVERIFY(showOpenDialog());
    m_stage->dialogWindow()->close();
    QTRY_VERIFY(!isOpen());
    QCOMPARE(count("rejectedCount"), 1);
    QCOMPARE(count("acceptedCount"), 0);
    QVERIFY(m_stage->openDialog());
    DialogStage::click(pushButton("OK"));
    QTRY_COMPARE(count("acceptedCount"), 1);
    QCOMPARE(count("rejectedCount"), 1);
}

void tst_ImageChooserDialog::looksLikeABrowser()
{
    const QString folder = m_pictures + "/Survey";
    const QStringList names{"bridge.jpg", "coast.jpg", "farm.jpg",
                            "lake.jpg",   "ridge.jpg", "valley.jpg"};
    for (int i = 0; i < names.size(); ++i)
        QVERIFY(paintLandscape(folder + "/" + names.at(i), i));
    QVERIFY(QDir(folder).mkpath("March") && QDir(folder).mkpath("April"));
    QVERIFY(showOpenDialog(QString(), folder));
    DialogStage::click(cell("coast.jpg"));
    for (const QString &name : names)
        QTRY_COMPARE(imageOf(name)->property("status").toInt(), 1);
    auto *highlight = view()->property("highlightItem").value<QQuickItem *>();
    QTRY_COMPARE(highlight->position(), cell("coast.jpg")->position());
    const QImage picture = m_stage->dialogWindow()->grabWindow();
    QCOMPARE(picture.size(), QSize(720, 540));
    DialogStage::keepPicture(picture, "image-chooser-dialog.png");
    QVERIFY(QDir(folder).removeRecursively());
}

TESSALINE_INPUT_TEST_MAIN(tst_ImageChooserDialog)
#include "tst_ImageChooserDialog.moc"
