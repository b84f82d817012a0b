#include "archives/ArchiveMaker.h"
#include "archives/CentralDirectory.h"
#include "archives/ZipFileInfo.h"
#include "archives/ZipReader.h"
#include "plugin/FileUtility.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"

#include <QSignalSpy>
#include <QTest>

#include <cmath>
#include <functional>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const char category[] = "Zemrik.Tessaline.File";

// In KiB.
qint64 peakAddressSpace()
{
    const QList<QByteArray> lines = ArchiveMaker::read("/proc/self/status").split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith("VmPeak:"))
            return line.mid(7).simplified().split(' ').at(0).toLongLong();
    }
    return 0;
}

} // namespace

Q_DECLARE_METATYPE(std::function<void(ZipReader &)>)

class tst_ZipReader : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void opensLazilyAndStaysOpen();
    void pathChangeClosesAndSignalsInOrder();
    void pathMayBeginWithAVariable();
    void missingArchiveWarnsOnce();
    void unreadableArchiveSaysUnableToOpen();
    void whatIsNoFileDoesNotOpen();
    void namesWithANulAreNotCut();
    void textOfAMissingArchiveIsCritical();
    void caseSensitiveIsFalseAtTheStart();
    void listsFilesInArchiveOrder();
    void listsFoldersOnce_data();
    void listsFoldersOnce();
    void foldersOfNestedFileOnly();
    void lookUpIsAlwaysCaseSensitive();
    void infoOfAnEntry();
    void infoOfAMissingEntryIsNullWithAWarning();
    void readsTextUpToTheFirstNul();
    void readsJsonObjects();
    void missingTextIsCritical();
    void extractsOneFileWithProgress();
    void progressOfAnEmptyEntryIsNotANumber();
    void extractFileFailuresAreCritical();
    void extractReplacesAnExistingFile();
    void entriesComeOutInAnyOrder();
    void extractAllWritesEverything();
    void extractAllWithBaseTakesDirectFilesOnly();
    void extractAllOfAFolderEntryMakesAnEmptyFile();
    void extractAllOfAnEmptyArchiveStillCompletes();
    void extractAllOfAMissingArchiveIsFalseAndSilent();
    void datesReadOneDayLate();
    void lastDayOfAMonthHasNoDate();
    void damagedEntryEmitsErrorAndTheNextOneComesOut();
    void wrongChecksumIsOnlyAWarning();
    void hugeClaimedSizeAllocatesLittle();
    void twoFalseSizesAllocateLittle();
    void longNamesAreCutNotOverrun();
    void longPathsAreRefused();
    void nameEndsAtNul();
    void truncatedDirectoryGivesWhatIsThere();
    void entriesThatLeaveTheFolderAreRefused();
    void symbolicLinkBelowTheFolderIsRefused();
    void linkInPlaceOfAFileIsToldByError();
    void extractFileWritesThroughALink();
    void outputFolderItselfMayBeALink();
    void overlappingEntriesAreRefused_data();
    void overlappingEntriesAreRefused();
    void prefixedArchiveIsNoOverlap();
    void plainArchivesAreRecognised_data();
    void plainArchivesAreRecognised();
    void overlapIsLookedForInTheOpenFile();
    void entriesThatCannotBeReadAreRefused_data();
    void entriesThatCannotBeReadAreRefused();
    void encryptedEntriesAreRefused();
    void localZip64FieldsAreRead();
    void offsetsInZip64FieldsAreNotFollowed();
    void archiveIsNotOverwrittenByItsEntries();
    void handlersMayListAndLookUp_data();
    void handlersMayListAndLookUp();
    void readingInAHandlerEndsTheEntryOnly();
    void anotherPathInAHandlerEndsTheExtraction();
    void plantedLinkIsWrittenAsText();
    void cutArchiveCannotBeOpened();
    void manyEntriesComeOut();
    void oneFolderComesOutOfHundredThousandEntries();
    void manyEntries();
    void fullDiskIsAFailure();
    void readsArchivesOfOtherTools_data();
    void readsArchivesOfOtherTools();

private:
    QString archive(const QString &kind) { return ArchiveMaker::archive(kind, m_dir->path()); }
    QString output() { return ArchiveMaker::outputFolder(m_dir->path()); }

    std::unique_ptr<QTemporaryDir> m_dir;
};

void tst_ZipReader::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
}

void tst_ZipReader::opensLazilyAndStaysOpen()
{
    ZipReader zip;
    zip.setPath(archive("simple"));
    QCOMPARE(zip.isOpen(), QString(QChar(0)));

    QVERIFY(zip.exists("top.txt"));

    QCOMPARE(zip.isOpen(), QString(QChar(1)));
    zip.close();
    QCOMPARE(zip.isOpen(), QString(QChar(0)));
    QCOMPARE(zip.isOpen().length(), 1);
}

void tst_ZipReader::pathChangeClosesAndSignalsInOrder()
{
    ZipReader zip;
    zip.setPath(archive("simple"));
    zip.exists("top.txt");
    QStringList order;
    connect(&zip, &ZipReader::pathChanged, this, [&] { order << "path"; });
    connect(&zip, &ZipReader::fileNamesChanged, this, [&] { order << "files"; });
    connect(&zip, &ZipReader::folderNamesChanged, this, [&] { order << "folders"; });

    zip.setPath(m_dir->filePath("simple.zip"));
    QVERIFY(order.isEmpty());
    zip.setPath(m_dir->filePath("other.zip"));

    QCOMPARE(order, QStringList({"path", "files", "folders"}));
    QCOMPARE(zip.isOpen(), QString(QChar(0)));
    order.clear();
    zip.refresh();
    QCOMPARE(order, QStringList({"files", "folders"}));
}

