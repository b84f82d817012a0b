#include "files/Settings.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"

#include <QBuffer>
#include <QFile>
#include <QJSEngine>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <sys/resource.h>

class tst_Settings : public QObject
{
    Q_OBJECT

private slots:
    void jsonFormatIsRegisteredOnceAndLogged();
    void init();

    void constructorsChooseTheFileAsThoseOfQSettingsDo();
    void fallbacksEnabledIsThatOfQSettings();
    void valueReadsTheDefaultForNullsAndBlankTexts_data();
    void valueReadsTheDefaultForNullsAndBlankTexts();
    void setValueStoresOrRemoves_data();
    void setValueStoresOrRemoves();
    void valueChangedComesAfterTheValueIsStored();
    void removalsAreSilent();
    void nothingUnderAnEmptyKeyLosesNothing();
    void scriptValuesAreStoredPlain();
    void objectsAreNotStored();
    void colorsAreStoredAsText_data();
    void colorsAreStoredAsText();
    void colorValueReadsColorsAndTexts();
    void boolAndNumberValuesConvert_data();
    void boolAndNumberValuesConvert();
    void removeTakesTheGroupAlong();
    void onPropertyChangedWithoutASenderDoesNothing();

    void jsonWriterWritesTheMapAsItStands();
    void jsonWriterReportsAFailingDevice();
    void jsonReaderTakesAnything_data();
    void jsonReaderTakesAnything();
    void jsonStoreKeepsAGroupInTheMembersName();
    void jsonStoreKeepsANestedObjectAsOneValue();
    void jsonStoreIsCaseSensitive();
    void jsonStoreKeepsTypesAndNulls();
    void jsonStoreWritesUtf8();
    void jsonStoreThatDoesNotParseIsEmptyAndIsReplaced();
    void formatIsNotChosenByTheSuffix();

    void fullDiskIsSilent_data();
    void fullDiskIsSilent();
    void jsonStoreKeepsTheOldFileOnAFullDisk();
    void unwritablePathIsSilent();
    void damagedStoreIsEmptyAndStaysAsItIs();

private:
    QString iniPath() const { return m_dir.filePath("settings.ini"); }
    QString jsonPath() const { return m_dir.filePath("settings.json"); }

    QTemporaryDir m_dir;
};

namespace {

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QJsonObject readJson(const QString &path)
{
    return QJsonDocument::fromJson(readFile(path)).object();
}

// While it lives no file of this process grows beyond the limit, as on a disk that is full.
class FullDisk
{
public:
    explicit FullDisk(rlim_t limit)
    {
        m_handler = std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_former);
        const rlimit full{limit, m_former.rlim_max};
        m_valid = setrlimit(RLIMIT_FSIZE, &full) == 0;
    }
    ~FullDisk()
    {
        setrlimit(RLIMIT_FSIZE, &m_former);
        std::signal(SIGXFSZ, m_handler);
    }
    Q_DISABLE_COPY(FullDisk)

    bool isValid() const { return m_valid; }

private:
    rlimit m_former{};
    bool m_valid = false;
    void (*m_handler)(int) = nullptr;
};

} // namespace

// The first test: nothing may have asked for the format before.
void tst_Settings::jsonFormatIsRegisteredOnceAndLogged()
{
    LogCapture log;
    const QSettings::Format format = Settings::jsonFormat();

    QVERIFY(format > QSettings::InvalidFormat);
    QCOMPARE(log.count(QtDebugMsg, "Zemrik.Tessaline.File",
                       "Settings::jsonFormat() " + QString::number(format)),
             1);
    QCOMPARE(Settings::jsonFormat(), format);
    QCOMPARE(log.messages().size(), 1);
}

void tst_Settings::init()
{
    QFile::remove(iniPath());
    QFile::remove(jsonPath());
    QSettings().clear();
}

