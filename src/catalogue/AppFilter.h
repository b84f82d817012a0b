#pragma once

#include "catalogue/AppInfo.h"
#include "plugin/TessalineObject.h"

#include <QFlags>
#include <QString>
#include <QStringList>

// Decides which apps of the catalogue a user sees. Text tests ignore case. QML name: AppFilter,
// uncreatable; AppInfoList.filter is one. Each change emits its own signal, then filterChanged().
class TESSALINE_EXPORT AppFilter : public TessalineObject
{
    Q_OBJECT
    Q_PROPERTY(QStringList tags READ tags WRITE setTags NOTIFY tagsChanged)
    Q_PROPERTY(QStringList owners READ owners WRITE setOwners NOTIFY ownersChanged)
    Q_PROPERTY(QStringList access READ access WRITE setAccess NOTIFY accessChanged)
    Q_PROPERTY(bool hidden READ hidden WRITE setHidden NOTIFY hiddenChanged)
    Q_PROPERTY(int types READ types WRITE _setTypes NOTIFY typesChanged)
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
    Q_PROPERTY(bool published READ published WRITE setPublished NOTIFY publishedChanged)
    Q_PROPERTY(bool updateAvailable READ updateAvailable WRITE setUpdateAvailable NOTIFY
                   updateAvailableChanged)
    Q_PROPERTY(bool updatedLocally READ updatedLocally WRITE setUpdatedLocally NOTIFY
                   updatedLocallyChanged)
    Q_PROPERTY(bool local READ local WRITE setLocal NOTIFY localChanged)
    Q_PROPERTY(bool onlineOnly READ onlineOnly WRITE setOnlineOnly NOTIFY onlineOnlyChanged)
    Q_PROPERTY(QString owner READ owner WRITE setOwner NOTIFY ownerChanged)

public:
    using AppTypes = QFlags<AppInfo::AppType>;

    explicit AppFilter(QObject *parent = nullptr);

    QStringList tags() const { return m_tags; }
    void setTags(const QStringList &tags);
    QStringList owners() const { return m_owners; }
    void setOwners(const QStringList &owners);
    QStringList access() const { return m_access; }
    void setAccess(const QStringList &access);
    // Folders whose name begins with "." or "_" stay hidden; the catalogue reads it.
    bool hidden() const { return m_hidden; }
    void setHidden(bool hidden);
    // Flags of AppInfo::AppType.
    int types() const { return m_types; }
    void setTypes(AppTypes types);
    void _setTypes(int types);
    QString text() const { return m_text; }
    void setText(const QString &text);
    bool published() const { return m_published; }
    void setPublished(bool published);
    bool updateAvailable() const { return m_updateAvailable; }
    void setUpdateAvailable(bool updateAvailable);
    bool updatedLocally() const { return m_updatedLocally; }
    void setUpdatedLocally(bool updatedLocally);
    bool local() const { return m_local; }
    void setLocal(bool local);
    bool onlineOnly() const { return m_onlineOnly; }
    void setOnlineOnly(bool onlineOnly);
    // Exact owner of the local apps to load; the catalogue reads it.
    QString owner() const { return m_owner; }
    void setOwner(const QString &owner);

    Q_INVOKABLE void clear();

    bool matches(AppInfo *app) const;
    bool matchesTypes(AppInfo *app) const;
    bool matchesTags(AppInfo *app) const;
    bool matchesText(AppInfo *app) const;

    static bool matchesType(AppInfo *app, AppInfo::AppType type);
    static bool matchesTypes(AppInfo *app, const AppTypes &types);
    static bool matchesList(const QString &value, const QStringList &list);
    // The words of the text that begin with the prefix, without it: "a #b #c" and "#" give b and c.
    static QStringList extractTags(const QString &text, const QString &prefix);

signals:
    void filterChanged();
    void tagsChanged();
    void ownersChanged();
    void accessChanged();
    void hiddenChanged();
    void typesChanged();
    void textChanged();
    void publishedChanged();
    void updateAvailableChanged();
    void updatedLocallyChanged();
    void localChanged();
    void ownerChanged();
    void onlineOnlyChanged();

private:
    template <typename T>
    void change(T &member, const T &value, void (AppFilter::*changed)());

    QStringList m_tags;
    QStringList m_owners;
    QStringList m_access;
    bool m_hidden = true;
    int m_types = AppInfo::App;
    QString m_text;
    bool m_published = false;
    bool m_local = false;
    bool m_updateAvailable = false;
    bool m_updatedLocally = false;
    bool m_onlineOnly = false;
    QString m_owner;
};
