#include "cli/system/program_file.h"

#include "cli/command_line/failure.h"

#include <array>
#include <climits>
#include <cstdint>
#include <cstdlib>

#include <mach-o/dyld.h>

namespace zqm::cli {

std::string programFile() {
    std::array<char, PATH_MAX> path{};
    std::uint32_t size = PATH_MAX;
    std::array<char, PATH_MAX> resolved{};
    if (_NSGetExecutablePath(path.data(), &size) != 0 || realpath(path.data(), resolved.data()) == nullptr) {
        throw Failure("can't find this program's own file");
    }
    return resolved.data();
}

} // namespace zqm::cli
