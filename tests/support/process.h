// Running other programs from a test: with their input, environment and a deadline, and never leaving
// one behind.

#pragma once

#include <chrono>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace zqm::support {

inline constexpr std::chrono::milliseconds kProcessDeadline{180000};

struct ProcessOptions {
    std::string input = {}; // its standard input, as a file
    // Changes against this process's environment; no value removes the variable.
    std::map<std::string, std::optional<std::string>> environment = {};
    std::filesystem::path folder = {}; // working directory; empty: this process's
};

struct ProcessResult {
    bool timedOut = false; // then it was killed, and neither code nor signal says anything
    int exitCode = -1;     // -1: it didn't exit by itself
    int signal = 0;        // 0: no signal ended it
    std::string output = {};
    std::string errors = {};

    bool succeeded() const { return !timedOut && exitCode == 0; }
};

// A child in a process group of its own. Standard output and error go to files in memory, so it never
// waits for a reader. It also dies with the thread that started it.
class Process {
public:
    // The program is a path, or a name that is looked up in PATH. Throws std::system_error when it can't
    // be started.
    Process(const std::string& program, const std::vector<std::string>& arguments,
            const ProcessOptions& options = {});
    // Kills the whole process group, if any of it still runs.
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    pid_t pid() const { return pid_; }
    void signal(int number) const;
    bool running() const;
    // False when it still runs at the deadline.
    bool waitFor(std::chrono::milliseconds deadline) const;
    // What it wrote so far, and how it ended if it did.
    ProcessResult result() const;

private:
    pid_t pid_ = -1;
    int handle_ = -1; // a pidfd
    int output_ = -1;
    int errors_ = -1;
};

// Runs a program to its end; kills it at the deadline.
ProcessResult runProcess(const std::string& program, const std::vector<std::string>& arguments,
                         const ProcessOptions& options = {},
                         std::chrono::milliseconds deadline = kProcessDeadline);

} // namespace zqm::support
