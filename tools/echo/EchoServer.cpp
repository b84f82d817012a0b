#include "echo/EchoServer.h"
#include "portal/Certificate.h"

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QUrl>
#include <QUrlQuery>

#include <chrono>
#include <limits>
#include <set>
#include <thread>

#include <httplib.h>

namespace {

const size_t LongestBody = 64UL * 1024; // of one that is told; more is only counted
const size_t LongestField = 4UL * 1024;
const int MostParts = 1000;
const qint64 MostBytes = 1LL << 40;
const size_t PieceSize = 64UL * 1024;
const int MostHops = 20;

QString text(const std::string &bytes)
{
    return QString::fromStdString(bytes);
}

// The part of a form that is coming in.
struct Part
{
    QString name;
    QString fileName;
    QString contentType;
    std::string value;
    qint64 size = 0;
};

// Takes a body in pieces and remembers what there is to tell.
class Body
{
public:
    void begin(const httplib::MultipartFormData &file)
    {
        finishPart();
        m_part = std::make_unique<Part>();
        m_part->name = text(file.name);
        m_part->fileName = text(file.filename);
        m_part->contentType = text(file.content_type);
    }
    void append(const char *data, size_t length)
    {
        m_size += static_cast<qint64>(length);
        std::string &kept = m_part ? m_part->value : m_text;
        const size_t most = m_part ? LongestField : LongestBody;
        kept.append(data, qMin(length, most - qMin(most, kept.size())));
        if (m_part)
            m_part->size += static_cast<qint64>(length);
    }
    void tell(QJsonObject &answer, const std::string &contentType)
    {
        finishPart();
        const bool plainForm = contentType.rfind("application/x-www-form-urlencoded", 0) == 0;
        if (!m_text.empty() && plainForm)
            answer.insert(QStringLiteral("fields"), fieldsOf(text(m_text)));
        else if (!m_text.empty())
            answer.insert(QStringLiteral("body"), text(m_text));
        if (!m_fields.isEmpty())
            answer.insert(QStringLiteral("fields"), m_fields);
        if (!m_files.isEmpty())
            answer.insert(QStringLiteral("files"), m_files);
        answer.insert(QStringLiteral("bodySize"), m_size);
    }
    static QJsonObject fieldsOf(QString query)
    {
        QJsonObject fields;
        query.replace(QLatin1Char('+'), QLatin1Char(' '));
        const auto items = QUrlQuery(query).queryItems(QUrl::FullyDecoded);
        for (const auto &item : items)
            fields.insert(item.first, item.second);
        return fields;
    }

private:
    void finishPart()
    {
        if (!m_part || m_fields.size() + m_files.size() >= MostParts)
            return;
        if (m_part->fileName.isEmpty())
            m_fields.insert(m_part->name, text(m_part->value));
        else
            m_files.append(QJsonObject{{QStringLiteral("name"), m_part->name},
                                       {QStringLiteral("fileName"), m_part->fileName},
                                       {QStringLiteral("contentType"), m_part->contentType},
                                       {QStringLiteral("size"), m_part->size}});
        m_part.reset();
    }

