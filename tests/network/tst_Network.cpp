#include "network/Network.h"
#include "network/NetworkProxy.h"
#include "support/IsolatedHome.h"

#include <QNetworkConfigurationManager>
#include <QNetworkInterface>
#include <QSignalSpy>
#include <QTest>

// Bearer management is deprecated in Qt 5.15, and this is a test of it.
QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED

class tst_Network : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void addressBecomesAMap_data();
    void addressBecomesAMap();
    void nullAddressIsAnEmptyMap();
    void entryBecomesAMap();
    void entryWithoutBroadcastHasAnEmptyMap();
    void interfacesAreTheMachines();
    void addressesAreTheMachines();
    void configurationBecomesAMap();
    void configurationsAreTheManagers();
    void configurationSignalsCarryMaps_data();
    void configurationSignalsCarryMaps();
    void managersSignalsAreForwarded();
    void onlineStateIsTheManagers();
    void updateCompletes();
    void numbersAreQts();

private:
    static QNetworkConfigurationManager *manager(const Network &state)
    {
        return state.findChild<QNetworkConfigurationManager *>();
    }
};

void tst_Network::initTestCase()
{
    qRegisterMetaType<QNetworkConfiguration>();
}

void tst_Network::addressBecomesAMap_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isLoopback");
    QTest::addColumn<int>("protocol");
    QTest::addColumn<QString>("scopeId");
    QTest::newRow("IPv4") << "192.0.2.1" << false << int(Network::ProtocolIPv4) << "";
    QTest::newRow("IPv4 loopback") << "127.0.0.1" << true << int(Network::ProtocolIPv4) << "";
    QTest::newRow("IPv6") << "2001:db8::1" << false << int(Network::ProtocolIPv6) << "";
    QTest::newRow("IPv6 loopback") << "::1" << true << int(Network::ProtocolIPv6) << "";
    QTest::newRow("IPv6 of a link")
        << "fe80::1%eth0" << false << int(Network::ProtocolIPv6) << "eth0";
}

void tst_Network::addressBecomesAMap()
{
    QFETCH(QString, text);
    const QVariantMap map = Network::addressToJson(QHostAddress(text));
    QCOMPARE(map.keys(), QStringList({"address", "isLoopback", "protocol", "scopeId"}));
    QCOMPARE(map.value("address"), QVariant(text));
    QCOMPARE(map.value("protocol").type(), QVariant::Int);
    QTEST(map.value("isLoopback").toBool(), "isLoopback");
    QTEST(map.value("protocol").toInt(), "protocol");
    QTEST(map.value("scopeId").toString(), "scopeId");
}

void tst_Network::nullAddressIsAnEmptyMap()
{
    QCOMPARE(Network::addressToJson(QHostAddress()), QVariantMap());
}

void tst_Network::entryBecomesAMap()
{
    QNetworkAddressEntry entry;
    entry.setIp(QHostAddress("192.0.2.5"));
    entry.setPrefixLength(24);
    entry.setBroadcast(QHostAddress("192.0.2.255"));
    const QVariantMap map = Network::addressEntryToJson(entry);
    QCOMPARE(map.keys(), QStringList({"broadcast", "ip", "netmask", "prefixLength"}));
    QCOMPARE(map.value("broadcast").toMap().value("address"), QVariant("192.0.2.255"));
    QCOMPARE(map.value("ip").toMap().value("address"), QVariant("192.0.2.5"));
    QCOMPARE(map.value("netmask").toMap().value("address"), QVariant("255.255.255.0"));
    QCOMPARE(map.value("prefixLength"), QVariant(24));
}

void tst_Network::entryWithoutBroadcastHasAnEmptyMap()
{
    QNetworkAddressEntry entry;
    entry.setIp(QHostAddress("192.0.2.5"));
    const QVariant broadcast = Network::addressEntryToJson(entry).value("broadcast");
    QCOMPARE(broadcast.type(), QVariant::Map);
    QCOMPARE(broadcast.toMap(), QVariantMap());
}

void tst_Network::interfacesAreTheMachines()
{
    const Network state;
    const QList<QNetworkInterface> interfaces = QNetworkInterface::allInterfaces();
    const QVariantList list = state.interfaces();
    QVERIFY(!list.isEmpty());
    QCOMPARE(list.size(), interfaces.size());
    for (int i = 0; i < list.size(); ++i) {
        const QVariantMap map = list.at(i).toMap();
        QCOMPARE(map.keys(), QStringList({"addressEntries", "hardwareAddress", "humanReadableName",
                                          "isValid", "name"}));
        QCOMPARE(map.value("name"), QVariant(interfaces.at(i).name()));
        QCOMPARE(map.value("humanReadableName"), QVariant(interfaces.at(i).humanReadableName()));
        QCOMPARE(map.value("hardwareAddress"), QVariant(interfaces.at(i).hardwareAddress()));
        QCOMPARE(map.value("isValid"), QVariant(true));
        QCOMPARE(map.value("addressEntries").toList().size(),
                 interfaces.at(i).addressEntries().size());
    }
}

