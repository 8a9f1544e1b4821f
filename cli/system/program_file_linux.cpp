#include "cli/system/program_file.h"

#include "cli/command_line/failure.h"

#include <array>
#include <cerrno>
#include <climits>
#include <cstring>

#include <unistd.h>

namespace zqm::cli {

std::string programFile() {
    std::array<char, PATH_MAX> path{};
    const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
    if (length < 0) {
        throw Failure(std::string("can't find this program's own file: ") + std::strerror(errno));
    }
    return {path.data(), static_cast<std::size_t>(length)};
}

} // namespace zqm::cli
