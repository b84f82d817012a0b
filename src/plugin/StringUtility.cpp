#include "plugin/StringUtility.h"

#include "plugin/FileUtility.h"

#include <QDebug>
#include <QMetaType>
#include <QVector>

#include <algorithm>
#include <cstring>

namespace {

// The bytes needn't be aligned or end in a zero unit, so they move into units that are and do. Of
// an odd number the last one is completed by a zero byte, as it stands before an array's
// terminator.
QString fromUtf16Bytes(const QByteArray &bytes)
{
    QVector<ushort> units(bytes.size() / 2 + 2, 0);
    std::memcpy(units.data(), bytes.constData(), static_cast<size_t>(bytes.size()));
    return QString::fromUtf16(units.constData());
}

QByteArray toUtf16Bytes(const QString &text)
{
    const ushort *units = text.utf16();
    const auto count = std::find(units, units + text.size(), ushort(0)) - units;
    return QByteArray(reinterpret_cast<const char *>(units), static_cast<int>(count) * 2);
}

} // namespace

// Qt's conversions of a whole QByteArray end at the first zero byte.
QString StringUtility::toString(const QByteArray &bytes, int encoding)
{
    if (bytes.size() > maxTextBytes) {
        qWarning() << Q_FUNC_INFO << "Too many bytes for a text:" << bytes.size();
        return QString();
    }
    switch (encoding) {
    case TextEncodingUtf8:
        return QString::fromUtf8(bytes);
    case TextEncodingLatin1:
        return QString::fromLatin1(bytes);
    case TextEncodingLocal8Bit:
        return QString::fromLocal8Bit(bytes);
    case TextEncodingUtf16:
        return fromUtf16Bytes(bytes);
    default:
        break;
    }
    qWarning() << Q_FUNC_INFO << "Undefined encoding:" << encoding;
    return QString::fromUtf8(bytes);
}

QByteArray StringUtility::toStringData(const QString &text, int encoding)
{
    switch (encoding) {
    case TextEncodingUtf8:
        return text.toUtf8();
    case TextEncodingLatin1:
        return text.toLatin1();
    case TextEncodingLocal8Bit:
        return text.toLocal8Bit();
    case TextEncodingUtf16:
        return toUtf16Bytes(text);
    default:
        break;
    }
    qWarning() << Q_FUNC_INFO << "Undefined encoding:" << encoding;
    return text.toLatin1();
}

QByteArray StringUtility::toValueData(const QJSValue &value, int encoding)
{
    if (value.isString())
        return toStringData(value.toString(), encoding);

    const QVariant variant = value.toVariant();
    if (value.isVariant()) {
        if (variant.canConvert<QByteArray>())
            return variant.toByteArray();
        qWarning() << Q_FUNC_INFO << "Unsupported variant type:" << variant;
        return QByteArray();
    }
    // A script holds bytes as an ArrayBuffer, which is no variant to QJSValue.
    if (variant.userType() == QMetaType::QByteArray)
        return variant.toByteArray();
    qWarning() << Q_FUNC_INFO << "Unsupported data type:" << variant;
    return QByteArray();
}

QString StringUtility::readFile(const QString &path)
{
    const QByteArray bytes = FileUtility::readFile(path, maxTextBytes);
    return bytes.isEmpty() ? QString() : QString::fromUtf8(bytes);
}

bool StringUtility::writeFile(const QString &path, const QString &text)
{
    return FileUtility::writeFile(path, text.toUtf8());
}

#include "moc_StringUtility.cpp"
