#pragma once

#include "imaging/QExifValue.h"
#include "plugin/TessalineGlobal.h"

#include <QImage>
#include <QList>
#include <QSysInfo>

#include <memory>

class QExifImageHeaderPrivate;
class QIODevice;

// The EXIF block of a JPEG file: three tables of tags, and a thumbnail.
//
// What is read is kept as it stands, tags and all that no standard lists included. Counts and
// offsets that reach past the block keep the whole items that are there, and values never take
// more memory together than the block is long, however often they overlap.
class TESSALINE_EXPORT QExifImageHeader
{
public:
    // Tags of the picture (IFD 0), as the EXIF standard names and numbers them.
    enum ImageTag : int {
        ImageWidth = 256,
        ImageLength = 257,
        BitsPerSample = 258,
        Compression = 259,
        PhotometricInterpretation = 262,
        ImageDescription = 270,
        Make = 271,
        Model = 272,
        StripOffsets = 273,
        Orientation = 274,
        SamplesPerPixel = 277,
        RowsPerStrip = 278,
        StripByteCounts = 279,
        XResolution = 282,
        YResolution = 283,
        PlanarConfiguration = 284,
        ResolutionUnit = 296,
        TransferFunction = 301,
        Software = 305,
        DateTime = 306,
        Artist = 315,
        WhitePoint = 318,
        PrimaryChromaticities = 319,
        JPEGInterchangeFormat = 513,
        JPEGInterchangeFormatLength = 514,
        YCbCrCoefficients = 529,
        YCbCrSubSampling = 530,
        YCbCrPositioning = 531,
        ReferenceBlackWhite = 532,
        Copyright = 33432,
        ExifIfdPointer = 34665,
        GpsInfoIfdPointer = 34853
    };

    // Tags of how it was taken (the Exif IFD).
    enum ExifExtendedTag : int {
        ExposureTime = 33434,
        FNumber = 33437,
        ExposureProgram = 34850,
        SpectralSensitivity = 34852,
        PhotographicSensitivity = 34855,
        ISOSpeedRatings = PhotographicSensitivity, // its name in the standard up to version 2.21
        OECF = 34856,
        SensitivityType = 34864,
        StandardOutputSensitivity = 34865,
        RecommendedExposureIndex = 34866,
        ISOSpeed = 34867,
        ISOSpeedLatitudeyyy = 34868,
        ISOSpeedLatitudezzz = 34869,
        ExifVersion = 36864,
        DateTimeOriginal = 36867,
        DateTimeDigitized = 36868,
        OffsetTime = 36880,
        OffsetTimeOriginal = 36881,
        OffsetTimeDigitized = 36882,
        ComponentsConfiguration = 37121,
        CompressedBitsPerPixel = 37122,
        ShutterSpeedValue = 37377,
        ApertureValue = 37378,
        BrightnessValue = 37379,
        ExposureBiasValue = 37380,
        MaxApertureValue = 37381,
        SubjectDistance = 37382,
        MeteringMode = 37383,
        LightSource = 37384,
        Flash = 37385,
        FocalLength = 37386,
        SubjectArea = 37396,
        MakerNote = 37500,
        UserComment = 37510,
        SubSecTime = 37520,
        SubSecTimeOriginal = 37521,
        SubSecTimeDigitized = 37522,
        Temperature = 37888,
        Humidity = 37889,
        Pressure = 37890,
        WaterDepth = 37891,
        Acceleration = 37892,
        CameraElevationAngle = 37893,
        FlashpixVersion = 40960,
        ColorSpace = 40961,
        PixelXDimension = 40962,
        PixelYDimension = 40963,
        RelatedSoundFile = 40964,
        InteroperabilityIfdPointer = 40965,
        FlashEnergy = 41483,
        SpatialFrequencyResponse = 41484,
        FocalPlaneXResolution = 41486,
        FocalPlaneYResolution = 41487,
        FocalPlaneResolutionUnit = 41488,
        SubjectLocation = 41492,
        ExposureIndex = 41493,
        SensingMethod = 41495,
        FileSource = 41728,
        SceneType = 41729,
        CFAPattern = 41730,
        CustomRendered = 41985,
        ExposureMode = 41986,
        WhiteBalance = 41987,
        DigitalZoomRatio = 41988,
        FocalLengthIn35mmFilm = 41989,
        SceneCaptureType = 41990,
        GainControl = 41991,
        Contrast = 41992,
        Saturation = 41993,
        Sharpness = 41994,
        DeviceSettingDescription = 41995,
        SubjectDistanceRange = 41996,
        ImageUniqueID = 42016,
        CameraOwnerName = 42032,
        BodySerialNumber = 42033,
        LensSpecification = 42034,
        LensMake = 42035,
        LensModel = 42036,
        LensSerialNumber = 42037,
        ImageTitle = 42038,
        Photographer = 42039,
        ImageEditor = 42040,
        CameraFirmware = 42041,
        RAWDevelopingSoftware = 42042,
        ImageEditingSoftware = 42043,
        MetadataEditingSoftware = 42044,
        CompositeImage = 42080,
        SourceImageNumberOfCompositeImage = 42081,
        SourceExposureTimesOfCompositeImage = 42082,
        Gamma = 42240
    };

