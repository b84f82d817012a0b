#include "network/SslExport.h"

#include <QDateTime>
#include <QSslCertificate>
#include <QSslError>

namespace {

struct NameKey
{
    const char *key;
    QSslCertificate::SubjectInfo info;
};

const NameKey nameKeys[] = {
    {"O", QSslCertificate::Organization},
    {"CN", QSslCertificate::CommonName},
    {"L", QSslCertificate::LocalityName},
    {"OU", QSslCertificate::OrganizationalUnitName},
    {"C", QSslCertificate::CountryName},
    {"ST", QSslCertificate::StateOrProvinceName},
    {"DQ", QSslCertificate::DistinguishedNameQualifier},
    {"SN", QSslCertificate::SerialNumber},
    {"EM", QSslCertificate::EmailAddress},
};

template <typename Names>
QVariantMap exportNames(Names names)
{
    QVariantMap map;
    for (const NameKey &name : nameKeys) {
        const QStringList list = names(name.info);
        if (!list.isEmpty())
            map.insert(QLatin1String(name.key), exportStringList(list));
    }
    return map;
}

} // namespace

QVariantMap exportSslCertificate(const QSslCertificate &certificate)
{
    using Info = QSslCertificate::SubjectInfo;
    return {
        {QStringLiteral("effectiveDate"), certificate.effectiveDate()},
        {QStringLiteral("expiryDate"), certificate.expiryDate()},
        {QStringLiteral("isBlacklisted"), certificate.isBlacklisted()},
        {QStringLiteral("isNull"), certificate.isNull()},
        {QStringLiteral("isSelfSigned"), certificate.isSelfSigned()},
        {QStringLiteral("text"), certificate.toText()},
        {QStringLiteral("subject"),
         exportNames([&](Info info) { return certificate.subjectInfo(info); })},
        {QStringLiteral("issuer"),
         exportNames([&](Info info) { return certificate.issuerInfo(info); })},
    };
}

QVariantMap exportSslError(const QSslError &error)
{
    return {
        {QStringLiteral("certificate"), exportSslCertificate(error.certificate())},
        {QStringLiteral("error"), int(error.error())},
        {QStringLiteral("errorString"), error.errorString()},
    };
}

QVariantList exportStringList(const QStringList &list)
{
    QVariantList values;
    values.reserve(list.size());
    for (const QString &text : list)
        values.append(text);
    return values;
}
