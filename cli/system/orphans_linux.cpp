#include "cli/system/orphans.h"

#include "cli/system/child_processes.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fstream>
#include <limits>
#include <string>
#include <vector>

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zqm::cli {
namespace {

// Not one that waits to be reaped.
bool isRunning(pid_t process) {
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    char state = 'Z'; // it has gone
    file.ignore(std::numeric_limits<std::streamsize>::max(), ')') >> state;
    return state != 'Z';
}

} // namespace

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
