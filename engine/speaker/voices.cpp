#include "engine/speaker/voices.h"

#include <algorithm>
#include <cctype>
#include <espeak-ng/espeak_ng.h>
#include <espeak-ng/speak_lib.h>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace zqm::engine {

namespace {

constexpr std::string_view kMbrolaFolder = "mb/";

const char* genderName(unsigned char gender) {
    constexpr unsigned char kMale = 1;
    constexpr unsigned char kFemale = 2;
    return gender == kMale ? "male" : gender == kFemale ? "female" : "neuter";
}

// Some of the names end with a blank.
std::string trimmed(std::string_view name) {
    return std::string(name.substr(0, name.find_last_not_of(' ') + 1));
}

char upper(char letter) {
    return static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
}

} // namespace

std::string languageTag(std::string_view name) {
    constexpr std::size_t kRegion = 2;
    constexpr std::size_t kScript = 4;
    std::string tag;
    bool isPrivate = false;
    while (!name.empty()) {
        const std::string_view part = name.substr(0, name.find('-'));
        name.remove_prefix(std::min(name.size(), part.size() + 1));
        std::string subtag(part);
        if (!tag.empty()) {
            isPrivate = isPrivate || subtag.size() == 1;
            if (!isPrivate && subtag.size() == kRegion) {
                std::transform(subtag.begin(), subtag.end(), subtag.begin(), upper);
            } else if (!isPrivate && subtag.size() == kScript) {
                subtag.front() = upper(subtag.front());
            }
            tag += '-';
        }
        tag += subtag;
    }
    return tag;
}

std::string voiceFolder() {
    espeak_ng_InitializePath(nullptr);
    const char* folder = nullptr;
    espeak_Info(&folder);
    return folder;
}

VoicePitch voicePitch(const std::string& identifier) {
    const char* data = nullptr;
    espeak_Info(&data);
    for (const char* const folder : {"lang", "voices"}) {
        std::ifstream file(std::filesystem::path(data) / folder / identifier);
        for (std::string line; std::getline(file, line);) {
            std::istringstream words(line);
            std::string keyword;
            VoicePitch pitch;
            if (words >> keyword >> pitch.low >> pitch.high && keyword == "pitch") {
                return pitch;
            }
        }
    }
    return {};
}

std::vector<protocol::Voice> listVoices() {
    std::vector<protocol::Voice> voices;
    for (const espeak_VOICE** entry = espeak_ListVoices(nullptr); *entry != nullptr; ++entry) {
        const espeak_VOICE& voice = **entry;
        const std::string_view identifier = voice.identifier;
        if (identifier.substr(0, kMbrolaFolder.size()) == kMbrolaFolder) {
            continue;
        }
        // The first of the languages; one byte of priority stands before it.
        const VoicePitch pitch = voicePitch(std::string(identifier));
        voices.push_back({std::string(identifier), trimmed(voice.name), languageTag(voice.languages + 1),
                          genderName(voice.gender), voice.age, espeakRATE_NORMAL, ownPitchBase(pitch),
                          kOwnPitchModulation});
    }
    std::sort(voices.begin(), voices.end(), [](const protocol::Voice& left, const protocol::Voice& right) {
        return left.identifier < right.identifier;
    });
    return voices;
}

std::string synthesizerVersion() {
    return espeak_Info(nullptr);
}

} // namespace zqm::engine
