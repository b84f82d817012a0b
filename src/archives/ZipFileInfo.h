#pragma once

#include "plugin/TessalineObject.h"

#include <QDateTime>
#include <QFileInfo>

#include <minizip/unzip.h>

// The metadata of one entry of a ZIP file, as ZipReader.fileInfo() gives it. QML name: ZipFileInfo.
class TESSALINE_EXPORT ZipFileInfo : public TessalineObject
{
    Q_OBJECT
    Q_PROPERTY(QString filePath READ filePath NOTIFY filePathChanged)
    Q_PROPERTY(qlonglong size READ size NOTIFY filePathChanged)
    Q_PROPERTY(qlonglong compressedSize READ compressedSize NOTIFY filePathChanged)
    Q_PROPERTY(QString path READ path NOTIFY filePathChanged)
    Q_PROPERTY(QString fileName READ fileName NOTIFY filePathChanged)
    Q_PROPERTY(QString suffix READ suffix NOTIFY filePathChanged)
    Q_PROPERTY(QDateTime lastModified READ lastModified NOTIFY filePathChanged)
    Q_PROPERTY(ulong crc READ crc NOTIFY filePathChanged)

public:
    explicit ZipFileInfo(QObject *parent = nullptr);
    ZipFileInfo(const QString &filePath, const unz_file_info64 &info, QObject *parent = nullptr);

    QString filePath() const { return m_fileInfo.filePath(); }
    qlonglong size() const { return static_cast<qlonglong>(m_info.uncompressed_size); }
    qlonglong compressedSize() const { return static_cast<qlonglong>(m_info.compressed_size); }
    QString path() const { return m_fileInfo.path(); }
    QString fileName() const { return m_fileInfo.fileName(); }
    QString suffix() const { return m_fileInfo.suffix(); }
    QDateTime lastModified() const;
    ulong crc() const { return m_info.crc; }

    void setFilePath(const QString &filePath, const unz_file_info64 &info);

signals:
    void filePathChanged();

private:
    QFileInfo m_fileInfo;
    unz_file_info64 m_info = {};
};
