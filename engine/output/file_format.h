// Sound file formats by the extensions of their files.

#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zqm::engine {

struct FileFormat {
    std::string_view extension; // in small letters
    int format;                 // libsndfile's number, with the encoding of samples
    std::uint64_t mostSamples;  // 16-bit samples that a file can hold
    bool mayBeEmpty = true;     // whether a file without any sample can be read
};

// The format for an extension, in whatever case; for none, AIFF; null for an unknown one.
const FileFormat* findFileFormat(std::string_view extension);

// The known extensions, to be listed in a message.
std::string knownExtensions();

} // namespace zqm::engine
