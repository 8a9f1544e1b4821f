// Times a part of an iteration, for benchmarks with UseManualTime(): by what the processor spent on this
// process.

#pragma once

#include <benchmark/benchmark.h>
#include <ctime>
#include <utility>

namespace zqm::bench {

inline double processorSeconds() {
    timespec time{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

// Runs the work and sets what it took as the iteration's time.
template <typename Work>
auto timed(benchmark::State& state, Work&& work) {
    const double begin = processorSeconds();
    auto result = std::forward<Work>(work)();
    const double end = processorSeconds();
    benchmark::DoNotOptimize(result);
    state.SetIterationTime(end - begin);
    return result;
}

} // namespace zqm::bench
