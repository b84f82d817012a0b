#include "catalogue/AppInfo.h"

#include "plugin/EnumUtility.h"
#include "plugin/FileUtility.h"
#include "plugin/JsonUtility.h"
#include "plugin/TessalineDebug.h"

#include <QDirIterator>
#include <QFileInfo>
#include <QJSValue>

#include <algorithm>
#include <optional>

/*!
    \qmltype AppInfo
    \inqmlmodule Zemrik.Tessaline
    \brief What is known about one app: its own description, its portal item, and the user's marks.

    Three JSON files in the app's folder carry that knowledge: \c appinfo.json (what the app
    declares about itself), \c iteminfo.json (what the portal said about it) and \c .info.json
    (what the user marked on this machine).

    \badcode
    AppInfo {
        id: app
        path: "~/Zemrik/Halvora/Apps/hello"
    }

    Text {
        text: app.isLocal ? qsTr("%1, version %2").arg(app.title).arg(app.version)
                          : qsTr("Not installed")
    }
    \endcode

    The running applet finds its own in App::info.
*/

/*!
    \qmlproperty bool AppInfo::isValid
    \readonly
    Whether the folder exists and holds both \c appinfo.json and \c iteminfo.json.
*/

/*!
    \qmlproperty bool AppInfo::isEditable
    \readonly
    Whether the app is valid, isn't a resource, and its folder and both files can be written.
*/

/*!
    \qmlproperty string AppInfo::path
    The app's folder. A path variable at its beginning is resolved, and of a file the folder counts.
    Everything is read anew at each write. A file that ends in \c .json is taken as the item's
    information, with a picture of the same base name beside it.
*/

/*!
    \qmlproperty url AppInfo::pathUrl
    The folder as a URL.
*/

/*!
    \qmlproperty url AppInfo::source
    \readonly
    The app's main document: the key "mainFile" of \c appinfo.json, by default \c main.qml.
*/

/*!
    \qmlproperty url AppInfo::settingsSource
    \readonly
    The document of the app's settings page: the key "settingsFile"; empty if there is none.
*/

/*!
    \qmlproperty url AppInfo::aboutSource
    \readonly
    The document of the app's about page: the key "aboutFile"; empty if there is none.
*/

/*!
    \qmlproperty string AppInfo::helpFile
    \readonly
    The help document, relative to the folder: the key "helpFile".
*/

/*!
    \qmlproperty string AppInfo::helpPath
    \readonly
    The path of the help document.
*/

/*!
    \qmlproperty string AppInfo::projectFile
    \readonly
    The project file of the tool that the app was made with: the key "projectFile".
*/

/*!
    \qmlproperty object AppInfo::json
    \readonly
    All of \c appinfo.json as it stands in memory. It has no change signal.
*/

/*!
    \qmlproperty object AppInfo::properties
    \readonly
    The author's free values: the key "properties". See propertyValue().
*/

/*!
    \qmlproperty object AppInfo::itemInfo
    \readonly
    All of \c iteminfo.json, or the portal's search result.
*/

/*!
    \qmlproperty int AppInfo::majorVersion
    The first part of the version; 1 if not declared. Writing 0 where nothing is declared changes
    nothing.
*/

/*!
    \qmlproperty int AppInfo::minorVersion
    The second part of the version; 0 if not declared.
*/

/*!
    \qmlproperty int AppInfo::microVersion
    The third part of the version; 1 if not declared. Writing 0 where nothing is declared changes
    nothing.
*/

/*!
    \qmlproperty string AppInfo::version
    \readonly
    The three parts, with dots between them.
*/

/*!
    \qmlproperty enumeration AppInfo::type
    \readonly
    The kind of app: the key "type" of \c appinfo.json; without it, by the item's type keywords.

    \value AppInfo.Unknown  the declared type isn't known
    \value AppInfo.App      an app
    \value AppInfo.Template a template for new apps
    \value AppInfo.Tool     a tool
*/

/*!
    \qmlproperty string AppInfo::typeString
    \readonly
    The name of the \l type, such as "App".
*/

/*!
    \qmlproperty string AppInfo::itemId
    The id of the portal item; empty for an app that isn't published.
*/

/*!
    \qmlproperty string AppInfo::title
    The item's title.
*/

/*!
    \qmlproperty string AppInfo::snippet
    The item's short description.
*/

