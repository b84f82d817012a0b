#include "imaging/QExifImageHeader.h"

#include "imaging/PlausibleSize.h"
#include "imaging/TagMap.h"
#include "plugin/FileUtility.h"

#include <QBuffer>
#include <QDataStream>
#include <QDebug>
#include <QFile>
#include <QImageReader>
#include <QtEndian>
#include <QTransform>

#include <array>
#include <cstring>
#include <limits>

class QExifImageHeaderPrivate
{
public:
    QSysInfo::Endian byteOrder = QSysInfo::LittleEndian;
    qint64 size = -1; // -1: to be computed anew

    TagMap<QExifImageHeader::ImageTag> imageIfdValues;
    TagMap<QExifImageHeader::ExifExtendedTag> extendedIfdValues;
    TagMap<QExifImageHeader::GpsTag> gpsIfdValues;

    QByteArray thumbnailData;
    QExifValue thumbnailXResolution;
    QExifValue thumbnailYResolution;
    QExifValue thumbnailResolutionUnit;
    QExifValue thumbnailOrientation;
};

namespace {

using Header = QExifImageHeader;

constexpr int tiffHeaderSize = 8;
constexpr quint16 tiffIdentifier = 42;
constexpr int ifdCountSize = 2;
constexpr int ifdEntrySize = 12;
constexpr int inlineSize = 4;

// A damaged table can have thousands of entries of unknown types. The first ones tell that; saying
// it of all would flood the log and take most of the time.
constexpr int maximumWarnings = 32;

// One entry of an IFD, as it stands in the file.
struct ExifIfdHeader
{
    quint16 tag;
    quint16 type;
    quint32 count;
    const uchar *field; // four bytes: the value if it fits, otherwise its offset
};

void warnAboutType(int type)
{
    qWarning() << "Invalid Ifd Type" << type;
}

// Bytes per item, 0 for a type that doesn't exist.
int itemSize(int type)
{
    switch (type) {
    case QExifValue::Byte:
    case QExifValue::Ascii:
    case QExifValue::Undefined:
        return 1;
    case QExifValue::Short:
        return 2;
    case QExifValue::Long:
    case QExifValue::SignedLong:
        return 4;
    case QExifValue::Rational:
    case QExifValue::SignedRational:
        return 8;
    default:
        return 0;
    }
}

// Reads a block that lies in memory. Nothing in it is trusted: each access is checked against the
// block's end, and all values together get no more bytes than the block has, or a few kilobytes of
// entries that all claim the same large value would become hundreds of megabytes.
class ExifReader
{
public:
    explicit ExifReader(const QByteArray &block)
        : m_data(reinterpret_cast<const uchar *>(block.constData()))
        , m_size(static_cast<quint32>(block.size()))
        , m_budget(m_size)
    {
    }

    // False for an unknown byte order.
    bool readByteOrder();
    QSysInfo::Endian byteOrder() const { return m_byteOrder; }

    // A number at an offset; 0 behind the block's end.
    template <typename Number>
    Number numberAt(qint64 offset) const
    {
        return offset + qint64(sizeof(Number)) <= m_size ? number<Number>(m_data + offset) : 0;
    }

    // Reads an IFD's entries, as many as there are, into tags and values. Returns the offset of
    // what follows them.
    template <typename Tag>
    qint64 readIfd(quint32 offset, TagMap<Tag> *values);

    QByteArray bytes(quint32 offset, quint32 count) const;

private:
    // Whole items that are there.
    struct Items
    {
        const uchar *data;
        int count;
    };

    template <typename Number>
    Number number(const uchar *bytes) const
    {
        return m_byteOrder == QSysInfo::BigEndian ? qFromBigEndian<Number>(bytes)
                                                  : qFromLittleEndian<Number>(bytes);
    }
    ExifIfdHeader entry(const uchar *bytes) const;
    Items items(const ExifIfdHeader &header);
    template <typename Number>
    QExifValue numbers(const ExifIfdHeader &header);
    template <typename Number>
    QExifValue rationals(const ExifIfdHeader &header);
    QExifValue text(const ExifIfdHeader &header);
    QExifValue undefined(const ExifIfdHeader &header);
    QExifValue value(const ExifIfdHeader &header);

