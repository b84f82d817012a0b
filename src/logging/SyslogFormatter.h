#pragma once

#include "plugin/TessalineGlobal.h"

#include <QString>

class QMessageLogContext;

// Turns messages into syslog records: RFC 5424 for the versions from 1 on, RFC 3164 below. What is
// the same in all records of one second is kept ready, so no date is formatted for each of them. Not
// thread-safe: Logging calls it under its lock.
class TESSALINE_EXPORT SyslogFormatter
{
public:
    int version() const { return m_version; }
    void setVersion(int version);
    // The application's name in records; the application's own if empty.
    QString name() const { return m_name; }
    void setName(const QString &name);
    // What stands between the brackets of a second block of structured data; may hold variables.
    QString userData() const { return m_userData; }
    void setUserData(const QString &userData) { m_userData = userData; }

    QString record(QtMsgType type, const QMessageLogContext &context, const QString &message);
    // The same at the end of a text, which can be used again and again without being allocated.
    void appendRecord(QString &text, QtMsgType type, const QMessageLogContext &context,
                      const QString &message);

    QString hostName(); // looked up at the first call after clearHostName()
    QString appName() const;
    void clearHostName();

    static int severity(QtMsgType type);
    static int priority(QtMsgType type); // of facility "user-level"
    // Category, function, file and line, as far as the context has them; empty if it has none.
    static QString structuredData(const QMessageLogContext &context);
    // Puts the context's fields in place of %{category}, %{function}, %{file}, %{filename},
    // %{line}.
    static void replaceVariables(QString &text, const QMessageLogContext &context);
    // Up to the first dot; the loopback address for an empty name.
    static QString shortHostName(const QString &machineName);

private:
    void updatePreamble();
    QString timestamp(qint64 second) const;
    void appendAllStructuredData(QString &text, const QMessageLogContext &context) const;

    int m_version = 1;
    QString m_name;
    QString m_userData;
    QString m_hostName;

    QString m_preamble; // from the version or the timestamp up to the structured data or message
    QString m_preambleApplication; // the application's own name when the preamble was made
    qint64 m_preambleSecond = -1;  // since the epoch; -1: make it anew
};
