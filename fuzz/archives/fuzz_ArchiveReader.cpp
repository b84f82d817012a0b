#include "archives/UnZipFile.h"
#include "archives/ZipReader.h"

#include "support/FuzzTarget.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>

// An archive as a stranger packed it: listed, each entry read, and all of it extracted by both
// classes. Nothing may come to lie beside the output folder, and no more in it than the archive's
// own bytes can hold.

namespace {

// In memory, beside a file that tells whether something got out.
const QDir &work()
{
    static const QTemporaryDir folder(QStringLiteral("/dev/shm/fuzz_ArchiveReader-XXXXXX"));
    static const QDir dir(folder.path());
    return dir;
}

void writeArchive(const QByteArray &bytes)
{
    QFile file(work().filePath(QStringLiteral("archive.zip")));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("%s can't be written", qPrintable(file.fileName()));
}

void checkNothingGotOut()
{
    const QStringList names =
        work().entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    if (names != QStringList{QStringLiteral("archive.zip"), QStringLiteral("out")})
        qFatal("Beside the output folder: %s", qPrintable(names.join(QLatin1String(", "))));
}

// Deflate packs at most 1,032 bytes into one. Entries over the same bytes would give more.
void checkOutputIsBounded(const QDir &out, qint64 archiveSize)
{
    qint64 size = 0;
    QDirIterator files(out.path(), QDir::Files | QDir::Hidden | QDir::System,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        files.next();
        size += files.fileInfo().size();
    }
    if (size > archiveSize * 1032 + 1024)
        qFatal("%lld bytes out of %lld", size, archiveSize);
}

} // namespace

TESSALINE_FUZZ_TARGET(bytes)
{
    writeArchive(bytes);
    const QString path = work().filePath(QStringLiteral("archive.zip"));
    QDir out(work().filePath(QStringLiteral("out")));
    work().mkpath(QStringLiteral("out"));

    UnZipFile file;
    if (file.open(path)) {
        const QStringList names = file.entryList();
        for (const QString &name : names) {
            file.locateFile(name, 1);
            file.currentFileDateTime();
        }
        file.extractAll(out);
        file.close();
        checkNothingGotOut();
        checkOutputIsBounded(out, bytes.size());
    }
    out.removeRecursively();
    work().mkpath(QStringLiteral("out"));

    ZipReader reader;
    reader.setPath(path);
    const QStringList names = reader.fileNames();
    reader.folderNames();
    for (const QString &name : names.mid(0, 20))
        reader.readTextFile(name);
    reader.extractAll(out.path());
    checkNothingGotOut();
    checkOutputIsBounded(out, bytes.size());
    out.removeRecursively();
}
