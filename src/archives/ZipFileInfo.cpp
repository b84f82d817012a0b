#include "archives/ZipFileInfo.h"

#include "archives/ArchiveReader.h"

/*!
    \qmltype ZipFileInfo
    \inqmlmodule Zemrik.Tessaline
    \brief The metadata of one entry of a ZIP file.

    Objects come from \l{ZipReader::fileInfo()}; one made in QML is empty.

    \badcode
    var info = zip.fileInfo("data/points.csv");
    if (info)
        console.log(info.fileName, info.size, info.lastModified);
    \endcode
*/

/*!
    \qmlproperty string ZipFileInfo::filePath
    \readonly
    The entry's whole name in the archive.
*/

/*!
    \qmlproperty int ZipFileInfo::size
    \readonly
    The size in bytes once extracted, as the archive states it.
*/

/*!
    \qmlproperty int ZipFileInfo::compressedSize
    \readonly
    The size in bytes inside the archive.
*/

/*!
    \qmlproperty string ZipFileInfo::path
    \readonly
    The folder part of the name; "." for an entry at the top level.
*/

/*!
    \qmlproperty string ZipFileInfo::fileName
    \readonly
    The last part of the name.
*/

/*!
    \qmlproperty string ZipFileInfo::suffix
    \readonly
    What stands behind the last dot of the file name.
*/

/*!
    \qmlproperty date ZipFileInfo::lastModified
    \readonly
    The entry's date, to two seconds, in local time. Dates of archives that other tools wrote read
   one day late, since \l ZipWriter stores them one day early; see there.
*/

/*!
    \qmlproperty int ZipFileInfo::crc
    \readonly
    The CRC-32 of the data. It reaches a script as an opaque value: use \c{Number(info.crc)}.
*/

ZipFileInfo::ZipFileInfo(QObject *parent)
    : TessalineObject(parent)
{
}

ZipFileInfo::ZipFileInfo(const QString &filePath, const unz_file_info64 &info, QObject *parent)
    : TessalineObject(parent)
    , m_fileInfo(filePath)
    , m_info(info)
{
}

QDateTime ZipFileInfo::lastModified() const
{
    return ArchiveReader::date(m_info.tmu_date);
}

void ZipFileInfo::setFilePath(const QString &filePath, const unz_file_info64 &info)
{
    if (m_fileInfo.filePath() == filePath)
        return;
    m_fileInfo.setFile(filePath);
    m_info = info;
    emit filePathChanged();
}

#include "moc_ZipFileInfo.cpp"
