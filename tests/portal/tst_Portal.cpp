#include "network/NetworkRequest.h"
#include "plugin/Endpoints.h"
#include "support/DevelopmentPortal.h"
#include "support/HttpServer.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"
#include "support/PortalElement.h"

#include <QFile>
#include <QMetaProperty>
#include <QSignalSpy>
#include <QSslConfiguration>
#include <QUrlQuery>

// The component against the development portal; where the bytes of a request matter, against a
// server that keeps them.
class tst_Portal : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void theDocumentShipsAsAResource();
    void propertiesInTheirOrder();
    void signalsAndFunctions();
    void thePublicPortalIsTheDefault();
    void signInAndOut();
    void whatGoesToThePortal();
    void signOutLeavesTheRest();
    void errorOfTheServiceComesBeforeItsToken();
    void errorsAboutThePortalAndTheUserAreKeptAsTheyAre();
    void theSamePortalUrlKeepsTheSignIn();
    void secondSignInDuringTheFirst();
    void wrongPasswordRaisesTheServicesError();
    void unreachableServiceRaisesAnError();
    void newAttemptRaisesNoError();
    void passwordThatBeginsWithAt();
    void passwordOfSigns();
    void tokenThatNamesAFileIsSentAsText();
    void expiryModes_data();
    void expiryModes();
    void aNewPortalUrlSignsOut();
    void longTokens();
    void signInOverHttps();
    void httpsNeedsATrustedCertificate();
    void httpsWithTheCertificateTrusted();
    void twoPortalsInOneProcess();
    void failuresThatOnlyTheLogShows_data();
    void failuresThatOnlyTheLogShows();
    void aTokenAnswerWithoutTokenIsDroppedInSilence();
    void infoWithoutTokenServiceStopsTheSignIn();

private:
    void useServer(HttpServer &server, const QByteArray &tokenAnswer,
                   const QByteArray &otherAnswers = "{}");

    QQmlEngine m_engine;
    DevelopmentPortal m_server;
    std::unique_ptr<QObject> m_portal;
};

void tst_Portal::initTestCase()
{
    m_server.writeFile("users.json", "{\"jo\": {\"password\": \"pw\", \"thumbnail\": \"jo.png\"},"
                                     " \"at\": {\"password\": \"@/etc/hostname\"},"
                                     " \"signs\": {\"password\": \"ab c&d=e%é;#\"}}");
    QVERIFY2(m_server.start({"--users", m_server.path("users.json")}),
             qPrintable(m_server.output()));
}

void tst_Portal::init()
{
    m_portal = makePortalElement(m_engine, m_server.url());
    QVERIFY(m_portal);
}

void tst_Portal::cleanup()
{
    m_portal.reset();
}

// A portal that answers as it is told and keeps the requests.
void tst_Portal::useServer(HttpServer &server, const QByteArray &tokenAnswer,
                           const QByteArray &otherAnswers)
{
    const auto answer = [](const QByteArray &body) {
        return [body](const HttpServer::Request &) {
            return HttpServer::Answer{body, 200, "application/json"};
        };
    };
    const QByteArray url = server.url("").toString().toUtf8();
    server.on(
        "/sharing/rest/info",
        answer("{\"owningSystemUrl\": \"http://owner\", \"authInfo\": {\"tokenServicesUrl\": \""
               + url + "/token\"}}"));
    server.on("/token", answer(tokenAnswer));
    server.on("/sharing/rest/portals/self", answer(otherAnswers));
    server.on("/sharing/rest/community/users/jo", answer(otherAnswers));
    m_portal->setProperty("portalUrl", server.url(""));
}

