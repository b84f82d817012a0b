#include "player/AppletsCommandLineParser.h"

#include "player/AppletsPlayerSettings.h"

#include <QCommandLineOption>

namespace {

// The words of --show. Every other word gives Qt::WindowActive, among them the option's own
// default.
struct ShowWord
{
    const char *word;
    Qt::WindowState state;
};

const ShowWord showWords[] = {
    {"maximized", Qt::WindowMaximized},
    {"minimized", Qt::WindowMinimized},
    {"fullscreen", Qt::WindowFullScreen},
    {"normal", Qt::WindowNoState},
};

QVariant settingsValue(const QString &key, const QVariant &defaultValue = QVariant())
{
    return AppletsPlayerSettings(nullptr).value(key, defaultValue);
}

} // namespace

AppletsCommandLineParser::AppletsCommandLineParser()
{
    addPositionalArgument(QStringLiteral("source"), QStringLiteral("Applet to play"),
                          QStringLiteral("<folder> | <filename>"));

    // The default of "show" is a word that stands for no state, so the settings are only asked when
    // the option is given with an empty value.
    addOption({QStringLiteral("show"),
               QStringLiteral("Show option maximized | minimized | fullscreen | normal | default"),
               QStringLiteral("showOption"), QStringLiteral("show")});
    addOption({QStringLiteral("import"), QStringLiteral("QML import path"),
               QStringLiteral("importPath")});
    addOption({QStringLiteral("nosplash"), QStringLiteral("Don't display splash screen")});
    addOption({QStringLiteral("frameless"), QStringLiteral("Show frameless window")});
    addOption({QStringLiteral("home"), QStringLiteral("User home path"), QStringLiteral("home")});
}

int AppletsCommandLineParser::showState() const
{
    QString text = value(QStringLiteral("show"));
    if (text.isEmpty())
        text = settingsValue(QStringLiteral("show")).toString();
    for (const ShowWord &entry : showWords) {
        if (text.compare(QLatin1String(entry.word), Qt::CaseInsensitive) == 0)
            return entry.state;
    }
    return Qt::WindowActive;
}

bool AppletsCommandLineParser::showSplash() const
{
    if (isSet(QStringLiteral("nosplash")))
        return false;
    return !settingsValue(QStringLiteral("nosplash"), false).toBool();
}

QStringList AppletsCommandLineParser::importPaths() const
{
    return values(QStringLiteral("import"));
}

bool AppletsCommandLineParser::frameless() const
{
    return isSet(QStringLiteral("frameless"))
           || settingsValue(QStringLiteral("frameless"), false).toBool();
}

QString AppletsCommandLineParser::homePath() const
{
    return value(QStringLiteral("home"));
}

QString AppletsCommandLineParser::appletPath() const
{
    return positionalArguments().value(0);
}
