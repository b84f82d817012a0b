#pragma once

#include "SyntheticCamera.h"

#include <QCameraCaptureDestinationControl>
#include <QCameraControl>
#include <QCameraExposureControl>
#include <QCameraFlashControl>
#include <QCameraFocusControl>
#include <QCameraImageCaptureControl>
#include <QCameraImageProcessingControl>
#include <QCameraInfoControl>
#include <QCameraViewfinderSettingsControl2>
#include <QCameraZoomControl>
#include <QImageEncoderControl>
#include <QPointer>
#include <QVideoDeviceSelectorControl>
#include <QVideoRendererControl>

// The controls through which Qt Multimedia reaches a SyntheticCamera. They live as long as it does.

class SyntheticStateControl : public QCameraControl
{
    Q_OBJECT

public:
    explicit SyntheticStateControl(SyntheticCamera *camera);

    QCamera::State state() const override { return m_state; }
    void setState(QCamera::State state) override;
    QCamera::Status status() const override { return m_status; }
    QCamera::CaptureModes captureMode() const override { return m_mode; }
    void setCaptureMode(QCamera::CaptureModes mode) override;
    bool isCaptureModeSupported(QCamera::CaptureModes mode) const override;
    bool canChangeProperty(PropertyChangeType, QCamera::Status) const override { return true; }

private:
    SyntheticCamera *m_camera;
    QCamera::State m_state = QCamera::UnloadedState;
    QCamera::Status m_status = QCamera::UnloadedStatus;
    QCamera::CaptureModes m_mode = QCamera::CaptureStillImage;
};

class SyntheticCaptureControl : public QCameraImageCaptureControl
{
    Q_OBJECT

public:
    explicit SyntheticCaptureControl(SyntheticCamera *camera);

    bool isReadyForCapture() const override { return m_camera->isRunning(); }
    QCameraImageCapture::DriveMode driveMode() const override
    {
        return QCameraImageCapture::SingleImageCapture;
    }
    void setDriveMode(QCameraImageCapture::DriveMode) override {}
    int capture(const QString &fileName) override;
    void cancelCapture() override {}

private:
    void finish(int id, const QString &fileName);

    SyntheticCamera *m_camera;
    int m_lastId = 0;
};

class SyntheticDestinationControl : public QCameraCaptureDestinationControl
{
    Q_OBJECT

public:
    explicit SyntheticDestinationControl(QObject *parent)
        : QCameraCaptureDestinationControl(parent)
    {
    }

    bool
    isCaptureDestinationSupported(QCameraImageCapture::CaptureDestinations where) const override
    {
        return where == QCameraImageCapture::CaptureToFile;
    }
    QCameraImageCapture::CaptureDestinations captureDestination() const override
    {
        return QCameraImageCapture::CaptureToFile;
    }
    void setCaptureDestination(QCameraImageCapture::CaptureDestinations) override {}
};

class SyntheticDeviceControl : public QVideoDeviceSelectorControl
{
    Q_OBJECT

public:
    explicit SyntheticDeviceControl(SyntheticCamera *camera);

    int deviceCount() const override { return SyntheticCamera::devices().size(); }
    QString deviceName(int index) const override;
    QString deviceDescription(int index) const override;
    int defaultDevice() const override { return 0; }
    int selectedDevice() const override { return m_camera->device; }
    void setSelectedDevice(int index) override;

private:
    SyntheticCamera *m_camera;
};

class SyntheticInfoControl : public QCameraInfoControl
{
    Q_OBJECT

public:
    explicit SyntheticInfoControl(QObject *parent)
        : QCameraInfoControl(parent)
    {
    }

    QCamera::Position cameraPosition(const QString &deviceName) const override;
    int cameraOrientation(const QString &) const override { return 0; }
};

class SyntheticRendererControl : public QVideoRendererControl
{
    Q_OBJECT

public:
    explicit SyntheticRendererControl(SyntheticCamera *camera);
    ~SyntheticRendererControl() override;

    QAbstractVideoSurface *surface() const override;
    void setSurface(QAbstractVideoSurface *surface) override;

private:
    void show(const QImage &frame);
    void stop();

    QPointer<QAbstractVideoSurface> m_surface;
};

class SyntheticExposureControl : public QCameraExposureControl
{
    Q_OBJECT

public:
    explicit SyntheticExposureControl(SyntheticCamera *camera);

