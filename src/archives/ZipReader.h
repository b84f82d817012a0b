#pragma once

#include "archives/ArchiveReader.h"
#include "plugin/TessalineObject.h"

#include <QDir>
#include <QStringList>
#include <QVariantMap>

class ZipFileInfo;

// Reads one ZIP file: listing, single files, extraction with progress. QML name: ZipReader.
//
// The archive opens at the first call that needs it and stays open until close(), refresh(), a new
// path or the end of the object. Everything is synchronous. Failures are logged under
// FRAMEWORK_FILE and give false or something empty.
class TESSALINE_EXPORT ZipReader : public TessalineObject
{
    Q_OBJECT
    Q_PROPERTY(QString path READ path WRITE setPath NOTIFY pathChanged)
    Q_PROPERTY(
        bool caseSensitive READ caseSensitive WRITE setCaseSensitive NOTIFY caseSensitiveChanged)
    Q_PROPERTY(QString isOpen READ isOpen NOTIFY pathChanged)
    Q_PROPERTY(QStringList fileNames READ fileNames NOTIFY fileNamesChanged)
    Q_PROPERTY(QStringList folderNames READ folderNames NOTIFY folderNamesChanged)

public:
    // minizip's codes.
    enum Result {
        EndOfListOfFile = -100,
        ErrNo = -1,
        EndOfFile = 0,
        ParameterError = -102,
        BadZipFile = -103,
        InternalError = -104,
        CrcError = -105
    };
    Q_ENUM(Result)

    explicit ZipReader(QObject *parent = nullptr);

    QString path() const { return m_path; }
    void setPath(const QString &path);
    bool caseSensitive() const { return m_caseSensitive; }
    void setCaseSensitive(bool caseSensitive);
    // One character: U+0001 when open, U+0000 when closed. Nothing signals a lazy opening.
    QString isOpen() const;
    QStringList fileNames();
    QStringList folderNames();

    Q_INVOKABLE void close();
    Q_INVOKABLE bool exists(const QString &fileName);
    // New, without parent; null if there is no such entry.
    Q_INVOKABLE ZipFileInfo *fileInfo(const QString &fileName);
    // `outputFilePath` is taken as it is; its folder must exist.
    Q_INVOKABLE bool extractFile(const QString &fileName, const QString &outputFilePath);
    // With a base, only the entries directly inside that folder. True once the archive was opened.
    Q_INVOKABLE bool extractAll(const QString &outputPath, const QString &basePath);
    Q_INVOKABLE bool extractAll(const QString &outputPath);
    Q_INVOKABLE void refresh();
    Q_INVOKABLE QString readTextFile(const QString &fileName);
    Q_INVOKABLE QVariantMap readJsonFile(const QString &fileName);

signals:
    void pathChanged();
    void caseSensitiveChanged();
    void fileNamesChanged();
    void folderNamesChanged();
    void error(QString fileName, QString outputFileName, ZipReader::Result result);
    void progress(QString fileName, QString outputFileName, double percent);
    void completed();

private:
    enum EntryKind { Files, Folders };

    bool zrOpen();
    bool openOrWarn(const char *function);
    bool locateFile(const QString &fileName, int caseSensitive);
    bool gotoFirstFile();
    bool gotoNextFile();
    QString currentFileName() const;
    Qt::CaseSensitivity caseSensitivity() const;
    QStringList entriesList(EntryKind kind);
    QByteArray readFile();
    bool extractCurrentFile(QString outputPath, ExtractedFile::Link link);
    bool extractAll(QDir &dir, const QString &basePath);
    // What the entries before have found out.
    struct Extraction
    {
        QString linkFree;
        QString preparedFolder;
    };
    void extractEntry(const QDir &dir, const QString &base, Extraction &extraction);

    QString m_path;
    ArchiveReader m_reader;
    bool m_caseSensitive = false;
    int m_bufferSize = 4096; // bytes between two progress signals
};
