// A sound file that is heard through a server's null sink.

#pragma once

#include "tests/support/process.h"
#include "tests/support/pulse_server.h"

#include <filesystem>
#include <memory>

namespace zqm::support {

// Plays in real time from construction on; the silence at the file's end is left out, so that it is over
// about when its last sound is. Destruction ends it early.
class PlayedFile {
public:
    // Throws std::runtime_error when the file can't be read.
    PlayedFile(const PulseServer& server, const std::filesystem::path& file);

    // Throws std::runtime_error when it couldn't be played.
    bool isOver() const;

private:
    std::unique_ptr<Process> player_;
};

} // namespace zqm::support
