#include "engine/listening/microphone.h"

#include "engine/listening/listening_rate.h"

#include <algorithm>
#include <array>
#include <limits>
#include <pulse/context.h>
#include <pulse/error.h>
#include <utility>

namespace zqm::engine {

namespace {

constexpr std::chrono::microseconds kForever{-1};

constexpr std::uint32_t kFragmentMilliseconds = 20;
constexpr std::uint32_t kMillisecondsPerSecond = 1000;
constexpr std::size_t kSampleBytes = sizeof(std::int16_t);
constexpr std::uint32_t kFragmentBytes =
    kListeningRate * kFragmentMilliseconds / kMillisecondsPerSecond * kSampleBytes;
constexpr std::uint32_t kServersChoice = std::numeric_limits<std::uint32_t>::max();

} // namespace

Microphone::~Microphone() {
    disconnect();
}

std::chrono::microseconds Microphone::idleTime() const {
    if (isMute_) {
        return kForever;
    }
    const auto rest = std::chrono::ceil<std::chrono::microseconds>(next_ - Clock::now());
    return std::max(rest, std::chrono::microseconds(0));
}

void Microphone::advance() {
    const bool isDue = Clock::now() >= next_;
    if (!isConnected_) {
        if (!isDue) {
            return;
        }
        connect();
    }
    if (context_ == nullptr || PA_CONTEXT_IS_GOOD(pa_context_get_state(context_)) == 0) {
        fail(isCapturing_ ? "the sound server is gone" : SoundServer::absence(), Remedy::NewEngine);
        return;
    }
    if (stream_ == nullptr && pa_context_get_state(context_) == PA_CONTEXT_READY) {
        openStream();
    }
    if (stream_ != nullptr && PA_STREAM_IS_GOOD(pa_stream_get_state(stream_)) == 0) {
        fail(isCapturing_ ? "the sound server ended the recording" : refusal(), Remedy::Time);
        return;
    }
    const bool isOpen = stream_ != nullptr && pa_stream_get_state(stream_) == PA_STREAM_READY;
    if (isOpen) {
        read();
    }
    if (Clock::now() < next_ || isMute_) {
        return;
    }
    if (!isOpen) {
        fail(SoundServer::absence(), Remedy::NewEngine);
    } else if (!std::exchange(isDoubted_, true)) {
        next_ = Clock::now() + kLastChance;
    } else {
        isMute_ = true;
        isCapturing_ = false;
        taker_.failed("the microphone gives no sound", Remedy::Time);
    }
}

void Microphone::connect() {
    context_ = server_.acquire();
    if (context_ != nullptr) {
        pa_context_ref(context_);
    }
    isConnected_ = true;
    next_ = Clock::now() + kPatience;
}

void Microphone::openStream() {
    const pa_sample_spec spec{PA_SAMPLE_S16NE, kListeningRate, 1};
    pa_buffer_attr buffer{};
    buffer.maxlength = kServersChoice;
    buffer.tlength = kServersChoice;
    buffer.prebuf = kServersChoice;
    buffer.minreq = kServersChoice;
    buffer.fragsize = kFragmentBytes;
    stream_ = pa_stream_new(context_, "Speech recognition", &spec, nullptr);
    if (stream_ == nullptr ||
        pa_stream_connect_record(stream_, nullptr, &buffer, PA_STREAM_ADJUST_LATENCY) < 0) {
        fail(refusal(), Remedy::Time);
    }
}

std::string Microphone::refusal() const {
    const int error = pa_context_errno(context_);
    return error == PA_ERR_NOENTITY
               ? std::string("there is no microphone")
               : std::string("the sound server lets nothing be recorded: ") + pa_strerror(error);
}

void Microphone::read() {
    const void* data = nullptr;
    std::size_t bytes = 0;
    while (stream_ != nullptr && pa_stream_peek(stream_, &data, &bytes) >= 0 && bytes > 0) {
        next_ = Clock::now() + kPatience;
        isDoubted_ = false;
        isMute_ = false;
        if (!std::exchange(isCapturing_, true)) {
            taker_.began();
        }
        give(data, bytes);
        pa_stream_drop(stream_);
    }
}

// Where the server lost sound there are no data: silence takes its time.
void Microphone::give(const void* data, std::size_t bytes) {
    const std::size_t count = bytes / kSampleBytes;
    if (data != nullptr) {
        taker_.take({static_cast<const std::int16_t*>(data), count});
        return;
    }
    constexpr std::size_t kPortion = kListeningRate;
    static constexpr std::array<std::int16_t, kPortion> kSilence{};
    for (std::size_t given = 0; given < count; given += kPortion) {
        taker_.take({kSilence.data(), std::min(kPortion, count - given)});
    }
}

void Microphone::fail(const std::string& reason, Remedy remedy) {
    disconnect();
    next_ = Clock::now() + kRetry;
    taker_.failed(reason, remedy);
}

void Microphone::disconnect() {
    isCapturing_ = false;
    isDoubted_ = false;
    isMute_ = false;
    if (pa_stream* const stream = std::exchange(stream_, nullptr); stream != nullptr) {
        pa_stream_disconnect(stream);
        pa_stream_unref(stream);
    }
    if (pa_context* const context = std::exchange(context_, nullptr); context != nullptr) {
        pa_context_unref(context);
    }
    if (std::exchange(isConnected_, false)) {
        server_.release();
    }
}

} // namespace zqm::engine