void tst_ZipReader::pathMayBeginWithAVariable()
{
    FileUtility::setPathVariable("ZIPS", m_dir->path());
    ZipReader zip;
    zip.setPath("$ZIPS/x.zip");
    QCOMPARE(zip.path(), m_dir->path() + "/x.zip");
}

void tst_ZipReader::missingArchiveWarnsOnce()
{
    ZipReader zip;
    zip.setPath(m_dir->filePath("missing.zip"));
    LogCapture log;

    QVERIFY(zip.fileNames().isEmpty());

    QCOMPARE(log.count(QtWarningMsg, category, "ZIP not open"), 1);
    QCOMPARE(log.count(QtWarningMsg), 1);
    log.clear();
    QVERIFY(zip.folderNames().isEmpty());
    QVERIFY(!zip.exists("a"));
    QVERIFY(!zip.fileInfo("a"));
    QVERIFY(!zip.extractFile("a", m_dir->filePath("a")));
    QVERIFY(!zip.extractAll(output()));
    QCOMPARE(log.count(QtWarningMsg, category, "ZIP not open"), 5);
    QCOMPARE(log.count(QtCriticalMsg), 0);
}

void tst_ZipReader::unreadableArchiveSaysUnableToOpen()
{
    const QString path = m_dir->filePath("text.zip");
    QVERIFY(ArchiveMaker::write(path, "this is no archive"));
    ZipReader zip;
    zip.setPath(path);
    LogCapture log;

    const QDir handles("/proc/self/fd");
    const uint before = handles.count();
    QVERIFY(!zip.exists("a"));

    QCOMPARE(log.count(QtWarningMsg, category, "Unable to open:"), 1);
    QCOMPARE(log.count(QtWarningMsg, category, "ZIP not open"), 1);
    QCOMPARE(QDir(handles.path()).count(), before); // the file isn't held
}

void tst_ZipReader::whatIsNoFileDoesNotOpen()
{
    const QString pipe = m_dir->filePath("pipe.zip");
    QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    ZipReader zip;
    LogCapture log;

    for (const QString &path : {pipe, m_dir->path()}) {
        zip.setPath(path);
        QCOMPARE(zip.fileNames(), QStringList());
    }

    QCOMPARE(log.count(QtWarningMsg, category, "Unable to open:"), 2);
}

void tst_ZipReader::namesWithANulAreNotCut()
{
    const QString path = archive("simple");
    const QString output = m_dir->filePath("output");
    QVERIFY(ArchiveMaker::write(output, "kept"));
    const LogCapture log;
    ZipReader zip;
    zip.setPath(path + QChar(0) + ".zip");
    QVERIFY(!zip.exists("top.txt"));
    zip.setPath(path);
    QVERIFY(zip.exists("top.txt"));
    QVERIFY(!zip.extractFile("top.txt", output + QChar(0) + ".txt"));
    QCOMPARE(FileUtility::readFile(output), QByteArray("kept"));
}

void tst_ZipReader::textOfAMissingArchiveIsCritical()
{
    ZipReader zip;
    LogCapture log;
    QVERIFY(zip.readTextFile("a").isEmpty());
    QCOMPARE(log.count(QtCriticalMsg, category, "ZIP not open"), 1);
    QCOMPARE(log.count(QtWarningMsg), 0);
}

void tst_ZipReader::caseSensitiveIsFalseAtTheStart()
{
    ZipReader zip;
    QSignalSpy spy(&zip, &ZipReader::caseSensitiveChanged);
    QVERIFY(!zip.caseSensitive());
    zip.setCaseSensitive(false);
    zip.setCaseSensitive(true);
    QCOMPARE(spy.count(), 1);
}

void tst_ZipReader::listsFilesInArchiveOrder()
{
    ZipReader zip;
    zip.setPath(archive("simple"));
    QCOMPARE(zip.fileNames(),
             QStringList({"top.txt", "a/x.txt", "a/b/y.txt", "Über/ß.txt", "empty.txt"}));
    zip.setPath(archive("folders"));
    QCOMPARE(zip.fileNames(), QStringList("dir/in.txt"));
}

void tst_ZipReader::listsFoldersOnce_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<bool>("caseSensitive");
    QTest::addColumn<QStringList>("folders");
    QTest::newRow("top level is a dot")
        << "simple" << false << QStringList({".", "a", "a/b", "Über"});
    QTest::newRow("folder entries") << "folders" << false << QStringList({"dir", "other"});
    QTest::newRow("case ignored") << "mixed_case" << false << QStringList("Data");
    QTest::newRow("case kept") << "mixed_case" << true << QStringList({"Data", "data"});
    // As extractAll() compares its base folder.
    QTest::newRow("letter by letter") << "sharp_s" << false << QStringList({"Maße", "Masse"});
}

void tst_ZipReader::listsFoldersOnce()
{
    QFETCH(QString, kind);
    QFETCH(bool, caseSensitive);
    ZipReader zip;
    zip.setPath(archive(kind));
    zip.setCaseSensitive(caseSensitive);
    QTEST(zip.folderNames(), "folders");
}

void tst_ZipReader::foldersOfNestedFileOnly()
{
    ZipReader zip;
    zip.setPath(archive("nested"));
    QCOMPARE(zip.fileNames(), QStringList("a/b.txt"));
    QCOMPARE(zip.folderNames(), QStringList("a"));
}

