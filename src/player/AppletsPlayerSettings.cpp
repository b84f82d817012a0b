#include "player/AppletsPlayerSettings.h"

#include "plugin/Endpoints.h"

/*!
    \qmltype AppPlayerSettings
    \inqmlmodule Zemrik.Tessaline
    \brief The settings of the program that plays the applet.

    QML can't create this type: it is what \l{AppPlayer::settings}{Tessaline.player.settings}
    gives. The values are kept under the program's own name, not the applet's, and hold for every
    applet that it plays.

    \qml
    TextField {
        text: Tessaline.player ? Tessaline.player.settings.portalUrl : ""
        onEditingFinished: Tessaline.player.settings.portalUrl = text
    }
    \endqml

    Setting a text to an empty or blank value removes it, and its default is back. The notify
   signals come at every assignment, also of an equal value.
*/

/*!
    \qmlproperty string AppPlayerSettings::path
    \readonly
    The file that holds the settings.
*/

/*!
    \qmlproperty string AppPlayerSettings::home
    The user's home folder; empty by default.
*/

/*!
    \qmlproperty real AppPlayerSettings::displayScale
    The display scale that the user chose; 0, the default, leaves it to the screen.
*/

/*!
    \qmlproperty string AppPlayerSettings::portalUrl
    The portal's address, read without blanks around it. By default the public portal's.
*/

/*!
    \qmlproperty string AppPlayerSettings::portalUsername
    The name to sign in with, read without blanks around it; empty by default.
*/

/*!
    \qmlmethod void AppPlayerSettings::synchronize()
    Writes changes to disk and reads those of other programs.
*/

namespace {

const QLatin1String homeKey("home");
const QLatin1String displayScaleKey("displayScale");
const QLatin1String portalGroup("portal");
const QLatin1String urlKey("url");
const QLatin1String usernameKey("username");

} // namespace

AppletsPlayerSettings::AppletsPlayerSettings(QObject *parent)
    : SettingsBase(parent)
{
}

QString AppletsPlayerSettings::home() const
{
    return value(homeKey).toString();
}

void AppletsPlayerSettings::setHome(const QString &home)
{
    setValue(homeKey, home);
    emit homeChanged();
}

double AppletsPlayerSettings::displayScale() const
{
    return value(displayScaleKey, 0).toReal();
}

void AppletsPlayerSettings::setDisplayScale(double displayScale)
{
    setValue(displayScaleKey, displayScale);
    emit displayScaleChanged();
}

QString AppletsPlayerSettings::portalUrl()
{
    return groupValue(portalGroup, urlKey, Endpoints::publicPortal()).toString().trimmed();
}

void AppletsPlayerSettings::setPortalUrl(const QString &portalUrl)
{
    setGroupValue(portalGroup, urlKey, portalUrl);
    emit portalUrlChanged();
}

QString AppletsPlayerSettings::portalUsername()
{
    return groupValue(portalGroup, usernameKey, QVariant()).toString().trimmed();
}

void AppletsPlayerSettings::setPortalUsername(const QString &portalUsername)
{
    setGroupValue(portalGroup, usernameKey, portalUsername);
    emit portalUsernameChanged();
}

QString AppletsPlayerSettings::dataPath() const
{
    return value(QStringLiteral("dataPath"), QStringLiteral("~/Zemrik/Halvora/Data")).toString();
}

#include "moc_AppletsPlayerSettings.cpp"
