#include "tests/live/speaker.h"

#include "tests/support/monitor_recording.h"
#include "tests/support/sibling_library.h"

namespace zqm::live {

namespace {

constexpr host::Seconds kEndDeadline{300};

} // namespace

void loadPlugin(host::Runtime& runtime) {
    support::loadPlugin(runtime, ZQM_PLUGIN);
}

std::string longText() {
    constexpr std::size_t kWords = 5; // of a sentence
    std::string text;
    for (std::size_t words = 0; words < kWordsOfLongText; words += kWords) {
        text += "Word after word goes by. ";
    }
    return text;
}

Speaker::Speaker(host::Runtime& runtime)
    : runtime_(runtime), object_(runtime.create("NSSpeechSynthesizerZQM")) {
    object_.call("Constructor");
    object_.on("willSpeakWord", [this](const host::Arguments& arguments) {
        wordTimes_.push_back(support::monotonicSeconds());
        words_.push_back({.position = static_cast<std::size_t>(arguments[0].asInteger()),
                          .length = static_cast<std::size_t>(arguments[1].asInteger())});
        textsWereWhole_ = textsWereWhole_ && arguments[2].asText() == text_;
    });
    object_.on("didFinishSpeaking", [this](const host::Arguments& arguments) {
        finished_ = arguments[0].asBool();
        ++timesFinished_;
    });
}

bool Speaker::start(const std::string& text) {
    forget(text);
    return object_.call("startSpeakingString", text).asBool();
}

bool Speaker::startToFile(const std::string& text, const std::filesystem::path& file) {
    forget(text);
    return object_.call("startSpeakingString", text, "file://" + file.string()).asBool();
}

void Speaker::stop() {
    object_.call("stopSpeaking");
}

bool Speaker::waitForEnd() {
    return runtime_.runUntil([this] { return finished_.has_value(); }, kEndDeadline);
}

bool Speaker::waitForWords(std::size_t count) {
    return runtime_.runUntil([this, count] { return words_.size() >= count; }, kEndDeadline);
}

void Speaker::forget(const std::string& text) {
    text_ = text;
    words_.clear();
    wordTimes_.clear();
    finished_.reset();
    timesFinished_ = 0;
    textsWereWhole_ = true;
}

} // namespace zqm::live
