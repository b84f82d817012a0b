#include "portal/PortalPackageRequest.h"

#include "archives/UnZipFile.h"
#include "plugin/FileUtility.h"
#include "plugin/JsonUtility.h"
#include "plugin/PathComponent.h"
#include "plugin/TessalineDebug.h"
#include "plugin/TessalineError.h"
#include "portal/PortalObject.h"

#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QNetworkAccessManager>
#include <QPixmap>
#include <QScopedValueRollback>

namespace {

const QLatin1String itemInfoFile("iteminfo.json");
const QLatin1String thumbnailKey("thumbnail");
const qint64 maximumThumbnailPixels = 64'000'000;

// What the picture's own header claims is looked at before memory is taken for it.
bool isTooLarge(const QString &path)
{
    const QSize size = QImageReader(path).size();
    return qint64(size.width()) * size.height() > maximumThumbnailPixels;
}

// Belongs to nobody, as what a portal reports.
TessalineError *nameError(const QString &name)
{
    return new TessalineError(QStringLiteral("Not a file name:"), name, nullptr);
}

} // namespace

PortalPackageRequest::PortalPackageRequest(QObject *parent)
    : QObject(parent)
    , m_itemInfoRequest(makeInfoRequest())
    , m_dataRequest(makeFileRequest(&PortalPackageRequest::onDataCompleted))
    , m_thumbnailRequest(makeFileRequest(&PortalPackageRequest::onThumbnailCompleted))
    , m_defaultThumbnail(QStringLiteral(":/images/defaultThumbnail.png"))
{
}

PortalRequest *PortalPackageRequest::makeInfoRequest()
{
    PortalRequest *request = makeRequest();
    request->setResponseType(QStringLiteral("json"));
    connect(request, qOverload<QVariantMap>(&PortalRequest::completed), this,
            &PortalPackageRequest::onItemInfoCompleted);
    return request;
}

PortalRequest *PortalPackageRequest::makeFileRequest(void (PortalPackageRequest::*onCompleted)())
{
    PortalRequest *request = makeRequest();
    connect(request, qOverload<>(&PortalRequest::completed), this, onCompleted);
    return request;
}

PortalRequest *PortalPackageRequest::makeRequest()
{
    auto *request = new PortalRequest(this);
    if (m_manager)
        request->setNetworkAccessManager(m_manager);
    request->setMethod(QStringLiteral("POST"));
    connect(request, &NetworkRequest::progressChanged, this,
            &PortalPackageRequest::onProgressChanged);
    connect(request, qOverload<TessalineError *>(&PortalRequest::error), this,
            &PortalPackageRequest::onError);
    return request;
}

// A request that is under way can't be sent again, nor one whose signal led here at the start of its
// sending: a new one takes its place, so that a second download starts anew and what comes of the
// first one reaches nobody.
void PortalPackageRequest::dropRunningRequests()
{
    const auto replace = [this](PortalRequest *&request, const auto &make) {
        const NetworkRequest::ReadyState state = request->readyState();
        if (state != NetworkRequest::ReadyStateSending
            && state != NetworkRequest::ReadyStateProcessing && request != m_sending)
            return;
        request->disconnect(this);
        request->deleteLater();
        request = make();
    };
    replace(m_itemInfoRequest, [this] { return makeInfoRequest(); });
    replace(m_dataRequest,
            [this] { return makeFileRequest(&PortalPackageRequest::onDataCompleted); });
    replace(m_thumbnailRequest,
            [this] { return makeFileRequest(&PortalPackageRequest::onThumbnailCompleted); });
}

void PortalPackageRequest::setNetworkAccessManager(QNetworkAccessManager *manager)
{
    m_manager = manager;
    m_itemInfoRequest->setNetworkAccessManager(manager);
    m_dataRequest->setNetworkAccessManager(manager);
    m_thumbnailRequest->setNetworkAccessManager(manager);
}

void PortalPackageRequest::cancel()
{
    ++m_run;
    dropRunningRequests();
}

