#include "files/File.h"
#include "files/FileFolder.h"
#include "files/FileInfo.h"
#include "files/Settings.h"
#include "plugin/FileUtility.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"
#include "support/SmallDisk.h"
#include "support/UnprivilegedUser.h"

#include <QQmlEngine>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <sys/stat.h>
#include <unistd.h>

Q_DECLARE_METATYPE(std::function<bool(FileFolder &)>)

// What scripts can't reach, and what needs a disk of its own; the rest is in tst_FileFolder.qml.
class tst_FileFolder : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void constructorsResolvePathVariables();
    void constructorTakesADir();
    void anUnknownVariableIsNotTheWorkingFolder();

    void constantFolderRefusesToMove_data();
    void constantFolderRefusesToMove();
    void constantFolderChangesTheDisk();
    void readOnlyFolderRefusesToChangeTheDisk_data();
    void readOnlyFolderRefusesToChangeTheDisk();
    void readOnlyFolderMovesAndReads();
    void readOnlyFolderTakesAMissingFileForRemoved();
    void readOnlyFolderCopiesToOtherPlaces();

    void newObjectsBelongToTheScriptEngine();

    void copyFolderCopiesASingleFile();
    void copyFolderOfNothingSaysWhy();
    void copyFolderThatCannotMakeTheTargetSaysWhy();
    void copyFolderStopsAtTheFirstFailure();
    void copyFolderKeepsPermissionsOfFiles();
    void copiesFollowLinks();
    void copyOfABrokenLinkFails();
    void copyStopsAtALinkThatLeadsBack_data();
    void copyStopsAtALinkThatLeadsBack();
    void copyThroughALinkIntoItselfIsRefused();
    void copyOfAPipeFailsWithoutWaiting();
    void copyOfAnUnreadableFileIsRefused();
    void copyOfAnUnreadableFolderIsRefused();
    void copyToAFullDiskFails_data();
    void copyToAFullDiskFails();
    void writesToAFullDiskFail();

    void sizeDoesNotFollowOrCountLinks();
    void namesWalkThroughLinksThatEnd();
    void namesDoNotWalkThroughLinksThatLeadBack();
    void unreadableFilesReadAsEmpty();
    void failedRemovalsAnswerFalse();
    void removalOfALinkLeavesWhatItLeadsTo_data();
    void removalOfALinkLeavesWhatItLeadsTo();
    void recursiveRemovalTakesNothingButFoldersOfThisOne_data();
    void recursiveRemovalTakesNothingButFoldersOfThisOne();
    void removalTellsTheNewSize();
    void renamingOntoALinkIsRefused_data();
    void renamingOntoALinkIsRefused();
    void withoutAPathNothingHappens_data();
    void withoutAPathNothingHappens();
    void namesWithANulAreRefused_data();
    void namesWithANulAreRefused();
    void bytesThatAreTooManyToEncodeAreNotRead_data();
    void bytesThatAreTooManyToEncodeAreNotRead();

private:
    QString path(const QString &name) const { return m_dir->filePath(name); }
    void write(const QString &name, const QByteArray &content = QByteArrayLiteral("content"));
    QByteArray read(const QString &name) const;
    void link(const QString &target, const QString &name);

    std::unique_ptr<QTemporaryDir> m_dir;
};

namespace {

const char category[] = "Zemrik.Tessaline.File";

// All of a tree, one line per entry: "a/", "a/b.txt=content", "a/c -> target".
QStringList treeLines(const QString &top)
{
    QStringList lines;
    const QDir dir(top);
    QDirIterator it(top, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString name = dir.relativeFilePath(it.next());
        const QFileInfo info = it.fileInfo();
        if (info.isSymLink())
            lines.append(name + " -> " + info.symLinkTarget());
        else if (info.isDir())
            lines.append(name + '/');
        else
            lines.append(name + '=' + FileUtility::readFile(info.filePath()));
    }
    lines.sort();
    return lines;
}

// Lets the unprivileged user come as far as that folder.
void openToAll(const QString &path)
{
    const QFile::Permissions pass =
        QFile::ReadGroup | QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther;
    for (QString step = path; step.startsWith(QDir::tempPath() + '/');
         step = QFileInfo(step).path())
        QVERIFY(QFile::setPermissions(step, QFile::permissions(step) | pass));
}

// Folders that even their owner can't write to for a while.
class WriteProtection
{
public:
    explicit WriteProtection(const QStringList &folders)
        : m_folders(folders)
    {
        for (const QString &folder : m_folders)
            QVERIFY(QFile::setPermissions(folder, m_readable));
    }
    ~WriteProtection()
    {
        for (const QString &folder : m_folders)
            QFile::setPermissions(folder, m_readable | QFile::WriteOwner);
    }
    Q_DISABLE_COPY(WriteProtection)

private:
    const QStringList m_folders;
    const QFile::Permissions m_readable =
        QFile::ReadOwner | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther;
};

} // namespace

