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

SilentOutput::SilentOutput() {
    std::fflush(stdout);
    output_ = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (output_ >= 0 && nowhere >= 0) {
        dup2(nowhere, STDOUT_FILENO);
    }
    close(nowhere);
}

SilentOutput::~SilentOutput() {
    std::fflush(stdout);
    if (output_ >= 0) {
        dup2(output_, STDOUT_FILENO);
    }
    close(output_);
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