/*!
    \qmlproperty string AppInfo::description
    The item's description. It comes from the portal: show it as plain text.
*/

/*!
    \qmlproperty list<string> AppInfo::tags
    The item's tags. Blanks around a tag and empty tags are dropped when written.
*/

/*!
    \qmlproperty url AppInfo::thumbnail
    \readonly
    The app's picture: \c thumbnail.png in the folder if it exists, else the portal's picture.
*/

/*!
    \qmlproperty date AppInfo::created
    \readonly
    When the item was made; the start of 1970 if it isn't known.
*/

/*!
    \qmlproperty date AppInfo::modified
    \readonly
    The last change. For a local app that is the time of the newest file in its folder; hidden
    files, files in sub-folders and files named \c{*.user} don't count.
*/

/*!
    \qmlproperty string AppInfo::owner
    \readonly
    The item's owner.
*/

/*!
    \qmlproperty string AppInfo::access
    \readonly
    The item's sharing level.
*/

/*!
    \qmlproperty int AppInfo::avgRating
    \readonly
    The item's average rating as an integer.
*/

/*!
    \qmlproperty int AppInfo::numRatings
    \readonly
    How many ratings the item has.
*/

/*!
    \qmlproperty string AppInfo::licenseInfo
    The item's licence or terms of use.
*/

/*!
    \qmlproperty string AppInfo::accessInformation
    The item's credits.
*/

/*!
    \qmlproperty bool AppInfo::isOnlineRequired
    \readonly
    Whether the app needs a network: the key "onlineRequired".
*/

/*!
    \qmlproperty bool AppInfo::isSignInRequired
    \readonly
    Whether the app needs a signed-in user: the key "signInRequired".
*/

/*!
    \qmlproperty list<object> AppInfo::dependencies
    The items that the app needs. Each is an object with "itemId" and further keys. A plain id may
    be written instead of an object; it reads as an object with equal "itemId" and "name".
*/

/*!
    \qmlproperty bool AppInfo::isLocal
    \readonly
    Whether the app was on this machine when the path was set.
*/

/*!
    \qmlproperty bool AppInfo::isPublished
    \readonly
    Whether the app has an item id.
*/

/*!
    \qmlproperty bool AppInfo::isUpdateAvailable
    \readonly
    Whether the portal's copy is newer than the local one. A catalogue sets it.
*/

/*!
    \qmlproperty bool AppInfo::isUpdatedLocally
    \readonly
    Whether the local copy is newer than the portal's. A catalogue sets it.
*/

/*!
    \qmlproperty bool AppInfo::pinned
    Whether the user pinned the app. It is written to \c .info.json at once.
*/

/*!
    \qmlmethod void AppInfo::refresh()
    Reads the three files again.
*/

/*!
    \qmlmethod void AppInfo::write()
    Writes the three files. The folder has to hold an app already.
*/

/*!
    \qmlmethod var AppInfo::value(string key, var defaultValue)
    The value of a key of \c appinfo.json, or of the item's information if \a key begins with
    "itemInfo/". \a defaultValue is returned where there is no such key.

    \badcode
    app.value("display", {}).frameless
    app.value("itemInfo/culture", "")
    \endcode
*/

/*!
    \qmlmethod void AppInfo::setValue(string key, var value)
    Sets \a key, named as value() names it, to \a value. Nothing reaches the disk before write().
*/

/*!
    \qmlmethod var AppInfo::propertyValue(string name, var defaultValue)
    One of the author's \l properties, or \a defaultValue where there is none of that \a name.
*/

/*!
    \qmlsignal AppInfo::statusChanged()
    Comes with every change of \l isLocal, \l isPublished, \l isUpdateAvailable and
    \l isUpdatedLocally, also where a value stays what it was.
*/

