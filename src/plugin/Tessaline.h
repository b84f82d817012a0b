#pragma once

#include "plugin/TessalineGlobal.h"

#include <QColor>
#include <QDir>
#include <QJSValue>
#include <QObject>
#include <QRect>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QVariantMap>

class AppletsPlayer;
class BinaryData;
class Device;
class Environment;
class File;
class FileFolder;
class FileInfo;
class Logging;
class Network;
class QGuiApplication;
class QImage;
class QQmlEngine;
class QQuickWindow;
class Settings;
class StandardPaths;
class UrlInfo;

// The module's singleton, one for all engines of the process: a child of the first engine that
// asked. It needs a QGuiApplication; without one its constructor ends the process. What it says
// about "the engine" is said of that first engine.
class TESSALINE_EXPORT Tessaline : public QObject
{
    Q_OBJECT
    Q_PROPERTY(
        QString userHomePath READ userHomePath WRITE setUserHomePath NOTIFY userHomePathChanged)
    Q_PROPERTY(FileFolder *userHomeFolder READ userHomeFolder NOTIFY userHomePathChanged)
    Q_PROPERTY(FileFolder *temporaryFolder READ temporaryFolder CONSTANT)
    Q_PROPERTY(AppletsPlayer *player READ player CONSTANT)
    Q_PROPERTY(StandardPaths *standardPaths READ standardPaths CONSTANT)
    Q_PROPERTY(QString offlineStoragePath READ offlineStoragePath WRITE setOfflineStoragePath NOTIFY
                   offlineStoragePathChanged)
    Q_PROPERTY(QString version READ version CONSTANT)
    Q_PROPERTY(QString sslLibraryVersion READ sslLibraryVersion CONSTANT)
    Q_PROPERTY(QString sslLibraryBuildVersion READ sslLibraryBuildVersion CONSTANT)
    Q_PROPERTY(QString osName READ osName CONSTANT)
    Q_PROPERTY(QString osDisplayName READ osDisplayName CONSTANT)
    Q_PROPERTY(QString osVersion READ osVersion CONSTANT)
    Q_PROPERTY(QString kernelType READ kernelType CONSTANT)
    Q_PROPERTY(QString kernelVersion READ kernelVersion CONSTANT)
    Q_PROPERTY(QString qtVersion READ qtVersion CONSTANT)
    Q_PROPERTY(Settings *settings READ settings CONSTANT)
    Q_PROPERTY(Environment *environment READ environment CONSTANT)
    Q_PROPERTY(Logging *logging READ logging CONSTANT)
    Q_PROPERTY(double displayScaleFactor READ displayScaleFactor WRITE setDisplayScaleFactor NOTIFY
                   displayScaleFactorChanged)
    Q_PROPERTY(Network *network READ network CONSTANT)
    Q_PROPERTY(bool isOnline READ isOnline NOTIFY onlineStateChanged)
    Q_PROPERTY(Device *device READ device CONSTANT)
    Q_PROPERTY(QStringList importPathList READ importPathList WRITE setImportPathList NOTIFY
                   importPathListChanged)

public:
    explicit Tessaline(QObject *parent = nullptr);

    // Resolved at the first read, from the application object's property "userHomePath" or else
    // FileUtility::homePath(), and kept from then on.
    QString userHomePath();
    void setUserHomePath(const QString &path);

    // New objects at each read, without a parent and without another owner.
    FileFolder *userHomeFolder();
    FileFolder *temporaryFolder() const;

    // What the host set as the context property "player" of the engine's root context; null if that
    // is missing or no player.
    AppletsPlayer *player() const;

    StandardPaths *standardPaths();

    QString offlineStoragePath() const;
    void setOfflineStoragePath(const QString &path);

    QString version() const;
    QString sslLibraryVersion() const;
    QString sslLibraryBuildVersion() const;
    QString osName() const;
    QString osDisplayName() const;
    QString osVersion() const;
    QString kernelType() const;
    QString kernelVersion() const;
    QString qtVersion() const;

    Settings *settings();
    Environment *environment();
    // The process's one Logging object, made at the first call.
    Logging *logging() const;

    // Device pixels per reference pixel of 1/72 inch: the override, or the primary screen's. An
    // override of 0 or less removes it. Each write is signalled.
    double displayScaleFactor() const;
    void setDisplayScaleFactor(double factor);

    Network *network();
    // Deprecated, and logged as such at each read: ask network().
    bool isOnline();

    Device *device();

