#include "portal/PortalRequest.h"

#include "plugin/TessalineDebug.h"
#include "plugin/TessalineError.h"

#include <QDebug>

namespace {

// Only the message is taken over. The object has no parent, and nobody deletes it.
TessalineError *portalError(const QVariantMap &failure)
{
    const QString message = failure.value(QStringLiteral("message")).toString();
    return new TessalineError(message, QString(), nullptr);
}

} // namespace

PortalRequest::PortalRequest(QObject *parent)
    : NetworkRequest(parent)
{
    setUploadPrefix(QString()); // a hostile token must not name a file to send
    connect(this, &NetworkRequest::readyStateChanged, this, &PortalRequest::onReadyStateChanged);
}

void PortalRequest::onReadyStateChanged()
{
    qCDebug(FRAMEWORK_MANAGER) << Q_FUNC_INFO << readyState();
    if (readyState() != ReadyStateComplete)
        return;
    if (status() != StatusCodeOK) {
        qCCritical(FRAMEWORK_MANAGER) << Q_FUNC_INFO << "statusCode" << status() << statusText();
        return;
    }
    if (responseType().compare(QLatin1String("json"), Qt::CaseInsensitive) != 0) {
        emit completed();
        return;
    }

    qCDebug(FRAMEWORK_MANAGER) << Q_FUNC_INFO << responseText();
    const QVariantMap map = response().toMap();
    const auto failure = map.constFind(QStringLiteral("error"));
    if (failure == map.constEnd()) {
        emit completed(map);
        return;
    }
    qCCritical(FRAMEWORK_MANAGER) << Q_FUNC_INFO << "error" << map;
    emit error(portalError(failure->toMap()));
}

#include "moc_PortalRequest.cpp"
