#pragma once

#include "network/NetworkRequestHeaders.h" // moc registers the type of a property it knows
#include "network/SslExport.h"
#include "network/Utf8Text.h"
#include "plugin/TessalineGlobal.h"

#include <QByteArray>
#include <QDateTime>
#include <QJSValue>
#include <QNetworkAccessManager>
#include <QObject>
#include <QPointer>
#include <QQmlParserStatus>
#include <QUrl>
#include <QVariantMap>

#include <memory>

class NetworkFormData;
class QAuthenticator;
class QFile;
class QIODevice;
class QNetworkProxy;
class QNetworkReply;
class QNetworkRequest;
class QSslError;

// A slot takes an enum that went out of use with bearer management (moc takes no pragma nearer to
// it).
QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED

// A scriptable HTTP request in the manner of XMLHttpRequest, which also uploads files as forms and
// downloads to files in flat memory. QML name: NetworkRequest. Nothing blocks; everything happens
// on the thread of the engine.
//
// Signals of a transfer, in order: responseHeadersChanged, progressChanged, responseChanged and
// responseTextChanged (all cleared), readyStateChanged (2); with the first data of the answer
// responseHeadersChanged, readyStateChanged (3); responseTextChanged and progressChanged with all
// data; at the end responseChanged, error() if it failed, readyStateChanged (4). An answer without
// data goes from 2 to 4.
//
// A send from inside a handler is refused until the state is 4 (errorText "UNEXPECTED"), as at any
// other time.
class TESSALINE_EXPORT NetworkRequest : public QObject, public QQmlParserStatus
{
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    Q_PROPERTY(QUrl url READ url WRITE setUrl NOTIFY urlChanged FINAL)
    Q_PROPERTY(QString method READ method WRITE setMethod NOTIFY methodChanged FINAL)
    Q_PROPERTY(NetworkRequestHeaders *headers READ headers FINAL)
    Q_PROPERTY(bool async READ async WRITE setAsync NOTIFY asyncChanged FINAL)
    Q_PROPERTY(bool followRedirects READ followRedirects WRITE setFollowRedirects NOTIFY
                   followRedirectsChanged FINAL)
    Q_PROPERTY(bool ignoreSslErrors READ ignoreSslErrors WRITE setIgnoreSslErrors NOTIFY
                   ignoreSslErrorsChanged FINAL)
    Q_PROPERTY(QString uploadPrefix READ uploadPrefix WRITE setUploadPrefix NOTIFY
                   uploadPrefixChanged FINAL)
    Q_PROPERTY(
        ReadyState readyState READ readyState WRITE setReadyState NOTIFY readyStateChanged FINAL)
    Q_PROPERTY(int status READ status NOTIFY readyStateChanged FINAL)
    Q_PROPERTY(QString statusText READ statusText NOTIFY readyStateChanged FINAL)
    Q_PROPERTY(int errorCode READ errorCode NOTIFY errorCodeChanged FINAL)
    Q_PROPERTY(QString errorText READ errorText NOTIFY errorTextChanged FINAL)
    Q_PROPERTY(QVariant requestBody READ requestBody NOTIFY requestBodyChanged FINAL)
    Q_PROPERTY(QString responseType READ responseType WRITE setResponseType NOTIFY
                   responseTypeChanged FINAL)
    Q_PROPERTY(QVariantMap responseHeaders READ responseHeaders NOTIFY responseHeadersChanged FINAL)
    Q_PROPERTY(QString responsePath READ responsePath WRITE setResponsePath NOTIFY
                   responsePathChanged FINAL)
    Q_PROPERTY(QString responseText READ responseText NOTIFY responseTextChanged FINAL)
    Q_PROPERTY(QVariant response READ response NOTIFY responseChanged FINAL)
    Q_PROPERTY(double progress READ progress NOTIFY progressChanged FINAL)
    Q_PROPERTY(QString user READ user WRITE setUser NOTIFY userChanged FINAL)
    Q_PROPERTY(QString password READ password WRITE setPassword NOTIFY passwordChanged FINAL)
    Q_PROPERTY(QString realm READ realm WRITE setRealm NOTIFY realmChanged FINAL)

public:
    enum ReadyState {
        ReadyStateUninitialized = 0, // no URL yet
        ReadyStateInitialized = 1,   // a URL is set
        ReadyStateSending = 2,       // sent, no data of the final answer yet
        ReadyStateProcessing = 3,    // the answer is arriving
        ReadyStateComplete = 4,      // finished, well or not
        UNSENT = ReadyStateUninitialized,
        OPENED = ReadyStateInitialized,
        HEADERS_RECEIVED = ReadyStateSending,
        LOADING = ReadyStateProcessing,
        DONE = ReadyStateComplete
    };
    Q_ENUM(ReadyState)

