#include "ExifBlock.h"
#include "imaging/QExifImageHeader.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"
#include "support/SmallDisk.h"
#include "support/UnprivilegedUser.h"

#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <random>

using Header = QExifImageHeader;
using Check = std::function<bool(const QExifValue &)>;

Q_DECLARE_METATYPE(QExifValue)
Q_DECLARE_METATYPE(Check)

class tst_QExifImageHeader : public QObject
{
    Q_OBJECT

private slots:
    void newHeaderIsEmptyAndLittleEndian();
    void clearKeepsTheByteOrder();
    void clearForgetsTheThumbnailsValues();
    void valuesAreSetFoundAndRemoved();
    void enumsCarryTheNumbersOfTheStandard_data();
    void enumsCarryTheNumbersOfTheStandard();

    void readsEachType_data();
    void readsEachType();
    void inlineUndefinedOfABigEndianFileIsReversed();
    void lastByteOfATextIsDroppedUnseen();
    void offsetsCountFromTheDevicePosition();
    void pointersAndInteroperabilityAreTakenOut();
    void pointerOfAnotherTypeIsNotFollowed();
    void unknownTypeWarnsAndStoresNull();
    void manyUnknownTypesDoNotFloodTheLog();
    void tagsOutOfOrderAreSortedAndTheLastOfEqualOnesCounts();
    void thumbnailNeedsBothLongs_data();
    void thumbnailNeedsBothLongs();
    void refusedBlocks_data();
    void refusedBlocks();
    void sequentialDevicesAreRefused();

    void writesAnEmptyHeader();
    void writesTheImageTable();
    void writesEachType_data();
    void writesEachType();
    void devicePositionIsNotTakenIntoAccount();
    void offsetsOfTheExtendedTableAreTwoBytesEarly();
    void outOfLineValuesComeBackShiftedByTwoBytes();
    void offsetsOfTheGpsTableAreTwoBytesEarly();
    void secondWriteWithGpsHoldsThePointerTwice();
    void writesTheThumbnailTable();
    void writesWhatAThumbnailCameWith();
    void countZeroWritesAZeroField();
    void smallValuesArePadded_data();
    void smallValuesArePadded();
    void sizeIsTwelveShortWithAThumbnail();
    void sizeIsRightWithoutAThumbnail();
    void sizeFollowsEachChange();
    void fullDeviceIsNoticed();

    void thumbnailComesBack();
    void newThumbnailKeepsTheOldOnesValues();
    void thumbnailIsTurnedUpright_data();
    void thumbnailIsTurnedUpright();
    void thumbnailThatClaimsMillionsOfPixelsIsNull();

    void loadsTheFirstApplicationSegmentOnly_data();
    void loadsTheFirstApplicationSegmentOnly();
    void savesIntoEachLayout_data();
    void savesIntoEachLayout();
    void shorterBlockIsPadded();
    void shorterBlockBehindJfifIsPadded();
    void longerBlockReplacesAShorterOne();
    void blockOver65533BytesWrapsItsLength();
    void refusedFilesStayAsTheyAre_data();
    void refusedFilesStayAsTheyAre();
    void savesToAPath();
    void pathWithANulIsNeitherSavedNorLoaded();
    void readOnlyAndMissingFilesAreNotSaved();
    void fileThatCannotBeOpenedLeavesTheHeader();
    void fileWithoutPermissionStaysAsItIs();
    void fullDiskIsNoticed();

    void truncationAtEachByteIsHarmless();
    void offsetOfAValuesOwnEntryIsHarmless_data();
    void offsetOfAValuesOwnEntryIsHarmless();
    void damagedPicturesAreHarmless_data();
    void damagedPicturesAreHarmless();
    void hostileFieldsAreHarmless_data();
    void hostileFieldsAreHarmless();
    void countsPastTheEndKeepTheWholeItems();
    void tablesThatPointAtThemselvesEnd();
    void overlappingValuesTakeNoMoreThanTheBlock();
};

namespace {

QByteArray hex(const char *text)
{
    return QByteArray::fromHex(text);
}

bool readBytes(Header *header, QByteArray bytes, int position = 0)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    buffer.seek(position);
    return header->read(&buffer);
}

QByteArray written(const Header &header)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    const qint64 size = header.write(&buffer);
    if (size != buffer.data().size())
        qFatal("write() said %lld, wrote %d", size, buffer.data().size());
    return buffer.data();
}

bool loadBytes(Header *header, QByteArray bytes)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    return header->loadFromJpeg(&buffer);
}

bool save(const Header &header, QByteArray *bytes)
{
    QBuffer buffer(bytes);
    buffer.open(QIODevice::ReadWrite);
    return header.saveToJpeg(&buffer);
}

// An image table with one entry of what is to be read; its value stands at 26.
QByteArray oneEntry(bool bigEndian, int type, quint32 count, const QByteArray &field,
                    const QByteArray &outOfLine = {})
{
    ExifBlock block(bigEndian);
    block.u32(8).u16(1);
    if (outOfLine.isEmpty())
        block.rawEntry(271, type, count, field);
    else
        block.entry(271, type, count, 26);
    return block.u32(0).raw(outOfLine);
}

// All kinds of tables and values, as a file from a camera has them.
QByteArray richBlock(bool bigEndian = false)
{
    ExifBlock block(bigEndian);
    block.u32(8).u16(4);        // 8
    block.entry(271, 2, 6, 62); // Make
    block.entry(282, 5, 1, 68); // XResolution
    block.entry(34665, 4, 1, 76);
    block.entry(34853, 4, 1, 118);
    block.u32(174);
    block.raw(QByteArray("Maker\0", 6)); // 62
    block.u32(72).u32(1);                // 68
    block.u16(3);                        // 76
    block.entry(33434, 5, 1, 114 - 0);   // shares the bytes that follow
    block.entry(37500, 7, 4, 0x30323030);
    block.entry(40965, 4, 1, 8);
    block.raw("1234"); // 114
    block.u16(2);      // 118
    block.rawEntry(1, 2, 2, QByteArray("S\0\0\0", 4));
    block.entry(2, 5, 3, 150);
    block.raw("...."); // 144, a next offset and padding nobody reads
    block.raw("..");
    block.u32(10).u32(1).u32(30).u32(1).u32(0).u32(1); // 150
    block.u16(3);                                      // 174
    block.entry(513, 4, 1, 216);
    block.entry(514, 4, 1, 5);
    block.rawEntry(274, 3, 1, bigEndian ? QByteArray("\0\6\0\0", 4) : QByteArray("\6\0\0\0", 4));
    block.u32(0);
    block.raw("jpegs"); // 216
    return block;
}

QImage corners()
{
    QImage image(16, 8, QImage::Format_RGB32);
    image.fill(Qt::white);
    for (int y = 0; y < 4; ++y) {
        for (int x = 0; x < 8; ++x)
            image.setPixelColor(x, y, Qt::black);
    }
    return image;
}

// Walks through all that can be read, so that a sanitizer sees it.
void visit(const Header &header)
{
    for (const Header::ImageTag tag : header.imageTags())
        header.value(tag).toString();
    for (const Header::ExifExtendedTag tag : header.extendedTags())
        header.value(tag).toString();
    for (const Header::GpsTag tag : header.gpsTags())
        header.value(tag).toRationalVector();
    header.thumbnail();
    written(header);
}

} // namespace

void tst_QExifImageHeader::newHeaderIsEmptyAndLittleEndian()
{
    const Header header;
    QCOMPARE(header.byteOrder(), QSysInfo::LittleEndian);
    QVERIFY(header.imageTags().isEmpty());
    QVERIFY(header.extendedTags().isEmpty());
    QVERIFY(header.gpsTags().isEmpty());
    QVERIFY(header.thumbnail().isNull());
    QVERIFY(header.value(Header::Make).isNull());
    QCOMPARE(int(QSysInfo::BigEndian), 0);
}