    const uchar *const m_data;
    const quint32 m_size;
    quint32 m_budget;
    int m_unknownTypes = 0;
    QSysInfo::Endian m_byteOrder = QSysInfo::LittleEndian;
};

bool ExifReader::readByteOrder()
{
    if (m_size < 2)
        return false;
    if (std::memcmp(m_data, "II", 2) == 0)
        m_byteOrder = QSysInfo::LittleEndian;
    else if (std::memcmp(m_data, "MM", 2) == 0)
        m_byteOrder = QSysInfo::BigEndian;
    else
        return false;
    return true;
}

ExifIfdHeader ExifReader::entry(const uchar *bytes) const
{
    return {number<quint16>(bytes), number<quint16>(bytes + 2), number<quint32>(bytes + 4),
            bytes + 8};
}

ExifReader::Items ExifReader::items(const ExifIfdHeader &header)
{
    const quint32 size = static_cast<quint32>(itemSize(header.type));
    if (header.count <= inlineSize / size)
        return {header.field, static_cast<int>(header.count)};

    const quint32 offset = number<quint32>(header.field);
    if (offset >= m_size)
        return {m_data, 0};
    const quint32 available = qMin(m_size - offset, m_budget);
    const quint32 count = qMin(header.count, available / size);
    m_budget -= count * size;
    return {m_data + offset, static_cast<int>(count)};
}

template <typename Number>
QExifValue ExifReader::numbers(const ExifIfdHeader &header)
{
    const Items found = items(header);
    QVector<Number> numbers(found.count);
    for (int i = 0; i < found.count; ++i)
        numbers[i] = number<Number>(found.data + i * ptrdiff_t(sizeof(Number)));
    return numbers;
}

template <typename Number>
QExifValue ExifReader::rationals(const ExifIfdHeader &header)
{
    constexpr ptrdiff_t size = sizeof(Number);
    const Items found = items(header);
    QVector<QPair<Number, Number>> pairs(found.count);
    for (int i = 0; i < found.count; ++i) {
        const uchar *pair = found.data + i * (2 * size);
        pairs[i] = {number<Number>(pair), number<Number>(pair + size)};
    }
    return pairs;
}

// The last byte is taken for the closing zero and dropped unseen.
QExifValue ExifReader::text(const ExifIfdHeader &header)
{
    const Items found = items(header);
    const bool isWhole = static_cast<quint32>(found.count) == header.count;
    const int length = isWhole ? qMax(found.count - 1, 0) : found.count;
    return QString::fromLatin1(reinterpret_cast<const char *>(found.data), length);
}

// Up to four bytes are taken from the memory of the field read as a number: where the file's byte
// order isn't the machine's, they come out reversed.
QExifValue ExifReader::undefined(const ExifIfdHeader &header)
{
    const Items found = items(header);
    if (header.count > inlineSize)
        return QByteArray(reinterpret_cast<const char *>(found.data), found.count);
    const quint32 field = number<quint32>(header.field);
    return QByteArray(reinterpret_cast<const char *>(&field), found.count);
}

QExifValue ExifReader::value(const ExifIfdHeader &header)
{
    switch (header.type) {
    case QExifValue::Byte:
        return numbers<quint8>(header);
    case QExifValue::Ascii:
        return text(header);
    case QExifValue::Short:
        return numbers<quint16>(header);
    case QExifValue::Long:
        return numbers<quint32>(header);
    case QExifValue::SignedLong:
        return numbers<qint32>(header);
    case QExifValue::Rational:
        return rationals<quint32>(header);
    case QExifValue::SignedRational:
        return rationals<qint32>(header);
    case QExifValue::Undefined:
        return undefined(header);
    default:
        if (m_unknownTypes++ < maximumWarnings)
            warnAboutType(header.type);
        return QExifValue();
    }
}

template <typename Tag>
qint64 ExifReader::readIfd(quint32 offset, TagMap<Tag> *values)
{
    const qint64 first = qint64(offset) + ifdCountSize;
    const qint64 available = qMax((m_size - first) / ifdEntrySize, qint64(0));
    const qint64 claimed = numberAt<quint16>(offset);
    const qint64 count = qMin(claimed, available);
    typename TagMap<Tag>::Entries entries;
    entries.reserve(static_cast<size_t>(count));
    for (qint64 i = 0; i < count; ++i) {
        const ExifIfdHeader header = entry(m_data + first + i * ifdEntrySize);
        entries.push_back({static_cast<Tag>(header.tag), value(header)});
    }
    values->assign(std::move(entries));
    return first + claimed * ifdEntrySize;
}

QByteArray ExifReader::bytes(quint32 offset, quint32 count) const
{
    if (offset >= m_size)
        return QByteArray();
    return QByteArray(reinterpret_cast<const char *>(m_data + offset),
                      static_cast<int>(qMin(count, m_size - offset)));
}

bool isSingleLong(const QExifValue &value)
{
    return value.type() == QExifValue::Long && value.count() == 1;
}

// The table of the thumbnail, of which only what describes a JPEG is kept.
void readThumbnail(ExifReader *reader, quint32 offset, QExifImageHeaderPrivate *d)
{
    TagMap<quint16> values;
    reader->readIfd(offset, &values);
    const QExifValue start = values.value(Header::JPEGInterchangeFormat);
    const QExifValue length = values.value(Header::JPEGInterchangeFormatLength);
    if (!isSingleLong(start) || !isSingleLong(length))
        return;
    d->thumbnailData = reader->bytes(start.toLong(), length.toLong());
    d->thumbnailXResolution = values.value(Header::XResolution);
    d->thumbnailYResolution = values.value(Header::YResolution);
    d->thumbnailResolutionUnit = values.value(Header::ResolutionUnit);
    d->thumbnailOrientation = values.value(Header::Orientation);
}

bool readBlock(const QByteArray &block, QExifImageHeaderPrivate *d)
{
    ExifReader reader(block);
    if (!reader.readByteOrder())
        return false;
    d->byteOrder = reader.byteOrder();
    if (reader.numberAt<quint16>(2) != tiffIdentifier)
        return false;

    const qint64 end = reader.readIfd(reader.numberAt<quint32>(4), &d->imageIfdValues);
    const quint32 thumbnailOffset = reader.numberAt<quint32>(end);
    const QExifValue extended = d->imageIfdValues.take(Header::ExifIfdPointer);
    const QExifValue gps = d->imageIfdValues.take(Header::GpsInfoIfdPointer);
    if (isSingleLong(extended))
        reader.readIfd(extended.toLong(), &d->extendedIfdValues);
    if (isSingleLong(gps))
        reader.readIfd(gps.toLong(), &d->gpsIfdValues);
    d->extendedIfdValues.remove(Header::InteroperabilityIfdPointer);
    if (thumbnailOffset != 0)
        readThumbnail(&reader, thumbnailOffset, d);
    return true;
}

quint32 outOfLineSize(const QExifValue &value)
{
    const quint32 size = static_cast<quint32>(itemSize(value.type()) * value.count());
    return size > inlineSize ? size : 0;
}

quint32 sizeOf(const QExifValue &value)
{
    return itemSize(value.type()) ? ifdEntrySize + outOfLineSize(value) : 0;
}

template <typename Tag>
quint32 calculateSize(const TagMap<Tag> &values)
{
    quint32 size = ifdCountSize;
    for (const auto &[tag, value] : values)
        size += sizeOf(value);
    return size;
}

template <typename Number>
void writeNumbers(QDataStream &stream, const QVector<Number> &numbers)
{
    for (const Number number : numbers)
        stream << number;
}

template <typename Number>
void writeRationals(QDataStream &stream, const QVector<QPair<Number, Number>> &pairs)
{
    for (const QPair<Number, Number> &pair : pairs)
        stream << pair.first << pair.second;
}

void writeBytes(QDataStream &stream, const QByteArray &bytes)
{
    stream.writeRawData(bytes.constData(), bytes.size());
}

void writeItems(QDataStream &stream, const QExifValue &value)
{
    switch (value.type()) {
    case QExifValue::Byte:
        return writeNumbers(stream, value.toByteVector());
    case QExifValue::Ascii:
        return writeBytes(stream, value.toByteArray() + '\0');
    case QExifValue::Short:
        return writeNumbers(stream, value.toShortVector());
    case QExifValue::Long:
        return writeNumbers(stream, value.toLongVector());
    case QExifValue::SignedLong:
        return writeNumbers(stream, value.toSignedLongVector());
    case QExifValue::Rational:
        return writeRationals(stream, value.toRationalVector());
    case QExifValue::SignedRational:
        return writeRationals(stream, value.toSignedRationalVector());
    case QExifValue::Undefined:
        return writeBytes(stream, value.toByteArray());
    default:
        warnAboutType(value.type());
    }
}

// Writes an entry, whose value goes to the offset if it doesn't fit. Returns the next free offset.
quint32 writeExifHeader(QDataStream &stream, int tag, const QExifValue &value, quint32 offset)
{
    stream << static_cast<quint16>(tag) << static_cast<quint16>(value.type())
           << static_cast<quint32>(value.count());
    const quint32 outOfLine = outOfLineSize(value);
    if (outOfLine) {
        stream << offset;
        return offset + outOfLine;
    }
    writeItems(stream, value);
    writeBytes(stream, QByteArray(inlineSize - itemSize(value.type()) * value.count(), '\0'));
    return offset;
}

template <typename Tag>
quint32 writeExifHeaders(QDataStream &stream, const TagMap<Tag> &values, quint32 offset)
{
    for (const auto &[tag, value] : values)
        offset = writeExifHeader(stream, tag, value, offset);
    return offset;
}

void writeExifValue(QDataStream &stream, const QExifValue &value)
{
    if (outOfLineSize(value))
        writeItems(stream, value);
}

template <typename Tag>
void writeExifValues(QDataStream &stream, const TagMap<Tag> &values)
{
    for (const auto &[tag, value] : values)
        writeExifValue(stream, value);
}

// The extended or the GPS table. Its offsets leave out the two bytes of the count and so point two
// bytes before their values: that is how these files have always been written.
template <typename Tag>
quint32 writeSubIfd(QDataStream &stream, const TagMap<Tag> &values, quint32 offset)
{
    const quint32 count = static_cast<quint32>(values.size());
    stream << static_cast<quint16>(count);
    writeExifHeaders(stream, values, offset + ifdEntrySize * count);
    writeExifValues(stream, values);
    return offset + calculateSize(values);
}

quint32 writeImageIfd(QDataStream &stream, QExifImageHeaderPrivate *d)
{
    const quint32 count = static_cast<quint32>(d->imageIfdValues.size());
    const bool hasGps = !d->gpsIfdValues.isEmpty();
    stream << static_cast<quint16>(count + (hasGps ? 2 : 1));

    quint32 offset = (hasGps ? 38 : 26) + ifdEntrySize * count;
    offset = writeExifHeaders(stream, d->imageIfdValues, offset);
    const quint32 extendedOffset = offset;
    writeExifHeader(stream, Header::ExifIfdPointer, extendedOffset, offset);
    offset += calculateSize(d->extendedIfdValues);
    if (hasGps) {
        // It stays behind, so that the next time it is written twice.
        const QExifValue pointer(offset);
        writeExifHeader(stream, Header::GpsInfoIfdPointer, pointer, offset);
        d->imageIfdValues.insert(Header::GpsInfoIfdPointer, pointer);
        offset += calculateSize(d->gpsIfdValues);
    }
    stream << (d->thumbnailData.isEmpty() ? quint32(0) : offset);
    writeExifValues(stream, d->imageIfdValues);
    return extendedOffset;
}

QExifValue valueOr(const QExifValue &value, const QExifValue &fallback)
{
    return value.isNull() ? fallback : value;
}

quint32 writeThumbnail(QDataStream &stream, const QExifImageHeaderPrivate &d, quint32 offset)
{
    constexpr quint16 entryCount = 7;
    constexpr quint16 jpegCompression = 6;
    constexpr quint16 inches = 2;
    const QExifValue xResolution = valueOr(d.thumbnailXResolution, QExifURational(72, 1));
    const QExifValue yResolution = valueOr(d.thumbnailYResolution, QExifURational(72, 1));
    const quint32 length = static_cast<quint32>(d.thumbnailData.size());

    stream << entryCount;
    offset += ifdCountSize + ifdEntrySize * entryCount;
    offset = writeExifHeader(stream, Header::Compression, jpegCompression, offset);
    offset = writeExifHeader(stream, Header::XResolution, xResolution, offset);
    offset = writeExifHeader(stream, Header::YResolution, yResolution, offset);
    // One number each. More of them, out of a damaged file, have no place behind the table.
    writeExifHeader(stream, Header::ResolutionUnit, valueOr(d.thumbnailResolutionUnit, inches),
                    offset);
    writeExifHeader(stream, Header::Orientation, valueOr(d.thumbnailOrientation, quint16(0)),
                    offset);
    writeExifHeader(stream, Header::JPEGInterchangeFormat, offset, offset);
    writeExifHeader(stream, Header::JPEGInterchangeFormatLength, length, offset);
    writeExifValue(stream, xResolution);
    writeExifValue(stream, yResolution);
    writeBytes(stream, d.thumbnailData);
    return offset + length;
}

// JPEG markers.
constexpr quint16 startOfImage = 0xFFD8;
constexpr quint16 application0 = 0xFFE0;
constexpr quint16 application1 = 0xFFE1;
constexpr int lengthSize = 2;
constexpr int exifPrefixSize = 6; // "Exif" and two zero bytes

// The block in the first application segment 1, whatever else follows it.
QByteArray extractExif(QIODevice *device)
{
    QDataStream stream(device); // big-endian, as JPEG is
    quint16 marker = 0;
    stream >> marker;
    if (marker != startOfImage)
        return QByteArray();

    quint16 length = 0;
    for (stream >> marker; marker != application1; stream >> marker) {
        if (device->atEnd())
            return QByteArray();
        stream >> length;
        // A length of 0 leads back to its own two bytes, which is still behind the marker.
        const qint64 next = device->pos() + length - lengthSize;
        if (stream.status() != QDataStream::Ok || device->isSequential() || next > device->size()
            || !device->seek(next))
            return QByteArray();
    }
    stream >> length;
    if (device->read(4) != "Exif")
        return QByteArray();
    device->read(2);
    const qint64 size =
        qMin(qint64(length) - lengthSize - exifPrefixSize, device->bytesAvailable());
    return size > 0 ? device->read(size) : QByteArray();
}

// A JPEG file's segment: what stands in its head, and what it holds.
struct Segment
{
    quint16 marker = 0;
    quint16 length = 0;
    QByteArray body;

