#include "files/FileFolder.h"

#include "files/File.h"
#include "files/FileInfo.h"
#include "files/Settings.h"
#include "plugin/FileUtility.h"
#include "plugin/JsonUtility.h"
#include "plugin/ScriptValue.h"
#include "plugin/StringUtility.h"
#include "plugin/TessalineDebug.h"

#include <QDebug>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <limits>
#include <vector>

/*!
    \qmltype FileFolder
    \inqmlmodule Zemrik.Tessaline
    \inherits TessalineObject
    \brief A folder: its files and folders by name.

    \badcode
    FileFolder {
        id: notes
        path: "~/Notes"
        Component.onCompleted: makeFolder()
    }

    ListView {
        model: notes.fileNames("*.txt")
        delegate: Text { text: notes.readTextFile(modelData) }
    }
    \endcode

    File names are relative to the folder. Only \l path and \l url, and the target of copyFile(),
   may begin with a path variable. What fails gives false or an empty value; why is in the log.

    Some folders that the module hands out are constant and refuse to move, or read-only and refuse
    to change the disk: the folder of an app is both.

    \sa File, FileInfo
*/

/*!
    \qmlproperty string FileFolder::path
    The folder's absolute path; the folder for temporary files by default. It may be set with a path
    variable, as in \c{"~/Notes"}, and to a folder that doesn't exist yet.
*/

/*!
    \qmlproperty url FileFolder::url
    The same as a URL: a \c file URL, or a \c qrc URL for a folder of resources.
*/

/*!
    \qmlproperty bool FileFolder::exists
    \readonly
    Whether there is such a folder.
*/

/*!
    \qmlproperty string FileFolder::folderName
    \readonly
    The last name of the path.
*/

/*!
    \qmlproperty int FileFolder::size
    \readonly
    The bytes of all files in the folder and the folders below it, without symbolic links. Computed
    at the first read, which may take long, and kept: call refresh() after writing.
*/

/*!
    \qmlmethod bool FileFolder::cdUp()
    Moves to the folder above. Returns false if it doesn't exist.
*/

/*!
    \qmlmethod bool FileFolder::cd(string path)
    Moves to the folder \a path, relative to this one. Returns false, and stays, if there is none.
*/

/*!
    \qmlmethod list<string> FileFolder::fileNames(var nameFilter, bool subFolders)
    The names of the files, sorted. \a nameFilter is a pattern or a list of patterns, \c{"*"} if
   left out. With \a subFolders, false if left out, those of the folders below follow as
    \c{"folder/name"}; a folder whose name doesn't match the filter is not looked into. Hidden files
    are left out.
*/

/*!
    \qmlmethod list<string> FileFolder::folderNames(var nameFilter, bool subFolders)
    The names of the folders, with \a nameFilter and \a subFolders as fileNames() gives those of the
    files.
*/

/*!
    \qmlmethod bool FileFolder::makeFolder()
    Makes this folder, and those above it that are missing. Returns true also if it exists.
*/

/*!
    \qmlmethod bool FileFolder::removeFolder()
    Removes this folder and everything in it; of a symbolic link to a folder only the link. Returns
    true also if it doesn't exist.
*/

/*!
    \qmlmethod bool FileFolder::removeFolder(string folderName, bool recursive)
    Removes a folder below this one; one with something in it only if \a recursive, which is false
   if left out. True also if it doesn't exist. Refused with \a recursive are a name that leads to
    this folder itself or to one above it, as an empty one does, and then of a symbolic link only the
    link goes.
*/

/*!
    \qmlmethod bool FileFolder::makePath(string path)
    Makes the folder \a path below this one, and those between that are missing. Returns whether it
    is there.
*/

/*!
    \qmlmethod bool FileFolder::removePath(string path)
    Removes the empty folder \a path below this one, and those between as far as they are empty
    then. Returns false if it couldn't be removed.
*/

/*!
    \qmlmethod string FileFolder::filePath(string fileName)
    The absolute path of \a fileName in this folder; empty if \l path is.
*/

/*!
    \qmlmethod string FileFolder::relativeFilePath(string fileName)
    The path of \a fileName as seen from this folder.
*/

