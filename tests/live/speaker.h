#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/word_check.h"
#include "zqmhost/zqmhost.h"

namespace zqm::live {

// And before it the sibling library of this run.
void loadPlugin(host::Runtime& runtime);

// Spoken for minutes, so that on a busy machine, too, a test does something before half of it was heard.
inline constexpr std::size_t kWordsOfLongText = 2000;
std::string longText();

// One synthesizer of a host program that notes down its events, with the time of each.
class Speaker {
public:
    // With the default voice.
    explicit Speaker(host::Runtime& runtime);
    ~Speaker() = default;
    Speaker(const Speaker&) = delete;
    Speaker& operator=(const Speaker&) = delete;

    // Both forget the events of what was spoken before, and answer what the plugin does.
    bool start(const std::string& text);
    bool startToFile(const std::string& text, const std::filesystem::path& file);
    void stop();
    // Runs the run loop until the end of the speech; false when it doesn't come.
    bool waitForEnd();
    bool waitForWords(std::size_t count);

    host::Object& object() { return object_; }
    const std::vector<support::WordRange>& words() const { return words_; }
    const std::vector<double>& wordTimes() const { return wordTimes_; } // support::monotonicSeconds()
    const std::optional<bool>& finished() const { return finished_; }
    std::size_t timesFinished() const { return timesFinished_; }
    // Whether every word event carried the whole text.
    bool textsWereWhole() const { return textsWereWhole_; }

private:
    void forget(const std::string& text);

    host::Runtime& runtime_;
    host::Object object_;
    std::string text_;
    std::vector<support::WordRange> words_;
    std::vector<double> wordTimes_;
    std::optional<bool> finished_;
    std::size_t timesFinished_ = 0;
    bool textsWereWhole_ = true;
};

} // namespace zqm::live
