#pragma once

#include "plugin/TessalineGlobal.h"

#include <QString>

class ArchiveInput;

// A file that an archive's entry is written to. Past QFile, which copies everything into a buffer
// first, and can't say that a link is not to be followed.
class TESSALINE_EXPORT ExtractedFile
{
public:
    // Whether a symbolic link that lies at the path is written through: not where the archive names
    // the file.
    enum class Link { Followed, Refused };
    enum class Opened { Yes, No, IsLink, IsArchive };

    ExtractedFile() = default;
    ~ExtractedFile();
    Q_DISABLE_COPY(ExtractedFile)

    // Made, or emptied unless it is the archive itself, by whatever name.
    Opened open(const QString &path, Link link, const ArchiveInput &archive);
    bool write(const char *data, qint64 size);
    // False if what was written may be lost: a network's file system may fail only here.
    bool close();

private:
    Opened openExisting(const char *localPath, Link link, const ArchiveInput &archive);

    int m_handle = -1;
};
