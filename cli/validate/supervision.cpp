#include "cli/validate/supervision.h"

#include "cli/system/interruption.h"
#include "cli/system/orphans.h"
#include "cli/system/parent_end.h"
#include "cli/validate/message_kinds.h"
#include "cli/validate/signal_names.h"

#include <zqmhost/errors.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <exception>
#include <optional>
#include <random>

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
// As much as counts between two looks at the clock: this process may have been stopped meanwhile, as by
// Ctrl-Z.
constexpr std::chrono::milliseconds kMostBetweenLooks{5 * kTickMilliseconds};
constexpr std::size_t kKeptOutput = 4096;
// What a pipe holds at most, and so what a process may leave behind there.
constexpr std::size_t kPipeBytes = 65536;
// What a process that waits for another one may take beyond that one's limit, to tell of it.
constexpr Findings::Seconds kTimeToTell{5};

class Pipe {
public:
    Pipe() {
        if (pipe(ends_.data()) != 0) {
            throw SupervisionFailure(std::string("can't make a pipe: ") + std::strerror(errno));
        }
        for (const int end : ends_) {
            fcntl(end, F_SETFD, FD_CLOEXEC);
        }
        fcntl(ends_[0], F_SETFL, O_NONBLOCK);
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    ~Pipe() {
        closeReader();
        closeWriter();
    }
    int reader() const { return ends_[0]; }
    int writer() const { return ends_[1]; }
    void closeReader() { closeEnd(ends_[0]); }
    void closeWriter() { closeEnd(ends_[1]); }
    // What is there now. Once nobody can write any more, it is no longer open.
    std::string read() {
        std::string content;
        std::array<char, 8192> buffer;
        ssize_t count = 0;
        while (content.size() < kPipeBytes && (count = ::read(ends_[0], buffer.data(), buffer.size())) > 0) {
            content.append(buffer.data(), static_cast<std::size_t>(count));
        }
        isOpen_ = isOpen_ && (count != 0 || !content.empty());
        return content;
    }
    bool isOpen() const { return isOpen_; }

private:
    static void closeEnd(int& end) {
        if (end >= 0) {
            close(end);
        }
        end = -1;
    }

    std::array<int, 2> ends_{};
    bool isOpen_ = true;
};

// As a host program has them that did nothing about them.
void resetSignals() {
    for (int number = 1; number < NSIG; ++number) {
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

// What is no word of the check's own is told with the step.
void perform(const std::function<void(Findings&)>& work, Findings& findings) {
    try {
        work(findings);
    } catch (const SupervisionFailure& failure) {
        findings.preventedBy(failure.what());
    } catch (const Failure& failure) {
        findings.fail(failure.what());
    } catch (const host::Error& error) {
        findings.breakOff(error.what());
    } catch (const std::exception& error) {
        findings.breakOff(std::string("threw \"") + error.what() + '"');
    } catch (...) {
        findings.breakOff("threw what is no std::exception");
    }
}

MessageNonce newNonce() {
    std::random_device random;
    return MessageNonce{random()} << 32 | random();
}

// Reads what the process tells, and keeps the time.
class Listener {
public:
    explicit Listener(const Supervision& supervision) : supervision_(supervision) {}

    void hear(const std::string& bytes) {
        bytes_ += bytes;
        std::size_t begin = 0;
        MessageHead head{};
        while (!isSpoiled_ && bytes_.size() - begin >= sizeof(head)) {
            std::memcpy(&head, bytes_.data() + begin, sizeof(head));
            isSpoiled_ = head.nonce != nonce_ || head.length > kLongestMessage;
            if (isSpoiled_ || bytes_.size() - begin - sizeof(head) < head.length) {
                break;
            }
            isSpoiled_ = !take(head.kind, bytes_.substr(begin + sizeof(head), head.length));
            begin += sizeof(head) + head.length;
        }
        bytes_.erase(0, begin);
    }

    // Counts the time since the last look.
    void look() {
        const Clock::time_point now = Clock::now();
        time_ += std::min<Clock::duration>(now - looked_, kMostBetweenLooks);
        looked_ = now;
    }

    MessageNonce nonce() const { return nonce_; }
    bool isDone() const { return isDone_; }
    // Why the work can't be done, through no fault of its own.
    const std::optional<std::string>& prevention() const { return prevention_; }
    // Something else was written there than what the process tells.
    bool isSpoiled() const { return isSpoiled_; }
    bool isLate() const {
        return time_ - since_ > supervision_.limit + (apart_ > 0 ? kTimeToTell : Findings::Seconds(0));
    }
    bool isLateInAll() const { return supervision_.limitInAll && time_ > *supervision_.limitInAll; }
    // The process that it waits for; 0: none.
    pid_t apart() const { return apart_; }
    // ", at: " and the step that it was in.
    std::string place() const {
        const std::string border = step_.empty() || innerStep_.empty() ? "" : ": ";
        const std::string where = step_ + border + innerStep_;
        return where.empty() ? "" : ", at: " + where;
    }

private:
    // Whether that is a message.
    bool take(MessageKind kind, const std::string& text) {
        since_ = time_;
        switch (kind) {
        case MessageKind::Found:
            return takeFinding(text);
        case MessageKind::Broke:
            supervision_.found({Verdict::Fail, text + place()});
            return true;
        case MessageKind::Step:
            (apart_ > 0 ? innerStep_ : step_) = text;
            if (supervision_.at) {
                supervision_.at(text);
            }
            return true;
        case MessageKind::Apart:
        case MessageKind::Back:
            innerStep_.clear();
            return takeProcess(kind == MessageKind::Apart ? text : "0");
        case MessageKind::Prevented:
            prevention_ = text;
            return true;
        case MessageKind::Done:
            isDone_ = true;
            return true;
        }
        return false;
    }

    bool takeProcess(const std::string& text) {
        pid_t process = -1;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), process);
        // Minus 1 stands for all processes that there are.
        if (error != std::errc() || end != text.data() + text.size() || process < 0 || process == 1) {
            return false;
        }
        apart_ = process;
        return true;
    }

    bool takeFinding(const std::string& text) {
        if (text.empty() || static_cast<unsigned char>(text.front()) > static_cast<int>(Verdict::Crash)) {
            return false;
        }
        supervision_.found({static_cast<Verdict>(text.front()), text.substr(1)});
        return true;
    }

    const Supervision& supervision_;
    const MessageNonce nonce_ = newNonce();
    std::string bytes_;
    std::string step_;
    pid_t apart_ = 0;       // the process that it waits for, if any
    std::string innerStep_; // of that
    Clock::time_point looked_ = Clock::now();
    Clock::duration time_{};  // of all that this process has watched
    Clock::duration since_{}; // that of the last message
    std::optional<std::string> prevention_;
    bool isDone_ = false;
    bool isSpoiled_ = false;
};

enum class Outcome { Done, Ended, Late, LateInAll, Spoiled, Prevented, Interrupted };

class SupervisedProcess {
public:
    SupervisedProcess(const std::function<void(Findings&)>& work, const Supervision& supervision)
        : supervision_(supervision), listener_(supervision) {
        std::fflush(nullptr);
        const pid_t parent = getpid();
        process_ = fork();
        if (process_ == 0) {
            endWithParent(parent);
            performHere(work);
        }
        if (process_ < 0) {
            throw SupervisionFailure(std::string("can't start a process: ") + std::strerror(errno));
        }
        setpgid(process_, process_); // whoever of the two comes first
        findings_.closeWriter();
        output_.closeWriter();
        if (supervision.begun) {
            supervision.begun(process_);
        }
    }
    SupervisedProcess(const SupervisedProcess&) = delete;
    SupervisedProcess& operator=(const SupervisedProcess&) = delete;
    ~SupervisedProcess() { kill(); }

