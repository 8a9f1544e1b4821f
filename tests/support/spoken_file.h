// What voices say, as sound files.

#pragma once

#include <filesystem>
#include <string>

namespace zqm::support {

// Writes a WAV file of a text that a voice says: "flite " and one of flite's voices, such as "flite slt", or
// "espeak-ng " and one of ours, such as "espeak-ng gmw/en-US", by the command that the caller's build made.
// Throws std::runtime_error with the reason when that fails.
void writeSpokenFile(const std::string& command, const std::string& voice, const std::string& text,
                     const std::filesystem::path& file);

} // namespace zqm::support
