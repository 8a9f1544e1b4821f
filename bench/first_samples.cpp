// How soon speech begins.
//
// first/...: from the call that starts a speech to the first sound that is made of it, which is when
// libespeak-ng first calls back with samples: in the engine, as first_sound_probe.cpp notes there, or in this
// process, where they go nowhere.
//
// handed/...: from the call to the first sound that the engine hands to the sound server, libpulse's
// pa_stream_write. The server has the stream by then, and the engine has made the whole first piece of the
// text.
//
// heard/...: from the call, or from the start of the command spd-say, to the first sound that is heard at the
// monitor of a sound server's null sink. The time of a sample there is known to a few milliseconds, the same
// for all.

#include "bench/support/bare_espeak.h"
#include "bench/support/first_sound_times.h"
#include "bench/support/speaking_host.h"
#include "bench/support/speech_dispatcher.h"
#include "tests/support/monitor_recording.h"
#include "tests/support/pulse_server.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/temporary_folder.h"

#include <algorithm>
#include <atomic>
#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <fcntl.h>
#include <optional>
#include <stdexcept>
#include <string>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

namespace {

using namespace zqm;
using support::monotonicSeconds;

constexpr const char* kText = "The ferry leaves the harbour at half past seven.";
constexpr double kNanoseconds = 1e9;

// Of all that speaks here.
const support::PulseServer& soundServer() {
    static const support::PulseServer one;
    return one;
}

void start(host::Object& synthesizer) {
    if (!synthesizer.call("startSpeakingString", std::string(kText)).asBool()) {
        throw std::runtime_error("the speech could not be started");
    }
}

// Returns when the sound server has put the speech away, too.
void stop(host::Object& synthesizer) {
    bool isOver = false;
    synthesizer.on(bench::kFinished, [&](const host::Arguments&) { isOver = true; });
    synthesizer.call("stopSpeaking");
    const bool stopped = bench::loadedRuntime().runUntil([&] { return isOver; }, bench::kPatience);
    synthesizer.off(bench::kFinished);
    if (!stopped) {
        throw std::runtime_error("the speech doesn't stop");
    }
    bench::loadedRuntime().runFor(host::Seconds(0.05));
}

// One that has spoken before, and so has an engine and the server.
void warmUp(host::Object& synthesizer) {
    start(synthesizer);
    bench::loadedRuntime().runFor(host::Seconds(0.3));
    stop(synthesizer);
}

// ---- the first sound that is made, and handed on

using Times = bench::FirstSoundTimes;
using Time = std::atomic<std::int64_t>;

// Engines that are started while this exists tell of it.
class FirstSound {
public:
    FirstSound() {
        const int file = ::open(path_.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
        const bool isLarge = file >= 0 && ::ftruncate(file, sizeof(Times)) == 0;
        void* const memory = isLarge
                                 ? ::mmap(nullptr, sizeof(Times), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0)
                                 : MAP_FAILED;
        ::close(file);
        if (memory == MAP_FAILED) {
            throw std::runtime_error("no memory can be shared");
        }
        times_ = static_cast<Times*>(memory);
    }
    ~FirstSound() { ::munmap(times_, sizeof(Times)); }
    FirstSound(const FirstSound&) = delete;
    FirstSound& operator=(const FirstSound&) = delete;

    // Starts a speech; answers the seconds from there on.
    double await(host::Object& synthesizer, Time Times::*what) {
        Time& time = times_->*what;
        time = 0;
        const double begin = monotonicSeconds();
        start(synthesizer);
        if (!bench::loadedRuntime().runUntil([&] { return time != 0; }, host::Seconds(10))) {
            throw std::runtime_error("the engine tells of no sound");
        }
        return static_cast<double>(time) / kNanoseconds - begin;
    }

private:
    support::TemporaryFolder folder_;
    std::string path_ = folder_ / "first-sound";
    support::ScopedEnvironment file_{"ZQM_FIRST_SOUND", path_};
    support::ScopedEnvironment probe_{"LD_PRELOAD", ZQM_FIRST_SOUND_PROBE};
    Times* times_ = nullptr;
};

template <Time Times::*what>
void soundOfAWarmOne(benchmark::State& state) {
    FirstSound firstSound;
    host::Object synthesizer = bench::newSynthesizer();
    warmUp(synthesizer);
    for (auto _ : state) {
        state.SetIterationTime(firstSound.await(synthesizer, what));
        stop(synthesizer);
    }
}

template <Time Times::*what>
void soundOfANewOne(benchmark::State& state) {
    FirstSound firstSound;
    for (auto _ : state) {
        host::Object synthesizer = bench::newSynthesizer();
        state.SetIterationTime(firstSound.await(synthesizer, what));
        stop(synthesizer);
    }
}

void firstLoop(benchmark::State& state) {
    bench::BareEspeak& espeak = bench::BareEspeak::instance(bench::kVoice);
    for (auto _ : state) {
        std::optional<double> first;
        const double begin = monotonicSeconds();
        espeak.speak(kText, [&](const short*, std::size_t) {
            if (!first) {
                first = monotonicSeconds();
            }
        });
        state.SetIterationTime(first.value() - begin);
    }
}

// ---- the first sound that is heard

class Monitor {
public:
    Monitor() {
        if (!recording_.catchUp()) {
            throw std::runtime_error("the sound server is too slow");
        }
    }

