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

#include <utility>

namespace {

const QLatin1String unexpected("UNEXPECTED");
const QLatin1String contentTypeKey("Content-Type");

// How much of an answer may wait for its file. Without a bound a fast server fills the memory.
const qint64 responseFileBuffer = 256 * 1024;

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

NetworkRequest::NetworkRequest(QObject *parent)
    : QObject(parent)
    , m_headers(new NetworkRequestHeaders(this))
{
}

NetworkRequest::~NetworkRequest()
{
    QPointer<QNetworkAccessManager> manager = m_manager;
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

void NetworkRequest::setUrl(const QUrl &url)
{
    if (!checkReadyState() || !assignIfChanged(m_url, url))
        return;
    emit urlChanged();
    setReadyState(ReadyStateInitialized);
}

void NetworkRequest::setMethod(const QString &method)
{
    if (!checkReadyState() || m_method == method)
        return;
    m_method = method.toUpper();
    emit methodChanged();
}

void NetworkRequest::setAsync(bool async)
{
    if (!checkReadyState())
        return;
    m_async = async;
    emit asyncChanged(); // also for an equal value
}

void NetworkRequest::setFollowRedirects(bool followRedirects)
{
    if (assignIfChanged(m_followRedirects, followRedirects))
        emit followRedirectsChanged();
}

void NetworkRequest::setIgnoreSslErrors(bool ignoreSslErrors)
{
    if (assignIfChanged(m_ignoreSslErrors, ignoreSslErrors))
        emit ignoreSslErrorsChanged();
}

void NetworkRequest::setUploadPrefix(const QString &uploadPrefix)
{
    if (assignIfChanged(m_uploadPrefix, uploadPrefix))
        emit uploadPrefixChanged();
}

void NetworkRequest::setReadyState(ReadyState readyState)
{
    if (assignIfChanged(m_readyState, readyState))
        emit readyStateChanged();
}

void NetworkRequest::reset()
{
    setReadyState(ReadyStateInitialized);
}

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

void NetworkRequest::setResponseType(const QString &responseType)
{
    if (assignIfChanged(m_responseType, responseType))
        emit responseTypeChanged();
}

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

void NetworkRequest::setProgress(double progress)
{
    if (assignIfChanged(m_progress, progress))
        emit progressChanged();
}

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

void NetworkRequest::abort()
{
    m_aborted = true;
}

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
    beginTransfer();

    m_pendingRequest = std::make_unique<QNetworkRequest>(url);
    setHeaders(*m_pendingRequest, headers);
    if (deviceOf(body) != m_formData)
        releaseFormData(); // of a transfer that a script left behind by writing readyState
    discardPendingReply();
    if (QNetworkReply *reply = transmit(method, body))
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
    setErrorCode(-1);
    setErrorText(QStringLiteral("Cannot open %1").arg(path));
    emit error();
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
    if (!m_aborted && reply->isOpen())
        appendResponse(reply->readAll());
    if (superseded())
        return;
    if (m_responseFile && !m_aborted && !m_responseFile->flush())
        failResponseFile();
    if (superseded())
        return;

    const bool writeFailed = !m_writeError.isEmpty();
    setErrorCode(writeFailed ? QNetworkReply::OperationCanceledError : reply->error());
    if (superseded())
        return;
    setErrorText(writeFailed ? m_writeError : m_errorCode != 0 ? reply->errorString() : QString());
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
    if (m_followRedirects && isRedirect(m_status)) {
        // Not read before the end, so it must be able to come in whole.
        reply->setReadBufferSize(0);
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
    if (m_manager)
        m_manager->clearAccessCache();
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
    m_responseInMemory = false;
    m_writeError.clear();
    m_responseBytes.clear();
    m_responseText.clear();
    m_response.clear();
    emit responseChanged();
    emit responseTextChanged();
}

// The follow-up takes nothing over from the request that was redirected.
bool NetworkRequest::followRedirect(QNetworkReply *reply)
{
    const QUrl target = reply->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
    if (!m_followRedirects || !isRedirect(statusOf(reply)) || target.isEmpty())
        return false;
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
    // The file comes into being with the first byte: an empty answer leaves an old file alone.
    if (!m_responseFile && !m_responseInMemory && !m_responsePath.isEmpty())
        openResponseFile();
    if (transfer != m_transfer)
        return; // a handler began a new transfer
    if (!m_responseFile)
        m_responseBytes.append(bytes);
    else if (m_responseFile->write(bytes) != bytes.size())
        failResponseFile();
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
    if (file->open(QIODevice::ReadWrite)) {
        m_responseFile = std::move(file);
    } else {
        m_responseInMemory = true;
        setErrorText(QStringLiteral("Cannot open ") + path);
    }
}

// A file with a hole is worth nothing: the transfer stops at the next data and ends as cancelled,
// and the file goes.
void NetworkRequest::failResponseFile()
{
    qCWarning(FRAMEWORK_NETWORK) << Q_FUNC_INFO << "Cannot write" << m_responseFile->fileName()
                                 << m_responseFile->errorString();
    m_aborted = true;
    m_writeError = QStringLiteral("Cannot write ") + m_responseFile->fileName();
    setErrorText(m_writeError);
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
