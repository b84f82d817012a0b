#include "archives/ArchiveMaker.h"
#include "archives/UnZipFile.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"

#include <QTest>

class tst_UnZipFile : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_dir = std::make_unique<QTemporaryDir>(); }

    void walksTheEntries();
    void closedReaderDoesNothing();
    void extractsOneFile();
    void extractAllMakesFoldersFromFolderEntries();
    void extractAllRefusesEntriesThatLeaveTheFolder();
    void extractAllRefusesStepsBackThroughALink();
    void extractAllRefusesOverlappingEntries_data();
    void extractAllRefusesOverlappingEntries();
    void extractAllRefusesEntriesThatCannotBeRead_data();
    void extractAllRefusesEntriesThatCannotBeRead();
    void extractAllRefusesLongPaths();
    void archiveIsNotOverwrittenByItsEntries();
    void plantedLinkIsWrittenAsText();
    void cutArchiveCannotBeOpened();
    void damagedEntryIsLoggedInTheDefaultCategory();
    void datesAreCorrectedByADay();

private:
    QString archive(const QString &kind) { return ArchiveMaker::archive(kind, m_dir->path()); }
    QDir output() { return QDir(ArchiveMaker::outputFolder(m_dir->path())); }

    std::unique_ptr<QTemporaryDir> m_dir;
};

void tst_UnZipFile::walksTheEntries()
{
    UnZipFile zip;
    QVERIFY(zip.open(archive("folders")));
    QCOMPARE(zip.entryList(), QStringList({"dir/", "dir/in.txt", "other/"}));
    QVERIFY(zip.locateFile("dir/in.txt", 1));
    QCOMPARE(zip.currentFileName(), QString("dir/in.txt"));
    QVERIFY(!zip.locateFile("DIR/in.txt", 1));
    QVERIFY(zip.locateFile("DIR/in.txt", 2));
    QVERIFY(zip.gotoFirstFile() && zip.gotoNextFile() && zip.gotoNextFile());
    QVERIFY(!zip.gotoNextFile());
}

void tst_UnZipFile::closedReaderDoesNothing()
{
    UnZipFile zip;
    QVERIFY(!zip.open(m_dir->filePath("missing.zip")));
    QVERIFY(zip.entryList().isEmpty());
    QVERIFY(!zip.extractCurrentFile(m_dir->filePath("x")));
    QVERIFY(!zip.currentFileDateTime().isValid());
}

void tst_UnZipFile::extractsOneFile()
{
    UnZipFile zip;
    QVERIFY(zip.open(archive("simple")));
    QVERIFY(zip.extractFile("a/x.txt", 1, m_dir->filePath("x.txt")));
    QCOMPARE(ArchiveMaker::read(m_dir->filePath("x.txt")), QByteArray("x"));
    QVERIFY(!zip.extractFile("nothing", 1, m_dir->filePath("y.txt")));
}

void tst_UnZipFile::extractAllMakesFoldersFromFolderEntries()
{
    UnZipFile zip;
    QVERIFY(zip.open(archive("folders")));
    QDir out = output();
    LogCapture log;
    QVERIFY(zip.extractAll(out));
    QCOMPARE(ArchiveMaker::tree(out.path()), QStringList({"dir/in.txt=in", "other/"}));
    // The entries of the folders themselves fail to open, which does no harm.
    QCOMPARE(log.count(QtCriticalMsg, "default", "UnZipFile::extractCurrentFile:Error opening:"),
             2);
}

void tst_UnZipFile::extractAllRefusesEntriesThatLeaveTheFolder()
{
    UnZipFile zip;
    QVERIFY(zip.open(archive("leaving")));
    QDir out = output();
    LogCapture log;
    QVERIFY(zip.extractAll(out));
    QCOMPARE(ArchiveMaker::tree(out.path()), QStringList({"kept.txt=kept", "ok.txt=ok", "sub/"}));
    QCOMPARE(log.count(QtCriticalMsg, "default", "Entry refused:"), 7);
}

void tst_UnZipFile::extractAllRefusesStepsBackThroughALink()
{
    const QString outside = m_dir->filePath("elsewhere/target");
    QVERIFY(QDir().mkpath(outside));
    QDir out = output();
    QVERIFY(out.mkpath("sub"));
    QVERIFY(QFile::link(outside, out.filePath("link")));
    UnZipFile zip;
    QVERIFY(zip.open(archive("link_climbing")));
    LogCapture log;

    QVERIFY(zip.extractAll(out));

    QCOMPARE(log.count(QtCriticalMsg, "default", "symbolic link"), 1);
    QVERIFY(!QFileInfo::exists(m_dir->filePath("elsewhere/above.txt")));
    QCOMPARE(ArchiveMaker::read(out.filePath("beside.txt")), QByteArray("beside"));
}