void tst_ZipReader::lookUpIsAlwaysCaseSensitive()
{
    ZipReader zip;
    zip.setPath(archive("simple"));
    LogCapture log;
    for (const bool caseSensitive : {false, true}) {
        zip.setCaseSensitive(caseSensitive);
        QVERIFY(zip.exists("top.txt"));
        QVERIFY(!zip.exists("TOP.txt"));
    }
    QCOMPARE(log.count(QtDebugMsg, category, "File not found:"), 2);
}

void tst_ZipReader::infoOfAnEntry()
{
    ZipReader zip;
    zip.setPath(archive("big"));
    const std::unique_ptr<ZipFileInfo> info(zip.fileInfo("big.bin"));
    QVERIFY(info && !info->parent());
    QCOMPARE(info->filePath(), QString("big.bin"));
    QCOMPARE(info->size(), 200000LL);
    QVERIFY(info->compressedSize() > 0 && info->compressedSize() < 200000);
    QCOMPARE(info->path(), QString("."));
    QCOMPARE(info->fileName(), QString("big.bin"));
    QCOMPARE(info->suffix(), QString("bin"));
    const QByteArray crc = ArchiveMaker::run(
        ArchiveMaker::python(),
        {"-c", "import zipfile,sys;print(zipfile.ZipFile(sys.argv[1]).getinfo('big.bin').CRC)",
         zip.path()});
    QCOMPARE(QByteArray::number(qulonglong(info->crc())), crc.trimmed());

    QSignalSpy spy(info.get(), &ZipFileInfo::filePathChanged);
    info->setFilePath("big.bin", {});
    QCOMPARE(info->size(), 200000LL);
    info->setFilePath("a/new.txt", {});
    QCOMPARE(spy.count(), 1);
    QCOMPARE(info->size(), 0LL);
    QCOMPARE(info->path(), QString("a"));
}

void tst_ZipReader::infoOfAMissingEntryIsNullWithAWarning()
{
    ZipReader zip;
    zip.setPath(archive("nested"));
    LogCapture log;
    QVERIFY(!zip.fileInfo("nothing"));
    QCOMPARE(log.count(QtWarningMsg, category, "File not found"), 1);
}

void tst_ZipReader::readsTextUpToTheFirstNul()
{
    ZipReader zip;
    zip.setPath(archive("texts"));
    QCOMPARE(zip.readTextFile("nul.txt"), QString("before"));
    QCOMPARE(zip.readTextFile("stored.txt"), QString("stored"));
}

void tst_ZipReader::readsJsonObjects()
{
    ZipReader zip;
    zip.setPath(archive("texts"));
    QCOMPARE(zip.readJsonFile("object.json").value("a").toInt(), 1);
    QVERIFY(zip.readJsonFile("object.json").contains("n"));
    QVERIFY(zip.readJsonFile("array.json").isEmpty());
}

void tst_ZipReader::missingTextIsCritical()
{
    ZipReader zip;
    zip.setPath(archive("texts"));
    LogCapture log;
    QVERIFY(zip.readTextFile("nothing").isNull());
    QCOMPARE(log.count(QtCriticalMsg, category, "Unable to locate file"), 1);
}

void tst_ZipReader::extractsOneFileWithProgress()
{
    ZipReader zip;
    zip.setPath(archive("chunks"));
    const QString out = m_dir->filePath("chunks.bin");
    QList<double> percents;
    QStringList names;
    connect(&zip, &ZipReader::progress, this,
            [&](const QString &name, const QString &path, double percent) {
                names << name + '|' + path;
                percents << percent;
            });

    QVERIFY(zip.extractFile("chunks.bin", out));

    QCOMPARE(ArchiveMaker::read(out), QByteArray(10000, 'z'));
    // One before each chunk, one at the end of the data, one when the file is done.
    QCOMPARE(percents, QList<double>({0.0, 40.96, 81.92, 100.0, 100.0}));
    names.removeDuplicates();
    QCOMPARE(names, QStringList("chunks.bin|" + out));
}

void tst_ZipReader::progressOfAnEmptyEntryIsNotANumber()
{
    ZipReader zip;
    zip.setPath(archive("simple"));
    QSignalSpy spy(&zip, &ZipReader::progress);
    QVERIFY(zip.extractFile("empty.txt", m_dir->filePath("empty")));
    QCOMPARE(spy.count(), 2);
    QVERIFY(std::isnan(spy.at(0).at(2).toDouble()));
    QCOMPARE(spy.at(1).at(2).toDouble(), 100.0);
}

void tst_ZipReader::extractFileFailuresAreCritical()
{
    ZipReader zip;
    zip.setPath(archive("simple"));
    LogCapture log;

    QVERIFY(!zip.extractFile("nothing", m_dir->filePath("x")));
    QCOMPARE(log.count(QtCriticalMsg, category, "Extracting:"), 1);
    QVERIFY(!zip.extractFile("top.txt", m_dir->filePath("no/such/folder")));
    QCOMPARE(log.count(QtCriticalMsg, category, "Error opening:"), 1);
    QCOMPARE(log.count(QtCriticalMsg, category, "Extracting:"), 2);
}

