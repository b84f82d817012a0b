#include "imaging/ImageObject.h"

#include "imaging/ImageProvider.h"
#include "plugin/FileUtility.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"
#include "support/SignalRecorder.h"
#include "support/SmallDisk.h"
#include "support/UnprivilegedUser.h"

#include <QBuffer>
#include <QFile>
#include <QImageReader>
#include <QImageWriter>
#include <QMetaEnum>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickImageProvider>
#include <QTemporaryDir>
#include <QtEndian>
#include <QTest>

#include <limits>

#include <sys/resource.h>

class tst_ImageObject : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void newObjectIsEmpty();
    void formatsAreThoseOfTheReadersAndWriters();
    void enumsHaveTheNumbersOfQt_data();
    void enumsHaveTheNumbersOfQt();
    void propertiesAreThoseOfTheImage_data();
    void propertiesAreThoseOfTheImage();
    void byteCountStaysAnInt();

    void setImageSignalsInOrder();
    void equalImageRaisesNothing();
    void equalPixelsWithOtherTextsRaiseNothing();

    void clearMakesAnImageOrNone_data();
    void clearMakesAnImageOrNone();
    void clearOfAnEmptyObjectRaisesNothing();
    void createLeavesTheObjectAlone();
    void createTakesAnyArguments_data();
    void createTakesAnyArguments();

    void loadReplacesTheImage();
    void loadSignalsWhetherItWorksOrNot();
    void loadTakesTheFormatGiven();
    void loadResolvesItsPath();
    void loadByUrl();
    void badFilesAreNotLoaded_data();
    void badFilesAreNotLoaded();
    void unknownFormatIsFoundOutFromTheFile_data();
    void unknownFormatIsFoundOutFromTheFile();
    void unreadableFileIsNotLoaded();
    void hugeHeaderIsRefused_data();
    void hugeHeaderIsRefused();
    void hugeContentIsRefused_data();
    void hugeContentIsRefused();
    void drawingsShowNoFiles_data();
    void drawingsShowNoFiles();
    void drawingsShowTheirOwnPictures();
    void iconsAreLoaded_data();
    void iconsAreLoaded();
    void hugePictureWithItsBytesIsLoaded();
    void blackPictureOfFewBytesIsLoaded();
    void hugePageOfFewBytesIsLoaded();

    void loadFromAProvider();
    void loadFromAProviderTakesThePathAlone();
    void loadFromAProviderIgnoresCaseAndFormat();
    void loadFromAProviderFails_data();
    void loadFromAProviderFails();
    void loadFromAProviderNeedsAnEngine();
    void loadFromItsOwnUrlChangesNothing();

    void saveWritesEachFormat_data();
    void saveWritesEachFormat();
    void saveResolvesItsPath();
    void saveTakesTheQuality();
    void saveOfNoImageOrToNowhereFails_data();
    void saveOfNoImageOrToNowhereFails();
    void nameWithANulIsNeitherSavedNorLoaded();
    void saveToAReadOnlyFolderFails();
    void saveToAFullDiskFails();
    void saveIsSilent();

    void fillAndSetPixelWaitForSync();
    void fillTakesTheBareNumber_data();
    void fillTakesTheBareNumber();
    void pixelIsOpaque();
    void pixelsOutsideAreHarmless();
    void messageHandlerMayAskForThePicture();
    void invertPixelsSignalsContentOnly();
    void textsAreKept();
    void syncOnlySignals();

    void pairsDoTheSame_data();
    void pairsDoTheSame();
    void inPlaceWithoutChangeRaisesNothing();
    void scaleKeepsTheAspectRatio();
    void clipTakesTheCorners_data();
    void clipTakesTheCorners();
    void rotateTrimsToTheBounds_data();
    void rotateTrimsToTheBounds();
    void pointOfRotationMakesNoDifference();
    void emptyObjectTakesEverything();
    void absurdArgumentsAreHarmless();

private:
    QString path(const QString &name) const { return m_folder.filePath(name); }
    void write(const QString &name, const QByteArray &bytes) const;

    QTemporaryDir m_folder;
};

namespace {

const char *const imageCategory = "Zemrik.Tessaline.Image";
const QStringList allSignals{"imageContentChanged", "imageChanged", "textChanged"};

// Each pixel has a colour of its own.
QImage pattern(int width, int height, QImage::Format format = QImage::Format_ARGB32)
{
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, qRgb(x * 255 / width, y * 255 / height, (x * 7 + y * 13) % 256));
    }
    return image.convertToFormat(format);
}

QByteArray encoded(const QImage &image, const char *format)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return buffer.data();
}

quint32 crc32(const QByteArray &bytes)
{
    quint32 crc = 0xffffffff;
    for (const char byte : bytes) {
        crc ^= static_cast<uchar>(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = crc & 1 ? (crc >> 1) ^ 0xedb88320 : crc >> 1;
    }
    return ~crc;
}

template <typename Number>
QByteArray bigEndian(Number number)
{
    number = qToBigEndian(number);
    return QByteArray(reinterpret_cast<const char *>(&number), sizeof number);
}

template <typename Number>
QByteArray littleEndian(Number number)
{
    number = qToLittleEndian(number);
    return QByteArray(reinterpret_cast<const char *>(&number), sizeof number);
}

// A small picture whose header claims another size.
QByteArray hugePng(quint32 side)
{
    QByteArray bytes = encoded(pattern(8, 8), "PNG");
    bytes.replace(16, 8, bigEndian(side) + bigEndian(side));
    return bytes.replace(29, 4, bigEndian(crc32(bytes.mid(12, 17))));
}

QByteArray hugeJpeg(quint16 side)
{
    QByteArray bytes = encoded(pattern(8, 8), "JPG");
    const int frame = bytes.indexOf(QByteArray("\xFF\xC0\x00\x11\x08", 5));
    return bytes.replace(frame + 5, 4, bigEndian(side) + bigEndian(side));
}

QByteArray hugeBmp(quint32 side)
{
    QByteArray bytes = encoded(pattern(8, 8), "BMP");
    return bytes.replace(18, 8, littleEndian(side) + littleEndian(side));
}

// An icon of one picture.
QByteArray icon(const QByteArray &png)
{
    return QByteArray("\0\0\1\0\1\0\0\0\0\0\1\0\40\0", 14) + littleEndian(quint32(png.size()))
           + littleEndian(quint32(22)) + png;
}

QByteArray macIcon(const QByteArray &png)
{
    const auto block = [](const char *type, const QByteArray &content) {
        return type + bigEndian(quint32(content.size() + 8)) + content;
    };
    return block("icns", block("ic09", png));
}

QByteArray drawing(const QByteArray &reference)
{
    return "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' "
           "width='8' height='8'><image width='8' height='8' xlink:href='"
           + reference + "'/></svg>";
}

QByteArray dataUri(const QByteArray &bytes)
{
    return "data:image/png;base64," + bytes.toBase64();
}

QByteArray gzip(const QByteArray &bytes)
{
    QByteArray deflated = qCompress(bytes, 9).mid(6);
    deflated.chop(4);
    return QByteArray("\x1f\x8b\x08\0\0\0\0\0\0\3", 10) + deflated
           + littleEndian(quint32(crc32(bytes))) + littleEndian(quint32(bytes.size()));
}

bool isReadable(const char *format)
{
    return QImageReader::supportedImageFormats().contains(format);
}

// Gives a picture of 3 x 2 pixels for every id but "none", and remembers what it was asked.
class Provider : public QQuickImageProvider
{
public:
    Provider()
        : QQuickImageProvider(Image)
    {
    }

    QImage requestImage(const QString &id, QSize *size, const QSize &requestedSize) override
    {
        ids.append(id);
        requestedSizes.append(requestedSize);
        *size = QSize(3, 2);
        return id == "none" ? QImage() : pattern(3, 2);
    }

    QStringList ids;
    QList<QSize> requestedSizes;
};

class PixmapProvider : public QQuickImageProvider
{
public:
    PixmapProvider()
        : QQuickImageProvider(Pixmap)
    {
    }
};

// An engine with providers, and an image object in one of its contexts.
struct Scene
{
    Scene()
        : object(pattern(2, 2))
    {
        engine.addImageProvider("Pictures", provider);
        engine.addImageProvider("pixmaps", new PixmapProvider);
        QQmlEngine::setContextForObject(&object, engine.rootContext());
    }

    QQmlEngine engine;
    Provider *provider = new Provider;
    ImageObject object;
};

} // namespace

