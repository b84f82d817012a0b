#pragma once

#include "plugin/TessalineObject.h"

#include <QNetworkProxy>
#include <QUrl>

// The application-wide proxy of the process, which every later connection uses. The object stores
// nothing of its own. QML name: NetworkProxy, uncreatable; reached as Tessaline.network.proxy.
class TESSALINE_EXPORT NetworkProxy : public TessalineObject
{
    Q_OBJECT
    Q_PROPERTY(ProxyType type READ type WRITE setType NOTIFY typeChanged)
    Q_PROPERTY(QUrl url READ url WRITE setUrl NOTIFY urlChanged)

public:
    enum ProxyType {
        DefaultProxy = QNetworkProxy::DefaultProxy,
        Socks5Proxy = QNetworkProxy::Socks5Proxy,
        NoProxy = QNetworkProxy::NoProxy,
        HttpProxy = QNetworkProxy::HttpProxy,
        HttpCachingProxy = QNetworkProxy::HttpCachingProxy,
        FtpCachingProxy = QNetworkProxy::FtpCachingProxy
    };
    Q_ENUM(ProxyType)

    // Takes over the system's proxy, see setSystemProxy().
    explicit NetworkProxy(QObject *parent = nullptr);

    ProxyType type() const;
    void setType(ProxyType type); // signals also an equal type

    // Host, port, user and password; the scheme is "http" whatever the type.
    QUrl url() const;
    void setUrl(const QUrl &url); // signals also an equal URL; without a port, it is 65535

    // Copies the system's proxy for the public portal, once. Later changes of the system aren't
    // followed.
    void setSystemProxy();

signals:
    void typeChanged();
    void urlChanged();
};
