#include "player/AppView.h"

#include "player/AppletsCommandLineParser.h"
#include "player/AppletsPlayer.h"
#include "plugin/FileUtility.h"
#include "plugin/TessalineDebug.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QQmlContext>
#include <QQmlEngine>

namespace {

const QString productVersion = QStringLiteral("1.2.15");

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

} // namespace

AppView::AppView(AppletsPlayer *player, QWindow *parent)
    : QQuickView(parent)
    , m_player(player)
{
    connect(engine(), &QQmlEngine::quit, this, &AppView::close);
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
    disconnect(engine(), &QQmlEngine::quit, this, nullptr);
}

bool AppView::loadApplet(const QString &path)
{
    qDebug() << Q_FUNC_INFO << path;
    rootContext()->setContextProperty(QStringLiteral("productVersion"), productVersion);
    rootContext()->setContextProperty(QStringLiteral("buildNum"), productVersion);
    setSource(QUrl());
    engine()->clearComponentCache();
    return false; // until AppInfo is here
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
