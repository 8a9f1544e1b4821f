#include "cli/subtitles/subtitles.h"

#include "cli/subtitles/cues.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <ostream>
#include <string>

namespace zqm::cli {
namespace {

constexpr std::size_t kLineColumns = 42; // as is usual for two lines below a picture

// Parts what a player would take for a time or a tag, and isn't seen.
constexpr std::string_view kZeroWidthSpace = "\u200B";

// ---- times

using Ticks = std::int64_t; // a format's smallest part of a second

Ticks ticks(double seconds, Ticks perSecond) {
    return std::llround(std::max(0.0, seconds) * static_cast<double>(perSecond));
}

// Times of cues, each behind the one before.
class CueTimes {
public:
    explicit CueTimes(Ticks perSecond) : perSecond_(perSecond) {}

    void next(const Cue& cue) {
        begin_ = std::max(end_, ticks(cue.front().begin, perSecond_));
        end_ = std::max(begin_ + 1, ticks(cue.back().end, perSecond_));
    }

    Ticks begin() const { return begin_; }
    Ticks end() const { return end_; }

private:
    Ticks perSecond_;
    Ticks begin_ = 0;
    Ticks end_ = 0;
};

// A number of at least two digits.
std::string twoDigits(Ticks number) {
    std::string digits = std::to_string(number);
    return digits.insert(0, digits.size() < 2 ? 1 : 0, '0');
}

constexpr Ticks kMilliseconds = 1000;

// "01:02:03.004"
std::string clockTime(Ticks milliseconds, char point) {
    constexpr Ticks kMinute = 60;
    const Ticks seconds = milliseconds / kMilliseconds;
    std::string fraction = std::to_string(kMilliseconds + milliseconds % kMilliseconds);
    fraction.front() = point;
    return twoDigits(seconds / kMinute / kMinute) + ':' + twoDigits(seconds / kMinute % kMinute) + ':' +
           twoDigits(seconds % kMinute) + fraction;
}

constexpr Ticks kHundredths = 100;

// "62:03.45"
std::string minutesTime(Ticks hundredths) {
    constexpr Ticks kMinute = 60 * kHundredths;
    return twoDigits(hundredths / kMinute) + ':' + twoDigits(hundredths % kMinute / kHundredths) + '.' +
           twoDigits(hundredths % kHundredths);
}

// ---- texts

std::string withReplaced(std::string text, std::string_view from, std::string_view to) {
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
    return text;
}

// Behind each of the characters that may begin a tag.
std::string withTagsParted(std::string_view text, std::string_view tagBegins) {
    std::string parted;
    for (const char character : text) {
        parted += character;
        if (tagBegins.find(character) != std::string_view::npos) {
            parted += kZeroWidthSpace;
        }
    }
    return parted;
}

std::string escapedForWebVtt(std::string text) {
    text = withReplaced(std::move(text), "&", "&amp;");
    text = withReplaced(std::move(text), "<", "&lt;");
    return withReplaced(std::move(text), ">", "&gt;");
}

// SubRip has no way to write what stands for a tag or an arrow.
std::string escapedForSrt(std::string_view text) {
    return withReplaced(withTagsParted(text, "<{"), "-->", "--\u200B>");
}

// ---- formats

void writeWebVtt(const SpeechTiming& timing, std::ostream& output) {
    output << "WEBVTT\n";
    CueTimes times(kMilliseconds);
    for (const Cue& cue : shortCues(timing, kLineColumns)) {
        times.next(cue);
        output << '\n' << clockTime(times.begin(), '.') << " --> " << clockTime(times.end(), '.') << '\n';
        Ticks last = times.begin();
        for (const CuePart& part : cue) {
            if (part.startsLine) {
                output << '\n';
            }
            // A time must be behind those before and within the cue.
            const Ticks begin = ticks(part.begin, kMilliseconds);
            if (begin > last && begin < times.end()) {
                output << '<' << clockTime(begin, '.') << '>';
                last = begin;
            }
            output << escapedForWebVtt(part.text);
        }
        output << '\n';
    }
}

void writeSrt(const SpeechTiming& timing, std::ostream& output) {
    CueTimes times(kMilliseconds);
    std::size_t number = 0;
    for (const Cue& cue : shortCues(timing, kLineColumns)) {
        times.next(cue);
        if (number > 0) {
            output << '\n';
        }
        output << ++number << '\n'
               << clockTime(times.begin(), ',') << " --> " << clockTime(times.end(), ',') << '\n';
        std::string text;
        for (const CuePart& part : cue) {
            text.append(part.startsLine ? "\n" : "").append(part.text);
        }
        output << escapedForSrt(text) << '\n';
    }
}

// Of the last word, the end is told as well.
void writeLrc(const SpeechTiming& timing, std::ostream& output) {
    CueTimes times(kHundredths);
    for (const Cue& cue : sentenceCues(timing)) {
        times.next(cue);
        output << '[' << minutesTime(times.begin()) << ']';
        Ticks last = times.begin();
        for (const CuePart& part : cue) {
            last = std::clamp(ticks(part.begin, kHundredths), last, times.end());
            output << '<' << minutesTime(last) << '>' << withTagsParted(part.text, "<[");
        }
        output << '<' << minutesTime(times.end()) << ">\n";
    }
}

struct Format {
    std::string_view extension;
    SubtitleFormat format;
    void (*write)(const SpeechTiming&, std::ostream&);
};
constexpr std::array kFormats{Format{".vtt", SubtitleFormat::WebVtt, writeWebVtt},
                              Format{".srt", SubtitleFormat::Srt, writeSrt},
                              Format{".lrc", SubtitleFormat::Lrc, writeLrc}};

} // namespace

bool hasExtension(std::string_view fileName, std::string_view extension) {
    return fileName.size() >= extension.size() &&
           std::ranges::equal(fileName.substr(fileName.size() - extension.size()), extension, {},
                              [](unsigned char character) {
                                  return static_cast<char>(character < 0x80 ? std::tolower(character)
                                                                            : character);
                              });
}

std::optional<SubtitleFormat> subtitleFormat(std::string_view fileName) {
    for (const Format& format : kFormats) {
        if (hasExtension(fileName, format.extension)) {
            return format.format;
        }
    }
    return std::nullopt;
}

void writeSubtitles(const SpeechTiming& timing, SubtitleFormat format, std::ostream& output) {
    std::ranges::find(kFormats, format, &Format::format)->write(timing, output);
}

} // namespace zqm::cli
