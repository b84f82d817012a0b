#include "plugin/Device.h"

#include <QGeoPositionInfoSource>

Device::Device(QObject *parent)
    : TessalineObject(parent)
{
}

QStringList Device::availablePositionSources() const
{
    return QGeoPositionInfoSource::availableSources();
}

#include "moc_Device.cpp"
