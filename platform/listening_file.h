// The sound file that stands in for the microphone.

#pragma once

#include "engine/protocol/descriptor.h"

#include <optional>
#include <string>

namespace zqm::platform {

// Absolute; nothing: the microphone.
std::optional<std::string> listeningFile();

// Open for reading; empty when it can't be, and `error` says why. Never waits, as a pipe would have one do.
protocol::Descriptor openListeningFile(const std::string& path, std::string& error);

} // namespace zqm::platform
