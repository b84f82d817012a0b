#include "network/Utf8Text.h"

#include <cstring>

namespace {

const char byteOrderMark[] = "\xef\xbb\xbf";
const int byteOrderMarkLength = 3;

// The bytes that a character begins with tell how many it takes; 1 also for what begins none.
int sequenceLength(uchar lead)
{
    if (lead >= 0xf0)
        return 4;
    if (lead >= 0xe0)
        return 3;
    return lead >= 0xc0 ? 2 : 1;
}

// Where the bytes can be cut so that each part decodes as it does within the whole: before a
// character at their end that isn't complete yet.
int cutPosition(const QByteArray &bytes, int begin, int end)
{
    for (int i = end - 1; i >= begin && i > end - 4; --i) {
        const auto byte = static_cast<uchar>(bytes.at(i));
        if (byte >= 0xc0)
            return i + sequenceLength(byte) > end ? i : end;
    }
    return end;
}

// fromUtf8() for bytes from the middle of a text, where a byte order mark is a character.
QString decodeMiddle(const char *bytes, int length)
{
    QString text;
    while (length >= byteOrderMarkLength
           && std::memcmp(bytes, byteOrderMark, byteOrderMarkLength) == 0) {
        text.append(QChar(QChar::ByteOrderMark));
        bytes += byteOrderMarkLength;
        length -= byteOrderMarkLength;
    }
    return text + QString::fromUtf8(bytes, length);
}

} // namespace

QString Utf8Text::text(const QByteArray &bytes)
{
    if (!m_ended) {
        const int zero = bytes.indexOf('\0', m_position);
        m_ended = zero >= 0;
        decode(bytes, m_ended ? zero : cutPosition(bytes, m_position, bytes.size()));
    }
    if (m_ended || m_position == bytes.size())
        return m_text;
    // The beginning of a character reads as replacement characters until the rest is there.
    return m_text + QString::fromUtf8(bytes.constData() + m_position, bytes.size() - m_position);
}

void Utf8Text::clear()
{
    *this = Utf8Text();
}

void Utf8Text::decode(const QByteArray &bytes, int end)
{
    if (end == m_position)
        return;
    const char *begin = bytes.constData() + m_position;
    const int length = end - m_position;
    // Only at the very beginning a byte order mark is dropped.
    m_text += m_position == 0 ? QString::fromUtf8(begin, length) : decodeMiddle(begin, length);
    m_position = end;
}
