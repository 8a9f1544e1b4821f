#pragma once

#include <zqmhost/zqmhost.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

namespace zqm::cli {

struct SpeakingEvent {
    enum class Kind {
        Word,     // at `position`, of `length`
        Phoneme,  // of `opcode` and `symbol`
        Sync,     // `message`
        Problem,  // a mistake in the text at `position`: `text`
        Finished, // `completed` or not
    };
    Kind kind;
    std::optional<double>
        time; // seconds of sound at which it is heard; of the finish its length; none: not told
    std::size_t position = 0; // in UTF-16 units
    std::size_t length = 0;
    int opcode = 0;               // 0: silence
    std::string_view symbol = {}; // none where the platform tells none
    std::uint32_t message = 0;
    std::string_view text = {};
    bool completed = false;
};

// Is told in the run loop what a synthesizer speaks, but for the finish before the synthesizer's own events:
// on Linux with times, on macOS without. One at a time.
class SpeakingObserver {
public:
    using Handler = std::function<void(const SpeakingEvent&)>;

    SpeakingObserver(host::Object& synthesizer, Handler handler);
    SpeakingObserver(const SpeakingObserver&) = delete;
    SpeakingObserver& operator=(const SpeakingObserver&) = delete;
    ~SpeakingObserver();

private:
    [[maybe_unused]] host::Object& synthesizer_; // on macOS alone
    Handler handler_;
};

// The name of a file of a format that the platform writes without loss, and Linux without a limit.
extern const char* const kLosslessFile;

} // namespace zqm::cli
