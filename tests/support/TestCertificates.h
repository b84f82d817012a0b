#pragma once

#include <QString>
#include <QTemporaryDir>

// Certificates for loopback, made by the openssl program when the object is made: nothing secret
// lies in the source tree, and nothing there can expire.
class TestCertificates
{
public:
    TestCertificates();

    // PEM files. All share one key.
    QString keyPath() const { return path("key.pem"); }
    QString authorityPath() const { return path("authority.pem"); }
    QString trustedPath() const { return path("trusted.pem"); }       // signed by the authority
    QString selfSignedPath() const { return path("selfsigned.pem"); } // with every kind of name
    QString expiredPath() const { return path("expired.pem"); }       // signed by the authority

private:
    QString path(const char *name) const;
    void openssl(const QString &arguments) const;

    QTemporaryDir m_dir;
};
