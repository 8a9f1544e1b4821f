#include "cli/system/child_processes.h"

#include <charconv>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <system_error>

namespace zqm::cli {

namespace fs = std::filesystem;

namespace {

fs::path folderOf(pid_t process) {
    return "/proc/" + std::to_string(process);
}

struct Status {
    char state = 0; // as proc(5) has it
    pid_t parent = 0;
};

// None of one that has gone.
std::optional<Status> statusOf(pid_t process) {
    std::ifstream file(folderOf(process) / "stat");
    std::string text;
    std::getline(file, text, '\0'); // to its end, or nothing if the process goes meanwhile
    // A process calls itself what it likes, so what follows its name in parentheses is found from their end.
    const std::size_t nameEnd = text.rfind(") ");
    if (nameEnd == std::string::npos || nameEnd + 4 > text.size()) {
        return std::nullopt;
    }
    Status status{.state = text[nameEnd + 2]};
    std::from_chars(text.data() + nameEnd + 4, text.data() + text.size(), status.parent);
    return status;
}

bool hasThreads(pid_t process) {
    std::error_code error; // it may end meanwhile
    fs::directory_iterator thread(folderOf(process) / "task", error);
    return !error && thread != fs::directory_iterator() &&
           thread.increment(error) != fs::directory_iterator() && !error;
}

// None for what is in /proc besides.
std::optional<pid_t> processNamed(const std::string& name) {
    pid_t process = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), process);
    return error == std::errc() && end == name.data() + name.size() ? std::optional(process) : std::nullopt;
}

} // namespace

// Not every kernel lists the children of a thread, but each tells a process's parent.
std::vector<pid_t> childrenOf(pid_t process) {
    std::vector<pid_t> children;
    for (const fs::directory_entry& entry : fs::directory_iterator("/proc")) {
        const std::optional<pid_t> candidate = processNamed(entry.path().filename());
        const std::optional<Status> status = candidate ? statusOf(*candidate) : std::nullopt;
        if (status && status->parent == process) {
            children.push_back(*candidate);
        }
    }
    return children;
}

// The first thread may have ended before others.
bool isRunning(pid_t process) {
    const char state = statusOf(process).value_or(Status{.state = 'X'}).state;
    return (state != 'Z' && state != 'X') || hasThreads(process);
}

} // namespace zqm::cli
