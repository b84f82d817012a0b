#pragma once

#include <QByteArray>
#include <QtEndian>

// Builds EXIF blocks and JPEG files byte by byte, so that a test can write what no program would.
class ExifBlock
{
public:
    explicit ExifBlock(bool bigEndian = false)
        : m_bigEndian(bigEndian)
    {
        m_bytes = bigEndian ? "MM" : "II";
        u16(42);
    }

    ExifBlock &u16(quint32 number)
    {
        const quint16 value = static_cast<quint16>(number);
        const quint16 ordered = m_bigEndian ? qToBigEndian(value) : qToLittleEndian(value);
        m_bytes.append(reinterpret_cast<const char *>(&ordered), sizeof ordered);
        return *this;
    }
    ExifBlock &u32(quint32 number)
    {
        const quint32 ordered = m_bigEndian ? qToBigEndian(number) : qToLittleEndian(number);
        m_bytes.append(reinterpret_cast<const char *>(&ordered), sizeof ordered);
        return *this;
    }
    ExifBlock &raw(const QByteArray &bytes)
    {
        m_bytes += bytes;
        return *this;
    }
    // An IFD entry, whose last field is a number.
    ExifBlock &entry(quint32 tag, quint32 type, quint32 count, quint32 field)
    {
        return u16(tag).u16(type).u32(count).u32(field);
    }
    // The same with the four bytes as they stand.
    ExifBlock &rawEntry(quint32 tag, quint32 type, quint32 count, const QByteArray &field)
    {
        return u16(tag).u16(type).u32(count).raw(field);
    }
    operator QByteArray() const { return m_bytes; }

private:
    QByteArray m_bytes;
    bool m_bigEndian;
};

inline QByteArray jpegSegment(const char *marker, const QByteArray &body)
{
    const int length = body.size() + 2;
    return QByteArray(marker, 2) + char(length >> 8) + char(length & 0xff) + body;
}

inline QByteArray exifSegment(const QByteArray &block)
{
    return jpegSegment("\xFF\xE1", QByteArray("Exif\0\0", 6) + block);
}

inline QByteArray jfifSegment()
{
    return jpegSegment("\xFF\xE0", QByteArray("JFIF\0\1\1\0\0\1\0\1\0\0", 14));
}

// What stands for the picture itself.
inline QByteArray jpegRest()
{
    return QByteArray("\xFF\xDB\x00\x04"
                      "xy"
                      "\xFF\xD9",
                      8);
}

inline QByteArray jpegWithExif(const QByteArray &block)
{
    return "\xFF\xD8" + exifSegment(block) + jpegRest();
}
