#pragma once

#include "catalogue/InfoMap.h"
#include "plugin/TessalineGlobal.h"
#include "plugin/TessalineObject.h"

#include <QDateTime>
#include <QDir>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QVariantList>
#include <QVariantMap>

#include <memory>

// What is known about one app: appinfo.json holds what the app declares, iteminfo.json what the
// portal said about it, .info.json what the user marked on this machine. An object is made from a
// folder, from a file in it, or from one result of a portal search, which has no folder.
//
// A file that is missing, or doesn't hold a JSON object, counts as an empty one, and a key of a
// wrong type reads as whatever QVariant makes of it. Nothing is reported; only the write functions
// tell a failure.
class TESSALINE_EXPORT AppInfo : public TessalineObject
{
    Q_OBJECT
    Q_PROPERTY(bool isValid READ isValid NOTIFY pathChanged)
    Q_PROPERTY(bool isEditable READ isEditable NOTIFY pathChanged)
    Q_PROPERTY(QString path READ path WRITE setPath NOTIFY pathChanged)
    Q_PROPERTY(QUrl pathUrl READ pathUrl WRITE setPathUrl NOTIFY pathChanged)
    Q_PROPERTY(QUrl source READ source NOTIFY pathChanged)
    Q_PROPERTY(QUrl settingsSource READ settingsSource NOTIFY pathChanged)
    Q_PROPERTY(QUrl aboutSource READ aboutSource NOTIFY pathChanged)
    Q_PROPERTY(QString helpFile READ helpFile NOTIFY pathChanged)
    Q_PROPERTY(QString helpPath READ helpPath NOTIFY pathChanged)
    Q_PROPERTY(QString projectFile READ projectFile NOTIFY pathChanged)
    Q_PROPERTY(QVariantMap json READ json)
    Q_PROPERTY(QVariantMap properties READ properties NOTIFY propertiesChanged)
    Q_PROPERTY(QVariantMap itemInfo READ itemInfo NOTIFY itemInfoChanged)
    Q_PROPERTY(int majorVersion READ majorVersion WRITE setMajorVersion NOTIFY versionChanged)
    Q_PROPERTY(int minorVersion READ minorVersion WRITE setMinorVersion NOTIFY versionChanged)
    Q_PROPERTY(int microVersion READ microVersion WRITE setMicroVersion NOTIFY versionChanged)
    Q_PROPERTY(QString version READ version NOTIFY versionChanged)
    Q_PROPERTY(AppType type READ type CONSTANT)
    Q_PROPERTY(QString typeString READ typeString CONSTANT)
    Q_PROPERTY(QString itemId READ itemId WRITE setItemId NOTIFY itemIdChanged)
    Q_PROPERTY(QString title READ title WRITE setTitle NOTIFY titleChanged)
    Q_PROPERTY(QString snippet READ snippet WRITE setSnippet NOTIFY snippetChanged)
    Q_PROPERTY(QString description READ description WRITE setDescription NOTIFY descriptionChanged)
    Q_PROPERTY(QStringList tags READ tags WRITE setTags NOTIFY tagsChanged)
    Q_PROPERTY(QUrl thumbnail READ thumbnail NOTIFY thumbnailChanged)
    Q_PROPERTY(QDateTime created READ created NOTIFY createdChanged)
    Q_PROPERTY(QDateTime modified READ modified NOTIFY modifiedChanged)
    Q_PROPERTY(QString owner READ owner NOTIFY ownerChanged)
    Q_PROPERTY(QString access READ access CONSTANT)
    Q_PROPERTY(int avgRating READ avgRating CONSTANT)
    Q_PROPERTY(int numRatings READ numRatings CONSTANT)
    Q_PROPERTY(QString licenseInfo READ licenseInfo WRITE setLicenseInfo NOTIFY licenseInfoChanged)
    Q_PROPERTY(QString accessInformation READ accessInformation WRITE setAccessInformation NOTIFY
                   accessInformationChanged)
    Q_PROPERTY(bool isOnlineRequired READ isOnlineRequired NOTIFY requirementChanged)
    Q_PROPERTY(bool isSignInRequired READ isSignInRequired NOTIFY requirementChanged)
    Q_PROPERTY(QVariantList dependencies READ dependencies WRITE setDependencies NOTIFY
                   dependenciesChanged)
    Q_PROPERTY(bool isLocal READ isLocal NOTIFY statusChanged)
    Q_PROPERTY(bool isPublished READ isPublished NOTIFY statusChanged)
    Q_PROPERTY(bool isUpdateAvailable READ isUpdateAvailable NOTIFY statusChanged)
    Q_PROPERTY(bool isUpdatedLocally READ isUpdatedLocally NOTIFY statusChanged)
    Q_PROPERTY(bool pinned READ pinned WRITE setPinned NOTIFY pinnedChanged)

public:
    // Flag values: a filter combines them.
    enum AppType { Unknown = 0, App = 1, Template = 2, Tool = 4 };
    Q_ENUM(AppType)

