#include "cli/timeline/timeline.h"

#include "cli/timeline/svg_label.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include <unicode/unistr.h>

namespace zqm::cli {
namespace {

// ---- measures, in the picture's units

constexpr double kMargin = 28;
constexpr double kLongestRow = 1200;
constexpr double kShortestRow = 240;

// From the top of a row.
constexpr double kSoundMiddle = 36;
constexpr double kSoundSwing = 34; // up and down
constexpr double kWordTop = 76;
constexpr double kWordHeight = 22;
constexpr double kPhonemeTop = 101;
constexpr double kPhonemeHeight = 17;
constexpr double kLowerLabels = 131; // their base line
constexpr double kAxis = 137;
constexpr double kTick = 4;
constexpr double kLongTick = 7;
constexpr double kAxisLabels = 156; // their base line
constexpr double kRowHeight = 186;

constexpr double kPadding = 2; // left and right of a label
constexpr double kLeastPerSecond = 200;
constexpr double kMostPerSecond = 600;

struct Font {
    double size;
    double narrowest; // to which share of its width a label may be pressed
};
constexpr Font kWordFont{13, 0.5};
constexpr Font kPhonemeFont{10, 0.7};

// Colours for paper; those in the query are for viewers that are dark.
constexpr std::string_view kStyle = R"(<style>
text { font-family: "DejaVu Sans", "Noto Sans", Verdana, sans-serif; text-anchor: middle }
.paper { fill: #ffffff }
.sound { fill: #3b6fb6 }
.line { stroke: #cdd4db }
.axis { stroke: #6e7781 }
.word { fill: #dfebfb; stroke: #a9c0e0 }
.vowel { fill: #fbdfba; stroke: #dcb27a }
.consonant { fill: #d8efda; stroke: #9cc7a0 }
.words { fill: #1f2328; font-size: 13px }
.phonemes { fill: #1f2328; font-size: 10px }
.seconds { fill: #57606a; font-size: 11px }
@media (prefers-color-scheme: dark) {
.paper { fill: #16191d }
.sound { fill: #6aa5f0 }
.line { stroke: #31373e }
.axis { stroke: #9aa4ae }
.word { fill: #1d3554; stroke: #41648f }
.vowel { fill: #55390f; stroke: #8a6428 }
.consonant { fill: #1c4123; stroke: #417a4a }
.words, .phonemes { fill: #e6edf3 }
.seconds { fill: #adb6bf }
}
</style>
)";

// ---- numbers and texts

// To a hundredth, without zeros at the end.
std::string number(double value) {
    std::array<char, 32> digits{};
    std::snprintf(digits.data(), digits.size(), "%.2f", value);
    std::string text = digits.data();
    text.erase(text.find_last_not_of('0') + 1);
    if (text.ends_with('.')) {
        text.pop_back();
    }
    return text == "-0" ? "0" : text;
}

std::string attribute(std::string_view name, double value) {
    return std::string(" ").append(name).append("=\"").append(number(value)).append("\"");
}

std::string textOf(const SpeechTiming& timing, const TimedWord& word) {
    const std::size_t begin = std::min(word.position, timing.text.size());
    const std::u16string units = timing.text.substr(begin, word.length);
    std::string utf8;
    return icu::UnicodeString(units.data(), static_cast<std::int32_t>(units.size())).toUTF8String(utf8);
}

bool isSilence(const TimedPhoneme& phoneme) {
    return phoneme.opcode == 0;
}

bool isVowel(const TimedPhoneme& phoneme) {
    constexpr int kFirst = 2;
    constexpr int kLast = 17;
    return phoneme.opcode >= kFirst && phoneme.opcode <= kLast;
}

// ---- rows

struct Span {
    double begin;
    double end;
};

Span within(Span row, double begin, double end) {
    return {std::clamp(begin, row.begin, row.end), std::clamp(end, row.begin, row.end)};
}

double endOf(const SpeechTiming& timing, const Waveform& sound) {
    double end = std::max(timing.duration, sound.duration());
    if (!timing.words.empty()) {
        end = std::max(end, timing.words.back().end);
    }
    if (!timing.phonemes.empty()) {
        end = std::max(end, timing.phonemes.back().end);
    }
    return end;
}

// How wide a second is: so that most labels find room.
double unitsPerSecond(const SpeechTiming& timing) {
    constexpr double kMost = 0.9;
    std::vector<double> wanted;
    const auto want = [&](const std::string& label, const Font& font, double seconds) {
        if (seconds > 0) {
            wanted.push_back((labelWidth(label) * font.size + 2 * kPadding) / seconds);
        }
    };
    for (const TimedWord& word : timing.words) {
        want(textOf(timing, word), kWordFont, word.end - word.begin);
    }
    for (const TimedPhoneme& phoneme : timing.phonemes) {
        if (!isSilence(phoneme)) {
            want(phoneme.symbol, kPhonemeFont, phoneme.end - phoneme.begin);
        }
    }
    if (wanted.empty()) {
        return kLeastPerSecond;
    }
    const auto most =
        wanted.begin() + static_cast<std::ptrdiff_t>(kMost * static_cast<double>(wanted.size() - 1));
    std::nth_element(wanted.begin(), most, wanted.end());
    return std::clamp(*most, kLeastPerSecond, kMostPerSecond);
}

// Where a row that begins and could last until then ends best: before a word, if there is a pause before that
// and the row is not too short for it.
double endOfRow(const std::vector<TimedWord>& words, Span row) {
    constexpr double kPause = 0.1;
    constexpr double kShortRow = 0.6;
    const double shortEnd = row.begin + kShortRow * (row.end - row.begin);
    auto word =
        std::upper_bound(words.begin(), words.end(), row.end,
                         [](double time, const TimedWord& candidate) { return time < candidate.begin; });
    if (word == words.begin()) {
        return row.end;
    }
    const double lastBegin = std::prev(word)->begin;
    const double inTheSilence = std::prev(word)->end;
    for (; word != words.begin() && std::prev(word)->begin > shortEnd; --word) {
        const double silenceBegin = std::prev(word) == words.begin() ? 0 : std::prev(word, 2)->end;
        if (std::prev(word)->begin - silenceBegin >= kPause) {
            return std::prev(word)->begin;
        }
    }
    return inTheSilence <= row.end || lastBegin <= row.begin ? row.end : lastBegin;
}

std::vector<Span> rowsOf(const SpeechTiming& timing, double duration, double longest) {
    std::vector<Span> rows;
    double begin = 0;
    while (duration - begin > longest) {
        const double end = endOfRow(timing.words, {begin, begin + longest});
        rows.push_back({begin, end});
        begin = end;
    }
    rows.push_back({begin, duration});
    return rows;
}

// ---- drawing

class Row {
public:
    Row(Span span, double perSecond) : span_(span), perSecond_(perSecond) {}

    void drawSound(const Waveform& sound, double scale) {
        const int width = static_cast<int>(std::ceil((span_.end - span_.begin) * perSecond_));
        std::vector<int> high;
        std::vector<int> low;
        for (int column = 0; column < width; ++column) {
            const double begin = span_.begin + column / perSecond_;
            const Waveform::Swing swing = sound.between(begin, std::min(begin + 1 / perSecond_, span_.end));
            high.push_back(-static_cast<int>(std::lround(swing.high * scale * kFiner)));
            low.push_back(-static_cast<int>(std::lround(swing.low * scale * kFiner)));
        }
        if (width == 0) {
            return;
        }
        // Along the upper edge and back along the lower one, in steps, which are short to write.
        std::string path = "M0 " + std::to_string(high[0]) + "l";
        for (std::size_t column = 1; column < high.size(); ++column) {
            path += "1 " + std::to_string(high[column] - high[column - 1]) + " ";
        }
        path += "0 " + std::to_string(low.back() - high.back()) + " ";
        for (std::size_t column = low.size() - 1; column > 0; --column) {
            path += "-1 " + std::to_string(low[column - 1] - low[column]) + " ";
        }
        svg_ += "<path class=\"sound\" transform=\"translate(0 " + number(kSoundMiddle) + ") scale(1 " +
                number(1.0 / kFiner) + ")\" d=\"" + path + "z\"/>\n";
    }

    void drawWord(const std::string& text, double begin, double end) {
        const Span part = within(span_, begin, end);
        line(x(part.begin), 0, kWordTop);
        line(x(part.end), 0, kWordTop);
        cell("word", kWordTop, kWordHeight, part, text, begin, end);
        label(words_, text, kWordFont, part, kWordTop + kWordHeight / 2 + kWordFont.size * kHalfHeight);
    }

    // The name stands below the cell when that is too narrow for it.
    void drawPhoneme(const TimedPhoneme& phoneme) {
        const Span part = within(span_, phoneme.begin, phoneme.end);
        cell(isVowel(phoneme) ? "vowel" : "consonant", kPhonemeTop, kPhonemeHeight, part, phoneme.symbol,
             phoneme.begin, phoneme.end);
        if (!label(phonemes_, phoneme.symbol, kPhonemeFont, part,
                   kPhonemeTop + kPhonemeHeight / 2 + kPhonemeFont.size * kHalfHeight)) {
            lowerLabel(phoneme.symbol, part);
        }
    }

    void drawAxis() {
        constexpr double kTicksPerSecond = 10;
        constexpr long kTicksPerLabel = 5;
        constexpr double kTolerance = 1e-6;
        const auto first = static_cast<long>(std::ceil(span_.begin * kTicksPerSecond - kTolerance));
        const auto last = static_cast<long>(std::floor(span_.end * kTicksPerSecond + kTolerance));
        const bool isShort = (first + kTicksPerLabel - 1) / kTicksPerLabel * kTicksPerLabel > last;
        std::string ticks;
        for (long tick = first; tick <= last; ++tick) {
            const double second = static_cast<double>(tick) / kTicksPerSecond;
            const bool isLabelled = tick % kTicksPerLabel == 0 || (isShort && tick == first);
            ticks +=
                "M" + number(x(second)) + " " + number(kAxis) + "v" + number(isLabelled ? kLongTick : kTick);
            if (isLabelled) {
                seconds_ += "<text" + attribute("x", x(second)) + attribute("y", kAxisLabels) + ">" +
                            number(second) + " s</text>\n";
            }
        }
        svg_ += "<path class=\"axis\" fill=\"none\" d=\"M0 " + number(kAxis) + "H" + number(x(span_.end)) +
                ticks + "\"/>\n";
    }

    std::string svg(double top) const {
        return "<g transform=\"translate(" + number(kMargin) + " " + number(top) + ")\">\n" +
               "<path class=\"line\" fill=\"none\" d=\"M0 " + number(kSoundMiddle) + "H" +
               number(x(span_.end)) + lines_ + "\"/>\n" + svg_ + group("words", words_) +
               group("phonemes", phonemes_) + group("seconds", seconds_) + "</g>\n";
    }

private:
    static constexpr int kFiner = 10;           // steps of a unit, of the sound's swing
    static constexpr double kHalfHeight = 0.36; // of capitals, in the font's size

    double x(double time) const { return (time - span_.begin) * perSecond_; }

    static std::string group(std::string_view name, const std::string& content) {
        return std::string("<g class=\"").append(name).append("\">\n").append(content).append("</g>\n");
    }

    void line(double left, double top, double bottom) {
        lines_ += "M" + number(left) + " " + number(top) + "V" + number(bottom);
    }

    void cell(std::string_view kind, double top, double height, Span part, const std::string& text,
              double begin, double end) {
        svg_ += std::string("<rect class=\"").append(kind).append("\" rx=\"2\"") +
                attribute("x", x(part.begin)) + attribute("y", top) +
                attribute("width", (part.end - part.begin) * perSecond_) + attribute("height", height) +
                "><title>" + escapedForXml(text) + " " + number(begin) + "\u2013" + number(end) +
                " s</title></rect>\n";
    }

    // Within the part, pressed if need be; not at all where that would be too much.
    bool label(std::string& labels, const std::string& text, const Font& font, Span part, double base) const {
        const double room = (part.end - part.begin) * perSecond_ - 2 * kPadding;
        const double width = labelWidth(text) * font.size;
        if (room < width * font.narrowest) {
            return false;
        }
        const double middle = (x(part.begin) + x(part.end)) / 2;
        if (room < width) {
            labels += "<text transform=\"translate(" + number(middle) + " " + number(base) + ") scale(" +
                      number(room / width) + " 1)\">";
        } else {
            labels += "<text" + attribute("x", middle) + attribute("y", base) + ">";
        }
        labels += escapedForXml(text) + "</text>\n";
        return true;
    }

    // Unless it would run into the one before.
    void lowerLabel(const std::string& text, Span part) {
        const double middle = (x(part.begin) + x(part.end)) / 2;
        const double half = labelWidth(text) * kPhonemeFont.size / 2;
        if (middle - half < lowerLabelsEnd_) {
            return;
        }
        lowerLabelsEnd_ = middle + half + kPadding;
        line(middle, kPhonemeTop + kPhonemeHeight, kLowerLabels - kPhonemeFont.size);
        phonemes_ += "<text" + attribute("x", middle) + attribute("y", kLowerLabels) + ">" +
                     escapedForXml(text) + "</text>\n";
    }

    Span span_;
    double perSecond_;
    std::string lines_;
    std::string svg_;
    std::string words_;
    std::string phonemes_;
    std::string seconds_;
    double lowerLabelsEnd_ = -kMargin;
};

// Those of them, sorted by time, that are heard within the row.
template <typename Timed, typename Function>
void forEachWithin(const std::vector<Timed>& all, Span row, Function function) {
    auto next = std::lower_bound(all.begin(), all.end(), row.begin,
                                 [](const Timed& candidate, double time) { return candidate.end <= time; });
    for (; next != all.end() && next->begin < row.end; ++next) {
        function(*next);
    }
}

} // namespace

std::string timelineSvg(const SpeechTiming& timing, const Waveform& sound) {
    const double duration = endOf(timing, sound);
    const double perSecond = unitsPerSecond(timing);
    const std::vector<Span> rows = rowsOf(timing, duration, kLongestRow / perSecond);
    double longest = kShortestRow;
    for (const Span& row : rows) {
        longest = std::max(longest, (row.end - row.begin) * perSecond);
    }
    const double width = longest + 2 * kMargin;
    const double height = static_cast<double>(rows.size()) * kRowHeight + kMargin;
    const std::string size = number(width) + " " + number(height);
    const double scale = sound.loudest() > 0 ? kSoundSwing / sound.loudest() : 0;

    std::string svg = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                      "<svg xmlns=\"http://www.w3.org/2000/svg\"" +
                      attribute("width", width) + attribute("height", height) + " viewBox=\"0 0 " + size +
                      "\">\n";
    svg.append(kStyle);
    svg += "<rect class=\"paper\" width=\"100%\" height=\"100%\"/>\n";
    double top = kMargin;
    for (const Span& span : rows) {
        Row row(span, perSecond);
        row.drawSound(sound, scale);
        forEachWithin(timing.words, span, [&](const TimedWord& word) {
            row.drawWord(textOf(timing, word), word.begin, word.end);
        });
        forEachWithin(timing.phonemes, span, [&](const TimedPhoneme& phoneme) {
            if (!isSilence(phoneme)) {
                row.drawPhoneme(phoneme);
            }
        });
        row.drawAxis();
        svg += row.svg(top);
        top += kRowHeight;
    }
    return svg + "</svg>\n";
}

} // namespace zqm::cli
