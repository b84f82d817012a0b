#include "SyntheticCameraService.h"

#include "SyntheticCameraControls.h"

SyntheticCameraService::SyntheticCameraService(QObject *parent)
    : QMediaService(parent)
    , m_camera(new SyntheticCamera(this))
    , m_controls{{QCameraControl_iid, new SyntheticStateControl(m_camera)},
                 {QCameraImageCaptureControl_iid, new SyntheticCaptureControl(m_camera)},
                 {QCameraCaptureDestinationControl_iid, new SyntheticDestinationControl(m_camera)},
                 {QVideoDeviceSelectorControl_iid, new SyntheticDeviceControl(m_camera)},
                 {QCameraInfoControl_iid, new SyntheticInfoControl(m_camera)},
                 {QVideoRendererControl_iid, new SyntheticRendererControl(m_camera)},
                 {QCameraExposureControl_iid, new SyntheticExposureControl(m_camera)},
                 {QCameraFlashControl_iid, new SyntheticFlashControl(m_camera)},
                 {QCameraFocusControl_iid, new SyntheticFocusControl(m_camera)},
                 {QCameraZoomControl_iid, new SyntheticZoomControl(m_camera)},
                 {QCameraImageProcessingControl_iid, new SyntheticProcessingControl(m_camera)},
                 {QImageEncoderControl_iid, new SyntheticImageControl(m_camera)},
                 {QCameraViewfinderSettingsControl2_iid, new SyntheticViewfinderControl(m_camera)}}
{
}

QMediaControl *SyntheticCameraService::requestControl(const char *name)
{
    return m_controls.value(name);
}

// The controls stay with the camera.
void SyntheticCameraService::releaseControl(QMediaControl *) {}
