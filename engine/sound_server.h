// The connection to the PulseAudio server, shared by the utterances of an engine and its microphone.

#pragma once

#include <chrono>
#include <pulse/context.h>
#include <pulse/mainloop-api.h>
#include <string>

namespace zqm::engine {

class SoundServer {
public:
    // How long the connection is kept when nobody uses it.
    static constexpr std::chrono::seconds kIdle{5};

    explicit SoundServer(pa_mainloop_api* api) : api_(api) {}
    ~SoundServer();
    SoundServer(const SoundServer&) = delete;
    SoundServer& operator=(const SoundServer&) = delete;

    // The connection, begun anew if there is none or the last one broke; it may still be on its way. Null:
    // there can be none. Each is given back with release().
    pa_context* acquire();
    void release();

    // Why there is none, for who waited in vain.
    [[nodiscard]] static std::string absence();

private:
    void disconnect();

    pa_mainloop_api* api_;
    pa_context* context_ = nullptr;
    pa_time_event* idle_ = nullptr;
    int users_ = 0;
};

} // namespace zqm::engine