    bool readHead(QDataStream &stream)
    {
        stream >> marker >> length;
        return stream.status() == QDataStream::Ok;
    }
    bool readBody(QIODevice *device, const char *expected)
    {
        body = device->read(
            qMin(qMax(qint64(length) - lengthSize, qint64(0)), device->bytesAvailable()));
        return body.startsWith(expected);
    }
};

void writeSegment(QDataStream &stream, quint16 marker, const QByteArray &body)
{
    stream << marker << static_cast<quint16>(body.size() + lengthSize);
    writeBytes(stream, body);
}

// The file isn't cut, so that a block that is shorter than the one it replaces is filled up.
void padTo(QByteArray *block, int size)
{
    if (block->size() < size)
        block->append(size - block->size(), '\0');
}

// What a JPEG begins with before it gets another EXIF block, and what comes behind.
struct JpegParts
{
    QByteArray jfif;  // the body, empty if there is no such segment
    QByteArray words; // between the EXIF block and the rest
    QByteArray rest;
    int oldBlockSize = 0;

    bool read(QIODevice *device);
};

QByteArray head(const Segment &segment)
{
    QByteArray words;
    QDataStream stream(&words, QIODevice::WriteOnly);
    stream << segment.marker << segment.length;
    return words;
}

bool JpegParts::read(QIODevice *device)
{
    QDataStream stream(device);
    quint16 marker = 0;
    stream >> marker;
    Segment segment;
    if (marker != startOfImage || !segment.readHead(stream))
        return false;

    if (segment.marker == application0) {
        if (!segment.readBody(device, "JFIF"))
            return false;
        jfif = segment.body;
        if (!segment.readHead(stream))
            return false;
        // One marker too many: kept as these files have always been written, although it makes
        // readers take the next marker for a length and lose the picture.
        if (segment.marker != application1)
            words = QByteArrayLiteral("\xFF\xE0");
    }
    if (segment.marker == application1) {
        if (!segment.readBody(device, "Exif"))
            return false;
        oldBlockSize = segment.body.size();
    } else {
        words += head(segment);
    }
    rest = device->readAll();
    return true;
}

bool isPlausibleJpeg(const QByteArray &jpeg)
{
    QBuffer buffer(const_cast<QByteArray *>(&jpeg));
    buffer.open(QIODevice::ReadOnly);
    return isPlausibleSize(QImageReader(&buffer, "JPG").size(), jpeg.size());
}

QTransform uprightTransform(quint16 orientation)
{
    QTransform transform;
    switch (orientation) {
    case 2:
        return transform.rotate(180, Qt::YAxis);
    case 3:
        return transform.rotate(180, Qt::ZAxis);
    case 4:
        return transform.rotate(180, Qt::XAxis);
    case 5:
        return transform.rotate(180, Qt::YAxis).rotate(90, Qt::ZAxis);
    case 6:
        return transform.rotate(90, Qt::ZAxis);
    case 7:
        return transform.rotate(180, Qt::XAxis).rotate(90, Qt::ZAxis);
    case 8:
        return transform.rotate(270, Qt::ZAxis);
    default:
        return transform;
    }
}

} // namespace

