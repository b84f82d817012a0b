#pragma once

#include <QSize>

// Whether a compressed picture of so many bytes can really hold that many pixels. A header alone
// may claim any size, and the decoder would allocate gigabytes for it. Even a JPEG of one colour
// takes two bits for each block of 8 x 8 pixels; `freePixels` are believed whatever the bytes are.
inline bool isPlausibleSize(const QSize &size, qint64 bytes, qint64 freePixels = 0)
{
    constexpr qint64 pixelsPerByte = 64LL * 4;
    return qint64(size.width()) * size.height() <= qMax(freePixels, bytes * pixelsPerByte);
}
