// The events of a speech as `zqmspeech say` prints them: lines for people and scripts with --events, and with
// --json JSON objects that docs/say.schema.json describes.

#pragma once

#include "cli/say/speaking_observer.h"
#include "cli/text/spoken_text.h"

#include <string>

namespace zqm::cli {

// Empty for a phoneme: readable lines are of words, and of what is no sound.
std::string textLine(const SpeakingEvent& event, const SpokenText& text);

std::string jsonLine(const SpeakingEvent& event, const SpokenText& text);

} // namespace zqm::cli
