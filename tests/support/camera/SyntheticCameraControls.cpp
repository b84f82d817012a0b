#include "SyntheticCameraControls.h"

#include <QAbstractVideoSurface>
#include <QVideoFrame>
#include <QVideoSurfaceFormat>

SyntheticStateControl::SyntheticStateControl(SyntheticCamera *camera)
    : QCameraControl(camera)
    , m_camera(camera)
{
}

void SyntheticStateControl::setState(QCamera::State state)
{
    if (state == m_state)
        return;
    m_state = state;
    m_status = state == QCamera::ActiveState   ? QCamera::ActiveStatus
               : state == QCamera::LoadedState ? QCamera::LoadedStatus
                                               : QCamera::UnloadedStatus;
    m_camera->setRunning(state == QCamera::ActiveState);
    emit stateChanged(m_state);
    emit statusChanged(m_status);
}

void SyntheticStateControl::setCaptureMode(QCamera::CaptureModes mode)
{
    if (mode == m_mode || !isCaptureModeSupported(mode))
        return;
    m_mode = mode;
    emit captureModeChanged(mode);
}

bool SyntheticStateControl::isCaptureModeSupported(QCamera::CaptureModes mode) const
{
    return mode == QCamera::CaptureStillImage || mode == QCamera::CaptureViewfinder;
}

SyntheticCaptureControl::SyntheticCaptureControl(SyntheticCamera *camera)
    : QCameraImageCaptureControl(camera)
    , m_camera(camera)
{
    connect(camera, &SyntheticCamera::runningChanged, this,
            &QCameraImageCaptureControl::readyForCaptureChanged);
}

// As with a real camera, the picture comes after the call.
int SyntheticCaptureControl::capture(const QString &fileName)
{
    const int id = ++m_lastId;
    QTimer::singleShot(0, this, [this, id, fileName] { finish(id, fileName); });
    return id;
}

void SyntheticCaptureControl::finish(int id, const QString &fileName)
{
    if (!isReadyForCapture()) {
        emit error(id, QCameraImageCapture::NotReadyError, QStringLiteral("The camera is off"));
        return;
    }
    emit imageExposed(id);
    const QImage picture = m_camera->picture(m_camera->imageSettings.resolution());
    emit imageCaptured(id, picture.scaledToWidth(320));
    emit imageMetadataAvailable(id, QStringLiteral("CameraModel"), QStringLiteral("Synthetic"));
    if (picture.save(fileName, "JPEG"))
        emit imageSaved(id, fileName);
    else
        emit error(id, QCameraImageCapture::ResourceError,
                   QStringLiteral("Can't write %1").arg(fileName));
}

SyntheticDeviceControl::SyntheticDeviceControl(SyntheticCamera *camera)
    : QVideoDeviceSelectorControl(camera)
    , m_camera(camera)
{
}

QString SyntheticDeviceControl::deviceName(int index) const
{
    return QString::fromLatin1(SyntheticCamera::devices().at(index).name);
}

QString SyntheticDeviceControl::deviceDescription(int index) const
{
    return SyntheticCamera::devices().at(index).description;
}

void SyntheticDeviceControl::setSelectedDevice(int index)
{
    if (index == m_camera->device || index < 0 || index >= deviceCount())
        return;
    m_camera->device = index;
    emit selectedDeviceChanged(index);
    emit selectedDeviceChanged(deviceName(index));
}

QCamera::Position SyntheticInfoControl::cameraPosition(const QString &deviceName) const
{
    const int index = SyntheticCamera::indexOf(deviceName.toLatin1());
    return index < 0 ? QCamera::UnspecifiedPosition : SyntheticCamera::devices().at(index).position;
}

SyntheticRendererControl::SyntheticRendererControl(SyntheticCamera *camera)
    : QVideoRendererControl(camera)
{
    connect(camera, &SyntheticCamera::frameTaken, this, &SyntheticRendererControl::show);
    connect(camera, &SyntheticCamera::runningChanged, this, [this](bool running) {
        if (!running)
            stop();
    });
}

SyntheticRendererControl::~SyntheticRendererControl()
{
    stop();
}

QAbstractVideoSurface *SyntheticRendererControl::surface() const
{
    return m_surface;
}

void SyntheticRendererControl::setSurface(QAbstractVideoSurface *surface)
{
    if (surface != m_surface)
        stop();
    m_surface = surface;
}

void SyntheticRendererControl::show(const QImage &frame)
{
    if (!m_surface)
        return;
    if (m_surface->isActive() && m_surface->surfaceFormat().frameSize() != frame.size())
        m_surface->stop();
    if (!m_surface->isActive()
        && !m_surface->start(QVideoSurfaceFormat(frame.size(), QVideoFrame::Format_RGB32)))
        return;
    m_surface->present(QVideoFrame(frame));
}

void SyntheticRendererControl::stop()
{
    if (m_surface && m_surface->isActive())
        m_surface->stop();
}

SyntheticExposureControl::SyntheticExposureControl(SyntheticCamera *camera)
    : QCameraExposureControl(camera)
    , m_camera(camera)
{
}

bool SyntheticExposureControl::isParameterSupported(ExposureParameter parameter) const
{
    return m_camera->exposure.contains(parameter);
}

