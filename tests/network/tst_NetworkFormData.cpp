#include "network/NetworkFilePart.h"
#include "network/NetworkFormData.h"
#include "support/HttpServer.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"

#include <QBuffer>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

class tst_NetworkFormData : public QObject
{
    Q_OBJECT

private slots:
    void newBodyIsOpenEmptyAndReadOnly();
    void appendingTellsThatThereIsMore();
    void pathWithANulIsNotAppended();
    void chainIsReadInOrder_data();
    void chainIsReadInOrder();
    void sizeIsTheSumOfThePieces();
    void positionCountsWhatWasHandedOut();
    void fileIsReadWhole_data();
    void fileIsReadWhole();
    void pieceOfAFileIsRead_data();
    void pieceOfAFileIsRead();
    void fileItselfIsReadUnlessAPieceIsAskedFor_data();
    void fileItselfIsReadUnlessAPieceIsAskedFor();
    void whatIsNoReadableFileIsRefused_data();
    void whatIsNoReadableFileIsRefused();
    void pathIsTakenAsGiven();
    void progressIsThePartReadSoFar();
    void progressOfAnEmptyChainIsZeroUntilItsEnd();
    void abortedBodyReadsAsEnded();
    void clearEmptiesTheChainButNotTheAbort();
    void clearClosesTheFilesAtOnce();
    void clearFromAProgressHandlerEndsTheRead();
    void bodyOfAFileThatShrinksEndsEarly();
    void bodyOfAFileThatGrowsKeepsItsLength_data();
    void bodyOfAFileThatGrowsKeepsItsLength();
    void fileThatVanishesIsReadToItsEnd();
    void bodyCannotBeReadTwice();
    void writingIsRefused();

private:
    QString makeFile(const QString &name, const QByteArray &bytes);

    QTemporaryDir m_dir;
};

