#include "logging/Logging.h"
#include "support/IsolatedHome.h"
#include "support/SyslogCollector.h"

#include <QDebug>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <thread>
#include <vector>

// Qt calls the handler on whatever thread logs. Run this under the thread sanitizer, too.
class tst_LoggingThreads : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void linesOfAFileStayWhole();
    void datagramsStayWhole();
    void previousHandlerGetsEveryMessage();
    void switchingWhileOthersLog();
    void aMessageOnItsWayIsHeardAfterSwitchingOff();

private:
    void checkRecords(const QByteArrayList &records) const;

    QtMessageHandler m_original = nullptr;
    std::unique_ptr<QTemporaryDir> m_dir;
    Logging *m_logging = nullptr;
};

namespace {

const int threadCount = 4;
const int messageCount = 500; // of each thread

std::atomic<int> heard{0};

void countMessage(QtMsgType, const QMessageLogContext &, const QString &)
{
    ++heard;
}

// Of a length that differs, and long enough for mixed lines to show.
QByteArray text(int thread, int number)
{
    return "thread " + QByteArray::number(thread) + " message " + QByteArray::number(number) + ' '
           + QByteArray(20 + 37 * thread, char('a' + thread)) + " end";
}

void logFromAllThreads(const std::function<void()> &meanwhile = {})
{
    std::vector<std::thread> threads;
    for (int thread = 0; thread < threadCount; ++thread)
        threads.emplace_back([thread] {
            for (int number = 0; number < messageCount; ++number)
                qInfo("%s", text(thread, number).constData());
        });
    if (meanwhile)
        meanwhile();
    for (std::thread &thread : threads)
        thread.join();
}

} // namespace

void tst_LoggingThreads::init()
{
    m_original = qInstallMessageHandler(countMessage);
    heard = 0;
    m_dir = std::make_unique<QTemporaryDir>();
    m_logging = Logging::instance(false);
}

void tst_LoggingThreads::cleanup()
{
    delete m_logging;
    qInstallMessageHandler(m_original);
}

void tst_LoggingThreads::checkRecords(const QByteArrayList &records) const
{
    const QRegularExpression form(
        "^<14>1 \\S+Z \\S+ \\S+ \\d+ - \\[Halvora@48213 [^]]*\\](?:\\[[^]]*\\])? "
        "(thread (\\d) message (\\d+) .* end)$");
    int next[threadCount] = {};
    for (const QByteArray &record : records) {
        const auto match = form.match(QString::fromLocal8Bit(record));
        if (!match.hasMatch()) {
            QVERIFY2(record.contains("- - $ "), record.constData()); // header and footer
            continue;
        }
        const int thread = match.captured(2).toInt();
        // Each thread's messages come whole, all of them, and in their order.
        QCOMPARE(match.captured(3).toInt(), next[thread]);
        QCOMPARE(match.captured(1), QString::fromLatin1(text(thread, next[thread])));
        ++next[thread];
    }
    for (int count : next)
        QCOMPARE(count, messageCount);
}

void tst_LoggingThreads::linesOfAFileStayWhole()
{
    const QString path = m_dir->filePath("threads.log");
    m_logging->setOutputLocation(QUrl::fromLocalFile(path));
    m_logging->setEnabled(true);
    logFromAllThreads();
    m_logging->setEnabled(false);

    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QByteArrayList lines = file.readAll().split('\n');
    QCOMPARE(lines.takeLast(), QByteArray());
    checkRecords(lines);
}

void tst_LoggingThreads::datagramsStayWhole()
{
    SyslogCollector collector;
    m_logging->setOutputLocation(collector.url("syslog"));
    m_logging->setEnabled(true);
    const int rows = collector.take(16).count();
    logFromAllThreads();
    m_logging->setEnabled(false);
    const QByteArrayList records = collector.take(threadCount * messageCount + 1);
    QCOMPARE(rows, 16);
    QCOMPARE(records.count(), threadCount * messageCount + 1);
    checkRecords(records);
}

void tst_LoggingThreads::previousHandlerGetsEveryMessage()
{
    m_logging->setOutputLocation(QUrl::fromLocalFile(m_dir->filePath("threads.log")));
    m_logging->setEnabled(true);
    logFromAllThreads();
    m_logging->setEnabled(false);
    QCOMPARE(heard.load(), threadCount * messageCount);
}

void tst_LoggingThreads::switchingWhileOthersLog()
{
    const QString path = m_dir->filePath("threads.log");
    m_logging->setOutputLocation(QUrl::fromLocalFile(path));
    m_logging->setAppend(true);
    logFromAllThreads([this] {
        for (int i = 0; i < 50; ++i) {
            m_logging->setEnabled(true);
            m_logging->setName(QString("name %1").arg(i));
            m_logging->setUserData(QString("n@1 i=\"%1\"").arg(i));
            m_logging->setEnabled(false);
        }
    });
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArrayList lines = file.readAll().split('\n');
    QCOMPARE(lines.last(), QByteArray());
    QCOMPARE(file.size() > 0, true);
    for (const QByteArray &line : lines.mid(0, lines.size() - 1))
        QVERIFY2(line.startsWith("<14>1 ") && (line.contains("$ ") || line.endsWith(" end")),
                 line.constData());
    QCOMPARE(heard.load(), threadCount * messageCount);
}

// Qt reads which handler is installed and then calls it; logging may be switched off in between.
void tst_LoggingThreads::aMessageOnItsWayIsHeardAfterSwitchingOff()
{
    m_logging->setOutputLocation(QUrl::fromLocalFile(m_dir->filePath("threads.log")));
    m_logging->setEnabled(true);
    const QtMessageHandler found = Logging::_messageHandler;
    m_logging->setEnabled(false);

    std::thread([found] { found(QtInfoMsg, QMessageLogContext(), "on its way"); }).join();

    QCOMPARE(heard.load(), 1);
}

TESSALINE_TEST_MAIN(tst_LoggingThreads)

#include "tst_LoggingThreads.moc"
