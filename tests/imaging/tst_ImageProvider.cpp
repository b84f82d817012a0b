#include "imaging/ImageProvider.h"

#include "imaging/ImageObject.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QRegularExpression>
#include <QTest>
#include <QThread>

#include <atomic>
#include <thread>

class tst_ImageProvider : public QObject
{
    Q_OBJECT

private slots:
    void initializeAddsAnImageProvider();
    void urlOfANullImageIsEmpty();
    void urlHoldsNumberAndCacheKey();
    void urlNumberIsNoAddress();
    void urlNumberStaysWithTheObject();
    void urlOfAnotherImageLeadsNowhere();
    void requestSharesTheObjectsPixels();
    void requestedSizeIsIgnored();
    void sizeMayBeLeftOut();
    void oldCacheKeyGivesThePresentImage();
    void idWithoutColonIsTheNumber();
    void madeUpIdGivesNullAndAWarning_data();
    void madeUpIdGivesNullAndAWarning();
    void urlThatOutlivesItsObjectGivesNullAndAWarning();
    void urlThatOutlivesItsImageGivesNullAndAWarning();
    void numbersAreNotUsedAgain();
    void setPixelCopiesSharedPixelsOnce();

    void sceneGraphSharesTwoFormats_data();
    void sceneGraphSharesTwoFormats();

    void elementsOfTwoEnginesShowOneObject();
    void objectOutlivesAnEngine();
    void elementLoadsInTheLoaderThread();
    void elementFollowsTheUrl();
    void elementWithAStaleUrlFails();
    void picturesAreWholeWhileTheyChange();

private:
    static QString idOf(const QUrl &url) { return url.path().mid(1); }
};

namespace {

const char *const imageCategory = "Zemrik.Tessaline.Image";

QImage filled(const QColor &color, int width = 20, int height = 10)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

// The provider of image objects under another name, which tells what it was asked.
class Recorder : public ImageProvider
{
public:
    QImage requestImage(const QString &id, QSize *size, const QSize &requestedSize) override
    {
        const QImage image = ImageProvider::requestImage(id, size, requestedSize);
        thread = QThread::currentThread();
        bits = image.constBits();
        return image;
    }

    // No members: a thread sanitizer doesn't see that Qt ends its thread before it deletes this.
    inline static std::atomic<QThread *> thread{nullptr};
    inline static std::atomic<const uchar *> bits{nullptr};
};

// An Image element that shows an image object.
struct Element
{
    Element(QQmlEngine *engine, const QUrl &source, bool asynchronous = false)
    {
        QQmlComponent component(engine);
        component.setData("import QtQuick 2.15\nImage { cache: false }", QUrl());
        item.reset(component.create());
        if (!item)
            qFatal("%s", qPrintable(component.errorString()));
        item->setProperty("asynchronous", asynchronous);
        item->setProperty("source", source);
    }

    bool isReady() const { return status() == 1; }
    bool isLoading() const { return status() == 2; }
    bool isError() const { return status() == 3; }
    int status() const { return item->property("status").toInt(); }
    QSize sourceSize() const { return item->property("sourceSize").toSize(); }

    QScopedPointer<QObject> item;
};

} // namespace

void tst_ImageProvider::initializeAddsAnImageProvider()
{
    QQmlEngine engine;
    ImageProvider::initialize(&engine);
    auto *provider = dynamic_cast<ImageProvider *>(engine.imageProvider("imageobject"));
    QVERIFY(provider);
    QCOMPARE(provider->imageType(), QQmlImageProviderBase::Image);
    QCOMPARE(provider->flags(), QQmlImageProviderBase::Flags());
}

void tst_ImageProvider::urlOfANullImageIsEmpty()
{
    QCOMPARE(ImageProvider::url(QImage()), QUrl());
    QCOMPARE(ImageObject().url(), QUrl());
}