    Outcome wait() {
        while (true) {
            const bool ended = hasEnded();
            listen();
            if (listener_.isSpoiled()) {
                return Outcome::Spoiled;
            }
            if (listener_.prevention()) {
                return Outcome::Prevented;
            }
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
            if (listener_.isLateInAll()) {
                return Outcome::LateInAll;
            }
            pause();
        }
    }

    // All of it, and how the process itself ended; none: nobody knows.
    std::optional<int> kill() {
        if (process_ > 0) {
            killProcess();
        }
        adoption_.end();
        return status_;
    }

    const Listener& listener() const { return listener_; }

    std::string output() {
        keptOutput_ += output_.read();
        keptOutput_.erase(0, keptOutput_.size() - std::min(keptOutput_.size(), kKeptOutput));
        return keptOutput_;
    }

private:
    // In the new process.
    [[noreturn]] void performHere(const std::function<void(Findings&)>& work) {
        resetSignals();
        const rlimit noDump{0, 0};
        setrlimit(RLIMIT_CORE, &noDump);
        findings_.closeReader();
        output_.closeReader();
        setpgid(0, 0);
        if (supervision_.isSeparate) {
            direct(STDIN_FILENO, "/dev/null", O_RDONLY);
            dup2(output_.writer(), STDOUT_FILENO);
            dup2(output_.writer(), STDERR_FILENO);
        }
        output_.closeWriter();
        Findings findings(findings_.writer(), listener_.nonce(), supervision_.limit);
        perform(work, findings);
        std::fflush(nullptr);
        findings.end();
    }

