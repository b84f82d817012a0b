#include "imaging/ExifInfo.h"
#include "support/Ratio.h"

#include <QBuffer>
#include <QGuiApplication>
#include <QImage>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <exiv2/exiv2.hpp>
#include <libexif/exif-data.h>
#include <random>

// What a gallery asks of each photo: the position, the date, the orientation. And what damaged
// photos can cost.

namespace {

const int photoCount = 2000;
const int damagedCount = 20000;

struct Facts
{
    double latitude = 0;
    double longitude = 0;
    int orientation = 0;
    std::string date;

    bool operator==(const Facts &other) const
    {
        return std::abs(latitude - other.latitude) < 1e-9
               && std::abs(longitude - other.longitude) < 1e-9 && orientation == other.orientation
               && date == other.date;
    }
};

// In memory where the system offers that: the time of a disk would hide ours and the peers'.
QString workFolderTemplate()
{
    const QString memory = QStringLiteral("/dev/shm");
    return (QFileInfo(memory).isWritable() ? memory : QDir::tempPath())
           + QStringLiteral("/bench_ExifInfo-XXXXXX");
}

QByteArray jpeg(const QSize &size)
{
    std::mt19937 random(7);
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, qRgb(x % 256, y % 256, static_cast<int>(random() % 64)));
    }
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPG");
    return buffer.data();
}

// 35 tags in three tables, and a thumbnail.
QByteArray exifBlock(int number, const QByteArray &thumbnail)
{
    const std::string n = std::to_string(number);
    Exiv2::ExifData data;
    const std::pair<const char *, std::string> texts[] = {
        {"Exif.Image.ImageDescription", "Photo " + n + " of a long day"},
        {"Exif.Image.Make", "Maker of cameras"},
        {"Exif.Image.Model", "A camera with a name"},
        {"Exif.Image.Software", "Version 1.2.3"},
        {"Exif.Image.DateTime", "2021:12:31 23:59:58"},
        {"Exif.Image.Artist", "Somebody"},
        {"Exif.Image.Copyright", "Nobody"},
        {"Exif.Photo.DateTimeOriginal", "2021:12:31 23:59:0" + std::to_string(number % 10)},
        {"Exif.Photo.DateTimeDigitized", "2021:12:31 23:59:58"},
        {"Exif.Photo.SubSecTimeOriginal", "123"},
        {"Exif.GPSInfo.GPSLatitudeRef", number % 2 ? "S" : "N"},
        {"Exif.GPSInfo.GPSLongitudeRef", number % 3 ? "W" : "E"},
        {"Exif.GPSInfo.GPSMapDatum", "WGS-84"},
        {"Exif.GPSInfo.GPSDateStamp", "2021:12:31"},
    };
    for (const auto &[key, text] : texts)
        data[key] = text;
    for (const char *key :
         {"Exif.Image.Orientation", "Exif.Image.ResolutionUnit", "Exif.Photo.ISOSpeedRatings",
          "Exif.Photo.ExposureProgram", "Exif.Photo.MeteringMode", "Exif.Photo.Flash",
          "Exif.Photo.ColorSpace", "Exif.Photo.ExposureMode", "Exif.Photo.WhiteBalance",
          "Exif.Photo.SceneCaptureType", "Exif.Photo.PixelXDimension"})
        data[key] = static_cast<uint16_t>(1 + number % 8);
    for (const char *key :
         {"Exif.Image.XResolution", "Exif.Image.YResolution", "Exif.Photo.ExposureTime",
          "Exif.Photo.FNumber", "Exif.Photo.FocalLength"})
        data[key] = Exiv2::URational(72 + static_cast<uint32_t>(number), 7);
    data["Exif.Photo.ExposureBiasValue"] = Exiv2::Rational(-1, 3);
    data["Exif.GPSInfo.GPSAltitude"] = Exiv2::URational(125, 10);
    const std::pair<const char *, std::string> positions[] = {
        {"Exif.GPSInfo.GPSLatitude", std::to_string(number % 90) + "/1 30/1 1234/100"},
        {"Exif.GPSInfo.GPSLongitude", std::to_string(number % 180) + "/1 15/1 4321/100"},
    };
    for (const auto &[key, text] : positions) {
        Exiv2::URationalValue value;
        value.read(text);
        data[key] = value;
    }
    data["Exif.Photo.ExifVersion"] = "48 50 51 48";
    if (data.count() != 35)
        qFatal("%ld tags", data.count());

    Exiv2::ExifThumb(data).setJpegThumbnail(
        reinterpret_cast<const Exiv2::byte *>(thumbnail.constData()), thumbnail.size());
    Exiv2::Blob blob;
    Exiv2::ExifParser::encode(blob, number % 2 ? Exiv2::bigEndian : Exiv2::littleEndian, data);
    return QByteArray(reinterpret_cast<const char *>(blob.data()), static_cast<int>(blob.size()));
}

