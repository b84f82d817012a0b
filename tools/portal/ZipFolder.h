#pragma once

#include <QString>

// Packs all files below a folder into a new archive; hidden ones, links and empty folders are left
// out.
// False if a file can't be read or the archive not written; nothing usable is left then.
bool zipFolder(const QString &folder, const QString &archivePath);
