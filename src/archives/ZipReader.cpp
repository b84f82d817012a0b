#include "archives/ZipReader.h"

#include "archives/ZipFileInfo.h"
#include "plugin/FileUtility.h"
#include "plugin/JsonUtility.h"
#include "plugin/PropertyHelper.h"
#include "plugin/TessalineDebug.h"

#include <QFileInfo>

#include <set>

/*!
    \qmltype ZipReader
    \inqmlmodule Zemrik.Tessaline
    \brief Reads one ZIP file: listing, single files, extraction with progress.

    \badcode
    ZipReader {
        id: zip
        path: "~/Downloads/data.zip"
        onProgress: console.log(fileName, Math.round(percent) + " %")
        onError: console.warn("damaged:", fileName)
    }

    Button {
        text: "Extract " + zip.fileNames.length + " files"
        onClicked: zip.extractAll(Tessaline.resolvedPath("~/data"))
    }
    \endcode

    The archive opens by itself at the first call that needs it, and stays open until \l close(),
    \l refresh() or a new \l path. Calls block until they are done; \l progress arrives during the
    call.

    A handler may read the properties and call \l exists() and \l fileInfo(). An entry that is being
    extracted ends with \l error where its handler reads or extracts another with the same reader,
    and \l extractAll() ends where it closes the archive.

    Archives are not trusted. An entry that would be written outside the output folder is left out,
    with a critical message, and an archive whose entries overlap is not extracted at all. Encrypted
    entries and those of 4 GiB and more are not read.
*/

/*!
    \qmlproperty string ZipReader::path
    The archive. May begin with a path variable. A new path closes the old archive.
*/

/*!
    \qmlproperty bool ZipReader::caseSensitive
    Whether \l folderNames and the base folder of \l extractAll() tell upper from lower case; false
   by default. Looking an entry up by name always does.
*/

/*!
    \qmlproperty string ZipReader::isOpen
    \readonly
    One character, U+0001 when the archive is open and U+0000 when it is closed. It does not change
   by itself when the archive opens at first use.
*/

/*!
    \qmlproperty list<string> ZipReader::fileNames
    \readonly
    The names of all files, in archive order. Empty, with a warning, if the archive can't be opened.
*/

/*!
    \qmlproperty list<string> ZipReader::folderNames
    \readonly
    The folders that files lie in or that have an entry of their own, each once; "." stands for the
    top level.
*/

/*!
    \qmlmethod void ZipReader::close()
    Closes the archive; the next call that needs it opens it again.
*/

/*!
    \qmlmethod bool ZipReader::exists(string fileName)
    Returns whether there is an entry named exactly \a fileName.
*/

/*!
    \qmlmethod ZipFileInfo ZipReader::fileInfo(string fileName)
    The metadata of the entry \a fileName, null if there is none of that name.
*/

/*!
    \qmlmethod bool ZipReader::extractFile(string fileName, string outputFilePath)
    Writes the entry \a fileName to the file \a outputFilePath, replacing it, with the entry's date.
    The output path is taken as it is: resolve variables with \c{Tessaline.resolvedPath()}. Its
    folder must exist. Returns false if the entry is missing or damaged or the file can't be
    written.
*/

/*!
    \qmlmethod bool ZipReader::extractAll(string outputPath, string basePath)
    Writes all entries below the folder \a outputPath, making folders as needed. With a \a basePath
    only the entries directly inside that folder of the archive, without the folder's name. Returns
    true once the archive could be opened, whatever was extracted; watch \l error for damaged
    entries.
*/

/*!
    \qmlmethod void ZipReader::refresh()
    Closes the archive and announces the lists, for a file that has changed on disk.
*/

/*!
    \qmlmethod string ZipReader::readTextFile(string fileName)
    The text of the entry \a fileName, taken as UTF-8 up to the first NUL.
*/

/*!
    \qmlmethod object ZipReader::readJsonFile(string fileName)
    The JSON object in the entry \a fileName; empty if it isn't one.
*/

/*!
    \qmlsignal ZipReader::error(string fileName, string outputFileName, Result result)
    The data of the entry \a fileName can't be read, for the reason \a result. What came before is
    in the file \a outputFileName. \c BadZipFile and no file where the entry is encrypted, packed in
    another way than with deflate, or says its size in a ZIP64 field; \c ParameterError and no file
    where it would be written over the archive, or by \l extractAll() through a symbolic link of
    its name.
*/

