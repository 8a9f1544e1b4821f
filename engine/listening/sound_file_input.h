// A sound file that is listened to instead of the microphone.

#pragma once

#include "engine/event_loop.h"
#include "engine/listening/audio_source.h"
#include "engine/listening/sound_decoder.h"
#include "engine/protocol/descriptor.h"

#include <cstddef>
#include <optional>

namespace zqm::engine {

// Read as fast as it can be, a portion at a time. A failure is for good. What comes through a pipe is
// gathered before it is heard, since most formats can't be read without going back and forth.
class SoundFileInput final : public AudioSource {
public:
    SoundFileInput(EventLoop& loop, protocol::Descriptor file, AudioTaker& taker);
    ~SoundFileInput() override;

    void advance() override;
    [[nodiscard]] std::chrono::microseconds idleTime() const override;

private:
    enum class Stage { New, Gathering, Reading, Over };

    void begin();
    void gather();
    void open();
    void read();
    void close();
    void stopGathering();

    EventLoop& loop_;
    AudioTaker& taker_;
    protocol::Descriptor file_;
    protocol::Descriptor pipe_; // what of it was read is in the file
    std::size_t gathered_ = 0;  // bytes
    Stage stage_ = Stage::New;
    std::optional<SoundDecoder> decoder_;
};

} // namespace zqm::engine
