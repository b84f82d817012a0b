#include "plugin/DebugUtility.h"
#include "plugin/TessalineDebug.h"
#include "support/IsolatedHome.h"

#include <QTest>

using Accessor = const QLoggingCategory &(*)();
Q_DECLARE_METATYPE(Accessor)

class tst_TessalineDebug : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QLoggingCategory::setFilterRules(QString()); }

    void categoriesHaveTheirNamesAndAllTypes_data();
    void categoriesHaveTheirNamesAndAllTypes();
    void setAllEnabledSwitchesTheLibrarysCategories_data();
    void setAllEnabledSwitchesTheLibrarysCategories();
    void setAllEnabledReplacesEarlierRules();
    void loadFilterRulesDoesNothing();
};

void tst_TessalineDebug::categoriesHaveTheirNamesAndAllTypes_data()
{
    QTest::addColumn<Accessor>("accessor");
    QTest::addColumn<QByteArray>("name");
    const QVector<QPair<Accessor, QByteArray>> rows{
        {FRAMEWORK_PLUGIN, "Plugin"},   {FRAMEWORK_CORE, "Core"},
        {FRAMEWORK_FILE, "File"},       {FRAMEWORK_PLAYER, "Player"},
        {FRAMEWORK_PROJECT, "Project"}, {FRAMEWORK_PACKAGE, "Package"},
        {FRAMEWORK_MANAGER, "Manager"}, {FRAMEWORK_NETWORK, "Network"},
        {FRAMEWORK_DEVICE, "Device"},   {FRAMEWORK_UTILITY, "Utility"},
        {FRAMEWORK_IMAGE, "Image"},
    };
    for (const auto &row : rows)
        QTest::newRow(row.second.constData()) << row.first << "Zemrik.Tessaline." + row.second;
    QTest::newRow("runtime utility")
        << Accessor(CATEGORY_UTILITY) << QByteArray("Zemrik.Runtime.Utility");
}

void tst_TessalineDebug::categoriesHaveTheirNamesAndAllTypes()
{
    QFETCH(Accessor, accessor);
    QFETCH(QByteArray, name);
    const QLoggingCategory &category = accessor();
    QCOMPARE(QByteArray(category.categoryName()), name);
    QCOMPARE(&accessor(), &category);
    QVERIFY(category.isDebugEnabled() && category.isInfoEnabled() && category.isWarningEnabled()
            && category.isCriticalEnabled());
}

void tst_TessalineDebug::setAllEnabledSwitchesTheLibrarysCategories_data()
{
    categoriesHaveTheirNamesAndAllTypes_data();
}

void tst_TessalineDebug::setAllEnabledSwitchesTheLibrarysCategories()
{
    QFETCH(Accessor, accessor);
    QFETCH(QByteArray, name);
    const QLoggingCategory &category = accessor();
    const bool ownFamily = name.startsWith("Zemrik.Tessaline.");

    Debug::setAllEnabled(false);
    QCOMPARE(category.isDebugEnabled(), !ownFamily);
    QCOMPARE(category.isCriticalEnabled(), !ownFamily);

    Debug::setAllEnabled(true);
    QVERIFY(category.isDebugEnabled() && category.isCriticalEnabled());
}

void tst_TessalineDebug::setAllEnabledReplacesEarlierRules()
{
    QLoggingCategory::setFilterRules("Zemrik.Runtime.*=false\nZemrik.Tessaline.Core.debug=false");
    QVERIFY(!CATEGORY_UTILITY().isDebugEnabled());
    QVERIFY(!FRAMEWORK_CORE().isDebugEnabled());

    Debug::setAllEnabled(false);
    QVERIFY(CATEGORY_UTILITY().isDebugEnabled());

    Debug::setAllEnabled(true);
    QVERIFY(FRAMEWORK_CORE().isDebugEnabled());
}

void tst_TessalineDebug::loadFilterRulesDoesNothing()
{
    Debug::setAllEnabled(false);
    Debug::loadFilterRules();
    QVERIFY(!FRAMEWORK_CORE().isDebugEnabled());
}

TESSALINE_TEST_MAIN(tst_TessalineDebug)
#include "tst_TessalineDebug.moc"
