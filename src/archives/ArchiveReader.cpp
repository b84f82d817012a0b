#include "archives/ArchiveReader.h"

#include "archives/CentralDirectory.h"
#include "plugin/FileUtility.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <limits>
#include <vector>

namespace {

const int nameBufferSize = 1024;
const int inflateBlockSize = 256 * 1024; // one call of the inflater; chunks are cut from it
// Deflate packs at most 1,032 bytes into one.
const quint64 maxDeflateRatio = 1032;
// A size of 4 GiB or more stands in an extra field, which minizip 1.1 doesn't apply: it would take
// this number for the size.
const quint64 sizeInExtraField = 0xffffffff;
const unsigned long encryptedFlag = 1;
const char linkReason[] = "symbolic link in the output folder";

bool hasDriveLetter(const QString &name)
{
    return name.length() >= 2 && name.at(1) == QLatin1Char(':') && name.at(0).isLetter();
}

// Whether a folder of the path, below the folder that it starts from, is a symbolic link on disk; of
// those behind `start`.
bool passesSymbolicLink(const QDir &folder, const QString &name, int start = 0)
{
    const QLatin1Char separator('/');
    for (int end = name.indexOf(separator, start + 1); end >= 0;
         end = name.indexOf(separator, end + 1)) {
        if (QFileInfo(folder.filePath(name.left(end))).isSymLink())
            return true;
    }
    return false;
}

// Why an entry's data would come out wrong; null if they don't.
const char *unreadable(const unz_file_info64 &info)
{
    if (info.flag & encryptedFlag)
        return "encrypted";
    if (info.compressed_size == sizeInExtraField || info.uncompressed_size == sizeInExtraField)
        return "size in a ZIP64 field";
    // minizip without bzip2 would give its packed data.
    if (info.compression_method != 0 && info.compression_method != Z_DEFLATED)
        return "compression method";
    return nullptr;
}

} // namespace

void ArchiveReader::Closer::operator()(void *file) const
{
    unzClose(file);
}

bool ArchiveReader::open(const QString &path)
{
    close();
    auto input = std::make_unique<ArchiveInput>();
    if (!FileUtility::hasUsableName(path) || !input->open(path.toLocal8Bit()))
        return false;
    m_input = std::move(input);
    m_file.reset(m_input->openArchive());
    if (!isOpen())
        m_input.reset();
    return isOpen();
}

void ArchiveReader::close()
{
    ++m_opened;
    m_entry.reset();
    m_file.reset();
    m_input.reset();
}

int ArchiveReader::entryCount(quint64 &count) const
{
    unz_global_info64 info;
    const int code = unzGetGlobalInfo64(m_file.get(), &info);
    count = code == UNZ_OK ? info.number_entry : 0;
    return code;
}

int ArchiveReader::first()
{
    ++m_moves;
    m_entry.reset();
    return unzGoToFirstFile(m_file.get());
}

int ArchiveReader::next()
{
    ++m_moves;
    m_entry.reset();
    return unzGoToNextFile(m_file.get());
}

int ArchiveReader::locate(const QString &name, int caseSensitive)
{
    ++m_moves;
    m_entry.reset();
    return unzLocateFile(m_file.get(), name.toLocal8Bit().constData(), caseSensitive);
}

ArchiveReader::Position ArchiveReader::position() const
{
    Position position = {{}, m_moves, m_opened};
    unzGetFilePos64(m_file.get(), &position.inDirectory);
    return position;
}

int ArchiveReader::goBack(const Position &position)
{
    if (position.opened != m_opened)
        return UNZ_PARAMERROR;
    if (position.moves == m_moves)
        return UNZ_OK;
    ++m_moves;
    m_entry.reset();
    return unzGoToFilePos64(m_file.get(), &position.inDirectory);
}

int ArchiveReader::currentInfo(unz_file_info64 &info, QString *name) const
{
    if (!m_entry) {
        // minizip leaves out the terminating zero where a name fills the buffer: the last byte is
        // ours.
        char buffer[nameBufferSize + 1] = {};
        const int code = unzGetCurrentFileInfo64(m_file.get(), &info, buffer, nameBufferSize,
                                                 nullptr, 0, nullptr, 0);
        if (code != UNZ_OK)
            return code;
        m_entry = Entry{info, QString::fromUtf8(buffer)};
    }
    info = m_entry->info;
    if (name)
        *name = m_entry->name;
    return UNZ_OK;
}

