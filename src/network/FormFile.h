#pragma once

#include "plugin/TessalineGlobal.h"

#include <QString>

// A file as a form value names it, without the upload prefix:
//     path[;type=image/png][;filename=name.png][;offset=0][;size=10]
// The path is everything before the first ";", so a path that has one can't be told.
struct TESSALINE_EXPORT FormFile
{
    QString path;
    QString fileName;    // default: that of the path
    QString contentType; // default: by the path's suffix
    qint64 offset = 0;
    qint64 size = -1; // up to the end

    // Unknown options are skipped; a number that doesn't parse counts as 0.
    static FormFile fromText(const QString &text);
};
