#pragma once

#include "plugin/TessalineGlobal.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QVariantMap>

// How native code sees a portal: a wrapper around the object that holds the sign-in. Its properties
// are read by name at each call; no token is kept here. The object isn't owned; once it is gone
// the wrapper has no portal.
//
// Accepted are instances of a QML document named Portal, and instances of a native class QmlPortal
// of another module. Anything else is kept, with a warning, but isn't a portal.
class TESSALINE_EXPORT PortalObject : public QObject
{
    Q_OBJECT

public:
    explicit PortalObject(QObject *portal, QObject *parent = nullptr);

    void setPortal(QObject *portal);
    QObject *portal() const { return m_portal; }
    bool isPortal() const { return m_isPortal && m_portal; }

    // The property "url" of the portal; without a portal the public one, with a warning. No
    // trailing slash.
    QString url() const;
    QString restUrl() const;
    // Empty when signed out.
    QString token() const;
    bool isSignedIn() const;

    // "token", always, and "f" where a format is given ("pjson" for JSON answers).
    QVariantMap defaultParams(const QString &format) const;

private:
    QPointer<QObject> m_portal; // a document may go away
    bool m_isPortal = false;
    bool m_isQmlPortal = false;
};
