// Which phonemes espeak-ng's voices have, out of espeak-ng's own data.

#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace zqm::engine {

// By set, the phonemes by the names that espeak-ng reports, in its order; variants have the same name.
using PhonemeInventory = std::map<std::string, std::vector<std::string>, std::less<>>;

// Of the folder with espeak-ng's data, as espeak_Info tells it. Throws std::runtime_error when the data is
// missing or of another version.
PhonemeInventory readPhonemeInventory(const std::filesystem::path& data);

// The set that a voice speaks with; empty when there is no such voice.
std::string phonemeSetOf(const std::filesystem::path& data, const std::string& voiceIdentifier,
                         const PhonemeInventory& inventory);

} // namespace zqm::engine
