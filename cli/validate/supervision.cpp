#include "cli/validate/supervision.h"

#include "cli/command_line/failure.h"
#include "cli/system/interruption.h"
#include "cli/system/parent_end.h"
#include "cli/validate/message_kinds.h"
#include "cli/validate/signal_names.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <exception>
#include <optional>

#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zqm::cli {
namespace {

using Clock = std::chrono::steady_clock;

// How long an end may wait to be noticed when something else holds the pipes open.
constexpr int kTickMilliseconds = 10;
constexpr std::size_t kKeptOutput = 4096;

class Pipe {
public:
    Pipe() {
        if (pipe(ends_.data()) != 0) {
            throw Failure(std::string("no pipe: ") + std::strerror(errno));
        }
        for (const int end : ends_) {
            fcntl(end, F_SETFD, FD_CLOEXEC);
        }
        fcntl(ends_[0], F_SETFL, O_NONBLOCK);
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    ~Pipe() {
        close(ends_[0]);
        closeWriter();
    }
    int reader() const { return ends_[0]; }
    int writer() const { return ends_[1]; }
    void closeWriter() {
        if (ends_[1] >= 0) {
            close(ends_[1]);
        }
        ends_[1] = -1;
    }
    // What is there now. Once nobody can write any more, it is no longer open.
    std::string read() {
        std::string content;
        std::array<char, 65536> buffer;
        ssize_t count = 0;
        while (content.size() < buffer.size() &&
               (count = ::read(ends_[0], buffer.data(), buffer.size())) > 0) {
            content.append(buffer.data(), static_cast<std::size_t>(count));
        }
        isOpen_ = isOpen_ && (count != 0 || !content.empty());
        return content;
    }
    bool isOpen() const { return isOpen_; }

private:
    std::array<int, 2> ends_{};
    bool isOpen_ = true;
};

// As a host program has them that did nothing about them.
void resetSignals() {
    for (const int number : {SIGABRT, SIGBUS, SIGCHLD, SIGFPE, SIGHUP, SIGILL, SIGINT, SIGPIPE, SIGQUIT,
                             SIGSEGV, SIGTERM, SIGXFSZ}) {
        std::signal(number, SIG_DFL);
    }
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

void direct(int descriptor, const char* file, int mode) {
    const int opened = open(file, mode | O_CLOEXEC);
    dup2(opened, descriptor);
    close(opened);
}

[[noreturn]] void perform(const std::function<void(Findings&)>& work, const Supervision& supervision,
                          pid_t parent, int findingsEnd, int outputEnd) {
    endWithParent(parent);
    resetSignals();
    const rlimit noDump{0, 0};
    setrlimit(RLIMIT_CORE, &noDump);
    if (supervision.isSeparate) {
        setpgid(0, 0);
        direct(STDIN_FILENO, "/dev/null", O_RDONLY);
        dup2(outputEnd, STDOUT_FILENO);
        dup2(outputEnd, STDERR_FILENO);
    }
    Findings findings(findingsEnd, supervision.limit);
    try {
        work(findings);
    } catch (const std::exception& error) {
        findings.fail(error.what());
    }
    std::fflush(nullptr);
    findings.end();
}

// Reads what the process tells, and keeps the time.
class Listener {
public:
    explicit Listener(const Supervision& supervision) : supervision_(supervision) {}

    void hear(const std::string& bytes) {
        bytes_ += bytes;
        constexpr std::size_t kHead = 1 + sizeof(MessageLength);
        std::size_t begin = 0;
        while (bytes_.size() - begin >= kHead) {
            MessageLength length = 0;
            std::memcpy(&length, bytes_.data() + begin + 1, sizeof(length));
            if (bytes_.size() - begin - kHead < length) {
                break;
            }
            take(bytes_[begin], bytes_.substr(begin + kHead, length));
            begin += kHead + length;
        }
        bytes_.erase(0, begin);
    }

    bool isDone() const { return isDone_; }
    bool isLate() const { return !isApart_ && Clock::now() - since_ > supervision_.limit; }
    // " at: " and the step that it was in.
    std::string place() const { return step_.empty() ? "" : ", at: " + step_; }

private:
    void take(char kind, const std::string& text) {
        since_ = Clock::now();
        if (kind == kFoundMessage && !text.empty()) {
            supervision_.found({static_cast<Verdict>(text.front()), text.substr(1)});
        } else if (kind == kStepMessage) {
            step_ = text;
        }
        isApart_ = (isApart_ || kind == kApartMessage) && kind != kBackMessage;
        isDone_ = isDone_ || kind == kDoneMessage;
    }

    const Supervision& supervision_;
    std::string bytes_;
    std::string step_;
    Clock::time_point since_ = Clock::now();
    bool isApart_ = false;
    bool isDone_ = false;
};

enum class Outcome { Done, Ended, Late, Interrupted };

class SupervisedProcess {
public:
    SupervisedProcess(const std::function<void(Findings&)>& work, const Supervision& supervision)
        : supervision_(supervision), listener_(supervision) {
        std::fflush(nullptr);
        const pid_t parent = getpid();
        process_ = fork();
        if (process_ == 0) {
            perform(work, supervision, parent, findings_.writer(), output_.writer());
        }
        if (process_ < 0) {
            throw Failure(std::string("no process: ") + std::strerror(errno));
        }
        if (supervision.isSeparate) {
            setpgid(process_, process_); // whoever of the two comes first
        }
        findings_.closeWriter();
        output_.closeWriter();
    }
    SupervisedProcess(const SupervisedProcess&) = delete;
    SupervisedProcess& operator=(const SupervisedProcess&) = delete;
    ~SupervisedProcess() { kill(); }

    Outcome wait() {
        while (true) {
            const bool ended = hasEnded();
            listen();
            if (listener_.isDone()) {
                return Outcome::Done;
            }
            if (ended) {
                return Outcome::Ended;
            }
            if (supervision_.isSeparate && Interruption::signalNumber() != 0) {
                return Outcome::Interrupted;
            }
            if (listener_.isLate()) {
                return Outcome::Late;
            }
            pause();
        }
    }

    // All of it, and how the process itself ended; none: nobody knows.
    std::optional<int> kill() {
        if (process_ <= 0) {
            return status_;
        }
        if (supervision_.isSeparate) {
            ::kill(-process_, SIGKILL);
        }
        ::kill(process_, SIGKILL);
        int status = 0;
        pid_t reaped = 0;
        while ((reaped = waitpid(process_, &status, 0)) < 0 && errno == EINTR) {
        }
        status_ = reaped == process_ ? std::optional(status) : std::nullopt;
        process_ = 0;
        return status_;
    }

    const Listener& listener() const { return listener_; }

    std::string output() {
        keptOutput_ += output_.read();
        keptOutput_.erase(0, keptOutput_.size() - std::min(keptOutput_.size(), kKeptOutput));
        return keptOutput_;
    }

private:
    // It stays to be reaped, so that its group's number remains its own.
    bool hasEnded() const {
        siginfo_t info{};
        const int result = waitid(P_PID, static_cast<id_t>(process_), &info, WEXITED | WNOHANG | WNOWAIT);
        return result == 0 ? info.si_pid == process_ : errno == ECHILD;
    }

    void listen() {
        listener_.hear(findings_.read());
        output();
    }

    void pause() {
        // What is no longer open would wake it again and again.
        std::array<pollfd, 2> pipes{pollfd{findings_.isOpen() ? findings_.reader() : -1, POLLIN, 0},
                                    pollfd{output_.isOpen() ? output_.reader() : -1, POLLIN, 0}};
        poll(pipes.data(), pipes.size(), kTickMilliseconds);
    }

    const Supervision& supervision_;
    Listener listener_;
    Pipe findings_;
    Pipe output_;
    std::string keptOutput_;
    pid_t process_ = 0;
    std::optional<int> status_;
};

std::string secondsOf(Findings::Seconds limit) {
    std::array<char, 32> text;
    std::snprintf(text.data(), text.size(), "%g s", limit.count());
    return text.data();
}

Finding endOf(std::optional<int> status) {
    if (status && WIFSIGNALED(*status)) {
        return {Verdict::Crash, nameOfSignal(WTERMSIG(*status))};
    }
    return {Verdict::Fail,
            "ended the program" +
                (status ? " with exit code " + std::to_string(WEXITSTATUS(*status)) : std::string())};
}

} // namespace

SupervisedEnd supervise(const std::function<void(Findings&)>& work, const Supervision& supervision) {
    SupervisedProcess process(work, supervision);
    const Outcome outcome = process.wait();
    const std::optional<int> status = process.kill();
    if (outcome == Outcome::Ended) {
        Finding end = endOf(status);
        end.text += process.listener().place();
        supervision.found(end);
    } else if (outcome == Outcome::Late) {
        supervision.found(
            {Verdict::Fail, "exceeded " + secondsOf(supervision.limit) + process.listener().place()});
    }
    return {.isInterrupted = outcome == Outcome::Interrupted, .output = process.output()};
}

} // namespace zqm::cli
