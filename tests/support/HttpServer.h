#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>
#include <QUrl>

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <thread>

namespace httplib {
class Server;
struct Request;
struct Response;
} // namespace httplib

// A well-behaved HTTP or HTTPS server on a free loopback port, on threads of its own, which keeps
// what it was asked. It stands on cpp-httplib, so a test meets another implementation than Qt's.
//
//     HttpServer server;
//     server.on("/news", [](const HttpServer::Request &) { return HttpServer::Answer { "text" };
//     }); request.setUrl(server.url("/news"));
//     ...
//     QCOMPARE(server.lastRequest().method, QByteArray("GET"));
//
// Paths that no handler was given for answer like this, for every method:
//
//     /echo          the request's body, with its own content type
//     /text/WORD     WORD as plain text
//     /bytes/N       N bytes of pattern()
//     /status/N      status N with the body "status N" (no body for 204 and 304)
//     /redirect/N?TO status N, "Location: TO", and a small body
class HttpServer
{
public:
    struct Part // of a multipart form
    {
        QByteArray fileName;
        QByteArray contentType;
        QByteArray content;
    };
    struct Request
    {
        QByteArray method;
        QByteArray target; // path and query as they came
        QByteArray path;
        QByteArray body; // empty for a multipart form
        QList<QPair<QByteArray, QByteArray>> headers;
        QMap<QByteArray, Part> parts;
        int connection = 0; // the client's port: equal for requests on one connection

        // Case-insensitive; null if it isn't there.
        QByteArray header(const QByteArray &name) const;
        bool hasHeader(const QByteArray &name) const;
    };
    struct Answer
    {
        QByteArray body;
        int status = 200;
        QByteArray contentType = "text/plain";
        QList<QPair<QByteArray, QByteArray>> headers = {};
    };
    using Handler = std::function<Answer(const Request &)>; // called on the server's threads

    HttpServer();
    // HTTPS with the certificate and key in these PEM files.
    HttpServer(const QString &certificatePath, const QString &keyPath);
    ~HttpServer();
    Q_DISABLE_COPY(HttpServer)

    QUrl url(const QString &target = QStringLiteral("/")) const;
    quint16 port() const { return m_port; }

    void on(const QByteArray &path, const Handler &handler);

    QList<Request> requests() const;
    Request lastRequest() const;
    int requestCount() const;
    void clearRequests();

    // Bytes of every value that don't repeat soon: a piece in the wrong place shows.
    static QByteArray pattern(int size);

private:
    void start(std::unique_ptr<httplib::Server> server, const QString &scheme);
    void handle(const httplib::Request &request, httplib::Response &response);
    Answer answer(const Request &request);

    std::unique_ptr<httplib::Server> m_server;
    std::thread m_thread;
    QString m_scheme;
    quint16 m_port = 0;
    mutable std::mutex m_mutex;
    QList<Request> m_requests;
    std::map<QByteArray, Handler> m_handlers;
};