    explicit AppInfo(QObject *parent = nullptr);
    explicit AppInfo(const QString &path, QObject *parent = nullptr);
    explicit AppInfo(const QUrl &url, QObject *parent = nullptr);
    // From a portal search result: not local, no path.
    explicit AppInfo(const QVariantMap &itemInfo, QObject *parent = nullptr);

    // The folder exists and holds both appinfo.json and iteminfo.json.
    bool isValid() const;
    // Valid, not in the resources, and the folder and both files can be written.
    bool isEditable() const;

    QString path() const { return m_path; }
    // Takes a folder or a file in it, with path variables, and reads everything anew, also for the
    // same path. An empty path stands for the process's current folder.
    void setPath(const QString &path);
    QUrl pathUrl() const;
    void setPathUrl(const QUrl &url);

    QUrl source() const;
    QUrl settingsSource() const;
    QUrl aboutSource() const;
    QString helpFile() const;
    QString helpPath() const;
    QString projectFile() const;

    QVariantMap json() const { return m_appInfo.map(); }
    QVariantMap properties() const;
    QVariantMap itemInfo() const { return m_itemInfo.map(); }
    void setItemInfo(const QVariantMap &itemInfo);

    // 1.0.1 if the app declares no version.
    int majorVersion() const;
    void setMajorVersion(int version);
    int minorVersion() const;
    void setMinorVersion(int version);
    int microVersion() const;
    void setMicroVersion(int version);
    QString version() const;

    // As declared in appinfo.json, else by the item's type keywords.
    AppType type() const;
    QString typeString() const;

    QString itemId() const;
    void setItemId(const QString &itemId);
    QString title() const;
    void setTitle(const QString &title);
    QString snippet() const;
    void setSnippet(const QString &snippet);
    QString description() const;
    void setDescription(const QString &description);
    QStringList tags() const;
    void setTags(const QStringList &tags);
    QUrl thumbnail() const;

    // 1970-01-01 UTC if the item doesn't tell.
    QDateTime created() const;
    // For a local app the time of its newest file, found anew at each call; null without a file.
    QDateTime modified() const;

    QString owner() const;
    QString access() const;
    int avgRating() const;
    int numRatings() const;
    QString licenseInfo() const;
    void setLicenseInfo(const QString &licenseInfo);
    QString accessInformation() const;
    void setAccessInformation(const QString &accessInformation);
    bool isOnlineRequired() const;
    bool isSignInRequired() const;

    // A list of maps, each with at least "itemId" if its author gave one.
    QVariantList dependencies() const;
    void setDependencies(const QVariantList &dependencies);

    bool isLocal() const { return m_isLocal; }
    bool isPublished() const;
    bool isUpdateAvailable() const { return m_isUpdateAvailable; }
    bool isUpdatedLocally() const { return m_isUpdatedLocally; }
    bool pinned() const;
    void setPinned(bool pinned);

    // Reads the three files again.
    Q_INVOKABLE void refresh();
    // Writes the three files; "modified" stays as it is.
    Q_INVOKABLE void write();
    // Keys that begin with "itemInfo/" mean the item's information, others appinfo.json.
    Q_INVOKABLE QVariant value(const QString &key, const QVariant &defaultValue = QVariant()) const;
    Q_INVOKABLE void setValue(const QString &key, const QVariant &value);
    Q_INVOKABLE QVariant propertyValue(const QString &name,
                                       const QVariant &defaultValue = QVariant()) const;