/*!
    \qmlmethod url FileFolder::fileUrl(string fileName)
    The URL of \a fileName in this folder.
*/

/*!
    \qmlmethod bool FileFolder::fileExists(string fileName)
    Returns whether there is a file or folder \a fileName.
*/

/*!
    \qmlmethod bool FileFolder::removeFile(string fileName)
    Removes the file \a fileName. Returns true also if it doesn't exist.
*/

/*!
    \qmlmethod bool FileFolder::renameFile(string oldFileName, string newFileName)
    Renames the file or folder \a oldFileName to \a newFileName. Nothing is overwritten, and no link
    either. Returns whether it is renamed.
*/

/*!
    \qmlmethod bool FileFolder::copyFile(string fileName, string filePath)
    Copies the file or the whole folder \a fileName to \a filePath, a path of its own. Returns false
    if a file isn't copied. A file that exists is never overwritten; a folder that exists is added
    to, until a file is in the way. Symbolic links are followed, and a folder can't be copied into
    itself.
*/

/*!
    \qmlmethod File FileFolder::file(string fileName)
    A new \l File object on the file \a fileName of this folder.
*/

/*!
    \qmlmethod FileInfo FileFolder::fileInfo(string fileName)
    A new \l FileInfo object on the file \a fileName of this folder.
*/

/*!
    \qmlmethod FileFolder FileFolder::folder(string folderName)
    A new object on the folder \a folderName below this one.
*/

/*!
    \qmlmethod ArrayBuffer FileFolder::readFile(string fileName, object options)
    The bytes of the file \a fileName; none if it can't be read. Of \a options,
    \c{{ encode: "base64" }} or \c{{ encode: "hex" }} gives the bytes of their encoding.
*/

/*!
    \qmlmethod bool FileFolder::writeFile(string fileName, var content, object options)
    Replaces the file \a fileName by \a content: a text, in UTF-8, or the bytes of an ArrayBuffer or of
    a typed array. Of \a options, \c{{ decode: "base64" }} or \c{{ decode: "hex" }} writes the bytes
    that the text stands for. A number or a boolean is written as its text; \c undefined, \c null,
    objects and lists have no bytes, and leave an empty file. Returns false unless all of it is on the
    disk.
*/

/*!
    \qmlmethod object FileFolder::readJsonFile(string fileName)
    The object in the JSON file \a fileName; an empty one if there is none.
*/

/*!
    \qmlmethod bool FileFolder::writeJsonFile(string fileName, object json)
    Writes the object \a json to the file \a fileName. Returns false unless all of it is on the
    disk.
*/

/*!
    \qmlmethod string FileFolder::readTextFile(string fileName)
    The text of the file \a fileName, in UTF-8; empty if it can't be read.
*/

/*!
    \qmlmethod bool FileFolder::writeTextFile(string fileName, string text)
    Writes \a text to the file \a fileName, in UTF-8. Returns false unless all of it is on the disk.
*/

/*!
    \qmlmethod Settings FileFolder::settingsFile(string fileName)
    A new \l Settings object on an INI file of this folder, "settings.ini" if \a fileName is empty.
    Null if \l path is empty, or if there can't be a file of that name.
*/

/*!
    \qmlmethod void FileFolder::refresh()
    Asks the disk again whether the folder exists and how big it is.
*/

