#include "logging/Logging.h"

#include "plugin/FileUtility.h"
#include "plugin/PropertyHelper.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDebug>
#include <QNetworkProxy>
#include <QScopedValueRollback>
#include <QSslSocket>
#include <QSysInfo>
#include <QThread>
#include <QUdpSocket>

#include <sys/stat.h>

/*!
    \qmltype Logging
    \inqmlmodule Zemrik.Tessaline
    \brief Sends the messages of the whole process to a file or to a syslog collector.

    The one object of this type is \c{Tessaline.logging}; QML can't create others. While it is
    \l enabled, every message of the process (from \c{console.log} and friends, from the library,
    from Qt) is written as a syslog record, and then goes where it went before. Filter rules come
    first: what they switch off isn't a message. Tessaline's player switches the debug level off,
    \c{console.log} and \c{console.debug} with it, unless it is started with
    \c{QT_LOGGING_RULES='qml.debug=true'}.

    Nothing in a text is escaped, and a text of several lines makes a record of several lines. Text
    from outside (an answer of a server, the name of a file) can thus look like records of their own
    in a file that is read line by line.

    \badcode
    Component.onCompleted: {
        Tessaline.logging.outputLocation = "syslog://logs.example.com:514";
        Tessaline.logging.name = "Field survey";
        Tessaline.logging.enabled = true;
        if (!Tessaline.logging.enabled)
            console.warn("No logging:", Tessaline.logging.outputLocation);
    }
    \endcode
*/

/*!
    \qmlproperty bool Logging::enabled

    Whether messages are being written; false at start. Setting it to true opens the output and
    writes the rows of a header: times, versions, the machine. If the output can't be opened it
    stays false and nothing is notified. Setting it to false writes one closing row.

    With a collector, the look-up of its name blocks until the name server has answered.
*/

/*!
    \qmlproperty url Logging::outputLocation

    Where the records go. It can't be changed while logging is \l enabled. A named pipe and a socket
    count as files that can't be opened.

    \table
    \header \li Location \li Target
    \row \li empty
         \li A file that is chosen in the folder \c{~/Zemrik/Halvora/Logs} when logging starts; the
             property then reads it. The file is named after the application, with date and time
             behind it unless \l append is set.
    \row \li a file URL
         \li That file. Use \c{Tessaline.resolvedPathUrl("~/app.log")} for a path that begins with a
             path variable: the engine takes a mere path as relative to the document.
    \row \li \c{syslog://host:port}
         \li The collector on that host, by UDP. The port is 514 if none is given.
    \row \li \c{syslog0://host:port}
         \li The same with records of the old form, RFC 3164.
    \endtable
*/

/*!
    \qmlproperty bool Logging::append
    Whether an existing file is continued rather than emptied when logging starts. False by default.
*/

/*!
    \qmlproperty string Logging::messagePattern

    The pattern of Qt for the text of a message, see \c{qSetMessagePattern}. It holds for the whole
    process, the console included. What this reads at first is only what Qt has by default; Qt's own
    pattern, which the environment can set, stays in force until the property is written.
*/

/*!
    \qmlproperty string Logging::name
    The application's name in the records, where blanks become "_". Empty by default: the
    application's own name is taken.
*/

/*!
    \qmlproperty string Logging::userData

    The content of a second block of structured data in each record, such as
    \c{session@48213 user="7" at="%{filename}:%{line}"}. The variables \c{%{category}},
    \c{%{function}}, \c{%{file}}, \c{%{filename}} and \c{%{line}} stand for the message's own. Empty
    by default, which means no such block. Nothing is escaped: see that it is well-formed.
*/

