#pragma once

#include "archives/ArchiveInput.h"
#include "archives/ExtractedFile.h"
#include "plugin/TessalineGlobal.h"

#include <QByteArray>
#include <QDateTime>
#include <QDir>
#include <QString>

#include <functional>
#include <memory>
#include <minizip/unzip.h>
#include <optional>

// Owner of a minizip handle for reading, with its cursor. All results are minizip's codes; logging
// is the caller's. What ZipReader and UnZipFile do alike stands here.
class TESSALINE_EXPORT ArchiveReader
{
public:
    bool open(const QString &path);
    void close();
    bool isOpen() const { return m_file != nullptr; }

    // The cursor.
    int entryCount(quint64 &count) const;
    int first();
    int next();
    int locate(const QString &name, int caseSensitive);

    // Where the cursor is, for a walk whose steps may move it.
    struct Position
    {
        unz64_file_pos inDirectory;
        quint64 moves;
        quint64 opened;
    };
    Position position() const;
    // UNZ_PARAMERROR if the archive was closed or opened anew in between.
    int goBack(const Position &position);

    // What the cursor is on, read once per entry. Names are UTF-8 up to the first NUL, at most
    // 1,024 bytes.
    int currentInfo(unz_file_info64 &info, QString *name = nullptr) const;

    // Whether two entries claim the same bytes. That is how a small archive expands to gigabytes; no
    // honest tool writes one. Where a glance at the directory leaves a doubt, the cursor walks
    // through it: only minizip knows where it will find an entry's data, and any other reading of
    // the file could be led astray.
    bool hasOverlappingEntries();

    // How an extraction ended. `code` is minizip's for OpenEntry, EntryInfo, Refused and Read,
    // `reason` says why an entry was refused.
    struct Extraction
    {
        enum Step { Done, OpenEntry, EntryInfo, Refused, OpenOutput, Read, Write };
        Step step = Done;
        int code = UNZ_OK;
        const char *reason = nullptr;
    };
    // Called before each chunk is written, and once more at the end of the data, with the bytes
    // before it and the entry's size.
    using ChunkCallback = std::function<void(qint64 written, quint64 size)>;

    // Writes the current entry to the file `outputPath`, replacing it, in chunks of `chunkSize`,
    // and gives it the entry's date if that is one. The parent folder must exist. The archive that
    // is being read is never written to.
    Extraction extract(const QString &outputPath, ExtractedFile::Link link, int chunkSize,
                       const ChunkCallback &onChunk);

    // Reads the current entry into memory. Never allocates more than the archive's data can
    // inflate to.
    Extraction read(QByteArray &bytes);

    // The day of the month is stored one early by ZipWriter; it is added back here, for every
    // archive.
    static QDateTime date(const tm_unz &time);

    // Why the current entry must not be written to `folder` under `name`: its own name is cut, or
    // it would leave the folder, by its name or through a folder below that is a symbolic link.
    // Empty if it may; whether the file itself is a link shows when it is opened. Where one entry
    // after the other is asked about, `linkFree` remembers the last entry's folder, in which no
    // link was found.
    QString refusal(const QDir &folder, const QString &name, QString *linkFree = nullptr) const;

private:
    struct TESSALINE_EXPORT Closer
    {
        void operator()(void *file) const;
    };

    Extraction openCurrent(unz_file_info64 &info);
    Extraction openOutput(ExtractedFile &output, const QString &path,
                          ExtractedFile::Link link) const;
    bool hasOverlapUnderCursor();
    Extraction copyData(ExtractedFile &output, quint64 size, int chunkSize,
                        const ChunkCallback &onChunk);

    std::unique_ptr<ArchiveInput> m_input;
    std::unique_ptr<void, Closer> m_file; // reads from the input
    quint64 m_moves = 0;
    quint64 m_opened = 0;
    // minizip goes back to the directory and parses the record whenever it is asked.
    struct Entry
    {
        unz_file_info64 info;
        QString name;
    };
    mutable std::optional<Entry> m_entry;
};
