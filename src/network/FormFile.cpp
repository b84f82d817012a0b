#include "network/FormFile.h"

#include "network/NetworkRequest.h"

#include <QDebug>
#include <QFileInfo>

namespace {

// The log lines name the function that callers know.
const char function[] = "void NetworkRequest::sendFormData(const QVariantMap&, const QVariantMap&)";

bool applyOption(FormFile &file, const QString &piece)
{
    const auto rest = [&piece](const char *name, QString &value) {
        const QLatin1String prefix(name);
        const bool found = piece.startsWith(prefix);
        if (found)
            value = piece.mid(prefix.size());
        return found;
    };

    QString number;
    if (rest("type=", file.contentType) || rest("filename=", file.fileName))
        return true;
    if (rest("offset=", number))
        file.offset = number.toLongLong();
    else if (rest("size=", number))
        file.size = number.toLongLong();
    else
        return false;
    return true;
}

} // namespace

FormFile FormFile::fromText(const QString &text)
{
    const QStringList pieces = text.split(QLatin1Char(';'));
    const QFileInfo info(pieces.constFirst());

    FormFile file;
    file.path = pieces.constFirst();
    file.fileName = info.fileName();
    file.contentType = NetworkRequest::defaultContentType(info.suffix());
    // The path takes its turn as well: one that begins with "type=" is read as an option.
    for (const QString &piece : pieces) {
        qDebug() << function << "param" << piece;
        if (!applyOption(file, piece))
            qDebug() << function << "Skipping Parameter" << piece;
    }
    return file;
}
