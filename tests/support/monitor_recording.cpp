#include "tests/support/monitor_recording.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <mutex>
#include <span>
#include <stdexcept>
#include <string>
#include <thread>

#include <pulse/pulseaudio.h>

#include "tests/support/sounded_parts.h"

namespace zqm::support {

namespace {

using namespace std::chrono_literals;

constexpr auto kStartDeadline = 60s;
constexpr auto kCatchUpDeadline = 60s;
constexpr auto kPollPause = 5ms;
constexpr std::uint32_t kFragmentsPerSecond = 100;
// libpulse's idea of a new stream's latency may be most of a second off, and is right after about 1.5 s.
constexpr double kSettlingSeconds = 2;
constexpr std::size_t kEnoughOrigins = 20;

template <typename Condition>
bool waitUntil(Condition condition, std::chrono::milliseconds deadline) {
    const auto end = std::chrono::steady_clock::now() + deadline;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(kPollPause);
    }
    return true;
}

} // namespace

double monotonicSeconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

// libpulse's threaded main loop calls all the static functions, in its own thread.
class MonitorRecording::Stream {
public:
    Stream(const PulseServer& server, const std::string& sink)
        : source_(sink + ".monitor"), rate_(server.rate()), loop_(pa_threaded_mainloop_new()) {
        context_ = pa_context_new(pa_threaded_mainloop_get_api(loop_), "recording");
        pa_context_set_state_callback(context_, &Stream::contextChanged, this);
        if (pa_context_connect(context_, server.address().c_str(), PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0) {
            failed_ = true;
        }
        pa_threaded_mainloop_start(loop_);
    }

    ~Stream() {
        pa_threaded_mainloop_stop(loop_);
        if (stream_ != nullptr) {
            pa_stream_disconnect(stream_);
            pa_stream_unref(stream_);
        }
        pa_context_disconnect(context_);
        pa_context_unref(context_);
        pa_threaded_mainloop_free(loop_);
    }

    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;

    int rate() const { return rate_; }
    bool failed() const { return failed_; }

    std::size_t size() const {
        const std::lock_guard lock(mutex_);
        return samples_.size();
    }

    std::vector<float> samples() const {
        const std::lock_guard lock(mutex_);
        return samples_;
    }

    bool isTimed() const {
        const std::lock_guard lock(mutex_);
        return origins_.size() >= kEnoughOrigins;
    }

    double timeOf(std::size_t sample) const {
        std::vector<double> origins;
        {
            const std::lock_guard lock(mutex_);
            origins = origins_;
        }
        if (origins.size() < kEnoughOrigins) {
            throw std::logic_error("the recording is too short to tell times; catch up first");
        }
        const auto middle = origins.begin() + static_cast<std::ptrdiff_t>(origins.size() / 2);
        std::ranges::nth_element(origins, middle);
        return *middle + secondsOf(sample);
    }

private:
    double secondsOf(std::size_t sample) const { return static_cast<double>(sample) / rate_; }

    static void contextChanged(pa_context* context, void* self) {
        auto& stream = *static_cast<Stream*>(self);
        switch (pa_context_get_state(context)) {
        case PA_CONTEXT_READY:
            stream.connect();
            break;
        case PA_CONTEXT_FAILED:
        case PA_CONTEXT_TERMINATED:
            stream.failed_ = true;
            break;
        default:
            break;
        }
    }

    void connect() {
        const pa_sample_spec format = {
            .format = PA_SAMPLE_FLOAT32NE, .rate = static_cast<std::uint32_t>(rate_), .channels = 1};
        stream_ = pa_stream_new(context_, "monitor", &format, nullptr);
        pa_stream_set_read_callback(stream_, &Stream::arrived, this);
        const auto unlimited = static_cast<std::uint32_t>(-1);
        const pa_buffer_attr buffer = {.maxlength = unlimited,
                                       .tlength = unlimited,
                                       .prebuf = unlimited,
                                       .minreq = unlimited,
                                       .fragsize = static_cast<std::uint32_t>(pa_bytes_per_second(&format)) /
                                                   kFragmentsPerSecond};
        const auto flags = static_cast<pa_stream_flags_t>(
            PA_STREAM_INTERPOLATE_TIMING | PA_STREAM_AUTO_TIMING_UPDATE | PA_STREAM_ADJUST_LATENCY);
        if (pa_stream_connect_record(stream_, source_.c_str(), &buffer, flags) < 0) {
            failed_ = true;
        }
    }

    static void arrived(pa_stream* stream, std::size_t, void* self) {
        while (pa_stream_readable_size(stream) > 0) {
            const void* data = nullptr;
            std::size_t size = 0;
            if (pa_stream_peek(stream, &data, &size) < 0 || size == 0) {
                return;
            }
            static_cast<Stream*>(self)->append(static_cast<const float*>(data), size / sizeof(float));
            pa_stream_drop(stream);
        }
    }

    // A hole has no data, only a length.
    void append(const float* data, std::size_t count) {
        const double now = monotonicSeconds();
        pa_usec_t latency = 0;
        int negative = 0;
        const bool known = pa_stream_get_latency(stream_, &latency, &negative) == 0;
        const double delay = (negative != 0 ? -1.0 : 1.0) * static_cast<double>(latency) / PA_USEC_PER_SEC;
        const std::lock_guard lock(mutex_);
        if (samples_.empty()) {
            begin_ = now;
        }
        if (known && now - begin_ >= kSettlingSeconds) {
            origins_.push_back(now - delay - secondsOf(samples_.size()));
        }
        if (data != nullptr) {
            samples_.insert(samples_.end(), data, data + count);
        } else {
            samples_.resize(samples_.size() + count);
        }
    }

    const std::string source_;
    const int rate_;
    pa_threaded_mainloop* const loop_;
    pa_context* context_ = nullptr;
    pa_stream* stream_ = nullptr;
    std::atomic<bool> failed_ = false;
    mutable std::mutex mutex_;
    std::vector<float> samples_;
    double begin_ = 0;
    // When the recording's first sample was heard, as each chunk since the settling has it.
    std::vector<double> origins_;
};

MonitorRecording::MonitorRecording(const PulseServer& server, const std::string& sink)
    : stream_(std::make_unique<Stream>(server, sink)) {
    waitUntil([this] { return stream_->failed() || stream_->size() > 0; }, kStartDeadline);
    if (stream_->size() == 0) {
        throw std::runtime_error("the PulseAudio server lets us record nothing");
    }
}

MonitorRecording::~MonitorRecording() = default;

int MonitorRecording::rate() const {
    return stream_->rate();
}

std::vector<float> MonitorRecording::samples() const {
    return stream_->samples();
}

bool MonitorRecording::catchUp() const {
    const double now = monotonicSeconds();
    return waitUntil([this, now] { return stream_->isTimed() && timeOf(stream_->size()) >= now; },
                     kCatchUpDeadline);
}

double MonitorRecording::timeOf(std::size_t sample) const {
    return stream_->timeOf(sample);
}

std::optional<double> MonitorRecording::lastSound(double begin, double end) const {
    const double origin = timeOf(0);
    const std::vector<float> all = samples();
    const auto at = [&](double time) {
        const double sample = std::ceil((time - origin) * rate());
        return static_cast<std::size_t>(std::clamp(sample, 0.0, static_cast<double>(all.size())));
    };
    const std::size_t first = at(begin);
    const auto window = std::span(all).subspan(first, std::max(at(end), first) - first);
    const std::vector<SoundedPart> sounded = soundedParts(window, window.size() + 1);
    if (sounded.empty()) {
        return std::nullopt;
    }
    return timeOf(first + sounded.front().end - 1);
}

} // namespace zqm::support