void tst_ImageObject::initTestCase()
{
    QVERIFY(m_folder.isValid());
}

void tst_ImageObject::write(const QString &name, const QByteArray &bytes) const
{
    QFile file(path(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

void tst_ImageObject::newObjectIsEmpty()
{
    const ImageObject object;
    QVERIFY(object.isEmpty());
    QVERIFY(object.image().isNull());
    QCOMPARE(object.size(), QSize(0, 0));
    QCOMPARE(object.width(), 0);
    QCOMPARE(object.height(), 0);
    QCOMPARE(object.depth(), 0);
    QCOMPARE(object.bitPlaneCount(), 0);
    QCOMPARE(object.byteCount(), 0);
    QVERIFY(!object.hasAlphaChannel());
    QCOMPARE(object.format(), ImageObject::ImageFormatInvalid);
    QVERIFY(object.textKeys().isEmpty());
    QVERIFY(object.textValues().isEmpty());
    QCOMPARE(object.url(), QUrl());
}

void tst_ImageObject::formatsAreThoseOfTheReadersAndWriters()
{
    QList<QByteArray> read;
    const QStringList readNames = ImageObject().availableReadFormats();
    for (const QString &name : readNames)
        read.append(name.toLatin1());
    QCOMPARE(read, QImageReader::supportedImageFormats());
    QVERIFY(read.contains("jpg"));
    QList<QByteArray> written;
    const QStringList writtenNames = ImageObject().availableWriteFormats();
    for (const QString &name : writtenNames)
        written.append(name.toLatin1());
    QCOMPARE(written, QImageWriter::supportedImageFormats());
    QVERIFY(written.contains("png"));
}

void tst_ImageObject::enumsHaveTheNumbersOfQt_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QList<QByteArray>>("keys"); // number by number
    const auto row = [](const char *name, const QByteArray &keys) {
        QTest::newRow(name) << QByteArray(name) << keys.split(' ');
    };
    row("AspectRatioMode", "AspectRatioIgnore AspectRatioKeep AspectRatioKeepByExpanding");
    row("TransformationMode", "TransformationModeFast TransformationModeSmooth");
    row("InvertMode", "InvertRgb InvertRgba");
    row("ImageFormat",
        "ImageFormatInvalid ImageFormatMono ImageFormatMonoLSB ImageFormatIndexed8 "
        "ImageFormatRGB32 ImageFormatARGB32 ImageFormatARGB32_Premultiplied ImageFormatRGB16 "
        "ImageFormatARGB8565_Premultiplied ImageFormatRGB666 ImageFormatARGB6666_Premultiplied "
        "ImageFormatRGB555 ImageFormatARGB8555_Premultiplied ImageFormatRGB888 ImageFormatRGB444 "
        "ImageFormatARGB4444_Premultiplied ImageFormatRGBX8888 ImageFormatRGBA8888 "
        "ImageFormatRGBA8888_Premultiplied ImageFormatBGR30 ImageFormatA2BGR30_Premultiplied "
        "ImageFormatRGB30 ImageFormatA2RGB30_Premultiplied ImageFormatAlpha8 "
        "ImageFormatGrayscale8");
}

void tst_ImageObject::enumsHaveTheNumbersOfQt()
{
    QFETCH(QByteArray, name);
    QFETCH(QList<QByteArray>, keys);
    const QMetaObject &metaObject = ImageObject::staticMetaObject;
    const QMetaEnum metaEnum =
        metaObject.enumerator(metaObject.indexOfEnumerator(name.constData()));
    QCOMPARE(metaEnum.keyCount(), keys.size());
    for (int i = 0; i < keys.size(); ++i) {
        QCOMPARE(QByteArray(metaEnum.key(i)), keys.at(i));
        QCOMPARE(metaEnum.value(i), i);
    }
}

void tst_ImageObject::propertiesAreThoseOfTheImage_data()
{
    QTest::addColumn<QImage>("image");
    QTest::addColumn<int>("depth");
    QTest::addColumn<int>("planes");
    QTest::addColumn<bool>("alpha");
    QTest::newRow("one bit") << pattern(20, 10, QImage::Format_Mono) << 1 << 1 << false;
    QTest::newRow("grey") << pattern(20, 10, QImage::Format_Grayscale8) << 8 << 8 << false;
    QTest::newRow("opaque") << pattern(20, 10, QImage::Format_RGB32) << 32 << 24 << false;
    QTest::newRow("alpha") << pattern(20, 10, QImage::Format_ARGB32) << 32 << 32 << true;
    QTest::newRow("24 bits") << pattern(20, 10, QImage::Format_RGB888) << 24 << 24 << false;
    QTest::newRow("16 bits a channel")
        << pattern(20, 10, QImage::Format_RGBA64) << 64 << 64 << true;
}

void tst_ImageObject::propertiesAreThoseOfTheImage()
{
    QFETCH(QImage, image);
    QFETCH(int, depth);
    QFETCH(int, planes);
    QFETCH(bool, alpha);
    const ImageObject object(image);
    QVERIFY(!object.isEmpty());
    QCOMPARE(object.size(), QSize(20, 10));
    QCOMPARE(object.width(), 20);
    QCOMPARE(object.height(), 10);
    QCOMPARE(object.depth(), depth);
    QCOMPARE(object.bitPlaneCount(), planes);
    QCOMPARE(object.byteCount(), image.bytesPerLine() * 10);
    QCOMPARE(object.hasAlphaChannel(), alpha);
    QCOMPARE(int(object.format()), int(image.format()));
    QCOMPARE(object.image(), image);
}

void tst_ImageObject::byteCountStaysAnInt()
{
    // No pixel of it is touched, so that it takes no memory.
    const QImage image(30000, 30000, QImage::Format_RGB32);
    if (image.isNull())
        QSKIP("No address space for 3.6 GB");
    QCOMPARE(ImageObject(image).byteCount(), std::numeric_limits<int>::max());
}

void tst_ImageObject::setImageSignalsInOrder()
{
    ImageObject object;
    SignalRecorder signals_(&object);
    object.setImage(pattern(4, 4));
    // The connection of imageChanged to imageContentChanged is older than any of ours.
    QCOMPARE(signals_.take(), allSignals);
    QCOMPARE(object.image(), pattern(4, 4));
    object.setImage(QImage());
    QCOMPARE(signals_.take(), allSignals);
    QVERIFY(object.isEmpty());
}

void tst_ImageObject::equalImageRaisesNothing()
{
    ImageObject object(pattern(4, 4));
    SignalRecorder signals_(&object);
    object.setImage(pattern(4, 4));
    object.setImage(object.image());
    QCOMPARE(signals_.names(), QStringList());
}

void tst_ImageObject::equalPixelsWithOtherTextsRaiseNothing()
{
    ImageObject object(pattern(4, 4));
    SignalRecorder signals_(&object);
    QImage image = pattern(4, 4);
    image.setText("Title", "a text");
    object.setImage(image);
    QCOMPARE(signals_.names(), QStringList());
    QVERIFY(object.textKeys().isEmpty());
}

void tst_ImageObject::clearMakesAnImageOrNone_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::addColumn<int>("format");
    QTest::addColumn<QSize>("size");
    QTest::newRow("both") << 10 << 5 << 13 << QSize(10, 5);
    QTest::newRow("one pixel") << 1 << 1 << 5 << QSize(1, 1);
    QTest::newRow("no height") << 10 << 0 << 5 << QSize(0, 0);
    QTest::newRow("no width") << 0 << 10 << 5 << QSize(0, 0);
    QTest::newRow("negative") << -1 << 10 << 5 << QSize(0, 0);
    QTest::newRow("invalid format") << 10 << 5 << 0 << QSize(0, 0);
    QTest::newRow("no such format") << 10 << 5 << 4711 << QSize(0, 0);
    QTest::newRow("negative format") << 10 << 5 << -1 << QSize(0, 0);
}

void tst_ImageObject::clearMakesAnImageOrNone()
{
    QFETCH(int, width);
    QFETCH(int, height);
    QFETCH(int, format);
    QFETCH(QSize, size);
    ImageObject object(pattern(4, 4));
    SignalRecorder signals_(&object);
    object.clear(width, height, static_cast<ImageObject::ImageFormat>(format));
    QCOMPARE(signals_.names(), allSignals);
    QCOMPARE(object.size(), size);
    QCOMPARE(object.isEmpty(), size.isEmpty());
    QCOMPARE(object.url().isEmpty(), size.isEmpty());
    if (!object.isEmpty())
        QCOMPARE(int(object.format()), format);
}

void tst_ImageObject::clearOfAnEmptyObjectRaisesNothing()
{
    ImageObject object;
    SignalRecorder signals_(&object);
    object.clear();
    object.clear(10);
    QCOMPARE(signals_.names(), QStringList());
    object.clear(10, 5);
    QCOMPARE(object.format(), ImageObject::ImageFormatARGB32);
}

void tst_ImageObject::createLeavesTheObjectAlone()
{
    ImageObject object(pattern(4, 4));
    SignalRecorder signals_(&object);
    const QScopedPointer<ImageObject> created(object.create(10, 5));
    QCOMPARE(signals_.names(), QStringList());
    QCOMPARE(object.image(), pattern(4, 4));
    QCOMPARE(created->size(), QSize(10, 5));
    QCOMPARE(created->format(), ImageObject::ImageFormatARGB32);
    QVERIFY(!created->parent());
    QCOMPARE(QQmlEngine::objectOwnership(created.data()), QQmlEngine::JavaScriptOwnership);
}

void tst_ImageObject::createTakesAnyArguments_data()
{
    clearMakesAnImageOrNone_data();
}

void tst_ImageObject::createTakesAnyArguments()
{
    QFETCH(int, width);
    QFETCH(int, height);
    QFETCH(int, format);
    QFETCH(QSize, size);
    const QScopedPointer<ImageObject> created(
        ImageObject().create(width, height, static_cast<ImageObject::ImageFormat>(format)));
    QCOMPARE(created->size(), size);
}

void tst_ImageObject::loadReplacesTheImage()
{
    QImage image = pattern(20, 10, QImage::Format_RGB32);
    image.setText("Title", "a text");
    write("texts.png", encoded(image, "PNG"));
    ImageObject object(pattern(4, 4));
    QVERIFY(object.load(path("texts.png")));
    QCOMPARE(object.image(), image);
    QCOMPARE(object.textKeys(), QStringList({"Title"}));
    QCOMPARE(object.textValues(), QVariantMap({{"Title", "a text"}}));

    const QImage other = pattern(8, 8, QImage::Format_RGB32);
    write("other.bmp", encoded(other, "BMP"));
    QVERIFY(object.load(path("other.bmp")));
    QCOMPARE(object.image(), other);
    QVERIFY(object.textKeys().isEmpty());
}

void tst_ImageObject::loadSignalsWhetherItWorksOrNot()
{
    write("signals.png", encoded(pattern(4, 4), "PNG"));
    ImageObject object;
    SignalRecorder signals_(&object);
    LogCapture log;
    QVERIFY(object.load(path("signals.png")));
    QCOMPARE(signals_.take(), allSignals);
    QVERIFY(object.load(path("signals.png"))); // the same image once more
    QCOMPARE(signals_.take(), allSignals);
    QVERIFY(!object.load(path("nothing.png")));
    QCOMPARE(signals_.take(), allSignals);
    QVERIFY(object.isEmpty());
    QVERIFY(!object.load(path("nothing.png")));
    QCOMPARE(signals_.take(), allSignals);
    QVERIFY2(log.messages().isEmpty(), qPrintable(log.dump()));
}

void tst_ImageObject::loadTakesTheFormatGiven()
{
    write("picture.data", encoded(pattern(4, 4), "BMP"));
    ImageObject object;
    QVERIFY(object.load(path("picture.data"), "bmp"));
    QVERIFY(object.load(path("picture.data")));
    LogCapture log; // libpng's own words
    QVERIFY(!object.load(path("picture.data"), "jpg"));
    QVERIFY(object.isEmpty());
    QVERIFY(object.load(path("picture.data"), "BMP"));
}

void tst_ImageObject::loadResolvesItsPath()
{
    write("resolved.png", encoded(pattern(4, 4), "PNG"));
    FileUtility::setPathVariable("PICTURES", m_folder.path());
    ImageObject object;
    QVERIFY(object.load(QStringLiteral("$PICTURES/resolved.png")));
    QVERIFY(object.load(QStringLiteral(":/images/defaultThumbnail.png")));
    QCOMPARE(object.image(), QImage(":/images/defaultThumbnail.png"));
    FileUtility::setPathVariable("PICTURES", QString());
}

void tst_ImageObject::loadByUrl()
{
    write("by url.png", encoded(pattern(4, 4), "PNG"));
    ImageObject object;
    SignalRecorder signals_(&object);
    QVERIFY(object.load(QUrl::fromLocalFile(path("by url.png"))));
    QCOMPARE(signals_.take(), allSignals);
    QVERIFY(object.load(QUrl("qrc:/images/defaultThumbnail.png")));
    QVERIFY(object.load(QUrl("other:" + path("by url.png")))); // its path counts
    LogCapture log;
    QVERIFY(!object.load(QUrl::fromLocalFile(path("by url.png")), "jpg"));
}

void tst_ImageObject::badFilesAreNotLoaded_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("format");
    write("text.png", "not a picture");
    write("empty.png", "");
    write("cut.png", encoded(pattern(64, 64), "PNG").left(100));
    write("head.jpg", encoded(pattern(64, 64), "JPG").left(20));
    write("good.png", encoded(pattern(4, 4), "PNG"));
    QTest::newRow("text") << "text.png" << QString();
    QTest::newRow("empty file") << "empty.png" << QString();
    QTest::newRow("cut PNG") << "cut.png" << QString();
    QTest::newRow("cut JPEG head") << "head.jpg" << QString();
    QTest::newRow("directory") << "." << QString();
    QTest::newRow("no file") << "nothing.png" << QString();
    QTest::newRow("no path") << "" << QString();
    QTest::newRow("other format") << "good.png"
                                  << "jpg";
}

