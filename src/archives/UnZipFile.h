#pragma once

#include "archives/ArchiveReader.h"
#include "plugin/TessalineGlobal.h"

#include <QDateTime>
#include <QDir>
#include <QObject>
#include <QStringList>

// A small reader of ZIP files for native code: no signals, no laziness. Messages go to the default
// log category.
class TESSALINE_EXPORT UnZipFile : public QObject
{
    Q_OBJECT

public:
    explicit UnZipFile(QObject *parent = nullptr);

    bool open(const QString &path);
    void close();

    // Moves the cursor to the entry of that name. `caseSensitivity` is minizip's: 0 and 1 compare
    // exactly on this platform, 2 ignores case.
    bool locateFile(const QString &name, int caseSensitivity);
    bool gotoFirstFile();
    bool gotoNextFile();
    QString currentFileName() const;
    QDateTime currentFileDateTime() const;

    // The name of every entry in archive order, folders included.
    QStringList entryList();

    // Writes the entry under the cursor, or of that name, to the file `outputPath`.
    bool extractCurrentFile(const QString &outputPath);
    bool extractFile(const QString &name, int caseSensitivity, const QString &outputPath);

    // Writes all entries below `dir`, making folders as needed. Entries that would leave the folder
    // are refused and logged; true whatever was extracted. An archive whose entries overlap is
    // refused whole: false, and nothing is written.
    bool extractAll(QDir &dir);

private:
    bool extractCurrentFile(const QString &outputPath, ExtractedFile::Link link);

    ArchiveReader m_reader;
    QString m_path;
};