// The segment comes first.
QByteArray withExif(const QByteArray &picture, const QByteArray &block)
{
    const int length = block.size() + 8;
    return picture.left(2) + "\xFF\xE1" + static_cast<char>(length >> 8)
           + static_cast<char>(length & 0xff) + QByteArray("Exif\0\0", 6) + block + picture.mid(2);
}

Facts factsOf(const ExifInfo &info)
{
    return {info.gpsLatitude(), info.gpsLongitude(), info.imageValue(274).toInt(),
            info.extendedValue(36867).toList().value(0).toString().toStdString()};
}

Facts ours(const QByteArray &path)
{
    return factsOf(ExifInfo(QString::fromLocal8Bit(path)));
}

double libexifDegrees(ExifData *data, int tag, int refTag)
{
    ExifContent *gps = data->ifd[EXIF_IFD_GPS];
    const ExifEntry *entry = exif_content_get_entry(gps, static_cast<ExifTag>(tag));
    const ExifEntry *ref = exif_content_get_entry(gps, static_cast<ExifTag>(refTag));
    if (!entry || !ref || entry->components < 3)
        return 0;
    const ExifByteOrder order = exif_data_get_byte_order(data);
    double degrees = 0;
    double unit = 1;
    for (int i = 0; i < 3; ++i, unit *= 60) {
        const ExifRational part = exif_get_rational(entry->data + i * 8, order);
        degrees += double(part.numerator) / part.denominator / unit;
    }
    return *ref->data == 'S' || *ref->data == 'W' ? -degrees : degrees;
}

Facts libexif(const QByteArray &path)
{
    ExifData *data = exif_data_new_from_file(path.constData());
    Facts facts;
    facts.latitude = libexifDegrees(data, 2, 1);
    facts.longitude = libexifDegrees(data, 4, 3);
    if (const ExifEntry *entry =
            exif_content_get_entry(data->ifd[EXIF_IFD_0], EXIF_TAG_ORIENTATION))
        facts.orientation = exif_get_short(entry->data, exif_data_get_byte_order(data));
    if (const ExifEntry *entry =
            exif_content_get_entry(data->ifd[EXIF_IFD_EXIF], EXIF_TAG_DATE_TIME_ORIGINAL))
        facts.date = reinterpret_cast<const char *>(entry->data);
    exif_data_unref(data);
    return facts;
}

double exiv2Degrees(const Exiv2::ExifData &data, const char *key, const char *refKey)
{
    const auto value = data.findKey(Exiv2::ExifKey(key));
    const auto ref = data.findKey(Exiv2::ExifKey(refKey));
    if (value == data.end() || ref == data.end() || value->count() < 3)
        return 0;
    double degrees = 0;
    double unit = 1;
    for (long i = 0; i < 3; ++i, unit *= 60) {
        const Exiv2::Rational part = value->toRational(i);
        degrees += double(part.first) / part.second / unit;
    }
    const std::string letter = ref->toString();
    return letter == "S" || letter == "W" ? -degrees : degrees;
}

Facts exiv2(const QByteArray &path)
{
    const auto image = Exiv2::ImageFactory::open(path.toStdString());
    image->readMetadata();
    const Exiv2::ExifData &data = image->exifData();
    Facts facts;
    facts.latitude = exiv2Degrees(data, "Exif.GPSInfo.GPSLatitude", "Exif.GPSInfo.GPSLatitudeRef");
    facts.longitude =
        exiv2Degrees(data, "Exif.GPSInfo.GPSLongitude", "Exif.GPSInfo.GPSLongitudeRef");
    const auto orientation = data.findKey(Exiv2::ExifKey("Exif.Image.Orientation"));
    if (orientation != data.end())
        facts.orientation = static_cast<int>(orientation->toLong());
    const auto date = data.findKey(Exiv2::ExifKey("Exif.Photo.DateTimeOriginal"));
    if (date != data.end())
        facts.date = date->toString();
    return facts;
}

using Reader = Facts (*)(const QByteArray &);

RatioTable::Function readAll(Reader read, const QList<QByteArray> &paths)
{
    return [=](benchmark::State &state) {
        for (auto _ : state) {
            for (const QByteArray &path : paths)
                benchmark::DoNotOptimize(read(path));
        }
    };
}

// What this process has read by system calls, files in memory included.
qint64 bytesRead()
{
    QFile file(QStringLiteral("/proc/self/io"));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return 0;
    return file.readLine().mid(7).trimmed().toLongLong(); // "rchar: 123"
}

