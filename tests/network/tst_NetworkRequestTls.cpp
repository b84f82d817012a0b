#include "RequestTesting.h"
#include "support/HttpServer.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"
#include "support/SignalRecorder.h"
#include "support/TestCertificates.h"

#include <QNetworkAccessManager>
#include <QSignalSpy>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslError>
#include <QTest>

using namespace RequestTesting;

// TLS as a script sees it, against a server on OpenSSL with certificates made for this run.
class tst_NetworkRequestTls : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void trustedCertificateNeedsNothing();
    void selfSignedCertificateFailsTheTransfer();
    void expiredCertificateIsTold();
    void ignoredErrorsAreToldAndTheTransferGoesOn();
    void handlerCannotRescueTheTransfer();
    void onlyTheOwnReplyIsTold();
    void requestCanBeSentAfterAnError();
    void redirectToABadCertificateFails();

    void certificateMapHasAllKeys();
    void namesThatAreMissingHaveNoKey();
    void nullCertificateIsExported();
    void errorMapHasAllKeys();
    void listsAreExported();

private:
    TestCertificates m_certificates;
};

namespace {

QSslCertificate certificate(const QString &path)
{
    return QSslCertificate::fromPath(path).value(0);
}

QVariantMap firstError(const QSignalSpy &spy)
{
    return spy.value(0).value(0).toList().value(0).toMap();
}

const QString slot("void NetworkRequest::onSslErrors(QNetworkReply*, const QList<QSslError>&)");

} // namespace

void tst_NetworkRequestTls::init()
{
    // Whatever the machine trusts, these tests trust their own authority only.
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setCaCertificates({certificate(m_certificates.authorityPath())});
    QSslConfiguration::setDefaultConfiguration(configuration);
}

void tst_NetworkRequestTls::trustedCertificateNeedsNothing()
{
    HttpServer server(m_certificates.trustedPath(), m_certificates.keyPath());
    NetworkRequest request;
    QSignalSpy errors(&request, &NetworkRequest::sslErrors);
    QSignalSpy ignored(&request, &NetworkRequest::sslErrorsIgnored);
    request.setUrl(server.url("/text/hello"));
    request.send();
    QVERIFY(finish(request));
    QCOMPARE(request.errorText(), QString());
    QCOMPARE(request.response(), QVariant("hello"));
    QCOMPARE(errors.count() + ignored.count(), 0);
}

void tst_NetworkRequestTls::selfSignedCertificateFailsTheTransfer()
{
    HttpServer server(m_certificates.selfSignedPath(), m_certificates.keyPath());
    NetworkRequest request;
    QSignalSpy errors(&request, &NetworkRequest::sslErrors);
    request.setUrl(server.url("/text/hello"));
    request.send();
    SignalRecorder recorder(&request);
    LogCapture log;
    QVERIFY(finish(request));

    QCOMPARE(recorder.names(),
             QStringList({"sslErrors", "progressChanged", "errorCodeChanged", "errorTextChanged",
                          "responseChanged", "error", "readyStateChanged"}));
    QCOMPARE(request.errorCode(), int(QNetworkReply::SslHandshakeFailedError));
    QCOMPARE(request.status(), 0);
    QCOMPARE(server.requestCount(), 0);
    QCOMPARE(log.count(QtDebugMsg, network, slot), 2);
    QCOMPARE(firstError(errors).value("error").toInt(), int(QSslError::SelfSignedCertificate));
    QVERIFY(!firstError(errors).value("errorString").toString().isEmpty());
    QCOMPARE(firstError(errors).value("certificate").toMap(),
             exportSslCertificate(certificate(m_certificates.selfSignedPath())));
}

