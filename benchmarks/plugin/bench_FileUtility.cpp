#include "plugin/FileUtility.h"
#include "support/AllocationCount.h"
#include "support/Ratio.h"

#include <QCoreApplication>
#include <QString>

#include <cstdio>

namespace {

// Not a literal: copies of those don't count references, and cost nearly nothing.
const QString plainPath =
    QString::fromLatin1("/home/somebody/Zemrik/Halvora/Apps/map/appinfo.json");
const QString variablePath = QStringLiteral("$MAPS/map/appinfo.json");

void resolvePlain(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(FileUtility::resolvedPath(plainPath, true));
}

// A copy made as a function of a library hands it out, not one that the compiler sees through.
[[gnu::noinline]] QString copyOf(const QString &text)
{
    return text;
}

void copyText(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(copyOf(plainPath));
}

void resolveVariable(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(FileUtility::resolvedPath(variablePath, true));
}

double allocationsPerCall(const QString &path)
{
    const int calls = 1000;
    const std::size_t before = allocationCount();
    for (int i = 0; i < calls; ++i)
        benchmark::DoNotOptimize(FileUtility::resolvedPath(path, true));
    return static_cast<double>(allocationCount() - before) / calls;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    FileUtility::setPathVariable(QStringLiteral("MAPS"), QStringLiteral("/srv/maps"));

    // Shows that the count counts.
    if (allocationsPerCall(variablePath) < 1) {
        std::fprintf(stderr, "Allocations are not seen\n");
        return 1;
    }

    RatioTable table;
    table.add("path without prefix, against copying a QString", resolvePlain, copyText).limit(2);
    table.value("path without prefix, allocations", allocationsPerCall(plainPath), 0);
    table.budget("path with a variable set", resolveVariable, std::chrono::microseconds(2));
    return table.run(argc, argv);
}