void tst_FileFolder::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
}

void tst_FileFolder::cleanup()
{
    m_dir.reset();
}

void tst_FileFolder::write(const QString &name, const QByteArray &content)
{
    QVERIFY(QDir().mkpath(QFileInfo(path(name)).path()));
    QVERIFY(FileUtility::writeFile(path(name), content));
}

QByteArray tst_FileFolder::read(const QString &name) const
{
    return FileUtility::readFile(path(name));
}

void tst_FileFolder::link(const QString &target, const QString &name)
{
    QVERIFY(QDir().mkpath(QFileInfo(path(name)).path()));
    QVERIFY(QFile::link(target, path(name)));
}

void tst_FileFolder::constructorsResolvePathVariables()
{
    FileUtility::setPathVariable("FOLDER_TEST", "/some/where");

    QCOMPARE(FileFolder().path(), QDir::tempPath());
    QCOMPARE(FileFolder(QString("$FOLDER_TEST/x")).path(), QString("/some/where/x"));
    QCOMPARE(FileFolder(QUrl("file:///a%20b")).path(), QString("/a b"));
    QCOMPARE(FileFolder(QUrl("qrc:/images")).path(), QString(":/images"));
}

void tst_FileFolder::constructorTakesADir()
{
    QObject parent;
    // A path that looks like a variable is none here.
    const FileFolder folder(QDir("/some/$HOME"), &parent);
    QCOMPARE(folder.path(), QString("/some/$HOME"));
    QCOMPARE(folder.parent(), &parent);
}

void tst_FileFolder::anUnknownVariableIsNotTheWorkingFolder()
{
    FileFolder folder(QString("$FOLDER_TEST_NONE"));
    QCOMPARE(folder.path(), QString());
    QVERIFY(!folder.exists());
    QVERIFY(!folder.removeFolder());
    QVERIFY(FileInfo().fileFolder()->path().isEmpty());
}

void tst_FileFolder::constantFolderRefusesToMove_data()
{
    QTest::addColumn<QString>("function");
    QTest::addColumn<std::function<bool(FileFolder &)>>("move");

    using Move = std::function<bool(FileFolder &)>;
    const auto row = [](const char *function, const Move &move) {
        QTest::newRow(function) << QString(function) << move;
    };
    row("void FileFolder::setPath(const QString&)", [](FileFolder &folder) {
        folder.setPath("/");
        return false;
    });
    QTest::newRow("setUrl") << QString("void FileFolder::setPath(const QString&)")
                            << Move([](FileFolder &folder) {
                                   folder.setUrl(QUrl("file:///"));
                                   return false;
                               });
    row("bool FileFolder::cdUp()", [](FileFolder &folder) { return folder.cdUp(); });
    row("bool FileFolder::cd(const QString&)", [](FileFolder &folder) { return folder.cd("."); });
}

void tst_FileFolder::constantFolderRefusesToMove()
{
    QFETCH(QString, function);
    QFETCH(std::function<bool(FileFolder &)>, move);
    FileFolder folder(m_dir->path());
    folder.setConstant(true);
    QSignalSpy spy(&folder, &FileFolder::pathChanged);

    LogCapture log;
    QCOMPARE(move(folder), false);

    QCOMPARE(folder.path(), m_dir->path());
    QCOMPARE(spy.count(), 0);
    const QString words = function + " This is a constant folder QDir( \"" + m_dir->path() + '"';
    QVERIFY2(log.count(QtWarningMsg, category, words) == 1, qPrintable(log.dump()));
}

void tst_FileFolder::constantFolderChangesTheDisk()
{
    FileFolder folder(path("new"));
    folder.setConstant(true);
    QVERIFY(folder.makeFolder());
    QVERIFY(folder.writeTextFile("a", "text"));
    QVERIFY(folder.removeFolder());
    QVERIFY(folder.isConstant() && !folder.isReadOnly());
}

