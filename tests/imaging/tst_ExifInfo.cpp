#include "ExifBlock.h"
#include "imaging/ExifInfo.h"
#include "plugin/FileUtility.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>

class tst_ExifInfo : public QObject
{
    Q_OBJECT

private slots:
    void coordinatesInAllQuadrants_data();
    void coordinatesInAllQuadrants();
    void altitudeBelowTheSeaIsPositive();
    void altitudeOfOtherTypes_data();
    void altitudeOfOtherTypes();
    void valuesBecomeWhatScriptsUse_data();
    void valuesBecomeWhatScriptsUse();
    void quotientOfNothingIsNaN();
    void absentTagsAreInvalid();
    void filesWithoutExifAreAllTheSame_data();
    void filesWithoutExifAreAllTheSame();
    void samePathLoadsAndSignalsOnce();
    void pathThatResolvesToThePresentOneLoadsAgain();
    void urlLoadsAndSignals();
    void signalsComeInOrderWithoutPermissions();
    void constructorWithAPathLoads();
    void changedFileIsNotNoticed();
    void logPrintsAllTags();
    void logWithoutExif();

private:
    QString picture(const QByteArray &block, const char *name = "picture.jpg");

    QTemporaryDir m_folder;
};

namespace {

// A GPS table of a reference text and three rationals, or fewer.
QByteArray gpsBlock(int refTag, const QByteArray &ref, const QVector<quint32> &parts)
{
    const bool hasRef = !ref.isNull();
    const int gpsAt = 8 + 2 + 12 + 4;
    const int valuesAt = gpsAt + 2 + (hasRef ? 24 : 12);
    ExifBlock block;
    block.u32(8).u16(1).entry(34853, 4, 1, gpsAt).u32(0);
    block.u16(hasRef ? 2 : 1);
    if (hasRef)
        block.rawEntry(refTag, 2, ref.size() + 1, (ref + QByteArray(4, '\0')).left(4));
    block.entry(refTag + 1, 5, parts.size() / 2, valuesAt);
    for (const quint32 part : parts)
        block.u32(part);
    return block;
}

// An image table with the Make tag alone.
QByteArray makeBlock(int type, quint32 count, const QByteArray &field, const QByteArray &rest = {})
{
    ExifBlock block;
    block.u32(8).u16(1);
    if (rest.isEmpty())
        block.rawEntry(271, type, count, field);
    else
        block.entry(271, type, count, 26);
    return block.u32(0).raw(rest);
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("%s can't be written", qPrintable(path));
}

bool same(double a, double b)
{
    return (std::isnan(a) && std::isnan(b)) || a == b;
}

} // namespace

QString tst_ExifInfo::picture(const QByteArray &block, const char *name)
{
    const QString path = m_folder.filePath(name);
    writeFile(path, jpegWithExif(block));
    return path;
}

void tst_ExifInfo::coordinatesInAllQuadrants_data()
{
    QTest::addColumn<QByteArray>("ref");
    QTest::addColumn<QVector<quint32>>("parts");
    QTest::addColumn<double>("latitude");
    QTest::addColumn<double>("longitude");
    const QVector<quint32> parts{10, 1, 30, 1, 0, 1};
    QTest::newRow("north") << QByteArray("N") << parts << 10.5 << 10.5;
    QTest::newRow("south") << QByteArray("S") << parts << -10.5 << 10.5;
    QTest::newRow("west") << QByteArray("W") << parts << 10.5 << -10.5;
    QTest::newRow("only the first letter") << QByteArray("SW") << parts << -10.5 << 10.5;
    QTest::newRow("second letter") << QByteArray("NS") << parts << 10.5 << 10.5;
    QTest::newRow("lower case") << QByteArray("s") << parts << 10.5 << 10.5;
    QTest::newRow("empty ref") << QByteArray("") << parts << 10.5 << 10.5;
    QTest::newRow("no ref") << QByteArray() << parts << 10.5 << 10.5;
    QTest::newRow("seconds") << QByteArray() << QVector<quint32>{1, 1, 0, 1, 3600, 2} << 1.5 << 1.5;
    QTest::newRow("a fourth part")
        << QByteArray() << (parts + QVector<quint32>{9, 1}) << 10.5 << 10.5;
    QTest::newRow("two parts") << QByteArray() << parts.mid(0, 4) << qQNaN() << qQNaN();
    QTest::newRow("infinity") << QByteArray() << QVector<quint32>{1, 0, 0, 1, 0, 1} << qInf()
                              << qInf();
    QTest::newRow("nought by nought")
        << QByteArray() << QVector<quint32>{1, 1, 0, 0, 0, 1} << qQNaN() << qQNaN();
}

