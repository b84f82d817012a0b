#include "portal/ZipFolder.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>

#include <minizip/zip.h>

namespace {

// The years that a date in an archive can have; a file of another time gets the nearest one.
QDateTime storable(const QDateTime &time)
{
    const QDateTime first(QDate(1980, 1, 1), QTime(0, 0));
    const QDateTime last(QDate(2107, 12, 31), QTime(23, 59, 58));
    return qBound(first, time, last);
}

zip_fileinfo entryInfo(const QDateTime &time)
{
    zip_fileinfo info = {};
    info.tmz_date.tm_year = static_cast<uInt>(time.date().year());
    info.tmz_date.tm_mon = static_cast<uInt>(time.date().month() - 1);
    info.tmz_date.tm_mday = static_cast<uInt>(time.date().day());
    info.tmz_date.tm_hour = static_cast<uInt>(time.time().hour());
    info.tmz_date.tm_min = static_cast<uInt>(time.time().minute());
    info.tmz_date.tm_sec = static_cast<uInt>(time.time().second());
    return info;
}

bool copyContent(zipFile archive, QFile &file)
{
    while (!file.atEnd()) {
        const QByteArray block = file.read(256LL * 1024);
        if (block.isEmpty()
            || zipWriteInFileInZip(archive, block.constData(), static_cast<unsigned>(block.size()))
                   != ZIP_OK)
            return false;
    }
    return file.error() == QFileDevice::NoError;
}

bool addFile(zipFile archive, const QString &path, const QString &name)
{
    const int Utf8Names = 1 << 11; // general purpose flag
    const int MadeByUnix = 3 << 8;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const zip_fileinfo info = entryInfo(storable(QFileInfo(file).lastModified()));
    const bool zip64 = file.size() >= 0xffffffffLL;
    if (zipOpenNewFileInZip4_64(archive, name.toUtf8().constData(), &info, nullptr, 0, nullptr, 0,
                                nullptr, Z_DEFLATED, Z_DEFAULT_COMPRESSION, 0, -MAX_WBITS,
                                DEF_MEM_LEVEL, Z_DEFAULT_STRATEGY, nullptr, 0, MadeByUnix,
                                Utf8Names, zip64)
        != ZIP_OK)
        return false;
    const bool copied = copyContent(archive, file);
    return zipCloseFileInZip(archive) == ZIP_OK && copied;
}

} // namespace

bool zipFolder(const QString &folder, const QString &archivePath)
{
    const zipFile archive =
        zipOpen64(QFile::encodeName(archivePath).constData(), APPEND_STATUS_CREATE);
    if (!archive)
        return false;

    const QDir root(QFileInfo(folder).absoluteFilePath());
    QStringList names;
    QDirIterator walk(root.path(), QDir::Files | QDir::NoSymLinks, QDirIterator::Subdirectories);
    while (walk.hasNext())
        names.append(root.relativeFilePath(walk.next()));
    names.sort(); // the same archive whatever order the disk has

    bool good = true;
    for (const QString &name : qAsConst(names))
        good = good && addFile(archive, root.filePath(name), name);
    return zipClose(archive, nullptr) == ZIP_OK && good;
}
