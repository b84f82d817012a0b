#include "archives/CentralDirectory.h"

#include <QByteArray>
#include <QFile>
#include <QtEndian>

#include <algorithm>
#include <vector>

namespace {

// Records of the ZIP format, APPNOTE 4.3: their signatures, fixed sizes and the offsets of what is
// read here.
const quint32 entrySignature = 0x02014b50;
const quint32 endSignature = 0x06054b50;
const quint32 end64Signature = 0x06064b50;
const quint32 locator64Signature = 0x07064b50;
const int entrySize = 46;
const int endSize = 22;
const int end64Size = 56;
const int locator64Size = 20;
const int localHeaderSize = 30;
const int maxCommentSize = 0xffff;
const quint16 zip64ExtraId = 0x0001;
const quint32 inZip64Extra = 0xffffffff;
const quint64 uncountable = 0xffff;

struct Extent
{
    quint64 begin;
    quint64 end;
};

struct Directory
{
    qint64 start = 0; // where its first record lies in the file
    quint64 entries = 0;
    bool found = false;
};

template <typename T>
T number(const char *data)
{
    return qFromLittleEndian<T>(data);
}

QByteArray readAt(QIODevice &device, qint64 position, qint64 size)
{
    return position >= 0 && device.seek(position) ? device.read(size) : QByteArray();
}

// The last place where the signature stands in the file's tail, as minizip looks for it.
qint64 findFromEnd(QIODevice &device, quint32 signature)
{
    const qint64 tailSize = std::min<qint64>(device.size(), maxCommentSize + endSize);
    const qint64 tailStart = device.size() - tailSize;
    char wanted[4];
    qToLittleEndian(signature, wanted);
    const int index = readAt(device, tailStart, tailSize).lastIndexOf(QByteArray(wanted, 4));
    return index < 0 ? -1 : tailStart + index;
}

Directory zip64Directory(QIODevice &device)
{
    const qint64 locatorPosition = findFromEnd(device, locator64Signature);
    const QByteArray locator = readAt(device, locatorPosition, locator64Size);
    // minizip turns to the plain record where the locator speaks of several disks.
    if (locator.size() < locator64Size || number<quint32>(locator.constData() + 4) != 0
        || number<quint32>(locator.constData() + 16) != 1)
        return {};
    const qint64 endPosition = number<qint64>(locator.constData() + 8);
    const QByteArray end = readAt(device, endPosition, end64Size);
    if (end.size() < end64Size || number<quint32>(end.constData()) != end64Signature)
        return {};
    const qint64 size = number<qint64>(end.constData() + 40);
    return {endPosition - size, number<quint64>(end.constData() + 32), size >= 0};
}

Directory plainDirectory(QIODevice &device)
{
    const qint64 endPosition = findFromEnd(device, endSignature);
    const QByteArray end = readAt(device, endPosition, endSize);
    if (end.size() < endSize)
        return {};
    // The directory lies right before its end record; its stated offset is off where something was
    // put in front of the archive.
    return {endPosition - number<quint32>(end.constData() + 12),
            number<quint16>(end.constData() + 10), true};
}

// The first of size, compressed size and offset that don't fit 32 bits stand in an extra field, in
// that order.
void applyZip64(const QByteArray &extra, quint32 size, quint64 &compressedSize, quint64 &offset)
{
    int position = 0;
    while (position + 4 <= extra.size()) {
        const quint16 id = number<quint16>(extra.constData() + position);
        const int length = number<quint16>(extra.constData() + position + 2);
        if (id != zip64ExtraId) {
            position += 4 + length;
            continue;
        }
        const int end = std::min(position + 4 + length, extra.size());
        position += 4;
        if (size == inZip64Extra)
            position += 8;
        for (quint64 *value : {&compressedSize, &offset}) {
            if (*value != inZip64Extra)
                continue;
            if (position + 8 > end)
                return;
            *value = number<quint64>(extra.constData() + position);
            position += 8;
        }
        return;
    }
}

// With a count of 0, and with the highest one of the plain record, minizip goes on to the first
// record that is none.
bool isCounted(const Directory &directory)
{
    return directory.entries != 0 && directory.entries != uncountable;
}

std::vector<Extent> readExtents(QIODevice &device, const Directory &directory)
{
    std::vector<Extent> extents;
    qint64 position = directory.start;
    if (position < 0 || !device.seek(position))
        return extents;
    for (quint64 i = 0; i < directory.entries || !isCounted(directory); ++i) {
        const QByteArray record = device.read(entrySize);
        if (record.size() < entrySize || number<quint32>(record.constData()) != entrySignature)
            break; // minizip stops here too
        const quint16 nameSize = number<quint16>(record.constData() + 28);
        const quint16 extraSize = number<quint16>(record.constData() + 30);
        const quint16 commentSize = number<quint16>(record.constData() + 32);
        quint64 compressedSize = number<quint32>(record.constData() + 20);
        quint64 offset = number<quint32>(record.constData() + 42);
        device.skip(nameSize);
        const QByteArray extra = device.read(extraSize);
        device.skip(commentSize);
        applyZip64(extra, number<quint32>(record.constData() + 24), compressedSize, offset);
        const quint64 end = offset + localHeaderSize + compressedSize;
        extents.push_back({offset, std::max(end, offset)});
    }
    return extents;
}

} // namespace

namespace CentralDirectory {

bool hasOverlappingEntries(QIODevice &device)
{
    Directory directory = zip64Directory(device);
    if (!directory.found)
        directory = plainDirectory(device);
    if (!directory.found)
        return false;

    std::vector<Extent> extents = readExtents(device, directory);
    std::sort(extents.begin(), extents.end(),
              [](const Extent &a, const Extent &b) { return a.begin < b.begin; });
    const auto overlap =
        std::adjacent_find(extents.begin(), extents.end(),
                           [](const Extent &a, const Extent &b) { return b.begin < a.end; });
    return overlap != extents.end();
}

bool hasOverlappingEntries(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && hasOverlappingEntries(file);
}

} // namespace CentralDirectory
