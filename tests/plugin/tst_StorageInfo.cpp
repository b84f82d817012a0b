#include "files/FileFolder.h"
#include "plugin/FileUtility.h"
#include "plugin/StorageInfo.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"
#include "support/SignalRecorder.h"
#include "support/SmallDisk.h"

#include <QFile>
#include <QPointer>
#include <QQmlEngine>
#include <QTest>

#include <memory>

class tst_StorageInfo : public QObject
{
    Q_OBJECT

private slots:
    void withoutAPathIsTheRootVolume();
    void propertiesAreThoseOfQStorageInfo_data();
    void propertiesAreThoseOfQStorageInfo();
    void constructorsTakePathUrlAndVolume();
    void pathsMayBeginWithAVariable();
    void pathReadsBackTheVolumesTop();
    void eachWriteButOfTheTopNotifies();
    void urlIsThatOfTheTop();
    void changeOfPathIsLogged();
    void folderLastsUntilThePathChanges();
    void invalidPathIsNotValid_data();
    void invalidPathIsNotValid();
    void refreshTakesSizesAnewWithoutPathChanged();
    void mountedVolumesAreThoseOfQStorageInfo();
    void mountedVolumesMakesAnObjectPerAccess();
    void mountedVolumesHasNothingOutsideItsBounds();
    void mountedVolumesIsReadAnew();
};

namespace {

const char category[] = "Zemrik.Tessaline.File";

} // namespace

void tst_StorageInfo::withoutAPathIsTheRootVolume()
{
    QObject parent;
    const auto *info = new StorageInfo(&parent);

    QCOMPARE(info->parent(), &parent);
    QCOMPARE(info->path(), QString("/"));
    QVERIFY(info->isRoot());
    QVERIFY(info->isValid());
    QVERIFY(info->isReady());
    QVERIFY(info->bytesTotal() > 0);
}

void tst_StorageInfo::propertiesAreThoseOfQStorageInfo_data()
{
    QTest::addColumn<QString>("path");

    QTest::newRow("root") << "/";
    QTest::newRow("kernel's file system") << "/proc";
    QTest::newRow("temporary folder") << QDir::tempPath();
    QTest::newRow("missing") << "/no/such/path";
    QTest::newRow("with a NUL") << QString::fromLatin1("/pr\0oc", 6);
    QTest::newRow("very long") << "/" + QString(100000, 'x');
}

void tst_StorageInfo::propertiesAreThoseOfQStorageInfo()
{
    QFETCH(QString, path);
    const QStorageInfo volume(path);

    const StorageInfo info(path);

    QCOMPARE(info.path(), volume.rootPath());
    QCOMPARE(info.device(), QString::fromUtf8(volume.device()));
    QCOMPARE(info.displayName(), volume.displayName());
    QCOMPARE(info.fileSystemType(), QString::fromUtf8(volume.fileSystemType()));
    QCOMPARE(info.name(), volume.name());
    QCOMPARE(info.bytesTotal(), volume.bytesTotal());
    QCOMPARE(info.isReadOnly(), volume.isReadOnly());
    QCOMPARE(info.isReady(), volume.isReady());
    QCOMPARE(info.isRoot(), volume.isRoot());
    QCOMPARE(info.isValid(), volume.isValid());
    QVERIFY(info.bytesFree() >= info.bytesAvailable());
    QVERIFY(info.bytesTotal() >= info.bytesFree());
}

void tst_StorageInfo::constructorsTakePathUrlAndVolume()
{
    QObject parent;
    const auto *path = new StorageInfo(QString("/proc/self"), &parent);
    const auto *url = new StorageInfo(QUrl("file:///proc/self"), &parent);
    const auto *volume = new StorageInfo(QStorageInfo("/proc"), &parent);

    for (const StorageInfo *info : {path, url, volume}) {
        QCOMPARE(info->path(), QString("/proc"));
        QCOMPARE(info->fileSystemType(), QString("proc"));
        QVERIFY(!info->isRoot());
        QCOMPARE(info->parent(), &parent);
    }
}

void tst_StorageInfo::pathsMayBeginWithAVariable()
{
    FileUtility::setPathVariable("PROCESSES", "/proc");

    QCOMPARE(StorageInfo(QString("$PROCESSES/self")).path(), QString("/proc"));
    StorageInfo info;
    info.setPath("~PROCESSES/self");
    QCOMPARE(info.path(), QString("/proc"));

    FileUtility::setPathVariable("PROCESSES", QString());
}

void tst_StorageInfo::pathReadsBackTheVolumesTop()
{
    StorageInfo info;
    info.setPath("/proc/self/fd");
    QCOMPARE(info.path(), QString("/proc"));
    QVERIFY(!info.isRoot());
}

void tst_StorageInfo::eachWriteButOfTheTopNotifies()
{
    StorageInfo info;
    SignalRecorder recorder(&info);

    info.setPath("/");
    QCOMPARE(recorder.take(), QStringList());
    info.setPath("/proc/self");
    QCOMPARE(recorder.take(), QStringList("pathChanged"));
    info.setPath("/proc/self");
    QCOMPARE(recorder.take(), QStringList("pathChanged"));
    info.setPath("/proc");
    QCOMPARE(recorder.take(), QStringList());
}

void tst_StorageInfo::urlIsThatOfTheTop()
{
    StorageInfo info;
    QCOMPARE(info.url(), QUrl("file:///"));
    SignalRecorder recorder(&info);

    info.setUrl(QUrl("file:///"));
    QCOMPARE(recorder.take(), QStringList());
    info.setUrl(QUrl("file:///proc/self"));
    QCOMPARE(recorder.take(), QStringList("pathChanged"));
    QCOMPARE(info.url(), QUrl("file:///proc"));
    info.setUrl(QUrl("file:///proc"));
    QCOMPARE(recorder.take(), QStringList());
}

