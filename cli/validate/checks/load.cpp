#include "cli/validate/checks/checks.h"
#include "cli/validate/checks/plugin_file.h"

namespace zqm::cli {

// Symbols that are missing would otherwise end the host when they are first used.
void checkLoad(const Subject& subject, Findings& /*findings*/) {
    openPlugin(subject.library);
}

} // namespace zqm::cli