namespace {

const char appInfoFileName[] = "appinfo.json";
const char itemInfoFileName[] = "iteminfo.json";
const char localInfoFileName[] = ".info.json";
const char thumbnailFileName[] = "thumbnail.png";
const char defaultMainFile[] = "main.qml";
const char authorToolSuffix[] = ".user";
const char itemInfoPrefix[] = "itemInfo/";

// As QDir::filePath() gives it, but a QDir takes longer to make than a small file to read.
QString filePath(const QString &folder, const char *name)
{
    const QLatin1Char slash('/');
    QString path = folder.isEmpty() ? QStringLiteral(".") : folder;
    if (path.size() > 1 && path.endsWith(slash))
        path.chop(1);
    if (!path.endsWith(slash))
        path += slash;
    return path + QLatin1String(name);
}

bool isItemInfoKey(const QString &key)
{
    return key.startsWith(QLatin1String(itemInfoPrefix));
}

QString withoutItemInfoPrefix(const QString &key)
{
    return key.mid(int(sizeof itemInfoPrefix) - 1);
}

bool hasSuffix(const QFileInfo &info, QLatin1String suffix)
{
    return info.suffix().compare(suffix, Qt::CaseInsensitive) == 0;
}

bool isWritable(const QString &path)
{
    return QFileInfo(path).isWritable();
}

QDateTime dateOf(const QVariant &milliseconds)
{
    return QDateTime::fromMSecsSinceEpoch(milliseconds.toLongLong());
}

// JSON knows neither script values nor dates.
QVariant storableValue(const QString &key, const QVariant &value)
{
    if (value.userType() == qMetaTypeId<QJSValue>()) {
        const auto script = value.value<QJSValue>();
        if (script.isArray()) {
            const QVariantList list = script.toVariant().toList();
            qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO << key << "=" << list;
            return list;
        }
        if (script.isObject())
            return script.toVariant().toMap();
    } else if (value.type() == QVariant::DateTime) {
        return value.toDateTime().toMSecsSinceEpoch();
    }
    return value;
}

bool insertValue(QVariantMap &map, const QString &key, const QVariant &value, bool onlyIfAbsent)
{
    if (onlyIfAbsent && map.contains(key))
        return false;
    map.insert(key, value);
    return true;
}

} // namespace

AppInfo::AppInfo(QObject *parent)
    : TessalineObject(parent)
{
}

AppInfo::AppInfo(const QString &path, QObject *parent)
    : TessalineObject(parent)
{
    setPath(path);
}

AppInfo::AppInfo(const QUrl &url, QObject *parent)
    : TessalineObject(parent)
{
    setPathUrl(url);
}

AppInfo::AppInfo(const QVariantMap &itemInfo, QObject *parent)
    : TessalineObject(parent)
    , m_itemInfo(itemInfo)
    , m_publishedFlag(true)
{
}

std::unique_ptr<AppInfo> AppInfo::fromFolder(const QString &folder)
{
    const InfoMap appInfo = InfoMap::read(filePath(folder, appInfoFileName));
    if (appInfo.isEmpty() && !isAppFolder(folder))
        return nullptr;
    auto app = std::make_unique<AppInfo>();
    app->m_path = folder;
    app->m_isLocal = true;
    app->m_appInfo = appInfo;
    app->readItemInfo(app->itemInfoPath()); // says the type where appinfo.json doesn't
    app->completeAppInfo();
    app->readLocalInfo();
    return app;
}

bool AppInfo::isValid() const
{
    return !m_path.isEmpty() && dir().exists() && QFileInfo::exists(appInfoPath())
           && QFileInfo::exists(itemInfoPath());
}

bool AppInfo::isEditable() const
{
    return isValid() && QFileInfo(m_path).isNativePath() && isWritable(m_path)
           && isWritable(appInfoPath()) && isWritable(itemInfoPath());
}

void AppInfo::setPath(const QString &path)
{
    const QString resolved = FileUtility::resolvedPath(path, true);
    setStatus(&AppInfo::m_isLocal, false);
    setStatus(&AppInfo::m_publishedFlag, false);
    setStatus(&AppInfo::m_isUpdateAvailable, false);
    setStatus(&AppInfo::m_isUpdatedLocally, false);

    readFrom(resolved);
    const bool hasAppInfoFile = readAppInfo();
    readLocalInfo();
    m_isLocal = hasAppInfoFile || exists(m_path);

    emit statusChanged();
    emit pathChanged();
    itemUpdated();
    emit requirementChanged();
    emit dependenciesChanged();
    emit propertiesChanged();
    emit itemInfoChanged();
    emit licenseInfoChanged();
    emit accessInformationChanged();
    emit versionChanged();
}