void PortalPackageRequest::request(const QString &itemId, bool infoOnly)
{
    cancel();
    m_itemId = itemId;
    m_infoOnly = infoOnly;
    if (refuses(itemId))
        return;
    m_itemUrl = m_portal->restUrl() + QLatin1String("/content/items/") + itemId;
    m_startTime = QDateTime::currentDateTime();
    requestItemInfo();
}

// An id or a file name of a portal becomes a part of a path: it must not lead elsewhere. An empty
// one stays as it is.
bool PortalPackageRequest::refuses(const QString &name)
{
    if (staysInFolder(name))
        return false;
    qCCritical(FRAMEWORK_PACKAGE) << Q_FUNC_INFO << "Not a file name:" << name;
    emit error(nameError(name));
    return true;
}

void PortalPackageRequest::requestItemInfo()
{
    m_itemInfoRequest->setPortal(m_portal);
    m_itemInfoRequest->setUrl(QUrl(m_itemUrl));
    send(m_itemInfoRequest, QStringLiteral("pjson"));
}

void PortalPackageRequest::send(PortalRequest *request, const QString &format)
{
    const QScopedValueRollback<PortalRequest *> sending(m_sending, request);
    request->send(QVariant(m_portal->defaultParams(format)));
}

void PortalPackageRequest::onItemInfoCompleted(const QVariantMap &response)
{
    qCDebug(FRAMEWORK_PACKAGE) << Q_FUNC_INFO << response;
    itemInfo = response;
    const int run = m_run;
    emit itemInfoReady();
    if (run == m_run && !m_infoOnly)
        requestData(true);
}

void PortalPackageRequest::requestData(bool unpack)
{
    m_unpackData = unpack;
    const QString name =
        packageFileName.isEmpty() ? m_itemId + QLatin1String(".zip") : packageFileName;
    if (refuses(name))
        return;
    m_dataRequest->setPortal(m_portal);
    m_dataRequest->setUrl(QUrl(m_itemUrl + QLatin1String("/data")));
    m_dataRequest->setResponsePath(packageFolder.filePath(name));
    qCDebug(FRAMEWORK_PACKAGE) << Q_FUNC_INFO << m_dataRequest->responsePath();
    send(m_dataRequest, QString());
}

void PortalPackageRequest::onDataCompleted()
{
    const QString path = m_dataRequest->responsePath();
    qCDebug(FRAMEWORK_PACKAGE) << Q_FUNC_INFO << path;
    if (m_unpackData ? !unpack(path) : !isComplete(path))
        return;
    saveItemInfo();
    const int run = m_run;
    emit dataReady();
    if (run == m_run)
        requestThumbnail();
}

// A connection that breaks in the middle of the body has the status 200 all the same. What is cut off
// is no archive, but a file that nobody unpacks would pass for the whole one, so it goes.
bool PortalPackageRequest::isComplete(const QString &path) const
{
    if (m_dataRequest->errorCode() == 0)
        return true;
    qCCritical(FRAMEWORK_PACKAGE) << Q_FUNC_INFO << "Download incomplete:" << path;
    QFile::remove(path);
    return false;
}

bool PortalPackageRequest::unpack(const QString &packagePath)
{
    QDir target(outputFolder.filePath(m_itemId));
    if (!FileUtility::mkpath(target)) {
        qCCritical(FRAMEWORK_PACKAGE) << Q_FUNC_INFO << "Unable to create:" << target;
        return false;
    }
    qCDebug(FRAMEWORK_PACKAGE) << Q_FUNC_INFO << "Unpackaging to:" << target;
    UnZipFile package;
    if (!package.open(packagePath)) {
        qCCritical(FRAMEWORK_PACKAGE) << Q_FUNC_INFO << "Error opening package:" << packagePath;
        return false;
    }
    if (FRAMEWORK_PACKAGE().isDebugEnabled())
        qCDebug(FRAMEWORK_PACKAGE)
            << Q_FUNC_INFO << "Package files:" << package.entryList().join(QLatin1String(", "));
    if (!package.extractAll(target)) {
        qCCritical(FRAMEWORK_PACKAGE)
            << Q_FUNC_INFO << "Error extracting from package:" << packagePath;
        return false;
    }
    package.close();
    if (!QFile::remove(packagePath))
        qCWarning(FRAMEWORK_PACKAGE) << Q_FUNC_INFO << "Error removing package:" << packagePath;
    return true;
}

