#include "Player.h"

#include "Installation.h"

#include <Tessaline/AppView.h>

#include <QDir>
#include <QQmlContext>

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

    return showApplet(view, path);
}