// A folder, or a file whose folder counts. A QML document named here isn't what the app runs: that
// is the main file of appinfo.json. A JSON file is an item's information with a picture beside it.
void AppInfo::readFrom(const QString &resolved)
{
    const QFileInfo info(resolved);
    if (info.isDir()) {
        m_path = resolved;
        m_thumbnailPath.clear();
        readItemInfo(itemInfoPath());
        return;
    }

    m_path = info.dir().path();
    if (!hasSuffix(info, QLatin1String("json"))) {
        readItemInfo(itemInfoPath());
        return;
    }
    readItemInfo(resolved);
    m_thumbnailPath = info.dir().filePath(info.baseName() + QLatin1String(".png"));
    setStatus(&AppInfo::m_publishedFlag, true);
}

// The status signals don't compare: listeners count on one for each step.
void AppInfo::setStatus(bool AppInfo::*flag, bool value)
{
    this->*flag = value;
    emit statusChanged();
}

QUrl AppInfo::pathUrl() const
{
    return FileUtility::pathUrl(m_path);
}

void AppInfo::setPathUrl(const QUrl &url)
{
    setPath(FileUtility::resolvedPath(url, true));
}

QUrl AppInfo::source() const
{
    return contentUrl(mainFile());
}

QUrl AppInfo::settingsSource() const
{
    return contentUrl(appText("settingsFile"));
}

QUrl AppInfo::aboutSource() const
{
    return contentUrl(appText("aboutFile"));
}

QString AppInfo::helpFile() const
{
    return appText("helpFile");
}

QString AppInfo::helpPath() const
{
    return dir().filePath(helpFile());
}

QString AppInfo::projectFile() const
{
    return appText("projectFile");
}

QVariantMap AppInfo::properties() const
{
    return value(QStringLiteral("properties"), QVariantMap()).toMap();
}

void AppInfo::setItemInfo(const QVariantMap &itemInfo)
{
    m_itemInfo = itemInfo;
    itemInfoUpdated();
}

int AppInfo::majorVersion() const
{
    return versionPart("major", 1);
}

void AppInfo::setMajorVersion(int version)
{
    setVersionPart("major", version);
}

int AppInfo::minorVersion() const
{
    return versionPart("minor", 0);
}

void AppInfo::setMinorVersion(int version)
{
    setVersionPart("minor", version);
}

int AppInfo::microVersion() const
{
    return versionPart("micro", 1);
}

void AppInfo::setMicroVersion(int version)
{
    setVersionPart("micro", version);
}

QString AppInfo::version() const
{
    return QStringLiteral("%1.%2.%3").arg(majorVersion()).arg(minorVersion()).arg(microVersion());
}

QVariantMap AppInfo::versionMap() const
{
    return appInfoValue(QStringLiteral("version")).toMap();
}

int AppInfo::versionPart(const char *name, int defaultValue) const
{
    return versionMap().value(QLatin1String(name), defaultValue).toInt();
}

// An absent part counts as 0 here and not as its default, so writing 0 there changes nothing.
void AppInfo::setVersionPart(const char *name, int value)
{
    QVariantMap map = versionMap();
    const QString key = QLatin1String(name);
    if (map.value(key).toInt() == value)
        return;
    map.insert(key, value);
    setAppInfoValue(QStringLiteral("version"), map, false);
    emit versionChanged();
}

AppInfo::AppType AppInfo::type() const
{
    QVariant type = appInfoValue(QStringLiteral("type"));
    if (!type.isValid() || type.isNull()) {
        const QStringList keywords = itemInfoValue(QStringLiteral("typeKeywords")).toStringList();
        for (const char *kind : {"template", "tool", "app"}) {
            type = QString::fromLatin1(kind);
            if (keywords.contains(type.toString(), Qt::CaseInsensitive))
                break;
        }
    }
    return AppType(EnumUtility::enumValue(QMetaEnum::fromType<AppType>(), type, Unknown));
}

QString AppInfo::typeString() const
{
    return QString::fromLatin1(EnumUtility::enumValueName(QMetaEnum::fromType<AppType>(), type()));
}

QString AppInfo::itemId() const
{
    return itemText("id");
}

void AppInfo::setItemId(const QString &itemId)
{
    setItemText("id", itemId);
}

QString AppInfo::title() const
{
    return itemText("title");
}

void AppInfo::setTitle(const QString &title)
{
    setItemText("title", title);
}

QString AppInfo::snippet() const
{
    return itemText("snippet");
}

void AppInfo::setSnippet(const QString &snippet)
{
    setItemText("snippet", snippet);
}

