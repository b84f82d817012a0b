#include "SyntheticCameraPlugin.h"

#include "SyntheticCamera.h"
#include "SyntheticCameraService.h"

QMediaService *SyntheticCameraPlugin::create(const QString &key)
{
    return key == QLatin1String(Q_MEDIASERVICE_CAMERA) ? new SyntheticCameraService : nullptr;
}

void SyntheticCameraPlugin::release(QMediaService *service)
{
    delete service;
}

QList<QByteArray> SyntheticCameraPlugin::devices(const QByteArray &service) const
{
    QList<QByteArray> names;
    if (service == Q_MEDIASERVICE_CAMERA) {
        for (const SyntheticCamera::Device &device : SyntheticCamera::devices())
            names.append(device.name);
    }
    return names;
}

QString SyntheticCameraPlugin::deviceDescription(const QByteArray &, const QByteArray &device)
{
    const int index = SyntheticCamera::indexOf(device);
    return index < 0 ? QString() : SyntheticCamera::devices().at(index).description;
}

QByteArray SyntheticCameraPlugin::defaultDevice(const QByteArray &service) const
{
    return devices(service).value(0);
}

QCamera::Position SyntheticCameraPlugin::cameraPosition(const QByteArray &device) const
{
    const int index = SyntheticCamera::indexOf(device);
    return index < 0 ? QCamera::UnspecifiedPosition : SyntheticCamera::devices().at(index).position;
}

int SyntheticCameraPlugin::cameraOrientation(const QByteArray &) const
{
    return 0;
}
