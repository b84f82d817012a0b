#pragma once

#include <QMap>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QVariantMap>

// The items of a folder, as they are at start. Each is a sub-folder named by the item's id:
//
//     iteminfo.json   what the portal tells about the item ("title", "type", "tags", "owner", ...)
//     data            the item's data, by the first of these that exists: a folder "data", which is
//                     packed; the file that "name" in iteminfo.json gives; a file "data"; or, if
//                     appinfo.json lies beside, the whole sub-folder, packed
//     thumbnail       the file that "thumbnail" in iteminfo.json gives, or thumbnail.png
//
// What iteminfo.json leaves out gets a usual value. Links that lead out of an item's folder, and
// items that are links out of the folder of items, count as not being there. Requests are answered
// from these maps: no path is ever made of what a client sends.
class ItemStore
{
public:
    struct Item
    {
        QVariantMap info;
        QString dataPath;                 // empty: no data
        QMap<QString, QString> resources; // paths of the files below /info, by their names there
    };

    // False with a message for people. Sub-folders without iteminfo.json are no items.
    bool load(const QString &folder, QString &error);

    const QMap<QString, Item> &items() const { return m_items; }
    // What people should know about the folder, though it can be served.
    QStringList warnings() const { return m_warnings; }
    // For a program that ends without its destructors. Nothing packed can be served any more.
    void removePackages() { m_packages.remove(); }

private:
    bool addItem(const QString &id, const QString &folder, QString &error);
    bool addData(Item &item, const QString &id, const QString &folder, QString &error);
    void addThumbnail(Item &item, const QString &id, const QString &folder);

    QMap<QString, Item> m_items;
    QStringList m_warnings;
    QTemporaryDir m_packages; // of the folders that were packed
};