void tst_ImageProvider::urlHoldsNumberAndCacheKey()
{
    const ImageObject object(filled(Qt::red));
    const QUrl url = object.url();
    const QRegularExpression form("^image://imageobject/([1-9][0-9]*):([0-9]+)$");
    const QRegularExpressionMatch match = form.match(url.toString());
    QVERIFY2(match.hasMatch(), qPrintable(url.toString()));
    QCOMPARE(match.captured(2).toLongLong(), object.image().cacheKey());
}

void tst_ImageProvider::urlNumberIsNoAddress()
{
    const ImageObject first(filled(Qt::red));
    const ImageObject second(filled(Qt::red));
    const quint64 number = idOf(first.url()).section(':', 0, 0).toULongLong();
    QCOMPARE(idOf(second.url()).section(':', 0, 0).toULongLong(), number + 1);
}

void tst_ImageProvider::urlNumberStaysWithTheObject()
{
    ImageObject object(filled(Qt::red));
    const QStringList before = idOf(object.url()).split(':');
    object.setPixel(0, 0, Qt::blue);
    const QStringList changed = idOf(object.url()).split(':');
    QCOMPARE(changed.at(0), before.at(0));
    QVERIFY(changed.at(1) != before.at(1));
    object.scale(5, 5);
    QCOMPARE(idOf(object.url()).section(':', 0, 0), before.at(0));
}

void tst_ImageProvider::urlOfAnotherImageLeadsNowhere()
{
    const QImage image = filled(Qt::red);
    const QUrl url = ImageProvider::url(image);
    QCOMPARE(url, QUrl(QString("image://imageobject/0:%1").arg(image.cacheKey())));
    LogCapture log;
    QVERIFY(ImageProvider().requestImage(idOf(url), nullptr, QSize()).isNull());
}

void tst_ImageProvider::requestSharesTheObjectsPixels()
{
    const ImageObject object(filled(Qt::red));
    QSize size;
    LogCapture log;
    const QImage image = ImageProvider().requestImage(idOf(object.url()), &size, QSize(-1, -1));
    QCOMPARE(image.constBits(), object.image().constBits());
    QCOMPARE(image.cacheKey(), object.image().cacheKey());
    QCOMPARE(size, QSize(20, 10));
    QVERIFY2(log.messages().isEmpty(), qPrintable(log.dump()));
}

void tst_ImageProvider::requestedSizeIsIgnored()
{
    const ImageObject object(filled(Qt::red));
    QSize size;
    const QImage image = ImageProvider().requestImage(idOf(object.url()), &size, QSize(5, 5));
    QCOMPARE(image.size(), QSize(20, 10));
    QCOMPARE(size, QSize(20, 10));
}

void tst_ImageProvider::sizeMayBeLeftOut()
{
    const ImageObject object(filled(Qt::red));
    QVERIFY(!ImageProvider().requestImage(idOf(object.url()), nullptr, QSize()).isNull());
}

void tst_ImageProvider::oldCacheKeyGivesThePresentImage()
{
    ImageObject object(filled(Qt::red));
    const QString id = idOf(object.url());
    object.setImage(filled(Qt::blue));
    QCOMPARE(ImageProvider().requestImage(id, nullptr, QSize()), filled(Qt::blue));
}

void tst_ImageProvider::idWithoutColonIsTheNumber()
{
    const ImageObject object(filled(Qt::red));
    const QString number = idOf(object.url()).section(':', 0, 0);
    for (const QString &id : {number, number + ":", number + ":1:2:3"})
        QCOMPARE(ImageProvider().requestImage(id, nullptr, QSize()), filled(Qt::red));
}

void tst_ImageProvider::madeUpIdGivesNullAndAWarning_data()
{
    QTest::addColumn<QString>("id");
    for (const char *id : {"", ":", ":1", "0", "0:1", "-1:1", "abc", "140737488355328:1",
                           "18446744073709551615", "99999999999999999999999", "1x", "0x1", "1.0"})
        QTest::newRow(id) << QString(id);
}

