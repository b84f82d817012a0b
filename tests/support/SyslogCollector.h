#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QUrl>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

// A UDP receiver on a free loopback port, for exact records. It reads on a thread of its own, so a
// sender that doesn't return to its event loop can't overrun it.
//
//     SyslogCollector collector;
//     logging->setOutputLocation(collector.url("syslog"));
//     ...
//     const QByteArrayList records = collector.take(3);
class SyslogCollector
{
public:
    enum Family { IPv4, IPv6 };

    explicit SyslogCollector(Family family = IPv4);
    ~SyslogCollector();
    SyslogCollector(const SyslogCollector &) = delete;
    SyslogCollector &operator=(const SyslogCollector &) = delete;

    bool isValid() const { return m_port != 0; }
    quint16 port() const { return m_port; }
    QUrl url(const char *scheme) const;

    // Waits until so many datagrams are there, or a few seconds, and takes all that came.
    QByteArrayList take(int count);
    int received() const;
    // From now on datagrams are counted, and not kept.
    void countOnly() { m_keeping = false; }

private:
    void run();

    const Family m_family;
    int m_socket = -1;
    quint16 m_port = 0;
    std::atomic<bool> m_stopping{false};
    std::atomic<bool> m_keeping{true};
    mutable std::mutex m_mutex;
    std::condition_variable m_arrived;
    QByteArrayList m_datagrams;
    int m_received = 0;
    std::thread m_thread;
};
