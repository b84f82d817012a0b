#include "imaging/ImageObject.h"
#include "imaging/ImageProvider.h"
#include "support/Ratio.h"

#include <QEventLoop>
#include <QGuiApplication>
#include <QProcess>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QTemporaryDir>

#include <cmath>
#include <cstdio>
#include <random>

// A thumbnail of a photo, pixels that a script sets, and a picture that changes 60 times a second.

namespace {

const QSize photoSize(4000, 3000);

// In memory where the system offers that: the time of a disk would hide ours and the peers'.
QString workFolderTemplate()
{
    const QString memory = QStringLiteral("/dev/shm");
    return (QFileInfo(memory).isWritable() ? memory : QDir::tempPath())
           + QStringLiteral("/bench_ImageObject-XXXXXX");
}

// Large and small waves and some noise: as a JPEG about as large as a camera's photo.
QImage photo()
{
    std::mt19937 random(7);
    QImage image(photoSize, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const double large = std::sin(x / 310.0) * std::cos(y / 270.0);
            const double small = std::sin(x / 7.0 + y / 11.0);
            const int noise = static_cast<int>(random() % 16);
            line[x] = qRgb(static_cast<int>(120 + 80 * large + 20 * small) + noise,
                           static_cast<int>(110 + 60 * large - 30 * small) + noise,
                           static_cast<int>(100 - 70 * large + 10 * small) + noise);
        }
    }
    return image;
}

bool runProgram(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    return process.waitForFinished(-1) && process.exitCode() == 0;
}

bool makeThumbnail(const QString &source, const QString &target,
                   ImageObject::TransformationMode mode)
{
    ImageObject object;
    if (!object.load(source))
        return false;
    object.scale(1024, 1024, ImageObject::AspectRatioKeep, mode);
    return object.save(target);
}

RatioTable::Function repeated(const std::function<bool()> &step)
{
    return [=](benchmark::State &state) {
        for (auto _ : state) {
            if (!step())
                state.SkipWithError("a step failed");
        }
    };
}

// Whether all of them make a picture of the same size.
bool addThumbnails(RatioTable &table, const QString &source, const QString &target)
{
    const auto ours = [=] {
        return makeThumbnail(source, target, ImageObject::TransformationModeFast);
    };
    const auto oursSmooth = [=] {
        return makeThumbnail(source, target, ImageObject::TransformationModeSmooth);
    };
    const auto vips = [=] {
        return runProgram(QStringLiteral("vipsthumbnail"),
                          {source, QStringLiteral("--size"), QStringLiteral("1024"),
                           QStringLiteral("-o"), target});
    };
    const auto convert = [=] {
        return runProgram(QStringLiteral("convert"),
                          {source, QStringLiteral("-resize"), QStringLiteral("1024x1024"), target});
    };
    for (const std::function<bool()> &step :
         {std::function<bool()>(ours), std::function<bool()>(vips),
          std::function<bool()>(convert)}) {
        if (!step() || QImage(target).size() != QSize(1024, 768))
            return false;
    }
    const auto row = [&](const char *name, const auto &mine, const auto &theirs) -> auto &
    {
        return table.add(name, repeated(mine), repeated(theirs)).realTime().iterations(1);
    };
    row("12 MP JPEG to 1024, to vipsthumbnail", ours, vips).limit(0.65);
    row("12 MP JPEG to 1024, to convert", ours, convert).limit(0.25);
    // The peers always average pixels; these rows tell what that costs here.
    row("12 MP JPEG to 1024, smooth, to vipsthumbnail", oursSmooth, vips);
    row("12 MP JPEG to 1024, smooth, to convert", oursSmooth, convert);
    return true;
}

// A window with one element of 1280 x 720, and its root's functions.
class Scene
{
public:
    explicit Scene(const char *content, ImageObject *object = nullptr)
    {
        ImageProvider::initialize(m_view.engine());
        QQmlComponent component(m_view.engine());
        component.setData(QByteArray("import QtQuick 2.15\n") + content, QUrl());
        QVariantMap properties;
        if (object)
            properties.insert(QStringLiteral("picture"), QVariant::fromValue<QObject *>(object));
        QObject *root = component.createWithInitialProperties(properties);
        if (!root)
            qFatal("%s", qPrintable(component.errorString()));
        m_view.setContent(QUrl(), nullptr, root);
        m_view.resize(1280, 720);
        m_view.show();
        QObject::connect(&m_view, &QQuickWindow::frameSwapped, &m_loop, &QEventLoop::quit);
        m_loop.exec();
    }

