#include "examples/ExampleWindow.h"
#include "support/DevelopmentPortal.h"
#include "support/IsolatedHome.h"

#include <QDir>
#include <QQmlListReference>
#include <QStandardPaths>

// One sitting with the dialogs: each test goes on where the one before it stopped. The camera is
// the synthetic one, the portal is tessaline-portal.
class tst_DialogsExample : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void beginsWithNothing();
    void cameraGivesAPicture();
    void cameraCanBeCancelled();
    void chooserGivesAPicture();
    void chooserWithoutFolders();
    void signInShowsWhoItIs();
    void flowsIntoColumns_data();
    void flowsIntoColumns();
    void looksLikeAPage_data();
    void looksLikeAPage();
    void printsNoWarning();

private:
    QObject *dialog(const char *name) const
    {
        return m_window->view()->rootObject()->findChild<QObject *>(name);
    }
    // Presses a button of the page once the page has the keyboard again: without a window manager
    // the X server gives it back late, and would take it from the dialog.
    bool press(const QString &button)
    {
        m_window->view()->requestActivate();
        if (!QTest::qWaitForWindowActive(m_window->view()))
            return false;
        m_window->click(button);
        return true;
    }
    // The window that Qt makes for a dialog, once it is drawn and has the keyboard.
    QQuickWindow *windowOf(QObject *dialog)
    {
        QQmlListReference content(dialog, "data");
        for (int i = 0; i < content.count(); ++i) {
            auto *item = qobject_cast<QQuickItem *>(content.at(i));
            if (item && item->window() && QTest::qWaitForWindowExposed(item->window())) {
                item->window()->requestActivate();
                const bool ready =
                    QTest::qWaitForWindowActive(item->window()) && QTest::qWaitFor([item] {
                        return item->window()->activeFocusItem() != nullptr;
                    });
                return ready ? item->window() : nullptr;
            }
        }
        return nullptr;
    }
    static QQuickItem *find(QQuickItem *parent, const char *property, const QString &end)
    {
        if (parent->isVisible() && parent->property(property).toString().endsWith(end))
            return parent;
        for (QQuickItem *child : parent->childItems()) {
            if (QQuickItem *found = find(child, property, end))
                return found;
        }
        return nullptr;
    }
    static void clickIn(QQuickWindow *window, QQuickItem *item)
    {
        QTest::mouseClick(
            window, Qt::LeftButton, Qt::NoModifier,
            item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint());
    }
    QStringList pictures() const
    {
        return QDir(QStandardPaths::writableLocation(QStandardPaths::PicturesLocation))
            .entryList(QDir::Files);
    }

    std::unique_ptr<ExampleWindow> m_window;
};

void tst_DialogsExample::initTestCase()
{
    m_window = std::make_unique<ExampleWindow>("dialogs");
    QVERIFY(m_window->isReady());
    QVERIFY(m_window->expose());
    m_window->resize(1280, 800);
}

void tst_DialogsExample::beginsWithNothing()
{
    QCOMPARE(m_window->text("title"), QString("Dialogs"));
    for (const char *outcome : {"captureOutcome", "chooserOutcome", "portalOutcome"})
        QCOMPARE(m_window->text(outcome), QString("Not opened yet"));
    QVERIFY(pictures().isEmpty());
}

void tst_DialogsExample::cameraGivesAPicture()
{
    QVERIFY(press("captureButton"));
    QQuickWindow *camera = windowOf(dialog("captureDialog"));
    QVERIFY(camera);
    clickIn(camera, find(camera->contentItem(), "source", "/images/camera.png"));
    QTRY_COMPARE(pictures().size(), 1);
    QTRY_VERIFY(m_window->text("captureOutcome").endsWith("/Pictures/" + pictures().first()));
    QTRY_COMPARE(m_window->item("capturePicture")->property("status").toInt(), 1);
}

