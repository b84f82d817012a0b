#include "imaging/ImageObject.h"
#include "support/IsolatedHome.h"

#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <functional>

// The same operations by ImageObject, ImageMagick and Pillow. They agree within the tolerance of
// each row: how far a channel of one pixel may be off, of 255, and all of them on average.
class tst_ImageJudges : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void operationsAgree_data();
    void operationsAgree();
    void turnedSizesAgree_data();
    void turnedSizesAgree();
    void premultipliedBytesAgree();

private:
    QString path(const char *name) const { return m_folder.filePath(QLatin1String(name)); }
    QImage judged(const QString &judge, const QString &words) const;

    QTemporaryDir m_folder;
    QString m_python;
};

using Operation = std::function<void(ImageObject &)>;
Q_DECLARE_METATYPE(Operation)

namespace {

const auto smooth = ImageObject::TransformationModeSmooth;
const auto exactly = ImageObject::AspectRatioIgnore;

bool run(const QString &program, const QStringList &arguments, QByteArray *output = nullptr)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    const bool good = process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit
                      && process.exitCode() == 0;
    if (output)
        *output = process.readAllStandardOutput();
    return good;
}

// Slopes, an edge and a disc; with alpha that grows from left to right.
QImage picture(bool withAlpha = false)
{
    QImage image(60, 40, withAlpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const int red = x * 255 / 59;
            const int green = (x - 30) * (x - 30) + (y - 20) * (y - 20) < 150 ? 220 : y * 255 / 39;
            const int blue = x < 20 ? 30 : 200;
            image.setPixel(x, y, qRgba(red, green, blue, withAlpha ? 4 * x + 10 : 255));
        }
    }
    return image;
}

struct Difference
{
    int most = 0;
    double mean = 0;
};

Difference difference(const QImage &first, const QImage &second)
{
    Difference result;
    const QImage a = first.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    const QImage b = second.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    qint64 sum = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width() * 4; ++x) {
            const int off = qAbs(a.constScanLine(y)[x] - b.constScanLine(y)[x]);
            result.most = qMax(result.most, off);
            sum += off;
        }
    }
    result.mean = double(sum) / (qint64(a.width()) * a.height() * 4);
    return result;
}

} // namespace

void tst_ImageJudges::initTestCase()
{
    QVERIFY2(!QStandardPaths::findExecutable("convert").isEmpty(),
             "scripts/setup test installs ImageMagick");
    // The system's own first: it is the one that has the system's modules.
    for (const char *python : {"/usr/bin/python3", "python3"}) {
        if (m_python.isEmpty() && run(python, {"-c", "import PIL"}))
            m_python = python;
    }
    QVERIFY2(!m_python.isEmpty(), "scripts/setup test installs Pillow");
    QVERIFY(picture().save(path("opaque.png")));
    QVERIFY(picture(true).save(path("alpha.png")));
}

// `words` are options of convert, or a Python expression for the image "im".
QImage tst_ImageJudges::judged(const QString &judge, const QString &words) const
{
    const QString source = path(judge.endsWith("alpha") ? "alpha.png" : "opaque.png");
    const QString target = path("judged.png");
    QFile::remove(target);
    if (judge.startsWith("convert")) {
        run("convert", QStringList{source} + words.split(' ') + QStringList{"PNG32:" + target});
    } else {
        run(m_python, {"-c",
                       "import sys\n"
                       "from PIL import Image, ImageChops, ImageOps\n"
                       "im = Image.open(sys.argv[1])\n"
                       "im = "
                           + words + "\nim.save(sys.argv[2])\n",
                       source, target});
    }
    return QImage(target);
}

