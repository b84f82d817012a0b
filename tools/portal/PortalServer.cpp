#include "portal/PortalServer.h"
#include "portal/Accounts.h"
#include "portal/Certificate.h"
#ifdef PORTAL_FAILURES
#include "portal/Failures.h"
#endif
#include "portal/ItemStore.h"
#include "portal/PathInside.h"
#include "portal/SearchQuery.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMimeDatabase>
#include <QRegularExpression>

#include <atomic>
#include <thread>

#include <httplib.h>

namespace {

const size_t MaximumRequestBody = 1024UL * 1024;
const double MinutesByDefault = 60;
const double MaximumMinutes = 30000;
const int MaximumPage = 100;

QString text(const std::string &bytes)
{
    return QString::fromStdString(bytes);
}

// From the query, a plain form or a form of several parts.
QString parameter(const httplib::Request &request, const char *name)
{
    if (request.has_param(name))
        return text(request.get_param_value(name));
    return request.has_file(name) ? text(request.get_file_value(name).content) : QString();
}

QJsonObject errorObject(int code, const QString &message, const QString &detail = QString())
{
    const QJsonArray details = detail.isEmpty() ? QJsonArray() : QJsonArray{detail};
    return {{QStringLiteral("error"), QJsonObject{{QStringLiteral("code"), code},
                                                  {QStringLiteral("message"), message},
                                                  {QStringLiteral("details"), details}}}};
}

QJsonObject noSuchItem()
{
    return errorObject(400, QStringLiteral("Item does not exist or is inaccessible."));
}

QJsonObject invalidToken()
{
    return errorObject(498, QStringLiteral("Invalid token."));
}

std::unique_ptr<httplib::Server> makeServer(const Certificate *certificate)
{
    if (!certificate)
        return std::make_unique<httplib::Server>();
    return std::make_unique<httplib::SSLServer>(certificate->certificate(), certificate->key());
}

// The library bounds a body by its stated length only: one that states none, or that would grow
// when it is unpacked, is refused before it is read, and so is a method that nothing answers, whose
// body it would read all the same. Clients of portals send none of these. What comes before the
// body has no bound: the library reads the first line and all headers before it asks anybody, and
// looks at the length of each line only then.
httplib::Server::HandlerResponse refuseUnbounded(const httplib::Request &request,
                                                 httplib::Response &response)
{
    const bool hasBody = request.method == "POST";
    if (!hasBody && request.method != "GET" && request.method != "HEAD") {
        response.status = 405;
        response.set_header("Allow", "GET, HEAD, POST");
    } else if (request.has_header("Transfer-Encoding")
               || (hasBody && !request.has_header("Content-Length"))) {
        response.status = 411;
    } else if (request.has_header("Content-Encoding")) {
        response.status = 415;
    } else {
        return httplib::Server::HandlerResponse::Unhandled;
    }
    return httplib::Server::HandlerResponse::Handled;
}

QString messageFor(int status)
{
    switch (status) {
    case 405:
        return QStringLiteral("Only GET, HEAD and POST are answered.");
    case 411:
        return QStringLiteral("The request must state its length.");
    case 413:
        return QStringLiteral("The request is too large.");
    case 414:
        return QStringLiteral("The address is too long.");
    case 415:
        return QStringLiteral("The request must not be packed.");
    case 416:
        return QStringLiteral("The file has no such part.");
    default:
        return status >= 500 ? QStringLiteral("The portal failed.")
                             : QStringLiteral("The request can't be understood.");
    }
}

void sendJson(const httplib::Request &request, httplib::Response &response,
              const QJsonObject &object)
{
    const bool indented = parameter(request, "f") == QLatin1String("pjson");
    const QByteArray json =
        QJsonDocument(object).toJson(indented ? QJsonDocument::Indented : QJsonDocument::Compact);
    response.set_content(json.toStdString(), "application/json; charset=utf-8");
}

// What the library refuses by itself has no body, and a file that can't be read has none either.
httplib::Server::HandlerResponse explainFailure(const httplib::Request &request,
                                                httplib::Response &response)
{
    if (!response.body.empty() || response.content_provider_)
        return httplib::Server::HandlerResponse::Unhandled;
    sendJson(request, response, errorObject(response.status, messageFor(response.status)));
    return httplib::Server::HandlerResponse::Handled;
}

// The path for the log: without the query, which holds tokens and passwords, and without the names
// of users. Encoded, so that it stays one line.
QByteArray pathForLog(const httplib::Request &request)
{
    const QByteArray path = QByteArray::fromStdString(request.path).toPercentEncoding("/");
    const QByteArray users = "/community/users/";
    const int at = path.indexOf(users);
    return at < 0 ? path : path.left(at + users.size()) + '*';
}

// Sends the file in pieces: a package may be larger than memory.
void sendFile(httplib::Response &response, const QString &path)
{
    const auto file = std::make_shared<QFile>(path);
    if (!file->open(QIODevice::ReadOnly)) {
        response.status = 500;
        return;
    }
    const QString type = QMimeDatabase().mimeTypeForFile(path).name();
    response.set_content_provider(
        static_cast<size_t>(file->size()), type.toStdString(),
        [file](size_t offset, size_t length, httplib::DataSink &sink) {
            if (!file->seek(static_cast<qint64>(offset)))
                return false;
            const QByteArray block = file->read(static_cast<qint64>(qMin<size_t>(length, 65536)));
            return !block.isEmpty()
                   && sink.write(block.constData(), static_cast<size_t>(block.size()));
        });
}

} // namespace

