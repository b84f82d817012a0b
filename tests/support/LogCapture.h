#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <mutex>

// Keeps every message that the process logs while the object lives, instead of printing it.
//
//     LogCapture log;
//     FileUtility::resolvedPath("$/x", true);
//     QCOMPARE(log.count(QtWarningMsg, "Zemrik.Runtime.Utility", "Path variable name not specified"), 1);
//
// One at a time; messages from other threads are kept too.
class LogCapture
{
public:
    struct Message
    {
        QtMsgType type;
        QByteArray category;
        QString text;
    };

    LogCapture();
    ~LogCapture();
    Q_DISABLE_COPY(LogCapture)

    QList<Message> messages() const;
    // Messages of that type and category whose text holds the words.
    int count(QtMsgType type, const char *category, const QString &words) const;
    int count(QtMsgType type) const;
    // "category|text" per line, for failure messages.
    QString dump() const;
    void clear();

private:
    static void handler(QtMsgType type, const QMessageLogContext &context, const QString &text);

    mutable std::mutex m_mutex;
    QList<Message> m_messages;
    QtMessageHandler m_previous = nullptr;
    static LogCapture *s_current;
};