void tst_ExifInfo::coordinatesInAllQuadrants()
{
    QFETCH(QByteArray, ref);
    QFETCH(QVector<quint32>, parts);
    QFETCH(double, latitude);
    QFETCH(double, longitude);

    const ExifInfo north(picture(gpsBlock(1, ref, parts)));
    QVERIFY(north.isExifValid());
    QVERIFY(same(north.gpsLatitude(), latitude));
    QVERIFY(std::isnan(north.gpsLongitude()));

    const ExifInfo east(picture(gpsBlock(3, ref, parts)));
    QVERIFY(same(east.gpsLongitude(), longitude));
    QVERIFY(std::isnan(east.gpsLatitude()));
}

void tst_ExifInfo::altitudeBelowTheSeaIsPositive()
{
    const ExifBlock block = ExifBlock()
                                .u32(8)
                                .u16(1)
                                .entry(34853, 4, 1, 26)
                                .u32(0)
                                .u16(2)
                                .rawEntry(5, 1, 1, QByteArray("\1\0\0\0", 4))
                                .entry(6, 5, 1, 52)
                                .u32(25)
                                .u32(2);
    const ExifInfo info(picture(block));
    QCOMPARE(info.gpsValue(5).toInt(), 1);
    QCOMPARE(info.gpsAltitude(), 12.5);
}

void tst_ExifInfo::altitudeOfOtherTypes_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<quint32>("count");
    QTest::addColumn<double>("altitude");
    QTest::newRow("byte") << 1 << 1u << 254.0;
    QTest::newRow("short") << 3 << 1u << 65534.0;
    QTest::newRow("long") << 4 << 1u << 4294967294.0;
    QTest::newRow("signed long") << 9 << 1u << -2.0;
    QTest::newRow("two shorts") << 3 << 2u << qQNaN();
    QTest::newRow("no long") << 4 << 0u << qQNaN();
    QTest::newRow("text") << 2 << 1u << qQNaN();
    QTest::newRow("undefined") << 7 << 1u << qQNaN();
}

void tst_ExifInfo::altitudeOfOtherTypes()
{
    QFETCH(int, type);
    QFETCH(quint32, count);
    QFETCH(double, altitude);
    const ExifBlock block = ExifBlock()
                                .u32(8)
                                .u16(1)
                                .entry(34853, 4, 1, 26)
                                .u32(0)
                                .u16(1)
                                .entry(6, type, count, 0xfffffffe);
    QVERIFY(same(ExifInfo(picture(block)).gpsAltitude(), altitude));
}

void tst_ExifInfo::valuesBecomeWhatScriptsUse_data()
{
    QTest::addColumn<QByteArray>("block");
    QTest::addColumn<QVariant>("value");
    const auto hex = [](const char *text) { return QByteArray::fromHex(text); };
    const auto list = [](const QVariantList &values) { return QVariant(values); };
    QTest::newRow("byte") << makeBlock(1, 1, hex("fe000000")) << QVariant(254);
    QTest::newRow("bytes") << makeBlock(1, 2, hex("fe010000")) << list({254, 1});
    QTest::newRow("no byte") << makeBlock(1, 0, hex("fe010000")) << QVariant(0);
    QTest::newRow("short") << makeBlock(3, 1, hex("feff0000")) << QVariant(65534);
    QTest::newRow("shorts") << makeBlock(3, 2, hex("feff0100")) << list({65534, 1});
    QTest::newRow("long") << makeBlock(4, 1, hex("feffffff")) << QVariant(4294967294u);
    QTest::newRow("longs") << makeBlock(4, 2, {}, hex("feffffff01000000"))
                           << list({4294967294u, 1u});
    QTest::newRow("signed long") << makeBlock(9, 1, hex("feffffff")) << QVariant(-2);
    QTest::newRow("signed longs") << makeBlock(9, 2, {}, hex("feffffff01000000")) << list({-2, 1});
    QTest::newRow("rational") << makeBlock(5, 1, {}, hex("0100000002000000")) << QVariant(0.5);
    QTest::newRow("rationals") << makeBlock(5, 2, {}, hex("01000000020000000300000004000000"))
                               << list({0.5, 0.75});
    QTest::newRow("signed rational")
        << makeBlock(10, 1, {}, hex("ffffffff02000000")) << QVariant(-0.5);
    QTest::newRow("signed rationals")
        << makeBlock(10, 2, {}, hex("ffffffff020000000300000004000000")) << list({-0.5, 0.75});
    QTest::newRow("empty text") << makeBlock(2, 1, hex("00000000")) << QVariant(QString(""));
    QTest::newRow("one letter is a list")
        << makeBlock(2, 2, hex("61000000")) << list({QString("a")});
    QTest::newRow("text is a list")
        << makeBlock(2, 6, {}, QByteArray("Maker\0", 6)) << list({QString("Maker")});
    QTest::newRow("undefined byte")
        << makeBlock(7, 1, hex("61000000")) << QVariant(QByteArray("a"));
    QTest::newRow("undefined bytes are a list")
        << makeBlock(7, 4, "0230") << list({QByteArray("0230")});
    QTest::newRow("no short") << makeBlock(3, 0, hex("feff0000")) << QVariant(0);
    QTest::newRow("no long") << makeBlock(4, 0, hex("feffffff")) << QVariant(0u);
    QTest::newRow("no signed long") << makeBlock(9, 0, hex("feffffff")) << QVariant(0);
    QTest::newRow("no undefined byte")
        << makeBlock(7, 0, hex("61000000")) << QVariant(QByteArray(""));
    QTest::newRow("quotient by zero is infinite")
        << makeBlock(5, 1, {}, hex("0100000000000000")) << QVariant(qInf());
    QTest::newRow("type outside the table") << makeBlock(6, 1, "0230") << QVariant(0);
}

