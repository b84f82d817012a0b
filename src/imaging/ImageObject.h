#pragma once

#include "plugin/TessalineGlobal.h"

#include <QColor>
#include <QImage>
#include <QObject>
#include <QRect>
#include <QStringList>
#include <QUrl>
#include <QVariantMap>

#include <memory>

class LiveImage;

// A raster image with the operations a script needs: load, save, scale, cut, turn, pixels, texts.
// QML name: ImageObject, creatable.
//
// Operations come in pairs: a verb changes this object through setImage(), a past participle leaves
// it alone and returns a new object that has no parent and belongs to the script engine. Bad
// arguments give what QImage gives for them, usually a null image.
class TESSALINE_EXPORT ImageObject : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QStringList availableReadFormats READ availableReadFormats CONSTANT)
    Q_PROPERTY(QStringList availableWriteFormats READ availableWriteFormats CONSTANT)
    Q_PROPERTY(bool empty READ isEmpty NOTIFY imageChanged)
    Q_PROPERTY(int width READ width NOTIFY imageChanged)
    Q_PROPERTY(int height READ height NOTIFY imageChanged)
    Q_PROPERTY(int depth READ depth NOTIFY imageChanged)
    Q_PROPERTY(int bitPlaneCount READ bitPlaneCount NOTIFY imageChanged)
    Q_PROPERTY(int byteCount READ byteCount NOTIFY imageChanged)
    Q_PROPERTY(QSize size READ size NOTIFY imageChanged)
    Q_PROPERTY(bool hasAlphaChannel READ hasAlphaChannel NOTIFY imageChanged)
    Q_PROPERTY(ImageFormat format READ format NOTIFY imageChanged)
    Q_PROPERTY(QStringList textKeys READ textKeys NOTIFY textChanged)
    Q_PROPERTY(QVariantMap textValues READ textValues NOTIFY textChanged)
    Q_PROPERTY(QImage image READ image WRITE setImage NOTIFY imageContentChanged)
    Q_PROPERTY(QUrl url READ url NOTIFY imageContentChanged)

