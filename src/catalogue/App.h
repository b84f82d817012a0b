#pragma once

#include "plugin/TessalineGlobal.h"

#include <QList>
#include <QQmlListProperty>
#include <QQuickPaintedItem>
#include <QStringList>
#include <QUrl>

class AppDependency;
class AppInfo;
class FileFolder;
class Settings;

// The root element of an applet's main.qml: a white item that finds, from the place its document
// was loaded from, the applet's folder, metadata, dependencies, settings and command line. Before
// it counts as complete, the variables in the key "environment" of appinfo.json are put into the
// process.
//
// The pointers are made at their first read and belong to this object. They are null without a QML
// context; the next read tries again.
class TESSALINE_EXPORT App : public QQuickPaintedItem
{
    Q_OBJECT
    Q_PROPERTY(FileFolder *folder READ folder CONSTANT)
    Q_PROPERTY(AppInfo *info READ info CONSTANT)
    Q_PROPERTY(Settings *settings READ settings CONSTANT)
    Q_PROPERTY(QQmlListProperty<AppDependency> dependencies READ dependencies CONSTANT)
    Q_PROPERTY(QStringList arguments READ arguments CONSTANT)
    Q_PROPERTY(BackButtonAction backButtonAction READ backButtonAction WRITE setBackButtonAction)

public:
    // For the host of a device with a back button; nothing in the library acts on it.
    enum BackButtonAction : qint32 {
        BackButtonQuit = 0,
        BackButtonSignal = 1,
        BackButtonIgnore = 2
    };
    Q_ENUM(BackButtonAction)

    explicit App(QQuickItem *parent = nullptr);
    ~App() override;

    // The folder of the document. It can't be moved, and nothing can be written through it.
    FileFolder *folder();
    AppInfo *info();
    // A JSON file in the catalogue's Settings folder, named after the item id or else the folder;
    // it outlives the applet's folder. Null, too, for an item id that isn't a plain file name.
    Settings *settings();
    QQmlListProperty<AppDependency> dependencies();
    // The process's command line; empty, with a warning, unless this is in the root document.
    QStringList arguments() const;
    BackButtonAction backButtonAction() const { return m_backButtonAction; }
    void setBackButtonAction(BackButtonAction action) { m_backButtonAction = action; }

    // The first dependency whose "name", or whose property of the given name, has that value
    // without regard to case. Null if there is none, and before the first read of info().
    Q_INVOKABLE AppDependency *dependency(const QString &value) const;
    Q_INVOKABLE AppDependency *dependency(const QString &propertyName, const QString &value) const;

    // Nothing to paint: the background is the fill colour.
    void paint(QPainter *painter) override;

signals:
    // All three are for the host or the document to emit.
    void openUrl(const QUrl &url);
    void backButtonClicked();
    void colorChanged();

protected:
    void classBegin() override;
    void componentComplete() override;

private slots:
    void onOpenUrl(const QUrl &url);

private:
    void initializeEnvironment();
    void makeDependencies();
    QString settingsFileName();
    static int dependencyCount(QQmlListProperty<AppDependency> *list);
    static AppDependency *dependencyAt(QQmlListProperty<AppDependency> *list, int index);

    FileFolder *m_folder = nullptr;
    AppInfo *m_info = nullptr;
    Settings *m_settings = nullptr;
    BackButtonAction m_backButtonAction = BackButtonQuit;
    QList<AppDependency *> m_dependencies;
};
