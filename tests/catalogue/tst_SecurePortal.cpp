#include "catalogue/AppInfoList.h"
#include "catalogue/AppPackage.h"
#include "support/DevelopmentPortal.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"
#include "support/PortalElement.h"

#include <QSslConfiguration>

// Native requests know no ignoreSslErrors: over HTTPS they work with the portals whose certificate
// the process trusts, and with no other.
class tst_SecurePortal : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();

    void searchAndDownload();
    void untrustedCertificateStopsTheSearch();
    void untrustedCertificateStopsTheDownload();

private:
    void trustThePortal();

    QQmlEngine m_engine;
    DevelopmentPortal m_server;
    const QSslConfiguration m_before = QSslConfiguration::defaultConfiguration();
};

void tst_SecurePortal::initTestCase()
{
    m_server.addItem("app", {{"title", "An app"}, {"access", "private"}},
                     {{"data/appinfo.json", "{\"dependencies\": [\"item\"]}"}});
    m_server.addItem("item", {{"title", "Item"}, {"type", "Tile Package"}, {"name", "t.tpk"}},
                     {{"t.tpk", "tiles"}});
    QVERIFY2(m_server.start({"--https", "--certificate", m_server.path("portal.pem")}),
             qPrintable(m_server.output()));
}

void tst_SecurePortal::cleanup()
{
    QSslConfiguration::setDefaultConfiguration(m_before);
    QDir(QDir::homePath() + "/Zemrik").removeRecursively();
    m_engine.networkAccessManager()->clearConnectionCache();
}

void tst_SecurePortal::trustThePortal()
{
    QSslConfiguration configuration = m_before;
    QVERIFY(configuration.addCaCertificates(m_server.path("portal.pem")));
    QSslConfiguration::setDefaultConfiguration(configuration);
}

void tst_SecurePortal::searchAndDownload()
{
    trustThePortal();
    const auto portal = makePortalElement(m_engine, m_server.url());
    AppInfoList list;
    list.setPortal(portal.get());
    QVERIFY(signIn(portal.get(), "demo", "demo")); // searches by itself
    QTRY_VERIFY(list.findById("app"));

    AppPackage package;
    package._setPortal(portal.get());
    package._setAppInfo(list.findById("app"));
    package.download();
    QTRY_COMPARE(package.status(), ItemPackage::Ready);
    QVERIFY(package.appInfo()->isLocal());
    QVERIFY(QFile::exists(QDir::homePath() + "/Zemrik/Halvora/Data/item/t.tpk"));
}

void tst_SecurePortal::untrustedCertificateStopsTheSearch()
{
    const auto portal = makePortalElement(m_engine, m_server.url());
    AppInfoList list;
    list.setPortal(portal.get());
    list.setSigninRequired(false);
    LogCapture log;
    list.refresh(true);
    QTRY_COMPARE(log.count(QtCriticalMsg, "Zemrik.Tessaline.Network", "statusCode"), 1);
    QVERIFY(list.isRefreshing());
}

void tst_SecurePortal::untrustedCertificateStopsTheDownload()
{
    const auto portal = makePortalElement(m_engine, m_server.url());
    AppPackage package;
    package._setPortal(portal.get());
    AppInfo found(QVariantMap{{"id", "app"}}, nullptr);
    package._setAppInfo(&found);
    LogCapture log;
    package.download();
    QTRY_COMPARE(log.count(QtCriticalMsg, "Zemrik.Tessaline.Manager", "statusCode"), 1);
    QCOMPARE(package.status(), ItemPackage::Downloading);
}

TESSALINE_TEST_MAIN(tst_SecurePortal)
#include "tst_SecurePortal.moc"
