#include "files/FileFolder.h"
#include "support/Ratio.h"

#include <QCoreApplication>
#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <cstdio>

namespace {

// In memory where the system offers that: the time of a disk would hide ours and the peer's.
QString workFolderTemplate()
{
    const QString memory = QStringLiteral("/dev/shm");
    return (QFileInfo(memory).isWritable() ? memory : QDir::tempPath())
           + QStringLiteral("/bench_FileFolder-XXXXXX");
}

// Files of some 100 to 800 bytes, spread evenly over the folders.
bool makeTree(const QString &top, int files, int folders)
{
    const int filesPerFolder = files / folders;
    for (int i = 0; i < files; ++i) {
        const QDir folder(QStringLiteral("%1/folder%2").arg(top).arg(i / filesPerFolder));
        if (!folder.mkpath(QStringLiteral(".")))
            return false;
        QFile file(folder.filePath(QStringLiteral("file%1.txt").arg(i)));
        if (!file.open(QIODevice::WriteOnly) || file.write(QByteArray(100 + i % 700, 'x')) < 0)
            return false;
    }
    return true;
}

bool runProgram(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    process.start(program, arguments);
    return process.waitForFinished(-1) && process.exitCode() == 0;
}

bool bareCopy(const QString &source, const QString &target)
{
    if (!QDir().mkpath(target))
        return false;
    QDirIterator it(source, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    while (it.hasNext()) {
        const QString path = it.next();
        const QString copy = target + QLatin1Char('/') + it.fileName();
        if (!(it.fileInfo().isDir() ? bareCopy(path, copy) : QFile::copy(path, copy)))
            return false;
    }
    return true;
}

qint64 bareSize(const QString &top)
{
    qint64 size = 0;
    QDirIterator it(top, QDir::Files | QDir::NoSymLinks | QDir::Hidden | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        it.next();
        size += it.fileInfo().size();
    }
    return size;
}

QStringList bareNames(const QString &top)
{
    QStringList names;
    QDirIterator it(top, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext())
        names.append(it.next().mid(top.length() + 1));
    return names;
}

// Copies the tree with `copy` and removes it again, which isn't counted.
template <typename Copy>
void measureCopy(benchmark::State &state, const QString &target, Copy copy)
{
    for (auto _ : state) {
        if (!copy())
            state.SkipWithError("the copy failed");
        state.PauseTiming();
        QDir(target).removeRecursively();
        state.ResumeTiming();
    }
}

void measureSize(benchmark::State &state, const QString &top)
{
    FileFolder folder(top);
    for (auto _ : state) {
        folder.refresh();
        benchmark::DoNotOptimize(folder.size());
    }
}

void addCopies(RatioTable &table, const QString &source, const QString &target)
{
    const auto ours = [=](benchmark::State &state) {
        measureCopy(state, target, [&] { return FileFolder().copyFolder(source, target); });
    };
    table
        .add("copy of 10,000 files, to a QFile::copy loop", ours,
             [=](benchmark::State &state) {
                 measureCopy(state, target, [&] { return bareCopy(source, target); });
             })
        .limit(1.2)
        .iterations(1);
    table
        .add(
            "copy of 10,000 files, to cp -r", ours,
            [=](benchmark::State &state) {
                measureCopy(state, target, [&] {
                    return runProgram(QStringLiteral("cp"), {QStringLiteral("-r"), source, target});
                });
            })
        .realTime()
        .iterations(1);
}

void addSizes(RatioTable &table, const QString &small, const QString &big)
{
    table
        .add(
            "size of 10,000 files, to du -sb",
            [=](benchmark::State &state) { measureSize(state, small); },
            [=](benchmark::State &state) {
                for (auto _ : state) {
                    if (!runProgram(QStringLiteral("du"), {QStringLiteral("-sb"), small}))
                        state.SkipWithError("du failed");
                }
            })
        .limit(2.2)
        .realTime();
    table
        .add(
            "size of 20,000 files, to a QDirIterator loop",
            [=](benchmark::State &state) { measureSize(state, big); },
            [=](benchmark::State &state) {
                for (auto _ : state)
                    benchmark::DoNotOptimize(bareSize(big));
            })
        .limit(1.5);
}

void addNames(RatioTable &table, const QString &top)
{
    table
        .add(
            "fileNames of 20,000 files, to a QDirIterator loop",
            [=](benchmark::State &state) {
                const FileFolder folder(top);
                for (auto _ : state)
                    benchmark::DoNotOptimize(folder.fileNames(QStringLiteral("*"), true));
            },
            [=](benchmark::State &state) {
                for (auto _ : state)
                    benchmark::DoNotOptimize(bareNames(top));
            })
        .limit(1.5);
}

// What is compared must be the same work.
bool agreesWithPeers(const QString &top)
{
    const FileFolder folder(top);
    QStringList ours = folder.fileNames(QStringLiteral("*"), true);
    QStringList bare = bareNames(top);
    ours.sort();
    bare.sort();
    return ours.size() == 20000 && ours == bare && folder.size() == bareSize(top);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QTemporaryDir work(workFolderTemplate());
    const QString small = work.filePath(QStringLiteral("small"));
    const QString big = work.filePath(QStringLiteral("big"));
    if (!makeTree(small, 10000, 100) || !makeTree(big, 20000, 500) || !agreesWithPeers(big)) {
        std::fprintf(stderr, "The trees could not be made, or the results differ.\n");
        return 1;
    }

    RatioTable table;
    addCopies(table, small, work.filePath(QStringLiteral("copy")));
    addSizes(table, small, big);
    addNames(table, big);
    return table.run(argc, argv);
}
