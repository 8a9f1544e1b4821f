#include "cli/inspect/trial.h"

#include "cli/command_line/failure.h"
#include "cli/system/parent_end.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zqm::cli {
namespace {

constexpr char kSurvived = 'd';

// What signals its group ends nobody else's.
[[noreturn]] void perform(const std::function<void()>& action, int done, pid_t parent) {
    setpgid(0, 0);
    endWithParent(parent);
    for (const int signal : {SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGSEGV}) {
        std::signal(signal, SIG_DFL); // sanitizers have handlers of their own
    }
    const rlimit noDump{0, 0};
    setrlimit(RLIMIT_CORE, &noDump);
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    dup2(nowhere, STDOUT_FILENO);
    dup2(nowhere, STDERR_FILENO);
    try {
        action();
    } catch (...) { // NOLINT(bugprone-empty-catch): whoever does it again gets it again
    }
    const ssize_t written = write(done, &kSurvived, 1);
    _exit(written == 1 ? 0 : 1);
}

// How it has ended, or has been stopped, which is its end.
int statusOf(pid_t process) {
    const auto wait = [process](int options) {
        int status = 0;
        while (waitpid(process, &status, options) < 0 && errno == EINTR) {
        }
        return status;
    };
    const int status = wait(WUNTRACED);
    kill(-process, SIGKILL);
    if (WIFSTOPPED(status)) {
        wait(0);
    }
    return status;
}

std::string wordsFor(int status) {
    const auto name = [](int signal) {
        return std::string(strsignal(signal)); // NOLINT(concurrency-mt-unsafe): there is one thread
    };
    return WIFSTOPPED(status)    ? name(WSTOPSIG(status))
           : WIFSIGNALED(status) ? name(WTERMSIG(status))
                                 : "exit code " + std::to_string(WEXITSTATUS(status));
}

} // namespace

std::string endInTrial(const std::function<void()>& action) {
    std::array<int, 2> done{};
    if (pipe(done.data()) != 0) {
        throw Failure(std::string("no pipe: ") + std::strerror(errno));
    }
    const pid_t parent = getpid();
    const pid_t process = fork();
    if (process == 0) {
        close(done[0]);
        perform(action, done[1], parent);
    }
    const int error = errno;
    close(done[1]);
    const int status = process > 0 ? statusOf(process) : 0;
    // Whatever the library has started may hold the other end still: nothing more is waited for.
    fcntl(done[0], F_SETFL, O_NONBLOCK);
    char answer = 0;
    const ssize_t count = read(done[0], &answer, 1);
    close(done[0]);
    if (process < 0) {
        throw Failure(std::string("no process: ") + std::strerror(error));
    }
    if (count == 1 && answer == kSurvived) {
        return {};
    }
    return wordsFor(status);
}

} // namespace zqm::cli
