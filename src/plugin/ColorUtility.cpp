#include "plugin/ColorUtility.h"

#include <QStringList>

#include <cstdlib>

namespace {

// The weights of qGray() before its division by 32; white is chosen below a grey of 129.
QColor blackOrWhite(const QColor &color)
{
    const QRgb rgb = color.rgb();
    const int weight = 11 * qRed(rgb) + 16 * qGreen(rgb) + 5 * qBlue(rgb);
    return weight < 4128 ? QColor(255, 255, 255) : QColor(0, 0, 0);
}

} // namespace

QColor ColorUtility::contrastColor(const QColor &color, const QColor &tintColor)
{
    QColor base = blackOrWhite(color);
    if (!tintColor.isValid() || tintColor.alpha() == 0)
        return base;
    if (tintColor.alpha() == 255)
        return tintColor;

    const qreal a = tintColor.alphaF();
    const auto blended = [a](qreal from, qreal to) { return (1 - a) * from + a * to; };
    return QColor::fromRgbF(blended(base.redF(), tintColor.redF()),
                            blended(base.greenF(), tintColor.greenF()),
                            blended(base.blueF(), tintColor.blueF()), (1 - a) * base.alphaF() + a);
}

QColor ColorUtility::alphaColor(const QColor &color, double alpha)
{
    QColor result = color;
    result.setAlphaF(alpha);
    return result;
}

QColor ColorUtility::randomColor()
{
    const QStringList names = QColor::colorNames();
    const QColor black(QStringLiteral("black"));
    const QColor white(QStringLiteral("white"));
    QColor color;
    do {
        color = QColor(names.at(std::rand() % names.size()));
    } while (color == black || color == white);
    return color;
}
