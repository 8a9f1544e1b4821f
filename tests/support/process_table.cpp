#include "tests/support/process_table.h"

#include <algorithm>
#include <charconv>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <system_error>

#include <malloc.h>
#include <unistd.h>

#include "tests/support/eventually.h"

namespace zqm::support {

namespace fs = std::filesystem;

namespace {

struct Status {
    char state = 0;
    pid_t parent = 0;
};

std::optional<Status> statusOf(pid_t process) {
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    std::string line;
    if (!std::getline(file, line)) {
        return std::nullopt;
    }
    // The name in parentheses may hold anything, so what follows is found from its end.
    const std::size_t nameEnd = line.rfind(") ");
    if (nameEnd == std::string::npos || nameEnd + 4 > line.size()) {
        return std::nullopt;
    }
    Status status{.state = line[nameEnd + 2]};
    const char* const parent = line.data() + nameEnd + 4;
    std::from_chars(parent, line.data() + line.size(), status.parent);
    return status;
}

std::size_t threadsOf(pid_t process) {
    std::size_t count = 0;
    std::error_code error; // it may end meanwhile
    fs::directory_iterator thread("/proc/" + std::to_string(process) + "/task", error);
    for (; !error && thread != fs::directory_iterator(); thread.increment(error)) {
        ++count;
    }
    return count;
}

} // namespace

std::vector<pid_t> allProcesses() {
    std::vector<pid_t> processes;
    for (const fs::directory_entry& entry : fs::directory_iterator("/proc")) {
        const std::string name = entry.path().filename();
        pid_t process = 0;
        const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), process);
        if (error == std::errc() && end == name.data() + name.size()) {
            processes.push_back(process);
        }
    }
    return processes;
}

pid_t parentOf(pid_t process) {
    return statusOf(process).value_or(Status()).parent;
}

std::vector<pid_t> childrenOf(pid_t process) {
    std::vector<pid_t> children = allProcesses();
    std::erase_if(children, [process](pid_t candidate) { return parentOf(candidate) != process; });
    std::ranges::sort(children);
    return children;
}

std::vector<pid_t> childrenOfThisProcess() {
    return childrenOf(getpid());
}

std::vector<pid_t> childrenThatRun(const std::string& program) {
    std::vector<pid_t> children = childrenOfThisProcess();
    std::erase_if(children, [&](pid_t child) {
        std::error_code error; // one that ended runs none
        return fs::read_symlink("/proc/" + std::to_string(child) + "/exe", error).filename() != program;
    });
    return children;
}

char stateOf(pid_t process) {
    return statusOf(process).value_or(Status()).state;
}

bool isAlive(pid_t process) {
    const char state = stateOf(process);
    const bool hasEnded = state == '\0' || state == 'Z' || state == 'X';
    // The first thread may end before others, which still hold the process's files and locks.
    return !hasEnded || threadsOf(process) > 1;
}

void halt(pid_t process) {
    ::kill(process, SIGSTOP);
    if (!eventually([&] { return stateOf(process) == 'T'; })) {
        throw std::runtime_error("process " + std::to_string(process) + " does not stop");
    }
}

std::size_t openDescriptors() {
    // One of them is the listing's own.
    return openDescriptorsOf(getpid()) - 1;
}

std::size_t openDescriptorsOf(pid_t process) {
    const fs::directory_iterator listing("/proc/" + std::to_string(process) + "/fd");
    return static_cast<std::size_t>(std::distance(begin(listing), end(listing)));
}

double processorSecondsOf(pid_t process) {
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    std::string line;
    std::getline(file, line);
    // Of the fields behind the name the 12th and 13th are the times in the program and in the kernel.
    std::istringstream fields(line.substr(std::min(line.rfind(") ") + 2, line.size())));
    std::string skipped;
    for (int field = 1; field < 12; ++field) {
        fields >> skipped;
    }
    double user = 0;
    double kernel = 0;
    fields >> user >> kernel;
    return (user + kernel) / static_cast<double>(sysconf(_SC_CLK_TCK));
}

std::size_t residentMemory() {
    malloc_trim(0);
    std::ifstream file("/proc/self/statm");
    std::size_t total = 0;
    std::size_t resident = 0;
    file >> total >> resident;
    return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

} // namespace zqm::support
