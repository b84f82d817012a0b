#include "examples/ExampleWindow.h"
#include "logging/Logging.h"
#include "support/IsolatedHome.h"
#include "support/SyslogCollector.h"

#include <QDebug>
#include <QDir>
#include <QFile>

// One sitting with the logging example: each test goes on where the one before it stopped.
class tst_LoggingExample : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void beginsSwitchedOff();
    void startShowsTheHeaderRows();
    void messagesAppearAsTheyAreWritten();
    void longMessagesFold();
    void whatIsTypedShowsInTheNextRecord();
    void stopShowsTheClosingRow();
    void aFileThatCannotBeOpenedIsSaid();
    void collectorGetsTheRecords();
    void aNarrowWindowShowsOnePage();
    void looksLikeALogViewer();
    void printsNoWarning();

private:
    void fill(const QString &objectName, const QString &text);
    int recordCount() const { return m_window->item("records")->property("count").toInt(); }
    QString lastMessage() const;

    std::unique_ptr<ExampleWindow> m_window;
};

void tst_LoggingExample::initTestCase()
{
    m_window = std::make_unique<ExampleWindow>("logging");
    QVERIFY(m_window->isReady());
    QVERIFY(m_window->expose());
    m_window->resize(1280, 800);
}

void tst_LoggingExample::fill(const QString &objectName, const QString &text)
{
    m_window->click(objectName);
    QTRY_VERIFY(m_window->item(objectName)->hasActiveFocus());
    QTest::keyClick(m_window->view(), Qt::Key_A, Qt::ControlModifier);
    m_window->type(text);
    QCOMPARE(m_window->text(objectName), text);
}

QString tst_LoggingExample::lastMessage() const
{
    auto *list = m_window->item("records");
    QQuickItem *last = nullptr;
    QMetaObject::invokeMethod(list, "itemAtIndex", Q_RETURN_ARG(QQuickItem *, last),
                              Q_ARG(int, recordCount() - 1));
    return last ? last->property("message").toString() : QString();
}

void tst_LoggingExample::beginsSwitchedOff()
{
    QCOMPARE(m_window->text("state"), QString("Off"));
    QCOMPARE(m_window->text("startButton"), QString("Start"));
    QCOMPARE(recordCount(), 0);
    QVERIFY(!Logging::instance(false)->enabled());
}

void tst_LoggingExample::startShowsTheHeaderRows()
{
    m_window->click("startButton");
    QTRY_COMPARE(m_window->text("state"), QString("Writing a file"));
    QTRY_VERIFY(recordCount() >= 16);
    QTRY_VERIFY(m_window->text("location").startsWith(QDir::homePath() + "/Zemrik/Halvora/Logs/"));
}

void tst_LoggingExample::messagesAppearAsTheyAreWritten()
{
    m_window->click("warningButton");
    QTRY_COMPARE(lastMessage(), QString("qml: The map has been loaded"));
    qCritical("not from the applet");
    QTRY_COMPARE(lastMessage(), QString("not from the applet"));
}

void tst_LoggingExample::longMessagesFold()
{
    qInfo("%s", QByteArray(400, 'x').constData());
    QTRY_COMPARE(lastMessage(), QString(400, 'x'));
}

void tst_LoggingExample::whatIsTypedShowsInTheNextRecord()
{
    fill("nameField", "My applet");
    fill("userDataField", "place@48213 at=\"%{line}\"");
    fill("patternField", "%{type} says %{message}");
    m_window->click("infoButton");
    QTRY_COMPARE(lastMessage(), QString("info says The map has been loaded"));

    QFile file(Logging::instance(false)->outputLocation().toLocalFile());
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray record = file.readAll().trimmed().split('\n').last();
    QVERIFY2(record.contains(" My_applet "), record.constData());
    QVERIFY2(record.contains("[place@48213 at=\""), record.constData());
}

void tst_LoggingExample::stopShowsTheClosingRow()
{
    m_window->click("startButton");
    QTRY_COMPARE(m_window->text("state"), QString("Off"));
    QTRY_VERIFY2(lastMessage().startsWith("$ Logging ended: "), qPrintable(lastMessage()));
    QVERIFY(!Logging::instance(false)->enabled());
}

void tst_LoggingExample::aFileThatCannotBeOpenedIsSaid()
{
    m_window->click("choice File");
    fill("fileField", "/proc/version/x.log");
    m_window->click("startButton");
    QTRY_VERIFY(m_window->item("failure")->isVisible());
    QVERIFY(m_window->text("failure").contains("/proc/version/x.log"));
    QCOMPARE(m_window->text("state"), QString("Off"));

    fill("fileField", "~/given.log");
    m_window->click("startButton");
    QTRY_COMPARE(m_window->text("state"), QString("Writing a file"));
    QVERIFY(!m_window->item("failure")->isVisible());
    QVERIFY(QFileInfo(QDir::homePath() + "/given.log").size() > 0);
    m_window->click("startButton");
}

void tst_LoggingExample::collectorGetsTheRecords()
{
    SyslogCollector collector;
    m_window->click("choice Collector");
    fill("collectorField", QString("127.0.0.1:%1").arg(collector.port()));
    m_window->click("startButton");
    QTRY_COMPARE(m_window->text("state"), QString("Sending to 127.0.0.1:%1").arg(collector.port()));
    QVERIFY(collector.take(16).count() >= 16);
    m_window->click("warningButton");
    const QByteArrayList records = collector.take(1);
    QVERIFY(!records.isEmpty() && records.first().endsWith("says The map has been loaded"));
    m_window->click("startButton");
}

void tst_LoggingExample::aNarrowWindowShowsOnePage()
{
    m_window->resize(360, 640);
    QVERIFY(m_window->item("nameField")->isVisible());
    QVERIFY(!m_window->item("records")->isVisible());
    m_window->click("choice Log");
    QTRY_VERIFY(m_window->item("records")->isVisible());
    QVERIFY(!m_window->item("nameField")->isVisible());
    m_window->click("choice Set-up");
    QTRY_VERIFY(m_window->item("nameField")->isVisible());
}

void tst_LoggingExample::looksLikeALogViewer()
{
    m_window->resize(1280, 800);
    m_window->click("choice Own file");
    m_window->click("startButton");
    QTRY_VERIFY(recordCount() >= 16);
    const QImage picture = m_window->picture();
    QCOMPARE(picture.size(), QSize(1280, 800));
    QVERIFY(ExampleWindow::colorCount(picture) > 50);
    // The dark view on the right, the light set-up on the left.
    QVERIFY(picture.pixelColor(1270, 700).lightnessF() < 0.3);
    QVERIFY(picture.pixelColor(4, 700).lightnessF() > 0.8);
    m_window->click("startButton");
}

void tst_LoggingExample::printsNoWarning()
{
    QCOMPARE(m_window->warningCount(), 0);
    m_window.reset();
    QVERIFY(!Logging::instance(false)->enabled());
}

TESSALINE_INPUT_TEST_MAIN(tst_LoggingExample)

#include "tst_LoggingExample.moc"
