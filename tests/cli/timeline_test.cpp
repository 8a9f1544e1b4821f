#include "cli/timeline/timeline.h"

#include "cli/timeline/svg_label.h"
#include "tests/cli/marked_timing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <regex>
#include <string>
#include <string_view>
#include <vector>

namespace zqm::cli {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

using tests::markedTiming;

constexpr int kRate = 8000;
constexpr double kLeftOfRows = 28;

Waveform tone(double seconds) {
    std::vector<float> samples(static_cast<std::size_t>(seconds * kRate));
    for (std::size_t index = 0; index < samples.size(); ++index) {
        samples[index] = 0.5F * std::sin(static_cast<float>(index) * 0.3F);
    }
    Waveform sound(kRate);
    sound.add(samples);
    return sound;
}

struct Label {
    std::string text;
    double row; // its top
    double base;
    double left; // in the picture
    double right;
};

double sizeOf(std::string_view group) {
    return group == "words" ? 13 : group == "phonemes" ? 10 : 11;
}

// All texts of the picture, where they stand.
std::vector<Label> labelsOf(const std::string& svg) {
    static const std::regex kPart(
        R"re(<g transform="translate\(([-\d.]+) ([-\d.]+)\)">|<g class="(\w+)">|)re"
        R"re(<text(?: x="([-\d.]+)" y="([-\d.]+)"| transform="translate\(([-\d.]+) ([-\d.]+)\) scale\(([\d.]+) 1\)")>([^<]*)</text>)re");
    std::vector<Label> labels;
    double leftOfRow = 0;
    double row = 0;
    std::string group;
    for (std::sregex_iterator part(svg.begin(), svg.end(), kPart), none; part != none; ++part) {
        const std::smatch& match = *part;
        if (match[1].matched) {
            leftOfRow = std::stod(match[1]);
            row = std::stod(match[2]);
        } else if (match[3].matched) {
            group = match[3];
        } else {
            const bool isPressed = match[6].matched;
            const double x = leftOfRow + std::stod(match[isPressed ? 6 : 4]);
            const double scale = isPressed ? std::stod(match[8]) : 1;
            const double half = labelWidth(match[9].str()) * sizeOf(group) * scale / 2;
            labels.push_back({match[9], row, std::stod(match[isPressed ? 7 : 5]), x - half, x + half});
        }
    }
    return labels;
}

std::vector<std::string> textsOf(const std::vector<Label>& labels, double row) {
    std::vector<std::string> texts;
    for (const Label& label : labels) {
        if (label.row == row) {
            texts.push_back(label.text);
        }
    }
    return texts;
}

std::vector<double> rowsOf(const std::vector<Label>& labels) {
    std::vector<double> rows;
    for (const Label& label : labels) {
        if (rows.empty() || rows.back() != label.row) {
            rows.push_back(label.row);
        }
    }
    return rows;
}

double numberIn(const std::string& svg, const std::string& attribute) {
    std::smatch match;
    return std::regex_search(svg, match, std::regex("<svg[^>]* " + attribute + "=\"([\\d.]+)\""))
               ? std::stod(match[1])
               : -1;
}

void expectOrder(const std::string& svg) {
    std::map<std::pair<double, double>, double> rightEnds; // of each line of labels
    for (const Label& label : labelsOf(svg)) {
        const auto [end, isFirst] = rightEnds.try_emplace({label.row, label.base}, 0.0);
        EXPECT_GE(label.left, end->second - 0.1) << label.text << " runs into the one before";
        EXPECT_LE(label.right, numberIn(svg, "width")) << label.text;
        EXPECT_LE(label.row + label.base, numberIn(svg, "height")) << label.text;
        end->second = label.right;
    }
}

TEST(Timeline, ShowsWordsPhonemesAndSeconds) {
    SpeechTiming timing = markedTiming("⟦Hello⟧, ⟦world⟧!");
    timing.phonemes = {{"h", 24, 0, 0.2}, {"EH", 7, 0.2, 0.4}, {"%", 0, 0.4, 0.5}, {"w", 38, 0.5, 1}};
    const std::string svg = timelineSvg(timing, tone(1.2));
    const std::vector<Label> labels = labelsOf(svg);
    ASSERT_EQ(rowsOf(labels).size(), 1);
    EXPECT_THAT(textsOf(labels, labels.front().row),
                ElementsAre("Hello", "world", "h", "EH", "w", "0 s", "0.5 s", "1 s"));
    EXPECT_THAT(svg, HasSubstr("<title>world 0.5\u20131 s</title>"));
    EXPECT_THAT(svg, HasSubstr("class=\"vowel\""));
    EXPECT_THAT(svg, HasSubstr("prefers-color-scheme: dark"));
    expectOrder(svg);
}

TEST(Timeline, StandsWhereItIsHeard) {
    SpeechTiming timing = markedTiming("⟦aa⟧ ⟦bb⟧ ⟦cc⟧");
    timing.words[2] = {6, 2, 1.5, 2};
    const std::vector<Label> labels = labelsOf(timelineSvg(timing, tone(2)));
    const auto middle = [](const Label& label) { return (label.left + label.right) / 2; };
    ASSERT_GE(labels.size(), 3);
    EXPECT_NEAR(middle(labels[2]) - middle(labels[1]), 2 * (middle(labels[1]) - middle(labels[0])), 0.1);
}

TEST(Timeline, OfALongTextHasRows) {
    SpeechTiming timing = markedTiming(
        "⟦a⟧ ⟦b⟧ ⟦c⟧ ⟦d⟧ ⟦e⟧ ⟦f⟧ ⟦g⟧ ⟦h⟧ ⟦i⟧ ⟦j⟧ ⟦k⟧ ⟦l⟧ ⟦m⟧ ⟦n⟧ ⟦o⟧ ⟦p⟧ ⟦q⟧ ⟦r⟧ ⟦s⟧ ⟦t⟧ ⟦u⟧ ⟦v⟧ ⟦w⟧ ⟦x⟧");
    timing.words[8].end -= 0.2; // a pause before "j"
    const std::string svg = timelineSvg(timing, tone(12));
    const std::vector<Label> labels = labelsOf(svg);
    const std::vector<double> rows = rowsOf(labels);
    ASSERT_EQ(rows.size(), 3);
    EXPECT_EQ(textsOf(labels, rows[0]).front(), "a");
    EXPECT_EQ(textsOf(labels, rows[1]).front(), "j");
    EXPECT_THAT(textsOf(labels, rows[0]), Contains("4.5 s"));
    EXPECT_THAT(textsOf(labels, rows[1]), Not(Contains("i")));
    EXPECT_THAT(textsOf(labels, rows[2]), Contains("x"));
    EXPECT_THAT(textsOf(labels, rows[2]), Contains("12 s"));
    expectOrder(svg);
}

TEST(Timeline, GoesOnThroughLongWordsAndSilence) {
    SpeechTiming timing = markedTiming("⟦a⟧ ⟦b⟧");
    timing.words = {{0, 1, 0, 20}, {2, 1, 40, 40.5}};
    const std::string svg = timelineSvg(timing, tone(50));
    const std::vector<Label> labels = labelsOf(svg);
    EXPECT_GE(rowsOf(labels).size(), 8);
    for (const double row : rowsOf(labels)) {
        EXPECT_THAT(textsOf(labels, row), Contains(HasSubstr(" s")));
    }
    expectOrder(svg);
}

// As for rates that nobody can follow.
TEST(Timeline, HasNoLabelsThatOverlap) {
    SpeechTiming timing = markedTiming("");
    for (std::size_t index = 0; index < 300; ++index) {
        const auto begin = static_cast<double>(index) * 0.03;
        timing.text += u"mmmmwwww ";
        timing.words.push_back({index * 9, index % 9, begin, begin + 0.03});
        for (const double part : {0.0, 0.01, 0.02}) {
            timing.phonemes.push_back({index % 2 == 0 ? "OW" : "m", 15, begin + part, begin + part + 0.01});
        }
    }
    timing.duration = 9;
    const std::string svg = timelineSvg(timing, tone(9));
    EXPECT_GT(labelsOf(svg).size(), 300);
    expectOrder(svg);
}

TEST(Timeline, PutsThePhonemesOfNarrowCellsBelow) {
    SpeechTiming timing = markedTiming("");
    timing.phonemes = {{"OW", 15, 0, 0.5}, {"t", 35, 0.5, 0.505}, {"AE", 2, 0.505, 1}};
    const std::vector<Label> labels = labelsOf(timelineSvg(timing, tone(1)));
    ASSERT_GE(labels.size(), 3);
    EXPECT_EQ(labels[1].text, "t");
    EXPECT_GT(labels[1].base, labels[0].base);
    EXPECT_EQ(labels[2].base, labels[0].base);
}

// From the cell to its name.
TEST(Timeline, DrawsALineToWhatStandsBelow) {
    SpeechTiming timing = markedTiming("");
    timing.phonemes = {{"OW", 15, 0, 0.5}, {"t", 35, 0.5, 0.505}, {"AE", 2, 0.505, 1}};
    const std::string svg = timelineSvg(timing, tone(1));
    static const std::regex kLine(R"re(<path class="line"[^>]*M([\d.]+) ([\d.]+)V([\d.]+)"/>)re");
    std::smatch line;
    ASSERT_TRUE(std::regex_search(svg, line, kLine));
    const std::vector<Label> labels = labelsOf(svg);
    ASSERT_GE(labels.size(), 3);
    const Label& below = labels[1];
    EXPECT_NEAR(std::stod(line[1]) + kLeftOfRows, (below.left + below.right) / 2, 0.02);
    EXPECT_GT(std::stod(line[2]), labels[0].base);
    EXPECT_LT(std::stod(line[3]), below.base);
}

TEST(Timeline, EscapesTexts) {
    const SpeechTiming timing =
        markedTiming("⟦<a&b>\\u{1}\"⟧ ⟦你好⟧ ⟦مرحبا⟧ ⟦👩‍👩‍👧⟧");
    const std::string svg = timelineSvg(timing, tone(2));
    EXPECT_THAT(svg, HasSubstr(">&lt;a&amp;b&gt;&quot;</text>"));
    EXPECT_THAT(svg, HasSubstr(">你好</text>"));
    EXPECT_THAT(svg, HasSubstr(">مرحبا</text>"));
    EXPECT_THAT(svg, HasSubstr(">👩‍👩‍👧</text>"));
    EXPECT_THAT(svg, Not(HasSubstr("\x01")));
}

TEST(Timeline, OfNothingIsAnEmptyScale) {
    const std::string svg = timelineSvg(markedTiming(""), Waveform(kRate));
    const std::vector<Label> labels = labelsOf(svg);
    ASSERT_EQ(labels.size(), 1);
    EXPECT_EQ(labels[0].text, "0 s");
    EXPECT_THAT(svg, Not(HasSubstr("\"nan")));
}

TEST(Timeline, TakesWordsOfNoTimeAndBeyondTheText) {
    SpeechTiming timing = markedTiming("⟦One⟧ ⟦two⟧");
    timing.words = {{0, 3, 0, 0.5}, {4, 3, 0.5, 0.5}, {100, 3, 0.5, 1}};
    const std::string svg = timelineSvg(timing, tone(0.2));
    EXPECT_THAT(svg, HasSubstr("<title>two 0.5\u20130.5 s</title>"));
    expectOrder(svg);
}

} // namespace
} // namespace zqm::cli