QExifImageHeader::QExifImageHeader()
    : d(std::make_unique<QExifImageHeaderPrivate>())
{
}

QExifImageHeader::QExifImageHeader(const QString &path)
    : QExifImageHeader()
{
    loadFromJpeg(path);
}

QExifImageHeader::~QExifImageHeader() = default;

void QExifImageHeader::clear()
{
    const QSysInfo::Endian byteOrder = d->byteOrder;
    *d = QExifImageHeaderPrivate();
    d->byteOrder = byteOrder;
}

QSysInfo::Endian QExifImageHeader::byteOrder() const
{
    return d->byteOrder;
}

bool QExifImageHeader::contains(ImageTag tag) const
{
    return d->imageIfdValues.contains(tag);
}

bool QExifImageHeader::contains(ExifExtendedTag tag) const
{
    return d->extendedIfdValues.contains(tag);
}

bool QExifImageHeader::contains(GpsTag tag) const
{
    return d->gpsIfdValues.contains(tag);
}

QExifValue QExifImageHeader::value(ImageTag tag) const
{
    return d->imageIfdValues.value(tag);
}

QExifValue QExifImageHeader::value(ExifExtendedTag tag) const
{
    return d->extendedIfdValues.value(tag);
}

QExifValue QExifImageHeader::value(GpsTag tag) const
{
    return d->gpsIfdValues.value(tag);
}

