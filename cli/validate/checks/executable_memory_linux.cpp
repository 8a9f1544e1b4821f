#include "cli/validate/checks/executable_memory.h"

#include <cstdint>
#include <fstream>
#include <limits>
#include <string>

namespace zqm::cli {

std::optional<bool> isExecutable(const void* address) {
    const auto wanted = reinterpret_cast<std::uintptr_t>(address);
    std::ifstream maps("/proc/self/maps");
    if (!maps) {
        return std::nullopt;
    }
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
    char border = 0;
    std::string permissions; // "r-xp"
    while (maps >> std::hex >> begin >> border >> end >> permissions) {
        if (begin <= wanted && wanted < end) {
            return permissions.find('x') != std::string::npos;
        }
        maps.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
    }
    return false;
}

} // namespace zqm::cli
