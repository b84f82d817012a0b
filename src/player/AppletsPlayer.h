#pragma once

#include "player/AppletsCommandLineParser.h"
#include "plugin/TessalineGlobal.h"
#include "plugin/TessalineObject.h"

#include <QNetworkConfigurationManager>
#include <QString>

class AppletsPlayerSettings;
class AppView;
class QGuiApplication;
class QWindow;

// Starts applets, each in a view of its own. QML name: AppPlayer, uncreatable. A process has one
// player: a second one ends it. Hosts derive from this class to add a splash screen, to prepare the
// view or to change where it goes.
class TESSALINE_EXPORT AppletsPlayer : public TessalineObject
{
    Q_OBJECT
    Q_PROPERTY(AppletsPlayerSettings *settings READ settings NOTIFY settingsChanged)

public:
    explicit AppletsPlayer(TessalineObject *parent = nullptr);
    ~AppletsPlayer() override;

    // Processes the command line (which ends the process on an unknown option) and starts the
    // applet. Returns the exit code of the attempt: 0, or -1 if startApplet refused the path. The
    // event loop is the caller's.
    virtual int start(QGuiApplication &app, const QString &startPath);

    // Shows the applet in that folder. False if the path doesn't exist; a folder without an applet
    // shows an empty view.
    virtual bool startApplet(const QString &path);

    // Makes the view, loads the applet into it and shows it. The view belongs to `parent`; without
    // one it lives until the process ends.
    virtual AppView *createAppView(const QString &path, QWindow *parent);

    // The window that views are made in; null for top-level views.
    virtual QWindow *parentWindow() const;

    // Never null; belongs to the player.
    virtual AppletsCommandLineParser *commandLineParser();

    // Called by start() around the start of the applet; empty here.
    virtual void showSplashScreen(QGuiApplication &app, const QString &text);
    virtual void closeSplashScreen();

    // Never null; belongs to the player.
    virtual AppletsPlayerSettings *settings();

    // Writes changed settings to disk and reads those of other processes.
    Q_INVOKABLE void syncSettings();

signals:
    void settingsChanged();
    // For derived players; nothing here emits it.
    void playError(const QString &error);

private slots:
    void onSettingsChanged();

protected:
    // What createAppView does with a new view: loads the applet, shows the view and gives it its
    // title. Returns the view. An override makes and prepares the view, and hands it on to this.
    AppView *showApplet(AppView *view, const QString &path);

    // Played where startApplet's path doesn't exist; empty for none. Derived players may set it.
    QString m_defaultAppletPath;

private:
    // Deprecated, like all of bearer management; the player keeps one all the same.
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    QNetworkConfigurationManager m_networkConfigurationManager;
    QT_WARNING_POP
    AppletsCommandLineParser m_commandLineParser;
    AppletsPlayerSettings *m_settings = nullptr;
};
