#include "files/File.h"

#include "plugin/FileUtility.h"
#include "plugin/PropertyHelper.h"
#include "plugin/TessalineDebug.h"

/*!
    \qmltype File
    \inqmlmodule Zemrik.Tessaline
    \inherits TessalineObject
    \brief A stream on one file: lines, bytes and texts, with a position.

    \badcode
    File {
        id: journal
        path: "~/journal.txt"
    }

    function append(line) {
        if (!journal.open(File.OpenModeWriteOnly | File.OpenModeAppend | File.OpenModeText))
            return console.warn(journal.errorString);
        journal.writeLine(line);
        journal.close();
    }
    \endcode

    The writing calls report nothing themselves, since what they write may wait in a buffer. flush()
    tells whether the disk took it; so does \l error after close().

    \sa FileFolder::file(), FileInfo
*/

/*!
    \qmlproperty string File::path
    The file's path. It may begin with a path variable, as in \c{"~/notes.txt"}. While the file is
    open a new path is refused with a warning.
*/

/*!
    \qmlproperty url File::url
    The same as a URL: a \c file URL, or a \c qrc URL for a resource.
*/

/*!
    \qmlproperty int File::openMode
    \readonly
    How the file is open, a combination of

    \value File.NotOpen             Closed.
    \value File.OpenModeReadOnly    For reading.
    \value File.OpenModeWriteOnly   For writing. Alone it empties the file.
    \value File.OpenModeReadWrite   For both; the content stays.
    \value File.OpenModeAppend      All writing goes to the end.
    \value File.OpenModeTruncate    The content is dropped.
    \value File.OpenModeText        Line ends are read as a line feed.
    \value File.OpenModeUnbuffered  Nothing waits in a buffer.
*/

/*!
    \qmlproperty bool File::isReadable
    \readonly
    Whether the file is open for reading.
*/

/*!
    \qmlproperty bool File::isWritable
    \readonly
    Whether the file is open for writing.
*/

/*!
    \qmlproperty bool File::textMode
    Whether line ends are read as a line feed. Can be changed while the file is open.
*/

/*!
    \qmlproperty enumeration File::textEncoding
    How texts are encoded in the file, one of the text encodings of \l BinaryData;
    \c BinaryData.TextEncodingUtf8 by default.
*/

/*!
    \qmlproperty int File::error
    \readonly
    What went wrong with the last operation: \c File.NoError, \c File.ErrorRead,
    \c File.ErrorWrite, \c File.ErrorFatal, \c File.ErrorResource (a full disk, for instance),
    \c File.ErrorOpen, \c File.ErrorAbort, \c File.ErrorTimeOut, \c File.ErrorUnspecified,
    \c File.ErrorRemove, \c File.ErrorRename, \c File.ErrorPosition, \c File.ErrorResize,
    \c File.ErrorPermissions or \c File.ErrorCopy.
*/

/*!
    \qmlproperty string File::errorString
    \readonly
    The same in words.
*/

/*!
    \qmlproperty int File::position
    The place of the next byte, counted from the start. read() and readAll() move it without
    notifying it.
*/

/*!
    \qmlproperty bool File::atEnd
    \readonly
    Whether there is nothing more to read.
*/

/*!
    \qmlproperty bool File::exists
    \readonly
    Whether there is such a file. Notified when the path changes and when the file is opened.
*/

/*!
    \qmlmethod bool File::open(int openMode)
    \qmlmethod bool File::open()
    Opens the file; without a mode for reading text. False, with \l error, if it can't be opened so
    or is open already.
*/

/*!
    \qmlmethod void File::close()
    Writes out what waits in the buffer and closes the file. \l error tells if that failed.
*/

/*!
    \qmlmethod bool File::flush()
    Writes out what waits in the buffer. Returns false, with \l error, if the disk doesn't take it.
*/

/*!
    \qmlmethod bool File::reset()
    Moves \l position to the start. Returns whether it could.
*/

/*!
    \qmlmethod string File::readLine()
    The next line, with its line feed; an empty text at the end. Of a closed file an empty text,
   with a warning.
*/

/*!
    \qmlmethod void File::writeLine(string text)
    Writes \a text and a line feed.
*/

/*!
    \qmlmethod ArrayBuffer File::read(int length)
    Up to \a length bytes.
*/

/*!
    \qmlmethod ArrayBuffer File::readAll()
    All bytes up to the end.
*/

