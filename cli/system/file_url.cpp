#include "cli/system/file_url.h"

#include "cli/command_line/failure.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>

#include <unistd.h>

namespace zqm::cli {
namespace {

constexpr std::string_view kKept = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/";
constexpr std::string_view kHexDigits = "0123456789ABCDEF";

std::string absolutePath(const std::string& path) {
    if (path.starts_with('/')) {
        return path;
    }
    const std::unique_ptr<char, void (*)(void*)> folder(getcwd(nullptr, 0), std::free);
    if (folder == nullptr) {
        throw Failure(std::string("can't find the current folder: ") + std::strerror(errno));
    }
    return folder.get() + ('/' + path);
}

} // namespace

std::string fileUrl(const std::string& path) {
    std::string url = "file://";
    for (const char character : absolutePath(path)) {
        if (kKept.find(character) != std::string_view::npos) {
            url += character;
        } else {
            const auto byte = static_cast<unsigned char>(character);
            url += '%';
            url += kHexDigits[byte >> 4U];
            url += kHexDigits[byte & 0xFU];
        }
    }
    return url;
}

} // namespace zqm::cli
