#pragma once

#include "plugin/TessalineGlobal.h"

#include <QColor>

// Colours that go with another one, and one by chance.
class TESSALINE_EXPORT ColorUtility
{
public:
    ColorUtility() = delete;

    // Black or white, whichever reads better on `color`, blended towards `tintColor` by its alpha.
    static QColor contrastColor(const QColor &color, const QColor &tintColor);
    // A copy of `color` with the given alpha, 0.0 to 1.0.
    static QColor alphaColor(const QColor &color, double alpha);
    // A named colour other than "black" and "white". Not seeded here: the sequence is that of rand().
    static QColor randomColor();
};
