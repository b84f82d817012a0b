#include "imaging/PictureCheck.h"

#include "imaging/PlausibleSize.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QPixelFormat>
#include <QtEndian>
#include <QXmlStreamReader>

#include <limits>
#include <zlib.h>

namespace {

// Up to that much memory any header is believed: a scanned page of one bit a pixel takes few bytes in
// a file, and not many here.
constexpr qint64 freeMemory = qint64(256) * 1024 * 1024;
// Icons and drawings are read as a whole before they are decoded.
constexpr int maxContainerSize = 64 * 1024 * 1024;

// Bits in memory for each pixel of what is about to be read, at most 32: that too if the reader
// doesn't tell. Some readers tell anything where they found no picture.
int depthOf(const QImageReader &reader)
{
    constexpr int usualDepth = 32;
    const QImage::Format format = reader.imageFormat();
    if (format <= QImage::Format_Invalid || format >= QImage::NImageFormats)
        return usualDepth;
    return qMin(int(QImage::toPixelFormat(format).bitsPerPixel()), usualDepth);
}

bool isPlausible(QImageReader &reader, qint64 bytes)
{
    const QSize size = reader.size();
    return !size.isValid() || isPlausibleSize(size, bytes, depthOf(reader), freeMemory);
}

quint32 bigEndianAt(const QByteArray &bytes, int position)
{
    return position >= 0 && position + 4 <= bytes.size()
               ? qFromBigEndian<quint32>(bytes.constData() + position)
               : 0;
}

bool isPlausibleClaim(quint32 width, quint32 height, const QByteArray &bytes)
{
    constexpr quint32 maxSide = std::numeric_limits<int>::max();
    return width <= maxSide && height <= maxSide
           && isPlausibleSize(QSize(static_cast<int>(width), static_cast<int>(height)),
                              bytes.size(), 32, freeMemory);
}

// The headers of all PNG (and, in an animation, JNG) pictures inside. Of the older bitmaps in icons Qt
// reads none above 256 pixels.
bool areEmbeddedPicturesPlausible(const QByteArray &bytes)
{
    for (const char *chunk : {"IHDR", "JHDR", "BASI"}) {
        for (int i = bytes.indexOf(chunk); i >= 0; i = bytes.indexOf(chunk, i + 4)) {
            if (!isPlausibleClaim(bigEndianAt(bytes, i + 4), bigEndianAt(bytes, i + 8), bytes))
                return false;
        }
    }
    return true;
}

// What a gzip file holds, at most `limit` bytes of it.
QByteArray inflated(QByteArray bytes, int limit)
{
    z_stream stream{};
    if (inflateInit2(&stream, MAX_WBITS + 16) != Z_OK)
        return QByteArray();
    QByteArray content;
    QByteArray block(64 * 1024, Qt::Uninitialized);
    stream.next_in = reinterpret_cast<Bytef *>(bytes.data());
    stream.avail_in = static_cast<uInt>(bytes.size());
    int code = Z_OK;
    while (code == Z_OK && content.size() < limit) {
        stream.next_out = reinterpret_cast<Bytef *>(block.data());
        stream.avail_out = static_cast<uInt>(block.size());
        code = inflate(&stream, Z_NO_FLUSH);
        content.append(block.constData(), block.size() - static_cast<int>(stream.avail_out));
    }
    inflateEnd(&stream);
    return content;
}

// Pixels of a picture that stands in a drawing as a data URI; -1 for anything else. Qt takes any text
// but a URI of base64 for the name of a file.
qint64 pixelsOfDataUri(const QString &uri)
{
    const int begin = uri.lastIndexOf(QLatin1String("base64,"));
    if (!uri.trimmed().startsWith(QLatin1String("data:")) || begin < 0)
        return -1;
    QByteArray bytes = QByteArray::fromBase64(uri.mid(begin + 7).toLatin1());
    QBuffer buffer(&bytes);
    QImageReader reader(&buffer);
    // Before the size: afterwards a reader may not know its format any more.
    const QByteArray format = reader.format();
    const QSize size = reader.size();
    // What can't be read here is tried as a file.
    if (!size.isValid() || format.isEmpty() || isContainerFormat(format))
        return -1;
    return qint64(size.width()) * size.height();
}

// A drawing may show pictures, from files or of its own, and all are decoded while it is read.
bool isHarmlessDrawing(const QByteArray &bytes)
{
    const bool isCompressed = bytes.startsWith("\x1f\x8b");
    const QByteArray content = isCompressed ? inflated(bytes, maxContainerSize) : bytes;
    if (content.size() >= maxContainerSize)
        return false;
    QXmlStreamReader xml(content);
    xml.setNamespaceProcessing(false); // as the drawing's own reader
    qint64 pixels = 0;
    while (!xml.atEnd()) {
        const QXmlStreamReader::TokenType token = xml.readNext();
        // A style sheet is another file.
        if (token == QXmlStreamReader::ProcessingInstruction
            && xml.processingInstructionTarget() == QLatin1String("xml-stylesheet"))
            return false;
        if (token != QXmlStreamReader::StartElement || xml.name() != QLatin1String("image"))
            continue;
        const QXmlStreamAttributes attributes = xml.attributes();
        for (const QXmlStreamAttribute &attribute : attributes) {
            if (attribute.name() != QLatin1String("href") || attribute.value().isEmpty())
                continue;
            const qint64 more = pixelsOfDataUri(attribute.value().toString());
            pixels += more;
            constexpr qint64 bytesPerPixel = 4;
            if (more < 0 || pixels * bytesPerPixel > freeMemory)
                return false;
        }
    }
    return true;
}

bool isHarmlessContainer(const QByteArray &format, const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > maxContainerSize)
        return false;
    const QByteArray bytes = file.readAll();
    return format.startsWith("svg") ? isHarmlessDrawing(bytes)
                                    : areEmbeddedPicturesPlausible(bytes);
}

} // namespace

bool isContainerFormat(const QByteArray &format)
{
    static const QList<QByteArray> formats{"svg", "svgz", "ico", "cur", "icns", "mng"};
    return formats.contains(format.toLower());
}

bool isHarmlessPicture(QImageReader &reader)
{
    // A reader looks for its file only now, with suffixes of its own where there is none of that name.
    // One that doesn't know what it finds might read it all the same.
    if (!reader.canRead())
        return false;
    const QString path = reader.fileName();
    // A format that a script names may be wrong, and what the bytes are is found out then.
    for (const QByteArray &format : {QImageReader::imageFormat(path), reader.format()}) {
        if (isContainerFormat(format) && !isHarmlessContainer(format.toLower(), path))
            return false;
    }
    return isPlausible(reader, QFileInfo(path).size());
}

bool isHarmlessPicture(const QString &path)
{
    QImageReader reader(path);
    return isHarmlessPicture(reader);
}