QString PortalPackageRequest::outputPath(const QString &fileName) const
{
    // Joined in two steps: an empty id must not make the path absolute.
    return QDir(outputFolder.filePath(m_itemId)).filePath(fileName);
}

QString PortalPackageRequest::thumbnailText() const
{
    return itemInfo.value(thumbnailKey).toString();
}

void PortalPackageRequest::saveItemInfo()
{
    const QString path = outputPath(itemInfoFile);
    qCDebug(FRAMEWORK_PACKAGE) << Q_FUNC_INFO << "Writing" << path;
    JsonUtility::writeFile(path, itemInfo);
    const QDateTime time =
        QDateTime::fromMSecsSinceEpoch(itemInfo.value(QStringLiteral("modified")).toLongLong());
    if (!FileUtility::setDateTime(path, time, time))
        qCWarning(FRAMEWORK_PACKAGE) << Q_FUNC_INFO << "Error setting date/time" << path << time;
}

void PortalPackageRequest::requestThumbnail()
{
    const QString thumbnail = thumbnailText();
    if (thumbnail.isEmpty()) {
        finish();
        return;
    }
    const QFileInfo info(thumbnail);
    const QString fileName = QLatin1String("thumbnail.") + info.suffix();
    if (refuses(fileName))
        return;
    if (info.baseName() != thumbnailKey) {
        itemInfo.insert(thumbnailKey, QString(QLatin1String("thumbnail/") + fileName));
        saveItemInfo();
    }
    m_thumbnailRequest->setPortal(m_portal);
    m_thumbnailRequest->setUrl(QUrl(m_itemUrl + QLatin1String("/info/") + thumbnail));
    m_thumbnailRequest->setResponsePath(outputPath(fileName));
    send(m_thumbnailRequest, QString());
}

void PortalPackageRequest::onThumbnailCompleted()
{
    qCDebug(FRAMEWORK_PACKAGE) << Q_FUNC_INFO << m_thumbnailRequest->responsePath();
    const QString thumbnail = thumbnailText();
    if (!thumbnail.isEmpty() && QFileInfo(thumbnail).suffix() == QLatin1String("jpg"))
        convertThumbnail();
    finish();
}

void PortalPackageRequest::finish()
{
    const int run = m_run;
    emit thumbnailReady();
    if (run == m_run)
        emit ready();
}

// The catalogue looks for thumbnail.png only.
void PortalPackageRequest::convertThumbnail()
{
    const QString source =
        outputPath(QLatin1String("thumbnail.") + QFileInfo(thumbnailText()).suffix());
    QPixmap picture;
    if (isTooLarge(source) || !picture.load(source)) {
        qCCritical(FRAMEWORK_PACKAGE) << Q_FUNC_INFO << "Thumbnail load failed" << source;
        return;
    }
    if (!picture.save(outputPath(QStringLiteral("thumbnail.png")), "PNG", -1)) {
        qCCritical(FRAMEWORK_PACKAGE) << Q_FUNC_INFO << "Thumbnail convert failed" << source;
        return;
    }
    itemInfo.insert(thumbnailKey, QStringLiteral("thumbnail/thumbnail.png"));
    saveItemInfo();
    if (!QFile(source).remove())
        qCCritical(FRAMEWORK_PACKAGE) << Q_FUNC_INFO << "Thumbnail delete failed" << source;
}

void PortalPackageRequest::onProgressChanged()
{
    const auto *request = qobject_cast<PortalRequest *>(sender());
    qCDebug(FRAMEWORK_PACKAGE) << Q_FUNC_INFO << request;
    if (request)
        emit progress(request->progress());
}

void PortalPackageRequest::onError(TessalineError *failure)
{
    qCDebug(FRAMEWORK_PACKAGE) << Q_FUNC_INFO << failure->message();
    emit error(failure);
}

#include "moc_PortalPackageRequest.cpp"
