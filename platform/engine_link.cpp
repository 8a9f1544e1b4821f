#include "platform/engine_link.h"

#include "platform/engine_path.h"

#include <algorithm>
#include <cerrno>
#include <poll.h>

namespace zqm::platform {

using protocol::Channel;
using protocol::Descriptor;

std::unique_ptr<EngineLink> EngineLink::open(std::string& error) {
    const std::string path = enginePath();
    if (path.empty()) {
        error = "there is no speech engine beside the platform library";
        return nullptr;
    }
    Descriptor socket;
    auto process = EngineProcess::start(path, socket, error);
    if (!process) {
        return nullptr;
    }
    return std::make_unique<EngineLink>(std::move(*process), std::move(socket));
}

EngineLink::EngineLink(EngineProcess process, Descriptor socket)
    : process_(std::move(process)), channel_(std::move(socket), protocol::kMaxEventLine) {}

bool EngineLink::send(const protocol::Request& request, std::vector<Descriptor> descriptors,
                      Clock::time_point deadline) {
    channel_.send(protocol::encode(request), std::move(descriptors));
    while (channel_.flush()) {
        if (channel_.backlog() == 0) {
            return true;
        }
        if (!waitFor(POLLOUT, deadline)) {
            return false;
        }
    }
    return false;
}

void EngineLink::post(const protocol::Request& request, std::vector<Descriptor> descriptors) {
    channel_.send(protocol::encode(request), std::move(descriptors));
    channel_.flush();
}

EngineLink::Input EngineLink::read(protocol::Event& event) {
    channel_.flush();
    switch (channel_.read(line_)) {
    case Channel::Input::Nothing:
        return Input::Nothing;
    case Channel::Input::Line:
        break;
    default:
        return Input::Lost;
    }
    auto decoded = protocol::decodeEvent(line_);
    if (!decoded) {
        return Input::Lost;
    }
    event = std::move(*decoded);
    return Input::Event;
}

// The deadline is looked at first, since an engine may go on and on about something else than what is waited
// for. But what has come is read, however late it is by then: this process may have been suspended meanwhile.
EngineLink::Input EngineLink::wait(protocol::Event& event, Clock::time_point deadline) {
    if (Clock::now() >= deadline) {
        return Input::Nothing;
    }
    for (;;) {
        const Input input = read(event);
        if (input != Input::Nothing || !waitFor(POLLIN, deadline)) {
            return input;
        }
    }
}

bool EngineLink::waitFor(short condition, Clock::time_point deadline) const {
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
        if (left <= 0) {
            return false;
        }
        pollfd watched{channel_.descriptor(), condition, 0};
        const int answer = ::poll(&watched, 1, static_cast<int>(left));
        if (answer > 0) {
            return true;
        }
        if (answer < 0 && errno != EINTR) {
            return false;
        }
    }
}

} // namespace zqm::platform