QString tst_NetworkFormData::makeFile(const QString &name, const QByteArray &bytes)
{
    QFile file(m_dir.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("Can't write %s", qPrintable(file.fileName()));
    return file.fileName();
}

void tst_NetworkFormData::newBodyIsOpenEmptyAndReadOnly()
{
    NetworkFormData form;
    QCOMPARE(form.openMode(), QIODevice::ReadOnly);
    QVERIFY(!form.isSequential());
    QCOMPARE(form.size(), qint64(0));
    QCOMPARE(form.pos(), qint64(0));
    QVERIFY(form.atEnd());
}

void tst_NetworkFormData::appendingTellsThatThereIsMore()
{
    NetworkFormData form;
    QBuffer device;
    device.open(QIODevice::ReadOnly);
    QSignalSpy more(&form, &QIODevice::readyRead);

    QVERIFY(form.append("bytes"));
    QVERIFY(form.appendDevice(&device));
    QVERIFY(form.appendPath(makeFile("file", "x"), 0, -1));
    QVERIFY(form.appendPath(makeFile("file", "x"), 0, 1));

    QCOMPARE(more.count(), 4);
}

// Another file than the one of that name would go to the server.
void tst_NetworkFormData::pathWithANulIsNotAppended()
{
    NetworkFormData form;
    const LogCapture log;
    QVERIFY(!form.appendPath(makeFile("file", "secret") + QChar(0) + ".txt", 0, -1));
    QVERIFY(form.readAll().isEmpty());
}

void tst_NetworkFormData::chainIsReadInOrder_data()
{
    QTest::addColumn<int>("step");
    for (const int step : {1, 2, 3, 10, 100, 16384, 100000})
        QTest::addRow("%d bytes at a time", step) << step;
}

void tst_NetworkFormData::chainIsReadInOrder()
{
    QFETCH(int, step);
    const QByteArray fileBytes = HttpServer::pattern(40000);
    QBuffer device;
    device.setData("device");
    device.open(QIODevice::ReadOnly);
    NetworkFormData form;
    form.append("first,");
    form.append("");
    form.appendPath(makeFile("whole", fileBytes), 0, -1);
    form.appendPath(makeFile("empty", ""), 0, -1);
    form.appendPath(makeFile("part", "0123456789"), 3, 4);
    form.appendDevice(&device);
    form.append(",last");

    QByteArray read;
    while (!form.atEnd())
        read += form.read(step);

    const QByteArray expected = "first," + fileBytes + "3456device,last";
    QCOMPARE(read.size(), expected.size());
    QVERIFY(read == expected);
}

void tst_NetworkFormData::sizeIsTheSumOfThePieces()
{
    NetworkFormData form;
    form.append("12345");
    QCOMPARE(form.size(), qint64(5));
    form.appendPath(makeFile("file", "0123456789"), 0, -1);
    QCOMPARE(form.size(), qint64(15));
    form.appendPath(makeFile("part", "0123456789"), 8, 100);
    QCOMPARE(form.size(), qint64(17));
    form.appendPath(makeFile("part", "0123456789"), 10, -1);
    QCOMPARE(form.size(), qint64(17));
}

void tst_NetworkFormData::positionCountsWhatWasHandedOut()
{
    NetworkFormData form;
    form.append("12345");
    form.append("67890");
    // As large as a read gets that the device serves directly, without its buffer.
    QByteArray bytes(16384, '\0');
    QCOMPARE(form.read(bytes.data(), bytes.size()), qint64(10));
    QCOMPARE(form.pos(), qint64(10));
}

void tst_NetworkFormData::fileIsReadWhole_data()
{
    QTest::addColumn<int>("size");
    for (const int size : {0, 1, 16383, 16384, 16385, 1000000})
        QTest::addRow("%d bytes", size) << size;
}

void tst_NetworkFormData::fileIsReadWhole()
{
    QFETCH(int, size);
    const QByteArray bytes = HttpServer::pattern(size);
    NetworkFormData form;
    QVERIFY(form.appendPath(makeFile("file", bytes), 0, -1));
    QCOMPARE(form.size(), qint64(size));
    QVERIFY(form.readAll() == bytes);
    QVERIFY(form.atEnd());
}

void tst_NetworkFormData::pieceOfAFileIsRead_data()
{
    QTest::addColumn<qint64>("offset");
    QTest::addColumn<qint64>("size");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("first ten") << qint64(0) << qint64(10) << QByteArray("0123456789");
    QTest::newRow("from an offset") << qint64(8) << qint64(-1) << QByteArray("89abcdef");
    QTest::newRow("between") << qint64(3) << qint64(2) << QByteArray("34");
    QTest::newRow("beyond the end") << qint64(16) << qint64(3) << QByteArray();
    QTest::newRow("clipped") << qint64(14) << qint64(10) << QByteArray("ef");
    QTest::newRow("negative offset") << qint64(-1) << qint64(2) << QByteArray("01");
    QTest::newRow("negative size") << qint64(2) << qint64(-2) << QByteArray();
}

void tst_NetworkFormData::pieceOfAFileIsRead()
{
    QFETCH(qint64, offset);
    QFETCH(qint64, size);
    QFETCH(QByteArray, expected);
    NetworkFormData form;
    form.append("<");
    QVERIFY(form.appendPath(makeFile("file", "0123456789abcdef"), offset, size));
    form.append(">");
    QCOMPARE(form.size(), qint64(expected.size() + 2));
    QCOMPARE(form.readAll(), '<' + expected + '>');
}

void tst_NetworkFormData::fileItselfIsReadUnlessAPieceIsAskedFor_data()
{
    QTest::addColumn<qint64>("offset");
    QTest::addColumn<qint64>("size");
    QTest::addColumn<int>("parts");
    QTest::newRow("whole") << qint64(0) << qint64(-1) << 0;
    QTest::newRow("first ten") << qint64(0) << qint64(10) << 1;
    QTest::newRow("as many as there are") << qint64(0) << qint64(16) << 1;
    QTest::newRow("from an offset") << qint64(6) << qint64(-1) << 1;
}

void tst_NetworkFormData::fileItselfIsReadUnlessAPieceIsAskedFor()
{
    QFETCH(qint64, offset);
    QFETCH(qint64, size);
    QFETCH(int, parts);
    NetworkFormData form;
    QVERIFY(form.appendPath(makeFile("file", "0123456789abcdef"), offset, size));
    QCOMPARE(form.findChildren<QFile *>().size(), 1);
    QCOMPARE(form.findChildren<NetworkFilePart *>().size(), parts);

    const QPointer<NetworkFilePart> part = form.findChild<NetworkFilePart *>();
    form.clear();
    QVERIFY(!part || !part->isOpen());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(part.isNull());
}

void tst_NetworkFormData::whatIsNoReadableFileIsRefused_data()
{
    QTest::addColumn<QString>("path");
    const QString pipe = m_dir.filePath("pipe");
    QVERIFY(::mkfifo(QFile::encodeName(pipe).constData(), 0600) == 0);

    QTest::newRow("missing") << m_dir.filePath("missing");
    QTest::newRow("empty path") << QString();
    QTest::newRow("folder") << m_dir.path();
    QTest::newRow("pipe, which would block") << pipe;
    QTest::newRow("device without an end") << "/dev/zero";
}

void tst_NetworkFormData::whatIsNoReadableFileIsRefused()
{
    QFETCH(QString, path);
    NetworkFormData form;
    LogCapture log;
    QVERIFY(!form.appendPath(path, 0, -1));
    QCOMPARE(log.count(QtDebugMsg, "default",
                       "bool NetworkFormData::appendPath(const QString&, qint64, qint64) "
                       "Cannot open: "),
             1);
    QCOMPARE(log.count(QtDebugMsg, "default", '"' + path + '"'), 1);
    QCOMPARE(form.size(), qint64(0));
}

void tst_NetworkFormData::pathIsTakenAsGiven()
{
    QFile file(QDir::home().filePath("in-home"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    NetworkFormData form;
    QVERIFY(form.appendPath(file.fileName(), 0, -1));
    QVERIFY(!form.appendPath("~/in-home", 0, -1));
    QVERIFY(!form.appendPath("$HOME/in-home", 0, -1));
    QVERIFY(!form.appendPath(QUrl::fromLocalFile(file.fileName()).toString(), 0, -1));

    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(QDir::homePath()));
    const bool relative = form.appendPath("in-home", 0, -1);
    QVERIFY(QDir::setCurrent(before));
    QVERIFY(relative);
}

void tst_NetworkFormData::progressIsThePartReadSoFar()
{
    NetworkFormData form;
    form.append(QByteArray(16384, 'a'));
    form.append(QByteArray(16384, 'b'));
    form.append(QByteArray(32768, 'c'));
    QSignalSpy progress(&form, &NetworkFormData::readProgress);
    QByteArray bytes(32768, '\0');

    form.read(bytes.data(), 16384);
    QCOMPARE(progress.takeFirst().at(0).toDouble(), 0.25); // of the device
    QCOMPARE(progress.takeFirst().at(0).toDouble(), 0.25); // of the whole read
    QVERIFY(progress.isEmpty());

    form.read(bytes.data(), 32768); // spans two devices
    QCOMPARE(progress.takeFirst().at(0).toDouble(), 0.5);
    QCOMPARE(progress.takeFirst().at(0).toDouble(), 0.75);
    QCOMPARE(progress.takeFirst().at(0).toDouble(), 0.75);
    QVERIFY(progress.isEmpty());

    form.read(bytes.data(), 16384);
    QCOMPARE(progress.takeLast().at(0).toDouble(), 1.0);
    progress.clear();
    QCOMPARE(form.read(bytes.data(), 16384), qint64(0));
    QCOMPARE(progress.last().at(0).toDouble(), 1.0);
}

void tst_NetworkFormData::progressOfAnEmptyChainIsZeroUntilItsEnd()
{
    NetworkFormData form;
    form.append("");
    QSignalSpy progress(&form, &NetworkFormData::readProgress);
    QCOMPARE(form.readAll(), QByteArray());
    char byte = 0;
    form.read(&byte, 1);
    QVERIFY(!progress.isEmpty());
    QCOMPARE(progress.first().at(0).toDouble(), 0.0);
    form.read(&byte, 1);
    QCOMPARE(progress.last().at(0).toDouble(), 1.0);
}

void tst_NetworkFormData::abortedBodyReadsAsEnded()
{
    NetworkFormData form;
    form.append(QByteArray(40000, 'x'));
    QByteArray bytes(16384, '\0');
    QCOMPARE(form.read(bytes.data(), 16384), qint64(16384));
    QSignalSpy progress(&form, &NetworkFormData::readProgress);

    form.setAborted(true);

    QCOMPARE(form.read(bytes.data(), 16384), qint64(0));
    QCOMPARE(progress.count(), 1);
    QCOMPARE(progress.first().at(0).toDouble(), 1.0);
}

void tst_NetworkFormData::clearEmptiesTheChainButNotTheAbort()
{
    NetworkFormData form;
    form.append(QByteArray(20000, 'x'));
    QByteArray bytes(16384, '\0');
    form.read(bytes.data(), 16384);
    form.setAborted(true);

    form.clear();

    QCOMPARE(form.size(), qint64(0));
    QCOMPARE(form.pos(), qint64(0));
    form.append(QByteArray(20000, 'y'));
    QCOMPARE(form.read(bytes.data(), 16384), qint64(0));
}

void tst_NetworkFormData::clearClosesTheFilesAtOnce()
{
    NetworkFormData form;
    form.appendPath(makeFile("a", "a"), 0, -1);
    form.appendPath(makeFile("b", "b"), 0, 1);
    const QList<QPointer<QFile>> files = [&form] {
        QList<QPointer<QFile>> list;
        const QList<QFile *> children = form.findChildren<QFile *>();
        for (QFile *file : children)
            list.append(file);
        return list;
    }();
    QCOMPARE(files.size(), 2);

    form.clear();

    for (const QPointer<QFile> &file : files)
        QVERIFY(!file->isOpen());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    for (const QPointer<QFile> &file : files)
        QVERIFY(file.isNull());
}

void tst_NetworkFormData::clearFromAProgressHandlerEndsTheRead()
{
    NetworkFormData form;
    form.append("12345");
    form.appendPath(makeFile("a", "67890"), 0, -1);
    form.append("more");
    connect(&form, &NetworkFormData::readProgress, &form, &NetworkFormData::clear);
    QByteArray bytes(16384, '\0');
    QCOMPARE(form.read(bytes.data(), 16384), qint64(5));
    QCOMPARE(form.read(bytes.data(), 16384), qint64(0));
}

void tst_NetworkFormData::bodyOfAFileThatShrinksEndsEarly()
{
    const QString path = makeFile("file", QByteArray(100000, 'x'));
    NetworkFormData form;
    form.appendPath(path, 0, -1);
    form.appendPath(path, 50000, -1);
    form.append("end");
    QByteArray bytes(16384, '\0');
    QCOMPARE(form.read(bytes.data(), 16384), qint64(16384));

    QVERIFY(QFile::resize(path, 20000));

    QByteArray rest;
    while (!form.atEnd() && rest.size() < 200000)
        rest += form.read(16384);
    QCOMPARE(rest, QByteArray(20000 - 16384, 'x') + "end");
}

void tst_NetworkFormData::bodyOfAFileThatGrowsKeepsItsLength_data()
{
    QTest::addColumn<qint64>("offset");
    QTest::addColumn<qint64>("size");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("whole") << qint64(0) << qint64(-1) << QByteArray("0123456789");
    QTest::newRow("rest") << qint64(4) << qint64(-1) << QByteArray("456789");
    QTest::newRow("clipped to its end") << qint64(4) << qint64(100) << QByteArray("456789");
    QTest::newRow("beyond its end") << qint64(20) << qint64(-1) << QByteArray();
}

void tst_NetworkFormData::bodyOfAFileThatGrowsKeepsItsLength()
{
    // A log file, say: the length is announced before the first byte is read.
    QFETCH(qint64, offset);
    QFETCH(qint64, size);
    QFETCH(QByteArray, expected);
    for (const int before : {0, 8}) {
        const QString path = makeFile("growing", "0123456789");
        NetworkFormData form;
        form.append("first,");
        QVERIFY(form.appendPath(path, offset, size));
        form.append(",last");
        const qint64 length = form.size();
        const QByteArray whole = "first," + expected + ",last";
        QCOMPARE(length, qint64(whole.size()));
        QSignalSpy progress(&form, &NetworkFormData::readProgress);

        QByteArray read = form.read(before);
        QFile file(path);
        QVERIFY(file.open(QIODevice::Append));
        file.write(QByteArray(100000, 'x'));
        file.close();
        read += form.read(200000);

        QCOMPARE(read, whole);
        QCOMPARE(form.size(), length);
        QVERIFY(form.atEnd());
        QCOMPARE(progress.last().first().toDouble(), 1.0);
    }
}

void tst_NetworkFormData::fileThatVanishesIsReadToItsEnd()
{
    const QByteArray bytes = HttpServer::pattern(50000);
    const QString path = makeFile("file", bytes);
    NetworkFormData form;
    form.appendPath(path, 0, -1);
    QByteArray read = form.read(16384);
    QVERIFY(QFile::remove(path));
    read += form.readAll();
    QVERIFY(read == bytes);
}

void tst_NetworkFormData::bodyCannotBeReadTwice()
{
    NetworkFormData form;
    form.append(QByteArray(16384, 'x'));
    QVERIFY(form.reset()); // nothing was read yet
    QCOMPARE(form.read(16384).size(), 16384);
    QVERIFY(!form.reset());
    form.seek(0);
    QCOMPARE(form.read(16384).size(), 0);
}

void tst_NetworkFormData::writingIsRefused()
{
    NetworkFormData form;
    QTest::ignoreMessage(QtWarningMsg, "QIODevice::write (NetworkFormData): ReadOnly device");
    QCOMPARE(form.write("x"), qint64(-1));
}

TESSALINE_TEST_MAIN(tst_NetworkFormData)
#include "tst_NetworkFormData.moc"
