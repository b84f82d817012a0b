#include "logging/Logging.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"
#include "support/SmallDisk.h"
#include "support/SyslogCollector.h"
#include "support/UnprivilegedUser.h"

#include <QDir>
#include <QNetworkProxy>
#include <QProcess>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

Q_LOGGING_CATEGORY(testCategory, "test.category")

class tst_Logging : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    // Properties
    void defaults();
    void settersEmitOnChangesOnly();
    void locationIsFixedWhileEnabled();
    void messagePatternHoldsForTheProcess();
    void defaultPatternIsNotApplied();

    // Switching on and off
    void thereIsOneInstanceWithoutParent();
    void enablingTwiceDoesNothing();
    void enablingFromTheLocationsSignalDoesNothing();
    void theLocationIsFixedWhileItIsChosen();
    void messagesReachTheLogFirst();
    void disablingBringsThePreviousHandlerBack();
    void disablingForgetsThePreviousHandler();
    void handlersInARingEnd();
    void deletingTheInstanceSwitchesOff();
    void categoryRulesWorkAsBefore();
    void previousCategoryFilterIsCalled();

    // Files
    void emptyLocationChoosesAFile();
    void emptyLocationWithAppendChoosesOneFilePerApplication();
    void emptyLocationWithoutAFolderIsChosenAllTheSame();
    void locationMayBeAPath_data();
    void locationMayBeAPath();
    void secondRunTruncates();
    void secondRunAppends();
    void unwritableLocation_data();
    void unwritableLocation();
    void fileWithoutPermission();
    void fileNameWithANul();
    void eachMessageIsOnTheDiskAtOnce();

    // Rows and records
    void headerRows();
    void headerRowsAreSyslogRecords();
    void footerRow();
    void recordsOfEachType();
    void recordsHoldNameAndUserData();
    void clearedTypesAreDropped();
    void nullTextIsDropped();
    void sendingWithoutOutputIsHarmless();
    void plainFormatHasSeparators();
    void formatsRecordsOnRequest();

    // Collectors
    void collectorGetsOneDatagramPerMessage();
    void schemeSelectsTheVersion_data();
    void schemeSelectsTheVersion();
    void versionStaysForALaterFile();
    void addressFamilyMayChange();
    void portDefaultsTo514();
    void unresolvedHosts_data();
    void unresolvedHosts();
    void missingCollectorIsHarmless();
    void collectorIsReachedWithoutTheProxy();
    void longMessagesAreSentAsTheyAre();

    // Processes
    void runsASecondApartGiveTwoFiles();
    void appendingRunsShareAFile();
    void appendingProcessesAtOnceWriteWholeLines();
    void truncatingRunsKeepTheLast();
    void fatalMessageIsInTheLog();
    void messagesAfterTheApplicationAreLogged();
    void environmentPatternHoldsUntilItIsWritten_data();
    void environmentPatternHoldsUntilItIsWritten();
    void fullDisk();
    void fileThatCannotGrow();
    void diskThatFillsAndEmpties();

private:
    QUrl newFile() const;
    static QStringList lines(const QUrl &url);
    static QStringList messages(const QUrl &url); // lines behind the header
    static QString message(const QString &record);
    struct Run
    {
        int exitCode;
        bool crashed;
        QString location;
    };
    static Run runWriter(const QStringList &arguments, const QString &pattern = QString());

    std::unique_ptr<QTemporaryDir> m_dir;
    Logging *m_logging = nullptr;
};

namespace {

const QStringList headerNames{"Logging started",
                              "Application Name",
                              "Application Version",
                              "Application File Path",
                              "Application Directory Path",
                              "Tessaline Version",
                              "Qt Version",
                              "Operating System",
                              "Operating System Type",
                              "Operating System Version",
                              "Kernel Type",
                              "Kernel Version",
                              "CPU Architecture",
                              "SSL Library Version",
                              "Host name",
                              "Domain name"};

const char defaultPattern[] = "%{if-category}%{category}: %{endif}%{message}";

} // namespace

void tst_Logging::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
    QVERIFY(QDir(QDir::homePath() + "/Zemrik").removeRecursively());
    QCoreApplication::setApplicationName("tst_Logging");
    m_logging = Logging::instance(false);
}

void tst_Logging::cleanup()
{
    delete Logging::instance(true);
    m_logging = nullptr;
    m_dir.reset();
    qSetMessagePattern(defaultPattern);
    QLoggingCategory::setFilterRules(QString());
}

QUrl tst_Logging::newFile() const
{
    return QUrl::fromLocalFile(m_dir->filePath("test.log"));
}

QStringList tst_Logging::lines(const QUrl &url)
{
    QFile file(url.toLocalFile());
    if (!file.open(QIODevice::ReadOnly))
        return {"cannot open " + url.toString()};
    QStringList list = QString::fromLocal8Bit(file.readAll()).split('\n');
    if (list.takeLast() != QString())
        list.append("unfinished last line");
    return list;
}

QString tst_Logging::message(const QString &record)
{
    static const QRegularExpression form(
        "^<\\d+>1 \\S+Z \\S+ \\S+ \\d+ - (?:-|(?:\\[.*\\])) (.*)$");
    const auto match = form.match(record);
    return match.hasMatch() ? match.captured(1) : "not a record: " + record;
}

QStringList tst_Logging::messages(const QUrl &url)
{
    QStringList list;
    const QStringList all = lines(url);
    for (const QString &line : all) {
        const QString text = message(line);
        if (!text.startsWith("$ "))
            list.append(text);
    }
    return list;
}