void tst_ZipReader::entriesComeOutInAnyOrder()
{
    ZipReader zip;
    zip.setPath(archive("scattered"));
    const QString expected = m_dir->filePath("expected");
    QVERIFY(
        !ArchiveMaker::run(ArchiveMaker::python(), {"-m", "zipfile", "-e", zip.path(), expected})
             .isNull());
    QStringList names = zip.fileNames();
    QCOMPARE(names.size(), 60);

    for (int left = names.size(); left > 0; --left) {
        const QString name = names.takeAt(left % 2 ? 0 : left / 2);
        QVERIFY2(zip.extractFile(name, output() + '/' + name), qPrintable(name));
        QVERIFY(std::unique_ptr<ZipFileInfo>(zip.fileInfo(name)));
    }

    QCOMPARE(ArchiveMaker::tree(output()), ArchiveMaker::tree(expected));
}

void tst_ZipReader::extractReplacesAnExistingFile()
{
    ZipReader zip;
    zip.setPath(archive("simple"));
    const QString out = m_dir->filePath("top.txt");
    QVERIFY(ArchiveMaker::write(out, "something longer than the entry"));
    QVERIFY(zip.extractFile("top.txt", out));
    QCOMPARE(ArchiveMaker::read(out), QByteArray("top"));
}

void tst_ZipReader::extractAllWritesEverything()
{
    ZipReader zip;
    zip.setPath(archive("simple"));
    QSignalSpy completed(&zip, &ZipReader::completed);

    QVERIFY(zip.extractAll(output()));

    QCOMPARE(completed.count(), 1);
    QStringList expected(
        {"a/b/y.txt=y", "a/x.txt=x", "empty.txt=", "top.txt=top", "Über/ß.txt=umlaut"});
    expected.sort();
    QCOMPARE(ArchiveMaker::tree(output()), expected);
}

void tst_ZipReader::extractAllWithBaseTakesDirectFilesOnly()
{
    ZipReader zip;
    zip.setPath(archive("simple"));
    QVERIFY(zip.extractAll(output(), "a/"));
    QCOMPARE(ArchiveMaker::tree(output()), QStringList("x.txt=x"));

    QVERIFY(QDir(output()).removeRecursively());
    QVERIFY(zip.extractAll(output(), "A"));
    QCOMPARE(ArchiveMaker::tree(output()), QStringList("x.txt=x"));

    QVERIFY(QDir(output()).removeRecursively());
    zip.setCaseSensitive(true);
    QVERIFY(zip.extractAll(output(), "A"));
    QVERIFY(ArchiveMaker::tree(output()).isEmpty());
}

void tst_ZipReader::extractAllOfAFolderEntryMakesAnEmptyFile()
{
    ZipReader zip;
    zip.setPath(archive("folders"));
    LogCapture log;
    QVERIFY(zip.extractAll(output()));
    QCOMPARE(ArchiveMaker::tree(output()), QStringList({"dir=", "other="}));
    QCOMPARE(log.count(QtCriticalMsg, category, "Unable to create path:"), 1);
}

void tst_ZipReader::extractAllOfAnEmptyArchiveStillCompletes()
{
    ZipReader zip;
    zip.setPath(archive("no_entries"));
    QSignalSpy completed(&zip, &ZipReader::completed);
    LogCapture log;
    QVERIFY(zip.extractAll(output()));
    QCOMPARE(completed.count(), 1);
    QCOMPARE(log.count(QtCriticalMsg, category, "Error %d with zipfile in unzGoToFirstFile"), 1);
}

void tst_ZipReader::extractAllOfAMissingArchiveIsFalseAndSilent()
{
    ZipReader zip;
    QSignalSpy completed(&zip, &ZipReader::completed);
    LogCapture log;
    QVERIFY(!zip.extractAll(output()));
    QCOMPARE(completed.count(), 0);
}

void tst_ZipReader::datesReadOneDayLate()
{
    ZipReader zip;
    zip.setPath(archive("days"));
    const QDateTime expected(QDate(2024, 5, 18), QTime(10, 20, 30));
    const std::unique_ptr<ZipFileInfo> info(zip.fileInfo("middle.txt"));
    QCOMPARE(info->lastModified(), expected);

    QVERIFY(zip.extractFile("middle.txt", m_dir->filePath("middle.txt")));
    QCOMPARE(QFileInfo(m_dir->filePath("middle.txt")).lastModified(), expected);
    QCOMPARE(QFileInfo(m_dir->filePath("middle.txt")).lastRead(), expected);
}

void tst_ZipReader::lastDayOfAMonthHasNoDate()
{
    ZipReader zip;
    zip.setPath(archive("days"));
    const std::unique_ptr<ZipFileInfo> info(zip.fileInfo("last.txt"));
    QVERIFY(!info->lastModified().isValid());

    // The file is dated with the time of its writing.
    const QDateTime before = QDateTime::currentDateTime().addSecs(-60);
    QVERIFY(zip.extractFile("last.txt", m_dir->filePath("last.txt")));
    const QDateTime written = QFileInfo(m_dir->filePath("last.txt")).lastModified();
    QVERIFY2(written > before && written < before.addSecs(600), qPrintable(written.toString()));
}

