#include "player/AppletsPlayer.h"
#include "player/AppletsPlayerSettings.h"
#include "player/AppletsRuntime.h"
#include "PlayerFixture.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"

#include <QProcess>
#include <QQmlEngine>
#include <QTest>

#include <memory>

class tst_AppletsRuntime : public QObject
{
    Q_OBJECT

private slots:
    void init() { PlayerFixture::reset(); }

    void aPlayerRegistersItself();
    void thePropertyIsNamedAfterTheClass();
    void noPlayerMakesADefaultOneAndSaysSo();
    void askingAgainReturnsTheSamePlayerSilently();
    void aForeignValueCountsAsNoPlayer_data();
    void aForeignValueCountsAsNoPlayer();
    void settingAPlayerReplacesTheRegisteredOne();
    void qmlDoesNotOwnThePlayer();
    void readingAndSettingLogTheProperty();
    void aPlayerThatIsGoneIsForgotten();
    void aSecondPlayerEndsTheProcess();
};

namespace {

const char plainLogger[] = "default";
const QString creatingDefault =
    QStringLiteral("Applet player is NULL, creating default player instance");

AppletsPlayer *registeredPlayer()
{
    return QCoreApplication::instance()->property("AppletsPlayer").value<AppletsPlayer *>();
}

} // namespace

void tst_AppletsRuntime::aPlayerRegistersItself()
{
    QVERIFY(!QCoreApplication::instance()->property("AppletsPlayer").isValid());

    AppletsPlayer player(nullptr);

    QCOMPARE(registeredPlayer(), &player);
    QCOMPARE(AppletsRuntime::appletsPlayer(), &player);
}

void tst_AppletsRuntime::thePropertyIsNamedAfterTheClass()
{
    AppletsPlayer player(nullptr);

    QVERIFY(QCoreApplication::instance()->dynamicPropertyNames().contains("AppletsPlayer"));
    QCOMPARE(QCoreApplication::instance()->property("AppletsPlayer").userType(),
             qMetaTypeId<AppletsPlayer *>());
}

void tst_AppletsRuntime::noPlayerMakesADefaultOneAndSaysSo()
{
    LogCapture log;

    const std::unique_ptr<AppletsPlayer> player(AppletsRuntime::appletsPlayer());

    QVERIFY(player);
    QVERIFY(!player->parent());
    QCOMPARE(QByteArray(player->metaObject()->className()), QByteArray("AppletsPlayer"));
    QCOMPARE(registeredPlayer(), player.get());
    QCOMPARE(log.count(QtCriticalMsg, plainLogger, creatingDefault), 1);
}

void tst_AppletsRuntime::askingAgainReturnsTheSamePlayerSilently()
{
    const std::unique_ptr<AppletsPlayer> player(AppletsRuntime::appletsPlayer());
    LogCapture log;

    QCOMPARE(AppletsRuntime::appletsPlayer(), player.get());

    QCOMPARE(log.count(QtCriticalMsg), 0);
}

void tst_AppletsRuntime::aForeignValueCountsAsNoPlayer_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("number") << QVariant(7);
    QTest::newRow("text") << QVariant(QStringLiteral("AppletsPlayer"));
    QTest::newRow("other object") << QVariant::fromValue<QObject *>(QCoreApplication::instance());
}

void tst_AppletsRuntime::aForeignValueCountsAsNoPlayer()
{
    QFETCH(QVariant, value);
    QCoreApplication::instance()->setProperty("AppletsPlayer", value);
    LogCapture log;

    const std::unique_ptr<AppletsPlayer> player(AppletsRuntime::appletsPlayer());

    QVERIFY(player);
    QCOMPARE(registeredPlayer(), player.get());
    QCOMPARE(log.count(QtCriticalMsg, plainLogger, creatingDefault), 1);
}

void tst_AppletsRuntime::settingAPlayerReplacesTheRegisteredOne()
{
    AppletsPlayer first(nullptr);
    PlayerFixture::reset();
    AppletsPlayer second(nullptr);
    QCOMPARE(AppletsRuntime::appletsPlayer(), &second);

    AppletsRuntime::setAppletsPlayer(&first);

    QCOMPARE(AppletsRuntime::appletsPlayer(), &first);
}

void tst_AppletsRuntime::qmlDoesNotOwnThePlayer()
{
    AppletsPlayer player(nullptr);
    QCOMPARE(QQmlEngine::objectOwnership(&player), QQmlEngine::CppOwnership);

    QQmlEngine::setObjectOwnership(&player, QQmlEngine::JavaScriptOwnership);
    AppletsRuntime::setAppletsPlayer(&player);

    QCOMPARE(QQmlEngine::objectOwnership(&player), QQmlEngine::CppOwnership);
}

void tst_AppletsRuntime::readingAndSettingLogTheProperty()
{
    AppletsPlayer player(nullptr);
    LogCapture log;

    AppletsRuntime::setAppletsPlayer(&player);
    QCOMPARE(log.count(QtDebugMsg, plainLogger, QStringLiteral("playerProperty=")), 1);

    AppletsRuntime::appletsPlayer();
    QCOMPARE(log.count(QtDebugMsg, plainLogger, QStringLiteral("playerProperty=")), 2);
    QVERIFY2(log.messages().last().text.contains(QStringLiteral("AppletsPlayer(0x")),
             qPrintable(log.dump()));
}

void tst_AppletsRuntime::aPlayerThatIsGoneIsForgotten()
{
    {
        AppletsPlayer player(nullptr);
        QCOMPARE(registeredPlayer(), &player);
    }
    QVERIFY(!registeredPlayer());

    AppletsPlayer survivor(nullptr);
    {
        const AppletsPlayer *registered = registeredPlayer();
        PlayerFixture::reset();
        AppletsPlayer other(nullptr);
        AppletsRuntime::setAppletsPlayer(&survivor);
        QCOMPARE(registered, &survivor);
    }
    QCOMPARE(registeredPlayer(), &survivor);
}

void tst_AppletsRuntime::aSecondPlayerEndsTheProcess()
{
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--two-players")});
    QVERIFY(process.waitForFinished());

    QCOMPARE(process.exitStatus(), QProcess::CrashExit);
    const QString errors = QString::fromLocal8Bit(process.readAllStandardError());
    QVERIFY2(errors.contains(QStringLiteral("first player made")), qPrintable(errors));
    QVERIFY2(errors.contains(QStringLiteral("AppletsRuntime already initialized")),
             qPrintable(errors));
    QVERIFY2(!errors.contains(QStringLiteral("second player made")), qPrintable(errors));
}

namespace {

// The child process of the last test.
int makeTwoPlayers(int argc, char **argv)
{
    IsolatedHome home;
    QGuiApplication application(argc, argv);
    AppletsPlayer first(nullptr);
    qWarning("first player made");
    AppletsPlayer second(nullptr);
    qWarning("second player made");
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc > 1 && qstrcmp(argv[1], "--two-players") == 0)
        return makeTwoPlayers(argc, argv);
    return runIsolatedTest<tst_AppletsRuntime>(argc, argv);
}
#include "tst_AppletsRuntime.moc"
