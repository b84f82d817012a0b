#include "archives/ArchiveReader.h"

#include "plugin/FileUtility.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <limits>

namespace {

const int nameBufferSize = 1024;
const int inflateBlockSize = 64 * 1024; // one call of the inflater; chunks are cut from it
// Deflate packs at most 1,032 bytes into one.
const quint64 maxDeflateRatio = 1032;

// QFile::write counts what is only buffered; the flush tells whether the disk took it.
bool finish(QFile &file)
{
    const bool flushed = file.flush();
    file.close();
    return flushed && file.error() == QFileDevice::NoError;
}

bool hasDriveLetter(const QString &name)
{
    return name.length() >= 2 && name.at(1) == QLatin1Char(':') && name.at(0).isLetter();
}

// Whether a part of the path below the folder is a symbolic link on disk.
bool passesSymbolicLink(const QDir &folder, const QString &cleanName)
{
    int end = 0;
    do {
        end = cleanName.indexOf(QLatin1Char('/'), end + 1);
        if (QFileInfo(folder.filePath(cleanName.left(end))).isSymLink())
            return true;
    } while (end >= 0);
    return false;
}

} // namespace

void ArchiveReader::Closer::operator()(void *file) const
{
    unzClose(file);
}

bool ArchiveReader::open(const QString &path)
{
    m_file.reset(unzOpen64(path.toLocal8Bit().constData()));
    return isOpen();
}

void ArchiveReader::close()
{
    m_file.reset();
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
    return unzGoToFirstFile(m_file.get());
}

int ArchiveReader::next()
{
    return unzGoToNextFile(m_file.get());
}

int ArchiveReader::locate(const QString &name, int caseSensitive)
{
    return unzLocateFile(m_file.get(), name.toLocal8Bit().constData(), caseSensitive);
}

int ArchiveReader::currentInfo(unz_file_info64 &info, QString *name) const
{
    // minizip leaves out the terminating zero where a name fills the buffer: the last byte is ours.
    char buffer[nameBufferSize + 1] = {};
    const int code = unzGetCurrentFileInfo64(m_file.get(), &info, name ? buffer : nullptr,
                                             name ? nameBufferSize : 0, nullptr, 0, nullptr, 0);
    if (code == UNZ_OK && name)
        *name = QString::fromUtf8(buffer);
    return code;
}

ArchiveReader::Extraction ArchiveReader::extract(const QString &outputPath, int chunkSize,
                                                 const ChunkCallback &onChunk)
{
    if (const int code = unzOpenCurrentFile(m_file.get()); code != UNZ_OK)
        return {Extraction::OpenEntry, code};
    unz_file_info64 info;
    if (const int code = currentInfo(info); code != UNZ_OK) {
        unzCloseCurrentFile(m_file.get());
        return {Extraction::EntryInfo, code};
    }
    QFile output(outputPath);
    if (!output.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        unzCloseCurrentFile(m_file.get());
        return {Extraction::OpenOutput, UNZ_OK};
    }

    Extraction result = copyData(output, info.uncompressed_size, chunkSize, onChunk);
    if (!finish(output) && result.step == Extraction::Done)
        result.step = Extraction::Write;
    // A wrong checksum shows only here, when the data are out already.
    const int closed = unzCloseCurrentFile(m_file.get());
    if (result.step == Extraction::Done) {
        result.code = closed;
        const QDateTime time = date(info.tmu_date);
        FileUtility::setDateTime(outputPath, time, time);
    }
    return result;
}

ArchiveReader::Extraction ArchiveReader::copyData(QIODevice &output, quint64 size, int chunkSize,
                                                  const ChunkCallback &onChunk)
{
    QByteArray block(inflateBlockSize, Qt::Uninitialized);
    qint64 written = 0;
    for (;;) {
        const qint64 before = static_cast<qint64>(unztell64(m_file.get()));
        const int code = unzReadCurrentFile(m_file.get(), block.data(), inflateBlockSize);
        // Of a block that fails, the chunks before the failure count.
        const qint64 available = code >= 0 ? code
                                           : (static_cast<qint64>(unztell64(m_file.get())) - before)
                                                 / chunkSize * chunkSize;
        for (qint64 offset = 0; offset < available; offset += chunkSize) {
            const qint64 chunk = std::min<qint64>(chunkSize, available - offset);
            if (onChunk)
                onChunk(written, size);
            if (output.write(block.constData() + offset, chunk) != chunk)
                return {Extraction::Write, UNZ_OK};
            written += chunk;
        }
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
    if (const int code = unzOpenCurrentFile(m_file.get()); code != UNZ_OK)
        return {Extraction::OpenEntry, code};
    unz_file_info64 info;
    if (const int code = currentInfo(info); code != UNZ_OK) {
        unzCloseCurrentFile(m_file.get());
        return {Extraction::EntryInfo, code};
    }

    const quint64 possible = info.compressed_size * maxDeflateRatio + inflateBlockSize;
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

QString ArchiveReader::refusal(const QDir &folder, const QString &name)
{
    const QString clean = QDir::cleanPath(name);
    // isAbsolutePath knows a resource path such as ":x" too.
    if (QDir::isAbsolutePath(name) || QDir::isAbsolutePath(clean) || hasDriveLetter(clean))
        return QStringLiteral("absolute path");
    if (clean == QLatin1String("..") || clean.startsWith(QLatin1String("../")))
        return QStringLiteral("path outside the output folder");
    // A ".." behind a link leads above the link's target, so the steps that cleaning drops count
    // too.
    if (passesSymbolicLink(folder, clean) || passesSymbolicLink(folder, name))
        return QStringLiteral("symbolic link in the output folder");
    return QString();
}
