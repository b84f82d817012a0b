#pragma once

#include <QMediaServiceProviderPlugin>

// What Qt Multimedia finds in the plug-in path's "mediaservice" folder.
class SyntheticCameraPlugin : public QMediaServiceProviderPlugin,
                              public QMediaServiceSupportedDevicesInterface,
                              public QMediaServiceDefaultDeviceInterface,
                              public QMediaServiceCameraInfoInterface
{
    Q_OBJECT
    Q_INTERFACES(QMediaServiceSupportedDevicesInterface)
    Q_INTERFACES(QMediaServiceDefaultDeviceInterface)
    Q_INTERFACES(QMediaServiceCameraInfoInterface)
    Q_PLUGIN_METADATA(IID "org.qt-project.qt.mediaserviceproviderfactory/5.0" FILE
                          "syntheticcamera.json")

public:
    QMediaService *create(const QString &key) override;
    void release(QMediaService *service) override;

    QList<QByteArray> devices(const QByteArray &service) const override;
    QString deviceDescription(const QByteArray &service, const QByteArray &device) override;
    QByteArray defaultDevice(const QByteArray &service) const override;
    QCamera::Position cameraPosition(const QByteArray &device) const override;
    int cameraOrientation(const QByteArray &device) const override;
};