void tst_Settings::constructorsChooseTheFileAsThoseOfQSettingsDo()
{
    QObject parent;

    const auto *native = new Settings(&parent);
    QCOMPARE(native->path(), QSettings().fileName());
    QCOMPARE(native->parent(), &parent);

    const auto *named = new Settings("Org", "App", &parent);
    QCOMPARE(named->path(), QSettings("Org", "App").fileName());
    QCOMPARE(named->parent(), &parent);

    const auto *scoped = new Settings(QSettings::SystemScope, "Org", "App", &parent);
    QCOMPARE(scoped->path(), QSettings(QSettings::SystemScope, "Org", "App").fileName());
    QCOMPARE(scoped->parent(), &parent);

    const auto *formatted =
        new Settings(Settings::jsonFormat(), QSettings::UserScope, "Org", "App", &parent);
    QVERIFY2(formatted->path().endsWith("/Org/App.json"), qPrintable(formatted->path()));
    QCOMPARE(formatted->parent(), &parent);

    const auto *file = new Settings(jsonPath(), Settings::jsonFormat(), &parent);
    QCOMPARE(file->property("path").toString(), jsonPath());
    QCOMPARE(file->format(), Settings::jsonFormat());
    QCOMPARE(file->parent(), &parent);
}

void tst_Settings::fallbacksEnabledIsThatOfQSettings()
{
    Settings settings;
    QCOMPARE(settings.property("fallbacksEnabled"), QVariant(true));
    QVERIFY(settings.setProperty("fallbacksEnabled", false));
    QVERIFY(!static_cast<QSettings &>(settings).fallbacksEnabled());
}

void tst_Settings::valueReadsTheDefaultForNullsAndBlankTexts_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<bool>("readsBack");

    QTest::newRow("text") << QVariant("x") << true;
    QTest::newRow("text with blanks around it") << QVariant(" x ") << true;
    QTest::newRow("zero") << QVariant(0) << true;
    QTest::newRow("false") << QVariant(false) << true;
    QTest::newRow("list") << QVariant(QVariantList{1, 2}) << true;
    QTest::newRow("empty list") << QVariant(QVariantList()) << true;
    QTest::newRow("map") << QVariant(QVariantMap{{"a", 1}}) << true;
    QTest::newRow("blank bytes are no text") << QVariant(QByteArray(" ")) << true;
    QTest::newRow("nothing") << QVariant() << false;
    QTest::newRow("null pointer") << QVariant::fromValue(nullptr) << false;
    QTest::newRow("empty text") << QVariant("") << false;
    QTest::newRow("blank text") << QVariant("   ") << false;
}

void tst_Settings::valueReadsTheDefaultForNullsAndBlankTexts()
{
    QFETCH(QVariant, stored);
    QFETCH(bool, readsBack);
    Settings settings;
    static_cast<QSettings &>(settings).setValue("k", stored);

    QCOMPARE(settings.value("k", "d"), readsBack ? stored : QVariant("d"));
    QCOMPARE(settings.value("k"), readsBack ? stored : QVariant());
    QCOMPARE(settings.value("missing", "d"), QVariant("d"));
    QVERIFY(!settings.value("missing").isValid());
}

void tst_Settings::setValueStoresOrRemoves_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QVariant>("defaultValue");
    QTest::addColumn<bool>("isStored");

    QTest::newRow("text") << QVariant("x") << QVariant() << true;
    QTest::newRow("text is kept untrimmed") << QVariant(" x ") << QVariant() << true;
    QTest::newRow("zero") << QVariant(0) << QVariant() << true;
    QTest::newRow("false") << QVariant(false) << QVariant() << true;
    QTest::newRow("empty list") << QVariant(QVariantList()) << QVariant() << true;
    QTest::newRow("empty bytes") << QVariant(QByteArray("")) << QVariant() << true;
    QTest::newRow("other than the default") << QVariant(5) << QVariant(6) << true;
    QTest::newRow("null default") << QVariant("x") << QVariant(QString()) << true;
    QTest::newRow("equal to the default") << QVariant(5) << QVariant(5) << false;
    QTest::newRow("map equal to the default")
        << QVariant(QVariantMap{{"a", 1}}) << QVariant(QVariantMap{{"a", 1}}) << false;
    QTest::newRow("invalid") << QVariant() << QVariant() << false;
    QTest::newRow("null text") << QVariant(QString()) << QVariant() << false;
    QTest::newRow("null pointer") << QVariant::fromValue(nullptr) << QVariant() << false;
    QTest::newRow("empty text") << QVariant("") << QVariant() << false;
    QTest::newRow("blank text") << QVariant(" \t\n ") << QVariant() << false;
    QTest::newRow("blank text that is the default") << QVariant(" ") << QVariant(" ") << false;
}