void tst_FileFolder::readOnlyFolderRefusesToChangeTheDisk_data()
{
    QTest::addColumn<std::function<bool(FileFolder &)>>("change");
    const auto row = [](const char *function, const std::function<bool(FileFolder &)> &change) {
        QTest::newRow(function) << change;
    };
    row("bool FileFolder::makeFolder()", [](FileFolder &f) { return f.makeFolder(); });
    row("bool FileFolder::removeFolder()", [](FileFolder &f) { return f.removeFolder(); });
    row("bool FileFolder::removeFolder(const QString&, bool)",
        [](FileFolder &f) { return f.removeFolder("sub", true); });
    row("bool FileFolder::makePath(const QString&) const",
        [](FileFolder &f) { return f.makePath("x"); });
    row("bool FileFolder::removePath(const QString&) const",
        [](FileFolder &f) { return f.removePath("sub/empty"); });
    row("bool FileFolder::removeFile(const QString&)",
        [](FileFolder &f) { return f.removeFile("a"); });
    row("bool FileFolder::renameFile(const QString&, const QString&)",
        [](FileFolder &f) { return f.renameFile("a", "b"); });
    row("bool FileFolder::writeFile(const QString&, const QVariant&, const QVariantMap&)",
        [](FileFolder &f) { return f.writeFile("a", "new"); });
    row("bool FileFolder::writeJsonFile(const QString&, const QVariantMap&)",
        [](FileFolder &f) { return f.writeJsonFile("a", {}); });
    row("bool FileFolder::writeTextFile(const QString&, const QString&)",
        [](FileFolder &f) { return f.writeTextFile("a", "new"); });
}

void tst_FileFolder::readOnlyFolderRefusesToChangeTheDisk()
{
    QFETCH(std::function<bool(FileFolder &)>, change);
    write("a");
    QVERIFY(QDir(m_dir->path()).mkpath("sub/empty"));
    const QStringList before = treeLines(m_dir->path());
    FileFolder folder(m_dir->path());
    folder.setReadOnly(true);
    QSignalSpy spy(&folder, &FileFolder::existsChanged);

    LogCapture log;
    QCOMPARE(change(folder), false);

    QCOMPARE(treeLines(m_dir->path()), before);
    QCOMPARE(spy.count(), 0);
    const QString words = QString(QTest::currentDataTag()) + " This is a read only folder QDir( \""
                          + m_dir->path() + '"';
    QVERIFY2(log.count(QtWarningMsg, category, words) == 1, qPrintable(log.dump()));
}

void tst_FileFolder::readOnlyFolderMovesAndReads()
{
    write("sub/a", "text");
    FileFolder folder(m_dir->path());
    folder.setReadOnly(true);

    LogCapture log;
    QVERIFY(folder.cd("sub"));
    QCOMPARE(folder.readTextFile("a"), QString("text"));
    QCOMPARE(folder.readFile("a"), QVariant(QByteArray("text")));
    QCOMPARE(folder.fileNames(), QStringList("a"));
    QVERIFY(folder.cdUp());
    QCOMPARE(log.count(QtWarningMsg), 0);
}

void tst_FileFolder::readOnlyFolderTakesAMissingFileForRemoved()
{
    FileFolder folder(m_dir->path());
    folder.setReadOnly(true);
    LogCapture log;
    QCOMPARE(folder.removeFile("none"), true);
    QCOMPARE(log.count(QtWarningMsg), 0);
}

void tst_FileFolder::readOnlyFolderCopiesToOtherPlaces()
{
    write("sub/a", "text");
    FileFolder folder(path("sub"));
    folder.setReadOnly(true);
    QCOMPARE(folder.copyFile("a", path("b")), true);
    QCOMPARE(read("b"), QByteArray("text"));
}

void tst_FileFolder::newObjectsBelongToTheScriptEngine()
{
    const FileFolder folder(m_dir->path());
    const std::unique_ptr<QObject> file(folder.file("a"));
    const std::unique_ptr<QObject> info(folder.fileInfo("a"));
    const std::unique_ptr<QObject> sub(folder.folder("a"));
    for (QObject *object : {file.get(), info.get(), sub.get()}) {
        QVERIFY(!object->parent());
        QCOMPARE(QQmlEngine::objectOwnership(object), QQmlEngine::JavaScriptOwnership);
    }
}

void tst_FileFolder::copyFolderCopiesASingleFile()
{
    write("a", "text");
    FileFolder folder(m_dir->path());
    QVERIFY(folder.copyFolder(path("a"), path("b")));
    QCOMPARE(read("b"), QByteArray("text"));
}

void tst_FileFolder::copyFolderOfNothingSaysWhy()
{
    FileFolder folder(m_dir->path());
    LogCapture log;
    QVERIFY(!folder.copyFolder(path("none"), path("b")));
    const QString copyFile = "bool FileFolder::copyFile(const QString&, const QString&) ";
    const QString copyFolder = "bool FileFolder::copyFolder(const QString&, const QString&) ";
    QVERIFY2(
        log.count(QtCriticalMsg, category, copyFile + "File doesn't exist: \"" + path("none") + '"')
            == 1,
        qPrintable(log.dump()));
    QVERIFY2(
        log.count(QtCriticalMsg, category,
                  copyFolder + "copyFile failed: \"" + path("none") + "\" -> \"" + path("b") + '"')
            == 1,
        qPrintable(log.dump()));
}

