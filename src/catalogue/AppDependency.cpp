#include "catalogue/AppDependency.h"

#include "catalogue/AppInfoList.h"
#include "plugin/EnumUtility.h"
#include "plugin/JsonUtility.h"
#include "plugin/PathComponent.h"
#include "plugin/TessalineDebug.h"

/*!
    \qmltype AppDependency
    \inqmlmodule Zemrik.Tessaline
    \brief Where an item that the running app needs lies on this machine.

    The root item of an app has one for each element of "dependencies" in \c appinfo.json; QML
    can't create them.

    \qml
    App {
        readonly property AppDependency basemap:
            dependencies.length > 0 ? dependency("basemap") : null

        FileInfo {
            filePath: basemap ? basemap.dataPath : ""
        }
    }
    \endqml

    \sa {App::dependency()}{App.dependency()}
*/

/*!
    \qmlproperty enumeration AppDependency::type
    \readonly
    The kind of item. Nothing decides it yet: it is always \c AppDependency.Undefined.

    \value AppDependency.Undefined not known
    \value AppDependency.App       an app
    \value AppDependency.Template  a template
    \value AppDependency.Tool      a tool
    \value AppDependency.Data      data
    \value AppDependency.Module    a module
*/

/*!
    \qmlproperty string AppDependency::typeString
    \readonly
    The name of the \l type: always "Undefined".
*/

/*!
    \qmlproperty string AppDependency::folderPath
    \readonly
    The item's folder, whether or not it exists. Empty if the item id isn't a plain file name.
*/

/*!
    \qmlproperty string AppDependency::dataPath
    \readonly
    The item's file in that folder; the folder itself if the item isn't there.
*/

/*!
    \qmlproperty string AppDependency::itemId
    \readonly
    The id of the portal item.
*/

/*!
    \qmlproperty string AppDependency::name
    \readonly
    The name that the app gave it; by default the \l itemId.
*/

AppDependency::AppDependency(const QString &path, QObject *parent)
    : TessalineObject(parent)
    , m_folder(path)
{
    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO << path;
    readItemInfo();
}

AppDependency::AppDependency(const QVariantMap &map, QObject *parent)
    : TessalineObject(parent)
    , m_dependencyInfo(map)
    , m_itemId(map.value(QStringLiteral("itemId")).toString())
    , m_name(map.value(QStringLiteral("name")).toString())
{
    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO << map;
    if (m_name.isEmpty())
        m_name = m_itemId;
    m_valid = !m_itemId.isEmpty();
}

QString AppDependency::typeString() const
{
    return QString::fromLatin1(EnumUtility::enumValueName(this, "DependencyType", m_type));
}

QString AppDependency::folderPath()
{
    if (!resolveFolder())
        return QString();
    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO << m_folder.path();
    return m_folder.path();
}

QString AppDependency::dataPath()
{
    if (folderPath().isEmpty())
        return QString();
    const QString fileName = m_itemInfo.value(QStringLiteral("name")).toString();
    if (!staysInFolder(fileName)) {
        qCCritical(FRAMEWORK_CORE) << Q_FUNC_INFO << "Invalid file name" << fileName;
        return m_folder.path();
    }
    return m_folder.filePath(fileName);
}

// A path of "." says that the folder isn't known yet.
bool AppDependency::resolveFolder()
{
    if (m_folder.path() != QLatin1String("."))
        return true;
    if (!staysInFolder(m_itemId)) {
        qCCritical(FRAMEWORK_CORE) << Q_FUNC_INFO << "Invalid item id" << m_itemId;
        return false;
    }
    m_folder.setPath(AppInfoList(nullptr).folderDir(AppInfoList::Data).filePath(m_itemId));
    readItemInfo();
    return true;
}

void AppDependency::readItemInfo()
{
    m_itemInfo = JsonUtility::readFile(m_folder.filePath(QStringLiteral("iteminfo.json")));
    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO << m_itemInfo.value(QStringLiteral("title")).toString();
}

#include "moc_AppDependency.cpp"
