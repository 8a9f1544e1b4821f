// Speech played by the PulseAudio server (or PipeWire in its place).

#pragma once

#include "engine/output/output.h"
#include "engine/protocol/speaking_lock.h"
#include "engine/sound_server.h"

#include <chrono>
#include <pulse/operation.h>
#include <pulse/stream.h>

namespace zqm::engine {

class SoundOutput final : public Output {
public:
    // How long the server has to take the stream.
    static constexpr std::chrono::seconds kPatience{3};
    // How often it is asked from then on whether it is there, and how long it has to answer.
    static constexpr std::chrono::seconds kInterval{1};
    static constexpr std::chrono::seconds kLongestSilence{10};
    // After that, in case this process was suspended, the server perhaps with it.
    static constexpr std::chrono::seconds kLastChance{1};

    SoundOutput(SoundServer& server, int sampleRate);
    ~SoundOutput() override;

    void update() override;
    [[nodiscard]] std::size_t room() const override;
    void write(std::span<const std::int16_t> samples) override;
    [[nodiscard]] std::uint64_t heard() const override;
    void finish() override;
    [[nodiscard]] bool isLive() const override { return true; }
    void truncate(std::uint64_t samples) override;
    void pause() override;
    void resume() override;
    void stop() override;

private:
    using Clock = std::chrono::steady_clock;

    void connect();
    void disconnect();
    void openStream();
    void closeStream();
    [[nodiscard]] bool serverAnswers();
    void put(std::span<const std::int16_t> samples, std::uint64_t before);

    SoundServer& server_;
    int sampleRate_;
    pa_context* context_ = nullptr;
    bool isConnected_ = false; // the server knows of this
    pa_stream* stream_ = nullptr;
    pa_operation* drain_ = nullptr;
    pa_operation* question_ = nullptr; // whether the server is there
    std::uint64_t written_ = 0;        // samples of the stream, but for those
    std::uint64_t takenBack_ = 0;      // that were taken back: silence, to be replaced by what comes next
    protocol::SpeakingLock lock_;      // while there is a stream that is open
    Clock::time_point deadline_;       // of the server, or when it is asked next
    bool isDoubted_ = false;           // the question was not answered in time
};

} // namespace zqm::engine
