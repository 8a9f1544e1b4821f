// An engine that a test plays: it hands on what its host says to the socket that ZQM_PLAYED_ENGINE names, and
// to its host what comes from there. It ends with either of them. Between SIGUSR1 and SIGUSR2 it works on
// something else, which takes a little of a processor.

#include "engine/protocol/descriptor.h"
#include "engine/protocol/protocol.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

using zqm::protocol::Descriptor;

Descriptor connectedTo(const char* path) {
    Descriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path, sizeof address.sun_path - 1);
    const int result = ::connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address);
    return result == 0 ? std::move(socket) : Descriptor();
}

volatile std::sig_atomic_t isAtWork = 0;

void work(int /*signal*/) {
    constexpr timespec kMoment{0, 10'000'000};
    isAtWork = 1;
    while (isAtWork != 0) {
        ::nanosleep(&kMoment, nullptr);
    }
}

void endWork(int /*signal*/) {
    isAtWork = 0;
}

// False at the end.
bool handOn(int from, int to) {
    std::array<char, 65536> bytes{};
    const ssize_t count = ::read(from, bytes.data(), bytes.size());
    for (ssize_t written = 0; written < count;) {
        const ssize_t more = ::write(to, bytes.data() + written, static_cast<std::size_t>(count - written));
        if (more <= 0) {
            return false;
        }
        written += more;
    }
    return count > 0;
}

} // namespace

int main() {
    std::signal(SIGUSR1, work);
    std::signal(SIGUSR2, endWork);
    const char* const path = std::getenv("ZQM_PLAYED_ENGINE"); // NOLINT(concurrency-mt-unsafe): one thread
    const Descriptor host(zqm::protocol::kEngineSocket);
    const Descriptor test = connectedTo(path != nullptr ? path : "");
    if (!test) {
        return 1;
    }
    for (;;) {
        std::array<pollfd, 2> watched{pollfd{host.get(), POLLIN, 0}, pollfd{test.get(), POLLIN, 0}};
        ::poll(watched.data(), watched.size(), -1);
        if (watched[0].revents != 0 && !handOn(host.get(), test.get())) {
            return 0;
        }
        if (watched[1].revents != 0 && !handOn(test.get(), host.get())) {
            return 0;
        }
    }
}
