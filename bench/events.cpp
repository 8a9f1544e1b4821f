// What it costs that the host program hears of an event: from the engine, which writes a sound file as fast
// as it can and tells of a message in its text, to the program's handler. Beside it the least that two
// processes can do: one sends as many messages of the same length over a socket, each by itself, and the
// other waits for each, receives it and calls a function.

#include "engine/protocol/descriptor.h"
#include "engine/protocol/protocol.h"
#include "tests/support/temporary_folder.h"
#include "zqmhost/zqmhost.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <optional>
#include <poll.h>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace {

using namespace zqm;

constexpr std::size_t kBacklog = 100'000;
constexpr std::size_t kMillion = 1'000'000;
constexpr host::Seconds kPatience{300};
constexpr int kPatienceMilliseconds = 10'000;

// As they are in the events that the engine tells here: "aaaa", a little behind the beginning.
constexpr std::uint32_t kSomeMessage = 0x61616161;
constexpr double kSomeTime = 0;

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point begin) {
    return host::Seconds(Clock::now() - begin).count();
}

// Four letters that differ from one event to the next.
std::array<char, 5> nameOf(std::size_t number) {
    constexpr std::size_t kLetters = 26;
    std::array<char, 5> name{};
    for (std::size_t place = 4; place > 0; number /= kLetters) {
        name.at(--place) = static_cast<char>('a' + number % kLetters);
    }
    return name;
}

// All of the commands belong to one word, so that hardly anything of the time is spent on making sound.
std::string textOf(const char* command, std::size_t count) {
    std::string text;
    for (std::size_t number = 0; number < count; ++number) {
        text += std::string("[[") + command + " " + nameOf(number).data() + "]]";
    }
    return text + "a";
}

class HostProgram {
public:
    HostProgram() {
        runtime_.load(ZQM_PLUGIN);
        synthesizer_ = runtime_.construct("NSSpeechSynthesizerZQM");
        synthesizer_.on("didEncounterSyncMessage", [this](const host::Arguments&) { ++events_; });
        synthesizer_.on("didFinishSpeaking",
                        [this](const host::Arguments& arguments) { end_ = arguments[0].asBool(); });
    }

    // Throws std::runtime_error when it isn't spoken to its end.
    void speak(const std::string& text) {
        events_ = 0;
        end_.reset();
        const std::string url = "file://" + (folder_ / "speech.wav").string();
        if (!synthesizer_.call("startSpeakingString", text, url).asBool() ||
            !runtime_.runUntil([this] { return end_.has_value(); }, kPatience) || !*end_) {
            throw std::runtime_error("the text isn't spoken to its end");
        }
    }

    double secondsFor(const std::string& text) {
        const auto begin = Clock::now();
        speak(text);
        return secondsSince(begin);
    }

    std::size_t events() const { return events_; }

private:
    support::TemporaryFolder folder_;
    host::Runtime runtime_;
    host::Object synthesizer_;
    std::size_t events_ = 0;
    std::optional<bool> end_; // whether it was completed
};

HostProgram& hostProgram() {
    static HostProgram one;
    return one;
}

// What the same text takes whose commands are comments, which nobody is told of, is no cost of events.
void toldByEngine(benchmark::State& state) {
    const std::string telling = textOf("sync", kBacklog);
    const std::string silent = textOf("cmnt", kBacklog);
    try {
        HostProgram& program = hostProgram();
        program.speak("a"); // starts the engine
        while (state.KeepRunningBatch(kBacklog)) {
            const double without = program.secondsFor(silent);
            const double with = program.secondsFor(telling);
            if (program.events() != kBacklog) {
                state.SkipWithError("events are lost");
                return;
            }
            state.SetIterationTime(with - without);
        }
    } catch (const std::exception& exception) {
        state.SkipWithError(exception.what());
    }
}

void millionEvents(benchmark::State& state) {
    const std::string text = textOf("sync", kMillion);
    try {
        HostProgram& program = hostProgram();
        for (auto _ : state) {
            state.SetIterationTime(program.secondsFor(text));
            state.counters["events"] = static_cast<double>(program.events());
            state.counters["lost"] = static_cast<double>(kMillion) - static_cast<double>(program.events());
            if (program.events() != kMillion) {
                state.SkipWithError("events are lost");
                return;
            }
        }
    } catch (const std::exception& exception) {
        state.SkipWithError(exception.what());
    }
}

// ---- the floor

class Sender {
public:
    Sender(const std::string& message, std::size_t count) {
        std::array<int, 2> ends{};
        if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
            throw std::system_error(errno, std::generic_category(), "socketpair");
        }
        socket_ = protocol::Descriptor(ends[0]);
        const protocol::Descriptor other(ends[1]);
        process_ = ::fork();
        if (process_ < 0) {
            throw std::system_error(errno, std::generic_category(), "fork");
        }
        if (process_ == 0) {
            socket_.reset();
            std::size_t sent = 0;
            while (sent<count&& ::send(other.get(), message.data(), message.size(), MSG_NOSIGNAL)> 0) {
                ++sent;
            }
            ::_exit(0);
        }
    }

    ~Sender() {
        socket_.reset(); // ends the process, wherever it is
        ::waitpid(process_, nullptr, 0);
    }

    Sender(const Sender&) = delete;
    Sender& operator=(const Sender&) = delete;

    // Waits for a message of that size. False: there is none.
    bool receive(char* message, std::size_t size) const {
        pollfd watched{socket_.get(), POLLIN, 0};
        return ::poll(&watched, 1, kPatienceMilliseconds) == 1 &&
               ::recv(socket_.get(), message, size, 0) == static_cast<ssize_t>(size);
    }

private:
    protocol::Descriptor socket_;
    pid_t process_ = -1;
};

// From the first message on: what comes before that is the start of a process.
void sentOverSocket(benchmark::State& state) {
    const std::string message = protocol::encode(
        protocol::Event(protocol::Sync{.utterance = 1, .message = kSomeMessage, .at = kSomeTime}));
    std::vector<char> received(message.size());
    std::size_t count = 0;
    const std::function<void(const char*)> handler = [&](const char* bytes) {
        benchmark::DoNotOptimize(bytes);
        ++count;
    };
    try {
        while (state.KeepRunningBatch(kBacklog)) {
            count = 0;
            const Sender sender(message, kBacklog + 1);
            bool isThere = sender.receive(received.data(), received.size());
            const auto begin = Clock::now();
            while (isThere && count < kBacklog) {
                isThere = sender.receive(received.data(), received.size());
                handler(received.data());
            }
            const double seconds = secondsSince(begin);
            if (!isThere || message != std::string_view(received.data(), received.size())) {
                state.SkipWithError("messages are lost");
                return;
            }
            state.SetIterationTime(seconds);
        }
    } catch (const std::exception& exception) {
        state.SkipWithError(exception.what());
    }
}

BENCHMARK(toldByEngine)->Name("event/ours")->UseManualTime();
BENCHMARK(sentOverSocket)->Name("event/socket")->UseManualTime();
BENCHMARK(millionEvents)
    ->Name("events/million")
    ->UseManualTime()
    ->Unit(benchmark::kSecond)
    ->Iterations(1)
    ->Repetitions(1);

} // namespace

BENCHMARK_MAIN();
