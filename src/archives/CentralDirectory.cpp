#include "archives/CentralDirectory.h"

#include <QByteArray>
#include <QIODevice>
#include <QtEndian>

#include <algorithm>
#include <optional>
#include <vector>

namespace {

// Records of the ZIP format, APPNOTE 4.3: their signatures, fixed sizes and the offsets of what is
// read here.
const quint32 entrySignature = 0x02014b50;
const char endSignature[] = "PK\5\6";
const char locator64Signature[] = "PK\6\7";
const int entrySize = 46;
const int endSize = 22;
const int localHeaderSize = 30;
const int maxCommentSize = 0xffff;
const quint32 inZip64Extra = 0xffffffff;
// With a count of 0, and with the highest one, minizip goes on to the first record that is none.
const quint16 uncountable = 0xffff;
const qint64 maxDirectorySize = 64LL * 1024 * 1024;

struct Extent
{
    quint64 begin;
    quint64 end;
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

struct Directory
{
    QByteArray bytes;
    int entries;
    quint64 offset; // as the end record states it, counted like those of the entries
};

// Nothing if there is more than one record that could be its end.
std::optional<Directory> readDirectory(QIODevice &device)
{
    const qint64 tailStart = std::max<qint64>(0, device.size() - maxCommentSize - endSize);
    const QByteArray tail = readAt(device, tailStart, device.size() - tailStart);
    const int index = tail.lastIndexOf(endSignature);
    if (index < 0 || tail.indexOf(endSignature) != index || tail.size() - index < endSize
        || tail.contains(locator64Signature))
        return std::nullopt;
    const char *end = tail.constData() + index;
    const quint16 entries = number<quint16>(end + 10);
    const qint64 size = number<quint32>(end + 12);
    if (entries == 0 || entries == uncountable || size > maxDirectorySize)
        return std::nullopt;
    // It lies right before its end record; its stated offset is off where something was put in
    // front of the archive.
    return Directory{readAt(device, tailStart + index - size, size), entries,
                     number<quint32>(end + 16)};
}

// Nothing if a record isn't one or doesn't tell by itself.
std::optional<std::vector<Extent>> readExtents(const Directory &directory)
{
    std::vector<Extent> extents;
    extents.reserve(static_cast<std::size_t>(directory.entries));
    qint64 position = 0;
    for (int i = 0; i < directory.entries; ++i) {
        const char *record = directory.bytes.constData() + position;
        if (position + entrySize > directory.bytes.size()
            || number<quint32>(record) != entrySignature)
            return std::nullopt;
        const quint32 packedSize = number<quint32>(record + 20);
        const quint32 size = number<quint32>(record + 24);
        const quint32 offset = number<quint32>(record + 42);
        const Extent extent = {offset, quint64(offset) + localHeaderSize + packedSize};
        if (packedSize == inZip64Extra || size == inZip64Extra || offset == inZip64Extra
            || extent.end > directory.offset)
            return std::nullopt;
        extents.push_back(extent);
        position += entrySize + number<quint16>(record + 28) + number<quint16>(record + 30)
                    + number<quint16>(record + 32);
    }
    return extents;
}

} // namespace

namespace CentralDirectory {

bool isPlainAndDisjoint(QIODevice &device)
{
    const std::optional<Directory> directory = readDirectory(device);
    if (!directory)
        return false;
    std::optional<std::vector<Extent>> extents = readExtents(*directory);
    if (!extents)
        return false;
    std::sort(extents->begin(), extents->end(),
              [](const Extent &a, const Extent &b) { return a.begin < b.begin; });
    return std::adjacent_find(extents->begin(), extents->end(),
                              [](const Extent &a, const Extent &b) { return b.begin < a.end; })
           == extents->end();
}

} // namespace CentralDirectory
