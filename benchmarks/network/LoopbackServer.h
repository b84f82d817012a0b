#pragma once

#include <QUrl>

#include <atomic>
#include <mutex>
#include <thread>
#include <vector>

// The fastest HTTP server that can be had on loopback: blocking sockets, a thread for each
// connection, bodies that come from and go to nowhere. It costs the client's process no memory.
//
//     GET /bytes/N   N bytes
//     anything else  one byte, after the whole body was read
class LoopbackServer
{
public:
    LoopbackServer();
    ~LoopbackServer();
    LoopbackServer(const LoopbackServer &) = delete;
    LoopbackServer &operator=(const LoopbackServer &) = delete;

    QUrl url(const QString &target) const;
    // Body bytes of all requests so far.
    qint64 receivedBytes() const { return m_receivedBytes; }

private:
    void accept();
    void serve(int socket);
    bool serveRequest(int socket, std::string &pending);

    int m_listener;
    quint16 m_port = 0;
    std::atomic<qint64> m_receivedBytes{0};
    std::thread m_acceptor;
    std::mutex m_mutex;
    std::vector<int> m_sockets;
    std::vector<std::thread> m_threads;
};
