#include "files/SettingsBase.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class tst_SettingsBase : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void constructorsChooseTheFileAsThoseOfQSettingsDo();
    void synchronizeWritesTheFile();
    void valueReadsTheDefaultForWhatHasNoText_data();
    void valueReadsTheDefaultForWhatHasNoText();
    void setValueStoresWhatHasATextAndIsNotTheDefault_data();
    void setValueStoresWhatHasATextAndIsNotTheDefault();
    void setValueRemovesAFormerValue();
    void nothingUnderAnEmptyKeyLosesNothing_data();
    void nothingUnderAnEmptyKeyLosesNothing();
    void groupValuesLieInTheirGroup();
    void groupCallsLeaveNoGroupOpen();
    void colorsAreStoredAsText_data();
    void colorsAreStoredAsText();
    void logsNothing();
    void damagedStoreIsEmpty();

private:
    QString iniPath() const { return m_dir.filePath("base.ini"); }

    QTemporaryDir m_dir;
};

void tst_SettingsBase::init()
{
    SettingsBase(iniPath(), QSettings::IniFormat).clear();
    SettingsBase().clear();
}

void tst_SettingsBase::constructorsChooseTheFileAsThoseOfQSettingsDo()
{
    QObject parent;

    const auto *native = new SettingsBase(&parent);
    QCOMPARE(native->path(), QSettings().fileName());
    QCOMPARE(native->parent(), &parent);

    const auto *named = new SettingsBase("Org", "App", &parent);
    QCOMPARE(named->path(), QSettings("Org", "App").fileName());
    QCOMPARE(named->parent(), &parent);

    const auto *organization = new SettingsBase(QString("Org"));
    QCOMPARE(organization->path(), QSettings("Org").fileName());
    delete organization;

    const auto *scoped = new SettingsBase(QSettings::SystemScope, "Org", "App", &parent);
    QCOMPARE(scoped->path(), QSettings(QSettings::SystemScope, "Org", "App").fileName());
    QCOMPARE(scoped->scope(), QSettings::SystemScope);
    QCOMPARE(scoped->parent(), &parent);

    const auto *formatted =
        new SettingsBase(QSettings::IniFormat, QSettings::UserScope, "Org", "App", &parent);
    QCOMPARE(formatted->path(),
             QSettings(QSettings::IniFormat, QSettings::UserScope, "Org", "App").fileName());
    QVERIFY(formatted->path().endsWith("/App.ini"));
    QCOMPARE(formatted->parent(), &parent);

    const auto *file = new SettingsBase(iniPath(), QSettings::IniFormat, &parent);
    QCOMPARE(file->path(), iniPath());
    QCOMPARE(file->property("path").toString(), iniPath());
    QCOMPARE(file->parent(), &parent);
}

void tst_SettingsBase::synchronizeWritesTheFile()
{
    SettingsBase settings(iniPath(), QSettings::IniFormat);
    settings.setValue("k", "written");

    QVERIFY(QMetaObject::invokeMethod(&settings, "synchronize"));

    QFile file(iniPath());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("[General]\nk=written\n"));
}

void tst_SettingsBase::valueReadsTheDefaultForWhatHasNoText_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<bool>("readsBack");

    QTest::newRow("text") << QVariant("x") << true;
    QTest::newRow("text with blanks around it") << QVariant(" x ") << true;
    QTest::newRow("zero") << QVariant(0) << true;
    QTest::newRow("false") << QVariant(false) << true;
    QTest::newRow("bytes") << QVariant(QByteArray("b")) << true;
    QTest::newRow("list of one text") << QVariant(QStringList{"one"}) << true;
    QTest::newRow("nothing") << QVariant() << false;
    QTest::newRow("empty text") << QVariant("") << false;
    QTest::newRow("blank text") << QVariant(" \t\n") << false;
    QTest::newRow("blank bytes") << QVariant(QByteArray(" ")) << false;
    QTest::newRow("list of texts") << QVariant(QStringList{"a", "b"}) << false;
    QTest::newRow("list") << QVariant(QVariantList{1, 2}) << false;
    QTest::newRow("map") << QVariant(QVariantMap{{"a", 1}}) << false;
    QTest::newRow("null text") << QVariant(QString()) << false;
}

void tst_SettingsBase::valueReadsTheDefaultForWhatHasNoText()
{
    QFETCH(QVariant, stored);
    QFETCH(bool, readsBack);
    SettingsBase settings;
    static_cast<QSettings &>(settings).setValue("k", stored);

    QCOMPARE(settings.value("k", "default"), readsBack ? stored : QVariant("default"));
    QCOMPARE(settings.value("k"), readsBack ? stored : QVariant());
    QCOMPARE(settings.value("missing", "default"), QVariant("default"));
    QVERIFY(!settings.value("missing").isValid());
}

void tst_SettingsBase::setValueStoresWhatHasATextAndIsNotTheDefault_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QVariant>("defaultValue");
    QTest::addColumn<bool>("isStored");

    QTest::newRow("text") << QVariant("x") << QVariant() << true;
    QTest::newRow("text is kept untrimmed") << QVariant(" x ") << QVariant() << true;
    QTest::newRow("zero") << QVariant(0) << QVariant() << true;
    QTest::newRow("false") << QVariant(false) << QVariant() << true;
    QTest::newRow("other than the default") << QVariant(5) << QVariant(6) << true;
    QTest::newRow("equal to the default") << QVariant(5) << QVariant(5) << false;
    QTest::newRow("equal to a null default") << QVariant("x") << QVariant(QString()) << true;
    QTest::newRow("invalid") << QVariant() << QVariant() << false;
    QTest::newRow("null") << QVariant(QString()) << QVariant() << false;
    QTest::newRow("blank") << QVariant("  ") << QVariant() << false;
    QTest::newRow("list") << QVariant(QVariantList{1}) << QVariant() << false;
    QTest::newRow("map") << QVariant(QVariantMap{{"a", 1}}) << QVariant() << false;
}