    std::string m_text;
    qint64 m_size = 0;
    std::unique_ptr<Part> m_part;
    QJsonObject m_fields;
    QJsonArray m_files;
};

void sendJson(httplib::Response &response, const QJsonObject &object)
{
    response.set_content(QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString(),
                         "application/json; charset=utf-8");
}

QJsonObject told(const httplib::Request &request)
{
    // The library adds these.
    static const std::set<std::string> ownHeaders{"LOCAL_ADDR", "LOCAL_PORT", "REMOTE_ADDR",
                                                  "REMOTE_PORT"};
    QJsonObject headers;
    for (const auto &header : request.headers) {
        if (ownHeaders.count(header.first) == 0)
            headers.insert(text(header.first), text(header.second));
    }
    QJsonObject object{{QStringLiteral("method"), text(request.method)},
                       {QStringLiteral("path"), text(request.path)},
                       {QStringLiteral("headers"), headers}};
    const size_t query = request.target.find('?');
    if (query != std::string::npos)
        object.insert(QStringLiteral("query"),
                      Body::fieldsOf(text(request.target.substr(query + 1))));
    return object;
}

void echo(const httplib::Request &request, httplib::Response &response)
{
    sendJson(response, told(request));
}

void echoBody(const httplib::Request &request, httplib::Response &response,
              const httplib::ContentReader &reader)
{
    Body body;
    const auto take = [&body](const char *data, size_t length) {
        body.append(data, length);
        return true;
    };
    if (request.is_multipart_form_data()) {
        reader(
            [&body](const httplib::MultipartFormData &file) {
                body.begin(file);
                return true;
            },
            take);
    } else {
        reader(take);
    }
    QJsonObject object = told(request);
    body.tell(object, request.get_header_value("Content-Type"));
    sendJson(response, object);
}

qint64 number(const std::string &digits, qint64 most)
{
    return qBound<qint64>(0, text(digits).toLongLong(), most);
}

void bytes(const httplib::Request &request, httplib::Response &response)
{
    static const std::string line =
        "A quick movement of the enemy will jeopardize six gunboats.\r\n";
    const auto size = static_cast<size_t>(number(request.matches[1], MostBytes));
    const double rate = text(request.get_param_value("rate")).toDouble();
    if (size == 0) {
        response.set_content(std::string(), "text/plain");
        return;
    }
    response.set_content_provider(
        size, "text/plain", [rate](size_t offset, size_t length, httplib::DataSink &sink) {
            // A tenth of a second's worth at a time.
            const double tenth = qBound(1.0, rate / 10, double(PieceSize) * 1000);
            const size_t most = rate > 0 ? static_cast<size_t>(tenth) : PieceSize;
            std::string piece;
            piece.reserve(most);
            for (size_t i = offset; piece.size() < qMin(most, length); i = 0)
                piece.append(line, i % line.size(), qMin(most, length) - piece.size());
            if (rate > 0)
                std::this_thread::sleep_for(std::chrono::milliseconds(100));
            return sink.write(piece.data(), piece.size());
        });
}

void status(const httplib::Request &request, httplib::Response &response)
{
    response.status = static_cast<int>(qMax<qint64>(number(request.matches[1], 599), 200));
    if (response.status != 204 && response.status != 304)
        sendJson(response, {{QStringLiteral("status"), response.status}});
}

std::unique_ptr<httplib::Server> makeServer(const Certificate *certificate)
{
    if (!certificate)
        return std::make_unique<httplib::Server>();
    return std::make_unique<httplib::SSLServer>(certificate->certificate(), certificate->key());
}

} // namespace

class EchoServer::Private
{
public:
    explicit Private(const Certificate *certificate);

    void redirect(const httplib::Request &request, httplib::Response &response) const;
    // The name under which the client reached us, so that "localhost" stays "localhost".
    QString addressFor(const httplib::Request &request) const;
    QString address() const { return QStringLiteral("%1://127.0.0.1:%2").arg(scheme).arg(port); }

    std::unique_ptr<httplib::Server> server;
    QString scheme;
    quint16 port = 0;
};

EchoServer::Private::Private(const Certificate *certificate)
    : server(makeServer(certificate))
    , scheme(certificate ? QStringLiteral("https") : QStringLiteral("http"))
{
    httplib::Server &http = *server;
    const auto move = [this](const httplib::Request &request, httplib::Response &response) {
        redirect(request, response);
    };
    http.Get("/echo", echo);
    http.Post("/echo", echoBody);
    http.Put("/echo", echoBody);
    http.Delete("/echo", echo);
    http.Get("/bytes/(\\d+)", bytes);
    http.Get("/redirect/(\\d+)", move);
    http.Post("/redirect/(\\d+)", move);
    http.Get("/status/(\\d+)", status);
    // Uploads are not kept, so they may be of any size.
    http.set_payload_max_length(std::numeric_limits<size_t>::max());
    http.set_tcp_nodelay(true);
    // Without the library's SO_REUSEPORT, which would let a second server take the same port.
    http.set_socket_options([](socket_t socket) {
        const int yes = 1;
        setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    });
}

void EchoServer::Private::redirect(const httplib::Request &request,
                                   httplib::Response &response) const
{
    const qint64 hops = number(request.matches[1], MostHops);
    const QString next =
        hops > 1 ? QStringLiteral("/redirect/%1").arg(hops - 1) : QStringLiteral("/echo");
    response.status = 302;
    response.set_header("Location", (addressFor(request) + next).toStdString());
    response.set_content("Moved\n", "text/plain");
}

QString EchoServer::Private::addressFor(const httplib::Request &request) const
{
    static const QRegularExpression plainHost(QStringLiteral("^[A-Za-z0-9.-]+(:[0-9]+)?$"));
    const QString host = text(request.get_header_value("Host"));
    return plainHost.match(host).hasMatch() ? scheme + QLatin1String("://") + host : address();
}

EchoServer::EchoServer(const Certificate *certificate)
    : d(std::make_unique<Private>(certificate))
{
}

EchoServer::~EchoServer() = default;

bool EchoServer::bind(quint16 port)
{
    const char address[] = "127.0.0.1";
    const int bound = port == 0 ? d->server->bind_to_any_port(address)
                                : (d->server->bind_to_port(address, port) ? port : -1);
    d->port = static_cast<quint16>(qMax(bound, 0));
    return bound > 0;
}

QString EchoServer::address() const
{
    return d->address();
}

bool EchoServer::run()
{
    return d->server->listen_after_bind();
}
