// Times a part of an iteration, for benchmarks with UseManualTime().

#pragma once

#include <benchmark/benchmark.h>
#include <chrono>
#include <utility>

namespace zqm::bench {

// Runs the work and sets what it took as the iteration's time.
template <typename Work>
auto timed(benchmark::State& state, Work&& work) {
    const auto begin = std::chrono::steady_clock::now();
    auto result = std::forward<Work>(work)();
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
    benchmark::DoNotOptimize(result);
    state.SetIterationTime(time.count());
    return result;
}

} // namespace zqm::bench