/*!
    \qmlsignal ZipReader::progress(string fileName, string outputFileName, double percent)
    Before each 4,096 bytes of the entry \a fileName are written to \a outputFileName, with the part
    that is out already as \a percent, and with 100 when the entry is done. For an empty entry the
    first value is not a number.
*/

/*!
    \qmlsignal ZipReader::completed()
    \l extractAll() is done.
*/

ZipReader::ZipReader(QObject *parent)
    : TessalineObject(parent)
{
}

void ZipReader::setPath(const QString &path)
{
    if (!assignIfChanged(m_path, FileUtility::resolvedPath(path, true)))
        return;
    close();
    emit pathChanged();
    emit fileNamesChanged();
    emit folderNamesChanged();
}

void ZipReader::setCaseSensitive(bool caseSensitive)
{
    if (assignIfChanged(m_caseSensitive, caseSensitive))
        emit caseSensitiveChanged();
}

QString ZipReader::isOpen() const
{
    return QString(QChar(m_reader.isOpen() ? 1 : 0));
}

QStringList ZipReader::fileNames()
{
    return openOrWarn(Q_FUNC_INFO) ? entriesList(Files) : QStringList();
}

QStringList ZipReader::folderNames()
{
    return openOrWarn(Q_FUNC_INFO) ? entriesList(Folders) : QStringList();
}

void ZipReader::close()
{
    m_reader.close();
}

bool ZipReader::exists(const QString &fileName)
{
    return openOrWarn(Q_FUNC_INFO) && locateFile(fileName, m_caseSensitive);
}

ZipFileInfo *ZipReader::fileInfo(const QString &fileName)
{
    if (!openOrWarn(Q_FUNC_INFO))
        return nullptr;
    unz_file_info64 info;
    if (!locateFile(fileName, m_caseSensitive) || m_reader.currentInfo(info) != UNZ_OK) {
        qCWarning(FRAMEWORK_FILE) << Q_FUNC_INFO << "File not found" << fileName;
        return nullptr;
    }
    return new ZipFileInfo(fileName, info);
}

bool ZipReader::extractFile(const QString &fileName, const QString &outputFilePath)
{
    if (!openOrWarn(Q_FUNC_INFO))
        return false;
    if (locateFile(fileName, m_caseSensitive)
        && extractCurrentFile(outputFilePath, ExtractedFile::Link::Followed))
        return true;
    qCCritical(FRAMEWORK_FILE) << Q_FUNC_INFO << "Extracting:" << fileName << "->"
                               << outputFilePath;
    return false;
}

bool ZipReader::extractAll(const QString &outputPath, const QString &basePath)
{
    if (!openOrWarn(Q_FUNC_INFO))
        return false;
    QDir dir(outputPath);
    const bool extracted = extractAll(dir, basePath);
    if (!extracted)
        qCCritical(FRAMEWORK_FILE)
            << Q_FUNC_INFO << "outputPath:" << outputPath << "basePath:" << basePath;
    return extracted;
}

bool ZipReader::extractAll(const QString &outputPath)
{
    return extractAll(outputPath, QString());
}

void ZipReader::refresh()
{
    close();
    emit fileNamesChanged();
    emit folderNamesChanged();
}

QString ZipReader::readTextFile(const QString &fileName)
{
    if (!zrOpen()) {
        qCCritical(FRAMEWORK_FILE) << Q_FUNC_INFO << "ZIP not open" << m_path;
        return QString();
    }
    if (!locateFile(fileName, m_caseSensitive)) {
        qCCritical(FRAMEWORK_FILE) << Q_FUNC_INFO << "Unable to locate file" << fileName;
        return QString();
    }
    // As text of a C string: up to the first NUL.
    return QString::fromUtf8(readFile().constData());
}

QVariantMap ZipReader::readJsonFile(const QString &fileName)
{
    return JsonUtility::toVariantMap(readTextFile(fileName));
}

bool ZipReader::zrOpen()
{
    if (m_reader.isOpen())
        return true;
    if (m_path.isEmpty() || !QFileInfo::exists(m_path))
        return false;
    if (m_reader.open(m_path))
        return true;
    qCWarning(FRAMEWORK_FILE) << Q_FUNC_INFO << "Unable to open:" << m_path;
    return false;
}