void tst_ImageJudges::operationsAgree_data()
{
    QTest::addColumn<QString>("judge");
    QTest::addColumn<QString>("words");
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<int>("most");
    QTest::addColumn<double>("mean");
    const auto row = [](const char *name, const char *judge, const char *words,
                        const Operation &operation, int most = 0, double mean = 0) {
        QTest::addRow("%s, %s", name, judge)
            << QString(judge) << QString(words) << operation << most << mean;
    };
    const Operation half = [](ImageObject &o) { o.scale(30, 20); };
    row("nearest, a half", "convert", "-sample 30x20", half);
    // Of the two pixels that are equally near, Pillow takes the other one.
    row("nearest, a half", "pillow", "im.resize((30, 20), Image.NEAREST)", half, 180, 3.5);
    const Operation triple = [](ImageObject &o) { o.scale(180, 120); };
    row("nearest, three times", "convert", "-sample 180x120", triple);
    row("nearest, three times", "pillow", "im.resize((180, 120), Image.NEAREST)", triple);
    const Operation odd = [](ImageObject &o) { o.scale(37, 23, exactly); };
    row("nearest, odd", "convert", "-sample 37x23!", odd);
    row("nearest, odd", "pillow", "im.resize((37, 23), Image.NEAREST)", odd, 7, 0.1);

    const Operation smoothHalf = [](ImageObject &o) { o.scaleToWidth(30, smooth); };
    // Not by -scale: ImageMagick 6 reads memory there that it hasn't written.
    row("smooth, a half", "convert", "-filter box -resize 30x20", smoothHalf, 1, 0.2);
    row("smooth, a half", "pillow", "im.resize((30, 20), Image.BOX)", smoothHalf, 1, 0.2);
    const Operation smoothOdd = [](ImageObject &o) { o.scale(24, 16, exactly, smooth); };
    // Parts of pixels count for their parts: pixels in half, then averages of whole ones.
    row("smooth, two fifths", "convert", "-sample 120x80 -filter box -resize 24x16", smoothOdd, 2,
        0.5);
    row("smooth, two fifths", "pillow",
        "im.resize((120, 80), Image.NEAREST).resize((24, 16), Image.BOX)", smoothOdd, 2, 0.5);
    const Operation smoothDouble = [](ImageObject &o) { o.scaleToHeight(80, smooth); };
    row("smooth, twice", "pillow", "im.resize((120, 80), Image.BILINEAR)", smoothDouble, 2, 0.3);
    row("smooth, twice", "convert", "-filter triangle -resize 120x80", smoothDouble, 2, 0.3);
    row("smooth, a half", "pillow alpha",
        "im.convert('RGBa').resize((30, 20), Image.BOX).convert('RGBA')", smoothHalf, 1, 0.5);

    const Operation mirror = [](ImageObject &o) { o.mirror(true, false); };
    row("mirror", "convert", "-flop", mirror);
    row("mirror", "pillow", "ImageOps.mirror(im)", mirror);
    const Operation flip = [](ImageObject &o) { o.mirror(false, true); };
    row("flip", "convert", "-flip", flip);
    row("flip", "pillow", "ImageOps.flip(im)", flip);

    const Operation right = [](ImageObject &o) { o.rotate(90); };
    row("rotate 90", "convert", "-rotate 90", right);
    row("rotate 90", "pillow", "im.transpose(Image.ROTATE_270)", right);
    const Operation over = [](ImageObject &o) { o.rotate(180); };
    row("rotate 180", "convert", "-rotate 180", over);
    const Operation left = [](ImageObject &o) { o.rotate(-90); };
    row("rotate -90", "convert", "-rotate -90", left);
    row("rotate -90", "pillow", "im.transpose(Image.ROTATE_90)", left);

    const Operation cut = [](ImageObject &o) { o.clip(5, 7, 20, 11); };
    row("clip", "convert", "-crop 20x11+5+7 +repage", cut);
    row("clip", "pillow", "im.crop((5, 7, 25, 18))", cut);

    const Operation negative = [](ImageObject &o) { o.invertPixels(); };
    row("invert", "convert", "-negate", negative);
    row("invert", "pillow", "ImageOps.invert(im.convert('RGB'))", negative);
    row("invert with alpha", "pillow alpha", "ImageChops.invert(im)",
        [](ImageObject &o) { o.invertPixels(ImageObject::InvertRgba); });

    const Operation grey = [](ImageObject &o) {
        o.convertToFormat(ImageObject::ImageFormatGrayscale8);
    };
    // Qt weighs red, green and blue with 11, 16 and 5 of 32, the others with 10, 19 and 4.
    row("grey", "convert", "-grayscale Rec601Luma", grey, 25, 6.5);
    row("grey", "pillow", "im.convert('L')", grey, 25, 6.5);
    row("one bit", "pillow", "im.getchannel('R').point(lambda p: 255 if p > 127 else 0)",
        [](ImageObject &o) {
            QImage red = o.image();
            for (int y = 0; y < red.height(); ++y) {
                for (int x = 0; x < red.width(); ++x) {
                    const int value = qRed(red.pixel(x, y));
                    red.setPixel(x, y, qRgb(value, value, value));
                }
            }
            o.setImage(red);
            o.convertToFormat(ImageObject::ImageFormatMono, Qt::ThresholdDither);
        });
}