void tst_Settings::setValueStoresOrRemoves()
{
    QFETCH(QVariant, value);
    QFETCH(QVariant, defaultValue);
    QFETCH(bool, isStored);
    Settings settings;
    static_cast<QSettings &>(settings).setValue("k", "former");
    QSignalSpy spy(&settings, &Settings::valueChanged);

    settings.setValue("k", value, defaultValue);

    QCOMPARE(settings.contains("k"), isStored);
    QCOMPARE(static_cast<QSettings &>(settings).value("k"), isStored ? value : QVariant());
    QCOMPARE(spy.count(), isStored ? 1 : 0);
    if (isStored)
        QCOMPARE(spy.at(0).at(0), QVariant("k"));
}

void tst_Settings::valueChangedComesAfterTheValueIsStored()
{
    Settings settings;
    QVariantList seen;
    connect(&settings, &Settings::valueChanged, this,
            [&](const QString &key) { seen.append(settings.value(key)); });

    settings.setValue("k", 1);
    settings.setValue("k", 2);
    settings.setValue("k", 2);

    QCOMPARE(seen, (QVariantList{1, 2, 2}));
}

void tst_Settings::removalsAreSilent()
{
    Settings settings;
    settings.setValue("a", 1);
    settings.setValue("b", 1);
    QSignalSpy spy(&settings, &Settings::valueChanged);

    settings.remove("a");
    settings.setValue("b", QVariant());
    settings.setValue("never there", "  ");

    QVERIFY(settings.allKeys().isEmpty());
    QCOMPARE(spy.count(), 0);
}

void tst_Settings::nothingUnderAnEmptyKeyLosesNothing()
{
    Settings settings(iniPath(), QSettings::IniFormat);
    settings.setValue("kept", 1);
    settings.setValue("", QVariant());
    settings.setValue("/", "  ");
    settings.setValue("", 5, 5);
    QCOMPARE(settings.value("kept"), QVariant(1));
    QSignalSpy spy(&settings, &Settings::valueChanged);
    settings.setValue("/", 1);
    settings.setValue("", 1);
    settings.beginGroup("group");
    settings.setValue("//", 1);
    settings.endGroup();
    QCOMPARE(spy.count(), 0);
    QCOMPARE(settings.allKeys(), QStringList("kept"));
    settings.remove("");
    QVERIFY(!settings.contains("kept"));
}

void tst_Settings::scriptValuesAreStoredPlain()
{
    QJSEngine engine;
    Settings settings(jsonPath(), Settings::jsonFormat());
    const auto script = [&](const char *code) {
        return QVariant::fromValue(engine.evaluate(QString::fromLatin1(code)));
    };

    settings.setValue("map", script("({a: 1, b: [2, null, 'x']})"));
    settings.setValue("list", script("[1, [2, {c: 3}]]"));
    settings.setValue("default", script("({a: 1})"), script("({a: 1})"));
    settings.setValue("null", script("null"));
    settings.setValue("undefined", script("undefined"));
    settings.setValue("blank", script("'  '"));
    settings.synchronize();

    QCOMPARE(readJson(jsonPath()),
             QJsonDocument::fromJson(R"({"list":[1,[2,{"c":3}]],"map":{"a":1,"b":[2,null,"x"]}})")
                 .object());
}

