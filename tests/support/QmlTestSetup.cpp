#include "support/QmlTestSetup.h"

#include "support/DevelopmentPortal.h"
#include "support/HttpServer.h"
#include "support/TestCertificates.h"

#include <QClipboard>
#include <QColor>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QQmlContext>
#include <QQuickItem>
#include <QQuickWindow>

#include <mutex>

namespace {

struct LoggedLine
{
    QtMsgType type;
    QByteArray category;
    QString text;
};

std::mutex logMutex;
QList<LoggedLine> loggedLines;
QtMessageHandler previousHandler = nullptr;

// Keeps each line and lets Quick Test see it as well (it knows which ones were announced).
void keepLine(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    {
        const std::lock_guard<std::mutex> lock(logMutex);
        loggedLines.append({type, context.category, text});
    }
    if (type != QtDebugMsg && previousHandler)
        previousHandler(type, context, text);
}

// Quick Test installs a handler of its own for each test case; this one has to come before it.
void watchLog()
{
    const QtMessageHandler current = qInstallMessageHandler(keepLine);
    if (current != keepLine)
        previousHandler = current;
}

QString levelName(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return QStringLiteral("debug");
    case QtInfoMsg:
        return QStringLiteral("info");
    case QtWarningMsg:
        return QStringLiteral("warning");
    case QtCriticalMsg:
        return QStringLiteral("critical");
    case QtFatalMsg:
        return QStringLiteral("fatal");
    }
    return QString();
}

bool writeBytes(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush();
}

QByteArray readBytes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QVariantMap describeImage(const QImage &image)
{
    if (image.isNull())
        return {};
    return {{QStringLiteral("width"), image.width()},
            {QStringLiteral("height"), image.height()},
            {QStringLiteral("first"), image.pixelColor(0, 0).name(QColor::HexArgb)}};
}

} // namespace

QmlTestSupport::QmlTestSupport(QObject *parent)
    : QObject(parent)
{
}

QmlTestSupport::~QmlTestSupport() = default;

QString QmlTestSupport::home() const
{
    return QString::fromLocal8Bit(qgetenv("HOME"));
}

QString QmlTestSupport::dataPath() const
{
    const QStringList arguments = QCoreApplication::arguments();
    const int input = arguments.indexOf(QStringLiteral("-input"));
    return QFileInfo(arguments.value(input + 1)).absolutePath();
}

QString QmlTestSupport::sourcePath() const
{
    return QString::fromLocal8Bit(qgetenv("TESSALINE_SOURCE_DIR"));
}

QString QmlTestSupport::makeFolder()
{
    static int number = 0;
    const QString path = QDir(home()).filePath(QStringLiteral("folder-%1").arg(++number));
    return QDir().mkpath(path) ? path : QString();
}

bool QmlTestSupport::writeText(const QString &path, const QString &text)
{
    return writeBytes(path, text.toUtf8());
}

QString QmlTestSupport::readText(const QString &path)
{
    return QString::fromUtf8(readBytes(path));
}

bool QmlTestSupport::writeHex(const QString &path, const QString &hex)
{
    return writeBytes(path, QByteArray::fromHex(hex.toLatin1()));
}

QString QmlTestSupport::readHex(const QString &path)
{
    return QString::fromLatin1(readBytes(path).toHex());
}

bool QmlTestSupport::exists(const QString &path)
{
    return QFileInfo::exists(path);
}

bool QmlTestSupport::mkpath(const QString &path)
{
    return QDir().mkpath(path);
}

bool QmlTestSupport::remove(const QString &path)
{
    return QFileInfo(path).isDir() ? QDir(path).removeRecursively() : QFile::remove(path);
}

bool QmlTestSupport::setPermissions(const QString &path, int permissions)
{
    return QFile::setPermissions(path, QFile::Permissions(permissions));
}

QString QmlTestSupport::environment(const QString &name)
{
    return QString::fromUtf8(qgetenv(name.toUtf8().constData()));
}

void QmlTestSupport::setEnvironment(const QString &name, const QString &value)
{
    qputenv(name.toUtf8().constData(), value.toUtf8());
}

void QmlTestSupport::setApplicationProperty(const QString &name, const QVariant &value)
{
    QCoreApplication::instance()->setProperty(name.toUtf8().constData(), value);
}

void QmlTestSupport::collectGarbage()
{
    qmlEngine(this)->collectGarbage();
}

QString QmlTestSupport::ownership(QObject *object)
{
    return QQmlEngine::objectOwnership(object) == QQmlEngine::JavaScriptOwnership
               ? QStringLiteral("script")
               : QStringLiteral("native");
}

void QmlTestSupport::watch(QObject *object)
{
    m_watched = object;
}

bool QmlTestSupport::watchedIsGone()
{
    return !m_watched;
}