void tst_ZipReader::damagedEntryEmitsErrorAndTheNextOneComesOut()
{
    ZipReader zip;
    zip.setPath(archive("damaged"));
    QSignalSpy errors(&zip, &ZipReader::error);
    ZipReader::Result result = ZipReader::EndOfFile;
    connect(&zip, &ZipReader::error, this,
            [&](const QString &, const QString &, ZipReader::Result code) { result = code; });
    LogCapture log;

    QVERIFY(zip.extractAll(output()));

    QCOMPARE(errors.count(), 1);
    QCOMPARE(errors.at(0).at(0).toString(), QString("bad.bin"));
    QCOMPARE(errors.at(0).at(1).toString(), output() + "/bad.bin");
    QCOMPARE(int(result), -3); // zlib's own code for damaged data
    QCOMPARE(log.count(QtCriticalMsg, category, "unzReadCurrentFile error:"), 1);
    QCOMPARE(log.count(QtCriticalMsg, category, "Buffer size: 4096"), 1);
    QCOMPARE(ArchiveMaker::read(output() + "/good.txt"), QByteArray("good"));
    // What came before the damage is kept, in whole chunks.
    const qint64 kept = QFileInfo(output() + "/bad.bin").size();
    QVERIFY(kept > 0 && kept < 60000 && kept % 4096 == 0);

    log.clear();
    QVERIFY(zip.readTextFile("bad.bin").isEmpty());
    QCOMPARE(log.count(QtCriticalMsg, category, "Size: 60000"), 1);
}

void tst_ZipReader::wrongChecksumIsOnlyAWarning()
{
    ZipReader zip;
    zip.setPath(archive("wrong_crc"));
    QSignalSpy errors(&zip, &ZipReader::error);
    LogCapture log;
    QVERIFY(zip.extractFile("crc.txt", m_dir->filePath("crc.txt")));
    QCOMPARE(ArchiveMaker::read(m_dir->filePath("crc.txt")), QByteArray("content"));
    QCOMPARE(errors.count(), 0);
    QCOMPARE(log.count(QtWarningMsg, category, "unzCloseCurrentFile"), 1);
    QCOMPARE(zip.readTextFile("crc.txt"), QString("content"));
}

void tst_ZipReader::hugeClaimedSizeAllocatesLittle()
{
    ZipReader zip;
    zip.setPath(archive("huge_claim"));
    LogCapture log;
    QCOMPARE(zip.readTextFile("huge.txt"), QString("small"));
    const std::unique_ptr<ZipFileInfo> info(zip.fileInfo("huge.txt"));
    QCOMPARE(info->size(), 4294967280LL);
}

void tst_ZipReader::twoFalseSizesAllocateLittle()
{
    ZipReader zip;
    zip.setPath(archive("both_sizes_false"));
    LogCapture log;
    const qint64 before = peakAddressSpace();
    QVERIFY(before > 0);
    QCOMPARE(zip.readTextFile("t.txt"), QString("small"));
    QVERIFY(peakAddressSpace() - before < 256 * 1024); // it says 1 GiB
}

void tst_ZipReader::longNamesAreCutNotOverrun()
{
    ZipReader zip;
    zip.setPath(archive("long_names"));
    LogCapture log;
    const QStringList names = zip.fileNames();
    QCOMPARE(names.size(), 4);
    QCOMPARE(names.at(0), QString(1023, 'n'));
    QCOMPARE(names.at(1), QString(1024, 'm'));
    QCOMPARE(names.at(2), QString(1024, 'k'));
    QCOMPARE(names.at(3), QString("after.txt"));
    QVERIFY(!zip.exists(names.at(0))); // names of 256 bytes and more can't be looked up

    QVERIFY(zip.extractAll(output()));
    QCOMPARE(ArchiveMaker::tree(output()), QStringList("after.txt=after"));
}

void tst_ZipReader::longPathsAreRefused()
{
    ZipReader zip;
    zip.setPath(archive("long_paths"));
    LogCapture log;
    QVERIFY(zip.extractAll(output()));
    QCOMPARE(log.count(QtCriticalMsg, category, "name of 1,024 bytes or more"), 2);
    QCOMPARE(ArchiveMaker::tree(output()), QStringList("after.txt=after"));
}

void tst_ZipReader::nameEndsAtNul()
{
    ZipReader zip;
    zip.setPath(archive("nul_name"));
    QCOMPARE(zip.fileNames(), QStringList("good"));
}

void tst_ZipReader::truncatedDirectoryGivesWhatIsThere()
{
    ZipReader zip;
    zip.setPath(archive("truncated"));
    LogCapture log;
    QCOMPARE(zip.fileNames(), QStringList("a.txt"));
    QCOMPARE(log.count(QtCriticalMsg, category, "Error %d with zipfile in unzGoToNextFile"), 1);
    QVERIFY(zip.extractAll(output()));
    QCOMPARE(ArchiveMaker::tree(output()), QStringList("a.txt=data"));
}

void tst_ZipReader::entriesThatLeaveTheFolderAreRefused()
{
    ZipReader zip;
    zip.setPath(archive("leaving"));
    LogCapture log;
    QVERIFY(zip.extractAll(output()));
    QCOMPARE(ArchiveMaker::tree(output()), QStringList({"kept.txt=kept", "ok.txt=ok"}));
    QCOMPARE(log.count(QtCriticalMsg, category, "Entry refused:"), 7);
    QCOMPARE(ArchiveMaker::tree(m_dir->path()).filter("up").size(), 0);
    QVERIFY(!QFileInfo::exists("/abs.txt"));
}

void tst_ZipReader::symbolicLinkBelowTheFolderIsRefused()
{
    const QString outside = m_dir->filePath("outside");
    QVERIFY(QDir().mkpath(outside));
    QVERIFY(QFile::link(outside, output() + "/link"));
    QVERIFY(QFile::link(outside + "/target", output() + "/plain.txt"));
    ZipReader zip;
    zip.setPath(archive("link_planted"));
    LogCapture log;

    QVERIFY(zip.extractAll(output()));

    QCOMPARE(log.count(QtCriticalMsg, category, "symbolic link"), 2);
    QVERIFY(QDir(outside).isEmpty());
}

