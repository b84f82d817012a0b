#pragma once

#include "plugin/TessalineGlobal.h"

#include <QIODevice>

// A read-only view of a piece of another device, for uploading a big file in slices. The device is
// the parent; it must be open, and its position belongs to this object from then on.
class TESSALINE_EXPORT NetworkFilePart : public QIODevice
{
    Q_OBJECT

public:
    // From `offset`, `size` bytes or, with -1, up to the end. A negative offset counts as 0, a size
    // below -1 as 0: neither could be announced to a server.
    NetworkFilePart(QIODevice *device, qint64 offset, qint64 size);

    bool isSequential() const override;
    qint64 pos() const override;
    // What can really be read: the piece, clipped to the end of the device.
    qint64 size() const override;

protected:
    qint64 readData(char *data, qint64 maxSize) override;
    qint64 writeData(const char *data, qint64 maxSize) override;

private:
    QIODevice *m_device;
    qint64 m_offset;
    qint64 m_size; // -1: up to the end
};
