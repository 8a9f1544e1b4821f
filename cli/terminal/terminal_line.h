#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zqm::cli {

// As much of the text as these columns of a terminal hold, without what would spoil the line.
std::string fitted(std::string_view text, std::size_t columns);

// How wide the terminal is; none: the descriptor is no terminal, or one that doesn't tell.
std::optional<std::size_t> terminalColumns(int descriptor);

// The columns that a line of the terminal may take; those of a usual one where it doesn't tell.
std::size_t lineColumns(int descriptor);

std::size_t terminalRows(int descriptor);

// One line of a terminal, or some, redrawn in place.
class TerminalLine {
public:
    static constexpr std::chrono::milliseconds kRedrawInterval{50};

    explicit TerminalLine(int descriptor);
    TerminalLine(const TerminalLine&) = delete;
    TerminalLine& operator=(const TerminalLine&) = delete;
    ~TerminalLine(); // clears the line

    bool isPossible() const { return isPossible_; } // the descriptor is a terminal that can redraw a line
    // Whether enough time has passed since the last time that people see a difference.
    bool isDue() const;
    void clear();

protected:
    bool isShown() const { return !shown_.empty(); }
    std::size_t columns() const { return lineColumns(descriptor_); }
    void draw(std::string_view line);
    void draw(std::span<const std::string> lines); // at least one
    std::size_t rows() const { return terminalRows(descriptor_); }

private:
    using Clock = std::chrono::steady_clock;

    std::string toFirstLine() const;
    void write(std::string_view bytes) const;

    int descriptor_;
    bool isPossible_;
    std::vector<std::string> shown_; // the lines
    Clock::time_point due_ = Clock::time_point::min();
};

} // namespace zqm::cli
