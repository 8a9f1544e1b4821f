#include "cli/system/orphans.h"

namespace zqm::cli {

Adoption::Adoption() = default;

void Adoption::end() const {}

std::int64_t orphansOfParent() {
    return 0;
}

} // namespace zqm::cli
