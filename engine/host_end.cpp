#include "engine/host_end.h"

#include "engine/protocol/protocol.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace zqm::engine {
namespace {

constexpr unsigned kSecondsToEnd = 10; // as many as a host gives an engine whose object is gone

// Comes with whatever happens to the socket.
void lookForHost(int /*signal*/) {
    const int error = errno;
    pollfd socket{protocol::kEngineSocket, 0, 0};
    if (::poll(&socket, 1, 0) > 0 && (socket.revents & POLLHUP) != 0) {
        ::alarm(kSecondsToEnd);
    }
    errno = error;
}

} // namespace

void endAfterHost() {
    std::signal(SIGALRM, SIG_DFL);
    struct sigaction action {};
    action.sa_handler = &lookForHost;
    action.sa_flags = SA_RESTART;
    ::sigaction(SIGIO, &action, nullptr);
    sigset_t signals;
    ::sigemptyset(&signals);
    ::sigaddset(&signals, SIGIO);
    ::sigaddset(&signals, SIGALRM);
    ::sigprocmask(SIG_UNBLOCK, &signals, nullptr); // a host may have blocked them
    ::fcntl(protocol::kEngineSocket, F_SETOWN, ::getpid());
    ::fcntl(protocol::kEngineSocket, F_SETFL, ::fcntl(protocol::kEngineSocket, F_GETFL) | O_ASYNC);
    lookForHost(SIGIO); // it may have ended before
}

} // namespace zqm::engine