    QStringList importPathList() const;
    void setImportPathList(const QStringList &paths);

    // Paths with their variable replaced; see FileUtility.
    Q_INVOKABLE QString resolvedPath(const QString &path) const;
    Q_INVOKABLE QString resolvedPath(const QUrl &pathUrl) const;
    Q_INVOKABLE QUrl resolvedPathUrl(const QString &pathUrl) const;
    Q_INVOKABLE QString pathVariable(const QString &name) const;
    Q_INVOKABLE void setPathVariable(const QString &name, const QString &value);
    // The URL as it is.
    Q_INVOKABLE QUrl resolvedUrl(const QUrl &url) const;
    // A new object that belongs to the script engine.
    Q_INVOKABLE UrlInfo *urlInfo(const QUrl &url) const;

    // Black or white, whichever reads better on `color`, blended towards `tintColor` by its alpha.
    Q_INVOKABLE QColor contrastColor(const QColor &color, const QColor &tintColor = QColor()) const;
    // A copy of `color` with the given alpha, 0.0 to 1.0.
    Q_INVOKABLE QColor alphaColor(const QColor &color, double alpha) const;

    // 32 lower-case hexadecimal digits, new at each call.
    Q_INVOKABLE QString createId() const;
    // A new UUID: below 1 in braces and with dashes, 1 with dashes only, above 1 digits only.
    Q_INVOKABLE QString createUuidString(int format = 0) const;

    Q_INVOKABLE void clearComponentCache();
    Q_INVOKABLE void trimComponentCache();
    Q_INVOKABLE void addImportPath(const QString &path);
    Q_INVOKABLE void removeImportPath(const QString &path);
    Q_INVOKABLE void collectGarbage();

    // The name of a value's type. `displayName` takes the engine's decorations off a class name.
    Q_INVOKABLE QString typeOf(const QJSValue &value, bool displayName = false) const;
    // Whether the value's type, or an object's base, has the name `type`, or the name of the value
    // `type` when that is not a string.
    Q_INVOKABLE bool instanceOf(const QJSValue &value, const QJSValue &type) const;

    // Pictures of the first Quick window, or of the part `rect` of it. False without a window.
    Q_INVOKABLE bool grabWindowToClipboard(const QRect &rect = QRect());
    // The format follows the file's suffix; false too if the file can't be written.
    Q_INVOKABLE bool grabWindowToFile(const QString &path, const QRect &rect = QRect());

    // See XmlUtility for the options; empty for text that doesn't parse.
    Q_INVOKABLE QVariantMap xmlToJson(const QString &xml,
                                      const QVariantMap &options = QVariantMap()) const;

    // New objects that belong to the script engine.
    Q_INVOKABLE File *file(const QString &path) const;
    Q_INVOKABLE File *file(const QUrl &pathUrl) const;
    Q_INVOKABLE FileFolder *fileFolder(const QString &path) const;
    Q_INVOKABLE FileFolder *fileFolder(const QUrl &pathUrl) const;
    Q_INVOKABLE FileInfo *fileInfo(const QString &path) const;
    Q_INVOKABLE FileInfo *fileInfo(const QUrl &pathUrl) const;

    // Logs what the object's meta-object holds, under FRAMEWORK_CORE at debug level. The result is
    // "null" or empty.
    Q_INVOKABLE QString objectToString(QObject *object) const;

    // A new object with a text's or a byte array's bytes, empty for other values. It belongs to the
    // script engine.
    Q_INVOKABLE BinaryData *binaryData(const QJSValue &value = QJSValue()) const;

    // Ends the process if the application is not a GUI application.
    QGuiApplication *app() const;
    // Null, with a critical log line, where there is none.
    QQmlEngine *engine() const;
    // The first top-level Quick window; null, with a critical log line, where there is none.
    QQuickWindow *window() const;
    QImage grabWindow(const QRect &rect) const;

signals:
    void userHomePathChanged();
    void offlineStoragePathChanged();
    void displayScaleFactorChanged();
    void onlineStateChanged(bool online);
    void importPathListChanged();

private slots:
    void onLogicalDotsPerInchChanged(double dpi);

private:
    QDir m_home{QString()};
    double m_displayScaleFactor = 0.0; // 0: follow the screen
    Settings *m_settings = nullptr;
    Environment *m_environment = nullptr;
    Network *m_network = nullptr;
    Device *m_device = nullptr;
    StandardPaths *m_standardPaths = nullptr;
};
