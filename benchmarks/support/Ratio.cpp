#include "support/Ratio.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <limits>
#include <map>

namespace {

// Keeps the fastest run under each name and prints nothing.
class FastestRun : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(const Context &) override { return true; }

    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs) {
            if (run.error_occurred) {
                std::fprintf(stderr, "%s: %s\n", run.run_name.function_name.c_str(),
                             run.error_message.c_str());
            } else if (run.run_type == Run::RT_Iteration) {
                keep(m_cpu, run, run.GetAdjustedCPUTime());
                keep(m_wall, run, run.GetAdjustedRealTime());
            }
        }
    }

    // Nanoseconds; 0 if there was no such run.
    double time(const std::string &name, bool wall) const
    {
        const auto &times = wall ? m_wall : m_cpu;
        const auto it = times.find(name);
        return it == times.end() ? 0 : it->second;
    }

private:
    using Times = std::map<std::string, double>;

    static void keep(Times &times, const Run &run, double time)
    {
        const auto [it, isNew] = times.emplace(run.run_name.function_name, time);
        if (!isNew)
            it->second = std::min(it->second, time);
    }

    Times m_cpu;
    Times m_wall;
};

std::string formatted(double value, bool isTime)
{
    struct Unit
    {
        double size;
        const char *name;
    };
    static const Unit units[] = {{1e9, " s"}, {1e6, " ms"}, {1e3, " us"}, {1, " ns"}};

    char text[32];
    if (!isTime) {
        std::snprintf(text, sizeof text, "%.10g", value);
        return text;
    }
    const auto unit = std::find_if(std::begin(units), std::end(units) - 1,
                                   [value](const Unit &u) { return value >= u.size; });
    std::snprintf(text, sizeof text, "%.3g%s", value / unit->size, unit->name);
    return text;
}

double ratioOf(double ours, double peer)
{
    if (peer > 0)
        return ours / peer;
    return ours > 0 ? std::numeric_limits<double>::infinity() : 1;
}

bool takeRowsOption(int &argc, char **argv)
{
    const auto end = std::remove_if(argv + 1, argv + argc, [](const char *argument) {
        return std::strcmp(argument, "--rows") == 0;
    });
    const bool found = end != argv + argc;
    argc = static_cast<int>(end - argv);
    return found;
}

// Ahead of the caller's arguments, so that those win.
void initializeBenchmark(int argc, char **argv)
{
    std::string interleaving = "--benchmark_enable_random_interleaving=true";
    std::string repetitions = "--benchmark_repetitions=9";
    std::string minimumTime = "--benchmark_min_time=0.05";
    std::vector<char *> arguments = {argv[0], interleaving.data(), repetitions.data(),
                                     minimumTime.data()};
    arguments.insert(arguments.end(), argv + 1, argv + argc);
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
}

} // namespace

RatioTable::Row &RatioTable::Row::limit(double ratio)
{
    maximum = ratio;
    return *this;
}

RatioTable::Row &RatioTable::Row::realTime()
{
    wall = true;
    return *this;
}

RatioTable::Row &RatioTable::Row::manualTime()
{
    wall = true; // Google Benchmark reports it as the time on the wall
    manual = true;
    return *this;
}

RatioTable::Row &RatioTable::Row::iterations(int count)
{
    fixedIterations = count;
    return *this;
}

RatioTable::Row &RatioTable::Row::repetitions(int count)
{
    fixedRepetitions = count;
    return *this;
}

RatioTable::Row &RatioTable::add(const std::string &name, Function ours, Function peer)
{
    Row &row = m_rows.emplace_back();
    row.name = name;
    row.ours = std::move(ours);
    row.peer = std::move(peer);
    return row;
}

RatioTable::Row &RatioTable::budget(const std::string &name, Function ours,
                                    std::chrono::nanoseconds time)
{
    Row &row = add(name, std::move(ours), Function());
    row.peerValue = static_cast<double>(time.count());
    return row.limit(1);
}

RatioTable::Row &RatioTable::value(const std::string &name, double ours, double peer)
{
    Row &row = add(name, Function(), Function());
    row.isTime = false;
    row.oursValue = ours;
    row.peerValue = peer;
    return row.limit(1);
}

int RatioTable::run(int argc, char **argv)
{
    const bool rowsOnly = takeRowsOption(argc, argv);
    initializeBenchmark(argc, argv);

    const auto enlist = [](const Row &row, const std::string &name, const Function &function) {
        if (!function)
            return;
        auto *entry = benchmark::RegisterBenchmark(name.c_str(), function);
        if (row.fixedIterations > 0)
            entry->Iterations(row.fixedIterations);
        if (row.fixedRepetitions > 0)
            entry->Repetitions(row.fixedRepetitions);
        if (row.manual)
            entry->UseManualTime();
        else if (row.wall)
            entry->UseRealTime();
    };
    for (const Row &row : m_rows) {
        enlist(row, "ours: " + row.name, row.ours);
        enlist(row, "peer: " + row.name, row.peer);
    }
    FastestRun fastest;
    benchmark::RunSpecifiedBenchmarks(&fastest);

    if (!rowsOnly)
        std::printf("%-52s %10s %10s %8s\n", "case", "ours", "peer", "ratio");
    bool good = true;
    for (const Row &row : m_rows) {
        const double ours = row.ours ? fastest.time("ours: " + row.name, row.wall) : row.oursValue;
        const double peer = row.peer ? fastest.time("peer: " + row.name, row.wall) : row.peerValue;
        if ((row.ours && ours <= 0) || (row.peer && peer <= 0)) {
            std::printf("%-52s not measured\n", row.name.c_str());
            good = false;
            continue;
        }
        const double ratio = ratioOf(ours, peer);
        std::printf("%-52s %10s %10s %8.2f", row.name.c_str(), formatted(ours, row.isTime).c_str(),
                    formatted(peer, row.isTime).c_str(), ratio);
        if (row.maximum > 0) {
            const bool within = ratio <= row.maximum;
            std::printf("   %s %.2f", within ? "<=" : "ABOVE", row.maximum);
            good = good && within;
        }
        std::printf("\n");
    }
    return good ? 0 : 1;
}
