#include "archives/ZipWriter.h"

#include "plugin/FileUtility.h"
#include "plugin/PropertyHelper.h"
#include "plugin/TessalineDebug.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <ctime>
#include <minizip/zip.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

/*!
    \qmltype ZipWriter
    \inqmlmodule Zemrik.Tessaline
    \brief Adds files to a ZIP archive.

    \badcode
    ZipWriter {
        id: zip
        path: "~/backup.zip"
    }

    Button {
        text: "Back up"
        onClicked: zip.addFile(folder.filePath("notes.txt"), "notes/notes.txt")
    }
    \endcode

    Each call is complete: the archive is valid on disk after it. Adding under a name that is there
    already stores a second entry of that name.

    \note The day of an entry's date is stored one early, and \l ZipReader adds it back; other tools
    show the date a day early.
*/

/*!
    \qmlproperty string ZipWriter::path
    The archive. May begin with a path variable. The change signal also tells that a file was added.
*/

/*!
    \qmlmethod void ZipWriter::close()
    Closes an archive that is open; after \l addFile() there is none.
*/

/*!
    \qmlmethod bool ZipWriter::addFile(string filePath, string archivedFilePath, string comment, bool append)
    Adds a file with a \a comment. \a archivedFilePath is its name in the archive, its own file name
    when left out or empty. With \a append false (default true) the archive is replaced by one that
    holds only this file. \a filePath is taken as it is: resolve variables with
    \c{Tessaline.resolvedPath()}. Returns false if the file can't be read or the archive not
    written; the log says why. Files over 4 GiB aren't supported.
*/

namespace {

// Most files in one go. When a block of this size has been freed once, the C library also stops to
// give the memory of each file's deflate stream back to the system, which took longer than to pack
// the file.
const int bufferSize = 512 * 1024;

zip_fileinfo entryInfo(int year, int month, int day, int hour, int minute, int second)
{
    zip_fileinfo info = {};
    info.tmz_date.tm_sec = static_cast<uInt>(second);
    info.tmz_date.tm_min = static_cast<uInt>(minute);
    info.tmz_date.tm_hour = static_cast<uInt>(hour);
    info.tmz_date.tm_mday = static_cast<uInt>(day - 1); // ZipReader adds it back
    info.tmz_date.tm_mon = static_cast<uInt>(month - 1);
    info.tmz_date.tm_year = static_cast<uInt>(year);
    return info;
}

zip_fileinfo entryInfo(const QDateTime &time)
{
    return entryInfo(time.date().year(), time.date().month(), time.date().day(), time.time().hour(),
                     time.time().minute(), time.time().second());
}

zip_fileinfo entryInfo(std::time_t time)
{
    tm local = {};
    localtime_r(&time, &local);
    return entryInfo(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour,
                     local.tm_min, local.tm_sec);
}

// What is asked about a file before it is added. One call tells it all of the system's own files;
// QFileInfo takes several, and looks at the time zone's file for each conversion of a date.
struct Source
{
    bool exists = false;
    bool isArchive = false; // by any name, a link's too
    zip_fileinfo info = {};
};

Source sourceOf(const QString &filePath, const QString &archivePath)
{
    struct stat file;
    if (stat(QFile::encodeName(filePath).constData(), &file) != 0) {
        const QFileInfo other(filePath); // a resource, perhaps
        return {other.exists(), false, entryInfo(other.lastModified())};
    }
    struct stat archive;
    const bool isArchive = stat(QFile::encodeName(archivePath).constData(), &archive) == 0
                           && file.st_dev == archive.st_dev && file.st_ino == archive.st_ino;
    return {true, isArchive, entryInfo(file.st_mtime)};
}

// Past QIODevice, which asks each time what kind of file it is. 0 at the end, -1 on failure.
qint64 readSome(QFile &file, QByteArray &buffer)
{
    const int handle = file.handle();
    if (handle < 0)
        return file.read(buffer.data(), buffer.size());
    ssize_t count = -1;
    do {
        count = ::read(handle, buffer.data(), static_cast<std::size_t>(buffer.size()));
    } while (count < 0 && errno == EINTR);
    return count;
}

} // namespace

void ZipWriter::Closer::operator()(void *file) const
{
    zipClose(file, nullptr);
}

ZipWriter::ZipWriter(QObject *parent)
    : TessalineObject(parent)
{
}

ZipWriter::~ZipWriter() = default;

void ZipWriter::setPath(const QString &path)
{
    qCDebug(FRAMEWORK_FILE) << Q_FUNC_INFO << path;
    if (!assignIfChanged(m_path, FileUtility::resolvedPath(path, true)))
        return;
    close();
    emit pathChanged();
}

void ZipWriter::close()
{
    zwClose(QString());
}

bool ZipWriter::addFile(const QString &filePath, const QString &archivedFilePath,
                        const QString &comment, bool append)
{
    // Opening would empty the archive before its turn to be read.
    if (!append && sourceOf(filePath, m_path).isArchive) {
        qCCritical(FRAMEWORK_FILE) << Q_FUNC_INFO << "Archive added to itself:" << filePath;
        return false;
    }
    if (!m_file && !zwOpen(m_path, append)) {
        qCDebug(FRAMEWORK_FILE) << Q_FUNC_INFO << "ZIP not open" << m_path
                                << (append ? "true" : "false");
        return false;
    }
    bool added = zwAddFile(filePath, archivedFilePath, comment, true);
    added = zwClose(QString()) && added;
    if (added)
        emit pathChanged();
    return added;
}

