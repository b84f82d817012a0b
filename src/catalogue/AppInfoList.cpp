#include "catalogue/AppInfoList.h"

#include "plugin/FileUtility.h"
#include "plugin/TessalineDebug.h"

#include <QSettings>

/*!
    \qmltype AppInfoList
    \inqmlmodule Zemrik.Tessaline
    \brief The catalogue of apps and its folders below the user's home.

    \qml
    AppInfoList {
        id: catalogue
        searchPaths: ["/srv/apps", Tessaline.resolvedPath("~/apps")]
    }

    Text {
        text: qsTr("Data lies in %1").arg(catalogue.folderPath(AppInfoList.Data))
    }
    \endqml

    \table
    \header \li Folder \li Default \li Key in the application's settings
    \row \li Apps \li \c{~/Zemrik/Halvora/Apps} \li appletsPath
    \row \li Templates \li \c{~/Zemrik/Halvora/Templates} \li templatesPath
    \row \li Tools \li \c{~/Zemrik/Halvora/Toolbox} \li toolboxPath
    \row \li Data \li \c{~/Zemrik/Halvora/Data} \li dataPath
    \row \li Modules \li \c{~/Zemrik/Halvora/Modules} \li modulesPath
    \row \li Settings \li \c{~/Zemrik/Halvora/Settings} \li settingsPath
    \row \li (cache) \li \c{~/Zemrik/Halvora/.cache} \li cachePath
    \endtable
*/

/*!
    \qmlproperty list<string> AppInfoList::searchPaths
    The folders where apps are looked for; path variables in them aren't resolved. An empty list
    stands for the default.
*/

/*!
    \qmlproperty string AppInfoList::dataPath
    \readonly
    The folder of the data items.
*/

/*!
    \qmlmethod string AppInfoList::folderPath(enumeration type)
    The path of one of the catalogue's folders; the first search path of those that have several.

    \value AppInfoList.Apps      the apps
    \value AppInfoList.Templates the templates
    \value AppInfoList.Tools     the tools
    \value AppInfoList.Data      the data items
    \value AppInfoList.Modules   the modules
    \value AppInfoList.Settings  the settings of the apps
*/

namespace {

const QLatin1Char pathSeparator(';');

QString folderSetting(const char *key, const char *defaultPath)
{
    return QSettings()
        .value(QLatin1String(key),
               FileUtility::resolvedPath(QString::fromLatin1(defaultPath), true))
        .toString();
}

QDir madeFolder(const QString &path)
{
    const QDir dir(path);
    FileUtility::mkpath(dir);
    return dir;
}

QStringList splitPaths(const QString &paths)
{
    return paths.split(pathSeparator, Qt::SkipEmptyParts);
}

} // namespace

AppInfoList::AppInfoList(QObject *parent)
    : TessalineObject(parent)
{
    FileUtility::mkpath(appsSearchPath(0));
    m_dataFolder = madeFolder(folderSetting("dataPath", "~/Zemrik/Halvora/Data"));
    m_modulesFolder = madeFolder(folderSetting("modulesPath", "~/Zemrik/Halvora/Modules"));
    m_settingsFolder = madeFolder(folderSetting("settingsPath", "~/Zemrik/Halvora/Settings"));
    cacheDir(Packages);
}

void AppInfoList::classBegin()
{
    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO;
}

void AppInfoList::componentComplete()
{
    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO;
}

QStringList AppInfoList::appsSearchPaths() const
{
    return splitPaths(appsSearchPath(-1));
}

void AppInfoList::setSearchPaths(const QStringList &paths)
{
    m_appsSearchPaths = paths.join(pathSeparator);
    emit searchPathsChanged();
}

QString AppInfoList::dataPath() const
{
    return folderPath(Data);
}

QString AppInfoList::folderPath(FolderType type) const
{
    return folderDir(type).path();
}

QDir AppInfoList::folderDir(FolderType type) const
{
    switch (type) {
    case Apps:
        return QDir(appsSearchPath(0));
    case Templates:
        return QDir(templatesSearchPath(0));
    case Tools:
        return QDir(toolboxSearchPath(0));
    case Data:
        return m_dataFolder;
    case Modules:
        return m_modulesFolder;
    case Settings:
        return m_settingsFolder;
    }
    return QDir(QString());
}

QDir &AppInfoList::cacheDir()
{
    if (m_cacheFolder.path().isEmpty() || m_cacheFolder.path() == QLatin1String("."))
        m_cacheFolder.setPath(folderSetting("cachePath", "~/Zemrik/Halvora/.cache"));
    if (m_cacheFolder.exists())
        return m_cacheFolder;

    if (!FileUtility::mkpath(m_cacheFolder))
        qCCritical(FRAMEWORK_CORE) << Q_FUNC_INFO << "Error creating" << m_cacheFolder.path();
    FileUtility::setHidden(m_cacheFolder.path(), true);
    return m_cacheFolder;
}

QDir AppInfoList::cacheDir(CacheDir dir)
{
    return dir == Packages ? cacheDir(QStringLiteral("packages")) : cacheDir();
}

QDir AppInfoList::cacheDir(const QString &subfolder)
{
    const QDir dir(cacheDir().filePath(subfolder));
    if (!FileUtility::mkpath(dir))
        qCCritical(FRAMEWORK_CORE) << Q_FUNC_INFO << "Error creating subdir:" << dir.path();
    return dir;
}

// One element of the joined paths, the last one for an index past the end; all of them, joined, for
// a negative index.
QString AppInfoList::searchPath(const QString &paths, int index, const QString &defaultPath)
{
    const QString &joined = paths.isEmpty() ? defaultPath : paths;
    if (index < 0)
        return joined;
    const QStringList parts = splitPaths(joined);
    return parts.isEmpty() ? QString() : parts.at(qMin(index, parts.size() - 1));
}

// The settings are asked each time: a host may move a folder while a catalogue lives.
QString AppInfoList::defaultAppsSearchPath()
{
    return folderSetting("appletsPath", "~/Zemrik/Halvora/Apps");
}

QString AppInfoList::defaultTemplatesSearchPath()
{
    return folderSetting("templatesPath", "~/Zemrik/Halvora/Templates");
}

QString AppInfoList::defaultToolboxSearchPath()
{
    return folderSetting("toolboxPath", "~/Zemrik/Halvora/Toolbox");
}

QString AppInfoList::appsSearchPath(int index) const
{
    return searchPath(m_appsSearchPaths, index, defaultAppsSearchPath());
}

QString AppInfoList::templatesSearchPath(int index) const
{
    return searchPath(m_templatesSearchPaths, index, defaultTemplatesSearchPath());
}

QString AppInfoList::toolboxSearchPath(int index) const
{
    return searchPath(m_toolboxSearchPaths, index, defaultToolboxSearchPath());
}

#include "moc_AppInfoList.cpp"