    // Names for scripts; the class itself compares with none of them.
    enum StatusCode {
        StatusCodeContinue = 100,
        StatusCodeSwitchingProtocols = 101,
        StatusCodeOK = 200,
        StatusCodeCreated = 201,
        StatusCodeAccepted = 202,
        StatusCodeNonAuthoritativeInformation = 203,
        StatusCodeNoContent = 204,
        StatusCodeResetContent = 205,
        StatusCodePartialContent = 206,
        StatusCodeMultipleChoices = 300,
        StatusCodeMovedPermanently = 301,
        StatusCodeFound = 302,
        StatusCodeSeeOther = 303,
        StatusCodeNotModified = 304,
        StatusCodeUseProxy = 305,
        StatusCodeTemporaryRedirect = 307,
        StatusCodeBadRequest = 400,
        StatusCodeUnauthorized = 401,
        StatusCodePaymentRequired = 402,
        StatusCodeForbidden = 403,
        StatusCodeNotFound = 404,
        StatusCodeMethodNotAllowed = 405,
        StatusCodeNotAcceptable = 406,
        StatusCodeProxyAuthenticationRequired = 407,
        StatusCodeRequestTimeout = 408,
        StatusCodeConflict = 409,
        StatusCodeGone = 410,
        StatusCodeLengthRequired = 411,
        StatusCodePreconditionFailed = 412,
        StatusCodeRequestEntityTooLarge = 413,
        StatusCodeRequestURITooLong = 414,
        StatusCodeUnsupportedMediaType = 415,
        StatusCodeRequestedRangeNotSuitable = 416,
        StatusCodeExpectationFailed = 417,
        StatusCodeInternalServerError = 500,
        StatusCodeNotImplemented = 501,
        StatusCodeBadGateway = 502,
        StatusCodeServiceUnavailable = 503,
        StatusCodeGatewayTimeout = 504,
        StatusCodeHTTPVersionNotSupported = 505
    };
    Q_ENUM(StatusCode)

    explicit NetworkRequest(QObject *parent = nullptr);
    // A running transfer goes on by itself: the server gets the whole body, the answer is dropped.
    ~NetworkRequest() override;

    // Not owned. Null until componentComplete(), setNetworkAccessManager() or the first send, which
    // takes the engine's manager or makes one for this object.
    QNetworkAccessManager *networkAccessManager() const { return m_manager; }
    void setNetworkAccessManager(QNetworkAccessManager *manager);

    // These four are refused in the states 2 and 3 (errorText "UNEXPECTED").
    QUrl url() const { return m_url; }
    void setUrl(const QUrl &url);               // a different URL leads to state 1
    QString method() const { return m_method; } // upper case
    void setMethod(const QString &method);
    bool async() const { return m_async; } // stored, never consulted
    void setAsync(bool async);

    NetworkRequestHeaders *headers() const { return m_headers; }

    bool followRedirects() const { return m_followRedirects; }
    void setFollowRedirects(bool followRedirects);
    bool ignoreSslErrors() const { return m_ignoreSslErrors; }
    void setIgnoreSslErrors(bool ignoreSslErrors);
    // What a form value that names a file begins with; empty turns uploads off.
    QString uploadPrefix() const { return m_uploadPrefix; }
    void setUploadPrefix(const QString &uploadPrefix);

