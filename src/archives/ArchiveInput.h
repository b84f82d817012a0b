#pragma once

#include "plugin/TessalineGlobal.h"

#include <QByteArray>

#include <array>
#include <minizip/unzip.h>
#include <sys/stat.h>

// The file that minizip reads an archive from. minizip goes back and forth between the directory and
// an entry's data; each of the two stays in a window of memory here. The stdio functions, which it
// takes by itself, have one buffer and ask the system at every jump, several times for each entry.
class TESSALINE_EXPORT ArchiveInput
{
public:
    ArchiveInput() = default;
    ~ArchiveInput();
    Q_DISABLE_COPY(ArchiveInput)

    // Files only: a pipe would block, and nothing can jump in it. The name is in the system's
    // encoding.
    bool open(const QByteArray &localPath);
    bool isOpen() const { return m_handle >= 0; }

    // minizip's handle for the archive in this file, null if it isn't one. The file must outlive it.
    unzFile openArchive();

    int handle() const { return m_handle; }
    quint64 size() const { return static_cast<quint64>(m_status.st_size); }
    // Whether that is this file, under whatever name.
    bool isSame(const struct stat &file) const;

private:
    static const quint64 windowSize = 16ULL * 1024; // what minizip reads of an entry at once
    struct Window
    {
        quint64 begin = 0;
        quint64 length = 0;
        std::array<char, windowSize> bytes;
    };

    const Window *windowAt(quint64 position);
    bool fill(Window &window, quint64 begin);
    uLong read(char *target, uLong size);
    long seek(quint64 offset, int origin);

    int m_handle = -1;
    struct stat m_status = {};
    quint64 m_position = 0;
    int m_error = 0;
    std::array<Window, 2> m_windows;
    std::size_t m_recent = 0;
};