void tst_Portal::theDocumentShipsAsAResource()
{
    const QString folder = ":/imports/Zemrik/Tessaline/Portal/";
    QFile document(folder + "Portal.qml");
    QVERIFY(document.open(QIODevice::ReadOnly));
    const QByteArray text = document.readAll();
    QVERIFY(text.startsWith("import QtQuick 2.4\nimport Zemrik.Tessaline 1.0\n"));
    QFile qmldir(folder + "qmldir");
    QVERIFY(qmldir.open(QIODevice::ReadOnly));
    const QByteArrayList lines = qmldir.readAll().split('\n');
    QVERIFY(lines.contains("module Zemrik.Tessaline.Portal"));
    QVERIFY(lines.contains("Portal 1.0 Portal.qml"));

    QQmlComponent component(&m_engine, QUrl("qrc:///imports/Zemrik/Tessaline/Portal/Portal.qml"));
    const std::unique_ptr<QObject> portal(component.create());
    QVERIFY2(portal, qPrintable(component.errorString()));
    QVERIFY(portal->inherits("QQuickItem"));
    QVERIFY2(QByteArray(portal->metaObject()->className()).startsWith("Portal_"),
             portal->metaObject()->className());
}

void tst_Portal::propertiesInTheirOrder()
{
    // The document's own metaobject lies below the one of the element, which adds "url".
    const QMetaObject *type = m_portal->metaObject();
    while (QByteArray(type->superClass()->className()).startsWith("Portal_"))
        type = type->superClass();
    QStringList table;
    for (int i = type->propertyOffset(); i < type->propertyCount(); ++i) {
        const QMetaProperty property = type->property(i);
        table.append(QString("%1 %2%3").arg(property.typeName(), property.name(),
                                            property.isWritable() ? "" : " read-only"));
        QVERIFY(property.hasNotifySignal());
    }
    QCOMPARE(
        table,
        QStringList({"QString name",          "QUrl portalUrl",         "QUrl tokenServicesUrl",
                     "QUrl owningSystemUrl",  "QUrl restUrl read-only", "QString username",
                     "QString password",      "QString token",          "bool ssl",
                     "bool ignoreSslErrors",  "QDateTime expires",      "bool signedIn read-only",
                     "int expiryMode",        "bool isPortal",          "int expiryModeSignal",
                     "int expiryModeSignOut", "int expiryModeSignIn",   "QVariant info",
                     "QVariant user",         "QUrl userThumbnailUrl"}));
}

void tst_Portal::signalsAndFunctions()
{
    const QMetaObject *type = m_portal->metaObject();
    for (const char *signal : {"expired()", "error(QVariant)", "signedInChanged()"}) {
        const int index = type->indexOfMethod(signal);
        QVERIFY2(index >= 0, signal);
        QCOMPARE(type->method(index).methodType(), QMetaMethod::Signal);
    }
    for (const char *function :
         {"signIn(QVariant,QVariant)", "signOut()", "authorizedUrl(QVariant)"})
        QVERIFY2(type->indexOfMethod(function) >= 0, function);
}

void tst_Portal::thePublicPortalIsTheDefault()
{
    QQmlComponent component(&m_engine);
    component.setData("import Zemrik.Tessaline.Portal 1.0\nPortal { tokenServicesUrl: 'http://t' }",
                      QUrl());
    const std::unique_ptr<QObject> portal(component.create());
    QVERIFY2(portal, qPrintable(component.errorString()));
    QCOMPARE(portal->property("portalUrl").toUrl(), QUrl(Endpoints::publicPortal()));
    QCOMPARE(portal->property("tokenServicesUrl").toUrl(), QUrl("http://t"));
}

void tst_Portal::signInAndOut()
{
    QVERIFY(!m_portal->property("signedIn").toBool());
    QVERIFY(signIn(m_portal.get(), "jo", "pw"));
    QCOMPARE(m_portal->property("tokenServicesUrl").toUrl().toString(),
             m_server.url() + "/sharing/rest/generateToken");
    QCOMPARE(m_portal->property("owningSystemUrl").toUrl().toString(), m_server.url());
    QTRY_VERIFY(m_portal->property("user").value<QJSValue>().toVariant().isValid()
                || m_portal->property("user").toMap().contains("username"));
    const QString picture = m_portal->property("userThumbnailUrl").toUrl().toString();
    QCOMPARE(picture, m_server.url() + "/sharing/rest/community/users/jo/info/jo.png?token="
                          + m_portal->property("token").toString());
    const qint64 minutes =
        QDateTime::currentDateTime().secsTo(m_portal->property("expires").toDateTime()) / 60;
    QVERIFY2(minutes == 119 || minutes == 120, qPrintable(QString::number(minutes)));

    QMetaObject::invokeMethod(m_portal.get(), "signOut");
    QVERIFY(!m_portal->property("signedIn").toBool());
    QCOMPARE(m_portal->property("userThumbnailUrl").toUrl(), QUrl());
    QCOMPARE(m_portal->property("username").toString(), QString("jo"));
    QCOMPARE(m_portal->property("password").toString(), QString("pw"));
}

