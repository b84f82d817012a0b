#pragma once

#include "plugin/TessalineGlobal.h"

#include <QString>
#include <QVariant>
#include <QVariantMap>

class QDomElement;

// XML documents as the variant trees that scripts see: attributes, texts, comments and children
// become keys of a map. Seen from QML as Tessaline.xmlToJson(xml, options).
class TESSALINE_EXPORT XmlUtility
{
public:
    XmlUtility() = delete;

    // Each field is also the key of the option map.
    struct Options
    {
        QString attributePrefix = QStringLiteral("@");
        QString textProperty = QStringLiteral("#text"); // text beside other content
        QString commentProperty = QStringLiteral("#comment");
        QString nodesProperty = QStringLiteral("#nodes"); // order of children; empty: none kept
        QString indexFormat = QStringLiteral("[%1]");
        bool rootProperty = false;       // keep the root's name as the top-level key
        bool preserveNamespaces = false; // keep the prefix of element names
    };

    // Empty for text that doesn't parse, nests deeper than 1,000 elements, or has a document type
    // definition that is long, deep, or of entities that grow to more than a document holds.
    static QVariantMap toVariantMap(const QString &xml, const QVariantMap &options);
    static QVariant toVariant(const QDomElement &element, const Options &options);
    static void addElement(const QDomElement &element, QVariantMap &map, const Options &options);
    static QString propertyName(const QString &name, const Options &options);
};
