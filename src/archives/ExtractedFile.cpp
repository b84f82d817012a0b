#include "archives/ExtractedFile.h"

#include "archives/ArchiveInput.h"
#include "plugin/FileUtility.h"
#include "plugin/LocalPath.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

const mode_t everyone = 0666; // less what the process doesn't grant

} // namespace

ExtractedFile::~ExtractedFile()
{
    close();
}

ExtractedFile::Opened ExtractedFile::open(const QString &path, Link link,
                                          const ArchiveInput &archive)
{
    if (!FileUtility::hasUsableName(path))
        return Opened::No;
    const LocalPath localPath(path);
    // A new file, as most are, is neither a link nor the archive.
    m_handle = ::open(localPath.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, everyone);
    if (m_handle >= 0)
        return Opened::Yes;
    return errno == EEXIST ? openExisting(localPath.constData(), link, archive) : Opened::No;
}

ExtractedFile::Opened ExtractedFile::openExisting(const char *localPath, Link link,
                                                  const ArchiveInput &archive)
{
    // A link that leads nowhere yet may be followed too.
    const int mode = link == Link::Refused ? O_NOFOLLOW : O_CREAT;
    m_handle = ::open(localPath, O_WRONLY | O_CLOEXEC | mode, everyone);
    if (m_handle < 0)
        return link == Link::Refused && errno == ELOOP ? Opened::IsLink : Opened::No;
    struct stat status = {};
    if (fstat(m_handle, &status) != 0)
        return Opened::No;
    if (archive.isSame(status))
        return Opened::IsArchive;
    // What can't be cut, as a device, is written from its start.
    return !S_ISREG(status.st_mode) || ftruncate(m_handle, 0) == 0 ? Opened::Yes : Opened::No;
}

bool ExtractedFile::write(const char *data, qint64 size)
{
    while (size > 0) {
        const ssize_t count = ::write(m_handle, data, static_cast<std::size_t>(size));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        data += count;
        size -= count;
    }
    return true;
}

bool ExtractedFile::close()
{
    return m_handle < 0 || ::close(std::exchange(m_handle, -1)) == 0;
}
