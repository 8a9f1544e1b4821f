#include "tests/support/unread_pipe.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zqm::support {

namespace {

constexpr std::chrono::minutes kPatience{5};
constexpr std::chrono::milliseconds kPause{2};

} // namespace

UnreadPipe::UnreadPipe(const std::string& path)
    : isMade_(mkfifo(path.c_str(), 0600) == 0),
      reader_(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)),
      writer_(open(path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC)) {}

UnreadPipe::~UnreadPipe() {
    close(reader_);
    close(writer_);
}

bool UnreadPipe::fillsUp() const {
    const auto end = std::chrono::steady_clock::now() + kPatience;
    pollfd watched{writer_, POLLOUT, 0};
    while (poll(&watched, 1, 0) != 0) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(kPause);
    }
    return true;
}

std::string UnreadPipe::read() const {
    return waitingIn(reader_);
}

std::string waitingIn(int reader) {
    std::string bytes;
    std::array<char, 4096> buffer{};
    for (ssize_t count = 0; (count = ::read(reader, buffer.data(), buffer.size())) > 0;) {
        bytes.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return bytes;
}

} // namespace zqm::support
