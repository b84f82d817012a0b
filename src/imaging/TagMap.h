#pragma once

#include "imaging/QExifValue.h"

#include <QList>

#include <algorithm>
#include <vector>

// An ordered map from tag to value, kept as a sorted list: tables are read whole, hardly ever
// changed, and a damaged one can have thousands of entries in any order.
template <typename Tag>
class TagMap
{
public:
    struct Entry
    {
        Tag tag;
        QExifValue value;
    };
    using Entries = std::vector<Entry>;

    // Replaces everything. Of several entries with one tag the last one counts.
    void assign(Entries entries);

    bool isEmpty() const { return m_entries.empty(); }
    int size() const { return static_cast<int>(m_entries.size()); }
    typename Entries::const_iterator begin() const { return m_entries.begin(); }
    typename Entries::const_iterator end() const { return m_entries.end(); }

    bool contains(Tag tag) const { return find(tag) != end(); }
    // Null without such a tag.
    QExifValue value(Tag tag) const
    {
        const auto it = find(tag);
        return it == end() ? QExifValue() : it->value;
    }
    QList<Tag> keys() const;

    void insert(Tag tag, const QExifValue &value);
    void remove(Tag tag);
    QExifValue take(Tag tag);

private:
    static bool isLess(const Entry &entry, Tag tag) { return entry.tag < tag; }
    typename Entries::const_iterator find(Tag tag) const
    {
        const auto it = std::lower_bound(begin(), end(), tag, isLess);
        return it != end() && it->tag == tag ? it : end();
    }

    Entries m_entries;
};

template <typename Tag>
void TagMap<Tag>::assign(Entries entries)
{
    const auto isOutOfOrder = [](const Entry &a, const Entry &b) { return a.tag >= b.tag; };
    if (std::adjacent_find(entries.begin(), entries.end(), isOutOfOrder) == entries.end()) {
        m_entries = std::move(entries);
        return;
    }
    // Tag and place in one number: that sorts much faster than the entries themselves.
    std::vector<quint64> order;
    order.reserve(entries.size());
    for (size_t i = 0; i < entries.size(); ++i)
        order.push_back(quint64(entries[i].tag) << 32 | i);
    std::sort(order.begin(), order.end());
    m_entries.clear();
    m_entries.reserve(entries.size());
    for (size_t i = 0; i < order.size(); ++i) {
        if (i + 1 == order.size() || order[i] >> 32 != order[i + 1] >> 32)
            m_entries.push_back(std::move(entries[order[i] & 0xffffffff]));
    }
}

template <typename Tag>
QList<Tag> TagMap<Tag>::keys() const
{
    QList<Tag> tags;
    tags.reserve(size());
    for (const Entry &entry : m_entries)
        tags.append(entry.tag);
    return tags;
}

template <typename Tag>
void TagMap<Tag>::insert(Tag tag, const QExifValue &value)
{
    const auto it = std::lower_bound(m_entries.begin(), m_entries.end(), tag, isLess);
    if (it != m_entries.end() && it->tag == tag)
        it->value = value;
    else
        m_entries.insert(it, {tag, value});
}

template <typename Tag>
void TagMap<Tag>::remove(Tag tag)
{
    const auto it = find(tag);
    if (it != end())
        m_entries.erase(it);
}

template <typename Tag>
QExifValue TagMap<Tag>::take(Tag tag)
{
    QExifValue taken = value(tag);
    remove(tag);
    return taken;
}
