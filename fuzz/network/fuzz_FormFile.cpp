#include "network/FormFile.h"
#include "network/NetworkFormData.h"
#include "support/FuzzTarget.h"

#include <QTemporaryFile>

// A small file whose piece goes into the body.
static QString samplePath()
{
    static QTemporaryFile file;
    if (!file.isOpen() && file.open()) {
        file.write("0123456789abcdef");
        file.flush();
    }
    return file.fileName();
}

// A form value that names a file: the options are read, and the body made with them announces just
// as many bytes as it delivers, whatever the offset and the size are.
TESSALINE_FUZZ_TARGET(bytes)
{
    const FormFile file = FormFile::fromText(QString::fromUtf8(bytes));
    if (file.path.contains(QLatin1Char(';')))
        qFatal("A path holds an option");

    NetworkFormData form;
    form.append("<");
    if (!form.appendPath(samplePath(), file.offset, file.size))
        qFatal("The file can't be opened");
    form.append(">");
    const qint64 size = form.size();
    QByteArray body;
    while (!form.atEnd() && body.size() <= size)
        body += form.read(5);
    if (size < 2 || size > 18 || body.size() != size || !body.endsWith('>'))
        qFatal("The body isn't what was announced");
}
