// Small text helpers for the host language, which knows no case in names.

#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace zqm::host {

constexpr char lowered(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

inline std::string lowered(std::string_view text) {
    std::string result(text);
    std::ranges::transform(result, result.begin(), [](char letter) { return lowered(letter); });
    return result;
}

constexpr bool sameName(std::string_view one, std::string_view other) {
    return std::ranges::equal(one, other,
                              [](char left, char right) { return lowered(left) == lowered(right); });
}

inline std::string inQuotes(std::string_view text) {
    return '"' + std::string(text) + '"';
}

} // namespace zqm::host