    // Changes the picture and waits for its frame.
    void update(int number)
    {
        QMetaObject::invokeMethod(m_view.rootObject(), "change", Q_ARG(QVariant, number));
        m_loop.exec();
    }

private:
    QQuickView m_view;
    QEventLoop m_loop;
};

// A new ground and a row of 100 dots, every time at another place.
const char *const imageScene = R"(
Item {
    property QtObject picture

    function change(number) {
        picture.fill(Qt.rgba(number % 60 / 60, 0.5, 0.25, 1));
        for (var i = 0; i < 100; ++i)
            picture.setPixel(10 * i + number % 10, number % 720, "white");
        picture.sync();
    }

    Image { width: 1280; height: 720; cache: false; source: picture.url }
}
)";

const char *const canvasScene = R"(
Item {
    function change(number) {
        canvas.number = number;
        canvas.requestPaint();
    }

    Canvas {
        id: canvas

        property int number: 0

        width: 1280
        height: 720
        renderStrategy: Canvas.Immediate
        onPaint: {
            var context = getContext("2d");
            context.fillStyle = Qt.rgba(number % 60 / 60, 0.5, 0.25, 1);
            context.fillRect(0, 0, 1280, 720);
            context.fillStyle = "white";
            for (var i = 0; i < 100; ++i)
                context.fillRect(10 * i + number % 10, number % 720, 1, 1);
        }
    }
}
)";

// For each frame, on the one thread that does everything.
RatioTable::Function updates(Scene *scene)
{
    return [=](benchmark::State &state) {
        int number = 0;
        for (auto _ : state)
            scene->update(++number);
    };
}

void setThousandPixels(ImageObject &object)
{
    for (int i = 0; i < 1000; ++i)
        object.setPixel(i, i, Qt::red);
}

// How often the pixels moved to another place while a thousand of them were set.
int copiesOfThousandPixels(ImageObject &object)
{
    int copies = 0;
    const uchar *bits = object.image().constBits();
    for (int i = 0; i < 1000; ++i) {
        object.setPixel(i, i, Qt::blue);
        const uchar *const now = object.image().constBits();
        copies += now != bits;
        bits = now;
    }
    return copies;
}

void addPixels(RatioTable &table, ImageObject &object, const QImage &handedOut)
{
    const bool isShared = handedOut.constBits() == object.image().constBits();
    table.value("copies made by requestImage", isShared ? 0 : 1, 0);
    // The view has the pixels as they were, and keeps them.
    table.value("copies made by 1,000 setPixel of a shown 12 MP image",
                copiesOfThousandPixels(object), 1);
    auto plain = std::make_shared<QImage>(photoSize, QImage::Format_RGB32);
    table.add(
        "1,000 setPixel of a shown 12 MP image, to a bare QImage",
        [&object](benchmark::State &state) {
            for (auto _ : state)
                setThousandPixels(object);
        },
        [plain](benchmark::State &state) {
            for (auto _ : state) {
                for (int i = 0; i < 1000; ++i)
                    plain->setPixel(i, i, QColor(Qt::red).rgb());
            }
        });
}

} // namespace

int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    const QTemporaryDir work(workFolderTemplate());
    const QString source = work.filePath(QStringLiteral("photo.jpg"));
    const QImage image = photo();
    RatioTable table;
    if (!image.save(source, "JPG", 90)
        || !addThumbnails(table, source, work.filePath(QStringLiteral("thumbnail.jpg")))) {
        std::fprintf(stderr, "The photo could not be made, or the results differ.\n");
        return 1;
    }

    ImageObject large(image);
    const QString id = large.url().path().mid(1);
    const QImage handedOut = ImageProvider().requestImage(id, nullptr, QSize());
    Scene largeScene("Image { property QtObject picture; width: 1280; height: 720; cache: false;"
                     " source: picture.url }",
                     &large);
    addPixels(table, large, handedOut);

    ImageObject picture(QImage(1280, 720, QImage::Format_RGB32));
    Scene imageView(imageScene, &picture);
    Scene canvasView(canvasScene);
    table
        .budget("update of 1280 x 720 through sync(), 60 a second", updates(&imageView),
                std::chrono::microseconds(16666))
        .iterations(60);
    table
        .add("update of 1280 x 720 through sync(), to a Canvas", updates(&imageView),
             updates(&canvasView))
        .iterations(60);
    return table.run(argc, argv);
}
