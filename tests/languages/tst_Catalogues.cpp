#include "languages/CatalogueFile.h"
#include "plugin/TessalineDebug.h"
#include "support/IsolatedHome.h"

#include <QtTest>

#include <QProcess>
#include <QStandardPaths>
#include <QTranslator>

// The sources of the catalogues, what is compiled from them, and whether a machine that has the
// fonts of scripts/setup can show them.
namespace {

const QStringList locales =
    QStringLiteral("ar cs da de el en es et fi fr he hr it ja ko lt lv nb_NO nl pl pt_BR "
                   "pt_PT ro ru sr sv th tr vi zh_CN zh_HK zh_TW")
        .split(QLatin1Char(' '));

using Message = CatalogueFile::Message;

// "%1" and line breaks, sorted: a translation may change their order, never their number.
QStringList placeholders(const QString &text)
{
    QStringList result;
    static const QRegularExpression pattern(QStringLiteral("%\\d+|\\r|\\n"));
    for (auto it = pattern.globalMatch(text); it.hasNext();)
        result += it.next().captured();
    result.sort();
    return result;
}

// Words that really are the same in the two languages.
bool sameInBothLanguages(const QString &source, const QString &language)
{
    static const QHash<QString, QStringList> languages{
        {"Auto", {"da", "nb", "sv"}},
        {"Flash", {"es", "fr", "it", "pt"}},
        {"Fluorescent", {"fr", "ro"}},
        {"Saturation", {"fr"}},
        {"Orientation", {"fr"}},
        {"Images", {"fr"}},
        {"Password", {"it"}},
        {"Contrast", {"nl", "ro"}},
        {"Camera", {"nl"}},
        {"Tungsten", {"ro", "tr"}},
    };
    return language == QLatin1String("en") || source == QLatin1String("%1 (%2)")
           || languages.value(source).contains(language);
}

// The scripts of languages that aren't written in Latin letters.
QVector<QChar::Script> scripts(const QString &language)
{
    static const QHash<QString, QVector<QChar::Script>> table{
        {"ar", {QChar::Script_Arabic}},
        {"el", {QChar::Script_Greek}},
        {"he", {QChar::Script_Hebrew}},
        {"ja", {QChar::Script_Hiragana, QChar::Script_Katakana, QChar::Script_Han}},
        {"ko", {QChar::Script_Hangul}},
        {"ru", {QChar::Script_Cyrillic}},
        {"sr", {QChar::Script_Cyrillic}},
        {"th", {QChar::Script_Thai}},
        {"zh", {QChar::Script_Han}},
    };
    return table.value(language);
}

QString language(const QString &locale)
{
    return locale.section(QLatin1Char('_'), 0, 0);
}

} // namespace

class tst_Catalogues : public QObject
{
    Q_OBJECT

private slots:
    // A call into the library, or the linker leaves it out with all it has embedded.
    void initTestCase() { QVERIFY(FRAMEWORK_PLUGIN().categoryName()); }
    void thereIsOneForEachLocaleAndNoOther();
    void holdAllTextsOfTheSources_data() { everyLocale(); }
    void holdAllTextsOfTheSources();
    void areFinished_data() { everyLocale(); }
    void areFinished();
    void keepPlaceholdersAndLineBreaks_data() { everyLocale(); }
    void keepPlaceholdersAndLineBreaks();
    void leaveNoEnglish_data() { everyLocale(); }
    void leaveNoEnglish();
    void areCompiledWhole_data() { everyLocale(); }
    void areCompiledWhole();
    void canBeShownWithTheInstalledFonts_data() { everyLocale(); }
    void canBeShownWithTheInstalledFonts();

private:
    static void everyLocale();
};

void tst_Catalogues::everyLocale()
{
    QTest::addColumn<QString>("locale");
    for (const QString &locale : locales)
        QTest::addRow("%s", qPrintable(locale)) << locale;
}

void tst_Catalogues::thereIsOneForEachLocaleAndNoOther()
{
    QStringList sources;
    QStringList compiled;
    for (const QString &locale : locales) {
        sources += QStringLiteral("TessalinePlugin_%1.ts").arg(locale);
        compiled += QStringLiteral("TessalinePlugin_%1.qm").arg(locale);
    }
    QCOMPARE(
        QDir(CatalogueFile::sourceFolder() + QStringLiteral("/src/languages")).entryList({"*.ts"}),
        sources);
    QCOMPARE(QDir(QStringLiteral(":/languages")).entryList(), compiled);
}