void tst_FileFolder::copyFolderThatCannotMakeTheTargetSaysWhy()
{
    write("source/a");
    write("file");
    FileFolder folder(m_dir->path());
    LogCapture log;
    QVERIFY(!folder.copyFolder(path("source"), path("file/x")));
    QVERIFY2(log.count(QtCriticalMsg, category,
                       "bool FileFolder::copyFolder(const QString&, const QString&) mkpath failed: "
                       "\"x\" ( \""
                           + path("file") + "\" )")
                 == 1,
             qPrintable(log.dump()));
}

void tst_FileFolder::copyFolderStopsAtTheFirstFailure()
{
    for (int i = 0; i < 5; ++i)
        write("source/" + QString::number(i));
    for (int i = 0; i < 5; ++i)
        write("target/" + QString::number(i), "old");
    FileFolder folder(m_dir->path());
    LogCapture log;
    QVERIFY(!folder.copyFolder(path("source"), path("target")));
    QCOMPARE(log.count(QtCriticalMsg, category, "Target file already exists:"), 1);
    QCOMPARE(log.count(QtCriticalMsg, category, "copyFile failed:"), 1);
}

void tst_FileFolder::copyFolderKeepsPermissionsOfFiles()
{
    write("source/a");
    QVERIFY(QFile::setPermissions(path("source/a"), QFile::ReadOwner | QFile::WriteOwner
                                                        | QFile::ExeOwner | QFile::ReadGroup));
    QVERIFY(FileFolder().copyFolder(path("source"), path("target")));
    QCOMPARE(QFile::permissions(path("target/a")), QFile::permissions(path("source/a")));
}

void tst_FileFolder::copiesFollowLinks()
{
    write("elsewhere/deep/b", "two");
    write("one", "one");
    link(path("one"), "source/a");
    link(path("elsewhere"), "source/folder");

    QVERIFY(FileFolder().copyFolder(path("source"), path("target")));

    QCOMPARE(treeLines(path("target")),
             QStringList({"a=one", "folder/", "folder/deep/", "folder/deep/b=two"}));
}

void tst_FileFolder::copyOfABrokenLinkFails()
{
    link(path("none"), "source/a");
    LogCapture log;
    QVERIFY(!FileFolder().copyFolder(path("source"), path("target")));
    QCOMPARE(log.count(QtCriticalMsg, category, "File doesn't exist:"), 1);
}

void tst_FileFolder::copyStopsAtALinkThatLeadsBack_data()
{
    QTest::addColumn<QStringList>("folders");
    QTest::addColumn<QList<QStringList>>("links"); // target, link

    using Links = QList<QStringList>;
    QTest::newRow("to its own folder") << QStringList("source") << Links{{"source", "source/l"}};
    QTest::newRow("to a folder above")
        << QStringList("source/a/b") << Links{{"source", "source/a/b/l"}};
    QTest::newRow("to a folder above the source")
        << QStringList("source") << Links{{"", "source/l"}};
    QTest::newRow("two folders to each other")
        << QStringList{"source/x", "source/y"}
        << Links{{"source/x", "source/y/l"}, {"source/y", "source/x/l"}};
    QTest::newRow("by way of a folder outside")
        << QStringList{"source", "outside/deep"}
        << Links{{"outside/deep", "source/l"}, {"outside", "outside/deep/up"}};
}

void tst_FileFolder::copyStopsAtALinkThatLeadsBack()
{
    QFETCH(QStringList, folders);
    QFETCH(QList<QStringList>, links);
    for (const QString &folder : folders)
        QVERIFY(QDir(m_dir->path()).mkpath(folder));
    for (const QStringList &pair : links)
        link(path(pair.first()), pair.last());
    const QTemporaryDir target;

    LogCapture log;
    QVERIFY(!FileFolder().copyFolder(path("source"), target.filePath("copy")));

    QCOMPARE(log.count(QtCriticalMsg, category, "Folder copied into itself:"), 1);
    const QStringList copied = treeLines(target.path());
    QVERIFY2(copied.size() <= 6, qPrintable(copied.join('\n')));
}

void tst_FileFolder::copyThroughALinkIntoItselfIsRefused()
{
    write("source/a");
    QVERIFY(QDir().mkpath(path("target")));
    link(path("target"), "source/link");
    link(path("source"), "other");

    FileFolder folder(m_dir->path());
    LogCapture log;
    // The source holds a link to the folder that receives the copy.
    QVERIFY(!folder.copyFolder(path("source"), path("target")));
    // The target's path goes through a link into the source.
    QVERIFY(!folder.copyFolder(path("source"), path("other/new")));
    QCOMPARE(log.count(QtCriticalMsg, category, "Folder copied into itself:"), 2);
    QVERIFY(!QFileInfo::exists(path("source/new")));
}