void tst_Portal::whatGoesToThePortal()
{
    HttpServer server;
    const qint64 expires = QDateTime::currentMSecsSinceEpoch() + 600000;
    useServer(server, "{\"token\": \"t\", \"expires\": " + QByteArray::number(expires)
                          + ", \"ssl\": true}");
    QVERIFY(signIn(m_portal.get(), "jo", "pw"));
    QTRY_COMPARE(server.requestCount(), 4);

    QStringList seen;
    for (const HttpServer::Request &request : server.requests())
        seen.append(QString("%1 %2 %3").arg(request.method, request.target, request.body));
    QCOMPARE(seen.at(0), QString("GET /sharing/rest/info?f=json "));
    const QString referer = QUrl::toPercentEncoding(server.url("").toString(), ":/");
    QCOMPARE(seen.at(1),
             "POST /token expiration=120&f=json&password=pw&referer=" + referer + "&username=jo");
    QStringList last = seen.mid(2); // both are under way at once
    last.sort();
    QCOMPARE(last, QStringList({"POST /sharing/rest/community/users/jo f=pjson&token=t",
                                "POST /sharing/rest/portals/self f=pjson&token=t"}));
    QCOMPARE(m_portal->property("owningSystemUrl").toUrl(), QUrl("http://owner"));
    QCOMPARE(m_portal->property("expires").toDateTime().toMSecsSinceEpoch(), expires);
    QVERIFY(m_portal->property("ssl").toBool());

    // Without a token none is sent.
    QMetaObject::invokeMethod(m_portal.get(), "signOut");
    server.clearRequests();
    QObject *self = m_portal->findChildren<NetworkRequest *>().value(2);
    QVERIFY(self);
    QTRY_COMPARE(self->property("readyState").toInt(), 4);
    QVERIFY(QMetaObject::invokeMethod(self, "sendRequest"));
    QTRY_COMPARE(server.requestCount(), 1);
    QCOMPARE(server.lastRequest().body, QByteArray("f=pjson"));
}

void tst_Portal::signOutLeavesTheRest()
{
    QVERIFY(signIn(m_portal.get(), "jo", "pw"));
    QTRY_VERIFY(m_portal->property("info").value<QJSValue>().isObject());
    QTRY_VERIFY(m_portal->property("user").value<QJSValue>().isObject());
    const QVariant expires = m_portal->property("expires");
    const QVariant service = m_portal->property("tokenServicesUrl");
    QSignalSpy token(m_portal.get(), SIGNAL(tokenChanged()));
    QMetaObject::invokeMethod(m_portal.get(), "signOut");
    QCOMPARE(token.count(), 1);
    QVERIFY(m_portal->property("info").value<QJSValue>().isObject());
    QVERIFY(m_portal->property("user").isNull());
    QCOMPARE(m_portal->property("expires"), expires);
    QCOMPARE(m_portal->property("tokenServicesUrl"), service);
    QMetaObject::invokeMethod(m_portal.get(), "signOut"); // once more changes nothing
    QCOMPARE(token.count(), 1);
}

