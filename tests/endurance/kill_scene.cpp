#include "tests/endurance/kill_scene.h"

#include "tests/support/process_table.h"
#include "tests/support/sibling_library.h"
#include "tests/support/sound_file.h"
#include "tests/support/speech_dictionary.h"
#include "tests/support/spoken_phrases.h"
#include "zqmplatform/listening.h"

#include <algorithm>
#include <stdexcept>
#include <sys/wait.h>
#include <utility>

namespace zqm::endurance {
namespace {

constexpr host::Seconds kPatience{300};
constexpr const char* kSynthesizer = "NSSpeechSynthesizerZQM";
constexpr std::size_t kFreshOneIn = 5; // objects, the others are used again

void observe(const ZQMListeningEvent* event, void* context) {
    auto& hearing = *static_cast<Hearing*>(context);
    switch (event->kind) {
    case ZQMListeningBegan:
        ++hearing.timesBegan;
        break;
    case ZQMListeningFailed:
        hearing.failures.emplace_back(event->reason);
        break;
    case ZQMListeningEnded:
        ++hearing.timesEnded;
        break;
    default:
        break;
    }
}

std::string joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
        text += "\n    " + line;
    }
    return text;
}

std::string textOf(const host::Ledger& ledger) {
    const auto count = [](const host::Ledger::Count& each) {
        return std::to_string(each.handles) + '/' + std::to_string(each.locks) + ' ';
    };
    return count(ledger.objects) + count(ledger.strings) + count(ledger.texts) + count(ledger.stringData);
}

// What objectForProperty and its like write of each call is of no interest.
bool isOfProperties(const std::string& line) {
    return line.starts_with("k: ") || line.starts_with("v: ") || line.starts_with("e: ");
}

// Of an engine that ends before it is told anything this is what is noticed first.
void nameTheEnd(std::string& line) {
    constexpr std::string_view kDeaf = "the speech engine does not listen";
    if (line.ends_with(kDeaf)) {
        line.replace(line.size() - kDeaf.size(), kDeaf.size(), "the speech engine ended unexpectedly");
    }
}

} // namespace

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

void require(bool isSo, const std::string& words) {
    if (!isSo) {
        throw std::runtime_error(words);
    }
}

Speaking::Speaking(host::Runtime& runtime) : object(runtime.construct(kSynthesizer, "gmw/en-US")) {
    object.on("willSpeakWord", [this](const host::Arguments&) { ++words; });
    object.on("didEncounterSyncMessage", [this](const host::Arguments&) { ++marks; });
    object.on("didFinishSpeaking", [this](const host::Arguments& end) {
        ends.push_back(end[0].asBool());
        if (const auto call = std::exchange(atEnd, nullptr)) {
            call();
        }
    });
}

void Speaking::begin(const std::string& next) {
    text = next;
    words = 0;
    marks = 0;
    ends.clear();
}

bool Speaking::start(const std::string& next, const std::filesystem::path& file) {
    begin(next);
    return object.call("startSpeakingString", text, "file://" + file.string()).asBool();
}

bool Speaking::startAloud(const std::string& next) {
    begin(next);
    return object.call("startSpeakingString", text).asBool();
}

Hearing::Hearing(host::Runtime& runtime, const std::vector<std::string>& list)
    : object(runtime.create("NSSpeechRecognizerZQM")) {
    object.call("setCommands", runtime.array(host::ElementType::String, {list.begin(), list.end()}));
    object.on("DidRecognizeCommand", [this](const host::Arguments& command) {
        commands.push_back(command[0].asText());
        if (const auto call = std::exchange(atFirst, nullptr)) {
            call();
        }
    });
    ZQMPlatformObserveListening(observe, this);
}

Hearing::~Hearing() {
    ZQMPlatformObserveListening(nullptr, nullptr);
    ZQMPlatformListenToFile(nullptr);
}

KillScene::KillScene(const std::string& plugin, std::uint64_t seed)
    : plugin_(plugin), random_(seed), runtimeFolder_("XDG_RUNTIME_DIR", user_.path().string()),
      useServer_(server_) {
    engines_ = std::make_unique<EngineProcesses>(); // the sound server is none
    support::loadPlugin(runtime_, plugin);
    plainPhonemes_ = phonemesOfWord(fresh());
    require(!plainPhonemes_.empty(), "no phonemes are told");
    measure(kShortText);
    measure(longText());
    check({});
}

bool KillScene::waitFor(const std::function<bool()>& condition) {
    return runtime_.runUntil(condition, kPatience);
}

void KillScene::silence() {
    speaking_.reset();
    // Engines end once their objects have, and are reaped when something is asked.
    require(waitFor([&] {
                runtime_.construct(kSynthesizer).get("isSpeaking");
                return engines_->reapOrphans() && engines_->all().empty();
            }),
            "an engine is left");
}

Speaking& KillScene::fresh() {
    silence();
    speaking_ = std::make_unique<Speaking>(runtime_);
    return *speaking_;
}

Speaking& KillScene::idle() {
    if (speaking_ == nullptr || below(kFreshOneIn) == 0) {
        fresh();
        serve();
    }
    return *speaking_;
}

