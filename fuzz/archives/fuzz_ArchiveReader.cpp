#include "archives/UnZipFile.h"
#include "archives/ZipReader.h"

#include "support/FuzzTarget.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

// An archive as a stranger packed it: listed, each entry read, and all of it extracted by both
// classes. Nothing may come to lie beside the output folder.

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
    out.removeRecursively();
}
