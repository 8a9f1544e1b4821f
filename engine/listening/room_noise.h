// The noise of a quiet room, laid under all that is listened to. A sound card's silence, and that between the
// phrases of a file, may be made of zeros: next to them the model finds every sound unlike what it learned,
// and what comes after them seems loud.

#pragma once

#include <cstdint>
#include <random>
#include <span>

namespace zqm::engine {

class RoomNoise {
public:
    // The same noise each time, so that the same sound is heard as the same.
    void addTo(std::span<std::int16_t> samples);

private:
    std::minstd_rand generator_;
};

} // namespace zqm::engine
