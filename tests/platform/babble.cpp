#include "tests/platform/babble.h"

#include <algorithm>
#include <cerrno>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <utility>

namespace {

std::string babbled;

} // namespace

namespace zqm::platform::test {

Babble::Babble(std::string line) {
    babbled = std::move(line);
}

Babble::~Babble() {
    babbled.clear();
}

} // namespace zqm::platform::test

// In the place of the C library's, for all that this program has loaded.
// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name): the C library names them for itself
extern "C" __attribute__((visibility("default"))) ssize_t recvmsg(int socket, msghdr* message, int flags) {
    const ssize_t count = ::syscall(SYS_recvmsg, socket, message, flags);
    if (count >= 0 || errno != EAGAIN || babbled.empty()) {
        return count;
    }
    message->msg_controllen = 0;
    message->msg_flags = 0;
    std::ranges::copy(babbled, static_cast<char*>(message->msg_iov->iov_base));
    return static_cast<ssize_t>(babbled.size());
}