void tst_ZipReader::linkInPlaceOfAFileIsToldByError()
{
    const QString target = m_dir->filePath("target.txt");
    QVERIFY(ArchiveMaker::write(target, "kept"));
    QVERIFY(QDir().mkpath(output() + "/a"));
    QVERIFY(QFile::link(target, output() + "/a/b.txt"));
    ZipReader zip;
    zip.setPath(archive("nested"));
    QStringList failed;
    QVector<ZipReader::Result> results;
    connect(&zip, &ZipReader::error, this,
            [&](const QString &name, const QString &, ZipReader::Result result) {
                failed.append(name);
                results.append(result);
            });
    LogCapture log;

    QVERIFY(zip.extractAll(output()));

    QCOMPARE(failed, QStringList("a/b.txt"));
    QCOMPARE(results, QVector<ZipReader::Result>{ZipReader::ParameterError});
    QCOMPARE(log.count(QtCriticalMsg, category, "symbolic link"), 1);
    QCOMPARE(ArchiveMaker::read(target), QByteArray("kept"));
}

void tst_ZipReader::extractFileWritesThroughALink()
{
    const QString target = m_dir->filePath("target.txt");
    QVERIFY(QFile::link(target, m_dir->filePath("link.txt")));
    ZipReader zip;
    zip.setPath(archive("nested"));

    for (const char *before : {"", "older and longer"}) {
        if (*before) // the first time the link leads nowhere
            QVERIFY(ArchiveMaker::write(target, before));
        QVERIFY(zip.extractFile("a/b.txt", m_dir->filePath("link.txt")));
        QCOMPARE(ArchiveMaker::read(target), QByteArray("b"));
    }
}

void tst_ZipReader::outputFolderItselfMayBeALink()
{
    const QString link = m_dir->filePath("linked");
    QVERIFY(QFile::link(output(), link));
    ZipReader zip;
    zip.setPath(archive("nested"));
    QVERIFY(zip.extractAll(link));
    QCOMPARE(ArchiveMaker::tree(output()), QStringList("a/b.txt=b"));
}

void tst_ZipReader::overlappingEntriesAreRefused_data()
{
    QTest::addColumn<QString>("kind");
    for (const QString &kind : ArchiveMaker::overlappingKinds())
        QTest::newRow(qPrintable(kind)) << kind;
}

void tst_ZipReader::overlappingEntriesAreRefused()
{
    QFETCH(QString, kind);
    ZipReader zip;
    zip.setPath(archive(kind));
    QSignalSpy completed(&zip, &ZipReader::completed);
    const QStringList names = zip.fileNames(); // listing is not affected
    QVERIFY(names.size() >= 2);
    zip.refresh(); // behind a wrong count the cursor is lost
    QVERIFY(zip.exists(names.at(1)));
    LogCapture log;

    QVERIFY(zip.extractAll(output()));

    QCOMPARE(log.count(QtCriticalMsg, category, "Overlapping entries:"), 1);
    QCOMPARE(completed.count(), 1);
    QVERIFY(ArchiveMaker::tree(output()).isEmpty());
}

void tst_ZipReader::prefixedArchiveIsNoOverlap()
{
    ZipReader zip;
    zip.setPath(archive("prefixed"));
    QVERIFY(zip.extractAll(output()));
    QCOMPARE(ArchiveMaker::tree(output()), QStringList({"a.txt=data", "b.txt=data"}));
}

void tst_ZipReader::plainArchivesAreRecognised_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<bool>("plain");
    QTest::newRow("good") << "simple" << true;
    QTest::newRow("something in front") << "prefixed" << true;
    QTest::newRow("fewer entries than counted") << "truncated" << false;
    QTest::newRow("no entries") << "no_entries" << false;
    QTest::newRow("no directory") << "cut" << false;
    QTest::newRow("ZIP64") << "many" << false;
    QTest::newRow("sizes in ZIP64 fields") << "zip64_sizes" << false;
    for (const QString &kind : ArchiveMaker::overlappingKinds())
        QTest::newRow(qPrintable(kind)) << kind << false;
}

void tst_ZipReader::plainArchivesAreRecognised()
{
    QFETCH(QString, kind);
    QFile file(archive(kind));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QTEST(CentralDirectory::isPlainAndDisjoint(file), "plain");
}

void tst_ZipReader::overlapIsLookedForInTheOpenFile()
{
    ZipReader zip;
    zip.setPath(archive("overlapping_extra_fields"));
    QVERIFY(zip.exists("f000"));
    // Replaced on disk; the reader still has the old one.
    QVERIFY(QFile::remove(zip.path()));
    QVERIFY(QFile::rename(archive("simple"), zip.path()));
    LogCapture log;
    QVERIFY(zip.extractAll(output()));
    QCOMPARE(log.count(QtCriticalMsg, category, "Overlapping entries:"), 1);
    QVERIFY(ArchiveMaker::tree(output()).isEmpty());

    zip.refresh();
    QVERIFY(zip.extractAll(output()));
    QCOMPARE(ArchiveMaker::tree(output()).size(), 5);
}

void tst_ZipReader::entriesThatCannotBeReadAreRefused_data()
{
    ArchiveMaker::addUnreadableRows();
}

