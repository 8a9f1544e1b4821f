// Where what is listened to comes from.

#pragma once

#include <chrono>
#include <cstdint>
#include <span>
#include <string>

namespace zqm::engine {

// What a failure may pass with: an engine reaches only files and sockets whose places were there when it was
// confined.
enum class Remedy : std::uint8_t { Time, NewEngine };

// Is told what comes from a source: one channel, kListeningRate samples a second. Doesn't destroy the source
// meanwhile.
class AudioTaker {
public:
    virtual void began() = 0; // also whenever a failure has passed
    virtual void take(std::span<const std::int16_t> samples) = 0;
    virtual void failed(const std::string& reason, Remedy remedy) = 0;
    virtual void ended() = 0; // everything was taken

protected:
    ~AudioTaker() = default;
};

class AudioSource {
public:
    AudioSource() = default;
    virtual ~AudioSource() = default;
    AudioSource(const AudioSource&) = delete;
    AudioSource& operator=(const AudioSource&) = delete;

    // Does what can be done without waiting; to be called whenever the event loop was woken.
    virtual void advance() = 0;

    // When that is to be called again though the loop isn't woken; negative: never.
    [[nodiscard]] virtual std::chrono::microseconds idleTime() const = 0;
};

} // namespace zqm::engine
