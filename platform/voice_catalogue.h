// The voices of the engine.

#pragma once

#include "engine/protocol/protocol.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zqm::platform {

// In the engine's order. The engine is asked once a process; while none answers, there are no voices and it
// is asked again the next time.
const std::vector<protocol::Voice>& availableVoices();

// What the engine is called; empty when it did not say, and while none answers.
struct EngineInfo {
    std::string name;
    std::string version;
};
EngineInfo engineInfo();

// Null: there is none of that identifier.
const protocol::Voice* findVoice(std::string_view identifier);

// The voice of a locale's language as the environment writes it, such as "de_AT.UTF-8"; else the one for
// American English, else the first. Null when there are no voices.
const protocol::Voice* voiceForLocale(std::span<const protocol::Voice> voices, std::string_view locale);

// The locale of the program's messages, from LC_ALL, LC_MESSAGES or LANG; empty: none is set.
std::string messageLocale();

} // namespace zqm::platform
