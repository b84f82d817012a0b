#pragma once

#include "plugin/TessalineGlobal.h"

#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

class QSslCertificate;
class QSslError;

// TLS errors and certificates as plain maps for scripts.

// "effectiveDate", "expiryDate", "isBlacklisted", "isNull", "isSelfSigned", "text", and the names
// of "subject" and "issuer" as maps of lists; a name that the certificate lacks has no key there.
TESSALINE_EXPORT QVariantMap exportSslCertificate(const QSslCertificate &certificate);
// "certificate", "error" (a QSslError::SslError), "errorString".
TESSALINE_EXPORT QVariantMap exportSslError(const QSslError &error);
TESSALINE_EXPORT QVariantList exportStringList(const QStringList &list);
