#include "catalogue/AppFilter.h"

#include "plugin/PropertyHelper.h"

#include <algorithm>
#include <functional>

/*!
    \qmltype AppFilter
    \inqmlmodule Zemrik.Tessaline
    \brief The criteria by which a catalogue shows its apps.

    QML can't create it; every AppInfoList has one as its property \c filter.

    \qml
    TextField {
        placeholderText: "Title, #tag or @owner"
        onTextChanged: catalogue.filter.text = text
    }
    \endqml

    Text is compared without regard to case. An app is shown if it passes all criteria that are set.
*/

/*!
    \qmlproperty list<string> AppFilter::tags
    An app needs at least one of these tags; empty for any.
*/

/*!
    \qmlproperty list<string> AppFilter::owners
    The app's owner is one of these; empty for any.
*/

/*!
    \qmlproperty list<string> AppFilter::access
    The app's sharing level is one of these; empty for any.
*/

/*!
    \qmlproperty bool AppFilter::hidden
    Folders whose name begins with "." or "_" aren't listed; true by default.
*/

/*!
    \qmlproperty int AppFilter::types
    Flags of AppInfo.App (1, the default), AppInfo.Template (2) and AppInfo.Tool (4). 0 shows apps
   of an unknown kind only.
*/

/*!
    \qmlproperty string AppFilter::text
    What the user searches for: a part of the title, or words such as "#tag" and "@owner".
*/

/*!
    \qmlproperty bool AppFilter::published
    Only apps with an item id.
*/

/*!
    \qmlproperty bool AppFilter::updateAvailable
    Only apps of which the portal has a newer copy.
*/

/*!
    \qmlproperty bool AppFilter::updatedLocally
    Only apps that were changed on this machine.
*/

/*!
    \qmlproperty bool AppFilter::local
    Only apps on this machine.
*/

/*!
    \qmlproperty bool AppFilter::onlineOnly
    Only apps that are published and not on this machine.
*/

/*!
    \qmlproperty string AppFilter::owner
    The exact owner of the local apps to load; empty for any. Takes effect at the next refresh.
*/

/*!
    \qmlmethod void AppFilter::clear()
    Back to the defaults.
*/

/*!
    \qmlsignal AppFilter::filterChanged()
    A criterion changed; follows the criterion's own signal.
*/

AppFilter::AppFilter(QObject *parent)
    : TessalineObject(parent)
{
}

template <typename T>
void AppFilter::change(T &member, const T &value, void (AppFilter::*changed)())
{
    if (!assignIfChanged(member, value))
        return;
    std::invoke(changed, this);
    emit filterChanged();
}

void AppFilter::setTags(const QStringList &tags)
{
    change(m_tags, tags, &AppFilter::tagsChanged);
}

void AppFilter::setOwners(const QStringList &owners)
{
    change(m_owners, owners, &AppFilter::ownersChanged);
}

void AppFilter::setAccess(const QStringList &access)
{
    change(m_access, access, &AppFilter::accessChanged);
}

void AppFilter::setHidden(bool hidden)
{
    change(m_hidden, hidden, &AppFilter::hiddenChanged);
}

void AppFilter::setTypes(AppTypes types)
{
    _setTypes(types);
}

void AppFilter::_setTypes(int types)
{
    change(m_types, types, &AppFilter::typesChanged);
}

void AppFilter::setText(const QString &text)
{
    change(m_text, text, &AppFilter::textChanged);
}

void AppFilter::setPublished(bool published)
{
    change(m_published, published, &AppFilter::publishedChanged);
}

void AppFilter::setUpdateAvailable(bool updateAvailable)
{
    change(m_updateAvailable, updateAvailable, &AppFilter::updateAvailableChanged);
}

void AppFilter::setUpdatedLocally(bool updatedLocally)
{
    change(m_updatedLocally, updatedLocally, &AppFilter::updatedLocallyChanged);
}

void AppFilter::setLocal(bool local)
{
    change(m_local, local, &AppFilter::localChanged);
}

void AppFilter::setOnlineOnly(bool onlineOnly)
{
    change(m_onlineOnly, onlineOnly, &AppFilter::onlineOnlyChanged);
}

void AppFilter::setOwner(const QString &owner)
{
    change(m_owner, owner, &AppFilter::ownerChanged);
}

void AppFilter::clear()
{
    setTags({});
    setOwners({});
    setAccess({});
    setHidden(true);
    setTypes(AppInfo::App);
    setText(QString());
    setOwner(QString());
    setPublished(false);
    setUpdateAvailable(false);
    setUpdatedLocally(false);
    setLocal(false);
    setOnlineOnly(false);
}

bool AppFilter::matches(AppInfo *app) const
{
    return !(m_local && !app->isLocal()) && !(m_published && !app->isPublished())
           && !(m_updateAvailable && !app->isUpdateAvailable())
           && !(m_updatedLocally && !app->isUpdatedLocally())
           && !(m_onlineOnly && (!app->isPublished() || app->isLocal())) && matchesTypes(app)
           && (m_owners.isEmpty() || matchesList(app->owner(), m_owners))
           && (m_access.isEmpty() || matchesList(app->access(), m_access))
           && (m_text.isEmpty() || matchesText(app)) && matchesTags(app);
}

bool AppFilter::matchesTypes(AppInfo *app) const
{
    return matchesTypes(app, AppTypes(m_types));
}

bool AppFilter::matchesTags(AppInfo *app) const
{
    if (m_tags.isEmpty())
        return true;
    const QStringList tags = app->tags();
    return std::any_of(tags.begin(), tags.end(), [this](const QString &tag) {
        return m_tags.contains(tag, Qt::CaseInsensitive);
    });
}

bool AppFilter::matchesText(AppInfo *app) const
{
    if (app->title().contains(m_text, Qt::CaseInsensitive))
        return true;
    const QStringList words = extractTags(m_text, QStringLiteral("#"));
    const QStringList tags = app->tags();
    const bool tagged = std::any_of(words.begin(), words.end(), [&tags](const QString &word) {
        return tags.contains(word, Qt::CaseInsensitive);
    });
    return tagged
           || extractTags(m_text, QStringLiteral("@")).contains(app->owner(), Qt::CaseInsensitive);
}

bool AppFilter::matchesType(AppInfo *app, AppInfo::AppType type)
{
    return app->type() == type;
}

// An app of an unknown kind passes only where no kind is asked for.
bool AppFilter::matchesTypes(AppInfo *app, const AppTypes &types)
{
    return types.testFlag(app->type());
}

bool AppFilter::matchesList(const QString &value, const QStringList &list)
{
    return list.isEmpty() || list.contains(value, Qt::CaseInsensitive);
}

QStringList AppFilter::extractTags(const QString &text, const QString &prefix)
{
    QStringList tags;
    const QStringList words = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (const QString &word : words) {
        if (word.length() > prefix.length() && word.startsWith(prefix, Qt::CaseInsensitive))
            tags.append(word.mid(prefix.length()));
    }
    return tags;
}

#include "moc_AppFilter.cpp"
