#pragma once

#include <optional>
#include <string>

namespace zqm::python {

// Each start of a recognizer from now on hears the sound file of this path; without one the microphone.
// Throws CallError where the system's recognizer hears no files.
void listenToFile(const std::optional<std::string>& path);

} // namespace zqm::python
