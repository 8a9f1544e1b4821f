// What it costs to write a text to a WAV file, from the call to the whole file: by the library, beside what
// the command espeak-ng takes for the same text, and beside a loop around libespeak-ng, which makes the sound
// for both. The host hears of the end of its speech alone. A million words would be three times what
// a WAV file can hold.

#include "bench/support/bare_espeak.h"
#include "bench/support/peak_memory.h"
#include "bench/support/prose.h"
#include "bench/support/speaking_host.h"
#include "tests/support/process_table.h"
#include "tests/support/pulse_server.h"
#include "tests/support/temporary_folder.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <sndfile.h>
#include <spawn.h>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

using namespace zqm;
using zqm::bench::BareEspeak;
using zqm::bench::PeakMemory;

constexpr std::size_t kWordsOfSeveral = 1000;
// One speech takes seconds from there on.
constexpr std::int64_t kLong = 10000;
constexpr std::int64_t kLongest = 100000;

const support::TemporaryFolder& folder() {
    static const support::TemporaryFolder one;
    return one;
}

const std::string& textOf(std::size_t words) {
    static std::map<std::size_t, std::string> texts;
    std::string& text = texts[words];
    if (text.empty()) {
        text = bench::prose(words);
    }
    return text;
}

// The same text in a file, for programs.
std::string textFile(std::size_t words) {
    const std::filesystem::path path = folder() / (std::to_string(words) + ".txt");
    if (!std::filesystem::exists(path)) {
        std::ofstream(path, std::ios::binary) << textOf(words);
    }
    return path.string();
}

std::int64_t framesOf(const std::string& file) {
    SF_INFO info{};
    SNDFILE* const sound = sf_open(file.c_str(), SFM_READ, &info);
    if (sound == nullptr || (info.format & SF_FORMAT_TYPEMASK) != SF_FORMAT_WAV || info.channels != 1) {
        throw std::runtime_error(file + " is no sound of one channel");
    }
    sf_close(sound);
    return info.frames;
}

// All ways must have made as much sound of the same text as the first that was measured.
void compareSound(std::size_t words, const std::string& file) {
    constexpr double kTolerance = 0.01;
    static std::map<std::size_t, std::int64_t> known;
    const std::int64_t frames = framesOf(file);
    const auto expected = static_cast<double>(known.try_emplace(words, frames).first->second);
    if (frames == 0 || std::abs(static_cast<double>(frames) - expected) > kTolerance * expected) {
        throw std::runtime_error("the same text gives " + std::to_string(frames) + " samples here, " +
                                 std::to_string(known.at(words)) + " elsewhere");
    }
}

using Write = void (*)(std::size_t words, const std::string& file);

// Each file is new, as an old one costs its removal.
void measure(benchmark::State& state, Write write) {
    const auto words = static_cast<std::size_t>(state.range(0));
    const std::string file = folder() / "speech.wav";
    try {
        textFile(words);
        for (auto _ : state) {
            write(words, file);
            state.PauseTiming();
            compareSound(words, file);
            std::filesystem::remove(file);
            state.ResumeTiming();
        }
    } catch (const std::exception& error) {
        state.SkipWithError(error.what());
    }
}

// ---- ours

// Speaks again and again, by an engine that runs.
struct Warm {
    Warm() {
        const std::vector<pid_t> before = support::childrenThatRun(kEngine);
        synthesizer = bench::newSynthesizer();
        const std::string file = folder() / "first.wav";
        bench::startFile(synthesizer, textOf(1), file);
        bench::waitForEnd(synthesizer);
        for (const pid_t process : support::childrenThatRun(kEngine)) {
            if (std::ranges::find(before, process) == before.end()) {
                engine = process;
            }
        }
        if (engine == 0) {
            throw std::runtime_error("there is no engine");
        }
    }

    host::Object synthesizer;
    pid_t engine = 0;

private:
    static constexpr const char* kEngine = "zqmspeech-engine";
};

Warm& warm() {
    static Warm one;
    return one;
}

void writeWarm(std::size_t words, const std::string& file) {
    bench::startFile(warm().synthesizer, textOf(words), file);
    bench::waitForEnd(warm().synthesizer);
}

void measureWarm(benchmark::State& state) {
    try {
        warm();
        const PeakMemory host(::getpid());
        const PeakMemory engine(warm().engine);
        measure(state, writeWarm);
        state.counters["host_memory"] = host.growth();
        state.counters["engine_memory"] = engine.growth();
        state.counters["text_memory"] =
            static_cast<double>(textOf(static_cast<std::size_t>(state.range(0))).size());
    } catch (const std::exception& error) {
        state.SkipWithError(error.what());
    }
}

