#include "ExifBlock.h"
#include "imaging/ExifInfo.h"
#include "support/IsolatedHome.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>

// exiftool and exiv2 read the same pictures and must agree, except where this codec reads or writes
// otherwise on purpose: inline undefined bytes of a big-endian file, a text without its closing
// zero, types that it doesn't know, the tags that point at other tables, EXIF behind XMP, altitudes
// below the sea, what it writes into the second and third table.
class tst_ExifJudges : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void judgesAgree_data();
    void judgesAgree();
    void altitudeBelowTheSeaDiffers();
    void inlineUndefinedOfABigEndianFileDiffers();
    void exifBehindXmpIsNotFound();
    void pillowPicturesAreRead();
    void largeMakerNoteIsRead();
    void judgesAgreeOnALargeMakerNote_data();
    void judgesAgreeOnALargeMakerNote();
    void pictureWithAColorProfileIsReadAndKeepsIt();
    void textWithoutAClosingZeroDiffers();
    void unknownTypesDiffer();
    void pointersAreNoTagsHere();
    void judgesReadWhatIsSaved_data();
    void judgesReadWhatIsSaved();

private:
    QString path(const char *name) const { return m_folder.filePath(QLatin1String(name)); }
    void makePicture(const QString &path, const QStringList &convertOptions,
                     const QStringList &exifOptions);
    void makePicture(const QString &path, const QByteArray &block);
    bool runPillow(const QString &script, const QString &picture);

    QTemporaryDir m_folder;
};

namespace {

// What it prints.
QByteArray run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit)
        qFatal("%s did not run", qPrintable(program));
    return process.readAllStandardOutput();
}

// What exiftool says, as "GROUP:Tag".
QVariantMap exiftool(const QString &path)
{
    const QByteArray json = run("exiftool", {"-j", "-n", "-G1", path});
    return QJsonDocument::fromJson(json).array().first().toObject().toVariantMap();
}

QString exiv2(const QString &path, const QString &key)
{
    return QString::fromLocal8Bit(run("exiv2", {"-K", key, "-Pv", path})).trimmed();
}

QStringList commonTags()
{
    return {"-Make=Maker",
            "-Model=A camera",
            "-Orientation#=6",
            "-ExposureTime=1/60",
            "-FNumber=2.8",
            "-ISO=400",
            "-ExposureCompensation=-1.5",
            "-DateTimeOriginal=2021:12:31 23:59:58"};
}

} // namespace

void tst_ExifJudges::initTestCase()
{
    for (const char *program : {"exiftool", "exiv2", "convert", "python3"}) {
        QVERIFY2(!QStandardPaths::findExecutable(QLatin1String(program)).isEmpty(),
                 qPrintable(QStringLiteral("scripts/setup test installs ") + program));
    }
}

void tst_ExifJudges::makePicture(const QString &path, const QStringList &convertOptions,
                                 const QStringList &exifOptions)
{
    run("convert",
        QStringList{"-size", "64x32", "gradient:", "-strip"} + convertOptions + QStringList{path});
    run("exiftool", QStringList{"-q", "-overwrite_original"} + exifOptions + QStringList{path});
    QVERIFY2(QFile::exists(path), "convert made no picture");
}