namespace {

const quint16 syslogPort = 514;
const QLatin1String syslogScheme("syslog");
const int separatorLength = 80;
const int usualLineLength = 512;
const int longestKeptLine = 64 * 1024;

// Set while this thread writes a record: what Qt may say about that must not be written in turn.
thread_local bool threadIsWriting = false;
// Set while this thread is in the handler: handlers that got chained into a ring end here.
thread_local bool threadIsInHandler = false;

// The handler that switching off has put back last, and the thread that did.
std::atomic<QtMessageHandler> restoredHandler{nullptr};
std::atomic<Qt::HANDLE> restoringThread{nullptr};

// A thread may have taken the message to our handler just before it was removed, and come to it when
// the previous one is forgotten. The thread that removed it can't: who calls our handler there has
// kept it, and gets nowhere with it.
QtMessageHandler handlerForLateMessage()
{
    return QThread::currentThreadId() == restoringThread ? nullptr : restoredHandler.load();
}

// Opening a pipe waits for its reader, and writing to one that has gone ends the process.
bool isPipeOrSocket(const QString &path)
{
    struct stat status = {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0
           && (S_ISFIFO(status.st_mode) || S_ISSOCK(status.st_mode));
}

class FlagSetter
{
public:
    explicit FlagSetter(bool &flag)
        : m_flag(flag)
    {
        m_flag = true;
    }
    ~FlagSetter() { m_flag = false; }
    Q_DISABLE_COPY(FlagSetter)

private:
    bool &m_flag;
};

// The lock around everything that a record touches.
class OutputLock
{
public:
    explicit OutputLock(std::mutex &mutex)
        : m_lock(mutex)
    {
    }

private:
    std::lock_guard<std::mutex> m_lock;
    FlagSetter m_writing{threadIsWriting};
};

} // namespace

std::atomic<Logging *> Logging::m_Instance{nullptr};
std::atomic<QtMessageHandler> Logging::m_PreviousMessageHandler{nullptr};
std::atomic<QLoggingCategory::CategoryFilter> Logging::m_PreviousCategoryFilter{nullptr};

Logging::Logging(QObject *parent)
    : QObject(parent)
{
}

Logging::~Logging()
{
    if (m_enabled)
        removeHandler();
    outputClose();
    Logging *self = this;
    m_Instance.compare_exchange_strong(self, nullptr);
}

Logging *Logging::instance(bool existingOnly)
{
    if (m_Instance || existingOnly)
        return m_Instance;
    m_Instance = new Logging;
    const QLoggingCategory::CategoryFilter previous =
        QLoggingCategory::installFilter(_categoryFilter);
    if (previous != _categoryFilter) // as it is after an earlier instance
        m_PreviousCategoryFilter = previous;
    return m_Instance;
}

void Logging::setEnabled(bool enabled)
{
    if (enabled == m_enabled || m_opening)
        return;
    if (enabled) {
        // Choosing a file is signalled: whoever hears of it can't start once more.
        const QScopedValueRollback<bool> opening(m_opening, true);
        if (!outputOpen())
            return;
        outputHeader();
        installHandler();
    } else {
        removeHandler();
        outputClose();
    }
    m_enabled = enabled;
    emit enabledChanged();
}

void Logging::setOutputLocation(const QUrl &outputLocation)
{
    // Nor while the output is being opened, when the choice of a file is signalled.
    if (!m_enabled && !m_opening && assignIfChanged(m_outputLocation, outputLocation))
        emit outputLocationChanged();
}

void Logging::setAppend(bool append)
{
    if (assignIfChanged(m_append, append))
        emit appendChanged();
}

void Logging::setMessagePattern(const QString &messagePattern)
{
    if (messagePattern == m_messagePattern)
        return;
    qSetMessagePattern(messagePattern);
    m_messagePattern = messagePattern;
    emit messagePatternChanged();
}

void Logging::setName(const QString &name)
{
    if (name == m_formatter.name())
        return;
    {
        const OutputLock lock(m_mutex);
        m_formatter.setName(name);
    }
    emit nameChanged();
}

void Logging::setUserData(const QString &userData)
{
    if (userData == m_formatter.userData())
        return;
    {
        const OutputLock lock(m_mutex);
        m_formatter.setUserData(userData);
    }
    emit userDataChanged();
}

void Logging::_messageHandler(QtMsgType type, const QMessageLogContext &context,
                              const QString &message)
{
    if (threadIsInHandler)
        return;
    const FlagSetter inHandler(threadIsInHandler);
    // Read before and behind the writing: another thread may be switching logging on or off.
    QtMessageHandler previous = m_PreviousMessageHandler;
    instance(false)->messageHandler(type, context, message);
    if (!previous)
        previous = m_PreviousMessageHandler;
    if (!previous)
        previous = handlerForLateMessage();
    if (previous)
        previous(type, context, message);
}

void Logging::_categoryFilter(QLoggingCategory *category)
{
    if (const QLoggingCategory::CategoryFilter previous = m_PreviousCategoryFilter)
        previous(category);
    if (Logging *logging = instance(true))
        logging->categoryFilter(category);
}

void Logging::messageHandler(QtMsgType type, const QMessageLogContext &context,
                             const QString &message)
{
    if (!m_outputIsOpen || threadIsWriting || !(m_messageTypes & (1u << type)))
        return;
    const QString text = qFormatLogMessage(type, context, message);
    if (text.isNull())
        return;
    const OutputLock lock(m_mutex);
    if (!m_outputIsOpen)
        return;
    writeLine(text, type, context);
    flushFile();
}

void Logging::categoryFilter(QLoggingCategory *category)
{
    Q_UNUSED(category)
}

void Logging::installHandler()
{
    // A message that comes at once waits for the lock, and then finds the previous handler.
    const OutputLock lock(m_mutex);
    m_PreviousMessageHandler = qInstallMessageHandler(_messageHandler);
}

void Logging::removeHandler()
{
    restoringThread = QThread::currentThreadId();
    restoredHandler = m_PreviousMessageHandler.load();
    qInstallMessageHandler(m_PreviousMessageHandler);
    m_PreviousMessageHandler = nullptr;
}

bool Logging::outputOpen()
{
    closeOutput();
    // Nobody else looks at the output until it is marked open, so no lock is held here: looking up
    // a host logs, and choosing a file emits a signal.
    const QString scheme = m_outputLocation.scheme();
    bool opened = false;
    if (m_outputLocation.isEmpty()) {
        m_file.setFileName(QString());
        m_outputType = OutputFile;
        opened = fileOpen();
    } else if (scheme.startsWith(syslogScheme, Qt::CaseInsensitive)) {
        const QString version = scheme.mid(syslogScheme.size());
        m_outputType = OutputSyslog;
        m_outputFormat = FormatSyslog;
        m_formatter.setVersion(version.isEmpty() ? 1 : version.toInt());
        opened = syslogOpen();
    } else {
        m_outputType = OutputFile;
        m_file.setFileName(FileUtility::resolvedPath(m_outputLocation, true));
        opened = fileOpen();
    }
    const OutputLock lock(m_mutex);
    m_outputIsOpen = opened;
    return opened;
}

void Logging::outputClose()
{
    outputFooter();
    closeOutput();
    const OutputLock lock(m_mutex);
    m_outputType = OutputNone;
    m_formatter.clearHostName();
}

void Logging::closeOutput()
{
    const OutputLock lock(m_mutex);
    m_outputIsOpen = false;
    m_file.close();
    m_socket.reset();
}

void Logging::outputSend(const QString &text, QtMsgType type, const QMessageLogContext &context)
{
    const OutputLock lock(m_mutex);
    writeLine(text, type, context);
}

void Logging::writeLine(const QString &text, QtMsgType type, const QMessageLogContext &context)
{
    if (m_line.capacity() > longestKeptLine)
        m_line = QString();
    m_line.reserve(usualLineLength);
    m_line.resize(0); // keeps what is reserved
    if (m_outputFormat == FormatSyslog)
        m_formatter.appendRecord(m_line, type, context, text);
    else
        m_line += text;
    if (m_outputType == OutputFile && m_file.isOpen()) {
        m_line += QLatin1Char('\n');
        m_file.write(m_line.toLocal8Bit());
    } else if (m_outputType == OutputSyslog && m_socket) {
        m_socket->writeDatagram(m_line.toLocal8Bit(), m_remoteAddress, m_remotePort);
    }
}

void Logging::outputValue(const QString &name, const QString &value)
{
    outputSend(QStringLiteral("$ %1: %2").arg(name, value), QtInfoMsg, QMessageLogContext());
}

void Logging::outputSeparator(QChar character, int count)
{
    if (m_outputFormat == FormatPlain)
        outputSend(QString(count, character), QtInfoMsg, QMessageLogContext());
}

void Logging::outputHeader()
{
    if (!m_outputIsOpen)
        return;
    const auto value = [this](const char *name, const QString &text) {
        outputValue(QLatin1String(name), text);
    };
    outputSeparator(QLatin1Char('='), separatorLength);
    value("Logging started", QDateTime::currentDateTime().toString(m_dateFormat));
    outputSeparator(QLatin1Char('-'), separatorLength);
    value("Application Name", QCoreApplication::applicationName());
    value("Application Version", QCoreApplication::applicationVersion());
    value("Application File Path", QCoreApplication::applicationFilePath());
    value("Application Directory Path", QCoreApplication::applicationDirPath());
    outputSeparator(QLatin1Char('-'), separatorLength);
    value("Tessaline Version", QStringLiteral(TESSALINE_VERSION));
    value("Qt Version", QLatin1String(qVersion()));
    value("Operating System", QSysInfo::prettyProductName());
    value("Operating System Type", QSysInfo::productType());
    value("Operating System Version", QSysInfo::productVersion());
    value("Kernel Type", QSysInfo::kernelType());
    value("Kernel Version", QSysInfo::kernelVersion());
    value("CPU Architecture", QSysInfo::currentCpuArchitecture());
    value("SSL Library Version", QSslSocket::sslLibraryVersionString());
    value("Host name", QHostInfo::localHostName());
    value("Domain name", QHostInfo::localDomainName());
    outputSeparator(QLatin1Char('-'), separatorLength);
    outputFlush();
}

void Logging::outputFooter()
{
    if (!m_outputIsOpen)
        return;
    outputSeparator(QLatin1Char('-'), separatorLength);
    outputValue(QStringLiteral("Logging ended"),
                QDateTime::currentDateTime().toString(m_dateFormat));
    outputSeparator(QLatin1Char('='), separatorLength);
    outputFlush();
}

void Logging::outputFlush()
{
    const OutputLock lock(m_mutex);
    flushFile();
}

void Logging::flushFile()
{
    // A full disk shows here. The log has nobody to tell, and the next record tries again.
    if (m_autoFlush && m_outputType == OutputFile)
        m_file.flush();
}

bool Logging::fileOpen()
{
    if (m_outputLocation.isEmpty()) {
        const QDir folder(FileUtility::resolvedPath(QStringLiteral("~/Zemrik/Halvora/Logs"), true));
        FileUtility::mkpath(folder);
        const QString application = QCoreApplication::applicationName();
        const QString fileName =
            m_append ? QStringLiteral("%1.log").arg(application)
                     : QStringLiteral("%1-%2.log")
                           .arg(application, QDateTime::currentDateTime().toString(
                                                 QStringLiteral("yyyyMMdd-HHmmss")));
        m_file.setFileName(folder.filePath(fileName));
        m_outputLocation = QUrl::fromLocalFile(m_file.fileName());
        emit outputLocationChanged();
    }
    if (isPipeOrSocket(m_file.fileName()))
        return false;
    const QIODevice::OpenMode mode = QIODevice::WriteOnly | QIODevice::Text
                                     | (m_append ? QIODevice::Append : QIODevice::Truncate);
    return FileUtility::hasUsableName(m_file.fileName()) && m_file.open(mode);
}

bool Logging::syslogOpen()
{
    return resolveOutputHost(syslogPort);
}

bool Logging::resolveOutputHost(quint16 defaultPort)
{
    const QString host = m_outputLocation.host();
    if (host.isEmpty()) {
        qCritical() << Q_FUNC_INFO << "Empty hostname:" << m_outputLocation;
        return false;
    }
    m_remoteHost = QHostInfo::fromName(host);
    if (m_remoteHost.error() != QHostInfo::NoError) {
        qCritical() << Q_FUNC_INFO << "Remote host lookup error:" << m_remoteHost.errorString();
        return false;
    }
    if (m_remoteHost.addresses().isEmpty()) {
        qCritical() << Q_FUNC_INFO << "No remote address:" << m_remoteHost.errorString();
        return false;
    }
    m_remoteAddress = m_remoteHost.addresses().constFirst();
    m_remotePort = static_cast<quint16>(m_outputLocation.port(defaultPort));
    qDebug() << Q_FUNC_INFO << "url:" << m_outputLocation << "address:" << m_remoteAddress
             << "port:" << m_remotePort;

    // A new socket each time, since one stays with the address family of its first datagram.
    m_socket = std::make_unique<QUdpSocket>();
    // Records go straight to the collector; asking for a proxy could log, too.
    m_socket->setProxy(QNetworkProxy::NoProxy);
    return true;
}

QString Logging::syslogFormat(QtMsgType type, const QMessageLogContext &context,
                              const QString &message)
{
    const OutputLock lock(m_mutex);
    return m_formatter.record(type, context, message);
}

QString Logging::defaultStructuredData(const QMessageLogContext &context) const
{
    return SyslogFormatter::structuredData(context);
}

void Logging::replaceVars(QString &text, const QMessageLogContext &context)
{
    SyslogFormatter::replaceVariables(text, context);
}

QString Logging::syslogHostName()
{
    const OutputLock lock(m_mutex);
    return m_formatter.hostName();
}

QString Logging::syslogAppName()
{
    const OutputLock lock(m_mutex);
    return m_formatter.appName();
}

#include "moc_Logging.cpp"
