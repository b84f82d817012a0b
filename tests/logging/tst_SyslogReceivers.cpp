#include "RsyslogServer.h"

#include "logging/Logging.h"
#include "support/IsolatedHome.h"

#include <QDateTime>
#include <QDebug>
#include <QLoggingCategory>
#include <QTest>

Q_LOGGING_CATEGORY(testCategory, "test.category")

// Whether a receiver that others have written understands our records.
class tst_SyslogReceivers : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void rsyslogParsesTheNewForm();
    void rsyslogParsesBothBlocksOfStructuredData();
    void rsyslogParsesHeaderRows();
    void rsyslogParsesTheOldForm();

private:
    void enable(const char *scheme);

    RsyslogServer m_server;
    Logging *m_logging = nullptr;
};

void tst_SyslogReceivers::initTestCase()
{
    if (!RsyslogServer::isInstalled())
        QSKIP("rsyslogd is not installed (scripts/setup test)");
    QVERIFY2(m_server.start(), qPrintable(m_server.errorString()));
    QCoreApplication::setApplicationName("Receiver test");
}

void tst_SyslogReceivers::cleanup()
{
    delete m_logging;
    m_logging = nullptr;
}

void tst_SyslogReceivers::enable(const char *scheme)
{
    m_logging = Logging::instance(false);
    m_logging->setOutputLocation(m_server.url(scheme));
    m_logging->setEnabled(true);
    QVERIFY(m_logging->enabled());
}

void tst_SyslogReceivers::rsyslogParsesTheNewForm()
{
    enable("syslog");
    const QDateTime before = QDateTime::currentDateTimeUtc().addSecs(-1);
    qCWarning(testCategory, "new form, brackets [x] and \"quotes\" \xc3\xa4");
    const QJsonObject record = m_server.waitFor(
        QString::fromUtf8("test.category: new form, brackets [x] and \"quotes\" \xc3\xa4"));

    QCOMPARE(record.value("pri").toString(), QString("12"));
    QCOMPARE(record.value("version").toString(), QString("1"));
    QCOMPARE(record.value("host").toString(), m_logging->syslogHostName());
    QCOMPARE(record.value("app").toString(), QString("Receiver_test"));
    QCOMPARE(record.value("pid").toString(), QString::number(QCoreApplication::applicationPid()));
    QCOMPARE(record.value("msgid").toString(), QString("-"));
    QVERIFY(
        record.value("data").toString().startsWith("[Halvora@48213 category=\"test.category\""));
    const QDateTime time = QDateTime::fromString(record.value("time").toString(), Qt::ISODate);
    QVERIFY(time >= before && time <= QDateTime::currentDateTimeUtc());
}

void tst_SyslogReceivers::rsyslogParsesBothBlocksOfStructuredData()
{
    enable("syslog");
    m_logging->setUserData("session@48213 user=\"7\" at=\"%{filename}:%{line}\"");
    m_logging->messageHandler(QtCriticalMsg, QMessageLogContext("/x/y.cpp", 17, "f(int)", "c"),
                              "both blocks");
    const QJsonObject record = m_server.waitFor("c: both blocks");
    QCOMPARE(record.value("pri").toString(), QString("10"));
    QCOMPARE(
        record.value("data").toString(),
        QString("[Halvora@48213 category=\"c\" function=\"f(int)\" filename=\"y.cpp\" line=\"17\"]"
                "[session@48213 user=\"7\" at=\"y.cpp:17\"]"));
}

void tst_SyslogReceivers::rsyslogParsesHeaderRows()
{
    enable("syslog");
    const QJsonObject record = m_server.waitFor("$ Tessaline Version: 1.2.15");
    QCOMPARE(record.value("pri").toString(), QString("14"));
    QCOMPARE(record.value("data").toString(), QString("-"));
}

void tst_SyslogReceivers::rsyslogParsesTheOldForm()
{
    enable("syslog0");
    qCritical("old form");
    const QJsonObject record = m_server.waitFor("old form");
    QCOMPARE(record.value("pri").toString(), QString("10"));
    QCOMPARE(record.value("version").toString(), QString("0"));
    QCOMPARE(record.value("host").toString(), m_logging->syslogHostName());
    QCOMPARE(record.value("tag").toString(), QString("Receiver_test:"));
    const QDateTime time = QDateTime::fromString(record.value("time").toString(), Qt::ISODate);
    QVERIFY2(qAbs(time.secsTo(QDateTime::currentDateTime())) <= 10,
             qPrintable(record.value("time").toString()));
}

TESSALINE_TEST_MAIN(tst_SyslogReceivers)

#include "tst_SyslogReceivers.moc"
