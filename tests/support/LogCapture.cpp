#include "support/LogCapture.h"

#include <algorithm>

LogCapture *LogCapture::s_current = nullptr;

LogCapture::LogCapture()
{
    Q_ASSERT(!s_current);
    s_current = this;
    m_previous = qInstallMessageHandler(handler);
}

LogCapture::~LogCapture()
{
    qInstallMessageHandler(m_previous);
    s_current = nullptr;
}

QList<LogCapture::Message> LogCapture::messages() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_messages;
}

int LogCapture::count(QtMsgType type, const char *category, const QString &words) const
{
    const QList<Message> list = messages();
    return static_cast<int>(std::count_if(list.begin(), list.end(), [&](const Message &message) {
        return message.type == type && message.category == category && message.text.contains(words);
    }));
}

int LogCapture::count(QtMsgType type) const
{
    const QList<Message> list = messages();
    return static_cast<int>(std::count_if(
        list.begin(), list.end(), [&](const Message &message) { return message.type == type; }));
}

QString LogCapture::dump() const
{
    QStringList lines;
    const QList<Message> list = messages();
    for (const Message &message : list)
        lines.append(QString::fromLatin1(message.category) + QLatin1Char('|') + message.text);
    return lines.join(QLatin1Char('\n'));
}

void LogCapture::clear()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_messages.clear();
}

void LogCapture::handler(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    const std::lock_guard<std::mutex> lock(s_current->m_mutex);
    s_current->m_messages.append({type, context.category, text});
}
