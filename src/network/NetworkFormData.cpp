#include "network/NetworkFormData.h"

#include "network/NetworkFilePart.h"
#include "plugin/FileUtility.h"

#include <QBuffer>
#include <QDebug>
#include <QFile>
#include <QFileInfo>

NetworkFormData::NetworkFormData(QObject *parent)
    : QIODevice(parent)
{
    open(QIODevice::ReadOnly);
}

NetworkFormData::~NetworkFormData()
{
    clear();
}

bool NetworkFormData::appendDevice(QIODevice *device)
{
    const qint64 length = device->size();
    m_pieces.append({device, length, length});
    emit readyRead();
    return true;
}

bool NetworkFormData::append(const QByteArray &bytes)
{
    auto buffer = std::make_unique<QBuffer>();
    buffer->setData(bytes);
    buffer->open(QIODevice::ReadOnly);
    m_buffers.push_back(std::move(buffer));
    return appendDevice(m_buffers.back().get());
}

bool NetworkFormData::appendPath(const QString &path, qint64 offset, qint64 size)
{
    const QFileInfo info(path);
    auto file = std::make_unique<QFile>(path);
    // Read in big pieces only, so a buffer of its own would just copy.
    const QIODevice::OpenMode mode = QIODevice::ReadOnly | QIODevice::Unbuffered;
    if (!FileUtility::hasUsableName(path) || (info.exists() && !info.isFile())
        || !file->open(mode)) {
        qDebug() << Q_FUNC_INFO << "Cannot open: " << path;
        return false;
    }

    file->setParent(this);
    m_files.append(file.release());
    if (offset == 0 && size == -1)
        return appendDevice(m_files.constLast());
    m_fileParts.append(new NetworkFilePart(m_files.constLast(), offset, size));
    return appendDevice(m_fileParts.constLast());
}

void NetworkFormData::clear()
{
    m_pieces.clear();
    m_buffers.clear();
    // A part is its file's child, so it goes first.
    for (NetworkFilePart *part : qAsConst(m_fileParts)) {
        part->close();
        part->deleteLater();
    }
    m_fileParts.clear();
    for (QFile *file : qAsConst(m_files)) {
        file->close();
        file->deleteLater();
    }
    m_files.clear();
    m_pieceIndex = 0;
    m_position = 0;
}

bool NetworkFormData::Piece::isDone() const
{
    return left < 1 || device->atEnd();
}

bool NetworkFormData::isSequential() const
{
    return false;
}

bool NetworkFormData::reset()
{
    return m_position == 0 && QIODevice::reset();
}

qint64 NetworkFormData::pos() const
{
    return m_position;
}

qint64 NetworkFormData::size() const
{
    qint64 total = 0;
    for (const Piece &piece : m_pieces)
        total += qMin(piece.device->size(), piece.length);
    return total;
}

qint64 NetworkFormData::readData(char *data, qint64 maxSize)
{
    if (m_aborted || m_pieceIndex >= m_pieces.size()) {
        emit readProgress(1.0);
        return 0;
    }

    const qint64 total = size();
    const auto report = [this, total] {
        emit readProgress(total > 0 ? double(m_position) / double(total) : 0.0);
    };
    qint64 count = 0;
    while (count < maxSize && m_pieceIndex < m_pieces.size()) {
        Piece &piece = m_pieces[m_pieceIndex];
        const qint64 length = piece.device->read(data + count, qMin(maxSize - count, piece.left));
        if (length > 0) {
            piece.left -= length;
            count += length;
            m_position += length;
        }
        report();
        // The listener may have ended the transfer, which empties the chain.
        if (m_pieceIndex >= m_pieces.size())
            break;
        // A device that gives nothing more is done, whatever it says about its end.
        if (length < 1 || m_pieces.at(m_pieceIndex).isDone())
            ++m_pieceIndex;
    }
    report();
    return count;
}

qint64 NetworkFormData::writeData(const char *data, qint64 maxSize)
{
    Q_UNUSED(data)
    Q_UNUSED(maxSize)
    return 0;
}

#include "moc_NetworkFormData.cpp"
