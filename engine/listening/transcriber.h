// How words that no dictionary has are pronounced.

#pragma once

#include "engine/speaker/speaker.h"

#include <functional>
#include <string>
#include <vector>

namespace zqm::engine {

// The pronunciations of a word in phones parted by blanks, the likeliest first; none when nothing is known.
using Transcriber = std::function<std::vector<std::string>(const std::string& word)>;

// As espeak-ng's American voice reads words. The speaker must live as long.
Transcriber englishTranscriber(Speaker& speaker);

} // namespace zqm::engine