void tst_QExifImageHeader::clearKeepsTheByteOrder()
{
    Header header;
    QVERIFY(readBytes(&header, richBlock(true)));
    QVERIFY(header.contains(Header::GPSLatitude));
    header.clear();
    QCOMPARE(header.byteOrder(), QSysInfo::BigEndian);
    QVERIFY(header.imageTags().isEmpty());
    QVERIFY(header.extendedTags().isEmpty());
    QVERIFY(header.gpsTags().isEmpty());
    QCOMPARE(header.size(), 28);
}

void tst_QExifImageHeader::clearForgetsTheThumbnailsValues()
{
    Header header;
    QVERIFY(readBytes(&header, richBlock()));
    header.setThumbnail(corners());
    QCOMPARE(header.thumbnail().size(), QSize(8, 16)); // orientation 6
    header.clear();
    header.setThumbnail(corners());
    QCOMPARE(header.thumbnail().size(), QSize(16, 8));
}

void tst_QExifImageHeader::valuesAreSetFoundAndRemoved()
{
    Header header;
    const QExifValue value(quint16(1));
    header.setValue(Header::Model, value);
    header.setValue(Header::Make, value);
    header.setValue(static_cast<Header::ImageTag>(65000), value);
    header.setValue(Header::Flash, value);
    header.setValue(Header::GPSLatitude, value);

    QCOMPARE(header.imageTags(), QList<Header::ImageTag>({Header::Make, Header::Model,
                                                          static_cast<Header::ImageTag>(65000)}));
    QCOMPARE(header.extendedTags(), QList<Header::ExifExtendedTag>({Header::Flash}));
    QCOMPARE(header.gpsTags(), QList<Header::GpsTag>({Header::GPSLatitude}));
    QVERIFY(header.contains(Header::Flash));
    QVERIFY(header.value(Header::GPSLatitude) == value);
    header.remove(Header::Make);
    header.remove(Header::Flash);
    header.remove(Header::GPSLatitude);
    QVERIFY(!header.contains(Header::Make));
    QVERIFY(!header.contains(Header::Flash));
    QVERIFY(!header.contains(Header::GPSLatitude));
}

void tst_QExifImageHeader::enumsCarryTheNumbersOfTheStandard_data()
{
    QTest::addColumn<int>("first"); // of a run without a gap, as the standard prints it
    QTest::addColumn<QVector<int>>("tags");
    const auto run = [](int first, const QVector<int> &tags) {
        QTest::addRow("%x", first) << first << tags;
    };
    run(0x100,
        {Header::ImageWidth, Header::ImageLength, Header::BitsPerSample, Header::Compression});
    run(0x106, {Header::PhotometricInterpretation});
    run(0x10e, {Header::ImageDescription, Header::Make, Header::Model, Header::StripOffsets,
                Header::Orientation});
    run(0x115, {Header::SamplesPerPixel, Header::RowsPerStrip, Header::StripByteCounts});
    run(0x11a, {Header::XResolution, Header::YResolution, Header::PlanarConfiguration});
    run(0x128, {Header::ResolutionUnit});
    run(0x12d, {Header::TransferFunction});
    run(0x131, {Header::Software, Header::DateTime});
    run(0x13b, {Header::Artist});
    run(0x13e, {Header::WhitePoint, Header::PrimaryChromaticities});
    run(0x201, {Header::JPEGInterchangeFormat, Header::JPEGInterchangeFormatLength});
    run(0x211, {Header::YCbCrCoefficients, Header::YCbCrSubSampling, Header::YCbCrPositioning,
                Header::ReferenceBlackWhite});
    run(0x8298, {Header::Copyright});
    run(0x8769, {Header::ExifIfdPointer});
    run(0x8825, {Header::GpsInfoIfdPointer});

    run(0x829a, {Header::ExposureTime});
    run(0x829d, {Header::FNumber});
    run(0x8822, {Header::ExposureProgram});
    run(0x8824, {Header::SpectralSensitivity});
    run(0x8827, {Header::PhotographicSensitivity, Header::OECF});
    run(0x8830, {Header::SensitivityType, Header::StandardOutputSensitivity,
                 Header::RecommendedExposureIndex, Header::ISOSpeed, Header::ISOSpeedLatitudeyyy,
                 Header::ISOSpeedLatitudezzz});
    run(0x9000, {Header::ExifVersion});
    run(0x9003, {Header::DateTimeOriginal, Header::DateTimeDigitized});
    run(0x9010, {Header::OffsetTime, Header::OffsetTimeOriginal, Header::OffsetTimeDigitized});
    run(0x9101, {Header::ComponentsConfiguration, Header::CompressedBitsPerPixel});
    run(0x9201, {Header::ShutterSpeedValue, Header::ApertureValue, Header::BrightnessValue,
                 Header::ExposureBiasValue, Header::MaxApertureValue, Header::SubjectDistance,
                 Header::MeteringMode, Header::LightSource, Header::Flash, Header::FocalLength});
    run(0x9214, {Header::SubjectArea});
    run(0x927c, {Header::MakerNote});
    run(0x9286, {Header::UserComment});
    run(0x9290, {Header::SubSecTime, Header::SubSecTimeOriginal, Header::SubSecTimeDigitized});
    run(0x9400, {Header::Temperature, Header::Humidity, Header::Pressure, Header::WaterDepth,
                 Header::Acceleration, Header::CameraElevationAngle});
    run(0xa000,
        {Header::FlashpixVersion, Header::ColorSpace, Header::PixelXDimension,
         Header::PixelYDimension, Header::RelatedSoundFile, Header::InteroperabilityIfdPointer});
    run(0xa20b, {Header::FlashEnergy, Header::SpatialFrequencyResponse});
    run(0xa20e, {Header::FocalPlaneXResolution, Header::FocalPlaneYResolution,
                 Header::FocalPlaneResolutionUnit});
    run(0xa214, {Header::SubjectLocation, Header::ExposureIndex});
    run(0xa217, {Header::SensingMethod});
    run(0xa300, {Header::FileSource, Header::SceneType, Header::CFAPattern});
    run(0xa401, {Header::CustomRendered, Header::ExposureMode, Header::WhiteBalance,
                 Header::DigitalZoomRatio, Header::FocalLengthIn35mmFilm, Header::SceneCaptureType,
                 Header::GainControl, Header::Contrast, Header::Saturation, Header::Sharpness,
                 Header::DeviceSettingDescription, Header::SubjectDistanceRange});
    run(0xa420, {Header::ImageUniqueID});
    run(0xa430, {Header::CameraOwnerName, Header::BodySerialNumber, Header::LensSpecification,
                 Header::LensMake, Header::LensModel, Header::LensSerialNumber, Header::ImageTitle,
                 Header::Photographer, Header::ImageEditor, Header::CameraFirmware,
                 Header::RAWDevelopingSoftware, Header::ImageEditingSoftware,
                 Header::MetadataEditingSoftware});
    run(0xa460, {Header::CompositeImage, Header::SourceImageNumberOfCompositeImage,
                 Header::SourceExposureTimesOfCompositeImage});
    run(0xa500, {Header::Gamma});

    run(0, {Header::GPSVersionID,       Header::GPSLatitudeRef,
            Header::GPSLatitude,        Header::GPSLongitudeRef,
            Header::GPSLongitude,       Header::GPSAltitudeRef,
            Header::GPSAltitude,        Header::GPSTimeStamp,
            Header::GPSSatellites,      Header::GPSStatus,
            Header::GPSMeasureMode,     Header::GPSDOP,
            Header::GPSSpeedRef,        Header::GPSSpeed,
            Header::GPSTrackRef,        Header::GPSTrack,
            Header::GPSImgDirectionRef, Header::GPSImgDirection,
            Header::GPSMapDatum,        Header::GPSDestLatitudeRef,
            Header::GPSDestLatitude,    Header::GPSDestLongitudeRef,
            Header::GPSDestLongitude,   Header::GPSDestBearingRef,
            Header::GPSDestBearing,     Header::GPSDestDistanceRef,
            Header::GPSDestDistance,    Header::GPSProcessingMethod,
            Header::GPSAreaInformation, Header::GPSDateStamp,
            Header::GPSDifferential,    Header::GPSHPositioningError});
}