void tst_NetworkRequestTls::expiredCertificateIsTold()
{
    HttpServer server(m_certificates.expiredPath(), m_certificates.keyPath());
    NetworkRequest request;
    QSignalSpy errors(&request, &NetworkRequest::sslErrors);
    request.setUrl(server.url("/text/hello"));
    request.send();
    QVERIFY(finish(request));
    QCOMPARE(errors.count(), 1);
    QCOMPARE(errors.first().first().toList().size(), 1);
    QCOMPARE(firstError(errors).value("error").toInt(), int(QSslError::CertificateExpired));
    const QVariantMap map = firstError(errors).value("certificate").toMap();
    QCOMPARE(map.value("effectiveDate").toDateTime(),
             QDateTime(QDate(2020, 1, 1), QTime(0, 0), Qt::UTC));
    QCOMPARE(map.value("expiryDate").toDateTime(),
             QDateTime(QDate(2020, 2, 1), QTime(0, 0), Qt::UTC));
    QCOMPARE(map.value("isSelfSigned"), QVariant(false));
}

void tst_NetworkRequestTls::ignoredErrorsAreToldAndTheTransferGoesOn()
{
    HttpServer server(m_certificates.selfSignedPath(), m_certificates.keyPath());
    NetworkRequest request;
    QSignalSpy errors(&request, &NetworkRequest::sslErrors);
    QSignalSpy ignored(&request, &NetworkRequest::sslErrorsIgnored);
    request.setIgnoreSslErrors(true);
    request.open("POST", server.url("/echo"));
    request.send(QVariant("secret"));
    LogCapture log;
    QVERIFY(finish(request));
    QCOMPARE(request.response(), QVariant("secret"));
    QCOMPARE(request.errorCode(), 0);
    QCOMPARE(errors.count(), 0);
    QCOMPARE(ignored.count(), 1);
    QCOMPARE(firstError(ignored).value("error").toInt(), int(QSslError::SelfSignedCertificate));
    QCOMPARE(log.count(QtDebugMsg, network, slot), 1);
}

void tst_NetworkRequestTls::handlerCannotRescueTheTransfer()
{
    HttpServer server(m_certificates.selfSignedPath(), m_certificates.keyPath());
    NetworkRequest request;
    connect(&request, &NetworkRequest::sslErrors, [&] { request.setIgnoreSslErrors(true); });
    request.setUrl(server.url("/text/hello"));
    request.send();
    QVERIFY(finish(request));
    QCOMPARE(request.errorCode(), int(QNetworkReply::SslHandshakeFailedError));
    QCOMPARE(server.requestCount(), 0);
}

void tst_NetworkRequestTls::onlyTheOwnReplyIsTold()
{
    HttpServer bad(m_certificates.selfSignedPath(), m_certificates.keyPath());
    HttpServer good(m_certificates.trustedPath(), m_certificates.keyPath());
    QNetworkAccessManager manager;
    NetworkRequest first;
    NetworkRequest second;
    second.setIgnoreSslErrors(true);
    for (NetworkRequest *request : {&first, &second})
        request->setNetworkAccessManager(&manager);
    QSignalSpy errors(&first, &NetworkRequest::sslErrors);
    QSignalSpy ignored(&second, &NetworkRequest::sslErrorsIgnored);
    first.setUrl(bad.url("/text/hello"));
    second.setUrl(good.url("/text/hello"));
    first.send();
    second.send();
    QVERIFY(finish(first) && finish(second));
    QCOMPARE(errors.count(), 1);
    QCOMPARE(ignored.count(), 0); // and nobody ignored the first one's errors for it
    QCOMPARE(first.errorCode(), int(QNetworkReply::SslHandshakeFailedError));
    QCOMPARE(second.response(), QVariant("hello"));
}

void tst_NetworkRequestTls::requestCanBeSentAfterAnError()
{
    HttpServer server(m_certificates.selfSignedPath(), m_certificates.keyPath());
    NetworkRequest request;
    request.setUrl(server.url("/text/hello"));
    request.send();
    QVERIFY(finish(request));
    request.setIgnoreSslErrors(true);
    request.send();
    QCOMPARE(request.errorCode(), 0);
    QVERIFY(finish(request));
    QCOMPARE(request.response(), QVariant("hello"));
}

