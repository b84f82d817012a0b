#include "catalogue/AppPackage.h"

#include "catalogue/AppInfoList.h"
#include "plugin/PropertyHelper.h"
#include "plugin/TessalineDebug.h"

#include <QFileInfo>
#include <QQmlEngine>

/*!
    \qmltype AppPackage
    \inqmlmodule Zemrik.Tessaline
    \brief Downloads one app with all that it depends on.

    \badcode
    AppPackage {
        id: appPackage
        portal: portal
        appInfo: catalogue.apps[0]
        onProgress: bar.value = percentage
        onStatusChanged: {
            if (status === ItemPackage.Ready)
                Tessaline.clearComponentCache();
            else if (status === ItemPackage.Error)
                console.warn(error.message);
        }
    }

    Button {
        text: "Download"
        onClicked: appPackage.download()
    }
    \endcode

    \l download() fetches the app and then, one at a time and in their order, the dependencies that
    aren't on this machine. A failure other than a portal's own error leaves \l status at
    \c{ItemPackage.Downloading}: take a time without \l progress as a failure, and retry with a
    fresh object.
*/

/*!
    \qmlproperty AppInfo AppPackage::appInfo
    The app, as a copy of its own. Writing it sets \l status back to \c{ItemPackage.Null} and drops
    a download that is under way.
*/

/*!
    \qmlproperty object AppPackage::portal
    The portal to download from: a \c Portal that declares \c{property url url: portalUrl} inline.
*/

/*!
    \qmlproperty enumeration AppPackage::status
    \readonly
    \c{ItemPackage.Null}, \c{ItemPackage.Downloading}, \c{ItemPackage.Ready} or
    \c{ItemPackage.Error}.
*/

/*!
    \qmlproperty string AppPackage::statusMessage
    \readonly
    Which dependency is on its way. Keeps its last text.
*/

/*!
    \qmlproperty TessalineError AppPackage::error
    \readonly
    What went wrong, at the status \c{ItemPackage.Error}.
*/

/*!
    \qmlmethod void AppPackage::download()
    Starts the download. One that runs already starts anew; an app that is there already is
    overwritten in place, and files that are no longer in the package stay.
*/

/*!
    \qmlsignal AppPackage::progress(int percentage, int secondsRemainingEstimate)
    \a percentage runs from 0 to 100 for each step; \a secondsRemainingEstimate is always 0.
*/

AppPackage::AppPackage(QObject *parent)
    : TessalineObject(parent)
    , m_appInfo(this)
    , m_portalObject(nullptr)
{
    using Request = PortalPackageRequest;
    connect(&m_packageRequest, &Request::itemInfoReady, this, &AppPackage::onPackageItemInfoReady);
    connect(&m_packageRequest, &Request::dataReady, this, &AppPackage::onPackageDataReady);
    connect(&m_packageRequest, &Request::ready, this, &AppPackage::onPackageReady);
    connect(&m_packageRequest, &Request::progress, this, &AppPackage::onPackageProgress);
    connect(&m_packageRequest, &Request::error, this, &AppPackage::onPackageError);
    connect(&m_itemPackage, &ItemPackage::downloadStarted, this,
            &AppPackage::onItemDownloadStarted);
    connect(&m_itemPackage, &ItemPackage::downloadComplete, this,
            &AppPackage::onItemDownloadComplete);
    connect(&m_itemPackage, &ItemPackage::downloadProgress, this,
            &AppPackage::onItemDownloadProgress);
    connect(&m_itemPackage, &ItemPackage::downloadError, this, &AppPackage::onItemDownloadError);
}

void AppPackage::_setAppInfo(AppInfo *info)
{
    stop();
    m_appInfo.clear();
    if (!info) {
        qCDebug(FRAMEWORK_PACKAGE) << Q_FUNC_INFO << "Null app info";
    } else if (info->isLocal()) {
        setPath(info->path());
    } else {
        m_appInfo.clearAppInfo();
        m_appInfo.setItemInfo(info->itemInfo());
        setItemId(info->itemId());
    }
    emit appInfoChanged();
    setStatus(ItemPackage::Null);
    m_error.clear();
}

void AppPackage::_setPortal(QObject *portal)
{
    if (portal == m_portalObject.portal())
        return;
    m_portalObject.setPortal(portal);
    m_itemPackage._setPortal(portal);
    emit portalChanged();
}

void AppPackage::setPath(const QString &path)
{
    m_appInfo.clear();
    m_appInfo.setPath(path);
    const QString id = m_appInfo.itemId();
    // A folder named by its item id gives the right one even without the item's information.
    setItemId(id.isEmpty() ? QFileInfo(path).baseName() : id);
}

void AppPackage::setItemId(const QString &itemId)
{
    qCDebug(FRAMEWORK_PACKAGE) << Q_FUNC_INFO << itemId;
    m_itemId = itemId;
    QVariantMap item;
    if (AppInfoList(nullptr).findPortalItem(itemId, item)) {
        qCDebug(FRAMEWORK_PACKAGE) << Q_FUNC_INFO << "Updating appInfo status";
        m_appInfo.statusUpdate(item);
    }
}

void AppPackage::setStatus(ItemPackage::Status status)
{
    if (assignIfChanged(m_status, status))
        emit statusChanged();
}

