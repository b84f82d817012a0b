#include "archives/ArchiveMaker.h"
#include "archives/ZipFileInfo.h"
#include "archives/ZipReader.h"
#include "archives/ZipWriter.h"
#include "plugin/FileUtility.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"

#include <QSignalSpy>
#include <QTest>

#include <csignal>
#include <sys/resource.h>

namespace {

const char category[] = "Zemrik.Tessaline.File";

// Prints "name|comment|year-month-day h:m:s|content" for each entry, and the archive's own comment.
const char listing[] =
    "import sys, zipfile\n"
    "z = zipfile.ZipFile(sys.argv[1])\n"
    "for i in z.infolist():\n"
    "    d = i.date_time\n"
    "    print('%s|%s|%d-%d-%d %d:%d:%d|%s' % ((i.filename, i.comment.decode()) + d "
    "+ (z.read(i).decode(),)))\n"
    "print('comment=' + z.comment.decode())\n";

} // namespace

class tst_ZipWriter : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void pathIsResolvedAndSignalled();
    void bareNameWithoutArchivedPath();
    void dateIsStoredOneDayEarly();
    void firstOfAMonthIsDayZero();
    void ownReaderRestoresTheDate();
    void archivedPathIsCleaned();
    void sameNameTwiceStoresTwoEntries();
    void appendFalseReplaces();
    void appendIsTheDefault();
    void commentGoesToTheEntry();
    void missingFileIsCritical();
    void unopenableSourceIsCritical();
    void unopenableArchiveIsFalse();
    void nameWithANulIsNotCut();
    void pathChangedAfterEachAdditionOnly();
    void addFilesGoesOnAfterAFailure();
    void addFilesMatchesOneCallEach();
    void otherToolsReadTheResult_data();
    void otherToolsReadTheResult();
    void fullDiskIsAFailure();
    void fullDiskAtTheDirectoryIsAFailure();
    void archiveIsNotAddedToItself();

private:
    QString file(const QString &name, const QByteArray &bytes,
                 const QDateTime &time = QDateTime(QDate(2024, 5, 17), QTime(10, 20, 30)))
    {
        const QString path = m_dir->filePath(name);
        QDir().mkpath(QFileInfo(path).path());
        ArchiveMaker::write(path, bytes);
        FileUtility::setDateTime(path, time, time);
        return path;
    }
    QStringList listed()
    {
        const QByteArray out = ArchiveMaker::run(ArchiveMaker::python(), {"-c", listing, m_zip});
        return QString::fromUtf8(out).split('\n', Qt::SkipEmptyParts);
    }

    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_zip;
};

void tst_ZipWriter::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    m_zip = m_dir->filePath("made.zip");
}

void tst_ZipWriter::pathIsResolvedAndSignalled()
{
    FileUtility::setPathVariable("ZIPS", m_dir->path());
    ZipWriter zip;
    QSignalSpy spy(&zip, &ZipWriter::pathChanged);
    LogCapture log;
    zip.setPath("$ZIPS/made.zip");
    zip.setPath(m_zip);
    QCOMPARE(zip.path(), m_zip);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(log.count(QtDebugMsg, category, "ZipWriter::setPath"), 2);
}

void tst_ZipWriter::bareNameWithoutArchivedPath()
{
    ZipWriter zip;
    zip.setPath(m_zip);
    LogCapture log;
    QVERIFY(zip.addFile(file("deep/down/a.txt", "a")));
    QCOMPARE(listed().first().section('|', 0, 0), QString("a.txt"));
    QCOMPARE(log.count(QtDebugMsg, category, "Creating"), 1);
    QCOMPARE(log.count(QtDebugMsg, category, "Adding as:"), 1);
}

void tst_ZipWriter::dateIsStoredOneDayEarly()
{
    ZipWriter zip;
    zip.setPath(m_zip);
    QVERIFY(zip.addFile(file("a.txt", "a")));
    QCOMPARE(listed().first().section('|', 2, 2), QString("2024-5-16 10:20:30"));
}

void tst_ZipWriter::firstOfAMonthIsDayZero()
{
    ZipWriter zip;
    zip.setPath(m_zip);
    QVERIFY(zip.addFile(file("a.txt", "a", QDateTime(QDate(2024, 6, 1), QTime(8, 0, 0)))));
    QCOMPARE(listed().first().section('|', 2, 2), QString("2024-6-0 8:0:0"));
}

void tst_ZipWriter::ownReaderRestoresTheDate()
{
    for (const QDate day : {QDate(2024, 5, 17), QDate(2024, 6, 1), QDate(2024, 12, 31)}) {
        const QDateTime time(day, QTime(10, 20, 30));
        ZipWriter writer;
        writer.setPath(m_zip);
        QVERIFY(writer.addFile(file("a.txt", "a", time), "a.txt", QString(), false));
        ZipReader reader;
        reader.setPath(m_zip);
        const std::unique_ptr<ZipFileInfo> info(reader.fileInfo("a.txt"));
        QCOMPARE(info->lastModified(), time);
    }
}

