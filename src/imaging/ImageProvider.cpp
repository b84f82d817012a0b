#include "imaging/ImageProvider.h"

#include "imaging/LiveImage.h"
#include "imaging/PictureCheck.h"
#include "plugin/TessalineDebug.h"

#include <QFileInfo>
#include <QImageReader>
#include <QQmlEngine>

ImageProvider::ImageProvider(Flags flags)
    : QQuickImageProvider(QQuickImageProvider::Image, flags)
{
}

void ImageProvider::initialize(QQmlEngine *engine)
{
    engine->addImageProvider(QStringLiteral("imageobject"), new ImageProvider);
    engine->addImageProvider(QStringLiteral("picturecheck"), new PictureCheckProvider);
}

QUrl ImageProvider::url(const QImage &image)
{
    if (image.isNull())
        return QUrl();
    return QUrl(QStringLiteral("image://imageobject/%1:%2")
                    .arg(LiveImage::numberOf(image))
                    .arg(image.cacheKey()));
}

// What follows the colon only makes URLs differ. Without one, left(-1) is the whole id.
QImage ImageProvider::requestImage(const QString &id, QSize *size, const QSize &requestedSize)
{
    Q_UNUSED(requestedSize)
    QImage image = LiveImage::find(id.leftRef(id.indexOf(QLatin1Char(':'))).toULongLong());
    if (image.isNull())
        qCWarning(FRAMEWORK_IMAGE) << Q_FUNC_INFO << "No live image:" << id;
    if (size)
        *size = image.size();
    return image;
}

PictureCheckProvider::PictureCheckProvider()
    : QQuickImageProvider(QQuickImageProvider::Image)
{
}

QImage PictureCheckProvider::requestImage(const QString &id, QSize *size,
                                          const QSize &requestedSize)
{
    Q_UNUSED(requestedSize)
    const QString path = QUrl::fromPercentEncoding(id.toUtf8());
    // Behind the name of a photo nobody expects a document, which does more than show pixels.
    const QByteArray format = QImageReader::imageFormat(path);
    const QByteArray suffix = QFileInfo(path).suffix().toLower().toLatin1();
    if ((isContainerFormat(format) && !isContainerFormat(suffix)) || !isHarmlessPicture(path))
        return QImage();
    QImage pixel(1, 1, QImage::Format_RGB32);
    pixel.fill(Qt::black);
    if (size)
        *size = pixel.size();
    return pixel;
}