void tst_DialogsExample::cameraCanBeCancelled()
{
    const QString picture = m_window->text("capturePicture", "source");
    QVERIFY(press("captureButton"));
    QQuickWindow *camera = windowOf(dialog("captureDialog"));
    QVERIFY(camera);
    QTest::keyClick(camera, Qt::Key_Escape);
    QTRY_COMPARE(m_window->text("captureOutcome"), QString("Cancelled"));
    QCOMPARE(m_window->text("capturePicture", "source"), picture);
}

void tst_DialogsExample::chooserGivesAPicture()
{
    QVERIFY(press("chooserButton"));
    QQuickWindow *chooser = windowOf(dialog("chooserDialog"));
    QVERIFY(chooser);
    QTRY_VERIFY(find(chooser->contentItem(), "text", pictures().first()));
    QTest::keyClick(chooser, Qt::Key_Return);
    QTRY_VERIFY(m_window->text("chooserOutcome").endsWith("/Pictures/" + pictures().first()));
    QTRY_COMPARE(m_window->item("chooserPicture")->property("status").toInt(), 1);
}

void tst_DialogsExample::chooserWithoutFolders()
{
    QCOMPARE(dialog("chooserDialog")->property("showFolders").toBool(), true);
    QVERIFY(press("foldersSwitch"));
    QTRY_COMPARE(dialog("chooserDialog")->property("showFolders").toBool(), false);
}

void tst_DialogsExample::signInShowsWhoItIs()
{
    DevelopmentPortal portal;
    QVERIFY2(portal.start(), qPrintable(portal.output()));
    QVERIFY(press("portalField"));
    QTRY_VERIFY(m_window->item("portalField")->hasActiveFocus());
    QTest::keyClick(m_window->view(), Qt::Key_A, Qt::ControlModifier);
    m_window->type(portal.url());
    QTest::keyClick(m_window->view(), Qt::Key_Return);
    QVERIFY(press("portalButton"));
    QQuickWindow *signIn = windowOf(dialog("portalDialog"));
    QVERIFY(signIn);
    dialog("portalDialog")->setProperty("username", "demo");
    dialog("portalDialog")->setProperty("password", "demo");
    QQuickItem *accept = find(signIn->contentItem(), "text",
                              dialog("portalDialog")->property("acceptLabel").toString());
    QVERIFY(accept);
    clickIn(signIn, accept);
    QTRY_COMPARE(m_window->text("portalOutcome"), QString("Signed in as demo"));
    QTRY_VERIFY(!dialog("portalDialog")->property("visible").toBool());
    QCOMPARE(m_window->text("portalButton"), QString("Sign out"));
    m_window->click("portalButton");
    QTRY_COMPARE(m_window->text("portalOutcome"), QString("Signed out"));
}

void tst_DialogsExample::flowsIntoColumns_data()
{
    ExampleWindow::addColumnRows();
}

void tst_DialogsExample::flowsIntoColumns()
{
    m_window->testColumns();
}

void tst_DialogsExample::looksLikeAPage_data()
{
    ExampleWindow::addSizeRows();
}

void tst_DialogsExample::looksLikeAPage()
{
    QFETCH(QSize, size);
    m_window->resize(size.width(), size.height());
    QTRY_COMPARE(m_window->picture().pixelColor(size.width() - 3, 3), QColor("#2f6b4f"));
    const QImage picture = m_window->picture();
    QCOMPARE(picture.size(), size * m_window->view()->devicePixelRatio());
    QCOMPARE(picture.pixelColor(3, picture.height() - 3), QColor("#eef3f0"));
    QVERIFY(ExampleWindow::colorCount(picture) > 100);
    // No card sticks out.
    for (const char *button : {"captureButton", "chooserButton", "portalButton"}) {
        QQuickItem *item = m_window->item(button);
        QVERIFY(item->mapToScene(QPointF(item->width(), 0)).x() <= size.width() - 16);
    }
}

void tst_DialogsExample::printsNoWarning()
{
    QCOMPARE(m_window->warningCount(), 0);
}

TESSALINE_INPUT_TEST_MAIN(tst_DialogsExample)
#include "tst_DialogsExample.moc"
