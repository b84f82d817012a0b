#pragma once

#include "plugin/StringUtility.h"
#include "plugin/TessalineGlobal.h"

#include <QByteArray>
#include <QJSValue>
#include <QObject>
#include <QVariant>

// A byte array as a QML object. QML name: BinaryData.
//
// Not every change announces itself, and that is relied upon: setSize() emits sizeChanged() alone,
// setDataAt() dataChanged() alone, and setStringData() with a text emits nothing.
class TESSALINE_EXPORT BinaryData : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isNull READ isNull NOTIFY sizeChanged)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY sizeChanged)
    Q_PROPERTY(int size READ size WRITE setSize NOTIFY sizeChanged)
    Q_PROPERTY(QVariant data READ data WRITE setData NOTIFY dataChanged)
    Q_PROPERTY(TextEncoding textEncoding READ textEncoding WRITE setTextEncoding NOTIFY
                   textEncodingChanged)

public:
    // Scripts may set any number, so the type is a given one.
    enum TextEncoding : int {
        TextEncodingUnknown = StringUtility::TextEncodingUnknown,
        TextEncodingUtf8 = StringUtility::TextEncodingUtf8,
        TextEncodingLatin1 = StringUtility::TextEncodingLatin1,
        TextEncodingLocal8Bit = StringUtility::TextEncodingLocal8Bit,
        TextEncodingUtf16 = StringUtility::TextEncodingUtf16
    };
    Q_ENUM(TextEncoding)

    explicit BinaryData(QObject *parent = nullptr);

    // New objects that belong to the script engine. The value is a script's string, taken as UTF-8,
    // or its bytes.
    static BinaryData *fromByteArray(const QByteArray &bytes, QObject *parent = nullptr);
    static BinaryData *fromValue(const QJSValue &value, QObject *parent = nullptr);

    bool isNull() const { return m_data.isNull(); }
    bool isEmpty() const { return m_data.isEmpty(); }

    int size() const { return m_data.size(); }
    void setSize(int size);

    QVariant data() const { return m_data; }
    // What converts to bytes is taken as bytes (texts as UTF-8), what only converts to a text goes
    // through textEncoding, and anything else logs a warning and changes nothing.
    void setData(const QVariant &data);

    TextEncoding textEncoding() const { return m_textEncoding; }
    void setTextEncoding(TextEncoding textEncoding);

    Q_INVOKABLE void clear();
    // The byte as a signed number, -128 to 127; undefined out of range.
    Q_INVOKABLE QJSValue dataAt(int index) const;
    // Stores the low 8 bits; false out of range.
    Q_INVOKABLE bool setDataAt(int index, int byteValue);
    // A size of -1 keeps the present one.
    Q_INVOKABLE void fill(int byteValue, int size = -1);
    // Independent of textEncoding.
    Q_INVOKABLE QString stringData(BinaryData::TextEncoding encoding = TextEncodingUtf8) const;
    // TextEncodingUnknown stands for textEncoding. A null string clears; only that emits signals.
    Q_INVOKABLE void setStringData(const QString &string,
                                   BinaryData::TextEncoding encoding = TextEncodingUtf8);

signals:
    void sizeChanged();
    void dataChanged();
    void textEncodingChanged();

private:
    bool isInRange(int index) const { return index >= 0 && index < m_data.size(); }
    void replaceData(const QByteArray &data);

    QByteArray m_data;
    TextEncoding m_textEncoding = TextEncodingUtf8;
};