void tst_ImageObject::badFilesAreNotLoaded()
{
    QFETCH(QString, name);
    QFETCH(QString, format);
    ImageObject object(pattern(4, 4));
    LogCapture log; // the decoders' own words
    QVERIFY(!object.load(name.isEmpty() ? name : path(name), format));
    QVERIFY(object.isEmpty());
    QCOMPARE(log.count(QtWarningMsg, imageCategory, ""), 0);
}

void tst_ImageObject::unknownFormatIsFoundOutFromTheFile_data()
{
    QTest::addColumn<QString>("format");
    QTest::newRow("unknown") << "no such format";
    QTest::newRow("another alphabet") << QString(QChar(0x4E2D));
}

void tst_ImageObject::unknownFormatIsFoundOutFromTheFile()
{
    QFETCH(QString, format);
    write("unknown.png", encoded(pattern(4, 4), "PNG"));
    ImageObject object;
    QVERIFY(object.load(path("unknown.png"), format));
    QVERIFY(QImage().load(path("unknown.png"), format.toLatin1().constData())); // as Qt does
}

void tst_ImageObject::unreadableFileIsNotLoaded()
{
    write("unreadable.png", encoded(pattern(4, 4), "PNG"));
    QVERIFY(QFile::setPermissions(m_folder.path(), QFile::Permissions(0x7755)));
    QVERIFY(QFile::setPermissions(path("unreadable.png"), QFile::WriteOwner));
    const UnprivilegedUser user;
    QVERIFY(!ImageObject().load(path("unreadable.png")));
}

