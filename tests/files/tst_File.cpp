#include "files/File.h"
#include "plugin/FileUtility.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <functional>

Q_DECLARE_METATYPE(std::function<void(File &)>)

// What scripts can't reach; the rest is in tst_File.qml.
class tst_File : public QObject
{
    Q_OBJECT

private slots:
    void constructorsResolvePathVariables();
    void constructorsDoNotLog();
    void writeTakesAVariantThatHoldsBytes();
    void readErrorsAreSignalled_data();
    void readErrorsAreSignalled();
    void flushBeforeAnythingElseFails();
    void successAfterAFailureClearsTheError();
    void nameWithANulIsNotOpened();
};

void tst_File::constructorsResolvePathVariables()
{
    FileUtility::setPathVariable("FILE_TEST", "/some/where");
    QObject parent;

    QCOMPARE(File().path(), QString());
    QCOMPARE(File(QString("$FILE_TEST/x")).path(), QString("/some/where/x"));
    QCOMPARE(File(QUrl("file:///a%20b")).path(), QString("/a b"));
    QCOMPARE(File(QUrl("qrc:/a")).path(), QString(":/a"));
    QCOMPARE(File(QString("/a"), &parent).parent(), &parent);
}

void tst_File::constructorsDoNotLog()
{
    const LogCapture log;
    const File file(QString("/a"));
    QVERIFY2(log.messages().isEmpty(), qPrintable(log.dump()));
}

void tst_File::writeTakesAVariantThatHoldsBytes()
{
    const QTemporaryDir dir;
    QJSEngine engine;
    File file(dir.filePath("a"));
    QVERIFY(file.open(File::OpenModeWriteOnly));
    file.write(engine.toScriptValue(QByteArray("\x00\xff", 2)));
    file.write(engine.toScriptValue(QVariant(QByteArray("a"))));
    file.close();
    QCOMPARE(FileUtility::readFile(dir.filePath("a")), QByteArray("\x00\xff\x61", 3));
}

void tst_File::readErrorsAreSignalled_data()
{
    QTest::addColumn<std::function<void(File &)>>("read");
    using Read = std::function<void(File &)>;
    QTest::newRow("readLine") << Read([](File &file) { QCOMPARE(file.readLine(), QString()); });
    QTest::newRow("read") << Read(
        [](File &file) { QCOMPARE(file.read(8).toByteArray().size(), 0); });
    QTest::newRow("readAll") << Read(
        [](File &file) { QCOMPARE(file.readAll().toByteArray().size(), 0); });
}

// The first page of a process is never mapped, so reading it fails for everybody.
void tst_File::readErrorsAreSignalled()
{
    QFETCH(std::function<void(File &)>, read);
    File file(QString("/proc/self/mem"));
    QVERIFY(file.open(File::OpenModeReadOnly));
    QSignalSpy spy(&file, &File::errorChanged);

    read(file);

    QCOMPARE(spy.count(), 1);
    QCOMPARE(file.error(), int(File::ErrorRead));
    QVERIFY(!file.errorString().isEmpty());
}

void tst_File::flushBeforeAnythingElseFails()
{
    File file;
    QSignalSpy error(&file, &File::errorChanged);
    QSignalSpy position(&file, &File::positionChanged);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("No file engine"));
    QVERIFY(!file.flush());
    QCOMPARE(error.count(), 1);
    QCOMPARE(position.count(), 0);
}

void tst_File::successAfterAFailureClearsTheError()
{
    const QTemporaryDir dir;
    File file(dir.filePath("none"));
    QVERIFY(!file.open());
    QCOMPARE(file.error(), int(File::ErrorOpen));
    QVERIFY(file.open(File::OpenModeWriteOnly));
    QCOMPARE(file.error(), int(File::NoError));
}

// To the system it would be the name of another file.
void tst_File::nameWithANulIsNotOpened()
{
    const QTemporaryDir dir;
    const QString path = dir.filePath("a");
    QVERIFY(FileUtility::writeFile(path, "kept"));
    File file(path + QChar(0) + ".txt");
    QSignalSpy errors(&file, &File::errorChanged);
    LogCapture log;
    QVERIFY(!file.open(File::OpenModeWriteOnly));
    QCOMPARE(log.count(QtWarningMsg, "Zemrik.Runtime.Utility", "Name with a NUL:"), 1);
    QCOMPARE(errors.count(), 1);
    QCOMPARE(file.error(), int(File::ErrorOpen));
    QCOMPARE(file.errorString(), QString("File name with a NUL"));
    QCOMPARE(FileUtility::readFile(path), QByteArray("kept"));

    file.setPath(path);
    QCOMPARE(file.error(), int(File::NoError));
    QVERIFY(file.open());
}

TESSALINE_TEST_MAIN(tst_File)
#include "tst_File.moc"
