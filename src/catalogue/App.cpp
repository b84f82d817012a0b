#include "catalogue/App.h"

#include "catalogue/AppDependency.h"
#include "catalogue/AppInfo.h"
#include "catalogue/AppInfoList.h"
#include "files/FileFolder.h"
#include "files/Settings.h"
#include "plugin/Environment.h"
#include "plugin/FileUtility.h"
#include "plugin/PathComponent.h"
#include "plugin/TessalineDebug.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QQmlContext>
#include <QQmlEngine>

/*!
    \qmltype App
    \inherits Item
    \inqmlmodule Zemrik.Tessaline
    \brief The root element of an app.

    An app's \c main.qml begins with it. It is a visual item with a white background, and the app's
    link to its own folder, metadata, settings and command line.

    \qml
    import QtQuick 2.15
    import Zemrik.Tessaline 1.0

    App {
        id: app
        width: 400
        height: 640

        Text {
            text: qsTr("%1 %2").arg(app.info.title).arg(app.info.version)
        }

        Component.onCompleted: app.settings.setValue("started", new Date().toISOString())
    }
    \endqml

    The variables in the object "environment" of \c appinfo.json are set in the process before the
    item is complete; they replace those of the same name.
*/

/*!
    \qmlproperty FileFolder App::folder
    \readonly
    The folder of the app's document. It is read-only and its path can't be changed.
*/

/*!
    \qmlproperty AppInfo App::info
    \readonly
    The app's metadata.
*/

/*!
    \qmlproperty Settings App::settings
    \readonly
    The app's settings: a JSON file outside of its folder, which survives an update of the app. It
    is named after the item id, or after the app's folder if it has no item id. Null if the item id
    isn't a plain file name.
*/

/*!
    \qmlproperty list<AppDependency> App::dependencies
    \readonly
    The items that the app declares in the key "dependencies" of \c appinfo.json.
*/

/*!
    \qmlproperty list<string> App::arguments
    \readonly
    The command line of the process. Empty, with a warning, for an App that isn't in the document
    that the host loaded.
*/

/*!
    \qmlproperty enumeration App::backButtonAction
    What a host is to do at the device's back button. It has no change signal.

    \value App.BackButtonQuit   leave the app (default)
    \value App.BackButtonSignal emit backButtonClicked()
    \value App.BackButtonIgnore nothing
*/

/*!
    \qmlmethod AppDependency App::dependency(string name)
    The dependency of that \a name, without regard to case; null if there is none.

    This doesn't read the metadata by itself. A binding, which is evaluated before the item is
    complete, has to read \l dependencies or \l info first:

    \badcode
    readonly property AppDependency basemap: dependencies.length > 0 ? dependency("basemap") : null
    \endcode
*/

/*!
    \qmlmethod AppDependency App::dependency(string propertyName, string value)
    The first dependency with that \a value in the property \a propertyName, without regard to
    case; null if there is none.

    \badcode
    dependency("itemId", "4d3c2b1a")
    \endcode
*/

/*!
    \qmlsignal App::openUrl(url url)
    The host asks the app to open \a url.
*/

/*!
    \qmlsignal App::backButtonClicked()
    The host saw the device's back button, and \l backButtonAction is \c App.BackButtonSignal.
*/

/*!
    \qmlsignal App::colorChanged()
    For documents that announce a new background; the item itself doesn't emit it.
*/

namespace {

QStringList itemIds(const QVariantList &dependencies)
{
    QStringList ids;
    for (const QVariant &dependency : dependencies)
        ids.append(dependency.toMap().value(QStringLiteral("itemId")).toString());
    return ids;
}

} // namespace

App::App(QQuickItem *parent)
    : QQuickPaintedItem(parent)
{
    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO;
    setRenderTarget(QQuickPaintedItem::FramebufferObject);
    setFillColor(QColor(QStringLiteral("white")));
    connect(this, &App::openUrl, this, &App::onOpenUrl);
}

App::~App()
{
    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO;
}

void App::paint(QPainter *painter)
{
    Q_UNUSED(painter)
}

void App::classBegin()
{
    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO;
    QQuickPaintedItem::classBegin();
}

