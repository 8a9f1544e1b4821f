#include "cli/listen/level_line.h"

#include "cli/terminal/colours.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace zqm::cli {
namespace {

constexpr double kQuietest = -60;
constexpr std::size_t kLongestBar = 30;
constexpr std::size_t kShortestBar = 4;
constexpr std::size_t kBetween = 2; // columns between bar and state

// Up to this level the bar has this colour.
struct Colour {
    double upTo;
    std::string_view code;
};
constexpr std::array kColours{Colour{-20, "\x1b[32m"}, Colour{-6, "\x1b[33m"}, Colour{0, "\x1b[31m"}};
constexpr std::string_view kNoColour = "\x1b[0m";

std::size_t cellsUpTo(double decibels, std::size_t cells) {
    const double share = decibels > kQuietest ? 1 - std::min(decibels, 0.0) / kQuietest : 0;
    return static_cast<std::size_t>(std::lround(share * static_cast<double>(cells)));
}

std::string barText(double decibels, std::size_t cells, bool isColoured) {
    const std::size_t full = cellsUpTo(decibels, cells);
    std::string bar = "[";
    if (isColoured) {
        std::size_t begin = 0;
        for (const Colour& colour : kColours) {
            const std::size_t end = std::min(full, cellsUpTo(colour.upTo, cells));
            if (end > begin) {
                bar.append(colour.code).append(end - begin, '#');
                begin = end;
            }
        }
        if (full > 0) {
            bar.append(kNoColour);
        }
    } else {
        bar.append(full, '#');
    }
    return bar.append(cells - full, '-').append("]");
}

} // namespace

std::string levelText(double decibels, std::string_view state, std::size_t columns, bool isColoured) {
    constexpr std::size_t kAround = 2; // columns of the brackets
    const std::size_t half = columns / 2;
    if (half < kShortestBar + kAround) {
        return fitted(state, columns);
    }
    const std::size_t cells = std::min(kLongestBar, half - kAround);
    return barText(decibels, cells, isColoured) + std::string(kBetween, ' ') +
           fitted(state, columns - cells - kAround - kBetween);
}

LevelLine::LevelLine(int descriptor) : TerminalLine(descriptor), isColoured_(areColoursWanted(descriptor)) {}

} // namespace zqm::cli
