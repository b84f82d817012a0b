#pragma once

#include "plugin/TessalineObject.h"

#include <QStringList>

// What the machine has. QML name: Device, uncreatable; scripts use Tessaline.device.
class TESSALINE_EXPORT Device : public TessalineObject
{
    Q_OBJECT
    Q_PROPERTY(QStringList availablePositionSources READ availablePositionSources CONSTANT)

public:
    explicit Device(QObject *parent = nullptr);

    // The names of the installed position plug-ins.
    QStringList availablePositionSources() const;
};
