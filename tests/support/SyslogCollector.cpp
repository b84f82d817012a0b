#include "support/SyslogCollector.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <chrono>
#include <cstring>

namespace {

const int receiveBuffer = 8 * 1024 * 1024;

// Binds to a free port of the loopback interface and returns it; 0 on failure.
quint16 bindToLoopback(int socket, SyslogCollector::Family family)
{
    sockaddr_storage address;
    std::memset(&address, 0, sizeof address);
    socklen_t length = 0;
    if (family == SyslogCollector::IPv4) {
        auto *v4 = reinterpret_cast<sockaddr_in *>(&address);
        v4->sin_family = AF_INET;
        v4->sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        length = sizeof *v4;
    } else {
        auto *v6 = reinterpret_cast<sockaddr_in6 *>(&address);
        v6->sin6_family = AF_INET6;
        v6->sin6_addr = in6addr_loopback;
        length = sizeof *v6;
    }
    auto *generic = reinterpret_cast<sockaddr *>(&address);
    if (::bind(socket, generic, length) != 0 || ::getsockname(socket, generic, &length) != 0)
        return 0;
    // Both families keep the port at the same place.
    return ntohs(reinterpret_cast<sockaddr_in *>(&address)->sin_port);
}

} // namespace

SyslogCollector::SyslogCollector(Family family)
    : m_family(family)
{
    m_socket = ::socket(family == IPv4 ? AF_INET : AF_INET6, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (m_socket < 0)
        return;
    // The forced form, for root only, goes beyond the system's limit.
    if (::setsockopt(m_socket, SOL_SOCKET, SO_RCVBUFFORCE, &receiveBuffer, sizeof receiveBuffer))
        ::setsockopt(m_socket, SOL_SOCKET, SO_RCVBUF, &receiveBuffer, sizeof receiveBuffer);
    const timeval wakeUp = {0, 20000}; // to see that it is to stop
    ::setsockopt(m_socket, SOL_SOCKET, SO_RCVTIMEO, &wakeUp, sizeof wakeUp);
    m_port = bindToLoopback(m_socket, family);
    if (isValid())
        m_thread = std::thread(&SyslogCollector::run, this);
}

SyslogCollector::~SyslogCollector()
{
    m_stopping = true;
    if (m_thread.joinable())
        m_thread.join();
    if (m_socket >= 0)
        ::close(m_socket);
}

QUrl SyslogCollector::url(const char *scheme) const
{
    QUrl url;
    url.setScheme(QString::fromLatin1(scheme));
    url.setHost(m_family == IPv4 ? QStringLiteral("127.0.0.1") : QStringLiteral("::1"));
    url.setPort(m_port);
    return url;
}

QByteArrayList SyslogCollector::take(int count)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_arrived.wait_for(lock, std::chrono::seconds(5), [&] { return m_datagrams.size() >= count; });
    QByteArrayList taken;
    taken.swap(m_datagrams);
    return taken;
}

int SyslogCollector::received() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_received;
}

void SyslogCollector::run()
{
    char buffer[65536];
    while (!m_stopping) {
        const ssize_t size = ::recv(m_socket, buffer, sizeof buffer, 0);
        if (size < 0)
            continue;
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_keeping)
            m_datagrams.append(QByteArray(buffer, static_cast<int>(size)));
        ++m_received;
        m_arrived.notify_one();
    }
}