void measureSeveral(benchmark::State& state) {
    try {
        std::vector<host::Object> synthesizers(static_cast<std::size_t>(state.range(0)));
        std::vector<std::string> files(synthesizers.size());
        std::size_t ends = 0;
        const auto finish = [&](const host::Arguments&) { ++ends; };
        const auto writeAll = [&](std::size_t words) {
            ends = 0;
            for (std::size_t index = 0; index < synthesizers.size(); ++index) {
                bench::startFile(synthesizers[index], textOf(words), files[index]);
            }
            const bool finished = bench::loadedRuntime().runUntil([&] { return ends == synthesizers.size(); },
                                                                  bench::kPatience);
            if (!finished) {
                throw std::runtime_error("the speeches weren't finished");
            }
        };
        for (std::size_t index = 0; index < synthesizers.size(); ++index) {
            synthesizers[index] = bench::newSynthesizer();
            synthesizers[index].on(bench::kFinished, finish);
            files[index] = folder() / ("speech" + std::to_string(index) + ".wav");
        }
        writeAll(1);
        for (auto _ : state) {
            writeAll(kWordsOfSeveral);
            state.PauseTiming();
            for (const std::string& file : files) {
                compareSound(kWordsOfSeveral, file);
                std::filesystem::remove(file);
            }
            state.ResumeTiming();
        }
    } catch (const std::exception& error) {
        state.SkipWithError(error.what());
    }
}

// ---- programs

void run(std::vector<std::string> words) {
    std::vector<char*> arguments(words.size() + 1);
    std::ranges::transform(words, arguments.begin(), [](std::string& word) { return word.data(); });
    pid_t process = 0;
    int status = 0;
    if (::posix_spawnp(&process, arguments.front(), nullptr, nullptr, arguments.data(), environ) != 0 ||
        ::waitpid(process, &status, 0) != process || status != 0) {
        throw std::runtime_error(words.front() + " can't be run or fails");
    }
}

void writeCold(std::size_t words, const std::string& file) {
    run({ZQM_SPEAK_ONCE, textFile(words), file});
}

void writeByCommand(std::size_t words, const std::string& file) {
    run({"espeak-ng", "-v", bench::kEspeakVoice, "-w", file, "-f", textFile(words)});
}

// ---- the least

void putNumber(std::string& header, std::uint32_t number, int bytes) {
    constexpr unsigned kByte = 8;
    for (; bytes > 0; --bytes, number >>= kByte) {
        header += static_cast<char>(number);
    }
}

std::string wavHeader(std::uint32_t rate, std::uint32_t dataBytes) {
    constexpr std::uint32_t kSampleBytes = sizeof(short);
    constexpr std::uint32_t kBitsPerSample = 16;
    constexpr std::uint32_t kFormatBytes = 16;
    constexpr std::uint32_t kRestOfHeader = 36;
    std::string header = "RIFF";
    putNumber(header, kRestOfHeader + dataBytes, 4);
    header += "WAVEfmt ";
    putNumber(header, kFormatBytes, 4);
    putNumber(header, 1, 2); // PCM
    putNumber(header, 1, 2); // channels
    putNumber(header, rate, 4);
    putNumber(header, rate * kSampleBytes, 4);
    putNumber(header, kSampleBytes, 2);
    putNumber(header, kBitsPerSample, 2);
    header += "data";
    putNumber(header, dataBytes, 4);
    return header;
}

void writeByLoop(std::size_t words, const std::string& file) {
    BareEspeak& espeak = BareEspeak::instance(bench::kVoice);
    const auto rate = static_cast<std::uint32_t>(espeak.rate());
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> output(std::fopen(file.c_str(), "wb"), std::fclose);
    if (!output) {
        throw std::runtime_error("no file can be written");
    }
    std::uint32_t bytes = 0;
    const auto putHeader = [&] {
        const std::string header = wavHeader(rate, bytes);
        std::rewind(output.get());
        std::fwrite(header.data(), 1, header.size(), output.get());
    };
    putHeader();
    espeak.speak(textOf(words), [&](const short* samples, std::size_t count) {
        bytes += static_cast<std::uint32_t>(std::fwrite(samples, sizeof *samples, count, output.get()) *
                                            sizeof *samples);
    });
    putHeader();
}

// ----

// What takes seconds is measured once a repetition, and the longest is not repeated.
void addSizes(const std::string& name, void (*function)(benchmark::State&)) {
    for (const std::int64_t words :
         {std::int64_t{10}, std::int64_t{100}, std::int64_t{1000}, kLong, kLongest}) {
        auto* const one = benchmark::RegisterBenchmark(name.c_str(), function)
                              ->Arg(words)
                              ->UseRealTime()
                              ->Unit(benchmark::kMillisecond);
        if (words >= kLong) {
            one->Iterations(1);
        }
        if (words >= kLongest) {
            one->Repetitions(1);
        }
    }
}

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    // libespeak-ng looks for a sound server also where it writes a file: here it finds none at once, whoever
    // calls.
    const support::ScopedPulseServer noServer(support::ScopedPulseServer::unreachableAddress());
    addSizes("file/warm", measureWarm);
    addSizes("file/cold", [](benchmark::State& state) { measure(state, writeCold); });
    addSizes("file/command", [](benchmark::State& state) { measure(state, writeByCommand); });
    addSizes("file/loop", [](benchmark::State& state) { measure(state, writeByLoop); });
    benchmark::RegisterBenchmark("file/several", measureSeveral)
        ->Arg(2)
        ->Arg(4)
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