QString AppInfo::description() const
{
    return itemText("description");
}

void AppInfo::setDescription(const QString &description)
{
    setItemText("description", description);
}

QStringList AppInfo::tags() const
{
    return itemInfoValue(QStringLiteral("tags")).toStringList();
}

void AppInfo::setTags(const QStringList &tags)
{
    QStringList trimmed;
    for (const QString &tag : tags) {
        const QString text = tag.trimmed();
        if (!text.isEmpty())
            trimmed.append(text);
    }
    setItemInfoValue(QStringLiteral("tags"), trimmed, false);
    emit tagsChanged();
}

QUrl AppInfo::thumbnail() const
{
    if (m_useThumbnailPath || (m_isLocal && QFileInfo::exists(thumbnailPath())))
        return FileUtility::pathUrl(thumbnailPath());
    return itemInfoValue(QStringLiteral("thumbnailUrl")).toUrl();
}

QDateTime AppInfo::created() const
{
    return dateOf(itemInfoValue(QStringLiteral("created")));
}

QDateTime AppInfo::modified() const
{
    return m_isLocal ? newestFileTime() : dateOf(itemInfoValue(QStringLiteral("modified")));
}

QDateTime AppInfo::newestFileTime() const
{
    std::optional<qint64> newest;
    QDirIterator files(dir().path(), QDir::Files | QDir::NoDotAndDotDot);
    while (files.hasNext()) {
        const QString path = files.next();
        if (!path.endsWith(QLatin1String(authorToolSuffix), Qt::CaseInsensitive))
            newest = std::max(newest, FileUtility::lastModified(path));
    }
    return newest ? QDateTime::fromMSecsSinceEpoch(*newest) : QDateTime();
}

QString AppInfo::owner() const
{
    return itemText("owner");
}

QString AppInfo::access() const
{
    return itemText("access");
}

int AppInfo::avgRating() const
{
    return itemInfoValue(QStringLiteral("avgRating")).toInt();
}

int AppInfo::numRatings() const
{
    return itemInfoValue(QStringLiteral("numRatings")).toInt();
}

QString AppInfo::licenseInfo() const
{
    return itemText("licenseInfo");
}

void AppInfo::setLicenseInfo(const QString &licenseInfo)
{
    if (setItemText("licenseInfo", licenseInfo))
        emit licenseInfoChanged();
}

QString AppInfo::accessInformation() const
{
    return itemText("accessInformation");
}

void AppInfo::setAccessInformation(const QString &accessInformation)
{
    if (setItemText("accessInformation", accessInformation))
        emit accessInformationChanged();
}

bool AppInfo::isOnlineRequired() const
{
    return appInfoValue(QStringLiteral("onlineRequired")).toBool();
}

bool AppInfo::isSignInRequired() const
{
    return appInfoValue(QStringLiteral("signInRequired")).toBool();
}

QVariantList AppInfo::dependencies() const
{
    QVariantList result;
    const QVariantList elements = appInfoValue(QStringLiteral("dependencies")).toList();
    for (const QVariant &element : elements) {
        if (element.type() == QVariant::String)
            result.append(QVariantMap{{QStringLiteral("itemId"), element},
                                      {QStringLiteral("name"), element}});
        else if (element.type() == QVariant::Map)
            result.append(element);
    }
    return result;
}

void AppInfo::setDependencies(const QVariantList &dependencies)
{
    setAppInfoValue(QStringLiteral("dependencies"), dependencies, false);
    emit dependenciesChanged();
}

bool AppInfo::isPublished() const
{
    return !itemId().isEmpty();
}

bool AppInfo::pinned() const
{
    return localInfo(QStringLiteral("pinned"), false).toBool();
}

void AppInfo::setPinned(bool pinned)
{
    if (pinned == this->pinned())
        return;
    setLocalInfo(QStringLiteral("pinned"), pinned, false);
    writeLocalInfo();
    emit pinnedChanged();
}

void AppInfo::refresh()
{
    readItemInfo(itemInfoPath());
    readAppInfo();
    readLocalInfo();
    itemInfoUpdated();
}

// What setPath() and itemInfoUpdated() have in common.
void AppInfo::itemUpdated()
{
    emit itemIdChanged();
    emit titleChanged();
    emit snippetChanged();
    emit descriptionChanged();
    emit tagsChanged();
    emit thumbnailChanged();
    emit createdChanged();
    emit modifiedChanged();
    emit statusChanged();
}