void tst_ImageProvider::madeUpIdGivesNullAndAWarning()
{
    QFETCH(QString, id);
    const ImageObject object(filled(Qt::red));
    QSize size(7, 7);
    LogCapture log;
    QVERIFY(ImageProvider().requestImage(id, &size, QSize()).isNull());
    QCOMPARE(size, QSize(0, 0));
    QCOMPARE(log.messages().size(), 1);
    QCOMPARE(log.count(QtWarningMsg, imageCategory, "No live image: \"" + id + '"'), 1);
}

void tst_ImageProvider::urlThatOutlivesItsObjectGivesNullAndAWarning()
{
    QScopedPointer<ImageObject> object(new ImageObject(filled(Qt::red)));
    const QString id = idOf(object->url());
    object.reset();
    LogCapture log;
    QVERIFY(ImageProvider().requestImage(id, nullptr, QSize()).isNull());
    QCOMPARE(log.count(QtWarningMsg, imageCategory, id), 1);
}

void tst_ImageProvider::urlThatOutlivesItsImageGivesNullAndAWarning()
{
    ImageObject object(filled(Qt::red));
    const QString id = idOf(object.url());
    object.clear();
    LogCapture log;
    QVERIFY(ImageProvider().requestImage(id, nullptr, QSize()).isNull());
    QCOMPARE(log.count(QtWarningMsg, imageCategory, id), 1);
}

void tst_ImageProvider::numbersAreNotUsedAgain()
{
    QStringList numbers;
    for (int i = 0; i < 100; ++i) { // often at the same address
        const ImageObject object(filled(Qt::red));
        numbers.append(idOf(object.url()).section(':', 0, 0));
    }
    QCOMPARE(numbers.removeDuplicates(), 0);
}

void tst_ImageProvider::setPixelCopiesSharedPixelsOnce()
{
    ImageObject object(filled(Qt::red));
    const QImage shown = ImageProvider().requestImage(idOf(object.url()), nullptr, QSize());
    QCOMPARE(object.image().constBits(), shown.constBits());
    object.setPixel(0, 0, Qt::blue);
    QCOMPARE(shown, filled(Qt::red)); // what is shown doesn't change
    const uchar *const own = object.image().constBits();
    QVERIFY(own != shown.constBits());
    for (int x = 0; x < 20; ++x) {
        object.setPixel(x, 1, Qt::blue);
        QCOMPARE(object.image().constBits(), own);
    }
}

void tst_ImageProvider::sceneGraphSharesTwoFormats_data()
{
    QTest::addColumn<int>("format");
    QTest::addColumn<bool>("shared");
    for (int format = QImage::Format_Mono; format < QImage::NImageFormats; ++format) {
        QTest::addRow("%d", format)
            << format
            << (format == QImage::Format_RGB32 || format == QImage::Format_ARGB32_Premultiplied);
    }
}

// What authors are told about costs; it is Qt's doing.
void tst_ImageProvider::sceneGraphSharesTwoFormats()
{
    QFETCH(int, format);
    QFETCH(bool, shared);
    QImage image(8, 8, static_cast<QImage::Format>(format));
    image.fill(0);
    const ImageObject object(image);
    const QScopedPointer<QQuickTextureFactory> factory(QQuickTextureFactory::textureFactoryForImage(
        ImageProvider().requestImage(idOf(object.url()), nullptr, QSize())));
    const QImage texture = factory->image();
    QCOMPARE(texture.constBits() == object.image().constBits(), shared);
    if (!shared)
        QCOMPARE(texture.format(), QImage::Format_ARGB32_Premultiplied);
}

void tst_ImageProvider::elementsOfTwoEnginesShowOneObject()
{
    QQmlEngine first;
    QQmlEngine second;
    ImageProvider::initialize(&first);
    ImageProvider::initialize(&second);
    const ImageObject object(filled(Qt::red));
    for (const bool asynchronous : {false, true}) {
        const Element one(&first, object.url(), asynchronous);
        const Element other(&second, object.url(), asynchronous);
        QTRY_VERIFY(one.isReady() && other.isReady());
        QCOMPARE(one.sourceSize(), QSize(20, 10));
        QCOMPARE(other.sourceSize(), QSize(20, 10));
    }
}

