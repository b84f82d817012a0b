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

// The largest number that fits into Qt's enumeration, which names none so large: numbers beyond it
// are no values of the type at all.
constexpr int unknownLocation = 31;

QStandardPaths::StandardLocation native(StandardPaths::StandardLocation type)
{
    const int number = type >= 0 && type < unknownLocation ? int(type) : unknownLocation;
    return static_cast<QStandardPaths::StandardLocation>(number);
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

/*!
    \qmltype StandardPaths
    \inqmlmodule Zemrik.Tessaline
    \brief The platform's folders for documents, pictures, caches and so on.

    QML can't create this type. The enumerations come from its name, the methods from
    \c{Tessaline.standardPaths}.

    \qml
    ListView {
        property FileFolder pictures:
            Tessaline.standardPaths.writableFolder(StandardPaths.PicturesLocation)
        model: pictures.fileNames(["*.jpg", "*.png"])
        delegate: Text { text: modelData }
    }
    \endqml

    Where a method takes a \e type, it is one of \c DesktopLocation, \c DocumentsLocation,
    \c FontsLocation, \c ApplicationsLocation, \c MusicLocation, \c MoviesLocation,
    \c PicturesLocation, \c TempLocation, \c HomeLocation, \c DataLocation, \c CacheLocation,
    \c GenericDataLocation, \c RuntimeLocation, \c ConfigLocation, \c DownloadLocation,
    \c GenericCacheLocation, \c GenericConfigLocation, \c AppDataLocation and
    \c AppLocalDataLocation (the same as \c DataLocation). Their meaning is that of
    QStandardPaths::StandardLocation.
*/

/*!
    \qmlmethod string StandardPaths::displayName(enumeration type)
    The name of the location \a type for the user, in the user's language.
*/

/*!
    \qmlmethod string StandardPaths::locate(enumeration type, string fileName, enumeration options)
    The path of the first file \a fileName in the folders of the location \a type; with
    \c{StandardPaths.LocateDirectory} that of the first folder. Empty if there is none.
    \a options is \c{StandardPaths.LocateFile} if left out.
*/

/*!
    \qmlmethod list<string> StandardPaths::locateAll(enumeration type, string fileName, enumeration options)
    The same, with \a type, \a fileName and \a options, for all of them, in the order of
    standardLocations().
*/

/*!
    \qmlmethod string StandardPaths::writableLocation(enumeration type)
    The folder of the location \a type to write to, which need not exist yet; empty if there is
    none.
*/

/*!
    \qmlmethod list<string> StandardPaths::standardLocations(enumeration type)
    All folders of the location \a type, the one to write to first.
*/

/*!
    \qmlmethod FileFolder StandardPaths::writableFolder(enumeration type)
    A new object for the writableLocation() of \a type; null if that is empty.
*/

/*!
    \qmlmethod FileFolder StandardPaths::defaultFolder(enumeration type)
    A new object for the first of the standardLocations() of \a type; null if there is none.
*/

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
