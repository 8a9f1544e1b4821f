#include "platform/listening_file.h"

#include "platform/engine_process.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <zqmplatform/listening.h>

namespace zqm::platform {
namespace {

using protocol::Descriptor;

std::optional<std::string>& file() {
    static std::optional<std::string> path;
    return path;
}

} // namespace

std::optional<std::string> listeningFile() {
    return file();
}

Descriptor openListeningFile(const std::string& path, std::string& error) {
    Descriptor descriptor(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    descriptor = aboveStandardDescriptors(std::move(descriptor));
    struct stat status {};
    if (!descriptor || ::fstat(descriptor.get(), &status) != 0) {
        error = path + ": " + std::strerror(errno);
        return {};
    }
    if (S_ISDIR(status.st_mode)) {
        error = path + ": " + std::strerror(EISDIR);
        return {};
    }
    if (!S_ISREG(status.st_mode)) {
        error = path + ": no regular file";
        return {};
    }
    return descriptor;
}

} // namespace zqm::platform

void ZQMPlatformListenToFile(const char* path) {
    std::error_code error;
    zqm::platform::file() =
        path != nullptr ? std::optional(std::filesystem::absolute(path, error).string()) : std::nullopt;
}
