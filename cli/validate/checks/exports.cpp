#include "cli/validate/checks/checks.h"
#include "cli/validate/checks/exported_names.h"
#include "cli/validate/checks/plugin_file.h"

#include <algorithm>
#include <string>

namespace zqm::cli {
namespace {

constexpr std::size_t kMostNamed = 5;

// "a, b and 3 more"
std::string listOf(const std::vector<std::string>& names) {
    std::string list;
    for (std::size_t index = 0; index < std::min(names.size(), kMostNamed); ++index) {
        list += (index == 0 ? "" : ", ") + names[index];
    }
    return list + (names.size() > kMostNamed ? " and " + std::to_string(names.size() - kMostNamed) + " more"
                                             : std::string());
}

} // namespace

void checkExports(const Subject& subject, Findings& findings) {
    auto names = exportedNames(openPlugin(subject.library));
    if (!names) {
        findings.skip("this system doesn't tell what a library exports");
        return;
    }
    std::erase(*names, kEntryFunction);
    // A host loads many plugins, and one of them may have the same name for another thing. That does harm
    // only where the host lets them see each other's names.
    if (!names->empty()) {
        findings.warn(std::string("besides ") + kEntryFunction + " it exports " + listOf(*names));
    }
}

} // namespace zqm::cli
