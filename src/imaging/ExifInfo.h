#pragma once

#include "files/FileInfo.h"
#include "imaging/QExifImageHeader.h"

#include <QList>
#include <QVariant>

// A file's metadata and, if it is a JPEG, what the camera wrote into it. QML name: ExifInfo,
// creatable.
//
// The picture is read when the path is set, and at no other time. A missing file, one that is no
// JPEG and one without EXIF are all the same: isExifValid false, no tags, NaN coordinates.
class TESSALINE_EXPORT ExifInfo : public FileInfo
{
    Q_OBJECT
    Q_PROPERTY(bool isExifValid READ isExifValid NOTIFY exifChanged)
    Q_PROPERTY(QList<int> imageTags READ imageTags NOTIFY exifChanged)
    Q_PROPERTY(QList<int> extendedTags READ extendedTags NOTIFY exifChanged)
    Q_PROPERTY(QList<int> gpsTags READ gpsTags NOTIFY exifChanged)
    Q_PROPERTY(double gpsLongitude READ gpsLongitude NOTIFY exifChanged)
    Q_PROPERTY(double gpsLatitude READ gpsLatitude NOTIFY exifChanged)
    Q_PROPERTY(double gpsAltitude READ gpsAltitude NOTIFY exifChanged)

public:
    explicit ExifInfo(QObject *parent = nullptr);
    explicit ExifInfo(const QString &path, QObject *parent = nullptr);

    // Both signal filePathChanged, then exifChanged.
    void setFilePath(const QString &path) override;
    void setUrl(const QUrl &url) override;

    bool isExifValid() const { return m_isExifValid; }
    // Ascending.
    QList<int> imageTags() const;
    QList<int> extendedTags() const;
    QList<int> gpsTags() const;
    // Degrees, west and south negative; NaN if the picture doesn't tell.
    double gpsLongitude() const;
    double gpsLatitude() const;
    // Metres, positive below the sea too; NaN if the picture doesn't tell.
    double gpsAltitude() const;

    // The value of a tag: a number, a text, bytes or a list of them; invalid without such a tag.
    Q_INVOKABLE QVariant imageValue(int imageTag) const;
    Q_INVOKABLE QVariant extendedValue(int extendedTag) const;
    Q_INVOKABLE QVariant gpsValue(int gpsTag) const;

    // Prints all tags at debug level.
    void log() const;

signals:
    void exifChanged();

private:
    void loadExif();
    // Moves to a resolved path, reads it and signals.
    void setExifFile(const QString &path);

    QExifImageHeader m_header;
    bool m_isExifValid = false;
};
