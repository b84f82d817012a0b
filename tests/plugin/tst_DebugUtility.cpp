#include "plugin/DebugUtility.h"
#include "plugin/TessalineDebug.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTest>

Q_LOGGING_CATEGORY(runtimeCategory, "Zemrik.Runtime.Test")
Q_LOGGING_CATEGORY(extrasCategory, "Zemrik.Extras.Test")
Q_LOGGING_CATEGORY(bareRuntimeCategory, "Zemrik.Runtime")
Q_LOGGING_CATEGORY(longerExtrasCategory, "Zemrik.ExtrasMore")
Q_LOGGING_CATEGORY(otherCategory, "Somebody.Else")

class DumpedObject : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int number MEMBER m_number)
    Q_PROPERTY(QString word MEMBER m_word)

private:
    int m_number = 7;
    QString m_word = QStringLiteral("seven");
};

class tst_DebugUtility : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void categoryHasItsName();

    void setAllEnabledSwitchesOneFamily_data();
    void setAllEnabledSwitchesOneFamily();
    void setAllEnabledTakesAllNamesWithThatStart();
    void setAllEnabledBuildsUpAState();
    void setAllEnabledKeepsTheWishOnTheApplication();
    void setAllEnabledFollowsPropertiesThatOthersSet_data();
    void setAllEnabledFollowsPropertiesThatOthersSet();
    void setAllEnabledKeepsTheStateWithoutProperties();
    void setAllEnabledLeavesCriticalMessagesOn();
    void setAllEnabledReplacesEarlierRules();

    void onlyTheLastRuleIsInForce();
    void filterIgnoresCase();
    void emptyFilterTakesAllRules();
    void filterWithoutMatchChangesNothing();
    void missingConfigurationIsSilent();

    void dumpOfANullObject();
    void dumpOfAnObjectWithoutAParent();
    void dumpOfAnObjectWithAParent();
    void dumpPropertiesIncludesInheritedOnes();
    void dumpDynamicProperties();
    void dumpPrintsNothingWithoutTheDebugLevel();

private:
    QString m_configuration;
};

namespace {

const char runtimeProperty[] = "Zemrik.Runtime.loggingEnabled";
const char extrasProperty[] = "Zemrik.Extras.loggingEnabled";

QStringList textsOf(const LogCapture &log)
{
    QStringList texts;
    for (const LogCapture::Message &message : log.messages()) {
        if (message.type == QtDebugMsg && message.category == "Zemrik.Runtime.Utility")
            texts.append(message.text);
    }
    return texts;
}

} // namespace

void tst_DebugUtility::init()
{
    m_configuration = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
                      + "/QtProject/qtlogging.ini";
    QCoreApplication::instance()->setProperty(runtimeProperty, false);
    QCoreApplication::instance()->setProperty(extrasProperty, false);
    DebugUtility::setAllEnabled(QString(), false);
    QCoreApplication::instance()->setProperty(runtimeProperty, QVariant());
    QCoreApplication::instance()->setProperty(extrasProperty, QVariant());
    QLoggingCategory::setFilterRules(QString());
}

void tst_DebugUtility::cleanup()
{
    QFile::remove(m_configuration);
    QLoggingCategory::setFilterRules(QString());
}

void tst_DebugUtility::categoryHasItsName()
{
    QCOMPARE(CATEGORY_UTILITY().categoryName(), "Zemrik.Runtime.Utility");
    QVERIFY(CATEGORY_UTILITY().isDebugEnabled());
}

void tst_DebugUtility::setAllEnabledSwitchesOneFamily_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("runtime");
    QTest::addColumn<bool>("extras");
    QTest::newRow("runtime") << "Zemrik.Runtime" << true << false;
    QTest::newRow("extras") << "Zemrik.Extras" << false << true;
    QTest::newRow("unknown") << "Zemrik.Other" << false << false;
    QTest::newRow("other case") << "zemrik.runtime" << false << false;
    QTest::newRow("part of a family") << "Zemrik.Runtime.Utility" << false << false;
}

void tst_DebugUtility::setAllEnabledSwitchesOneFamily()
{
    QFETCH(QString, name);
    QFETCH(bool, runtime);
    QFETCH(bool, extras);
    DebugUtility::setAllEnabled(name, true);
    QCOMPARE(runtimeCategory().isDebugEnabled(), runtime);
    QCOMPARE(runtimeCategory().isWarningEnabled(), runtime);
    QCOMPARE(CATEGORY_UTILITY().isDebugEnabled(), runtime);
    QCOMPARE(extrasCategory().isDebugEnabled(), extras);
    QCOMPARE(extrasCategory().isInfoEnabled(), extras);
    QVERIFY(otherCategory().isDebugEnabled());
    QVERIFY(FRAMEWORK_CORE().isDebugEnabled());
}