void tst_QExifImageHeader::enumsCarryTheNumbersOfTheStandard()
{
    QFETCH(int, first);
    QFETCH(QVector<int>, tags);
    for (const int tag : tags)
        QCOMPARE(tag, first++);
    QCOMPARE(int(Header::ISOSpeedRatings), int(Header::PhotographicSensitivity));
}

void tst_QExifImageHeader::readsEachType_data()
{
    QTest::addColumn<QByteArray>("block");
    QTest::addColumn<Check>("isRight");
    for (const bool big : {false, true}) {
        const char *order = big ? "MM" : "II";
        const auto bytes = [big](const char *bigBytes, const char *littleBytes) {
            return hex(big ? bigBytes : littleBytes);
        };
        const auto row = [&](const char *name, const QByteArray &block, const Check &check) {
            QTest::addRow("%s %s", order, name) << block << check;
        };
        row("bytes inside", oneEntry(big, 1, 3, hex("01020304")), [](const QExifValue &v) {
            return v.toByteVector() == QVector<quint8>{1, 2, 3};
        });
        row("no byte", oneEntry(big, 1, 0, hex("01020304")),
            [](const QExifValue &v) { return v.type() == 1 && v.count() == 0 && !v.isNull(); });
        row("bytes outside", oneEntry(big, 1, 5, {}, hex("0102030405")), [](const QExifValue &v) {
            return v.toByteVector() == QVector<quint8>{1, 2, 3, 4, 5};
        });
        row("four bytes inside", oneEntry(big, 1, 4, hex("01020304")), [](const QExifValue &v) {
            return v.toByteVector() == QVector<quint8>{1, 2, 3, 4};
        });
        row("text of no byte", oneEntry(big, 2, 0, hex("61626300")),
            [](const QExifValue &v) { return v.type() == 2 && v.toString().isEmpty(); });
        row("no short", oneEntry(big, 3, 0, hex("01020304")),
            [](const QExifValue &v) { return v.type() == 3 && v.count() == 0; });
        row("signed longs outside",
            oneEntry(big, 9, 2, {}, bytes("fffffffe00000001", "feffffff01000000")),
            [](const QExifValue &v) {
                return v.toSignedLongVector() == QVector<qint32>{-2, 1};
            });
        row("no rational", oneEntry(big, 5, 0, hex("01020304")),
            [](const QExifValue &v) { return v.type() == 5 && v.count() == 0; });
        row("rationals",
            oneEntry(big, 5, 2, {},
                     bytes("00000001000000020000000300000004", "01000000020000000300000004000000")),
            [](const QExifValue &v) {
                return v.toRationalVector() == QVector<QExifURational>{{1, 2}, {3, 4}};
            });
        row("no undefined byte", oneEntry(big, 7, 0, hex("01020304")),
            [](const QExifValue &v) { return v.type() == 7 && v.count() == 0; });
        row("text inside", oneEntry(big, 2, 4, hex("61626300")),
            [](const QExifValue &v) { return v.toString() == "abc" && v.count() == 4; });
        row("empty text", oneEntry(big, 2, 1, hex("61626300")), [](const QExifValue &v) {
            return v.type() == 2 && v.toString().isEmpty() && v.count() == 1;
        });
        row("text outside", oneEntry(big, 2, 5, {}, hex("61e4636400")),
            [](const QExifValue &v) { return v.toString() == QString("a\u00e4cd"); });
        row("short", oneEntry(big, 3, 1, bytes("01020000", "02010000")),
            [](const QExifValue &v) { return v.toShort() == 0x102; });
        row("shorts inside", oneEntry(big, 3, 2, bytes("01020304", "02010403")),
            [](const QExifValue &v) {
                return v.toShortVector() == QVector<quint16>{0x102, 0x304};
            });
        row("shorts outside", oneEntry(big, 3, 3, {}, bytes("010203040506", "020104030605")),
            [](const QExifValue &v) {
                return v.toShortVector() == QVector<quint16>{0x102, 0x304, 0x506};
            });
        row("long", oneEntry(big, 4, 1, bytes("f1020304", "040302f1")),
            [](const QExifValue &v) { return v.type() == 4 && v.toLong() == 0xf1020304; });
        row("no long", oneEntry(big, 4, 0, bytes("f1020304", "040302f1")),
            [](const QExifValue &v) { return v.type() == 4 && v.count() == 0; });
        row("longs outside", oneEntry(big, 4, 2, {}, bytes("0000000100000002", "0100000002000000")),
            [](const QExifValue &v) {
                return v.toLongVector() == QVector<quint32>{1, 2};
            });
        row("signed long", oneEntry(big, 9, 1, bytes("fffffffe", "feffffff")),
            [](const QExifValue &v) { return v.type() == 9 && v.toSignedLong() == -2; });
        row("rational", oneEntry(big, 5, 1, {}, bytes("0000000100000002", "0100000002000000")),
            [](const QExifValue &v) { return v.toRational() == QExifURational(1, 2); });
        row("signed rational",
            oneEntry(big, 10, 1, {}, bytes("ffffffff00000002", "ffffffff02000000")),
            [](const QExifValue &v) { return v.toSignedRational() == QExifSRational(-1, 2); });
        row("undefined outside", oneEntry(big, 7, 5, {}, hex("0102030405")),
            [](const QExifValue &v) { return v.toByteArray() == hex("0102030405"); });
    }
}

void tst_QExifImageHeader::readsEachType()
{
    QFETCH(QByteArray, block);
    QFETCH(Check, isRight);
    Header header;
    QVERIFY(readBytes(&header, block));
    QCOMPARE(header.imageTags(), QList<Header::ImageTag>({Header::Make}));
    QVERIFY(isRight(header.value(Header::Make)));
}

void tst_QExifImageHeader::inlineUndefinedOfABigEndianFileIsReversed()
{
    Header header;
    QVERIFY(readBytes(&header, oneEntry(false, 7, 4, "0230")));
    QCOMPARE(header.value(Header::Make).toByteArray(), QByteArray("0230"));
    QVERIFY(readBytes(&header, oneEntry(true, 7, 4, "0230")));
    const bool isReversed = QSysInfo::ByteOrder == QSysInfo::LittleEndian;
    QCOMPARE(header.value(Header::Make).toByteArray(), QByteArray(isReversed ? "0320" : "0230"));
}

void tst_QExifImageHeader::lastByteOfATextIsDroppedUnseen()
{
    Header header;
    QVERIFY(readBytes(&header, oneEntry(false, 2, 4, "abcd")));
    QCOMPARE(header.value(Header::Make).toString(), QString("abc"));
}

void tst_QExifImageHeader::offsetsCountFromTheDevicePosition()
{
    Header header;
    QVERIFY(readBytes(&header, "12345" + richBlock(), 5));
    QCOMPARE(header.value(Header::Make).toString(), QString("Maker"));
}

void tst_QExifImageHeader::pointersAndInteroperabilityAreTakenOut()
{
    Header header;
    QVERIFY(readBytes(&header, richBlock()));
    QCOMPARE(header.imageTags(), QList<Header::ImageTag>({Header::Make, Header::XResolution}));
    QCOMPARE(header.extendedTags(),
             QList<Header::ExifExtendedTag>({Header::ExposureTime, Header::MakerNote}));
    QCOMPARE(header.gpsTags(),
             QList<Header::GpsTag>({Header::GPSLatitudeRef, Header::GPSLatitude}));
}

void tst_QExifImageHeader::pointerOfAnotherTypeIsNotFollowed()
{
    const QByteArray block =
        ExifBlock().u32(8).u16(2).entry(34665, 3, 1, 8).entry(34853, 4, 2, 8).u32(0);
    Header header;
    QVERIFY(readBytes(&header, block));
    QVERIFY(header.imageTags().isEmpty());
    QVERIFY(header.extendedTags().isEmpty());
    QVERIFY(header.gpsTags().isEmpty());
}