public:
    // The numbers are Qt's. Scripts may pass any number, so the types are given ones.
    enum AspectRatioMode : int {
        AspectRatioIgnore = Qt::IgnoreAspectRatio,
        AspectRatioKeep = Qt::KeepAspectRatio,
        AspectRatioKeepByExpanding = Qt::KeepAspectRatioByExpanding
    };
    Q_ENUM(AspectRatioMode)

    enum TransformationMode : int {
        TransformationModeFast = Qt::FastTransformation,
        TransformationModeSmooth = Qt::SmoothTransformation
    };
    Q_ENUM(TransformationMode)

    enum InvertMode : int { InvertRgb = QImage::InvertRgb, InvertRgba = QImage::InvertRgba };
    Q_ENUM(InvertMode)

    enum ImageFormat : int {
        ImageFormatInvalid = QImage::Format_Invalid,
        ImageFormatMono = QImage::Format_Mono,
        ImageFormatMonoLSB = QImage::Format_MonoLSB,
        ImageFormatIndexed8 = QImage::Format_Indexed8,
        ImageFormatRGB32 = QImage::Format_RGB32,
        ImageFormatARGB32 = QImage::Format_ARGB32,
        ImageFormatARGB32_Premultiplied = QImage::Format_ARGB32_Premultiplied,
        ImageFormatRGB16 = QImage::Format_RGB16,
        ImageFormatARGB8565_Premultiplied = QImage::Format_ARGB8565_Premultiplied,
        ImageFormatRGB666 = QImage::Format_RGB666,
        ImageFormatARGB6666_Premultiplied = QImage::Format_ARGB6666_Premultiplied,
        ImageFormatRGB555 = QImage::Format_RGB555,
        ImageFormatARGB8555_Premultiplied = QImage::Format_ARGB8555_Premultiplied,
        ImageFormatRGB888 = QImage::Format_RGB888,
        ImageFormatRGB444 = QImage::Format_RGB444,
        ImageFormatARGB4444_Premultiplied = QImage::Format_ARGB4444_Premultiplied,
        ImageFormatRGBX8888 = QImage::Format_RGBX8888,
        ImageFormatRGBA8888 = QImage::Format_RGBA8888,
        ImageFormatRGBA8888_Premultiplied = QImage::Format_RGBA8888_Premultiplied,
        ImageFormatBGR30 = QImage::Format_BGR30,
        ImageFormatA2BGR30_Premultiplied = QImage::Format_A2BGR30_Premultiplied,
        ImageFormatRGB30 = QImage::Format_RGB30,
        ImageFormatA2RGB30_Premultiplied = QImage::Format_A2RGB30_Premultiplied,
        ImageFormatAlpha8 = QImage::Format_Alpha8,
        ImageFormatGrayscale8 = QImage::Format_Grayscale8
    };
    Q_ENUM(ImageFormat)

    // Qt::ImageConversionFlags as a number.
    using ImageConversionFlags = int;

    // Empty.
    explicit ImageObject(QObject *parent = nullptr);
    explicit ImageObject(const QImage &image, QObject *parent = nullptr);
    ~ImageObject() override;

    QStringList availableReadFormats() const;
    QStringList availableWriteFormats() const;
    bool isEmpty() const;
    int width() const;
    int height() const;
    int depth() const;
    int bitPlaneCount() const;
    // At most what an int holds.
    int byteCount() const;
    QSize size() const;
    bool hasAlphaChannel() const;
    ImageFormat format() const;
    QStringList textKeys() const;
    QVariantMap textValues() const;

    QImage image() const;
    // Nothing happens for an equal image; otherwise signals imageChanged, imageContentChanged,
    // textChanged.
    void setImage(const QImage &image);

    // See ImageProvider. Empty for an empty object.
    QUrl url() const;

    // The pixels are not initialised. Empty unless both numbers are at least 1.
    Q_INVOKABLE void clear(int width = 0, int height = 0,
                           ImageObject::ImageFormat format = ImageFormatARGB32);
    // A new object; its pixels are not initialised.
    Q_INVOKABLE ImageObject *create(int width, int height,
                                    ImageObject::ImageFormat format = ImageFormatARGB32) const;

    // Signals imageChanged, imageContentChanged, textChanged whether it worked or not. An empty
    // format is found out from the file. A failure leaves the object empty.
    Q_INVOKABLE bool load(const QString &path, const QString &format = QString());
    // An "image:" URL asks the engine's image provider of that name, and a failure leaves the
    // object as it is.
    Q_INVOKABLE bool load(const QUrl &url, const QString &format = QString());
    // An empty format goes by the file's name. Quality is 0 to 100, -1 for the format's default.
    Q_INVOKABLE bool save(const QString &path, const QString &format = QString(),
                          int quality = -1) const;
    Q_INVOKABLE bool save(const QUrl &url, const QString &format = QString(),
                          int quality = -1) const;

    // Without a signal: sync() makes views follow.
    Q_INVOKABLE void fill(const QColor &color);
    Q_INVOKABLE void invertPixels(ImageObject::InvertMode invertMode = InvertRgb);
    // Opaque in any case.
    Q_INVOKABLE QColor pixel(int x, int y) const;
    // Without a signal, as fill(); the colour's alpha is not used.
    Q_INVOKABLE void setPixel(int x, int y, const QColor &color);
    Q_INVOKABLE QString text(const QString &key = QString()) const;
    Q_INVOKABLE void setText(const QString &key, const QString &text);
    Q_INVOKABLE void sync();

    Q_INVOKABLE void
    scale(int width, int height, ImageObject::AspectRatioMode aspectRatioMode = AspectRatioKeep,
          ImageObject::TransformationMode transformationMode = TransformationModeFast);
    Q_INVOKABLE ImageObject *
    scaled(int width, int height, ImageObject::AspectRatioMode aspectRatioMode = AspectRatioKeep,
           ImageObject::TransformationMode transformationMode = TransformationModeFast) const;
    Q_INVOKABLE void
    scaleToWidth(int width,
                 ImageObject::TransformationMode transformationMode = TransformationModeFast);
    Q_INVOKABLE ImageObject *scaledToWidth(
        int width,
        ImageObject::TransformationMode transformationMode = TransformationModeFast) const;
    Q_INVOKABLE void
    scaleToHeight(int height,
                  ImageObject::TransformationMode transformationMode = TransformationModeFast);
    Q_INVOKABLE ImageObject *scaledToHeight(
        int height,
        ImageObject::TransformationMode transformationMode = TransformationModeFast) const;
    Q_INVOKABLE void convertToFormat(ImageObject::ImageFormat format, int flags = 0);
    Q_INVOKABLE ImageObject *convertedToFormat(ImageObject::ImageFormat format,
                                               int flags = 0) const;
    Q_INVOKABLE void mirror(bool horizontal, bool vertical);
    Q_INVOKABLE ImageObject *mirrored(bool horizontal, bool vertical) const;
    // What lies outside the image is transparent or black.
    Q_INVOKABLE void clip(int x, int y, int width, int height);
    Q_INVOKABLE void clip(const QRect &rect);
    Q_INVOKABLE ImageObject *copy(int x, int y, int width, int height) const;
    Q_INVOKABLE ImageObject *copy(const QRect &rect) const;
    // Degrees clockwise. The result is as large as the turned picture needs, wherever the point is
    // about which it turns.
    Q_INVOKABLE void
    rotate(double angle, int x = -1, int y = -1,
           ImageObject::TransformationMode transformationMode = TransformationModeFast);
    Q_INVOKABLE ImageObject *
    rotated(double angle, int x = -1, int y = -1,
            ImageObject::TransformationMode transformationMode = TransformationModeFast) const;

signals:
    void imageChanged();
    // The pixels changed, or sync() says so. Each imageChanged raises it too.
    void imageContentChanged();
    void textChanged();

private:
    void replaceImage(QImage image);
    bool loadFile(const QString &path, const QString &format);
    bool loadImageProvider(const QUrl &url);
    bool saveFile(const QString &path, const QString &format, int quality) const;

    const std::unique_ptr<LiveImage> m_image;
};
