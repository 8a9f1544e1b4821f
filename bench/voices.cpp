// What it costs to ask about voices and phonemes: a host program that asks the library, beside one that
// starts espeak-ng's command for each answer. Of the first list of a program all is measured, in a fresh
// process: loading the library, and the start of the engine that knows the voices.

#include "bench/support/speaking_host.h"
#include "tests/support/process.h"

#include <benchmark/benchmark.h>

#include <exception>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace zqm;

using bench::kSynthesizer;
using bench::kVoice;
using bench::loadedRuntime;

constexpr const char* kText = "The quick brown fox jumps over the lazy dog.";
constexpr std::string_view kListVoices = "--list-voices";

std::size_t countVoices() {
    return host::Array(loadedRuntime().callShared(kSynthesizer, "availableVoices").asObject()).size();
}

// Throws std::runtime_error when the function answers false.
void require(bool isAnswered, const char* what) {
    if (!isAnswered) {
        throw std::runtime_error(std::string("no answer: ") + what);
    }
}

template <typename Function>
void measure(benchmark::State& state, const Function& ask) {
    try {
        ask(); // what the first time alone costs is measured by itself
        for (auto _ : state) {
            ask();
        }
    } catch (const std::exception& exception) {
        state.SkipWithError(exception.what());
    }
}

void askCommand(const std::string& program, const std::vector<std::string>& arguments) {
    const support::ProcessResult result = support::runProcess(program, arguments);
    require(result.succeeded() && !result.output.empty(), program.c_str());
}

void phonemesOfLibrary(benchmark::State& state) {
    try {
        host::Object synthesizer = bench::newSynthesizer();
        measure(state,
                [&] { require(!synthesizer.call("phonemesFromText", kText).asText().empty(), "phonemes"); });
    } catch (const std::exception& exception) {
        state.SkipWithError(exception.what());
    }
}

void phonemesOfCommand(benchmark::State& state) {
    measure(state, [] { askCommand("espeak-ng", {"-q", "-x", "-v", kVoice, kText}); });
}

void firstList(benchmark::State& state) {
    measure(state, [] { askCommand("/proc/self/exe", {std::string(kListVoices)}); });
}

void listAgain(benchmark::State& state) {
    measure(state, [] { require(countVoices() > 0, "voices"); });
}

void listOfCommand(benchmark::State& state) {
    measure(state, [] { askCommand("espeak-ng", {"--voices"}); });
}

void attributesOfLibrary(benchmark::State& state) {
    measure(state, [] {
        require(!loadedRuntime().callShared(kSynthesizer, "attributesForVoice", kVoice).isNull(),
                "attributes");
    });
}

void attributesOfCommand(benchmark::State& state) {
    measure(state, [] { askCommand("espeak-ng", {"--voices=en"}); });
}

constexpr auto kUnit = benchmark::kMicrosecond;

BENCHMARK(phonemesOfLibrary)->Name("phonemes/ours")->Unit(kUnit)->UseRealTime();
BENCHMARK(phonemesOfCommand)->Name("phonemes/command")->Unit(kUnit)->UseRealTime();
BENCHMARK(firstList)->Name("voices/ours_first")->Unit(kUnit)->UseRealTime();
BENCHMARK(listAgain)->Name("voices/ours_again")->Unit(kUnit)->UseRealTime();
BENCHMARK(listOfCommand)->Name("voices/command")->Unit(kUnit)->UseRealTime();
BENCHMARK(attributesOfLibrary)->Name("attributes/ours")->Unit(kUnit)->UseRealTime();
BENCHMARK(attributesOfCommand)->Name("attributes/command")->Unit(kUnit)->UseRealTime();

} // namespace

// With the one argument it is the fresh process, which lists its voices.
int main(int count, char** values) {
    if (count == 2 && values[1] == kListVoices) {
        try {
            std::cout << countVoices() << '\n';
            return 0;
        } catch (const std::exception& exception) {
            std::cerr << exception.what() << '\n';
            return 1;
        }
    }
    benchmark::Initialize(&count, values);
    if (benchmark::ReportUnrecognizedArguments(count, values)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
