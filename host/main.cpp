// tessaline-player: opens the applet in a folder in a window of its own.
#include "Installation.h"
#include "Player.h"

#include <Tessaline/AppletsCommandLineParser.h>
#include <Tessaline/FileUtility.h>

#include <QDir>
#include <QGuiApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QLoggingCategory>
#include <QTranslator>

namespace {

// A path of the command line as one from the root. The beginning of a relative one could be read as
// a variable ("~", "$name"), a resource (":name") or the scheme of a URL. The shell has replaced what
// its user wanted replaced: what is left is the name of a folder.
QString absolutePath(const QString &path)
{
    if (path.isEmpty() || path.startsWith(QLatin1Char('/')))
        return path;
    // For a QDir, too, ":name" alone is a resource.
    const QString absolute = QDir::current().filePath(QLatin1String("./") + path);
    // Only the system knows what is above a folder that is a link.
    return path.contains(QLatin1String("..")) ? absolute : QDir::cleanPath(absolute);
}

// The folder named on the command line, or the applet that comes with the installation. A mistyped
// folder is not replaced.
QString startPath(const AppletsCommandLineParser &commandLine)
{
    return commandLine.positionalArguments().isEmpty() ? Installation::defaultApplet()
                                                       : absolutePath(commandLine.appletPath());
}

// A variable may stand at the beginning: the shell replaces none in "--home=~/data".
QString homePath(const AppletsCommandLineParser &commandLine)
{
    return absolutePath(FileUtility::resolvedPath(commandLine.homePath(), true));
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
    const QString home = homePath(commandLine);
    if (!home.isEmpty())
        FileUtility::setHomePath(home);

    const int exitCode = player.start(app, startPath(commandLine));
    return exitCode == 0 ? QGuiApplication::exec() : exitCode;
}
