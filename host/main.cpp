// tessaline-player: opens the applet in a folder in a window of its own.
#include "Installation.h"
#include "Player.h"

#include <Tessaline/AppletsCommandLineParser.h>
#include <Tessaline/FileUtility.h>

#include <QGuiApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QLoggingCategory>
#include <QTranslator>

namespace {

// The folder named on the command line, or the applet that comes with the installation. A mistyped
// folder is not replaced.
QString startPath(const AppletsCommandLineParser &commandLine)
{
    return commandLine.positionalArguments().isEmpty() ? Installation::defaultApplet()
                                                       : commandLine.appletPath();
}

} // namespace

int main(int argc, char **argv)
{
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false")); // QT_LOGGING_RULES overrules

    QGuiApplication app(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Zemrik"));
    QCoreApplication::setApplicationName(QStringLiteral("Tessaline Player"));
    QGuiApplication::setDesktopFileName(QStringLiteral("tessaline-player"));

    // Qt's own texts, the buttons of dialogs among them, and the direction of the language's writing.
    QTranslator qtTexts;
    if (qtTexts.load(QLocale::system(), QStringLiteral("qtbase"), QStringLiteral("_"),
                     QLibraryInfo::location(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&qtTexts);

    Player player;
    AppletsCommandLineParser &commandLine = *player.commandLineParser();
    commandLine.process(app);
    if (!commandLine.homePath().isEmpty())
        FileUtility::setHomePath(commandLine.homePath());

    const int exitCode = player.start(app, startPath(commandLine));
    return exitCode == 0 ? QGuiApplication::exec() : exitCode;
}