void tst_Portal::errorOfTheServiceComesBeforeItsToken()
{
    QVERIFY(signIn(m_portal.get(), "jo", "pw"));
    const QVariant token = m_portal->property("token");
    HttpServer server;
    server.on("/token", [](const HttpServer::Request &) {
        return HttpServer::Answer{"{\"error\": \"no\", \"token\": \"other\"}"};
    });
    m_portal->setProperty("tokenServicesUrl", server.url("/token"));
    QSignalSpy error(m_portal.get(), SIGNAL(error(QVariant)));
    startSignIn(m_portal.get(), "jo", "pw");
    QVERIFY(error.wait());
    QCOMPARE(error.first().first().toString(), QString("no")); // unchanged, whatever it is
    QCOMPARE(m_portal->property("token"), token);
}

void tst_Portal::errorsAboutThePortalAndTheUserAreKeptAsTheyAre()
{
    HttpServer server;
    useServer(server, "{\"token\": \"t\", \"expires\": 1, \"ssl\": false}",
              "{\"error\": {\"code\": 498}}");
    m_portal->setProperty("expiryMode", m_portal->property("expiryModeSignal"));
    QSignalSpy error(m_portal.get(), SIGNAL(error(QVariant)));
    QVERIFY(signIn(m_portal.get(), "jo", "pw"));
    for (const char *name : {"info", "user"})
        QTRY_COMPARE(
            m_portal->property(name).value<QJSValue>().property("error").property("code").toInt(),
            498);
    QVERIFY(m_portal->property("signedIn").toBool());
    QCOMPARE(error.count(), 0);
}

void tst_Portal::theSamePortalUrlKeepsTheSignIn()
{
    QVERIFY(signIn(m_portal.get(), "jo", "pw"));
    m_portal->setProperty("portalUrl", m_portal->property("portalUrl"));
    QVERIFY(m_portal->property("signedIn").toBool());
    QVERIFY(!m_portal->property("tokenServicesUrl").toUrl().isEmpty());
}

// It simply sends again, which a request that is under way refuses.
void tst_Portal::secondSignInDuringTheFirst()
{
    LogCapture log;
    startSignIn(m_portal.get(), "jo", "pw");
    startSignIn(m_portal.get(), "jo", "pw");
    QCOMPARE(log.count(QtDebugMsg, "qml", "infoRequest error UNEXPECTED"), 1);
    QTRY_VERIFY(m_portal->property("signedIn").toBool());
}

void tst_Portal::wrongPasswordRaisesTheServicesError()
{
    QSignalSpy error(m_portal.get(), SIGNAL(error(QVariant)));
    startSignIn(m_portal.get(), "jo", "wrong");
    QVERIFY(error.wait());
    const QVariant argument = error.first().first();
    const QVariantMap map = argument.userType() == qMetaTypeId<QJSValue>()
                                ? argument.value<QJSValue>().toVariant().toMap()
                                : argument.toMap();
    QCOMPARE(map.value("code").toInt(), 400);
    QCOMPARE(map.value("message").toString(), QString("Unable to generate token."));
    QCOMPARE(error.count(), 1);
    QVERIFY(!m_portal->property("signedIn").toBool());
}

void tst_Portal::unreachableServiceRaisesAnError()
{
    QSignalSpy error(m_portal.get(), SIGNAL(error(QVariant)));
    m_portal->setProperty("tokenServicesUrl", QUrl("http://127.0.0.1:1/token"));
    startSignIn(m_portal.get(), "jo", "pw");
    QVERIFY(error.wait());
    QVERIFY(!m_portal->property("signedIn").toBool());
}

// The request forgets the old failure as it begins anew, which is none.
void tst_Portal::newAttemptRaisesNoError()
{
    QSignalSpy error(m_portal.get(), SIGNAL(error(QVariant)));
    m_portal->setProperty("tokenServicesUrl", QUrl("http://127.0.0.1:1/token"));
    startSignIn(m_portal.get(), "jo", "pw");
    QVERIFY(error.wait());
    HttpServer server;
    server.on("/token", [](const HttpServer::Request &) {
        return HttpServer::Answer{"{\"token\": \"t\", \"expires\": 1, \"ssl\": false}"};
    });
    m_portal->setProperty("tokenServicesUrl", server.url("/token"));
    LogCapture log;
    startSignIn(m_portal.get(), "jo", "pw");
    QTRY_VERIFY(m_portal->property("signedIn").toBool());
    QCOMPARE(error.count(), 1);
    QCOMPARE(log.count(QtDebugMsg, "qml", "generateToken error"), 1); // the log has it, empty
}