namespace {

// To QDir's constructor an empty path is the working folder of the process, which nobody means who
// got it from an unknown path variable. This way it stays empty, a folder that doesn't exist.
QDir dirAt(const QString &path)
{
    QDir dir;
    dir.setPath(path);
    return dir;
}

// A pattern or a list of patterns.
QStringList nameFilters(const QVariant &nameFilter)
{
    const QVariant filter = plainValue(nameFilter);
    return filter.canConvert<QStringList>() ? filter.toStringList()
                                            : QStringList(filter.toString());
}

// Whether a path is that of a folder or of something above it, as they are written.
bool isAtOrAbove(const QString &path, const QString &folder)
{
    return folder == path
           || folder.startsWith(path.endsWith(QLatin1Char('/')) ? path : path + QLatin1Char('/'));
}

// Whether a symbolic link leads to one of the folders that the path to it goes through. Following
// it would find the same link again, and so on.
bool leadsBack(const QFileInfo &entry)
{
    if (!entry.isSymLink())
        return false;
    const QString destination = entry.canonicalFilePath();
    QString step = QDir::cleanPath(entry.absolutePath());
    for (;;) {
        if (QFileInfo(step).canonicalFilePath() == destination)
            return true;
        const QString above = QFileInfo(step).path();
        if (above == step)
            return false;
        step = above;
    }
}

// The path with its links resolved, also of a file or folder that is not there yet.
QString futureCanonicalPath(const QString &path)
{
    QString existing = QDir::cleanPath(QFileInfo(path).absoluteFilePath());
    QString rest;
    while (!QFileInfo::exists(existing) && QFileInfo(existing).path() != existing) {
        rest.prepend(QLatin1Char('/') + QFileInfo(existing).fileName());
        existing = QFileInfo(existing).path();
    }
    return QDir::cleanPath(QFileInfo(existing).canonicalFilePath() + rest);
}

bool liesBelow(const QString &path, const QString &folder)
{
    const QString top = QFileInfo(folder).canonicalFilePath();
    const QString prefix = top.endsWith(QLatin1Char('/')) ? top : top + QLatin1Char('/');
    return futureCanonicalPath(path).startsWith(prefix);
}

// Collects the names of a tree's files or folders, relative to its top.
class NameWalk
{
public:
    enum Kind { Files, Folders };

    NameWalk(Kind kind, const QStringList &filters, bool subFolders)
        : m_kind(kind)
        , m_filters(filters)
        , m_subFolders(subFolders)
    {
    }

    QStringList names(const QDir &top)
    {
        collect(top.path(), QString());
        return m_names;
    }

private:
    struct Entry
    {
        QString name;   // relative to the top
        QString folder; // path of a folder to be walked, else empty
        bool isListed;
    };

    void collect(const QString &path, const QString &prefix)
    {
        std::vector<Entry> entries = readEntries(path, prefix);
        std::sort(entries.begin(), entries.end(),
                  [](const Entry &a, const Entry &b) { return a.name < b.name; });
        for (const Entry &entry : entries) {
            if (entry.isListed)
                m_names.append(entry.name);
            if (!entry.folder.isEmpty())
                collect(entry.folder, entry.name + QDir::separator());
        }
    }

    // As QDir::entryInfoList does it, without its second and third copy of each entry.
    std::vector<Entry> readEntries(const QString &path, const QString &prefix) const
    {
        std::vector<Entry> entries;
        QDirIterator it(path, m_filters, entryFlags());
        while (it.hasNext()) {
            it.next();
            const QFileInfo info = it.fileInfo();
            const bool isFolder = info.isDir();
            const bool isWalked = isFolder && m_subFolders && !leadsBack(info);
            entries.push_back({prefix + it.fileName(), isWalked ? it.filePath() : QString(),
                               isFolder == (m_kind == Folders)});
        }
        return entries;
    }

    QDir::Filters entryFlags() const
    {
        const QDir::Filters folders = QDir::Dirs | QDir::NoDotAndDotDot;
        return m_kind == Folders ? folders : folders | QDir::Files;
    }