void tst_ZipWriter::archivedPathIsCleaned()
{
    ZipWriter zip;
    zip.setPath(m_zip);
    const QString path = file("a.txt", "a");
    QVERIFY(zip.addFile(path, "x/../y//z.txt"));
    QVERIFY(zip.addFile(path, "../up.txt"));
    QCOMPARE(listed().at(0).section('|', 0, 0), QString("y/z.txt"));
    QCOMPARE(listed().at(1).section('|', 0, 0), QString("../up.txt"));
}

void tst_ZipWriter::sameNameTwiceStoresTwoEntries()
{
    ZipWriter zip;
    zip.setPath(m_zip);
    QVERIFY(zip.addFile(file("a.txt", "1"), "n.txt"));
    QVERIFY(zip.addFile(file("b.txt", "2"), "n.txt"));
    QCOMPARE(listed().size(), 3);
    QCOMPARE(listed().at(0).section('|', 3), QString("1"));
    QCOMPARE(listed().at(1).section('|', 3), QString("2"));
}

void tst_ZipWriter::appendFalseReplaces()
{
    ZipWriter zip;
    zip.setPath(m_zip);
    QVERIFY(zip.addFile(file("a.txt", "1")));
    QVERIFY(zip.addFile(file("b.txt", "2"), "only.txt", QString(), false));
    QCOMPARE(listed().size(), 2);
    QCOMPARE(listed().first().section('|', 0, 0), QString("only.txt"));
}

void tst_ZipWriter::appendIsTheDefault()
{
    ZipWriter zip;
    zip.setPath(m_zip);
    LogCapture log;
    QVERIFY(zip.addFile(file("a.txt", "1")));
    QVERIFY(zip.addFile(file("b.txt", "2"), "b"));
    QVERIFY(zip.addFile(file("c.txt", "3"), "c", "comment"));
    QCOMPARE(listed().size(), 4);
    QCOMPARE(log.count(QtDebugMsg, category, "Appending to"), 2);
}

void tst_ZipWriter::commentGoesToTheEntry()
{
    ZipWriter zip;
    zip.setPath(m_zip);
    QVERIFY(zip.addFile(file("a.txt", "1"), "a", "hello"));
    QCOMPARE(listed().first().section('|', 1, 1), QString("hello"));
    QCOMPARE(listed().last(), QString("comment="));
}

void tst_ZipWriter::missingFileIsCritical()
{
    ZipWriter zip;
    zip.setPath(m_zip);
    LogCapture log;
    QVERIFY(!zip.addFile(m_dir->filePath("missing")));
    QCOMPARE(log.count(QtCriticalMsg, category, "File not found:"), 1);
}

void tst_ZipWriter::unopenableSourceIsCritical()
{
    ZipWriter zip;
    zip.setPath(m_zip);
    LogCapture log;
    QVERIFY(!zip.addFile(m_dir->path())); // a folder
    QCOMPARE(log.count(QtCriticalMsg, category, "Error opening:"), 1);
}

void tst_ZipWriter::unopenableArchiveIsFalse()
{
    ZipWriter zip;
    zip.setPath(m_dir->filePath("no/such/folder.zip"));
    LogCapture log;
    QVERIFY(!zip.addFile(file("a.txt", "1")));
    QCOMPARE(log.count(QtDebugMsg, category, "ZIP not open"), 1);
    QVERIFY(!zip.zwOpen());
    QCOMPARE(log.count(QtWarningMsg, category, "Unable to open:"), 1);
}

void tst_ZipWriter::nameWithANulIsNotCut()
{
    const QString other = file("other", "kept");
    ZipWriter zip;
    zip.setPath(other + QChar(0) + ".zip");
    const LogCapture log;
    QVERIFY(!zip.addFile(file("a.txt", "1")));
    QVERIFY(!zip.zwOpen());
    QCOMPARE(FileUtility::readFile(other), QByteArray("kept"));
}

void tst_ZipWriter::pathChangedAfterEachAdditionOnly()
{
    ZipWriter zip;
    zip.setPath(m_zip);
    QSignalSpy spy(&zip, &ZipWriter::pathChanged);
    LogCapture log;
    zip.addFile(file("a.txt", "1"));
    zip.addFile(m_dir->filePath("missing"));
    zip.addFile(m_dir->filePath("a.txt"), "b");
    zip.close();
    QCOMPARE(spy.count(), 2);
}

void tst_ZipWriter::addFilesGoesOnAfterAFailure()
{
    file("in/a.txt", "1");
    file("in/sub/b.txt", "2");
    ZipWriter zip;
    zip.setPath(m_zip);
    LogCapture log;
    QVERIFY(zip.zwAddFiles(QDir(m_dir->filePath("in")), {"a.txt", "missing", "sub/b.txt"}));
    QCOMPARE(log.count(QtDebugMsg, category, "ZIP source dir:"), 1);
    QCOMPARE(log.count(QtCriticalMsg, category, "Error adding:"), 1);
    QCOMPARE(listed().size(), 3);
    QCOMPARE(listed().at(1).section('|', 0, 0), QString("sub/b.txt"));
}

