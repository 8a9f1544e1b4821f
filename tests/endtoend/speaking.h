// A host program that speaks, and notes what it hears.

#pragma once

#include "tests/support/temporary_folder.h"
#include "tests/support/word_check.h"
#include "zqmhost/zqmhost.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace zqm::endtoend {

inline constexpr const char* kSynthesizer = "NSSpeechSynthesizerZQM";
inline constexpr host::Seconds kDeadline{300};

// And before it the sibling library of this run.
void loadPlugin(host::Runtime& runtime);

std::string fileUrl(const std::filesystem::path& path);

// So many words that writing them takes the engine a while.
std::string longText();

// A synthesizer with handlers for words and the end.
class Speaker {
public:
    explicit Speaker(host::Runtime& runtime);
    Speaker(host::Runtime& runtime, const std::string& voice);
    Speaker(const Speaker&) = delete;
    Speaker& operator=(const Speaker&) = delete;

    // Into a file; false when it could not be started.
    bool start(const std::string& text, const std::filesystem::path& file);
    // Waits for the next end; false when none comes.
    bool waitForEnd();
    bool waitForWord();
    // Waits without a run loop until it doesn't speak any more; false when it goes on speaking.
    bool waitForSilence() const;
    // Start and wait; the speech must run to its end.
    void speak(const std::string& text, const std::filesystem::path& file);

    host::Object object;
    std::vector<support::WordRange> words;
    std::vector<std::string> texts; // that came with the words
    std::vector<bool> ends;

private:
    void listen();

    host::Runtime* runtime_;
    std::size_t awaited_ = 0; // ends waited for so far
};

// Ends with no breach of the interface reported and nothing left alive.
class SpeakingTest : public testing::Test {
protected:
    explicit SpeakingTest(const host::Options& options = {});
    void TearDown() override;

    support::TemporaryFolder folder;
    std::filesystem::path file = folder / "speech.wav";
    host::Runtime runtime;
};

void expectNoReports(const host::Runtime& runtime);

} // namespace zqm::endtoend
