#pragma once

#include "plugin/TessalineGlobal.h"

#include <QString>

class QIODevice;

// The directory at the end of a ZIP file, read without minizip, which doesn't tell where an entry's
// data lies.
namespace CentralDirectory {

// Whether two entries of the archive claim the same bytes. That is how a small archive expands to
// gigabytes; no honest tool writes one. An archive without a readable directory has no overlap: the
// reader will find out for itself.
TESSALINE_EXPORT bool hasOverlappingEntries(QIODevice &device);
TESSALINE_EXPORT bool hasOverlappingEntries(const QString &path);

} // namespace CentralDirectory
