#pragma once

#include "plugin/TessalineGlobal.h"

#include <QByteArray>
#include <QDateTime>
#include <QDir>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QVariantMap>

#include <limits>
#include <optional>

// Path variables and small file tools, static functions only.
//
// A path may begin with a variable: "~/x", "$HOME/x", "$NAME/x", "~NAME/x"; "~" alone is HOME. A
// variable's value comes from the first of these that has one: a property of the application
// object (set with setPathVariable), the group "Zemrik/Runtime/pathVariables" of the default
// QSettings, the environment, and for HOME and TEMP a built-in default. The parameter `system` says
// whether settings and environment are consulted. Names are case-sensitive. Nothing here fails
// loudly: bad input gives an empty text or false, and a warning under CATEGORY_UTILITY.
class TESSALINE_EXPORT FileUtility
{
public:
    FileUtility() = delete;

    // Where a variable's value was found; 0 also when it exists in none of the three places.
    enum PathVariableType {
        PathVariableNone = 0,
        PathVariableApplication = 1,
        PathVariableSettings = 2,
        PathVariableEnvironment = 3
    };

    // The path with its variable replaced. A path without a leading "~" or "$" comes back as it is,
    // without any look-up; an unknown variable is replaced by nothing. A path with a prefix may
    // open QSettings: resolve once outside loops.
    static QString resolvedPath(const QString &path, bool system);
    // A qrc URL becomes a resource path (":/a"), a file URL its local path; of any other URL the
    // decoded path counts.
    static QString resolvedPath(const QUrl &url, bool system);
    static QUrl resolvedPathUrl(const QString &path, bool system);

    // A file URL, or a qrc URL for a resource path.
    static QUrl pathUrl(const QString &path);
    // "qrc:///a" for ":/a"; the leading ":/" is assumed, not tested.
    static QUrl resourcePathUrl(const QString &path);

    // The value of a variable; empty if it is set nowhere. `defaultValue` is only used for an empty
    // name. Reading HOME or TEMP for the first time pins its built-in value for the process.
    static QString pathVariable(const QString &name, const QString &defaultValue, bool system);
    // Sets a variable for the whole process; an empty value removes it.
    static void setPathVariable(const QString &name, const QString &value);
    static int pathVariableType(const QString &name, bool system);
    static bool pathVariableExists(const QString &name, bool system);
    // The variables of the application object only.
    static QStringList pathVariableNames();
    static QVariantMap pathVariablesMap();
    static QString defaultPathVariable(const QString &name);
    static QByteArray pathPropertyName(const QString &name);

    static QString homePath();
    // Sets HOME for the process, also to a path that doesn't exist; tells whether it exists.
    static bool setHomePath(const QString &path);
    static QString defaultHomePath();
    static QString defaultTempPath();

    // Makes the folder and its parents; true also when it is there already.
    static bool mkpath(const QDir &dir);
    static bool mkpath(const QString &path);
    // True; files are hidden by a leading dot on this platform.
    static bool setHidden(const QString &path, bool hidden);

    // All files of the tree, relative to its top, sorted by name in each folder; no folders.
    static QStringList dirEntryList(const QDir &dir);
    static void dirEntryList(const QDir &dir, const QString &relativePath, QStringList &list);

    // False, with a warning, for a name with a NUL in it. To the system such a name ends there and
    // is another file's, and not everything in Qt refuses it: who opens or lists a path asks first.
    static bool hasUsableName(const QString &path);

    // Empty if the file doesn't exist or can't be read; also, with a warning, if it holds more than
    // the caller can do something with.
    static QByteArray readFile(const QString &path, int maxSize = std::numeric_limits<int>::max());
    // Replaces the file's content; false unless every byte reached the file.
    static bool writeFile(const QString &path, const QByteArray &data);

    // In milliseconds since the epoch; none for what isn't there. For who looks at thousands: the
    // dates of QFileInfo ask for the time zone one by one.
    static std::optional<qint64> lastModified(const QString &path);
    static bool copyDateTime(const QString &fromFilePath, const QString &toFilePath);
    // Times are kept to the second.
    static bool setDateTime(const QString &filePath, const QDateTime &lastRead,
                            const QDateTime &lastModified);
};