void tst_Catalogues::holdAllTextsOfTheSources()
{
    QFETCH(QString, locale);
    QString lupdate = QStandardPaths::findExecutable(QStringLiteral("lupdate"));
    if (lupdate.isEmpty())
        lupdate = QStandardPaths::findExecutable(QStringLiteral("lupdate"), {"/usr/lib/qt5/bin"});
    QVERIFY2(!lupdate.isEmpty(), "scripts/setup test installs lupdate");

    QTemporaryDir folder;
    const QString fresh = folder.filePath(QStringLiteral("TessalinePlugin_%1.ts").arg(locale));
    QProcess process;
    process.setWorkingDirectory(CatalogueFile::sourceFolder());
    process.start(lupdate,
                  {"-silent", "-locations", "none", "src/imports", "src/catalogue", "-ts", fresh});
    QVERIFY(process.waitForFinished());
    QVERIFY2(process.exitCode() == 0, process.readAllStandardError().constData());

    QStringList wanted;
    for (const Message &message : CatalogueFile::read(fresh))
        wanted += message.key();
    QStringList present;
    for (const Message &message : CatalogueFile::read(CatalogueFile::path(locale)))
        present += message.key();
    QVERIFY(wanted.size() > 30);
    wanted.sort();
    present.sort();
    QCOMPARE(present, wanted);
}

void tst_Catalogues::areFinished()
{
    QFETCH(QString, locale);
    const QVector<Message> messages = CatalogueFile::read(CatalogueFile::path(locale));
    QVERIFY(!messages.isEmpty());
    for (const Message &message : messages) {
        QVERIFY2(message.state.isEmpty(), qPrintable(message.key()));
        QVERIFY2(!message.translation.trimmed().isEmpty(), qPrintable(message.key()));
        QVERIFY2(message.translation == message.translation.trimmed(), qPrintable(message.key()));
    }
}

void tst_Catalogues::keepPlaceholdersAndLineBreaks()
{
    QFETCH(QString, locale);
    int checked = 0;
    for (const Message &message : CatalogueFile::read(CatalogueFile::path(locale))) {
        QCOMPARE(placeholders(message.translation), placeholders(message.source));
        checked += placeholders(message.source).size();
    }
    QCOMPARE(checked, 9); // three and a line break of two, two texts with one, one with two
}

void tst_Catalogues::leaveNoEnglish()
{
    QFETCH(QString, locale);
    const QVector<QChar::Script> own = scripts(language(locale));
    for (const Message &message : CatalogueFile::read(CatalogueFile::path(locale))) {
        QVERIFY2((message.translation == message.source)
                     <= sameInBothLanguages(message.source, language(locale)),
                 qPrintable(message.key()));
        if (own.isEmpty() || message.source == QLatin1String("%1 (%2)"))
            continue;
        const bool inOwnScript = std::any_of(message.translation.begin(), message.translation.end(),
                                             [&own](QChar c) { return own.contains(c.script()); });
        QVERIFY2(inOwnScript,
                 qPrintable(message.key() + QStringLiteral(": ") + message.translation));
    }
}

void tst_Catalogues::areCompiledWhole()
{
    QFETCH(QString, locale);
    QTranslator translator;
    QVERIFY(translator.load(QStringLiteral("TessalinePlugin_") + locale,
                            QStringLiteral(":/languages")));
    for (const Message &message : CatalogueFile::read(CatalogueFile::path(locale)))
        QCOMPARE(translator.translate(qPrintable(message.context), qPrintable(message.source)),
                 message.translation);
}

// One installed font has all letters of the language, or a text would be drawn from several.
void tst_Catalogues::canBeShownWithTheInstalledFonts()
{
    QFETCH(QString, locale);
    QSet<uint> letters;
    for (const Message &message : CatalogueFile::read(CatalogueFile::path(locale))) {
        const QVector<uint> characters = message.translation.toUcs4();
        for (uint character : characters) {
            if (character > 0x7f)
                letters.insert(character);
        }
    }
    QStringList charset;
    for (uint letter : qAsConst(letters))
        charset += QString::number(letter, 16);

    QProcess process;
    process.start(
        QStringLiteral("fc-list"),
        {QStringLiteral(":charset=") + charset.join(QLatin1Char(' ')), QStringLiteral("family")});
    QVERIFY2(process.waitForFinished(), "scripts/setup test installs fontconfig");
    QVERIFY2(!process.readAllStandardOutput().trimmed().isEmpty(), qPrintable(charset.join(' ')));
}

TESSALINE_TEST_MAIN(tst_Catalogues)
#include "tst_Catalogues.moc"
