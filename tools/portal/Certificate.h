#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

typedef struct x509_st X509;
typedef struct evp_pkey_st EVP_PKEY;

// A self-signed certificate for the loopback address and "localhost", with a key of its own that
// never leaves the process. Good for the life of the longest token, from an hour ago.
class Certificate
{
public:
    // Invalid if the system's OpenSSL can't make one.
    Certificate();

    bool isValid() const { return m_certificate != nullptr; }
    X509 *certificate() const { return m_certificate.get(); }
    EVP_PKEY *key() const { return m_key.get(); }
    // What clients add to those that they trust.
    QByteArray toPem() const;
    // The same into a file. False with a message for people.
    bool writeTo(const QString &path, QString &error) const;

private:
    struct Deleter
    {
        void operator()(X509 *certificate) const;
        void operator()(EVP_PKEY *key) const;
    };

    std::unique_ptr<EVP_PKEY, Deleter> m_key;
    std::unique_ptr<X509, Deleter> m_certificate;
};
