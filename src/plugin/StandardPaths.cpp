#include "plugin/StandardPaths.h"

#include "files/FileFolder.h"

#include <QStandardPaths>

static_assert(int(StandardPaths::AppDataLocation) == int(QStandardPaths::AppDataLocation)
                  && int(StandardPaths::AppLocalDataLocation)
                         == int(QStandardPaths::AppLocalDataLocation)
                  && int(StandardPaths::GenericConfigLocation)
                         == int(QStandardPaths::GenericConfigLocation)
                  && int(StandardPaths::LocateDirectory) == int(QStandardPaths::LocateDirectory),
              "The values are passed on as they are");

namespace {

QStandardPaths::StandardLocation native(StandardPaths::StandardLocation type)
{
    return static_cast<QStandardPaths::StandardLocation>(type);
}

QStandardPaths::LocateOptions native(StandardPaths::LocateOptions options)
{
    return QStandardPaths::LocateOptions(static_cast<int>(options));
}

FileFolder *newFolder(const QString &path)
{
    return path.isEmpty() ? nullptr : TessalineObject::givenToScript(new FileFolder(path));
}

} // namespace

StandardPaths::StandardPaths(QObject *parent)
    : TessalineObject(parent)
{
}

QString StandardPaths::displayName(StandardLocation type) const
{
    return QStandardPaths::displayName(native(type));
}

QString StandardPaths::locate(StandardLocation type, const QString &fileName,
                              LocateOptions options) const
{
    return QStandardPaths::locate(native(type), fileName, native(options));
}

QStringList StandardPaths::locateAll(StandardLocation type, const QString &fileName,
                                     LocateOptions options) const
{
    return QStandardPaths::locateAll(native(type), fileName, native(options));
}

QString StandardPaths::writableLocation(StandardLocation type) const
{
    return QStandardPaths::writableLocation(native(type));
}

QStringList StandardPaths::standardLocations(StandardLocation type) const
{
    return QStandardPaths::standardLocations(native(type));
}

FileFolder *StandardPaths::writableFolder(StandardLocation type) const
{
    return newFolder(writableLocation(type));
}

FileFolder *StandardPaths::defaultFolder(StandardLocation type) const
{
    return newFolder(standardLocations(type).value(0));
}

#include "moc_StandardPaths.cpp"
