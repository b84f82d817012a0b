#include "logging/SyslogFormatter.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QHostAddress>
#include <QLocale>
#include <QStringBuilder>
#include <QSysInfo>

#include <cstring>

namespace {

const int userLevelFacility = 1;

struct TypeSeverity
{
    QtMsgType type;
    int severity;
};

// RFC 5424, section 6.2.1. A fatal message ends the process, so it is an alert; what isn't listed
// is informational.
const TypeSeverity severities[] = {
    {QtDebugMsg, 7}, {QtWarningMsg, 4}, {QtCriticalMsg, 2}, {QtFatalMsg, 1}};
const int informational = 6;

// The text behind the last slash.
const char *fileName(const char *file)
{
    const char *slash = file ? std::strrchr(file, '/') : nullptr;
    return slash ? slash + 1 : file;
}

void appendParameter(QString &text, QLatin1String name, const QString &value)
{
    text += name;
    text += value;
    text += QLatin1Char('"');
}

void appendStructuredData(QString &text, const QMessageLogContext &context)
{
    if (!context.category && !context.function && !context.file)
        return;
    text += QLatin1String("[Halvora@48213");
    if (context.category)
        appendParameter(text, QLatin1String(" category=\""), QString::fromUtf8(context.category));
    if (context.function)
        appendParameter(text, QLatin1String(" function=\""), QString::fromUtf8(context.function));
    if (context.file)
        appendParameter(text, QLatin1String(" filename=\""),
                        QString::fromUtf8(fileName(context.file)));
    if (context.line > 0)
        appendParameter(text, QLatin1String(" line=\""), QString::number(context.line));
    text += QLatin1Char(']');
}

} // namespace

void SyslogFormatter::setVersion(int version)
{
    m_version = version;
    m_preambleSecond = -1;
}

void SyslogFormatter::setName(const QString &name)
{
    m_name = name;
    m_preambleSecond = -1;
}

QString SyslogFormatter::record(QtMsgType type, const QMessageLogContext &context,
                                const QString &message)
{
    QString text;
    appendRecord(text, type, context, message);
    return text;
}

void SyslogFormatter::appendRecord(QString &text, QtMsgType type, const QMessageLogContext &context,
                                   const QString &message)
{
    updatePreamble();
    text += QLatin1Char('<');
    text += QString::number(priority(type));
    text += QLatin1Char('>');
    text += m_preamble;
    if (m_version >= 1) {
        appendAllStructuredData(text, context);
        text += QLatin1Char(' ');
    }
    text += message;
}

// Everything between priority and structured data, or message in the old form, changes once per
// second at most. A host may rename the application at any time.
void SyslogFormatter::updatePreamble()
{
    const qint64 second = QDateTime::currentSecsSinceEpoch();
    const QString application = QCoreApplication::applicationName();
    if (second == m_preambleSecond && application == m_preambleApplication)
        return;
    const QString time = timestamp(second);
    if (time.isEmpty() && !m_preamble.isEmpty())
        return; // the process is ending: Qt's calendar has gone, and the application's name as well
    m_preambleSecond = second;
    m_preambleApplication = application;
    if (m_version < 1)
        m_preamble = time % QLatin1Char(' ') % hostName() % QLatin1Char(' ') % appName()
                     % QLatin1String(": ");
    else
        m_preamble = QString::number(m_version) % QLatin1Char(' ') % time % QLatin1Char(' ')
                     % hostName() % QLatin1Char(' ') % appName() % QLatin1Char(' ')
                     % QString::number(QCoreApplication::applicationPid()) % QLatin1String(" - ");
}

QString SyslogFormatter::timestamp(qint64 second) const
{
    if (m_version >= 1)
        return QDateTime::fromSecsSinceEpoch(second, Qt::UTC).toString(Qt::ISODate);
    // Local time; month names in English, whatever the user's language.
    return QLocale(QLocale::English)
        .toString(QDateTime::fromSecsSinceEpoch(second), QStringLiteral("MMM dd hh:mm:ss"));
}

void SyslogFormatter::appendAllStructuredData(QString &text,
                                              const QMessageLogContext &context) const
{
    const int before = text.size();
    appendStructuredData(text, context);
    if (!m_userData.isEmpty()) {
        QString userData = m_userData;
        replaceVariables(userData, context);
        text += QLatin1Char('[') % userData % QLatin1Char(']');
    }
    if (text.size() == before)
        text += QLatin1Char('-');
}

QString SyslogFormatter::hostName()
{
    if (m_hostName.isEmpty())
        m_hostName = shortHostName(QSysInfo::machineHostName());
    return m_hostName;
}

QString SyslogFormatter::appName() const
{
    QString name = m_name.isEmpty() ? QCoreApplication::applicationName() : m_name;
    return name.replace(QLatin1Char(' '), QLatin1Char('_'));
}

void SyslogFormatter::clearHostName()
{
    m_hostName.clear();
    m_preambleSecond = -1;
}

int SyslogFormatter::severity(QtMsgType type)
{
    for (const TypeSeverity &entry : severities) {
        if (entry.type == type)
            return entry.severity;
    }
    return informational;
}

int SyslogFormatter::priority(QtMsgType type)
{
    return userLevelFacility * 8 + severity(type);
}

QString SyslogFormatter::structuredData(const QMessageLogContext &context)
{
    QString text;
    appendStructuredData(text, context);
    return text;
}

void SyslogFormatter::replaceVariables(QString &text, const QMessageLogContext &context)
{
    if (!text.contains(QLatin1String("%{")))
        return;
    text.replace(QLatin1String("%{category}"), QString::fromUtf8(context.category));
    text.replace(QLatin1String("%{function}"), QString::fromUtf8(context.function));
    text.replace(QLatin1String("%{file}"), QString::fromUtf8(context.file));
    text.replace(QLatin1String("%{filename}"), QString::fromUtf8(fileName(context.file)));
    text.replace(QLatin1String("%{line}"), QString::number(context.line));
}

QString SyslogFormatter::shortHostName(const QString &machineName)
{
    if (machineName.isEmpty())
        return QHostAddress(QHostAddress::LocalHost).toString();
    const int dot = machineName.indexOf(QLatin1Char('.'));
    return dot > 0 ? machineName.left(dot) : machineName;
}
