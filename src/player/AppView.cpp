#include "player/AppView.h"

#include "catalogue/App.h"
#include "catalogue/AppInfo.h"
#include "player/AppletsCommandLineParser.h"
#include "player/AppletsPlayer.h"
#include "plugin/FileUtility.h"
#include "plugin/TessalineDebug.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QQmlContext>
#include <QQmlEngine>

#include <algorithm>

namespace {

QVariantMap warningMap(const QQmlError &error, const QString &context)
{
    return {
        {QStringLiteral("url"), error.url()},
        {QStringLiteral("line"), error.line()},
        {QStringLiteral("column"), error.column()},
        {QStringLiteral("description"), error.description()},
        {QStringLiteral("text"), error.toString()},
        {QStringLiteral("context"), context},
    };
}

bool anyWindowIsVisible()
{
    const QWindowList windows = QGuiApplication::topLevelWindows();
    return std::any_of(windows.begin(), windows.end(),
                       [](const QWindow *window) { return window->isVisible(); });
}

} // namespace

AppView::AppView(AppletsPlayer *player, QWindow *parent)
    : QQuickView(parent)
    , m_player(player)
{
    connect(engine(), &QQmlEngine::quit, this, &AppView::quit);
    connect(engine(), &QQmlEngine::warnings, this, &AppView::onWarnings);
    // The engine warns of what goes wrong in a running document. The view prints the errors of a
    // document that can't run at all, but tells nobody.
    connect(this, &AppView::statusChanged, this, [this](Status status) {
        if (status == Error)
            onWarnings(errors());
    });
    setResizeMode(SizeRootObjectToView);
    addImportPath(QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("qml")),
                  true);
    addImportPath(QStringLiteral(":/imports"), false);
}

AppView::~AppView()
{
    // The base tears the document down, which may quit or go wrong then: too late for this view.
    disconnect(engine(), nullptr, this, nullptr);
}

bool AppView::loadApplet(const QString &path)
{
    qDebug() << Q_FUNC_INFO << path;
    const QString version = QStringLiteral(TESSALINE_VERSION);
    rootContext()->setContextProperty(QStringLiteral("productVersion"), version);
    rootContext()->setContextProperty(QStringLiteral("buildNum"), version);
    setSource(QUrl());
    m_quitUnshown = false; // that of the applet before, also when it quit at its end
    engine()->clearComponentCache();
    if (!AppInfo::exists(path))
        return false;

    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO << "Instantiate applet:" << path;
    const AppInfo info(path, nullptr);
    const QUrl source = info.contentUrl(info.mainFile());
    addAppletImports();
    applyMinimumSize(info.value(QStringLiteral("display"), QVariantMap())
                         .toMap()
                         .value(QStringLiteral("desktop"))
                         .toMap());
    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO << "Applet source:" << source;
    setSource(source);
    return true;
}

void AppView::quit()
{
    if (isVisible()) {
        close();
        return;
    }
    // There is nothing to close yet, and no event loop to end: who loads the applet comes first.
    m_quitUnshown = true;
    QMetaObject::invokeMethod(this, &AppView::endUnshown, Qt::QueuedConnection);
}

void AppView::endUnshown()
{
    if (!m_quitUnshown)
        return;
    if (isVisible()) // a derived view may show itself in a way of its own
        close();
    else if (QGuiApplication::quitOnLastWindowClosed() && !anyWindowIsVisible())
        QCoreApplication::quit();
}

void AppView::applyMinimumSize(const QVariantMap &desktop)
{
    const int width = desktop.value(QStringLiteral("minimumWidth")).toInt();
    const int height = desktop.value(QStringLiteral("minimumHeight")).toInt();
    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO << "minimum size" << width << "x" << height;
    if (width > 0)
        setMinimumWidth(width);
    if (height > 0)
        setMinimumHeight(height);
}

void AppView::showView()
{
    if (m_quitUnshown)
        return;
    if (!m_player) {
        show();
        return;
    }
    const AppletsCommandLineParser *parser = m_player->commandLineParser();
    if (parser->frameless())
        setFlags(Qt::FramelessWindowHint);
    const int state = parser->showState();
    if (state == Qt::WindowActive) {
        show();
    } else {
        setWindowState(static_cast<Qt::WindowState>(state));
        setVisible(true);
    }
}

void AppView::showExpanded()
{
    showMaximized();
}

void AppView::addImportPath(const QString &path, bool checkExists)
{
    if (checkExists && !QFileInfo::exists(path)) {
        qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO << "Path doesn't exist" << path;
        return;
    }
    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO << path;
    engine()->addImportPath(adjustPath(path));
}

QString AppView::adjustPath(const QString &path) const
{
    const QString program = QCoreApplication::applicationDirPath();
    const QString candidates[] = {program + QStringLiteral("/../") + path,
                                  program + QLatin1Char('/') + path};
    for (const QString &candidate : candidates) {
        if (QFileInfo::exists(candidate))
            return candidate;
    }
    return path;
}

App *AppView::appComponent() const
{
    const QQmlEngine *engine = qmlEngine(this);
    if (!engine) {
        qCCritical(FRAMEWORK_PLAYER) << Q_FUNC_INFO << "Null engine";
        return nullptr;
    }
    const QQmlContext *context = engine->rootContext();
    if (!context) {
        qCCritical(FRAMEWORK_PLAYER) << Q_FUNC_INFO << "Null root context";
        return nullptr;
    }
    qCDebug(FRAMEWORK_PACKAGE) << Q_FUNC_INFO << "rootContext" << context
                               << context->contextObject();
    return qobject_cast<App *>(context->contextObject());
}

void AppView::onWarnings(const QList<QQmlError> &warnings)
{
    if (!m_player)
        return;
    const QString context = contextName();
    m_warnings.clear();
    for (const QQmlError &error : warnings) {
        qCWarning(FRAMEWORK_PLAYER)
            << Q_FUNC_INFO << "Object:" << error.object() << "Text:" << error.toString();
        m_warnings.append(warningMap(error, context));
    }
}

// The view is no object of a document unless somebody makes it one, so this is mostly empty.
QString AppView::contextName() const
{
    const QQmlContext *context = qmlContext(this);
    const QQmlEngine *engine = qmlEngine(this);
    QUrl url = context ? context->baseUrl() : QUrl();
    if (url.isEmpty() && engine)
        url = engine->baseUrl();
    return url.isEmpty() ? QString() : QFileInfo(FileUtility::resolvedPath(url, true)).baseName();
}

void AppView::addAppletImports() {}

#include "moc_AppView.cpp"
