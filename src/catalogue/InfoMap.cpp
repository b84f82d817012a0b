#include "catalogue/InfoMap.h"

#include "plugin/DebugUtility.h"
#include "plugin/FileUtility.h"
#include "plugin/JsonUtility.h"

InfoMap InfoMap::read(const QString &path)
{
    InfoMap info;
    info.m_text = FileUtility::readFile(path);
    if (CATEGORY_UTILITY().isDebugEnabled())
        info.parsed(); // what it says of a damaged file belongs here
    return info;
}

const QJsonObject &InfoMap::parsed() const
{
    if (!m_text.isEmpty()) {
        m_parsed = JsonUtility::toObject(m_text);
        m_text.clear();
    }
    return m_parsed;
}

bool InfoMap::contains(const QString &key) const
{
    return parsed().contains(key) || m_map.contains(key);
}

QVariant InfoMap::value(const QString &key, const QVariant &defaultValue) const
{
    return parsed().isEmpty() ? m_map.value(key, defaultValue)
                              : JsonUtility::value(m_parsed, key, defaultValue);
}

const QVariantMap &InfoMap::map() const
{
    if (!parsed().isEmpty()) {
        m_map = JsonUtility::toVariantMap(m_parsed);
        m_parsed = {};
    }
    return m_map;
}

QVariantMap &InfoMap::map()
{
    static_cast<void>(qAsConst(*this).map());
    return m_map;
}