tst_Logging::Run tst_Logging::runWriter(const QStringList &arguments, const QString &pattern)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove("QT_MESSAGE_PATTERN");
    if (!pattern.isNull())
        environment.insert("QT_MESSAGE_PATTERN", pattern);
    process.setProcessEnvironment(environment);
    process.start(QString::fromLocal8Bit(qgetenv("TESSALINE_LOGWRITER")), arguments);
    if (!process.waitForFinished())
        return {-1, false, process.errorString()};
    return {process.exitCode(), process.exitStatus() == QProcess::CrashExit,
            QString::fromLocal8Bit(process.readAllStandardOutput()).trimmed()};
}

void tst_Logging::defaults()
{
    QCOMPARE(m_logging->enabled(), false);
    QCOMPARE(m_logging->outputLocation(), QUrl());
    QCOMPARE(m_logging->append(), false);
    QCOMPARE(m_logging->messagePattern(), QString(defaultPattern));
    QCOMPARE(m_logging->name(), QString());
    QCOMPARE(m_logging->userData(), QString());
}

void tst_Logging::settersEmitOnChangesOnly()
{
    const auto changesOnce = [this](const char *property, const QVariant &value) {
        const QMetaObject *type = m_logging->metaObject();
        QSignalSpy spy(m_logging, type->property(type->indexOfProperty(property)).notifySignal());
        m_logging->setProperty(property, m_logging->property(property));
        const int before = spy.count();
        m_logging->setProperty(property, value);
        m_logging->setProperty(property, value);
        return before == 0 && spy.count() == 1 && m_logging->property(property) == value;
    };
    QVERIFY(changesOnce("outputLocation", QUrl("file:///x")));
    QVERIFY(changesOnce("append", true));
    QVERIFY(changesOnce("messagePattern", "%{message}"));
    QVERIFY(changesOnce("name", "n"));
    QVERIFY(changesOnce("userData", "u"));
}

void tst_Logging::locationIsFixedWhileEnabled()
{
    const QUrl location = newFile();
    m_logging->setOutputLocation(location);
    m_logging->setEnabled(true);
    QVERIFY(m_logging->enabled());
    QSignalSpy spy(m_logging, &Logging::outputLocationChanged);

    m_logging->setOutputLocation(QUrl("file:///elsewhere"));
    QCOMPARE(m_logging->outputLocation(), location);
    QCOMPARE(spy.count(), 0);

    m_logging->setEnabled(false);
    m_logging->setOutputLocation(QUrl("file:///elsewhere"));
    QCOMPARE(m_logging->outputLocation(), QUrl("file:///elsewhere"));
    QCOMPARE(spy.count(), 1);
}

void tst_Logging::messagePatternHoldsForTheProcess()
{
    m_logging->setOutputLocation(newFile());
    m_logging->setMessagePattern("%{type}|%{message}");
    QCOMPARE(qFormatLogMessage(QtWarningMsg, QMessageLogContext(), "x"), QString("warning|x"));

    LogCapture before;
    m_logging->setEnabled(true);
    qWarning("text");
    m_logging->setEnabled(false);
    QCOMPARE(messages(newFile()), QStringList{"warning|text"});
    QCOMPARE(before.count(QtWarningMsg, "default", "text"), 1);
}

void tst_Logging::defaultPatternIsNotApplied()
{
    qSetMessagePattern("own: %{message}");
    m_logging->setMessagePattern(defaultPattern); // what it reads already
    QCOMPARE(qFormatLogMessage(QtWarningMsg, QMessageLogContext(), "x"), QString("own: x"));
    m_logging->setMessagePattern("%{message}");
    m_logging->setMessagePattern(defaultPattern);
    QCOMPARE(qFormatLogMessage(QtWarningMsg, QMessageLogContext(), "x"), QString("x"));
}

void tst_Logging::thereIsOneInstanceWithoutParent()
{
    delete m_logging;
    QCOMPARE(Logging::instance(true), nullptr);
    Logging *logging = Logging::instance(false);
    QVERIFY(logging);
    QCOMPARE(Logging::instance(false), logging);
    QCOMPARE(Logging::instance(true), logging);
    QCOMPARE(logging->parent(), nullptr);
}

void tst_Logging::enablingTwiceDoesNothing()
{
    QSignalSpy spy(m_logging, &Logging::enabledChanged);
    m_logging->setEnabled(false);
    QCOMPARE(spy.count(), 0);

    m_logging->setOutputLocation(newFile());
    m_logging->setEnabled(true);
    const QStringList header = lines(newFile());
    m_logging->setEnabled(true);
    QCOMPARE(lines(newFile()), header);
    QCOMPARE(spy.count(), 1);

    m_logging->setEnabled(false);
    m_logging->setEnabled(false);
    QCOMPARE(spy.count(), 2);
    QCOMPARE(lines(newFile()).count(), header.count() + 1);
}

void tst_Logging::enablingFromTheLocationsSignalDoesNothing()
{
    QSignalSpy spy(m_logging, &Logging::enabledChanged);
    connect(m_logging, &Logging::outputLocationChanged, this,
            [this] { m_logging->setEnabled(true); });
    m_logging->setEnabled(true);
    QVERIFY(m_logging->enabled());
    QCOMPARE(spy.count(), 1);
    QCOMPARE(lines(m_logging->outputLocation()).count(), headerNames.count());
}

void tst_Logging::theLocationIsFixedWhileItIsChosen()
{
    QStringList seen;
    connect(m_logging, &Logging::outputLocationChanged, this, [&] {
        seen.append(m_logging->outputLocation().toString());
        m_logging->setOutputLocation(newFile());
    });
    m_logging->setEnabled(true);
    QVERIFY(m_logging->enabled());
    QCOMPARE(seen, QStringList{m_logging->outputLocation().toString()});
    QVERIFY(!QFileInfo::exists(newFile().toLocalFile()));
    QCOMPARE(lines(m_logging->outputLocation()).count(), headerNames.count());
}

