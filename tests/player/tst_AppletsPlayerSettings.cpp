#include "player/AppletsPlayerSettings.h"
#include "PlayerFixture.h"
#include "plugin/Endpoints.h"
#include "support/IsolatedHome.h"

#include <QMetaProperty>
#include <QSignalSpy>
#include <QTest>

class tst_AppletsPlayerSettings : public QObject
{
    Q_OBJECT

private slots:
    void init() { PlayerFixture::reset(); }

    void anEmptyStoreGivesTheDefaults();
    void thePublicPortalNeverResolves();
    void aWriteGoesToItsKeyAndNotifies_data();
    void aWriteGoesToItsKeyAndNotifies();
    void anEmptyTextRemovesItsKey_data();
    void anEmptyTextRemovesItsKey();
    void portalTextsAreReadTrimmed_data();
    void portalTextsAreReadTrimmed();
    void homeIsReadAsStored();
    void blankValuesReadAsTheDefaults();
    void aScaleOfZeroIsStored();
    void theStoreIsTheApplicationsOwn();
    void dataPathComesFromTheStore();
    void valuesReachTheNextObject();
};

void tst_AppletsPlayerSettings::anEmptyStoreGivesTheDefaults()
{
    AppletsPlayerSettings settings(nullptr);

    QCOMPARE(settings.home(), QString());
    QCOMPARE(settings.displayScale(), 0.0);
    QCOMPARE(settings.portalUrl(), Endpoints::publicPortal());
    QCOMPARE(settings.portalUsername(), QString());
    QCOMPARE(settings.dataPath(), QStringLiteral("~/Zemrik/Halvora/Data"));
    QVERIFY(settings.allKeys().isEmpty());
}

void tst_AppletsPlayerSettings::thePublicPortalNeverResolves()
{
    QCOMPARE(Endpoints::publicPortal(), QStringLiteral("http://portal.zemrik.example"));
}

void tst_AppletsPlayerSettings::aWriteGoesToItsKeyAndNotifies_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("value");

    QTest::newRow("home") << QByteArray("home") << "home" << QVariant("/data/home");
    QTest::newRow("displayScale") << QByteArray("displayScale") << "displayScale" << QVariant(1.5);
    QTest::newRow("portalUrl") << QByteArray("portalUrl") << "portal/url"
                               << QVariant("http://portal.local");
    QTest::newRow("portalUsername")
        << QByteArray("portalUsername") << "portal/username" << QVariant("ada");
}

void tst_AppletsPlayerSettings::aWriteGoesToItsKeyAndNotifies()
{
    QFETCH(QByteArray, property);
    QFETCH(QString, key);
    QFETCH(QVariant, value);
    AppletsPlayerSettings settings(nullptr);
    const QMetaObject *metaObject = settings.metaObject();
    const QMetaProperty metaProperty =
        metaObject->property(metaObject->indexOfProperty(property.constData()));
    QSignalSpy spy(&settings, metaProperty.notifySignal());

    QVERIFY(metaProperty.write(&settings, value));

    QCOMPARE(spy.count(), 1);
    QCOMPARE(QSettings().value(key), value);
    QCOMPARE(metaProperty.read(&settings), value);

    // An equal value is written and told all the same.
    QVERIFY(metaProperty.write(&settings, value));
    QCOMPARE(spy.count(), 2);
}

void tst_AppletsPlayerSettings::anEmptyTextRemovesItsKey_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("afterwards");

    const QString portal = Endpoints::publicPortal();
    QTest::newRow("home, empty") << QByteArray("home") << "home"
                                 << ""
                                 << "";
    QTest::newRow("home, blank") << QByteArray("home") << "home"
                                 << "  "
                                 << "";
    QTest::newRow("url, empty") << QByteArray("portalUrl") << "portal/url"
                                << "" << portal;
    QTest::newRow("url, blank") << QByteArray("portalUrl") << "portal/url"
                                << " \t" << portal;
    QTest::newRow("username, empty") << QByteArray("portalUsername") << "portal/username"
                                     << ""
                                     << "";
    QTest::newRow("username, blank") << QByteArray("portalUsername") << "portal/username"
                                     << " "
                                     << "";
}

