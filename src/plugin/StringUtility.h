#pragma once

#include "plugin/TessalineGlobal.h"

#include <QByteArray>
#include <QJSValue>
#include <QObject>
#include <QString>

#include <limits>

// Text and bytes in the four text encodings. A text never goes past a zero byte (in UTF-16, a zero
// unit), whatever the size of the input.
class TESSALINE_EXPORT StringUtility
{
    Q_GADGET

public:
    StringUtility() = delete;

    // Scripts may set a property of this type to any number, so its type is a given one.
    enum TextEncoding : int {
        TextEncodingUnknown = -1,
        TextEncodingUtf8 = 0,
        TextEncodingLatin1 = 1,
        TextEncodingLocal8Bit = 2,
        TextEncodingUtf16 = 3
    };
    Q_ENUM(TextEncoding)

    // How many bytes a text may be made of: a QString of more can't be had.
    static constexpr int maxTextBytes = (std::numeric_limits<int>::max() - 64) / 2;

    // An unknown encoding logs a warning and reads as UTF-8. Too many bytes log one and are no text.
    static QString toString(const QByteArray &bytes, int encoding);
    // UTF-16 is in the machine's byte order without a byte order mark; an unknown encoding logs a
    // warning and writes Latin-1.
    static QByteArray toStringData(const QString &text, int encoding);
    // The bytes of a script's string (encoded) or byte array (as they are). Anything else logs a
    // warning and gives no bytes.
    static QByteArray toValueData(const QJSValue &value, int encoding);

    // A whole file as UTF-8; null for an empty or missing file, and for one of too many bytes.
    static QString readFile(const QString &path);
    static bool writeFile(const QString &path, const QString &text);
};
