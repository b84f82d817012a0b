#include "Player.h"

#include "Installation.h"

#include <Tessaline/AppInfo.h>
#include <Tessaline/AppView.h>

#include <QDebug>
#include <QDir>
#include <QQmlContext>

namespace {

// Of a document that doesn't load, the view prints the errors.
void sayWhyNothingIsLoaded(const QString &path)
{
    const char *what =
        AppInfo::exists(path) ? "No main document is named by the applet in" : "No applet in";
    qWarning().noquote() << what << path;
}

} // namespace

Player::Player() = default;

Player::~Player() = default;

AppView *Player::createAppView(const QString &path, QWindow *parent)
{
    auto *view = new AppView(this, parent);
    if (!parent)
        m_topLevelViews.emplace_back(view);

    view->rootContext()->setContextProperty(QStringLiteral("player"), this);
    const QStringList importPaths = commandLineParser()->importPaths();
    for (const QString &importPath : importPaths)
        view->addImportPath(QDir::current().absoluteFilePath(importPath), true);
    // Last, and so looked at first: an applet must not load a second copy of the library.
    view->addImportPath(Installation::moduleFolder(), true);

    showApplet(view, path);
    if (view->status() == QQuickView::Null)
        sayWhyNothingIsLoaded(path);
    return view;
}
