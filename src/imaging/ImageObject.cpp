#include "imaging/ImageObject.h"

#include "imaging/ImageProvider.h"
#include "imaging/LiveImage.h"
#include "imaging/PictureCheck.h"
#include "plugin/FileUtility.h"
#include "plugin/TessalineDebug.h"
#include "plugin/TessalineObject.h"

#include <QFile>
#include <QImageReader>
#include <QImageWriter>
#include <qqml.h>
#include <QQmlEngine>
#include <QQuickImageProvider>
#include <QTransform>

#include <limits>

/*!
    \qmltype ImageObject
    \inqmlmodule Zemrik.Tessaline
    \brief An image that scripts load, change, show and save.

    \qml
    Image {
        cache: false
        source: photo.url

        ImageObject {
            id: photo

            Component.onCompleted: {
                if (photo.load("~/Pictures/photo.jpg")) {
                    photo.scale(200, 133, ImageObject.AspectRatioKeep,
                                ImageObject.TransformationModeSmooth);
                    photo.save("~/Pictures/thumbnail.png");
                }
            }
        }
    }
    \endqml

    Most operations come in pairs. The verb changes the object itself; the past participle leaves
    it alone and returns a new object, which the script engine deletes once nothing refers to it:

    \table
    \header \li Changes the object \li Returns a new one
    \row \li scale() \li scaled()
    \row \li scaleToWidth() \li scaledToWidth()
    \row \li scaleToHeight() \li scaledToHeight()
    \row \li convertToFormat() \li convertedToFormat()
    \row \li mirror() \li mirrored()
    \row \li clip() \li copy()
    \row \li rotate() \li rotated()
    \row \li clear() \li create()
    \endtable

    Calls with arguments that make no sense leave the object \l empty, or return an empty one.

    fill() and setPixel() don't announce what they change, so that a script can set many pixels at
    once: call sync() when views shall follow.
*/

/*!
    \qmlproperty list<string> ImageObject::availableReadFormats
    \readonly
    The formats that load() knows on this machine, such as "jpg" and "png".
*/

/*!
    \qmlproperty list<string> ImageObject::availableWriteFormats
    \readonly
    The formats that save() knows on this machine.
*/

/*!
    \qmlproperty bool ImageObject::empty
    \readonly
    Whether there is no image: at the start, after clear() and after a load() that failed.
*/

/*!
    \qmlproperty int ImageObject::width
    \readonly
    In pixels; 0 without an image.
*/

/*!
    \qmlproperty int ImageObject::height
    \readonly
    In pixels; 0 without an image.
*/

/*!
    \qmlproperty int ImageObject::depth
    \readonly
    Bits in memory for each pixel: 1, 8, 16, 24, 32 or 64.
*/

/*!
    \qmlproperty int ImageObject::bitPlaneCount
    \readonly
    Bits of each pixel that count. An image without an alpha channel may use 24 of a \l depth of 32.
*/

/*!
    \qmlproperty int ImageObject::byteCount
    \readonly
    Bytes that the pixels take in memory.
*/

/*!
    \qmlproperty size ImageObject::size
    \readonly
    \l width and \l height.
*/

/*!
    \qmlproperty bool ImageObject::hasAlphaChannel
    \readonly
    Whether the format knows transparent pixels.
*/