void tst_QExifImageHeader::unknownTypeWarnsAndStoresNull()
{
    Header header;
    LogCapture log;
    QVERIFY(readBytes(&header, oneEntry(false, 6, 1, "abcd")));
    QCOMPARE(log.count(QtWarningMsg, "default", "Invalid Ifd Type 6"), 1);
    QVERIFY(header.contains(Header::Make));
    QVERIFY(header.value(Header::Make).isNull());
}

void tst_QExifImageHeader::manyUnknownTypesDoNotFloodTheLog()
{
    ExifBlock block;
    block.u32(8).u16(5000);
    for (quint32 i = 0; i < 5000; ++i)
        block.entry(i + 1, 99, 1, 0);
    Header header;
    LogCapture log;
    QVERIFY(readBytes(&header, block.u32(0)));
    QCOMPARE(header.imageTags().size(), 5000);
    QCOMPARE(log.count(QtWarningMsg, "default", "Invalid Ifd Type 99"), 32);
}

void tst_QExifImageHeader::tagsOutOfOrderAreSortedAndTheLastOfEqualOnesCounts()
{
    ExifBlock block;
    block.u32(8).u16(5).entry(300, 3, 1, 1).entry(65535, 3, 1, 2).entry(300, 3, 1, 3);
    block.entry(0, 3, 1, 4).entry(300, 3, 1, 5).u32(0);
    Header header;
    QVERIFY(readBytes(&header, block));
    const auto tag = [](int number) { return static_cast<Header::ImageTag>(number); };
    QCOMPARE(header.imageTags(), QList<Header::ImageTag>({tag(0), tag(300), tag(65535)}));
    QCOMPARE(header.value(tag(0)).toShort(), quint16(4));
    QCOMPARE(header.value(tag(300)).toShort(), quint16(5));
    QCOMPARE(header.value(tag(65535)).toShort(), quint16(2));
}

void tst_QExifImageHeader::thumbnailNeedsBothLongs_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<qint64>("size");
    QTest::newRow("longs") << 4 << qint64(28 + 90 + 6);
    QTest::newRow("shorts") << 3 << qint64(28);
}

void tst_QExifImageHeader::thumbnailNeedsBothLongs()
{
    QFETCH(int, type);
    const QByteArray block = ExifBlock()
                                 .u32(8)
                                 .u16(0)
                                 .u32(14)
                                 .u16(2)
                                 .entry(513, type, 1, 44)
                                 .entry(514, type, 1, 6)
                                 .u32(0)
                                 .raw("jpegs!");
    Header header;
    QVERIFY(readBytes(&header, block));
    QTEST(header.size(), "size");
}

void tst_QExifImageHeader::refusedBlocks_data()
{
    QTest::addColumn<QByteArray>("block");
    QTest::addColumn<int>("byteOrder");
    QTest::newRow("nothing") << QByteArray() << 1;
    QTest::newRow("one letter") << QByteArray("I") << 1;
    QTest::newRow("mixed order") << QByteArray("IM*\0\10\0\0\0", 8) << 1;
    QTest::newRow("identifier 43") << hex("4d4d002b00000008000000000000") << 0;
    QTest::newRow("no identifier") << QByteArray("MM") << 0;
}

void tst_QExifImageHeader::refusedBlocks()
{
    QFETCH(QByteArray, block);
    LogCapture log;
    Header header;
    header.setValue(Header::Make, quint16(1));
    QVERIFY(!readBytes(&header, block));
    QVERIFY(header.imageTags().isEmpty());
    QTEST(int(header.byteOrder()), "byteOrder");
    QVERIFY2(log.messages().isEmpty(), qPrintable(log.dump()));
}

namespace {

class SequentialBuffer : public QBuffer
{
public:
    using QBuffer::QBuffer;
    bool isSequential() const override { return true; }
};

} // namespace

void tst_QExifImageHeader::sequentialDevicesAreRefused()
{
    QByteArray block = richBlock();
    SequentialBuffer blockBuffer(&block);
    blockBuffer.open(QIODevice::ReadOnly);
    QVERIFY(!Header().read(&blockBuffer));

    const QByteArray jpeg = jpegWithExif(block);
    QByteArray bytes = jpeg;
    SequentialBuffer jpegBuffer(&bytes);
    jpegBuffer.open(QIODevice::ReadWrite);
    QVERIFY(!Header().saveToJpeg(&jpegBuffer));
    QCOMPARE(bytes, jpeg);
}

void tst_QExifImageHeader::writesAnEmptyHeader()
{
    QCOMPARE(written(Header()), hex("49492a0008000000"
                                    "0100"
                                    "69870400010000001a000000"
                                    "00000000"
                                    "0000"));
    Header bigEndian;
    QVERIFY(readBytes(&bigEndian, ExifBlock(true).u32(8).u16(0).u32(0)));
    QCOMPARE(written(bigEndian), hex("4d4d002a00000008"
                                     "0001"
                                     "87690004000000010000001a"
                                     "00000000"
                                     "0000"));
}

void tst_QExifImageHeader::writesTheImageTable()
{
    Header header;
    header.setValue(Header::Make, QString("Maker"));
    header.setValue(Header::Orientation, quint16(6));
    header.setValue(Header::XResolution, QExifURational(72, 1));
    QCOMPARE(written(header), hex("49492a0008000000"
                                  "0400"
                                  "0f010200060000003e000000"
                                  "120103000100000006000000"
                                  "1a0105000100000044000000"
                                  "69870400010000004c000000"
                                  "00000000"
                                  "4d616b657200"     // at 3e
                                  "4800000001000000" // at 44
                                  "0000"));          // at 4c
}

void tst_QExifImageHeader::writesEachType_data()
{
    QTest::addColumn<bool>("bigEndian");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("II") << false
                        << hex("49492a0008000000"
                               "0f00"
                               "010001000200000001020000"
                               "0200010005000000c2000000"
                               "030002000300000061620000"
                               "0400020005000000c7000000"
                               "050003000100000002010000"
                               "0600030003000000cc000000"
                               "070004000100000004030201"
                               "0800040002000000d2000000"
                               "0900050001000000da000000"
                               "0a0007000200000061620000"
                               "0b00070005000000e2000000"
                               "0c00090001000000feffffff"
                               "0d00090002000000e7000000"
                               "0e000a0001000000ef000000"
                               "6987040001000000f7000000"
                               "00000000"
                               "0102030405"       // at c2
                               "6162636400"       // at c7
                               "010002000300"     // at cc
                               "0100000002000000" // at d2
                               "0100000002000000" // at da
                               "6162636465"       // at e2
                               "ffffffff02000000" // at e7
                               "ffffffff02000000" // at ef
                               "0000");
    QTest::newRow("MM") << true
                        << hex("4d4d002a00000008"
                               "000f"
                               "000100010000000201020000"
                               "0002000100000005000000c2"
                               "000300020000000361620000"
                               "0004000200000005000000c7"
                               "000500030000000101020000"
                               "0006000300000003000000cc"
                               "000700040000000101020304"
                               "0008000400000002000000d2"
                               "0009000500000001000000da"
                               "000a00070000000261620000"
                               "000b000700000005000000e2"
                               "000c000900000001fffffffe"
                               "000d000900000002000000e7"
                               "000e000a00000001000000ef"
                               "8769000400000001000000f7"
                               "00000000"
                               "0102030405"
                               "6162636400"
                               "000100020003"
                               "0000000100000002"
                               "0000000100000002"
                               "6162636465"
                               "ffffffff00000002"
                               "ffffffff00000002"
                               "0000");
}

void tst_QExifImageHeader::writesEachType()
{
    QFETCH(bool, bigEndian);
    Header header;
    QVERIFY(readBytes(&header, ExifBlock(bigEndian).u32(8).u16(0).u32(0)));
    int tag = 0;
    for (const QExifValue &value : {
             QExifValue(QVector<quint8>{1, 2}),
             QExifValue(QVector<quint8>{1, 2, 3, 4, 5}),
             QExifValue(QString("ab")),
             QExifValue(QString("abcd")),
             QExifValue(quint16(0x102)),
             QExifValue(QVector<quint16>{1, 2, 3}),
             QExifValue(quint32(0x1020304)),
             QExifValue(QVector<quint32>{1, 2}),
             QExifValue(QExifURational(1, 2)),
             QExifValue(QByteArray("ab")),
             QExifValue(QByteArray("abcde")),
             QExifValue(qint32(-2)),
             QExifValue(QVector<qint32>{-1, 2}),
             QExifValue(QExifSRational(-1, 2)),
         })
        header.setValue(static_cast<Header::ImageTag>(++tag), value);
    QTEST(written(header), "bytes");
}