void tst_DebugUtility::setAllEnabledTakesAllNamesWithThatStart()
{
    DebugUtility::setAllEnabled("anything", true); // both families are off
    QVERIFY(!bareRuntimeCategory().isDebugEnabled());
    QVERIFY(!longerExtrasCategory().isDebugEnabled());

    DebugUtility::setAllEnabled("Zemrik.Runtime", true);
    DebugUtility::setAllEnabled("Zemrik.Extras", true);
    QVERIFY(bareRuntimeCategory().isDebugEnabled());
    QVERIFY(longerExtrasCategory().isDebugEnabled());
}

void tst_DebugUtility::setAllEnabledBuildsUpAState()
{
    DebugUtility::setAllEnabled("Zemrik.Runtime", true);
    DebugUtility::setAllEnabled("Zemrik.Extras", true);
    QVERIFY(runtimeCategory().isDebugEnabled());
    QVERIFY(extrasCategory().isDebugEnabled());
    DebugUtility::setAllEnabled("Zemrik.Runtime", false);
    QVERIFY(!runtimeCategory().isDebugEnabled());
    QVERIFY(extrasCategory().isDebugEnabled());
}

void tst_DebugUtility::setAllEnabledKeepsTheWishOnTheApplication()
{
    DebugUtility::setAllEnabled("Zemrik.Runtime", true);
    QCOMPARE(QCoreApplication::instance()->property(runtimeProperty), QVariant(true));
    QVERIFY(!QCoreApplication::instance()->property(extrasProperty).isValid());
    DebugUtility::setAllEnabled("Zemrik.Extras", false);
    QCOMPARE(QCoreApplication::instance()->property(extrasProperty), QVariant(false));
    DebugUtility::setAllEnabled("Zemrik.Other", true);
    QVERIFY(!QCoreApplication::instance()->dynamicPropertyNames().contains(
        "Zemrik.Other.loggingEnabled"));
}

void tst_DebugUtility::setAllEnabledFollowsPropertiesThatOthersSet_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("enabled");
    QTest::newRow("true") << QVariant(true) << true;
    QTest::newRow("false") << QVariant(false) << false;
    QTest::newRow("number") << QVariant(1) << true;
    QTest::newRow("text") << QVariant("false") << false;
    QTest::newRow("no bool keeps the state") << QVariant(QVariantMap()) << true;
}

void tst_DebugUtility::setAllEnabledFollowsPropertiesThatOthersSet()
{
    QFETCH(QVariant, value);
    QFETCH(bool, enabled);
    DebugUtility::setAllEnabled("Zemrik.Extras", true);
    QCoreApplication::instance()->setProperty(extrasProperty, value);
    DebugUtility::setAllEnabled("anything", false);
    QCOMPARE(extrasCategory().isDebugEnabled(), enabled);
    QVERIFY(!runtimeCategory().isDebugEnabled());
}

void tst_DebugUtility::setAllEnabledKeepsTheStateWithoutProperties()
{
    DebugUtility::setAllEnabled("Zemrik.Runtime", true);
    QCoreApplication::instance()->setProperty(runtimeProperty, QVariant());
    QLoggingCategory::setFilterRules("*=false");
    DebugUtility::setAllEnabled("anything", false);
    QVERIFY(runtimeCategory().isDebugEnabled());
}

void tst_DebugUtility::setAllEnabledLeavesCriticalMessagesOn()
{
    QLoggingCategory::setFilterRules("*=false");
    DebugUtility::setAllEnabled("Zemrik.Runtime", false);
    QVERIFY(!runtimeCategory().isWarningEnabled());
    QVERIFY(runtimeCategory().isCriticalEnabled());
    QVERIFY(extrasCategory().isCriticalEnabled());
    QVERIFY(otherCategory().isCriticalEnabled());
}

void tst_DebugUtility::setAllEnabledReplacesEarlierRules()
{
    Debug::setAllEnabled(false);
    QVERIFY(!FRAMEWORK_CORE().isDebugEnabled());
    DebugUtility::setAllEnabled("Zemrik.Runtime", true);
    QVERIFY(FRAMEWORK_CORE().isDebugEnabled());
}

namespace {

bool writeConfiguration(const QString &path, const QByteArray &content)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

const QByteArray threeRules = "[Rules]\n"
                              "Somebody.Else.debug=true\n"
                              "[rules]\n"
                              "Somebody.Else.debug=false\n"
                              "Zemrik.Extras.Test.debug=false\n"
                              "Zemrik.Runtime.Test.debug=false\n";

} // namespace

