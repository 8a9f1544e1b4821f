#include "cli/validate/validate_options.h"

#include "cli/command_line/closest.h"
#include "cli/command_line/command_line.h"
#include "cli/command_line/failure.h"
#include "cli/command_line/option_rules.h"

#include <algorithm>
#include <charconv>
#include <sstream>
#include <system_error>
#include <utility>

namespace zqm::cli {
namespace {

constexpr const char* kLists[] = {"--list"};

const Check* checkNamed(std::string_view name) {
    const std::span<const Check> all = checks();
    const auto found = std::ranges::find(all, name, &Check::name);
    if (found == all.end()) {
        const std::string near = nearest(name, checkNames());
        throw UsageError("no check is called " + std::string(name) +
                         (near.empty() ? "" : " (near it: " + near + ")") +
                         "; zqmspeech validate --list lists them");
    }
    return &*found;
}

// In the order in which they run, however they are named.
std::vector<const Check*> checksNamed(const std::string& names) {
    std::vector<const Check*> named;
    std::istringstream parts(names + ","); // the last name may be empty too
    for (std::string name; std::getline(parts, name, ',');) {
        named.push_back(checkNamed(name));
    }
    std::ranges::sort(named);
    named.erase(std::unique(named.begin(), named.end()), named.end());
    return named;
}

std::uint64_t seedOf(const std::string& text) {
    std::uint64_t seed = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seed);
    if (error != std::errc() || end != text.data() + text.size()) {
        throw UsageError("--seed: " + text + " is not a whole number from 0 to 18446744073709551615");
    }
    return seed;
}

} // namespace

constexpr Syntax kValidateSyntax{
    .name = "validate",
    .summary = "Checks whether a plugin library keeps to the plugin interface",
    .words = "LIBRARY",
    .word = "library",
    .notes =
        "LIBRARY is the file of a plugin, such as libZQMNSSpeech.so. Each check loads it in a process of its "
        "own, in a host that watches every call, so that a plugin that crashes or hangs fails that check and "
        "the others still run. A line is printed for each thing that was found. A warning or a check that "
        "was skipped is no failure. A library that begins with - goes after --.",
    .done = "no check failed",
    .failed =
        "the file can't be found, a process, a temporary folder or file descriptors are missing to check it, "
        "or standard output can't be written to",
    .fruitless = "a check failed, or the library crashed in one",
};

std::vector<std::string> checkNames() {
    std::vector<std::string> names;
    for (const Check& check : checks()) {
        names.emplace_back(check.name);
    }
    return names;
}

std::unique_ptr<CLI::App> newValidateCommandLine(ValidateOptions& options) {
    auto app = newCommandLine(kValidateSyntax);
    app->add_flag("--list", options.list, "Lists the checks")->check(noValue());
    app->add_option_function<std::string>(
           "--only", [&options](const std::string& names) { options.only = checksNamed(names); },
           "Runs only this check, or these, with commas between")
        ->type_name("CHECK");
    app->add_option_function<std::string>(
           "--seed", [&options](const std::string& text) { options.seed = seedOf(text); },
           "Chooses by this number what is chosen by chance, as an earlier run told it")
        ->type_name("NUMBER");
    app->add_option(
           "--time-limit", options.timeLimit,
           "How long each step of a check may take, and all of it 15 times that, a minute at least; 20 if "
           "not given")
        ->check(numberFrom(0.1, 3600))
        ->type_name("SECONDS");
    app->add_flag("--json", options.json,
                  "Prints a JSON document, when all checks have run; none when a signal ends it")
        ->check(noValue());
    return app;
}

std::variant<ValidateOptions, std::string> parseValidateOptions(std::span<const char* const> arguments) {
    ValidateOptions options;
    const auto app = newValidateCommandLine(options);
    auto read = readOptions(*app, kValidateSyntax, arguments);
    if (const auto* help = std::get_if<std::string>(&read)) {
        return *help;
    }
    auto& libraries = std::get<Words>(read).all;
    require({.lists = kLists}, *app, std::get<Words>(read));
    if (options.list) {
        return options;
    }
    if (libraries.empty() || libraries.front().empty()) {
        throw UsageError("there is no library to validate; zqmspeech validate --help tells how");
    }
    if (libraries.size() > 1) {
        throw UsageError("one library is validated at a time, and " + libraries[1] + " is a second one");
    }
    options.library = std::move(libraries.front());
    return options;
}

} // namespace zqm::cli