/*!
    \qmlmethod void File::write(var data)
    Writes \a data: a text in the file's \l textEncoding, or the bytes of an ArrayBuffer as they
    are. Of any other value nothing is written.
*/

File::File(QObject *parent)
    : TessalineObject(parent)
{
    connectSignals();
}

File::File(const QString &path, QObject *parent)
    : TessalineObject(parent)
    , m_file(FileUtility::resolvedPath(path, true))
{
    connectSignals();
}

File::File(const QUrl &url, QObject *parent)
    : TessalineObject(parent)
    , m_file(FileUtility::resolvedPath(url, true))
{
    connectSignals();
}

void File::connectSignals()
{
    connect(&m_file, &QFile::bytesWritten, this, &File::onBytesWritten);
    connect(this, &File::openModeChanged, this, &File::positionChanged);
}

void File::setPath(const QString &path)
{
    qCDebug(FRAMEWORK_FILE) << Q_FUNC_INFO << path;
    if (m_file.isOpen()) {
        qCWarning(FRAMEWORK_FILE) << Q_FUNC_INFO << "File is open:" << m_file.fileName();
        return;
    }
    const QString resolved = FileUtility::resolvedPath(path, true);
    if (resolved == m_file.fileName())
        return;
    m_file.setFileName(resolved);
    m_nameRefused = false;
    emit pathChanged();
}

QUrl File::url() const
{
    return FileUtility::pathUrl(path());
}

void File::setUrl(const QUrl &url)
{
    if (url != this->url())
        setPath(FileUtility::resolvedPath(url, true));
}

void File::setTextMode(bool textMode)
{
    if (textMode == m_file.isTextModeEnabled())
        return;
    m_file.setTextModeEnabled(textMode);
    emit openModeChanged();
}

void File::setTextEncoding(StringUtility::TextEncoding textEncoding)
{
    if (assignIfChanged(m_textEncoding, textEncoding))
        emit textEncodingChanged();
}

void File::setPosition(qlonglong position)
{
    notifyMove(m_file.seek(position));
}

QString File::errorString() const
{
    return m_nameRefused ? QStringLiteral("File name with a NUL") : m_file.errorString();
}

bool File::open(int openMode)
{
    m_nameRefused = !FileUtility::hasUsableName(path());
    if (m_nameRefused || !m_file.open(QIODevice::OpenMode(openMode))) {
        emit errorChanged();
        return false;
    }
    emit pathChanged();
    emit openModeChanged();
    return true;
}

bool File::open()
{
    return open(OpenModeReadOnly | OpenModeText);
}

void File::close()
{
    if (!m_file.isOpen())
        return;
    m_file.close();
    emit openModeChanged();
    // Closing writes what is still buffered.
    if (m_file.error() != QFileDevice::NoError)
        emit errorChanged();
}

bool File::flush()
{
    return notifyMove(m_file.flush());
}

bool File::reset()
{
    return notifyMove(m_file.reset());
}

QString File::readLine()
{
    if (!m_file.isOpen()) {
        qCWarning(FRAMEWORK_FILE) << Q_FUNC_INFO << "File not open";
        return QString();
    }
    QString line = StringUtility::toString(afterReading(m_file.readLine()), m_textEncoding);
    emit positionChanged();
    return line;
}

void File::writeLine(const QString &text)
{
    writeBytes(StringUtility::toStringData(text + QLatin1Char('\n'), m_textEncoding));
}

QVariant File::read(int length)
{
    return afterReading(m_file.read(length));
}

QVariant File::readAll()
{
    return afterReading(m_file.readAll());
}

void File::write(const QJSValue &data)
{
    writeBytes(StringUtility::toValueData(data, m_textEncoding));
}

void File::onBytesWritten(qlonglong bytes)
{
    Q_UNUSED(bytes)
    emit positionChanged();
}

bool File::notifyMove(bool succeeded)
{
    if (succeeded)
        emit positionChanged();
    else
        emit errorChanged();
    return succeeded;
}

QByteArray File::afterReading(const QByteArray &bytes)
{
    if (m_file.error() == QFileDevice::ReadError)
        emit errorChanged();
    return bytes;
}

void File::writeBytes(const QByteArray &bytes)
{
    if (bytes.isEmpty())
        return;
    const qint64 written = m_file.write(bytes);
    // QFile never emits this by itself.
    if (written > 0)
        emit m_file.bytesWritten(written);
}

#include "moc_File.cpp"
