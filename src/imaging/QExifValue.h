#pragma once

#include "plugin/TessalineGlobal.h"

#include <QDateTime>
#include <QExplicitlySharedDataPointer>
#include <QPair>
#include <QString>
#include <QVector>

class QExifValuePrivate;

// Numerator and denominator.
using QExifURational = QPair<quint32, quint32>;
using QExifSRational = QPair<qint32, qint32>;

// The value of one EXIF tag: a type, a number of items and the items. Copies share it.
//
// The conversions answer with 0, an empty value or an invalid date, and no warning, where type or
// count don't fit.
class TESSALINE_EXPORT QExifValue
{
public:
    // The numbers of the file format.
    enum Type : int {
        Byte = 1,
        Ascii = 2,
        Short = 3,
        Long = 4,
        Rational = 5,
        Undefined = 7,
        SignedLong = 9,
        SignedRational = 10
    };

    // How the text in an Undefined value is encoded, told by its first eight bytes.
    enum TextEncoding : int {
        NoEncoding = 0,
        AsciiEncoding = 1,
        JisEncoding = 2,
        UnicodeEncoding = 3,
        UndefinedEncoding = 4
    };

    // The null value, one for all: no bytes.
    QExifValue();
    QExifValue(quint8 value);
    QExifValue(const QVector<quint8> &values);
    QExifValue(quint16 value);
    QExifValue(const QVector<quint16> &values);
    QExifValue(quint32 value);
    QExifValue(const QVector<quint32> &values);
    QExifValue(qint32 value);
    QExifValue(const QVector<qint32> &values);
    QExifValue(const QExifURational &value);
    QExifValue(const QVector<QExifURational> &values);
    QExifValue(const QExifSRational &value);
    QExifValue(const QVector<QExifSRational> &values);
    // Undefined.
    QExifValue(const QByteArray &bytes);
    // Ascii, as "yyyy:MM:dd HH:mm:ss".
    QExifValue(const QDateTime &dateTime);
    // Ascii without an encoding, otherwise Undefined. Null where Qt lacks the codec.
    QExifValue(const QString &text, TextEncoding encoding = NoEncoding);
    QExifValue(const QExifValue &other);
    QExifValue(QExifValue &&other) noexcept;
    QExifValue &operator=(const QExifValue &other);
    QExifValue &operator=(QExifValue &&other) noexcept;
    ~QExifValue();

    // Whether both share one value; equal contents alone don't make it so.
    bool operator==(const QExifValue &other) const;

    // True for default-constructed values only: an empty list is not null.
    bool isNull() const;
    // A Type.
    int type() const;
    // The number of items; of a text its length and the closing zero.
    int count() const;
    // NoEncoding for anything but an Undefined value that begins with one of the four prefixes and
    // goes on behind it.
    TextEncoding encoding() const;

    // The single numbers need count 1; wider ones accept narrower types.
    quint8 toByte() const;
    QVector<quint8> toByteVector() const;
    quint16 toShort() const;
    QVector<quint16> toShortVector() const;
    quint32 toLong() const;
    QVector<quint32> toLongVector() const;
    qint32 toSignedLong() const;
    QVector<qint32> toSignedLongVector() const;
    QExifURational toRational() const;
    QVector<QExifURational> toRationalVector() const;
    QExifSRational toSignedRational() const;
    QVector<QExifSRational> toSignedRationalVector() const;
    // An Undefined value's bytes, a text as Latin-1.
    QByteArray toByteArray() const;
    // A text, or the encoded text of an Undefined value.
    QString toString() const;
    // Of a text with count 20.
    QDateTime toDateTime() const;

private:
    QExplicitlySharedDataPointer<QExifValuePrivate> d;
};
