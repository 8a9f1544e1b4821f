#include "cli/sound_file.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#include <unistd.h>

namespace zqm::cli {

std::string whyNotWritable(const std::string& path) {
    namespace fs = std::filesystem;
    std::error_code error;
    const std::string refusal = "can't write " + path + ": ";
    if (fs::is_directory(path, error)) {
        return refusal + "it is a folder";
    }
    const fs::path parent = fs::path(path).parent_path();
    const fs::path folder = parent.empty() ? "." : parent;
    if (!fs::is_directory(folder, error)) {
        return refusal + "there is no folder " + folder.string();
    }
    const bool isWrittenInPlace = fs::exists(path, error) && !fs::is_regular_file(path, error);
    const fs::path decisive = isWrittenInPlace ? fs::path(path) : folder;
    if (access(decisive.c_str(), W_OK) != 0) {
        return refusal + std::strerror(errno);
    }
    return refusal + "sound files end in .wav, .aiff, .flac or .ogg";
}

} // namespace zqm::cli
