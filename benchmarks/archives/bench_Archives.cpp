#include "Archives.h"
#include "archives/ZipReader.h"
#include "archives/ZipWriter.h"
#include "support/PeakMemory.h"
#include "support/ProcessorTime.h"
#include "support/Ratio.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QLoggingCategory>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QTemporaryDir>

#include <cstdio>
#include <KZip>
#include <memory>

// Archives as an applet uses them, every call made in QML and every signal handled there, against
// Info-ZIP's programs and KArchive. Times are processor time, as those programs run beside us.
namespace {

const int manyFiles = 10000;
const int appendedFiles = 1000;
const int bigBlocks = 128; // of 4 MiB

const char document[] = R"(
import QtQml 2.15
import Zemrik.Tessaline 1.0

QtObject {
    id: applet

    property int steps
    property int completions
    property int errors
    property string lastFile
    property double lastPercent
    property int additions
    property ZipReader reader: ZipReader {
        onProgress: {
            ++applet.steps;
            applet.lastFile = fileName;
            applet.lastPercent = percent;
        }
        onError: ++applet.errors
        onCompleted: ++applet.completions
    }
    property ZipWriter writer: ZipWriter {
        onPathChanged: ++applet.additions
    }

    function extract(archive, folder) {
        completions = errors = 0;
        reader.path = archive;
        const done = reader.extractAll(folder);
        reader.close();
        return done && completions === 1 && errors === 0 && lastPercent === 100;
    }

    // Reads the directory of the archive from the start, once for each list.
    function countNames(archive) {
        reader.path = archive;
        const count = reader.fileNames.length + reader.folderNames.length;
        reader.close();
        return count;
    }

    function addOneByOne(archive, folder, count) {
        writer.path = archive;
        additions = 0;
        for (let i = 0; i < count; ++i) {
            if (!writer.addFile(folder + "/f" + i + ".txt", "f" + i + ".txt"))
                return false;
        }
        return additions === count;
    }
}
)";

class Applet
{
public:
    Applet()
    {
        m_engine.addImportPath(QStringLiteral(MODULE_DIR));
        QQmlComponent component(&m_engine);
        component.setData(document, QUrl());
        m_object.reset(component.create());
        if (!m_object)
            qFatal("%s", qPrintable(component.errorString()));
    }

    template <typename... Arguments>
    QVariant call(const char *function, const Arguments &...arguments) const
    {
        QVariant result;
        QMetaObject::invokeMethod(m_object.get(), function, Q_RETURN_ARG(QVariant, result),
                                  Q_ARG(QVariant, QVariant(arguments))...);
        return result;
    }

    bool extract(const QString &archive, const QString &folder) const
    {
        return QDir().mkpath(folder) && call("extract", archive, folder).toBool();
    }

    // No call of a script's own: for native code, with the script's handler.
    bool addFiles(const QString &archive, const QDir &folder, const QStringList &names) const
    {
        auto *writer = m_object->property("writer").value<ZipWriter *>();
        writer->setPath(archive);
        m_object->setProperty("additions", 0);
        return writer->zwAddFiles(folder, names)
               && m_object->property("additions").toInt() == names.size();
    }

private:
    QQmlEngine m_engine;
    std::unique_ptr<QObject> m_object;
};

// All work happens in one folder.
struct Scene
{
    explicit Scene(const QString &folder)
        : dir(folder)
        , texts(dir.filePath(QStringLiteral("texts")))
        , small(dir.filePath(QStringLiteral("small.zip")))
        , big(dir.filePath(QStringLiteral("big.zip")))
        , listing(dir.filePath(QStringLiteral("listing.zip")))
        , longListing(dir.filePath(QStringLiteral("longlisting.zip")))
        , output(dir.filePath(QStringLiteral("output")))
        , packed(dir.filePath(QStringLiteral("packed.zip")))
    {
    }

    bool make() const
    {
        return Archives::makeTextTree(texts, manyFiles, 2000, 7000) && zip(small)
               && Archives::makeBig(big, bigBlocks) && Archives::makeListing(listing, manyFiles)
               && Archives::makeListing(longListing, 10 * manyFiles);
    }

    // Without entries for folders.
    bool zip(const QString &archive) const
    {
        return Archives::runProgram(QStringLiteral("zip"),
                                    {QStringLiteral("-q"), QStringLiteral("-D"),
                                     QStringLiteral("-r"), archive, QStringLiteral(".")},
                                    texts);
    }

    bool unzip(const QString &archive) const
    {
        return Archives::runProgram(QStringLiteral("unzip"),
                                    {QStringLiteral("-q"), archive, QStringLiteral("-d"), output});
    }

    bool unzipByKArchive(const QString &archive) const
    {
        KZip zip(archive);
        return zip.open(QIODevice::ReadOnly) && zip.directory()->copyTo(output, true);
    }

    void cleanUp() const
    {
        QDir(output).removeRecursively();
        QFile::remove(packed);
    }

    // A benchmark function that leaves nothing behind.
    template <typename Work>
    auto timed(Work work) const
    {
        return processorTimeOf(work, [this] { cleanUp(); });
    }

    const QDir dir;
    const QString texts;
    const QString small;
    const QString big;
    const QString listing;
    const QString longListing;
    const QString output;
    const QString packed;
};

QStringList filesBelow(const QString &top)
{
    QStringList names;
    QDirIterator it(top, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext())
        names.append(it.next().mid(top.length() + 1));
    return names;
}

// `zip` once per file, as a script without a library does it.
bool zipOneByOne(const Scene &scene, const QString &folder)
{
    for (int i = 0; i < appendedFiles; ++i) {
        if (!Archives::runProgram(
                QStringLiteral("zip"),
                {QStringLiteral("-q"), scene.packed, QStringLiteral("f%1.txt").arg(i)}, folder))
            return false;
    }
    return true;
}