namespace {

QUrl orderFile;
QStringList order;

// What a console handler may do: look at the log that stands before it.
void lookAtTheLog(QtMsgType, const QMessageLogContext &, const QString &text)
{
    QFile file(orderFile.toLocalFile());
    const bool there = file.open(QIODevice::ReadOnly) && file.readAll().contains(text.toUtf8());
    order.append(text + (there ? " is in the log" : " is not in the log"));
}

} // namespace

void tst_Logging::messagesReachTheLogFirst()
{
    orderFile = newFile();
    order.clear();
    const QtMessageHandler original = qInstallMessageHandler(lookAtTheLog);
    m_logging->setOutputLocation(orderFile);
    m_logging->setEnabled(true);
    qWarning("first");
    m_logging->setEnabled(false);
    qWarning("second");
    qInstallMessageHandler(original);
    QCOMPARE(order, (QStringList{"first is in the log", "second is not in the log"}));
}

void tst_Logging::disablingBringsThePreviousHandlerBack()
{
    LogCapture before;
    m_logging->setOutputLocation(newFile());
    m_logging->setEnabled(true);
    qWarning("inside");
    m_logging->setEnabled(false);
    qWarning("outside");
    QCOMPARE(messages(newFile()), QStringList{"inside"});
    QCOMPARE(before.count(QtWarningMsg, "default", "inside"), 1);
    QCOMPARE(before.count(QtWarningMsg, "default", "outside"), 1);
}

// Whoever kept our handler gets no further with it.
void tst_Logging::disablingForgetsThePreviousHandler()
{
    LogCapture before;
    m_logging->setOutputLocation(newFile());
    m_logging->setEnabled(true);
    Logging::_messageHandler(QtWarningMsg, QMessageLogContext(), "while on");
    m_logging->setEnabled(false);
    Logging::_messageHandler(QtWarningMsg, QMessageLogContext(), "while off");
    QCOMPARE(messages(newFile()), QStringList{"while on"});
    QCOMPARE(before.messages().count(), 1);
}

void tst_Logging::handlersInARingEnd()
{
    m_logging->setOutputLocation(newFile());
    m_logging->setEnabled(true);
    const QtMessageHandler ours = qInstallMessageHandler(nullptr);
    QCOMPARE(reinterpret_cast<void *>(ours), reinterpret_cast<void *>(&Logging::_messageHandler));
    m_logging->setEnabled(false);
    // Somebody puts the handler back that was there when they came.
    const QtMessageHandler original = qInstallMessageHandler(ours);
    m_logging->setEnabled(true);
    qWarning("once");
    m_logging->setEnabled(false);
    qInstallMessageHandler(original);
    QCOMPARE(messages(newFile()), QStringList{"once"});
}

void tst_Logging::deletingTheInstanceSwitchesOff()
{
    LogCapture before;
    m_logging->setOutputLocation(newFile());
    m_logging->setEnabled(true);
    delete m_logging;
    qWarning("later");
    QCOMPARE(before.count(QtWarningMsg, "default", "later"), 1);
    QCOMPARE(Logging::instance(true), nullptr);
    QVERIFY(message(lines(newFile()).last()).startsWith("$ Logging ended: "));
    QCOMPARE(messages(newFile()), QStringList());
}

void tst_Logging::categoryRulesWorkAsBefore()
{
    QVERIFY(testCategory().isDebugEnabled());
    QLoggingCategory::setFilterRules("test.category.debug=false");
    QVERIFY(!testCategory().isDebugEnabled());
    QVERIFY(testCategory().isWarningEnabled());
    QLoggingCategory::setFilterRules(QString());
    QVERIFY(testCategory().isDebugEnabled());

    m_logging->setOutputLocation(newFile());
    m_logging->setEnabled(true);
    QLoggingCategory::setFilterRules("test.category.debug=false");
    qCDebug(testCategory) << "filtered";
    QLoggingCategory::setFilterRules(QString());
    qCDebug(testCategory) << "written";
    m_logging->setEnabled(false);
    QCOMPARE(messages(newFile()), QStringList{"test.category: written"});
}

namespace {

QByteArrayList filtered;

void rememberCategory(QLoggingCategory *category)
{
    filtered.append(category->categoryName());
}

} // namespace

void tst_Logging::previousCategoryFilterIsCalled()
{
    delete m_logging;
    const auto original = QLoggingCategory::installFilter(rememberCategory);
    QVERIFY(Logging::instance(false));
    filtered.clear();
    const QLoggingCategory added("test.added");
    QCOMPARE(filtered, QByteArrayList{"test.added"});

    // Asking for a second instance later must not make the filter its own predecessor.
    delete Logging::instance(true);
    QVERIFY(Logging::instance(false));
    const QLoggingCategory another("test.another");
    QVERIFY(filtered.contains("test.another"));
    QLoggingCategory::installFilter(original);
}

void tst_Logging::emptyLocationChoosesAFile()
{
    const QDir folder(QDir::homePath() + "/Zemrik/Halvora/Logs");
    QVERIFY(!folder.exists());
    QStringList signalOrder;
    connect(m_logging, &Logging::outputLocationChanged, this,
            [&] { signalOrder.append("outputLocation"); });
    connect(m_logging, &Logging::enabledChanged, this, [&] { signalOrder.append("enabled"); });

    m_logging->setEnabled(true);

    QCOMPARE(signalOrder, (QStringList{"outputLocation", "enabled"}));
    QVERIFY(m_logging->outputLocation().isLocalFile());
    const QFileInfo file(m_logging->outputLocation().toLocalFile());
    QCOMPARE(file.path(), folder.path());
    QVERIFY(file.exists());
    const QRegularExpression name("^tst_Logging-(\\d{8}-\\d{6})\\.log$");
    const auto match = name.match(file.fileName());
    QVERIFY(match.hasMatch());
    const QDateTime time = QDateTime::fromString(match.captured(1), "yyyyMMdd-HHmmss");
    QVERIFY(qAbs(time.secsTo(QDateTime::currentDateTime())) <= 2);
}