    // Tags of where it was taken (the GPS IFD).
    enum GpsTag : int {
        GPSVersionID = 0,
        GPSLatitudeRef = 1,
        GPSLatitude = 2,
        GPSLongitudeRef = 3,
        GPSLongitude = 4,
        GPSAltitudeRef = 5,
        GPSAltitude = 6,
        GPSTimeStamp = 7,
        GPSSatellites = 8,
        GPSStatus = 9,
        GPSMeasureMode = 10,
        GPSDOP = 11,
        GPSSpeedRef = 12,
        GPSSpeed = 13,
        GPSTrackRef = 14,
        GPSTrack = 15,
        GPSImgDirectionRef = 16,
        GPSImgDirection = 17,
        GPSMapDatum = 18,
        GPSDestLatitudeRef = 19,
        GPSDestLatitude = 20,
        GPSDestLongitudeRef = 21,
        GPSDestLongitude = 22,
        GPSDestBearingRef = 23,
        GPSDestBearing = 24,
        GPSDestDistanceRef = 25,
        GPSDestDistance = 26,
        GPSProcessingMethod = 27,
        GPSAreaInformation = 28,
        GPSDateStamp = 29,
        GPSDifferential = 30,
        GPSHPositioningError = 31
    };

    // Empty and little-endian.
    QExifImageHeader();
    // Reads a JPEG file.
    explicit QExifImageHeader(const QString &path);
    ~QExifImageHeader();
    Q_DISABLE_COPY(QExifImageHeader)

    // Forgets all but the byte order.
    void clear();
    // That of the block read last.
    QSysInfo::Endian byteOrder() const;

    bool contains(ImageTag tag) const;
    bool contains(ExifExtendedTag tag) const;
    bool contains(GpsTag tag) const;
    // Null without such a tag.
    QExifValue value(ImageTag tag) const;
    QExifValue value(ExifExtendedTag tag) const;
    QExifValue value(GpsTag tag) const;
    void setValue(ImageTag tag, const QExifValue &value);
    void setValue(ExifExtendedTag tag, const QExifValue &value);
    void setValue(GpsTag tag, const QExifValue &value);
    void remove(ImageTag tag);
    void remove(ExifExtendedTag tag);
    void remove(GpsTag tag);

    // Ascending.
    QList<ImageTag> imageTags() const;
    QList<ExifExtendedTag> extendedTags() const;
    QList<GpsTag> gpsTags() const;

    // Turned upright; null if there is none.
    QImage thumbnail() const;
    // A null image removes it.
    void setThumbnail(const QImage &thumbnail);

    // Bytes that write() needs. Until it has run, 12 too few for a header with a thumbnail.
    qint64 size() const;

    // The bare block, from the device's position to its end. The device must be random access.
    // False if it doesn't begin as such a block does.
    bool read(QIODevice *device);
    // Returns the bytes written, or -1 if the device refused some. With GPS values it leaves the
    // tag GpsInfoIfdPointer among the image tags.
    qint64 write(QIODevice *device) const;

    // The block in a JPEG file's first application segment 1. False without one. A file that can't
    // be opened leaves the header as it is.
    bool loadFromJpeg(const QString &path);
    bool loadFromJpeg(QIODevice *device);
    // Puts the block into a JPEG file in place. False, with the file unchanged, for what isn't
    // laid out as a JPEG is; false as well if it can't be written. In a JFIF file that has no EXIF
    // yet, a stray marker behind the block keeps readers from the picture.
    bool saveToJpeg(const QString &path) const;
    bool saveToJpeg(QIODevice *device) const;

private:
    std::unique_ptr<QExifImageHeaderPrivate> d;
};
