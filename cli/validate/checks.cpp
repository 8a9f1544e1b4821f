#include "cli/validate/checks/checks.h"
#include "cli/validate/check.h"

#include <array>

namespace zqm::cli {

std::span<const Check> checks() {
    static constexpr std::array kChecks{
        Check{
            .name = "load", .summary = "can be loaded, with all symbols that it needs", .run = checkLoading},
        Check{.name = "start",
              .summary = "announces its revision and registers its classes",
              .run = checkStart,
              .needs = "load"},
    };
    return kChecks;
}

} // namespace zqm::cli