    const Kind m_kind;
    const QStringList m_filters;
    const bool m_subFolders;
    QStringList m_names;
};

qint64 treeSize(const QDir &dir)
{
    const QFileInfoList entries = dir.entryInfoList(QDir::Files | QDir::Dirs | QDir::NoSymLinks
                                                        | QDir::Hidden | QDir::NoDotAndDotDot,
                                                    QDir::Unsorted);
    qint64 size = 0;
    for (const QFileInfo &entry : entries)
        size += entry.isDir() ? treeSize(QDir(entry.filePath())) : entry.size();
    return size;
}

// As QDir::removeRecursively(), which empties the folder behind a link when it begins at one.
bool removeTree(const QString &path)
{
    const QString cleaned = QDir::cleanPath(path);
    if (QFileInfo(cleaned).isSymLink())
        return QFile::remove(cleaned);
    return dirAt(cleaned).removeRecursively();
}

enum class Coding { None, Base64, Hex };

// The coding that an option of readFile or writeFile asks for; an unknown one is none.
Coding codingOption(const QVariantMap &options, const QString &name)
{
    const QString text = options.value(name).toString();
    if (text.compare(QLatin1String("base64"), Qt::CaseInsensitive) == 0)
        return Coding::Base64;
    if (text.compare(QLatin1String("hex"), Qt::CaseInsensitive) == 0)
        return Coding::Hex;
    return Coding::None;
}

// How many bytes can be encoded: the result is longer, and no longer than a QByteArray may be.
int maxEncoded(Coding coding)
{
    const int maxBytes = std::numeric_limits<int>::max() - 64;
    switch (coding) {
    case Coding::Base64:
        return maxBytes / 4 * 3;
    case Coding::Hex:
        return maxBytes / 2;
    case Coding::None:
        break;
    }
    return std::numeric_limits<int>::max();
}

QByteArray encoded(const QByteArray &bytes, Coding coding)
{
    switch (coding) {
    case Coding::Base64:
        return bytes.toBase64();
    case Coding::Hex:
        return bytes.toHex();
    case Coding::None:
        break;
    }
    return bytes;
}

// A typed array, which a QVariant doesn't know, as the bytes it shows; any other value as it is.
QVariant withTypedArrayAsBytes(const QVariant &content)
{
    if (content.userType() != qMetaTypeId<QJSValue>())
        return content;
    const auto value = content.value<QJSValue>();
    const QVariant buffer = value.property(QStringLiteral("buffer")).toVariant();
    if (buffer.userType() != QMetaType::QByteArray)
        return plainValue(content);
    return buffer.toByteArray().mid(value.property(QStringLiteral("byteOffset")).toInt(),
                                    value.property(QStringLiteral("byteLength")).toInt());
}

QByteArray decoded(const QVariant &content, Coding coding)
{
    switch (coding) {
    case Coding::Base64:
        return QByteArray::fromBase64(content.toString().toLatin1());
    case Coding::Hex:
        return QByteArray::fromHex(content.toString().toLatin1());
    case Coding::None:
        break;
    }
    return content.toByteArray();
}

} // namespace

FileFolder::FileFolder(QObject *parent)
    : FileFolder(QDir(QDir::tempPath()), parent)
{
}

FileFolder::FileFolder(const QString &path, QObject *parent)
    : FileFolder(dirAt(FileUtility::resolvedPath(path, true)), parent)
{
}

FileFolder::FileFolder(const QUrl &url, QObject *parent)
    : FileFolder(dirAt(FileUtility::resolvedPath(url, true)), parent)
{
}

FileFolder::FileFolder(const QDir &dir, QObject *parent)
    : TessalineObject(parent)
    , m_dir(dir)
{
    connect(this, &FileFolder::pathChanged, this, &FileFolder::existsChanged);
    connect(this, &FileFolder::pathChanged, this, &FileFolder::onPathChanged);
}

void FileFolder::setPath(const QString &path)
{
    if (refusesMove(Q_FUNC_INFO))
        return;
    const QString resolved = FileUtility::resolvedPath(path, true);
    if (resolved == m_dir.absolutePath())
        return;
    m_dir.setPath(resolved);
    announceMove();
}

QUrl FileFolder::url() const
{
    return FileUtility::pathUrl(path());
}

void FileFolder::setUrl(const QUrl &url)
{
    setPath(FileUtility::resolvedPath(url, true));
}

bool FileFolder::exists() const
{
    // Asked about an empty path, QDir repeats what it said of the path before.
    return !path().isEmpty() && m_dir.exists();
}

qlonglong FileFolder::size() const
{
    if (m_cachedSize < 0)
        m_cachedSize = leadsSomewhere(Q_FUNC_INFO) ? treeSize(m_dir) : 0;
    return m_cachedSize;
}