void QExifImageHeader::setValue(ImageTag tag, const QExifValue &value)
{
    d->imageIfdValues.insert(tag, value);
    d->size = -1;
}

void QExifImageHeader::setValue(ExifExtendedTag tag, const QExifValue &value)
{
    d->extendedIfdValues.insert(tag, value);
    d->size = -1;
}

void QExifImageHeader::setValue(GpsTag tag, const QExifValue &value)
{
    d->gpsIfdValues.insert(tag, value);
    d->size = -1;
}

void QExifImageHeader::remove(ImageTag tag)
{
    d->imageIfdValues.remove(tag);
    d->size = -1;
}

void QExifImageHeader::remove(ExifExtendedTag tag)
{
    d->extendedIfdValues.remove(tag);
    d->size = -1;
}

void QExifImageHeader::remove(GpsTag tag)
{
    d->gpsIfdValues.remove(tag);
    d->size = -1;
}

QList<QExifImageHeader::ImageTag> QExifImageHeader::imageTags() const
{
    return d->imageIfdValues.keys();
}

QList<QExifImageHeader::ExifExtendedTag> QExifImageHeader::extendedTags() const
{
    return d->extendedIfdValues.keys();
}

QList<QExifImageHeader::GpsTag> QExifImageHeader::gpsTags() const
{
    return d->gpsIfdValues.keys();
}

