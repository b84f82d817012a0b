#include "network/NetworkFilePart.h"
#include "support/IsolatedHome.h"

#include <QBuffer>
#include <QTest>

class tst_NetworkFilePart : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void partIsTheDevicesChild();
    void partIsReadOnlyAndRandomAccess();
    void pieceIsRead_data();
    void pieceIsRead();
    void pieceIsReadInSmallSteps_data();
    void pieceIsReadInSmallSteps();
    void positionIsRelativeToTheOffset();
    void sizeFollowsAShrinkingDevice();
    void noDeviceReadsAsEmpty();

private:
    QByteArray m_bytes;
    QBuffer m_buffer;
};

void tst_NetworkFilePart::init()
{
    m_buffer.close();
    m_bytes = "0123456789";
    m_buffer.setBuffer(&m_bytes);
    m_buffer.open(QIODevice::ReadOnly);
}

void tst_NetworkFilePart::partIsTheDevicesChild()
{
    auto *device = new QBuffer;
    const QPointer<NetworkFilePart> part(new NetworkFilePart(device, 0, -1));
    QCOMPARE(part->parent(), device);
    delete device;
    QVERIFY(part.isNull());
}

void tst_NetworkFilePart::partIsReadOnlyAndRandomAccess()
{
    NetworkFilePart part(&m_buffer, 2, 3);
    QCOMPARE(part.openMode(), QIODevice::ReadOnly);
    QVERIFY(!part.isSequential());
    QTest::ignoreMessage(QtWarningMsg, "QIODevice::write (NetworkFilePart): ReadOnly device");
    QCOMPARE(part.write("x"), qint64(-1));
    QCOMPARE(m_bytes, QByteArray("0123456789"));
}

void tst_NetworkFilePart::pieceIsRead_data()
{
    QTest::addColumn<qint64>("offset");
    QTest::addColumn<qint64>("size");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("whole") << qint64(0) << qint64(-1) << QByteArray("0123456789");
    QTest::newRow("beginning") << qint64(0) << qint64(4) << QByteArray("0123");
    QTest::newRow("middle") << qint64(3) << qint64(4) << QByteArray("3456");
    QTest::newRow("rest") << qint64(7) << qint64(-1) << QByteArray("789");
    QTest::newRow("up to the end") << qint64(7) << qint64(3) << QByteArray("789");
    QTest::newRow("beyond the end is clipped") << qint64(7) << qint64(4) << QByteArray("789");
    QTest::newRow("huge size doesn't overflow")
        << qint64(7) << std::numeric_limits<qint64>::max() << QByteArray("789");
    QTest::newRow("nothing") << qint64(3) << qint64(0) << QByteArray();
    QTest::newRow("offset at the end") << qint64(10) << qint64(-1) << QByteArray();
    QTest::newRow("offset beyond the end") << qint64(11) << qint64(5) << QByteArray();
    QTest::newRow("negative offset counts as 0")
        << qint64(-5) << qint64(-1) << QByteArray("0123456789");
    QTest::newRow("negative size counts as 0") << qint64(0) << qint64(-7) << QByteArray();
}

void tst_NetworkFilePart::pieceIsRead()
{
    QFETCH(qint64, offset);
    QFETCH(qint64, size);
    QFETCH(QByteArray, expected);

    if (offset > m_bytes.size())
        QTest::ignoreMessage(QtWarningMsg, "QBuffer::seek: Invalid pos: 11");
    NetworkFilePart part(&m_buffer, offset, size);

    QCOMPARE(part.size(), qint64(expected.size()));
    QCOMPARE(part.readAll(), expected);
    QVERIFY(part.atEnd());
    QCOMPARE(part.size(), qint64(expected.size()));
    char more = 0;
    QVERIFY(part.read(&more, 1) <= 0);
}

void tst_NetworkFilePart::pieceIsReadInSmallSteps_data()
{
    QTest::addColumn<int>("step");
    for (const int step : {1, 2, 3, 7, 100})
        QTest::addRow("%d bytes at a time", step) << step;
}

void tst_NetworkFilePart::pieceIsReadInSmallSteps()
{
    QFETCH(int, step);
    NetworkFilePart part(&m_buffer, 2, 7);
    QByteArray read;
    while (!part.atEnd() && read.size() < 100)
        read += part.read(step);
    QCOMPARE(read, QByteArray("2345678"));
}

void tst_NetworkFilePart::positionIsRelativeToTheOffset()
{
    NetworkFilePart part(&m_buffer, 4, -1);
    QCOMPARE(part.pos(), qint64(0));
    QCOMPARE(m_buffer.pos(), qint64(4));
    m_buffer.seek(6);
    QCOMPARE(part.pos(), qint64(2));
}

void tst_NetworkFilePart::sizeFollowsAShrinkingDevice()
{
    NetworkFilePart part(&m_buffer, 4, 5);
    QCOMPARE(part.size(), qint64(5));
    m_bytes.truncate(6);
    QCOMPARE(part.size(), qint64(2));
    QCOMPARE(part.readAll(), QByteArray("45"));
}

void tst_NetworkFilePart::noDeviceReadsAsEmpty()
{
    NetworkFilePart part(nullptr, 3, 5);
    QCOMPARE(part.size(), qint64(0));
    QCOMPARE(part.pos(), qint64(0));
    QCOMPARE(part.readAll(), QByteArray());
}

TESSALINE_TEST_MAIN(tst_NetworkFilePart)
#include "tst_NetworkFilePart.moc"