void tst_SettingsBase::setValueStoresWhatHasATextAndIsNotTheDefault()
{
    QFETCH(QVariant, value);
    QFETCH(QVariant, defaultValue);
    QFETCH(bool, isStored);
    SettingsBase settings;

    settings.setValue("k", value, defaultValue);

    QCOMPARE(settings.contains("k"), isStored);
    QCOMPARE(static_cast<QSettings &>(settings).value("k"), isStored ? value : QVariant());
}

void tst_SettingsBase::setValueRemovesAFormerValue()
{
    SettingsBase settings;
    const QVariantList removers{QVariant(), QVariant(QString()), " ", QVariantList{1}};
    for (const QVariant &remover : removers) {
        settings.setValue("k", "former");
        settings.setValue("k", remover);
        QVERIFY2(!settings.contains("k"), remover.typeName());
    }

    settings.setValue("k", "former");
    settings.setValue("k", 5, 5);
    QVERIFY(!settings.contains("k"));
}

void tst_SettingsBase::nothingUnderAnEmptyKeyLosesNothing_data()
{
    QTest::addColumn<QString>("key");
    QTest::newRow("empty") << QString("");
    QTest::newRow("null") << QString();
    QTest::newRow("slashes") << QString("//");
}

void tst_SettingsBase::nothingUnderAnEmptyKeyLosesNothing()
{
    QFETCH(QString, key);
    SettingsBase settings(iniPath(), QSettings::IniFormat);
    settings.setValue("kept", 1);
    settings.setGroupValue("group", "kept", 2);

    settings.setValue(key, QVariant());
    settings.setGroupValue("group", key, "");
    settings.setValue(key, 1);
    settings.setGroupValue("group", key, 1);

    QCOMPARE(settings.allKeys(), (QStringList{"group/kept", "kept"}));
    QCOMPARE(settings.value("kept"), QVariant(1));
    QCOMPARE(settings.groupValue("group", "kept"), QVariant(2));
}

void tst_SettingsBase::groupValuesLieInTheirGroup()
{
    SettingsBase settings;

    settings.setGroupValue("g/h", "k", "v");

    QCOMPARE(settings.value("g/h/k"), QVariant("v"));
    QCOMPARE(settings.groupValue("g/h", "k"), QVariant("v"));
    QCOMPARE(settings.groupValue("g", "h/k"), QVariant("v"));
    QCOMPARE(settings.groupValue("g", "k", "default"), QVariant("default"));
    QVERIFY(!settings.groupValue("g", "k").isValid());

    settings.setGroupValue("g/h", "k", " ");
    QVERIFY(!settings.contains("g/h/k"));
}

void tst_SettingsBase::groupCallsLeaveNoGroupOpen()
{
    SettingsBase settings;
    settings.beginGroup("outer");
    settings.setGroupValue("g", "k", "v");
    settings.groupValue("g", "k");
    QCOMPARE(settings.group(), QString("outer"));
    settings.endGroup();
    QCOMPARE(settings.value("outer/g/k"), QVariant("v"));
}

void tst_SettingsBase::colorsAreStoredAsText_data()
{
    QTest::addColumn<QColor>("color");
    QTest::addColumn<QString>("text");

    QTest::newRow("opaque") << QColor(255, 128, 0) << "#ff8000";
    QTest::newRow("half transparent") << QColor(255, 128, 0, 128) << "#80ff8000";
    QTest::newRow("transparent") << QColor(Qt::transparent) << "#00000000";
}

void tst_SettingsBase::colorsAreStoredAsText()
{
    QFETCH(QColor, color);
    QFETCH(QString, text);
    SettingsBase settings;

    settings.setColorValue("k", color);

    QCOMPARE(settings.value("k"), QVariant(text));
}

void tst_SettingsBase::logsNothing()
{
    LogCapture log;
    {
        SettingsBase settings(m_dir.filePath("no/such/base.ini"), QSettings::IniFormat);
        settings.setValue("k", "v");
        settings.setValue("k", QVariant());
        settings.setGroupValue("g", "k", "v");
        settings.synchronize();
    }
    QVERIFY2(log.messages().isEmpty(), qPrintable(log.dump()));
}

void tst_SettingsBase::damagedStoreIsEmpty()
{
    QFile file(iniPath());
    QVERIFY(file.open(QIODevice::WriteOnly)
            && file.write("lst=@Variant(\\0\\0\\0\\t\\x7f\\xff\\xff\\xff)\n") > 0);
    file.close();
    LogCapture log;
    {
        SettingsBase settings(iniPath(), QSettings::IniFormat);
        QCOMPARE(settings.value("lst", "default"), QVariant("default"));
        settings.setValue("lst", QVariant());
        settings.setValue("new", 1);
        settings.synchronize();
        QCoreApplication::processEvents();
    }
    QVERIFY(log.count(QtWarningMsg, "Zemrik.Tessaline.File", "Settings can't be read:") >= 3);
}

TESSALINE_TEST_MAIN(tst_SettingsBase)
#include "tst_SettingsBase.moc"