bool ZipReader::openOrWarn(const char *function)
{
    if (zrOpen())
        return true;
    qCWarning(FRAMEWORK_FILE) << function << "ZIP not open" << m_path;
    return false;
}

bool ZipReader::locateFile(const QString &fileName, int caseSensitive)
{
    if (m_reader.locate(fileName, caseSensitive) == UNZ_OK)
        return true;
    qCDebug(FRAMEWORK_FILE) << Q_FUNC_INFO << "File not found:" << fileName;
    return false;
}

bool ZipReader::gotoFirstFile()
{
    quint64 count = 0;
    if (m_reader.entryCount(count) != UNZ_OK) {
        qCCritical(FRAMEWORK_FILE) << Q_FUNC_INFO << "Error %d with zipfile in unzGetGlobalInfo \n";
        return false;
    }
    if (m_reader.first() == UNZ_OK)
        return true;
    qCCritical(FRAMEWORK_FILE) << Q_FUNC_INFO << "Error %d with zipfile in unzGoToFirstFile \n";
    return false;
}

bool ZipReader::gotoNextFile()
{
    const int code = m_reader.next();
    if (code != UNZ_OK && code != EndOfListOfFile)
        qCCritical(FRAMEWORK_FILE) << Q_FUNC_INFO << "Error %d with zipfile in unzGoToNextFile \n";
    return code == UNZ_OK;
}

QString ZipReader::currentFileName() const
{
    unz_file_info64 info;
    QString name;
    if (m_reader.currentInfo(info, &name) != UNZ_OK)
        qCCritical(FRAMEWORK_FILE)
            << Q_FUNC_INFO << "Error %d with zipfile in unzGetCurrentFileInfo \n";
    return name;
}

Qt::CaseSensitivity ZipReader::caseSensitivity() const
{
    return m_caseSensitive ? Qt::CaseSensitive : Qt::CaseInsensitive;
}

QStringList ZipReader::entriesList(EntryKind kind)
{
    QStringList list;
    // The folders that are in the list, compared as extractAll() compares its base folder: folding
    // them would make one of "Maße" and "Masse".
    const auto isLess = [sensitivity = caseSensitivity()](const QString &a, const QString &b) {
        return a.compare(b, sensitivity) < 0;
    };
    std::set<QString, decltype(isLess)> seen(isLess);
    for (bool more = gotoFirstFile(); more; more = gotoNextFile()) {
        const QString name = currentFileName();
        const bool isFolder = name.endsWith(QLatin1Char('/'));
        if (kind == Files) {
            if (!isFolder)
                list.append(name);
            continue;
        }
        const QString folder = isFolder ? name.left(name.length() - 1) : QFileInfo(name).path();
        if (!list.isEmpty() && folder == list.constLast())
            continue; // the entries of a folder mostly stand together
        if (seen.insert(folder).second)
            list.append(folder);
    }
    return list;
}

QByteArray ZipReader::readFile()
{
    QByteArray bytes;
    const ArchiveReader::Extraction result = m_reader.read(bytes);
    switch (result.step) {
    case ArchiveReader::Extraction::OpenEntry:
        qCCritical(FRAMEWORK_FILE) << Q_FUNC_INFO << "unzOpenCurrentFile" << result.code;
        break;
    case ArchiveReader::Extraction::EntryInfo:
        qCCritical(FRAMEWORK_FILE) << Q_FUNC_INFO << "unzGetCurrentFileInfo64" << result.code;
        break;
    case ArchiveReader::Extraction::Refused:
        qCCritical(FRAMEWORK_FILE)
            << Q_FUNC_INFO << "Entry refused:" << result.reason << currentFileName();
        break;
    case ArchiveReader::Extraction::Read: {
        unz_file_info64 info = {};
        QString name;
        m_reader.currentInfo(info, &name);
        qCCritical(FRAMEWORK_FILE) << Q_FUNC_INFO << "unzReadCurrentFile error:" << result.code
                                   << "Extracting:" << name << "Size:" << info.uncompressed_size;
        return QByteArray();
    }
    default:
        if (result.code != UNZ_OK)
            qCWarning(FRAMEWORK_FILE) << Q_FUNC_INFO << "unzCloseCurrentFile" << result.code;
    }
    return bytes;
}