bool ZipWriter::addFile(const QString &filePath, const QString &archivedFilePath,
                        const QString &comment)
{
    return addFile(filePath, archivedFilePath, comment, true);
}

bool ZipWriter::addFile(const QString &filePath, const QString &archivedFilePath)
{
    return addFile(filePath, archivedFilePath, QString());
}

bool ZipWriter::addFile(const QString &filePath)
{
    return addFile(filePath, QString());
}

bool ZipWriter::zwAddFile(const QDir &dir, const QString &fileName, const QString &comment)
{
    return addFile(dir.filePath(fileName), fileName, comment, true);
}

bool ZipWriter::zwAddFiles(const QDir &dir, const QStringList &names)
{
    qCDebug(FRAMEWORK_FILE) << Q_FUNC_INFO << "ZIP source dir:" << dir;
    for (const QString &name : names) {
        // Opening and closing for each file would copy the whole directory every time.
        const bool added =
            (m_file || zwOpen()) && zwAddFile(dir.filePath(name), name, QString(), true);
        if (added)
            emit pathChanged();
        else
            qCCritical(FRAMEWORK_FILE) << Q_FUNC_INFO << "Error adding:" << name;
    }
    close();
    return true;
}

bool ZipWriter::zwOpen()
{
    if (zwOpen(m_path, QFileInfo::exists(m_path)))
        return true;
    qCWarning(FRAMEWORK_FILE) << Q_FUNC_INFO << "Unable to open:" << m_path;
    return false;
}

bool ZipWriter::zwOpen(const QString &path, bool append)
{
    close();
    if (!FileUtility::hasUsableName(path))
        return false;
    tzset(); // localtime_r() does so by itself but once
    const bool adds = append && QFileInfo::exists(path);
    qCDebug(FRAMEWORK_FILE) << Q_FUNC_INFO << (adds ? "Appending to" : "Creating") << path;
    m_file.reset(zipOpen64(path.toLocal8Bit().constData(),
                           adds ? APPEND_STATUS_ADDINZIP : APPEND_STATUS_CREATE));
    return m_file != nullptr;
}

bool ZipWriter::zwClose(const QString &comment)
{
    if (!m_file || zipClose(m_file.release(), comment.toLocal8Bit().constData()) == ZIP_OK)
        return true;
    qCCritical(FRAMEWORK_FILE) << Q_FUNC_INFO << "Error closing:" << m_path;
    return false;
}

bool ZipWriter::zwAddFile(const QString &filePath, const QString &archivedFilePath,
                          const QString &comment, bool clean)
{
    const Source source = sourceOf(filePath, m_path);
    if (!source.exists) {
        qCCritical(FRAMEWORK_FILE) << Q_FUNC_INFO << "File not found:" << filePath;
        return false;
    }
    // The archive would grow by what is read from it, until the disk is full.
    if (source.isArchive) {
        qCCritical(FRAMEWORK_FILE) << Q_FUNC_INFO << "Archive added to itself:" << filePath;
        return false;
    }
    QFile input(filePath);
    if (!input.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        qCCritical(FRAMEWORK_FILE) << Q_FUNC_INFO << "Error opening:" << filePath;
        return false;
    }
    QString name = archivedFilePath.isEmpty() ? QFileInfo(filePath).fileName() : archivedFilePath;
    if (clean)
        name = QDir::cleanPath(name);
    qCDebug(FRAMEWORK_FILE) << Q_FUNC_INFO << "Adding as:" << name;

    if (zipOpenNewFileInZip64(m_file.get(), name.toLocal8Bit().constData(), &source.info, nullptr,
                              0, nullptr, 0, comment.toLocal8Bit().constData(), Z_DEFLATED,
                              Z_DEFAULT_COMPRESSION, 0)
        != ZIP_OK) {
        qCDebug(FRAMEWORK_FILE) << "Error %d zipOpenNewFileInZip64\n" << Q_FUNC_INFO;
        return false;
    }
    const bool copied = copyToEntry(input);
    input.close();
    return zipCloseFileInZip(m_file.get()) == ZIP_OK && copied;
}

bool ZipWriter::copyToEntry(QFile &input)
{
    QByteArray buffer(bufferSize, Qt::Uninitialized);
    for (;;) {
        const qint64 count = readSome(input, buffer);
        if (count < 0)
            qCDebug(FRAMEWORK_FILE) << Q_FUNC_INFO << "Error reading input file:%1";
        if (count <= 0)
            return count == 0;
        if (zipWriteInFileInZip(m_file.get(), buffer.constData(), static_cast<unsigned>(count))
            != ZIP_OK) {
            qCDebug(FRAMEWORK_FILE)
                << Q_FUNC_INFO << "Error %d with zipfile in zipWriteInFileInZip\n";
            return false;
        }
    }
}

#include "moc_ZipWriter.cpp"
