#pragma once

#include <QByteArray>
#include <QString>

class QImageReader;

// Whether a file's picture can be decoded in about the memory that its bytes deserve, and without
// reading other files. Looks at headers, not at pixels. False for what is no picture.
bool isHarmlessPicture(const QString &path);
// The same for a reader of a file, which is about to read.
bool isHarmlessPicture(QImageReader &reader);
// Formats that hold whole pictures of other formats, or documents.
bool isContainerFormat(const QByteArray &format);
