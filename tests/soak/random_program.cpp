#include "tests/soak/random_program.h"

#include "tests/soak/episode_log.h"
#include "tests/soak/nested_values.h"
#include "tests/support/generated_text.h"
#include "tests/support/process_table.h"
#include "tests/support/sibling_library.h"
#include "tests/support/speech_dictionary.h"
#include "tests/support/spoken_phrases.h"
#include "tests/support/utf16.h"
#include "zqmplatform/listening.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <numeric>
#include <stdexcept>
#include <thread>
#include <utility>

namespace zqm::soak {
namespace {

namespace fs = std::filesystem;
using host::ByRef;
using host::ElementType;
using host::Value;

constexpr const char* kSynthesizer = "NSSpeechSynthesizerZQM";
constexpr const char* kRecognizer = "NSSpeechRecognizerZQM";
constexpr host::Seconds kPatience{300};
constexpr std::size_t kMostActions = 40;
constexpr std::size_t kMostSpeakers = 4;
constexpr std::size_t kMostRecognizers = 2;
constexpr std::size_t kListensOnceIn = 20; // episodes
constexpr const char* kOwnEnds = "engines ended by themselves";
constexpr std::size_t kEpisodesOfOneEnd = 100;
const std::vector<std::string> kCommands{"open the window", "close the door"};
constexpr auto kExtensions = std::to_array<const char*>({".wav", ".aiff", ".flac", ".ogg", ".aifc", ""});
constexpr auto kPropertiesRead = std::to_array<const char*>(
    {"NSSpeechStatusProperty", "NSSpeechErrorsProperty", "NSSpeechRateProperty", "NSSpeechPitchBaseProperty",
     "NSSpeechSynthesizerInfoProperty", "NSSpeechPhonemeSymbolsProperty", "NSSpeechRecentSyncProperty",
     "NSSpeechVolumeProperty", "NSSpeechResetProperty"});
constexpr auto kCommandsInTexts = std::to_array<const char*>(
    {"[[rate 300]]", "[[volm 0.5]]", "[[sync 0x41]]", "[[slnc 100]]", "[[pbas 60]]", "[[what]]", "[[volm 9]]",
     "[[char LTRL]]", "[[char NORM]]", "[[rset 0]]"});

void require(bool isSo, const std::string& words) {
    if (!isSo) {
        throw std::runtime_error(words);
    }
}

} // namespace

const std::vector<RandomProgram::Action>& RandomProgram::actions() {
    static const std::vector<Action> actions{
        {"spoken into files", 12, &RandomProgram::withAnySpeaker<&RandomProgram::speakIntoFile>},
        {"spoken aloud", 3, &RandomProgram::withAnySpeaker<&RandomProgram::speakAloud>},
        {"refused starts", 2, &RandomProgram::withAnySpeaker<&RandomProgram::speakIntoNothing>},
        {"stopped, paused and continued", 8, &RandomProgram::withAnySpeaker<&RandomProgram::control>},
        {"rates, volumes and voices set", 6, &RandomProgram::withAnySpeaker<&RandomProgram::setManner>},
        {"properties set", 5, &RandomProgram::withAnySpeaker<&RandomProgram::setProperty>},
        {"nested values converted", 5, &RandomProgram::withAnySpeaker<&RandomProgram::setNestedValue>},
        {"properties read", 5, &RandomProgram::withAnySpeaker<&RandomProgram::readProperties>},
        {"phonemes asked for", 3, &RandomProgram::withAnySpeaker<&RandomProgram::askPhonemes>},
        {"voices asked for", 2, &RandomProgram::askVoices},
        {"dictionaries added", 2, &RandomProgram::withAnySpeaker<&RandomProgram::addDictionary>},
        {"exceptions raised", 1, &RandomProgram::raise},
        {"objects made", 5, &RandomProgram::makeSpeaker},
        {"objects copied", 5, &RandomProgram::withAnySpeaker<&RandomProgram::copyLock>},
        {"objects released", 5, &RandomProgram::withAnySpeaker<&RandomProgram::releaseLock>},
        {"listenings begun", 1, &RandomProgram::listen},
        {"listenings stopped", 1, &RandomProgram::stopListening},
        {"engines killed", 2, &RandomProgram::killEngine},
        {"engines stopped and continued", 1, &RandomProgram::stopEngine},
        {"run loops run", 10, &RandomProgram::runLoop},
    };
    return actions;
}

RandomProgram::RandomProgram(const std::string& plugin, std::uint64_t seed)
    : random_(seed), runtimeFolder_("XDG_RUNTIME_DIR", user_.path().string()), useServer_(server_) {
    for (const Action& action : actions()) {
        done_[action.name] = 0;
    }
    done_[kOwnEnds] = 0;
    support::writeSpokenPhrases(kCommands, user_ / "phrases.wav");
    engines_ = std::make_unique<endurance::EngineProcesses>();
    support::loadPlugin(runtime_, plugin);
    for (const Value& voice :
         host::Array(runtime_.callShared(kSynthesizer, "availableVoices").asObject()).values()) {
        voices_.push_back(voice.asText());
    }
    require(!voices_.empty(), "there are no voices");
    require(runtime_.runUntil(
                [&] {
                    runtime_.construct(kSynthesizer).get("isSpeaking");
                    return engines_->all().empty();
                },
                kPatience),
            "the engine that told the voices doesn't end");

    speaker_ = runtime_.construct(kSynthesizer, "gmw/en-US");
    speaker_.on("didFinishSpeaking",
                [this](const host::Arguments& end) { ends_ += end[0].asBool() ? 1 : 0; });
    speakThroughResident();
    speakingEngine_ = engines_->all().front();
    recognizer_ = runtime_.create(kRecognizer);
    recognizer_.call("setCommands",
                     runtime_.array(ElementType::String, {kCommands.begin(), kCommands.end()}));
    recognizer_.on("DidRecognizeCommand",
                   [this](const host::Arguments& command) { heard_.push_back(command[0].asText()); });
    listenThroughResident();
    for (const pid_t engine : engines_->all()) {
        listeningEngine_ = engine != speakingEngine_ ? engine : listeningEngine_;
    }
    warmUp();
    judgeLog();
}

// The host runtime keeps the memory of as many handles as were ever alive at once, and Foundation that of its
// largest autorelease pool. The most of both are those of a voice's properties: of the characters of Chinese.
// They are there before anything is sampled.
void RandomProgram::warmUp() {
    host::Object speaker = runtime_.construct(kSynthesizer);
    for (const std::string& voice : voices_) {
        const Value properties =
            runtime_.callShared(kSynthesizer, "attributesForVoice", voice).asObject().call("Properties");
        Value error;
        speaker.call("setObjectForProperty", properties, key("NSSpeechCurrentVoiceProperty"), ByRef{&error});
    }
}

RandomProgram::~RandomProgram() {
    ZQMPlatformListenToFile(nullptr);
}

void RandomProgram::speakThroughResident() {
    const std::size_t before = ends_;
    const fs::path file = folder_ / "resident.wav";
    require(speaker_.call("startSpeakingString", "This is the one that stays.", "file://" + file.string())
                .asBool(),
            "the object that stays can't start");
    require(runtime_.runUntil([&] { return ends_ > before; }, kPatience),
            "the object that stays doesn't end");
    require(fs::file_size(file) > 1000, "the object that stays has written no sound");
}

void RandomProgram::listenThroughResident() {
    heard_.clear();
    ZQMPlatformListenToFile((user_ / "phrases.wav").c_str());
    recognizer_.call("startListening");
    require(runtime_.runUntil([&] { return heard_.size() >= kCommands.size(); }, kPatience),
            "the object that stays hears nothing");
    recognizer_.call("stopListening");
    require(heard_ == kCommands, "the object that stays hears something else");
}

void RandomProgram::episode() {
    ++episodes_;
    static const int sum = std::accumulate(actions().begin(), actions().end(), 0,
                                           [](int all, const Action& each) { return all + each.weight; });
    makeSpeaker();
    for (std::size_t count = 1 + below(kMostActions); count > 0; --count) {
        int place = static_cast<int>(below(static_cast<std::size_t>(sum)));
        const auto action = std::ranges::find_if(actions(), [&](const Action& each) {
            place -= each.weight;
            return place < 0;
        });
        act(*action);
    }
    finish();
    speakThroughResident();
    if (episodes_ % kListensOnceIn == 0) {
        listenThroughResident();
    }
}

bool RandomProgram::act(std::string_view name) {
    const auto action = std::ranges::find(actions(), name, &Action::name);
    require(action != actions().end(), "there is no action \"" + std::string(name) + '"');
    return act(*action);
}

bool RandomProgram::act(const Action& action) {
    const bool isDone = (this->*action.run)();
    done_[action.name] += isDone ? 1 : 0;
    return isDone;
}

// All that was begun ends, and all that was made is gone.
void RandomProgram::finish() {
    for (const auto& speaker : speakers_) {
        speaker->locks.front().call("stopSpeaking");
    }
    for (const auto& speaker : speakers_) {
        require(runtime_.runUntil([&] { return speaker->ends >= speaker->starts; }, kPatience),
                "no end of a speech is told");
    }
    runtime_.runFor(host::Seconds(0));
    for (const auto& speaker : speakers_) {
        require(speaker->ends == speaker->starts, "the end of a speech is told twice");
    }
    while (!speakers_.empty()) {
        speakers_.erase(speakers_.begin() + static_cast<std::ptrdiff_t>(below(speakers_.size())));
    }
    recognizers_.clear();
    require(runtime_.runUntil(
                [&] {
                    speaker_.get("isSpeaking");
                    return engines_->reapOrphans() && engines_->all().size() <= 2;
                },
                kPatience),
            "an engine, or its process for files, outlives its object");
    require(engines_->living().size() == 2, "an engine that nobody killed has ended");
    for (const auto& entry : fs::directory_iterator(folder_.path())) {
        require(!entry.path().filename().string().starts_with("."), "an unfinished file is left");
        fs::remove(entry.path());
    }
    require(runtime_.takeRaised().empty(), "something was raised outside of a call");
    for (const host::Report& report : runtime_.reports()) {
        throw std::runtime_error(std::string(host::nameOf(report.kind)) + ": " + report.text);
    }
    judgeLog();
    texts_.clear();
}

// Some random words crash the library that speaks (tests/faults/crashing_text_test.cpp); the host program is
// told. That may be seldom, and is counted. By the texts of the episode it can be told whether it was that.
void RandomProgram::judgeLog() {
    std::vector<std::string> lines = unexplained(log_.take(), std::exchange(hasKilledEngines_, false));
    std::size_t& ends = done_[kOwnEnds];
    if (const std::size_t more = std::erase_if(lines, tellsEndOfEngine); more > 0) {
        ends += more;
        log_.print("Engines ended by themselves in episode " + std::to_string(episodes_) + ". It spoke:");
        std::ranges::for_each(texts_, [this](const std::string& text) { log_.print(text); });
    }
    require(ends <= 1 + episodes_ / kEpisodesOfOneEnd, "engines end by themselves too often");
    std::string words;
    for (const std::string& line : lines) {
        words += "\n    " + line;
    }
    require(words.empty(), "nothing explains what was logged:" + words);
}

template <bool (RandomProgram::*run)(Speaker&)>
bool RandomProgram::withAnySpeaker() {
    return !speakers_.empty() && (this->*run)(*speakers_[below(speakers_.size())]);
}

std::optional<pid_t> RandomProgram::anyEngine() {
    std::vector<pid_t> engines = engines_->living();
    std::erase(engines, speakingEngine_);
    std::erase(engines, listeningEngine_);
    return engines.empty() ? std::nullopt : std::optional(engines[below(engines.size())]);
}

host::String RandomProgram::hostText(std::size_t mostUnits, const Speaker& speaker) {
    support::TextGenerator generator(random_());
    std::u16string units = generator.next(below(mostUnits));
    for (std::size_t count = below(4); count > 0; --count) {
        const std::string command = kCommandsInTexts.at(below(kCommandsInTexts.size()));
        units.insert(below(units.size() + 1), std::u16string(command.begin(), command.end()));
    }
    texts_.push_back(speaker.locks.front().get("voice").asText() + ": " + support::toUtf8(units));
    return runtime_.string({reinterpret_cast<const char*>(units.data()), units.size() * 2},
                           host::encoding::kUtf16);
}

std::string RandomProgram::key(const char* name) {
    std::string& key = keys_[name];
    if (key.empty()) {
        key = runtime_.callShared(kSynthesizer, name).asText();
    }
    return key;
}

fs::path RandomProgram::newFile() {
    return folder_ / ("speech" + std::to_string(++files_) + kExtensions.at(below(kExtensions.size())));
}

bool RandomProgram::makeSpeaker() {
    if (speakers_.size() == kMostSpeakers) {
        return false;
    }
    auto speaker = std::make_unique<Speaker>();
    host::Object object = below(2) == 0 ? runtime_.construct(kSynthesizer)
                                        : runtime_.construct(kSynthesizer, voices_[below(voices_.size())]);
    object.on("didFinishSpeaking", [told = speaker.get()](const host::Arguments&) { ++told->ends; });
    if (below(2) == 0) {
        object.on("willSpeakWord", [](const host::Arguments& word) {
            require(word[1].asInteger() > 0, "a word without a length is told");
        });
    }
    if (below(4) == 0) {
        object.on("willSpeakPhoneme", [](const host::Arguments&) {});
        object.on("didEncounterErrorAtIndex", [](const host::Arguments&) {});
        object.on("didEncounterSyncMessage", [](const host::Arguments&) {});
    }
    speaker->locks.push_back(std::move(object));
    speakers_.push_back(std::move(speaker));
    return true;
}

// A start that is refused has no end; it may be, when its engine was killed.
bool RandomProgram::speakIntoFile(Speaker& speaker) {
    const std::string url = "file://" + newFile().string();
    const host::String text = hostText(below(10) == 0 ? 3000 : 200, speaker);
    const bool isStarted = speaker.locks.back().call("startSpeakingString", text, url).asBool();
    speaker.starts += isStarted ? 1 : 0;
    return isStarted;
}

bool RandomProgram::speakAloud(Speaker& speaker) {
    const bool isStarted = speaker.locks.back().call("startSpeakingString", hostText(60, speaker)).asBool();
    speaker.starts += isStarted ? 1 : 0;
    runtime_.runFor(host::Seconds(0.1));
    return isStarted;
}

bool RandomProgram::speakIntoNothing(Speaker& speaker) {
    host::Object& object = speaker.locks.back();
    require(!object.call("startSpeakingString", "Hi.", "file:///nonexistent/folder/a.wav").asBool(),
            "a file in no folder is started");
    require(!object.call("startSpeakingString", "Hi.", "no URL").asBool(), "no URL is started");
    require(!object.call("startSpeakingString", host::String(), host::String()).asBool(),
            "nothing is started");
    return true;
}

// Of one that doesn't speak, too; then there is nothing to count.
bool RandomProgram::control(Speaker& speaker) {
    host::Object& object = speaker.locks.front();
    const bool speaks = speaker.ends < speaker.starts;
    switch (below(4)) {
    case 0:
        object.call("stopSpeaking");
        break;
    case 1:
        object.call("stopSpeakingAtBoundary", below(3));
        break;
    case 2:
        object.call("pauseSpeakingAtBoundary", below(4));
        break;
    default:
        object.call("continueSpeaking");
    }
    return speaks;
}

bool RandomProgram::setManner(Speaker& speaker) {
    host::Object& object = speaker.locks.front();
    object.set("Rate", 80 + below(400));
    object.set("Volume", static_cast<double>(below(100)) / 100);
    return object.call("setVoice", voices_[below(voices_.size())]).asBool();
}

bool RandomProgram::setProperty(Speaker& speaker) {
    const auto set = [&](const Value& value, const char* name) {
        Value error;
        return speaker.locks.front().call("setObjectForProperty", value, key(name), ByRef{&error}).asBool();
    };
    switch (below(4)) {
    case 0:
        return set(static_cast<double>(1 + below(126)), "NSSpeechPitchBaseProperty");
    case 1:
        return set(key("NSSpeechModeLiteral"), "NSSpeechNumberModeProperty");
    case 2: {
        const host::Object voice =
            runtime_.callShared(kSynthesizer, "attributesForVoice", voices_[below(voices_.size())])
                .asObject();
        return set(host::Object(voice).call("Properties"), "NSSpeechCurrentVoiceProperty");
    }
    default:
        return set(nullptr, "NSSpeechResetProperty");
    }
}

// It is converted before it is refused.
bool RandomProgram::setNestedValue(Speaker& speaker) {
    Value error;
    const Value value = nestedValue(runtime_, random_, 4);
    speaker.locks.front().call("setObjectForProperty", value, key("NSSpeechCommandDelimiterProperty"),
                               ByRef{&error});
    return true;
}

bool RandomProgram::readProperties(Speaker& speaker) {
    Value error;
    speaker.locks.front().call("objectForProperty", key(kPropertiesRead.at(below(kPropertiesRead.size()))),
                               ByRef{&error});
    return error.isNull();
}

bool RandomProgram::askPhonemes(Speaker& speaker) {
    return !speaker.locks.front().call("phonemesFromText", hostText(300, speaker)).isNull();
}

bool RandomProgram::askVoices() {
    const auto index = below(voices_.size());
    require(runtime_.callShared(kSynthesizer, "availableVoice", index).asText() == voices_[index],
            "the voices change");
    host::Object voice = runtime_.callShared(kSynthesizer, "attributesForVoice", voices_[index]).asObject();
    require(voice.call("Identifier").asText() == voices_[index], "a voice is another one");
    return true;
}

bool RandomProgram::addDictionary(Speaker& speaker) {
    const std::string spelling = "word" + std::to_string(below(1000));
    const bool isRight = below(4) != 0;
    speaker.locks.front().call("addSpeechDictionary",
                               support::speechDictionary(runtime_, spelling, isRight ? "d1AOg" : "wrong!"));
    return isRight;
}

bool RandomProgram::raise() {
    try {
        runtime_.callShared(kSynthesizer, "availableVoice", -1);
    } catch (const host::HostException&) {
        return true;
    }
    throw std::runtime_error("a voice of a negative index is no error");
}

bool RandomProgram::copyLock(Speaker& speaker) {
    const host::Object copy = speaker.locks[below(speaker.locks.size())];
    speaker.locks.push_back(copy);
    return true;
}

bool RandomProgram::releaseLock(Speaker& speaker) {
    speaker.locks.erase(speaker.locks.begin() + static_cast<std::ptrdiff_t>(below(speaker.locks.size())));
    std::erase_if(speakers_, [](const auto& each) { return each->locks.empty(); });
    return true;
}

// To a file, or to the silence that a sound server plays.
bool RandomProgram::listen() {
    if (recognizers_.size() == kMostRecognizers) {
        return false;
    }
    host::Object recognizer = runtime_.create(kRecognizer);
    recognizer.on("DidRecognizeCommand", [](const host::Arguments& command) {
        require(std::ranges::find(kCommands, command[0].asText()) != kCommands.end(),
                "what is no command is heard");
    });
    recognizer.call("setCommands", runtime_.array(ElementType::String, {kCommands.begin(), kCommands.end()}));
    ZQMPlatformListenToFile(below(3) == 0 ? nullptr : (user_ / "phrases.wav").c_str());
    recognizer.call("startListening");
    recognizers_.push_back({std::move(recognizer)});
    return true;
}

// One that was stopped before, too; then there is nothing to count.
bool RandomProgram::stopListening() {
    if (recognizers_.empty()) {
        return false;
    }
    Recognizer& recognizer = recognizers_[below(recognizers_.size())];
    recognizer.object.call("stopListening");
    return std::exchange(recognizer.listens, false);
}

bool RandomProgram::killEngine() {
    const auto engine = anyEngine();
    if (!engine || !endurance::killEngine(*engine)) {
        return false;
    }
    hasKilledEngines_ = true;
    while (support::isAlive(*engine)) { // and might be killed again
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

bool RandomProgram::stopEngine() {
    const auto engine = anyEngine();
    if (!engine) {
        return false;
    }
    endurance::holdEngine(*engine);
    const bool isHeld = support::stateOf(*engine) == 'T';
    runtime_.runFor(host::Seconds(0.01));
    endurance::goOn(*engine);
    return isHeld;
}

bool RandomProgram::runLoop() {
    runtime_.runFor(host::Seconds(static_cast<double>(below(50)) / 1000));
    return true;
}

} // namespace zqm::soak