void tst_Settings::objectsAreNotStored()
{
    Settings settings;
    QObject object;
    settings.setValue("k", "former");

    settings.setValue("k", QVariant::fromValue(&object));
    settings.setValue("map", QVariantMap{{"o", QVariant::fromValue(&object)}, {"n", 1}});
    settings.setValue("list", QVariantList{QVariant::fromValue(&object), 1});

    QVERIFY(!settings.contains("k"));
    QCOMPARE(settings.value("map"), QVariant(QVariantMap{{"o", QVariant()}, {"n", 1}}));
    QCOMPARE(settings.value("list"), QVariant(QVariantList{QVariant(), 1}));
}

void tst_Settings::colorsAreStoredAsText_data()
{
    QTest::addColumn<QColor>("color");
    QTest::addColumn<QString>("text");

    QTest::newRow("opaque") << QColor(255, 128, 0) << "#ff8000";
    QTest::newRow("half transparent, alpha first") << QColor(255, 128, 0, 128) << "#80ff8000";
    QTest::newRow("transparent") << QColor(Qt::transparent) << "#00000000";
    QTest::newRow("nearly opaque") << QColor(1, 2, 3, 254) << "#fe010203";
}

void tst_Settings::colorsAreStoredAsText()
{
    QFETCH(QColor, color);
    QFETCH(QString, text);
    Settings settings;
    QSignalSpy spy(&settings, &Settings::valueChanged);

    settings.setColorValue("k", color);

    QCOMPARE(settings.value("k"), QVariant(text));
    QCOMPARE(settings.colorValue("k"), color);
    QCOMPARE(spy.count(), 1);
}

void tst_Settings::colorValueReadsColorsAndTexts()
{
    Settings settings;
    settings.setValue("color", QColor(1, 2, 3, 4));
    settings.setValue("name", "steelblue");
    settings.setValue("no color", "certainly none");
    static_cast<QSettings &>(settings).setValue("blank", " ");

    QCOMPARE(settings.colorValue("color"), QColor(1, 2, 3, 4));
    QCOMPARE(settings.colorValue("name"), QColor("steelblue"));
    QVERIFY(!settings.colorValue("no color", Qt::red).isValid());
    QCOMPARE(settings.colorValue("missing", Qt::red), QColor(Qt::red));
    QCOMPARE(settings.colorValue("blank", Qt::red), QColor(Qt::red));
    QVERIFY(!settings.colorValue("missing").isValid());
}

void tst_Settings::boolAndNumberValuesConvert_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<bool>("boolValue");
    QTest::addColumn<double>("numberValue");

    QTest::newRow("true") << QVariant(true) << true << 1.0;
    QTest::newRow("text true") << QVariant("true") << true << 0.0;
    QTest::newRow("text false") << QVariant("false") << false << 0.0;
    QTest::newRow("text 0") << QVariant("0") << false << 0.0;
    QTest::newRow("text number") << QVariant("2.5") << true << 2.5;
    QTest::newRow("number") << QVariant(-3) << true << -3.0;
    QTest::newRow("text") << QVariant("x") << true << 0.0;
    QTest::newRow("list") << QVariant(QVariantList{1}) << false << 0.0;
}

void tst_Settings::boolAndNumberValuesConvert()
{
    QFETCH(QVariant, stored);
    Settings settings;
    settings.setValue("k", stored);

    QTEST(settings.boolValue("k"), "boolValue");
    QTEST(settings.numberValue("k"), "numberValue");
    QCOMPARE(settings.boolValue("missing"), false);
    QCOMPARE(settings.boolValue("missing", true), true);
    QCOMPARE(settings.numberValue("missing"), 0.0);
    QCOMPARE(settings.numberValue("missing", 7.5), 7.5);
}

