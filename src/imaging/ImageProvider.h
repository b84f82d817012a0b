#pragma once

#include "plugin/TessalineGlobal.h"

#include <QQuickImageProvider>
#include <QUrl>

class QQmlEngine;

// Shows the pixels of image objects in an Image element, by URLs
// "image://imageobject/17:4294967298": the object's number and the image's cache key, which changes
// with the pixels and so makes the element load them again. Pictures are found whatever thread or
// engine asks.
class TESSALINE_EXPORT ImageProvider : public QQuickImageProvider
{
public:
    explicit ImageProvider(Flags flags = Flags());

    // Gives the engine a provider, which then belongs to it.
    static void initialize(QQmlEngine *engine);

    // The URL of the image that an ImageObject holds. Empty for a null image; for one that no
    // object holds, a URL that leads nowhere.
    static QUrl url(const QImage &image);

    // The object's own pixels, shared and never scaled: requestedSize is ignored. Null, with a
    // warning, if the URL outlived its object or was made up.
    QImage requestImage(const QString &id, QSize *size, const QSize &requestedSize) override;
};

// Tells an Image element whether a picture can be shown without harm: a URL "image://picturecheck/"
// with the picture's path, percent-encoded, gives a pixel, or nothing.
class PictureCheckProvider : public QQuickImageProvider
{
public:
    PictureCheckProvider();

    QImage requestImage(const QString &id, QSize *size, const QSize &requestedSize) override;
};
