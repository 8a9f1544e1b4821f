#include "cli/say/speech_view.h"

#include "cli/say/progress_line.h"
#include "cli/terminal/colours.h"
#include "cli/text/display_width.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string_view>
#include <utility>

#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf16.h>

namespace zqm::cli {
namespace {

constexpr std::size_t kFewestRows = 3;
constexpr std::size_t kMostTextRows = 5;
constexpr std::size_t kMostColumns = 100; // longer lines are hard to read

constexpr std::string_view kHighlight = "\x1b[7m";
constexpr std::string_view kNoHighlight = "\x1b[27m";
constexpr std::string_view kBarColour = "\x1b[36m";
constexpr std::string_view kNoColour = "\x1b[39m";

std::string twoDigits(std::int64_t number) {
    std::string digits = std::to_string(number);
    return digits.insert(0, digits.size() < 2 ? 1 : 0, '0');
}

// "0:07", "1:02:03".
std::string clockText(std::chrono::seconds time) {
    constexpr std::int64_t kMinute = 60;
    const std::int64_t seconds = time.count();
    const std::int64_t minutes = seconds / kMinute;
    const std::string end = ":" + twoDigits(seconds % kMinute);
    return minutes < kMinute ? std::to_string(minutes) + end
                             : std::to_string(minutes / kMinute) + ":" + twoDigits(minutes % kMinute) + end;
}

} // namespace

std::string textLine(const std::u16string& text, TextLine line, std::size_t begin, std::size_t end) {
    std::string drawn;
    const char16_t* units = text.data();
    bool isHighlighted = false;
    for (std::size_t at = line.begin; at < line.end;) {
        if (const bool isWord = at >= begin && at < end; isWord != isHighlighted) {
            drawn.append(isWord ? kHighlight : kNoHighlight);
            isHighlighted = isWord;
        }
        UChar32 codePoint = 0;
        U16_NEXT(units, at, line.end, codePoint);
        if (isDrawable(codePoint)) {
            icu::UnicodeString(codePoint).toUTF8String(drawn);
        } else if (u_isUWhiteSpace(codePoint) != 0) {
            drawn += ' ';
        }
    }
    drawn.append(isHighlighted ? kNoHighlight : "");
    return drawn;
}

std::string progressBar(double share, std::optional<std::chrono::seconds> left, std::size_t columns,
                        bool isColoured) {
    constexpr std::size_t kShortestBar = 4;
    constexpr std::size_t kAround = 2; // columns of the brackets
    constexpr std::size_t kTextColumns =
        22; // and a blank before; so that the bar keeps its length while the text changes
    std::string text = progressText(share, left ? clockText(*left) + " left" : "", columns);
    if (columns < kShortestBar + kAround + kTextColumns) {
        return text;
    }
    const std::size_t cells = columns - kAround - kTextColumns;
    const auto full = static_cast<std::size_t>(std::lround(share * static_cast<double>(cells)));
    std::string bar = "[";
    bar.append(isColoured ? kBarColour : "").append(full, '#').append(isColoured ? kNoColour : "");
    bar.append(cells - full, '-').append("] ").append(text);
    return bar;
}

SpeechView::SpeechView(int descriptor, const std::u16string& text)
    : TerminalLine(descriptor), text_(text), isColoured_(areColoursWanted(descriptor)) {}

void SpeechView::show(std::size_t position, std::size_t length) {
    position_ = std::min(position, text_.size());
    length_ = std::min(length, text_.size() - position_);
    wordBegan_ = Clock::now();
    began_ = began_.value_or(wordBegan_);
    refresh();
}

void SpeechView::refresh() {
    if (!began_ || !isDue()) {
        return;
    }
    const Screen screen = this->screen();
    std::string content = std::to_string(screen.columns) + " ";
    for (const std::string& line : screen.lines) {
        content += line + "\n";
    }
    if (!isShown() || content != shown_) {
        draw(screen.lines);
        shown_ = std::move(content);
    }
}

SpeechView::Screen SpeechView::screen() {
    Screen screen{columns(), {}};
    const std::size_t rows = this->rows();
    if (rows < kFewestRows) {
        std::string word;
        icu::UnicodeString(text_.data() + position_, static_cast<std::int32_t>(length_)).toUTF8String(word);
        screen.lines.push_back(progressText(shareBefore(position_ + length_), word, screen.columns));
        return screen;
    }
    const std::size_t columns = std::min(screen.columns, kMostColumns);
    for (const TextLine& line : linesFor(columns).around(position_, std::min(kMostTextRows, rows - 2))) {
        screen.lines.push_back(textLine(text_, line, position_, position_ + length_));
    }
    screen.lines.push_back(progressBar(shareBefore(position_ + length_), timeLeft(), columns, isColoured_));
    return screen;
}

// Lines of another width begin anew not far before the word: at a line end of the text, or any blank.
TextLines& SpeechView::linesFor(std::size_t columns) {
    constexpr std::size_t kFarthest = 4000;
    if (columns != linesColumns_) {
        std::size_t begin = position_ - std::min(position_, kFarthest);
        if (begin > 0) {
            const std::size_t lineEnd = text_.rfind(u'\n', position_);
            const std::size_t blank = text_.find(u' ', begin);
            begin =
                lineEnd != std::u16string::npos && lineEnd >= begin ? lineEnd : std::min(blank, position_);
        }
        lines_ = std::make_unique<TextLines>(text_, columns, begin);
        linesColumns_ = columns;
    }
    return *lines_;
}

double SpeechView::shareBefore(std::size_t position) const {
    return text_.empty() ? 1 : static_cast<double>(position) / static_cast<double>(text_.size());
}

// As fast as until now; unknown at first.
std::optional<std::chrono::seconds> SpeechView::timeLeft() const {
    constexpr std::chrono::duration<double> kFirst{2};
    constexpr double kFirstShare = 0.02;
    const std::chrono::duration<double> untilWord = wordBegan_ - *began_;
    const double share = shareBefore(position_);
    if (untilWord < kFirst || share < kFirstShare) {
        return std::nullopt;
    }
    const std::chrono::duration<double> left = untilWord / share - (Clock::now() - *began_);
    if (left.count() < 0) {
        return std::chrono::seconds(0);
    }
    return std::chrono::ceil<std::chrono::seconds>(left);
}

} // namespace zqm::cli
