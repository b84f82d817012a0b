#include "SyntheticCamera.h"

#include <QPainter>

namespace {

const int frameInterval = 30; // milliseconds
const int barStep = 9;        // pixels of a frame 640 wide

// The tint that a white balance gives to the picture.
QColor tint(QCameraImageProcessing::WhiteBalanceMode mode)
{
    switch (mode) {
    case QCameraImageProcessing::WhiteBalanceSunlight:
        return QColor(255, 200, 0);
    case QCameraImageProcessing::WhiteBalanceCloudy:
        return QColor(90, 110, 130);
    case QCameraImageProcessing::WhiteBalanceTungsten:
        return QColor(0, 80, 255);
    case QCameraImageProcessing::WhiteBalanceFluorescent:
        return QColor(0, 230, 120);
    default:
        return QColor();
    }
}

} // namespace

SyntheticCamera::SyntheticCamera(QObject *parent)
    : QObject(parent)
{
    exposure.insert(QCameraExposureControl::ExposureMode,
                    QVariant::fromValue(QCameraExposure::ExposureAuto));
    exposure.insert(QCameraExposureControl::ExposureCompensation, 0.0);
    exposure.insert(QCameraExposureControl::ISO, 100);
    exposure.insert(QCameraExposureControl::MeteringMode,
                    QVariant::fromValue(QCameraExposure::MeteringMatrix));
    processing.insert(QCameraImageProcessingControl::WhiteBalancePreset,
                      QVariant::fromValue(QCameraImageProcessing::WhiteBalanceAuto));
    processing.insert(QCameraImageProcessingControl::ContrastAdjustment, 0.0);
    processing.insert(QCameraImageProcessingControl::SaturationAdjustment, 0.0);
    processing.insert(QCameraImageProcessingControl::SharpeningAdjustment, 0.0);
    imageSettings.setCodec(QStringLiteral("jpeg"));
    imageSettings.setResolution(1280, 960);
    viewfinderSettings.setResolution(640, 480);

    m_clock.setInterval(frameInterval);
    connect(&m_clock, &QTimer::timeout, this, &SyntheticCamera::takeFrame);
}

const QVector<SyntheticCamera::Device> &SyntheticCamera::devices()
{
    static const QVector<Device> list{
        {"synthetic-back", QStringLiteral("Back camera"), QCamera::BackFace, QColor(40, 90, 60)},
        {"synthetic-front", QStringLiteral("Front camera"), QCamera::FrontFace,
         QColor(120, 40, 90)}};
    return list;
}

int SyntheticCamera::indexOf(const QByteArray &name)
{
    for (int i = 0; i < devices().size(); ++i) {
        if (devices().at(i).name == name)
            return i;
    }
    return -1;
}

void SyntheticCamera::setRunning(bool running)
{
    if (running == isRunning())
        return;
    if (running)
        m_clock.start();
    else
        m_clock.stop();
    emit runningChanged(running);
}

QImage SyntheticCamera::picture(const QSize &size) const
{
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.fillRect(image.rect(), groundColor());
    painter.scale(size.width() / 640.0, size.height() / 480.0);
    const qreal barWidth = 60 * opticalZoom * digitalZoom;
    const qreal sharpness = adjustment(QCameraImageProcessingControl::SharpeningAdjustment);
    painter.fillRect(QRectF((m_frame * barStep) % 640, 60, barWidth, 360),
                     QColor(255, 255, 255, qRound(191 + 64 * sharpness)));
    return image;
}

void SyntheticCamera::takeFrame()
{
    ++m_frame;
    emit frameTaken(picture(viewfinderSettings.resolution()));
}

QColor SyntheticCamera::groundColor() const
{
    const auto mode = processing.value(QCameraImageProcessingControl::WhiteBalancePreset)
                          .value<QCameraImageProcessing::WhiteBalanceMode>();
    QColor color = tint(mode);
    if (!color.isValid())
        color = devices().at(device).color;
    int hue = 0;
    int saturation = 0;
    int value = 0;
    color.getHsv(&hue, &saturation, &value);
    const qreal colorful = adjustment(QCameraImageProcessingControl::SaturationAdjustment);
    const qreal contrast = adjustment(QCameraImageProcessingControl::ContrastAdjustment);
    saturation = qBound(0, qRound(saturation * (1 + colorful)), 255);
    value = qBound(0, qRound(value * (1 + contrast / 2)), 255);
    return QColor::fromHsv(hue, saturation, value);
}

qreal SyntheticCamera::adjustment(
    QCameraImageProcessingControl::ProcessingParameter parameter) const
{
    return processing.value(parameter).toReal();
}