QImage QExifImageHeader::thumbnail() const
{
    QImage image;
    if (d->thumbnailData.isEmpty() || !isPlausibleJpeg(d->thumbnailData)
        || !image.loadFromData(d->thumbnailData, "JPG"))
        return QImage();
    const QTransform transform = uprightTransform(d->thumbnailOrientation.toShort());
    return transform.isIdentity() ? image : image.transformed(transform, Qt::FastTransformation);
}

void QExifImageHeader::setThumbnail(const QImage &thumbnail)
{
    QBuffer buffer;
    if (!thumbnail.isNull()) {
        buffer.open(QIODevice::WriteOnly);
        thumbnail.save(&buffer, "JPG");
    }
    d->thumbnailData = buffer.data();
    d->size = -1;
}

qint64 QExifImageHeader::size() const
{
    if (d->size != -1)
        return d->size;
    d->size = qint64(calculateSize(d->imageIfdValues)) + calculateSize(d->extendedIfdValues) + 24;
    if (!d->gpsIfdValues.isEmpty())
        d->size += calculateSize(d->gpsIfdValues) + ifdEntrySize;
    if (!d->thumbnailData.isEmpty()) // its table takes 102, but this is what has always been said
        d->size += d->thumbnailData.size() + 90;
    return d->size;
}