bool FileFolder::cdUp()
{
    if (refusesMove(Q_FUNC_INFO) || !leadsSomewhere(Q_FUNC_INFO) || !m_dir.cdUp())
        return false;
    announceMove();
    return true;
}

bool FileFolder::cd(const QString &path)
{
    if (refusesMove(Q_FUNC_INFO) || !leadsSomewhere(Q_FUNC_INFO, path) || !m_dir.cd(path))
        return false;
    announceMove();
    return true;
}

QStringList FileFolder::fileNames(const QVariant &nameFilter, bool subFolders) const
{
    if (!leadsSomewhere(Q_FUNC_INFO))
        return QStringList();
    return NameWalk(NameWalk::Files, nameFilters(nameFilter), subFolders).names(m_dir);
}

QStringList FileFolder::folderNames(const QVariant &nameFilter, bool subFolders) const
{
    if (!leadsSomewhere(Q_FUNC_INFO))
        return QStringList();
    return NameWalk(NameWalk::Folders, nameFilters(nameFilter), subFolders).names(m_dir);
}

bool FileFolder::makeFolder()
{
    if (!canChange(Q_FUNC_INFO))
        return false;
    if (exists())
        return true;

    const QDir parent(QFileInfo(path()).path());
    if (!parent.mkpath(m_dir.dirName())) {
        qCWarning(FRAMEWORK_FILE) << Q_FUNC_INFO << "Error creating:" << parent << m_dir.dirName();
        return false;
    }
    emit existsChanged();
    return true;
}

bool FileFolder::removeFolder()
{
    if (!canChange(Q_FUNC_INFO))
        return false;
    if (!exists())
        return true;

    qCDebug(FRAMEWORK_FILE) << Q_FUNC_INFO << m_dir.path();
    if (!removeTree(path()))
        return false;
    m_cachedSize = -1;
    emit existsChanged();
    emit sizeChanged();
    return true;
}

bool FileFolder::removeFolder(const QString &folderName, bool recursive)
{
    if (!canChange(Q_FUNC_INFO, folderName))
        return false;
    QDir target = dirAt(filePath(folderName));
    if (!target.exists())
        return true;
    // A name that came out empty, or with too many steps, must not cost more than it names.
    if (recursive && leadsUp(target.path())) {
        qCWarning(FRAMEWORK_FILE) << Q_FUNC_INFO << "Not a folder of this one:" << folderName;
        return false;
    }

    qCDebug(FRAMEWORK_FILE) << Q_FUNC_INFO << target.path() << recursive << folderName;
    return recursive ? removeTree(target.path()) : target.rmdir(target.path());
}

bool FileFolder::makePath(const QString &path) const
{
    if (!canChange(Q_FUNC_INFO, path))
        return false;
    if (m_dir.mkpath(path))
        return true;
    qCWarning(FRAMEWORK_FILE) << Q_FUNC_INFO << "Error creating:" << path;
    return false;
}

bool FileFolder::removePath(const QString &path) const
{
    if (!canChange(Q_FUNC_INFO, path))
        return false;
    if (m_dir.rmpath(path))
        return true;
    qCWarning(FRAMEWORK_FILE) << Q_FUNC_INFO << "Error removing:" << path;
    return false;
}

QString FileFolder::filePath(const QString &fileName) const
{
    return path().isEmpty() ? QString() : QDir::cleanPath(m_dir.absoluteFilePath(fileName));
}

QString FileFolder::relativeFilePath(const QString &fileName) const
{
    return m_dir.relativeFilePath(fileName);
}

QUrl FileFolder::fileUrl(const QString &fileName) const
{
    const QString path = filePath(fileName);
    if (path.isEmpty())
        return QUrl();
    if (QFileInfo(path).isNativePath())
        return QUrl::fromLocalFile(path);
    // A resource path with its colon as the end of the scheme: ":/a" is "qrc:/a".
    QUrl url;
    url.setScheme(QStringLiteral("qrc"));
    url.setPath(path.mid(1));
    return url;
}

bool FileFolder::fileExists(const QString &fileName) const
{
    return leadsSomewhere(Q_FUNC_INFO, fileName) && m_dir.exists(fileName);
}