void tst_ImageObject::hugeHeaderIsRefused_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("side");
    QTest::newRow("png") << hugePng(30000) << 30000;
    QTest::newRow("jpg") << hugeJpeg(30000) << 30000;
    QTest::newRow("bmp") << hugeBmp(16000) << 16000; // Qt's own limit is a little higher
    QTest::newRow("ppm") << QByteArray("P6 30000 30000 255\n") + QByteArray(1000, 'x') << 30000;
    if (QImageReader::supportedImageFormats().contains("svg")) {
        QTest::newRow("svg") << QByteArray(
            "<svg xmlns='http://www.w3.org/2000/svg' width='30000' height='30000'/>")
                             << 30000;
    }
}

void tst_ImageObject::hugeHeaderIsRefused()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, side);
    const QString name = QString("huge.") + QTest::currentDataTag();
    write(name, bytes);
    QCOMPARE(QImageReader(path(name)).size(), QSize(side, side)); // it is what the header says
    rusage before;
    getrusage(RUSAGE_SELF, &before);

    ImageObject object(pattern(4, 4));
    SignalRecorder signals_(&object);
    LogCapture log;
    QVERIFY(!object.load(path(name)));

    QVERIFY(object.isEmpty());
    QCOMPARE(signals_.names(), allSignals);
    rusage after;
    getrusage(RUSAGE_SELF, &after);
    QVERIFY(after.ru_maxrss - before.ru_maxrss < 100 * 1024); // kilobytes
    QVERIFY2(log.messages().isEmpty(), qPrintable(log.dump()));
}

void tst_ImageObject::hugeContentIsRefused_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes");
    // A whole one: of what is cut off the decoder gives nothing.
    QImage page(12000, 12000, QImage::Format_Mono);
    page.fill(1);
    const QByteArray png = encoded(page, "PNG");
    if (isReadable("ico")) {
        QTest::newRow("ico") << "huge.ico" << icon(png);
        QTest::newRow("ico, by its bytes alone") << "huge.data" << icon(png);
    }
    if (isReadable("icns"))
        QTest::newRow("icns") << "huge.icns" << macIcon(png);
    if (isReadable("svg")) {
        QTest::newRow("svg") << "huge.svg" << drawing(dataUri(hugePng(12000)));
        QTest::newRow("svg, another name") << "huge.jpg" << drawing(dataUri(hugePng(12000)));
        QTest::newRow("svg, an icon inside")
            << "icon.svg" << drawing(dataUri(icon(hugePng(12000))));
        QTest::newRow("svgz") << "huge.svgz" << gzip(drawing(dataUri(hugePng(12000))));
        QTest::newRow("svgz, long") << "long.svgz"
                                    << gzip("<svg xmlns='http://www.w3.org/2000/svg' width='8' "
                                            "height='8'>"
                                            + QByteArray(65 * 1024 * 1024, ' ') + "</svg>");
    }
}

// Pictures inside other files, whose own headers say nothing of their size.
void tst_ImageObject::hugeContentIsRefused()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    write(name, bytes);
    rusage before;
    getrusage(RUSAGE_SELF, &before);
    ImageObject object(pattern(4, 4));
    LogCapture log;
    QVERIFY(!object.load(path(name)));
    rusage after;
    getrusage(RUSAGE_SELF, &after);
    QVERIFY(object.isEmpty());
    const long grown = after.ru_maxrss - before.ru_maxrss; // kilobytes
    QVERIFY2(grown < 200 * 1024, qPrintable(QString::number(grown)));
    QVERIFY2(log.messages().isEmpty(), qPrintable(log.dump()));
}

void tst_ImageObject::drawingsShowNoFiles_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray file = path("secret.png").toUtf8();
    QTest::newRow("path") << drawing(file);
    QTest::newRow("URL") << drawing("file://" + file);
    QTest::newRow("relative") << drawing("secret.png");
    QTest::newRow("like data") << drawing("data/secret.png");
    QTest::newRow("no picture in the data")
        << drawing("data:base64," + QByteArray("abc").toBase64());
    QTest::newRow("entity") << "<!DOCTYPE svg [<!ENTITY s '" + file + "'>]>" + drawing("&s;");
    QTest::newRow("prefix") << drawing(file).replace("<image", "<svg:image");
    QTest::newRow("second") << drawing(dataUri(encoded(pattern(2, 2), "PNG")))
                                   .replace("</svg>", "<image xlink:href='" + file + "'/></svg>");
    const QString text = QChar(QChar::ByteOrderMark) + QString::fromUtf8(drawing(file));
    QTest::newRow("UTF-16") << QByteArray(reinterpret_cast<const char *>(text.utf16()),
                                          text.size() * 2);
    QTest::newRow("style sheet") << QByteArray(
        "<?xml version='1.0'?><?xml-stylesheet type=\"text/css\" href=\"/dev/zero\"?>"
        "<svg xmlns='http://www.w3.org/2000/svg' width='8' height='8'/>");
}

void tst_ImageObject::drawingsShowNoFiles()
{
    QVERIFY2(isReadable("svg"), "Qt has no plug-in for drawings here");
    QFETCH(QByteArray, bytes);
    write("secret.png", encoded(pattern(8, 8), "PNG"));
    write("drawing.svg", bytes);
    write("drawing.svgz", gzip(bytes));
    LogCapture log;
    QVERIFY(!ImageObject().load(path("drawing.svg")));
    QVERIFY(!ImageObject().load(path("drawing.svgz")));
    QVERIFY2(log.messages().isEmpty(), qPrintable(log.dump()));
}

void tst_ImageObject::drawingsShowTheirOwnPictures()
{
    QVERIFY2(isReadable("svg"), "Qt has no plug-in for drawings here");
    QImage red(8, 8, QImage::Format_RGB32);
    red.fill(Qt::red);
    const QByteArray bytes = drawing(dataUri(encoded(red, "PNG")));
    write("own.svg", bytes);
    write("own.svgz", gzip(bytes));
    for (const char *name : {"own.svg", "own.svgz"}) {
        ImageObject object;
        QVERIFY(object.load(path(name)));
        QCOMPARE(object.size(), QSize(8, 8));
        QCOMPARE(object.pixel(4, 4), QColor(Qt::red));
    }
    QVERIFY(ImageObject().load(path("own"))); // finds one of the two by itself
}