pid_t KillScene::engine() const {
    const std::vector<pid_t> engines = engines_->living();
    require(engines.size() == 1, std::to_string(engines.size()) + " engines where one was expected");
    return engines.front();
}

bool KillScene::holdSpeaking(Speaking& speaking) const {
    const std::vector<pid_t> engines = engines_->living();
    std::ranges::for_each(engines, holdEngine);
    return speaking.isSpeaking(); // which takes all that was said before
}

bool KillScene::waitForEnd(Speaking& speaking) {
    require(waitFor([&] { return !speaking.ends.empty(); }), "no end is told");
    require(speaking.ends.size() == 1, "the end is told twice");
    require(!speaking.isSpeaking(), "it speaks after its end");
    return speaking.ends.front();
}

void KillScene::measure(const std::string& text) {
    require(fresh().start(text, file()), "a text is refused");
    require(waitForEnd(*speaking_), "a text that nobody disturbs ends with false");
    seconds_[text] = support::SoundFile(file()).seconds();
    std::filesystem::remove(file());
}

void KillScene::requireWhole(const std::filesystem::path& file, const std::string& text) const {
    constexpr double kAny = 0.02;
    const double seconds = support::SoundFile(file).seconds();
    require(seconds > seconds_.at(text) - kAny, "a file of " + std::to_string(seconds) + " s is not whole");
}

void KillScene::removeWholeFile(const std::string& text) const {
    requireWhole(file(), text);
    std::filesystem::remove(file());
}

void KillScene::removePart() const {
    require(support::SoundFile(file()).seconds() > 0, "a stopped speech leaves a file without sound");
    std::filesystem::remove(file());
}

void KillScene::finish(Killing& killing) {
    killed = killing.finish();
    require(killed != 0, "the engine had ended by itself");
}

bool KillScene::isReplaced() const {
    return std::ranges::any_of(engines_->living(), [this](pid_t engine) { return engine != killed; });
}

std::string KillScene::phonemesOfWord(Speaking& speaking) const {
    const host::Value answer = speaking.object.call("phonemesFromText", kWord);
    return answer.isNull() ? std::string() : answer.asText();
}

std::string KillScene::key(const char* name) {
    std::string& key = keys_[name];
    if (key.empty()) {
        key = runtime_.callShared(kSynthesizer, name).asText();
    }
    return key;
}

host::Dictionary KillScene::dictionary() {
    return support::speechDictionary(runtime_, kWord, "sIYkwAXl");
}

std::filesystem::path KillScene::phrases() {
    const std::filesystem::path file = user_ / "phrases.wav";
    if (!std::filesystem::exists(file)) {
        support::writeSpokenPhrases({"open the window", "close the door"}, file);
    }
    return file;
}

// Aloud and listening have engines, too, that serve before this is called.
void KillScene::serve() {
    require(speaking_->start(kShortText, file()), "the next start is refused");
    require(waitForEnd(*speaking_), "the next speech ends with false");
    removeWholeFile(speaking_->text);
}

std::chrono::microseconds KillScene::moment(std::chrono::microseconds most) {
    return randomMoment(random_, most);
}

void KillScene::recover() {
    for (const auto& entry : std::filesystem::directory_iterator(folder_.path())) {
        std::filesystem::remove(entry.path());
    }
    for (const pid_t engine : engines_->all()) {
        killEngine(engine);
        ::waitpid(engine, nullptr, 0); // those of another process that failed are nobody's else
    }
    fresh();
    log_.take();
    runtime_.takeRaised();
    runtime_.clearReports();
    held_.reset();
    check({});
}

bool KillScene::check(const std::vector<std::string>& expected, const std::string& possible) {
    if (speaking_ == nullptr) {
        fresh();
    }
    serve(); // which would be told of another end of what was before
    require(waitFor([&] {
                speaking_->isSpeaking();
                return engines_->reapOrphans() && engines_->all().size() == 1;
            }),
            "there are zombies, or more engines than objects");
    require(engine() != killed, "the engine was not killed");
    require(std::filesystem::is_empty(folder_.path()), "a file is left");

    std::vector<std::string> lines = log_.take();
    std::erase_if(lines, isOfProperties);
    std::ranges::for_each(lines, nameTheEnd);
    bool hasPossible = false;
    if (lines != expected && !possible.empty()) {
        const auto line = std::ranges::find(lines, possible);
        hasPossible = line != lines.end();
        if (hasPossible) {
            lines.erase(line);
        }
    }
    require(lines == expected, "logged:" + joined(lines) + "\nexpected:" + joined(expected));
    require(runtime_.takeRaised().empty(), "something was raised");
    for (const host::Report& report : runtime_.reports()) {
        require(false, std::string(host::nameOf(report.kind)) + ": " + report.text);
    }
    const Held held{support::openDescriptors(), runtime_.ledger()};
    if (!held_) {
        held_ = held;
    }
    require(held == *held_, "held: " + std::to_string(held.descriptors) + " descriptors, ledger " +
                                textOf(held.ledger) + "\nbefore: " + std::to_string(held_->descriptors) +
                                " descriptors, ledger " + textOf(held_->ledger));
    return hasPossible;
}

} // namespace zqm::endurance
