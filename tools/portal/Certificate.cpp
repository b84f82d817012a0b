#include "portal/Certificate.h"

#include <QFile>

#include <openssl/bio.h>
#include <openssl/ec.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/x509v3.h>

namespace {

const long Hour = 3600;
const long Month = 30L * 24 * Hour;

// A serial number nobody has seen: a client that trusted an earlier certificate must not mix them
// up.
bool setRandomSerial(X509 *certificate)
{
    unsigned char bytes[16];
    if (RAND_bytes(bytes, sizeof bytes) != 1)
        return false;
    bytes[0] &= 0x7f; // positive
    BIGNUM *number = BN_bin2bn(bytes, sizeof bytes, nullptr);
    const bool set = BN_to_ASN1_INTEGER(number, X509_get_serialNumber(certificate)) != nullptr;
    BN_free(number);
    return set;
}

bool addExtension(X509 *certificate, int id, const char *value)
{
    X509_EXTENSION *extension = X509V3_EXT_conf_nid(nullptr, nullptr, id, value);
    const bool added = extension && X509_add_ext(certificate, extension, -1) == 1;
    X509_EXTENSION_free(extension);
    return added;
}

bool fillIn(X509 *certificate, EVP_PKEY *key)
{
    X509_NAME *name = X509_get_subject_name(certificate);
    const auto *text = reinterpret_cast<const unsigned char *>("Tessaline development portal");
    return X509_set_version(certificate, 2) == 1 // counted from 0: version 3
           && setRandomSerial(certificate)
           && X509_gmtime_adj(X509_getm_notBefore(certificate), -Hour)
           && X509_gmtime_adj(X509_getm_notAfter(certificate), Month)
           && X509_set_pubkey(certificate, key) == 1
           && X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC, text, -1, -1, 0) == 1
           && X509_set_issuer_name(certificate, name) == 1
           && addExtension(certificate, NID_subject_alt_name, "IP:127.0.0.1,DNS:localhost")
           && addExtension(certificate, NID_ext_key_usage, "serverAuth")
           && X509_sign(certificate, key, EVP_sha256()) > 0;
}

} // namespace

void Certificate::Deleter::operator()(X509 *certificate) const
{
    X509_free(certificate);
}

void Certificate::Deleter::operator()(EVP_PKEY *key) const
{
    EVP_PKEY_free(key);
}

Certificate::Certificate()
    : m_key(EVP_EC_gen("P-256"))
    , m_certificate(X509_new())
{
    if (!m_key || !m_certificate || !fillIn(m_certificate.get(), m_key.get()))
        m_certificate.reset();
}

QByteArray Certificate::toPem() const
{
    const std::unique_ptr<BIO, decltype(&BIO_free)> memory(BIO_new(BIO_s_mem()), &BIO_free);
    if (!isValid() || !memory || PEM_write_bio_X509(memory.get(), certificate()) != 1)
        return QByteArray();
    char *bytes = nullptr;
    const long size = BIO_get_mem_data(memory.get(), &bytes);
    return QByteArray(bytes, static_cast<int>(size));
}

bool Certificate::writeTo(const QString &path, QString &error) const
{
    QFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(toPem()) > 0 && file.flush())
        return true;
    error = QStringLiteral("can't write the certificate to %1: %2").arg(path, file.errorString());
    return false;
}
