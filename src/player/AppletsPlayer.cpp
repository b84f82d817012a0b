#include "player/AppletsPlayer.h"

#include "player/AppletsPlayerSettings.h"
#include "player/AppletsRuntime.h"
#include "player/AppView.h"
#include "plugin/PropertyHelper.h"
#include "plugin/TessalineDebug.h"

#include <QFileInfo>
#include <QGuiApplication>
#include <QWindow>

/*!
    \qmltype AppPlayer
    \inqmlmodule Zemrik.Tessaline
    \brief The player that runs the applet.

    QML can't create this type. The applet reaches its player as \c{Tessaline.player}, which is null
    where the host offers none:

    \qml
    Text {
        text: Tessaline.player ? Tessaline.player.settings.home : ""
    }
    \endqml
*/

/*!
    \qmlproperty AppPlayerSettings AppPlayer::settings
    \readonly
    The player's own settings.
*/

/*!
    \qmlmethod void AppPlayer::syncSettings()
    Writes changed settings to disk, reads those of other programs, and emits
    \c{settingsChanged()}.
*/

/*!
    \qmlsignal AppPlayer::settingsChanged()
    The settings were synchronized with the disk.
*/

/*!
    \qmlsignal AppPlayer::playError(string error)
    An applet could not be played, and \a error says why. For players of other hosts; this one
    doesn't emit it.
*/

AppletsPlayer::AppletsPlayer(TessalineObject *parent)
    : TessalineObject(parent)
{
    AppletsRuntime::initialize(this);

    // There is no such signal here, and Qt says so: the attempt is part of the player's behaviour.
    connect(&m_networkConfigurationManager, SIGNAL(onlineStateChanged(bool)), this,
            SIGNAL(onlineStateChanged(bool)));
    connect(this, &AppletsPlayer::settingsChanged, this, &AppletsPlayer::onSettingsChanged);

    const AppletsPlayerSettings settings(nullptr);
    qCDebug(FRAMEWORK_PLAYER) << Q_FUNC_INFO << "Settings:" << settings.fileName();
}

AppletsPlayer::~AppletsPlayer()
{
    qCDebug(FRAMEWORK_PLAYER) << Q_FUNC_INFO;
    AppletsRuntime::release(this);
}

int AppletsPlayer::start(QGuiApplication &app, const QString &startPath)
{
    commandLineParser()->process(app);
    showSplashScreen(app, QString());

    // Read but not applied: what a home path means is the host's business.
    const QString homePath = commandLineParser()->homePath();
    Q_UNUSED(homePath)

    const int exitCode = startApplet(startPath) ? 0 : -1;
    closeSplashScreen();
    qCDebug(FRAMEWORK_PLAYER) << Q_FUNC_INFO << "exitCode=" << exitCode;
    return exitCode;
}

bool AppletsPlayer::startApplet(const QString &path)
{
    qDebug() << Q_FUNC_INFO << path;

    QString startPath = path;
    if (!m_defaultAppletPath.isEmpty() && !QFileInfo::exists(path)) {
        qCDebug(FRAMEWORK_PLAYER) << Q_FUNC_INFO << "defaultAppletPath" << m_defaultAppletPath;
        startPath = m_defaultAppletPath;
    }
    if (!QFileInfo::exists(startPath)) {
        qCCritical(FRAMEWORK_PLAYER) << Q_FUNC_INFO << "Start path not found" << startPath;
        return false;
    }
    return createAppView(startPath, parentWindow()) != nullptr;
}

AppView *AppletsPlayer::createAppView(const QString &path, QWindow *parent)
{
    qCDebug(FRAMEWORK_PLAYER) << Q_FUNC_INFO << path;
    return showApplet(new AppView(this, parent), path);
}

AppView *AppletsPlayer::showApplet(AppView *view, const QString &path)
{
    view->loadApplet(path); // a view is shown even for a path with no applet
    view->showView();
    view->setTitle(QGuiApplication::applicationDisplayName());
    return view;
}

QWindow *AppletsPlayer::parentWindow() const
{
    return qobject_cast<QWindow *>(parent());
}

AppletsCommandLineParser *AppletsPlayer::commandLineParser()
{
    return &m_commandLineParser;
}

void AppletsPlayer::showSplashScreen(QGuiApplication &app, const QString &text)
{
    Q_UNUSED(app)
    Q_UNUSED(text)
}

void AppletsPlayer::closeSplashScreen() {}

AppletsPlayerSettings *AppletsPlayer::settings()
{
    return lazyChild(m_settings, this);
}

void AppletsPlayer::syncSettings()
{
    settings()->sync();
    emit settingsChanged();
}

void AppletsPlayer::onSettingsChanged() {}

#include "moc_AppletsPlayer.cpp"