bool ZipReader::extractCurrentFile(QString outputPath, ExtractedFile::Link link)
{
    const QString name = currentFileName();
    const auto onChunk = [&](qint64 written, quint64 size) {
        emit progress(name, outputPath,
                      100.0 * static_cast<double>(written) / static_cast<double>(size));
    };
    const ArchiveReader::Extraction result =
        m_reader.extract(outputPath, link, m_bufferSize, onChunk);
    switch (result.step) {
    case ArchiveReader::Extraction::Done:
        if (result.code != UNZ_OK)
            qCWarning(FRAMEWORK_FILE)
                << Q_FUNC_INFO << "unzCloseCurrentFile" << result.code << "Extracting:" << name;
        emit progress(name, outputPath, 100.0);
        return true;
    case ArchiveReader::Extraction::OpenEntry:
        qCCritical(FRAMEWORK_FILE) << Q_FUNC_INFO << "unzOpenCurrentFile" << result.code;
        break;
    case ArchiveReader::Extraction::EntryInfo:
        qCCritical(FRAMEWORK_FILE) << Q_FUNC_INFO << "unzGetCurrentFileInfo64" << result.code;
        break;
    case ArchiveReader::Extraction::Refused:
        qCCritical(FRAMEWORK_FILE)
            << Q_FUNC_INFO << "Entry refused:" << result.reason << name << " to " << outputPath;
        emit error(name, outputPath, static_cast<Result>(result.code));
        break;
    case ArchiveReader::Extraction::OpenOutput:
        qCCritical(FRAMEWORK_FILE) << Q_FUNC_INFO << "Error opening:" << outputPath;
        break;
    case ArchiveReader::Extraction::Read:
        qCCritical(FRAMEWORK_FILE)
            << Q_FUNC_INFO << "unzReadCurrentFile error:" << result.code << "Extracting:" << name
            << " to " << outputPath << "Buffer size:" << m_bufferSize;
        emit error(name, outputPath, static_cast<Result>(result.code));
        break;
    case ArchiveReader::Extraction::Write:
        qCCritical(FRAMEWORK_FILE) << Q_FUNC_INFO << "Error writing:" << outputPath;
        break;
    }
    return false;
}

bool ZipReader::extractAll(QDir &dir, const QString &basePath)
{
    if (m_reader.hasOverlappingEntries()) {
        qCCritical(FRAMEWORK_FILE) << Q_FUNC_INFO << "Overlapping entries:" << m_path;
        emit completed();
        return true;
    }
    const QString base = QDir::cleanPath(basePath);
    Extraction extraction;
    for (bool more = gotoFirstFile(); more; more = gotoNextFile()) {
        // A signal's handler that lists or looks something up moves the cursor.
        const ArchiveReader::Position position = m_reader.position();
        extractEntry(dir, base, extraction);
        if (m_reader.goBack(position) != UNZ_OK) {
            qCCritical(FRAMEWORK_FILE)
                << Q_FUNC_INFO << "Archive closed during extraction:" << m_path;
            break;
        }
    }
    emit completed();
    return true;
}

void ZipReader::extractEntry(const QDir &dir, const QString &base, Extraction &extraction)
{
    // Cleaning drops the "/" at the end of a folder's entry: it becomes an empty file of that name.
    const QString entry = currentFileName();
    QString name = QDir::cleanPath(entry);
    if (!base.isEmpty()) {
        if (QFileInfo(name).path().compare(base, caseSensitivity()) != 0)
            return;
        name = name.mid(base.length() + 1);
    }
    if (name.isEmpty())
        return;
    if (const QString reason = m_reader.refusal(dir, name, &extraction.linkFree);
        !reason.isEmpty()) {
        qCCritical(FRAMEWORK_FILE) << Q_FUNC_INFO << "Entry refused:" << reason << entry;
        return;
    }
    const QString target = dir.filePath(name);
    const QString folder = QFileInfo(target).path();
    if (folder != extraction.preparedFolder && !folder.isEmpty() && folder != QLatin1String(".")) {
        if (!dir.mkpath(folder)) {
            qCCritical(FRAMEWORK_FILE) << Q_FUNC_INFO << "Unable to create path:" << folder;
            return;
        }
        extraction.preparedFolder = folder;
    }
    extractCurrentFile(target, ExtractedFile::Link::Refused);
}

#include "moc_ZipReader.cpp"
