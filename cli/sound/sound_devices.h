#pragma once

#include <optional>
#include <string>
#include <vector>

namespace zqm::cli {

struct SoundDevice {
    std::string name;
    std::string description; // for people
};

// Those that sound can be played on; nothing where no sound server answers. Throws Failure where the platform
// doesn't tell.
std::optional<std::vector<SoundDevice>> soundDevices();

// Has what starts to speak from now on play on this device. Throws Failure when there is none of that name.
void playOn(const std::string& device);

} // namespace zqm::cli
