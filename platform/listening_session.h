// What one recognizer listens for: an engine of its own, the commands, and what was heard and not yet
// delivered. Nothing here waits. An engine that is lost while it listens is replaced, and told the same.

#pragma once

#include "engine/protocol/protocol.h"
#include "platform/listening_observer.h"
#include "platform/own_engine.h"
#include "platform/timer.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace zqm::platform {

struct CommandList {
    std::uint64_t number = 0;
    std::vector<std::string> texts;  // UTF-8
    std::shared_ptr<const void> own; // the commands as the host gave them
};

// For the delegate.
struct HeardCommand {
    std::shared_ptr<const CommandList> list;
    std::size_t index = 0;
};

using ListeningEvent = std::variant<Observation, HeardCommand>;

class ListeningSession {
public:
    using Log = void (*)(const std::string& line);

    // The source is what the hub is told to call; it outlives the session.
    ListeningSession(EventSource* source, Log log) : engine_(source), timer_(source), log_(log) {}
    ListeningSession(const ListeningSession&) = delete;
    ListeningSession& operator=(const ListeningSession&) = delete;
    ~ListeningSession() = default;

    // Sound from the file, or from the microphone without one. Nothing happens while it listens.
    void start(std::optional<std::string> file);

    // What is not delivered yet comes to nobody.
    void stop();

    // For the phrases to come. A list before is kept until the engine hears by the new one.
    void setCommands(std::vector<std::string> texts, std::shared_ptr<const void> own);

    void setBlocksOthers(bool blocks);

    // Reads what has come, and does what it is time for.
    void takeMessages();

    // The next event to be delivered, in order.
    std::optional<ListeningEvent> nextEvent();

private:
    using Lists = std::deque<std::shared_ptr<const CommandList>>;

    void begin();
    bool openEngine(std::string& error);
    void postCommands();
    void loseEngine(const char* reason);
    void forgetFormerLists();
    // An engine that has no microphone.
    void replaceLater();
    void replace();
    void keepEngine();
    void retryLater(const std::string& reason);
    void giveUp(const std::string& reason);
    void reportFailure(const std::string& reason);

    // False when the message makes no sense.
    bool accept(const protocol::Event& event);
    bool acceptCommands(const protocol::CommandsSet& set);
    // Of the session that goes on.
    bool hear(const protocol::Listening& listening);
    bool hear(const protocol::Heard& heard);
    bool hear(const protocol::Rejected& rejected);
    bool hear(const protocol::Level& level);
    bool hear(const protocol::EndOfInput& end);
    bool isNewPhrase(double end);
    void observe(Observation observation);
    [[nodiscard]] bool isCapturing() const;
    [[nodiscard]] Lists::iterator findList(std::uint64_t number);

    OwnEngine engine_;
    Timer timer_;
    Log log_;
    Lists lists_; // from the one that may still be heard to the newest
    std::uint64_t lastList_ = 0;
    std::uint64_t lastJudgedList_ = 0; // whose refused commands were told
    bool blocksOthers_ = false;

    bool isListening_ = false;
    std::uint64_t session_ = 0;
    std::optional<std::string> file_;
    double heardUntil_ = 0;                // seconds of the file
    bool isOver_ = false;                  // nothing more comes of this session
    std::size_t losses_ = 0;               // of engines, since a phrase was heard
    bool isToBeReplaced_ = false;          // the engine, when the timer's time has come
    std::chrono::milliseconds patience_{}; // with the next engine that has no microphone
    std::optional<std::string> state_;     // what was told last: why nothing is heard; empty: it is
    std::deque<ListeningEvent> events_;
};

} // namespace zqm::platform