bool QmlTestSupport::throws(const QJSValue &function)
{
    QJSValue callable = function;
    return callable.call().isError();
}

QVariantMap QmlTestSupport::image(const QString &path)
{
    return describeImage(QImage(path));
}

QVariantMap QmlTestSupport::clipboardImage()
{
    return describeImage(QGuiApplication::clipboard()->image());
}

void QmlTestSupport::clearLog()
{
    watchLog();
    const std::lock_guard<std::mutex> lock(logMutex);
    loggedLines.clear();
}

int QmlTestSupport::logCount(const QString &level, const QString &category, const QString &words)
{
    const std::lock_guard<std::mutex> lock(logMutex);
    int count = 0;
    for (const LoggedLine &line : qAsConst(loggedLines)) {
        const bool categoryMatches =
            category.isEmpty() || category == QString::fromLatin1(line.category);
        if (categoryMatches && levelName(line.type) == level && line.text.contains(words))
            ++count;
    }
    return count;
}

QStringList QmlTestSupport::logLines()
{
    const std::lock_guard<std::mutex> lock(logMutex);
    QStringList lines;
    for (const LoggedLine &line : qAsConst(loggedLines))
        lines.append(levelName(line.type) + QLatin1Char('|') + QString::fromLatin1(line.category)
                     + QLatin1Char('|') + line.text);
    return lines;
}

QStringList QmlTestSupport::logProblems()
{
    QStringList problems;
    for (const QString &line : logLines()) {
        if (!line.startsWith(QLatin1String("debug|")) && !line.startsWith(QLatin1String("info|")))
            problems.append(line);
    }
    return problems;
}

int QmlTestSupport::cursorShape(QQuickItem *item)
{
    return item && item->window() ? item->window()->cursor().shape() : -1;
}

QString QmlTestSupport::serverUrl(const QString &target)
{
    return server()->url(target).toString();
}

QString QmlTestSupport::secureServerUrl(const QString &target)
{
    if (!m_secureServer) {
        m_certificates = std::make_unique<TestCertificates>();
        m_secureServer = std::make_unique<HttpServer>(m_certificates->selfSignedPath(),
                                                      m_certificates->keyPath());
    }
    return m_secureServer->url(target).toString();
}

int QmlTestSupport::serverRequestCount()
{
    return server()->requestCount();
}

QVariantMap QmlTestSupport::lastServerRequest()
{
    const HttpServer::Request request = server()->lastRequest();
    QVariantMap headers;
    for (const auto &header : request.headers)
        headers.insert(QString::fromUtf8(header.first.toLower()), QString::fromUtf8(header.second));
    QVariantMap parts;
    for (auto part = request.parts.begin(); part != request.parts.end(); ++part)
        parts.insert(QString::fromUtf8(part.key()),
                     QVariantMap{{"fileName", QString::fromUtf8(part->fileName)},
                                 {"contentType", QString::fromUtf8(part->contentType)},
                                 {"content", QString::fromUtf8(part->content)}});
    return {{"method", QString::fromUtf8(request.method)},
            {"target", QString::fromUtf8(request.target)},
            {"body", QString::fromUtf8(request.body)},
            {"connection", request.connection},
            {"headers", headers},
            {"parts", parts}};
}

void QmlTestSupport::addPortalItem(const QString &id, const QVariantMap &info,
                                   const QVariantMap &files)
{
    if (!m_nextPortal)
        m_nextPortal = std::make_unique<DevelopmentPortal>();
    QMap<QString, QByteArray> contents;
    for (auto file = files.begin(); file != files.end(); ++file)
        contents.insert(file.key(), file.value().toString().toUtf8());
    m_nextPortal->addItem(id, info, contents);
}

QString QmlTestSupport::startPortal(const QStringList &arguments)
{
    std::unique_ptr<DevelopmentPortal> portal = std::move(m_nextPortal);
    if (!portal)
        portal = std::make_unique<DevelopmentPortal>();
    if (!portal->start(arguments)) {
        qWarning("%s", qPrintable(portal->output()));
        return QString();
    }
    m_portals.push_back(std::move(portal));
    return m_portals.back()->url();
}

HttpServer *QmlTestSupport::server()
{
    if (!m_server)
        m_server = std::make_unique<HttpServer>();
    return m_server.get();
}

void QmlTestSetup::applicationAvailable()
{
    QCoreApplication::setOrganizationName(QStringLiteral("Zemrik Tests"));
    QCoreApplication::setApplicationName(QStringLiteral("Quick Tests"));
}

void QmlTestSetup::qmlEngineAvailable(QQmlEngine *engine)
{
    watchLog();
    auto *support = new QmlTestSupport(engine);
    QQmlEngine::setContextForObject(support, engine->rootContext());
    engine->rootContext()->setContextProperty(QStringLiteral("TestSupport"), support);
    engine->addImportPath(QStringLiteral(":/imports"));
}
