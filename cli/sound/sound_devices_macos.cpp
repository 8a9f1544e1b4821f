#include "cli/sound/sound_devices.h"

#include "cli/command_line/failure.h"

namespace zqm::cli {

std::optional<std::vector<SoundDevice>> soundDevices() {
    throw Failure("macOS speaks on the device that is set for all sound");
}

void playOn(const std::string& /*device*/) {
    soundDevices();
}

} // namespace zqm::cli