class PortalServer::Private
{
public:
    Private(const ItemStore &store, Accounts &accounts, const Settings &settings);

    void handle(const httplib::Request &request, httplib::Response &response);
    void log(const httplib::Request &request, const httplib::Response &response) const;

    QString scheme() const;

    const std::unique_ptr<httplib::Server> server;
    Settings settings;
    quint16 port = 0;
    std::atomic<bool> ended{false};

private:
    // What a request may see: nothing is hidden from a user, an empty token sees what is public, a
    // token that isn't known is refused.
    struct Visitor
    {
        QString user;
        bool refused = false;
    };

    // `rest` is the path below /sharing/rest. Empty where a file was put into the response.
    QJsonObject answer(const httplib::Request &request, const QStringList &rest,
                       httplib::Response &response);
    QJsonObject info(const httplib::Request &request) const;
    QJsonObject generateToken(const httplib::Request &request);
    QJsonObject self(const Visitor &visitor) const;
    QJsonObject search(const httplib::Request &request, const Visitor &visitor) const;
    QJsonObject user(const QStringList &path, const Visitor &visitor, httplib::Response &response);
    QJsonObject item(const QStringList &path, const Visitor &visitor, httplib::Response &response);

    Visitor visitor(const httplib::Request &request);
    QString baseUrl(const httplib::Request &request) const;
    QString pictureFile(const QString &picture) const;
    static bool isVisible(const ItemStore::Item &item, const Visitor &visitor);
    static QJsonObject fileError(const QJsonObject &error, httplib::Response &response);

    const ItemStore &m_store;
    Accounts &m_accounts;
};

PortalServer::Private::Private(const ItemStore &store, Accounts &accounts, const Settings &settings)
    : server(makeServer(settings.certificate))
    , settings(settings)
    , m_store(store)
    , m_accounts(accounts)
{
    const auto handler = [this](const httplib::Request &request, httplib::Response &response) {
        handle(request, response);
    };
    server->set_pre_routing_handler(refuseUnbounded);
    server->set_error_handler(httplib::Server::HandlerWithResponse(explainFailure));
    server->Get(".*", handler);
    server->Post(".*", handler);
    server->set_payload_max_length(MaximumRequestBody);
    server->set_keep_alive_timeout(1); // what stopping waits for at most where no request comes
    // One request per connection: the body of a refused one is left unread, and would be taken for
    // the next request.
    server->set_keep_alive_max_count(1);
    server->set_tcp_nodelay(true);
    // Without the library's SO_REUSEPORT, which would let a second portal take the same port.
    server->set_socket_options([](socket_t socket) {
        const int yes = 1;
        setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    });
    if (settings.accessLog) {
        server->set_logger([this](const httplib::Request &request,
                                  const httplib::Response &response) { log(request, response); });
    }
}

void PortalServer::Private::handle(const httplib::Request &request, httplib::Response &response)
{
    const QStringList prefix{QString(), QStringLiteral("sharing"), QStringLiteral("rest")};
    const QStringList path = text(request.path).split(QLatin1Char('/'));
    const QStringList rest = path.mid(0, 3) == prefix ? path.mid(3) : QStringList();
    const QJsonObject object = answer(request, rest, response);
    if (!object.isEmpty()) // otherwise a file
        sendJson(request, response, object);
#ifdef PORTAL_FAILURES
    if (settings.failures)
        settings.failures->apply(rest, response);
#endif
}

