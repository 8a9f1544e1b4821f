// What first_sound_probe.cpp tells of a speech, in the file that ZQM_FIRST_SOUND names.

#pragma once

#include <atomic>
#include <cstdint>

namespace zqm::bench {

// Nanoseconds of CLOCK_MONOTONIC; what is zero is noted at the next occasion.
struct FirstSoundTimes {
    std::atomic<std::int64_t> made;   // libespeak-ng calls back with samples
    std::atomic<std::int64_t> handed; // they are handed to the sound server
};
static_assert(sizeof(FirstSoundTimes) == 2 * sizeof(std::int64_t) &&
              std::atomic<std::int64_t>::is_always_lock_free);

} // namespace zqm::bench