bool ArchiveReader::hasOverlappingEntries()
{
    if (!isOpen())
        return false;
    QFile file;
    const bool clear = file.open(m_input->handle(), QIODevice::ReadOnly | QIODevice::Unbuffered)
                       && CentralDirectory::isPlainAndDisjoint(file);
    return !clear && hasOverlapUnderCursor();
}

bool ArchiveReader::hasOverlapUnderCursor()
{
    struct Extent
    {
        quint64 begin;
        quint64 end;
    };
    std::vector<Extent> extents;
    for (int code = first(); code == UNZ_OK; code = next()) {
        unz_file_info64 info;
        int method = 0;
        // What can't be opened can't be extracted either. Raw, as nothing is inflated here.
        if (unzGetCurrentFileInfo64(m_file.get(), &info, nullptr, 0, nullptr, 0, nullptr, 0)
                != UNZ_OK
            || unreadable(info) || info.compressed_size == 0
            || unzOpenCurrentFile2(m_file.get(), &method, nullptr, 1) != UNZ_OK)
            continue;
        const quint64 begin = unzGetCurrentFileZStreamPos64(m_file.get());
        unzCloseCurrentFile(m_file.get());
        extents.push_back({begin, begin + info.compressed_size});
    }
    std::sort(extents.begin(), extents.end(),
              [](const Extent &a, const Extent &b) { return a.begin < b.begin; });
    const auto overlap =
        std::adjacent_find(extents.begin(), extents.end(),
                           [](const Extent &a, const Extent &b) { return b.begin < a.end; });
    return overlap != extents.end();
}

// Leaves the entry open if the step is Done.
ArchiveReader::Extraction ArchiveReader::openCurrent(unz_file_info64 &info)
{
    if (const int code = unzOpenCurrentFile(m_file.get()); code != UNZ_OK)
        return {Extraction::OpenEntry, code};
    Extraction result;
    if (const int code = currentInfo(info); code != UNZ_OK)
        result = {Extraction::EntryInfo, code};
    else if (const char *reason = unreadable(info))
        result = {Extraction::Refused, UNZ_BADZIPFILE, reason};
    if (result.step != Extraction::Done)
        unzCloseCurrentFile(m_file.get());
    return result;
}

ArchiveReader::Extraction ArchiveReader::openOutput(ExtractedFile &output, const QString &path,
                                                    ExtractedFile::Link link) const
{
    switch (output.open(path, link, *m_input)) {
    case ExtractedFile::Opened::Yes:
        return {};
    case ExtractedFile::Opened::IsLink:
        return {Extraction::Refused, UNZ_PARAMERROR, linkReason};
    case ExtractedFile::Opened::IsArchive:
        return {Extraction::Refused, UNZ_PARAMERROR, "output is the archive itself"};
    case ExtractedFile::Opened::No:
        break;
    }
    return {Extraction::OpenOutput, UNZ_OK};
}

ArchiveReader::Extraction ArchiveReader::extract(const QString &outputPath,
                                                 ExtractedFile::Link link, int chunkSize,
                                                 const ChunkCallback &onChunk)
{
    unz_file_info64 info;
    if (const Extraction opened = openCurrent(info); opened.step != Extraction::Done)
        return opened;
    ExtractedFile output;
    if (const Extraction opened = openOutput(output, outputPath, link);
        opened.step != Extraction::Done) {
        unzCloseCurrentFile(m_file.get());
        return opened;
    }

    Extraction result = copyData(output, info.uncompressed_size, chunkSize, onChunk);
    if (!output.close() && result.step == Extraction::Done)
        result.step = Extraction::Write;
    // A wrong checksum shows only here, when the data are out already.
    const int closed = unzCloseCurrentFile(m_file.get());
    if (result.step == Extraction::Done) {
        result.code = closed;
        // Otherwise the file keeps the time of its writing.
        if (const QDateTime time = date(info.tmu_date); time.isValid())
            FileUtility::setDateTime(outputPath, time, time);
    }
    return result;
}

