#include "tests/endtoend/speaking.h"

#include "tests/support/sibling_library.h"

#include <chrono>

namespace zqm::endtoend {

void loadPlugin(host::Runtime& runtime) {
    support::loadPlugin(runtime, ZQM_PLUGIN);
}

std::string fileUrl(const std::filesystem::path& path) {
    return "file://" + path.string();
}

std::string longText() {
    constexpr int kSentences = 20000;
    std::string text;
    for (int sentence = 0; sentence < kSentences; ++sentence) {
        text += "This is a sentence that takes its time. ";
    }
    return text;
}

Speaker::Speaker(host::Runtime& runtime) : object(runtime.create(kSynthesizer)), runtime_(&runtime) {
    object.call("Constructor");
    listen();
}

Speaker::Speaker(host::Runtime& runtime, const std::string& voice)
    : object(runtime.create(kSynthesizer)), runtime_(&runtime) {
    object.call("Constructor", voice);
    listen();
}

void Speaker::listen() {
    object.on("willSpeakWord", [this](const host::Arguments& word) {
        words.push_back(
            {static_cast<std::size_t>(word[0].asInteger()), static_cast<std::size_t>(word[1].asInteger())});
        texts.push_back(word[2].asText());
    });
    object.on("didFinishSpeaking", [this](const host::Arguments& end) { ends.push_back(end[0].asBool()); });
}

bool Speaker::start(const std::string& text, const std::filesystem::path& file) {
    return object.call("startSpeakingString", text, fileUrl(file)).asBool();
}

bool Speaker::waitForEnd() {
    ++awaited_;
    return runtime_->runUntil([this] { return ends.size() >= awaited_; }, kDeadline);
}

bool Speaker::waitForWord() {
    return runtime_->runUntil([this, before = words.size()] { return words.size() > before; }, kDeadline);
}

bool Speaker::waitForSilence() const {
    const auto end = std::chrono::steady_clock::now() + kDeadline;
    while (object.get("isSpeaking").asBool()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
    }
    return true;
}

void Speaker::speak(const std::string& text, const std::filesystem::path& file) {
    ASSERT_TRUE(start(text, file));
    constexpr std::size_t kShown = 200;
    ASSERT_TRUE(waitForEnd()) << "no end of: " << text.substr(0, kShown);
    EXPECT_TRUE(ends.back()) << text.substr(0, kShown);
}

SpeakingTest::SpeakingTest(const host::Options& options) : runtime(options) {
    loadPlugin(runtime);
}

void SpeakingTest::TearDown() {
    expectNoReports(runtime);
    EXPECT_TRUE(runtime.takeRaised().empty());
    EXPECT_EQ(runtime.ledger(), host::Ledger());
}

void expectNoReports(const host::Runtime& runtime) {
    for (const host::Report& report : runtime.reports()) {
        ADD_FAILURE() << nameOf(report.kind) << ": " << report.text;
    }
}

} // namespace zqm::endtoend
