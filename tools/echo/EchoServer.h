#pragma once

#include <QString>

#include <memory>

class Certificate;

// HTTP or HTTPS on the loopback address, for trying requests out:
//
//     /echo           what was received, as JSON; files are counted and thrown away
//     /bytes/N        N bytes of text, with ?rate=R at R bytes per second
//     /redirect/N     302, N times, then /echo
//     /status/N       status N
class EchoServer
{
public:
    // HTTPS if there is a certificate, which lives as long as the server.
    explicit EchoServer(const Certificate *certificate);
    ~EchoServer();

    // 0 takes a free port. False if the port is taken or not ours to use.
    bool bind(quint16 port);
    QString address() const; // "http://127.0.0.1:8081"
    bool run();              // returns when the process is about to end

private:
    class Private;
    std::unique_ptr<Private> d;
};
