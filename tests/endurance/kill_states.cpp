#include "tests/endurance/kill_states.h"

#include "tests/support/process.h"
#include "tests/support/sibling_library.h"
#include "tests/support/sound_file.h"
#include "zqmplatform/listening.h"

#include <algorithm>
#include <array>
#include <iostream>
#include <sstream>

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

// Of about two minutes, a tenth of a second for an engine; the mark is in its last third.
const std::string& longText() {
    static const std::string text = [] {
        std::string sentences;
        for (int sentence = 0; sentence < 60; ++sentence) {
            sentences += sentence == 40 ? "[[sync 0x4C415445]]" : "";
            sentences += "One word comes after the other. ";
        }
        return sentences;
    }();
    return text;
}

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
    scene.removeWholeFile();
    return one(Sight::NotKilled);
}

// How a speech has ended whose engine was killed at a moment that nobody knows.
Sights endOfAny(KillScene& scene, Speaking& speaking) {
    const bool isComplete = scene.waitForEnd(speaking);
    require(!isComplete || scene.hasFile(), "a complete speech has no file");
    if (scene.hasFile()) {
        scene.removeWholeFile(); // of a false end, too: the engine had just given it its name
    }
    scene.check({}, kSpeechEnded);
    return one(isComplete ? Sight::EndTrue : Sight::EndFalse);
}