// The environment is in place before the item counts as complete.
void App::componentComplete()
{
    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO;
    initializeEnvironment();
    QQuickPaintedItem::componentComplete();
}

void App::initializeEnvironment()
{
    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO;
    if (const AppInfo *appInfo = info())
        Environment::setValues(appInfo->appInfoValue(QStringLiteral("environment")).toMap(), true);
}

FileFolder *App::folder()
{
    if (m_folder)
        return m_folder;
    const QQmlContext *context = qmlContext(this);
    if (!context) {
        qCCritical(FRAMEWORK_CORE) << Q_FUNC_INFO << "No context";
        return nullptr;
    }

    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO << "baseUrl" << context->baseUrl();
    const QString document = FileUtility::resolvedPath(context->baseUrl(), true);
    m_folder = new FileFolder(QFileInfo(document).path(), this);
    m_folder->setConstant(true);
    m_folder->setReadOnly(true);
    return m_folder;
}

AppInfo *App::info()
{
    if (m_info)
        return m_info;
    const QQmlContext *context = qmlContext(this);
    if (!context) {
        qCCritical(FRAMEWORK_CORE) << Q_FUNC_INFO << "No context";
        return nullptr;
    }

    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO << "baseUrl" << context->baseUrl();
    m_info = new AppInfo(context->baseUrl(), this);
    makeDependencies();
    return m_info;
}

void App::makeDependencies()
{
    const QVariantList list = m_info->dependencies();
    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO << itemIds(list).join(QStringLiteral(", "));
    for (const QVariant &element : list) {
        const QVariantMap map = element.toMap();
        if (map.isEmpty())
            continue;
        auto *dependency = new AppDependency(map, this);
        if (dependency->isValid())
            m_dependencies.append(dependency);
    }
}

Settings *App::settings()
{
    if (m_settings)
        return m_settings;
    if (!info()) {
        qCCritical(FRAMEWORK_CORE) << Q_FUNC_INFO << "Null info";
        return nullptr;
    }
    const QString fileName = settingsFileName();
    if (fileName.isEmpty()) {
        qCCritical(FRAMEWORK_CORE) << Q_FUNC_INFO << "Empty fileName";
        return nullptr;
    }

    const QString path = AppInfoList(nullptr).folderDir(AppInfoList::Settings).filePath(fileName);
    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO << path;
    m_settings = new Settings(path, Settings::jsonFormat(), this);
    return m_settings;
}

// Empty for an item id that would lead out of the settings folder.
QString App::settingsFileName()
{
    const QString itemId = info()->itemId();
    if (!staysInFolder(itemId)) {
        qCCritical(FRAMEWORK_CORE) << Q_FUNC_INFO << "Invalid item id" << itemId;
        return QString();
    }
    return (itemId.isEmpty() ? info()->dir().dirName() : itemId) + QLatin1String(".json");
}

QQmlListProperty<AppDependency> App::dependencies()
{
    info();
    return QQmlListProperty<AppDependency>(this, nullptr, &App::dependencyCount,
                                           &App::dependencyAt);
}

int App::dependencyCount(QQmlListProperty<AppDependency> *list)
{
    return static_cast<App *>(list->object)->m_dependencies.size();
}

AppDependency *App::dependencyAt(QQmlListProperty<AppDependency> *list, int index)
{
    return static_cast<App *>(list->object)->m_dependencies.value(index);
}

QStringList App::arguments() const
{
    const QQmlContext *context = qmlContext(this);
    if (!context || context->parentContext() != qmlEngine(this)->rootContext()) {
        qCWarning(FRAMEWORK_CORE) << Q_FUNC_INFO << "App is not the root object";
        return QStringList();
    }
    return QCoreApplication::arguments();
}

AppDependency *App::dependency(const QString &value) const
{
    return dependency(QStringLiteral("name"), value);
}

AppDependency *App::dependency(const QString &propertyName, const QString &value) const
{
    const QByteArray name = propertyName.toLatin1();
    for (AppDependency *dependency : m_dependencies) {
        const QString text = dependency->property(name.constData()).toString();
        if (text.compare(value, Qt::CaseInsensitive) == 0)
            return dependency;
    }
    return nullptr;
}

void App::onOpenUrl(const QUrl &url)
{
    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO << url;
}

#include "moc_App.cpp"
