#include "imaging/QExifValue.h"

#include <QSharedData>
#include <QTextCodec>

class QExifValuePrivate : public QSharedData
{
public:
    QExifValuePrivate(int type, int count)
        : type(type)
        , count(count)
    {
    }
    virtual ~QExifValuePrivate() = default;
    Q_DISABLE_COPY(QExifValuePrivate)

    const int type;
    const int count;
};

namespace {

// One kind of private value: its number in the file, and what holds its items.
template <int Number, typename Items>
class QExifItemsPrivate : public QExifValuePrivate
{
public:
    using Payload = Items;
    static constexpr int Type = Number;

    explicit QExifItemsPrivate(const Items &items)
        : QExifValuePrivate(Number, items.size())
        , payload(items)
    {
    }

    const Items payload;
};

using QExifByteValuePrivate = QExifItemsPrivate<QExifValue::Byte, QVector<quint8>>;
using QExifShortValuePrivate = QExifItemsPrivate<QExifValue::Short, QVector<quint16>>;
using QExifLongValuePrivate = QExifItemsPrivate<QExifValue::Long, QVector<quint32>>;
using QExifRationalValuePrivate = QExifItemsPrivate<QExifValue::Rational, QVector<QExifURational>>;
using QExifUndefinedValuePrivate = QExifItemsPrivate<QExifValue::Undefined, QByteArray>;
using QExifSignedLongValuePrivate = QExifItemsPrivate<QExifValue::SignedLong, QVector<qint32>>;
using QExifSignedRationalValuePrivate =
    QExifItemsPrivate<QExifValue::SignedRational, QVector<QExifSRational>>;

class QExifAsciiValuePrivate : public QExifValuePrivate
{
public:
    using Payload = QString;
    static constexpr int Type = QExifValue::Ascii;

    explicit QExifAsciiValuePrivate(const QString &text)
        : QExifValuePrivate(Type, text.size() + 1) // the closing zero counts
        , payload(text)
    {
    }

    const QString payload;
};

using SharedValue = QExplicitlySharedDataPointer<QExifValuePrivate>;

const SharedValue &nullValue()
{
    static const SharedValue null(new QExifByteValuePrivate(QVector<quint8>()));
    return null;
}

// The payload if the value is of that kind, otherwise an empty one.
template <typename Kind>
typename Kind::Payload payloadOf(const SharedValue &value)
{
    if (value->type != Kind::Type)
        return {};
    return static_cast<const Kind *>(value.data())->payload;
}

// The only item of a value of that kind, otherwise one that is all zero.
template <typename Kind>
typename Kind::Payload::value_type singleItem(const SharedValue &value)
{
    const typename Kind::Payload items = payloadOf<Kind>(value);
    return items.size() == 1 ? items.first() : typename Kind::Payload::value_type();
}

// A single number of any integer type, its bits kept.
template <typename Number>
Number singleNumber(const SharedValue &value)
{
    switch (value->type) {
    case QExifValue::Byte:
        return singleItem<QExifByteValuePrivate>(value);
    case QExifValue::Short:
        return singleItem<QExifShortValuePrivate>(value);
    case QExifValue::Long:
        return static_cast<Number>(singleItem<QExifLongValuePrivate>(value));
    case QExifValue::SignedLong:
        return static_cast<Number>(singleItem<QExifSignedLongValuePrivate>(value));
    default:
        return 0;
    }
}

constexpr int prefixSize = 8;

// The standard's "character code" before an encoded text.
QByteArray prefixOf(QExifValue::TextEncoding encoding)
{
    QByteArray prefix;
    if (encoding == QExifValue::AsciiEncoding)
        prefix = QByteArrayLiteral("ASCII");
    else if (encoding == QExifValue::JisEncoding)
        prefix = QByteArrayLiteral("JIS");
    else if (encoding == QExifValue::UnicodeEncoding)
        prefix = QByteArrayLiteral("UNICODE");
    return prefix.append(prefixSize - prefix.size(), '\0');
}

QTextCodec *jisCodec()
{
    return QTextCodec::codecForName("JIS X 0208");
}

QTextCodec *unicodeCodec()
{
    return QTextCodec::codecForName("UTF-16");
}

SharedValue undefinedValue(const QByteArray &bytes)
{
    return SharedValue(new QExifUndefinedValuePrivate(bytes));
}

SharedValue codecValue(QExifValue::TextEncoding encoding, const QTextCodec *codec,
                       const QString &text)
{
    return codec ? undefinedValue(prefixOf(encoding) + codec->fromUnicode(text)) : nullValue();
}

SharedValue textValue(const QString &text, QExifValue::TextEncoding encoding)
{
    switch (encoding) {
    case QExifValue::AsciiEncoding:
        return undefinedValue(prefixOf(encoding) + text.toLatin1());
    case QExifValue::JisEncoding:
        return codecValue(encoding, jisCodec(), text);
    case QExifValue::UnicodeEncoding:
        return codecValue(encoding, unicodeCodec(), text);
    case QExifValue::UndefinedEncoding:
        return undefinedValue(prefixOf(encoding) + text.toLocal8Bit());
    case QExifValue::NoEncoding:
        break;
    }
    return SharedValue(new QExifAsciiValuePrivate(text));
}

QString dateTimeFormat()
{
    return QStringLiteral("yyyy:MM:dd HH:mm:ss");
}

} // namespace

QExifValue::QExifValue()
    : d(nullValue())
{
}

QExifValue::QExifValue(quint8 value)
    : QExifValue(QVector<quint8>{value})
{
}

QExifValue::QExifValue(const QVector<quint8> &values)
    : d(new QExifByteValuePrivate(values))
{
}