void tst_Settings::removeTakesTheGroupAlong()
{
    Settings settings;
    settings.setValue("g", 1);
    settings.setValue("g/a", 1);
    settings.setValue("h", 1);

    settings.remove("g");

    QCOMPARE(settings.allKeys(), QStringList{"h"});
}

void tst_Settings::onPropertyChangedWithoutASenderDoesNothing()
{
    Settings settings;
    QVERIFY(QMetaObject::invokeMethod(&settings, "onPropertyChanged"));
    QVERIFY(settings.allKeys().isEmpty());
}

void tst_Settings::jsonWriterWritesTheMapAsItStands()
{
    QBuffer buffer;
    QVERIFY(buffer.open(QIODevice::WriteOnly));

    QVERIFY(Settings::writeJsonFormat(buffer,
                                      {{"group/key", 1}, {"name", "J\u00fcrgen"}, {"on", true}}));

    QCOMPARE(buffer.data(), QByteArray("{\n"
                                       "    \"group/key\": 1,\n"
                                       "    \"name\": \"J\xc3\xbcrgen\",\n"
                                       "    \"on\": true\n"
                                       "}\n"));
}

void tst_Settings::jsonWriterReportsAFailingDevice()
{
    QFile full("/dev/full");
    QVERIFY(full.open(QIODevice::WriteOnly));
    QVERIFY(!Settings::writeJsonFormat(full, {{"k", 1}}));

    QBuffer readOnly;
    QVERIFY(readOnly.open(QIODevice::ReadOnly));
    QTest::ignoreMessage(QtWarningMsg, "QIODevice::write (QBuffer): ReadOnly device");
    QVERIFY(!Settings::writeJsonFormat(readOnly, {{"k", 1}}));
}

void tst_Settings::jsonReaderTakesAnything_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QSettings::SettingsMap>("map");
    const QSettings::SettingsMap empty;
    const QSettings::SettingsMap one{{"a", 1}};

    QTest::newRow("object") << QByteArray(R"({"a":1})") << one;
    QTest::newRow("no flattening")
        << QByteArray(R"({"a":{"b":1},"c/d":2})")
        << QSettings::SettingsMap{{"a", QVariantMap{{"b", 1}}}, {"c/d", 2}};
    QTest::newRow("text ends at a NUL") << QByteArray("{\"a\":1}\0{\"b\":2}", 15) << one;
    QTest::newRow("NUL inside the object") << QByteArray("{\"a\":1\0}", 8) << empty;
    QTest::newRow("blanks around it") << QByteArray(" \r\n{\"a\":1}\t ") << one;
    QTest::newRow("empty object") << QByteArray("{}") << empty;
    QTest::newRow("empty key") << QByteArray(R"({"":1})") << QSettings::SettingsMap{{"", 1}};
    QTest::newRow("empty") << QByteArray() << empty;
    QTest::newRow("only a NUL") << QByteArray("\0", 1) << empty;
    QTest::newRow("array") << QByteArray("[1,2]") << empty;
    QTest::newRow("bare null") << QByteArray("null") << empty;
    QTest::newRow("bare number") << QByteArray("1") << empty;
    QTest::newRow("bare text") << QByteArray("\"a\"") << empty;
    QTest::newRow("not JSON") << QByteArray("[General]\na=1\n") << empty;
    QTest::newRow("truncated") << QByteArray(R"({"a":1,"b":[1,{"c":)") << empty;
    QTest::newRow("something after it") << QByteArray(R"({"a":1}x)") << empty;
    QTest::newRow("invalid UTF-8 in a text")
        << QByteArray("{\"a\":\"\xff\xc3(\"}")
        << QSettings::SettingsMap{{"a", QString("\ufffd\ufffd(")}};
    QTest::newRow("invalid UTF-8 before it") << QByteArray("\xff{\"a\":1}") << empty;
    QTest::newRow("nested beyond the parser's limit")
        << "{\"a\":" + QByteArray(100000, '[') + QByteArray(100000, ']') + "}" << empty;
    QTest::newRow("number beyond a double") << QByteArray(R"({"a":1e999})") << empty;
    QTest::newRow("binary") << QByteArray::fromHex("7f454c4602010100000000000000") << empty;
}

