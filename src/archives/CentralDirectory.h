#pragma once

#include "plugin/TessalineGlobal.h"

class QIODevice;

// The directory at the end of a ZIP file, read at once. minizip takes several reads and two jumps
// for each entry, and tells where its data lie only when it is opened.
namespace CentralDirectory {

// Whether the archive's entries claim different bytes, as those of every honest archive do. False
// too if that isn't certain: where another reader could take something else for the directory or
// for an entry's numbers, as ZIP64 archives have it, only that reader itself can tell.
TESSALINE_EXPORT bool isPlainAndDisjoint(QIODevice &device);

} // namespace CentralDirectory