// Bytes that our reader takes from one photo.
qint64 bytesPerPhoto(const QByteArray &path)
{
    bytesRead();
    const qint64 start = bytesRead();
    const qint64 own = bytesRead() - start; // of the counting
    const qint64 before = bytesRead();
    ours(path);
    return bytesRead() - before - own;
}

qint64 cpuNanoseconds()
{
    timespec time;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return qint64(time.tv_sec) * 1000000000 + time.tv_nsec;
}

// The fastest of some runs: what interrupts one of them isn't the picture's fault.
template <typename Function>
qint64 timeOf(const Function &function, QByteArray bytes, int runs)
{
    qint64 fastest = std::numeric_limits<qint64>::max();
    for (int i = 0; i < runs; ++i) {
        const qint64 start = cpuNanoseconds();
        function(&bytes);
        fastest = qMin(fastest, cpuNanoseconds() - start);
    }
    return fastest;
}

// 1 to 40 bytes ahead of the picture itself are changed, and every third is cut short.
QByteArray damaged(QByteArray bytes, int exifSize, std::mt19937 &random, bool isCut)
{
    const int changes = 1 + static_cast<int>(random() % 40);
    for (int i = 0; i < changes; ++i)
        bytes[static_cast<int>(random() % static_cast<uint>(exifSize))] =
            static_cast<char>(random());
    return isCut ? bytes.left(static_cast<int>(random() % static_cast<uint>(exifSize))) : bytes;
}

void readDamaged(QByteArray *bytes)
{
    QBuffer buffer(bytes);
    buffer.open(QIODevice::ReadOnly);
    QExifImageHeader header;
    header.loadFromJpeg(&buffer);
    benchmark::DoNotOptimize(header.imageTags());
}

void libexifDamaged(QByteArray *bytes)
{
    ExifData *data = exif_data_new_from_data(reinterpret_cast<const uchar *>(bytes->constData()),
                                             static_cast<unsigned>(bytes->size()));
    benchmark::DoNotOptimize(data);
    exif_data_unref(data);
}

// The time for the slowest of the pictures: those that look slowest at first are looked at again.
template <typename Function>
double worstTime(const Function &function, const QList<QByteArray> &pictures)
{
    QVector<QPair<qint64, int>> times;
    for (int i = 0; i < pictures.size(); ++i)
        times.append({timeOf(function, pictures.at(i), 2), i});
    std::sort(times.rbegin(), times.rend());
    qint64 worst = 0;
    for (int i = 0; i < 100; ++i)
        worst = qMax(worst, timeOf(function, pictures.at(times.at(i).second), 50));
    return double(worst);
}

void addWorstDamage(RatioTable &table, const QByteArray &photo, int exifSize)
{
    std::mt19937 random(1);
    const QByteArray start = photo.left(exifSize + 1000); // nobody reads on
    QList<QByteArray> pictures;
    for (int i = 0; i < damagedCount; ++i)
        pictures.append(damaged(start, exifSize, random, i % 3 == 0));
    table
        .value("worst of 20,000 damaged photos in ns, to libexif", worstTime(readDamaged, pictures),
               worstTime(libexifDamaged, pictures))
        .limit(1.5);
}

} // namespace

int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    // Damaged photos are full of types that don't exist.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    const QTemporaryDir work(workFolderTemplate());
    const QByteArray picture = jpeg(QSize(400, 300));
    const QByteArray thumbnail = jpeg(QSize(80, 60));
    QList<QByteArray> paths;
    QByteArray photo;
    int exifSize = 0;
    for (int i = 0; i < photoCount; ++i) {
        const QByteArray block = exifBlock(i, thumbnail);
        photo = withExif(picture, block);
        exifSize = block.size() + 12;
        const QByteArray path = QFile::encodeName(work.filePath(QString::number(i)));
        QFile file(QFile::decodeName(path));
        if (!file.open(QIODevice::WriteOnly) || file.write(photo) != photo.size())
            return 1;
        file.close();
        paths.append(path);
        const Facts facts = ours(path);
        if (facts.orientation != 1 + i % 8 || !(facts == libexif(path))
            || !(facts == exiv2(path))) {
            std::fprintf(stderr, "The readers differ about photo %d.\n", i);
            return 1;
        }
    }

    RatioTable table;
    table.add("EXIF of 2,000 photos, to libexif", readAll(ours, paths), readAll(libexif, paths))
        .limit(1.0)
        .iterations(1);
    table.add("EXIF of 2,000 photos, to exiv2", readAll(ours, paths), readAll(exiv2, paths))
        .limit(0.65)
        .iterations(1);
    constexpr int buffer = 16384; // of QFile
    table.value("bytes read of a photo, to its segment and a buffer",
                double(bytesPerPhoto(paths.last())),
                double((exifSize + buffer - 1) / buffer * buffer));
    addWorstDamage(table, photo, exifSize);
    return table.run(argc, argv);
}
