#include "tests/soak/episode_log.h"

#include "tests/support/leak_search.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace zqm::soak {
namespace {

// How lines begin that may come at any time.
constexpr auto kOfAnyEpisode = std::to_array<std::string_view>({
    // A refused start.
    "Speech can't be started: /nonexistent/folder/a.wav: ",
    // The synthesizer's library, about some voices and words.
    "Full dictionary is not installed for '",
    "espeak: No envelope",
});

// What is noticed of an engine that was killed: its end, or, where it was to be told something, this.
constexpr auto kReasons = std::to_array<std::string_view>(
    {"the speech engine ended unexpectedly", "the speech engine does not listen"});
// And what is said before and behind that.
constexpr auto kSentences = std::to_array<std::pair<std::string_view, std::string_view>>({
    {"Speech can't be started: ", ""},
    {"Speech ended early: ", ""},
    {"Phonemes can't be told: ", ""},
    {"Nothing can be heard: ", ""},
    {"", "; another one goes on listening"},
});

// A value may take several lines, of which all but the first one are indented or a bracket.
bool isOfProperties(const std::string& line) {
    return line.starts_with("k: ") || line.starts_with("v: ") || line.starts_with("e: ") ||
           line.starts_with(' ') || line.starts_with(')') || line.starts_with('}');
}

// An engine may be ended at any time, also while it is searched for leaks.
bool isOfAnyEpisode(const std::string& line) {
    return support::tellsOfInterruptedLeakSearch(line) ||
           std::ranges::any_of(kOfAnyEpisode,
                               [&](std::string_view begin) { return line.starts_with(begin); });
}

} // namespace

std::vector<std::string> withoutProperties(std::vector<std::string> lines) {
    std::erase_if(lines, isOfProperties);
    return lines;
}

bool tellsEndOfEngine(const std::string& line) {
    for (const std::string_view reason : kReasons) {
        for (const auto& [before, behind] : kSentences) {
            if (line == std::string(before).append(reason).append(behind)) {
                return true;
            }
        }
    }
    return false;
}

std::vector<std::string> unexplained(std::vector<std::string> lines, bool wereEnginesKilled) {
    lines = withoutProperties(std::move(lines));
    std::erase_if(lines, [&](const std::string& line) {
        return isOfAnyEpisode(line) || (wereEnginesKilled && tellsEndOfEngine(line));
    });
    return lines;
}

} // namespace zqm::soak
