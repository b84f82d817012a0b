#pragma once

#include "plugin/PropertySet.h"

// The headers of a NetworkRequest: every key is a header's name and is sent as it stands. QML name:
// NetworkRequestHeaders.
class TESSALINE_EXPORT NetworkRequestHeaders : public PropertySet
{
    Q_OBJECT
    // Two names of one value: the header's own spelling, and the word's.
    Q_PROPERTY(QString referer READ referer WRITE setReferer NOTIFY refererChanged)
    Q_PROPERTY(QString referrer READ referer WRITE setReferer NOTIFY refererChanged)
    Q_PROPERTY(QString userAgent READ userAgent WRITE setUserAgent NOTIFY userAgentChanged)

public:
    explicit NetworkRequestHeaders(QObject *parent = nullptr);

    QString referer() const; // the key "Referer"
    void setReferer(const QString &referer);

    QString userAgent() const; // the key "User-Agent"
    void setUserAgent(const QString &userAgent);

    // Whether these can stand in a request without changing its shape: no line break or other
    // control character (a tab may be in a value), and no blank or colon in the name.
    static bool isSendable(const QByteArray &name, const QByteArray &value);

signals:
    void refererChanged();
    void userAgentChanged();

private slots:
    void onValueChanged(const QString &key, const QVariant &value);
};