void tst_FileFolder::copyOfAPipeFailsWithoutWaiting()
{
    QVERIFY(QDir().mkpath(path("source")));
    QCOMPARE(mkfifo(QFile::encodeName(path("source/pipe")).constData(), 0600), 0);
    LogCapture log;
    QVERIFY(!FileFolder().copyFolder(path("source"), path("target")));
    QCOMPARE(log.count(QtWarningMsg, category, "File copy failed: "), 1);
    QVERIFY(!QFileInfo::exists(path("target/pipe")));
}

void tst_FileFolder::copyOfAnUnreadableFileIsRefused()
{
    write("source/a");
    QVERIFY(QFile::setPermissions(path("source/a"), QFile::Permissions()));
    openToAll(path("source"));
    const UnprivilegedUser guard;

    FileFolder folder(path("source"));
    LogCapture log;
    QVERIFY(!folder.copyFile("a", "/tmp/tst_FileFolder-never-made"));

    QVERIFY2(log.count(QtCriticalMsg, category,
                       "bool FileFolder::copyFile(const QString&, const QString&) File is not "
                       "readable: \""
                           + path("source/a") + '"')
                 == 1,
             qPrintable(log.dump()));
}

void tst_FileFolder::copyOfAnUnreadableFolderIsRefused()
{
    write("source/sub/a");
    QVERIFY(QDir().mkpath(path("target")));
    openToAll(path("source"));
    QVERIFY(QFile::setPermissions(path("source/sub"), QFile::Permissions()));
    QVERIFY(QFile::setPermissions(path("target"), QFile::Permissions(0x7777)));
    {
        const UnprivilegedUser guard;
        LogCapture log;
        QVERIFY(!FileFolder().copyFolder(path("source"), path("target")));
        QCOMPARE(log.count(QtCriticalMsg, category, "Folder is not readable:"), 1);
    }
    QVERIFY(QFile::setPermissions(path("source/sub"), QFile::Permissions(0x7777)));
}

void tst_FileFolder::copyToAFullDiskFails_data()
{
    QTest::addColumn<int>("bytes");
    QTest::addColumn<int>("room"); // KiB
    QTest::addColumn<bool>("fits");
    QTest::newRow("one byte, no room") << 1 << 0 << false;
    QTest::newRow("fits to the last page") << 8192 << 8 << true;
    QTest::newRow("less than a buffer, half of it fits") << 12000 << 8 << false;
    QTest::newRow("the last byte does not fit") << 8193 << 8 << false;
    QTest::newRow("several buffers") << 60000 << 32 << false;
}

void tst_FileFolder::copyToAFullDiskFails()
{
    QFETCH(int, bytes);
    QFETCH(int, room);
    QFETCH(bool, fits);
    write("source/a", QByteArray(bytes, 'a'));
    SmallDisk disk(128);
    if (!disk.isMounted())
        QSKIP(qPrintable("No full disk without a mount of its own: " + disk.reason()));
    QVERIFY(QDir(disk.path()).mkpath("target"));
    QVERIFY(disk.fillUpTo(room));

    FileFolder folder(path("source"));
    LogCapture log;
    QCOMPARE(folder.copyFile("a", disk.filePath("target/a")), fits);
    QCOMPARE(log.count(QtWarningMsg, category, "File copy failed: "), fits ? 0 : 1);
    QCOMPARE(QFileInfo(disk.filePath("target/a")).size(), fits ? bytes : 0);
    if (!fits)
        QCOMPARE(treeLines(disk.filePath("target")), QStringList());
}

void tst_FileFolder::writesToAFullDiskFail()
{
    SmallDisk disk(64);
    if (!disk.isMounted())
        QSKIP(qPrintable("No full disk without a mount of its own: " + disk.reason()));
    QVERIFY(disk.fillUpTo(0));
    FileFolder folder(disk.path());

    QVERIFY(!folder.writeFile("a", QByteArray("text")));
    QVERIFY(!folder.writeTextFile("b", "text"));
    QVERIFY(!folder.writeJsonFile("c", {{"key", "value"}}));
}

void tst_FileFolder::sizeDoesNotFollowOrCountLinks()
{
    write("outside/big", QByteArray(1000, 'x'));
    write("folder/a", "1234567");
    write("folder/.hidden/b", "123");
    link(path("outside"), "folder/folderlink");
    link(path("outside/big"), "folder/filelink");
    link(path("folder"), "folder/.hidden/loop");
    link(path("none"), "folder/broken");

    QCOMPARE(FileFolder(path("folder")).size(), 10);
    // The folder itself may be given by a link.
    link(path("folder"), "link");
    QCOMPARE(FileFolder(path("link")).size(), 10);
}

void tst_FileFolder::namesWalkThroughLinksThatEnd()
{
    write("outside/deep/a");
    write("folder/b");
    link(path("outside"), "folder/link");
    link(path("none"), "folder/broken");
    const FileFolder folder(path("folder"));
    QCOMPARE(folder.fileNames("*", true), QStringList({"b", "link/deep/a"}));
    QCOMPARE(folder.folderNames("*", true), QStringList({"link", "link/deep"}));
}

