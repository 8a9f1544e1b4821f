#include "engine/output/file_format.h"

#include <algorithm>
#include <array>
#include <limits>
#include <sndfile.h>

namespace zqm::engine {

namespace {

constexpr std::uint64_t kUnlimited = std::numeric_limits<std::uint64_t>::max();
// AIFF and WAV count their bytes in 32 bits, headers included. Wider forms of WAV are unknown to many
// readers, also where the file is small.
constexpr std::uint64_t kMostIn32Bits = (std::numeric_limits<std::uint32_t>::max() - 4096U) / 2;

// The first is what a file without an extension gets.
constexpr std::array kFormats{
    FileFormat{"aiff", SF_FORMAT_AIFF | SF_FORMAT_PCM_16, kMostIn32Bits},
    FileFormat{"aif", SF_FORMAT_AIFF | SF_FORMAT_PCM_16, kMostIn32Bits},
    FileFormat{"aifc", SF_FORMAT_AIFF | SF_FORMAT_PCM_16 | SF_ENDIAN_LITTLE, kMostIn32Bits},
    FileFormat{"wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, kMostIn32Bits},
    FileFormat{"flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_16, kUnlimited, false},
    FileFormat{"ogg", SF_FORMAT_OGG | SF_FORMAT_VORBIS, kUnlimited},
};

bool sameButCase(std::string_view left, std::string_view right) {
    const auto lower = [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + ('a' - 'A')) : letter;
    };
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [&](char one, char other) { return lower(one) == lower(other); });
}

} // namespace

const FileFormat* findFileFormat(std::string_view extension) {
    if (extension.empty()) {
        return kFormats.data();
    }
    const auto* const found =
        std::find_if(kFormats.begin(), kFormats.end(), [extension](const FileFormat& format) {
            return sameButCase(format.extension, extension);
        });
    return found == kFormats.end() ? nullptr : found;
}

std::string knownExtensions() {
    std::string list;
    for (const FileFormat& format : kFormats) {
        list += list.empty() ? "" : ", ";
        list += format.extension;
    }
    return list;
}

} // namespace zqm::engine
