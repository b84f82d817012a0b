#include "logging/SyslogFormatter.h"
#include "support/IsolatedHome.h"

#include <QDateTime>
#include <QLocale>
#include <QRegularExpression>
#include <QtDebug>
#include <QTest>

Q_DECLARE_METATYPE(QtMsgType)

namespace {

const QMessageLogContext noContext;
const QMessageLogContext fullContext("/home/dev/app/main.cpp", 42, "int main(int, char**)",
                                     "app.net");

} // namespace

class tst_SyslogFormatter : public QObject
{
    Q_OBJECT

private slots:
    void init() { QCoreApplication::setApplicationName("tst"); }
    void priorityOfEachType_data();
    void priorityOfEachType();
    void recordOfTheNewForm();
    void recordOfTheOldForm();
    void oldFormHasNoStructuredData();
    void oldFormHasEnglishMonths();
    void anyVersionFromOneOnIsTheNewForm();
    void timestampsFollowTheClock();
    void renamingShowsAtOnce();
    void blanksInTheNameBecomeUnderscores();
    void structuredDataHoldsWhatTheContextHas_data();
    void structuredDataHoldsWhatTheContextHas();
    void userDataStandsInABlockOfItsOwn();
    void userDataAloneIsTheStructuredData();
    void replacesVariables_data();
    void replacesVariables();
    void messagesAreTakenAsTheyAre();
    void hostNameIsShort_data();
    void hostNameIsShort();
};

void tst_SyslogFormatter::priorityOfEachType_data()
{
    QTest::addColumn<QtMsgType>("type");
    QTest::addColumn<int>("severity");
    QTest::addColumn<int>("priority");

    QTest::newRow("debug") << QtDebugMsg << 7 << 15;
    QTest::newRow("warning") << QtWarningMsg << 4 << 12;
    QTest::newRow("critical") << QtCriticalMsg << 2 << 10;
    QTest::newRow("fatal") << QtFatalMsg << 1 << 9;
    QTest::newRow("info") << QtInfoMsg << 6 << 14;
    QTest::newRow("any other") << QtMsgType(7) << 6 << 14;
}

void tst_SyslogFormatter::priorityOfEachType()
{
    QFETCH(QtMsgType, type);
    QFETCH(int, priority);
    QTEST(SyslogFormatter::severity(type), "severity");
    QCOMPARE(SyslogFormatter::priority(type), priority);
    SyslogFormatter formatter;
    QVERIFY(formatter.record(type, noContext, "x").startsWith(QString("<%1>1 ").arg(priority)));
    formatter.setVersion(0);
    QVERIFY(formatter.record(type, noContext, "x").startsWith(QString("<%1>").arg(priority)));
}

void tst_SyslogFormatter::recordOfTheNewForm()
{
    SyslogFormatter formatter;
    const QDateTime before = QDateTime::currentDateTimeUtc();
    const QString record = formatter.record(QtWarningMsg, fullContext, "the message");
    const QDateTime after = QDateTime::currentDateTimeUtc();

    const QStringList fields = record.split(' ');
    QCOMPARE(fields.value(0), QString("<12>1"));
    QVERIFY(fields.value(1) >= before.toString(Qt::ISODate));
    QVERIFY(fields.value(1) <= after.toString(Qt::ISODate));
    QVERIFY(fields.value(1).endsWith('Z'));
    const QString expected = QString("<12>1 %1 %2 tst %3 - [Halvora@48213 category=\"app.net\""
                                     " function=\"int main(int, char**)\" filename=\"main.cpp\""
                                     " line=\"42\"] the message")
                                 .arg(fields.value(1), formatter.hostName())
                                 .arg(QCoreApplication::applicationPid());
    QCOMPARE(record, expected);
}

void tst_SyslogFormatter::recordOfTheOldForm()
{
    SyslogFormatter formatter;
    formatter.setVersion(0);
    const QRegularExpression form(
        "^<12>([A-Z][a-z]{2} \\d\\d \\d\\d:\\d\\d:\\d\\d) (\\S+) tst: the message$");
    const auto match = form.match(formatter.record(QtWarningMsg, fullContext, "the message"));
    QVERIFY(match.hasMatch());
    QCOMPARE(match.captured(2), formatter.hostName());
    const QDateTime now = QDateTime::currentDateTime();
    QDateTime time = QLocale(QLocale::English).toDateTime(match.captured(1), "MMM dd hh:mm:ss");
    time.setDate(QDate(now.date().year(), time.date().month(), time.date().day()));
    QVERIFY2(qAbs(time.secsTo(now)) <= 2, qPrintable(match.captured(1))); // local time
}