void tst_ExifInfo::valuesBecomeWhatScriptsUse()
{
    QFETCH(QByteArray, block);
    QFETCH(QVariant, value);
    LogCapture log; // the type outside the table is warned about
    const ExifInfo info(picture(block));
    QCOMPARE(info.imageTags(), QList<int>({271}));
    QCOMPARE(info.imageValue(271).type(), value.type());
    QCOMPARE(info.imageValue(271), value);
    const QVariantList elements = info.imageValue(271).toList();
    for (int i = 0; i < elements.size(); ++i)
        QCOMPARE(elements.at(i).type(), value.toList().at(i).type());
}

void tst_ExifInfo::quotientOfNothingIsNaN()
{
    for (const int type : {5, 10}) {
        const ExifInfo none(picture(makeBlock(type, 0, "abcd")));
        QCOMPARE(none.imageValue(271).type(), QVariant::Double);
        QVERIFY(std::isnan(none.imageValue(271).toDouble()));
        const ExifInfo zeros(picture(makeBlock(type, 1, {}, QByteArray(8, '\0'))));
        QCOMPARE(zeros.imageValue(271).type(), QVariant::Double);
        QVERIFY(std::isnan(zeros.imageValue(271).toDouble()));
    }
}

void tst_ExifInfo::absentTagsAreInvalid()
{
    const ExifInfo info(picture(makeBlock(3, 1, "ab")));
    for (const int tag : {0, -1, 272, 65536 + 271, 0x7fffffff}) {
        QVERIFY(!info.imageValue(tag).isValid());
        QVERIFY(!info.extendedValue(tag).isValid());
        QVERIFY(!info.gpsValue(tag).isValid());
    }
}

void tst_ExifInfo::filesWithoutExifAreAllTheSame_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("PNG") << QByteArray("\x89PNG\r\n\x1a\n");
    QTest::newRow("text") << QByteArray("words");
    QTest::newRow("JPEG without EXIF") << QByteArray("\xFF\xD8" + jfifSegment() + jpegRest());
    QTest::newRow("identifier 43") << jpegWithExif(QByteArray("II+\0\10\0\0\0\0\0", 10));
    QTest::newRow("folder") << QByteArray();
}

void tst_ExifInfo::filesWithoutExifAreAllTheSame()
{
    QFETCH(QByteArray, bytes);
    const QString path = bytes.isEmpty() ? m_folder.path() : m_folder.filePath("none.jpg");
    if (!bytes.isEmpty())
        writeFile(path, bytes);
    ExifInfo info(picture(gpsBlock(1, "S", {10, 1, 30, 1, 0, 1})));
    QVERIFY(info.isExifValid());

    LogCapture log;
    info.setFilePath(path);
    QVERIFY2(log.messages().isEmpty(), qPrintable(log.dump()));
    QVERIFY(info.exists());
    QVERIFY(!info.isExifValid());
    QVERIFY(info.imageTags().isEmpty());
    QVERIFY(info.extendedTags().isEmpty());
    QVERIFY(info.gpsTags().isEmpty());
    QVERIFY(std::isnan(info.gpsLatitude()));
    QVERIFY(std::isnan(info.gpsLongitude()));
    QVERIFY(std::isnan(info.gpsAltitude()));
}

void tst_ExifInfo::samePathLoadsAndSignalsOnce()
{
    const QString path = picture(makeBlock(3, 1, "ab"));
    ExifInfo info;
    QSignalSpy spy(&info, &ExifInfo::exifChanged);
    info.setFilePath(path);
    info.setFilePath(path);
    info.setUrl(info.url());
    QCOMPARE(spy.count(), 1);
}