void tst_FileFolder::namesDoNotWalkThroughLinksThatLeadBack()
{
    write("folder/sub/a");
    link(path("folder"), "folder/sub/loop");
    link(path("folder/sub"), "folder/sub/self");
    const FileFolder folder(path("folder"));
    QCOMPARE(folder.fileNames("*", true), QStringList("sub/a"));
    QCOMPARE(folder.folderNames("*", true), QStringList({"sub", "sub/loop", "sub/self"}));
}

void tst_FileFolder::unreadableFilesReadAsEmpty()
{
    write("a", "{ \"secret\": 1 }");
    QVERIFY(QFile::setPermissions(path("a"), QFile::Permissions()));
    openToAll(m_dir->path());
    const WriteProtection protection({m_dir->path()});
    const UnprivilegedUser guard;

    FileFolder folder(m_dir->path());
    QVERIFY(folder.fileExists("a"));
    QCOMPARE(folder.readFile("a"), QVariant(QByteArray()));
    QCOMPARE(folder.readTextFile("a"), QString());
    QCOMPARE(folder.readJsonFile("a"), QVariantMap());
    QCOMPARE(folder.writeFile("a", "x"), false);
    QCOMPARE(folder.writeFile("new", "x"), false);
    const std::unique_ptr<File> file(folder.file("a"));
    QVERIFY(!file->open());
    QCOMPARE(file->error(), int(File::ErrorOpen));
    const std::unique_ptr<FileInfo> info(folder.fileInfo("a"));
    QVERIFY(info->exists() && !info->isReadable() && !info->isWritable());
}

void tst_FileFolder::failedRemovalsAnswerFalse()
{
    write("top/sub/a");
    openToAll(path("top/sub"));
    const WriteProtection protection({path("top"), path("top/sub")});
    const UnprivilegedUser guard;

    FileFolder folder(path("top"));
    QSignalSpy exists(&folder, &FileFolder::existsChanged);
    QSignalSpy size(&folder, &FileFolder::sizeChanged);
    QVERIFY(!folder.removeFile("sub/a"));
    QVERIFY(!folder.removeFolder("sub", true));
    QVERIFY(!folder.removeFolder());
    QCOMPARE(exists.count() + size.count(), 0);
    QVERIFY(QFileInfo::exists(path("top/sub/a")));
}

void tst_FileFolder::removalOfALinkLeavesWhatItLeadsTo_data()
{
    QTest::addColumn<std::function<bool(FileFolder &)>>("remove");
    QTest::addColumn<bool>("expected");
    const auto row = [](const char *name, const std::function<bool(FileFolder &)> &remove,
                        bool expected) { QTest::newRow(name) << remove << expected; };
    const auto itself = [](const QString &name) {
        return
            [name](FileFolder &folder) { return FileFolder(folder.filePath(name)).removeFolder(); };
    };
    row("itself", itself("link"), true);
    row(
        "itself with a slash",
        [](FileFolder &folder) { return FileFolder(folder.path() + "/link/").removeFolder(); },
        true);
    row(
        "itself with a step",
        [](FileFolder &folder) { return FileFolder(folder.path() + "/link/.").removeFolder(); },
        true);
    row(
        "by name", [](FileFolder &folder) { return folder.removeFolder("link", true); }, true);
    row(
        "by name with a slash",
        [](FileFolder &folder) { return folder.removeFolder("link/", true); }, true);
    row(
        "not recursive", [](FileFolder &folder) { return folder.removeFolder("link"); }, false);
}

void tst_FileFolder::removalOfALinkLeavesWhatItLeadsTo()
{
    QFETCH(std::function<bool(FileFolder &)>, remove);
    QFETCH(bool, expected);
    write("outside/precious");
    write("top/a");
    link(path("outside"), "top/link");

    FileFolder folder(path("top"));
    QCOMPARE(remove(folder), expected);
    QCOMPARE(read("outside/precious"), QByteArray("content"));
    QCOMPARE(QFileInfo(path("top/link")).isSymLink(), !expected);
    QVERIFY(QFileInfo::exists(path("top/a")));
}

void tst_FileFolder::recursiveRemovalTakesNothingButFoldersOfThisOne_data()
{
    // None may lead out of the test's own folder: a mistake would empty whatever that is.
    QTest::addColumn<QString>("name");
    QTest::newRow("empty") << "";
    QTest::newRow("none") << QString();
    QTest::newRow("dot") << ".";
    QTest::newRow("above") << "..";
    QTest::newRow("far above") << "../..";
    QTest::newRow("there and back") << "nothing/..";
    QTest::newRow("there and above") << "nothing/../../";
    QTest::newRow("through a link") << "up/top";
}

