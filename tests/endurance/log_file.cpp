#include "tests/endurance/log_file.h"

#include <array>
#include <cstdio>
#include <fcntl.h>
#include <sstream>
#include <sys/mman.h>
#include <unistd.h>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/common_interface_defs.h>
#endif

namespace zqm::endurance {

LogFile::LogFile()
    : file_(memfd_create("log", MFD_CLOEXEC)), before_(fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3)) {
    fcntl(file_, F_SETFL, O_APPEND);
    dup2(file_, STDERR_FILENO);
#if defined(__SANITIZE_ADDRESS__)
    // NOLINTNEXTLINE(performance-no-int-to-ptr): as it is declared
    __sanitizer_set_report_fd(reinterpret_cast<void*>(static_cast<std::intptr_t>(before_)));
#endif
}

LogFile::~LogFile() {
    for (const std::string& line : take()) {
        print(line);
    }
    dup2(before_, STDERR_FILENO);
#if defined(__SANITIZE_ADDRESS__)
    // NOLINTNEXTLINE(performance-no-int-to-ptr)
    __sanitizer_set_report_fd(reinterpret_cast<void*>(static_cast<std::intptr_t>(STDERR_FILENO)));
#endif
    close(before_);
    close(file_);
}

std::string LogFile::content() const {
    std::string content;
    std::array<char, 4096> part{};
    for (ssize_t size = 0;
         (size = pread(file_, part.data(), part.size(), static_cast<off_t>(content.size()))) > 0;) {
        content.append(part.data(), static_cast<std::size_t>(size));
    }
    return content;
}

std::vector<std::string> LogFile::take() {
    std::istringstream log(content());
    [[maybe_unused]] const int isEmptied = ftruncate(file_, 0);
    std::vector<std::string> lines;
    for (std::string line; std::getline(log, line);) {
        const std::size_t end = line.find("] ");
        lines.push_back(end == std::string::npos ? line : line.substr(end + 2));
    }
    return lines;
}

void LogFile::print(const std::string& line) const {
    dprintf(before_, "%s\n", line.c_str());
}

} // namespace zqm::endurance
