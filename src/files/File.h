#pragma once

#include "plugin/StringUtility.h"
#include "plugin/TessalineObject.h"

#include <QFile>
#include <QJSValue>
#include <QUrl>
#include <QVariant>

// A stream on one file: lines, bytes and script values, with a position and a text encoding.
// QML name: File, creatable.
//
// A path or URL may begin with a path variable (see FileUtility). Failed operations show in error
// and errorString and are signalled by errorChanged(); the writing calls write() and writeLine()
// report nothing themselves, flush() and close() tell what the disk refused.
class TESSALINE_EXPORT File : public TessalineObject
{
    Q_OBJECT
    Q_PROPERTY(QString path READ path WRITE setPath NOTIFY pathChanged)
    Q_PROPERTY(QUrl url READ url WRITE setUrl NOTIFY pathChanged)
    Q_PROPERTY(int openMode READ openMode NOTIFY openModeChanged)
    Q_PROPERTY(bool isReadable READ isReadable NOTIFY openModeChanged)
    Q_PROPERTY(bool isWritable READ isWritable NOTIFY openModeChanged)
    Q_PROPERTY(bool textMode READ textMode WRITE setTextMode NOTIFY openModeChanged)
    Q_PROPERTY(StringUtility::TextEncoding textEncoding READ textEncoding WRITE setTextEncoding
                   NOTIFY textEncodingChanged)
    Q_PROPERTY(int error READ error NOTIFY errorChanged)
    Q_PROPERTY(QString errorString READ errorString NOTIFY errorChanged)
    Q_PROPERTY(qlonglong position READ position WRITE setPosition NOTIFY positionChanged)
    Q_PROPERTY(bool atEnd READ atEnd NOTIFY positionChanged)
    Q_PROPERTY(bool exists READ exists NOTIFY pathChanged)

public:
    // QIODevice's numbers; they may be combined.
    enum OpenMode {
        NotOpen = 0,
        OpenModeReadOnly = 1,
        OpenModeWriteOnly = 2,
        OpenModeReadWrite = 3,
        OpenModeAppend = 4,
        OpenModeTruncate = 8,
        OpenModeText = 16,
        OpenModeUnbuffered = 32
    };
    Q_ENUM(OpenMode)

    // QFileDevice's numbers.
    enum Error {
        NoError = 0,
        ErrorRead = 1,
        ErrorWrite = 2,
        ErrorFatal = 3,
        ErrorResource = 4,
        ErrorOpen = 5,
        ErrorAbort = 6,
        ErrorTimeOut = 7,
        ErrorUnspecified = 8,
        ErrorRemove = 9,
        ErrorRename = 10,
        ErrorPosition = 11,
        ErrorResize = 12,
        ErrorPermissions = 13,
        ErrorCopy = 14
    };
    Q_ENUM(Error)

    explicit File(QObject *parent = nullptr);
    explicit File(const QString &path, QObject *parent = nullptr);
    explicit File(const QUrl &url, QObject *parent = nullptr);

    QString path() const { return m_file.fileName(); }
    // Refused with a warning while the file is open.
    void setPath(const QString &path);
    QUrl url() const;
    void setUrl(const QUrl &url);
    int openMode() const { return m_file.openMode(); }
    bool isReadable() const { return m_file.isReadable(); }
    bool isWritable() const { return m_file.isWritable(); }
    bool textMode() const { return m_file.isTextModeEnabled(); }
    void setTextMode(bool textMode);
    StringUtility::TextEncoding textEncoding() const { return m_textEncoding; }
    void setTextEncoding(StringUtility::TextEncoding textEncoding);
    int error() const { return m_nameRefused ? int(ErrorOpen) : m_file.error(); }
    QString errorString() const;
    // In bytes from the start.
    qlonglong position() const { return m_file.pos(); }
    void setPosition(qlonglong position);
    bool atEnd() const { return m_file.atEnd(); }
    bool exists() const { return m_file.exists(); }

    // A combination of OpenMode values; without one the file is opened for reading text.
    Q_INVOKABLE bool open(int openMode);
    Q_INVOKABLE bool open();
    // A closed file is left alone.
    Q_INVOKABLE void close();
    // False if the disk did not take what was written.
    Q_INVOKABLE bool flush();
    // Back to the start.
    Q_INVOKABLE bool reset();
    // The next line with its terminator; empty at the end and, with a warning, on a closed file.
    Q_INVOKABLE QString readLine();
    // The text and one line feed, in the file's text encoding.
    Q_INVOKABLE void writeLine(const QString &text);
    // Byte arrays. Reading them moves the position without signalling it.
    Q_INVOKABLE QVariant read(int length);
    Q_INVOKABLE QVariant readAll();
    // A text in the file's text encoding, or bytes as they are; other values write nothing.
    Q_INVOKABLE void write(const QJSValue &data);

signals:
    void pathChanged();
    void openModeChanged();
    void errorChanged();
    void positionChanged();
    void textEncodingChanged();

public slots:
    void onBytesWritten(qlonglong bytes);

private:
    void connectSignals();
    bool notifyMove(bool succeeded);
    QByteArray afterReading(const QByteArray &bytes);
    void writeBytes(const QByteArray &bytes);

    QFile m_file;
    bool m_nameRefused = false; // by the last open(): QFile doesn't know of that error
    StringUtility::TextEncoding m_textEncoding = StringUtility::TextEncodingUtf8;
};