    bool isParameterSupported(ExposureParameter parameter) const override;
    QVariantList supportedParameterRange(ExposureParameter parameter,
                                         bool *continuous) const override;
    QVariant requestedValue(ExposureParameter parameter) const override;
    QVariant actualValue(ExposureParameter parameter) const override;
    bool setValue(ExposureParameter parameter, const QVariant &value) override;

private:
    SyntheticCamera *m_camera;
};

class SyntheticFlashControl : public QCameraFlashControl
{
    Q_OBJECT

public:
    explicit SyntheticFlashControl(SyntheticCamera *camera);

    QCameraExposure::FlashModes flashMode() const override { return m_camera->flashMode; }
    void setFlashMode(QCameraExposure::FlashModes mode) override { m_camera->flashMode = mode; }
    bool isFlashModeSupported(QCameraExposure::FlashModes) const override { return true; }
    bool isFlashReady() const override { return true; }

private:
    SyntheticCamera *m_camera;
};

class SyntheticFocusControl : public QCameraFocusControl
{
    Q_OBJECT

public:
    explicit SyntheticFocusControl(SyntheticCamera *camera);

    QCameraFocus::FocusModes focusMode() const override { return m_camera->focusMode; }
    void setFocusMode(QCameraFocus::FocusModes mode) override;
    bool isFocusModeSupported(QCameraFocus::FocusModes) const override { return true; }
    QCameraFocus::FocusPointMode focusPointMode() const override
    {
        return m_camera->focusPointMode;
    }
    void setFocusPointMode(QCameraFocus::FocusPointMode mode) override;
    bool isFocusPointModeSupported(QCameraFocus::FocusPointMode) const override { return true; }
    QPointF customFocusPoint() const override { return m_camera->focusPoint; }
    void setCustomFocusPoint(const QPointF &point) override;
    QCameraFocusZoneList focusZones() const override { return {}; }

private:
    SyntheticCamera *m_camera;
};

class SyntheticZoomControl : public QCameraZoomControl
{
    Q_OBJECT

public:
    explicit SyntheticZoomControl(SyntheticCamera *camera);

    qreal maximumOpticalZoom() const override { return 3; }
    qreal maximumDigitalZoom() const override { return 4; }
    qreal requestedOpticalZoom() const override { return m_camera->opticalZoom; }
    qreal requestedDigitalZoom() const override { return m_camera->digitalZoom; }
    qreal currentOpticalZoom() const override { return m_camera->opticalZoom; }
    qreal currentDigitalZoom() const override { return m_camera->digitalZoom; }
    void zoomTo(qreal optical, qreal digital) override;

private:
    SyntheticCamera *m_camera;
};

class SyntheticProcessingControl : public QCameraImageProcessingControl
{
    Q_OBJECT

public:
    explicit SyntheticProcessingControl(SyntheticCamera *camera);

    bool isParameterSupported(ProcessingParameter parameter) const override;
    bool isParameterValueSupported(ProcessingParameter parameter, const QVariant &) const override;
    QVariant parameter(ProcessingParameter parameter) const override;
    void setParameter(ProcessingParameter parameter, const QVariant &value) override;

private:
    SyntheticCamera *m_camera;
};

class SyntheticImageControl : public QImageEncoderControl
{
    Q_OBJECT

public:
    explicit SyntheticImageControl(SyntheticCamera *camera);

    QStringList supportedImageCodecs() const override;
    QString imageCodecDescription(const QString &codec) const override;
    QList<QSize> supportedResolutions(const QImageEncoderSettings &,
                                      bool *continuous) const override;
    QImageEncoderSettings imageSettings() const override { return m_camera->imageSettings; }
    void setImageSettings(const QImageEncoderSettings &settings) override;

private:
    SyntheticCamera *m_camera;
};

class SyntheticViewfinderControl : public QCameraViewfinderSettingsControl2
{
    Q_OBJECT

public:
    explicit SyntheticViewfinderControl(SyntheticCamera *camera);

    QList<QCameraViewfinderSettings> supportedViewfinderSettings() const override;
    QCameraViewfinderSettings viewfinderSettings() const override
    {
        return m_camera->viewfinderSettings;
    }
    void setViewfinderSettings(const QCameraViewfinderSettings &settings) override;

private:
    SyntheticCamera *m_camera;
};
