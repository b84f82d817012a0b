#pragma once

#include <QString>

// Packs all files below a folder, hidden ones and links to elsewhere left out, into a new archive.
// False if a file can't be read or the archive not written; nothing usable is left then.
bool zipFolder(const QString &folder, const QString &archivePath);
