#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace zqm::support {

// Writes a WAV file in which flite's voice slt says these phrases one after the other, each with a second of
// silence before it, and one behind the last. Throws std::runtime_error with the reason when that fails.
void writeSpokenPhrases(const std::vector<std::string>& phrases, const std::filesystem::path& file);

} // namespace zqm::support