// With that block ahead of everything else.
void tst_ExifJudges::makePicture(const QString &path, const QByteArray &block)
{
    makePicture(path, {}, {"-Make=gone"});
    run("exiftool", {"-q", "-overwrite_original", "-EXIF:all=", path});
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QByteArray bytes = file.readAll();
    bytes.insert(2, exifSegment(block));
    file.seek(0);
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

// Whether the script, which finds the picture's path in sys.argv[1], made one.
bool tst_ExifJudges::runPillow(const QString &script, const QString &picture)
{
    // The system's own first: it is the one that has the system's modules.
    for (const char *python : {"/usr/bin/python3", "python3"}) {
        if (!QFile::exists(picture))
            run(python, {"-c", script, picture});
    }
    return QFile::exists(picture);
}

void tst_ExifJudges::judgesAgree_data()
{
    QTest::addColumn<QString>("order");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<double>("latitude");
    QTest::addColumn<double>("longitude");
    const QStringList baseline{"-interlace", "none"};
    const QStringList progressive{"-interlace", "plane"};
    QTest::newRow("II north east") << QString("II") << baseline << 10.5 << 20.25;
    QTest::newRow("MM south east") << QString("MM") << baseline << -10.5 << 20.25;
    QTest::newRow("MM north west") << QString("MM") << progressive << 10.5 << -20.25;
    QTest::newRow("II south west") << QString("II") << progressive << -10.5 << -20.25;
}

void tst_ExifJudges::judgesAgree()
{
    QFETCH(QString, order);
    QFETCH(QStringList, options);
    QFETCH(double, latitude);
    QFETCH(double, longitude);
    const QString picture = path("agree.jpg");
    makePicture(picture, options,
                commonTags()
                    + QStringList{"-ExifByteOrder=" + order,
                                  "-GPSLatitude=" + QString::number(std::abs(latitude)),
                                  QString("-GPSLatitudeRef=") + (latitude < 0 ? "S" : "N"),
                                  "-GPSLongitude=" + QString::number(std::abs(longitude)),
                                  QString("-GPSLongitudeRef=") + (longitude < 0 ? "W" : "E"),
                                  "-GPSAltitude=12.5", "-GPSAltitudeRef#=0"});

    const ExifInfo info(picture);
    QVERIFY(info.isExifValid());
    QCOMPARE(QExifImageHeader(picture).byteOrder(),
             order == "MM" ? QSysInfo::BigEndian : QSysInfo::LittleEndian);
    const QVariantMap judge = exiftool(picture);
    QCOMPARE(info.imageValue(271).toList().first(), judge.value("IFD0:Make"));
    QCOMPARE(info.imageValue(272).toList().first(), judge.value("IFD0:Model"));
    QCOMPARE(info.imageValue(274).toInt(), judge.value("IFD0:Orientation").toInt());
    QVERIFY(
        qAbs(info.extendedValue(33434).toDouble() - judge.value("ExifIFD:ExposureTime").toDouble())
        < 1e-9);
    QCOMPARE(info.extendedValue(33437).toDouble(), judge.value("ExifIFD:FNumber").toDouble());
    QCOMPARE(info.extendedValue(34855).toInt(), judge.value("ExifIFD:ISO").toInt());
    QCOMPARE(info.extendedValue(37380).toDouble(),
             judge.value("ExifIFD:ExposureCompensation").toDouble());
    QCOMPARE(info.extendedValue(36867).toList().first(), judge.value("ExifIFD:DateTimeOriginal"));
    QCOMPARE(info.gpsLatitude(), judge.value("Composite:GPSLatitude").toDouble());
    QCOMPARE(info.gpsLongitude(), judge.value("Composite:GPSLongitude").toDouble());
    QCOMPARE(info.gpsLatitude(), latitude);
    QCOMPARE(info.gpsLongitude(), longitude);
    QCOMPARE(info.gpsAltitude(), judge.value("Composite:GPSAltitude").toDouble());

    QCOMPARE(info.imageValue(271).toList().first().toString(), exiv2(picture, "Exif.Image.Make"));
    QCOMPARE(info.imageValue(274).toString(), exiv2(picture, "Exif.Image.Orientation"));
    QCOMPARE(info.extendedValue(34855).toString(), exiv2(picture, "Exif.Photo.ISOSpeedRatings"));
    QCOMPARE(info.extendedValue(36867).toList().first().toString(),
             exiv2(picture, "Exif.Photo.DateTimeOriginal"));
    QCOMPARE(exiv2(picture, "Exif.GPSInfo.GPSLatitude"), QString("10/1 30/1 0/1"));
}

void tst_ExifJudges::altitudeBelowTheSeaDiffers()
{
    const QString picture = path("below.jpg");
    makePicture(picture, {}, {"-GPSAltitude=12.5", "-GPSAltitudeRef#=1"});
    QCOMPARE(exiftool(picture).value("Composite:GPSAltitude").toDouble(), -12.5);
    QCOMPARE(ExifInfo(picture).gpsAltitude(), 12.5);
}

void tst_ExifJudges::inlineUndefinedOfABigEndianFileDiffers()
{
    const QString picture = path("version.jpg");
    makePicture(picture, {}, {"-ExifByteOrder=MM", "-ExifVersion=0230"});
    QCOMPARE(exiftool(picture).value("ExifIFD:ExifVersion").toString(), QString("0230"));
    const QByteArray version = QSysInfo::ByteOrder == QSysInfo::LittleEndian ? "0320" : "0230";
    QCOMPARE(ExifInfo(picture).extendedValue(36864).toList(), QVariantList({version}));
}

void tst_ExifJudges::exifBehindXmpIsNotFound()
{
    const QString picture = path("xmp.jpg");
    makePicture(picture, {}, {"-Make=Maker", "-XMP:Title=A title"});
    QVERIFY(ExifInfo(picture).isExifValid()); // exiftool puts EXIF first

    QFile file(picture);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QByteArray bytes = file.readAll();
    const QByteArray xmp("\xFF\xE1\x00\x1Fhttp://ns.adobe.com/xap/1.0/\0", 33);
    bytes.insert(2, xmp);
    file.seek(0);
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
    file.close();
    QCOMPARE(exiftool(picture).value("IFD0:Make").toString(), QString("Maker"));
    QVERIFY(!ExifInfo(picture).isExifValid());
}

void tst_ExifJudges::pillowPicturesAreRead()
{
    const QString picture = path("pillow.jpg");
    const char *script = "import sys\n"
                         "from PIL import Image\n"
                         "exif = Image.Exif()\n"
                         "exif[271] = 'Pillow'\n"
                         "exif[274] = 3\n"
                         "Image.new('RGB', (8, 8)).save(sys.argv[1], exif=exif)\n";
    QVERIFY2(runPillow(script, picture), "scripts/setup test installs Pillow");
    const ExifInfo info(picture);
    QCOMPARE(info.imageValue(271).toList(), QVariantList({QString("Pillow")}));
    QCOMPARE(info.imageValue(274).toInt(), 3);
    QCOMPARE(exiftool(picture).value("IFD0:Make").toString(), QString("Pillow"));
}

void tst_ExifJudges::largeMakerNoteIsRead()
{
    const QString picture = path("makernote.jpg");
    QExifImageHeader header;
    QByteArray note(60000, 'n');
    note.replace(0, 4, "note");
    header.setValue(QExifImageHeader::Make, QString("Maker"));
    // Among the image tags, where the codec's offsets are right.
    header.setValue(static_cast<QExifImageHeader::ImageTag>(QExifImageHeader::MakerNote), note);
    makePicture(picture, {}, {"-Model=old"});
    run("exiftool", {"-q", "-overwrite_original", "-JFIF:all=", picture});
    QVERIFY(header.saveToJpeg(picture));
    const ExifInfo info(picture);
    QCOMPARE(info.imageValue(37500).toList(), QVariantList({note}));
}

void tst_ExifJudges::judgesAgreeOnALargeMakerNote_data()
{
    QTest::addColumn<bool>("bigEndian");
    QTest::newRow("II") << false;
    QTest::newRow("MM") << true;
}

void tst_ExifJudges::judgesAgreeOnALargeMakerNote()
{
    QFETCH(bool, bigEndian);
    QByteArray note(60000, 'n');
    note.replace(0, 4, "note");
    ExifBlock block(bigEndian);
    block.u32(8).u16(1).entry(34665, 4, 1, 26).u32(0);              // the image's table
    block.u16(2).entry(34855, 3, 1, bigEndian ? 400u << 16 : 400u); // ISO
    block.entry(37500, 7, 60000, 56).u32(0).raw(note);
    const QString picture = path("note.jpg");
    makePicture(picture, block);

    const ExifInfo info(picture);
    QCOMPARE(info.extendedValue(37500).toList(), QVariantList({note}));
    QCOMPARE(info.extendedValue(34855).toInt(), 400);
    QStringList numbers;
    for (const char byte : note)
        numbers.append(QString::number(byte));
    QCOMPARE(exiv2(picture, "Exif.Photo.MakerNote"), numbers.join(' '));
    QCOMPARE(exiftool(picture).value("ExifIFD:ISO").toInt(), 400);
    QCOMPARE(run("exiftool", {"-b", "-MakerNoteUnknownText", picture}), note);
}

void tst_ExifJudges::pictureWithAColorProfileIsReadAndKeepsIt()
{
    const QString picture = path("profile.jpg");
    const char *script = "import sys\n"
                         "from PIL import Image, ImageCms\n"
                         "exif = Image.Exif()\n"
                         "exif[271] = 'Pillow'\n"
                         "exif[272] = 'A model whose name leaves room'\n"
                         "profile = ImageCms.ImageCmsProfile(ImageCms.createProfile('sRGB'))\n"
                         "Image.new('RGB', (8, 8)).save(sys.argv[1], exif=exif,\n"
                         "                              icc_profile=profile.tobytes())\n";
    QVERIFY2(runPillow(script, picture), "scripts/setup test installs Pillow");
    const QByteArray profile = run("exiftool", {"-b", "-ICC_Profile", picture});
    QVERIFY(profile.size() > 100);
    QCOMPARE(ExifInfo(picture).imageValue(271).toList(), QVariantList({QString("Pillow")}));
    QCOMPARE(exiv2(picture, "Exif.Image.Make"), QString("Pillow"));

    QExifImageHeader header;
    header.setValue(QExifImageHeader::Make, QString("Other"));
    QVERIFY(header.saveToJpeg(picture));
    QCOMPARE(exiv2(picture, "Exif.Image.Make"), QString("Other"));
    QCOMPARE(run("exiftool", {"-b", "-ICC_Profile", picture}), profile);
    QCOMPARE(QImage(picture).size(), QSize(8, 8));
}

void tst_ExifJudges::textWithoutAClosingZeroDiffers()
{
    const QString picture = path("zero.jpg");
    makePicture(picture, ExifBlock().u32(8).u16(1).entry(271, 2, 5, 26).u32(0).raw("Maker"));
    QCOMPARE(exiftool(picture).value("IFD0:Make").toString(), QString("Maker"));
    QCOMPARE(exiv2(picture, "Exif.Image.Make"), QString("Maker"));
    // The last byte is dropped unseen.
    QCOMPARE(ExifInfo(picture).imageValue(271).toList(), QVariantList({QString("Make")}));
}

void tst_ExifJudges::unknownTypesDiffer()
{
    const QString picture = path("types.jpg");
    ExifBlock block;
    block.u32(8).u16(2).rawEntry(256, 6, 1, QByteArray("\x05\0\0\0", 4)); // signed byte
    block.entry(257, 11, 1, 0x3fc00000).u32(0);                           // 1.5
    makePicture(picture, block);
    QCOMPARE(exiv2(picture, "Exif.Image.ImageWidth"), QString("5"));
    QCOMPARE(exiv2(picture, "Exif.Image.ImageLength"), QString("1.5"));

    QTest::ignoreMessage(QtWarningMsg, "Invalid Ifd Type 6");
    QTest::ignoreMessage(QtWarningMsg, "Invalid Ifd Type 11");
    const ExifInfo info(picture);
    QVERIFY(info.isExifValid());
    QCOMPARE(info.imageTags(), QList<int>({256, 257}));
    // A null value is one of bytes without any.
    QCOMPARE(info.imageValue(256), QVariant(0));
    QCOMPARE(info.imageValue(257), QVariant(0));
}

void tst_ExifJudges::pointersAreNoTagsHere()
{
    const QString picture = path("pointers.jpg");
    makePicture(picture, {}, {"-Make=Maker", "-ISO=100", "-GPSAltitude=1"});
    QVERIFY(exiv2(picture, "Exif.Image.ExifTag").toInt() > 0);
    QVERIFY(exiv2(picture, "Exif.Image.GPSTag").toInt() > 0);
    const ExifInfo info(picture);
    QVERIFY(info.imageTags().contains(271));
    QVERIFY(!info.imageTags().contains(QExifImageHeader::ExifIfdPointer));
    QVERIFY(!info.imageTags().contains(QExifImageHeader::GpsInfoIfdPointer));
}

void tst_ExifJudges::judgesReadWhatIsSaved_data()
{
    QTest::addColumn<bool>("withExtended");
    QTest::newRow("image tags: no complaint") << false;
    QTest::newRow("extended tag outside its entry: two bytes early") << true;
}

void tst_ExifJudges::judgesReadWhatIsSaved()
{
    QFETCH(bool, withExtended);
    const QString picture = path("saved.jpg");
    makePicture(picture, {}, {"-Make=old", "-ISO=100"});
    QExifImageHeader header;
    header.setValue(QExifImageHeader::Make, QString("Maker"));
    header.setValue(QExifImageHeader::XResolution, QExifURational(300, 1));
    header.setValue(QExifImageHeader::Flash, quint16(1));
    if (withExtended)
        header.setValue(QExifImageHeader::ExposureTime, QExifURational(1, 60));
    QVERIFY(header.saveToJpeg(picture));

    const QVariantMap judge = exiftool(picture);
    QVERIFY(!judge.contains("ExifTool:Error"));
    QCOMPARE(judge.value("IFD0:Make").toString(), QString("Maker"));
    QCOMPARE(judge.value("IFD0:XResolution").toInt(), 300);
    QCOMPARE(judge.value("ExifIFD:Flash").toInt(), 1);
    QCOMPARE(exiv2(picture, "Exif.Image.Make"), QString("Maker"));
    QCOMPARE(exiv2(picture, "Exif.Image.XResolution"), QString("300/1"));
    QCOMPARE(exiv2(picture, "Exif.Photo.Flash"), QString("1"));
    if (withExtended) {
        // 01 00 00 00 3c 00 00 00, read from two bytes before
        QCOMPARE(exiv2(picture, "Exif.Photo.ExposureTime"), QString("65536/3932160"));
        QCOMPARE(ExifInfo(picture).extendedValue(33434).toDouble(), 65536.0 / 3932160);
    }
    QCOMPARE(QImage(picture).size(), QSize(64, 32));
}

TESSALINE_TEST_MAIN(tst_ExifJudges)
#include "tst_ExifJudges.moc"