void tst_Logging::emptyLocationWithAppendChoosesOneFilePerApplication()
{
    QCoreApplication::setApplicationName("One %1 app");
    m_logging->setAppend(true);
    m_logging->setEnabled(true);
    m_logging->setEnabled(false);
    const QString path = QDir::homePath() + "/Zemrik/Halvora/Logs/One %1 app.log";
    QCOMPARE(m_logging->outputLocation().toLocalFile(), path);
    QVERIFY(QFileInfo::exists(path));
}

// The file is chosen before it is opened, and a choice that can't be opened stays.
void tst_Logging::emptyLocationWithoutAFolderIsChosenAllTheSame()
{
    QFile inTheWay(QDir::homePath() + "/Zemrik");
    QVERIFY(inTheWay.open(QIODevice::WriteOnly));
    QSignalSpy locationSpy(m_logging, &Logging::outputLocationChanged);
    QSignalSpy enabledSpy(m_logging, &Logging::enabledChanged);
    m_logging->setAppend(true);

    m_logging->setEnabled(true);

    QVERIFY(inTheWay.remove());
    QVERIFY(!m_logging->enabled());
    QCOMPARE(enabledSpy.count(), 0);
    QCOMPARE(locationSpy.count(), 1);
    QCOMPARE(m_logging->outputLocation(),
             QUrl::fromLocalFile(QDir::homePath() + "/Zemrik/Halvora/Logs/tst_Logging.log"));
}

void tst_Logging::locationMayBeAPath_data()
{
    QTest::addColumn<QString>("location");
    QTest::newRow("file URL") << "file://%1/a b.log";
    QTest::newRow("path") << "%1/a b.log";
    QTest::newRow("path variable") << "$LOGTEST/a b.log";
}

void tst_Logging::locationMayBeAPath()
{
    QFETCH(QString, location);
    qputenv("LOGTEST", m_dir->path().toLocal8Bit());
    const QUrl url(location.replace("%1", m_dir->path()));
    m_logging->setOutputLocation(url);
    m_logging->setEnabled(true);
    QVERIFY(m_logging->enabled());
    QCOMPARE(m_logging->outputLocation(), url);
    QVERIFY(QFileInfo::exists(m_dir->filePath("a b.log")));
}

void tst_Logging::secondRunTruncates()
{
    m_logging->setOutputLocation(newFile());
    for (const char *text : {"first", "second"}) {
        m_logging->setEnabled(true);
        qWarning("%s", text);
        m_logging->setEnabled(false);
    }
    QCOMPARE(messages(newFile()), QStringList{"second"});
}

void tst_Logging::secondRunAppends()
{
    m_logging->setOutputLocation(newFile());
    m_logging->setAppend(true);
    for (const char *text : {"first", "second"}) {
        m_logging->setEnabled(true);
        qWarning("%s", text);
        m_logging->setEnabled(false);
    }
    QCOMPARE(messages(newFile()), (QStringList{"first", "second"}));
    QCOMPARE(lines(newFile()).count(), 2 * (headerNames.count() + 2));
}

void tst_Logging::unwritableLocation_data()
{
    QTest::addColumn<QString>("location");
    QTest::newRow("a folder") << "%1";
    QTest::newRow("a missing folder") << "%1/missing/test.log";
    QTest::newRow("below a file") << "/proc/version/test.log";
    QTest::newRow("a resource") << "qrc:/test.log";
    QTest::newRow("a named pipe") << "%1/pipe";
    QTest::newRow("a link to a named pipe") << "%1/link";
    QTest::newRow("a socket") << "%1/socket";
}

void tst_Logging::unwritableLocation()
{
    QFETCH(QString, location);
    const QByteArray pipe = QFile::encodeName(m_dir->filePath("pipe"));
    QCOMPARE(::mkfifo(pipe.constData(), 0600), 0);
    const int reader = ::open(pipe.constData(), O_RDONLY | O_NONBLOCK); // opening it won't hang
    const auto closeReader = qScopeGuard([reader] { ::close(reader); });
    QVERIFY(QFile::link("pipe", m_dir->filePath("link")));
    QCOMPARE(::mknod(QFile::encodeName(m_dir->filePath("socket")).constData(), S_IFSOCK | 0600, 0),
             0);
    m_logging->setOutputLocation(QUrl(location.replace("%1", m_dir->path())));
    QSignalSpy spy(m_logging, &Logging::enabledChanged);
    LogCapture before;

    m_logging->setEnabled(true);

    QVERIFY(!m_logging->enabled());
    QCOMPARE(spy.count(), 0);
    qWarning("still heard");
    QCOMPARE(before.count(QtWarningMsg, "default", "still heard"), 1);

    // A better location later is fine.
    m_logging->setOutputLocation(newFile());
    m_logging->setEnabled(true);
    QVERIFY(m_logging->enabled());
    m_logging->setEnabled(false);
}

void tst_Logging::fileWithoutPermission()
{
    QFile file(newFile().toLocalFile());
    QVERIFY(file.open(QIODevice::WriteOnly) && file.setPermissions(QFile::ReadOwner));
    m_logging->setOutputLocation(newFile());
    {
        const UnprivilegedUser nobody;
        m_logging->setEnabled(true);
    }
    QVERIFY(!m_logging->enabled());
}

