#include "platform/child_process.h"

#include "platform/engine_process.h"

#include <cerrno>
#include <csignal>
#include <ctime>
#include <poll.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zqm::platform {

ChildProcess::ChildProcess(pid_t number)
    : number_(number), descriptor_(aboveStandardDescriptors(
                           protocol::Descriptor(static_cast<int>(::syscall(SYS_pidfd_open, number, 0))))) {
    // By now the number may have become another process's.
    if (descriptor_ && lookForEnd(WNOWAIT) == End::OfNoChild) {
        descriptor_.reset();
        errno = ESRCH;
    }
}

bool ChildProcess::isReaped() const {
    return lookForEnd(0) != End::None;
}

// ECHILD: the host ignores SIGCHLD, or has waited for it itself.
ChildProcess::End ChildProcess::lookForEnd(int options) const {
    siginfo_t end{};
    int answer = 0;
    do {
        answer = ::waitid(P_PIDFD, static_cast<id_t>(descriptor_.get()), &end, WEXITED | WNOHANG | options);
    } while (answer < 0 && errno == EINTR);
    if (answer < 0) {
        return End::OfNoChild;
    }
    return end.si_pid != 0 ? End::OfChild : End::None;
}

// There is no clock by descriptor. The number was the child's while its clock was read if it is now.
std::chrono::nanoseconds ChildProcess::processorTime() const {
    clockid_t clock{};
    timespec time{};
    if (::clock_getcpuclockid(number_, &clock) != 0 || ::clock_gettime(clock, &time) != 0 || hasEnded()) {
        return std::chrono::nanoseconds::zero();
    }
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

bool ChildProcess::hasEnded() const {
    pollfd watched{descriptor_.get(), POLLIN, 0};
    return ::poll(&watched, 1, 0) != 0;
}

void ChildProcess::kill() const {
    ::syscall(SYS_pidfd_send_signal, descriptor_.get(), SIGKILL, nullptr, 0);
}

} // namespace zqm::platform
