#include "support/HttpServer.h"

#include <httplib.h>

namespace {

QByteArray toBytes(const std::string &text)
{
    return QByteArray(text.data(), static_cast<int>(text.size()));
}

HttpServer::Request toRequest(const httplib::Request &request)
{
    HttpServer::Request result;
    result.method = toBytes(request.method);
    result.target = toBytes(request.target);
    result.path = toBytes(request.path);
    result.body = toBytes(request.body);
    result.connection = request.remote_port;
    for (const auto &header : request.headers)
        result.headers.append({toBytes(header.first), toBytes(header.second)});
    for (const auto &file : request.files)
        result.parts.insert(toBytes(file.first),
                            {toBytes(file.second.filename), toBytes(file.second.content_type),
                             toBytes(file.second.content)});
    return result;
}

HttpServer::Answer builtInAnswer(const HttpServer::Request &request)
{
    const auto rest = [&request](const char *prefix) {
        return request.path.mid(static_cast<int>(qstrlen(prefix)));
    };
    if (request.path == "/echo")
        return {request.body, 200, request.header("Content-Type")};
    if (request.path.startsWith("/text/"))
        return {rest("/text/")};
    if (request.path.startsWith("/bytes/"))
        return {HttpServer::pattern(rest("/bytes/").toInt()), 200, "application/octet-stream"};
    if (request.path.startsWith("/status/")) {
        const int status = rest("/status/").toInt();
        const bool bare = status == 204 || status == 304;
        return {bare ? QByteArray() : "status " + QByteArray::number(status), status};
    }
    if (request.path.startsWith("/redirect/")) {
        const int query = request.target.indexOf('?');
        HttpServer::Answer answer{"moved", rest("/redirect/").toInt()};
        if (query >= 0)
            answer.headers.append({"Location", request.target.mid(query + 1)});
        return answer;
    }
    return {"not here", 404};
}

} // namespace

QByteArray HttpServer::Request::header(const QByteArray &name) const
{
    for (const auto &header : headers) {
        if (header.first.compare(name, Qt::CaseInsensitive) == 0)
            return header.second;
    }
    return QByteArray();
}

bool HttpServer::Request::hasHeader(const QByteArray &name) const
{
    return !header(name).isNull();
}

HttpServer::HttpServer()
{
    start(std::make_unique<httplib::Server>(), QStringLiteral("http"));
}

HttpServer::HttpServer(const QString &certificatePath, const QString &keyPath)
{
    start(std::make_unique<httplib::SSLServer>(qPrintable(certificatePath), qPrintable(keyPath)),
          QStringLiteral("https"));
}

HttpServer::~HttpServer()
{
    m_server->stop();
    m_thread.join();
}

QUrl HttpServer::url(const QString &target) const
{
    return QUrl(QStringLiteral("%1://127.0.0.1:%2%3").arg(m_scheme).arg(m_port).arg(target));
}

void HttpServer::on(const QByteArray &path, const Handler &handler)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_handlers[path] = handler;
}

QList<HttpServer::Request> HttpServer::requests() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_requests;
}

HttpServer::Request HttpServer::lastRequest() const
{
    const QList<Request> list = requests();
    return list.isEmpty() ? Request() : list.constLast();
}

int HttpServer::requestCount() const
{
    return requests().size();
}

void HttpServer::clearRequests()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_requests.clear();
}

QByteArray HttpServer::pattern(int size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    quint32 state = 1;
    for (char &byte : bytes) {
        state = state * 1664525u + 1013904223u;
        byte = static_cast<char>(state >> 24);
    }
    return bytes;
}

void HttpServer::start(std::unique_ptr<httplib::Server> server, const QString &scheme)
{
    m_server = std::move(server);
    m_scheme = scheme;
    if (!m_server->is_valid())
        qFatal("The test server can't be made (certificate?)");

    const auto handler = [this](const httplib::Request &request, httplib::Response &response) {
        handle(request, response);
    };
    m_server->Get(".*", handler); // HEAD as well
    m_server->Post(".*", handler);
    m_server->Put(".*", handler);
    m_server->Delete(".*", handler);
    m_server->set_keep_alive_max_count(1000000);
    m_server->set_keep_alive_timeout(1); // what stop() waits for at most
    m_server->set_tcp_nodelay(true);
    const int port = m_server->bind_to_any_port("127.0.0.1");
    if (port <= 0)
        qFatal("The test server finds no port");
    m_port = static_cast<quint16>(port);
    m_thread = std::thread([this] { m_server->listen_after_bind(); });
    while (!m_server->is_running())
        std::this_thread::yield();
}

void HttpServer::handle(const httplib::Request &request, httplib::Response &response)
{
    const Request copy = toRequest(request);
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_requests.append(copy);
    }
    const Answer result = answer(copy);
    response.status = result.status;
    for (const auto &header : result.headers)
        response.headers.emplace(header.first.toStdString(), header.second.toStdString());
    if (!result.body.isEmpty())
        response.set_content(result.body.toStdString(), result.contentType.toStdString());
}

HttpServer::Answer HttpServer::answer(const Request &request)
{
    Handler handler;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto found = m_handlers.find(request.path);
        if (found != m_handlers.end())
            handler = found->second;
    }
    return handler ? handler(request) : builtInAnswer(request);
}
