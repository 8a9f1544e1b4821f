#pragma once

#include "cli/command_line/failure.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zqm::host {
class Runtime;
}

namespace zqm::cli {

// A voice's attributes; empty where it has none.
struct Voice {
    std::string identifier;
    std::string name;
    std::string language; // a tag, as en-GB
    std::string locale;
    std::string gender;   // a Gender's name
    std::int64_t age = 0; // years; 0: not known
    std::string demoText;
    bool isDefault = false;
};

struct Gender {
    std::string_view name;     // for people
    std::string_view constant; // the shared method of NSVoiceZQM that answers the platform's word for it
};
inline constexpr std::array kGenders{Gender{"male", "GenderMale"}, Gender{"female", "GenderFemale"},
                                     Gender{"neuter", "GenderNeuter"}};

std::vector<std::string> genderNames();

// All, in the platform's order. Throws Failure when there are none.
std::vector<Voice> installedVoices(host::Runtime& runtime);

// That of this identifier or, if there is none, of this name; case doesn't count. Throws Failure, which names
// near ones.
const Voice& findVoice(const std::vector<Voice>& voices, std::string_view name);

// Whether the voice speaks the language of this tag, or a kind of it: en-GB is a kind of en.
bool speaks(const Voice& voice, std::string_view language);

Failure noVoices();

} // namespace zqm::cli