/*!
    \qmlproperty enumeration ImageObject::format
    \readonly
    How the pixels lie in memory.

    \value ImageObject.ImageFormatInvalid   0, no image
    \value ImageObject.ImageFormatMono      1, one bit, the most significant first
    \value ImageObject.ImageFormatMonoLSB   2, one bit, the least significant first
    \value ImageObject.ImageFormatIndexed8  3, one byte into a table of colours
    \value ImageObject.ImageFormatRGB32     4, opaque, what most photos have
    \value ImageObject.ImageFormatARGB32    5, with alpha, the default of clear() and create()
    \value ImageObject.ImageFormatARGB32_Premultiplied  6, with alpha that the colours contain
    \value ImageObject.ImageFormatRGB16     7
    \value ImageObject.ImageFormatARGB8565_Premultiplied  8
    \value ImageObject.ImageFormatRGB666    9
    \value ImageObject.ImageFormatARGB6666_Premultiplied  10
    \value ImageObject.ImageFormatRGB555    11
    \value ImageObject.ImageFormatARGB8555_Premultiplied  12
    \value ImageObject.ImageFormatRGB888    13
    \value ImageObject.ImageFormatRGB444    14
    \value ImageObject.ImageFormatARGB4444_Premultiplied  15
    \value ImageObject.ImageFormatRGBX8888  16
    \value ImageObject.ImageFormatRGBA8888  17
    \value ImageObject.ImageFormatRGBA8888_Premultiplied  18
    \value ImageObject.ImageFormatBGR30     19
    \value ImageObject.ImageFormatA2BGR30_Premultiplied  20
    \value ImageObject.ImageFormatRGB30     21
    \value ImageObject.ImageFormatA2RGB30_Premultiplied  22
    \value ImageObject.ImageFormatAlpha8    23, alpha alone
    \value ImageObject.ImageFormatGrayscale8  24, grey alone

    Files with 16 bits for each channel load in formats that have higher numbers and no name here.
*/

/*!
    \qmlproperty list<string> ImageObject::textKeys
    \readonly
    The keys of the texts that come with the image, such as those of a PNG file.
*/

/*!
    \qmlproperty var ImageObject::textValues
    \readonly
    An object with the text of each of \l textKeys.
*/

/*!
    \qmlproperty var ImageObject::image
    The image itself, to be handed to another object: \c{copy.image = photo.image} shares the pixels
    until one of the two changes. Assigning an equal image does nothing.
*/

/*!
    \qmlproperty url ImageObject::url
    \readonly
    A source for an \c Image element, empty without an image. It changes with the pixels, and so the
    element loads them again. It leads nowhere once the object is gone.

    Give the element \c{cache: false}, or Qt Quick keeps some of the states that nobody asks for
    any more.
*/

/*!
    \qmlmethod void ImageObject::clear(int width = 0, int height = 0, enumeration format = ImageObject.ImageFormatARGB32)
    Replaces the image by a new one of \a width by \a height pixels in that \a format, which hold
    anything: fill() it. Without arguments, or with a size below 1, the object is \l empty
   afterwards.
*/

/*!
    \qmlmethod ImageObject ImageObject::create(int width, int height, enumeration format = ImageObject.ImageFormatARGB32)
    Returns a new object with an image of \a width by \a height pixels in that \a format, which hold
    anything: fill() it.
*/

/*!
    \qmlmethod bool ImageObject::load(string path, string format = "")
    Loads a file. Its \a path may begin with a path variable, as in \c{"~/photo.jpg"}. \a format,
   one of \l availableReadFormats, is found out if left out.

    Returns false, and the object is \l empty, if that fails. A file that claims a size far beyond
    what its bytes can hold counts as damaged.
*/

/*!
    \qmlmethod bool ImageObject::load(url url, string format = "")
    The same for a file or resource by its \a url. A URL \c{image://provider/id} takes the image
   from an image provider of the engine; if that fails, the object stays as it is.

    A string that holds a URL counts as a path: take a property of type \c url.
*/

/*!
    \qmlmethod bool ImageObject::save(string path, string format = "", int quality = -1)
    Writes the image to a file, whose \a path may begin with a path variable. \a format is one of
    \l availableWriteFormats and goes by the file's suffix if left out. \a quality is 0 (smallest
    file) to 100, -1 for the format's default. Returns false if not all of it was written.
*/

/*!
    \qmlmethod bool ImageObject::save(url url, string format = "", int quality = -1)
    The same for a file by its \a url.
*/

/*!
    \qmlmethod void ImageObject::fill(color color)
    Sets all pixels to \a color, without its alpha, and does not announce it; see sync(). The number
   0xffrrggbb is stored as the format takes it: use one of the 32-bit formats that begin with RGB or
   ARGB.
*/

/*!
    \qmlmethod void ImageObject::invertPixels(enumeration invertMode = ImageObject.InvertRgb)
    Makes a negative. \a invertMode is one of:

    \value ImageObject.InvertRgb   0, keeps alpha
    \value ImageObject.InvertRgba  1, inverts alpha as well

    In an indexed picture the indices are inverted, and may then point past the table of colours:
    convert such a picture first, for instance to \c ImageObject.ImageFormatRGB32.
*/

