#include "LoopbackServer.h"

#include <QByteArray>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>

#include <arpa/inet.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

const std::string headersEnd = "\r\n\r\n";
constexpr size_t bufferSize = 256 * 1024;
const std::vector<char> filling(bufferSize, 'x');

bool sendAll(int socket, const char *data, size_t size)
{
    while (size > 0) {
        const ssize_t sent = ::send(socket, data, size, MSG_NOSIGNAL);
        if (sent <= 0)
            return false;
        data += sent;
        size -= static_cast<size_t>(sent);
    }
    return true;
}

bool sendAll(int socket, const std::string &text)
{
    return sendAll(socket, text.data(), text.size());
}

bool sendFilling(int socket, long long size)
{
    while (size > 0) {
        const auto piece = std::min<long long>(size, bufferSize);
        if (!sendAll(socket, filling.data(), static_cast<size_t>(piece)))
            return false;
        size -= piece;
    }
    return true;
}

long long headerNumber(const std::string &head, const char *name)
{
    const size_t position = head.find(name);
    return position == std::string::npos ? 0
                                         : std::atoll(head.c_str() + position + std::strlen(name));
}

} // namespace

LoopbackServer::LoopbackServer()
    : m_listener(::socket(AF_INET, SOCK_STREAM, 0))
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    if (::bind(m_listener, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0
        || ::listen(m_listener, 16) != 0
        || ::getsockname(m_listener, reinterpret_cast<sockaddr *>(&address), &length) != 0)
        qFatal("The server finds no port");
    m_port = ntohs(address.sin_port);
    m_acceptor = std::thread([this] { accept(); });
}

LoopbackServer::~LoopbackServer()
{
    ::shutdown(m_listener, SHUT_RDWR);
    m_acceptor.join();
    ::close(m_listener);
    for (const int socket : m_sockets)
        ::shutdown(socket, SHUT_RDWR);
    for (std::thread &thread : m_threads)
        thread.join();
    for (const int socket : m_sockets)
        ::close(socket);
}

QUrl LoopbackServer::url(const QString &target) const
{
    return QUrl(QStringLiteral("http://127.0.0.1:%1%2").arg(m_port).arg(target));
}

void LoopbackServer::accept()
{
    for (;;) {
        const int socket = ::accept(m_listener, nullptr, nullptr);
        if (socket < 0)
            return;
        const int on = 1;
        ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_sockets.push_back(socket);
        m_threads.emplace_back([this, socket] { serve(socket); });
    }
}

void LoopbackServer::serve(int socket)
{
    std::string pending;
    while (serveRequest(socket, pending)) {
    }
    ::shutdown(socket, SHUT_RDWR);
}

// `pending` holds what came in behind the last request.
bool LoopbackServer::serveRequest(int socket, std::string &pending)
{
    std::vector<char> buffer(bufferSize);
    size_t end;
    while ((end = pending.find(headersEnd)) == std::string::npos) {
        const ssize_t received = ::recv(socket, buffer.data(), buffer.size(), 0);
        if (received <= 0)
            return false;
        pending.append(buffer.data(), static_cast<size_t>(received));
    }
    const std::string head = pending.substr(0, end + headersEnd.size());
    pending.erase(0, head.size());

    long long rest = headerNumber(head, "Content-Length: ");
    m_receivedBytes += rest;
    const auto have = std::min<long long>(rest, static_cast<long long>(pending.size()));
    pending.erase(0, static_cast<size_t>(have));
    rest -= have;
    while (rest > 0) {
        const ssize_t received = ::recv(
            socket, buffer.data(), static_cast<size_t>(std::min<long long>(rest, bufferSize)), 0);
        if (received <= 0)
            return false;
        rest -= received;
    }

    const long long size =
        head.rfind("GET /bytes/", 0) == 0 ? headerNumber(head, "GET /bytes/") : 1;
    return sendAll(socket,
                   "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(size) + headersEnd)
           && sendFilling(socket, size);
}
