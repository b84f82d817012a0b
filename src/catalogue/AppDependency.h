#pragma once

#include "plugin/TessalineGlobal.h"
#include "plugin/TessalineObject.h"

#include <QDir>
#include <QString>
#include <QVariantMap>

// Where an item that an app needs lies on this machine. It only looks: whether the folder is there
// shows when its path is opened. The first read of a path asks the catalogue for the Data folder
// and reads the item's information; later reads use what was found.
//
// An item id that isn't a plain file name (such as "../x") is never turned into a path: the paths
// are empty then, and each read logs it at critical level.
class TESSALINE_EXPORT AppDependency : public TessalineObject
{
    Q_OBJECT
    Q_PROPERTY(DependencyType type READ type CONSTANT)
    Q_PROPERTY(QString typeString READ typeString CONSTANT)
    Q_PROPERTY(QString folderPath READ folderPath CONSTANT)
    Q_PROPERTY(QString dataPath READ dataPath CONSTANT)
    Q_PROPERTY(QString itemId READ itemId CONSTANT)
    Q_PROPERTY(QString name READ name CONSTANT)

public:
    enum DependencyType { Undefined = 0, App = 1, Template = 2, Tool = 3, Data = 4, Module = 5 };
    Q_ENUM(DependencyType)

    // For a known folder: item id and name stay empty.
    explicit AppDependency(const QString &path, QObject *parent = nullptr);
    // For an element of AppInfo::dependencies(). No file is touched.
    explicit AppDependency(const QVariantMap &map, QObject *parent = nullptr);

    // Made from a map that has an item id.
    bool isValid() const { return m_valid; }
    QVariantMap dependencyInfo() const { return m_dependencyInfo; }

    // Always Undefined.
    DependencyType type() const { return m_type; }
    QString typeString() const;
    // The item's folder, below the catalogue's Data folder unless given to the constructor.
    QString folderPath();
    // The item's file in that folder, by the item's own "name"; the folder itself if the item has
    // none or one that would lead out of the folder.
    QString dataPath();
    QString itemId() const { return m_itemId; }
    // The name that the app gives the dependency; by default its item id.
    QString name() const { return m_name; }

private:
    bool resolveFolder();
    void readItemInfo();

    bool m_valid = false;
    DependencyType m_type = Undefined;
    QVariantMap m_itemInfo;
    QVariantMap m_dependencyInfo;
    QDir m_folder;
    QString m_itemId;
    QString m_name;
};
