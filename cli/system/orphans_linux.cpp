#include "cli/system/orphans.h"

#include "cli/system/child_processes.h"

#include <algorithm>
#include <cerrno>
#include <csignal>

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zqm::cli {
namespace {

std::vector<pid_t> ownChildren() {
    siginfo_t info{};
    // To look through all processes for none takes its time.
    return waitid(P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT) == 0 ? childrenOf(getpid())
                                                                     : std::vector<pid_t>();
}

} // namespace

Adoption::Adoption() : earlier_(ownChildren()) {
    prctl(PR_SET_CHILD_SUBREAPER, 1);
}

void Adoption::end() const {
    const auto killed = [this] {
        std::vector<pid_t> processes = ownChildren();
        std::erase_if(processes, [this](pid_t process) {
            return std::ranges::find(earlier_, process) != earlier_.end() || kill(process, SIGKILL) != 0;
        });
        return processes;
    };
    // The children of those that were killed come next. What may not be killed would be waited for in vain.
    for (std::vector<pid_t> all = killed(); !all.empty(); all = killed()) {
        for (const pid_t process : all) {
            while (waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
            }
        }
    }
}

std::int64_t orphansOfParent() {
    return std::ranges::count_if(childrenOf(getppid()),
                                 [](pid_t process) { return process != getpid() && isRunning(process); });
}

} // namespace zqm::cli
