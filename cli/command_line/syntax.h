#pragma once

#include <span>
#include <string_view>

namespace CLI { // NOLINT(readability-identifier-naming): as CLI11 has it
class App;
}

namespace zqm::cli {

// A line of a list, and what it stands for.
struct Explanation {
    std::string_view line;
    std::string_view meaning;
};

// How a command is called and ends, but for its options: the parts of its help.
struct Syntax {
    std::string_view name;
    std::string_view summary;        // a sentence without its period
    std::string_view words;          // those that belong to no option, as the usage has them: "[TEXT...]"
    std::string_view word;           // what people call one of them
    std::string_view wordNotes = {}; // a paragraph on them
    std::string_view notes;          // more paragraphs below the options; may be empty
    std::string_view listTitle = {}; // of a list below those, if there is one
    std::span<const Explanation> list = {};
    std::string_view done;           // when the exit code is 0: "all was spoken"
    std::string_view failed;         // when it is 1
    std::string_view fruitless = {}; // when it is 3, if that happens
};

} // namespace zqm::cli
