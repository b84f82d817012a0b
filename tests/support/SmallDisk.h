#pragma once

#include <QString>
#include <QTemporaryDir>

// A tiny file system of its own, to be filled to the brim. Only root may mount one, so a test skips
// itself, saying reason(), where isMounted() is false. It lives in a mount namespace of the calling
// thread and goes with the process at the latest.
class SmallDisk
{
public:
    explicit SmallDisk(int kilobytes);
    ~SmallDisk();
    Q_DISABLE_COPY(SmallDisk)

    bool isMounted() const { return m_reason.isEmpty(); }
    QString reason() const { return m_reason; }
    QString path() const { return m_dir.path(); }
    QString filePath(const QString &name) const { return m_dir.filePath(name); }
    // Writes one file until nothing fits any more, then makes it `kilobytes` shorter.
    bool fillUpTo(int kilobytes);

private:
    QTemporaryDir m_dir;
    QString m_reason;
};