void tst_QExifImageHeader::devicePositionIsNotTakenIntoAccount()
{
    Header header;
    header.setValue(Header::Make, QString("Maker"));
    QByteArray bytes("12345");
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadWrite);
    buffer.seek(5);
    QCOMPARE(header.write(&buffer), qint64(46));
    QCOMPARE(bytes, "12345" + written(header));
}

void tst_QExifImageHeader::offsetsOfTheExtendedTableAreTwoBytesEarly()
{
    Header header;
    header.setValue(Header::ExposureTime, QExifURational(1, 60));
    header.setValue(Header::Flash, quint16(1));
    QCOMPARE(written(header), hex("49492a0008000000"
                                  "0100"
                                  "69870400010000001a000000"
                                  "00000000"
                                  "0200" // at 1a
                                  "9a8205000100000032000000"
                                  "099203000100000001000000"
                                  "010000003c000000")); // at 34, not 32
}

void tst_QExifImageHeader::outOfLineValuesComeBackShiftedByTwoBytes()
{
    Header header;
    header.setValue(Header::UserComment, QByteArray("abcdefgh"));
    header.setValue(Header::Flash, quint16(7));
    Header again;
    QVERIFY(readBytes(&again, written(header)));
    QCOMPARE(again.value(Header::Flash).toShort(), quint16(7));
    // Two bytes of the last entry come first; two of the value are cut off.
    QCOMPARE(again.value(Header::UserComment).toByteArray(), QByteArray("\0\0abcdef", 8));
}

void tst_QExifImageHeader::offsetsOfTheGpsTableAreTwoBytesEarly()
{
    Header header;
    header.setValue(Header::GPSLatitudeRef, QString("N"));
    header.setValue(Header::GPSAltitude, QExifURational(100, 1));
    QCOMPARE(written(header), hex("49492a0008000000"
                                  "0200"
                                  "698704000100000026000000"
                                  "258804000100000028000000"
                                  "00000000"
                                  "0000" // at 26
                                  "0200" // at 28
                                  "01000200020000004e000000"
                                  "060005000100000040000000"
                                  "6400000001000000")); // at 42, not 40
}

void tst_QExifImageHeader::secondWriteWithGpsHoldsThePointerTwice()
{
    Header header;
    header.setValue(Header::GPSLatitudeRef, QString("N"));
    QCOMPARE(written(header), hex("49492a0008000000"
                                  "0200"
                                  "698704000100000026000000"
                                  "258804000100000028000000"
                                  "00000000"
                                  "0000"
                                  "0100"
                                  "01000200020000004e000000"));
    QVERIFY(header.contains(Header::GpsInfoIfdPointer));
    QCOMPARE(header.value(Header::GpsInfoIfdPointer).toLong(), 0x28u);
    QCOMPARE(written(header), hex("49492a0008000000"
                                  "0300"
                                  "258804000100000028000000" // as an image tag, where it was
                                  "698704000100000032000000"
                                  "258804000100000034000000"
                                  "00000000"
                                  "0000"
                                  "0100"
                                  "01000200020000004e000000"));
}

void tst_QExifImageHeader::writesTheThumbnailTable()
{
    // Read, as only that gives thumbnail data of a known size.
    Header header;
    QVERIFY(readBytes(&header, ExifBlock()
                                   .u32(8)
                                   .u16(0)
                                   .u32(14)
                                   .u16(2)
                                   .entry(513, 4, 1, 44)
                                   .entry(514, 4, 1, 6)
                                   .u32(0)
                                   .raw("jpegs!")));
    QCOMPARE(written(header), hex("49492a0008000000"
                                  "0100"
                                  "69870400010000001a000000"
                                  "1c000000"
                                  "0000"
                                  "0700" // at 1c
                                  "030103000100000006000000"
                                  "1a0105000100000072000000"
                                  "1b010500010000007a000000"
                                  "280103000100000002000000"
                                  "120103000100000000000000"
                                  "010204000100000082000000"
                                  "020204000100000006000000"
                                  "4800000001000000" // at 72
                                  "4800000001000000"
                                  "6a7065677321")); // at 82
}

void tst_QExifImageHeader::writesWhatAThumbnailCameWith()
{
    Header header;
    QVERIFY(readBytes(&header, ExifBlock(true)
                                   .u32(8)
                                   .u16(0)
                                   .u32(14)
                                   .u16(7)
                                   .rawEntry(271, 2, 2, QByteArray("x\0\0\0", 4)) // is dropped
                                   .rawEntry(274, 3, 1, QByteArray("\0\6\0\0", 4))
                                   .entry(282, 5, 1, 104)
                                   .entry(283, 5, 1, 112)
                                   .rawEntry(296, 3, 1, QByteArray("\0\3\0\0", 4))
                                   .entry(513, 4, 1, 120)
                                   .entry(514, 4, 1, 6)
                                   .u32(0)
                                   .u32(300)
                                   .u32(1)
                                   .u32(200)
                                   .u32(1)
                                   .raw("jpegs!")));
    header.setValue(Header::GPSLatitudeRef, QString("N"));
    QCOMPARE(written(header), hex("4d4d002a00000008"
                                  "0002"
                                  "876900040000000100000026"
                                  "882500040000000100000028"
                                  "00000036"
                                  "0000"             // at 26
                                  "0001"             // at 28
                                  "0001000200000002" // GPSLatitudeRef
                                  "4e000000"
                                  "0007"                     // at 36
                                  "010300030000000100060000" // Compression
                                  "011a0005000000010000008c" // XResolution
                                  "011b00050000000100000094" // YResolution
                                  "012800030000000100030000" // ResolutionUnit
                                  "011200030000000100060000" // Orientation
                                  "02010004000000010000009c"
                                  "020200040000000100000006"
                                  "0000012c00000001" // at 8c
                                  "000000c800000001" // at 94
                                  "6a7065677321"));  // at 9c
}

void tst_QExifImageHeader::countZeroWritesAZeroField()
{
    Header header;
    header.setValue(Header::Make, QVector<quint32>());
    header.setValue(Header::Model, QVector<QExifSRational>());
    QCOMPARE(written(header).mid(10, 24), hex("0f0104000000000000000000"
                                              "10010a000000000000000000"));
}

void tst_QExifImageHeader::smallValuesArePadded_data()
{
    QTest::addColumn<QExifValue>("value");
    QTest::addColumn<QByteArray>("field");
    QTest::newRow("byte") << QExifValue(quint8(1)) << hex("01000000");
    QTest::newRow("four bytes") << QExifValue(QVector<quint8>{1, 2, 3, 4}) << hex("01020304");
    QTest::newRow("text") << QExifValue(QString("a")) << hex("61000000");
    QTest::newRow("empty text") << QExifValue(QString()) << hex("00000000");
    QTest::newRow("three letters") << QExifValue(QString("abc")) << hex("61626300");
    QTest::newRow("no short") << QExifValue(QVector<quint16>()) << hex("00000000");
    QTest::newRow("short") << QExifValue(quint16(0x102)) << hex("02010000");
    QTest::newRow("two shorts") << QExifValue(QVector<quint16>{1, 2}) << hex("01000200");
    QTest::newRow("undefined") << QExifValue(QByteArray("ab")) << hex("61620000");
    QTest::newRow("signed") << QExifValue(qint32(-2)) << hex("feffffff");
    QTest::newRow("null") << QExifValue() << hex("00000000");
}

