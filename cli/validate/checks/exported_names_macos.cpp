#include "cli/validate/checks/exported_names.h"

namespace zqm::cli {

std::optional<std::vector<ExportedName>> exportedNames(void* /*library*/) {
    return std::nullopt;
}

} // namespace zqm::cli