void tst_ImageObject::iconsAreLoaded_data()
{
    QTest::addColumn<QByteArray>("format");
    QTest::addColumn<int>("side");
    QTest::newRow("ico, small") << QByteArray("ico") << 16;
    QTest::newRow("ico, large") << QByteArray("ico") << 256;
    QTest::newRow("icns") << QByteArray("icns") << 128;
}

void tst_ImageObject::iconsAreLoaded()
{
    QFETCH(QByteArray, format);
    QFETCH(int, side);
    QVERIFY2(QImageWriter::supportedImageFormats().contains(format),
             "Qt has no plug-in for such icons here");
    write("icon." + format, encoded(pattern(side, side), format.constData()));
    ImageObject object;
    QVERIFY(object.load(path("icon." + format)));
    QCOMPARE(object.size(), QSize(side, side));
}

void tst_ImageObject::hugePictureWithItsBytesIsLoaded()
{
    QImage image(9000, 9000, QImage::Format_Mono);
    image.fill(1);
    QVERIFY(image.save(path("large.bmp")));
    ImageObject object;
    QVERIFY(object.load(path("large.bmp")));
    QCOMPARE(object.size(), QSize(9000, 9000));
}

// A scanned page: a hundred million pixels of one bit, in a small file and in 12 megabytes of memory.
void tst_ImageObject::hugePageOfFewBytesIsLoaded()
{
    QImage image(10000, 10000, QImage::Format_Mono);
    image.fill(1);
    QVERIFY(image.save(path("page.png")));
    QVERIFY(QFileInfo(path("page.png")).size() < 100000);
    ImageObject object;
    QVERIFY(object.load(path("page.png")));
    QCOMPARE(object.size(), QSize(10000, 10000));
    QCOMPARE(object.depth(), 1);
}

// Nothing is packed denser than one colour. In memory it takes more than any header is believed.
void tst_ImageObject::blackPictureOfFewBytesIsLoaded()
{
    QImage image(9000, 9000, QImage::Format_RGB888);
    image.fill(Qt::black);
    QImageWriter writer(path("black.png"));
    writer.setCompression(100);
    QVERIFY(writer.write(image));
    QVERIFY(QFileInfo(path("black.png")).size() < 240000);
    ImageObject object;
    QVERIFY(object.load(path("black.png")));
    QCOMPARE(object.size(), QSize(9000, 9000));
}

void tst_ImageObject::loadFromAProvider()
{
    Scene scene;
    SignalRecorder signals_(&scene.object);
    LogCapture log;
    QVERIFY(scene.object.load(QUrl("image://pictures/folder/a%20name")));
    QCOMPARE(scene.object.image(), pattern(3, 2));
    QCOMPARE(signals_.take(), allSignals);
    QCOMPARE(scene.provider->ids, QStringList({"folder/a name"}));
    QCOMPARE(scene.provider->requestedSizes, QList<QSize>({QSize(-1, -1)}));
    QCOMPARE(log.messages().size(), 1);
    QCOMPARE(log.count(QtDebugMsg, imageCategory, "image://pictures/folder/a name"), 1);
    QCOMPARE(log.count(QtDebugMsg, imageCategory, "ImageObject::loadImageProvider(const QUrl"), 1);

    QVERIFY(scene.object.load(QUrl("image://pictures/again"))); // equal
    QCOMPARE(signals_.take(), QStringList());
}

void tst_ImageObject::loadFromAProviderTakesThePathAlone()
{
    Scene scene;
    LogCapture log;
    QVERIFY(scene.object.load(QUrl("image://pictures/a/b%2Fc%3Fd?query=1#part")));
    QVERIFY(scene.object.load(QUrl("image://pictures/")));
    QVERIFY(scene.object.load(QUrl("image://pictures")));
    QCOMPARE(scene.provider->ids, QStringList({"a/b/c?d", "", ""}));
}

void tst_ImageObject::loadFromAProviderIgnoresCaseAndFormat()
{
    Scene scene;
    LogCapture log;
    QVERIFY(scene.object.load(QUrl("IMAGE://PICTURES/a"), "no such format"));
    QCOMPARE(scene.provider->ids, QStringList({"a"}));
    QUrl url;
    url.setScheme("Image");
    url.setHost("pictures");
    url.setPath("/b");
    QVERIFY(scene.object.load(url));
    QCOMPARE(scene.provider->ids, QStringList({"a", "b"}));
}

void tst_ImageObject::loadFromAProviderFails_data()
{
    QTest::addColumn<QUrl>("url");
    QTest::addColumn<QString>("words");
    QTest::newRow("no such provider")
        << QUrl("image://nobody/a") << "No image provider: \"nobody\"";
    QTest::newRow("no host") << QUrl("image:a") << "No image provider: \"\"";
    QTest::newRow("null image") << QUrl("image://pictures/none") << "No image retrieved: \"none\"";
    QTest::newRow("provider of pixmaps")
        << QUrl("image://pixmaps/a") << "No image retrieved: \"a\"";
}

void tst_ImageObject::loadFromAProviderFails()
{
    QFETCH(QUrl, url);
    QFETCH(QString, words);
    Scene scene;
    SignalRecorder signals_(&scene.object);
    LogCapture log;
    QVERIFY(!scene.object.load(url));
    QCOMPARE(scene.object.image(), pattern(2, 2));
    QCOMPARE(signals_.names(), QStringList());
    QCOMPARE(log.count(QtDebugMsg, imageCategory, url.toString()), 1);
    QCOMPARE(log.count(QtWarningMsg, imageCategory, words), 1);
    QCOMPARE(log.messages().size(), 2);
}

void tst_ImageObject::loadFromAProviderNeedsAnEngine()
{
    ImageObject object(pattern(2, 2));
    SignalRecorder signals_(&object);
    LogCapture log;
    QVERIFY(!object.load(QUrl("image://pictures/a")));
    QCOMPARE(object.image(), pattern(2, 2));
    QCOMPARE(signals_.names(), QStringList());
    QCOMPARE(log.count(QtCriticalMsg, imageCategory, "No QML engine"), 1);
    QCOMPARE(log.messages().size(), 2);
}

void tst_ImageObject::loadFromItsOwnUrlChangesNothing()
{
    Scene scene;
    ImageProvider::initialize(&scene.engine);
    SignalRecorder signals_(&scene.object);
    LogCapture log;
    QVERIFY(scene.object.load(scene.object.url()));
    QCOMPARE(signals_.names(), QStringList());
    QCOMPARE(scene.object.image(), pattern(2, 2));
}

void tst_ImageObject::saveWritesEachFormat_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("format");
    QTest::addColumn<QByteArray>("expected");
    QTest::addColumn<bool>("lossless");
    QTest::newRow("by suffix") << "a.png" << QString() << QByteArray("png") << true;
    QTest::newRow("by name") << "a.data"
                             << "PNG" << QByteArray("png") << true;
    QTest::newRow("name wins") << "b.png"
                               << "bmp" << QByteArray("bmp") << true;
    QTest::newRow("JPEG") << "a.jpg" << QString() << QByteArray("jpeg") << false;
    QTest::newRow("PPM") << "a.ppm" << QString() << QByteArray("ppm") << true;
}

