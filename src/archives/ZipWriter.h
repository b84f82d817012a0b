#pragma once

#include "plugin/TessalineObject.h"

#include <QDir>
#include <QStringList>

#include <memory>

class QFile;

// Adds files to a ZIP archive, one call at a time: the archive is complete on disk after every
// call. QML name: ZipWriter. Only the results and the log (FRAMEWORK_FILE) tell of failures. A file
// over 4 GiB isn't supported.
//
// The day of the month is stored one early. ZipReader adds it back; other tools show the date a day
// early.
class TESSALINE_EXPORT ZipWriter : public TessalineObject
{
    Q_OBJECT
    Q_PROPERTY(QString path READ path WRITE setPath NOTIFY pathChanged)

public:
    explicit ZipWriter(QObject *parent = nullptr);
    ~ZipWriter() override;

    QString path() const { return m_path; }
    void setPath(const QString &path);

    Q_INVOKABLE void close();
    // Adds a file under `archivedFilePath`, or its own name when that is empty. With `append` false
    // the archive is replaced by one that holds only this file. `filePath` is taken as it is.
    Q_INVOKABLE bool addFile(const QString &filePath, const QString &archivedFilePath,
                             const QString &comment, bool append);
    Q_INVOKABLE bool addFile(const QString &filePath, const QString &archivedFilePath,
                             const QString &comment);
    Q_INVOKABLE bool addFile(const QString &filePath, const QString &archivedFilePath);
    Q_INVOKABLE bool addFile(const QString &filePath);

    // Adds dir's file under its relative name.
    bool zwAddFile(const QDir &dir, const QString &fileName, const QString &comment);
    // Adds each of them, going on where one fails; true. The archive stays open between the files.
    bool zwAddFiles(const QDir &dir, const QStringList &names);
    // Opens the archive, appending if it exists.
    bool zwOpen();

signals:
    void pathChanged();

private:
    struct Closer
    {
        void operator()(void *file) const;
    };

    bool zwOpen(const QString &path, bool append);
    // False if the disk did not take the rest of the archive, without which it can't be read.
    bool zwClose(const QString &comment);
    bool zwAddFile(const QString &filePath, const QString &archivedFilePath, const QString &comment,
                   bool clean);
    bool copyToEntry(QFile &input);

    QString m_path;
    std::unique_ptr<void, Closer> m_file;
};
