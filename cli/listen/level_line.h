#pragma once

#include "cli/terminal/terminal_line.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace zqm::cli {

// "[#####---------------]  state", in at most this many columns of a terminal: the bar is full at 0 decibels
// and empty at -60; where there is no room for it, only the state is told. Control characters are left out.
std::string levelText(double decibels, std::string_view state, std::size_t columns, bool isColoured);

// How loud what is heard is, and what the recognizer is doing.
class LevelLine : public TerminalLine {
public:
    explicit LevelLine(int descriptor);

    void show(double decibels, std::string_view state) {
        draw(levelText(decibels, state, columns(), isColoured_));
    }

private:
    bool isColoured_; // unless people don't want colours: NO_COLOR says so
};

} // namespace zqm::cli