void tst_Logging::fileNameWithANul()
{
    QFile file(newFile().toLocalFile());
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("kept") == 4);
    file.close();
    m_logging->setOutputLocation(QUrl::fromEncoded(newFile().toEncoded() + "%00.log"));
    {
        const LogCapture log;
        m_logging->setEnabled(true);
    }
    QVERIFY(!m_logging->enabled());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("kept"));
}

void tst_Logging::eachMessageIsOnTheDiskAtOnce()
{
    m_logging->setOutputLocation(newFile());
    m_logging->setEnabled(true);
    QCOMPARE(lines(newFile()).count(), headerNames.count());
    qInfo("one");
    QCOMPARE(messages(newFile()), QStringList{"one"});
    qInfo("two");
    QCOMPARE(messages(newFile()), (QStringList{"one", "two"}));
}

void tst_Logging::headerRows()
{
    m_logging->setOutputLocation(newFile());
    const QDateTime before = QDateTime::currentDateTime();
    m_logging->setEnabled(true);

    QStringList names;
    QVariantMap values;
    const QStringList all = lines(newFile());
    for (const QString &line : all) {
        const QString text = message(line);
        QVERIFY2(text.startsWith("$ "), qPrintable(text));
        const QString name = text.mid(2).section(": ", 0, 0);
        names.append(name);
        values.insert(name, text.mid(2).section(": ", 1));
    }
    QCOMPARE(names, headerNames);
    const QString started = values.value("Logging started").toString();
    QVERIFY(started >= before.toString(Qt::ISODate));
    QVERIFY(started <= QDateTime::currentDateTime().toString(Qt::ISODate));
    QCOMPARE(values.value("Application Name"), QVariant("tst_Logging"));
    QCOMPARE(values.value("Application Version"), QVariant(QCoreApplication::applicationVersion()));
    QCOMPARE(values.value("Application File Path"),
             QVariant(QCoreApplication::applicationFilePath()));
    QCOMPARE(values.value("Application Directory Path"),
             QVariant(QCoreApplication::applicationDirPath()));
    QCOMPARE(values.value("Tessaline Version"), QVariant("1.2.15"));
    QCOMPARE(values.value("Qt Version"), QVariant(qVersion()));
    QCOMPARE(values.value("Operating System"), QVariant(QSysInfo::prettyProductName()));
    QCOMPARE(values.value("Operating System Type"), QVariant(QSysInfo::productType()));
    QCOMPARE(values.value("Operating System Version"), QVariant(QSysInfo::productVersion()));
    QCOMPARE(values.value("Kernel Type"), QVariant(QSysInfo::kernelType()));
    QCOMPARE(values.value("Kernel Version"), QVariant(QSysInfo::kernelVersion()));
    QCOMPARE(values.value("CPU Architecture"), QVariant(QSysInfo::currentCpuArchitecture()));
    QVERIFY(values.value("SSL Library Version").toString().contains("SSL"));
    QCOMPARE(values.value("Host name"), QVariant(QHostInfo::localHostName()));
    QCOMPARE(values.value("Domain name"), QVariant(QHostInfo::localDomainName()));
}

void tst_Logging::headerRowsAreSyslogRecords()
{
    m_logging->setOutputLocation(newFile());
    m_logging->setName("Header test");
    m_logging->setEnabled(true);
    const QString row = lines(newFile()).first();
    const QString tail = QString(" %1 Header_test %2 - - $ Logging started: ")
                             .arg(m_logging->syslogHostName())
                             .arg(QCoreApplication::applicationPid());
    QVERIFY2(row.startsWith("<14>1 "), qPrintable(row));
    QVERIFY2(row.contains(tail), qPrintable(row));
}

void tst_Logging::footerRow()
{
    m_logging->setOutputLocation(newFile());
    m_logging->setEnabled(true);
    m_logging->setEnabled(false);
    const QStringList all = lines(newFile());
    QCOMPARE(all.count(), headerNames.count() + 1);
    const QString row = message(all.last());
    QVERIFY(row.startsWith("$ Logging ended: "));
    const QDateTime ended = QDateTime::fromString(row.section(": ", 1), Qt::ISODate);
    QVERIFY(qAbs(ended.secsTo(QDateTime::currentDateTime())) <= 2);
}

void tst_Logging::recordsOfEachType()
{
    m_logging->setOutputLocation(newFile());
    m_logging->setEnabled(true);
    qDebug("d");
    qInfo("i");
    qWarning("w");
    qCritical("c");
    qCWarning(testCategory, "in a category");
    m_logging->setEnabled(false);

    const QStringList records = lines(newFile()).mid(headerNames.count(), 5);
    const QStringList starts{"<15>1 ", "<14>1 ", "<12>1 ", "<10>1 ", "<12>1 "};
    for (int i = 0; i < starts.size(); ++i)
        QVERIFY2(records.at(i).startsWith(starts.at(i)), qPrintable(records.at(i)));
    // This program is built for release: the context holds the category alone, or more for debug.
    QVERIFY(records.at(2).contains(" - [Halvora@48213 category=\"default\""));
    QVERIFY(records.at(4).contains(" - [Halvora@48213 category=\"test.category\""));
    QVERIFY(records.at(4).endsWith("] test.category: in a category"));
}

void tst_Logging::recordsHoldNameAndUserData()
{
    m_logging->setOutputLocation(newFile());
    m_logging->setEnabled(true);
    m_logging->setName("My app");
    m_logging->setUserData("s@1 l=\"%{line}\"");
    const QMessageLogContext context("/x/y.cpp", 17, "f()", "c");
    m_logging->messageHandler(QtCriticalMsg, context, "text");
    const QString record = lines(newFile()).last();
    QVERIFY(record.contains(" My_app "));
    QVERIFY2(record.endsWith(" - [Halvora@48213 category=\"c\" function=\"f()\" filename=\"y.cpp\""
                             " line=\"17\"][s@1 l=\"17\"] c: text"),
             qPrintable(record));
}

