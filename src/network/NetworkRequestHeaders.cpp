#include "network/NetworkRequestHeaders.h"

#include <algorithm>

namespace {

const QLatin1String refererKey("Referer");
const QLatin1String userAgentKey("User-Agent");

bool isControl(char character)
{
    const auto byte = static_cast<uchar>(character);
    return byte < 0x20 || byte == 0x7f;
}

} // namespace

NetworkRequestHeaders::NetworkRequestHeaders(QObject *parent)
    : PropertySet(this, parent)
{
    connect(this, &QQmlPropertyMap::valueChanged, this, &NetworkRequestHeaders::onValueChanged);
}

/*!
    \qmltype NetworkRequestHeaders
    \inqmlmodule Zemrik.Tessaline
    \inherits PropertySet
    \brief The headers that a NetworkRequest sends.

    Every value assigned to the object becomes a header of the request, under the name used:

    \qml
    NetworkRequest {
        id: request
        url: "https://example.com/news"
        headers.userAgent: "Reader/1.0"
        Component.onCompleted: {
            headers["Accept-Language"] = "de";
            send();
        }
    }
    \endqml

    Names that the type doesn't know can be assigned in script only, not in a declarative binding.
    A name or a value that can't stand in a header (with a line break, for instance) isn't sent.
*/

/*!
    \qmlproperty string NetworkRequestHeaders::referer
    The header \c Referer. Empty by default.
*/

/*!
    \qmlproperty string NetworkRequestHeaders::referrer
    Another name for \l referer.
*/

QString NetworkRequestHeaders::referer() const
{
    return value(refererKey, QVariant()).toString();
}

void NetworkRequestHeaders::setReferer(const QString &referer)
{
    setValue(refererKey, referer);
}

/*!
    \qmlproperty string NetworkRequestHeaders::userAgent
    The header \c User-Agent. Empty by default, and then Qt's own text is sent.
*/

QString NetworkRequestHeaders::userAgent() const
{
    return value(userAgentKey, QVariant()).toString();
}

void NetworkRequestHeaders::setUserAgent(const QString &userAgent)
{
    setValue(userAgentKey, userAgent);
}

bool NetworkRequestHeaders::isSendable(const QByteArray &name, const QByteArray &value)
{
    const auto breaksName = [](char character) {
        return isControl(character) || character == ' ' || character == ':';
    };
    const auto breaksValue = [](char character) {
        return isControl(character) && character != '\t';
    };
    return !name.isEmpty() && std::none_of(name.begin(), name.end(), breaksName)
           && std::none_of(value.begin(), value.end(), breaksValue);
}

void NetworkRequestHeaders::onValueChanged(const QString &key, const QVariant &value)
{
    Q_UNUSED(value)
    if (key.compare(refererKey, Qt::CaseInsensitive) == 0)
        emit refererChanged();
    else if (key.compare(userAgentKey, Qt::CaseInsensitive) == 0)
        emit userAgentChanged();
}

#include "moc_NetworkRequestHeaders.cpp"
