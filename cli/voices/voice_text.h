#pragma once

#include "cli/voices/voice.h"

#include <cstddef>
#include <string>
#include <vector>

namespace zqm::cli {

// For people: a table that leaves out what so many columns can't hold. * marks the default voice.
std::string voicesTable(const std::vector<Voice>& voices, std::size_t columns, bool isColoured);

// For programs: identifier, language, gender and name on a line, with tabs between.
std::string voicesLines(const std::vector<Voice>& voices);

// All of a voice's attributes, each with its name.
std::string voiceText(const Voice& voice, std::size_t columns, bool isColoured);

} // namespace zqm::cli
