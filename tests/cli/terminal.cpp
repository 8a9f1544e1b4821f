#include "tests/cli/terminal.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <system_error>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace zqm::tests {

Terminal::Terminal(unsigned short columns) {
    winsize size{};
    size.ws_row = 24;
    size.ws_col = columns;
    outside_ = posix_openpt(O_RDWR | O_NOCTTY);
    if (outside_ < 0 || grantpt(outside_) != 0 || unlockpt(outside_) != 0) {
        fail();
    }
    path_ = ptsname(outside_);
    inside_ = open(path_.c_str(), O_RDWR | O_NOCTTY);
    if (inside_ < 0 || ioctl(inside_, TIOCSWINSZ, &size) != 0) {
        fail();
    }
    fcntl(outside_, F_SETFL, O_NONBLOCK);
    fcntl(outside_, F_SETFD, FD_CLOEXEC);
    fcntl(inside_, F_SETFD, FD_CLOEXEC);
}

Terminal::~Terminal() {
    close(outside_);
    close(inside_);
}

void Terminal::resize(unsigned short columns, unsigned short rows) const {
    winsize size{};
    size.ws_row = rows;
    size.ws_col = columns;
    if (ioctl(inside_, TIOCSWINSZ, &size) != 0) {
        throw std::system_error(errno, std::generic_category(), "a terminal's size");
    }
}

void Terminal::fail() const {
    const int error = errno;
    close(outside_);
    close(inside_);
    throw std::system_error(error, std::generic_category(), "a terminal");
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
