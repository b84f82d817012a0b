#include "imaging/QExifImageHeader.h"
#include "support/FuzzTarget.h"

#include <QBuffer>

// A JPEG file: read, everything looked at, written back and read again. The offsets of the second
// and third table are two bytes early, so only the image table must come back as it was.

namespace {

qint64 visit(const QExifImageHeader &header)
{
    qint64 items = 0;
    for (const QExifImageHeader::ImageTag tag : header.imageTags())
        items += header.value(tag).count() + header.value(tag).toString().size();
    for (const QExifImageHeader::ExifExtendedTag tag : header.extendedTags())
        items += header.value(tag).count() + header.value(tag).toString().size();
    for (const QExifImageHeader::GpsTag tag : header.gpsTags())
        items += header.value(tag).toRationalVector().size();
    return items;
}

QByteArray contentOf(const QExifValue &value)
{
    QByteArray content;
    QDataStream stream(&content, QIODevice::WriteOnly);
    stream << value.type() << value.count() << value.toByteArray() << value.toByteVector()
           << value.toShortVector() << value.toLongVector() << value.toSignedLongVector()
           << value.toRationalVector() << value.toSignedRationalVector();
    return content;
}

void compareImageTags(const QExifImageHeader &first, const QExifImageHeader &second)
{
    for (const QExifImageHeader::ImageTag tag : first.imageTags()) {
        const QExifValue value = first.value(tag);
        // Read from the memory of a number, written as it stands: reversed in a big-endian file.
        if (tag == QExifImageHeader::ExifIfdPointer || tag == QExifImageHeader::GpsInfoIfdPointer
            || (value.type() == QExifValue::Undefined && value.count() <= 4))
            continue;
        if (contentOf(value) != contentOf(second.value(tag)))
            qFatal("Tag %d changes when it is written", tag);
    }
}

} // namespace

TESSALINE_FUZZ_TARGET(bytes)
{
    QByteArray jpeg = bytes;
    QBuffer buffer(&jpeg);
    buffer.open(QIODevice::ReadWrite);
    QExifImageHeader header;
    const bool loaded = header.loadFromJpeg(&buffer);
    if (visit(header) > 8 * qint64(bytes.size()))
        qFatal("The values take more than the input holds");
    header.thumbnail();

    buffer.seek(0);
    header.saveToJpeg(&buffer);
    if (!loaded)
        return;

    QBuffer block;
    block.open(QIODevice::ReadWrite);
    if (header.write(&block) != block.size())
        qFatal("write() says another size");
    block.seek(0);
    QExifImageHeader again;
    if (!again.read(&block))
        qFatal("What was written can't be read");
    visit(again);
    compareImageTags(header, again);
}
