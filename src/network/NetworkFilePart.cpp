#include "network/NetworkFilePart.h"

NetworkFilePart::NetworkFilePart(QIODevice *device, qint64 offset, qint64 size)
    : QIODevice(device)
    , m_device(device)
    , m_offset(qMax(offset, qint64(0)))
    , m_size(size < -1 ? 0 : size)
{
    open(QIODevice::ReadOnly);
    if (m_device && m_offset >= 1)
        m_device->seek(m_offset);
}

bool NetworkFilePart::isSequential() const
{
    return false;
}

qint64 NetworkFilePart::pos() const
{
    return m_device ? m_device->pos() - m_offset : 0;
}

qint64 NetworkFilePart::size() const
{
    if (!m_device || m_offset >= m_device->size())
        return 0;
    const qint64 remaining = m_device->size() - m_offset;
    return m_size != -1 ? qMin(m_size, remaining) : remaining;
}

qint64 NetworkFilePart::readData(char *data, qint64 maxSize)
{
    const qint64 length = size();
    if (length < 1)
        return 0; // also where the device refused to seek to the offset
    const qint64 available = length - pos();
    if (available < 1 || maxSize < 1)
        return 0;
    return m_device->read(data, qMin(available, maxSize));
}

qint64 NetworkFilePart::writeData(const char *data, qint64 maxSize)
{
    Q_UNUSED(data)
    Q_UNUSED(maxSize)
    return 0;
}

#include "moc_NetworkFilePart.cpp"