bool FileFolder::removeFile(const QString &fileName)
{
    if (!leadsSomewhere(Q_FUNC_INFO, fileName))
        return false;
    if (!fileExists(fileName))
        return true;
    if (refusesChange(Q_FUNC_INFO))
        return false;
    return m_dir.remove(fileName);
}

bool FileFolder::renameFile(const QString &oldFileName, const QString &newFileName)
{
    if (!canChange(Q_FUNC_INFO, oldFileName) || !leadsSomewhere(Q_FUNC_INFO, newFileName))
        return false;
    // A link whose target is missing is no file to QFile, which would write to that target.
    if (!QFileInfo(filePath(newFileName)).isSymLink() && m_dir.rename(oldFileName, newFileName))
        return true;
    qCWarning(FRAMEWORK_FILE) << Q_FUNC_INFO << "dir:" << m_dir << "oldFileName:" << oldFileName
                              << "newFileName:" << newFileName;
    return false;
}

bool FileFolder::copyFile(const QString &fileName, const QString &filePath)
{
    if (!leadsSomewhere(Q_FUNC_INFO, fileName))
        return false;
    const QFileInfo source(m_dir.absoluteFilePath(fileName));
    if (!source.exists()) {
        qCCritical(FRAMEWORK_FILE) << Q_FUNC_INFO << "File doesn't exist:" << source.filePath();
        return false;
    }
    if (!source.isReadable()) {
        qCCritical(FRAMEWORK_FILE) << Q_FUNC_INFO << "File is not readable:" << source.filePath();
        return false;
    }
    const QString target = FileUtility::resolvedPath(filePath, true);
    if (!FileUtility::hasUsableName(target))
        return false;
    if (source.isDir())
        return copyFolder(source.filePath(), target);
    if (QFileInfo::exists(target)) {
        qCCritical(FRAMEWORK_FILE) << Q_FUNC_INFO << "Target file already exists:" << target;
        return false;
    }
    // Opening a pipe waits for its other end, and a device may never end.
    if (!source.isFile() || !QFile::copy(source.filePath(), target)) {
        qCWarning(FRAMEWORK_FILE) << Q_FUNC_INFO << "File copy failed: " << source.filePath()
                                  << "to" << target;
        return false;
    }
    return true;
}

bool FileFolder::copyFolder(const QString &source, const QString &target)
{
    const QFileInfo folder(source);
    if (!folder.isDir()) {
        if (copyFile(source, target))
            return true;
        qCCritical(FRAMEWORK_FILE) << Q_FUNC_INFO << "copyFile failed:" << source << "->" << target;
        return false;
    }
    if (!folder.isReadable()) {
        qCCritical(FRAMEWORK_FILE) << Q_FUNC_INFO << "Folder is not readable:" << source;
        return false;
    }
    if (leadsBack(folder) || liesBelow(target, source)) {
        qCCritical(FRAMEWORK_FILE)
            << Q_FUNC_INFO << "Folder copied into itself:" << source << "->" << target;
        return false;
    }
    const QDir targetDir = dirAt(target);
    if (!targetDir.exists()) {
        const QFileInfo made(QDir::cleanPath(target));
        if (!QDir(made.path()).mkpath(made.fileName())) {
            qCCritical(FRAMEWORK_FILE)
                << Q_FUNC_INFO << "mkpath failed:" << made.fileName() << "(" << made.path() << ")";
            return false;
        }
    }
    return copyEntries(QDir(source), targetDir);
}

bool FileFolder::copyEntries(const QDir &source, const QDir &target)
{
    const QFileInfoList entries = source.entryInfoList(QDir::Files | QDir::Dirs | QDir::Hidden
                                                           | QDir::System | QDir::NoDotAndDotDot,
                                                       QDir::Unsorted);
    return std::all_of(entries.begin(), entries.end(), [&](const QFileInfo &entry) {
        const QString copy = target.filePath(entry.fileName());
        // What kind of entry it is, the listing has told; all else is asked only if copying fails.
        return (entry.isFile() && QFile::copy(entry.filePath(), copy))
               || copyFolder(entry.filePath(), copy);
    });
}

