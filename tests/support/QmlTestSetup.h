#pragma once

#include <QJSValue>
#include <QObject>
#include <QPointer>
#include <QQmlEngine>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

#include <memory>
#include <vector>

class DevelopmentPortal;
class HttpServer;
class QQuickItem;
class TestCertificates;

// What QML tests reach as the context property "TestSupport": files made behind the module's back,
// the process's log lines, and a home that is gone afterwards.
class QmlTestSupport : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString home READ home CONSTANT)             // the process's own home
    Q_PROPERTY(QString dataPath READ dataPath CONSTANT)     // folder of the test document
    Q_PROPERTY(QString sourcePath READ sourcePath CONSTANT) // root of the source tree

public:
    explicit QmlTestSupport(QObject *parent = nullptr);
    ~QmlTestSupport() override;

    QString home() const;
    QString dataPath() const;
    QString sourcePath() const;

    // A new empty folder below the home.
    Q_INVOKABLE QString makeFolder();
    // Files as the disk has them. Text is UTF-8.
    Q_INVOKABLE bool writeText(const QString &path, const QString &text);
    Q_INVOKABLE QString readText(const QString &path);
    Q_INVOKABLE bool writeHex(const QString &path, const QString &hex);
    Q_INVOKABLE QString readHex(const QString &path);
    Q_INVOKABLE bool exists(const QString &path);
    Q_INVOKABLE bool mkpath(const QString &path);
    Q_INVOKABLE bool remove(const QString &path);
    Q_INVOKABLE bool setPermissions(const QString &path, int permissions);
    Q_INVOKABLE QString environment(const QString &name);
    Q_INVOKABLE void setEnvironment(const QString &name, const QString &value);
    Q_INVOKABLE void setApplicationProperty(const QString &name, const QVariant &value);
    Q_INVOKABLE void collectGarbage();
    // Who deletes an object: "script" or "native".
    Q_INVOKABLE QString ownership(QObject *object);
    // Remembers an object without keeping it.
    Q_INVOKABLE void watch(QObject *object);
    Q_INVOKABLE bool watchedIsGone();
    // Whether calling the function throws.
    Q_INVOKABLE bool throws(const QJSValue &function);
    // A picture's "width", "height" and "first", the colour of its first pixel as "#aarrggbb".
    Q_INVOKABLE QVariantMap image(const QString &path);
    Q_INVOKABLE QVariantMap clipboardImage();

    // Log lines since the last clearLog(), which each test case has to call first: how many of that
    // level ("debug", "info", "warning", "critical") and category hold the words; an empty category
    // means any.
    Q_INVOKABLE void clearLog();
    Q_INVOKABLE int logCount(const QString &level, const QString &category, const QString &words);
    Q_INVOKABLE QStringList logLines();
    // The warnings and worse among them.
    Q_INVOKABLE QStringList logProblems();

    // The mouse cursor of the item's window, a Qt.CursorShape; -1 without a window.
    Q_INVOKABLE int cursorShape(QQuickItem *item);

    // An HTTP server, started at its first use (see HttpServer for what it answers), and one with a
    // self-signed certificate.
    Q_INVOKABLE QString serverUrl(const QString &target);
    Q_INVOKABLE QString secureServerUrl(const QString &target);
    // What the first server was asked: "method", "target", "body", "headers" by lower-case name,
    // and the "parts" of a form, each with "fileName", "contentType" and "content".
    Q_INVOKABLE int serverRequestCount();
    Q_INVOKABLE QVariantMap lastServerRequest();

    // A development portal. Items first, with their files' texts by path; then start() with the
    // program's arguments, which gives its address, without a trailing slash, or an empty text. All
    // go with the engine.
    Q_INVOKABLE void addPortalItem(const QString &id, const QVariantMap &info,
                                   const QVariantMap &files);
    Q_INVOKABLE QString startPortal(const QStringList &arguments);

private:
    HttpServer *server();

    QPointer<QObject> m_watched;
    std::unique_ptr<HttpServer> m_server;
    std::unique_ptr<HttpServer> m_secureServer;
    std::unique_ptr<TestCertificates> m_certificates;
    std::unique_ptr<DevelopmentPortal> m_nextPortal; // takes items
    std::vector<std::unique_ptr<DevelopmentPortal>> m_portals;
};

// Called by the Quick Test runner.
class QmlTestSetup : public QObject
{
    Q_OBJECT

public slots:
    void applicationAvailable();
    void qmlEngineAvailable(QQmlEngine *engine);
};