    void killProcess() {
        ::kill(-process_, SIGKILL);
        ::kill(process_, SIGKILL);
        int status = 0;
        pid_t reaped = 0;
        while ((reaped = waitpid(process_, &status, 0)) < 0 && errno == EINTR) {
        }
        if (listener_.apart() > 0) {
            ::kill(-listener_.apart(), SIGKILL);
        }
        status_ = reaped == process_ ? std::optional(status) : std::nullopt;
        process_ = 0;
    }

    // It stays to be reaped, so that its group's number remains its own.
    bool hasEnded() {
        siginfo_t info{};
        const int result = waitid(P_PID, static_cast<id_t>(process_), &info, WEXITED | WNOHANG | WNOWAIT);
        if (result != 0 && errno == ECHILD) {
            process_ = 0; // somebody else has reaped it, and its number may be another's
            return true;
        }
        return result == 0 && info.si_pid == process_;
    }

    void listen() {
        listener_.look();
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
    const Adoption adoption_;
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

std::string exitOf(std::optional<int> status) {
    if (!status) {
        return "ended the program";
    }
    const int code = WEXITSTATUS(*status);
    return std::string(code == kMutedExitCode ? "closed descriptors that are not its own, or " : "") +
           "ended the program with exit code " + std::to_string(code);
}

// None for work that was done, or that nobody wants any more.
std::optional<Finding> endOf(Outcome outcome, std::optional<int> status, const Supervision& supervision) {
    switch (outcome) {
    case Outcome::Ended:
        if (status && WIFSIGNALED(*status)) {
            return Finding{Verdict::Crash, nameOfSignal(WTERMSIG(*status))};
        }
        return Finding{Verdict::Fail, exitOf(status)};
    case Outcome::Late:
        return Finding{Verdict::Fail, "exceeded " + secondsOf(supervision.limit)};
    case Outcome::LateInAll:
        return Finding{Verdict::Fail, "exceeded " + secondsOf(*supervision.limitInAll) + " in all"};
    case Outcome::Spoiled:
        return Finding{Verdict::Fail, "spoiled the results: it wrote to descriptors that are not its own"};
    case Outcome::Done:
    case Outcome::Prevented:
    case Outcome::Interrupted:
        break;
    }
    return std::nullopt;
}

} // namespace

SupervisedEnd supervise(const std::function<void(Findings&)>& work, const Supervision& supervision) {
    SupervisedProcess process(work, supervision);
    const Outcome outcome = process.wait();
    const std::optional<int> status = process.kill();
    if (outcome == Outcome::Prevented) {
        throw SupervisionFailure(*process.listener().prevention());
    }
    if (std::optional<Finding> end = endOf(outcome, status, supervision)) {
        end->text += process.listener().place();
        supervision.found(*end);
    }
    return {.isInterrupted = outcome == Outcome::Interrupted, .output = process.output()};
}

} // namespace zqm::cli