void AppInfo::itemInfoUpdated()
{
    itemUpdated();
    emit dependenciesChanged();
    emit itemInfoChanged();
    emit licenseInfoChanged();
    emit accessInformationChanged();
}

void AppInfo::write()
{
    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO << m_path;
    writeAppInfo();
    writeLocalInfo();
    writeItemInfo(QString(), false);
}

QVariant AppInfo::value(const QString &key, const QVariant &defaultValue) const
{
    return isItemInfoKey(key) ? itemInfoValue(withoutItemInfoPrefix(key), defaultValue)
                              : appInfoValue(key, defaultValue);
}

void AppInfo::setValue(const QString &key, const QVariant &value)
{
    if (isItemInfoKey(key)) {
        setItemInfoValue(withoutItemInfoPrefix(key), value, false);
        return;
    }
    setAppInfoValue(key, value, false);
    if (key == QLatin1String("properties"))
        emit propertiesChanged();
}

QVariant AppInfo::propertyValue(const QString &name, const QVariant &defaultValue) const
{
    return properties().value(name, defaultValue);
}

bool AppInfo::exists(const QString &path)
{
    const QString adjusted = adjustPath(path);
    const QFileInfo info(adjusted);
    if (info.isDir())
        return isAppFolder(adjusted);
    return hasSuffix(info, QLatin1String("qml"))
           || info.dir().exists(QLatin1String(appInfoFileName));
}

bool AppInfo::isAppFolder(const QString &folder)
{
    return QFileInfo::exists(filePath(folder, appInfoFileName));
}

QString AppInfo::adjustPath(const QString &path)
{
    return path.startsWith(QLatin1String("qrc:")) ? path.mid(3) : path;
}

QVariant AppInfo::infoValue(const QVariantMap &map, const QString &key,
                            const QVariant &defaultValue)
{
    return map.value(key, defaultValue);
}

bool AppInfo::setInfoValue(QVariantMap &map, const QString &key, const QVariant &value,
                           bool onlyIfAbsent)
{
    return insertValue(map, key, storableValue(key, value), onlyIfAbsent);
}

QVariant AppInfo::appInfoValue(const QString &key, const QVariant &defaultValue) const
{
    return m_appInfo.value(key, defaultValue);
}

QVariant AppInfo::itemInfoValue(const QString &key, const QVariant &defaultValue) const
{
    return m_itemInfo.value(key, defaultValue);
}

QVariant AppInfo::localInfo(const QString &key, const QVariant &defaultValue) const
{
    return m_localInfo.value(key, defaultValue);
}

bool AppInfo::setAppInfoValue(const QString &key, const QVariant &value, bool onlyIfAbsent)
{
    return setInfoValue(m_appInfo.map(), key, value, onlyIfAbsent);
}

bool AppInfo::setItemInfoValue(const QString &key, const QVariant &value, bool onlyIfAbsent)
{
    static const QHash<QString, void (AppInfo::*)()> signalsByKey{
        {QStringLiteral("id"), &AppInfo::itemIdChanged},
        {QStringLiteral("title"), &AppInfo::titleChanged},
        {QStringLiteral("owner"), &AppInfo::ownerChanged},
        {QStringLiteral("snippet"), &AppInfo::snippetChanged},
        {QStringLiteral("description"), &AppInfo::descriptionChanged}};

    if (!setInfoValue(m_itemInfo.map(), key, value, onlyIfAbsent))
        return false;
    if (const auto keyChanged = signalsByKey.value(key))
        emit(this->*keyChanged)();
    emit itemInfoChanged();
    return true;
}

bool AppInfo::setLocalInfo(const QString &key, const QVariant &value, bool onlyIfAbsent)
{
    return insertValue(m_localInfo.map(), key, value, onlyIfAbsent);
}

void AppInfo::clear()
{
    setPath(QString());
}

void AppInfo::clearAppInfo()
{
    m_appInfo = {};
}

bool AppInfo::readAppInfo()
{
    m_appInfo = InfoMap::read(appInfoPath());
    const bool wasRead = !m_appInfo.isEmpty();
    completeAppInfo();
    return wasRead;
}

