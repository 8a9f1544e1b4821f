// `zqmspeech say --subtitles` and `--timeline`: the files beside the sound file.

#include "tests/cli/say.h"
#include "tests/support/sound_file.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace zqm::tests {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class SaySubtitles : public testing::Test {
protected:
    std::string path(std::string_view name) const { return (folder_ / name).string(); }

    std::string content(std::string_view name) const {
        std::ifstream file(folder_ / name);
        EXPECT_TRUE(file) << name;
        return {std::istreambuf_iterator<char>(file), {}};
    }

    void write(std::vector<std::string> arguments,
               const support::ProcessOptions& options = bareOptions()) const {
        arguments.insert(arguments.begin(), {"-v", "gmw/en-US", "-o", path("x.wav")});
        const support::ProcessResult result = say(arguments, options);
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.errors, "");
    }

    support::TemporaryFolder folder_;
};

// The seconds of all "00:00:01.234" in a text.
std::vector<double> timesIn(const std::string& text) {
    static const std::regex kTime(R"((\d+):(\d\d):(\d\d)[.,](\d\d\d))");
    std::vector<double> times;
    for (std::sregex_iterator match(text.begin(), text.end(), kTime), none; match != none; ++match) {
        times.push_back(std::stod((*match)[1]) * 3600 + std::stod((*match)[2]) * 60 + std::stod((*match)[3]) +
                        std::stod((*match)[4]) / 1000);
    }
    return times;
}

std::string withoutTimesOfCues(const std::string& text) {
    return std::regex_replace(text, std::regex(R"(<?\d+:[\d:]+[.,]\d+>?)"), "*");
}

TEST_F(SaySubtitles, TellTheTimesOfTheEvents) {
    write({"--subtitles", path("x.vtt"), "Hello, world!"});
    support::ProcessOptions options = bareOptions();
    const std::string events =
        say({"--events", "-v", "gmw/en-US", "-o", path("y.wav"), "Hello, world!"}).output;
    std::smatch match;
    ASSERT_TRUE(std::regex_search(events, match, std::regex(R"(word 7 5 ([\d.]+) world)"))) << events;
    const std::string subtitles = content("x.vtt");
    EXPECT_EQ(withoutTimesOfCues(subtitles), "WEBVTT\n\n* --> *\nHello, *world!\n");
    const std::vector<double> times = timesIn(subtitles);
    ASSERT_EQ(times.size(), 3);
    EXPECT_NEAR(times[2], std::stod(match[1]), 0.002);
    EXPECT_LE(times[1], support::SoundFile(path("x.wav")).seconds() + 0.001);
}

TEST_F(SaySubtitles, AreOfTheFormatOfTheExtension) {
    write({"--subtitles", path("x.SRT"), "One. Two."});
    EXPECT_EQ(withoutTimesOfCues(content("x.SRT")), "1\n* --> *\nOne.\n\n2\n* --> *\nTwo.\n");
    write({"--subtitles", path("x.lrc"), "One. Two."});
    EXPECT_EQ(withoutTimesOfCues(content("x.lrc")), "[*]*One.*\n[*]*Two.*\n");
}

// German has abbreviations of its own.
TEST_F(SaySubtitles, HaveTheSentencesOfTheVoicesLanguage) {
    EXPECT_EQ(
        say({"-v", "gmw/de", "-o", path("x.wav"), "--subtitles", path("x.srt"), "Das gilt z.B. Montags."})
            .exitCode,
        0);
    EXPECT_EQ(withoutTimesOfCues(content("x.srt")), "1\n* --> *\nDas gilt z.B. Montags.\n");
}

TEST_F(SaySubtitles, OfATextInPiecesCountOverTheWhole) {
    support::ProcessOptions options = bareOptions();
    constexpr int kSentences = 500;
    for (int sentence = 0; sentence < kSentences; ++sentence) {
        options.input += "One two three four five. ";
    }
    write({"--rate", "500", "--subtitles", path("x.srt")}, options);
    const std::string subtitles = content("x.srt");
    EXPECT_EQ(std::ranges::count(subtitles, '.'), kSentences);
    const std::vector<double> times = timesIn(subtitles);
    ASSERT_EQ(times.size(), 2 * kSentences);
    EXPECT_TRUE(std::ranges::is_sorted(times));
    const double seconds = support::SoundFile(path("x.wav")).seconds();
    EXPECT_LE(times.back(), seconds + 0.001);
    EXPECT_GT(times.back(), seconds - 2);
}

TEST_F(SaySubtitles, StandBesideASoundOnStandardOutput) {
    const support::ProcessResult result =
        say({"-o", "-", "--subtitles", path("x.vtt"), "--timeline", path("x.svg"), "Hello"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output, StartsWith("RIFF"));
    EXPECT_THAT(content("x.vtt"), HasSubstr("\nHello\n"));
    EXPECT_THAT(content("x.svg"), HasSubstr(">Hello</text>"));
}

TEST_F(SaySubtitles, OfNoWordsAreEmpty) {
    write({"--subtitles", path("x.vtt"), "--timeline", path("x.svg"), "..."});
    EXPECT_EQ(content("x.vtt"), "WEBVTT\n");
    EXPECT_THAT(content("x.svg"), HasSubstr("</svg>\n"));
}

TEST_F(SaySubtitles, ThatCannotBeWrittenStopItAtOnce) {
    for (const auto& [option, name] : {std::pair("--subtitles", "x.vtt"), std::pair("--timeline", "x.svg")}) {
        const std::string file = path("missing/") + name;
        const support::ProcessResult result = say({"-o", path("x.wav"), option, file, "Hello"});
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.errors,
                  "zqmspeech: the speech can't be written: " + file + ": No such file or directory\n");
    }
    EXPECT_TRUE(std::filesystem::is_empty(folder_.path()));
}

TEST_F(SaySubtitles, TimelineShowsSoundWordsAndPhonemes) {
    write({"--timeline", path("x.svg"), "Hello <world>"});
    const std::string picture = content("x.svg");
    EXPECT_THAT(picture, HasSubstr(">Hello</text>"));
    EXPECT_THAT(picture, HasSubstr(">OW</text>"));
    EXPECT_THAT(picture, HasSubstr(">0.5 s</text>"));
    EXPECT_THAT(picture, HasSubstr("class=\"sound\""));
}

} // namespace
} // namespace zqm::tests