void tst_AppletsPlayerSettings::anEmptyTextRemovesItsKey()
{
    QFETCH(QByteArray, property);
    QFETCH(QString, key);
    QFETCH(QString, text);
    QFETCH(QString, afterwards);
    AppletsPlayerSettings settings(nullptr);
    settings.setProperty(property.constData(), QStringLiteral("something"));
    QVERIFY(QSettings().contains(key));
    QSignalSpy spy(&settings, QByteArray("2" + property + "Changed()").constData());

    settings.setProperty(property.constData(), text);

    QVERIFY(!QSettings().contains(key));
    QCOMPARE(settings.property(property.constData()).toString(), afterwards);
    QCOMPARE(spy.count(), 1);
}

void tst_AppletsPlayerSettings::portalTextsAreReadTrimmed_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QString>("key");
    QTest::newRow("url") << QByteArray("portalUrl") << "portal/url";
    QTest::newRow("username") << QByteArray("portalUsername") << "portal/username";
}

void tst_AppletsPlayerSettings::portalTextsAreReadTrimmed()
{
    QFETCH(QByteArray, property);
    QFETCH(QString, key);
    AppletsPlayerSettings settings(nullptr);

    settings.setProperty(property.constData(), QStringLiteral("  x y \n"));

    QCOMPARE(QSettings().value(key).toString(), QStringLiteral("  x y \n"));
    QCOMPARE(settings.property(property.constData()).toString(), QStringLiteral("x y"));
}

void tst_AppletsPlayerSettings::homeIsReadAsStored()
{
    AppletsPlayerSettings settings(nullptr);

    settings.setHome(QStringLiteral(" ~/x "));

    QCOMPARE(settings.home(), QStringLiteral(" ~/x "));
}

void tst_AppletsPlayerSettings::blankValuesReadAsTheDefaults()
{
    QSettings store;
    for (const char *key : {"home", "displayScale", "portal/url", "portal/username", "dataPath"})
        store.setValue(QLatin1String(key), QStringLiteral("   "));
    AppletsPlayerSettings settings(nullptr);

    QCOMPARE(settings.home(), QString());
    QCOMPARE(settings.displayScale(), 0.0);
    QCOMPARE(settings.portalUrl(), Endpoints::publicPortal());
    QCOMPARE(settings.portalUsername(), QString());
    QCOMPARE(settings.dataPath(), QStringLiteral("~/Zemrik/Halvora/Data"));
}

void tst_AppletsPlayerSettings::aScaleOfZeroIsStored()
{
    AppletsPlayerSettings settings(nullptr);

    settings.setDisplayScale(0);

    QCOMPARE(QSettings().value(QStringLiteral("displayScale")).toString(), QStringLiteral("0"));
}

void tst_AppletsPlayerSettings::theStoreIsTheApplicationsOwn()
{
    const AppletsPlayerSettings settings(nullptr);

    QCOMPARE(settings.fileName(), QSettings().fileName());
    QCOMPARE(settings.path(), QSettings().fileName());
    QVERIFY(settings.fileName().startsWith(QDir::homePath()));
}

void tst_AppletsPlayerSettings::dataPathComesFromTheStore()
{
    QSettings().setValue(QStringLiteral("dataPath"), QStringLiteral("$X/data"));

    QCOMPARE(AppletsPlayerSettings(nullptr).dataPath(), QStringLiteral("$X/data"));
}

void tst_AppletsPlayerSettings::valuesReachTheNextObject()
{
    {
        AppletsPlayerSettings settings(nullptr);
        settings.setDisplayScale(2.25);
        settings.setPortalUsername(QStringLiteral("ada"));
    }
    AppletsPlayerSettings settings(nullptr);

    QCOMPARE(settings.displayScale(), 2.25);
    QCOMPARE(settings.portalUsername(), QStringLiteral("ada"));
}

TESSALINE_TEST_MAIN(tst_AppletsPlayerSettings)
#include "tst_AppletsPlayerSettings.moc"