/*!
    \qmlmethod color ImageObject::pixel(int x, int y)
    The colour of the pixel at \a x and \a y, without its alpha.
*/

/*!
    \qmlmethod void ImageObject::setPixel(int x, int y, color color)
    Sets the pixel at \a x and \a y, opaque whatever \a color says, and does not announce it; see
   sync(). In images with a table of colours or of a single bit this doesn't work: convertToFormat()
   first.
*/

/*!
    \qmlmethod string ImageObject::text(string key = "")
    The text with that \a key. Without a key, all of them: "key: text", with an empty line between.
*/

/*!
    \qmlmethod void ImageObject::setText(string key, string text)
    Sets the \a text with that \a key. save() writes it where the format has a place for it, as PNG
   does.
*/

/*!
    \qmlmethod void ImageObject::sync()
    Announces the pixels that fill() and setPixel() changed, so that views load them.
*/

/*!
    \qmlmethod void ImageObject::scale(int width, int height, enumeration aspectRatioMode = ImageObject.AspectRatioKeep, enumeration transformationMode = ImageObject.TransformationModeFast)

    Scales to a size by \a width and \a height, in pixels, as \a aspectRatioMode says:

    \value ImageObject.AspectRatioIgnore           0, exactly that size
    \value ImageObject.AspectRatioKeep             1, the largest that fits into that size
    \value ImageObject.AspectRatioKeepByExpanding  2, the smallest that covers that size

    \a transformationMode is one of:

    \value ImageObject.TransformationModeFast       0, takes the nearest pixel
    \value ImageObject.TransformationModeSmooth    1, averages pixels
*/

/*!
    \qmlmethod ImageObject ImageObject::scaled(int width, int height, enumeration aspectRatioMode = ImageObject.AspectRatioKeep, enumeration transformationMode = ImageObject.TransformationModeFast)
    Returns a new object, scaled to \a width and \a height by \a aspectRatioMode and
    \a transformationMode; see scale().
*/

/*!
    \qmlmethod void ImageObject::scaleToWidth(int width, enumeration transformationMode = ImageObject.TransformationModeFast)
    Scales to \a width, keeping the aspect ratio, by \a transformationMode.
*/

/*!
    \qmlmethod ImageObject ImageObject::scaledToWidth(int width, enumeration transformationMode = ImageObject.TransformationModeFast)
    Returns a new object, scaled to \a width by \a transformationMode; see scaleToWidth().
*/

/*!
    \qmlmethod void ImageObject::scaleToHeight(int height, enumeration transformationMode = ImageObject.TransformationModeFast)
    Scales to \a height, keeping the aspect ratio, by \a transformationMode.
*/

/*!
    \qmlmethod ImageObject ImageObject::scaledToHeight(int height, enumeration transformationMode = ImageObject.TransformationModeFast)
    Returns a new object, scaled to \a height by \a transformationMode; see scaleToHeight().
*/

/*!
    \qmlmethod void ImageObject::convertToFormat(enumeration format, int flags = 0)
    Changes the pixels to another \a format. \a flags are a combination of Qt's numbers for image
   conversion, such as \c Qt.MonoOnly or \c Qt.ThresholdDither.
*/

/*!
    \qmlmethod ImageObject ImageObject::convertedToFormat(enumeration format, int flags = 0)
    Returns a new object in \a format, made with \a flags; see convertToFormat().
*/

/*!
    \qmlmethod void ImageObject::mirror(bool horizontal, bool vertical)
    Swaps left and right with \a horizontal, top and bottom with \a vertical.
*/

/*!
    \qmlmethod ImageObject ImageObject::mirrored(bool horizontal, bool vertical)
    Returns a new object, mirrored as \a horizontal and \a vertical say; see mirror().
*/

/*!
    \qmlmethod void ImageObject::clip(int x, int y, int width, int height)
    Cuts the image to the rectangle that begins at \a x and \a y and is \a width by \a height large.
    What reaches beyond the image is transparent, or black.
*/

/*!
    \qmlmethod void ImageObject::clip(rect rect)
    The same with a \a rect.
*/