void tst_Portal::passwordThatBeginsWithAt()
{
    QVERIFY(signIn(m_portal.get(), "at", "@/etc/hostname"));

    HttpServer server;
    server.on("/token", [](const HttpServer::Request &) {
        return HttpServer::Answer{"{\"error\": {}}", 200, "application/json"};
    });
    QSignalSpy error(m_portal.get(), SIGNAL(error(QVariant)));
    m_portal->setProperty("tokenServicesUrl", server.url("/token"));
    startSignIn(m_portal.get(), "at", "@/etc/hostname");
    QVERIFY(error.wait());
    const HttpServer::Request request = server.lastRequest();
    const QUrlQuery form(QString::fromUtf8(request.body));
    QVERIFY2(request.parts.contains("#password")
                 || QUrl::fromPercentEncoding(request.body).contains("#password=@/etc/hostname"),
             request.body.constData());
    QVERIFY(!request.parts.contains("password"));
    QVERIFY(!form.hasQueryItem("password"));
}

void tst_Portal::passwordOfSigns()
{
    QVERIFY(signIn(m_portal.get(), "signs", "ab c&d=e%é;#"));
}

void tst_Portal::tokenThatNamesAFileIsSentAsText()
{
    HttpServer server;
    const QByteArray json = "{\"token\": \"@/etc/passwd\", \"expires\": "
                            + QByteArray::number(QDateTime::currentMSecsSinceEpoch() + 600000)
                            + ", \"ssl\": false}";
    server.on("/token", [json](const HttpServer::Request &) {
        return HttpServer::Answer{json, 200, "application/json"};
    });
    for (const char *path : {"/sharing/rest/portals/self", "/sharing/rest/community/users/jo"})
        server.on(path, [](const HttpServer::Request &) {
            return HttpServer::Answer{"{}", 200, "application/json"};
        });
    m_portal->setProperty("portalUrl", server.url(""));
    m_portal->setProperty("tokenServicesUrl", server.url("/token"));
    QVERIFY(signIn(m_portal.get(), "jo", "pw"));
    QTRY_COMPARE(server.requestCount(), 3);
    for (const HttpServer::Request &request : server.requests()) {
        QVERIFY(!request.body.contains("root:"));
        for (const HttpServer::Part &part : request.parts)
            QVERIFY(!part.content.contains("root:") && part.fileName.isEmpty());
        if (request.path != "/token")
            QVERIFY(QUrl::fromPercentEncoding(request.body).contains("token=@/etc/passwd")
                    || request.parts.value("token").content == "@/etc/passwd");
    }
}

void tst_Portal::expiryModes_data()
{
    QTest::addColumn<QString>("mode");
    QTest::addColumn<bool>("signedIn");
    QTest::addColumn<int>("expired");
    QTest::newRow("signal") << "expiryModeSignal" << true << 1;
    QTest::newRow("sign out") << "expiryModeSignOut" << false << 0;
    QTest::newRow("sign in: stops at its missing arguments") << "expiryModeSignIn" << true << 0;
}

void tst_Portal::expiryModes()
{
    QFETCH(QString, mode);
    DevelopmentPortal server;
    QVERIFY2(server.start({"--token-minutes", "0.1"}), qPrintable(server.output()));
    m_portal->setProperty("portalUrl", server.url());
    m_portal->setProperty("expiryMode", m_portal->property(mode.toLatin1().constData()));
    QSignalSpy expired(m_portal.get(), SIGNAL(expired()));
    int warnings = 0;
    QObject context;
    connect(&m_engine, &QQmlEngine::warnings, &context, [&warnings] { ++warnings; });
    QVERIFY(signIn(m_portal.get(), "demo", "demo"));
    const QString token = m_portal->property("token").toString();
    // A token of 6 seconds runs out for the component after one.
    if (mode == "expiryModeSignal")
        QTRY_COMPARE(expired.count(), 1);
    else if (mode == "expiryModeSignOut")
        QTRY_VERIFY(!m_portal->property("signedIn").toBool());
    else
        QTRY_VERIFY(warnings > 0);
    QTEST(m_portal->property("signedIn").toBool(), "signedIn");
    QTEST(expired.count(), "expired");
    if (m_portal->property("signedIn").toBool())
        QCOMPARE(m_portal->property("token").toString(), token);
}

