#pragma once

#include <QHash>
#include <QMediaService>

class SyntheticCamera;
class QMediaControl;

// The media service of one SyntheticCamera: its controls by the name of their interface.
class SyntheticCameraService : public QMediaService
{
    Q_OBJECT

public:
    explicit SyntheticCameraService(QObject *parent = nullptr);

    QMediaControl *requestControl(const char *name) override;
    void releaseControl(QMediaControl *control) override;

private:
    SyntheticCamera *m_camera;
    QHash<QByteArray, QMediaControl *> m_controls;
};
