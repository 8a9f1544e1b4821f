#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>

namespace zqm::cli {

// " 42%  word", in at most this many columns of a terminal. Control characters are left out.
std::string progressText(double share, std::string_view word, std::size_t columns);

// One line of a terminal, redrawn in place: how far the speech is, and the word being spoken.
class ProgressLine {
public:
    explicit ProgressLine(int descriptor);
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;
    ~ProgressLine(); // clears the line

    bool isPossible() const { return isPossible_; } // the descriptor is a terminal that can redraw a line
    // Whether enough time has passed since the last time that people see a difference.
    bool isDue() const;
    void show(double share, std::string_view word);
    void clear();

private:
    using Clock = std::chrono::steady_clock;

    std::size_t columns() const;
    void write(std::string_view bytes) const;

    int descriptor_;
    bool isPossible_;
    bool isShown_ = false;
    Clock::time_point due_ = Clock::time_point::min();
};

} // namespace zqm::cli
