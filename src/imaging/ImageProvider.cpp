#include "imaging/ImageProvider.h"

#include "imaging/LiveImage.h"
#include "plugin/TessalineDebug.h"

#include <QQmlEngine>

ImageProvider::ImageProvider(Flags flags)
    : QQuickImageProvider(QQuickImageProvider::Image, flags)
{
}

void ImageProvider::initialize(QQmlEngine *engine)
{
    engine->addImageProvider(QStringLiteral("imageobject"), new ImageProvider);
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
