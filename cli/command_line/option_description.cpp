#include "cli/command_line/option_description.h"

#include "cli/command_line/command_line.h"

#include <algorithm>

namespace zqm::cli {

std::vector<OptionDescription> describeOptions(const CLI::App& app) {
    std::vector<OptionDescription> descriptions;
    for (const CLI::Option* option : app.get_options()) {
        OptionDescription& description = descriptions.emplace_back();
        for (const std::string& name : option->get_snames()) {
            description.names.push_back("-" + name);
        }
        for (const std::string& name : option->get_lnames()) {
            description.names.push_back("--" + name);
        }
        if (option->get_items_expected_max() > 0) { // what its validators say stands behind a colon
            const std::string type = option->get_type_name();
            const std::size_t end = std::min(type.find(':'), type.size());
            description.type = type.substr(0, end);
            description.range = type.substr(std::min(end + 1, type.size()));
        }
        description.summary = option->get_description();
        std::ranges::replace(description.summary, '\n', ' ');
    }
    return descriptions;
}

} // namespace zqm::cli
