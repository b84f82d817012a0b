#pragma once

#include "plugin/TessalineObject.h"

#include <QVariantList>
#include <QVariantMap>

class NetworkProxy;
class QHostAddress;
class QNetworkAddressEntry;
class QNetworkConfiguration;
class QNetworkConfigurationManager;
class QNetworkInterface;

// Bearer management is deprecated in Qt 5.15, and the online state has no other source there.
QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED

// The machine's network state as plain maps and lists. QML name: Network, uncreatable; reached as
// Tessaline.network.
class TESSALINE_EXPORT Network : public TessalineObject
{
    Q_OBJECT
    Q_PROPERTY(NetworkProxy *proxy READ proxy CONSTANT)
    Q_PROPERTY(bool isOnline READ isOnline NOTIFY onlineStateChanged)
    Q_PROPERTY(QVariantMap defaultConfiguration READ defaultConfiguration)
    Q_PROPERTY(QVariantList addresses READ addresses)
    Q_PROPERTY(QVariantList interfaces READ interfaces)

public:
    enum ConfigurationType {
        ConfigurationTypeInternetAccessPoint = 0,
        ConfigurationTypeServiceNetwork = 1,
        ConfigurationTypeUserChoice = 2,
        ConfigurationTypeInvalid = 3
    };
    Q_ENUM(ConfigurationType)

    enum ConfigurationPurpose {
        ConfigurationPurposeUnknown = 0,
        ConfigurationPurposePublic = 1,
        ConfigurationPurposePrivate = 2,
        ConfigurationPurposeServiceSpecific = 3
    };
    Q_ENUM(ConfigurationPurpose)

    // Bits: an active configuration is also discovered and defined.
    enum ConfigurationState {
        ConfigurationStateUndefined = 1,
        ConfigurationStateDefined = 2,
        ConfigurationStateDiscovered = 6,
        ConfigurationStateActive = 14
    };
    Q_ENUM(ConfigurationState)

    enum BearerType {
        BearerUnknown = 0,
        BearerEthernet = 1,
        BearerWLAN = 2,
        Bearer2G = 3,
        BearerCDMA2000 = 4,
        BearerWCDMA = 5,
        BearerHSPA = 6,
        BearerBluetooth = 7,
        BearerWiMAX = 8,
        BearerEVDO = 9,
        BearerLTE = 10,
        Bearer3G = 11,
        Bearer4G = 12
    };
    Q_ENUM(BearerType)

    enum NetworkLayerProtocol {
        ProtocolUnknown = -1,
        ProtocolIPv4 = 0,
        ProtocolIPv6 = 1,
        ProtocolAny = 2
    };
    Q_ENUM(NetworkLayerProtocol)

    explicit Network(QObject *parent = nullptr);

    // Made at the first read, which is when the system's proxy is taken over.
    NetworkProxy *proxy();
    bool isOnline() const;
    QVariantMap defaultConfiguration() const;
    QVariantList addresses() const;
    QVariantList interfaces() const;

    // Configurations whose state has all bits of `filter` (a ConfigurationState); 0 means all.
    Q_INVOKABLE QVariantList getConfigurations(int filter) const;
    Q_INVOKABLE QVariantList getConfigurations() const;
    // Ends with updateCompleted().
    Q_INVOKABLE void updateConfigurations();

    static QVariantMap configurationToJson(const QNetworkConfiguration &configuration);
    static QVariantMap addressToJson(const QHostAddress &address); // empty for a null address
    static QVariantMap addressEntryToJson(const QNetworkAddressEntry &entry);
    static QVariantMap interfaceToJson(const QNetworkInterface &networkInterface);

signals:
    void onlineStateChanged(bool online);
    void configurationAdded(const QVariantMap &configuration);
    void configurationChanged(const QVariantMap &configuration);
    void configurationRemoved(const QVariantMap &configuration);
    void updateCompleted();

private slots:
    void onConfigurationAdded(const QNetworkConfiguration &configuration);
    void onConfigurationChanged(const QNetworkConfiguration &configuration);
    void onConfigurationRemoved(const QNetworkConfiguration &configuration);

private:
    QNetworkConfigurationManager *m_configurationManager; // child
    NetworkProxy *m_proxy = nullptr;                      // child
};

QT_WARNING_POP