void tst_FileFolder::recursiveRemovalTakesNothingButFoldersOfThisOne()
{
    QFETCH(QString, name);
    write("middle/top/a");
    link(path("middle"), "middle/top/up");
    const QStringList before = treeLines(m_dir->path());

    FileFolder folder(path("middle/top"));
    LogCapture log;
    QVERIFY(!folder.removeFolder(name, true));
    QCOMPARE(log.count(QtWarningMsg, category,
                       "bool FileFolder::removeFolder(const QString&, bool) "
                       "Not a folder of this one: \""
                           + name + '"'),
             1);
    QCOMPARE(treeLines(m_dir->path()), before);
}

void tst_FileFolder::removalTellsTheNewSize()
{
    write("top/a");
    FileFolder folder(path("top"));
    QCOMPARE(folder.size(), 7);
    QList<qlonglong> sizes;
    connect(&folder, &FileFolder::existsChanged, [&] { sizes.append(folder.size()); });
    connect(&folder, &FileFolder::sizeChanged, [&] { sizes.append(folder.size()); });
    QVERIFY(folder.removeFolder());
    QCOMPARE(sizes, (QList<qlonglong>{0, 0}));
}

void tst_FileFolder::renamingOntoALinkIsRefused_data()
{
    QTest::addColumn<QString>("target");
    QTest::newRow("to nothing") << "outside/new";
    QTest::newRow("to a file") << "outside/old";
}

void tst_FileFolder::renamingOntoALinkIsRefused()
{
    QFETCH(QString, target);
    write("outside/old", "old");
    write("top/a");
    link(path(target), "top/link");
    const QStringList before = treeLines(m_dir->path());

    FileFolder folder(path("top"));
    LogCapture log;
    QVERIFY(!folder.renameFile("a", "link"));
    QCOMPARE(log.count(QtWarningMsg, category, "newFileName: \"link\""), 1);
    QCOMPARE(treeLines(m_dir->path()), before);
}

void tst_FileFolder::withoutAPathNothingHappens_data()
{
    QTest::addColumn<std::function<bool(FileFolder &)>>("refused");
    const auto row = [](const char *name, const std::function<bool(FileFolder &)> &refused) {
        QTest::newRow(name) << refused;
    };
    row("size", [](FileFolder &f) { return f.size() == 0; });
    row("cdUp", [](FileFolder &f) { return !f.cdUp(); });
    row("cd", [](FileFolder &f) { return !f.cd("tmp"); });
    row("fileNames", [](FileFolder &f) { return f.fileNames("*", true).isEmpty(); });
    row("folderNames", [](FileFolder &f) { return f.folderNames().isEmpty(); });
    row("makeFolder", [](FileFolder &f) { return !f.makeFolder(); });
    row("removeFolder", [](FileFolder &f) { return !f.removeFolder(); });
    row("removeFolder of a name", [](FileFolder &f) { return !f.removeFolder("none", true); });
    row("makePath", [](FileFolder &f) { return !f.makePath("tessaline-none"); });
    row("removePath", [](FileFolder &f) { return !f.removePath("none"); });
    row("fileExists", [](FileFolder &f) { return !f.fileExists("tmp"); });
    row("removeFile", [](FileFolder &f) { return !f.removeFile("none"); });
    row("renameFile", [](FileFolder &f) { return !f.renameFile("none", "other"); });
    row("copyFile", [](FileFolder &f) { return !f.copyFile("tmp", "/dev/null/x"); });
    row("readFile", [](FileFolder &f) { return f.readFile("proc/version") == QByteArray(); });
    row("writeFile", [](FileFolder &f) { return !f.writeFile("dev/null", "x"); });
    row("readJsonFile", [](FileFolder &f) { return f.readJsonFile("none").isEmpty(); });
    row("writeJsonFile", [](FileFolder &f) { return !f.writeJsonFile("dev/null", {}); });
    row("readTextFile", [](FileFolder &f) { return f.readTextFile("proc/version").isEmpty(); });
    row("writeTextFile", [](FileFolder &f) { return !f.writeTextFile("dev/null", "x"); });
    row("settingsFile", [](FileFolder &f) { return f.settingsFile("") == nullptr; });
}

void tst_FileFolder::withoutAPathNothingHappens()
{
    QFETCH(std::function<bool(FileFolder &)>, refused);
    FileFolder folder(QString("$FOLDER_TEST_NONE"));
    {
        LogCapture log;
        QVERIFY(refused(folder));
        QVERIFY2(log.count(QtWarningMsg, category, "No path") == 1, qPrintable(log.dump()));
    }
    QCOMPARE(folder.path(), QString());
    QCOMPARE(folder.filePath("x"), QString());
    QCOMPARE(folder.fileUrl("x"), QUrl());
}

