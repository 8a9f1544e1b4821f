// The voices of the synthesizer, as a host is told of them.

#pragma once

#include "engine/protocol/protocol.h"
#include "engine/speaker/pitch.h"

#include <string>
#include <string_view>
#include <vector>

namespace zqm::engine {

// With espeak-ng's data; it needs not be initialised yet.
std::string voiceFolder();

// All but MBROLA's, whose sounds are not part of espeak-ng; sorted by identifier. espeak-ng is initialised.
std::vector<protocol::Voice> listVoices();

// What synthesizes, and its version.
inline constexpr const char* kSynthesizer = "espeak-ng";
std::string synthesizerVersion();

// What the voice's file says, or espeak-ng's own.
VoicePitch voicePitch(const std::string& identifier);

// A language name of espeak-ng, such as "en-us" or "cmn-latn-pinyin", as BCP 47 writes it.
std::string languageTag(std::string_view name);

} // namespace zqm::engine
