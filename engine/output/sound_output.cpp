#include "engine/output/sound_output.h"

#include <algorithm>
#include <limits>
#include <pulse/error.h>
#include <pulse/timeval.h>
#include <utility>
#include <vector>

namespace zqm::engine {

namespace {

// How far ahead of the listener the sound is made.
constexpr std::uint64_t kAheadMilliseconds = 400;
constexpr std::size_t kSampleBytes = sizeof(std::int16_t);
constexpr std::uint32_t kServersChoice = std::numeric_limits<std::uint32_t>::max();

constexpr auto kStreamFlags = static_cast<pa_stream_flags_t>(
    PA_STREAM_INTERPOLATE_TIMING | PA_STREAM_AUTO_TIMING_UPDATE | PA_STREAM_ADJUST_LATENCY);

void cancel(pa_operation*& operation) {
    if (operation != nullptr) {
        pa_operation_cancel(operation);
        pa_operation_unref(std::exchange(operation, nullptr));
    }
}

} // namespace

SoundOutput::SoundOutput(SoundServer& server, int sampleRate) : server_(server), sampleRate_(sampleRate) {
    connect();
    update();
}

SoundOutput::~SoundOutput() {
    closeStream();
    disconnect();
}

void SoundOutput::connect() {
    context_ = server_.acquire();
    if (context_ != nullptr) {
        pa_context_ref(context_);
    }
    deadline_ = Clock::now() + kPatience;
    isConnected_ = true;
}

void SoundOutput::disconnect() {
    if (pa_context* const context = std::exchange(context_, nullptr); context != nullptr) {
        pa_context_unref(context);
    }
    if (std::exchange(isConnected_, false)) {
        server_.release();
    }
}

void SoundOutput::update() {
    if (state() == State::Ended || state() == State::Failed) {
        return;
    }
    const bool connected = context_ != nullptr && PA_CONTEXT_IS_GOOD(pa_context_get_state(context_)) != 0;
    const bool playing = stream_ == nullptr || PA_STREAM_IS_GOOD(pa_stream_get_state(stream_)) != 0;
    if (state() == State::Open) {
        if (!connected) {
            failWith("the sound server is gone");
        } else if (!playing) {
            failWith("the sound server ended the sound");
        } else if (drain_ != nullptr && pa_operation_get_state(drain_) != PA_OPERATION_RUNNING) {
            lock_.release();
            become(State::Ended);
        } else if (!serverAnswers()) {
            failWith("the sound server does not answer");
        }
        return;
    }
    if (!connected || Clock::now() >= deadline_) {
        failWith(SoundServer::absence());
        return;
    }
    if (stream_ == nullptr && pa_context_get_state(context_) == PA_CONTEXT_READY) {
        openStream();
    } else if (!playing) {
        failWith(std::string("the sound server takes no sound: ") + pa_strerror(pa_context_errno(context_)));
    } else if (stream_ != nullptr && pa_stream_get_state(stream_) == PA_STREAM_READY) {
        lock_.hold();
        deadline_ = Clock::now();
        become(State::Open);
    }
}

// At once, also when its device is suspended: that holds the speech for as long as it takes.
bool SoundOutput::serverAnswers() {
    if (question_ != nullptr && pa_operation_get_state(question_) != PA_OPERATION_RUNNING) {
        pa_operation_unref(std::exchange(question_, nullptr));
        isDoubted_ = false;
        deadline_ = Clock::now() + kInterval;
    }
    if (Clock::now() < deadline_) {
        return true;
    }
    if (question_ == nullptr) {
        deadline_ = Clock::now() + kLongestSilence;
        question_ = pa_stream_update_timing_info(stream_, nullptr, nullptr);
        return question_ != nullptr; // too many questions without an answer
    }
    deadline_ = Clock::now() + kLastChance;
    return !std::exchange(isDoubted_, true);
}

void SoundOutput::openStream() {
    const pa_sample_spec spec{PA_SAMPLE_S16NE, static_cast<std::uint32_t>(sampleRate_), 1};
    pa_buffer_attr buffer{};
    buffer.maxlength = kServersChoice;
    buffer.tlength =
        static_cast<std::uint32_t>(pa_usec_to_bytes(kAheadMilliseconds * PA_USEC_PER_MSEC, &spec));
    buffer.prebuf = kServersChoice;
    buffer.minreq = kServersChoice;
    buffer.fragsize = kServersChoice;
    stream_ = pa_stream_new(context_, "Speech", &spec, nullptr);
    if (stream_ == nullptr ||
        pa_stream_connect_playback(stream_, nullptr, &buffer, kStreamFlags, nullptr, nullptr) < 0) {
        failWith(std::string("the sound server takes no sound: ") + pa_strerror(pa_context_errno(context_)));
    }
}

std::size_t SoundOutput::room() const {
    if (state() != State::Open || drain_ != nullptr) {
        return 0;
    }
    const std::size_t bytes = pa_stream_writable_size(stream_);
    return bytes == static_cast<std::size_t>(-1) ? 0 : bytes / kSampleBytes + takenBack_;
}

void SoundOutput::write(std::span<const std::int16_t> samples) {
    if (state() == State::Open) {
        put(samples, std::exchange(takenBack_, 0));
        written_ += samples.size();
    }
}

void SoundOutput::truncate(std::uint64_t samples) {
    if (state() == State::Open && samples < written_) {
        cancel(drain_);
        takenBack_ += written_ - samples;
        written_ = samples;
        put(std::vector<std::int16_t>(static_cast<std::size_t>(takenBack_)), takenBack_);
    }
}

// Where the stream ends, or so many samples before.
void SoundOutput::put(std::span<const std::int16_t> samples, std::uint64_t before) {
    const auto offset = -static_cast<std::int64_t>(before * kSampleBytes);
    if (pa_stream_write(stream_, samples.data(), samples.size_bytes(), nullptr, offset, PA_SEEK_RELATIVE) <
        0) {
        failWith(std::string("the sound server takes no sound: ") + pa_strerror(pa_context_errno(context_)));
    }
}

void SoundOutput::pause() {
    closeStream();
    disconnect();
}

void SoundOutput::resume() {
    connect();
    become(State::Opening);
    update();
}

std::uint64_t SoundOutput::heard() const {
    pa_usec_t time = 0;
    if (stream_ == nullptr || pa_stream_get_state(stream_) != PA_STREAM_READY ||
        pa_stream_get_time(stream_, &time) < 0) {
        return 0;
    }
    return time * static_cast<std::uint64_t>(sampleRate_) / PA_USEC_PER_SEC;
}

void SoundOutput::finish() {
    if (state() == State::Open && drain_ == nullptr) {
        drain_ = pa_stream_drain(stream_, nullptr, nullptr);
        if (drain_ == nullptr) {
            failWith("the sound server is gone");
        }
    }
}

void SoundOutput::stop() {
    if (state() != State::Failed) {
        closeStream();
        become(State::Ended);
    }
}

void SoundOutput::closeStream() {
    lock_.release();
    cancel(drain_);
    cancel(question_);
    isDoubted_ = false;
    written_ = 0;
    takenBack_ = 0;
    if (pa_stream* const stream = std::exchange(stream_, nullptr); stream != nullptr) {
        pa_stream_disconnect(stream);
        pa_stream_unref(stream);
    }
}

} // namespace zqm::engine