void tst_Logging::clearedTypesAreDropped()
{
    QCOMPARE(m_logging->m_messageTypes, 0xffffffffu);
    m_logging->setOutputLocation(newFile());
    m_logging->setEnabled(true);
    m_logging->m_messageTypes &= ~(1u << QtWarningMsg);
    qWarning("dropped");
    qInfo("kept");
    QCOMPARE(messages(newFile()), QStringList{"kept"});
}

void tst_Logging::nullTextIsDropped()
{
    m_logging->setOutputLocation(newFile());
    m_logging->setEnabled(true);
    m_logging->setMessagePattern("%{if-warning}%{message}%{endif}");
    qInfo("dropped");
    qWarning("kept");
    QCOMPARE(messages(newFile()), QStringList{"kept"});
}

void tst_Logging::sendingWithoutOutputIsHarmless()
{
    LogCapture log;
    m_logging->messageHandler(QtWarningMsg, QMessageLogContext(), "x");
    m_logging->outputSend("x", QtWarningMsg, QMessageLogContext());
    m_logging->outputValue("name", "value");
    m_logging->outputHeader();
    m_logging->outputFooter();
    m_logging->outputFlush();
    m_logging->outputClose();
    QCOMPARE(log.messages().count(), 0);
}

void tst_Logging::plainFormatHasSeparators()
{
    m_logging->setOutputLocation(newFile());
    m_logging->m_outputFormat = Logging::FormatPlain;
    m_logging->setEnabled(true);
    qWarning("plain text");
    m_logging->setEnabled(false);

    QStringList expected{QString(80, '='), "$ Logging started: ", QString(80, '-')};
    for (const QString &name : headerNames.mid(1, 4))
        expected.append("$ " + name + ": ");
    expected.append(QString(80, '-'));
    for (const QString &name : headerNames.mid(5))
        expected.append("$ " + name + ": ");
    expected.append(
        {QString(80, '-'), "plain text", QString(80, '-'), "$ Logging ended: ", QString(80, '=')});
    const QStringList all = lines(newFile());
    QCOMPARE(all.count(), expected.count());
    for (int i = 0; i < all.size(); ++i)
        QVERIFY2(all.at(i).startsWith(expected.at(i)), qPrintable(all.at(i)));

    // A collector always gets records.
    SyslogCollector collector;
    m_logging->setOutputLocation(collector.url("syslog"));
    m_logging->setEnabled(true);
    const QByteArrayList records = collector.take(headerNames.count());
    QCOMPARE(records.count(), headerNames.count());
    QVERIFY(records.first().startsWith("<14>1 "));
}

void tst_Logging::formatsRecordsOnRequest()
{
    m_logging->setName("n");
    const QMessageLogContext context("/x/y.cpp", 17, "f()", "c");
    QCOMPARE(
        m_logging->defaultStructuredData(context),
        QString("[Halvora@48213 category=\"c\" function=\"f()\" filename=\"y.cpp\" line=\"17\"]"));
    QString text("%{category} %{line}");
    m_logging->replaceVars(text, context);
    QCOMPARE(text, QString("c 17"));
    QCOMPARE(m_logging->syslogAppName(), QString("n"));
    const QString record = m_logging->syslogFormat(QtWarningMsg, QMessageLogContext(), "m");
    QVERIFY(record.endsWith(QString(" %1 n %2 - - m")
                                .arg(m_logging->syslogHostName())
                                .arg(QCoreApplication::applicationPid())));
}

void tst_Logging::collectorGetsOneDatagramPerMessage()
{
    SyslogCollector collector;
    QVERIFY(collector.isValid());
    LogCapture before;
    m_logging->setOutputLocation(collector.url("syslog"));
    m_logging->setEnabled(true);
    QVERIFY(m_logging->enabled());
    QCOMPARE(collector.take(headerNames.count()).count(), headerNames.count());

    qWarning("%s", "two\nlines \xc3\xa4");
    qInfo("%s", "");
    const QByteArrayList records = collector.take(2);
    QCOMPARE(records.count(), 2);
    QVERIFY(records.at(0).startsWith("<12>1 "));
    QVERIFY2(records.at(0).endsWith("] two\nlines \xc3\xa4"), records.at(0).constData());
    QVERIFY(records.at(1).endsWith("] "));

    m_logging->setEnabled(false);
    const QByteArrayList footer = collector.take(1);
    QCOMPARE(footer.count(), 1);
    QVERIFY(footer.first().contains(" - - $ Logging ended: "));
    QCOMPARE(before.count(QtDebugMsg, "default", "url:"), 1);
    QCOMPARE(before.count(QtDebugMsg, "default", "address:"), 1);
    QCOMPARE(before.count(QtDebugMsg, "default", QString("port: %1").arg(collector.port())), 1);
}

void tst_Logging::schemeSelectsTheVersion_data()
{
    QTest::addColumn<QByteArray>("scheme");
    QTest::addColumn<QByteArray>("start");
    QTest::addColumn<bool>("oldForm");
    QTest::newRow("syslog") << QByteArray("syslog") << QByteArray("<14>1 ") << false;
    QTest::newRow("capitals") << QByteArray("SysLog") << QByteArray("<14>1 ") << false;
    QTest::newRow("syslog1") << QByteArray("syslog1") << QByteArray("<14>1 ") << false;
    QTest::newRow("syslog2") << QByteArray("syslog2") << QByteArray("<14>2 ") << false;
    QTest::newRow("syslog0") << QByteArray("syslog0") << QByteArray("<14>") << true;
    QTest::newRow("no number") << QByteArray("syslogd") << QByteArray("<14>") << true;
}