void tst_SyslogFormatter::oldFormHasNoStructuredData()
{
    SyslogFormatter formatter;
    formatter.setVersion(0);
    formatter.setUserData("x@1 a=\"b\"");
    const QString record = formatter.record(QtInfoMsg, fullContext, "text");
    QVERIFY(record.endsWith(" tst: text"));
    QVERIFY(!record.contains('['));
}

void tst_SyslogFormatter::oldFormHasEnglishMonths()
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::Arabic));
    SyslogFormatter formatter;
    formatter.setVersion(0);
    const QString record = formatter.record(QtInfoMsg, noContext, "text");
    QLocale::setDefault(before);
    const QString month =
        QLocale(QLocale::English).monthName(QDate::currentDate().month(), QLocale::ShortFormat);
    QVERIFY2(record.startsWith("<14>" + month), qPrintable(record));
}

void tst_SyslogFormatter::anyVersionFromOneOnIsTheNewForm()
{
    SyslogFormatter formatter;
    QCOMPARE(formatter.version(), 1);
    formatter.setVersion(7);
    QVERIFY(formatter.record(QtInfoMsg, noContext, "x").startsWith("<14>7 "));
    formatter.setVersion(-1);
    QVERIFY(formatter.record(QtInfoMsg, noContext, "x").endsWith(" tst: x"));
}

void tst_SyslogFormatter::timestampsFollowTheClock()
{
    SyslogFormatter formatter;
    const auto timestamp = [&] {
        return formatter.record(QtInfoMsg, noContext, "x").section(' ', 1, 1);
    };
    const QString first = timestamp();
    QTRY_VERIFY(timestamp() > first);
    QVERIFY(timestamp() >= QDateTime::currentDateTimeUtc().addSecs(-1).toString(Qt::ISODate));
}

void tst_SyslogFormatter::renamingShowsAtOnce()
{
    SyslogFormatter formatter;
    QCOMPARE(formatter.record(QtInfoMsg, noContext, "x").section(' ', 3, 3), QString("tst"));
    QCoreApplication::setApplicationName("renamed");
    QCOMPARE(formatter.record(QtInfoMsg, noContext, "x").section(' ', 3, 3), QString("renamed"));
    formatter.setName("own");
    QCOMPARE(formatter.record(QtInfoMsg, noContext, "x").section(' ', 3, 3), QString("own"));
    formatter.setVersion(0);
    QVERIFY(formatter.record(QtInfoMsg, noContext, "x").endsWith(" own: x"));
}

void tst_SyslogFormatter::blanksInTheNameBecomeUnderscores()
{
    QCoreApplication::setApplicationName("My little app");
    SyslogFormatter formatter;
    QCOMPARE(formatter.appName(), QString("My_little_app"));
    formatter.setName("Field  survey");
    QCOMPARE(formatter.appName(), QString("Field__survey"));
    QVERIFY(formatter.record(QtInfoMsg, noContext, "x").contains(" Field__survey "));
}

void tst_SyslogFormatter::structuredDataHoldsWhatTheContextHas_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("line");
    QTest::addColumn<QByteArray>("function");
    QTest::addColumn<QByteArray>("category");
    QTest::addColumn<QString>("expected");

    const QByteArray null;
    const QByteArray empty("");
    QTest::newRow("nothing") << null << 0 << null << null << "";
    QTest::newRow("a line alone") << null << 7 << null << null << "";
    QTest::newRow("category") << null << 0 << null << QByteArray("c")
                              << "[Halvora@48213 category=\"c\"]";
    QTest::newRow("category and line")
        << null << 7 << null << QByteArray("c") << "[Halvora@48213 category=\"c\" line=\"7\"]";
    QTest::newRow("function") << null << 0 << QByteArray("f()") << null
                              << "[Halvora@48213 function=\"f()\"]";
    QTest::newRow("file") << QByteArray("a/b.cpp") << 1 << null << null
                          << "[Halvora@48213 filename=\"b.cpp\" line=\"1\"]";
    QTest::newRow("file without folder")
        << QByteArray("b.cpp") << 0 << null << null << "[Halvora@48213 filename=\"b.cpp\"]";
    QTest::newRow("document") << QByteArray("qrc:/qml/main.qml") << 3 << QByteArray("onClicked")
                              << QByteArray("qml")
                              << "[Halvora@48213 category=\"qml\" function=\"onClicked\""
                                 " filename=\"main.qml\" line=\"3\"]";
    QTest::newRow("file that ends in a slash")
        << QByteArray("a/") << 0 << null << null << "[Halvora@48213 filename=\"\"]";
    QTest::newRow("empty isn't null")
        << empty << -1 << empty << empty
        << "[Halvora@48213 category=\"\" function=\"\" filename=\"\"]";
    QTest::newRow("not escaped") << null << 0 << null << QByteArray("a\"]b\\")
                                 << "[Halvora@48213 category=\"a\"]b\\\"]";
    QTest::newRow("beyond ASCII") << null << 0 << null << QByteArray("\xc3\xa4")
                                  << QString::fromUtf8("[Halvora@48213 category=\"\xc3\xa4\"]");
}

