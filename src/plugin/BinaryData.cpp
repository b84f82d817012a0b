#include "plugin/BinaryData.h"

#include "plugin/PropertyHelper.h"
#include "plugin/ScriptValue.h"
#include "plugin/TessalineDebug.h"
#include "plugin/TessalineObject.h"

#include <cstring>

/*!
    \qmltype BinaryData
    \inqmlmodule Zemrik.Tessaline
    \brief An array of bytes.

    Holds bytes that a script makes, changes, or passes between files and requests. The \l data
    of one object can be assigned to another, and is accepted wherever the module writes bytes.

    \qml
    BinaryData {
        id: header
        size: 4
        Component.onCompleted: {
            header.fill(0);
            header.setDataAt(0, 0x50);
            console.log(header.dataAt(0), header.size);   // 80 4
        }
    }
    \endqml
*/

/*!
    \qmlproperty bool BinaryData::isNull
    \readonly
    Whether there is no array at all: true at the start and after clear().
*/

/*!
    \qmlproperty bool BinaryData::isEmpty
    \readonly
    Whether there are no bytes.
*/

/*!
    \qmlproperty int BinaryData::size
    The number of bytes. Setting it cuts the array or adds zero bytes at its end; bindings on
    \l data don't update then.
*/

/*!
    \qmlproperty variant BinaryData::data
    The bytes, as an \c ArrayBuffer in JavaScript.

    Bytes, texts and numbers can be assigned; texts and numbers come in as UTF-8, whatever
    \l textEncoding says. A value that has a text form only, such as a date, is encoded by
    \l textEncoding. Anything else logs a warning and leaves the bytes as they are.
*/

/*!
    \qmlproperty enumeration BinaryData::textEncoding
    The encoding that setStringData() uses for \c BinaryData.TextEncodingUnknown.

    \value BinaryData.TextEncodingUnknown    -1
    \value BinaryData.TextEncodingUtf8       0, the default
    \value BinaryData.TextEncodingLatin1     1
    \value BinaryData.TextEncodingLocal8Bit  2, the encoding of the system's locale
    \value BinaryData.TextEncodingUtf16      3, in the byte order of the machine
*/

BinaryData::BinaryData(QObject *parent)
    : QObject(parent)
{
}

BinaryData *BinaryData::fromByteArray(const QByteArray &bytes, QObject *parent)
{
    auto *object = new BinaryData(parent);
    object->m_data = bytes;
    return TessalineObject::givenToScript(object);
}

BinaryData *BinaryData::fromValue(const QJSValue &value, QObject *parent)
{
    return fromByteArray(StringUtility::toValueData(value, StringUtility::TextEncodingUtf8),
                         parent);
}

void BinaryData::setSize(int size)
{
    const int oldSize = m_data.size();
    if (size == oldSize)
        return;
    m_data.resize(size);
    // New bytes would otherwise show a script what the heap held before.
    if (m_data.size() > oldSize)
        std::memset(m_data.data() + oldSize, 0, static_cast<size_t>(m_data.size() - oldSize));
    emit sizeChanged();
}

void BinaryData::setData(const QVariant &data)
{
    const QVariant value = plainValue(data);
    if (value.canConvert<QByteArray>())
        replaceData(value.toByteArray());
    else if (value.canConvert<QString>())
        replaceData(StringUtility::toStringData(value.toString(), m_textEncoding));
    else
        qCWarning(FRAMEWORK_CORE) << Q_FUNC_INFO << "Unsupported:" << value;
}

void BinaryData::setTextEncoding(TextEncoding textEncoding)
{
    if (assignIfChanged(m_textEncoding, textEncoding))
        emit textEncodingChanged();
}

/*!
    \qmlmethod void BinaryData::clear()
    Drops all bytes; \l isNull is true afterwards.
*/
void BinaryData::clear()
{
    replaceData(QByteArray());
}

/*!
    \qmlmethod var BinaryData::dataAt(int index)
    The byte at \a index as a signed number, -128 to 127: the byte 0xFF is -1. Undefined if there
    is no such byte.
*/
QJSValue BinaryData::dataAt(int index) const
{
    return isInRange(index) ? QJSValue(static_cast<qint8>(m_data.at(index))) : QJSValue();
}

/*!
    \qmlmethod bool BinaryData::setDataAt(int index, int byteValue)
    Stores the low 8 bits of \a byteValue at \a index. Returns false if there is no such byte.
*/
bool BinaryData::setDataAt(int index, int byteValue)
{
    if (!isInRange(index))
        return false;
    m_data[index] = static_cast<char>(byteValue);
    emit dataChanged();
    return true;
}

/*!
    \qmlmethod void BinaryData::fill(int byteValue, int size = -1)
    Sets all bytes to \a byteValue, after changing the number of bytes to \a size unless that is
    -1.
*/
void BinaryData::fill(int byteValue, int size)
{
    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO << "byteValue:" << byteValue << "size:" << size;
    m_data.fill(static_cast<char>(byteValue), size);
    if (size >= 0)
        emit sizeChanged();
    emit dataChanged();
}

/*!
    \qmlmethod string BinaryData::stringData(enumeration encoding = BinaryData.TextEncodingUtf8)
    The bytes as a text in \a encoding, up to the first zero byte (in UTF-16, the first zero unit).
    The property \l textEncoding is not consulted.
*/
QString BinaryData::stringData(TextEncoding encoding) const
{
    return StringUtility::toString(m_data, encoding);
}

/*!
    \qmlmethod void BinaryData::setStringData(string string, enumeration encoding = BinaryData.TextEncodingUtf8)
    Replaces the bytes by the text \a string in the given \a encoding;
    \c BinaryData.TextEncodingUnknown stands for \l textEncoding. With \c null as \a string the
    bytes are cleared; the engine makes a null text of the literal \c{""} too.

    Bindings on \l data and \l size update after the clearing only, not after a new text.
*/
void BinaryData::setStringData(const QString &string, TextEncoding encoding)
{
    if (string.isNull()) {
        if (!m_data.isNull())
            clear();
        return;
    }
    // Without a signal: that is the documented difference to writing the property data.
    m_data = StringUtility::toStringData(string, encoding < 0 ? m_textEncoding : encoding);
}

void BinaryData::replaceData(const QByteArray &data)
{
    m_data = data;
    emit dataChanged();
    emit sizeChanged();
}

#include "moc_BinaryData.cpp"