QVariantList SyntheticExposureControl::supportedParameterRange(ExposureParameter parameter,
                                                               bool *continuous) const
{
    if (continuous)
        *continuous = parameter == ExposureCompensation;
    switch (parameter) {
    case ISO:
        return {100, 200, 400, 800};
    case ExposureCompensation:
        return {-2.0, 2.0};
    case ExposureMode:
        return {QVariant::fromValue(QCameraExposure::ExposureAuto),
                QVariant::fromValue(QCameraExposure::ExposurePortrait),
                QVariant::fromValue(QCameraExposure::ExposureNight)};
    case MeteringMode:
        return {QVariant::fromValue(QCameraExposure::MeteringMatrix),
                QVariant::fromValue(QCameraExposure::MeteringSpot)};
    default:
        return {};
    }
}

QVariant SyntheticExposureControl::requestedValue(ExposureParameter parameter) const
{
    return m_camera->exposure.value(parameter);
}

QVariant SyntheticExposureControl::actualValue(ExposureParameter parameter) const
{
    return m_camera->exposure.value(parameter);
}

bool SyntheticExposureControl::setValue(ExposureParameter parameter, const QVariant &value)
{
    if (!isParameterSupported(parameter))
        return false;
    if (m_camera->exposure.value(parameter) == value)
        return true;
    m_camera->exposure.insert(parameter, value);
    emit requestedValueChanged(parameter);
    emit actualValueChanged(parameter);
    return true;
}

SyntheticFlashControl::SyntheticFlashControl(SyntheticCamera *camera)
    : QCameraFlashControl(camera)
    , m_camera(camera)
{
}

SyntheticFocusControl::SyntheticFocusControl(SyntheticCamera *camera)
    : QCameraFocusControl(camera)
    , m_camera(camera)
{
}

void SyntheticFocusControl::setFocusMode(QCameraFocus::FocusModes mode)
{
    m_camera->focusMode = mode;
    emit focusModeChanged(mode);
}

void SyntheticFocusControl::setFocusPointMode(QCameraFocus::FocusPointMode mode)
{
    m_camera->focusPointMode = mode;
    emit focusPointModeChanged(mode);
}

void SyntheticFocusControl::setCustomFocusPoint(const QPointF &point)
{
    m_camera->focusPoint = point;
    emit customFocusPointChanged(point);
}

SyntheticZoomControl::SyntheticZoomControl(SyntheticCamera *camera)
    : QCameraZoomControl(camera)
    , m_camera(camera)
{
}

void SyntheticZoomControl::zoomTo(qreal optical, qreal digital)
{
    m_camera->opticalZoom = qBound(qreal(1), optical, maximumOpticalZoom());
    m_camera->digitalZoom = qBound(qreal(1), digital, maximumDigitalZoom());
    emit requestedOpticalZoomChanged(m_camera->opticalZoom);
    emit currentOpticalZoomChanged(m_camera->opticalZoom);
    emit requestedDigitalZoomChanged(m_camera->digitalZoom);
    emit currentDigitalZoomChanged(m_camera->digitalZoom);
}

SyntheticProcessingControl::SyntheticProcessingControl(SyntheticCamera *camera)
    : QCameraImageProcessingControl(camera)
    , m_camera(camera)
{
}

bool SyntheticProcessingControl::isParameterSupported(ProcessingParameter parameter) const
{
    return m_camera->processing.contains(parameter);
}

bool SyntheticProcessingControl::isParameterValueSupported(ProcessingParameter parameter,
                                                           const QVariant &) const
{
    return isParameterSupported(parameter);
}

QVariant SyntheticProcessingControl::parameter(ProcessingParameter parameter) const
{
    return m_camera->processing.value(parameter);
}

void SyntheticProcessingControl::setParameter(ProcessingParameter parameter, const QVariant &value)
{
    if (isParameterSupported(parameter))
        m_camera->processing.insert(parameter, value);
}

SyntheticImageControl::SyntheticImageControl(SyntheticCamera *camera)
    : QImageEncoderControl(camera)
    , m_camera(camera)
{
}

QStringList SyntheticImageControl::supportedImageCodecs() const
{
    return {QStringLiteral("jpeg")};
}

QString SyntheticImageControl::imageCodecDescription(const QString &) const
{
    return QStringLiteral("JPEG");
}

QList<QSize> SyntheticImageControl::supportedResolutions(const QImageEncoderSettings &,
                                                         bool *continuous) const
{
    if (continuous)
        *continuous = false;
    return {QSize(640, 480), QSize(1280, 960), QSize(1600, 1200)};
}

void SyntheticImageControl::setImageSettings(const QImageEncoderSettings &settings)
{
    // Without a resolution of its own the request leaves the choice to the camera.
    const QSize chosen = settings.resolution().isEmpty() ? m_camera->imageSettings.resolution()
                                                         : settings.resolution();
    m_camera->imageSettings = settings;
    m_camera->imageSettings.setResolution(chosen);
}

SyntheticViewfinderControl::SyntheticViewfinderControl(SyntheticCamera *camera)
    : QCameraViewfinderSettingsControl2(camera)
    , m_camera(camera)
{
}

QList<QCameraViewfinderSettings> SyntheticViewfinderControl::supportedViewfinderSettings() const
{
    QList<QCameraViewfinderSettings> list;
    for (const QSize &size : {QSize(320, 240), QSize(640, 480)}) {
        QCameraViewfinderSettings settings;
        settings.setResolution(size);
        list.append(settings);
    }
    return list;
}

void SyntheticViewfinderControl::setViewfinderSettings(const QCameraViewfinderSettings &settings)
{
    if (!settings.resolution().isEmpty())
        m_camera->viewfinderSettings = settings;
}