void tst_Logging::schemeSelectsTheVersion()
{
    QFETCH(QByteArray, scheme);
    QFETCH(QByteArray, start);
    QFETCH(bool, oldForm);
    SyslogCollector collector;
    m_logging->setOutputLocation(collector.url(scheme.constData()));
    m_logging->setEnabled(true);
    const QByteArrayList records = collector.take(headerNames.count());
    QCOMPARE(records.count(), headerNames.count());
    QVERIFY2(records.first().startsWith(start), records.first().constData());
    QCOMPARE(records.first().contains(" tst_Logging: $ Logging started: "), oldForm);
}

void tst_Logging::versionStaysForALaterFile()
{
    SyslogCollector collector;
    m_logging->setOutputLocation(collector.url("syslog0"));
    m_logging->setEnabled(true);
    m_logging->setEnabled(false);
    m_logging->setOutputLocation(newFile());
    m_logging->setEnabled(true);
    QVERIFY(lines(newFile()).first().contains(" tst_Logging: $ Logging started: "));
}

void tst_Logging::addressFamilyMayChange()
{
    SyslogCollector v4;
    SyslogCollector v6(SyslogCollector::IPv6);
    if (!v6.isValid())
        QSKIP("This machine has no IPv6 loopback");
    for (SyslogCollector *collector : {&v4, &v6, &v4}) {
        m_logging->setOutputLocation(collector->url("syslog"));
        m_logging->setEnabled(true);
        QVERIFY(m_logging->enabled());
        m_logging->setEnabled(false);
        QCOMPARE(collector->take(headerNames.count() + 1).count(), headerNames.count() + 1);
    }
}

void tst_Logging::portDefaultsTo514()
{
    LogCapture log;
    m_logging->setOutputLocation(QUrl("syslog://127.0.0.1"));
    QVERIFY(m_logging->outputOpen());
    QCOMPARE(m_logging->m_remotePort, quint16(514));
    QCOMPARE(log.count(QtDebugMsg, "default", "port: 514"), 1);
}

void tst_Logging::unresolvedHosts_data()
{
    QTest::addColumn<QString>("location");
    QTest::addColumn<QString>("words");
    QTest::newRow("no host") << "syslog:///x"
                             << "Empty hostname:";
    QTest::newRow("no host, old form") << "syslog0:"
                                       << "Empty hostname:";
    // Too long for any name server to be asked.
    const QStringList labels(QVector<QString>(5, QString(60, 'x')).toList());
    QTest::newRow("impossible host") << "syslog://" + labels.join('.') + ":514"
                                     << "Remote host lookup error:";
}

void tst_Logging::unresolvedHosts()
{
    QFETCH(QString, location);
    QFETCH(QString, words);
    m_logging->setOutputLocation(QUrl(location));
    QSignalSpy spy(m_logging, &Logging::enabledChanged);
    LogCapture before;

    m_logging->setEnabled(true);

    QVERIFY(!m_logging->enabled());
    QCOMPARE(spy.count(), 0);
    QCOMPARE(before.count(QtCriticalMsg, "default", words), 1);
    QCOMPARE(before.messages().count(), 1);
}

void tst_Logging::missingCollectorIsHarmless()
{
    QUrl nobody;
    {
        SyslogCollector collector;
        nobody = collector.url("syslog");
    }
    LogCapture before;
    m_logging->setOutputLocation(nobody);
    m_logging->setEnabled(true);
    QVERIFY(m_logging->enabled());
    for (int i = 0; i < 100; ++i)
        qInfo("message %d", i);
    QCoreApplication::processEvents();
    m_logging->setEnabled(false);
    QCOMPARE(before.count(QtInfoMsg), 100);
    QCOMPARE(before.count(QtWarningMsg), 0);
}

void tst_Logging::collectorIsReachedWithoutTheProxy()
{
    SyslogCollector collector;
    QNetworkProxy::setApplicationProxy(QNetworkProxy(QNetworkProxy::HttpProxy, "127.0.0.1", 9));
    m_logging->setOutputLocation(collector.url("syslog"));
    m_logging->setEnabled(true);
    const int records = collector.take(headerNames.count()).count();
    QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
    QCOMPARE(records, headerNames.count());
}

void tst_Logging::longMessagesAreSentAsTheyAre()
{
    SyslogCollector collector;
    LogCapture before;
    m_logging->setOutputLocation(collector.url("syslog"));
    m_logging->setEnabled(true);
    collector.take(headerNames.count());
    qInfo("%s", QByteArray(60000, 'a').constData());
    qInfo("%s", QByteArray(70000, 'b').constData()); // more than a datagram holds: lost
    qInfo("short");
    const QByteArrayList records = collector.take(2);
    QCOMPARE(records.count(), 2);
    QVERIFY(records.at(0).endsWith(QByteArray(60000, 'a')));
    QVERIFY(records.at(1).endsWith(" short"));
    QCOMPARE(before.count(QtInfoMsg), 3);
    m_logging->setEnabled(false);
}

void tst_Logging::runsASecondApartGiveTwoFiles()
{
    const Run first = runWriter({"--application", "runs", "one"});
    QCOMPARE(first.exitCode, 0);
    const qint64 second = QDateTime::currentSecsSinceEpoch();
    QTRY_VERIFY(QDateTime::currentSecsSinceEpoch() > second);
    const Run other = runWriter({"--application", "runs", "two"});
    QCOMPARE(other.exitCode, 0);

    QVERIFY(first.location != other.location);
    QCOMPARE(messages(QUrl::fromLocalFile(first.location)), QStringList{"one"});
    QCOMPARE(messages(QUrl::fromLocalFile(other.location)), QStringList{"two"});
}

