#include "cli/inspect/trial.h"

#include "cli/command_line/failure.h"

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

[[noreturn]] void perform(const std::function<void()>& action, int done) {
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

int statusOf(pid_t process) {
    int status = 0;
    while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

} // namespace

std::string endInTrial(const std::function<void()>& action) {
    std::array<int, 2> done{};
    if (pipe(done.data()) != 0) {
        throw Failure(std::string("no pipe: ") + std::strerror(errno));
    }
    const pid_t process = fork();
    if (process == 0) {
        close(done[0]);
        perform(action, done[1]);
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
    return WIFSIGNALED(status) ? strsignal(WTERMSIG(status)) // NOLINT(concurrency-mt-unsafe): one thread
                               : "exit code " + std::to_string(WEXITSTATUS(status));
}

} // namespace zqm::cli