/*!
    \qmlmethod ImageObject ImageObject::copy(int x, int y, int width, int height)
    Returns a new object with the part at \a x and \a y of \a width and \a height; see clip().
*/

/*!
    \qmlmethod ImageObject ImageObject::copy(rect rect)
    Returns a new object with the part \a rect; see clip().
*/

/*!
    \qmlmethod void ImageObject::rotate(real angle, int x = -1, int y = -1, enumeration transformationMode = ImageObject.TransformationModeFast)
    Turns the image by \a angle degrees, clockwise, by \a transformationMode. The image becomes as
    large as it needs, with transparent or black corners.

    \a x and \a y, the point about which it turns (the middle if negative), don't shift the picture:
    the result is always cut to the turned picture's own bounds.
*/

/*!
    \qmlmethod ImageObject ImageObject::rotated(real angle, int x = -1, int y = -1, enumeration transformationMode = ImageObject.TransformationModeFast)
    Returns a new object, turned by \a angle about \a x and \a y by \a transformationMode; see
    rotate().
*/

/*!
    \qmlsignal ImageObject::imageChanged()
    There is another image, or none.
*/

/*!
    \qmlsignal ImageObject::imageContentChanged()
    Pixels changed, or sync() was called. Comes with each imageChanged() too.
*/

/*!
    \qmlsignal ImageObject::textChanged()
    The texts may have changed.
*/

namespace {

QStringList textList(const QList<QByteArray> &names)
{
    QStringList texts;
    texts.reserve(names.size());
    for (const QByteArray &name : names)
        texts.append(QString::fromLatin1(name));
    return texts;
}

ImageObject *newObject(const QImage &image)
{
    return TessalineObject::givenToScript(new ImageObject(image));
}

// Scripts can pass any number, and QImage looks a format up in tables without a check.
QImage::Format imageFormat(int format)
{
    return format >= 0 && format < int(QImage::NImageFormats) ? static_cast<QImage::Format>(format)
                                                              : QImage::Format_Invalid;
}

Qt::TransformationMode transformation(ImageObject::TransformationMode mode)
{
    return static_cast<Qt::TransformationMode>(mode);
}

QImage toScaled(const QImage &image, int width, int height,
                ImageObject::AspectRatioMode aspectRatioMode,
                ImageObject::TransformationMode transformationMode)
{
    return image.scaled(QSize(width, height), static_cast<Qt::AspectRatioMode>(aspectRatioMode),
                        transformation(transformationMode));
}

QImage toFormat(const QImage &image, ImageObject::ImageFormat format, int flags)
{
    return image.convertToFormat(imageFormat(format), Qt::ImageConversionFlags(flags));
}

// QRect's own constructor overflows where the right edge is no int any more.
QRect rectangle(int x, int y, int width, int height)
{
    const auto last = [](int first, int length) {
        const qint64 value = qint64(first) + length - 1;
        return static_cast<int>(qBound(qint64(std::numeric_limits<int>::min()), value,
                                       qint64(std::numeric_limits<int>::max())));
    };
    return QRect(QPoint(x, y), QPoint(last(x, width), last(y, height)));
}

// There is no way back from the point: transformed() cuts the result to its bounds, so that the
// point makes no difference. That is how rotated pictures have always come out.
QImage toRotated(const QImage &image, double angle, int x, int y,
                 ImageObject::TransformationMode transformationMode)
{
    QTransform transform;
    transform.translate(x < 0 ? image.width() / 2 : x, y < 0 ? image.height() / 2 : y);
    transform.rotate(angle, Qt::ZAxis);
    return image.transformed(transform, transformation(transformationMode));
}

// As QImage::load(), but a small file can't claim a huge picture, and a drawing shows no other files.
QImage loadedImage(const QString &path, const QByteArray &format)
{
    QImageReader reader(path, format);
    return isHarmlessPicture(reader) ? reader.read() : QImage();
}

} // namespace

ImageObject::ImageObject(QObject *parent)
    : ImageObject(QImage(), parent)
{
}

ImageObject::ImageObject(const QImage &image, QObject *parent)
    : QObject(parent)
    , m_image(std::make_unique<LiveImage>(image))
{
    connect(this, &ImageObject::imageChanged, this, &ImageObject::imageContentChanged);
}