void tst_Settings::jsonReaderTakesAnything()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QSettings::SettingsMap, map);
    LogCapture log; // the parser's debug lines
    QBuffer buffer(&bytes);
    QVERIFY(buffer.open(QIODevice::ReadOnly));

    QSettings::SettingsMap read{{"before", 1}};
    QVERIFY(Settings::readJsonFormat(buffer, read));

    QCOMPARE(read, map);
    QCOMPARE(log.count(QtWarningMsg) + log.count(QtCriticalMsg), 0);
}

void tst_Settings::jsonStoreKeepsAGroupInTheMembersName()
{
    Settings settings(jsonPath(), Settings::jsonFormat());
    settings.setValue("group/key", "v");
    settings.synchronize();

    QCOMPARE(readJson(jsonPath()), (QJsonObject{{"group/key", "v"}}));
    const Settings again(jsonPath(), Settings::jsonFormat());
    QCOMPARE(again.value("group/key"), QVariant("v"));
    QCOMPARE(again.childGroups(), QStringList{"group"});
}

void tst_Settings::jsonStoreKeepsANestedObjectAsOneValue()
{
    QVERIFY(writeFile(jsonPath(), R"({"group":{"key":"v"}})"));
    Settings settings(jsonPath(), Settings::jsonFormat());

    QVERIFY(!settings.contains("group/key"));
    QCOMPARE(settings.value("group"), QVariant(QVariantMap{{"key", "v"}}));

    settings.setValue("other", 1);
    settings.synchronize();
    QCOMPARE(readJson(jsonPath()),
             (QJsonObject{{"group", QJsonObject{{"key", "v"}}}, {"other", 1}}));
}

void tst_Settings::jsonStoreIsCaseSensitive()
{
    Settings settings(jsonPath(), Settings::jsonFormat());
    settings.setValue("key", 1);
    settings.setValue("Key", 2);
    settings.synchronize();

    QCOMPARE(readJson(jsonPath()), (QJsonObject{{"Key", 2}, {"key", 1}}));
    QVERIFY(!settings.contains("KEY"));
}

void tst_Settings::jsonStoreKeepsTypesAndNulls()
{
    const QByteArray json = R"({"b":false,"l":[1,"x",null],"m":{"n":null},"n":null,"r":1.5})";
    QVERIFY(writeFile(jsonPath(), json));
    Settings settings(jsonPath(), Settings::jsonFormat());

    QCOMPARE(settings.value("b"), QVariant(false));
    QCOMPARE(settings.value("r"), QVariant(1.5));
    QCOMPARE(settings.value("n", "default"), QVariant("default"));

    settings.setValue("new", 1);
    settings.synchronize();
    QJsonObject expected = QJsonDocument::fromJson(json).object();
    expected.insert("new", 1);
    QCOMPARE(readJson(jsonPath()), expected);
}

void tst_Settings::jsonStoreWritesUtf8()
{
    const QString text = QString::fromUtf8("J\u00fcrgen \u65e5\u672c \U0001f600");
    {
        Settings settings(jsonPath(), Settings::jsonFormat());
        settings.setValue(text, text);
    }
    QVERIFY(readFile(jsonPath()).contains(text.toUtf8()));
    QCOMPARE(Settings(jsonPath(), Settings::jsonFormat()).value(text), QVariant(text));
}

void tst_Settings::jsonStoreThatDoesNotParseIsEmptyAndIsReplaced()
{
    LogCapture log;
    QVERIFY(writeFile(jsonPath(), "{\"a\": 1, oops"));
    Settings settings(jsonPath(), Settings::jsonFormat());

    QVERIFY(settings.allKeys().isEmpty());
    QCOMPARE(settings.status(), QSettings::NoError);
    QCOMPARE(settings.value("a", "d"), QVariant("d"));

    settings.setValue("b", 2);
    settings.synchronize();
    QCOMPARE(readJson(jsonPath()), (QJsonObject{{"b", 2}}));
}

