#pragma once

#include "cli/terminal_line.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace zqm::cli {

// " 42%  word", in at most this many columns of a terminal. Control characters are left out.
std::string progressText(double share, std::string_view word, std::size_t columns);

// How far the speech is, and the word being spoken.
class ProgressLine : public TerminalLine {
public:
    using TerminalLine::TerminalLine;

    void show(double share, std::string_view word) { draw(progressText(share, word, columns())); }
};

} // namespace zqm::cli
