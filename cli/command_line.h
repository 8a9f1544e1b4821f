// What reading the command line of every command has in common.

#pragma once

#include <CLI/CLI.hpp>

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace zqm::cli {

// How a command is called and ends, but for its options: the parts of its help.
struct Syntax {
    std::string_view name;
    std::string_view summary;        // a sentence without its period
    std::string_view words;          // those that belong to no option, as the usage has them: "[TEXT...]"
    std::string_view word;           // what people call one of them
    std::string_view notes;          // paragraphs below the options; may be empty
    std::string_view done;           // when the exit code is 0: "all was spoken"
    std::string_view failed;         // when it is 1
    std::string_view fruitless = {}; // when it is 3, if that happens
};

// A command line of this syntax, to which options can be added. The name of an option's type tells shells how
// to complete its value (completion.cpp).
std::unique_ptr<CLI::App> newCommandLine(const Syntax& syntax);

CLI::Validator numberFrom(double least, double most); // in decimal
CLI::Validator notEmpty();
CLI::Validator noValue(); // of flags

// The words of a command line that belong to no option.
struct Words {
    std::vector<std::string> all;
    bool hasDashes = false; // some stood after "--"
};

// Reads the options, which may stand among the words, or answers the help when that is asked for. Throws
// UsageError.
std::variant<Words, std::string> readOptions(CLI::App& app, const Syntax& syntax,
                                             std::span<const char* const> arguments);

// Takes no words. Throws UsageError.
void requireNoWords(const Words& words, const Syntax& syntax);

} // namespace zqm::cli
