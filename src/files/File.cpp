#include "files/File.h"

#include "plugin/FileUtility.h"
#include "plugin/PropertyHelper.h"
#include "plugin/TessalineDebug.h"

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

bool File::open(int openMode)
{
    if (!m_file.open(QIODevice::OpenMode(openMode))) {
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
    const QString line = StringUtility::toString(afterReading(m_file.readLine()), m_textEncoding);
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
