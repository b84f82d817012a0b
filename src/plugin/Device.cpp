#include "plugin/Device.h"

#include <QGeoPositionInfoSource>

/*!
    \qmltype Device
    \inqmlmodule Zemrik.Tessaline
    \brief What the machine has.

    QML can't create this type; use \c{Tessaline.device}.

    \qml
    Button {
        text: qsTr("Where am I?")
        visible: Tessaline.device.availablePositionSources.length > 0
    }
    \endqml
*/

/*!
    \qmlproperty list<string> Device::availablePositionSources
    \readonly
    The names of the position plug-ins, for \c{PositionSource.name} of Qt Positioning.
*/

Device::Device(QObject *parent)
    : TessalineObject(parent)
{
}

QStringList Device::availablePositionSources() const
{
    return QGeoPositionInfoSource::availableSources();
}

#include "moc_Device.cpp"
