#include "files/FileFolder.h"
#include "plugin/StandardPaths.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"

#include <QDir>
#include <QFile>
#include <QMetaEnum>
#include <QQmlEngine>
#include <QStandardPaths>
#include <QTest>

#include <memory>

using Location = StandardPaths::StandardLocation;

class tst_StandardPaths : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void valuesAreThoseOfQStandardPaths();
    void answersAreThoseOfQStandardPaths_data() { locations(); }
    void answersAreThoseOfQStandardPaths();
    void locatesFilesAndFolders();
    void foldersAreNewObjectsOfTheScriptEngine_data() { locations(); }
    void foldersAreNewObjectsOfTheScriptEngine();
    void foldersAreNullWhereThereIsNone();
    void unknownLocationHasNothing();

private:
    static void locations();

    QTemporaryDir m_system;
    StandardPaths m_paths;
};

void tst_StandardPaths::initTestCase()
{
    qputenv("XDG_DATA_DIRS", QFile::encodeName(m_system.path()));
}

void tst_StandardPaths::locations()
{
    QTest::addColumn<Location>("location");

    const QMetaEnum names = QMetaEnum::fromType<Location>();
    for (int i = 0; i < names.keyCount(); ++i)
        QTest::newRow(names.key(i)) << Location(names.value(i));
}

void tst_StandardPaths::valuesAreThoseOfQStandardPaths()
{
    const QMetaEnum ours = QMetaEnum::fromType<Location>();
    const QMetaEnum theirs = QMetaEnum::fromType<QStandardPaths::StandardLocation>();
    QCOMPARE(ours.keyCount(), 19);
    for (int i = 0; i < ours.keyCount(); ++i)
        QCOMPARE(ours.value(i), theirs.keyToValue(ours.key(i)));

    QCOMPARE(int(StandardPaths::LocateFile), int(QStandardPaths::LocateFile));
    QCOMPARE(int(StandardPaths::LocateDirectory), int(QStandardPaths::LocateDirectory));
}

void tst_StandardPaths::answersAreThoseOfQStandardPaths()
{
    QFETCH(Location, location);
    const auto native = static_cast<QStandardPaths::StandardLocation>(location);

    QVERIFY(!m_paths.displayName(location).isEmpty());
    QCOMPARE(m_paths.displayName(location), QStandardPaths::displayName(native));
    QVERIFY(!m_paths.writableLocation(location).isEmpty());
    QCOMPARE(m_paths.writableLocation(location), QStandardPaths::writableLocation(native));
    QVERIFY(!m_paths.standardLocations(location).isEmpty());
    QCOMPARE(m_paths.standardLocations(location), QStandardPaths::standardLocations(native));
}

void tst_StandardPaths::locatesFilesAndFolders()
{
    const QDir home(m_paths.writableLocation(StandardPaths::GenericDataLocation));
    const QDir system(m_system.path());
    QVERIFY(home.mkpath("both") && system.mkpath("both") && system.mkpath("folder"));
    for (const QString &path : {home.filePath("file"), system.filePath("file")}) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    const Location data = StandardPaths::GenericDataLocation;

    QCOMPARE(m_paths.locate(data, "file"), home.filePath("file"));
    QCOMPARE(m_paths.locateAll(data, "file"),
             (QStringList{home.filePath("file"), system.filePath("file")}));
    QVERIFY(m_paths.locate(data, "file", StandardPaths::LocateDirectory).isEmpty());

    QVERIFY(m_paths.locate(data, "both").isEmpty());
    QVERIFY(m_paths.locateAll(data, "both", StandardPaths::LocateFile).isEmpty());
    QCOMPARE(m_paths.locate(data, "both", StandardPaths::LocateDirectory), home.filePath("both"));
    QCOMPARE(m_paths.locateAll(data, "both", StandardPaths::LocateDirectory),
             (QStringList{home.filePath("both"), system.filePath("both")}));
    QCOMPARE(m_paths.locate(data, "folder", StandardPaths::LocateDirectory),
             system.filePath("folder"));
    QVERIFY(m_paths.locateAll(data, "missing").isEmpty());
}

void tst_StandardPaths::foldersAreNewObjectsOfTheScriptEngine()
{
    QFETCH(Location, location);

    const std::unique_ptr<FileFolder> writable(m_paths.writableFolder(location));
    const std::unique_ptr<FileFolder> another(m_paths.writableFolder(location));
    const std::unique_ptr<FileFolder> first(m_paths.defaultFolder(location));

    QVERIFY(writable != another);
    QCOMPARE(writable->path(), m_paths.writableLocation(location));
    QCOMPARE(first->path(), m_paths.standardLocations(location).first());
    for (FileFolder *folder : {writable.get(), first.get()}) {
        QVERIFY(!folder->parent());
        QCOMPARE(QQmlEngine::objectOwnership(folder), QQmlEngine::JavaScriptOwnership);
    }
}

void tst_StandardPaths::foldersAreNullWhereThereIsNone()
{
    LogCapture log; // Qt's warnings
    const QByteArray formerRuntime = qgetenv("XDG_RUNTIME_DIR");
    const QByteArray formerTemp = qgetenv("TMPDIR");
    qputenv("XDG_RUNTIME_DIR", "/dev/null");
    qputenv("TMPDIR", "/dev/null");

    QVERIFY(m_paths.writableLocation(StandardPaths::RuntimeLocation).isEmpty());
    QCOMPARE(m_paths.standardLocations(StandardPaths::RuntimeLocation), QStringList(QString()));
    QVERIFY(!m_paths.writableFolder(StandardPaths::RuntimeLocation));
    QVERIFY(!m_paths.defaultFolder(StandardPaths::RuntimeLocation));

    qputenv("XDG_RUNTIME_DIR", formerRuntime);
    qputenv("TMPDIR", formerTemp);
}

void tst_StandardPaths::unknownLocationHasNothing()
{
    for (int value : {-1, 99, 1 << 30}) {
        const auto location = static_cast<Location>(value);
        QVERIFY(m_paths.displayName(location).isEmpty());
        QVERIFY(m_paths.writableLocation(location).isEmpty());
        QVERIFY(m_paths.locate(location, "file").isEmpty());
        QVERIFY(!m_paths.writableFolder(location));
        QVERIFY(!m_paths.defaultFolder(location));
    }
}

TESSALINE_TEST_MAIN(tst_StandardPaths)
#include "tst_StandardPaths.moc"