    // When something is heard first from a time on.
    double awaitSound(double begin) const {
        std::optional<double> first;
        const auto isHeard = [&] { return (first = soundAfter(begin)).has_value(); };
        while (!isHeard()) {
            if (monotonicSeconds() > begin + kPatience) {
                throw std::runtime_error("nothing is heard");
            }
            bench::loadedRuntime().runFor(kPause);
        }
        return *first;
    }

    // Returns once nothing was heard for a while.
    void awaitSilence() const {
        const double begin = monotonicSeconds();
        do {
            if (monotonicSeconds() > begin + kPatience) {
                throw std::runtime_error("it is never silent");
            }
            bench::loadedRuntime().runFor(kPause);
        } while (soundAfter(monotonicSeconds() - kSilence) || monotonicSeconds() < begin + kSilence);
    }

private:
    [[nodiscard]] std::optional<double> soundAfter(double begin) const {
        constexpr float kThreshold = 0.003F;
        const std::vector<float> samples = recording_.samples();
        const double at = std::ceil((begin - recording_.timeOf(0)) * recording_.rate());
        const auto from = samples.begin() + static_cast<std::ptrdiff_t>(
                                                std::clamp(at, 0.0, static_cast<double>(samples.size())));
        const auto loud =
            std::find_if(from, samples.end(), [](float sample) { return std::abs(sample) > kThreshold; });
        return loud == samples.end()
                   ? std::nullopt
                   : std::optional(recording_.timeOf(static_cast<std::size_t>(loud - samples.begin())));
    }

    static constexpr double kPatience = 20;
    static constexpr double kSilence = 0.5;
    static constexpr host::Seconds kPause{0.02};

    support::MonitorRecording recording_{soundServer()};
};

void heardWarm(benchmark::State& state) {
    const Monitor monitor;
    host::Object synthesizer = bench::newSynthesizer();
    warmUp(synthesizer);
    for (auto _ : state) {
        monitor.awaitSilence();
        const double begin = monotonicSeconds();
        start(synthesizer);
        state.SetIterationTime(monitor.awaitSound(begin) - begin);
        stop(synthesizer);
    }
}

void heardNew(benchmark::State& state) {
    const Monitor monitor;
    for (auto _ : state) {
        monitor.awaitSilence();
        host::Object synthesizer = bench::newSynthesizer();
        const double begin = monotonicSeconds();
        start(synthesizer);
        state.SetIterationTime(monitor.awaitSound(begin) - begin);
        stop(synthesizer);
    }
}

void heardSpdSay(benchmark::State& state) {
    const bench::SpeechDispatcher dispatcher(soundServer());
    const Monitor monitor;
    const double warmUpBegin = monotonicSeconds();
    dispatcher.say({kText});
    monitor.awaitSound(warmUpBegin);
    dispatcher.say({"-C"});
    for (auto _ : state) {
        monitor.awaitSilence();
        const double begin = monotonicSeconds();
        dispatcher.say({kText});
        state.SetIterationTime(monitor.awaitSound(begin) - begin);
        dispatcher.say({"-C"});
    }
}

// ----

void add(const char* name, void (*function)(benchmark::State&), int iterations) {
    benchmark::RegisterBenchmark(name,
                                 [function](benchmark::State& state) {
                                     try {
                                         function(state);
                                     } catch (const std::exception& error) {
                                         state.SkipWithError(error.what());
                                     }
                                 })
        ->UseManualTime()
        ->Iterations(iterations)
        ->Unit(benchmark::kMillisecond);
}

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    constexpr int kMade = 20;
    constexpr int kHeard = 5;
    try {
        const support::ScopedPulseServer server(soundServer());
        add("first/warm", soundOfAWarmOne<&Times::made>, kMade);
        add("first/new", soundOfANewOne<&Times::made>, kMade);
        add("first/loop", firstLoop, kMade);
        add("handed/warm", soundOfAWarmOne<&Times::handed>, kMade);
        add("handed/new", soundOfANewOne<&Times::handed>, kMade);
        add("heard/warm", heardWarm, kHeard);
        add("heard/new", heardNew, kHeard);
        add("heard/spd_say", heardSpdSay, kHeard);
        benchmark::RunSpecifiedBenchmarks();
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
