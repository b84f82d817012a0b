#include "portal/PortalObject.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"

#include <QDir>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QTest>

#include <memory>

namespace {

const char category[] = "Zemrik.Tessaline.Manager";

}

// A portal of another module: recognised by its class name.
class QmlPortal : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString url MEMBER m_url)
    Q_PROPERTY(QString credentials MEMBER m_credentials)
    Q_PROPERTY(QString token MEMBER m_token)

public:
    QString m_url = "http://native";
    QString m_credentials = "c";
    QString m_token = "native token";
};

// One of that kind without the property that leads to the token.
class BareQmlPortal : public QObject
{
public:
    void *qt_metacast(const char *name) override
    {
        return qstrcmp(name, "QmlPortal") == 0 ? this : QObject::qt_metacast(name);
    }
};

// A class that inherits from it.
class OtherQmlPortal : public QmlPortal
{
    Q_OBJECT
};

// Names as the engine gives them, and names that are nearly so.
class Portal_Other : public QObject
{
    Q_OBJECT
};

class portal_lower : public QObject
{
    Q_OBJECT
};

class PortalElement : public QObject
{
    Q_OBJECT
};

class My_Portal_Other : public QObject
{
    Q_OBJECT
};

class tst_PortalObject : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void withoutAPortalTheDefaultIsUsed();
    void anInlinePortalIsAccepted();
    void theBareDocumentHasNoUrl();
    void aDocumentOfAnotherNameIsNoPortal();
    void classNamesDecide_data();
    void classNamesDecide();
    void aForeignObjectIsKeptButIsNoPortal();
    void anotherObjectIsLookedAtAnew();
    void aNativePortalHandsOutItsToken();
    void aNativePortalWithoutCredentialsHasNoToken();
    void valuesAreReadAtEachCall();
    void paramsAlwaysHoldAToken();
    void aPortalThatGoesAwayIsNone();

private:
    std::unique_ptr<QObject> make(const QByteArray &body)
    {
        QQmlComponent component(&m_engine);
        component.setData("import QtQml 2.15\nimport Zemrik.Tessaline 1.0\nimport "
                          "Zemrik.Tessaline.Portal 1.0\n"
                              + body,
                          QUrl::fromLocalFile(QDir::homePath() + "/x.qml"));
        std::unique_ptr<QObject> object(component.create());
        if (!object)
            qWarning() << component.errors();
        return object;
    }

    QQmlEngine m_engine;
};

void tst_PortalObject::initTestCase()
{
    m_engine.addImportPath(QString::fromLocal8Bit(qgetenv("TESSALINE_QML_IMPORT_DIR")));
    m_engine.addImportPath(":/imports");
}

void tst_PortalObject::withoutAPortalTheDefaultIsUsed()
{
    const PortalObject portal(nullptr);
    LogCapture log;
    QVERIFY(!portal.isPortal());
    QCOMPARE(portal.url(), QString("http://portal.zemrik.example"));
    QCOMPARE(portal.restUrl(), QString("http://portal.zemrik.example/sharing/rest"));
    QCOMPARE(
        log.count(QtWarningMsg, category, "Using default url: \"http://portal.zemrik.example\""),
        2);
    QVERIFY(portal.token().isEmpty());
    QVERIFY(!portal.isSignedIn());
}

void tst_PortalObject::anInlinePortalIsAccepted()
{
    const auto object = make("Portal { portalUrl: 'http://here'; property url url: portalUrl }");
    QVERIFY(object);
    const PortalObject portal(object.get());
    QVERIFY(portal.isPortal());
    QCOMPARE(portal.restUrl(), QString("http://here/sharing/rest"));
}

void tst_PortalObject::theBareDocumentHasNoUrl()
{
    const auto object = make("Portal { property int extra }");
    const PortalObject portal(object.get());
    QVERIFY(portal.isPortal());
    QCOMPARE(portal.url(), QString());
    QCOMPARE(portal.restUrl(), QString("/sharing/rest"));
}

void tst_PortalObject::aDocumentOfAnotherNameIsNoPortal()
{
    const auto object =
        make("QtObject { property string url: 'http://x'; property string token: 't' }");
    LogCapture log;
    const PortalObject portal(object.get());
    QVERIFY(!portal.isPortal());
    QCOMPARE(log.count(QtWarningMsg, category, "Not a portal object"), 1);
    QCOMPARE(portal.url(), QString("http://portal.zemrik.example"));
    QCOMPARE(portal.token(), QString("t")); // read without a look at the kind
}