void tst_ZipWriter::addFilesMatchesOneCallEach()
{
    file("in/a.txt", "1");
    file("in/b.txt", QByteArray(9000, 'b'));
    const QDir in(m_dir->filePath("in"));
    ZipWriter together;
    together.setPath(m_zip);
    QSignalSpy togetherSpy(&together, &ZipWriter::pathChanged);
    QVERIFY(together.zwAddFiles(in, {"a.txt", "b.txt"}));

    ZipWriter apart;
    apart.setPath(m_dir->filePath("apart.zip"));
    QSignalSpy apartSpy(&apart, &ZipWriter::pathChanged);
    QVERIFY(apart.zwAddFile(in, "a.txt", QString()));
    QVERIFY(apart.zwAddFile(in, "b.txt", QString()));

    QCOMPARE(togetherSpy.count(), apartSpy.count());
    QCOMPARE(ArchiveMaker::read(m_zip), ArchiveMaker::read(apart.path()));
    QVERIFY(!ArchiveMaker::read(m_zip).isEmpty());
}

void tst_ZipWriter::otherToolsReadTheResult_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("unzip") << "unzip" << QStringList({"-q", "made.zip", "-d", "out"});
    QTest::newRow("bsdtar") << "bsdtar" << QStringList({"-xf", "made.zip", "-C", "out"});
    QTest::newRow("Python") << ArchiveMaker::python()
                            << QStringList({"-m", "zipfile", "-e", "made.zip", "out"});
}

void tst_ZipWriter::otherToolsReadTheResult()
{
    QFETCH(QString, program);
    QFETCH(QStringList, arguments);
    ZipWriter zip;
    zip.setPath(m_zip);
    QVERIFY(zip.addFile(file("a.txt", "1"), "sub/a.txt"));
    QVERIFY(zip.addFile(file("b.txt", QByteArray(100000, 'b')), "b.txt"));
    QVERIFY(zip.addFile(file("empty.txt", ""), "empty.txt"));
    QDir().mkpath(m_dir->filePath("out"));

    QVERIFY(!ArchiveMaker::run(program, arguments, m_dir->path()).isNull());

    const QStringList tree = ArchiveMaker::tree(m_dir->filePath("out"));
    QCOMPARE(tree, QStringList({"b.txt=" + QString(100000, 'b'), "empty.txt=", "sub/a.txt=1"}));
}

void tst_ZipWriter::fullDiskIsAFailure()
{
    ZipWriter zip;
    zip.setPath("/dev/full");
    LogCapture log;
    QVERIFY(!zip.addFile(file("a.txt", QByteArray(100000, 'a')), "a.txt", QString(), false));
}

// The entry fits, and the directory behind it, without which nothing can be read, doesn't.
void tst_ZipWriter::fullDiskAtTheDirectoryIsAFailure()
{
    const QString source = file("a.txt", "a");
    ZipWriter zip;
    zip.setPath(m_zip);
    QSignalSpy spy(&zip, &ZipWriter::pathChanged);
    LogCapture log;

    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit former{};
    QCOMPARE(getrlimit(RLIMIT_FSIZE, &former), 0);
    const rlimit small{60, former.rlim_max};
    QCOMPARE(setrlimit(RLIMIT_FSIZE, &small), 0);
    const bool added = zip.addFile(source);
    setrlimit(RLIMIT_FSIZE, &former);
    std::signal(SIGXFSZ, handler);

    QVERIFY(!added);
    QCOMPARE(spy.count(), 0);
    QCOMPARE(log.count(QtCriticalMsg, category, "Error closing:"), 1);
    QVERIFY(zip.addFile(source, QString(), QString(), false));
}

void tst_ZipWriter::archiveIsNotAddedToItself()
{
    ZipWriter zip;
    zip.setPath(m_zip);
    QVERIFY(zip.addFile(file("a.txt", "a")));
    QVERIFY(QFile::link(m_zip, m_dir->filePath("link.zip")));
    LogCapture log;
    QVERIFY(!zip.addFile(m_zip));
    QVERIFY(!zip.addFile(m_dir->filePath("link.zip")));
    QVERIFY(!zip.addFile(m_dir->filePath("link.zip"), "x", QString(), false));
    QCOMPARE(log.count(QtCriticalMsg, category, "Archive added to itself:"), 3);
    QCOMPARE(listed().size(), 2); // the entry and the archive's comment
    QCOMPARE(listed().first().section('|', 0, 0), QString("a.txt"));
}

TESSALINE_TEST_MAIN(tst_ZipWriter)
#include "tst_ZipWriter.moc"