    // Whether there is an app at the path, which may begin with "qrc:": appinfo.json is in that
    // folder or in the file's folder. A path that ends in ".qml" counts whether or not it exists,
    // unless it is a folder.
    static bool exists(const QString &path);
    // The app in that folder, null if there is none. As if made with the path, for one folder after
    // the other: the file that says what the app is tells that it is one.
    static std::unique_ptr<AppInfo> fromFolder(const QString &folder);
    // ":/a" for "qrc:/a".
    static QString adjustPath(const QString &path);
    static QVariant infoValue(const QVariantMap &map, const QString &key,
                              const QVariant &defaultValue = QVariant());
    // Stores the value in the form that JSON can hold: a script's array or object as list or map,
    // a date as milliseconds. False if `onlyIfAbsent` and the key is there already.
    static bool setInfoValue(QVariantMap &map, const QString &key, const QVariant &value,
                             bool onlyIfAbsent);

    QVariant appInfoValue(const QString &key, const QVariant &defaultValue = QVariant()) const;
    QVariant itemInfoValue(const QString &key, const QVariant &defaultValue = QVariant()) const;
    QVariant localInfo(const QString &key, const QVariant &defaultValue = QVariant()) const;
    // These tell whether they wrote. Only the item's one emits signals.
    bool setAppInfoValue(const QString &key, const QVariant &value, bool onlyIfAbsent);
    bool setItemInfoValue(const QString &key, const QVariant &value, bool onlyIfAbsent);
    bool setLocalInfo(const QString &key, const QVariant &value, bool onlyIfAbsent);

    void clear();
    void clearAppInfo();
    static bool isAppFolder(const QString &folder);
    void completeAppInfo();

    // These three replace what was known and emit nothing. readAppInfo() tells whether the file
    // was there and said something.
    bool readAppInfo();
    void readItemInfo(const QString &path);
    void readLocalInfo();
    // False and a critical log line for an app that isn't local.
    bool writeAppInfo();
    // An empty path means iteminfo.json in the app's folder; an app without a folder then gives
    // false. `updateModified` puts the present time into "modified" first.
    bool writeItemInfo(const QString &path, bool updateModified);
    // False for an app without a folder.
    bool writeLocalInfo();

    QDir dir() const { return QDir(m_path); }
    QString localInfoPath() const;
    // A URL for a file relative to the app's folder; empty for an empty name.
    QUrl contentUrl(const QString &file) const;
    QString mainFile() const;
    // What a list sorts by title: lower case, empty for an object that stands for no app.
    QString sortKey() const;
    // Compares the local copy with the item's map from the portal and sets the update flags. An
    // empty map clears them. Always true.
    bool statusUpdate(const QVariantMap &cacheEntry);

    QString thumbnailPath() const;
    void setThumbnailPath(const QString &path);
    void setThumbnailPath(const QUrl &url);
    // Makes this a catalogue's entry for no app at all: neither local nor published, and its
    // thumbnail is the one set from outside.
    void setNullEntry();

signals:
    void pathChanged();
    void itemIdChanged();
    void titleChanged();
    void snippetChanged();
    void descriptionChanged();
    void tagsChanged();
    void thumbnailChanged();
    void createdChanged();
    void modifiedChanged();
    void statusChanged();
    void requirementChanged();
    void dependenciesChanged();
    void propertiesChanged();
    void itemInfoChanged();
    void licenseInfoChanged();
    void accessInformationChanged();
    void ownerChanged();
    void pinnedChanged();
    void versionChanged();

private:
    void readFrom(const QString &resolved);
    void setStatus(bool AppInfo::*flag, bool value);
    void itemUpdated();
    void itemInfoUpdated();
    QString appText(const char *key) const;
    QString itemText(const char *key) const;
    bool setItemText(const char *key, const QString &text);
    QString appInfoPath() const;
    QString itemInfoPath() const;
    QVariantMap versionMap() const;
    int versionPart(const char *name, int defaultValue) const;
    void setVersionPart(const char *name, int value);
    QDateTime newestFileTime() const;

    QString m_path;
    InfoMap m_appInfo;
    InfoMap m_itemInfo;
    InfoMap m_localInfo;
    QString m_thumbnailPath;
    bool m_isLocal = false;
    bool m_publishedFlag = false; // isPublished goes by the item id; this one only moves signals
    bool m_isUpdateAvailable = false;
    bool m_isUpdatedLocally = false;
    bool m_useThumbnailPath = false;
};