void tst_FileFolder::namesWithANulAreRefused_data()
{
    QTest::addColumn<std::function<bool(FileFolder &)>>("refused");
    const auto row = [](const char *name, const std::function<bool(FileFolder &)> &refused) {
        QTest::newRow(name) << refused;
    };
    const QString a = QStringLiteral("a") + QChar(0) + ".txt";
    const QString sub = QStringLiteral("sub") + QChar(0) + "x";
    row("readFile", [=](FileFolder &f) { return f.readFile(a) == QByteArray(); });
    row("writeFile", [=](FileFolder &f) { return !f.writeFile(a, "x"); });
    row("readTextFile", [=](FileFolder &f) { return f.readTextFile(a).isEmpty(); });
    row("writeTextFile", [=](FileFolder &f) { return !f.writeTextFile(a, "x"); });
    row("readJsonFile", [=](FileFolder &f) { return f.readJsonFile(a).isEmpty(); });
    row("writeJsonFile", [=](FileFolder &f) { return !f.writeJsonFile(a, {}); });
    row("renameFile from", [=](FileFolder &f) { return !f.renameFile(a, "c"); });
    row("renameFile to", [=](FileFolder &f) { return !f.renameFile("b", a); });
    row("removeFile", [=](FileFolder &f) { return !f.removeFile(a); });
    row("fileExists", [=](FileFolder &f) { return !f.fileExists(a); });
    row("copyFile from", [=](FileFolder &f) { return !f.copyFile(a, f.filePath("c")); });
    row("copyFile to", [=](FileFolder &f) { return !f.copyFile("b", f.filePath(a)); });
    row("makePath", [=](FileFolder &f) { return !f.makePath(QStringLiteral("new") + QChar(0)); });
    row("removePath", [=](FileFolder &f) { return !f.removePath(sub); });
    row("removeFolder", [=](FileFolder &f) { return !f.removeFolder(sub, true); });
    row("settingsFile", [=](FileFolder &f) { return f.settingsFile(a) == nullptr; });
    row("cd", [=](FileFolder &f) { return !f.cd(sub); });
    row("fileNames there",
        [=](FileFolder &f) { return FileFolder(f.filePath(sub)).fileNames().isEmpty(); });
    row("size there", [=](FileFolder &f) { return FileFolder(f.filePath(sub)).size() == 0; });
    row("makeFolder there",
        [=](FileFolder &f) { return !FileFolder(f.filePath("new" + sub)).makeFolder(); });
    row("removeFolder there",
        [=](FileFolder &f) { return !FileFolder(f.filePath(sub)).removeFolder(); });
    row("settingsFile there",
        [=](FileFolder &f) { return FileFolder(f.filePath(sub)).settingsFile("") == nullptr; });
    row("file", [=](FileFolder &f) {
        const std::unique_ptr<File> file(f.file(a));
        return !file->open(File::OpenModeWriteOnly);
    });
}

void tst_FileFolder::namesWithANulAreRefused()
{
    QFETCH(std::function<bool(FileFolder &)>, refused);
    write("top/a", "secret");
    write("top/b", "other");
    write("top/sub/c", "inside");
    const QStringList before = treeLines(m_dir->path());

    FileFolder folder(path("top"));
    LogCapture log;
    QVERIFY(refused(folder));
    QVERIFY2(log.count(QtWarningMsg, "Zemrik.Runtime.Utility", "Name with a NUL:") > 0,
             qPrintable(log.dump()));
    QCOMPARE(treeLines(m_dir->path()), before);
}

void tst_FileFolder::bytesThatAreTooManyToEncodeAreNotRead_data()
{
    QTest::addColumn<QString>("encoding");
    QTest::addColumn<qint64>("size");
    QTest::newRow("hex") << "hex" << qint64(1100) * 1024 * 1024;
    QTest::newRow("base64") << "base64" << qint64(1700) * 1024 * 1024;
    QTest::newRow("text") << "" << qint64(1100) * 1024 * 1024;
}

void tst_FileFolder::bytesThatAreTooManyToEncodeAreNotRead()
{
    QFETCH(QString, encoding);
    QFETCH(qint64, size);
    QFile file(path("large")); // takes no room on the disk
    QVERIFY(file.open(QIODevice::WriteOnly) && file.resize(size));
    file.close();

    FileFolder folder(m_dir->path());
    LogCapture log;
    if (encoding.isEmpty())
        QCOMPARE(folder.readTextFile("large"), QString());
    else
        QCOMPARE(folder.readFile("large", {{"encode", encoding}}), QVariant(QByteArray()));
    QCOMPARE(log.count(QtWarningMsg, "Zemrik.Runtime.Utility", "Too many bytes to read:"), 1);
}

TESSALINE_TEST_MAIN(tst_FileFolder)
#include "tst_FileFolder.moc"
