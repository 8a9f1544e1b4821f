// What reading the options of every command has in common.

#pragma once

#include <CLI/CLI.hpp>

#include <span>
#include <string>
#include <variant>
#include <vector>

namespace zqm::cli {

CLI::Validator numberFrom(double least, double most); // in decimal
CLI::Validator notEmpty();
CLI::Validator noValue(); // of flags

// The words of a command line that belong to no option.
struct Words {
    std::vector<std::string> all;
    bool hasDashes = false; // some stood after "--"
};

// Reads the options, which may stand among the words, or answers the help when that is asked for; it begins
// with "Usage: zqmspeech" and `usage`. `word` is what the command calls its words. Throws UsageError.
std::variant<Words, std::string> readOptions(CLI::App& app, const std::string& usage, const std::string& word,
                                             std::span<const char* const> arguments);

} // namespace zqm::cli