void tst_Portal::aNewPortalUrlSignsOut()
{
    QVERIFY(signIn(m_portal.get(), "jo", "pw"));
    m_portal->setProperty("portalUrl", QUrl("http://127.0.0.1:1"));
    QVERIFY(!m_portal->property("signedIn").toBool());
    QCOMPARE(m_portal->property("tokenServicesUrl").toUrl(), QUrl());
    QCOMPARE(m_portal->property("username").toString(), QString("jo"));
    QCOMPARE(m_portal->property("restUrl").toUrl(), QUrl("http://127.0.0.1:1/sharing/rest"));
}

void tst_Portal::longTokens()
{
    DevelopmentPortal server;
    QVERIFY2(server.start({"--token-minutes", "30000"}), qPrintable(server.output()));
    m_portal->setProperty("portalUrl", server.url());
    QVERIFY(signIn(m_portal.get(), "demo", "demo"));
    const qint64 minutes =
        QDateTime::currentDateTime().secsTo(m_portal->property("expires").toDateTime()) / 60;
    QVERIFY(minutes >= 29998 && minutes <= 30000);
}

void tst_Portal::signInOverHttps()
{
    DevelopmentPortal server;
    QVERIFY2(server.start({"--https"}), qPrintable(server.output()));
    m_portal->setProperty("portalUrl", server.url());
    m_portal->setProperty("ignoreSslErrors", true);
    QVERIFY(!m_portal->property("ssl").toBool());
    QVERIFY(signIn(m_portal.get(), "demo", "demo"));
    QTRY_VERIFY(m_portal->property("ssl").toBool()); // stored after the token
    QCOMPARE(m_portal->property("tokenServicesUrl").toUrl().scheme(), QString("https"));
    // The two requests that follow ignore the errors as well.
    QTRY_COMPARE(m_portal->property("info").value<QJSValue>().property("isPortal").toBool(), true);
    QTRY_COMPARE(m_portal->property("user").value<QJSValue>().property("username").toString(),
                 QString("demo"));
}

void tst_Portal::httpsNeedsATrustedCertificate()
{
    DevelopmentPortal server;
    QVERIFY2(server.start({"--https"}), qPrintable(server.output()));
    m_portal->setProperty("portalUrl", server.url());
    LogCapture log;
    QSignalSpy error(m_portal.get(), SIGNAL(error(QVariant)));
    startSignIn(m_portal.get(), "demo", "demo");
    QTRY_COMPARE(log.count(QtDebugMsg, "qml", "infoRequest error SSL handshake failed"), 1);
    QVERIFY(!m_portal->property("signedIn").toBool());
    QCOMPARE(error.count(), 0); // a failing info request only shows in the log
}

void tst_Portal::httpsWithTheCertificateTrusted()
{
    DevelopmentPortal server;
    QVERIFY2(server.start({"--https", "--certificate", server.path("portal.pem")}),
             qPrintable(server.output()));
    const QSslConfiguration before = QSslConfiguration::defaultConfiguration();
    QSslConfiguration configuration = before;
    QVERIFY(configuration.addCaCertificates(server.path("portal.pem")));
    QSslConfiguration::setDefaultConfiguration(configuration);
    m_portal->setProperty("portalUrl", server.url());
    const bool good = signIn(m_portal.get(), "demo", "demo");
    QSslConfiguration::setDefaultConfiguration(before);
    QVERIFY(good);
}