void tst_ZipReader::entriesThatCannotBeReadAreRefused()
{
    QFETCH(QString, kind);
    ZipReader zip;
    zip.setPath(archive(kind));
    const QString first = zip.fileNames().at(0);
    QSignalSpy errors(&zip, &ZipReader::error);
    LogCapture log;

    QVERIFY(zip.extractAll(output()));
    QTEST(log.count(QtCriticalMsg, category, "Entry refused:"), "refused");
    QTEST(errors.count(), "refused");
    QTEST(ArchiveMaker::tree(output()), "files");

    QVERIFY(!zip.extractFile(first, m_dir->filePath("file")));
    QVERIFY(!QFileInfo::exists(m_dir->filePath("file")));
    log.clear();
    QVERIFY(zip.readTextFile(first).isEmpty());
    QCOMPARE(log.count(QtCriticalMsg, category, "Entry refused:"), 1);
}

void tst_ZipReader::encryptedEntriesAreRefused()
{
    const QString in = m_dir->filePath("in");
    QVERIFY(QDir().mkpath(in));
    QVERIFY(ArchiveMaker::write(in + "/secret.txt", "secret"));
    QVERIFY(ArchiveMaker::write(in + "/plain.txt", "plain"));
    QVERIFY(!ArchiveMaker::run("zip", {"-q", "-e", "-P", "key", "../e.zip", "secret.txt"}, in)
                 .isNull());
    QVERIFY(!ArchiveMaker::run("zip", {"-q", "../e.zip", "plain.txt"}, in).isNull());
    ZipReader zip;
    zip.setPath(m_dir->filePath("e.zip"));
    QSignalSpy errors(&zip, &ZipReader::error);
    LogCapture log;

    QVERIFY(zip.extractAll(output()));

    QCOMPARE(log.count(QtCriticalMsg, category, "Entry refused: encrypted"), 1);
    QCOMPARE(errors.count(), 1);
    QCOMPARE(errors.at(0).at(0).toString(), QString("secret.txt"));
    QCOMPARE(ArchiveMaker::tree(output()), QStringList("plain.txt=plain"));
    QVERIFY(zip.readTextFile("secret.txt").isEmpty());
}

void tst_ZipReader::localZip64FieldsAreRead()
{
    ZipReader zip;
    zip.setPath(archive("forced_zip64"));
    QCOMPARE(zip.readTextFile("z.txt"), QString("hello zip64"));
    QVERIFY(zip.extractAll(output()));
    QCOMPARE(ArchiveMaker::tree(output()), QStringList("z.txt=hello zip64"));
}

void tst_ZipReader::offsetsInZip64FieldsAreNotFollowed()
{
    ZipReader zip;
    zip.setPath(archive("overlapping_zip64"));
    LogCapture log;
    QVERIFY(zip.extractAll(output()));
    QCOMPARE(log.count(QtCriticalMsg, category, "unzOpenCurrentFile"), 2);
    QVERIFY(ArchiveMaker::tree(output()).isEmpty());
}

void tst_ZipReader::archiveIsNotOverwrittenByItsEntries()
{
    ZipReader zip;
    zip.setPath(archive("own_name"));
    const QByteArray before = ArchiveMaker::read(zip.path());
    QCOMPARE(::link(qPrintable(zip.path()), qPrintable(m_dir->filePath("link.zip"))), 0);
    QSignalSpy errors(&zip, &ZipReader::error);
    LogCapture log;

    QVERIFY(zip.extractAll(m_dir->path()));

    QCOMPARE(log.count(QtCriticalMsg, category, "output is the archive itself"), 2);
    QCOMPARE(errors.count(), 2);
    QCOMPARE(ArchiveMaker::read(zip.path()), before);
    QCOMPARE(ArchiveMaker::read(m_dir->filePath("ok.txt")), QByteArray("ok"));
    QVERIFY(!zip.extractFile("ok.txt", zip.path()));
    QCOMPARE(ArchiveMaker::read(zip.path()), before);
}

void tst_ZipReader::handlersMayListAndLookUp_data()
{
    QTest::addColumn<std::function<void(ZipReader &)>>("handler");
    const auto row = [](const char *name, const std::function<void(ZipReader &)> &handler) {
        QTest::newRow(name) << handler;
    };
    row("lists", [](ZipReader &zip) { QCOMPARE(zip.fileNames().size(), 10); });
    row("finds the first", [](ZipReader &zip) { QVERIFY(zip.exists("f0.txt")); });
    row("finds nothing", [](ZipReader &zip) { QVERIFY(!zip.exists("x")); });
    row("asks", [](ZipReader &zip) {
        const std::unique_ptr<ZipFileInfo> info(zip.fileInfo("f9.txt"));
        QCOMPARE(info->size(), 9LL);
    });
}

void tst_ZipReader::handlersMayListAndLookUp()
{
    QFETCH(std::function<void(ZipReader &)>, handler);
    ZipReader zip;
    zip.setPath(archive("ten"));
    int calls = 0;
    connect(&zip, &ZipReader::progress, this, [&] {
        if (++calls <= 100) // or it would never end
            handler(zip);
    });
    QSignalSpy errors(&zip, &ZipReader::error);
    QSignalSpy completed(&zip, &ZipReader::completed);

    QVERIFY(zip.extractAll(output()));

    QCOMPARE(calls, 30);
    QCOMPARE(errors.count(), 0);
    QCOMPARE(completed.count(), 1);
    const QStringList tree = ArchiveMaker::tree(output());
    QCOMPARE(tree.size(), 10);
    QCOMPARE(tree.last(), QString("f9.txt=content 9"));
}

