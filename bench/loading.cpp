// What it costs a host to load the plugin and let it register its classes, beside the least that a library on
// Foundation can cost. Each round is a new process, since loading again what is loaded costs nothing. It
// measures itself, from before the library is loaded until the classes are registered: starting a process
// isn't ours.

#include "tests/support/process.h"

#include <benchmark/benchmark.h>
#include <sstream>
#include <string>

namespace {

void load(benchmark::State& state, const char* library, bool registersClasses) {
    for (auto _ : state) {
        const zqm::support::ProcessResult result = zqm::support::runProcess(ZQM_LOAD_LIBRARY, {library});
        double nanoseconds = 0;
        int classes = 0;
        std::istringstream output(result.output);
        if (!result.succeeded() || !(output >> nanoseconds >> classes)) {
            const std::string reason = "not loaded: " + result.errors;
            state.SkipWithError(reason.c_str());
            return;
        }
        if ((classes > 0) != registersClasses) {
            state.SkipWithError(registersClasses ? "no class registered"
                                                 : "classes registered by an empty library");
            return;
        }
        state.SetIterationTime(nanoseconds * 1e-9);
    }
}

BENCHMARK_CAPTURE(load, ours, ZQM_PLUGIN, true)->Name("loading/ours")->UseManualTime();
BENCHMARK_CAPTURE(load, floor, ZQM_EMPTY_ON_FOUNDATION, false)->Name("loading/floor")->UseManualTime();
BENCHMARK_CAPTURE(load, platform, ZQM_EMPTY_ON_PLATFORM, false)
    ->Name("loading/foundation_and_platform")
    ->UseManualTime();

} // namespace

BENCHMARK_MAIN();
