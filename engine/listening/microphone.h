// The default source of the PulseAudio server (or PipeWire in its place).

#pragma once

#include "engine/listening/audio_source.h"
#include "engine/sound_server.h"

#include <chrono>
#include <pulse/stream.h>
#include <string>

namespace zqm::engine {

// What fails is tried again until this object ends. The server is left alone before and after.
class Microphone final : public AudioSource {
public:
    static constexpr std::chrono::seconds kRetry{2};
    // How long the server and the source have to give something: on a busy machine seconds may pass without.
    static constexpr std::chrono::seconds kPatience{10};
    // After that, in case this process was too busy to look at what had come.
    static constexpr std::chrono::seconds kLastChance{1};

    Microphone(SoundServer& server, AudioTaker& taker) : server_(server), taker_(taker) {}
    ~Microphone() override;

    void advance() override;
    [[nodiscard]] std::chrono::microseconds idleTime() const override;

private:
    using Clock = std::chrono::steady_clock;

    void connect();
    void openStream();
    void read();
    void give(const void* data, std::size_t bytes);
    void disconnect();
    void fail(const std::string& reason, Remedy remedy);
    [[nodiscard]] std::string refusal() const;

    SoundServer& server_;
    AudioTaker& taker_;
    bool isConnected_ = false;      // the server knows of this
    pa_context* context_ = nullptr; // null all the same where there can be none
    pa_stream* stream_ = nullptr;
    bool isCapturing_ = false;              // sound comes
    bool isDoubted_ = false;                // nothing came for long
    bool isMute_ = false;                   // nor in the last chance: to be told once
    Clock::time_point next_ = Clock::now(); // attempt, or the end of patience
};

} // namespace zqm::engine
