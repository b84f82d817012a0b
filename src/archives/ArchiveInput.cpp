#include "archives/ArchiveInput.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <limits>
#include <unistd.h>

ArchiveInput::~ArchiveInput()
{
    if (isOpen())
        ::close(m_handle);
}

bool ArchiveInput::open(const QByteArray &localPath)
{
    if (stat(localPath.constData(), &m_status) != 0 || !S_ISREG(m_status.st_mode))
        return false;
    // Not blocking, as the name may lead to a pipe by now.
    m_handle = ::open(localPath.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    return isOpen() && fstat(m_handle, &m_status) == 0 && S_ISREG(m_status.st_mode);
}

unzFile ArchiveInput::openArchive()
{
    zlib_filefunc64_def functions = {};
    functions.opaque = this;
    functions.zopen64_file = [](voidpf opaque, const void *, int) { return opaque; };
    functions.zread_file = [](voidpf opaque, voidpf, void *target, uLong size) {
        return static_cast<ArchiveInput *>(opaque)->read(static_cast<char *>(target), size);
    };
    functions.zwrite_file = [](voidpf, voidpf, const void *, uLong) { return uLong(0); };
    functions.ztell64_file = [](voidpf opaque, voidpf) {
        return static_cast<ZPOS64_T>(static_cast<ArchiveInput *>(opaque)->m_position);
    };
    functions.zseek64_file = [](voidpf opaque, voidpf, ZPOS64_T offset, int origin) {
        return static_cast<ArchiveInput *>(opaque)->seek(offset, origin);
    };
    functions.zclose_file = [](voidpf, voidpf) { return 0; };
    functions.zerror_file = [](voidpf opaque, voidpf) {
        return static_cast<ArchiveInput *>(opaque)->m_error;
    };
    // The name goes to zopen64_file, which has no use for it.
    return isOpen() ? unzOpen2_64("", &functions) : nullptr;
}

bool ArchiveInput::isSame(const struct stat &file) const
{
    return file.st_dev == m_status.st_dev && file.st_ino == m_status.st_ino;
}

// Null at the end of the file, and where it can't be read.
const ArchiveInput::Window *ArchiveInput::windowAt(quint64 position)
{
    const auto holds = [position](const Window &window) {
        return position - window.begin < window.length; // below the begin it wraps around
    };
    if (holds(m_windows[m_recent]))
        return &m_windows[m_recent];
    if (position >= size())
        return nullptr;
    m_recent = 1 - m_recent;
    Window &window = m_windows[m_recent];
    const bool known = holds(window) || fill(window, position - position % windowSize);
    return known && holds(window) ? &window : nullptr;
}

bool ArchiveInput::fill(Window &window, quint64 begin)
{
    window.begin = begin;
    window.length = 0;
    while (window.length < windowSize) {
        const ssize_t count =
            pread(m_handle, window.bytes.data() + window.length, windowSize - window.length,
                  static_cast<off_t>(begin + window.length));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            m_error = errno;
        if (count <= 0)
            return count == 0;
        window.length += static_cast<quint64>(count);
    }
    return true;
}

uLong ArchiveInput::read(char *target, uLong size)
{
    uLong done = 0;
    while (done < size) {
        const Window *window = windowAt(m_position);
        if (!window)
            break;
        const quint64 offset = m_position - window->begin;
        const quint64 count = std::min<quint64>(size - done, window->length - offset);
        std::memcpy(target + done, window->bytes.data() + offset, count);
        done += count;
        m_position += count;
    }
    return done;
}

long ArchiveInput::seek(quint64 offset, int origin)
{
    const quint64 highest = std::numeric_limits<qint64>::max();
    const quint64 base = origin == ZLIB_FILEFUNC_SEEK_SET   ? 0
                         : origin == ZLIB_FILEFUNC_SEEK_CUR ? m_position
                                                            : size();
    if (offset > highest - base)
        return -1;
    m_position = base + offset;
    return 0;
}