bool openByKArchive(const QString &path, int entries)
{
    KZip zip(path);
    return zip.open(QIODevice::ReadOnly) && zip.directory()->entries().size() == entries / 100;
}

void addExtractions(RatioTable &table, const Applet &applet, const Scene &scene)
{
    struct Case
    {
        const char *name;
        QString archive;
        double toUnzip;
        double toKArchive;
        int repetitions;
    };
    for (const Case &c : {Case{"extractAll of 10,000 small files", scene.small, 0.9, 1.0, 4},
                          Case{"extractAll of one entry of 512 MiB", scene.big, 0.65, 1.1, 2}}) {
        const auto ours = scene.timed([&, c] { return applet.extract(c.archive, scene.output); });
        const std::string name(c.name);
        table
            .add(name + ", to unzip -q", ours,
                 scene.timed([&, c] { return scene.unzip(c.archive); }))
            .limit(c.toUnzip)
            .manualTime()
            .iterations(1)
            .repetitions(c.repetitions);
        table
            .add(name + ", to KArchive", ours,
                 scene.timed([&, c] { return scene.unzipByKArchive(c.archive); }))
            .limit(c.toKArchive)
            .manualTime()
            .iterations(1)
            .repetitions(c.repetitions);
    }
}

void addListings(RatioTable &table, const Applet &applet, const Scene &scene)
{
    const auto names = [&applet](const QString &archive, int entries) {
        return processorTimeOf([&applet, archive, entries] {
            return applet.call("countNames", archive).toInt() == entries + entries / 100;
        });
    };
    table
        .add("names of 10,000 entries, to opening by KArchive", names(scene.listing, manyFiles),
             processorTimeOf([&] { return openByKArchive(scene.listing, manyFiles); }))
        .limit(1.0)
        .manualTime()
        .repetitions(3);
    table
        .add("names of 100,000 entries, to those of 10,000",
             names(scene.longListing, 10 * manyFiles), names(scene.listing, manyFiles))
        .limit(11)
        .manualTime()
        .repetitions(3);
}

void addWriting(RatioTable &table, const Applet &applet, const Scene &scene,
                const QStringList &names, const QString &flatFolder)
{
    table
        .add("addFile 1,000 times, to 1,000 runs of zip", scene.timed([&, flatFolder] {
            return applet.call("addOneByOne", scene.packed, flatFolder, appendedFiles).toBool();
        }),
             scene.timed([&, flatFolder] { return zipOneByOne(scene, flatFolder); }))
        .limit(0.10)
        .manualTime()
        .iterations(1)
        .repetitions(2);
    table
        .add("zwAddFiles of 10,000 text files, to zip -r",
             scene.timed([&, names] { return applet.addFiles(scene.packed, scene.texts, names); }),
             scene.timed([&] { return scene.zip(scene.packed); }))
        .limit(0.85)
        .manualTime()
        .iterations(1)
        .repetitions(3);
}

// What is compared must be the same work.
bool agreesWithPeers(const Applet &applet, const Scene &scene, const QStringList &names)
{
    const auto extracted = [&](bool done) {
        const bool same = done && Archives::sameTree(scene.texts, scene.output);
        scene.cleanUp();
        return same;
    };
    if (!extracted(applet.extract(scene.small, scene.output))
        || !extracted(scene.unzip(scene.small)) || !extracted(scene.unzipByKArchive(scene.small)))
        return false;
    return extracted(applet.addFiles(scene.packed, scene.texts, names)
                     && scene.unzip(scene.packed));
}

// Above what a small archive takes, so that what is needed once doesn't count.
double growthOfBigExtraction(const Applet &applet, const Scene &scene)
{
    const QString warmUp = scene.dir.filePath(QStringLiteral("warmup.zip"));
    if (!Archives::makeBig(warmUp, 2) || !applet.extract(warmUp, scene.output))
        return -1;
    const double growth = peakGrowth([&] { return applet.extract(scene.big, scene.output); });
    const QFileInfo big(scene.output + QStringLiteral("/big.txt"));
    const bool whole = big.size() == qint64(bigBlocks) * (4 << 20);
    scene.cleanUp();
    return whole ? growth : -1;
}

// In memory where the system offers that: the time of a disk would hide ours and the peer's.
QString workFolderTemplate()
{
    const QString memory = QStringLiteral("/dev/shm");
    return (QFileInfo(memory).isWritable() ? memory : QDir::tempPath())
           + QStringLiteral("/bench_Archives-XXXXXX");
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    const QTemporaryDir work(workFolderTemplate());
    const Scene scene(work.path());
    const Applet applet;
    const QString flatFolder = work.filePath(QStringLiteral("flat"));
    if (!scene.make() || !QDir().mkpath(flatFolder)) {
        std::fprintf(stderr, "The archives could not be made.\n");
        return 1;
    }
    for (int i = 0; i < appendedFiles; ++i)
        QFile::copy(
            scene.texts
                + QStringLiteral("/d%1/f%2.txt").arg(i / 100, 2, 10, QLatin1Char('0')).arg(i),
            flatFolder + QStringLiteral("/f%1.txt").arg(i));
    const QStringList names = filesBelow(scene.texts);
    const double growth = growthOfBigExtraction(applet, scene);
    if (growth < 0 || !agreesWithPeers(applet, scene, names)) {
        std::fprintf(stderr, "The results differ from the peers'.\n");
        return 1;
    }

    RatioTable table;
    addExtractions(table, applet, scene);
    table.value("extractAll of 512 MiB, growth in KiB, to 2 MiB", growth, 2048);
    addListings(table, applet, scene);
    addWriting(table, applet, scene, names, flatFolder);
    return table.run(argc, argv);
}
