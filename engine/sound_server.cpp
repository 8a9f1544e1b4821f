#include "engine/sound_server.h"

#include <algorithm>
#include <cstdlib>
#include <pulse/timeval.h>
#include <string_view>
#include <utility>

namespace zqm::engine {

SoundServer::~SoundServer() {
    disconnect();
    if (idle_ != nullptr) {
        api_->time_free(idle_);
    }
}

pa_context* SoundServer::acquire() {
    ++users_;
    if (context_ != nullptr && PA_CONTEXT_IS_GOOD(pa_context_get_state(context_)) == 0) {
        disconnect();
    }
    if (context_ == nullptr) {
        context_ = pa_context_new(api_, "zqmspeech");
        // An engine starts no program.
        if (context_ != nullptr &&
            pa_context_connect(context_, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0) {
            disconnect();
        }
    }
    return context_;
}

void SoundServer::release() {
    --users_;
    timeval when{};
    pa_timeval_add(pa_gettimeofday(&when), static_cast<pa_usec_t>(std::chrono::microseconds(kIdle).count()));
    if (idle_ != nullptr) {
        api_->time_restart(idle_, &when);
        return;
    }
    idle_ = api_->time_new(
        api_, &when,
        [](pa_mainloop_api*, pa_time_event*, const timeval*, void* self) {
            auto& server = *static_cast<SoundServer*>(self);
            if (server.users_ == 0) {
                server.disconnect();
            }
        },
        this);
}

// The address may begin with the name of the machine that it is for.
std::string SoundServer::absence() {
    const char* const named = std::getenv("PULSE_SERVER"); // NOLINT(concurrency-mt-unsafe): no one sets it
    std::string_view address = named != nullptr ? named : "";
    if (address.starts_with('{')) {
        address.remove_prefix(std::min(address.find('}'), address.size() - 1) + 1);
    }
    if (!address.starts_with("tcp")) {
        return "no sound server answers";
    }
    return "the sound server " + std::string(address) + " can't be used: only one with a UNIX socket can";
}

void SoundServer::disconnect() {
    if (pa_context* const context = std::exchange(context_, nullptr); context != nullptr) {
        pa_context_disconnect(context);
        pa_context_unref(context);
    }
}

} // namespace zqm::engine
