#include "archives/UnZipFile.h"

#include <QDebug>
#include <QFileInfo>

namespace {

const int chunkSize = 4096;

}

UnZipFile::UnZipFile(QObject *parent)
    : QObject(parent)
{
}

bool UnZipFile::open(const QString &path)
{
    m_path = path;
    return m_reader.open(path);
}

void UnZipFile::close()
{
    m_reader.close();
}

bool UnZipFile::locateFile(const QString &name, int caseSensitivity)
{
    return m_reader.isOpen() && m_reader.locate(name, caseSensitivity) == UNZ_OK;
}

bool UnZipFile::gotoFirstFile()
{
    return m_reader.isOpen() && m_reader.first() == UNZ_OK;
}

bool UnZipFile::gotoNextFile()
{
    return m_reader.isOpen() && m_reader.next() == UNZ_OK;
}

QString UnZipFile::currentFileName() const
{
    unz_file_info64 info;
    QString name;
    return m_reader.isOpen() && m_reader.currentInfo(info, &name) == UNZ_OK ? name : QString();
}

QDateTime UnZipFile::currentFileDateTime() const
{
    unz_file_info64 info;
    return m_reader.isOpen() && m_reader.currentInfo(info) == UNZ_OK
               ? ArchiveReader::date(info.tmu_date)
               : QDateTime();
}

QStringList UnZipFile::entryList()
{
    QStringList names;
    for (bool more = gotoFirstFile(); more; more = gotoNextFile())
        names.append(currentFileName());
    return names;
}

bool UnZipFile::extractCurrentFile(const QString &outputPath)
{
    return extractCurrentFile(outputPath, ExtractedFile::Link::Followed);
}

bool UnZipFile::extractCurrentFile(const QString &outputPath, ExtractedFile::Link link)
{
    if (!m_reader.isOpen())
        return false;
    const ArchiveReader::Extraction result = m_reader.extract(outputPath, link, chunkSize, {});
    switch (result.step) {
    case ArchiveReader::Extraction::Done:
        if (result.code != UNZ_OK)
            qWarning() << "UnZipFile::extractCurrentFile:Extracting:" << currentFileName() << " to "
                       << outputPath << "unzCloseCurrentFile" << result.code;
        return true;
    case ArchiveReader::Extraction::OpenEntry:
    case ArchiveReader::Extraction::EntryInfo:
        qCritical() << "UnZipFile::extractCurrentFile: - unzOpenCurrentFile" << result.code;
        break;
    case ArchiveReader::Extraction::Refused:
        qCritical() << "UnZipFile::extractCurrentFile:Entry refused:" << result.reason
                    << currentFileName() << " to " << outputPath;
        break;
    case ArchiveReader::Extraction::OpenOutput:
        qCritical() << "UnZipFile::extractCurrentFile:Error opening:" << outputPath;
        break;
    case ArchiveReader::Extraction::Read:
        qCritical() << "UnZipFile::extractCurrentFile - unzReadCurrentFile" << result.code;
        qCritical() << "UnZipFile::extractCurrentFile:Extracting:" << currentFileName() << " to "
                    << outputPath << "Buffer size:" << chunkSize;
        break;
    case ArchiveReader::Extraction::Write:
        qCritical() << "UnZipFile::extractCurrentFile:Error writing:" << outputPath;
        break;
    }
    return false;
}

bool UnZipFile::extractFile(const QString &name, int caseSensitivity, const QString &outputPath)
{
    return locateFile(name, caseSensitivity) && extractCurrentFile(outputPath);
}

bool UnZipFile::extractAll(QDir &dir)
{
    if (m_reader.hasOverlappingEntries()) {
        qCritical() << Q_FUNC_INFO << "Overlapping entries:" << m_path;
        return false;
    }
    QString linkFree;
    for (bool more = gotoFirstFile(); more; more = gotoNextFile()) {
        const QString name = currentFileName();
        if (const QString reason = m_reader.refusal(dir, name, &linkFree); !reason.isEmpty()) {
            qCritical() << Q_FUNC_INFO << "Entry refused:" << reason << name;
            continue;
        }
        const QString folder = QFileInfo(name).path();
        if (!folder.isEmpty() && folder != QLatin1String("."))
            dir.mkpath(folder);
        extractCurrentFile(dir.filePath(name), ExtractedFile::Link::Refused);
    }
    return true;
}

#include "moc_UnZipFile.cpp"