void tst_PortalObject::classNamesDecide_data()
{
    QTest::addColumn<QObject *>("object");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("Portal_") << static_cast<QObject *>(new Portal_Other) << true;
    QTest::newRow("lower case") << static_cast<QObject *>(new portal_lower) << false;
    QTest::newRow("no underscore") << static_cast<QObject *>(new PortalElement) << false;
    QTest::newRow("later in the name") << static_cast<QObject *>(new My_Portal_Other) << false;
    QTest::newRow("QmlPortal") << static_cast<QObject *>(new QmlPortal) << true;
    QTest::newRow("inherits QmlPortal") << static_cast<QObject *>(new OtherQmlPortal) << true;
}

void tst_PortalObject::classNamesDecide()
{
    QFETCH(QObject *, object);
    QFETCH(bool, accepted);
    const std::unique_ptr<QObject> owned(object);
    LogCapture log;
    const PortalObject portal(object);
    QCOMPARE(portal.isPortal(), accepted);
    QCOMPARE(log.count(QtWarningMsg, category,
                       QString("Not a portal object \"%1\" instance %1(0x")
                           .arg(object->metaObject()->className())),
             accepted ? 0 : 1);
    QCOMPARE(log.count(QtWarningMsg), accepted ? 0 : 1);
}

void tst_PortalObject::aForeignObjectIsKeptButIsNoPortal()
{
    QObject object;
    LogCapture log;
    PortalObject portal(&object);
    QCOMPARE(portal.portal(), &object);
    QCOMPARE(log.count(QtWarningMsg, category, "instance"), 1);
    portal.setPortal(nullptr);
    QVERIFY(!portal.portal());
    QCOMPARE(log.count(QtWarningMsg), 1);
}

void tst_PortalObject::anotherObjectIsLookedAtAnew()
{
    const auto element = make("Portal { property url url: portalUrl; token: 'element' }");
    QmlPortal native;
    QObject foreign;
    foreign.setProperty("token", "dynamic"); // no property that can be read by name
    PortalObject portal(&native);
    QCOMPARE(portal.token(), QString("native token"));
    portal.setPortal(element.get());
    QCOMPARE(portal.token(), QString("element")); // which has no credentials
    QVERIFY(portal.isPortal() && portal.isSignedIn());
    portal.setPortal(&foreign);
    QVERIFY(!portal.isPortal() && !portal.isSignedIn());
    QCOMPARE(portal.token(), QString());
    portal.setPortal(nullptr);
    QVERIFY(!portal.isPortal() && !portal.portal());
}

void tst_PortalObject::aNativePortalHandsOutItsToken()
{
    QmlPortal native;
    const PortalObject portal(&native);
    QVERIFY(portal.isPortal());
    QCOMPARE(portal.url(), QString("http://native"));
    QCOMPARE(portal.token(), QString("native token"));
}

void tst_PortalObject::aNativePortalWithoutCredentialsHasNoToken()
{
    BareQmlPortal native;
    native.setProperty("token", "not reached");
    const PortalObject portal(&native);
    QVERIFY(portal.isPortal());
    QCOMPARE(portal.token(), QString());
    QCOMPARE(portal.url(), QString());
    QVERIFY(!portal.isSignedIn());
}

void tst_PortalObject::valuesAreReadAtEachCall()
{
    const auto object = make("Portal { property url url: portalUrl }");
    const PortalObject portal(object.get());
    QVERIFY(!portal.isSignedIn());
    object->setProperty("token", "abc");
    QVERIFY(portal.isSignedIn());
    QCOMPARE(portal.token(), QString("abc"));
}

void tst_PortalObject::paramsAlwaysHoldAToken()
{
    const PortalObject portal(nullptr);
    QCOMPARE(portal.defaultParams(""), QVariantMap({{"token", ""}}));
    QCOMPARE(portal.defaultParams("pjson"), QVariantMap({{"token", ""}, {"f", "pjson"}}));
}

void tst_PortalObject::aPortalThatGoesAwayIsNone()
{
    auto object = make("Portal { property url url: portalUrl }");
    object->setProperty("token", "abc");
    const PortalObject portal(object.get());
    QCOMPARE(portal.token(), QString("abc"));
    object.reset();
    LogCapture log;
    QVERIFY(!portal.isPortal());
    QVERIFY(portal.token().isEmpty());
    QCOMPARE(portal.url(), QString("http://portal.zemrik.example"));
}

TESSALINE_TEST_MAIN(tst_PortalObject)
#include "tst_PortalObject.moc"