ArchiveReader::Extraction ArchiveReader::copyData(ExtractedFile &output, quint64 size,
                                                  int chunkSize, const ChunkCallback &onChunk)
{
    // No more than it takes, as most entries are small. What the archive claims is only a hint.
    const int blockSize = static_cast<int>(qBound<quint64>(chunkSize, size, inflateBlockSize));
    QByteArray block(blockSize, Qt::Uninitialized);
    qint64 written = 0;
    for (;;) {
        const qint64 before = static_cast<qint64>(unztell64(m_file.get()));
        const int code = unzReadCurrentFile(m_file.get(), block.data(), blockSize);
        // Of a block that fails, the chunks before the failure count.
        const qint64 available = code >= 0 ? code
                                           : (static_cast<qint64>(unztell64(m_file.get())) - before)
                                                 / chunkSize * chunkSize;
        // The chunks reach the disk together.
        for (qint64 offset = 0; onChunk && offset < available; offset += chunkSize)
            onChunk(written + offset, size);
        if (!output.write(block.constData(), available))
            return {Extraction::Write, UNZ_OK};
        written += available;
        if (code < 0)
            return {Extraction::Read, code};
        if (code == 0) {
            if (onChunk)
                onChunk(written, size);
            return {};
        }
    }
}

ArchiveReader::Extraction ArchiveReader::read(QByteArray &bytes)
{
    unz_file_info64 info;
    if (const Extraction opened = openCurrent(info); opened.step != Extraction::Done)
        return opened;

    const quint64 packed = std::min<quint64>(info.compressed_size, m_input->size());
    const quint64 possible = packed * maxDeflateRatio + inflateBlockSize;
    const quint64 size = std::min<quint64>(info.uncompressed_size, possible);
    Extraction result;
    if (size > static_cast<quint64>(std::numeric_limits<int>::max() / 2)) {
        result = {Extraction::Read, UNZ_PARAMERROR};
    } else {
        bytes.resize(static_cast<int>(size));
        const int got = unzReadCurrentFile(m_file.get(), bytes.data(), static_cast<unsigned>(size));
        bytes.resize(std::max(got, 0));
        if (got < 0)
            result = {Extraction::Read, got};
    }
    const int closed = unzCloseCurrentFile(m_file.get());
    if (result.step == Extraction::Done)
        result.code = closed;
    return result;
}

QDateTime ArchiveReader::date(const tm_unz &time)
{
    const QDate day(static_cast<int>(time.tm_year), static_cast<int>(time.tm_mon) + 1,
                    static_cast<int>(time.tm_mday) + 1);
    const QTime clock(static_cast<int>(time.tm_hour), static_cast<int>(time.tm_min),
                      static_cast<int>(time.tm_sec));
    return day.isValid() && clock.isValid() ? QDateTime(day, clock) : QDateTime();
}

QString ArchiveReader::refusal(const QDir &folder, const QString &name, QString *linkFree) const
{
    // Cut, two names may be one, and no longer what the archive says.
    unz_file_info64 info;
    if (currentInfo(info) == UNZ_OK && info.size_filename >= nameBufferSize)
        return QStringLiteral("name of 1,024 bytes or more");
    const QString clean = QDir::cleanPath(name);
    // isAbsolutePath knows a resource path such as ":x" too.
    if (QDir::isAbsolutePath(name) || QDir::isAbsolutePath(clean) || hasDriveLetter(clean))
        return QStringLiteral("absolute path");
    if (clean == QLatin1String("..") || clean.startsWith(QLatin1String("../")))
        return QStringLiteral("path outside the output folder");

    const int parentLength = qMax(0, clean.lastIndexOf(QLatin1Char('/')));
    const bool known = linkFree && parentLength > 0 && *linkFree == clean.leftRef(parentLength);
    // A ".." behind a link leads above the link's target, so the steps that cleaning drops count
    // too.
    if (passesSymbolicLink(folder, clean, known ? parentLength : 0)
        || (name != clean && passesSymbolicLink(folder, name)))
        return QLatin1String(linkReason);
    if (linkFree)
        *linkFree = clean.left(parentLength);
    return QString();
}
