#pragma once

#include "files/SettingsBase.h"
#include "plugin/TessalineGlobal.h"

#include <QString>

// The player's own settings, kept in the application's QSettings store. QML name:
// AppPlayerSettings, uncreatable. An empty text removes its key, so that the default holds again.
// Notify signals come at every write, also of an equal value.
class TESSALINE_EXPORT AppletsPlayerSettings : public SettingsBase
{
    Q_OBJECT
    Q_PROPERTY(QString home READ home WRITE setHome NOTIFY homeChanged)
    Q_PROPERTY(
        double displayScale READ displayScale WRITE setDisplayScale NOTIFY displayScaleChanged)
    Q_PROPERTY(QString portalUrl READ portalUrl WRITE setPortalUrl NOTIFY portalUrlChanged)
    Q_PROPERTY(QString portalUsername READ portalUsername WRITE setPortalUsername NOTIFY
                   portalUsernameChanged)

public:
    explicit AppletsPlayerSettings(QObject *parent = nullptr);

    // Key "home"; empty by default.
    QString home() const;
    void setHome(const QString &home);

    // Key "displayScale"; 0, the default, leaves the scale to the screen.
    double displayScale() const;
    void setDisplayScale(double displayScale);

    // Key "portal/url", without blanks around it; the public portal's address by default.
    QString portalUrl();
    void setPortalUrl(const QString &portalUrl);

    // Key "portal/username", without blanks around it; empty by default.
    QString portalUsername();
    void setPortalUsername(const QString &portalUsername);

    // Key "dataPath"; "~/Zemrik/Halvora/Data" by default. The path variable is not resolved.
    QString dataPath() const;

signals:
    void homeChanged();
    void displayScaleChanged();
    void portalUrlChanged();
    void portalUsernameChanged();
};
