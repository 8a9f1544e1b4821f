#include "tests/engine/kernel_confinement.h"

#include <array>
#include <cerrno>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace zqm::test {
namespace {

// By a filter that allows everything.
bool filterSystemCalls() {
    std::array<sock_filter, 1> allow{sock_filter{BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ALLOW}};
    const sock_fprog program{allow.size(), allow.data()};
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           ::syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, SECCOMP_FILTER_FLAG_TSYNC, &program) == 0;
}

} // namespace

bool kernelFiltersSystemCalls() {
    const pid_t process = ::fork();
    if (process == 0) {
        ::_exit(filterSystemCalls() ? 0 : 1);
    }
    int status = 0;
    ::waitpid(process, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

int kernelLandlockVersion() {
    constexpr unsigned kAskVersion = 1;
    const long version = ::syscall(SYS_landlock_create_ruleset, nullptr, 0, kAskVersion);
    const bool isAbsent = errno == ENOSYS || errno == EOPNOTSUPP || errno == EPERM || errno == EACCES;
    if (version < 0 && !isAbsent) {
        throw std::system_error(errno, std::generic_category(), "Landlock");
    }
    return version < 0 ? 0 : static_cast<int>(version);
}

} // namespace zqm::test
