#include "Archives.h"

#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QtEndian>

#include <memory>
#include <minizip/zip.h>
#include <random>
#include <zlib.h>

namespace {

struct ZipCloser
{
    void operator()(void *file) const { zipClose(file, nullptr); }
};
using ZipHandle = std::unique_ptr<void, ZipCloser>;

// The same words in every run.
class WordSource
{
public:
    QByteArray text(int size)
    {
        QByteArray bytes;
        bytes.reserve(size + 16);
        while (bytes.size() < size) {
            const unsigned length = 2 + m_random() % 9;
            // Few of the possible words, as in a language.
            unsigned word = m_random() % (m_random() % 4 == 0 ? 20000 : 500);
            for (unsigned i = 0; i < length; ++i, word = word * 31 + 7)
                bytes.append(static_cast<char>('a' + word % 26));
            bytes.append(m_random() % 12 == 0 ? '\n' : ' ');
        }
        bytes.resize(size);
        return bytes;
    }

    int number(int minimum, int maximum)
    {
        return minimum + static_cast<int>(m_random() % static_cast<unsigned>(maximum - minimum));
    }

private:
    std::minstd_rand m_random{2021};
};

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

// One piece of a deflate stream, flushed so that another may follow.
QByteArray deflated(const QByteArray &bytes, int flush)
{
    z_stream stream = {};
    if (deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY)
        != Z_OK)
        return QByteArray();
    QByteArray packed(bytes.size() + 1024, Qt::Uninitialized);
    QByteArray source = bytes;
    stream.next_in = reinterpret_cast<Bytef *>(source.data());
    stream.avail_in = static_cast<uInt>(source.size());
    stream.next_out = reinterpret_cast<Bytef *>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    deflate(&stream, flush);
    packed.truncate(static_cast<int>(stream.total_out));
    deflateEnd(&stream);
    return packed;
}

// minizip's writer leaves out the zip64 records that more than 65,535 entries need.
bool addZip64Records(const QString &path, quint64 entries)
{
    const int endSize = 22;
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite) || !file.seek(file.size() - endSize))
        return false;
    const qint64 position = file.pos();
    const QByteArray end = file.read(endSize);
    const auto size = qFromLittleEndian<quint32>(end.constData() + 12);
    const auto offset = qFromLittleEndian<quint32>(end.constData() + 16);
    file.seek(position);
    QDataStream stream(&file);
    stream.setByteOrder(QDataStream::LittleEndian);
    stream << quint32(0x06064b50) << quint64(44) << quint16(45) << quint16(45) << quint32(0)
           << quint32(0) << entries << entries << quint64(size) << quint64(offset);
    stream << quint32(0x07064b50) << quint32(0) << quint64(position) << quint32(1);
    return file.write(end) == endSize && file.flush();
}

bool append(const ZipHandle &zip, const QByteArray &bytes)
{
    return zipWriteInFileInZip(zip.get(), bytes.constData(), static_cast<unsigned>(bytes.size()))
           == ZIP_OK;
}

} // namespace

namespace Archives {

bool makeTextTree(const QString &top, int files, int minimum, int maximum)
{
    WordSource words;
    const int filesPerFolder = qMax(1, files / 100);
    for (int i = 0; i < files; ++i) {
        const QDir folder(
            QStringLiteral("%1/d%2").arg(top).arg(i / filesPerFolder, 2, 10, QLatin1Char('0')));
        if (!folder.mkpath(QStringLiteral(".")))
            return false;
        if (!writeFile(folder.filePath(QStringLiteral("f%1.txt").arg(i)),
                       words.text(words.number(minimum, maximum))))
            return false;
    }
    return true;
}

bool makeListing(const QString &path, int entries)
{
    ZipHandle zip(zipOpen64(QFile::encodeName(path).constData(), APPEND_STATUS_CREATE));
    if (!zip)
        return false;
    zip_fileinfo info = {};
    info.tmz_date.tm_year = 2024;
    for (int i = 0; i < entries; ++i) {
        const QByteArray name =
            QStringLiteral("folder%1/file%2.txt").arg(i / 100).arg(i).toLatin1();
        if (zipOpenNewFileInZip64(zip.get(), name.constData(), &info, nullptr, 0, nullptr, 0,
                                  nullptr, 0, 0, 0)
                != ZIP_OK
            || !append(zip, QByteArrayLiteral("text")) || zipCloseFileInZip(zip.get()) != ZIP_OK)
            return false;
    }
    zip.reset();
    return entries < 0xffff || addZip64Records(path, static_cast<quint64>(entries));
}

// The block is deflated once and then repeated: deflating it all would take longer than the
// benchmark.
bool makeBig(const QString &path, int blocks)
{
    const QByteArray block = WordSource().text(4 << 20);
    const QByteArray packed = deflated(block, Z_FULL_FLUSH);
    const auto blockCrc = crc32(0, reinterpret_cast<const Bytef *>(block.constData()),
                                static_cast<uInt>(block.size()));
    const ZipHandle zip(zipOpen64(QFile::encodeName(path).constData(), APPEND_STATUS_CREATE));
    zip_fileinfo info = {};
    info.tmz_date.tm_year = 2024;
    if (!zip
        || zipOpenNewFileInZip2_64(zip.get(), "big.txt", &info, nullptr, 0, nullptr, 0, nullptr,
                                   Z_DEFLATED, Z_DEFAULT_COMPRESSION, 1, 0)
               != ZIP_OK)
        return false;
    uLong crc = 0;
    for (int i = 0; i < blocks; ++i) {
        crc = crc32_combine(crc, blockCrc, block.size());
        if (!append(zip, packed))
            return false;
    }
    return append(zip, deflated(QByteArray(), Z_FINISH))
           && zipCloseFileInZipRaw64(zip.get(), static_cast<ZPOS64_T>(block.size()) * blocks, crc)
                  == ZIP_OK;
}

bool runProgram(const QString &program, const QStringList &arguments, const QString &folder)
{
    QProcess process;
    if (!folder.isEmpty())
        process.setWorkingDirectory(folder);
    process.setStandardOutputFile(QProcess::nullDevice());
    process.start(program, arguments);
    return process.waitForFinished(-1) && process.exitStatus() == QProcess::NormalExit
           && process.exitCode() == 0;
}

bool sameTree(const QString &a, const QString &b)
{
    return runProgram(QStringLiteral("diff"), {QStringLiteral("-rq"), a, b});
}

} // namespace Archives