// So that a later write stores type and main file.
void AppInfo::completeAppInfo()
{
    const QString type = QStringLiteral("type");
    if (!m_appInfo.contains(type))
        setAppInfoValue(type, typeString(), false);
    const QString mainFile = QStringLiteral("mainFile");
    if (!m_appInfo.contains(mainFile))
        setAppInfoValue(mainFile, QString::fromLatin1(defaultMainFile), false);
}

void AppInfo::readItemInfo(const QString &path)
{
    m_itemInfo = InfoMap::read(path);
}

void AppInfo::readLocalInfo()
{
    m_localInfo = InfoMap::read(localInfoPath());
}

bool AppInfo::writeAppInfo()
{
    if (!m_isLocal) {
        qCCritical(FRAMEWORK_CORE) << Q_FUNC_INFO << "Not a local app" << m_path;
        return false;
    }
    return JsonUtility::writeFile(appInfoPath(), json());
}

bool AppInfo::writeItemInfo(const QString &path, bool updateModified)
{
    if (updateModified)
        setItemInfoValue(QStringLiteral("modified"), QDateTime::currentDateTime(), false);
    // Without a folder the file would land wherever the process happens to stand.
    if (path.isEmpty() && m_path.isEmpty())
        return false;
    return JsonUtility::writeFile(path.isEmpty() ? itemInfoPath() : path, itemInfo());
}

bool AppInfo::writeLocalInfo()
{
    if (m_path.isEmpty() || !JsonUtility::writeFile(localInfoPath(), m_localInfo.map()))
        return false;
    FileUtility::setHidden(localInfoPath(), true);
    return true;
}

QString AppInfo::appInfoPath() const
{
    return filePath(m_path, appInfoFileName);
}

QString AppInfo::itemInfoPath() const
{
    return filePath(m_path, itemInfoFileName);
}

QString AppInfo::localInfoPath() const
{
    return filePath(m_path, localInfoFileName);
}

QUrl AppInfo::contentUrl(const QString &file) const
{
    if (file.isEmpty())
        return QUrl();
    const QString full = dir().filePath(file);
    if (QFileInfo(dir().path()).isNativePath())
        return QUrl::fromLocalFile(full);
    return QUrl(QLatin1String("qrc") + full);
}

QString AppInfo::mainFile() const
{
    return appInfoValue(QStringLiteral("mainFile"), QString::fromLatin1(defaultMainFile))
        .toString();
}

QString AppInfo::sortKey() const
{
    return m_isLocal || isPublished() ? title().toLower() : QString();
}

bool AppInfo::statusUpdate(const QVariantMap &cacheEntry)
{
    setStatus(&AppInfo::m_publishedFlag, false);
    setStatus(&AppInfo::m_isUpdateAvailable, false);
    setStatus(&AppInfo::m_isUpdatedLocally, false);
    if (cacheEntry.isEmpty()) {
        qCWarning(FRAMEWORK_CORE) << Q_FUNC_INFO << "Cache entry empty" << m_path;
        return true;
    }

    const QDateTime portalDate = dateOf(cacheEntry.value(QStringLiteral("modified")));
    const QDateTime localDate = modified();
    setStatus(&AppInfo::m_publishedFlag, true);
    setStatus(&AppInfo::m_isUpdateAvailable, localDate < portalDate);
    setStatus(&AppInfo::m_isUpdatedLocally, portalDate < localDate);
    return true;
}

QString AppInfo::thumbnailPath() const
{
    return m_thumbnailPath.isEmpty() ? filePath(m_path, thumbnailFileName) : m_thumbnailPath;
}

void AppInfo::setThumbnailPath(const QString &path)
{
    m_thumbnailPath = path;
}

void AppInfo::setThumbnailPath(const QUrl &url)
{
    setThumbnailPath(FileUtility::resolvedPath(url, true));
}

void AppInfo::setNullEntry()
{
    setStatus(&AppInfo::m_isLocal, false);
    setStatus(&AppInfo::m_publishedFlag, false);
    m_useThumbnailPath = true;
}

QString AppInfo::appText(const char *key) const
{
    return appInfoValue(QLatin1String(key)).toString();
}

QString AppInfo::itemText(const char *key) const
{
    return itemInfoValue(QLatin1String(key)).toString();
}

// Tells whether the text was a new one.
bool AppInfo::setItemText(const char *key, const QString &text)
{
    return itemText(key) != text && setItemInfoValue(QLatin1String(key), text, false);
}

#include "moc_AppInfo.cpp"