void tst_StorageInfo::changeOfPathIsLogged()
{
    StorageInfo info;
    LogCapture log;

    info.setPath("/");
    QVERIFY2(log.messages().isEmpty(), qPrintable(log.dump()));
    info.setPath("/proc/self");

    QCOMPARE(log.count(QtDebugMsg, category, R"("/" "/proc/self")"), 1);
    QCOMPARE(log.messages().size(), 1);
}

void tst_StorageInfo::folderLastsUntilThePathChanges()
{
    StorageInfo info;
    const QPointer<FileFolder> root = info.folder();
    QCOMPARE(root->path(), QString("/"));
    QCOMPARE(root->parent(), &info);
    QCOMPARE(info.folder(), root.data());

    info.setPath("/");
    info.refresh();
    QCOMPARE(info.folder(), root.data());

    bool goneAtTheSignal = false;
    connect(&info, &StorageInfo::pathChanged, this, [&] { goneAtTheSignal = root.isNull(); });
    info.setPath("/proc/self");
    QVERIFY(goneAtTheSignal);
    QCOMPARE(info.folder()->path(), QString("/proc"));
}

void tst_StorageInfo::invalidPathIsNotValid_data()
{
    QTest::addColumn<QString>("path");

    QTest::newRow("missing") << "/no/such/path";
    QTest::newRow("resource") << ":/images/defaultThumbnail.png";
    QTest::newRow("below a file") << "/dev/null/folder";
}

void tst_StorageInfo::invalidPathIsNotValid()
{
    QFETCH(QString, path);
    LogCapture log;
    StorageInfo info(path);

    QVERIFY(!info.isValid());
    QVERIFY(!info.isReady());
    QVERIFY(!info.isRoot());
    QCOMPARE(info.bytesTotal(), QStorageInfo(path).bytesTotal());
    QVERIFY(info.folder());

    info.setPath("/");
    QVERIFY(info.isValid());
    info.setPath(path);
    QVERIFY(!info.isValid());
    QCOMPARE(log.count(QtWarningMsg) + log.count(QtCriticalMsg), 0);
}

void tst_StorageInfo::refreshTakesSizesAnewWithoutPathChanged()
{
    const SmallDisk disk(1024);
    if (!disk.isMounted())
        QSKIP(qPrintable("No full disk without a mount of its own: " + disk.reason()));
    StorageInfo info(disk.path());
    QCOMPARE(info.path(), disk.path());
    QCOMPARE(info.fileSystemType(), QString("tmpfs"));
    QCOMPARE(info.bytesTotal(), 1024 * 1024LL);
    const qlonglong before = info.bytesAvailable();
    QFile file(disk.filePath("file"));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(QByteArray(65536, 'x')) == 65536);
    file.close();
    QCOMPARE(info.bytesAvailable(), before);
    SignalRecorder recorder(&info);

    info.refresh();

    QCOMPARE(info.bytesAvailable(), before - 65536);
    QCOMPARE(info.bytesFree(), before - 65536);
    QCOMPARE(recorder.take(), QStringList("mountedVolumesChanged"));
}

void tst_StorageInfo::mountedVolumesAreThoseOfQStorageInfo()
{
    StorageInfo info;
    auto volumes = info.mountedVolumes();
    const QList<QStorageInfo> expected = QStorageInfo::mountedVolumes();

    QCOMPARE(volumes.object, &info);
    QCOMPARE(volumes.count(&volumes), expected.size());
    QVERIFY(!expected.isEmpty());
    for (int i = 0; i < expected.size(); ++i) {
        const std::unique_ptr<StorageInfo> volume(volumes.at(&volumes, i));
        QCOMPARE(volume->path(), expected.at(i).rootPath());
        QCOMPARE(volume->device(), QString::fromUtf8(expected.at(i).device()));
    }
}

void tst_StorageInfo::mountedVolumesMakesAnObjectPerAccess()
{
    StorageInfo info;
    auto volumes = info.mountedVolumes();

    const std::unique_ptr<StorageInfo> one(volumes.at(&volumes, 0));
    const std::unique_ptr<StorageInfo> other(volumes.at(&volumes, 0));

    QVERIFY(one != other);
    QCOMPARE(one->path(), other->path());
    for (StorageInfo *volume : {one.get(), other.get()}) {
        QVERIFY(!volume->parent());
        QCOMPARE(QQmlEngine::objectOwnership(volume), QQmlEngine::JavaScriptOwnership);
    }
}

void tst_StorageInfo::mountedVolumesHasNothingOutsideItsBounds()
{
    StorageInfo info;
    auto volumes = info.mountedVolumes();
    QVERIFY(!volumes.at(&volumes, -1));
    QVERIFY(!volumes.at(&volumes, volumes.count(&volumes)));
    QVERIFY(!volumes.append && !volumes.clear);
}

// The list belongs to the class: what one object reads, the list of another one shows.
void tst_StorageInfo::mountedVolumesIsReadAnew()
{
    StorageInfo info;
    auto kept = info.mountedVolumes();
    const int before = kept.count(&kept);
    const SmallDisk disk(64);
    if (!disk.isMounted())
        QSKIP(qPrintable("No full disk without a mount of its own: " + disk.reason()));
    QCOMPARE(kept.count(&kept), before);

    StorageInfo another;
    auto read = another.mountedVolumes();

    QCOMPARE(read.count(&read), before + 1);
    QCOMPARE(kept.count(&kept), before + 1);
    const std::unique_ptr<StorageInfo> last(kept.at(&kept, before));
    QCOMPARE(last->path(), disk.path());
}

TESSALINE_TEST_MAIN(tst_StorageInfo)
#include "tst_StorageInfo.moc"
