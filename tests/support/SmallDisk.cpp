#include "support/SmallDisk.h"

#include <QFile>

#include <cerrno>
#include <cstring>
#include <sched.h>
#include <sys/mount.h>

namespace {

QString systemError(const char *what)
{
    return QString::fromLatin1(what) + QLatin1String(": ")
           + QString::fromLocal8Bit(strerror(errno));
}

} // namespace

SmallDisk::SmallDisk(int kilobytes)
{
    const QByteArray options = "size=" + QByteArray::number(kilobytes) + "k";
    const QByteArray path = QFile::encodeName(m_dir.path());
    if (unshare(CLONE_NEWNS) != 0)
        m_reason = systemError("No mount namespace for a tiny disk");
    else if (mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
        m_reason = systemError("No private mounts for a tiny disk");
    else if (mount("tmpfs", path.constData(), "tmpfs", 0, options.constData()) != 0)
        m_reason = systemError("No tiny disk");
}

SmallDisk::~SmallDisk()
{
    if (isMounted())
        umount2(QFile::encodeName(m_dir.path()).constData(), MNT_DETACH);
}

bool SmallDisk::fillUpTo(int kilobytes)
{
    QFile filler(filePath(QStringLiteral("filler")));
    if (!filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return false;
    const QByteArray block(1024, 'x');
    while (filler.write(block) == block.size()) {
    }
    return filler.resize(filler.size() - kilobytes * 1024);
}