void tst_SyslogFormatter::structuredDataHoldsWhatTheContextHas()
{
    QFETCH(QByteArray, file);
    QFETCH(int, line);
    QFETCH(QByteArray, function);
    QFETCH(QByteArray, category);
    const auto orNull = [](const QByteArray &text) {
        return text.isNull() ? nullptr : text.constData();
    };
    const QMessageLogContext context(orNull(file), line, orNull(function), orNull(category));
    QTEST(SyslogFormatter::structuredData(context), "expected");
}

void tst_SyslogFormatter::userDataStandsInABlockOfItsOwn()
{
    SyslogFormatter formatter;
    formatter.setUserData("x@1 at=\"%{filename}:%{line}\"");
    const QString record = formatter.record(QtInfoMsg, fullContext, "text %{line}");
    QVERIFY2(record.endsWith(" line=\"42\"][x@1 at=\"main.cpp:42\"] text %{line}"),
             qPrintable(record));
    QCOMPARE(formatter.userData(), QString("x@1 at=\"%{filename}:%{line}\""));
}

void tst_SyslogFormatter::userDataAloneIsTheStructuredData()
{
    SyslogFormatter formatter;
    QVERIFY(formatter.record(QtInfoMsg, noContext, "text").endsWith(" - - text"));
    formatter.setUserData("x@1");
    QVERIFY(formatter.record(QtInfoMsg, noContext, "text").endsWith(" - [x@1] text"));
    formatter.setUserData("x@1 l=\"%{line}\" c=\"%{category}\"");
    QVERIFY(
        formatter.record(QtInfoMsg, noContext, "text").endsWith(" - [x@1 l=\"0\" c=\"\"] text"));
}

void tst_SyslogFormatter::replacesVariables_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<QString>("expectedOfNothing");

    QTest::newRow("no variable") << "100% {x}"
                                 << "100% {x}"
                                 << "100% {x}";
    QTest::newRow("category") << "%{category}"
                              << "app.net"
                              << "";
    QTest::newRow("function") << "%{function}"
                              << "int main(int, char**)"
                              << "";
    QTest::newRow("file") << "%{file}"
                          << "/home/dev/app/main.cpp"
                          << "";
    QTest::newRow("filename") << "%{filename}"
                              << "main.cpp"
                              << "";
    QTest::newRow("line") << "%{line}"
                          << "42"
                          << "0";
    QTest::newRow("everywhere") << "%{line},%{line}"
                                << "42,42"
                                << "0,0";
    QTest::newRow("unknown stays") << "%{time} %{line}"
                                   << "%{time} 42"
                                   << "%{time} 0";
    QTest::newRow("unfinished stays") << "%{line"
                                      << "%{line"
                                      << "%{line";
    QTest::newRow("case counts") << "%{LINE}"
                                 << "%{LINE}"
                                 << "%{LINE}";
    QTest::newRow("empty") << ""
                           << ""
                           << "";
}

void tst_SyslogFormatter::replacesVariables()
{
    QFETCH(QString, text);
    QString ofNothing = text;
    SyslogFormatter::replaceVariables(text, fullContext);
    QTEST(text, "expected");
    SyslogFormatter::replaceVariables(ofNothing, noContext);
    QTEST(ofNothing, "expectedOfNothing");
}

void tst_SyslogFormatter::messagesAreTakenAsTheyAre()
{
    SyslogFormatter formatter;
    const QString message = QString::fromUtf8("%1 %2\n\"]\xe2\x82\xac") + QString(70000, 'x');
    QVERIFY(formatter.record(QtInfoMsg, noContext, message).endsWith(" - - " + message));
    QVERIFY(formatter.record(QtInfoMsg, noContext, "").endsWith(" - - "));
}

void tst_SyslogFormatter::hostNameIsShort_data()
{
    QTest::addColumn<QString>("machine");
    QTest::addColumn<QString>("expected");
    QTest::newRow("short") << "box"
                           << "box";
    QTest::newRow("with domain") << "box.example.com"
                                 << "box";
    QTest::newRow("dot in front") << ".box.example"
                                  << ".box.example";
    QTest::newRow("dot at the end") << "box."
                                    << "box";
    QTest::newRow("none") << ""
                          << "127.0.0.1";
}

void tst_SyslogFormatter::hostNameIsShort()
{
    QFETCH(QString, machine);
    QTEST(SyslogFormatter::shortHostName(machine), "expected");
    SyslogFormatter formatter;
    QCOMPARE(formatter.hostName(), SyslogFormatter::shortHostName(QSysInfo::machineHostName()));
}

TESSALINE_TEST_MAIN(tst_SyslogFormatter)

#include "tst_SyslogFormatter.moc"
