// espeak-ng itself, asked for phonemes in a test.

#pragma once

#include "engine/phonemes/phoneme_inventory.h"
#include "engine/phonemes/phoneme_set.h"
#include "engine/phonemes/phoneme_text.h"

#include <filesystem>
#include <string>
#include <vector>

namespace zqm::engine {

// The identifiers of the voices that are listed, in order.
const std::vector<std::string>& voiceIdentifiers();

const std::filesystem::path& espeakData();
const PhonemeInventory& phonemeInventory();

// Sets the voice, and says what its phoneme set is.
const PhonemeSet& speakWith(const std::string& voice);

// As text for espeak-ng.
std::string asText(const std::vector<PhonemeWord>& words);

enum class Reading { Text, Phonemes }; // whether [[ ]] holds phonemes

// What espeak-ng says, phonemes parted by "|".
std::string phonemesOf(const std::string& text, Reading reading = Reading::Text);

// In the international alphabet, without stress.
std::string internationalName(const std::string& phoneme);

// As its events name them.
std::vector<std::string> phonemeEvents(const std::string& text, Reading reading = Reading::Text);

} // namespace zqm::engine
