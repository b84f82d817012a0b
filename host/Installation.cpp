#include "Installation.h"

#include <QCoreApplication>
#include <QDir>

namespace {

// A folder given by its place relative to the program's own folder: the one of the build tree if
// the file that marks it is there, otherwise the installed one.
QString place(const char *inBuildTree, const char *installed, const char *mark)
{
    const QDir program(QCoreApplication::applicationDirPath());
    const QDir built(program.filePath(QString::fromUtf8(inBuildTree)));
    return QDir::cleanPath(built.exists(QString::fromUtf8(mark))
                               ? built.path()
                               : program.filePath(QString::fromUtf8(installed)));
}

} // namespace

QString Installation::moduleFolder()
{
    return place("../qml", TESSALINE_RELATIVE_QML_DIR, "Zemrik/Tessaline/qmldir");
}

QString Installation::defaultApplet()
{
    return place("../examples/welcome", TESSALINE_RELATIVE_EXAMPLES_DIR "/welcome", "appinfo.json");
}
