#include "tests/endtoend/engine_faults.h"

#include "tests/support/garbage_lines.h"
#include "tests/support/leak_search.h"
#include "tests/support/log_lines.h"
#include "tests/support/process_table.h"
#include "tests/support/sound_file.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <gmock/gmock.h>
#include <iterator>
#include <optional>
#include <ostream>
#include <string_view>
#include <utility>

namespace zqm::endtoend {
namespace {

using Effect = Fault::Effect;

// Where every access to memory is checked, an engine takes long to start.
#ifdef __SANITIZE_ADDRESS__
constexpr std::size_t kSlowness = 3;
#else
constexpr std::size_t kSlowness = 1;
#endif

constexpr std::size_t kLongestEvent = std::size_t{1} << 20;

Fault garbage(std::string name, std::string line) {
    return {.name = std::move(name), .action = "replace", .bytes = std::move(line) + "\n"};
}

std::vector<Fault> garbage(const std::vector<support::GarbageLine>& lines) {
    std::vector<Fault> faults;
    faults.reserve(lines.size() + 1);
    for (const auto& [name, line] : lines) {
        faults.push_back(garbage(name, line));
    }
    faults.push_back({.name = "too_many_descriptors", .action = "laden"});
    return faults;
}

std::vector<Fault> garbageEvents() {
    std::vector<Fault> faults = garbage(support::garbageEvents());
    const auto nonsense = [&](std::string name, std::string line) {
        faults.push_back(garbage(std::move(name), std::move(line)));
        faults.back().reason = kNonsense;
    };
    faults.push_back(garbage("overlong", std::string(kLongestEvent, 'x')));
    nonsense("foreign_start", R"({"type":"started","utterance":1000})");
    nonsense("foreign_word", R"({"type":"word","utterance":1000,"position":0,"length":1,"at":0})");
    nonsense("foreign_end", R"({"type":"finished","utterance":1000,"completed":true,"at":1})");
    nonsense("foreign_session", R"({"type":"listening","session":1000,"wantsNewEngine":false})");
    return faults;
}

// The file to listen to comes along with the commands, so that a request of an unknown session has it.
Fault garbageAt(const Place& place, Fault fault) {
    if (place.type == "listen" && fault.name == "missing_descriptor") {
        fault.reason = kNonsense;
    }
    return fault;
}

// What a message that comes twice does.
Fault repeated(const Place& place) {
    Fault fault{.name = "repeat", .action = "repeat", .effect = Effect::None};
    const std::string& type = place.type;
    if (place.toHost && (type == "started" || type == "word" || type == "continued")) {
        fault.effect = Effect::Loss;
        fault.reason = kNonsense;
    } else if (!place.toHost && type == "listen") {
        fault.effect = Effect::Loss; // its descriptor doesn't come twice
    } else if (!place.toHost && (type == "speak" || type == "continue")) {
        fault.effect = Effect::Either; // that of a file neither; going on is told twice
        fault.reason = kNonsense;
    }
    return fault;
}

// Those for which nobody waits. The file to listen to comes along with the first of the requests.
bool mayBeLeftOut(const Place& place) {
    constexpr std::array<std::string_view, 12> kAwaited{"blockOthers", "commands", "endOfInput", "finished",
                                                        "heard",       "lexicon",  "listen",     "phonemes",
                                                        "speak",       "started",  "stop",       "voices"};
    return std::ranges::find(kAwaited, place.type) == kAwaited.end();
}

bool wantsAll() {
    return std::getenv("ZQM_ALL_FAULTS") != nullptr; // NOLINT(concurrency-mt-unsafe): one thread
}

std::vector<Fault> cuts() {
    return {{.name = "close", .action = "close"},
            {.name = "end", .action = "end"},
            {.name = "kill", .action = "kill"}};
}

} // namespace

bool FaultCase::isBehind(const std::string& type) const {
    if (!place.toHost) {
        return false;
    }
    constexpr std::array<std::string_view, 3> kOrder{"started", "", "finished"};
    const auto rank = [&](std::string_view name) {
        const auto* const found = std::ranges::find(kOrder, name);
        return found == kOrder.end() ? 1 : static_cast<int>(found - kOrder.begin());
    };
    const bool isHandedOn = place.isAfter || fault.action == "repeat";
    return rank(place.type) > rank(type) || (place.type == type && isHandedOn);
}

std::vector<FaultCase> faultCases(const std::vector<Place>& places, Garbage wanted) {
    std::vector<FaultCase> cases;
    const auto add = [&](Place place, const Fault& fault, bool isAfter = false) {
        place.isAfter = isAfter;
        cases.push_back({std::move(place), fault});
    };
    for (const Place& place : places) {
        for (const Fault& cut : cuts()) {
            add(place, cut);
            add(place, cut, true);
        }
        add(place, {.name = "half", .action = "half"});
        add(place, {.name = "slow", .action = "slow", .effect = Effect::None});
        add(place, repeated(place));
        if (mayBeLeftOut(place)) {
            add(place, {.name = "drop", .action = "drop", .effect = Effect::None});
        }
    }
    for (const bool toHost : {false, true}) {
        std::vector<Place> found;
        std::ranges::copy_if(places, std::back_inserter(found),
                             [&](const Place& place) { return place.toHost == toHost; });
        std::size_t turn = 0;
        for (const Fault& fault : toHost ? garbageEvents() : garbage(support::garbageRequests())) {
            for (std::size_t index = 0; index < found.size(); ++index) {
                if (wantsAll() || (wanted == Garbage::Once && index == turn % found.size())) {
                    add(found[index], garbageAt(found[index], fault));
                }
            }
            ++turn;
        }
    }
    return cases;
}

std::vector<FaultCase> withFileFaults(std::vector<FaultCase> cases) {
    cases.push_back({request("speak"), {.name = "bare", .action = "bare"}});
    cases.push_back({request("speak"),
                     {.name = "soil", .action = "soil", .bytes = "RIFF, or what an engine began to write"}});
    return cases;
}

std::vector<FaultCase> newAndUsed(const std::vector<FaultCase>& cases) {
    std::vector<FaultCase> both;
    bool isUsed = false;
    for (FaultCase each : cases) {
        const bool wantsBoth = wantsAll() || each.fault.action == "soil" || each.fault.action == "kill";
        for (const bool used : {false, true}) {
            if (wantsBoth || used == isUsed) {
                each.isUsed = used;
                both.push_back(each);
            }
        }
        isUsed = !isUsed;
    }
    return both;
}

std::vector<FaultCase> thinned(const std::vector<FaultCase>& cases, std::size_t step) {
    std::vector<FaultCase> some;
    for (std::size_t index = 0; index < cases.size(); ++index) {
        const bool isAtEachMessage = kSlowness == 1 && cases[index].fault.action == "close";
        if (wantsAll() || isAtEachMessage || index % (step * kSlowness) == 0) {
            some.push_back(cases[index]);
        }
    }
    return some;
}

std::string nameOf(const testing::TestParamInfo<FaultCase>& each) {
    return each.param.fault.name + "_" + each.param.place.name() + (each.param.isUsed ? "_used" : "");
}

void PrintTo(const FaultCase& each, std::ostream* stream) {
    *stream << each.fault.name << ' ' << each.place.name() << (each.isUsed ? " used" : "");
}

Place request(const std::string& type) {
    return {.toHost = false, .type = type};
}

Place event(const std::string& type, int number) {
    return {.toHost = true, .type = type, .number = number};
}

// The voices are known then, and how a file is that nothing goes wrong with.
void EngineFaults::SetUp() {
    children_ = support::childrenOfThisProcess();
    {
        Speaker speaker(runtime);
        speaker.speak(kShortText, next);
        seconds = support::SoundFile(next).seconds();
        std::filesystem::remove(next);
    }
    waitUntilNothingIsLeft();
    road.forget();
    descriptors_ = support::openDescriptors();
}

void EngineFaults::waitUntilNothingIsLeft() {
    const host::Object other = runtime.construct(kSynthesizer);
    EXPECT_TRUE(runtime.runUntil(
        [&] {
            static_cast<void>(other.get("isSpeaking")); // engines that ended are noticed then
            return support::childrenOfThisProcess() == children_;
        },
        kDeadline));
}

void EngineFaults::TearDown() {
    EXPECT_TRUE(road.isDone()) << "nothing went wrong";
    waitUntilNothingIsLeft();
    for (const int engine : road.told("engine")) {
        EXPECT_TRUE(runtime.runUntil([&] { return !support::isAlive(engine); }, kDeadline)) << engine;
    }
    // By themselves, because what they were told makes no sense, or by the fault.
    constexpr int kBySignal = 1000;
    EXPECT_THAT(road.told("ended"),
                testing::Each(testing::AnyOf(0, 3, kBySignal + SIGKILL, kBySignal + SIGTERM)));
    EXPECT_EQ(support::openDescriptors(), descriptors_);
    for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
        EXPECT_THAT(entry.path(), testing::AnyOf(file, next));
    }
    SpeakingTest::TearDown();
}

// What a synthesizer has said before changes its samples a little.
void EngineFaults::expectWhole(const std::filesystem::path& path) const {
    constexpr double kTolerance = 0.02;
    EXPECT_NO_THROW(EXPECT_NEAR(support::SoundFile(path).seconds(), seconds, kTolerance)) << path;
}

std::vector<std::string> EngineFaults::loggedByHost(const std::function<void()>& body) {
    std::vector<std::string> lines = support::logged(body);
    std::erase_if(lines, [](const std::string& line) {
        return line.starts_with("zqmspeech-engine: ") || support::tellsOfInterruptedLeakSearch(line);
    });
    return lines;
}

} // namespace zqm::endtoend
