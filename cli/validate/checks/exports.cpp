#include "cli/validate/checks/checks.h"
#include "cli/validate/checks/exported_names.h"
#include "cli/validate/checks/plugin_file.h"

#include <algorithm>
#include <string>

namespace zqm::cli {
namespace {

constexpr std::size_t kMostNamed = 3;

// "it exports a, b and 3 more"
std::string tellingOf(const std::vector<std::string>& names) {
    std::string text = "it exports ";
    for (std::size_t index = 0; index < std::min(names.size(), kMostNamed); ++index) {
        text += (index == 0 ? "" : ", ") + names[index];
    }
    return names.size() > kMostNamed ? text + " and " + std::to_string(names.size() - kMostNamed) + " more"
                                     : text;
}

} // namespace

void checkExports(const Subject& subject, Findings& findings) {
    const auto exported = exportedNames(openPlugin(subject.library));
    if (!exported) {
        findings.skip("this system doesn't tell what a library exports");
        return;
    }
    std::vector<std::string> own;
    std::vector<std::string> shared;
    for (const ExportedName& name : *exported) {
        if (name.name != kEntryFunction) {
            (name.isShared ? shared : own).push_back(name.name);
        }
    }
    if (!own.empty()) {
        findings.fail(tellingOf(own) + ", which another plugin in the same program may call something else");
    }
    if (!shared.empty()) {
        findings.warn(tellingOf(shared) + ", which the program and all its plugins then share");
    }
}

} // namespace zqm::cli
