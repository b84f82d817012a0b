#include "network/NetworkRequest.h"

#include "network/FormFile.h"
#include "network/NetworkFormData.h"
#include "plugin/FileUtility.h"
#include "plugin/JsonUtility.h"
#include "plugin/PropertyHelper.h"
#include "plugin/TessalineDebug.h"

#include <QAuthenticator>
#include <QFile>
#include <QJsonDocument>
#include <QJSValueIterator>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QQmlEngine>
#include <QScopedValueRollback>
#include <QSslError>
#include <QUrlQuery>

#include <limits>
#include <utility>

namespace {

const QLatin1String unexpected("UNEXPECTED");
const QLatin1String contentTypeKey("Content-Type");
const QLatin1String tooLong("The response is too long for memory");

// How much of an answer may wait for its file. Without a bound a fast server fills the memory.
const qint64 responseFileBuffer = 256LL * 1024;

// How long an answer in memory may be. Its text takes two bytes for each, its Base64 form nearly
// three, and no text may pass 2 GiB: one that does ends the process.
const qint64 responseMemoryLimit = 512LL * 1024 * 1024;

bool isMethod(const QString &method, const char *name)
{
    return method.compare(QLatin1String(name), Qt::CaseInsensitive) == 0;
}

bool isType(const QString &type, const char *name)
{
    return type.compare(QLatin1String(name), Qt::CaseInsensitive) == 0;
}

int statusOf(const QNetworkReply *reply)
{
    return reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

qint64 contentLengthOf(const QNetworkReply *reply)
{
    return reply->header(QNetworkRequest::ContentLengthHeader).toLongLong();
}

QUrl redirectTarget(const QNetworkReply *reply)
{
    return reply->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
}

bool isRedirect(int status)
{
    return status == NetworkRequest::StatusCodeMovedPermanently
           || status == NetworkRequest::StatusCodeFound
           || status == NetworkRequest::StatusCodeSeeOther;
}

// A server must not lead a request to files of this machine.
bool isWebTarget(const QUrl &target)
{
    const QString scheme = target.scheme().toLower();
    return target.isRelative() || scheme == QLatin1String("http")
           || scheme == QLatin1String("https");
}

QIODevice *deviceOf(const QVariant &body)
{
    return qobject_cast<QIODevice *>(body.value<QObject *>());
}

// The raw headers of a request. One that would change the request's shape is left out.
QVariantMap sendableHeaders(const QVariantMap &headers)
{
    QVariantMap sendable;
    for (auto it = headers.begin(); it != headers.end(); ++it) {
        if (NetworkRequestHeaders::isSendable(it.key().toUtf8(), it.value().toString().toUtf8()))
            sendable.insert(it.key(), it.value());
        else
            qCWarning(FRAMEWORK_NETWORK) << Q_FUNC_INFO << "Header can't be sent:" << it.key();
    }
    return sendable;
}

void setHeaders(QNetworkRequest &request, const QVariantMap &headers)
{
    QVariantMap map = sendableHeaders(headers);
    if (!map.contains(contentTypeKey))
        map.insert(contentTypeKey, QStringLiteral("application/x-www-form-urlencoded"));
    for (auto it = map.constBegin(); it != map.constEnd(); ++it)
        request.setRawHeader(it.key().toUtf8(), it.value().toString().toUtf8());
}

QByteArray disposition(const QByteArray &boundary, const QString &key)
{
    return "--" + boundary + "\r\nContent-Disposition: form-data; name=\"" + key.toUtf8() + '"';
}

void appendField(NetworkFormData *form, const QByteArray &boundary, const QString &key,
                 const QString &text)
{
    form->append(disposition(boundary, key) + "\r\n\r\n"
                 + NetworkRequest::encodeRestValue(QVariant(text)).toUtf8() + "\r\n");
}

bool appendFile(NetworkFormData *form, const QByteArray &boundary, const QString &key,
                const FormFile &file)
{
    form->append(disposition(boundary, key) + "; filename=\"" + file.fileName.toUtf8()
                 + "\"\r\nContent-Type: " + file.contentType.toUtf8() + "\r\n\r\n");
    return form->appendPath(file.path, file.offset, file.size) && form->append("\r\n");
}

QVariantList exportSslErrors(const QList<QSslError> &errors)
{
    QVariantList list;
    list.reserve(errors.size());
    for (const QSslError &error : errors)
        list.append(exportSslError(error));
    return list;
}

// Lets a reply that nobody waits for any more run to its end: a request being sent is received
// whole, and an answer is read away, for it would hold one of the manager's connections otherwise.
void letFinish(QNetworkReply *reply)
{
    if (reply->isFinished()) {
        reply->deleteLater();
        return;
    }
    reply->setReadBufferSize(responseFileBuffer);
    reply->readAll();
    QObject::connect(reply, &QNetworkReply::readyRead, reply, [reply] { reply->readAll(); });
    QObject::connect(reply, &QNetworkReply::finished, reply, &QNetworkReply::deleteLater);
}

} // namespace

/*!
    \qmltype NetworkRequest
    \inqmlmodule Zemrik.Tessaline
    \brief An HTTP request in the manner of XMLHttpRequest, with uploads and downloads of files.

    \qml
    NetworkRequest {
        id: request

        url: "https://maps.example.com/upload"
        method: "POST"
        responseType: "json"

        onReadyStateChanged: {
            if (readyState === NetworkRequest.ReadyStateComplete && errorCode === 0)
                console.log(status, "stored as", response.id);
        }
        onError: console.warn(errorCode, errorText)

        Component.onCompleted: send({
            title: "Harbour",
            photo: "@" + Tessaline.resolvedPath("~/harbour.jpg") + ";filename=photo.jpg"
        })
    }
    \endqml

    Nothing blocks. All requests of an engine share its network access manager, and so its cookies,
    connections, credentials and proxy.

    \section1 Ready states

    Each state has two names. Those of XMLHttpRequest stand for the same numbers, not for the same
    moments: nothing is known of the answer in state 2.

    \table
    \header \li \li Name, alias \li Meaning
    \row \li 0 \li \c ReadyStateUninitialized, \c UNSENT
         \li No \l url was ever set. A \l send() is refused.
    \row \li 1 \li \c ReadyStateInitialized, \c OPENED
         \li A URL is set and nothing is under way.
    \row \li 2 \li \c ReadyStateSending, \c HEADERS_RECEIVED
         \li Sent. The body is being uploaded, the answer awaited, or a redirect followed.
    \row \li 3 \li \c ReadyStateProcessing, \c LOADING
         \li The first data of the final answer has come. An answer without a body skips this state.
    \row \li 4 \li \c ReadyStateComplete, \c DONE
         \li Finished, well or not. The request can be sent again as it is.
    \endtable

    What the properties hold in the states:

    \table
    \header \li Property \li 0 and 1 \li 2 \li 3 \li 4
    \row \li \l url, \l method, \l async
         \li can be written \li refused \li refused \li can be written
    \row \li \l headers, \l uploadPrefix
         \li taken at \l send() \li no effect \li no effect \li taken at \l send()
    \row \li \l followRedirects, \l ignoreSslErrors
         \li can be written \li in force \li no effect \li can be written
    \row \li \l responsePath
         \li can be written \li taken at the first data
         \li refused while the file is open, else for the next \l send() \li can be written
    \row \li \l responseType
         \li can be written \li can be written \li taken at the end \li can be written
    \row \li \l requestBody
         \li empty at first \li what was sent \li what was sent \li what was sent
    \row \li \l status, \l statusText, \l responseHeaders
         \li empty at first \li empty \li of the answer \li of the answer; empty if no data came
    \row \li \l responseText
         \li empty \li empty \li as far as it has come \li whole; empty if it went to a file
    \row \li \l response
         \li undefined \li undefined \li undefined \li decoded by \l responseType
    \row \li \l errorCode, \l errorText
         \li empty at first \li empty \li empty, unless the file can't be opened \li of the transfer
    \row \li \l progress
         \li 0 \li 0 to 0.5: an uploaded form \li 0.5 to 1: the answer
         \li 1; 0 if a file to upload can't be opened, below 1 if the answer was cut
    \endtable

    A \l send() resets all that belongs to an answer before it enters state 2. What is refused
    leaves everything as it is, except that \l errorText becomes "UNEXPECTED".

    \section1 Status codes

    The type has a name for each common status, to compare \l status with: \c StatusCodeOK,
    \c StatusCodeNotModified, \c StatusCodeNotFound and so on.
*/

NetworkRequest::NetworkRequest(QObject *parent)
    : QObject(parent)
    , m_headers(new NetworkRequestHeaders(this))
    , m_responseLimit(responseMemoryLimit)
{
}

NetworkRequest::~NetworkRequest()
{
    const QPointer<QNetworkAccessManager> manager(m_manager.data());
    setNetworkAccessManager(nullptr);
    if (!m_pendingReply)
        return;
    releaseFormData();
    m_pendingReply->disconnect(this);
    if (manager && manager->parent() == this) {
        // Its own manager must outlive the reply.
        manager->setParent(nullptr);
        connect(m_pendingReply, &QObject::destroyed, manager, &QObject::deleteLater);
    }
    letFinish(m_pendingReply);
}

void NetworkRequest::setNetworkAccessManager(QNetworkAccessManager *manager)
{
    using Manager = QNetworkAccessManager;
    if (m_manager)
        m_manager->disconnect(this);
    m_manager = manager;
    if (!manager)
        return;
    connect(manager, &Manager::authenticationRequired, this,
            &NetworkRequest::onAuthenticationRequired);
    connect(manager, &Manager::encrypted, this, &NetworkRequest::onEncrypted);
    connect(manager, &Manager::finished, this, &NetworkRequest::onFinished);
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED // deprecated with bearer management; logged all the same
        connect(manager, &Manager::networkAccessibleChanged, this,
                &NetworkRequest::onNetworkAccessibleChanged);
    QT_WARNING_POP
    connect(manager, &Manager::proxyAuthenticationRequired, this,
            &NetworkRequest::onProxyAuthenticationRequired);
    connect(manager, &Manager::sslErrors, this, &NetworkRequest::onSslErrors);
}

/*!
    \qmlproperty url NetworkRequest::url
    Where the request goes. A different value leads to state 1. It can't be written in the states 2
    and 3. A redirect doesn't change it.
*/

void NetworkRequest::setUrl(const QUrl &url)
{
    if (!checkReadyState() || !assignIfChanged(m_url, url))
        return;
    emit urlChanged();
    setReadyState(ReadyStateInitialized);
}

/*!
    \qmlproperty string NetworkRequest::method
    "GET" by default; always read in upper case. "POST", "PUT", "HEAD" and "DELETE" are sent as they
    are, any other method as "GET". It can't be written in the states 2 and 3.
*/

/*!
    \qmlproperty NetworkRequestHeaders NetworkRequest::headers
    \readonly
    The headers of the next request, each a property of this object:
    \c{headers["X-Client"] = "field"}. Unless there is a "Content-Type", the request carries
    "application/x-www-form-urlencoded".
*/

void NetworkRequest::setMethod(const QString &method)
{
    if (!checkReadyState() || m_method == method)
        return;
    m_method = method.toUpper();
    emit methodChanged();
}

/*!
    \qmlproperty bool NetworkRequest::async
    Kept for the likeness with XMLHttpRequest: every request is asynchronous. It can't be written in
    the states 2 and 3.
*/

void NetworkRequest::setAsync(bool async)
{
    if (!checkReadyState())
        return;
    m_async = async;
    emit asyncChanged(); // also for an equal value
}

/*!
    \qmlproperty bool NetworkRequest::followRedirects

    Whether the answers 301, 302 and 303 are followed; true by default. The follow-up is a GET that
    takes no header and no body over, and its target must be a whole HTTP address. The state stays 2
    meanwhile. Hops are not counted; writing false ends a loop. 307 and 308 are never followed: they
    complete as any other answer does.
*/

void NetworkRequest::setFollowRedirects(bool followRedirects)
{
    if (assignIfChanged(m_followRedirects, followRedirects))
        emit followRedirectsChanged();
}

/*!
    \qmlproperty bool NetworkRequest::ignoreSslErrors
    Whether a transfer goes on over a connection that can't be trusted; false by default. See
    \l sslErrors() and \l sslErrorsIgnored().
*/

void NetworkRequest::setIgnoreSslErrors(bool ignoreSslErrors)
{
    if (assignIfChanged(m_ignoreSslErrors, ignoreSslErrors))
        emit ignoreSslErrorsChanged();
}

/*!
    \qmlproperty string NetworkRequest::uploadPrefix

    What a value in an object given to \l send() begins with if it names a file to upload; "@" by
    default. Empty turns uploads off: set it so wherever a value may come from somebody else, or one
    that begins with the prefix would post a file of this machine.
*/

void NetworkRequest::setUploadPrefix(const QString &uploadPrefix)
{
    if (assignIfChanged(m_uploadPrefix, uploadPrefix))
        emit uploadPrefixChanged();
}

/*!
    \qmlproperty enumeration NetworkRequest::readyState
    How far the request is, see above. Writing it changes the number alone: a transfer under way
    goes on until the next \l send() drops it.
*/

/*!
    \qmlproperty int NetworkRequest::status
    \readonly
    The HTTP status, such as 404, from state 3 on until the next \l send(). 0 if the transfer
    delivered no data, as with an answer to HEAD or a connection that failed. It is notified with
    \l readyState.
*/

/*!
    \qmlproperty string NetworkRequest::statusText
    \readonly
    The status with its words, such as "404 Not Found", at the same times as \l status.
*/

void NetworkRequest::setReadyState(ReadyState readyState)
{
    if (assignIfChanged(m_readyState, readyState))
        emit readyStateChanged();
}

void NetworkRequest::reset()
{
    setReadyState(ReadyStateInitialized);
}

/*!
    \qmlproperty int NetworkRequest::errorCode
    \readonly
    0, or how the transfer failed: a number of \c{QNetworkReply::NetworkError}, for HTTP failures as
    well (203 for the status 404), or -1 if a file to upload can't be opened.
*/

/*!
    \qmlproperty string NetworkRequest::errorText
    \readonly
    What went wrong, in words; "UNEXPECTED" after a call or a write that the state didn't allow.
*/

void NetworkRequest::setErrorCode(int errorCode)
{
    if (!assignIfChanged(m_errorCode, errorCode))
        return;
    qCDebug(FRAMEWORK_NETWORK) << Q_FUNC_INFO << errorCode;
    emit errorCodeChanged();
}

void NetworkRequest::setErrorText(const QString &errorText)
{
    if (!assignIfChanged(m_errorText, errorText))
        return;
    qCDebug(FRAMEWORK_NETWORK) << Q_FUNC_INFO << errorText;
    emit errorTextChanged();
}

/*!
    \qmlproperty var NetworkRequest::requestBody
    \readonly
    What the last \l send() was given.
*/

/*!
    \qmlproperty string NetworkRequest::responseType

    What \l response becomes at the end, in upper or lower case:

    \table
    \header \li Value \li Response
    \row \li "json" \li the object or list that the body holds
    \row \li "base64" \li the bytes in Base64, for images and other binary data
    \row \li "text" or empty \li the same as \l responseText
    \row \li anything else \li undefined
    \endtable
*/

/*!
    \qmlproperty object NetworkRequest::responseHeaders
    \readonly
    The headers of the answer by the names that the server gave them, from state 3 on.
*/

void NetworkRequest::setResponseType(const QString &responseType)
{
    if (assignIfChanged(m_responseType, responseType))
        emit responseTypeChanged();
}

/*!
    \qmlproperty string NetworkRequest::responsePath

    The file that takes the answer's body, replacing an old one; empty by default, which keeps the
    body in memory. It may begin with a path variable, and its folder must exist. Memory stays flat
    whatever the size, and \l response and \l responseText are empty. An answer in memory may have
    512 MiB; a longer one fails with \l errorCode 5.

    The file comes into being with the first byte: an answer without a body leaves an old file
    alone. If it can't be opened the body is kept in memory. If it can't be written, or the transfer
    is aborted, the file is removed. The body of a failure, a 404 page say, goes there as well: look
    at \l status. The property can't be written while the file is open; a value written when data
    has come already is for the next \l send().

    An answer that the server packs, with gzip say, is unpacked in memory on its way to the file and
    may take much more than it has on the wire. From a server that isn't trusted, ask for none:
    \c{headers["Accept-Encoding"] = "identity"}. Nothing is unpacked then.
*/

/*!
    \qmlproperty string NetworkRequest::responseText
    \readonly

    The body as text, from UTF-8, up to the first zero byte. It grows in state 3 with each
    notification; empty when the body went to a file. A label bound to it has a copy made for each
    piece that comes, which is slow for long answers: take \l response at the end, or
    \l responsePath.
*/

/*!
    \qmlproperty var NetworkRequest::response
    \readonly
    The body, decoded by \l responseType, in state 4. Undefined when the body went to a file or the
    transfer was aborted.
*/

void NetworkRequest::setResponsePath(const QString &responsePath)
{
    if (m_responsePath == responsePath)
        return;
    if (m_responseFile) {
        setErrorText(QStringLiteral("Error: responsePath cannot be set when file is open"));
        return;
    }
    m_responsePath = responsePath;
    boundReadBuffer();
    emit responsePathChanged();
}

void NetworkRequest::setResponseLimit(qint64 bytes)
{
    m_responseLimit = qBound(qint64(0), bytes, responseMemoryLimit);
}

/*!
    \qmlproperty double NetworkRequest::progress
    \readonly
    0 to 1: the upload of a form in the first half, the download in the second. It doesn't move in
    the first half without files to upload, nor in the second if the server doesn't tell the length;
    it is 1 at the end. Two failures leave it lower: a file to upload that can't be opened (0), and
    an answer that was cut.
*/

void NetworkRequest::setProgress(double progress)
{
    if (assignIfChanged(m_progress, progress))
        emit progressChanged();
}

/*!
    \qmlproperty string NetworkRequest::user
    The name for a server that asks for one. It answers for every request of the engine; writing it
    makes all of them be asked again. A different value, of \l password and \l realm too, closes the
    connections of the engine: transfers that are under way, its other requests' included, end as
    cancelled (\l errorCode 5). So set all three before the first \l send().
*/

/*!
    \qmlproperty string NetworkRequest::password
    The password that goes with \l user.
*/

/*!
    \qmlproperty string NetworkRequest::realm
    The realm that goes with \l user; only needed where a server takes several.
*/

void NetworkRequest::setUser(const QString &user)
{
    if (m_user == user)
        return;
    clearAccessCache();
    m_user = user;
    emit userChanged();
}

void NetworkRequest::setPassword(const QString &password)
{
    if (m_password == password)
        return;
    clearAccessCache();
    m_password = password;
    emit passwordChanged();
}

void NetworkRequest::setRealm(const QString &realm)
{
    if (m_realm == realm)
        return;
    clearAccessCache();
    m_realm = realm;
    emit realmChanged();
}

/*!
    \qmlmethod void NetworkRequest::abort()

    Ends the transfer at its next data, sent or received: \l errorCode is then 5 (cancelled), and a
    file at \l responsePath is removed. A transfer of which nothing more comes isn't interrupted.
*/

void NetworkRequest::abort()
{
    m_aborted = true;
}

/*!
    \qmlmethod void NetworkRequest::open(string method, url url, bool async)
    Sets the properties \a method, \a async (true if it is left out) and \a url. Nothing is sent
    yet.
*/

void NetworkRequest::open(const QString &method, const QUrl &url, bool async)
{
    if (!checkReadyState())
        return;
    setMethod(method);
    setAsync(async);
    setUrl(url);
}

void NetworkRequest::open(const QString &method, const QUrl &url)
{
    open(method, url, true);
}

/*!
    \qmlmethod void NetworkRequest::send(var body)

    Sends the request with \a body. It is refused in the states 0, 2 and 3.

    \table
    \header \li Body \li What is sent
    \row \li none \li nothing but headers; an empty body for "POST" and "PUT"
    \row \li a text \li with "POST" and "PUT" the text in UTF-8; nothing with other methods
    \row \li an object \li with "POST" and "PUT" a form body, otherwise a query behind the URL
    \row \li an object with a file \li a form of several parts, by "PUT" or else by "POST"
    \row \li anything else \li nothing, and a warning is logged
    \endtable

    The query of an object stands behind a "?" of its own, and a form body begins with the query
    items of the URL.

    A value that begins with \l uploadPrefix names a file, with options behind semicolons:
    \c{"@/path/file.png;type=image/png;filename=name.png;offset=0;size=1000"}. The path is taken as
    it stands, without path variables. Fields come first, then files, each in the order of their
   names; files are read while they are sent. If one can't be opened, nothing is sent: \l errorCode
   is -1.
*/

void NetworkRequest::send(const QVariant &body)
{
    // A handler of the signal may send in its turn; one that does so for every send stops here.
    if (m_bodySignalDepth > 1) {
        refuseSend(Q_FUNC_INFO);
        return;
    }
    {
        const QScopedValueRollback<int> depth(m_bodySignalDepth, m_bodySignalDepth + 1);
        m_requestBody = body;
        emit requestBodyChanged();
    }

    const QVariantMap headers = headerMap();
    if (body.isNull()) {
        send(QString(), headers);
    } else if (body.type() == QVariant::String) {
        send(body.toString(), headers);
    } else if (body.canConvert<QJSValue>()) {
        send(body.value<QJSValue>(), headers);
    } else if (body.canConvert<QVariantMap>()) {
        send(body.toMap(), headers);
    } else {
        // Users look for this text; nothing is sent for a body of another type.
        qCWarning(FRAMEWORK_NETWORK) << Q_FUNC_INFO << "TODO";
        qCWarning(FRAMEWORK_NETWORK) << Q_FUNC_INFO << "body:" << body;
    }
}

void NetworkRequest::send()
{
    send(QVariant());
}

void NetworkRequest::send(const QString &body, const QVariantMap &headers)
{
    send(m_method, m_url, body.toUtf8(), headers);
}

void NetworkRequest::send(const QJSValue &body, const QVariantMap &headers)
{
    if (!body.isObject()) {
        qCDebug(FRAMEWORK_NETWORK) << Q_FUNC_INFO << "UNEXPECTED";
        return;
    }
    QVariantMap map;
    QJSValueIterator it(body);
    while (it.next())
        map.insert(it.name(), it.value().toVariant());
    send(map, headers);
}

void NetworkRequest::send(const QVariantMap &body, const QVariantMap &headers)
{
    QUrlQuery query(m_url);
    for (auto it = body.begin(); it != body.end(); ++it) {
        const QString text = it.value().toString();
        if (isFileSpecification(text)) {
            sendFormData(body, headers);
            return;
        }
        query.addQueryItem(it.key(), text);
    }

    const QString form = query.query();
    if (isMethod(m_method, "POST") || isMethod(m_method, "PUT")) {
        send(m_method, m_url, form.toUtf8(), headers);
        return;
    }
    // A query that the URL has already is repeated behind a second "?".
    const QUrl target(m_url.toString() + QLatin1Char('?') + form);
    const bool known = isMethod(m_method, "DELETE") || isMethod(m_method, "HEAD");
    send(known ? m_method : QStringLiteral("GET"), target, QByteArray(), headers);
}

void NetworkRequest::send(const QString &method, const QUrl &url, const QVariant &body,
                          const QVariantMap &headers)
{
    const bool ready = m_readyState == ReadyStateInitialized || m_readyState == ReadyStateComplete;
    if (!ready || m_beginning) {
        refuseSend(Q_FUNC_INFO);
        return;
    }
    // The arguments may be members, which a handler of the beginning can change.
    const QString sentMethod(method); // NOLINT(performance-unnecessary-copy-initialization)
    const QUrl sentUrl(url);          // NOLINT(performance-unnecessary-copy-initialization)
    beginTransfer();

    m_pendingRequest = std::make_unique<QNetworkRequest>(sentUrl);
    setHeaders(*m_pendingRequest, headers);
    if (deviceOf(body) != m_formData)
        releaseFormData(); // of a transfer that a script left behind by writing readyState
    discardPendingReply();
    if (QNetworkReply *reply = transmit(sentMethod, body))
        setPendingReply(reply);
}

QNetworkReply *NetworkRequest::transmit(const QString &method, const QVariant &body)
{
    QNetworkAccessManager *manager = neededManager();
    const bool post = isMethod(method, "POST");
    if (post || isMethod(method, "PUT")) {
        if (QIODevice *device = deviceOf(body))
            return post ? manager->post(*m_pendingRequest, device)
                        : manager->put(*m_pendingRequest, device);
        if (!body.isNull() && body.type() != QVariant::ByteArray) {
            qCDebug(FRAMEWORK_NETWORK) << Q_FUNC_INFO << "UNEXPECTED";
            return nullptr;
        }
        const QByteArray bytes = body.toByteArray();
        return post ? manager->post(*m_pendingRequest, bytes)
                    : manager->put(*m_pendingRequest, bytes);
    }
    if (isMethod(method, "HEAD"))
        return manager->head(*m_pendingRequest);
    if (isMethod(method, "DELETE"))
        return manager->deleteResource(*m_pendingRequest);
    return manager->get(*m_pendingRequest);
}

void NetworkRequest::sendFormData(const QVariantMap &values, const QVariantMap &headers)
{
    if (m_beginning) {
        refuseSend(Q_FUNC_INFO);
        return;
    }
    takeFormData();
    m_formData = new NetworkFormData(this);
    connect(m_formData, &NetworkFormData::readProgress, this, &NetworkRequest::onFormDataProgress);

    const QByteArray boundary =
        QByteArray(27, '-') + QByteArray::number(QDateTime::currentMSecsSinceEpoch());
    QString failedPath;
    if (!assembleFormData(values, boundary, &failedPath)) {
        failFormData(failedPath);
        return;
    }
    QVariantMap allHeaders = headers;
    allHeaders.insert(contentTypeKey, QString(QLatin1String("multipart/form-data; boundary=")
                                              + QLatin1String(boundary)));
    send(isMethod(m_method, "PUT") ? QStringLiteral("PUT") : QStringLiteral("POST"), m_url,
         QVariant::fromValue<QObject *>(m_formData), allHeaders);
}

bool NetworkRequest::isFileSpecification(const QString &text) const
{
    return !m_uploadPrefix.isEmpty() && text.startsWith(m_uploadPrefix);
}

// All plain fields come first, then the files, each in the order of their keys.
bool NetworkRequest::assembleFormData(const QVariantMap &values, const QByteArray &boundary,
                                      QString *failedPath)
{
    for (auto it = values.begin(); it != values.end(); ++it) {
        const QString text = it.value().toString();
        if (!isFileSpecification(text))
            appendField(m_formData, boundary, it.key(), text);
    }
    for (auto it = values.begin(); it != values.end(); ++it) {
        const QString text = it.value().toString();
        if (!isFileSpecification(text))
            continue;
        const FormFile file = FormFile::fromText(text.mid(m_uploadPrefix.size()));
        if (!appendFile(m_formData, boundary, it.key(), file)) {
            *failedPath = file.path;
            return false;
        }
    }
    return m_formData->append("--" + boundary + "--\r\n");
}

// A form whose file can't be opened fails as a transfer does, though nothing was sent. A transfer
// that runs meanwhile must not be made to look finished: there it is refused like any other send.
void NetworkRequest::failFormData(const QString &path)
{
    m_formData->deleteLater();
    m_formData = nullptr;
    if (isRunning()) {
        refuseSend(Q_FUNC_INFO);
        return;
    }
    beginTransfer();
    // A transfer that a script left behind by writing readyState must not end this one's states.
    discardPendingReply();
    m_pendingRequest.reset();

    // A handler that writes readyState may begin a new transfer: the rest is no longer ours then.
    const quint64 transfer = m_transfer;
    setErrorCode(-1);
    if (transfer == m_transfer)
        setErrorText(QStringLiteral("Cannot open %1").arg(path));
    if (transfer == m_transfer)
        emit error();
    if (transfer == m_transfer)
        setReadyState(ReadyStateComplete);
}

// Takes the body from an upload that still reads it; that transfer then ends as cancelled. Not at
// once: aborting ends it before the call returns, and the caller has yet to see that it is running.
void NetworkRequest::takeFormData()
{
    if (!m_formData)
        return;
    QNetworkReply *reply = m_pendingReply;
    releaseFormData();
    if (reply && reply->operation() != QNetworkAccessManager::GetOperation) // not a redirect's
        QMetaObject::invokeMethod(reply, &QNetworkReply::abort, Qt::QueuedConnection);
}

// The reply may read the body for as long as it lives.
void NetworkRequest::releaseFormData()
{
    if (!m_formData)
        return;
    m_formData->disconnect(this);
    if (m_pendingReply)
        m_formData->setParent(m_pendingReply);
    else
        m_formData->deleteLater();
    m_formData = nullptr;
}

void NetworkRequest::classBegin() {}

void NetworkRequest::componentComplete()
{
    if (QQmlEngine *engine = qmlEngine(this))
        setNetworkAccessManager(engine->networkAccessManager());
}

QString NetworkRequest::defaultContentType(const QString &suffix)
{
    struct Type
    {
        const char *suffix;
        const char *contentType;
    };
    static const Type types[] = {
        {"png", "image/png"},       {"jpg", "image/jpeg"},  {"jpeg", "image/jpeg"},
        {"jfif", "image/jpeg"},     {"gif", "image/gif"},   {"tif", "image/tiff"},
        {"tiff", "image/tiff"},     {"txt", "text/plain"},  {"csv", "text/plain"},
        {"zip", "application/zip"}, {"mp3", "audio/basic"}, {"mpeg", "audio/basic"},
        {"xml", "text/xml"},
    };
    for (const Type &type : types) {
        if (suffix == QLatin1String(type.suffix))
            return QLatin1String(type.contentType);
    }
    return QStringLiteral("application/octet-stream");
}

QString NetworkRequest::encodeRestValue(const QVariant &value)
{
    if (value.isNull())
        return QString();
    switch (static_cast<QMetaType::Type>(value.type())) {
    case QMetaType::Int:
        return QString::number(value.toInt(), 10);
    case QMetaType::Double:
        return QString::number(value.toDouble(), 'g', 6);
    case QMetaType::QVariantList:
        return encodeRestValue(value.toList());
    case QMetaType::QString:
        return value.toString();
    case QMetaType::QStringList:
        return encodeRestValue(value.toStringList());
    default:
        if (value.canConvert<bool>())
            return encodeRestValue(value.toBool());
        return QString::fromUtf8(QJsonDocument::fromVariant(value).toJson());
    }
}

QString NetworkRequest::encodeRestValue(const QVariantList &list)
{
    QStringList texts;
    texts.reserve(list.size());
    for (const QVariant &value : list)
        texts.append(encodeRestValue(value));
    return encodeRestValue(texts);
}

QString NetworkRequest::encodeRestValue(const QStringList &list)
{
    return list.join(QLatin1Char(','));
}

QString NetworkRequest::encodeRestValue(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

void NetworkRequest::onAuthenticationRequired(QNetworkReply *reply, QAuthenticator *authenticator)
{
    // Every request on the manager answers every challenge; the last value given wins.
    qCDebug(FRAMEWORK_NETWORK) << Q_FUNC_INFO << "Begin";
    // Asked again, the same values were refused. Qt would try them again and again, since each
    // write to the authenticator counts as a new answer.
    if (reply && reply == m_challengedReply)
        return;
    m_challengedReply = reply;
    if (!m_user.isEmpty())
        authenticator->setUser(m_user);
    if (!m_password.isEmpty())
        authenticator->setPassword(m_password);
    if (!m_realm.isEmpty())
        authenticator->setRealm(m_realm);
}

void NetworkRequest::onEncrypted(QNetworkReply *reply)
{
    Q_UNUSED(reply)
}

/*!
    \qmlsignal NetworkRequest::error()
    The transfer failed: see \l errorCode and \l errorText. It comes after \l response is there and
    before state 4. Statuses from 400 on are failures too.
*/

void NetworkRequest::onFinished(QNetworkReply *reply)
{
    if (!reply || reply != m_pendingReply)
        return;
    const QScopedValueRollback<int> depth(m_replySignalDepth, m_replySignalDepth + 1);
    if (followRedirect(reply))
        return;

    // A handler that writes readyState may begin a new transfer: the rest is no longer ours then.
    const quint64 transfer = m_transfer;
    const auto superseded = [this, transfer] { return m_transfer != transfer; };

    m_bytesTotal = contentLengthOf(reply);
    setProgress(1.0);
    if (superseded())
        return;
    if (!m_aborted && !m_bodyDropped && reply->isOpen())
        appendResponse(reply->readAll());
    if (superseded())
        return;
    if (m_responseFile && !m_aborted && !m_responseFile->flush())
        failResponseFile();
    if (superseded())
        return;

    const bool storeFailed = !m_storeError.isEmpty();
    setErrorCode(storeFailed ? QNetworkReply::OperationCanceledError : reply->error());
    if (superseded())
        return;
    setErrorText(storeFailed ? m_storeError : m_errorCode != 0 ? reply->errorString() : QString());
    if (superseded())
        return;

    reply->deleteLater();
    m_pendingReply = nullptr;
    m_pendingRequest.reset();
    if (m_formData) {
        m_formData->disconnect(this);
        m_formData->clear();
        m_formData->deleteLater();
        m_formData = nullptr;
    }
    if (m_responseFile) {
        closeResponseFile();
    } else {
        decodeResponse();
        emit responseChanged();
        if (superseded())
            return;
    }
    if (m_errorCode != 0)
        emit error();
    if (!superseded())
        setReadyState(ReadyStateComplete);
}

QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED // as in the header
    void
    NetworkRequest::onNetworkAccessibleChanged(
        QNetworkAccessManager::NetworkAccessibility accessible)
{
    Q_UNUSED(accessible)
    qCDebug(FRAMEWORK_NETWORK) << Q_FUNC_INFO;
}

QT_WARNING_POP

void NetworkRequest::onProxyAuthenticationRequired(const QNetworkProxy &proxy,
                                                   QAuthenticator *authenticator)
{
    // The credentials come from the proxy itself, see NetworkProxy.
    Q_UNUSED(proxy)
    Q_UNUSED(authenticator)
    qCDebug(FRAMEWORK_NETWORK) << Q_FUNC_INFO;
}

/*!
    \qmlsignal NetworkRequest::sslErrors(list errors)

    The server can't be trusted, and the transfer is about to fail; a handler can't change that.
    Each of \a errors is a map with \c error (a number of \c{QSslError::SslError}), \c errorString
    and \c certificate. The certificate is a map with \c effectiveDate, \c expiryDate,
    \c isBlacklisted, \c isNull, \c isSelfSigned, \c text, and the names in \c subject and \c issuer:
    maps of lists under "CN", "O", "OU", "L", "ST", "C", "EM", "SN" and "DQ", as far as there are
    any.
*/

/*!
    \qmlsignal NetworkRequest::sslErrorsIgnored(list errors)
    The server can't be trusted, and the transfer goes on because of \l ignoreSslErrors. The
    \a errors are as in \l sslErrors().
*/

void NetworkRequest::onSslErrors(QNetworkReply *reply, const QList<QSslError> &errors)
{
    if (!reply || reply != m_pendingReply)
        return;
    const QScopedValueRollback<int> depth(m_replySignalDepth, m_replySignalDepth + 1);
    qCDebug(FRAMEWORK_NETWORK) << Q_FUNC_INFO << errors;
    const QVariantList list = exportSslErrors(errors);
    if (m_ignoreSslErrors) {
        reply->ignoreSslErrors();
        emit sslErrorsIgnored(list);
    } else {
        qCDebug(FRAMEWORK_NETWORK) << Q_FUNC_INFO << errors;
        emit sslErrors(list);
    }
}

void NetworkRequest::onReadyRead()
{
    auto *reply = qobject_cast<QNetworkReply *>(sender());
    if (!reply || reply != m_pendingReply)
        return;
    const QScopedValueRollback<int> depth(m_replySignalDepth, m_replySignalDepth + 1);

    m_status = statusOf(reply);
    if (m_aborted) {
        reply->abort();
        return;
    }
    if (m_bodyDropped || willFollow(reply)) {
        // Nobody wants the body of a redirect, and it may be of any length.
        m_bodyDropped = true;
        reply->setReadBufferSize(responseFileBuffer);
        reply->readAll();
        return;
    }
    if (m_followRedirects && isRedirect(m_status)) {
        // It leads nowhere. Not read before the end, so it must be able to come in whole.
        reply->setReadBufferSize(0);
        if (reply->bytesAvailable() > m_responseLimit)
            failResponse(tooLong);
        return;
    }
    if (m_readyState != ReadyStateProcessing)
        readHeaders(reply);
    if (reply != m_pendingReply)
        return; // a handler began a new transfer
    m_bytesTotal = contentLengthOf(reply);
    appendResponse(reply->readAll());
}

void NetworkRequest::onFormDataProgress(double progress)
{
    // The reply is reading its body: it can't be deleted from here.
    const QScopedValueRollback<int> depth(m_replySignalDepth, m_replySignalDepth + 1);
    setProgress(progress * 0.5);
    if (!m_aborted || !m_formData)
        return;
    m_formData->setAborted(true);
    if (m_pendingReply)
        m_pendingReply->abort();
}

QNetworkAccessManager *NetworkRequest::neededManager()
{
    if (!m_manager) {
        QQmlEngine *engine = qmlEngine(this);
        setNetworkAccessManager(engine ? engine->networkAccessManager()
                                       : new QNetworkAccessManager(this));
    }
    return m_manager;
}

void NetworkRequest::clearAccessCache()
{
    m_challengedReply.clear();
    if (!m_manager)
        return;
    // The call ends the thread that serves the manager's transfers: those that run would never hear
    // of anything again. They end as cancelled, but not before the caller has the new value.
    const auto replies =
        m_manager->findChildren<QNetworkReply *>(QString(), Qt::FindDirectChildrenOnly);
    m_manager->clearAccessCache();
    for (QNetworkReply *reply : replies) {
        if (!reply->isFinished())
            QMetaObject::invokeMethod(reply, &QNetworkReply::abort, Qt::QueuedConnection);
    }
}

bool NetworkRequest::isRunning() const
{
    return m_readyState == ReadyStateSending || m_readyState == ReadyStateProcessing;
}

bool NetworkRequest::checkReadyState()
{
    if (!isRunning())
        return true;
    setErrorText(unexpected);
    return false;
}

void NetworkRequest::refuseSend(const char *function)
{
    qCWarning(FRAMEWORK_NETWORK) << function << "readyState error";
    setErrorText(unexpected);
}

// A key that was only read has an invalid value and is no header.
QVariantMap NetworkRequest::headerMap() const
{
    QVariantMap map;
    const QStringList keys = m_headers->keys();
    for (const QString &key : keys) {
        const QVariant value = m_headers->value(key, QVariant());
        if (value.isValid())
            map.insert(key, value);
    }
    return map;
}

void NetworkRequest::setPendingReply(QNetworkReply *reply)
{
    m_pendingReply = reply;
    m_bodyDropped = false;
    boundReadBuffer();
    connect(reply, &QNetworkReply::readyRead, this, &NetworkRequest::onReadyRead);
}

void NetworkRequest::discardPendingReply()
{
    QNetworkReply *reply = m_pendingReply;
    if (!reply)
        return;
    m_pendingReply = nullptr;
    reply->disconnect(this);
    if (m_replySignalDepth > 0)
        reply->deleteLater();
    else
        delete reply;
}

// Clears what the last transfer left and enters state 2.
void NetworkRequest::beginTransfer()
{
    const QScopedValueRollback<bool> beginning(m_beginning, true);
    ++m_transfer;
    m_startTime = QDateTime::currentDateTimeUtc();
    m_estimatedEndTime.clear();
    m_percentComplete.clear();
    m_responseHeaders.clear();
    m_status = 0;
    m_statusText.clear();
    m_aborted = false;
    emit responseHeadersChanged();
    emit progressChanged();
    clearResponse();
    setErrorCode(0);
    setErrorText(QString());
    setReadyState(ReadyStateSending);
}

void NetworkRequest::clearResponse()
{
    m_bytesReceived = 0;
    m_bytesTotal = 0;
    setProgress(0);
    m_responseFile.reset();
    m_storeError.clear();
    m_responseBytes.clear();
    m_responseText.clear();
    m_response.clear();
    emit responseChanged();
    emit responseTextChanged();
}

bool NetworkRequest::willFollow(const QNetworkReply *reply) const
{
    const QUrl target = redirectTarget(reply);
    return m_followRedirects && isRedirect(statusOf(reply)) && !target.isEmpty()
           && isWebTarget(target);
}

// The follow-up takes nothing over from the request that was redirected.
bool NetworkRequest::followRedirect(QNetworkReply *reply)
{
    const QUrl target = redirectTarget(reply);
    if (!m_followRedirects || !isRedirect(statusOf(reply)) || target.isEmpty())
        return false;
    if (m_aborted && reply->error() == QNetworkReply::OperationCanceledError)
        return false; // the script has ended it, here and not at the next hop
    if (!isWebTarget(target)) {
        qCWarning(FRAMEWORK_NETWORK) << Q_FUNC_INFO << "Redirect refused:" << target.scheme();
        return false;
    }
    reply->deleteLater();
    m_pendingRequest = std::make_unique<QNetworkRequest>(target);
    setPendingReply(neededManager()->get(*m_pendingRequest));
    return true;
}

void NetworkRequest::readHeaders(const QNetworkReply *reply)
{
    m_statusText = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toString()
                   + QLatin1Char(' ')
                   + reply->attribute(QNetworkRequest::HttpReasonPhraseAttribute).toString();
    m_responseHeaders.clear();
    const QList<QNetworkReply::RawHeaderPair> pairs = reply->rawHeaderPairs();
    for (const QNetworkReply::RawHeaderPair &pair : pairs)
        m_responseHeaders.insert(QString::fromUtf8(pair.first), QString::fromUtf8(pair.second));
    emit responseHeadersChanged();
    if (reply == m_pendingReply)
        setReadyState(ReadyStateProcessing);
}

void NetworkRequest::appendResponse(const QByteArray &bytes)
{
    if (bytes.isEmpty())
        return;
    const quint64 transfer = m_transfer;
    // The file comes into being with the first byte: an empty answer leaves an old file alone, and
    // an answer of which memory holds the beginning stays there.
    if (m_bytesReceived == 0 && !m_responsePath.isEmpty())
        openResponseFile();
    if (transfer != m_transfer)
        return; // a handler began a new transfer
    if (m_responseFile) {
        if (m_responseFile->write(bytes) != bytes.size())
            failResponseFile();
    } else if (m_responseBytes.size() + qint64(bytes.size()) > m_responseLimit) {
        failResponse(tooLong);
    } else {
        m_responseBytes.append(bytes);
    }
    if (transfer != m_transfer)
        return;
    m_bytesReceived += bytes.size();
    emit responseTextChanged();
    if (transfer == m_transfer)
        updateProgress();
}

void NetworkRequest::updateProgress()
{
    if (m_bytesTotal < 1)
        return;
    const qint64 elapsed = m_startTime.msecsTo(QDateTime::currentDateTimeUtc());
    if (elapsed > 9) {
        // A server may announce any length, and then there is no saying when it ends.
        if (m_bytesTotal < std::numeric_limits<qint64>::max() / elapsed)
            m_estimatedEndTime = m_startTime.addMSecs(elapsed * m_bytesTotal / m_bytesReceived);
        m_percentComplete = double(m_bytesReceived) * 100.0 / double(m_bytesTotal);
    }
    setProgress(double(m_bytesReceived) * 0.5 / double(m_bytesTotal) + 0.5);
}

void NetworkRequest::decodeResponse()
{
    m_response.clear();
    if (m_aborted)
        return;
    if (isType(m_responseType, "json")) {
        const bool convertNull =
            responseText().contains(QLatin1String("null"), Qt::CaseInsensitive);
        m_response = JsonUtility::toVariant(m_responseBytes, convertNull);
    } else if (isType(m_responseType, "base64")) {
        m_response = QString::fromLatin1(m_responseBytes.toBase64());
    } else if (m_responseType.isEmpty() || isType(m_responseType, "text")) {
        m_response = responseText();
    }
}

void NetworkRequest::openResponseFile()
{
    const QString path = FileUtility::resolvedPath(m_responsePath, true);
    QFile::remove(path);
    auto file = std::make_unique<QFile>(path);
    if (FileUtility::hasUsableName(path) && file->open(QIODevice::ReadWrite)) {
        m_responseFile = std::move(file);
    } else {
        setErrorText(QStringLiteral("Cannot open ") + path);
    }
}

// A file with a hole is worth nothing: it goes at the end.
void NetworkRequest::failResponseFile()
{
    qCWarning(FRAMEWORK_NETWORK) << Q_FUNC_INFO << "Cannot write" << m_responseFile->fileName()
                                 << m_responseFile->errorString();
    failResponse(QStringLiteral("Cannot write ") + m_responseFile->fileName());
}

// What can't be kept isn't worth receiving: the transfer stops at the next data and ends as
// cancelled. The beginning is of no use either.
void NetworkRequest::failResponse(const QString &errorText)
{
    m_aborted = true;
    m_storeError = errorText;
    m_responseBytes.clear();
    m_responseText.clear();
    setErrorText(errorText);
}

void NetworkRequest::closeResponseFile()
{
    m_responseFile->close();
    if (m_aborted)
        m_responseFile->remove();
    m_responseFile.reset();
}

void NetworkRequest::boundReadBuffer()
{
    if (m_pendingReply)
        m_pendingReply->setReadBufferSize(m_responsePath.isEmpty() ? 0 : responseFileBuffer);
}

QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED // moc repeats the slot's type
#include "moc_NetworkRequest.cpp"
    QT_WARNING_POP