void tst_ZipReader::readingInAHandlerEndsTheEntryOnly()
{
    ZipReader zip;
    zip.setPath(archive("ten"));
    connect(&zip, &ZipReader::progress, this, [&](const QString &name) {
        if (name == "f3.txt")
            QCOMPARE(zip.readTextFile("f7.txt"), QString("content 7"));
    });
    QSignalSpy errors(&zip, &ZipReader::error);

    QVERIFY(zip.extractAll(output()));

    QCOMPARE(errors.count(), 1);
    QCOMPARE(errors.at(0).at(0).toString(), QString("f3.txt"));
    QCOMPARE(ArchiveMaker::tree(output()).size(), 10);
}

void tst_ZipReader::anotherPathInAHandlerEndsTheExtraction()
{
    ZipReader zip;
    zip.setPath(archive("ten"));
    const QString other = archive("nested");
    connect(&zip, &ZipReader::progress, this, [&] {
        zip.setPath(other);
        QVERIFY(zip.exists("a/b.txt"));
    });
    QSignalSpy completed(&zip, &ZipReader::completed);
    LogCapture log;

    QVERIFY(zip.extractAll(output()));

    QCOMPARE(log.count(QtCriticalMsg, category, "Archive closed during extraction:"), 1);
    QCOMPARE(completed.count(), 1);
    QCOMPARE(ArchiveMaker::tree(output()), QStringList("f0.txt=content 0"));
}

void tst_ZipReader::plantedLinkIsWrittenAsText()
{
    ZipReader zip;
    zip.setPath(archive("link_inside"));
    QVERIFY(QDir().mkpath(m_dir->filePath("outside")));
    LogCapture log;
    QVERIFY(zip.extractAll(output()));
    QCOMPARE(ArchiveMaker::tree(output()), QStringList({"link=../outside", "ok.txt=ok"}));
    QVERIFY(!QFileInfo(output() + "/link").isSymLink());
    QCOMPARE(log.count(QtCriticalMsg, category, "Unable to create path:"), 1);
    QVERIFY(QDir(m_dir->filePath("outside")).isEmpty());
}

void tst_ZipReader::cutArchiveCannotBeOpened()
{
    ZipReader zip;
    zip.setPath(archive("cut"));
    QSignalSpy completed(&zip, &ZipReader::completed);
    LogCapture log;
    QVERIFY(!zip.extractAll(output()));
    QCOMPARE(log.count(QtWarningMsg, category, "Unable to open:"), 1);
    QCOMPARE(completed.count(), 0);
    QVERIFY(ArchiveMaker::tree(output()).isEmpty());
}

void tst_ZipReader::manyEntriesComeOut()
{
    ZipReader zip;
    zip.setPath(archive("twenty_thousand"));
    QVERIFY(zip.extractAll(output()));
    QCOMPARE(QDir(output()).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size(), 100);
    for (const char *folder : {"/d000", "/d099"})
        QCOMPARE(QDir(output() + folder).entryList(QDir::Files).size(), 200);
    QCOMPARE(ArchiveMaker::read(output() + "/d099/f019999.txt"), QByteArray("x"));
}

void tst_ZipReader::oneFolderComesOutOfHundredThousandEntries()
{
    // All of them would take a busy disk longer than the rest of the tests.
    ZipReader zip;
    zip.setPath(archive("hundred_thousand"));
    QVERIFY(zip.extractAll(output(), "d099"));
    QCOMPARE(QDir(output()).entryList(QDir::Files).size(), 1000);
    QCOMPARE(ArchiveMaker::read(output() + "/f099999.txt"), QByteArray("x"));
}

void tst_ZipReader::manyEntries()
{
    ZipReader zip;
    zip.setPath(archive("many")); // past the 65,535 of the plain directory
    QCOMPARE(zip.fileNames().size(), 70000);
    QCOMPARE(zip.folderNames().size(), 100);
}

void tst_ZipReader::fullDiskIsAFailure()
{
    ZipReader zip;
    zip.setPath(archive("big"));
    LogCapture log;
    QVERIFY(!zip.extractFile("big.bin", "/dev/full"));
    QCOMPARE(log.count(QtCriticalMsg, category, "Error writing:"), 1);
}

void tst_ZipReader::readsArchivesOfOtherTools_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("Info-ZIP") << "zip" << QStringList({"-qr", "../made.zip", "."});
    QTest::newRow("bsdtar") << "bsdtar"
                            << QStringList({"--format=zip", "-cf", "../made.zip", "a.txt", "sub"});
    QTest::newRow("Python") << ArchiveMaker::python()
                            << QStringList({"-m", "zipfile", "-c", "../made.zip", "a.txt", "sub"});
}

void tst_ZipReader::readsArchivesOfOtherTools()
{
    QFETCH(QString, program);
    QFETCH(QStringList, arguments);
    const QString in = m_dir->filePath("in");
    QVERIFY(QDir().mkpath(in + "/sub"));
    QVERIFY(ArchiveMaker::write(in + "/a.txt", QByteArray(100000, 'a')));
    QVERIFY(ArchiveMaker::write(in + "/sub/ü.txt", "u"));
    QVERIFY(!ArchiveMaker::run(program, arguments, in).isNull());

    ZipReader zip;
    zip.setPath(m_dir->filePath("made.zip"));
    QStringList names = zip.fileNames();
    names.sort();
    QCOMPARE(names, QStringList({"a.txt", "sub/ü.txt"}));
    QCOMPARE(zip.readTextFile("sub/ü.txt"), QString("u"));
    QVERIFY(zip.extractFile("a.txt", m_dir->filePath("a.out")));
    QCOMPARE(ArchiveMaker::read(m_dir->filePath("a.out")), QByteArray(100000, 'a'));
}

TESSALINE_TEST_MAIN(tst_ZipReader)
#include "tst_ZipReader.moc"
