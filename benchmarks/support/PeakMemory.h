#pragma once

#include <QByteArray>
#include <QFile>

#include <algorithm>

// A line of this process's status, in KiB.
inline double memoryValue(const char *name)
{
    QFile file(QStringLiteral("/proc/self/status"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith(name))
            return line.mid(static_cast<int>(qstrlen(name)))
                .trimmed()
                .split(' ')
                .first()
                .toDouble();
    }
    return 0;
}

// How far the process's memory rises above what it had before, in KiB, at the highest; -1 if `work`
// fails.
template <typename Work>
double peakGrowth(Work work)
{
    QFile file(QStringLiteral("/proc/self/clear_refs"));
    if (!file.open(QIODevice::WriteOnly) || file.write("5") != 1 || !file.flush())
        return -1; // the peak can't be reset
    const double before = memoryValue("VmRSS:");
    if (!work())
        return -1;
    return std::max(0.0, memoryValue("VmHWM:") - before);
}
