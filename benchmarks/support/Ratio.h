#pragma once

#include <benchmark/benchmark.h>

#include <chrono>
#include <functional>
#include <string>
#include <vector>

// The rows of one benchmark program: how our way of doing something compares with a peer's.
//
//     int main(int argc, char **argv)
//     {
//         RatioTable table;
//         table.add("copy 10,000 files", copyFolder, bareCopyLoop).limit(1.2);
//         table.budget("path with a variable", resolveVariable, std::chrono::microseconds(2));
//         table.value("allocations per call", allocations, 0);
//         return table.run(argc, argv);
//     }
//
// The functions are plain Google Benchmark functions. Ours and the peer's run in turns, several
// times each, and the fastest run of each counts: what else the machine does only ever adds time.
class RatioTable
{
public:
    using Function = std::function<void(benchmark::State &)>;

    class Row
    {
    public:
        // The ratio that is still good; a row beyond it makes the program fail.
        Row &limit(double ratio);
        // Compare the time on the wall rather than this process's: for child processes, networks
        // and disks.
        Row &realTime();
        // Compare what the functions give to State::SetIterationTime().
        Row &manualTime();
        // Run each side this often, not as often as its speed suggests: for slow cases.
        Row &iterations(int count);
        // Of how many such runs the fastest counts: 9 unless said otherwise.
        Row &repetitions(int count);

    private:
        friend class RatioTable;

        std::string name;
        Function ours;
        Function peer; // none: `peerValue` is what ours is compared with
        double oursValue = 0;
        double peerValue = 0;
        double maximum = 0; // 0: none
        bool wall = false;
        bool manual = false;
        bool isTime = true;
        int fixedIterations = 0;
        int fixedRepetitions = 0;
    };

    // References to rows hold until the next row is added.
    Row &add(const std::string &name, Function ours, Function peer);
    // A time that ours must stay below.
    Row &budget(const std::string &name, Function ours, std::chrono::nanoseconds time);
    // Two numbers that were taken otherwise (a count, bytes); ours must not be above the peer's
    // unless a limit says more.
    Row &value(const std::string &name, double ours, double peer);

    // Measures and prints, one line per row. "--rows" leaves the heading out; all other arguments
    // are Google Benchmark's own. 1 if a row is beyond its limit or could not be measured, else 0.
    int run(int argc, char **argv);

private:
    std::vector<Row> m_rows;
};