void tst_ImageObject::saveWritesEachFormat()
{
    QFETCH(QString, name);
    QFETCH(QString, format);
    QFETCH(QByteArray, expected);
    QFETCH(bool, lossless);
    const QImage image = pattern(20, 10, QImage::Format_RGB32);
    const ImageObject object(image);
    write(name, QByteArray(100000, 'x')); // is replaced
    QVERIFY(object.save(path(name), format));
    QImageReader reader(path(name));
    reader.setDecideFormatFromContent(true);
    QCOMPARE(reader.format(), expected);
    const QImage written = reader.read();
    QCOMPARE(written.size(), image.size());
    if (lossless)
        QCOMPARE(written.convertToFormat(QImage::Format_RGB32), image);
    QVERIFY(QFileInfo(path(name)).size() < 100000);
}

void tst_ImageObject::saveResolvesItsPath()
{
    FileUtility::setPathVariable("PICTURES", m_folder.path());
    const ImageObject object(pattern(4, 4));
    QVERIFY(object.save(QStringLiteral("$PICTURES/saved.png")));
    QCOMPARE(QImage(path("saved.png")), pattern(4, 4));
    QVERIFY(object.save(QUrl::fromLocalFile(path("saved by url.bmp"))));
    QCOMPARE(QImage(path("saved by url.bmp")).size(), QSize(4, 4));
    QVERIFY(object.save(QUrl::fromLocalFile(path("saved.data")), "png", 0));
    QCOMPARE(QImage(path("saved.data")), pattern(4, 4));
    FileUtility::setPathVariable("PICTURES", QString());
}

void tst_ImageObject::saveTakesTheQuality()
{
    const ImageObject object(pattern(64, 64));
    QVERIFY(object.save(path("q.jpg")));
    const qint64 usual = QFileInfo(path("q.jpg")).size();
    QVERIFY(object.save(path("q.jpg"), "jpg", 1));
    QVERIFY(QFileInfo(path("q.jpg")).size() < usual);
    QVERIFY(object.save(path("q.jpg"), "jpg", 100));
    QVERIFY(QFileInfo(path("q.jpg")).size() > usual);
    QVERIFY(object.save(path("q.jpg"), QString(), -1));
    QCOMPARE(QFileInfo(path("q.jpg")).size(), usual);
}

void tst_ImageObject::saveOfNoImageOrToNowhereFails_data()
{
    QTest::addColumn<QImage>("image");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("format");
    QTest::newRow("no image") << QImage() << "unsaved.png" << QString();
    QTest::newRow("unknown suffix") << pattern(4, 4) << "unsaved.xyz" << QString();
    QTest::newRow("no suffix") << pattern(4, 4) << "unsaved" << QString();
    QTest::newRow("unknown format") << pattern(4, 4) << "unsaved.png"
                                    << "no such format";
    QTest::newRow("no such folder") << pattern(4, 4) << "nowhere/unsaved.png" << QString();
    QTest::newRow("directory") << pattern(4, 4) << "."
                               << "png";
    QTest::newRow("resource") << pattern(4, 4) << ":/unsaved.png" << QString();
}

void tst_ImageObject::saveOfNoImageOrToNowhereFails()
{
    QFETCH(QImage, image);
    QFETCH(QString, name);
    QFETCH(QString, format);
    const QString target = name.startsWith(':') ? name : path(name);
    LogCapture log;
    QVERIFY(!ImageObject(image).save(target, format));
    QVERIFY(name == "." || !QFile::exists(target));
    QCOMPARE(log.count(QtWarningMsg, imageCategory, ""), 0);
}

void tst_ImageObject::nameWithANulIsNeitherSavedNorLoaded()
{
    QVERIFY(pattern(4, 4).save(path("kept.png")));
    const QByteArray before = FileUtility::readFile(path("kept.png"));
    const QString name = path("kept.png") + QChar(0) + ".png";
    const LogCapture log;
    ImageObject image(pattern(2, 2));
    QVERIFY(!image.save(name));
    QCOMPARE(FileUtility::readFile(path("kept.png")), before);
    QVERIFY(!image.load(name));
    QVERIFY(image.isEmpty());
}

void tst_ImageObject::saveToAReadOnlyFolderFails()
{
    QTemporaryDir folder("/tmp/tst_ImageObject-XXXXXX");
    QVERIFY(QFile::setPermissions(folder.path(), QFile::Permissions(0x5555)));
    {
        const UnprivilegedUser user;
        QVERIFY(!ImageObject(pattern(4, 4)).save(folder.filePath("a.png")));
    }
    QVERIFY(!QFile::exists(folder.filePath("a.png")));
    QVERIFY(QFile::setPermissions(folder.path(), QFile::Permissions(0x7700)));
}

void tst_ImageObject::saveToAFullDiskFails()
{
    SmallDisk disk(64);
    if (!disk.isMounted())
        QSKIP(qPrintable("No full disk without a mount of its own: " + disk.reason()));
    const ImageObject object(pattern(64, 64));
    QVERIFY(object.save(disk.filePath("room.png")));
    QVERIFY(disk.fillUpTo(1));
    LogCapture log; // the encoders' own words
    for (const char *name : {"full.png", "full.bmp", "full.jpg", "full.ppm", "full.xpm"})
        QVERIFY2(!object.save(disk.filePath(name)), name);
    QVERIFY(!object.save(QUrl::fromLocalFile(disk.filePath("url.png"))));
    QCOMPARE(log.count(QtWarningMsg, imageCategory, ""), 0);
}

void tst_ImageObject::saveIsSilent()
{
    ImageObject object(pattern(4, 4));
    SignalRecorder signals_(&object);
    QVERIFY(object.save(path("silent.png")));
    QVERIFY(!object.save(path("silent.xyz")));
    QCOMPARE(signals_.names(), QStringList());
}

void tst_ImageObject::fillAndSetPixelWaitForSync()
{
    ImageObject object(pattern(4, 4));
    SignalRecorder signals_(&object);
    QUrl url = object.url();
    object.setPixel(1, 2, Qt::red);
    QCOMPARE(object.pixel(1, 2), QColor(Qt::red));
    QVERIFY(object.url() != url);
    url = object.url();
    object.fill(Qt::blue);
    QCOMPARE(object.pixel(1, 2), QColor(Qt::blue));
    QVERIFY(object.url() != url);
    QCOMPARE(signals_.names(), QStringList());
    object.sync();
    QCOMPARE(signals_.names(), QStringList({"imageContentChanged"}));
}

// The number 0xffrrggbb is stored as it is, whatever the format makes of it.
void tst_ImageObject::fillTakesTheBareNumber_data()
{
    QTest::addColumn<int>("format");
    QTest::addColumn<QColor>("result");
    const QColor color(0x12, 0x34, 0x56);
    QTest::newRow("RGB32") << int(QImage::Format_RGB32) << color;
    QTest::newRow("ARGB32") << int(QImage::Format_ARGB32) << color;
    QTest::newRow("RGBA8888: red and blue change places")
        << int(QImage::Format_RGBA8888) << QColor(0x56, 0x34, 0x12);
    QTest::newRow("Grayscale8: the blue byte")
        << int(QImage::Format_Grayscale8) << QColor(0x56, 0x56, 0x56);
    QTest::newRow("Mono: the last bit") << int(QImage::Format_Mono) << QColor(Qt::black);
}

