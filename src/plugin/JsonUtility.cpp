#include "plugin/JsonUtility.h"

#include "plugin/DebugUtility.h"
#include "plugin/FileUtility.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

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

QVariantMap toMap(const QJsonObject &object, Nulls nulls);
QVariantList toList(const QJsonArray &array, Nulls nulls);

// A null among the elements of a list stays invalid, and so does all below a list in a list: only
// the maps of a list are converted.
QVariant toElement(const QJsonValue &value, Nulls nulls)
{
    switch (value.type()) {
    case QJsonValue::Null:
        return QVariant();
    case QJsonValue::Array:
        return toList(value.toArray(), Nulls::Invalid);
    case QJsonValue::Object:
        return toMap(value.toObject(), nulls);
    default:
        return value.toVariant();
    }
}

QVariant toMember(const QJsonValue &value, Nulls nulls)
{
    switch (value.type()) {
    case QJsonValue::Null:
        return nulls == Nulls::Pointer ? nullValue() : QVariant();
    case QJsonValue::Array:
        return toList(value.toArray(), nulls);
    case QJsonValue::Object:
        return toMap(value.toObject(), nulls);
    default:
        return value.toVariant();
    }
}

QVariantMap toMap(const QJsonObject &object, Nulls nulls)
{
    QVariantMap map;
    // The keys come in the map's own order, so that each has its place at the end.
    for (auto it = object.begin(); it != object.end(); ++it)
        map.insert(map.constEnd(), it.key(), toMember(it.value(), nulls));
    return map;
}

QVariantList toList(const QJsonArray &array, Nulls nulls)
{
    QVariantList list;
    list.reserve(array.size());
    for (const QJsonValue value : array)
        list.append(toElement(value, nulls));
    return list;
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

QVariantMap JsonUtility::toVariantMap(const QByteArray &bytes, bool convertNull)
{
    if (bytes.isEmpty())
        return QVariantMap();

    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (!document.isObject()) {
        qCDebug(CATEGORY_UTILITY) << Q_FUNC_INFO << "Error" << error.error << "Offset"
                                  << error.offset << error.errorString();
        return QVariantMap();
    }
    return toMap(document.object(), convertNull ? Nulls::Pointer : Nulls::Invalid);
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
    const Nulls nulls = convertNull ? Nulls::Pointer : Nulls::Invalid;
    if (document.isArray())
        return toList(document.array(), nulls);
    return toMap(document.object(), nulls);
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