void AppPackage::setStatusMessage(const QString &message)
{
    if (assignIfChanged(m_statusMessage, message))
        emit statusMessageChanged();
}

void AppPackage::classBegin()
{
    qCDebug(FRAMEWORK_PACKAGE) << Q_FUNC_INFO;
}

void AppPackage::componentComplete()
{
    if (QQmlEngine *engine = qmlEngine(this))
        m_packageRequest.setNetworkAccessManager(engine->networkAccessManager());
}

void AppPackage::download()
{
    qCDebug(FRAMEWORK_PACKAGE) << Q_FUNC_INFO << m_itemId;
    AppInfoList folders(nullptr);
    const QDir packages = folders.cacheDir(AppInfoList::Packages);
    const AppInfo::AppType type = m_appInfo.type();
    const QDir output = folders.folderDir(type == AppInfo::Template ? AppInfoList::Templates
                                          : type == AppInfo::Tool   ? AppInfoList::Tools
                                                                    : AppInfoList::Apps);
    qCDebug(FRAMEWORK_PACKAGE) << Q_FUNC_INFO << "packages" << packages << "output" << output;
    stop();
    m_error.clear();
    setStatus(ItemPackage::Downloading);
    m_packageRequest.setPortal(&m_portalObject);
    m_packageRequest.packageFolder = packages;
    m_packageRequest.outputFolder = output;
    m_packageRequest.request(m_itemId, false);
}

// Ends what is under way: its signals would be taken for those of the next download.
void AppPackage::stop()
{
    ++m_run;
    m_packageRequest.cancel();
    m_itemPackage.cancel();
    m_dependencyRuns = false;
}

void AppPackage::onPackageItemInfoReady() {}

void AppPackage::onPackageDataReady() {}

void AppPackage::onPackageReady()
{
    const QString folder = m_packageRequest.outputFolder.filePath(m_itemId);
    qCDebug(FRAMEWORK_PACKAGE) << Q_FUNC_INFO << folder;
    m_appInfo.setPath(folder);
    m_appInfo.readAppInfo();
    const int run = m_run;
    emit appInfoChanged();
    if (run != m_run)
        return;
    qCDebug(FRAMEWORK_PACKAGE) << Q_FUNC_INFO << m_appInfo.title()
                               << "dependencies:" << m_appInfo.dependencies();
    m_dependencyIndex = 0;
    checkDependencies();
}

void AppPackage::onPackageProgress(double value)
{
    emit progress(int(value * 100), 0);
}

void AppPackage::onPackageError(TessalineError *error)
{
    qCDebug(FRAMEWORK_PACKAGE) << Q_FUNC_INFO << error->message();
    fail(*error);
}

// Goes on until a download has started or nothing is left.
void AppPackage::checkDependencies()
{
    // Asked for once: each answer is a list that is built anew.
    const QVariantList dependencies = m_appInfo.dependencies();
    while (m_dependencyIndex < dependencies.size()) {
        const QVariantMap dependency = dependencies.at(m_dependencyIndex).toMap();
        ++m_dependencyIndex;
        const QString id = dependency.value(QStringLiteral("itemId")).toString();
        if (id.isEmpty()) {
            qCWarning(FRAMEWORK_PACKAGE)
                << Q_FUNC_INFO << "No itemId property" << m_dependencyIndex << dependency;
            continue;
        }
        if (m_itemPackage.exists(id)
            && !ItemPackage::isIncomplete(m_packageRequest.packageFolder, id))
            continue;
        m_dependencyRuns = true;
        m_itemPackage.download(id);
        return;
    }
    setStatus(ItemPackage::Ready);
}

void AppPackage::onItemDownloadStarted()
{
    if (!m_dependencyRuns)
        return;
    qCDebug(FRAMEWORK_PACKAGE) << Q_FUNC_INFO << m_itemPackage.title();
    const int run = m_run;
    setStatusMessage(tr("Downloading dependency %1 of %2\r\n%3")
                         .arg(m_dependencyIndex)
                         .arg(m_appInfo.dependencies().size())
                         .arg(m_itemPackage.title()));
    if (run == m_run)
        setStatus(ItemPackage::Downloading);
}

void AppPackage::onItemDownloadComplete()
{
    if (!m_dependencyRuns)
        return;
    m_dependencyRuns = false;
    qCDebug(FRAMEWORK_PACKAGE) << Q_FUNC_INFO;
    checkDependencies();
}

void AppPackage::onItemDownloadProgress(int percentage, int secondsRemainingEstimate)
{
    if (!m_dependencyRuns)
        return;
    qCDebug(FRAMEWORK_PACKAGE) << Q_FUNC_INFO << percentage << "%";
    emit progress(percentage, secondsRemainingEstimate);
}

void AppPackage::onItemDownloadError(TessalineError *error)
{
    if (!m_dependencyRuns)
        return;
    qCDebug(FRAMEWORK_PACKAGE) << Q_FUNC_INFO << error->message();
    fail(*error);
}

void AppPackage::fail(const TessalineError &error)
{
    const int run = m_run;
    m_error.setError(error);
    emit errorChanged();
    if (run == m_run)
        setStatus(ItemPackage::Error);
}

#include "moc_AppPackage.cpp"
