#pragma once

#include "plugin/TessalineGlobal.h"
#include "portal/PortalRequest.h"

#include <QDateTime>
#include <QDir>
#include <QObject>
#include <QPointer>
#include <QVariantMap>

class PortalObject;
class QNetworkAccessManager;
class TessalineError;

// Fetches one portal item to disk in three steps, its information, its data, its thumbnail, and
// unpacks the data into a folder of the item's own. A successful run emits itemInfoReady(),
// dataReady(), thumbnailReady(), ready(), in that order. error() comes for a portal's JSON error,
// and for an id or a file name that would leave the folders; whatever else fails is logged and ends
// the chain in silence: who waits for it sets a limit of its own.
//
// The owner sets the folders first. request() may be called again at any time: a chain that is
// under way is dropped.
class TESSALINE_EXPORT PortalPackageRequest : public QObject
{
    Q_OBJECT

public:
    explicit PortalPackageRequest(QObject *parent = nullptr);

    void setNetworkAccessManager(QNetworkAccessManager *manager);
    void setPortal(PortalObject *portal) { m_portal = portal; } // not owned

    // With `infoOnly` the chain stops after itemInfoReady(); requestData() continues it.
    void request(const QString &itemId, bool infoOnly);
    void requestData(bool unpack);
    // Drops a chain that is under way: what comes of it reaches nobody.
    void cancel();

    QDir packageFolder;      // where the download goes
    QString packageFileName; // its name; empty for the item id with ".zip"
    QDir outputFolder;       // where the item's own folder is made
    QVariantMap itemInfo;    // the answer of the item request

signals:
    void progress(double progress); // 0 to 1, once for each of the three steps
    void itemInfoReady();
    void dataReady();
    void thumbnailReady();
    void ready();
    void error(TessalineError *error);

private slots:
    void onDataCompleted();
    void onItemInfoCompleted(const QVariantMap &response);
    void onThumbnailCompleted();
    void onProgressChanged();
    void onError(TessalineError *error);

private:
    PortalRequest *makeInfoRequest();
    PortalRequest *makeFileRequest(void (PortalPackageRequest::*onCompleted)());
    PortalRequest *makeRequest();
    bool refuses(const QString &name);
    void requestItemInfo();
    void send(PortalRequest *request, const QString &format);
    void requestThumbnail();
    bool isComplete(const QString &path) const;
    bool unpack(const QString &packagePath);
    void saveItemInfo();
    void convertThumbnail();
    void finish();
    QString outputPath(const QString &fileName) const;
    QString thumbnailText() const;

    void dropRunningRequests();

    QPointer<QNetworkAccessManager> m_manager; // none: each request makes its own
    PortalRequest *m_itemInfoRequest;
    PortalRequest *m_dataRequest;
    PortalRequest *m_thumbnailRequest;
    PortalRequest *m_sending = nullptr;
    QString m_defaultThumbnail; // no step reads it
    PortalObject *m_portal = nullptr;
    QString m_itemId;
    QDateTime m_startTime;
    QString m_itemUrl;
    int m_run = 0; // tells after a signal whether its handler has started another run
    bool m_infoOnly = false;
    bool m_unpackData = true;
};