void tst_ImageObject::fillTakesTheBareNumber()
{
    QFETCH(int, format);
    QFETCH(QColor, result);
    QImage image(4, 4, static_cast<QImage::Format>(format));
    if (image.depth() == 1)
        image.setColorTable({qRgb(0, 0, 0), qRgb(255, 255, 255)});
    ImageObject object(image);
    object.fill(QColor(0x12, 0x34, 0x56, 0x10)); // alpha is dropped
    QCOMPARE(object.pixel(3, 3), result);
}

void tst_ImageObject::pixelIsOpaque()
{
    QImage image(2, 2, QImage::Format_ARGB32);
    image.fill(qRgba(10, 20, 30, 40));
    ImageObject object(image);
    QCOMPARE(object.pixel(0, 0), QColor(10, 20, 30));
    object.setPixel(0, 0, QColor(1, 2, 3, 4));
    QCOMPARE(object.image().pixel(0, 0), qRgba(1, 2, 3, 255));
    QCOMPARE(object.image().pixel(1, 0), qRgba(10, 20, 30, 40));
}

void tst_ImageObject::pixelsOutsideAreHarmless()
{
    ImageObject object(pattern(4, 4));
    LogCapture log; // QImage's warnings
    for (const QPoint &point : {QPoint(-1, 0), QPoint(0, -1), QPoint(4, 0), QPoint(0, 4)}) {
        object.setPixel(point.x(), point.y(), Qt::red);
        QCOMPARE(object.pixel(point.x(), point.y()), QColor(QRgb(12345)));
    }
    QCOMPARE(object.image(), pattern(4, 4));
}

namespace {

const ImageObject *asked = nullptr;
QList<QUrl> answers;

void askForTheUrl(QtMsgType, const QMessageLogContext &, const QString &)
{
    answers.append(asked->url());
}

} // namespace

// QImage warns while the picture is locked.
void tst_ImageObject::messageHandlerMayAskForThePicture()
{
    ImageObject object(pattern(4, 4));
    asked = &object;
    answers.clear();
    const QtMessageHandler previous = qInstallMessageHandler(askForTheUrl);
    object.setPixel(4, 4, Qt::red);
    qInstallMessageHandler(previous);
    QCOMPARE(answers, QList<QUrl>({object.url()}));
}

void tst_ImageObject::invertPixelsSignalsContentOnly()
{
    QImage image(2, 2, QImage::Format_ARGB32);
    image.fill(qRgba(1, 2, 3, 4));
    ImageObject object(image);
    SignalRecorder signals_(&object);
    object.invertPixels();
    QCOMPARE(object.image().pixel(0, 0), qRgba(254, 253, 252, 4));
    QCOMPARE(signals_.take(), QStringList({"imageContentChanged"}));
    object.invertPixels(ImageObject::InvertRgba);
    QCOMPARE(object.image().pixel(0, 0), qRgba(1, 2, 3, 251));
    QCOMPARE(signals_.take(), QStringList({"imageContentChanged"}));
}

void tst_ImageObject::textsAreKept()
{
    ImageObject object(pattern(4, 4));
    SignalRecorder signals_(&object);
    object.setText("Title", "a text");
    QCOMPARE(signals_.take(), QStringList({"textChanged"}));
    object.setText("Title", "a text"); // not compared
    QCOMPARE(signals_.take(), QStringList({"textChanged"}));
    object.setText("Author", "somebody");
    QCOMPARE(object.textKeys(), QStringList({"Author", "Title"}));
    QCOMPARE(object.textValues(), QVariantMap({{"Author", "somebody"}, {"Title", "a text"}}));
    QCOMPARE(object.text("Title"), QString("a text"));
    QCOMPARE(object.text("Other"), QString());
    QCOMPARE(object.text(), object.image().text(QString()));
    QCOMPARE(object.text(), QString("Author: somebody\n\nTitle: a text"));
    QVERIFY(object.save(path("texts.png")));
    QCOMPARE(QImage(path("texts.png")).text("Author"), QString("somebody"));

    ImageObject empty;
    SignalRecorder emptySignals(&empty);
    empty.setText("Title", "a text");
    QCOMPARE(emptySignals.names(), QStringList({"textChanged"}));
    QCOMPARE(empty.textKeys(), QStringList());
    QCOMPARE(empty.text(), QString());
}

void tst_ImageObject::syncOnlySignals()
{
    ImageObject object(pattern(4, 4));
    SignalRecorder signals_(&object);
    const QUrl url = object.url();
    object.sync();
    QCOMPARE(signals_.names(), QStringList({"imageContentChanged"}));
    QCOMPARE(object.url(), url);
    QCOMPARE(object.image(), pattern(4, 4));
}

namespace {

using Change = std::function<void(ImageObject &)>;
using Copy = std::function<ImageObject *(const ImageObject &)>;

} // namespace

Q_DECLARE_METATYPE(Change)
Q_DECLARE_METATYPE(Copy)

void tst_ImageObject::pairsDoTheSame_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<Copy>("copy");
    QTest::addColumn<QImage>("expected");
    const QImage image = pattern(20, 10);
    const auto smooth = ImageObject::TransformationModeSmooth;
    const QTransform aboutMiddle = QTransform().translate(10, 5).rotate(30);
#define PAIR(change, copy) \
    Change([=](ImageObject &object) { object.change; }) \
        << Copy([=](const ImageObject &object) { return object.copy; })
    QTest::newRow("scale") << PAIR(scale(5, 5), scaled(5, 5))
                           << image.scaled(5, 5, Qt::KeepAspectRatio);
    QTest::newRow("scale all") << PAIR(scale(5, 7, ImageObject::AspectRatioIgnore, smooth),
                                       scaled(5, 7, ImageObject::AspectRatioIgnore, smooth))
                               << image.scaled(5, 7, Qt::IgnoreAspectRatio,
                                               Qt::SmoothTransformation);
    QTest::newRow("scale by expanding")
        << PAIR(scale(5, 5, ImageObject::AspectRatioKeepByExpanding),
                scaled(5, 5, ImageObject::AspectRatioKeepByExpanding))
        << image.scaled(5, 5, Qt::KeepAspectRatioByExpanding);
    QTest::newRow("scaleToWidth") << PAIR(scaleToWidth(7), scaledToWidth(7))
                                  << image.scaledToWidth(7);
    QTest::newRow("scaleToWidth smooth") << PAIR(scaleToWidth(7, smooth), scaledToWidth(7, smooth))
                                         << image.scaledToWidth(7, Qt::SmoothTransformation);
    QTest::newRow("scaleToHeight")
        << PAIR(scaleToHeight(7), scaledToHeight(7)) << image.scaledToHeight(7);
    QTest::newRow("scaleToHeight smooth")
        << PAIR(scaleToHeight(7, smooth), scaledToHeight(7, smooth))
        << image.scaledToHeight(7, Qt::SmoothTransformation);
    QTest::newRow("convertToFormat") << PAIR(convertToFormat(ImageObject::ImageFormatMono),
                                             convertedToFormat(ImageObject::ImageFormatMono))
                                     << image.convertToFormat(QImage::Format_Mono);
    QTest::newRow("convertToFormat with flags")
        << PAIR(convertToFormat(ImageObject::ImageFormatMono, Qt::ThresholdDither),
                convertedToFormat(ImageObject::ImageFormatMono, Qt::ThresholdDither))
        << image.convertToFormat(QImage::Format_Mono, Qt::ThresholdDither);
    QTest::newRow("convertToFormat unknown")
        << PAIR(convertToFormat(static_cast<ImageObject::ImageFormat>(4711)),
                convertedToFormat(static_cast<ImageObject::ImageFormat>(4711)))
        << QImage();
    QTest::newRow("mirror horizontally")
        << PAIR(mirror(true, false), mirrored(true, false)) << image.mirrored(true, false);
    QTest::newRow("mirror vertically")
        << PAIR(mirror(false, true), mirrored(false, true)) << image.mirrored(false, true);
    QTest::newRow("clip") << PAIR(clip(1, 2, 3, 4), copy(1, 2, 3, 4)) << image.copy(1, 2, 3, 4);
    QTest::newRow("clip rectangle")
        << PAIR(clip(QRect(1, 2, 3, 4)), copy(QRect(1, 2, 3, 4))) << image.copy(1, 2, 3, 4);
    QTest::newRow("rotate") << PAIR(rotate(30), rotated(30)) << image.transformed(aboutMiddle);
    QTest::newRow("rotate smooth") << PAIR(rotate(30, -1, -1, smooth), rotated(30, -1, -1, smooth))
                                   << image.transformed(aboutMiddle, Qt::SmoothTransformation);
