#include "cli/command_line/closest.h"

#include <algorithm>

namespace zqm::cli {
namespace {

constexpr std::size_t kShortestBeginning = 2;
constexpr std::size_t kLettersPerMistake = 3;

// Row by row, of which the last three count: swapped neighbours look two back.
std::size_t editDistance(std::string_view one, std::string_view other) {
    std::vector<std::size_t> beforeLast(other.size() + 1);
    std::vector<std::size_t> last(other.size() + 1);
    std::vector<std::size_t> row(other.size() + 1);
    for (std::size_t column = 0; column <= other.size(); ++column) {
        row[column] = column;
    }
    for (std::size_t line = 1; line <= one.size(); ++line) {
        beforeLast.swap(last);
        last.swap(row);
        row[0] = line;
        for (std::size_t column = 1; column <= other.size(); ++column) {
            const bool isEqual = one[line - 1] == other[column - 1];
            row[column] =
                std::min({last[column] + 1, row[column - 1] + 1, last[column - 1] + (isEqual ? 0 : 1)});
            if (line > 1 && column > 1 && one[line - 1] == other[column - 2] &&
                one[line - 2] == other[column - 1]) {
                row[column] = std::min(row[column], beforeLast[column - 2] + 1);
            }
        }
    }
    return row.back();
}

} // namespace

std::string folded(std::string_view name) {
    std::string text(name);
    std::ranges::transform(text, text.begin(), [](char character) {
        const bool isCapital = character >= 'A' && character <= 'Z';
        return static_cast<char>(isCapital ? character - 'A' + 'a' : character);
    });
    std::ranges::replace(text, '_', '-');
    return text;
}

std::size_t mistakes(std::string_view typed, std::string_view name) {
    constexpr std::size_t kLongest = 100; // names are shorter; the distance takes the square of it
    if (typed.size() > kLongest || name.size() > kLongest) {
        return kFar;
    }
    const std::string one = folded(typed);
    const std::string other = folded(name);
    if (one == other) {
        return 0;
    }
    if ((one.size() >= kShortestBeginning && other.starts_with(one)) || one.starts_with(other + "-")) {
        return 1;
    }
    const std::size_t distance = editDistance(one, other);
    return distance <= one.size() / kLettersPerMistake ? distance : kFar;
}

std::string nearest(std::string_view typed, const std::vector<std::string>& names) {
    std::size_t fewest = kFar;
    std::string nearest;
    for (const std::string& name : names) {
        const std::size_t count = mistakes(typed, name);
        if (count < fewest) {
            fewest = count;
            nearest = name;
        }
    }
    return nearest;
}

} // namespace zqm::cli
