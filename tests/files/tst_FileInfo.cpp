#include "files/FileFolder.h"
#include "files/FileInfo.h"
#include "plugin/FileUtility.h"
#include "support/IsolatedHome.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

// What scripts can't reach; the rest is in tst_FileInfo.qml.
class tst_FileInfo : public QObject
{
    Q_OBJECT

private slots:
    void constructorsResolvePathVariables();
    void settersAreVirtual();
    void assignFileMovesTheFolderSilently();
    void linksTellTheirTarget();
    void createdIsTheBirthOrTheLastChange();
};

namespace {

// A derived class does its own work between the new path and the signal.
class LoggingInfo : public FileInfo
{
public:
    using FileInfo::assignFile;
    using FileInfo::fileInfo;

    void setFilePath(const QString &path) override { calls.append("path " + path); }
    void setUrl(const QUrl &url) override { calls.append("url " + url.toString()); }

    QStringList calls;
};

} // namespace

void tst_FileInfo::constructorsResolvePathVariables()
{
    FileUtility::setPathVariable("FILEINFO_TEST", "/some/where");
    QObject parent;

    QCOMPARE(FileInfo().filePath(), QString());
    QCOMPARE(FileInfo(QString("$FILEINFO_TEST/x")).filePath(), QString("/some/where/x"));
    QCOMPARE(FileInfo(QUrl("file:///a%20b")).filePath(), QString("/a b"));
    QCOMPARE(FileInfo(QString("/a"), &parent).parent(), &parent);
}

void tst_FileInfo::settersAreVirtual()
{
    LoggingInfo info;
    QVERIFY(info.setProperty("filePath", "/a"));
    QVERIFY(info.setProperty("url", QUrl("file:///b")));
    QCOMPARE(info.calls, QStringList({"path /a", "url file:///b"}));
}

void tst_FileInfo::assignFileMovesTheFolderSilently()
{
    LoggingInfo info;
    const QTemporaryDir dir;
    info.assignFile("/a/b");
    FileFolder *folder = info.fileFolder();
    QCOMPARE(folder->parent(), &info);
    QCOMPARE(folder->path(), QString("/a"));
    QSignalSpy path(&info, &FileInfo::filePathChanged);
    QSignalSpy permissions(&info, &FileInfo::permissionsChanged);

    QVERIFY(FileUtility::writeFile(dir.filePath("c"), "12345"));
    info.assignFile(dir.filePath("c"));

    QCOMPARE(info.fileInfo().filePath(), dir.filePath("c"));
    QVERIFY(info.exists());
    QCOMPARE(folder->path(), dir.path());
    QCOMPARE(path.count() + permissions.count(), 0);
}

void tst_FileInfo::linksTellTheirTarget()
{
    const QTemporaryDir dir;
    QVERIFY(FileUtility::writeFile(dir.filePath("a"), "12345"));
    QVERIFY(QFile::link(dir.filePath("a"), dir.filePath("link")));
    QVERIFY(QFile::link(dir.filePath("none"), dir.filePath("broken")));

    const FileInfo link(dir.filePath("link"));
    QVERIFY(link.exists() && link.isSymLink() && link.isFile());
    QCOMPARE(link.symLinkTarget(), dir.filePath("a"));
    QCOMPARE(link.size(), 5);

    const FileInfo broken(dir.filePath("broken"));
    QVERIFY(!broken.exists() && broken.isSymLink());
    QCOMPARE(broken.symLinkTarget(), dir.filePath("none"));
}

void tst_FileInfo::createdIsTheBirthOrTheLastChange()
{
    const QTemporaryDir dir;
    const QString path = dir.filePath("a");
    QVERIFY(FileUtility::writeFile(path, "12345"));
    const QDateTime old = QDateTime::fromSecsSinceEpoch(1000000000);
    QVERIFY(FileUtility::setDateTime(path, old, old));

    const FileInfo info(path);
    QCOMPARE(info.lastModified(), old);
    QVERIFY(qAbs(info.created().secsTo(QDateTime::currentDateTime())) < 60);
    QVERIFY(!FileInfo(dir.filePath("none")).created().isValid());
}

TESSALINE_TEST_MAIN(tst_FileInfo)
#include "tst_FileInfo.moc"
