// The subtitles, read by a player's library: ffmpeg finds the same cues at the same times with the same
// texts.

#include "cli/subtitles/cues.h"
#include "cli/subtitles/subtitles.h"
#include "cli/timeline/timeline.h"

#include "tests/cli/marked_timing.h"
#include "tests/support/process.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <fstream>
#include <regex>
#include <string>
#include <vector>

namespace zqm::cli {
namespace {

struct ReadCue {
    double begin;
    double duration;
};

class SubtitlesInAPlayer : public testing::TestWithParam<const char*> {
protected:
    void write(const SpeechTiming& timing) const {
        std::ofstream file(path_);
        writeSubtitles(timing, format_, file);
    }

    static std::string run(const std::string& program, const std::vector<std::string>& arguments) {
        const support::ProcessResult result = support::runProcess(program, arguments);
        EXPECT_TRUE(result.succeeded());
        EXPECT_EQ(result.errors, "");
        return result.output;
    }

    std::vector<ReadCue> readCues() const {
        const auto read =
            nlohmann::json::parse(run("ffprobe", {"-v", "warning", "-show_packets", "-of", "json", path_}));
        std::vector<ReadCue> cues;
        for (const auto& packet : read.at("packets")) {
            cues.push_back({std::stod(packet.at("pts_time").get<std::string>()),
                            std::stod(packet.value("duration_time", "0"))});
        }
        return cues;
    }

    support::TemporaryFolder folder_;
    SubtitleFormat format_ = *subtitleFormat(GetParam());
    std::string path_ = folder_ / GetParam();
};

// Of texts that readers are apt to trip over, and later than an hour.
TEST_P(SubtitlesInAPlayer, HaveTheSameTimes) {
    constexpr double kLate = 3700.25;
    constexpr double kRounding = 0.006; // LRC tells hundredths
    const SpeechTiming timing = tests::markedTiming(
        "⟦One⟧ ⟦two⟧ <⟦i⟧>⟦x⟧</⟦i⟧> {\\\\⟦an8⟧}. [⟦01⟧:⟦02.00⟧]⟦Three⟧ <⟦00⟧:⟦01.00⟧> --> & &⟦lt⟧; "
        "⟦four⟧.\\n\\n⟦2024⟧\\n\\n⟦00:00:01⟧,⟦000⟧ --> ⟦00:00:02⟧,⟦000⟧ ⟦你好⟧。⟦مرحبا⟧ "
        "⟦👩‍👩‍👧⟧!",
        kLate);
    write(timing);
    const std::vector<Cue> cues = sentenceCues(timing); // none of these is so long that it is cut
    const std::vector<ReadCue> read = readCues();
    ASSERT_EQ(cues.size(), 5);
    ASSERT_EQ(read.size(), cues.size());
    for (std::size_t index = 0; index < cues.size(); ++index) {
        const double begin = cues[index].front().begin;
        EXPECT_NEAR(read[index].begin, begin, kRounding) << index;
        // A line of LRC lasts until the next one, for whoever doesn't read the times of its words.
        if (format_ != SubtitleFormat::Lrc || index + 1 < cues.size()) {
            EXPECT_NEAR(read[index].duration, cues[index].back().end - begin, kRounding) << index;
        }
    }
}

TEST_P(SubtitlesInAPlayer, HaveTheSameTexts) {
    write(tests::markedTiming("⟦Fish⟧ & ⟦chips⟧ -->\\n⟦for⟧ \"⟦5⟧ < ⟦6⟧\". ⟦你好⟧,⟦世界⟧。"));
    std::string text = run("ffmpeg", {"-v", "warning", "-i", path_, "-f", "srt", "-"});
    text = std::regex_replace(text, std::regex("<\\d+:\\d+\\.\\d+>|.* --> \\d.*\n|\u200B"), "");
    EXPECT_EQ(text, "1\nFish & chips --> for \"5 < 6\".\n\n2\n你好,世界。\n\n");
}

INSTANTIATE_TEST_SUITE_P(Formats, SubtitlesInAPlayer, testing::Values("a.vtt", "a.srt", "a.lrc"));

TEST(Timeline, IsXml) {
    SpeechTiming timing =
        tests::markedTiming("⟦<a&b>\\u{1}\xEF\xBF\xBE]]>\"'⟧ ⟦你好⟧ ⟦👩‍👩‍👧⟧");
    timing.phonemes = {{"<&", 2, 0, 1}};
    Waveform sound(8000);
    sound.add(std::vector<float>(8000, 0.5F));
    support::ProcessOptions options;
    options.input = timelineSvg(timing, sound);
    const support::ProcessResult result = support::runProcess(
        "/usr/bin/python3",
        {"-c", "import sys, xml.dom.minidom as dom\n"
               "picture = dom.parse(sys.stdin.buffer)\n"
               "print(*(text.firstChild.data for text in picture.getElementsByTagName('text')))"},
        options);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.output, "<a&b>]]>\"' 你好 👩‍👩‍👧 <& 0 s 0.5 s 1 s 1.5 s\n");
}

} // namespace
} // namespace zqm::cli
