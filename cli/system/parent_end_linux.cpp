#include "cli/system/parent_end.h"

#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>

namespace zqm::cli {

void endWithParent(pid_t parent) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) {
        _exit(1); // it has ended already
    }
}

} // namespace zqm::cli
