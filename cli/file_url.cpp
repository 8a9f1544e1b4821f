#include "cli/file_url.h"

#include "cli/failure.h"

#include <filesystem>
#include <string_view>
#include <system_error>

namespace zqm::cli {
namespace {

constexpr std::string_view kKept = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/";
constexpr std::string_view kHexDigits = "0123456789ABCDEF";

} // namespace

std::string fileUrl(const std::string& path) {
    std::error_code error;
    const std::string absolute = std::filesystem::absolute(path, error).string();
    if (error) {
        throw Failure("can't find the current folder: " + error.message());
    }
    std::string url = "file://";
    for (const char character : absolute) {
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