void tst_Settings::formatIsNotChosenByTheSuffix()
{
    {
        Settings ini(jsonPath(), QSettings::IniFormat);
        ini.setValue("k", "v");
        Settings json(iniPath(), Settings::jsonFormat());
        json.setValue("k", "v");
    }
    QCOMPARE(readFile(jsonPath()), QByteArray("[General]\nk=v\n"));
    QCOMPARE(readJson(iniPath()), (QJsonObject{{"k", "v"}}));
}

void tst_Settings::fullDiskIsSilent_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("format");

    QTest::newRow("INI") << iniPath() << int(QSettings::IniFormat);
    QTest::newRow("JSON") << jsonPath() << int(Settings::jsonFormat());
}

void tst_Settings::fullDiskIsSilent()
{
    QFETCH(QString, path);
    QFETCH(int, format);
    const QString big(100000, 'x');
    LogCapture log;
    const FullDisk disk(4096);
    QVERIFY(disk.isValid());
    Settings settings(path, QSettings::Format(format));
    QSignalSpy spy(&settings, &Settings::valueChanged);

    settings.setValue("k", big);
    settings.synchronize();

    QCOMPARE(spy.count(), 1);
    QCOMPARE(settings.value("k"), QVariant(big));
    QVERIFY2(log.messages().isEmpty(), qPrintable(log.dump()));
}

void tst_Settings::jsonStoreKeepsTheOldFileOnAFullDisk()
{
    Settings settings(jsonPath(), Settings::jsonFormat());
    settings.setValue("k", "old");
    settings.synchronize();
    const QByteArray before = readFile(jsonPath());
    QVERIFY(before.contains("old"));

    {
        const FullDisk disk(4096);
        QVERIFY(disk.isValid());
        settings.setValue("k", QString(100000, 'x'));
        settings.synchronize();
    }
    QCOMPARE(readFile(jsonPath()), before);

    // Room again: what was kept in memory gets to the disk.
    settings.synchronize();
    QCOMPARE(readJson(jsonPath()), (QJsonObject{{"k", QString(100000, 'x')}}));
}

void tst_Settings::unwritablePathIsSilent()
{
    LogCapture log;
    {
        Settings settings("/dev/null/settings.json", Settings::jsonFormat());
        settings.setValue("k", 1);
        settings.synchronize();
        QCOMPARE(settings.value("k"), QVariant(1));
    }
    QVERIFY2(log.messages().isEmpty(), qPrintable(log.dump()));
}

// A list that says of itself that it is longer than any memory.
void tst_Settings::damagedStoreIsEmptyAndStaysAsItIs()
{
    const QByteArray damaged =
        "[General]\nlst=@Variant(\\0\\0\\0\\t\\x7f\\xff\\xff\\xff)\nother=1\n";
    QFile file(iniPath());
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(damaged) == damaged.size());
    file.close();

    LogCapture log;
    {
        Settings settings(iniPath(), QSettings::IniFormat);
        QCOMPARE(settings.value("lst", "default"), QVariant("default"));
        QCOMPARE(settings.contains("lst"), false);
        settings.setValue("new", 1);
        QCOMPARE(settings.value("new"), QVariant(1)); // in memory
        settings.remove("lst");
        settings.synchronize();
        QCoreApplication::processEvents(); // QSettings writes by itself
    }
    QVERIFY(log.count(QtWarningMsg, "Zemrik.Tessaline.File",
                      "Settings can't be read: \"" + iniPath() + '"')
            >= 3);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), damaged);
}

TESSALINE_TEST_MAIN(tst_Settings)
#include "tst_Settings.moc"
