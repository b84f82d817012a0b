#pragma once

#include "plugin/TessalineObject.h"

#include <QStringList>

class FileFolder;

// The platform's folders for documents, pictures, caches and so on. QML name: StandardPaths,
// uncreatable; the enumerations come from the type, the methods from Tessaline.standardPaths. What
// the platform doesn't have gives an empty text, an empty list or null.
class TESSALINE_EXPORT StandardPaths : public TessalineObject
{
    Q_OBJECT

public:
    // The values are those of QStandardPaths. A script can pass any number.
    enum StandardLocation : int {
        DesktopLocation = 0,
        DocumentsLocation = 1,
        FontsLocation = 2,
        ApplicationsLocation = 3,
        MusicLocation = 4,
        MoviesLocation = 5,
        PicturesLocation = 6,
        TempLocation = 7,
        HomeLocation = 8,
        DataLocation = 9,
        CacheLocation = 10,
        GenericDataLocation = 11,
        RuntimeLocation = 12,
        ConfigLocation = 13,
        DownloadLocation = 14,
        GenericCacheLocation = 15,
        GenericConfigLocation = 16,
        AppDataLocation = 17,
        AppLocalDataLocation = DataLocation
    };
    Q_ENUM(StandardLocation)

    enum LocateOption : int { LocateFile = 0, LocateDirectory = 1 };
    Q_ENUM(LocateOption)
    Q_DECLARE_FLAGS(LocateOptions, LocateOption)
    Q_FLAG(LocateOptions)

    explicit StandardPaths(QObject *parent = nullptr);

    Q_INVOKABLE QString displayName(StandardPaths::StandardLocation type) const;
    // The first file or folder of that name in the location's folders.
    Q_INVOKABLE QString locate(StandardPaths::StandardLocation type, const QString &fileName,
                               StandardPaths::LocateOptions options = LocateFile) const;
    Q_INVOKABLE QStringList locateAll(StandardPaths::StandardLocation type, const QString &fileName,
                                      StandardPaths::LocateOptions options = LocateFile) const;
    // The folder need not exist.
    Q_INVOKABLE QString writableLocation(StandardPaths::StandardLocation type) const;
    // The writable one first, as far as there is one.
    Q_INVOKABLE QStringList standardLocations(StandardPaths::StandardLocation type) const;
    // writableLocation() and the first of standardLocations() as new objects that belong to the
    // script engine.
    Q_INVOKABLE FileFolder *writableFolder(StandardPaths::StandardLocation type) const;
    Q_INVOKABLE FileFolder *defaultFolder(StandardPaths::StandardLocation type) const;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(StandardPaths::LocateOptions)