File *FileFolder::file(const QString &fileName) const
{
    return givenToScript(new File(filePath(fileName)));
}

FileInfo *FileFolder::fileInfo(const QString &fileName) const
{
    return givenToScript(new FileInfo(filePath(fileName)));
}

FileFolder *FileFolder::folder(const QString &folderName) const
{
    return givenToScript(new FileFolder(filePath(folderName)));
}

QVariant FileFolder::readFile(const QString &fileName, const QVariantMap &options) const
{
    if (!leadsSomewhere(Q_FUNC_INFO, fileName))
        return QByteArray();
    const Coding coding = codingOption(options, QStringLiteral("encode"));
    return encoded(FileUtility::readFile(filePath(fileName), maxEncoded(coding)), coding);
}

bool FileFolder::writeFile(const QString &fileName, const QVariant &content,
                           const QVariantMap &options)
{
    if (!canChange(Q_FUNC_INFO, fileName))
        return false;
    const Coding coding = codingOption(options, QStringLiteral("decode"));
    return FileUtility::writeFile(filePath(fileName),
                                  decoded(withTypedArrayAsBytes(content), coding));
}

QVariantMap FileFolder::readJsonFile(const QString &fileName) const
{
    return leadsSomewhere(Q_FUNC_INFO, fileName) ? JsonUtility::readFile(filePath(fileName))
                                                 : QVariantMap();
}

bool FileFolder::writeJsonFile(const QString &fileName, const QVariantMap &json)
{
    return canChange(Q_FUNC_INFO, fileName) && JsonUtility::writeFile(filePath(fileName), json);
}

QString FileFolder::readTextFile(const QString &fileName) const
{
    return leadsSomewhere(Q_FUNC_INFO, fileName) ? StringUtility::readFile(filePath(fileName))
                                                 : QString();
}

bool FileFolder::writeTextFile(const QString &fileName, const QString &text)
{
    return canChange(Q_FUNC_INFO, fileName) && StringUtility::writeFile(filePath(fileName), text);
}

Settings *FileFolder::settingsFile(const QString &fileName) const
{
    // Of a name with a NUL QSettings would wait for its lock for ever.
    if (!leadsSomewhere(Q_FUNC_INFO, fileName))
        return nullptr;
    const QString name = fileName.isEmpty() ? QStringLiteral("settings.ini") : fileName;
    return givenToScript(new Settings(m_dir.filePath(name), QSettings::IniFormat));
}

void FileFolder::refresh()
{
    m_dir.refresh();
    m_cachedSize = -1;
    emit existsChanged();
    emit sizeChanged();
}

void FileFolder::onPathChanged()
{
    m_cachedSize = -1;
    emit sizeChanged();
}

void FileFolder::announceMove()
{
    // Handlers in documents come before our own slot, and must not see the size of the old folder.
    m_cachedSize = -1;
    emit pathChanged();
}

bool FileFolder::refusesMove(const char *function) const
{
    if (m_constant)
        qCWarning(FRAMEWORK_FILE) << function << "This is a constant folder" << m_dir;
    return m_constant;
}

bool FileFolder::refusesChange(const char *function) const
{
    if (m_readOnly)
        qCWarning(FRAMEWORK_FILE) << function << "This is a read only folder" << m_dir;
    return m_readOnly;
}

bool FileFolder::leadsSomewhere(const char *function, const QString &name) const
{
    if (path().isEmpty()) {
        qCWarning(FRAMEWORK_FILE) << function << "No path";
        return false;
    }
    return FileUtility::hasUsableName(path()) && FileUtility::hasUsableName(name);
}

bool FileFolder::leadsUp(const QString &path) const
{
    if (isAtOrAbove(QDir::cleanPath(path), QDir::cleanPath(this->path())))
        return true;
    // By way of links in the path. One at its end goes alone, wherever it leads.
    const QFileInfo target(path);
    return !target.isSymLink() && isAtOrAbove(target.canonicalFilePath(), m_dir.canonicalPath());
}

#include "moc_FileFolder.cpp"
