#include "cli/validate/finding.h"

#include <array>
#include <cstddef>

namespace zqm::cli {

const char* nameOf(Verdict verdict) {
    static constexpr std::array kNames{"pass", "skip", "warning", "fail", "crash"};
    return kNames.at(static_cast<std::size_t>(verdict));
}

} // namespace zqm::cli