void tst_DebugUtility::onlyTheLastRuleIsInForce()
{
    QVERIFY(writeConfiguration(m_configuration, threeRules));
    DebugUtility::loadLoggingFilterRules("debug");
    QVERIFY(otherCategory().isDebugEnabled());
    QVERIFY(extrasCategory().isDebugEnabled());
    QVERIFY(!runtimeCategory().isDebugEnabled());
    QVERIFY(runtimeCategory().isWarningEnabled());
}

void tst_DebugUtility::filterIgnoresCase()
{
    QVERIFY(writeConfiguration(m_configuration, threeRules));
    DebugUtility::loadLoggingFilterRules("EXTRAS");
    QVERIFY(!extrasCategory().isDebugEnabled());
    QVERIFY(runtimeCategory().isDebugEnabled());
}

void tst_DebugUtility::emptyFilterTakesAllRules()
{
    QVERIFY(writeConfiguration(m_configuration, threeRules));
    DebugUtility::loadLoggingFilterRules(QString());
    QVERIFY(!runtimeCategory().isDebugEnabled());
    QVERIFY(extrasCategory().isDebugEnabled());
}

void tst_DebugUtility::filterWithoutMatchChangesNothing()
{
    QVERIFY(writeConfiguration(m_configuration, threeRules));
    QLoggingCategory::setFilterRules("Somebody.Else=false");
    DebugUtility::loadLoggingFilterRules("nothing");
    QVERIFY(!otherCategory().isDebugEnabled());
}

void tst_DebugUtility::missingConfigurationIsSilent()
{
    QVERIFY(QStandardPaths::locate(QStandardPaths::GenericConfigLocation, "QtProject/qtlogging.ini")
                .isEmpty());
    QLoggingCategory::setFilterRules("Somebody.Else=false");
    LogCapture log;
    DebugUtility::loadLoggingFilterRules(QString());
    QVERIFY(!otherCategory().isDebugEnabled());
    QCOMPARE(log.messages().size(), 0);
}

void tst_DebugUtility::dumpOfANullObject()
{
    LogCapture log;
    DebugUtility::dumpObject("here", nullptr);
    QCOMPARE(textsOf(log), QStringList("here NULL object"));
    QCOMPARE(log.messages().size(), 1);
}

void tst_DebugUtility::dumpOfAnObjectWithoutAParent()
{
    DumpedObject object;
    object.setObjectName("it");
    object.setProperty("dynamic", 5);
    LogCapture log;
    DebugUtility::dumpObject("here", &object);
    const QStringList lines{"here objectName: \"it\"",
                            "here className: DumpedObject",
                            "here NULL parent object",
                            "Properties: DumpedObject",
                            "   objectName = QVariant(QString, \"it\")",
                            "   number = QVariant(int, 7)",
                            "   word = QVariant(QString, \"seven\")",
                            "Dynamic properties: \"it\"",
                            "   dynamic = QVariant(int, 5)"};
    QCOMPARE(textsOf(log), lines);
    QCOMPARE(log.messages().size(), lines.size());
}

void tst_DebugUtility::dumpOfAnObjectWithAParent()
{
    DumpedObject parent;
    parent.setObjectName("above");
    QObject object(&parent);
    LogCapture log;
    DebugUtility::dumpObject("here", &object);
    QCOMPARE(textsOf(log).mid(0, 5),
             (QStringList{"here objectName: \"\"", "here className: QObject",
                          "here parent->objectName: \"above\"",
                          "here parent->className: DumpedObject", "Properties: QObject"}));
}

void tst_DebugUtility::dumpPropertiesIncludesInheritedOnes()
{
    const DumpedObject object;
    LogCapture log;
    DebugUtility::dumpProperties(&object);
    QCOMPARE(
        textsOf(log),
        (QStringList{"Properties: DumpedObject", "   objectName = QVariant(QString, \"\")",
                     "   number = QVariant(int, 7)", "   word = QVariant(QString, \"seven\")"}));
}

void tst_DebugUtility::dumpDynamicProperties()
{
    QObject object;
    object.setObjectName("it");
    object.setProperty("b", "x");
    object.setProperty("a", true);
    LogCapture log;
    DebugUtility::dumpDynamicProperties(&object);
    QCOMPARE(textsOf(log),
             (QStringList{"Dynamic properties: \"it\"", "   b = QVariant(QString, \"x\")",
                          "   a = QVariant(bool, true)"}));
}

void tst_DebugUtility::dumpPrintsNothingWithoutTheDebugLevel()
{
    QLoggingCategory::setFilterRules("Zemrik.Runtime.Utility.debug=false");
    const DumpedObject object;
    LogCapture log;
    DebugUtility::dumpObject("here", &object);
    DebugUtility::dumpObject("here", nullptr);
    QCOMPARE(log.messages().size(), 0);
}

TESSALINE_TEST_MAIN(tst_DebugUtility)
#include "tst_DebugUtility.moc"