bool QExifImageHeader::read(QIODevice *device)
{
    clear();
    if (device->isSequential())
        return false;
    return readBlock(device->readAll(), d.get());
}

qint64 QExifImageHeader::write(QIODevice *device) const
{
    QDataStream stream(device);
    const bool isLittleEndian = d->byteOrder == QSysInfo::LittleEndian;
    stream.setByteOrder(isLittleEndian ? QDataStream::LittleEndian : QDataStream::BigEndian);
    writeBytes(stream, isLittleEndian ? QByteArrayLiteral("II") : QByteArrayLiteral("MM"));
    stream << tiffIdentifier << quint32(tiffHeaderSize);

    quint32 offset = writeImageIfd(stream, d.get());
    offset = writeSubIfd(stream, d->extendedIfdValues, offset);
    if (!d->gpsIfdValues.isEmpty())
        offset = writeSubIfd(stream, d->gpsIfdValues, offset);
    if (!d->thumbnailData.isEmpty())
        offset = writeThumbnail(stream, *d, offset);
    d->size = offset;
    return stream.status() == QDataStream::Ok ? d->size : -1;
}

bool QExifImageHeader::loadFromJpeg(const QString &path)
{
    QFile file(path);
    return FileUtility::hasUsableName(path) && file.open(QIODevice::ReadOnly)
           && loadFromJpeg(&file);
}

bool QExifImageHeader::loadFromJpeg(QIODevice *device)
{
    clear();
    const QByteArray block = extractExif(device);
    return !block.isEmpty() && readBlock(block, d.get());
}

bool QExifImageHeader::saveToJpeg(const QString &path) const
{
    QFile file(path);
    // A missing file is not made: an empty one would be no JPEG either.
    return FileUtility::hasUsableName(path)
           && file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly) && saveToJpeg(&file)
           && file.flush();
}

bool QExifImageHeader::saveToJpeg(QIODevice *device) const
{
    if (device->isSequential())
        return false;

    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    write(&buffer);
    QByteArray block = QByteArrayLiteral("Exif\0\0") + buffer.data();

    JpegParts parts;
    if (!parts.read(device))
        return false;
    padTo(&block, parts.oldBlockSize);

    QDataStream stream(device);
    if (!device->seek(0))
        return false;
    stream << startOfImage;
    if (!parts.jfif.isEmpty())
        writeSegment(stream, application0, parts.jfif);
    writeSegment(stream, application1, block);
    writeBytes(stream, parts.words);
    writeBytes(stream, parts.rest);
    return stream.status() == QDataStream::Ok;
}