void tst_UnZipFile::extractAllRefusesOverlappingEntries_data()
{
    QTest::addColumn<QString>("kind");
    for (const QString &kind : ArchiveMaker::overlappingKinds())
        QTest::newRow(qPrintable(kind)) << kind;
}

void tst_UnZipFile::extractAllRefusesOverlappingEntries()
{
    QFETCH(QString, kind);
    UnZipFile zip;
    QVERIFY(zip.open(archive(kind)));
    QDir out = output();
    LogCapture log;
    QVERIFY(!zip.extractAll(out));
    QCOMPARE(log.count(QtCriticalMsg, "default", "Overlapping entries:"), 1);
    QVERIFY(ArchiveMaker::tree(out.path()).isEmpty());
}

void tst_UnZipFile::extractAllRefusesEntriesThatCannotBeRead_data()
{
    ArchiveMaker::addUnreadableRows();
}

void tst_UnZipFile::extractAllRefusesEntriesThatCannotBeRead()
{
    QFETCH(QString, kind);
    UnZipFile zip;
    QVERIFY(zip.open(archive(kind)));
    const QString first = zip.entryList().at(0);
    QDir out = output();
    LogCapture log;

    QVERIFY(zip.extractAll(out));

    QTEST(log.count(QtCriticalMsg, "default", "Entry refused:"), "refused");
    QTEST(ArchiveMaker::tree(out.path()), "files");
    QVERIFY(!zip.extractFile(first, 1, m_dir->filePath("file")));
    QVERIFY(!QFileInfo::exists(m_dir->filePath("file")));
}

void tst_UnZipFile::extractAllRefusesLongPaths()
{
    UnZipFile zip;
    QVERIFY(zip.open(archive("long_paths")));
    QDir out = output();
    LogCapture log;
    QVERIFY(zip.extractAll(out));
    QCOMPARE(log.count(QtCriticalMsg, "default", "name of 1,024 bytes or more"), 2);
    QCOMPARE(ArchiveMaker::tree(out.path()), QStringList("after.txt=after"));
}

void tst_UnZipFile::archiveIsNotOverwrittenByItsEntries()
{
    UnZipFile zip;
    const QString path = archive("own_name");
    const QByteArray before = ArchiveMaker::read(path);
    QVERIFY(zip.open(path));
    QDir dir(m_dir->path());
    LogCapture log;
    QVERIFY(zip.extractAll(dir));
    QCOMPARE(log.count(QtCriticalMsg, "default", "output is the archive itself"), 1);
    QCOMPARE(ArchiveMaker::read(path), before);
    QCOMPARE(ArchiveMaker::read(dir.filePath("ok.txt")), QByteArray("ok"));
}

void tst_UnZipFile::plantedLinkIsWrittenAsText()
{
    UnZipFile zip;
    QVERIFY(zip.open(archive("link_inside")));
    QVERIFY(QDir().mkpath(m_dir->filePath("outside")));
    QDir out = output();
    LogCapture log;
    QVERIFY(zip.extractAll(out));
    QCOMPARE(ArchiveMaker::tree(out.path()), QStringList({"link=../outside", "ok.txt=ok"}));
    QVERIFY(!QFileInfo(out.filePath("link")).isSymLink());
    QCOMPARE(log.count(QtCriticalMsg, "default", "Error opening:"), 1);
    QVERIFY(QDir(m_dir->filePath("outside")).isEmpty());
}

void tst_UnZipFile::cutArchiveCannotBeOpened()
{
    UnZipFile zip;
    QVERIFY(!zip.open(archive("cut")));
    QVERIFY(zip.entryList().isEmpty());
}

void tst_UnZipFile::damagedEntryIsLoggedInTheDefaultCategory()
{
    UnZipFile zip;
    QVERIFY(zip.open(archive("damaged")));
    QDir out = output();
    LogCapture log;
    QVERIFY(zip.extractAll(out));
    QCOMPARE(
        log.count(QtCriticalMsg, "default", "UnZipFile::extractCurrentFile - unzReadCurrentFile"),
        1);
    QCOMPARE(log.count(QtCriticalMsg, "default", "UnZipFile::extractCurrentFile:Extracting:"), 1);
    QCOMPARE(ArchiveMaker::read(out.filePath("good.txt")), QByteArray("good"));
}

void tst_UnZipFile::datesAreCorrectedByADay()
{
    UnZipFile zip;
    QVERIFY(zip.open(archive("days")));
    QVERIFY(zip.gotoFirstFile());
    QCOMPARE(zip.currentFileDateTime(), QDateTime(QDate(2024, 5, 18), QTime(10, 20, 30)));
}

TESSALINE_TEST_MAIN(tst_UnZipFile)
#include "tst_UnZipFile.moc"
