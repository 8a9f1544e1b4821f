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
        Check{.name = "members",
              .summary = "lives through a program's calls of all its members",
              .run = checkMembers,
              .needs = "records"},
        Check{.name = "handles",
              .summary = "gives back every handle and lock, and uses none that is gone",
              .run = checkHandles,
              .needs = "members"},
        Check{.name = "arguments",
              .summary = "lets members be called with null and with extreme arguments",
              .run = checkArguments,
              .needs = "handles"},
        Check{.name = "unconstructed",
              .summary = "lets members be called on objects without a Constructor",
              .run = checkUnconstructed,
              .needs = "arguments"},
        Check{.name = "refused",
              .summary = "lives without each of the host's services",
              .run = checkRefused,
              .needs = "arguments"},
        Check{.name = "refused-sets",
              .summary = "lives without sets of the host's services, chosen by chance",
              .run = checkRefusedSets,
              .needs = "refused"},
        Check{.name = "failing-calls",
              .summary = "lives through failures of the host's services",
              .run = checkFailingCalls,
              .needs = "members"},
        Check{.name = "growth",
              .summary = "needs no more and more memory, descriptors or processes",
              .run = checkGrowth,
              .needs = "handles"},
        Check{.name = "unload", .summary = "can be unloaded", .run = checkUnload, .needs = "members"},
    };
    return kChecks;
}

} // namespace zqm::cli
