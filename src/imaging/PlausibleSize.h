#pragma once

#include <QSize>

// Whether a compressed picture of so many bytes can really hold that many pixels of `depth` bits in
// memory. A header alone may claim any size, and the decoder would allocate gigabytes for it.
// Deflate, the strongest of the usual methods, makes at most 1032 bytes of one, and a pixel of three
// bytes takes four in memory: a black page comes close to that. `freeBytes` of memory are believed
// whatever the bytes are.
inline bool isPlausibleSize(const QSize &size, qint64 bytes, int depth = 32, qint64 freeBytes = 0)
{
    constexpr qint64 memoryPerByte = 1032 * 4 / 3;
    const qint64 memory = qMax(freeBytes, bytes * memoryPerByte);
    return qint64(size.width()) * size.height() <= memory * 8 / depth;
}