    ReadyState readyState() const { return m_readyState; }
    void setReadyState(ReadyState readyState);
    void reset(); // state 1

    // Both are known from state 3 on and stay until the next send; 0 and empty if no data came.
    int status() const { return m_status; }
    QString statusText() const { return m_statusText; } // "404 Not Found"

    int errorCode() const { return m_errorCode; } // a QNetworkReply::NetworkError; -1: no such file
    QString errorText() const { return m_errorText; }

    QVariant requestBody() const { return m_requestBody; } // the last one given to send(QVariant)

    // "json", "base64", "text" or empty, in any case; another value leaves `response` invalid.
    QString responseType() const { return m_responseType; }
    void setResponseType(const QString &responseType);
    QVariantMap responseHeaders() const { return m_responseHeaders; }
    // Where the answer's body goes; empty keeps it in memory. Path variables are resolved. Can't be
    // changed while the file is open.
    QString responsePath() const { return m_responsePath; }
    void setResponsePath(const QString &responsePath);
    // UTF-8 up to the first zero byte; empty when the body went to a file.
    QString responseText() const { return m_responseText.text(m_responseBytes); }
    QVariant response() const { return m_response; }
    // How many bytes of an answer are kept in memory, 512 MiB at most; a longer one fails the
    // transfer with code 5. A file at responsePath has no limit.
    void setResponseLimit(qint64 bytes);

    double progress() const { return m_progress; } // upload in 0.0 to 0.5, download in 0.5 to 1.0

    // Credentials for every request on the same manager. A change clears the manager's cache of
    // credentials and connections; all transfers that run on it end as cancelled.
    QString user() const { return m_user; }
    void setUser(const QString &user);
    QString password() const { return m_password; }
    void setPassword(const QString &password);
    QString realm() const { return m_realm; }
    void setRealm(const QString &realm);

    // Takes effect with the next data of the transfer; one that delivers none isn't interrupted.
    Q_INVOKABLE void abort();
    Q_INVOKABLE void open(const QString &method, const QUrl &url, bool async);
    Q_INVOKABLE void open(const QString &method, const QUrl &url);
    // Null, a text, or an object or map (query, form or multipart form). Other values send nothing.
    Q_INVOKABLE void send(const QVariant &body);
    Q_INVOKABLE void send();

    void send(const QVariantMap &body, const QVariantMap &headers);
    void send(const QJSValue &body, const QVariantMap &headers);
    void send(const QString &body, const QVariantMap &headers);
    // The body is null, a QByteArray or a QIODevice* that lives as long as the transfer.
    void send(const QString &method, const QUrl &url, const QVariant &body,
              const QVariantMap &headers);
    void sendFormData(const QVariantMap &values, const QVariantMap &headers);

    void classBegin() override;
    void componentComplete() override;

    // The content type of a file in a form, by its suffix.
    static QString defaultContentType(const QString &suffix);
    // A value as the text of a form field.
    static QString encodeRestValue(const QVariant &value);
    static QString encodeRestValue(const QVariantList &list);
    static QString encodeRestValue(const QStringList &list);
    static QString encodeRestValue(bool value);

signals:
    void urlChanged();
    void methodChanged();
    void asyncChanged();
    void followRedirectsChanged();
    void ignoreSslErrorsChanged();
    void uploadPrefixChanged();
    void readyStateChanged();
    void errorCodeChanged();
    void errorTextChanged();
    void requestBodyChanged();
    void responseTypeChanged();
    void responseHeadersChanged();
    void responsePathChanged();
    void responseTextChanged();
    void responseChanged();
    void progressChanged();
    void userChanged();
    void passwordChanged();
    void realmChanged();

