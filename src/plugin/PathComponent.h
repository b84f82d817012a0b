#pragma once

#include <QDir>
#include <QString>

// Whether a name that comes from outside (an item id, a file name in a portal's answer) stays below
// the folder that it is joined to: one path component, neither "." nor ".." nor a resource path
// (":x"). An empty name does: joined, it gives the folder itself.
inline bool staysInFolder(const QString &name)
{
    return name != QLatin1String(".") && name != QLatin1String("..")
           && !name.contains(QLatin1Char('/')) && !name.contains(QChar::Null)
           && !QDir::isAbsolutePath(name);
}