ImageObject::~ImageObject() = default;

QStringList ImageObject::availableReadFormats() const
{
    return textList(QImageReader::supportedImageFormats());
}

QStringList ImageObject::availableWriteFormats() const
{
    return textList(QImageWriter::supportedImageFormats());
}

bool ImageObject::isEmpty() const
{
    return m_image->image().isNull();
}

int ImageObject::width() const
{
    return m_image->image().width();
}

int ImageObject::height() const
{
    return m_image->image().height();
}

int ImageObject::depth() const
{
    return m_image->image().depth();
}

int ImageObject::bitPlaneCount() const
{
    return m_image->image().bitPlaneCount();
}

int ImageObject::byteCount() const
{
    return static_cast<int>(
        qMin(m_image->image().sizeInBytes(), qsizetype(std::numeric_limits<int>::max())));
}

QSize ImageObject::size() const
{
    return m_image->image().size();
}

bool ImageObject::hasAlphaChannel() const
{
    return m_image->image().hasAlphaChannel();
}

ImageObject::ImageFormat ImageObject::format() const
{
    return static_cast<ImageFormat>(m_image->image().format());
}

QStringList ImageObject::textKeys() const
{
    return m_image->image().textKeys();
}

QVariantMap ImageObject::textValues() const
{
    QVariantMap values;
    const QStringList keys = textKeys();
    for (const QString &key : keys)
        values.insert(key, text(key));
    return values;
}

QImage ImageObject::image() const
{
    return m_image->image();
}

void ImageObject::setImage(const QImage &image)
{
    if (m_image->image() == image)
        return;
    replaceImage(image);
}

QUrl ImageObject::url() const
{
    return ImageProvider::url(m_image->image());
}

void ImageObject::clear(int width, int height, ImageFormat format)
{
    setImage(width >= 1 && height >= 1 ? QImage(width, height, imageFormat(format)) : QImage());
}

ImageObject *ImageObject::create(int width, int height, ImageFormat format) const
{
    return newObject(QImage(width, height, imageFormat(format)));
}

bool ImageObject::load(const QString &path, const QString &format)
{
    return loadFile(FileUtility::resolvedPath(path, true), format);
}

bool ImageObject::load(const QUrl &url, const QString &format)
{
    if (url.scheme().compare(QLatin1String("image"), Qt::CaseInsensitive) == 0)
        return loadImageProvider(url);
    return loadFile(FileUtility::resolvedPath(url, true), format);
}

bool ImageObject::save(const QString &path, const QString &format, int quality) const
{
    return saveFile(FileUtility::resolvedPath(path, true), format, quality);
}

bool ImageObject::save(const QUrl &url, const QString &format, int quality) const
{
    return saveFile(FileUtility::resolvedPath(url, true), format, quality);
}

void ImageObject::fill(const QColor &color)
{
    m_image->change([&](QImage &image) { image.fill(color.rgb()); });
}

void ImageObject::invertPixels(InvertMode invertMode)
{
    m_image->change(
        [&](QImage &image) { image.invertPixels(static_cast<QImage::InvertMode>(invertMode)); });
    emit imageContentChanged();
}

QColor ImageObject::pixel(int x, int y) const
{
    return QColor(m_image->image().pixel(x, y));
}

void ImageObject::setPixel(int x, int y, const QColor &color)
{
    m_image->change([&](QImage &image) { image.setPixel(x, y, color.rgb()); });
}

QString ImageObject::text(const QString &key) const
{
    return m_image->image().text(key);
}

void ImageObject::setText(const QString &key, const QString &text)
{
    m_image->change([&](QImage &image) { image.setText(key, text); });
    emit textChanged();
}

void ImageObject::sync()
{
    emit imageContentChanged();
}

void ImageObject::scale(int width, int height, AspectRatioMode aspectRatioMode,
                        TransformationMode transformationMode)
{
    setImage(toScaled(m_image->image(), width, height, aspectRatioMode, transformationMode));
}

ImageObject *ImageObject::scaled(int width, int height, AspectRatioMode aspectRatioMode,
                                 TransformationMode transformationMode) const
{
    return newObject(
        toScaled(m_image->image(), width, height, aspectRatioMode, transformationMode));
}

