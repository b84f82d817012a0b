#pragma once

#include <QString>

// The canonical path of what `name` stands for in the folder, or nothing if it isn't there or lies
// elsewhere: names may step out, and links may lead out.
QString pathInside(const QString &folder, const QString &name);
// The same, and nothing if it isn't a plain file.
QString fileInside(const QString &folder, const QString &name);
// The same, and nothing if it isn't a folder.
QString folderInside(const QString &folder, const QString &name);
