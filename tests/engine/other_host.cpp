#include "tests/engine/other_host.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <poll.h>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace zqm::test {

using protocol::Channel;
using protocol::Descriptor;

namespace {

constexpr std::size_t kMaxLine = 100;

// Starts the engine and hands the conversation over.
[[noreturn]] void beHost(Descriptor report, const Environment& environment) {
    auto [ours, theirs] = socketPair();
    const pid_t engine = spawnEngine(theirs.get(), -1, environment);
    theirs.reset();
    Channel channel(std::move(report), kMaxLine);
    std::vector<Descriptor> descriptors;
    descriptors.push_back(std::move(ours));
    channel.send(std::to_string(engine) + '\n', std::move(descriptors));
    channel.flush();
    for (;;) {
        ::pause();
    }
}

} // namespace

OtherHost::OtherHost(const Environment& environment) {
    auto [ours, theirs] = socketPair();
    host_ = ::fork();
    if (host_ < 0) {
        throw std::system_error(errno, std::generic_category(), "fork");
    }
    if (host_ == 0) {
        ours.reset();
        beHost(std::move(theirs), environment);
    }
    theirs.reset();
    Channel channel(std::move(ours), kMaxLine);
    pollfd watched{channel.descriptor(), POLLIN, 0};
    std::string line;
    if (::poll(&watched, 1, EngineProcess::kDeadlineMilliseconds) != 1 ||
        channel.read(line) != Channel::Input::Line) {
        throw std::runtime_error("the other host doesn't start");
    }
    engine_.emplace(static_cast<pid_t>(std::stol(line)), channel.takeDescriptor());
}

OtherHost::~OtherHost() {
    engine_.reset(); // whose number is its own only as long as the host doesn't end
    ::kill(host_, SIGKILL);
    ::waitpid(host_, nullptr, 0);
}

} // namespace zqm::test