#undef PAIR
}

void tst_ImageObject::pairsDoTheSame()
{
    QFETCH(Change, change);
    QFETCH(Copy, copy);
    QFETCH(QImage, expected);
    ImageObject object(pattern(20, 10));
    SignalRecorder signals_(&object);

    const QScopedPointer<ImageObject> copied(copy(object));
    QCOMPARE(copied->image(), expected);
    QVERIFY(!copied->parent());
    QCOMPARE(QQmlEngine::objectOwnership(copied.data()), QQmlEngine::JavaScriptOwnership);
    QCOMPARE(object.image(), pattern(20, 10));
    QCOMPARE(signals_.take(), QStringList());

    change(object);
    QCOMPARE(object.image(), expected);
    QCOMPARE(signals_.take(), allSignals);
}

void tst_ImageObject::inPlaceWithoutChangeRaisesNothing()
{
    ImageObject object(pattern(20, 10));
    SignalRecorder signals_(&object);
    object.scale(20, 10);
    object.scaleToWidth(20);
    object.scaleToHeight(10);
    object.convertToFormat(object.format());
    object.mirror(false, false);
    object.clip(0, 0, 20, 10);
    object.rotate(0);
    object.rotate(360);
    QCOMPARE(signals_.names(), QStringList());
}

void tst_ImageObject::scaleKeepsTheAspectRatio()
{
    ImageObject object(pattern(200, 100));
    object.scale(100, 100);
    QCOMPARE(object.size(), QSize(100, 50));
    ImageObject other(pattern(200, 100));
    other.scale(100, 100, ImageObject::AspectRatioIgnore);
    QCOMPARE(other.size(), QSize(100, 100));
}

void tst_ImageObject::clipTakesTheCorners_data()
{
    QTest::addColumn<QRect>("rect"); // x, y, width, height as they are passed
    QTest::addColumn<QSize>("size");
    QTest::newRow("inside") << QRect(1, 2, 3, 4) << QSize(3, 4);
    QTest::newRow("beyond") << QRect(18, 8, 10, 10) << QSize(10, 10);
    QTest::newRow("above") << QRect(-5, -5, 10, 10) << QSize(10, 10);
    QTest::newRow("width 0") << QRect(1, 1, 0, 5) << QSize(0, 0);
    QTest::newRow("all 0: the whole image") << QRect(0, 0, 0, 0) << QSize(20, 10);
}

void tst_ImageObject::clipTakesTheCorners()
{
    QFETCH(QRect, rect);
    QFETCH(QSize, size);
    const ImageObject object(pattern(20, 10));
    const QScopedPointer<ImageObject> numbers(
        object.copy(rect.x(), rect.y(), rect.width(), rect.height()));
    const QScopedPointer<ImageObject> rectangle(object.copy(rect));
    QCOMPARE(numbers->size(), size);
    QCOMPARE(numbers->image(), rectangle->image());
    QCOMPARE(numbers->image(), pattern(20, 10).copy(rect));
}

void tst_ImageObject::rotateTrimsToTheBounds_data()
{
    QTest::addColumn<double>("angle");
    QTest::addColumn<QSize>("size");
    QTest::newRow("90") << 90.0 << QSize(100, 200);
    QTest::newRow("-90") << -90.0 << QSize(100, 200);
    QTest::newRow("180") << 180.0 << QSize(200, 100);
    QTest::newRow("450: not quite a right angle") << 450.0 << QSize(101, 201);
    QTest::newRow("0") << 0.0 << QSize(200, 100);
}

void tst_ImageObject::rotateTrimsToTheBounds()
{
    QFETCH(double, angle);
    QFETCH(QSize, size);
    ImageObject object(pattern(200, 100));
    object.rotate(angle);
    QCOMPARE(object.size(), size);
    QCOMPARE(object.image(), pattern(200, 100).transformed(QTransform().rotate(angle)));
}

void tst_ImageObject::pointOfRotationMakesNoDifference()
{
    const ImageObject object(pattern(200, 100));
    const QScopedPointer<ImageObject> middle(object.rotated(90));
    for (const QPoint &point : {QPoint(0, 0), QPoint(0, -1), QPoint(-1, 0), QPoint(1000, 7)}) {
        const QScopedPointer<ImageObject> other(object.rotated(90, point.x(), point.y()));
        QCOMPARE(other->image(), middle->image());
    }
}

void tst_ImageObject::emptyObjectTakesEverything()
{
    ImageObject object;
    SignalRecorder signals_(&object);
    LogCapture log; // QImage's warnings
    object.scale(10, 10);
    object.scaleToWidth(10);
    object.scaleToHeight(10);
    object.convertToFormat(ImageObject::ImageFormatMono);
    object.mirror(true, true);
    object.clip(0, 0, 10, 10);
    object.rotate(45);
    object.fill(Qt::red);
    object.setPixel(0, 0, Qt::red);
    object.pixel(0, 0);
    QVERIFY(object.isEmpty());
    QCOMPARE(signals_.names(), QStringList());
    object.invertPixels();
    QCOMPARE(signals_.names(), QStringList({"imageContentChanged"}));
    QVERIFY(object.isEmpty());
}

void tst_ImageObject::absurdArgumentsAreHarmless()
{
    constexpr int most = std::numeric_limits<int>::max();
    constexpr int least = std::numeric_limits<int>::min();
    const ImageObject object(pattern(20, 10));
    LogCapture log; // QImage's warnings
    const auto empty = [](ImageObject *made) {
        const QScopedPointer<ImageObject> owner(made);
        return owner->isEmpty();
    };
    QVERIFY(empty(object.scaled(0, 0)));
    QVERIFY(empty(object.scaled(-5, 10)));
    QVERIFY(empty(object.scaledToWidth(-1)));
    QVERIFY(empty(object.scaledToHeight(0)));
    QVERIFY(empty(object.copy(5, 5, -2, -2)));
    QVERIFY(empty(object.copy(most, most, 0, 1)));
    QVERIFY(empty(object.copy(1, 1, most, most)));
    QVERIFY(!empty(object.copy(least, least, 1, 1)));
    QVERIFY(empty(object.create(most, most)));
    QVERIFY(!empty(object.rotated(1e300)));
    QVERIFY(!empty(object.rotated(45, most, most)));
    empty(object.rotated(std::numeric_limits<double>::quiet_NaN()));
    empty(object.rotated(std::numeric_limits<double>::infinity()));
    QVERIFY(!empty(object.scaled(5, 5, static_cast<ImageObject::AspectRatioMode>(99),
                                 static_cast<ImageObject::TransformationMode>(99))));
}

TESSALINE_TEST_MAIN(tst_ImageObject)
#include "tst_ImageObject.moc"
