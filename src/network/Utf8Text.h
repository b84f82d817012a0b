#pragma once

#include "plugin/TessalineGlobal.h"

#include <QByteArray>
#include <QString>

// The text of UTF-8 bytes that arrive piece by piece. Reading it after each piece costs linear time
// in all: only new bytes are decoded. At any moment it equals QString::fromUtf8() of all bytes up
// to the first zero byte.
class TESSALINE_EXPORT Utf8Text
{
public:
    // `bytes` are those of the last call, or more of the same.
    QString text(const QByteArray &bytes);
    void clear();

private:
    void decode(const QByteArray &bytes, int end);

    QString m_text; // of the bytes before m_position
    int m_position = 0;
    bool m_ended = false; // at a zero byte
};
