#include "cli/command_line/option_rules.h"

#include "cli/command_line/failure.h"

namespace zqm::cli {
namespace {

// "-o FILE"
std::string shortest(const CLI::Option& option) {
    const std::string name =
        option.get_snames().empty() ? "--" + option.get_lnames().front() : "-" + option.get_snames().front();
    const std::string type = option.get_type_name();
    return name + " " + type.substr(0, type.find(':'));
}

void requireAlone(const std::string& list, const CLI::App& app, const Words& words) {
    const std::string complaint = list + " only prints a list: ";
    for (const CLI::Option* option : app.get_options()) {
        if (option->count() > 0 && !option->check_name(list)) {
            throw UsageError(complaint + option->get_name() + " can't be given with it");
        }
    }
    if (!words.all.empty()) {
        throw UsageError(complaint + "\"" + words.all.front() + "\" can't be given with it");
    }
}

} // namespace

void require(const OptionRules& rules, const CLI::App& app, const Words& words) {
    for (const char* const list : rules.lists) {
        if (app.count(list) > 0) {
            requireAlone(list, app, words);
        }
    }
    for (const auto& [one, other, reason] : rules.conflicts) {
        if (app.count(one) > 0 && app.count(other) > 0) {
            throw UsageError(std::string(one) + " and " + other + " can't both be given: " + reason);
        }
    }
    for (const auto& [option, needed] : rules.needs) {
        if (app.count(option) > 0 && app.count(needed) == 0) {
            throw UsageError(std::string(option) + " needs " + shortest(*app.get_option(needed)));
        }
    }
}

} // namespace zqm::cli
