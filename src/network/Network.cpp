#include "network/Network.h"

#include "network/NetworkProxy.h"
#include "plugin/PropertyHelper.h"

#include <QHostAddress>
#include <QNetworkAddressEntry>
#include <QNetworkConfigurationManager>
#include <QNetworkInterface>

// Bearer management is deprecated in Qt 5.15, and the online state has no other source there.
QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED

namespace {

template <typename List, typename Convert>
QVariantList converted(const List &list, Convert convert)
{
    QVariantList values;
    values.reserve(list.size());
    for (const auto &value : list)
        values.append(convert(value));
    return values;
}

} // namespace

/*!
    \qmltype Network
    \inqmlmodule Zemrik.Tessaline
    \brief The network state of the machine.

    It is reached as \c{Tessaline.network} and can't be created.

    \qml
    Text {
        text: Tessaline.network.isOnline ? "online" : "offline"
    }
    \endqml

    A configuration is a map with \c bearerType, \c bearerTypeFamily, \c bearerTypeName, \c children
    (a list of such maps), \c identifier, \c isRoamingAvailable, \c isValid, \c name, \c purpose,
    \c state and \c type; the numbers among them compare with the type's enumerations, such as
    \c{Network.BearerWLAN} and \c{Network.ConfigurationStateActive}.
*/

Network::Network(QObject *parent)
    : TessalineObject(parent)
    , m_configurationManager(new QNetworkConfigurationManager(this))
{
    using Manager = QNetworkConfigurationManager;
    connect(m_configurationManager, &Manager::onlineStateChanged, this,
            &Network::onlineStateChanged);
    connect(m_configurationManager, &Manager::updateCompleted, this, &Network::updateCompleted);
    connect(m_configurationManager, &Manager::configurationAdded, this,
            &Network::onConfigurationAdded);
    connect(m_configurationManager, &Manager::configurationChanged, this,
            &Network::onConfigurationChanged);
    connect(m_configurationManager, &Manager::configurationRemoved, this,
            &Network::onConfigurationRemoved);
}

/*!
    \qmlproperty NetworkProxy Network::proxy
    \readonly
    The application's proxy. Reading it for the first time takes over the system's proxy.
*/

NetworkProxy *Network::proxy()
{
    return lazyChild(m_proxy, this);
}

/*!
    \qmlproperty bool Network::isOnline
    \readonly
    Whether the machine has a connection.
*/

bool Network::isOnline() const
{
    return m_configurationManager->isOnline();
}

/*!
    \qmlproperty object Network::defaultConfiguration
    \readonly
    The configuration that new connections use, taken at each read.
*/

QVariantMap Network::defaultConfiguration() const
{
    return configurationToJson(m_configurationManager->defaultConfiguration());
}

/*!
    \qmlproperty list Network::addresses
    \readonly
    All addresses of this machine, taken at each read: maps with \c address, \c isLoopback,
    \c scopeId and \c protocol (such as \c{Network.ProtocolIPv4}).
*/

QVariantList Network::addresses() const
{
    return converted(QNetworkInterface::allAddresses(), addressToJson);
}

/*!
    \qmlproperty list Network::interfaces
    \readonly
    All network interfaces, taken at each read: maps with \c hardwareAddress,
    \c humanReadableName, \c isValid, \c name and \c addressEntries. An entry of that list is a map
    with \c prefixLength and the addresses \c broadcast, \c ip and \c netmask; an address that
    doesn't exist is an empty map.
*/

QVariantList Network::interfaces() const
{
    return converted(QNetworkInterface::allInterfaces(), interfaceToJson);
}

/*!
    \qmlmethod list Network::getConfigurations(int filter)
    The configurations in the state \a filter, for instance \c{Network.ConfigurationStateActive}.
    0, the default, gives all.
*/

QVariantList Network::getConfigurations(int filter) const
{
    return converted(
        m_configurationManager->allConfigurations(QNetworkConfiguration::StateFlags(filter)),
        configurationToJson);
}

QVariantList Network::getConfigurations() const
{
    return getConfigurations(0);
}

/*!
    \qmlmethod void Network::updateConfigurations()
    Looks for configurations anew. \l updateCompleted comes when that is done.
*/

void Network::updateConfigurations()
{
    m_configurationManager->updateConfigurations();
}

/*!
    \qmlsignal Network::onlineStateChanged(bool online)
    The machine went \a online, or offline.
*/

/*!
    \qmlsignal Network::configurationAdded(object configuration)
    The system has a new \a configuration.
*/

/*!
    \qmlsignal Network::configurationChanged(object configuration)
    The \a configuration has changed, for instance its state.
*/

/*!
    \qmlsignal Network::configurationRemoved(object configuration)
    The \a configuration is gone.
*/

/*!
    \qmlsignal Network::updateCompleted()
    The search that updateConfigurations() began has ended.
*/

QVariantMap Network::configurationToJson(const QNetworkConfiguration &configuration)
{
    return {
        {QStringLiteral("bearerType"), int(configuration.bearerType())},
        {QStringLiteral("bearerTypeFamily"), int(configuration.bearerTypeFamily())},
        {QStringLiteral("bearerTypeName"), configuration.bearerTypeName()},
        {QStringLiteral("children"), converted(configuration.children(), configurationToJson)},
        {QStringLiteral("identifier"), configuration.identifier()},
        {QStringLiteral("isRoamingAvailable"), configuration.isRoamingAvailable()},
        {QStringLiteral("isValid"), configuration.isValid()},
        {QStringLiteral("name"), configuration.name()},
        {QStringLiteral("purpose"), int(configuration.purpose())},
        {QStringLiteral("state"), int(configuration.state())},
        {QStringLiteral("type"), int(configuration.type())},
    };
}

QVariantMap Network::addressToJson(const QHostAddress &address)
{
    if (address.isNull())
        return QVariantMap();
    return {
        {QStringLiteral("address"), address.toString()},
        {QStringLiteral("isLoopback"), address.isLoopback()},
        {QStringLiteral("scopeId"), address.scopeId()},
        {QStringLiteral("protocol"), int(address.protocol())},
    };
}

QVariantMap Network::addressEntryToJson(const QNetworkAddressEntry &entry)
{
    return {
        {QStringLiteral("broadcast"), addressToJson(entry.broadcast())},
        {QStringLiteral("ip"), addressToJson(entry.ip())},
        {QStringLiteral("netmask"), addressToJson(entry.netmask())},
        {QStringLiteral("prefixLength"), entry.prefixLength()},
    };
}

QVariantMap Network::interfaceToJson(const QNetworkInterface &networkInterface)
{
    return {
        {QStringLiteral("hardwareAddress"), networkInterface.hardwareAddress()},
        {QStringLiteral("humanReadableName"), networkInterface.humanReadableName()},
        {QStringLiteral("isValid"), networkInterface.isValid()},
        {QStringLiteral("name"), networkInterface.name()},
        {QStringLiteral("addressEntries"),
         converted(networkInterface.addressEntries(), addressEntryToJson)},
    };
}

void Network::onConfigurationAdded(const QNetworkConfiguration &configuration)
{
    emit configurationAdded(configurationToJson(configuration));
}

void Network::onConfigurationChanged(const QNetworkConfiguration &configuration)
{
    emit configurationChanged(configurationToJson(configuration));
}

void Network::onConfigurationRemoved(const QNetworkConfiguration &configuration)
{
    emit configurationRemoved(configurationToJson(configuration));
}

#include "moc_Network.cpp"

QT_WARNING_POP