void tst_Logging::appendingRunsShareAFile()
{
    const Run first = runWriter({"--append", "--application", "shared", "one"});
    const Run second = runWriter({"--append", "--application", "shared", "two"});
    QCOMPARE(first.location, QDir::homePath() + "/Zemrik/Halvora/Logs/shared.log");
    QCOMPARE(second.location, first.location);
    QCOMPARE(messages(QUrl::fromLocalFile(first.location)), (QStringList{"one", "two"}));
}

void tst_Logging::appendingProcessesAtOnceWriteWholeLines()
{
    const QString writer = QString::fromLocal8Bit(qgetenv("TESSALINE_LOGWRITER"));
    const int count = 500;
    const auto arguments = [&](const QString &text) {
        return QStringList{"--location", newFile().toString(),   "--append",
                           "--count",    QString::number(count), text};
    };
    QProcess one;
    QProcess two;
    one.start(writer, arguments(QString(80, 'a')));
    two.start(writer, arguments(QString(120, 'b')));
    QVERIFY(one.waitForFinished() && two.waitForFinished());
    QCOMPARE(one.exitCode() + two.exitCode(), 0);

    const QStringList all = messages(newFile());
    QCOMPARE(all.count(QString(80, 'a')), count);
    QCOMPARE(all.count(QString(120, 'b')), count);
    QCOMPARE(all.count(), 2 * count);
}

void tst_Logging::truncatingRunsKeepTheLast()
{
    const QString location = newFile().toString();
    QCOMPARE(runWriter({"--location", location, "one"}).exitCode, 0);
    QCOMPARE(runWriter({"--location", location, "two"}).exitCode, 0);
    QCOMPARE(messages(newFile()), QStringList{"two"});
}

void tst_Logging::fatalMessageIsInTheLog()
{
    const Run run = runWriter({"--location", newFile().toString(), "--fatal", "the end", "before"});
    QVERIFY(run.crashed);
    QCOMPARE(messages(newFile()), (QStringList{"before", "the end"}));
    QVERIFY(lines(newFile()).last().startsWith("<9>1 "));
}

void tst_Logging::messagesAfterTheApplicationAreLogged()
{
    const Run run = runWriter({"--location", newFile().toString(), "--late", "before"});
    QCOMPARE(run.exitCode, 0);
    QVERIFY(!run.crashed);
    QCOMPARE(messages(newFile()), (QStringList{"before", "late message"}));
}

void tst_Logging::environmentPatternHoldsUntilItIsWritten_data()
{
    QTest::addColumn<QString>("written");
    QTest::addColumn<QString>("expected");
    QTest::newRow("not written") << QString() << "env: text";
    QTest::newRow("the default written") << QString(defaultPattern) << "env: text";
    // The environment's pattern wins over qSetMessagePattern in Qt itself.
    QTest::newRow("another one written") << "%{type} %{message}"
                                         << "env: text";
}

void tst_Logging::environmentPatternHoldsUntilItIsWritten()
{
    QFETCH(QString, written);
    QStringList arguments{"--location", newFile().toString(), "text"};
    if (!written.isNull())
        arguments << "--pattern" << written;
    QCOMPARE(runWriter(arguments, "env: %{message}").exitCode, 0);
    QFETCH(QString, expected);
    QCOMPARE(messages(newFile()), QStringList{expected});
}

void tst_Logging::fullDisk()
{
    if (!QFileInfo::exists("/dev/full"))
        QSKIP("This system has no /dev/full");
    LogCapture before;
    m_logging->setOutputLocation(QUrl("file:///dev/full"));
    m_logging->setEnabled(true);
    QVERIFY(m_logging->enabled());
    for (int i = 0; i < 1000; ++i)
        qInfo("message %d", i);
    m_logging->setEnabled(false);
    QVERIFY(!m_logging->enabled());
    QCOMPARE(before.messages().count(), 1000);
}

void tst_Logging::fileThatCannotGrow()
{
    const int limit = 20000;
    const Run run = runWriter({"--location", newFile().toString(), "--file-limit",
                               QString::number(limit), "--count", "1000", QString(100, 'x')});
    QCOMPARE(run.exitCode, 0);
    QVERIFY(!run.crashed);
    QCOMPARE(QFileInfo(newFile().toLocalFile()).size(), qint64(limit));
    const QStringList all = lines(newFile());
    QVERIFY(all.count() > 100);
    for (const QString &line : all.mid(0, all.count() - 1))
        QVERIFY2(!message(line).startsWith("not a record"), qPrintable(line));
}

void tst_Logging::diskThatFillsAndEmpties()
{
    SmallDisk disk(64);
    if (!disk.isMounted())
        QSKIP(qPrintable("No full disk without a mount of its own: " + disk.reason()));
    const QUrl location = QUrl::fromLocalFile(disk.filePath("test.log"));
    LogCapture before;
    m_logging->setOutputLocation(location);
    m_logging->setEnabled(true);
    qInfo("on an empty disk");
    QVERIFY(disk.fillUpTo(4));
    for (int i = 0; i < 1000; ++i)
        qInfo("message %d", i);
    QCOMPARE(before.messages().count(), 1001);

    // Room again: the log goes on.
    QVERIFY(QFile::resize(disk.filePath("filler"), 0));
    qInfo("there is room again");
    m_logging->setEnabled(false);
    const QStringList all = messages(location);
    QCOMPARE(all.first(), QString("on an empty disk"));
    QCOMPARE(all.last(), QString("there is room again"));
    QVERIFY(all.filter("not a record").isEmpty());
}

TESSALINE_TEST_MAIN(tst_Logging)

#include "tst_Logging.moc"
