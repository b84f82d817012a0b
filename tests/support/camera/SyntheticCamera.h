#pragma once

#include <QCamera>
#include <QCameraExposure>
#include <QCameraExposureControl>
#include <QCameraFocus>
#include <QCameraImageProcessing>
#include <QCameraImageProcessingControl>
#include <QCameraViewfinderSettings>
#include <QColor>
#include <QImage>
#include <QImageEncoderSettings>
#include <QMap>
#include <QObject>
#include <QPointF>
#include <QTimer>
#include <QVector>

// A camera that draws its pictures: a ground in the colour of the device and the white balance, and
// a bar that moves with each frame. Its settings are what the controls of the media service write.
class SyntheticCamera : public QObject
{
    Q_OBJECT

public:
    struct Device
    {
        QByteArray name;
        QString description;
        QCamera::Position position;
        QColor color;
    };

    explicit SyntheticCamera(QObject *parent = nullptr);

    static const QVector<Device> &devices();
    static int indexOf(const QByteArray &name);

    // Frames come while it runs.
    bool isRunning() const { return m_clock.isActive(); }
    void setRunning(bool running);
    QImage picture(const QSize &size) const;

    int device = 0;
    QCameraExposure::FlashModes flashMode = QCameraExposure::FlashAuto;
    QMap<int, QVariant> exposure;
    QMap<int, QVariant> processing;
    QCameraFocus::FocusModes focusMode = QCameraFocus::AutoFocus;
    QCameraFocus::FocusPointMode focusPointMode = QCameraFocus::FocusPointAuto;
    QPointF focusPoint = QPointF(0.5, 0.5);
    qreal opticalZoom = 1;
    qreal digitalZoom = 1;
    QImageEncoderSettings imageSettings;
    QCameraViewfinderSettings viewfinderSettings;

signals:
    void runningChanged(bool running);
    void frameTaken(const QImage &frame);

private:
    void takeFrame();
    QColor groundColor() const;
    qreal adjustment(QCameraImageProcessingControl::ProcessingParameter parameter) const;

    QTimer m_clock;
    int m_frame = 0;
};
