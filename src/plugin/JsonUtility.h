#pragma once

#include "plugin/TessalineGlobal.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QVariant>
#include <QVariantList>
#include <QVariantMap>

// The one way between JSON and the variant trees that scripts see. Text that doesn't parse gives an
// empty map and one debug line under CATEGORY_UTILITY.
class TESSALINE_EXPORT JsonUtility
{
public:
    JsonUtility() = delete;

    static QByteArray toBytes(const QVariantMap &map); // compact, UTF-8
    static QString toString(const QVariantMap &map);
    static QByteArray toFormattedBytes(const QVariantMap &map); // indented, UTF-8
    static QString toFormattedString(const QVariantMap &map);

    static bool writeFile(const QString &path, const QVariantMap &map);
    // A null in the file stays an invalid value.
    static QVariantMap readFile(const QString &path);
    // The object of a text before it becomes variants, for who parses many and asks for little: a
    // catalogue of apps wants five keys of thirty. value() makes one of them; nulls stay invalid.
    static QJsonObject toObject(const QByteArray &bytes);
    static QVariantMap toVariantMap(const QJsonObject &object);
    static QVariant value(const QJsonObject &object, const QString &key,
                          const QVariant &defaultValue = QVariant());

    // With `convertNull` a null becomes a value that scripts see as null; without, it is invalid,
    // which scripts see as undefined. A null directly in a list stays invalid either way.
    static QVariantMap toVariantMap(const QByteArray &bytes, bool convertNull);
    static QVariant toVariant(const QByteArray &bytes, bool convertNull);
    // These convert nulls if the text holds the word "null". An empty text gives an empty map from
    // toVariantMap and an invalid value from toVariant.
    static QVariantMap toVariantMap(const QString &text);
    static QVariant toVariant(const QString &text);

    static void convertNullValues(QVariantMap &map);
    static void convertNullValues(QVariantList &list);
};