// What comes of a kill in mid-speech into a file.
Sights killHeld(KillScene& scene, Speaking& speaking) {
    if (!scene.holdSpeaking(speaking)) {
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
    const bool isStarted = speaking.start("Hi.", scene.file());
    scene.killed = killing.finish();
    require(scene.killed != 0, "no engine was started");
    if (isStarted) {
        return endOfAny(scene, speaking);
    }
    requireNoFile(scene);
    require(speaking.ends.empty(), "a speech that wasn't started ends");
    scene.check({kStartRefused});
    return one(Sight::Refused);
}

Sights askedForVoices(KillScene& scene) {
    const support::ProcessResult result =
        support::runProcess("/proc/self/exe", {"--voices", std::to_string(scene.below(1'000'000'000))});
    require(result.succeeded(), "asking for voices: " + result.errors);
    std::istringstream counts(result.output);
    Sights sights;
    counts >> sights[Sight::Refused] >> sights[Sight::Served];
    return sights;
}

Sights askedForPhonemes(KillScene& scene) {
    Speaking& speaking = scene.idle();
    const pid_t engine = scene.engine();
    holdEngine(engine);
    Killing killing = Killing::whenTheCallerWaits(engine);
    const std::string phonemes = scene.phonemesOfWord(speaking);
    scene.killed = killing.finish();
    require(phonemes == scene.plainPhonemes(), "other phonemes: " + phonemes);
    scene.check({});
    return one(Sight::Served);
}

Sights firstAskedForPhonemes(KillScene& scene) {
    Speaking& speaking = scene.fresh();
    Killing killing = Killing::ofTheNext(scene.moment(kOfAFirstAnswer));
    const std::string phonemes = scene.phonemesOfWord(speaking);
    scene.killed = killing.finish();
    require(phonemes.empty() || phonemes == scene.plainPhonemes(), "other phonemes: " + phonemes);
    scene.check(phonemes.empty() ? std::vector<std::string>{kPhonemesRefused} : std::vector<std::string>());
    return one(phonemes.empty() ? Sight::Refused : Sight::Served);
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
    scene.killed = killing.finish();
    require(speaking.object.get("Rate").asDouble() == 119, "a property is lost");
    speaking.object.set("Rate", 175);
    return endOfAny(scene, speaking);
}

Sights atAStart(KillScene& scene) {
    Speaking& speaking = scene.idle();
    const pid_t engine = scene.engine();
    holdEngine(engine);
    Killing killing = Killing::whenTheCallerWaits(engine);
    const bool isStarted = speaking.start("Hi.", scene.file());
    scene.killed = killing.finish();
    require(isStarted, "a start is refused though the next engine could serve it");
    require(scene.waitForEnd(speaking), "a start ends with false though the next engine could serve it");
    scene.removeWholeFile();
    scene.check({});
    return one(Sight::Served);
}

Sights aboutAStart(KillScene& scene) {
    Speaking& speaking = scene.idle();
    Killing killing = Killing::after(scene.moment(kOfAnAnswer), scene.engine());
    require(speaking.start("Hi.", scene.file()), "a start is refused though the next engine could serve it");
    scene.killed = killing.finish();
    return endOfAny(scene, speaking);
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
    scene.waitForEnd(speaking);
    scene.killed = killing.finish();
    return endOfAny(scene, speaking);
}

Sights overAFile(KillScene& scene) {
    Speaking& speaking = scene.idle();
    require(speaking.start("Hi.", scene.file()) && scene.waitForEnd(speaking), "not spoken");
    const auto size = std::filesystem::file_size(scene.file());
    require(speaking.start(longText(), scene.file()), "not started");
    require(scene.waitFor([&] { return speaking.words > 0; }), "no word is told");
    if (!scene.holdSpeaking(speaking)) {
        return tooLate(scene, speaking);
    }
    killNow(scene, scene.engine());
    require(!scene.waitForEnd(speaking), "a killed speech ends with true");
    require(std::filesystem::file_size(scene.file()) == size, "the file from before is lost");
    scene.removeWholeFile();
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
    require(speaking.startAloud("Hi."), "a start is refused though the next engine could serve it");
    scene.killed = killing.finish();
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
    if (!scene.holdSpeaking(speaking)) {
        return tooLate(scene, speaking);
    }
    Killing killing = Killing::whenTheCallerWaits(scene.engine());
    speaking.object.call("stopSpeaking");
    scene.killed = killing.finish();
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
    scene.killed = killing.finish();
    return endOfAny(scene, speaking);
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
    const std::string wanted = "sIYkwAXl";
    std::string phonemes;
    if (scene.below(2) == 0) {
        killNow(scene, engine);
        phonemes = scene.phonemesOfWord(speaking);
    } else {
        holdEngine(engine);
        Killing killing = Killing::whenTheCallerWaits(engine);
        phonemes = scene.phonemesOfWord(speaking);
        scene.killed = killing.finish();
    }
    require(phonemes != scene.plainPhonemes() && phonemes.find("kw") != std::string::npos,
            "the dictionary is lost: " + phonemes);
    scene.check({});
    scene.silence(); // the next ones know nothing of it
    return one(Sight::Served);
}

Sights betweenTexts(KillScene& scene) {
    Speaking& speaking = scene.idle();
    require(speaking.start("Hi.", scene.file()), "not started");
    bool isNextStarted = false;
    std::size_t ends = 0;
    speaking.atEnd = [&] {
        killNow(scene, scene.engine());
        ends = speaking.ends.size();
        isNextStarted = speaking.start("Hi.", scene.file());
    };
    require(scene.waitFor([&] { return ends > 0; }), "no end is told");
    require(ends == 1 && isNextStarted, "the next text is refused");
    require(scene.waitForEnd(speaking), "the next text ends with false");
    scene.removeWholeFile();
    scene.check({});
    return one(Sight::Served);
}

Sights atTheEnd(KillScene& scene) {
    Speaking& speaking = scene.idle();
    require(speaking.start("Hi.", scene.file()), "not started");
    Killing killing = Killing::after(scene.moment(kOfAnAnswer), scene.engine());
    scene.waitForEnd(speaking);
    scene.killed = killing.finish();
    return endOfAny(scene, speaking);
}

Sights besideAnother(KillScene& scene) {
    Speaking& killed = scene.idle();
    const pid_t engine = scene.engine();
    const std::filesystem::path otherFile = scene.file().string() + ".other.wav";
    {
        Speaking other(scene.runtime());
        require(other.start(longText(), otherFile) && killed.start(longText(), scene.file()), "not started");
        killNow(scene, engine);
        scene.waitForEnd(killed);
        require(scene.waitForEnd(other), "the other one's speech ends with false");
    }
    require(support::SoundFile(otherFile).seconds() > 60, "the other one's file is not whole");
    std::filesystem::remove(otherFile);
    return endOfAny(scene, killed);
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
    scene.killed = killing.finish();
    require(wasEnded || speaking.ends.empty(), "an end is told of an object that is gone");
    scene.silence();
    if (scene.hasFile()) {
        scene.removeWholeFile();
    }
    scene.check({});
    return one(wasEnded ? Sight::EndTrue : Sight::Nothing);
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

// The kill answers whether the engine was sure to be replaced; else it may have told all before.
template <typename Kill>
Sights hearFile(KillScene& scene, Kill kill) {
    scene.silence();
    bool isReplaced = true;
    {
        ZQMPlatformListenToFile(scene.phrases().c_str());
        Hearing hearing(scene.runtime(), kCommands);
        isReplaced = kill(hearing);
        requireAllHeard(scene, hearing, isReplaced ? 1 : hearing.timesEnded);
        hearing.object.call("stopListening");
    }
    if (isReplaced) {
        scene.check({kListeningReplaced});
    } else {
        scene.check({}, kListeningReplaced);
    }
    return one(Sight::Served);
}

Sights firstListening(KillScene& scene) {
    return hearFile(scene, [&](Hearing& hearing) {
        Killing killing = Killing::ofTheNext(scene.moment(kOfAFirstAnswer));
        hearing.object.call("startListening");
        scene.killed = killing.finish();
        require(scene.killed != 0, "no engine was started");
        return true;
    });
}

Sights listeningToAFile(KillScene& scene) {
    return hearFile(scene, [&](Hearing& hearing) {
        hearing.object.call("startListening");
        Killing killing = Killing::after(scene.moment(kOfListening), scene.engine());
        require(scene.waitFor([&] { return hearing.timesEnded > 0; }), "the file's end is not told");
        scene.killed = killing.finish();
        return false;
    });
}

Sights betweenPhrases(KillScene& scene) {
    return hearFile(scene, [&](Hearing& hearing) {
        hearing.atFirst = [&] { killNow(scene, scene.engine()); };
        hearing.object.call("startListening");
        require(scene.waitFor([&] { return hearing.timesEnded > 0; }), "the file's end is not told");
        return false;
    });
}

Sights atTheEndOfAFile(KillScene& scene) {
    return hearFile(scene, [&](Hearing& hearing) {
        hearing.object.call("startListening");
        require(scene.waitFor([&] { return hearing.timesEnded > 0; }), "the file's end is not told");
        killNow(scene, scene.engine());
        hearing.object.call("stopListening");
        hearing.object.call("startListening");
        require(scene.waitFor([&] { return hearing.timesEnded > 1; }), "the second end is not told");
        return false;
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
    std::size_t refused = 0;
    std::size_t served = 0;
    const std::size_t most = 1 + random() % kMostKillsOfVoices;
    std::int64_t voices = 0;
    while (voices == 0 && refused < most) {
        Killing killing = Killing::ofTheNext(randomMoment(random, kOfAFirstAnswer));
        voices = runtime.callShared(kSynthesizer, "availableVoicesCount").asInteger();
        const bool isKilled = killing.finish() != 0;
        if (voices == 0 && !isKilled) {
            std::cerr << "no voices, though no engine was killed\n";
            return EXIT_FAILURE;
        }
        (voices == 0 ? refused : served) += isKilled ? 1 : 0;
    }
    const host::Object object = runtime.construct(kSynthesizer);
    const bool isReaped = runtime.runUntil(
        [&] {
            object.get("isSpeaking");
            return engines.all().empty();
        },
        host::Seconds(300));
    if (object.get("voice").asText().empty() || !isReaped || !runtime.reports().empty()) {
        std::cerr << (isReaped ? "no voice, or the interface was breached\n" : "an engine is left\n");
        return EXIT_FAILURE;
    }
    std::cout << refused << ' ' << served << '\n';
    return EXIT_SUCCESS;
}

} // namespace zqm::endurance
