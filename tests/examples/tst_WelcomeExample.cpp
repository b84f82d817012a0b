#include "examples/ExampleWindow.h"
#include "support/IsolatedHome.h"

class tst_WelcomeExample : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void showsWhatTheAppIsCalled();
    void variablesOfTheMetadataArriveWithTheComplete();
    void aPathIsResolvedWhileTyping();
    void flowsIntoColumns_data();
    void flowsIntoColumns();
    void looksLikeAPage_data();
    void looksLikeAPage();
    void printsNoWarning();

private:
    std::unique_ptr<ExampleWindow> m_window;
};

void tst_WelcomeExample::initTestCase()
{
    m_window = std::make_unique<ExampleWindow>("welcome");
    QVERIFY(m_window->isReady());
    QVERIFY(m_window->expose());
}

void tst_WelcomeExample::showsWhatTheAppIsCalled()
{
    QCOMPARE(m_window->text("title"), QString("Welcome"));
    QCOMPARE(m_window->view()->minimumSize(), QSize(320, 480));
}

void tst_WelcomeExample::variablesOfTheMetadataArriveWithTheComplete()
{
    QTRY_COMPARE(m_window->text("greeting", "value"), QString("Hello from appinfo.json"));
    QCOMPARE(qgetenv("GREETING"), QByteArray("Hello from appinfo.json"));
}

void tst_WelcomeExample::aPathIsResolvedWhileTyping()
{
    const QString home = QDir::homePath();
    QCOMPARE(m_window->text("resolved", "value"), home + "/Zemrik");
    m_window->item("pathField")->setProperty("text", "$TEMP/x");
    QCOMPARE(m_window->text("resolved", "value"), QDir::tempPath() + "/x");
}

void tst_WelcomeExample::flowsIntoColumns_data()
{
    ExampleWindow::addColumnRows();
}

void tst_WelcomeExample::flowsIntoColumns()
{
    m_window->testColumns();
}

void tst_WelcomeExample::looksLikeAPage_data()
{
    ExampleWindow::addSizeRows();
}

void tst_WelcomeExample::looksLikeAPage()
{
    QFETCH(QSize, size);
    m_window->resize(size.width(), size.height());
    // The banner in the app's own colour, a ground, white cards and text on them.
    const QColor accent("#1b6e8c");
    QTRY_COMPARE(m_window->picture().pixelColor(size.width() - 3, 3), accent);
    const QImage picture = m_window->picture();
    QCOMPARE(picture.size(), size * m_window->view()->devicePixelRatio());
    QCOMPARE(picture.pixelColor(3, picture.height() - 3), QColor("#eef2f5"));
    QVERIFY(ExampleWindow::colorCount(picture) > 100);
}

void tst_WelcomeExample::printsNoWarning()
{
    QCOMPARE(m_window->warningCount(), 0);
}

TESSALINE_INPUT_TEST_MAIN(tst_WelcomeExample)
#include "tst_WelcomeExample.moc"