void tst_NetworkRequestTls::redirectToABadCertificateFails()
{
    HttpServer bad(m_certificates.selfSignedPath(), m_certificates.keyPath());
    HttpServer good(m_certificates.trustedPath(), m_certificates.keyPath());
    NetworkRequest request;
    QSignalSpy errors(&request, &NetworkRequest::sslErrors);
    request.setUrl(good.url("/redirect/302?" + bad.url("/text/hello").toString()));
    request.send();
    QVERIFY(finish(request));
    QCOMPARE(errors.count(), 1);
    QCOMPARE(request.errorCode(), int(QNetworkReply::SslHandshakeFailedError));
    QCOMPARE(bad.requestCount(), 0);
}

void tst_NetworkRequestTls::certificateMapHasAllKeys()
{
    const QSslCertificate given = certificate(m_certificates.selfSignedPath());
    QVERIFY(!given.isNull());
    const QVariantMap map = exportSslCertificate(given);
    QCOMPARE(map.keys(), QStringList({"effectiveDate", "expiryDate", "isBlacklisted", "isNull",
                                      "isSelfSigned", "issuer", "subject", "text"}));
    QCOMPARE(map.value("effectiveDate"), QVariant(given.effectiveDate()));
    QCOMPARE(map.value("expiryDate"), QVariant(given.expiryDate()));
    QCOMPARE(map.value("isBlacklisted"), QVariant(false));
    QCOMPARE(map.value("isNull"), QVariant(false));
    QCOMPARE(map.value("isSelfSigned"), QVariant(true));
    QCOMPARE(map.value("text"), QVariant(given.toText()));
    QVERIFY(given.toText().contains("Munich"));
    const QVariantMap names{
        {"O", QVariantList{"Zemrik"}},
        {"CN", QVariantList{"127.0.0.1"}},
        {"L", QVariantList{"Munich"}},
        {"OU", QVariantList{"Tests"}},
        {"C", QVariantList{"DE"}},
        {"ST", QVariantList{"Bavaria"}},
        {"DQ", QVariantList{"dq"}},
        {"SN", QVariantList{"4711"}},
        {"EM", QVariantList{"test@zemrik.example"}},
    };
    QCOMPARE(map.value("subject").toMap(), names);
    QCOMPARE(map.value("issuer").toMap(), names);
}

void tst_NetworkRequestTls::namesThatAreMissingHaveNoKey()
{
    const QVariantMap map = exportSslCertificate(certificate(m_certificates.trustedPath()));
    QCOMPARE(map.value("subject").toMap(), QVariantMap({{"CN", QVariantList{"127.0.0.1"}}}));
    QCOMPARE(map.value("issuer").toMap(), QVariantMap({{"CN", QVariantList{"Test Authority"}}}));
}

void tst_NetworkRequestTls::nullCertificateIsExported()
{
    const QVariantMap map = exportSslCertificate(QSslCertificate());
    QCOMPARE(map.value("isNull"), QVariant(true));
    QCOMPARE(map.value("subject").toMap(), QVariantMap());
    QCOMPARE(map.value("issuer").type(), QVariant::Map);
    QCOMPARE(map.size(), 8);
}

void tst_NetworkRequestTls::errorMapHasAllKeys()
{
    const QSslCertificate given = certificate(m_certificates.expiredPath());
    const QSslError error(QSslError::CertificateExpired, given);
    const QVariantMap map = exportSslError(error);
    QCOMPARE(map, QVariantMap({{"certificate", exportSslCertificate(given)},
                               {"error", int(QSslError::CertificateExpired)},
                               {"errorString", error.errorString()}}));
    QCOMPARE(map.value("error").type(), QVariant::Int);
}

void tst_NetworkRequestTls::listsAreExported()
{
    QCOMPARE(exportStringList({"a", "", "b"}), QVariantList({"a", "", "b"}));
    QCOMPARE(exportStringList({}), QVariantList());
}

TESSALINE_TEST_MAIN(tst_NetworkRequestTls)
#include "tst_NetworkRequestTls.moc"
