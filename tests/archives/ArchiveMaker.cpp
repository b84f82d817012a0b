#include "archives/ArchiveMaker.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QTest>

namespace ArchiveMaker {

QString python()
{
    // Debian's own, before one that a version manager's slow wrapper stands for.
    const QString system = QStringLiteral("/usr/bin/python3");
    return QFileInfo::exists(system) ? system : QStringLiteral("python3");
}

bool make(const QString &kind, const QString &path)
{
    const QString script = QString::fromLocal8Bit(qgetenv("TESSALINE_SOURCE_DIR"))
                           + "/tests/archives/data/make_archive.py";
    return !run(python(), {script, kind, path}).isNull();
}

QString archive(const QString &kind, const QString &folder)
{
    const QString path = folder + '/' + kind + ".zip";
    if (!make(kind, path))
        qFatal("no archive %s", qPrintable(kind));
    return path;
}

QString outputFolder(const QString &folder)
{
    const QString path = folder + "/out";
    if (!QDir().mkpath(path))
        qFatal("no folder %s", qPrintable(path));
    return path;
}

QStringList overlappingKinds()
{
    return {"overlapping",
            "overlapping_uncounted",
            "overlapping_behind_many",
            "overlapping_two_directories",
            "overlapping_far_locator",
            "overlapping_record_at_start",
            "overlapping_locator_at_start",
            "overlapping_negative_size",
            "overlapping_extra_fields"};
}

void addUnreadableRows()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<int>("refused");
    QTest::addColumn<QStringList>("files");
    QTest::newRow("sizes in ZIP64 fields") << "zip64_sizes" << 1 << QStringList("ok.txt=ok");
    QTest::newRow("sizes that wrap") << "zip64_wrapping" << 5 << QStringList();
    QTest::newRow("bzip2") << "other_methods" << 1 << QStringList("ok.txt=ok");
}

QByteArray run(const QString &program, const QStringList &arguments, const QString &folder)
{
    QProcess process;
    if (!folder.isEmpty())
        process.setWorkingDirectory(folder);
    process.start(program, arguments);
    if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit
        || process.exitCode() != 0) {
        qWarning() << program << arguments << process.errorString()
                   << process.readAllStandardError();
        return QByteArray();
    }
    const QByteArray output = process.readAllStandardOutput();
    return output.isNull() ? QByteArray("") : output;
}

bool write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList tree(const QString &folder)
{
    QStringList list;
    const QDir top(folder);
    QDirIterator entries(folder,
                         QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QString path = entries.next();
        const QString name = top.relativeFilePath(path);
        if (!entries.fileInfo().isDir())
            list.append(name + '=' + QString::fromUtf8(read(path)));
        else if (QDir(path).isEmpty())
            list.append(name + '/');
    }
    list.sort();
    return list;
}

} // namespace ArchiveMaker
