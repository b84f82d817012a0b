#include "player/AppletsCommandLineParser.h"
#include "PlayerFixture.h"
#include "support/IsolatedHome.h"

#include <QTest>

#include <memory>

class tst_AppletsCommandLineParser : public QObject
{
    Q_OBJECT

private slots:
    void init() { PlayerFixture::reset(); }

    void theHelpTextListsTheOptionsInOrder();
    void noHelpAndNoVersionOption();
    void theOptionShowHasTheDefaultShow();
    void showWords_data();
    void showWords();
    void anEmptyShowReadsTheSettings_data();
    void anEmptyShowReadsTheSettings();
    void settingsDontCountWithoutAnEmptyShow();
    void splash_data();
    void splash();
    void frameless_data();
    void frameless();
    void importPathsKeepTheirOrder();
    void homePath();
    void appletPath_data();
    void appletPath();
};

namespace {

std::unique_ptr<AppletsCommandLineParser> parsed(const QStringList &arguments)
{
    auto parser = std::make_unique<AppletsCommandLineParser>();
    if (!parser->parse(QStringList{QStringLiteral("player")} + arguments))
        qWarning("%s", qPrintable(parser->errorText()));
    return parser;
}

// The lines of a help text with their blanks folded, so that its columns don't matter.
QStringList folded(const QString &text)
{
    QStringList lines;
    const QStringList rows = text.split(QLatin1Char('\n'));
    for (const QString &row : rows) {
        if (!row.simplified().isEmpty())
            lines.append(row.simplified());
    }
    return lines;
}

} // namespace

void tst_AppletsCommandLineParser::theHelpTextListsTheOptionsInOrder()
{
    const QStringList lines = folded(parsed({})->helpText());
    const QString text = lines.join(QLatin1Char('\n'));
    const QStringList expected{
        QStringLiteral("[options] <folder> | <filename>"),
        QStringLiteral("Options:"),
        QStringLiteral("--show <showOption> Show option maximized | minimized | fullscreen | normal"
                       " | default"),
        QStringLiteral("--import <importPath> QML import path"),
        QStringLiteral("--nosplash Don't display splash screen"),
        QStringLiteral("--frameless Show frameless window"),
        QStringLiteral("--home <home> User home path"),
        QStringLiteral("Arguments:"),
        QStringLiteral("source Applet to play"),
    };

    int position = -1;
    const QString joined = QString(text).replace(QLatin1Char('\n'), QLatin1Char(' '));
    for (const QString &line : expected) {
        const int next = joined.indexOf(line);
        QVERIFY2(next > position, qPrintable(line + QStringLiteral("\nin\n") + text));
        position = next;
    }
}

void tst_AppletsCommandLineParser::noHelpAndNoVersionOption()
{
    for (const char *option : {"--help", "-h", "--version", "-v"}) {
        AppletsCommandLineParser parser;
        QVERIFY2(!parser.parse({QStringLiteral("player"), QLatin1String(option)}), option);
        QCOMPARE(parser.unknownOptionNames().size(), 1);
    }
}

void tst_AppletsCommandLineParser::theOptionShowHasTheDefaultShow()
{
    const auto parser = parsed({});
    QCOMPARE(parser->value(QStringLiteral("show")), QStringLiteral("show"));
    QVERIFY(!parser->isSet(QStringLiteral("show")));
    QCOMPARE(parser->value(QStringLiteral("import")), QString());
    QCOMPARE(parser->value(QStringLiteral("home")), QString());
}

void tst_AppletsCommandLineParser::showWords_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("state");

    QTest::newRow("left out") << QStringList{} << 8;
    QTest::newRow("show") << QStringList{"--show", "show"} << 8;
    QTest::newRow("default") << QStringList{"--show", "default"} << 8;
    QTest::newRow("unknown word") << QStringList{"--show", "sideways"} << 8;
    QTest::newRow("word with a blank") << QStringList{"--show", "normal "} << 8;
    QTest::newRow("part of a word") << QStringList{"--show", "max"} << 8;
    QTest::newRow("maximized") << QStringList{"--show", "maximized"} << 2;
    QTest::newRow("minimized") << QStringList{"--show", "minimized"} << 1;
    QTest::newRow("fullscreen") << QStringList{"--show", "fullscreen"} << 4;
    QTest::newRow("normal") << QStringList{"--show", "normal"} << 0;
    QTest::newRow("FullScreen") << QStringList{"--show", "FullScreen"} << 4;
    QTest::newRow("MAXIMIZED") << QStringList{"--show=MAXIMIZED"} << 2;
    QTest::newRow("the last one counts")
        << QStringList{"--show", "normal", "--show", "minimized"} << 1;
}

void tst_AppletsCommandLineParser::showWords()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, state);
    QCOMPARE(parsed(arguments)->showState(), state);
}

