#include "plugin/JsonUtility.h"

#include "plugin/DebugUtility.h"
#include "plugin/FileUtility.h"

#include <QCborArray>
#include <QCborMap>
#include <QCborValue>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <vector>

namespace {

const char mapFunction[] = "static QVariantMap JsonUtility::toVariantMap(const QByteArray&, bool)";

// What becomes of a null. Qt's own conversion makes it a std::nullptr_t, which is neither.
enum class Nulls {
    Invalid, // undefined in a script
    Pointer  // null in a script
};

QVariant nullValue()
{
    return QVariant(QMetaType::VoidStar, nullptr);
}

bool isNullValue(const QVariant &value)
{
    return !value.isValid() || value.userType() == QMetaType::Nullptr;
}

// Builds the variant tree of a parsed document and places the nulls on the way. The CBOR classes
// share the data of the JSON ones and are read with fewer detours.
class TreeBuilder
{
public:
    QVariantMap map(const QCborMap &object, Nulls nulls)
    {
        QVariantMap map;
        // The keys come in the map's own order, so that each has its place at the end.
        for (auto it = object.constBegin(); it != object.constEnd(); ++it)
            map.insert(map.constEnd(), sharedKey(it.key().toString()), value(it.value(), nulls));
        return map;
    }

    QVariantList list(const QCborArray &array, Nulls nulls)
    {
        QVariantList list;
        list.reserve(static_cast<int>(array.size()));
        // Only the maps of a list have their nulls converted, neither its own nor those of a list
        // in it.
        for (const auto &element : array)
            list.append(value(element, element.isMap() ? nulls : Nulls::Invalid));
        return list;
    }

    QVariant value(const QCborValue &value, Nulls nulls)
    {
        switch (value.type()) {
        case QCborValue::Null:
            return nulls == Nulls::Pointer ? nullValue() : QVariant();
        case QCborValue::Array:
            return list(value.toArray(), nulls);
        case QCborValue::Map:
            return map(value.toMap(), nulls);
        default:
            return value.toVariant();
        }
    }

private:
    // Records repeat their keys: those met lately share one text.
    const QString &sharedKey(const QString &key)
    {
        m_keys.resize(256); // when the first one comes: a list of texts has none
        QString &known = m_keys[qHash(key) % m_keys.size()];
        if (known != key)
            known = key;
        return known;
    }

    std::vector<QString> m_keys;
};

QVariantMap toMap(const QJsonObject &object, bool convertNull)
{
    return TreeBuilder().map(QCborMap::fromJsonObject(object),
                             convertNull ? Nulls::Pointer : Nulls::Invalid);
}

QVariantList toList(const QJsonArray &array, bool convertNull)
{
    return TreeBuilder().list(QCborArray::fromJsonArray(array),
                              convertNull ? Nulls::Pointer : Nulls::Invalid);
}

// Empty for no text, and with a line that says why for text that isn't an object.
QJsonObject parsedObject(const QByteArray &bytes, const char *function)
{
    if (bytes.isEmpty())
        return QJsonObject();

    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (!document.isObject()) {
        qCDebug(CATEGORY_UTILITY) << function << "Error" << error.error << "Offset" << error.offset
                                  << error.errorString();
    }
    return document.object(); // empty where it isn't one
}

} // namespace

QByteArray JsonUtility::toBytes(const QVariantMap &map)
{
    return QJsonDocument(QJsonObject::fromVariantMap(map)).toJson(QJsonDocument::Compact);
}

QString JsonUtility::toString(const QVariantMap &map)
{
    return QString::fromUtf8(toBytes(map));
}

QByteArray JsonUtility::toFormattedBytes(const QVariantMap &map)
{
    return QJsonDocument(QJsonObject::fromVariantMap(map)).toJson(QJsonDocument::Indented);
}

QString JsonUtility::toFormattedString(const QVariantMap &map)
{
    return QString::fromUtf8(toFormattedBytes(map));
}

bool JsonUtility::writeFile(const QString &path, const QVariantMap &map)
{
    return FileUtility::writeFile(path, toFormattedBytes(map));
}

QVariantMap JsonUtility::readFile(const QString &path)
{
    return toVariantMap(FileUtility::readFile(path), false);
}

// Its line in the log is that of toVariantMap(): who looks there for a damaged file finds it
// whichever way it was read.
QJsonObject JsonUtility::toObject(const QByteArray &bytes)
{
    return parsedObject(bytes, mapFunction);
}

QVariantMap JsonUtility::toVariantMap(const QJsonObject &object)
{
    return toMap(object, false);
}

// Found as JSON, which halves its way to a key where CBOR looks at each; both share their elements.
QVariant JsonUtility::value(const QJsonObject &object, const QString &key,
                            const QVariant &defaultValue)
{
    const auto found = object.constFind(key);
    if (found == object.constEnd())
        return defaultValue;
    const QCborMap elements = QCborMap::fromJsonObject(object);
    const auto element = elements.constBegin() + (found - object.constBegin());
    return TreeBuilder().value(element.value(), Nulls::Invalid);
}

QVariantMap JsonUtility::toVariantMap(const QByteArray &bytes, bool convertNull)
{
    return toMap(parsedObject(bytes, mapFunction), convertNull);
}

QVariant JsonUtility::toVariant(const QByteArray &bytes, bool convertNull)
{
    if (bytes.isEmpty())
        return QVariantMap();

    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError) {
        qCDebug(CATEGORY_UTILITY) << Q_FUNC_INFO << "Error" << error.error << "Offset"
                                  << error.offset << error.errorString();
        return QVariantMap();
    }
    if (document.isArray())
        return toList(document.array(), convertNull);
    return toMap(document.object(), convertNull);
}

// A text without the word "null" has no nulls to convert, so nothing is asked of it beforehand.
QVariantMap JsonUtility::toVariantMap(const QString &text)
{
    return toVariantMap(text.toUtf8(), true);
}

QVariant JsonUtility::toVariant(const QString &text)
{
    return text.isEmpty() ? QVariant() : toVariant(text.toUtf8(), true);
}

void JsonUtility::convertNullValues(QVariantMap &map)
{
    for (auto it = map.begin(); it != map.end(); ++it) {
        QVariant &value = it.value();
        if (isNullValue(value)) {
            value = nullValue();
        } else if (value.canConvert<QVariantList>()) {
            QVariantList list = value.toList();
            convertNullValues(list);
            value = list;
        } else if (value.canConvert<QVariantMap>()) {
            QVariantMap child = value.toMap();
            convertNullValues(child);
            value = child;
        }
    }
}

void JsonUtility::convertNullValues(QVariantList &list)
{
    for (QVariant &value : list) {
        if (!value.canConvert<QVariantMap>())
            continue;
        QVariantMap map = value.toMap();
        convertNullValues(map);
        value = map;
    }
}
