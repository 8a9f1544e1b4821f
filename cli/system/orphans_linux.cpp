#include "cli/system/orphans.h"

#include "cli/system/child_processes.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <vector>

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zqm::cli {

void adoptOrphans() {
    prctl(PR_SET_CHILD_SUBREAPER, 1);
}

std::int64_t orphansOfParent() {
    return std::ranges::count_if(childrenOf(getppid()),
                                 [](pid_t process) { return process != getpid() && isRunning(process); });
}

void endAdopted() {
    // The children of those that were killed come next.
    for (std::vector<pid_t> all = childrenOf(getpid()); !all.empty(); all = childrenOf(getpid())) {
        for (const pid_t process : all) {
            kill(process, SIGKILL);
        }
        for (const pid_t process : all) {
            while (waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
            }
        }
    }
}

} // namespace zqm::cli
