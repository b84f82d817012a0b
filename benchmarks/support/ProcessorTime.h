#pragma once

#include <benchmark/benchmark.h>

#include <sys/resource.h>

// Seconds of processor time that this process and its finished children have taken so far. Unlike
// the time on the wall it says the same on a busy machine.
inline double processorSeconds()
{
    const auto seconds = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    double sum = 0;
    for (const int who : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
        rusage usage = {};
        getrusage(who, &usage);
        sum += seconds(usage.ru_utime) + seconds(usage.ru_stime);
    }
    return sum;
}

// A benchmark function for a row with manualTime(): the processor time of `work`, which tells
// whether it succeeded. What `cleanUp` takes isn't counted.
template <typename Work, typename CleanUp>
auto processorTimeOf(Work work, CleanUp cleanUp)
{
    return [=](benchmark::State &state) {
        for (auto _ : state) {
            const double start = processorSeconds();
            const bool good = work();
            state.SetIterationTime(processorSeconds() - start);
            if (!good)
                state.SkipWithError("failed");
            cleanUp();
        }
    };
}

template <typename Work>
auto processorTimeOf(Work work)
{
    return processorTimeOf(work, [] {});
}
