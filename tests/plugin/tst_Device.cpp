#include "plugin/Device.h"
#include "support/IsolatedHome.h"

#include <QGeoPositionInfoSource>
#include <QGeoPositionInfoSourceFactory>
#include <QTest>
#include <QtPlugin>

// A position plug-in of the test's own, so that there is one on every machine.
class TestPositionFactory : public QObject, public QGeoPositionInfoSourceFactory
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.qt-project.qt.position.sourcefactory/5.0" FILE
                          "TestPositionFactory.json")
    Q_INTERFACES(QGeoPositionInfoSourceFactory)

public:
    QGeoPositionInfoSource *positionInfoSource(QObject *) override { return nullptr; }
    QGeoSatelliteInfoSource *satelliteInfoSource(QObject *) override { return nullptr; }
    QGeoAreaMonitorSource *areaMonitor(QObject *) override { return nullptr; }
};

class tst_Device : public QObject
{
    Q_OBJECT

private slots:
    void listsThePositionPlugIns();
};

void tst_Device::listsThePositionPlugIns()
{
    const Device device;

    const QStringList sources = device.availablePositionSources();

    QVERIFY2(sources.contains("test station"), qPrintable(sources.join(", ")));
    QCOMPARE(sources, QGeoPositionInfoSource::availableSources());
    QCOMPARE(device.property("availablePositionSources").toStringList(), sources);
}

Q_IMPORT_PLUGIN(TestPositionFactory)
TESSALINE_TEST_MAIN(tst_Device)
#include "tst_Device.moc"
