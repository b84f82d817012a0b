#include "plugin/JsonUtility.h"
#include "plugin/XmlUtility.h"
#include "support/FuzzTarget.h"

#include <QVariantMap>

// The first byte chooses the options, the rest is the document.
TESSALINE_FUZZ_TARGET(bytes)
{
    const int choice = bytes.isEmpty() ? 0 : bytes.at(0);
    QVariantMap options;
    options.insert(QStringLiteral("rootProperty"), (choice & 1) != 0);
    options.insert(QStringLiteral("preserveNamespaces"), (choice & 2) != 0);
    if (choice & 4)
        options.insert(QStringLiteral("nodesProperty"), QString());
    if (choice & 8)
        options.insert(QStringLiteral("attributePrefix"), QString());

    const QVariantMap map = XmlUtility::toVariantMap(QString::fromUtf8(bytes.mid(1)), options);
    JsonUtility::toBytes(map); // walks the whole tree, as a script would
}