void tst_QExifImageHeader::smallValuesArePadded()
{
    QFETCH(QExifValue, value);
    Header header;
    header.setValue(Header::Make, value);
    QTEST(written(header).mid(18, 4), "field");
    QCOMPARE(header.size(), 40);
}

void tst_QExifImageHeader::sizeIsTwelveShortWithAThumbnail()
{
    Header header;
    QVERIFY(readBytes(&header, richBlock()));
    const qint64 before = header.size();
    const int size = written(header).size();
    QCOMPARE(before + 12, qint64(size));
    QCOMPARE(header.size(), qint64(size));
}

void tst_QExifImageHeader::sizeIsRightWithoutAThumbnail()
{
    Header header;
    QCOMPARE(header.size(), 28);
    header.setValue(Header::Make, QString("Maker"));
    QCOMPARE(header.size(), 28 + 12 + 6);
    header.setValue(Header::GPSAltitude, QExifURational(1, 2));
    QCOMPARE(header.size(), 46 + 2 + 12 + 8 + 12);
    QCOMPARE(written(header).size(), 80);
    header.remove(Header::GPSAltitude);
    QCOMPARE(header.size(), 46 + 12); // the pointer has stayed
}

// The size is remembered between the calls.
void tst_QExifImageHeader::sizeFollowsEachChange()
{
    Header header;
    QCOMPARE(header.size(), 28);
    header.setValue(Header::Make, QString("Maker"));
    QCOMPARE(header.size(), 28 + 18);
    header.setValue(Header::Flash, quint16(1));
    QCOMPARE(header.size(), 46 + 12);
    header.setValue(Header::GPSLatitudeRef, QString("N"));
    QCOMPARE(header.size(), 58 + 26);
    header.remove(Header::GPSLatitudeRef);
    QCOMPARE(header.size(), 58);
    header.remove(Header::Make);
    QCOMPARE(header.size(), 40);
    header.remove(Header::Flash);
    QCOMPARE(header.size(), 28);
}

