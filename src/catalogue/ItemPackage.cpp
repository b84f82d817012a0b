#include "catalogue/ItemPackage.h"

#include "catalogue/AppInfoList.h"
#include "plugin/FileUtility.h"
#include "plugin/PathComponent.h"
#include "plugin/PropertyHelper.h"
#include "plugin/TessalineDebug.h"
#include "plugin/TessalineError.h"

#include <QQmlEngine>

namespace {

// Belongs to nobody, as what a portal reports.
TessalineError *folderError(const QString &message, const QString &details)
{
    return new TessalineError(message, details, nullptr);
}

// A tile package is written where exists() finds it, from the first byte on. This file in the cache
// tells until the last byte that it isn't whole.
QString markPath(const QDir &packages, const QString &itemId)
{
    return packages.filePath(itemId + QLatin1String(".incomplete"));
}

} // namespace

/*!
    \qmltype ItemPackage
    \inqmlmodule Zemrik.Tessaline
    \brief Downloads one portal item that isn't an app.

    \badcode
    ItemPackage {
        id: item
        portal: portal
        onDownloadComplete: console.log("done")
        onDownloadError: console.warn(error.message)
    }

    Button {
        text: "Download"
        enabled: item.status !== ItemPackage.Downloading
        onClicked: item.download("0123456789abcdef0123456789abcdef")
    }
    \endcode

    A tile package becomes the file \e{Data/id/name}. Any other item is unpacked in the cache, where
    \l exists() doesn't find it. Failures other than a portal's own error leave \l status at
    \c Downloading: set a time limit of your own, and retry with a fresh object.
*/

/*!
    \qmlproperty string ItemPackage::itemId
    The item; \l download() sets it. Its change signal isn't emitted.
*/

/*!
    \qmlproperty object ItemPackage::portal
    The portal to download from: a \c Portal that declares \c{property url url: portalUrl} inline.
*/

/*!
    \qmlproperty enumeration ItemPackage::status
    \readonly
    \c Null, \c Downloading or \c Ready.
*/

/*!
    \qmlmethod bool ItemPackage::exists(string itemId)
    Returns whether the folder of \a itemId lies in the Data folder; after the download of a module,
    in the Modules folder. An empty id asks about that folder itself.
*/

/*!
    \qmlmethod void ItemPackage::download(string itemId)
    Starts the download of \a itemId. One that runs already starts anew.
*/

/*!
    \qmlsignal ItemPackage::downloadStarted()
    The item's information has come and its data are on their way.
*/

/*!
    \qmlsignal ItemPackage::downloadComplete()
    The item is on disk.
*/

/*!
    \qmlsignal ItemPackage::downloadProgress(int percentage, int secondsRemainingEstimate)
    \a percentage runs from 0 to 100 for each step of the download; \a secondsRemainingEstimate is
    always 0.
*/

/*!
    \qmlsignal ItemPackage::downloadError(TessalineError error)
    The portal refused, or a folder could not be made: \a error says which.
*/

ItemPackage::ItemPackage(QObject *parent)
    : TessalineObject(parent)
    , m_path(AppInfoList(nullptr).folderDir(AppInfoList::Data).path())
    , m_portalObject(nullptr)
{
    using Request = PortalPackageRequest;
    connect(&m_packageRequest, &Request::itemInfoReady, this, &ItemPackage::onPackageItemInfoReady);
    connect(&m_packageRequest, &Request::dataReady, this, &ItemPackage::onPackageDataReady);
    connect(&m_packageRequest, &Request::ready, this, &ItemPackage::onPackageReady);
    connect(&m_packageRequest, &Request::progress, this, &ItemPackage::onPackageProgress);
    connect(&m_packageRequest, &Request::error, this, &ItemPackage::onPackageError);
}

void ItemPackage::_setPortal(QObject *portal)
{
    if (portal == m_portalObject.portal())
        return;
    m_portalObject.setPortal(portal);
    emit portalChanged();
}

void ItemPackage::setStatus(Status status)
{
    if (assignIfChanged(m_status, status))
        emit statusChanged();
}

void ItemPackage::setNetworkAccessManager(QNetworkAccessManager *manager)
{
    m_packageRequest.setNetworkAccessManager(manager);
}

void ItemPackage::cancel()
{
    m_packageRequest.cancel();
}

bool ItemPackage::isIncomplete(const QDir &packages, const QString &itemId)
{
    return QFile::exists(markPath(packages, itemId));
}

bool ItemPackage::exists(const QString &itemId)
{
    qCDebug(FRAMEWORK_PACKAGE) << Q_FUNC_INFO << itemId;
    if (!staysInFolder(itemId)) {
        qCCritical(FRAMEWORK_PACKAGE) << Q_FUNC_INFO << "Not an item id:" << itemId;
        return false;
    }
    return QDir(QDir(m_path).filePath(itemId)).exists();
}