void tst_Network::addressesAreTheMachines()
{
    const Network state;
    const QVariantList list = state.addresses();
    const QList<QHostAddress> addresses = QNetworkInterface::allAddresses();
    QCOMPARE(list.size(), addresses.size());
    for (int i = 0; i < list.size(); ++i)
        QCOMPARE(list.at(i).toMap(), Network::addressToJson(addresses.at(i)));
}

void tst_Network::configurationBecomesAMap()
{
    const QVariantMap map = Network::configurationToJson(QNetworkConfiguration());
    const QVariantMap expected{{"bearerType", int(Network::BearerUnknown)},
                               {"bearerTypeFamily", int(Network::BearerUnknown)},
                               {"bearerTypeName", ""},
                               {"children", QVariantList()},
                               {"identifier", ""},
                               {"isRoamingAvailable", false},
                               {"isValid", false},
                               {"name", ""},
                               {"purpose", int(Network::ConfigurationPurposeUnknown)},
                               {"state", int(Network::ConfigurationStateUndefined)},
                               {"type", int(Network::ConfigurationTypeInvalid)}};
    QCOMPARE(map, expected);
    for (auto value = map.begin(); value != map.end(); ++value)
        QCOMPARE(value->type(), expected.value(value.key()).type());
}

void tst_Network::configurationsAreTheManagers()
{
    const Network state;
    for (const int filter : {0, 2, 6, 14}) {
        const QList<QNetworkConfiguration> configurations =
            manager(state)->allConfigurations(QNetworkConfiguration::StateFlags(filter));
        const QVariantList list = state.getConfigurations(filter);
        QCOMPARE(list.size(), configurations.size());
        for (int i = 0; i < list.size(); ++i) {
            QCOMPARE(list.at(i).toMap(), Network::configurationToJson(configurations.at(i)));
            QCOMPARE(list.at(i).toMap().value("state").toInt() & filter, filter);
        }
    }
    QCOMPARE(state.getConfigurations(), state.getConfigurations(0));
    QCOMPARE(state.defaultConfiguration(),
             Network::configurationToJson(manager(state)->defaultConfiguration()));
}

void tst_Network::configurationSignalsCarryMaps_data()
{
    QTest::addColumn<QByteArray>("signal");
    for (const char *signal :
         {"configurationAdded", "configurationChanged", "configurationRemoved"})
        QTest::newRow(signal) << QByteArray(signal);
}

void tst_Network::configurationSignalsCarryMaps()
{
    QFETCH(QByteArray, signal);
    Network state;
    QSignalSpy spy(&state, ("2" + signal + "(QVariantMap)").constData());
    QVERIFY(QMetaObject::invokeMethod(manager(state), signal.constData(),
                                      Q_ARG(QNetworkConfiguration, QNetworkConfiguration())));
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.first().first().toMap(), Network::configurationToJson(QNetworkConfiguration()));
}

void tst_Network::managersSignalsAreForwarded()
{
    Network state;
    QSignalSpy online(&state, &Network::onlineStateChanged);
    QSignalSpy completed(&state, &Network::updateCompleted);
    emit manager(state)->onlineStateChanged(true);
    emit manager(state)->onlineStateChanged(false);
    QCOMPARE(online.count(), 2);
    QCOMPARE(online.first().first(), QVariant(true));
    QCOMPARE(online.last().first(), QVariant(false));
    emit manager(state)->updateCompleted();
    QCOMPARE(completed.count(), 1);
}

void tst_Network::onlineStateIsTheManagers()
{
    const Network state;
    QCOMPARE(state.isOnline(), manager(state)->isOnline());
}

void tst_Network::updateCompletes()
{
    Network state;
    QSignalSpy completed(&state, &Network::updateCompleted);
    state.updateConfigurations();
    QVERIFY(completed.wait());
}

void tst_Network::numbersAreQts()
{
    QCOMPARE(int(Network::ConfigurationTypeUserChoice), int(QNetworkConfiguration::UserChoice));
    QCOMPARE(int(Network::ConfigurationTypeInvalid), int(QNetworkConfiguration::Invalid));
    QCOMPARE(int(Network::ConfigurationPurposeServiceSpecific),
             int(QNetworkConfiguration::ServiceSpecificPurpose));
    QCOMPARE(int(Network::ConfigurationStateUndefined), int(QNetworkConfiguration::Undefined));
    QCOMPARE(int(Network::ConfigurationStateDefined), int(QNetworkConfiguration::Defined));
    QCOMPARE(int(Network::ConfigurationStateDiscovered), int(QNetworkConfiguration::Discovered));
    QCOMPARE(int(Network::ConfigurationStateActive), int(QNetworkConfiguration::Active));
    QCOMPARE(int(Network::BearerEVDO), int(QNetworkConfiguration::BearerEVDO));
    QCOMPARE(int(Network::Bearer4G), int(QNetworkConfiguration::Bearer4G));
    QCOMPARE(int(Network::ProtocolUnknown), int(QAbstractSocket::UnknownNetworkLayerProtocol));
    QCOMPARE(int(Network::ProtocolAny), int(QAbstractSocket::AnyIPProtocol));
}

QT_WARNING_POP

TESSALINE_TEST_MAIN(tst_Network)
#include "tst_Network.moc"
