#include "platform/own_engine.h"

#include <utility>

namespace zqm::platform {
namespace {

// Read at one go: more than a socket holds, so that all is read that had come by then, and a stop has not
// long to wait where the engine goes on talking. What is beyond is read in the next round of the run loop.
constexpr int kMostMessages = 10'000;

} // namespace

OwnEngine::~OwnEngine() {
    if (!isOurs()) {
        return;
    }
    if (link_) {
        EventHub::shared().unwatch(link_->descriptor());
    }
    EventHub::shared().remove(source_);
}

bool OwnEngine::open(std::string& error) {
    if (link_) {
        return true;
    }
    link_ = EngineLink::open(error);
    if (link_ && !EventHub::shared().watch(link_->descriptor(), source_)) {
        error = "the system can't watch another engine";
        link_.reset();
    }
    if (link_) {
        watchdog_.emplace(source_);
    }
    return link_ != nullptr;
}

void OwnEngine::post(const protocol::Request& request, std::vector<protocol::Descriptor> descriptors) {
    link_->post(request, std::move(descriptors));
    watchForRoom();
}

void OwnEngine::lose() {
    link_->kill();
    close();
}

void OwnEngine::close() {
    EventHub::shared().unwatch(link_->descriptor());
    link_.reset();
    watchdog_.reset();
    unansweredPings_ = 0;
    isWaitingForRoom_ = false;
    mayHaveMore_ = false;
}

void OwnEngine::supervise(bool wanted) {
    if (!watchdog_) {
        return;
    }
    if (wanted) {
        watchdog_->start();
    } else {
        watchdog_->stop();
    }
}

const char* OwnEngine::read(const std::function<bool(const protocol::Event&)>& accept) {
    protocol::Event event;
    mayHaveMore_ = false;
    for (int count = 0; link_; ++count) {
        if (count == kMostMessages) {
            mayHaveMore_ = true;
            break;
        }
        switch (link_->read(event)) {
        case EngineLink::Input::Nothing:
            return look();
        case EngineLink::Input::Lost:
            return kEngineEnded;
        case EngineLink::Input::Event:
            watchdog_->noteEvent();
            if (!isAnswer(event) && !accept(event)) {
                return kEngineTalksNonsense;
            }
        }
    }
    return nullptr;
}

EngineLink::Input OwnEngine::wait(protocol::Event& event, Clock::time_point deadline) {
    for (;;) {
        const EngineLink::Input input = link_->wait(event, deadline);
        if (input != EngineLink::Input::Event || !isAnswer(event)) {
            return input;
        }
    }
}

bool OwnEngine::isAnswer(const protocol::Event& event) {
    if (!std::holds_alternative<protocol::Pong>(event) || unansweredPings_ == 0) {
        return false;
    }
    --unansweredPings_;
    return true;
}

const char* OwnEngine::look() {
    switch (watchdog_->look(link_->process())) {
    case Watchdog::Finding::Nothing:
        break;
    case Watchdog::Finding::Silence:
        ++unansweredPings_;
        link_->post(protocol::Ping{});
        break;
    case Watchdog::Finding::Standstill:
        return kEngineIsMute;
    }
    watchForRoom();
    return nullptr;
}

void OwnEngine::tellHub(bool hasEvent) {
    if (mayHaveMore_ || hasEvent) {
        EventHub::shared().addReady(source_);
    } else {
        EventHub::shared().remove(source_);
    }
}

// What did not fit into the socket is sent when the hub wakes the source for it.
void OwnEngine::watchForRoom() {
    const bool waits = link_->backlog() > 0;
    if (waits != isWaitingForRoom_) {
        isWaitingForRoom_ = waits;
        EventHub::shared().watchForRoom(link_->descriptor(), source_, waits);
    }
}

} // namespace zqm::platform