void tst_QExifImageHeader::fullDeviceIsNoticed()
{
    QFile full("/dev/full");
    if (!full.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        QSKIP("No /dev/full on this system");
    QCOMPARE(Header().write(&full), -1);
}

void tst_QExifImageHeader::thumbnailComesBack()
{
    Header header;
    header.setThumbnail(corners());
    QCOMPARE(header.thumbnail().size(), QSize(16, 8));
    Header again;
    QVERIFY(readBytes(&again, written(header)));
    QCOMPARE(again.thumbnail(), header.thumbnail());
    header.setThumbnail(QImage());
    QVERIFY(header.thumbnail().isNull());
    QCOMPARE(header.size(), 28);
}

void tst_QExifImageHeader::newThumbnailKeepsTheOldOnesValues()
{
    Header header;
    QVERIFY(readBytes(&header, richBlock()));
    const qint64 before = header.size();
    header.setThumbnail(corners());
    QByteArray jpeg;
    QBuffer buffer(&jpeg);
    buffer.open(QIODevice::WriteOnly);
    QVERIFY(corners().save(&buffer, "JPG"));
    QCOMPARE(header.size(), before - qstrlen("jpegs") + jpeg.size());
    QCOMPARE(header.thumbnail().size(), QSize(8, 16)); // turned as the old one was
    QVERIFY(written(header).endsWith(jpeg));
    header.setThumbnail(QImage());
    QCOMPARE(header.size(), before - qstrlen("jpegs") - 90 + 12); // the pointer has stayed
}

void tst_QExifImageHeader::thumbnailIsTurnedUpright_data()
{
    QTest::addColumn<int>("orientation");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QPoint>("black"); // the only dark corner; 1 is right or bottom
    QTest::newRow("0") << 0 << QSize(16, 8) << QPoint(0, 0);
    QTest::newRow("1") << 1 << QSize(16, 8) << QPoint(0, 0);
    QTest::newRow("2") << 2 << QSize(16, 8) << QPoint(1, 0);
    QTest::newRow("3") << 3 << QSize(16, 8) << QPoint(1, 1);
    QTest::newRow("4") << 4 << QSize(16, 8) << QPoint(0, 1);
    QTest::newRow("5") << 5 << QSize(8, 16) << QPoint(0, 0);
    QTest::newRow("6") << 6 << QSize(8, 16) << QPoint(1, 0);
    QTest::newRow("7") << 7 << QSize(8, 16) << QPoint(1, 1);
    QTest::newRow("8") << 8 << QSize(8, 16) << QPoint(0, 1);
    QTest::newRow("9") << 9 << QSize(16, 8) << QPoint(0, 0);
}

void tst_QExifImageHeader::thumbnailIsTurnedUpright()
{
    QFETCH(int, orientation);
    QByteArray jpeg;
    QBuffer buffer(&jpeg);
    buffer.open(QIODevice::WriteOnly);
    QVERIFY(corners().save(&buffer, "JPG", 100));
    const QByteArray block = ExifBlock()
                                 .u32(8)
                                 .u16(0)
                                 .u32(14)
                                 .u16(3)
                                 .entry(513, 4, 1, 56)
                                 .entry(514, 4, 1, jpeg.size())
                                 .entry(274, 3, 1, orientation)
                                 .u32(0)
                                 .raw(jpeg);
    Header header;
    QVERIFY(readBytes(&header, block));
    const QImage image = header.thumbnail();
    QTEST(image.size(), "size");
    QFETCH(QPoint, black);
    for (const QPoint corner : {QPoint(0, 0), QPoint(1, 0), QPoint(0, 1), QPoint(1, 1)}) {
        const QColor color =
            image.pixelColor(corner.x() * (image.width() - 1), corner.y() * (image.height() - 1));
        QCOMPARE(color.lightness() < 128, corner == black);
    }
}

void tst_QExifImageHeader::thumbnailThatClaimsMillionsOfPixelsIsNull()
{
    Header header;
    header.setThumbnail(corners());
    QByteArray block = written(header);
    const int frame = block.indexOf(hex("ffc0001108"));
    QVERIFY(frame > 0);
    block.replace(frame + 5, 4, hex("75307530")); // 30,000 x 30,000
    QVERIFY(readBytes(&header, block));
    QVERIFY(header.thumbnail().isNull());
}

void tst_QExifImageHeader::loadsTheFirstApplicationSegmentOnly_data()
{
    QTest::addColumn<QByteArray>("jpeg");
    QTest::addColumn<bool>("loads");
    const QByteArray start("\xFF\xD8");
    const QByteArray exif = exifSegment(richBlock());
    const QByteArray xmp = jpegSegment("\xFF\xE1", "http://ns.adobe.com/xap/1.0/");
    const QByteArray comment = jpegSegment("\xFF\xFE", "words");
    QTest::newRow("first") << start + exif + jpegRest() << true;
    QTest::newRow("behind JFIF") << start + jfifSegment() + exif + jpegRest() << true;
    QTest::newRow("behind a comment") << start + comment + exif + jpegRest() << true;
    QTest::newRow("behind a profile")
        << start + jpegSegment("\xFF\xE2", QByteArray("ICC_PROFILE\0", 12)) + exif << true;
    QTest::newRow("behind XMP") << start + xmp + exif + jpegRest() << false;
    QTest::newRow("another word") << start
                                         + jpegSegment("\xFF\xE1",
                                                       QByteArray("Exit\0\0", 6) + richBlock())
                                  << false;
    QTest::newRow("none") << start + jfifSegment() + jpegRest() << false;
    QTest::newRow("only a start") << start << false;
    QTest::newRow("empty segment") << start + exifSegment(QByteArray()) << false;
    QTest::newRow("length of 0") << start + hex("ffe10000") + "Exif" << false;
    QTest::newRow("length that leads behind the end") << start + hex("ffe0ffff") + exif << false;
    QTest::newRow("lengths of 0") << start + QByteArray(1000, '\0') << false;
    QTest::newRow("no JPEG") << QByteArray("\x89PNG\r\n\x1a\n") << false;
    QTest::newRow("text") << QByteArray("words") << false;
    QTest::newRow("nothing") << QByteArray() << false;
}

void tst_QExifImageHeader::loadsTheFirstApplicationSegmentOnly()
{
    QFETCH(QByteArray, jpeg);
    QFETCH(bool, loads);
    QTemporaryDir folder;
    QFile file(folder.filePath("picture.jpg"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(jpeg);
    file.close();

    LogCapture log;
    Header header;
    header.setValue(Header::Make, QString("old"));
    QCOMPARE(loadBytes(&header, jpeg), loads);
    QCOMPARE(header.value(Header::Make).toString(), QString(loads ? "Maker" : ""));
    QCOMPARE(header.loadFromJpeg(file.fileName()), loads);
    QCOMPARE(Header(file.fileName()).contains(Header::Make), loads);
    QVERIFY2(log.messages().isEmpty(), qPrintable(log.dump()));
}

void tst_QExifImageHeader::savesIntoEachLayout_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    // What the header of the test writes.
    const QByteArray exif = hex("ffe10030") + QByteArray("Exif\0\0", 6)
                            + hex("49492a0008000000"
                                  "0200"
                                  "120103000100000006000000"
                                  "698704000100000026000000"
                                  "00000000"
                                  "0000");
    const QByteArray start("\xFF\xD8");
    const QByteArray oldExif = jpegSegment("\xFF\xE1", QByteArray("Exif\0\0old", 9));
    QTest::newRow("neither") << start + jpegRest() << start + exif + jpegRest();
    QTest::newRow("EXIF") << start + oldExif + jpegRest() << start + exif + jpegRest();
    QTest::newRow("JFIF and EXIF") << start + jfifSegment() + oldExif + jpegRest()
                                   << start + jfifSegment() + exif + jpegRest();
    QTest::newRow("JFIF: one word FFE0 too many")
        << start + jfifSegment() + jpegRest()
        << start + jfifSegment() + exif + hex("ffe0") + jpegRest();
}

void tst_QExifImageHeader::savesIntoEachLayout()
{
    QFETCH(QByteArray, before);
    Header header;
    header.setValue(Header::Orientation, quint16(6));
    QVERIFY(save(header, &before));
    QTEST(before, "after");
    Header again;
    QVERIFY(loadBytes(&again, before));
    QCOMPARE(again.value(Header::Orientation).toShort(), quint16(6));
}

void tst_QExifImageHeader::shorterBlockIsPadded()
{
    const QByteArray old =
        "\xFF\xD8" + jpegSegment("\xFF\xE1", QByteArray("Exif\0\0", 6) + QByteArray(94, 'x'))
        + jpegRest();
    QByteArray jpeg = old;
    QVERIFY(save(Header(), &jpeg));
    QCOMPARE(jpeg.size(), old.size());
    QCOMPARE(jpeg.mid(2, 4), hex("ffe10066"));
    QCOMPARE(jpeg.mid(12, 28), written(Header()));
    QCOMPARE(jpeg.mid(40, 66), QByteArray(66, '\0'));
    QCOMPARE(jpeg.right(8), jpegRest());
}

void tst_QExifImageHeader::shorterBlockBehindJfifIsPadded()
{
    const QByteArray start = "\xFF\xD8" + jfifSegment();
    const QByteArray prefix("Exif\0\0", 6);
    QByteArray jpeg = start + jpegSegment("\xFF\xE1", prefix + QByteArray(94, 'x')) + jpegRest();
    QVERIFY(save(Header(), &jpeg));
    QCOMPARE(jpeg, start
                       + jpegSegment("\xFF\xE1", prefix + written(Header()) + QByteArray(66, '\0'))
                       + jpegRest());
}

void tst_QExifImageHeader::longerBlockReplacesAShorterOne()
{
    QByteArray jpeg = jpegWithExif("old");
    QVERIFY(save(Header(), &jpeg));
    QCOMPARE(jpeg, jpegWithExif(written(Header())));
}

void tst_QExifImageHeader::blockOver65533BytesWrapsItsLength()
{
    Header header;
    header.setValue(Header::Make, QByteArray(70000, 'x'));
    QByteArray jpeg = "\xFF\xD8" + jpegRest();
    QVERIFY(save(header, &jpeg));
    const int length = (6 + 28 + 12 + 70000 + 2) & 0xffff;
    QCOMPARE(jpeg.mid(4, 2), QByteArray(1, char(length >> 8)) + char(length & 0xff));
}

void tst_QExifImageHeader::refusedFilesStayAsTheyAre_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray start("\xFF\xD8");
    const QByteArray xmp = jpegSegment("\xFF\xE1", "http://ns.adobe.com/xap/1.0/");
    QTest::newRow("no JPEG") << QByteArray("\x89PNG\r\n\x1a\n and more");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("only a start") << start;
    QTest::newRow("XMP first") << start + xmp + jpegRest();
    QTest::newRow("XMP behind JFIF") << start + jfifSegment() + xmp + jpegRest();
    QTest::newRow("JFXX") << start + jpegSegment("\xFF\xE0", "JFXX") + jpegRest();
    QTest::newRow("ends behind JFIF") << start + jfifSegment();
}

void tst_QExifImageHeader::refusedFilesStayAsTheyAre()
{
    QFETCH(QByteArray, bytes);
    const QByteArray before = bytes;
    QVERIFY(!save(Header(), &bytes));
    QCOMPARE(bytes, before);
}

void tst_QExifImageHeader::pathWithANulIsNeitherSavedNorLoaded()
{
    QTemporaryDir folder;
    const QString path = folder.filePath("picture.jpg");
    const QString cut = path + QChar(0) + ".jpg";
    QVERIFY(corners().save(path, "JPG"));
    Header header;
    header.setValue(Header::Make, QString("Maker"));
    const LogCapture log;
    QVERIFY(!header.saveToJpeg(cut));
    QVERIFY(!Header(path).contains(Header::Make));
    QVERIFY(header.saveToJpeg(path));
    QVERIFY(!Header(cut).contains(Header::Make));
}

void tst_QExifImageHeader::savesToAPath()
{
    QTemporaryDir folder;
    const QString path = folder.filePath("picture.jpg");
    QVERIFY(corners().save(path, "JPG"));
    Header header;
    header.setValue(Header::Make, QString("Maker"));
    QVERIFY(header.saveToJpeg(path));
    QCOMPARE(Header(path).value(Header::Make).toString(), QString("Maker"));
    // The stray FFE0 takes the next marker for its length.
    QTest::ignoreMessage(QtWarningMsg, "JPEG datastream contains no image");
    QVERIFY(QImage(path).isNull());
}

void tst_QExifImageHeader::readOnlyAndMissingFilesAreNotSaved()
{
    QTemporaryDir folder;
    QVERIFY(!Header().saveToJpeg(folder.filePath("none.jpg")));
    QVERIFY(!QFile::exists(folder.filePath("none.jpg")));
    QVERIFY(!Header().saveToJpeg(folder.path()));
    QVERIFY(!Header().loadFromJpeg(folder.path()));
    QVERIFY(!Header().loadFromJpeg(folder.filePath("none.jpg")));
    QVERIFY(!Header().saveToJpeg(":/none.jpg"));
}

void tst_QExifImageHeader::fileThatCannotBeOpenedLeavesTheHeader()
{
    QTemporaryDir folder;
    Header header;
    header.setValue(Header::Make, QString("Maker"));
    QVERIFY(!header.loadFromJpeg(folder.filePath("none.jpg")));
    QVERIFY(header.contains(Header::Make));
    QFile empty(folder.filePath("empty.jpg"));
    QVERIFY(empty.open(QIODevice::WriteOnly));
    QVERIFY(!header.loadFromJpeg(empty.fileName()));
    QVERIFY(!header.contains(Header::Make));
}

void tst_QExifImageHeader::fileWithoutPermissionStaysAsItIs()
{
    const QTemporaryDir folder("/tmp/tst_QExifImageHeader-XXXXXX");
    QVERIFY(QFile::setPermissions(folder.path(), QFile::Permissions(0x7755)));
    QFile file(folder.filePath("picture.jpg"));
    const QByteArray before = jpegWithExif(richBlock(false));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(before), qint64(before.size()));
    file.close();
    QVERIFY(file.setPermissions(QFile::Permissions(0x4444)));
    {
        const UnprivilegedUser user;
        QVERIFY(Header().loadFromJpeg(file.fileName()));
        QVERIFY(!Header().saveToJpeg(file.fileName()));
    }
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), before);
}

