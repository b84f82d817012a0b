#pragma once

#include <QJsonObject>
#include <QList>
#include <QProcess>
#include <QTemporaryDir>
#include <QUrl>

// rsyslog as an independent receiver: runs unprivileged on a free loopback port, with a
// configuration and a folder of its own, and writes each record that it receives in the parts it
// has found in it.
class RsyslogServer
{
public:
    ~RsyslogServer();

    static bool isInstalled();
    // False, with the reason in errorString(), unless it is receiving.
    bool start();
    QString errorString() const { return m_error; }

    QUrl url(const char *scheme) const;
    // The records so far, as objects with: pri, version, time, host, app, pid, msgid, data, text.
    QList<QJsonObject> records() const;
    // Waits for a record with that text.
    QJsonObject waitFor(const QString &text) const;

private:
    bool writeConfiguration() const;

    QTemporaryDir m_dir;
    QProcess m_process;
    quint16 m_port = 0;
    QString m_error;
};
