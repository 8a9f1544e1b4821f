#include "tests/support/process.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <string_view>
#include <system_error>

#include <fcntl.h>
#include <linux/close_range.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zqm::support {

namespace {

[[noreturn]] void fail(const std::string& what, int error = errno) {
    throw std::system_error(error, std::generic_category(), what);
}

int memoryFile(const char* name, std::string_view content = {}) {
    const int file = memfd_create(name, MFD_CLOEXEC);
    if (file < 0) {
        fail("memfd_create");
    }
    while (!content.empty()) {
        const ssize_t written = write(file, content.data(), content.size());
        if (written < 0) {
            fail("write");
        }
        content.remove_prefix(static_cast<std::size_t>(written));
    }
    lseek(file, 0, SEEK_SET);
    return file;
}

// Reads at positions of its own: the file's offset belongs to the child that is writing.
std::string contentOf(int file) {
    std::string content;
    std::array<char, 65536> buffer;
    ssize_t count = 0;
    while ((count = pread(file, buffer.data(), buffer.size(), static_cast<off_t>(content.size()))) > 0) {
        content.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return content;
}

std::vector<std::string>
changedEnvironment(const std::map<std::string, std::optional<std::string>>& changes) {
    std::vector<std::string> variables;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string_view variable = *entry;
        if (!changes.contains(std::string(variable.substr(0, variable.find('='))))) {
            variables.emplace_back(variable);
        }
    }
    for (const auto& [name, value] : changes) {
        if (value) {
            variables.push_back(name + "=" + *value);
        }
    }
    return variables;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

struct ChildSetup {
    const char* program;
    const char* folder;
    char* const* arguments;
    char* const* environment;
    std::array<int, 3> standard; // the descriptors that become 0, 1 and 2
    pid_t parent;
    int failure; // where errno goes when it can't become the program
};

// Runs between fork and exec: nothing but async-signal-safe calls.
[[noreturn]] void becomeProgram(const ChildSetup& setup) {
    setpgid(0, 0);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const bool orphaned = getppid() != setup.parent;
    bool ready = !orphaned && (*setup.folder == '\0' || chdir(setup.folder) == 0);
    for (int number = 0; ready && number < 3; ++number) {
        ready = dup2(setup.standard[static_cast<std::size_t>(number)], number) == number;
    }
    if (ready && close_range(3, ~0U, CLOSE_RANGE_CLOEXEC) == 0) {
        execvpe(setup.program, setup.arguments, setup.environment);
    }
    const int error = errno;
    [[maybe_unused]] const ssize_t told = write(setup.failure, &error, sizeof error);
    _exit(127);
}

} // namespace

Process::Process(const std::string& program, const std::vector<std::string>& arguments,
                 const ProcessOptions& options) {
    std::vector<std::string> argumentTexts = {program};
    argumentTexts.insert(argumentTexts.end(), arguments.begin(), arguments.end());
    std::vector<std::string> environmentTexts = changedEnvironment(options.environment);
    const std::vector<char*> argumentPointers = pointersTo(argumentTexts);
    const std::vector<char*> environmentPointers = pointersTo(environmentTexts);
    const std::string folder = options.folder.string();

    const int input = memoryFile("input", options.input);
    output_ = memoryFile("output");
    errors_ = memoryFile("errors");
    std::array<int, 2> failure{};
    if (pipe2(failure.data(), O_CLOEXEC) != 0) {
        fail("pipe2");
    }
    const ChildSetup setup = {.program = program.c_str(),
                              .folder = folder.c_str(),
                              .arguments = argumentPointers.data(),
                              .environment = environmentPointers.data(),
                              .standard = {input, output_, errors_},
                              .parent = getpid(),
                              .failure = failure[1]};
    pid_ = fork();
    if (pid_ == 0) {
        becomeProgram(setup);
    }
    int error = pid_ < 0 ? errno : 0;
    close(input);
    close(failure[1]);
    if (error == 0 && read(failure[0], &error, sizeof error) > 0) {
        waitpid(pid_, nullptr, 0);
    }
    close(failure[0]);
    if (error == 0) {
        // glibc 2.36 declares pidfd_open without C linkage.
        handle_ = static_cast<int>(syscall(SYS_pidfd_open, pid_, 0));
        error = handle_ < 0 ? errno : 0;
    }
    if (error != 0) {
        close(output_);
        close(errors_);
        fail(program, error);
    }
}

Process::~Process() {
    // The leader is reaped only now, so until here the group's number can't belong to anyone else.
    kill(-pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
    close(handle_);
    close(output_);
    close(errors_);
}

void Process::signal(int number) const {
    kill(pid_, number);
}

bool Process::running() const {
    return !waitFor(std::chrono::milliseconds(0));
}

bool Process::waitFor(std::chrono::milliseconds deadline) const {
    const auto end = std::chrono::steady_clock::now() + deadline;
    pollfd waiting = {.fd = handle_, .events = POLLIN, .revents = 0};
    for (;;) {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        const int ready = poll(&waiting, 1, static_cast<int>(std::max<std::int64_t>(left.count(), 0)));
        if (ready >= 0 || errno != EINTR) {
            return ready > 0;
        }
    }
}

ProcessResult Process::result() const {
    ProcessResult result{.output = contentOf(output_), .errors = contentOf(errors_)};
    siginfo_t end{};
    if (waitid(P_PIDFD, static_cast<id_t>(handle_), &end, WEXITED | WNOWAIT | WNOHANG) == 0 &&
        end.si_pid != 0) {
        (end.si_code == CLD_EXITED ? result.exitCode : result.signal) = end.si_status;
    }
    return result;
}

ProcessResult runProcess(const std::string& program, const std::vector<std::string>& arguments,
                         const ProcessOptions& options, std::chrono::milliseconds deadline) {
    const Process process(program, arguments, options);
    const bool ended = process.waitFor(deadline);
    ProcessResult result = process.result();
    if (!ended) {
        result.timedOut = true;
        result.exitCode = -1;
        result.signal = 0;
    }
    return result;
}

} // namespace zqm::support
