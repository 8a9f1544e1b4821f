#include "cli/sound/sound_devices.h"

#include "cli/command_line/failure.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <memory>

#include <pulse/context.h>
#include <pulse/introspect.h>
#include <pulse/mainloop.h>
#include <pulse/operation.h>

namespace zqm::cli {
namespace {

using Clock = std::chrono::steady_clock;

// How long the server has to answer, and how long nothing is waited for between two looks.
constexpr std::chrono::seconds kPatience{3};
constexpr int kStep = 50'000; // microseconds

// A connection to the sound server.
class Server {
public:
    Server()
        : loop_(pa_mainloop_new(), &pa_mainloop_free),
          context_(pa_context_new(pa_mainloop_get_api(loop_.get()), "zqmspeech"), &pa_context_unref) {
        pa_context_connect(context_.get(), nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr);
    }
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;
    ~Server() { pa_context_disconnect(context_.get()); }

    bool isReady() {
        return runUntil([&] { return state() == PA_CONTEXT_READY || !PA_CONTEXT_IS_GOOD(state()); }) &&
               state() == PA_CONTEXT_READY;
    }

    // False when the server doesn't tell.
    bool list(std::vector<SoundDevice>& devices) {
        pa_operation* const operation =
            pa_context_get_sink_info_list(context_.get(), &Server::take, &devices);
        const bool isOver = operation != nullptr && runUntil([&] {
                                return pa_operation_get_state(operation) != PA_OPERATION_RUNNING;
                            });
        const bool isDone = isOver && pa_operation_get_state(operation) == PA_OPERATION_DONE;
        if (operation != nullptr) {
            pa_operation_cancel(operation);
            pa_operation_unref(operation);
        }
        return isDone;
    }

private:
    pa_context_state_t state() const { return pa_context_get_state(context_.get()); }

    template <typename Condition>
    bool runUntil(Condition condition) {
        while (!condition()) {
            if (Clock::now() >= deadline_ || pa_mainloop_prepare(loop_.get(), kStep) < 0 ||
                pa_mainloop_poll(loop_.get()) < 0 || pa_mainloop_dispatch(loop_.get()) < 0) {
                return false;
            }
        }
        return true;
    }

    static void take(pa_context* /*context*/, const pa_sink_info* sink, int isLast, void* devices) {
        if (isLast == 0) {
            static_cast<std::vector<SoundDevice>*>(devices)->push_back(
                {sink->name, sink->description == nullptr ? "" : sink->description});
        }
    }

    std::unique_ptr<pa_mainloop, void (*)(pa_mainloop*)> loop_;
    std::unique_ptr<pa_context, void (*)(pa_context*)> context_;
    Clock::time_point deadline_ = Clock::now() + kPatience;
};

std::string namesOf(const std::vector<SoundDevice>& devices) {
    std::string names;
    for (const SoundDevice& device : devices) {
        names += (names.empty() ? "" : ", ") + device.name;
    }
    return names.empty() ? "there are none" : "there are: " + names;
}

} // namespace

std::optional<std::vector<SoundDevice>> soundDevices() {
    Server server;
    std::vector<SoundDevice> devices;
    if (!server.isReady() || !server.list(devices)) {
        return std::nullopt;
    }
    return devices;
}

// Without a server, playing itself fails and tells why.
void playOn(const std::string& device) {
    const auto devices = soundDevices();
    if (devices && std::ranges::find(*devices, device, &SoundDevice::name) == devices->end()) {
        throw Failure("there is no sound device \"" + device + "\" (" + namesOf(*devices) + ")");
    }
    setenv("PULSE_SINK", device.c_str(), 1); // the engine takes over the environment
}

} // namespace zqm::cli