void tst_QExifImageHeader::fullDiskIsNoticed()
{
    SmallDisk disk(64);
    if (!disk.isMounted())
        QSKIP(qPrintable("No full disk without a mount of its own: " + disk.reason()));
    for (const int valueSize : {100, 40000}) { // written at the end only, and on the way
        QFile file(disk.filePath("picture.jpg"));
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        // Up to the end of a page, so that the first byte more needs another.
        const QByteArray before = ("\xFF\xD8" + jpegRest()).leftJustified(4096, 'x');
        QCOMPARE(file.write(before), qint64(before.size()));
        file.close();
        Header header;
        header.setValue(Header::Make, QString(valueSize, 'x'));
        QVERIFY(disk.fillUpTo(0));
        QVERIFY(!header.saveToJpeg(file.fileName()));

        QVERIFY(QFile::remove(disk.filePath("filler")));
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        QCOMPARE(file.write(before), qint64(before.size()));
        file.close();
        QVERIFY(header.saveToJpeg(file.fileName())); // there is room now
    }
}

void tst_QExifImageHeader::truncationAtEachByteIsHarmless()
{
    LogCapture log; // the cut may leave types that don't exist
    for (const bool bigEndian : {false, true}) {
        const QByteArray block = richBlock(bigEndian);
        for (int size = 0; size <= block.size(); ++size) {
            Header header;
            // A copy of its own, so that the sanitizer notices a look behind its end.
            const QByteArray cut(block.constData(), size);
            QCOMPARE(readBytes(&header, cut), size >= 4);
            visit(header);
            loadBytes(&header, jpegWithExif(block).left(size));
        }
    }
}

void tst_QExifImageHeader::offsetOfAValuesOwnEntryIsHarmless_data()
{
    QTest::addColumn<int>("type");
    for (const int type : {1, 2, 3, 4, 5, 7, 9, 10})
        QTest::addRow("%d", type) << type;
}

// The value begins in the field that should say where it is.
void tst_QExifImageHeader::offsetOfAValuesOwnEntryIsHarmless()
{
    QFETCH(int, type);
    constexpr quint32 field = 8 + 2 + 8;
    ExifBlock block;
    block.u32(8).u16(1).entry(271, static_cast<quint32>(type), 1000, field).u32(0);
    block.raw(QByteArray(30, 'x'));
    Header header;
    QVERIFY(readBytes(&header, block));
    const QExifValue value = header.value(Header::Make);
    QCOMPARE(value.type(), type);
    QVERIFY(value.count() > 0 && value.count() <= 39); // 38 bytes, and a closing zero
    if (type == QExifValue::Undefined)
        QCOMPARE(value.toByteArray(), QByteArray("\x12\0\0\0\0\0\0\0", 8) + QByteArray(30, 'x'));
}

void tst_QExifImageHeader::damagedPicturesAreHarmless_data()
{
    QTest::addColumn<bool>("bigEndian");
    QTest::newRow("II") << false;
    QTest::newRow("MM") << true;
}

// 1 to 40 bytes changed anywhere, every third picture cut short.
void tst_QExifImageHeader::damagedPicturesAreHarmless()
{
    QFETCH(bool, bigEndian);
    LogCapture log; // types that don't exist
    const QByteArray picture = jpegWithExif(richBlock(bigEndian) + QByteArray(500, '\1'));
    std::mt19937 random(1);
    const auto below = [&](int limit) {
        return static_cast<int>(random() % static_cast<unsigned>(limit));
    };
    int readable = 0;
    for (int i = 0; i < 2000; ++i) {
        QByteArray bytes = picture;
        for (int change = below(40); change >= 0; --change)
            bytes[below(bytes.size())] = static_cast<char>(random());
        if (i % 3 == 0)
            bytes.truncate(below(bytes.size()));
        Header header;
        readable += loadBytes(&header, bytes);
        visit(header);
        save(header, &bytes);
        log.clear();
    }
    QVERIFY(readable > 200 && readable < 1800);
}

void tst_QExifImageHeader::hostileFieldsAreHarmless_data()
{
    QTest::addColumn<quint32>("number");
    for (const quint32 number : {0u, 1u, 0x7fffffffu, 0xffffffffu})
        QTest::addRow("%x", number) << number;
}

void tst_QExifImageHeader::hostileFieldsAreHarmless()
{
    QFETCH(quint32, number);
    LogCapture log;
    for (const bool bigEndian : {false, true}) {
        const QByteArray block = richBlock(bigEndian);
        const QByteArray field = QByteArray(ExifBlock(bigEndian).u32(number)).mid(4);
        for (int size : {2, 4}) {
            for (int position = 4; position + size <= block.size(); ++position) {
                QByteArray damaged = block;
                damaged.replace(position, size, field.right(size));
                Header header;
                QVERIFY(readBytes(&header, damaged));
                visit(header);
            }
        }
    }
    const QByteArray jpeg = "\xFF\xD8" + jfifSegment() + exifSegment(richBlock()) + jpegRest();
    for (int position = 0; position + 2 <= jpeg.size(); ++position) {
        QByteArray damaged = jpeg;
        damaged[position] = char(number >> 8);
        damaged[position + 1] = char(number);
        Header header;
        loadBytes(&header, damaged);
        visit(header);
        save(header, &damaged);
    }
}

void tst_QExifImageHeader::countsPastTheEndKeepTheWholeItems()
{
    const auto read = [](int type, quint32 count, const QByteArray &rest) {
        Header header;
        readBytes(&header, oneEntry(false, type, count, {}, rest));
        return header.value(Header::Make);
    };
    QCOMPARE(read(1, 0xffffffff, "abc").toByteVector(), QVector<quint8>({'a', 'b', 'c'}));
    QCOMPARE(read(2, 0x7fffffff, "abc").toString(), QString("abc"));
    QCOMPARE(read(3, 100, hex("0100020003")).toShortVector(), QVector<quint16>({1, 2}));
    QCOMPARE(read(4, 0x40000001, hex("0100000002")).toLongVector(), QVector<quint32>({1}));
    QCOMPARE(read(5, 0x20000000, hex("010000000200000003000000")).toRationalVector(),
             QVector<QExifURational>({{1, 2}}));
    QCOMPARE(read(7, 0xffffffff, "abc").toByteArray(), QByteArray("abc"));
    QCOMPARE(read(9, 3, "abc").count(), 0);
}

void tst_QExifImageHeader::tablesThatPointAtThemselvesEnd()
{
    const QByteArray block =
        ExifBlock().u32(8).u16(2).entry(34665, 4, 1, 8).entry(34853, 4, 1, 8).u32(8);
    Header header;
    QVERIFY(readBytes(&header, block));
    QVERIFY(header.imageTags().isEmpty());
    QCOMPARE(header.extendedTags().size(), 2);
    QCOMPARE(header.gpsTags().size(), 2);
    visit(header);
}

void tst_QExifImageHeader::overlappingValuesTakeNoMoreThanTheBlock()
{
    constexpr int entries = 5000;
    ExifBlock block;
    block.u32(8).u16(entries);
    for (int i = 0; i < entries; ++i)
        block.entry(i + 1, 1, 60000, 0);
    block.u32(0);
    const QByteArray bytes = block;
    Header header;
    QVERIFY(readBytes(&header, bytes));
    QCOMPARE(header.imageTags().size(), entries);
    QCOMPARE(header.value(static_cast<Header::ImageTag>(1)).count(), 60000);
    int total = 0;
    for (const Header::ImageTag tag : header.imageTags())
        total += header.value(tag).count();
    QCOMPARE(total, bytes.size());
}

TESSALINE_TEST_MAIN(tst_QExifImageHeader)
#include "tst_QExifImageHeader.moc"
