#pragma once

#include "plugin/TessalineGlobal.h"

#include <QList>
#include <QPointer>
#include <QQmlError>
#include <QQuickView>
#include <QString>
#include <QVariantList>

class App;
class AppletsPlayer;

// The window of a running applet. Qt.quit() in the applet closes it; closing doesn't delete it. An
// applet that quits while its window isn't shown, as when it is being loaded, isn't shown any more,
// and the application ends as it does after its last window.
class TESSALINE_EXPORT AppView : public QQuickView
{
    Q_OBJECT

public:
    // Without a player, or when it has gone, the view shows itself plainly and keeps no warnings.
    explicit AppView(AppletsPlayer *player, QWindow *parent = nullptr);
    ~AppView() override;

    // Replaces what is shown by the applet in that folder. False, with an empty view, if there is
    // none. A document that doesn't load still gives true: see onWarnings. The engine forgets what
    // it has compiled, so nothing of it may be loading asynchronously at that moment: Qt's loader
    // thread may be using what is dropped.
    bool loadApplet(const QString &path);

    // Shows the window as the command line asks, unless the applet has asked to quit before.
    virtual void showView();
    void showExpanded();

    // Adds adjustPath(path) to the engine's import paths; a path that doesn't exist is skipped if
    // `checkExists` says so.
    void addImportPath(const QString &path, bool checkExists);

    // The path below the parent of the program's folder or below that folder itself, if one of them
    // exists, in this order; otherwise the path as it came.
    QString adjustPath(const QString &path) const;

    // The App that is the context object of the view's root context. Null unless the view itself
    // has been given a context (QQmlEngine::setContextForObject) and that object is an App.
    App *appComponent() const;

public slots:
    // Logs the errors and keeps them in place of those before. They are the engine's warnings, and
    // the errors of an applet's document that can't be compiled or created.
    virtual void onWarnings(const QList<QQmlError> &warnings);

protected:
    // Called by loadApplet before the applet's document is loaded, for further import paths.
    virtual void addAppletImports();

    // The latest batch of warnings, one map each: "url", "line", "column", "description", "text"
    // and "context" (base name of the view's own document, if it has one).
    QVariantList warnings() const { return m_warnings; }

private:
    void quit();
    void endUnshown();
    void applyMinimumSize(const QVariantMap &desktop);
    QString contextName() const;

    QPointer<AppletsPlayer> m_player;
    bool m_quitUnshown = false; // the applet has asked to quit before its window was shown
    QVariantList m_warnings;
};