    void error();
    void sslErrors(const QVariant &errors); // a list of maps, see exportSslError()
    void sslErrorsIgnored(const QVariant &errors);

private slots:
    void onAuthenticationRequired(QNetworkReply *reply, QAuthenticator *authenticator);
    void onEncrypted(QNetworkReply *reply);
    void onFinished(QNetworkReply *reply);
    void onNetworkAccessibleChanged(QNetworkAccessManager::NetworkAccessibility accessible);
    void onProxyAuthenticationRequired(const QNetworkProxy &proxy, QAuthenticator *authenticator);
    void onSslErrors(QNetworkReply *reply, const QList<QSslError> &errors);
    void onReadyRead();
    void onFormDataProgress(double progress);

private:
    QNetworkAccessManager *neededManager();
    void clearAccessCache();
    bool isRunning() const;
    bool checkReadyState();
    void refuseSend(const char *function);

    QVariantMap headerMap() const;
    QNetworkReply *transmit(const QString &method, const QVariant &body);
    void setPendingReply(QNetworkReply *reply);
    void discardPendingReply();
    bool isFileSpecification(const QString &text) const;
    bool assembleFormData(const QVariantMap &values, const QByteArray &boundary,
                          QString *failedPath);
    void failFormData(const QString &path);
    void takeFormData();
    void releaseFormData();

    void beginTransfer();
    void clearResponse();
    bool willFollow(const QNetworkReply *reply) const;
    bool followRedirect(QNetworkReply *reply);
    void readHeaders(const QNetworkReply *reply);
    void appendResponse(const QByteArray &bytes);
    void updateProgress();
    void decodeResponse();

    void openResponseFile();
    void failResponseFile();
    void failResponse(const QString &errorText);
    void closeResponseFile();
    void boundReadBuffer();

    void setErrorCode(int errorCode);
    void setErrorText(const QString &errorText);
    void setProgress(double progress);

    QPointer<QNetworkAccessManager> m_manager;
    std::unique_ptr<QNetworkRequest> m_pendingRequest;
    QPointer<QNetworkReply> m_pendingReply; // the one reply that counts; its manager may die
    QString m_method = QStringLiteral("GET");
    NetworkRequestHeaders *m_headers;
    QUrl m_url;
    bool m_async = false;
    ReadyState m_readyState = ReadyStateUninitialized;
    int m_errorCode = 0;
    QString m_errorText;
    bool m_followRedirects = true;
    bool m_ignoreSslErrors = false;
    QDateTime m_startTime;
    qint64 m_bytesReceived = 0;
    qint64 m_bytesTotal = 0;     // the answer's Content-Length, 0 if it has none
    QVariant m_percentComplete;  // double
    QVariant m_estimatedEndTime; // QDateTime
    int m_status = 0;
    QString m_statusText;
    QVariant m_requestBody;
    double m_progress = 0;
    QString m_responseType;
    QVariantMap m_responseHeaders;
    QByteArray m_responseBytes;
    mutable Utf8Text m_responseText; // of m_responseBytes, decoded as far as it was read
    QString m_responsePath;
    std::unique_ptr<QFile> m_responseFile; // open while an answer is being written to it
    QString m_storeError;                  // the answer can't be kept: the transfer fails
    bool m_bodyDropped = false;            // of a redirect
    qint64 m_responseLimit;
    QVariant m_response;
    QString m_uploadPrefix = QStringLiteral("@");
    bool m_aborted = false;
    NetworkFormData *m_formData = nullptr;     // child; exists during a multipart request
    QPointer<QNetworkReply> m_challengedReply; // the last one whose challenge was answered
    QString m_user;
    QString m_password;
    QString m_realm;

    quint64 m_transfer = 0;     // counts transfers: a handler may begin a new one
    int m_bodySignalDepth = 0;  // of requestBodyChanged, whose handlers may send
    bool m_beginning = false;   // inside the signals of a beginning transfer
    int m_replySignalDepth = 0; // inside a signal of the reply, where it can't be deleted
};

QT_WARNING_POP
