#pragma once

#include "catalogue/AppInfo.h"
#include "catalogue/ItemPackage.h"
#include "plugin/TessalineError.h"
#include "plugin/TessalineObject.h"
#include "portal/PortalObject.h"
#include "portal/PortalPackageRequest.h"

#include <QQmlParserStatus>

// Downloads one app with all that it depends on. QML name: AppPackage.
//
// The status goes to Ready when all is there, to Error for a portal's JSON error. Other failures
// leave it at Downloading without a signal: who waits sets a limit of its own.
class TESSALINE_EXPORT AppPackage : public TessalineObject, public QQmlParserStatus
{
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    Q_PROPERTY(AppInfo *appInfo READ appInfo WRITE _setAppInfo NOTIFY appInfoChanged)
    Q_PROPERTY(QObject *portal READ portal WRITE _setPortal NOTIFY portalChanged)
    Q_PROPERTY(ItemPackage::Status status READ status NOTIFY statusChanged)
    Q_PROPERTY(QString statusMessage READ statusMessage NOTIFY statusMessageChanged)
    Q_PROPERTY(TessalineError *error READ error NOTIFY errorChanged)

public:
    explicit AppPackage(QObject *parent = nullptr);

    // A copy: the object that is written isn't kept.
    AppInfo *appInfo() { return &m_appInfo; }
    void _setAppInfo(AppInfo *info);
    QObject *portal() const { return m_portalObject.portal(); }
    void _setPortal(QObject *portal);
    ItemPackage::Status status() const { return m_status; }
    QString statusMessage() const { return m_statusMessage; }
    TessalineError *error() { return &m_error; }

    void classBegin() override;
    void componentComplete() override;

public slots:
    void download();

signals:
    void appInfoChanged();
    void portalChanged();
    void statusChanged();
    void statusMessageChanged();
    void errorChanged();
    void progress(int percentage, int secondsRemainingEstimate);

private slots:
    void onPackageItemInfoReady();
    void onPackageDataReady();
    void onPackageReady();
    void onPackageProgress(double progress);
    void onPackageError(TessalineError *error);
    void onItemDownloadStarted();
    void onItemDownloadComplete();
    void onItemDownloadProgress(int percentage, int secondsRemainingEstimate);
    void onItemDownloadError(TessalineError *error);

private:
    void setPath(const QString &path);
    void setItemId(const QString &itemId);
    void setStatus(ItemPackage::Status status);
    void setStatusMessage(const QString &message);
    void stop();
    void checkDependencies();
    void fail(const TessalineError &error);

    ItemPackage::Status m_status = ItemPackage::Null;
    QString m_statusMessage;
    QString m_itemId;
    AppInfo m_appInfo;
    PortalObject m_portalObject;
    PortalPackageRequest m_packageRequest;
    TessalineError m_error;
    int m_dependencyIndex = 0; // how many dependencies were taken up
    ItemPackage m_itemPackage;
    int m_run = 0; // tells after a signal whether its handler has begun something else
    bool m_dependencyRuns = false; // this run has started one that hasn't ended
};