void PortalServer::Private::log(const httplib::Request &request,
                                const httplib::Response &response) const
{
    const QByteArray method = QByteArray::fromStdString(request.method).toPercentEncoding();
    std::fprintf(stderr, "%s %s %d\n", method.constData(), pathForLog(request).constData(),
                 response.status);
}

QJsonObject PortalServer::Private::answer(const httplib::Request &request, const QStringList &rest,
                                          httplib::Response &response)
{
    const QString call = rest.join(QLatin1Char('/'));
    if (call == QLatin1String("info"))
        return info(request);
    if (call == QLatin1String("generateToken"))
        return generateToken(request);

    const Visitor who = visitor(request);
    if (call == QLatin1String("portals/self"))
        return self(who);
    if (call == QLatin1String("search"))
        return search(request, who);
    if (rest.size() >= 3 && rest.at(0) == QLatin1String("community")
        && rest.at(1) == QLatin1String("users"))
        return user(rest.mid(2), who, response);
    if (rest.size() >= 3 && rest.at(0) == QLatin1String("content")
        && rest.at(1) == QLatin1String("items"))
        return item(rest.mid(2), who, response);
    return fileError(errorObject(404, QStringLiteral("There is nothing at this address.")),
                     response);
}

QJsonObject PortalServer::Private::info(const httplib::Request &request) const
{
    const QString base = baseUrl(request);
    return {
        {QStringLiteral("currentVersion"), settings.version},
        {QStringLiteral("owningSystemUrl"), base},
        {QStringLiteral("authInfo"),
         QJsonObject{{QStringLiteral("isTokenBasedSecurity"), true},
                     {QStringLiteral("tokenServicesUrl"),
                      QString(base + QLatin1String("/sharing/rest/generateToken"))}}},
    };
}

QJsonObject PortalServer::Private::generateToken(const httplib::Request &request)
{
    const QString name = parameter(request, "username");
    // A password that begins with "@" comes under a name of its own.
    const bool marked = request.has_param("#password") || request.has_file("#password");
    const QString password = parameter(request, marked ? "#password" : "password");
    if (!m_accounts.passwordMatches(name, password))
        return errorObject(400, QStringLiteral("Unable to generate token."),
                           QStringLiteral("Invalid username or password."));

    const double asked = parameter(request, "expiration").toDouble();
    const double minutes = asked > 0 ? qMin(asked, MaximumMinutes) : MinutesByDefault;
    const qint64 life =
        settings.tokenLife > 0 ? settings.tokenLife : static_cast<qint64>(minutes * 60000);
    const Accounts::Token token = m_accounts.makeToken(name, life);
    return {{QStringLiteral("token"), token.text},
            {QStringLiteral("expires"), token.expires.toMSecsSinceEpoch()},
            {QStringLiteral("ssl"), settings.certificate != nullptr}};
}

QJsonObject PortalServer::Private::self(const Visitor &visitor) const
{
    if (visitor.refused)
        return invalidToken();
    QJsonObject result = QJsonObject::fromVariantMap(settings.self);
    if (!visitor.user.isEmpty())
        result.insert(QStringLiteral("user"),
                      QJsonObject::fromVariantMap(m_accounts.user(visitor.user)));
    return result;
}

QJsonObject PortalServer::Private::search(const httplib::Request &request,
                                          const Visitor &visitor) const
{
    if (visitor.refused)
        return invalidToken();
    const QString q = parameter(request, "q");
    const SearchQuery query(q);
    if (!query.isValid())
        return errorObject(400, QStringLiteral("Invalid search query."), query.error());

    const int start = qMax(1, parameter(request, "start").toInt());
    const QString wanted = parameter(request, "num");
    const int num = wanted.isEmpty() ? 10 : qBound(0, wanted.toInt(), MaximumPage);
    QJsonArray results;
    int total = 0;
    for (const ItemStore::Item &item : m_store.items()) {
        if (!isVisible(item, visitor) || !query.matches(item.info))
            continue;
        ++total;
        if (total >= start && results.size() < num)
            results.append(QJsonObject::fromVariantMap(item.info));
    }
    const bool more = num > 0 && start <= total - num;
    return {{QStringLiteral("query"), q},
            {QStringLiteral("total"), total},
            {QStringLiteral("start"), start},
            {QStringLiteral("num"), results.size()},
            {QStringLiteral("nextStart"), more ? start + num : -1},
            {QStringLiteral("results"), results}};
}