void tst_AppletsCommandLineParser::anEmptyShowReadsTheSettings_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<int>("state");

    QTest::newRow("nothing stored") << QVariant() << 8;
    QTest::newRow("maximized") << QVariant("Maximized") << 2;
    QTest::newRow("fullscreen") << QVariant("fullscreen") << 4;
    QTest::newRow("normal") << QVariant("normal") << 0;
    QTest::newRow("blank") << QVariant("  ") << 8;
    QTest::newRow("a number") << QVariant(4) << 8;
}

void tst_AppletsCommandLineParser::anEmptyShowReadsTheSettings()
{
    QFETCH(QVariant, stored);
    QFETCH(int, state);
    if (stored.isValid())
        QSettings().setValue(QStringLiteral("show"), stored);

    QCOMPARE(parsed({QStringLiteral("--show=")})->showState(), state);
    QCOMPARE(parsed({QStringLiteral("--show"), QString()})->showState(), state);
}

void tst_AppletsCommandLineParser::settingsDontCountWithoutAnEmptyShow()
{
    QSettings().setValue(QStringLiteral("show"), QStringLiteral("maximized"));

    QCOMPARE(parsed({})->showState(), 8);
    QCOMPARE(parsed({QStringLiteral("--show"), QStringLiteral("minimized")})->showState(), 1);
}

void tst_AppletsCommandLineParser::splash_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<bool>("showSplash");

    const QStringList option{"--nosplash"};
    QTest::newRow("nothing") << QStringList{} << QVariant() << true;
    QTest::newRow("option") << option << QVariant() << false;
    QTest::newRow("option wins over false") << option << QVariant(false) << false;
    QTest::newRow("setting") << QStringList{} << QVariant(true) << false;
    QTest::newRow("setting as text") << QStringList{} << QVariant("true") << false;
    QTest::newRow("setting false") << QStringList{} << QVariant(false) << true;
    QTest::newRow("setting false as text") << QStringList{} << QVariant("false") << true;
    QTest::newRow("both") << option << QVariant(true) << false;
}

void tst_AppletsCommandLineParser::splash()
{
    QFETCH(QStringList, arguments);
    QFETCH(QVariant, stored);
    QFETCH(bool, showSplash);
    if (stored.isValid())
        QSettings().setValue(QStringLiteral("nosplash"), stored);

    QCOMPARE(parsed(arguments)->showSplash(), showSplash);
}

void tst_AppletsCommandLineParser::frameless_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<bool>("frameless");

    const QStringList option{"--frameless"};
    QTest::newRow("nothing") << QStringList{} << QVariant() << false;
    QTest::newRow("option") << option << QVariant() << true;
    QTest::newRow("option wins over false") << option << QVariant(false) << true;
    QTest::newRow("setting") << QStringList{} << QVariant(true) << true;
    QTest::newRow("setting as text") << QStringList{} << QVariant("true") << true;
    QTest::newRow("setting false as text") << QStringList{} << QVariant("false") << false;
    QTest::newRow("both") << option << QVariant(true) << true;
}

void tst_AppletsCommandLineParser::frameless()
{
    QFETCH(QStringList, arguments);
    QFETCH(QVariant, stored);
    QFETCH(bool, frameless);
    if (stored.isValid())
        QSettings().setValue(QStringLiteral("frameless"), stored);

    QCOMPARE(parsed(arguments)->frameless(), frameless);
}

void tst_AppletsCommandLineParser::importPathsKeepTheirOrder()
{
    QCOMPARE(parsed({})->importPaths(), QStringList());
    QCOMPARE(parsed({"--import", "b", "--import", "a", "--import=b"})->importPaths(),
             QStringList({"b", "a", "b"}));
}

void tst_AppletsCommandLineParser::homePath()
{
    QCOMPARE(parsed({})->homePath(), QString());
    QCOMPARE(parsed({"--home", "~/x"})->homePath(), QStringLiteral("~/x"));
    QCOMPARE(parsed({"--home", "/a", "--home", "/b"})->homePath(), QStringLiteral("/b"));

    QSettings().setValue(QStringLiteral("home"), QStringLiteral("/stored"));
    QCOMPARE(parsed({})->homePath(), QString());
}

void tst_AppletsCommandLineParser::appletPath_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("path");

    QTest::newRow("none") << QStringList{} << "";
    QTest::newRow("one") << QStringList{"folder"} << "folder";
    QTest::newRow("two") << QStringList{"first", "second"} << "first";
    QTest::newRow("between options")
        << QStringList{"--nosplash", "applet", "--show", "normal"} << "applet";
    QTest::newRow("after --") << QStringList{"--", "--show"} << "--show";
}

void tst_AppletsCommandLineParser::appletPath()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, path);
    QCOMPARE(parsed(arguments)->appletPath(), path);
}

TESSALINE_TEST_MAIN(tst_AppletsCommandLineParser)
#include "tst_AppletsCommandLineParser.moc"
