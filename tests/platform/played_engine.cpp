#include "tests/platform/played_engine.h"

#include <csignal>
#include <cstring>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/un.h>

namespace zqm::platform::test {
namespace {

using protocol::Channel;
using protocol::Descriptor;

constexpr int kPatience = 300'000; // milliseconds

pid_t peerOf(int socket) {
    ucred credentials{};
    socklen_t length = sizeof credentials;
    return ::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &credentials, &length) == 0 ? credentials.pid : 0;
}

bool isReady(int descriptor, short condition, int milliseconds) {
    pollfd watched{descriptor, condition, 0};
    return ::poll(&watched, 1, milliseconds) > 0;
}

} // namespace

PlayedEngine::PlayedEngine(Descriptor socket)
    : process_(peerOf(socket.get())), channel_(std::move(socket), protocol::kMaxRequestLine) {}

std::optional<protocol::Request> PlayedEngine::hearAny() {
    for (;;) {
        auto request = nextRequest();
        if (!request || !std::holds_alternative<protocol::Ping>(*request)) {
            return request;
        }
        say(protocol::Pong{});
    }
}

void PlayedEngine::hearPing() {
    const auto request = nextRequest();
    EXPECT_TRUE(request && std::holds_alternative<protocol::Ping>(*request));
}

std::optional<protocol::Request> PlayedEngine::nextRequest() {
    for (std::string line;;) {
        switch (channel_.read(line)) {
        case Channel::Input::Line:
            return protocol::decodeRequest(line);
        case Channel::Input::Nothing:
            waitFor(POLLIN);
            break;
        default:
            return std::nullopt;
        }
    }
}

void PlayedEngine::sayLine(const std::string& line) {
    channel_.send(line);
    while (channel_.flush() && channel_.backlog() > 0) {
        waitFor(POLLOUT);
    }
}

bool PlayedEngine::hasMessage() const {
    return isReady(channel_.descriptor(), POLLIN, 0);
}

void PlayedEngine::kill() const {
    ::kill(process_, SIGKILL);
}

void PlayedEngine::beginWork() const {
    ::kill(process_, SIGUSR1);
}

void PlayedEngine::endWork() const {
    ::kill(process_, SIGUSR2);
}

void PlayedEngine::waitFor(short condition) const {
    if (!isReady(channel_.descriptor(), condition, kPatience)) {
        throw std::runtime_error("the host is silent");
    }
}

EngineStage::EngineStage()
    : name_("ZQM_PLAYED_ENGINE", (folder_ / "engine").string()),
      socket_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, (folder_ / "engine").c_str(), sizeof address.sun_path - 1);
    if (::bind(socket_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(socket_.get(), 16) != 0) {
        throw std::runtime_error("no stage for engines");
    }
}

std::unique_ptr<PlayedEngine> EngineStage::next() {
    if (!isReady(socket_.get(), POLLIN, kPatience)) {
        return nullptr;
    }
    return std::make_unique<PlayedEngine>(
        Descriptor(::accept4(socket_.get(), nullptr, nullptr, SOCK_CLOEXEC)));
}

bool EngineStage::hasNext() const {
    return isReady(socket_.get(), POLLIN, 0);
}

} // namespace zqm::platform::test