void tst_ExifInfo::pathThatResolvesToThePresentOneLoadsAgain()
{
    picture(makeBlock(3, 1, "ab"));
    FileUtility::setPathVariable("EXIFINFO_TEST", m_folder.path());
    ExifInfo info;
    QSignalSpy spy(&info, &ExifInfo::exifChanged);
    info.setFilePath("$EXIFINFO_TEST/picture.jpg");
    QCOMPARE(info.filePath(), m_folder.filePath("picture.jpg"));
    info.setFilePath("$EXIFINFO_TEST/picture.jpg");
    QCOMPARE(spy.count(), 2);
}

void tst_ExifInfo::urlLoadsAndSignals()
{
    ExifInfo info;
    QSignalSpy spy(&info, &ExifInfo::exifChanged);
    QVERIFY(info.setProperty("url", QUrl::fromLocalFile(picture(makeBlock(3, 1, "ab")))));
    QCOMPARE(spy.count(), 1);
    QVERIFY(info.isExifValid());
}

void tst_ExifInfo::signalsComeInOrderWithoutPermissions()
{
    ExifInfo info;
    QStringList calls;
    connect(&info, &FileInfo::filePathChanged, &info,
            [&] { calls.append(info.isExifValid() ? "path, loaded" : "path"); });
    connect(&info, &ExifInfo::exifChanged, &info, [&] { calls.append("exif"); });
    connect(&info, &FileInfo::permissionsChanged, &info, [&] { calls.append("permissions"); });
    QVERIFY(info.setProperty("filePath", picture(makeBlock(3, 1, "ab"))));
    QCOMPARE(calls, QStringList({"path, loaded", "exif"}));

    calls.clear();
    const QString other = picture(makeBlock(3, 1, "ab"), "other.jpg");
    QVERIFY(info.setProperty("url", QUrl::fromLocalFile(other)));
    QCOMPARE(calls, QStringList({"path, loaded", "exif"}));
    QCOMPARE(info.filePath(), other);

    calls.clear();
    info.setFilePath(m_folder.filePath("missing.jpg"));
    QCOMPARE(calls, QStringList({"path", "exif"}));
}

void tst_ExifInfo::constructorWithAPathLoads()
{
    picture(makeBlock(3, 1, "ab"));
    FileUtility::setPathVariable("EXIFINFO_TEST", m_folder.path());
    QObject parent;
    const ExifInfo info(QString("$EXIFINFO_TEST/picture.jpg"), &parent);
    QCOMPARE(info.parent(), &parent);
    QVERIFY(info.isExifValid());
    QVERIFY(!ExifInfo().isExifValid());
    QVERIFY(!ExifInfo(m_folder.filePath("missing.jpg")).isExifValid());
}

void tst_ExifInfo::changedFileIsNotNoticed()
{
    const QString path = picture(makeBlock(3, 1, "ab"), "changing.jpg");
    ExifInfo info(path);
    writeFile(path, "words");
    info.refresh();
    QVERIFY(info.isExifValid());
    QCOMPARE(info.imageTags(), QList<int>({271}));
}

void tst_ExifInfo::logPrintsAllTags()
{
    const ExifInfo image(picture(makeBlock(3, 1, QByteArray("\7\0\0\0", 4)), "image.jpg"));
    const ExifInfo extended(picture(
        ExifBlock().u32(8).u16(1).entry(34665, 4, 1, 26).u32(0).u16(1).entry(34855, 3, 1, 400),
        "extended.jpg"));
    const ExifInfo gps(picture(gpsBlock(1, "S", {10, 1, 30, 1, 0, 1}), "gps.jpg"));
    LogCapture log;
    image.log();
    QStringList lines;
    for (const LogCapture::Message &message : log.messages()) {
        QCOMPARE(message.type, QtDebugMsg);
        lines.append(message.text);
    }
    QCOMPARE(lines, QStringList({"Image tags", "imageTag 271 type 3 count 1 = QVariant(int, 7)",
                                 "Extended tags", "GPS tags"}));
    log.clear();
    extended.log();
    lines.clear();
    for (const LogCapture::Message &message : log.messages())
        lines.append(message.text);
    QCOMPARE(lines,
             QStringList({"Image tags", "Extended tags",
                          "extendedTag 34855 type 3 count 1 = QVariant(int, 400)", "GPS tags"}));
    QCOMPARE(extended.extendedValue(34855), QVariant(400));
    gps.log();
    QCOMPARE(log.count(QtDebugMsg, "default", "gpsTag 1 type 2 count 2 = "), 1);
    QCOMPARE(log.count(QtDebugMsg, "default", "gpsTag 2 type 5 count 3 = "), 1);
}

void tst_ExifInfo::logWithoutExif()
{
    LogCapture log;
    ExifInfo().log();
    QCOMPARE(log.messages().size(), 1);
    QCOMPARE(log.count(QtDebugMsg, "default", "No EXIF info"), 1);
}

TESSALINE_TEST_MAIN(tst_ExifInfo)
#include "tst_ExifInfo.moc"