void ItemPackage::download(const QString &itemId)
{
    qCDebug(FRAMEWORK_PACKAGE) << Q_FUNC_INFO << itemId;
    m_itemId = itemId;
    m_packageRequest.setPortal(&m_portalObject);
    m_packageRequest.packageFolder = AppInfoList(nullptr).cacheDir(AppInfoList::Packages);
    setStatus(Downloading);
    m_packageRequest.request(itemId, true);
}

void ItemPackage::classBegin()
{
    qCDebug(FRAMEWORK_PACKAGE) << Q_FUNC_INFO;
}

void ItemPackage::componentComplete()
{
    qCDebug(FRAMEWORK_PACKAGE) << Q_FUNC_INFO;
    if (QQmlEngine *engine = qmlEngine(this))
        setNetworkAccessManager(engine->networkAccessManager());
}

void ItemPackage::onPackageItemInfoReady()
{
    const QVariantMap &info = m_packageRequest.itemInfo;
    m_title = info.value(QStringLiteral("title")).toString();
    qCDebug(FRAMEWORK_PACKAGE) << Q_FUNC_INFO << info;
    const QString type = info.value(QStringLiteral("type")).toString();
    const QStringList keywords = info.value(QStringLiteral("typeKeywords")).toStringList();
    const QStringList tags = info.value(QStringLiteral("tags")).toStringList();
    const QString data = QStringLiteral("Data");
    m_isData =
        keywords.contains(data, Qt::CaseInsensitive) || tags.contains(data, Qt::CaseInsensitive);
    m_isTilePackage = type.compare(QLatin1String("Tile Package"), Qt::CaseInsensitive) == 0;
    qCDebug(FRAMEWORK_PACKAGE) << Q_FUNC_INFO << "isData=" << (m_isData ? "true" : "false")
                               << "isTilePackage" << (m_isTilePackage ? "true" : "false");

    QDir folder;
    QString fileName;
    if (!chooseFolder(tags, folder, fileName))
        return;
    setStatus(Downloading);
    m_packageRequest.packageFolder = folder;
    m_packageRequest.packageFileName = fileName;
    m_packageRequest.outputFolder = folder;
    m_packageRequest.requestData(!m_isTilePackage);
    emit downloadStarted();
}

// False, with downloadError(), where a tile package's folder can't be made or its file's name would
// lead elsewhere.
bool ItemPackage::chooseFolder(const QStringList &tags, QDir &folder, QString &fileName)
{
    AppInfoList folders(nullptr);
    if (!m_isTilePackage) {
        folder = folders.cacheDir(AppInfoList::Packages);
        if (tags.contains(QStringLiteral("Module"), Qt::CaseInsensitive)) {
            m_path = folders.folderDir(AppInfoList::Modules).path();
            qCDebug(FRAMEWORK_PACKAGE) << Q_FUNC_INFO << "Module:" << m_path;
        }
        return true;
    }

    // Refused here, before downloadStarted(): whoever waits for it would take that for progress
    // after the error.
    fileName = m_packageRequest.itemInfo.value(QStringLiteral("name")).toString();
    for (const QString &name : {m_itemId, fileName}) { // itemId may have been written since
        if (staysInFolder(name))
            continue;
        qCCritical(FRAMEWORK_PACKAGE) << Q_FUNC_INFO << "Not a file name:" << name;
        emit downloadError(folderError(QStringLiteral("Not a file name:"), name));
        return false;
    }
    m_mark = markPath(folders.cacheDir(AppInfoList::Packages), m_itemId);
    QFile(m_mark).open(QIODevice::WriteOnly);
    folder = QDir(QDir(m_path).filePath(m_itemId));
    if (!FileUtility::mkpath(folder)) {
        qCCritical(FRAMEWORK_PACKAGE) << Q_FUNC_INFO << "Unable to create:" << folder;
        emit downloadError(folderError(QStringLiteral("Error creating:"), folder.path()));
        return false;
    }
    return true;
}

void ItemPackage::onPackageDataReady()
{
    if (m_isTilePackage)
        QFile::remove(m_mark);
}

void ItemPackage::onPackageReady()
{
    setStatus(Ready);
    emit downloadComplete();
}

void ItemPackage::onPackageProgress(double progress)
{
    emit downloadProgress(int(progress * 100), 0);
}

void ItemPackage::onPackageError(TessalineError *error)
{
    qCDebug(FRAMEWORK_PACKAGE) << Q_FUNC_INFO << error->message();
    emit downloadError(error);
}

#include "moc_ItemPackage.cpp"