void tst_ImageJudges::operationsAgree()
{
    QFETCH(QString, judge);
    QFETCH(QString, words);
    QFETCH(Operation, operation);
    QFETCH(int, most);
    QFETCH(double, mean);
    ImageObject object(picture(judge.endsWith("alpha")));
    operation(object);
    const QImage other = judged(judge, words);
    QCOMPARE(object.size(), other.size());
    const Difference off = difference(object.image(), other);
    QVERIFY2(off.most <= most && off.mean <= mean,
             qPrintable(QString("off by %1, %2 on average").arg(off.most).arg(off.mean)));
}

void tst_ImageJudges::turnedSizesAgree_data()
{
    QTest::addColumn<int>("angle");
    for (const int angle : {15, 30, 45, 60, 120, 200, 300, -30})
        QTest::addRow("%d", angle) << angle;
}

// They round the bounds each in its own way: two pixels at most.
void tst_ImageJudges::turnedSizesAgree()
{
    QFETCH(int, angle);
    ImageObject object(picture());
    object.rotate(angle);
    const QString number = QString::number(angle);
    for (const QImage &other :
         {judged("convert", "-background none -rotate " + number + " +repage"),
          judged("pillow", "im.rotate(-(" + number + "), expand=True)")}) {
        QVERIFY2(qAbs(object.width() - other.width()) <= 2
                     && qAbs(object.height() - other.height()) <= 2,
                 qPrintable(QString("%1 x %2, but %3 x %4")
                                .arg(object.width())
                                .arg(object.height())
                                .arg(other.width())
                                .arg(other.height())));
        // What is in the middle stays there.
        const QColor ours(object.pixel(object.width() / 2, object.height() / 2));
        const QColor theirs(other.pixel(other.width() / 2, other.height() / 2));
        QVERIFY(qAbs(ours.red() - theirs.red()) <= 10 && ours.green() == theirs.green());
    }
}

void tst_ImageJudges::premultipliedBytesAgree()
{
    QByteArray theirs;
    QVERIFY(run(m_python,
                {"-c",
                 "import sys\n"
                 "from PIL import Image\n"
                 "sys.stdout.buffer.write(Image.open(sys.argv[1]).convert('RGBa').tobytes())\n",
                 path("alpha.png")},
                &theirs));
    ImageObject object(picture(true));
    object.convertToFormat(ImageObject::ImageFormatRGBA8888_Premultiplied);
    const QImage image = object.image();
    QCOMPARE(theirs.size(), int(image.sizeInBytes()));
    int most = 0;
    for (int i = 0; i < theirs.size(); ++i)
        most = qMax(most, qAbs(image.constBits()[i] - static_cast<uchar>(theirs.at(i))));
    QVERIFY2(most <= 1, qPrintable(QString::number(most))); // rounding
}

TESSALINE_TEST_MAIN(tst_ImageJudges)
#include "tst_ImageJudges.moc"
