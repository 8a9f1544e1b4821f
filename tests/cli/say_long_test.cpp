// `zqmspeech say -o FILE` of texts that are spoken in pieces.

#include "tests/cli/say.h"
#include "tests/support/sound_file.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <iomanip>
#include <span>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace zqm::tests {
namespace {

using support::ProcessResult;
using support::SoundFile;

// A piece is much to speak under a sanitizer.
constexpr std::chrono::milliseconds kDeadline{300000};

// Of three words; a piece has 2,000 at the most.
constexpr const char* kSentence = "Grüße it again. ";
constexpr std::size_t kWordsOfASentence = 3;
constexpr std::size_t kUnitsOfASentence = 16;
constexpr std::size_t kSentencesOfAPiece = 666;
constexpr std::size_t kSentences = 700;

std::string sentences(std::size_t count) {
    std::string text;
    for (std::size_t index = 0; index < count; ++index) {
        text += kSentence;
    }
    return text;
}

struct Line {
    std::string event;
    std::size_t position = 0;
    std::size_t length = 0;
    double time = 0;
    std::string word;
};

std::vector<Line> words(const std::string& output) {
    std::vector<Line> all;
    std::istringstream stream(output);
    for (std::string text; std::getline(stream, text);) {
        std::istringstream fields(text);
        Line line;
        if (fields >> line.event >> line.position >> line.length >> line.time >> line.word &&
            line.event == "word") {
            all.push_back(line);
        }
    }
    return all;
}

class SayLong : public testing::Test {
protected:
    SayLong() { options_.environment["TMPDIR"] = temporary_.path().string(); }

    // Nothing of what was made on the way.
    void TearDown() override { EXPECT_TRUE(std::filesystem::is_empty(temporary_.path())); }

    ProcessResult run(const std::vector<std::string>& arguments) {
        return support::runProcess(ZQMSPEECH_PROGRAM, sayArguments(arguments), options_, kDeadline);
    }

    SoundFile written(const std::string& name, const std::string& text, const std::string& rate = "500") {
        const std::string path = (folder_ / name).string();
        options_.input = text;
        const ProcessResult result = run({"--rate", rate, "-o", path});
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        EXPECT_EQ(result.errors, "");
        return SoundFile(path);
    }

    std::string path(const std::string& name) const { return (folder_ / name).string(); }

    support::TemporaryFolder folder_;
    support::TemporaryFolder temporary_;
    support::ProcessOptions options_ = bareOptions();
};

TEST_F(SayLong, PositionsTimesAndSoundAreThoseOfTheWhole) {
    options_.input = sentences(kSentences);
    const ProcessResult result = run({"--rate", "500", "--events", "-o", path("x.wav")});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    const std::vector<Line> all = words(result.output);
    ASSERT_EQ(all.size(), kSentences * kWordsOfASentence);
    for (std::size_t index = 0; index < all.size(); ++index) {
        constexpr std::size_t kPositions[] = {0, 6, 9};
        const std::size_t sentence = index / kWordsOfASentence * kUnitsOfASentence;
        ASSERT_EQ(all[index].position, sentence + kPositions[index % kWordsOfASentence]);
        ASSERT_TRUE(index == 0 || all[index].time > all[index - 1].time) << index;
    }
    EXPECT_EQ(all.back().word, "again");
    const double seconds = SoundFile(path("x.wav")).seconds();
    EXPECT_GT(seconds, all.back().time);
    std::ostringstream finish;
    finish << "finish true " << std::fixed << std::setprecision(3) << seconds << "\n";
    EXPECT_THAT(result.output, testing::EndsWith(finish.str()));

    const SoundFile first = written("first.wav", sentences(kSentencesOfAPiece));
    const SoundFile whole(path("x.wav"));
    ASSERT_GT(whole.frames(), first.frames());
    EXPECT_TRUE(std::ranges::equal(first.samples, std::span(whole.samples).first(first.frames())));
    EXPECT_NEAR(all[kSentencesOfAPiece * kWordsOfASentence].time, first.seconds(), 0.1);
}

// A word [[...]] of the first piece counts in what would be the second.
TEST_F(SayLong, ATextWithCommandsIsNotParted) {
    constexpr std::size_t kParts = 10;
    const double part = written("part.wav", sentences(kSentences / kParts), "450").seconds();
    const SoundFile commanded = written("x.wav", "[[rate 450]] " + sentences(kSentences), "90");
    EXPECT_NEAR(commanded.seconds(), part * kParts, part * kParts * 0.1);
}

TEST_F(SayLong, AStopInALaterPieceLeavesWhatWasSpoken) {
    options_.input = sentences(kSentencesOfAPiece * 100);
    const support::Process process(
        ZQMSPEECH_PROGRAM, sayArguments({"--rate", "500", "--events", "-o", path("x.flac")}), options_);
    const std::string place = "\nword " + std::to_string(kSentencesOfAPiece * kUnitsOfASentence) + " ";
    const auto deadline = std::chrono::steady_clock::now() + kDeadline;
    while (process.result().output.find(place) == std::string::npos) {
        ASSERT_LT(std::chrono::steady_clock::now(), deadline);
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_FALSE(std::filesystem::exists(path("x.flac")));
    process.signal(SIGINT);
    ASSERT_TRUE(process.waitFor(kDeadline));
    const ProcessResult result = process.result();
    EXPECT_EQ(result.exitCode, 130);
    EXPECT_EQ(result.errors, "");
    EXPECT_THAT(withoutTimes(result.output), testing::EndsWith("\nfinish false\n"));
    const double told = words(result.output).at(kSentencesOfAPiece * kWordsOfASentence).time;
    const SoundFile file(path("x.flac"));
    EXPECT_GT(file.seconds(), told);
    EXPECT_LT(file.seconds(), told * 99);
}

} // namespace
} // namespace zqm::tests
