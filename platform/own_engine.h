// The engine of one object: started when it is needed, heard of through the event hub.

#pragma once

#include "engine/protocol/protocol.h"
#include "platform/engine_link.h"
#include "platform/event_hub.h"
#include "platform/process_identity.h"
#include "platform/watchdog.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zqm::platform {

// Why an engine is of no more use.
inline constexpr const char* kEngineIsMute = "the speech engine does not answer";
inline constexpr const char* kEngineTalksNonsense = "the speech engine said something that makes no sense";

class OwnEngine {
public:
    // The source is what the hub is told to call; it outlives this.
    explicit OwnEngine(EventSource* source) : source_(source) {}
    OwnEngine(const OwnEngine&) = delete;
    OwnEngine& operator=(const OwnEngine&) = delete;

    // Closes its socket and waits for nothing.
    ~OwnEngine();

    // False in a fork of the process that made this: the engine is the parent's there, and nothing else here
    // may be called.
    [[nodiscard]] bool isOurs() const { return owner_.isCurrent(); }

    [[nodiscard]] bool isOpen() const { return link_ != nullptr; }

    // Starts one unless it is open; false: that can't be done, and `error` says why.
    bool open(std::string& error);

    // Of an open one.
    EngineLink& link() { return *link_; }

    // Waits for what it says to its host, until the deadline. Of an open one.
    EngineLink::Input wait(protocol::Event& event, Clock::time_point deadline);

    // Sends without waiting. Of an open one.
    void post(const protocol::Request& request, std::vector<protocol::Descriptor> descriptors = {});

    // Kills it.
    void lose();

    // Leaves it to end by itself. Of an open one.
    void close();

    // Whether it is to be noticed that it stands still, which the source is woken for then: while the host
    // hopes to hear of it, and waits for nothing.
    void supervise(bool wanted);

    // Hands on what has come, as much as is good at one go. Null, or why the engine is of no more use: it has
    // ended, or stands still, or `accept` has found no sense in a message.
    const char* read(const std::function<bool(const protocol::Event&)>& accept);

    // It said more than was read at one go.
    [[nodiscard]] bool mayHaveMore() const { return mayHaveMore_; }

    // Has the hub call the source if there is something to deliver or left to read.
    void tellHub(bool hasEvent);

private:
    // Whether it is the answer to a question of this, which is nobody else's affair.
    bool isAnswer(const protocol::Event& event);
    // When all that came is read.
    const char* look();
    void watchForRoom();

    EventSource* source_;
    ProcessIdentity owner_;
    std::unique_ptr<EngineLink> link_;
    std::optional<Watchdog> watchdog_; // of the open one
    int unansweredPings_ = 0;
    bool isWaitingForRoom_ = false;
    bool mayHaveMore_ = false;
};

} // namespace zqm::platform
