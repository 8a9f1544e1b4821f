#include "cli/system/free_descriptors.h"

#include "cli/command_line/failure.h"

#include <cerrno>
#include <cstring>
#include <vector>

#include <unistd.h>

namespace zqm::cli {

void requireFreeDescriptors(std::size_t least, const std::string& purpose) {
    std::vector<int> taken;
    int next = -1;
    while (taken.size() < least && (next = dup(STDIN_FILENO)) >= 0) {
        taken.push_back(next);
    }
    const int error = errno;
    for (const int each : taken) {
        close(each);
    }
    if (taken.size() < least) {
        throw Failure("can open " + std::to_string(taken.size()) + " files more, and " +
                      std::to_string(least) + " are needed " + purpose + ": " + std::strerror(error));
    }
}

} // namespace zqm::cli
