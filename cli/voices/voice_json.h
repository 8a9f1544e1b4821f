#pragma once

#include "cli/voices/voice.h"

#include <string>
#include <vector>

namespace zqm::cli {

// As docs/voice.schema.json and docs/voices.schema.json say, with a line break at the end.
std::string voiceJson(const Voice& voice);
std::string voicesJson(const std::vector<Voice>& voices);

} // namespace zqm::cli
