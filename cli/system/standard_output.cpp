#include "cli/system/standard_output.h"

#include <cstdio>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace zqm::cli {

void printLine(std::string_view line) {
    std::fwrite(line.data(), 1, line.size(), stdout);
    std::fputc('\n', stdout);
    std::fflush(stdout);
}

bool hasReader() {
    if (std::ferror(stdout) != 0) {
        return false;
    }
    if ((fcntl(STDOUT_FILENO, F_GETFL) & O_ACCMODE) == O_RDONLY) { // as when it is closed
        return false;
    }
    pollfd output{STDOUT_FILENO, 0, 0};
    return poll(&output, 1, 0) <= 0 || (output.revents & (POLLERR | POLLNVAL)) == 0;
}

} // namespace zqm::cli
