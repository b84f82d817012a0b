#include "portal/PortalObject.h"

#include "plugin/Endpoints.h"
#include "plugin/TessalineDebug.h"

#include <QQmlProperty>

namespace {

QString textProperty(QObject *object, const char *name)
{
    return QQmlProperty::read(object, QLatin1String(name)).toString();
}

} // namespace

PortalObject::PortalObject(QObject *portal, QObject *parent)
    : QObject(parent)
{
    setPortal(portal);
}

void PortalObject::setPortal(QObject *portal)
{
    m_portal = portal;
    m_isPortal = false;
    m_isQmlPortal = false;
    if (!portal)
        return;

    const QString className = QLatin1String(portal->metaObject()->className());
    m_isQmlPortal = portal->qt_metacast("QmlPortal") != nullptr;
    // The engine names the type after the document.
    m_isPortal = m_isQmlPortal || className.startsWith(QLatin1String("Portal_"));
    if (!m_isPortal)
        qCWarning(FRAMEWORK_MANAGER)
            << Q_FUNC_INFO << "Not a portal object" << className << "instance" << portal;
}

QString PortalObject::url() const
{
    if (isPortal())
        return textProperty(m_portal, "url");
    QString url = Endpoints::publicPortal();
    qCWarning(FRAMEWORK_MANAGER) << Q_FUNC_INFO << "Using default url:" << url;
    return url;
}

QString PortalObject::restUrl() const
{
    return url() + QLatin1String("/sharing/rest");
}

QString PortalObject::token() const
{
    QObject *holder = m_portal;
    if (holder && m_isQmlPortal) {
        // The object that has the property "credentials": the portal itself, or none.
        const QQmlProperty credentials(m_portal, QStringLiteral("credentials"));
        holder = credentials.object();
    }
    return holder ? textProperty(holder, "token") : QString();
}

bool PortalObject::isSignedIn() const
{
    return m_portal && QQmlProperty::read(m_portal, QStringLiteral("signedIn")).toBool();
}

QVariantMap PortalObject::defaultParams(const QString &format) const
{
    QVariantMap params{{QStringLiteral("token"), token()}};
    if (!format.isEmpty())
        params.insert(QStringLiteral("f"), format);
    return params;
}

#include "moc_PortalObject.cpp"