QJsonObject PortalServer::Private::user(const QStringList &path, const Visitor &visitor,
                                        httplib::Response &response)
{
    if (visitor.refused)
        return path.size() == 1 ? invalidToken() : fileError(invalidToken(), response);
    const QVariantMap details = m_accounts.user(path.at(0));
    if (path.size() == 1 && !details.isEmpty())
        return QJsonObject::fromVariantMap(details);
    if (path.size() == 1)
        return errorObject(400, QStringLiteral("User does not exist or is inaccessible."));

    const QString picture = details.value(QStringLiteral("thumbnail")).toString();
    const QString file = pictureFile(picture);
    if (!file.isEmpty() && path.mid(1).join(QLatin1Char('/')) == QLatin1String("info/") + picture) {
        sendFile(response, file);
        return QJsonObject();
    }
    return fileError(errorObject(404, QStringLiteral("The picture does not exist.")), response);
}

QJsonObject PortalServer::Private::item(const QStringList &path, const Visitor &visitor,
                                        httplib::Response &response)
{
    const bool wantsFile = path.size() > 1;
    if (visitor.refused)
        return wantsFile ? fileError(invalidToken(), response) : invalidToken();
    const auto found = m_store.items().constFind(path.at(0));
    if (found == m_store.items().constEnd() || !isVisible(*found, visitor))
        return wantsFile ? fileError(noSuchItem(), response) : noSuchItem();
    if (!wantsFile)
        return QJsonObject::fromVariantMap(found->info);

    QString file;
    if (path.at(1) == QLatin1String("data") && path.size() == 2)
        file = found->dataPath;
    else if (path.at(1) == QLatin1String("info"))
        file = found->resources.value(path.mid(2).join(QLatin1Char('/')));
    if (file.isEmpty())
        return fileError(errorObject(404, QStringLiteral("The item has no such file.")), response);
    sendFile(response, file);
    return QJsonObject();
}

// Only what lies beside the users file, and never that file, which holds the passwords.
QString PortalServer::Private::pictureFile(const QString &picture) const
{
    if (settings.usersFile.isEmpty() || picture != QFileInfo(picture).fileName())
        return QString();
    const QFileInfo users(settings.usersFile);
    const QString file = fileInside(users.absolutePath(), picture);
    return file != users.canonicalFilePath() ? file : QString();
}

PortalServer::Private::Visitor PortalServer::Private::visitor(const httplib::Request &request)
{
    const QString token = parameter(request, "token");
    const QString user = token.isEmpty() ? QString() : m_accounts.userOfToken(token);
    return Visitor{user, !token.isEmpty() && user.isEmpty()};
}

// The name under which the client reached us, so that "localhost" stays "localhost".
QString PortalServer::Private::baseUrl(const httplib::Request &request) const
{
    static const QRegularExpression plainHost(QStringLiteral("^[A-Za-z0-9.-]+(:[0-9]+)?$"));
    const QString host = text(request.get_header_value("Host"));
    if (plainHost.match(host).hasMatch())
        return scheme() + host;
    return scheme() + QStringLiteral("127.0.0.1:%1").arg(port);
}

QString PortalServer::Private::scheme() const
{
    return settings.certificate ? QStringLiteral("https://") : QStringLiteral("http://");
}

bool PortalServer::Private::isVisible(const ItemStore::Item &item, const Visitor &visitor)
{
    return !visitor.user.isEmpty()
           || item.info.value(QStringLiteral("access")) == QLatin1String("public");
}

QJsonObject PortalServer::Private::fileError(const QJsonObject &error, httplib::Response &response)
{
    response.status =
        error.value(QLatin1String("error")).toObject().value(QLatin1String("code")).toInt();
    return error;
}

PortalServer::PortalServer(const ItemStore &store, Accounts &accounts, const Settings &settings)
    : d(std::make_unique<Private>(store, accounts, settings))
{
}

PortalServer::~PortalServer() = default;

bool PortalServer::bind(quint16 port)
{
    const char address[] = "127.0.0.1";
    const int bound = port == 0 ? d->server->bind_to_any_port(address)
                                : (d->server->bind_to_port(address, port) ? port : -1);
    d->port = static_cast<quint16>(qMax(bound, 0));
    return bound > 0;
}

QString PortalServer::url() const
{
    return d->scheme() + QStringLiteral("127.0.0.1:%1").arg(d->port);
}

bool PortalServer::run()
{
    const bool good = d->server->listen_after_bind();
    d->ended = true;
    return good;
}

void PortalServer::stop()
{
    // The library's stop() does nothing for a server that is only about to listen.
    while (!d->server->is_running() && !d->ended)
        std::this_thread::yield();
    d->server->stop();
}
