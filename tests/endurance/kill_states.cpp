#include "tests/endurance/kill_states.h"

#include "tests/support/process.h"
#include "tests/support/process_table.h"
#include "tests/support/sibling_library.h"
#include "zqmplatform/listening.h"

#include <algorithm>
#include <array>
#include <iostream>
#include <string>

namespace zqm::endurance {
namespace {

using namespace std::chrono_literals;

// Within which random moments are: what an engine takes for it, and much more.
constexpr auto kOfAnAnswer = 20ms;
constexpr auto kOfAFirstAnswer = 60ms;
constexpr auto kOfASpeech = 200ms;
constexpr auto kOfListening = 1s;

constexpr std::size_t kMostKillsOfVoices = 8; // before one may answer

constexpr const char* kSynthesizer = "NSSpeechSynthesizerZQM";
constexpr int kImmediately = 0;
constexpr int kAtAWord = 1;

const std::vector<std::string> kCommands{"open the window", "close the door"};

Sights one(Sight sight) {
    return {{sight, 1}};
}

void killNow(KillScene& scene, pid_t engine) {
    require(killEngine(engine), "the engine had ended by itself");
    scene.killed = engine;
}

// What is left of a speech into a file that ended with false.
void requireNoFile(const KillScene& scene) {
    require(!scene.hasFile(), "there is a file of a speech that failed");
}

// A speech into a file had come to its end before it could be held.
Sights tooLate(KillScene& scene, Speaking& speaking) {
    goOn(scene.engine());
    require(scene.waitForEnd(speaking), "a speech that nobody ended ends with false");
    scene.removeWholeFile(speaking.text);
    return one(Sight::NotKilled);
}

// How a speech ends whose engine is killed at a moment that nobody knows; what is logged if with false.
Sights endOfAny(KillScene& scene, Speaking& speaking, Killing& killing, bool isStopped = false) {
    const bool isComplete = scene.waitForEnd(speaking);
    const bool isInTime = killing.isDone();
    scene.finish(killing);
    require(scene.waitFor([&] { return scene.engines().reapOrphans(); }), "a process for files is left");
    require(!isComplete || scene.hasFile(), "a complete speech has no file");
    if (scene.hasFile()) { // of a false end, too: it was just put in its place
        isStopped ? scene.removePart() : scene.removeWholeFile(speaking.text);
    }
    const bool isServed = isComplete && scene.isReplaced();
    if (isStopped) {
        scene.check({}, kSpeechEnded);
    } else {
        scene.check(isComplete ? std::vector<std::string>() : std::vector<std::string>{kSpeechEnded});
    }
    return one(!isInTime    ? Sight::NotKilled
               : isServed   ? Sight::Served
               : isComplete ? Sight::EndTrue
                            : Sight::EndFalse);
}

// Whether the file still lacks something: that it is in its place the engine may be about to say.
bool holdInAFile(KillScene& scene, Speaking& speaking) {
    return scene.holdSpeaking(speaking) && !scene.hasFile();
}

// What comes of a kill in mid-speech into a file.
Sights killHeld(KillScene& scene, Speaking& speaking) {
    if (!holdInAFile(scene, speaking)) {
        return tooLate(scene, speaking);
    }
    killNow(scene, scene.engine());
    require(!scene.waitForEnd(speaking), "a killed speech ends with true");
    requireNoFile(scene);
    scene.check({kSpeechEnded});
    return one(Sight::EndFalse);
}

Sights idle(KillScene& scene) {
    Speaking& speaking = scene.idle();
    speaking.ends.clear();
    killNow(scene, scene.engine());
    if (scene.below(2) == 0) { // that it is noticed before the next request makes no difference
        require(scene.waitFor([&] {
            speaking.isSpeaking();
            return scene.engines().all().empty();
        }),
                "the killed one is not reaped");
    }
    require(speaking.ends.empty(), "the end of a speech that was over is told");
    scene.check({});
    return one(Sight::Nothing);
}

Sights justCreated(KillScene& scene) {
    Speaking& speaking = scene.fresh();
    Killing killing = Killing::ofTheNext(scene.moment(kOfAFirstAnswer));
    if (speaking.start(longText(), scene.file())) {
        return endOfAny(scene, speaking, killing);
    }
    scene.finish(killing);
    requireNoFile(scene);
    require(speaking.ends.empty(), "a speech that wasn't started ends");
    scene.check({kStartRefused});
    return one(Sight::Refused);
}

Sights askedForVoices(KillScene& scene) {
    const support::ProcessResult result =
        support::runProcess("/proc/self/exe", {"--voices", std::to_string(scene.below(1'000'000'000))});
    require(result.succeeded() && result.errors.empty(), "asking for voices: " + result.errors);
    const std::size_t refused = std::stoull(result.output);
    return refused == 0 ? one(Sight::NotKilled) : Sights{{Sight::Refused, refused}};
}

Sights askedForPhonemes(KillScene& scene) {
    Speaking& speaking = scene.idle();
    const pid_t engine = scene.engine();
    holdEngine(engine);
    Killing killing = Killing::whenTheCallerWaits(engine);
    const std::string phonemes = scene.phonemesOfWord(speaking);
    scene.finish(killing);
    require(phonemes == scene.plainPhonemes(), "other phonemes: " + phonemes);
    scene.check({});
    return one(Sight::Served);
}

Sights firstAskedForPhonemes(KillScene& scene) {
    Speaking& speaking = scene.fresh();
    Killing killing = Killing::ofTheNext(scene.moment(kOfAFirstAnswer));
    const std::string phonemes = scene.phonemesOfWord(speaking);
    scene.finish(killing);
    require(phonemes.empty() || phonemes == scene.plainPhonemes(), "other phonemes: " + phonemes);
    scene.check(phonemes.empty() ? std::vector<std::string>{kPhonemesRefused} : std::vector<std::string>());
    return one(phonemes.empty() ? Sight::Refused : Sight::NotKilled); // it had answered before
}

Sights propertiesInSpeech(KillScene& scene) {
    Speaking& speaking = scene.idle();
    require(speaking.start(longText(), scene.file()), "not started");
    Killing killing = Killing::after(scene.moment(kOfAnAnswer), scene.engine());
    for (int change = 0; change < 20; ++change) {
        speaking.object.set("Rate", 100 + change);
        speaking.object.call("setObjectForProperty", 60, scene.key("NSSpeechPitchBaseProperty"),
                             host::ByRef{});
        const host::Dictionary status(
            speaking.object.call("objectForProperty", scene.key("NSSpeechStatusProperty"), host::ByRef{})
                .asObject());
        require(status.hasKey(scene.key("NSSpeechStatusOutputBusy")), "no status");
    }
    require(speaking.object.get("Rate").asDouble() == 119, "a property is lost");
    speaking.object.set("Rate", 175);
    return endOfAny(scene, speaking, killing);
}

Sights atAStart(KillScene& scene) {
    Speaking& speaking = scene.idle();
    const pid_t engine = scene.engine();
    holdEngine(engine);
    Killing killing = Killing::whenTheCallerWaits(engine);
    const bool isStarted = speaking.start(kShortText, scene.file());
    scene.finish(killing);
    require(isStarted, "a start is refused though the next engine could serve it");
    require(scene.waitForEnd(speaking), "a start ends with false though the next engine could serve it");
    scene.removeWholeFile(speaking.text);
    scene.check({});
    return one(Sight::Served);
}

Sights aboutAStart(KillScene& scene) {
    Speaking& speaking = scene.idle();
    Killing killing = Killing::after(scene.moment(kOfAnAnswer), scene.engine());
    require(speaking.start(longText(), scene.file()),
            "a start is refused though the next engine could serve it");
    return endOfAny(scene, speaking, killing);
}

Sights earlyInAFile(KillScene& scene) {
    Speaking& speaking = scene.idle();
    require(speaking.start(longText(), scene.file()), "not started");
    require(scene.waitFor([&] { return speaking.words > 0; }), "no word is told");
    return killHeld(scene, speaking);
}

Sights lateInAFile(KillScene& scene) {
    Speaking& speaking = scene.idle();
    require(speaking.start(longText(), scene.file()), "not started");
    require(scene.waitFor([&] { return speaking.marks > 0; }), "no mark is told");
    return killHeld(scene, speaking);
}

Sights anywhereInAFile(KillScene& scene) {
    Speaking& speaking = scene.idle();
    require(speaking.start(longText(), scene.file()), "not started");
    Killing killing = Killing::after(scene.moment(kOfASpeech), scene.engine());
    return endOfAny(scene, speaking, killing);
}

Sights overAFile(KillScene& scene) {
    Speaking& speaking = scene.idle();
    require(speaking.start(kShortText, scene.file()) && scene.waitForEnd(speaking), "not spoken");
    const auto size = std::filesystem::file_size(scene.file());
    require(speaking.start(longText(), scene.file()), "not started");
    require(scene.waitFor([&] { return speaking.words > 0; }), "no word is told");
    if (!scene.holdSpeaking(speaking)) {
        return tooLate(scene, speaking);
    }
    killNow(scene, scene.engine());
    require(!scene.waitForEnd(speaking), "a killed speech ends with true");
    require(std::filesystem::file_size(scene.file()) == size, "the file from before is lost");
    scene.removeWholeFile(kShortText);
    scene.check({kSpeechEnded});
    return one(Sight::EndFalse);
}

Sights killAloud(KillScene& scene, Speaking& speaking) {
    killNow(scene, scene.engine());
    require(!scene.waitForEnd(speaking), "a killed speech ends with true");
    scene.check({kSpeechEnded});
    return one(Sight::EndFalse);
}

Speaking& speakAloud(KillScene& scene) {
    Speaking& speaking = scene.idle();
    require(speaking.startAloud(longText()), "not started aloud");
    require(scene.waitFor([&] { return speaking.words > 0; }), "no word is told");
    return speaking;
}

Sights aloud(KillScene& scene) {
    return killAloud(scene, speakAloud(scene));
}

Sights aloudAtAStart(KillScene& scene) {
    Speaking& speaking = scene.idle();
    const pid_t engine = scene.engine();
    holdEngine(engine);
    Killing killing = Killing::whenTheCallerWaits(engine);
    require(speaking.startAloud(kShortText), "a start is refused though the next engine could serve it");
    scene.finish(killing);
    require(scene.waitForEnd(speaking), "a start ends with false though the next engine could serve it");
    scene.check({});
    return one(Sight::Served);
}

void waitUntilPaused(KillScene& scene, Speaking& speaking) {
    require(scene.waitFor([&] {
        const host::Dictionary status(
            speaking.object.call("objectForProperty", scene.key("NSSpeechStatusProperty"), host::ByRef{})
                .asObject());
        return status.value(scene.key("NSSpeechStatusOutputPaused")).asInteger() != 0 ||
               status.value(scene.key("NSSpeechStatusOutputBusy")).asInteger() == 0;
    }),
            "it doesn't pause");
}

// What is asked of it before its end is noticed goes to nobody.
void maybeContinue(KillScene& scene, Speaking& speaking) {
    if (scene.below(2) == 0) {
        speaking.object.call("continueSpeaking");
    }
}

Sights pausedInAFile(KillScene& scene) {
    Speaking& speaking = scene.idle();
    require(speaking.start(longText(), scene.file()), "not started");
    speaking.object.call("pauseSpeakingAtBoundary", scene.below(3));
    waitUntilPaused(scene, speaking);
    if (!speaking.isSpeaking()) { // it had come to its end before it was told to pause
        return tooLate(scene, speaking);
    }
    killNow(scene, scene.engine());
    maybeContinue(scene, speaking);
    require(!scene.waitForEnd(speaking), "a killed speech ends with true");
    requireNoFile(scene);
    scene.check({kSpeechEnded});
    return one(Sight::EndFalse);
}

Sights pausedAloud(KillScene& scene) {
    Speaking& speaking = speakAloud(scene);
    speaking.object.call("pauseSpeakingAtBoundary", kImmediately);
    waitUntilPaused(scene, speaking);
    killNow(scene, scene.engine());
    maybeContinue(scene, speaking);
    require(!scene.waitForEnd(speaking), "a killed speech ends with true");
    scene.check({kSpeechEnded});
    return one(Sight::EndFalse);
}

// The host waits for the end of the file.
Sights stoppingAFile(KillScene& scene) {
    Speaking& speaking = scene.idle();
    require(speaking.start(longText(), scene.file()), "not started");
    if (!holdInAFile(scene, speaking)) {
        return tooLate(scene, speaking);
    }
    Killing killing = Killing::whenTheCallerWaits(scene.engine());
    speaking.object.call("stopSpeaking");
    scene.finish(killing);
    require(!speaking.isSpeaking(), "it speaks after it was stopped");
    require(!scene.waitForEnd(speaking), "a stopped speech ends with true");
    requireNoFile(scene);
    scene.check({kSpeechEnded});
    return one(Sight::EndFalse);
}

Sights aboutAStop(KillScene& scene) {
    Speaking& speaking = scene.idle();
    require(speaking.start(longText(), scene.file()), "not started");
    Killing killing = Killing::after(scene.moment(kOfAnAnswer), scene.engine());
    if (scene.below(2) == 0) {
        speaking.object.call("stopSpeaking");
    } else {
        speaking.object.call("stopSpeakingAtBoundary", kAtAWord + scene.below(2));
    }
    return endOfAny(scene, speaking, killing, true);
}

Sights stoppingAloud(KillScene& scene) {
    Speaking& speaking = speakAloud(scene);
    const pid_t engine = scene.engine();
    holdEngine(engine);
    speaking.object.call("stopSpeaking");
    require(!speaking.isSpeaking(), "it speaks after it was stopped");
    killNow(scene, engine);
    require(!scene.waitForEnd(speaking), "a stopped speech ends with true");
    scene.check({});
    return one(Sight::EndFalse);
}

// It is told of the dictionary with the next request; so is the one that takes its place.
Sights dictionaryAdded(KillScene& scene) {
    Speaking& speaking = scene.fresh();
    require(scene.phonemesOfWord(speaking) == scene.plainPhonemes(), "other phonemes");
    speaking.object.call("addSpeechDictionary", scene.dictionary());
    const pid_t engine = scene.engine();
    if (scene.below(2) == 0) {
        require(scene.phonemesOfWord(speaking) != scene.plainPhonemes(), "the dictionary has no effect");
    }
    std::string phonemes;
    if (scene.below(2) == 0) {
        killNow(scene, engine);
        phonemes = scene.phonemesOfWord(speaking);
    } else {
        holdEngine(engine);
        Killing killing = Killing::whenTheCallerWaits(engine);
        phonemes = scene.phonemesOfWord(speaking);
        scene.finish(killing);
    }
    require(phonemes != scene.plainPhonemes() && phonemes.find("kw") != std::string::npos,
            "the dictionary is lost: " + phonemes);
    scene.check({});
    scene.silence(); // the next ones know nothing of it
    return one(Sight::Served);
}

Sights betweenTexts(KillScene& scene) {
    Speaking& speaking = scene.idle();
    require(speaking.start(kShortText, scene.file()), "not started");
    bool isNextStarted = false;
    std::size_t ends = 0;
    speaking.atEnd = [&] {
        killNow(scene, scene.engine());
        ends = speaking.ends.size();
        isNextStarted = speaking.start(kShortText, scene.file());
    };
    require(scene.waitFor([&] { return ends > 0; }), "no end is told");
    require(ends == 1 && isNextStarted, "the next text is refused");
    require(scene.waitForEnd(speaking), "the next text ends with false");
    scene.removeWholeFile(speaking.text);
    scene.check({});
    return one(Sight::Served);
}

// The same text is spoken before, to know when it comes to its end.
Sights atTheEnd(KillScene& scene) {
    using Clock = std::chrono::steady_clock;
    Speaking& speaking = scene.idle();
    require(speaking.start(longText(), scene.file()), "not started");
    const Clock::time_point begin = Clock::now();
    require(scene.waitForEnd(speaking), "a speech that nobody ended ends with false");
    const auto whole = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - begin);
    require(speaking.start(longText(), scene.file()), "not started");
    Killing killing = Killing::after(whole * (90 + scene.below(20)) / 100, scene.engine());
    return endOfAny(scene, speaking, killing);
}

Sights besideAnother(KillScene& scene) {
    Speaking& killed = scene.idle();
    const pid_t engine = scene.engine();
    const std::filesystem::path otherFile = scene.file().string() + ".other.wav";
    bool isInTime = true;
    {
        Speaking other(scene.runtime());
        require(other.start(longText(), otherFile) && killed.start(longText(), scene.file()), "not started");
        holdEngine(engine);
        isInTime = killed.isSpeaking();
        killNow(scene, engine);
        require(scene.waitForEnd(killed) != isInTime, "the speech doesn't end as it must");
        require(scene.waitForEnd(other), "the other one's speech ends with false");
    }
    scene.requireWhole(otherFile, longText());
    std::filesystem::remove(otherFile);
    if (!isInTime) {
        scene.removeWholeFile(killed.text);
        scene.check({});
        return one(Sight::NotKilled);
    }
    requireNoFile(scene);
    scene.check({kSpeechEnded});
    return one(Sight::EndFalse);
}

// While its object ends, and tells it to stop.
Sights withItsObject(KillScene& scene) {
    Speaking& speaking = scene.idle();
    require(speaking.start(longText(), scene.file()), "not started");
    const pid_t engine = scene.engine();
    holdEngine(engine);
    scene.runtime().runFor(host::Seconds(0));
    const bool wasEnded = !speaking.ends.empty();
    Killing killing = Killing::after(scene.moment(kOfAnAnswer), engine);
    speaking.object.reset();
    scene.finish(killing);
    require(wasEnded || speaking.ends.empty(), "an end is told of an object that is gone");
    const std::string text = speaking.text;
    scene.silence();
    if (scene.hasFile()) {
        scene.removeWholeFile(text);
    }
    scene.check({});
    return one(wasEnded ? Sight::NotKilled : Sight::Nothing);
}

// ---- listening

void requireAllHeard(KillScene& scene, const Hearing& hearing, std::size_t times = 1) {
    require(scene.waitFor([&] { return hearing.timesEnded >= times; }), "the file's end is not told");
    std::vector<std::string> wanted;
    for (std::size_t time = 0; time < times; ++time) {
        wanted.insert(wanted.end(), kCommands.begin(), kCommands.end());
    }
    require(hearing.commands == wanted,
            std::to_string(hearing.commands.size()) + " commands were heard, each once expected");
    require(hearing.failures.empty(), "a failure is told");
}

enum class Kill {
    Early,      // before all could be heard
    InTime,     // before the file's end was told; what the next engine had left to hear, the log tells
    TooLate,    // after it
    BeforeNext, // after it, and before the file was listened to again
};

// What comes of a kill while a file is listened to.
template <typename Work>
Sights hearFile(KillScene& scene, Work listen) {
    scene.silence();
    Kill kill = Kill::TooLate;
    {
        ZQMPlatformListenToFile(scene.phrases().c_str());
        Hearing hearing(scene.runtime(), kCommands);
        kill = listen(hearing);
        requireAllHeard(scene, hearing, std::max<std::size_t>(1, hearing.timesEnded));
        hearing.object.call("stopListening");
    }
    const bool isReplaced = scene.check({}, kListeningReplaced);
    require(isReplaced || kill != Kill::Early, "no other engine goes on listening");
    const bool isServed = kill == Kill::BeforeNext || (isReplaced && kill != Kill::TooLate);
    return one(isServed ? Sight::Served : Sight::NotKilled);
}

void waitForEndOfFile(KillScene& scene, const Hearing& hearing, std::size_t times = 1) {
    require(scene.waitFor([&] { return hearing.timesEnded >= times; }), "the file's end is not told");
}

Sights firstListening(KillScene& scene) {
    return hearFile(scene, [&](Hearing& hearing) {
        Killing killing = Killing::ofTheNext(scene.moment(kOfAFirstAnswer));
        hearing.object.call("startListening");
        scene.finish(killing);
        return Kill::Early;
    });
}

Sights listeningToAFile(KillScene& scene) {
    return hearFile(scene, [&](Hearing& hearing) {
        hearing.object.call("startListening");
        Killing killing = Killing::after(scene.moment(kOfListening), scene.engine());
        waitForEndOfFile(scene, hearing);
        const bool isInTime = killing.isDone();
        scene.finish(killing);
        return isInTime ? Kill::InTime : Kill::TooLate;
    });
}

Sights betweenPhrases(KillScene& scene) {
    return hearFile(scene, [&](Hearing& hearing) {
        hearing.atFirst = [&] { killNow(scene, scene.engine()); };
        hearing.object.call("startListening");
        waitForEndOfFile(scene, hearing);
        return Kill::InTime;
    });
}

Sights atTheEndOfAFile(KillScene& scene) {
    return hearFile(scene, [&](Hearing& hearing) {
        hearing.object.call("startListening");
        waitForEndOfFile(scene, hearing);
        killNow(scene, scene.engine());
        hearing.object.call("stopListening");
        hearing.object.call("startListening");
        waitForEndOfFile(scene, hearing, 2);
        return Kill::BeforeNext;
    });
}

Sights listeningToTheMicrophone(KillScene& scene) {
    scene.silence();
    {
        Hearing hearing(scene.runtime(), kCommands);
        hearing.object.call("startListening");
        require(scene.waitFor([&] { return hearing.timesBegan == 1; }), "no sound arrives");
        killNow(scene, scene.engine());
        require(scene.waitFor([&] { return hearing.timesBegan == 2; }), "no sound arrives any more");
        require(hearing.failures.empty(), "a failure is told");
    }
    scene.check({kListeningReplaced});
    return one(Sight::Served);
}

constexpr auto kStates = std::to_array<KillState>({
    {"idle", 70, idle},
    {"just created", 70, justCreated},
    {"asked for the voices", 50, askedForVoices},
    {"asked for phonemes", 60, askedForPhonemes},
    {"asked for phonemes, just created", 50, firstAskedForPhonemes},
    {"properties set and read", 50, propertiesInSpeech},
    {"at a start", 70, atAStart},
    {"about a start", 70, aboutAStart},
    {"at a start aloud", 5, aloudAtAStart},
    {"early in a file", 70, earlyInAFile},
    {"late in a file", 50, lateInAFile},
    {"anywhere in a file", 60, anywhereInAFile},
    {"in a file that replaces one", 40, overAFile},
    {"aloud", 30, aloud},
    {"paused in a file", 50, pausedInAFile},
    {"paused aloud", 20, pausedAloud},
    {"stopping a file", 50, stoppingAFile},
    {"about a stop", 50, aboutAStop},
    {"stopping aloud", 15, stoppingAloud},
    {"a dictionary is added", 40, dictionaryAdded},
    {"between two texts", 40, betweenTexts},
    {"at the end", 50, atTheEnd},
    {"beside another one", 20, besideAnother},
    {"as its object ends", 30, withItsObject},
    {"begins to listen", 6, firstListening},
    {"listens to a file", 6, listeningToAFile},
    {"between two phrases", 6, betweenPhrases},
    {"at the end of a file", 4, atTheEndOfAFile},
    {"listens to the microphone", 6, listeningToTheMicrophone},
});

} // namespace

std::span<const KillState> killStates() {
    return kStates;
}

int killAskedForVoices(const std::string& plugin, std::uint64_t seed) {
    std::mt19937_64 random(seed);
    host::Runtime runtime;
    support::loadPlugin(runtime, plugin);
    const EngineProcesses engines;
    const auto fail = [](const char* why) {
        std::cerr << why << '\n';
        return EXIT_FAILURE;
    };
    const auto areReaped = [&] {
        constexpr host::Seconds kPatience{300};
        return runtime.runUntil([&] { return engines.reapOrphans() && engines.all().empty(); }, kPatience);
    };
    std::size_t refused = 0;
    std::size_t descriptors = 0; // after the first refusal
    const std::size_t most = 1 + random() % kMostKillsOfVoices;
    while (refused < most) {
        Killing killing = Killing::ofTheNext(randomMoment(random, kOfAFirstAnswer));
        const std::int64_t voices = runtime.callShared(kSynthesizer, "availableVoicesCount").asInteger();
        const bool isKilled = killing.finish() != 0;
        if (voices != 0) { // answered, before the kill if there was one
            break;
        }
        ++refused;
        if (!isKilled || !areReaped()) {
            return fail(isKilled ? "an engine is left" : "no voices, though no engine was killed");
        }
        const std::size_t open = support::openDescriptors();
        if (refused > 1 && open != descriptors) {
            return fail("descriptors are left");
        }
        descriptors = open;
    }
    const host::Object object = runtime.construct(kSynthesizer);
    if (object.get("voice").asText().empty() || !runtime.reports().empty()) {
        return fail("no voice, or the interface was breached");
    }
    if (!areReaped()) {
        return fail("an engine is left");
    }
    std::cout << refused << '\n';
    return EXIT_SUCCESS;
}

} // namespace zqm::endurance