void ImageObject::scaleToWidth(int width, TransformationMode transformationMode)
{
    setImage(m_image->image().scaledToWidth(width, transformation(transformationMode)));
}

ImageObject *ImageObject::scaledToWidth(int width, TransformationMode transformationMode) const
{
    return newObject(m_image->image().scaledToWidth(width, transformation(transformationMode)));
}

void ImageObject::scaleToHeight(int height, TransformationMode transformationMode)
{
    setImage(m_image->image().scaledToHeight(height, transformation(transformationMode)));
}

ImageObject *ImageObject::scaledToHeight(int height, TransformationMode transformationMode) const
{
    return newObject(m_image->image().scaledToHeight(height, transformation(transformationMode)));
}

void ImageObject::convertToFormat(ImageFormat format, int flags)
{
    setImage(toFormat(m_image->image(), format, flags));
}

ImageObject *ImageObject::convertedToFormat(ImageFormat format, int flags) const
{
    return newObject(toFormat(m_image->image(), format, flags));
}

void ImageObject::mirror(bool horizontal, bool vertical)
{
    setImage(m_image->image().mirrored(horizontal, vertical));
}

ImageObject *ImageObject::mirrored(bool horizontal, bool vertical) const
{
    return newObject(m_image->image().mirrored(horizontal, vertical));
}

void ImageObject::clip(int x, int y, int width, int height)
{
    clip(rectangle(x, y, width, height));
}

void ImageObject::clip(const QRect &rect)
{
    setImage(m_image->image().copy(rect));
}

ImageObject *ImageObject::copy(int x, int y, int width, int height) const
{
    return copy(rectangle(x, y, width, height));
}

ImageObject *ImageObject::copy(const QRect &rect) const
{
    return newObject(m_image->image().copy(rect));
}

void ImageObject::rotate(double angle, int x, int y, TransformationMode transformationMode)
{
    setImage(toRotated(m_image->image(), angle, x, y, transformationMode));
}

ImageObject *ImageObject::rotated(double angle, int x, int y,
                                  TransformationMode transformationMode) const
{
    return newObject(toRotated(m_image->image(), angle, x, y, transformationMode));
}

// Signals what is new, whether or not it is.
void ImageObject::replaceImage(QImage image)
{
    // Swapped, so that the old pixels are given back outside the lock.
    m_image->change([&](QImage &current) { current.swap(image); });
    emit imageChanged();
    emit textChanged();
}

bool ImageObject::loadFile(const QString &path, const QString &format)
{
    const QImage image =
        FileUtility::hasUsableName(path) ? loadedImage(path, format.toLatin1()) : QImage();
    replaceImage(image);
    return !image.isNull();
}

bool ImageObject::loadImageProvider(const QUrl &url)
{
    qCDebug(FRAMEWORK_IMAGE) << Q_FUNC_INFO << url;
    QQmlEngine *engine = qmlEngine(this);
    if (!engine) {
        qCCritical(FRAMEWORK_IMAGE) << Q_FUNC_INFO << "No QML engine";
        return false;
    }
    auto *provider = dynamic_cast<QQuickImageProvider *>(engine->imageProvider(url.host()));
    if (!provider) {
        qCWarning(FRAMEWORK_IMAGE) << Q_FUNC_INFO << "No image provider:" << url.host();
        return false;
    }
    const QString id = url.path().mid(1);
    QSize size;
    const QImage image = provider->requestImage(id, &size, QSize());
    if (image.isNull()) {
        qCWarning(FRAMEWORK_IMAGE) << Q_FUNC_INFO << "No image retrieved:" << id;
        return false;
    }
    setImage(image);
    return true;
}

// As QImage::save() to the path, but a file that a full disk cut short is a failure.
bool ImageObject::saveFile(const QString &path, const QString &format, int quality) const
{
    const QByteArray name = format.toLatin1();
    QFile file(path);
    return FileUtility::hasUsableName(path)
           && m_image->image().save(&file, name.isEmpty() ? nullptr : name.constData(), quality)
           && file.error() == QFileDevice::NoError && file.flush();
}

#include "moc_ImageObject.cpp"
