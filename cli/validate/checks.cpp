#include "cli/validate/checks/checks.h"
#include "cli/validate/check.h"

#include <array>

namespace zqm::cli {

std::span<const Check> checks() {
    static constexpr std::array kChecks{
        Check{
            .name = "load", .summary = "can be loaded, with all the symbols that it needs", .run = checkLoad},
        Check{.name = "start",
              .summary = "announces its revision and registers its classes, in less than a second",
              .run = checkStart,
              .needs = "load"},
        Check{.name = "exports",
              .summary = "exports its entry function and nothing else",
              .run = checkExports,
              .needs = "start"},
        Check{.name = "records",
              .summary = "registers class records whose tables, names and declarations are good",
              .run = checkRecords,
              .needs = "start"},
        Check{.name = "versions",
              .summary = "announces to every version of hosts what it understands, and works there",
              .run = checkVersions,
              .needs = "records"},
        Check{.name = "restart",
              .summary = "registers the same classes when it is started again",
              .run = checkRestart,
              .needs = "records"},
    };
    return kChecks;
}

} // namespace zqm::cli
