#include "tests/cli/terminal.h"

#include <array>
#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <pty.h>
#include <unistd.h>

namespace zqm::tests {

Terminal::Terminal(unsigned short columns) {
    winsize size{};
    size.ws_row = 24;
    size.ws_col = columns;
    std::array<char, 64> path{};
    if (openpty(&outside_, &inside_, nullptr, nullptr, &size) != 0 ||
        ttyname_r(inside_, path.data(), path.size()) != 0) {
        throw std::system_error(errno, std::generic_category(), "a terminal");
    }
    fcntl(outside_, F_SETFL, O_NONBLOCK);
    fcntl(outside_, F_SETFD, FD_CLOEXEC);
    fcntl(inside_, F_SETFD, FD_CLOEXEC);
    path_ = path.data();
}

Terminal::~Terminal() {
    close(outside_);
    close(inside_);
}

std::string Terminal::written() const {
    std::string text;
    std::array<char, 4096> buffer;
    for (;;) {
        const ssize_t count = read(outside_, buffer.data(), buffer.size());
        if (count <= 0) {
            return text;
        }
        text.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

} // namespace zqm::tests
