#pragma once

#include "plugin/TessalineObject.h"
#include "portal/PortalObject.h"
#include "portal/PortalPackageRequest.h"

#include <QQmlParserStatus>

class QNetworkAccessManager;

// Downloads one portal item that isn't an app. QML name: ItemPackage.
//
// A tile package becomes Data/<id>/<name>; any other item is unpacked into the cache, where
// exists() doesn't look. downloadError() comes for a portal's JSON error and a folder that can't be
// made; other failures leave the status at Downloading without a signal.
class TESSALINE_EXPORT ItemPackage : public TessalineObject, public QQmlParserStatus
{
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    Q_PROPERTY(QString itemId READ itemId WRITE setItemId NOTIFY itemIdChanged)
    Q_PROPERTY(QObject *portal READ portal WRITE _setPortal NOTIFY portalChanged)
    Q_PROPERTY(Status status READ status NOTIFY statusChanged)

public:
    enum Status { Null = 0, Ready = 1, Downloading = 2, Error = 3 };
    Q_ENUM(Status)

    explicit ItemPackage(QObject *parent = nullptr);

    QString itemId() const { return m_itemId; }
    void setItemId(const QString &itemId) { m_itemId = itemId; } // emits nothing
    QObject *portal() const { return m_portalObject.portal(); }
    void _setPortal(QObject *portal);
    Status status() const { return m_status; }
    QString title() const { return m_title; }

    void setNetworkAccessManager(QNetworkAccessManager *manager);
    // Drops a download that is under way: nothing more comes of it.
    void cancel();

    // Whether a download of the tile package has begun and not come to its end, also in an earlier
    // process. Its folder is there then, and exists() is true.
    static bool isIncomplete(const QDir &packages, const QString &itemId);

    // Whether the item lies in the Data folder (after a module item: the Modules folder).
    Q_INVOKABLE bool exists(const QString &itemId);
    Q_INVOKABLE void download(const QString &itemId);

    void classBegin() override;
    void componentComplete() override;

signals:
    void itemIdChanged();
    void portalChanged();
    void statusChanged();
    void downloadStarted();
    void downloadComplete();
    void downloadProgress(int percentage, int secondsRemainingEstimate);
    void downloadError(TessalineError *error);

private slots:
    void onPackageItemInfoReady();
    void onPackageDataReady();
    void onPackageReady();
    void onPackageProgress(double progress);
    void onPackageError(TessalineError *error);

private:
    void setStatus(Status status);
    bool chooseFolder(const QStringList &tags, QDir &folder, QString &fileName);

    Status m_status = Null;
    QString m_itemId;
    QString m_path; // the base folder of exists()
    PortalObject m_portalObject;
    PortalPackageRequest m_packageRequest;
    QString m_title;
    bool m_isData = false;
    bool m_isTilePackage = false;
    QString m_mark; // the file that says so
};