void tst_ImageProvider::objectOutlivesAnEngine()
{
    const ImageObject object(filled(Qt::red));
    for (int i = 0; i < 3; ++i) {
        QQmlEngine engine;
        ImageProvider::initialize(&engine);
        const Element element(&engine, object.url());
        QVERIFY(element.isReady());
    }
    QVERIFY(!ImageProvider().requestImage(idOf(object.url()), nullptr, QSize()).isNull());
}

void tst_ImageProvider::elementLoadsInTheLoaderThread()
{
    QQmlEngine engine;
    engine.addImageProvider("recorder", new Recorder);
    const ImageObject object(filled(Qt::red));
    const Element element(&engine, QUrl("image://recorder/" + idOf(object.url())), true);
    QVERIFY(element.isLoading());
    QTRY_VERIFY(element.isReady());
    QCOMPARE(element.sourceSize(), QSize(20, 10));
    QVERIFY(Recorder::thread);
    QVERIFY(Recorder::thread != QThread::currentThread());
    QVERIFY(Recorder::bits == object.image().constBits());
}

void tst_ImageProvider::elementFollowsTheUrl()
{
    QQmlEngine engine;
    ImageProvider::initialize(&engine);
    ImageObject object(filled(Qt::red));
    const Element element(&engine, object.url(), true);
    connect(&object, &ImageObject::imageContentChanged, element.item.data(),
            [&] { element.item->setProperty("source", object.url()); });
    QTRY_VERIFY(element.isReady());
    object.scale(10, 10);
    QTRY_COMPARE(element.sourceSize(), QSize(10, 5));
    object.clear();
    QTRY_COMPARE(element.status(), 0); // no source
}

void tst_ImageProvider::elementWithAStaleUrlFails()
{
    QQmlEngine engine;
    ImageProvider::initialize(&engine);
    QScopedPointer<ImageObject> object(new ImageObject(filled(Qt::red)));
    const QUrl url = object->url();
    object.reset();
    LogCapture log;
    for (const bool asynchronous : {false, true}) {
        log.clear();
        const Element element(&engine, url, asynchronous);
        QTRY_VERIFY(element.isError());
        QCOMPARE(log.count(QtWarningMsg, imageCategory, "No live image: \"" + idOf(url) + '"'), 1);
    }
    const Element typed(&engine, QUrl("image://imageobject/140737488355328:1"));
    QVERIFY(typed.isError());
}

// Each picture has one colour at any time: whoever gets one with two has seen it half written.
void tst_ImageProvider::picturesAreWholeWhileTheyChange()
{
    ImageObject object(filled(Qt::black, 200, 100));
    const QString id = idOf(object.url());
    std::atomic<bool> stop{false};
    std::atomic<int> requests{0};
    std::atomic<int> torn{0};
    const auto read = [&] {
        ImageProvider provider;
        while (!stop) {
            QSize size;
            const QImage image = provider.requestImage(id, &size, QSize());
            QImage plain(image.size(), image.format());
            plain.fill(image.pixel(0, 0));
            if (image != plain || image.size() != size)
                ++torn;
            ++requests;
        }
    };
    std::thread first(read);
    std::thread second(read);
    for (int i = 0; i < 2000 || requests < 2000; ++i) {
        object.fill(QColor(i % 256, 0, 0));
        object.invertPixels();
        object.setImage(filled(QColor(0, i % 256, 0), 100 + i % 50, 50));
        ImageObject(filled(Qt::red)).mirror(true, true);
    }
    stop = true;
    first.join();
    second.join();
    QCOMPARE(torn.load(), 0);
}

TESSALINE_TEST_MAIN(tst_ImageProvider)
#include "tst_ImageProvider.moc"