QExifValue::QExifValue(quint16 value)
    : QExifValue(QVector<quint16>{value})
{
}

QExifValue::QExifValue(const QVector<quint16> &values)
    : d(new QExifShortValuePrivate(values))
{
}

QExifValue::QExifValue(quint32 value)
    : QExifValue(QVector<quint32>{value})
{
}

QExifValue::QExifValue(const QVector<quint32> &values)
    : d(new QExifLongValuePrivate(values))
{
}

QExifValue::QExifValue(qint32 value)
    : QExifValue(QVector<qint32>{value})
{
}

QExifValue::QExifValue(const QVector<qint32> &values)
    : d(new QExifSignedLongValuePrivate(values))
{
}

QExifValue::QExifValue(const QExifURational &value)
    : QExifValue(QVector<QExifURational>{value})
{
}

QExifValue::QExifValue(const QVector<QExifURational> &values)
    : d(new QExifRationalValuePrivate(values))
{
}

QExifValue::QExifValue(const QExifSRational &value)
    : QExifValue(QVector<QExifSRational>{value})
{
}

QExifValue::QExifValue(const QVector<QExifSRational> &values)
    : d(new QExifSignedRationalValuePrivate(values))
{
}

QExifValue::QExifValue(const QByteArray &bytes)
    : d(undefinedValue(bytes))
{
}

QExifValue::QExifValue(const QDateTime &dateTime)
    : d(new QExifAsciiValuePrivate(dateTime.toString(dateTimeFormat())))
{
}

QExifValue::QExifValue(const QString &text, TextEncoding encoding)
    : d(textValue(text, encoding))
{
}

QExifValue::QExifValue(const QExifValue &other) = default;
QExifValue::QExifValue(QExifValue &&other) noexcept = default;

QExifValue &QExifValue::operator=(const QExifValue &other) = default;
QExifValue &QExifValue::operator=(QExifValue &&other) noexcept = default;

QExifValue::~QExifValue() = default;

bool QExifValue::operator==(const QExifValue &other) const
{
    return d == other.d;
}

bool QExifValue::isNull() const
{
    return d == nullValue();
}

int QExifValue::type() const
{
    return d->type;
}

int QExifValue::count() const
{
    return d->count;
}

QExifValue::TextEncoding QExifValue::encoding() const
{
    if (d->type != Undefined || d->count <= prefixSize)
        return NoEncoding;
    const QByteArray bytes = payloadOf<QExifUndefinedValuePrivate>(d);
    for (const TextEncoding encoding :
         {AsciiEncoding, JisEncoding, UnicodeEncoding, UndefinedEncoding}) {
        if (bytes.startsWith(prefixOf(encoding)))
            return encoding;
    }
    return NoEncoding;
}

quint8 QExifValue::toByte() const
{
    return singleItem<QExifByteValuePrivate>(d);
}

QVector<quint8> QExifValue::toByteVector() const
{
    return payloadOf<QExifByteValuePrivate>(d);
}

quint16 QExifValue::toShort() const
{
    return d->type == Byte ? toByte() : singleItem<QExifShortValuePrivate>(d);
}

QVector<quint16> QExifValue::toShortVector() const
{
    return payloadOf<QExifShortValuePrivate>(d);
}

quint32 QExifValue::toLong() const
{
    return singleNumber<quint32>(d);
}

QVector<quint32> QExifValue::toLongVector() const
{
    return payloadOf<QExifLongValuePrivate>(d);
}

qint32 QExifValue::toSignedLong() const
{
    return singleNumber<qint32>(d);
}

QVector<qint32> QExifValue::toSignedLongVector() const
{
    return payloadOf<QExifSignedLongValuePrivate>(d);
}

QExifURational QExifValue::toRational() const
{
    return singleItem<QExifRationalValuePrivate>(d);
}

QVector<QExifURational> QExifValue::toRationalVector() const
{
    return payloadOf<QExifRationalValuePrivate>(d);
}

QExifSRational QExifValue::toSignedRational() const
{
    return singleItem<QExifSignedRationalValuePrivate>(d);
}

QVector<QExifSRational> QExifValue::toSignedRationalVector() const
{
    return payloadOf<QExifSignedRationalValuePrivate>(d);
}

QByteArray QExifValue::toByteArray() const
{
    if (d->type == Ascii)
        return payloadOf<QExifAsciiValuePrivate>(d).toLatin1();
    return payloadOf<QExifUndefinedValuePrivate>(d);
}

QString QExifValue::toString() const
{
    if (d->type == Ascii)
        return payloadOf<QExifAsciiValuePrivate>(d);

    const QByteArray text = payloadOf<QExifUndefinedValuePrivate>(d).mid(prefixSize);
    const QTextCodec *codec = nullptr;
    switch (encoding()) {
    case AsciiEncoding: // with its size, as a zero inside belongs to the text
        return QString::fromLatin1(text.constData(), text.size());
    case JisEncoding:
        codec = jisCodec();
        return codec ? codec->toUnicode(text) : QString();
    case UnicodeEncoding:
        codec = unicodeCodec();
        return codec ? codec->toUnicode(text) : QString::fromLocal8Bit(text);
    case UndefinedEncoding:
        return QString::fromLocal8Bit(text);
    case NoEncoding:
        break;
    }
    return QString();
}

QDateTime QExifValue::toDateTime() const
{
    constexpr int dateTimeCount = 20;
    if (d->type != Ascii || d->count != dateTimeCount)
        return QDateTime();
    return QDateTime::fromString(payloadOf<QExifAsciiValuePrivate>(d), dateTimeFormat());
}