void tst_Portal::twoPortalsInOneProcess()
{
    DevelopmentPortal other;
    other.writeFile("users.json", "{\"al\": {\"password\": \"other\"}}");
    QVERIFY2(other.start({"--users", other.path("users.json")}), qPrintable(other.output()));
    const auto second = makePortalElement(m_engine, other.url());
    startSignIn(m_portal.get(), "jo", "pw");
    startSignIn(second.get(), "al", "other");
    QTRY_VERIFY(m_portal->property("signedIn").toBool() && second->property("signedIn").toBool());
    QVERIFY(m_portal->property("token") != second->property("token"));
    const auto userOf = [](const std::unique_ptr<QObject> &portal) {
        return portal->property("user").value<QJSValue>().property("username").toString();
    };
    QTRY_COMPARE(userOf(m_portal), QString("jo"));
    QTRY_COMPARE(userOf(second), QString("al"));
    QMetaObject::invokeMethod(second.get(), "signOut");
    QVERIFY(!second->property("signedIn").toBool());
    QVERIFY(m_portal->property("signedIn").toBool());
}

void tst_Portal::failuresThatOnlyTheLogShows_data()
{
    QTest::addColumn<QString>("step");
    QTest::addColumn<QString>("label");
    QTest::addColumn<bool>("signedIn");
    QTest::newRow("information") << "info"
                                 << "infoRequest error" << false;
    QTest::newRow("self") << "self"
                          << "selfRequest error" << true;
    QTest::newRow("user") << "user"
                          << "userRequest error" << true;
}

void tst_Portal::failuresThatOnlyTheLogShows()
{
    QFETCH(QString, step);
    QFETCH(QString, label);
    DevelopmentPortal server;
    QVERIFY2(server.start({"--fail", step + ":truncated"}), qPrintable(server.output()));
    m_portal->setProperty("portalUrl", server.url());
    LogCapture log;
    QSignalSpy error(m_portal.get(), SIGNAL(error(QVariant)));
    startSignIn(m_portal.get(), "demo", "demo");
    QTRY_VERIFY2(log.count(QtDebugMsg, "qml", label) > 0, qPrintable(log.dump()));
    QTEST(m_portal->property("signedIn").toBool(), "signedIn");
    QCOMPARE(error.count(), 0);
}

void tst_Portal::aTokenAnswerWithoutTokenIsDroppedInSilence()
{
    HttpServer server;
    server.on("/token", [](const HttpServer::Request &) {
        return HttpServer::Answer{"{\"expires\": 1, \"token\": \"\"}", 200, "application/json"};
    });
    m_portal->setProperty("tokenServicesUrl", server.url("/token"));
    LogCapture log;
    QSignalSpy error(m_portal.get(), SIGNAL(error(QVariant)));
    startSignIn(m_portal.get(), "jo", "pw");
    // The element's second request is the one for the token.
    const auto *request = m_portal->findChildren<NetworkRequest *>().value(1);
    QVERIFY(request);
    QTRY_COMPARE(request->readyState(), NetworkRequest::ReadyStateComplete);
    QCOMPARE(server.requestCount(), 1);
    QCOMPARE(error.count(), 0);
    QVERIFY(!m_portal->property("signedIn").toBool());
    QVERIFY(!m_portal->property("expires").toDateTime().isValid());
    QCOMPARE(log.count(QtDebugMsg, "qml", "generateToken"), 0);
}

void tst_Portal::infoWithoutTokenServiceStopsTheSignIn()
{
    HttpServer server;
    server.on("/sharing/rest/info", [](const HttpServer::Request &) {
        return HttpServer::Answer{"{\"currentVersion\": \"1\"}", 200, "application/json"};
    });
    m_portal->setProperty("portalUrl", server.url(""));
    int warnings = 0;
    QObject context;
    connect(&m_engine, &QQmlEngine::warnings, &context, [&warnings] { ++warnings; });
    startSignIn(m_portal.get(), "jo", "pw");
    QTRY_COMPARE(warnings, 1);
    QCOMPARE(server.requestCount(), 1);
    QVERIFY(!m_portal->property("signedIn").toBool());
}

TESSALINE_TEST_MAIN(tst_Portal)
#include "tst_Portal.moc"
