#pragma once

#include "cli/terminal/terminal_line.h"
#include "cli/text/text_lines.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zqm::cli {

// A part of the text on a line, with the words from `begin` to `end` of the text highlighted. Control
// characters are left out.
std::string textLine(const std::u16string& text, TextLine line, std::size_t begin, std::size_t end);

// "[####------]  42%  0:07 left", in at most so many columns; without the bar where there is no room for it.
std::string progressBar(double share, std::optional<std::chrono::seconds> left, std::size_t columns,
                        bool isColoured);

// The text around the word being spoken, that word highlighted, and how far the speech is; on terminals of
// fewer than three rows a line with the word and its place.
class SpeechView : public TerminalLine {
public:
    using Clock = std::chrono::steady_clock;

    // The text outlives this.
    SpeechView(int descriptor, const std::u16string& text);

    // The word that is spoken now, in UTF-16 units. With the first one the speech begins.
    void show(std::size_t position, std::size_t length);
    // Draws the same anew where time has passed or the terminal has changed.
    void refresh();

private:
    struct Screen {
        std::size_t columns;
        std::vector<std::string> lines;
    };

    Screen screen();
    TextLines& linesFor(std::size_t columns);
    double shareBefore(std::size_t position) const;
    std::optional<std::chrono::seconds> timeLeft() const;

    const std::u16string& text_;
    bool isColoured_;
    std::optional<Clock::time_point> began_;
    Clock::time_point wordBegan_;
    std::size_t position_ = 0;
    std::size_t length_ = 0;
    std::size_t linesColumns_ = 0;
    std::unique_ptr<TextLines> lines_;
    std::string shown_; // what refresh() need not draw again
};

} // namespace zqm::cli
