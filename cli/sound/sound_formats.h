// The formats of sound files that libsndfile can write, by the extensions of their names.

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zqm::cli {

struct SoundFormat {
    std::string extension;   // in small letters
    std::string description; // for people
    int format = 0;          // libsndfile's number, with the encoding of samples
    int rate = 0;            // samples a second: those that were asked for, or what the format has instead
};

// The samples a second that the platform's voices have.
inline constexpr int kUsualRate = 22050;

// The format of an extension, in whatever case, that takes one channel of such sound; of none AIFF. Nothing
// for an extension that is unknown.
std::optional<SoundFormat> findSoundFormat(std::string_view extension, int rate = kUsualRate);

// All of them, by extension.
std::vector<SoundFormat> soundFormats(int rate = kUsualRate);

} // namespace zqm::cli
