// Listening to one session after the other: joins the source of sound, what is heard in it, and the host.

#pragma once

#include "engine/event_loop.h"
#include "engine/listening/audio_source.h"
#include "engine/listening/level_meter.h"
#include "engine/listening/listener.h"
#include "engine/listening/listening_lock.h"
#include "engine/protocol/descriptor.h"
#include "engine/protocol/protocol.h"
#include "engine/sound_server.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <sys/types.h>

namespace zqm::engine {

// NOLINTNEXTLINE(cppcoreguidelines-virtual-class-destructor): final
class Listening final : private AudioTaker {
public:
    // Throws std::runtime_error, for people, where nothing can be heard.
    using ListenerMaker = std::function<std::unique_ptr<Listener>()>;
    using Reporter = std::function<void(const protocol::Event& event)>;

    // The listener is made when it is first needed: that takes time and memory. `host` is the process that is
    // listened for.
    Listening(EventLoop& loop, SoundServer& server, pid_t host, ListenerMaker makeListener,
              Reporter reporter);
    ~Listening();
    Listening(const Listening&) = delete;
    Listening& operator=(const Listening&) = delete;

    // Counts once all requests that have come are read: a list that another one follows costs nothing.
    void setCommands(protocol::SetCommands request);
    // With the descriptor of the file, if it is from one.
    void begin(const protocol::Listen& request, protocol::Descriptor file);
    void blockOthers(bool blocks);
    void stop(std::uint64_t session);

    // Both as of an AudioSource.
    void advance();
    [[nodiscard]] std::chrono::microseconds idleTime() const;

private:
    using Clock = std::chrono::steady_clock;

    void began() override;
    void take(std::span<const std::int16_t> samples) override;
    void failed(const std::string& reason, Remedy remedy) override;
    void ended() override;

    void prepareListener();
    void takeNewCommands();
    void open();
    void end();
    void queueUp();
    void tellState(const std::string& error, Remedy remedy);
    void tellProblems(std::uint64_t list, const std::vector<UnusableCommand>& problems);
    void tellPhrase(const HeardPhrase& phrase);

    EventLoop& loop_;
    SoundServer& server_;
    ListenerMaker makeListener_;
    Reporter report_;

    std::unique_ptr<Listener> listener_;
    std::optional<protocol::SetCommands> commands_; // that no listener was given yet
    bool isListNew_ = false;                        // and none was asked to take them

    std::optional<protocol::Listen> session_;
    protocol::Descriptor file_; // of a session that has no source yet
    std::unique_ptr<AudioSource> source_;
    Clock::time_point retry_;          // of making the source
    std::optional<std::string> state_; // that was told last
    LevelMeter meter_;
    std::uint64_t taken_ = 0; // samples

    bool blocks_ = false;
    bool isCapturing_ = false;
    ListeningLock lock_;
    double shutOutUntil_ = 0; // seconds of the session's sound
};

} // namespace zqm::engine
