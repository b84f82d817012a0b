#pragma once

#include "plugin/TessalineGlobal.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QVariant>
#include <QVariantMap>

// What one of an app's JSON files says. Its text is parsed when a key is asked for, and becomes a
// tree of variants when all of it is asked for or a key is written: a catalogue reads a few keys of
// each of thousands of files, and most of what reading them would cost is the making of variants
// that nobody looks at.
class TESSALINE_EXPORT InfoMap
{
public:
    InfoMap() = default;
    InfoMap(const QVariantMap &map) // NOLINT(google-explicit-constructor): it is such a map
        : m_map(map)
    {
    }

    // Empty if the file can't be read or holds no object.
    static InfoMap read(const QString &path);

    bool isEmpty() const { return parsed().isEmpty() && m_map.isEmpty(); }
    bool contains(const QString &key) const;
    QVariant value(const QString &key, const QVariant &defaultValue = QVariant()) const;
    const QVariantMap &map() const;
    // To be changed.
    QVariantMap &map();

private:
    const QJsonObject &parsed() const;

    // All but one of them are empty.
    mutable QByteArray m_text;
    mutable QJsonObject m_parsed;
    mutable QVariantMap m_map;
};
