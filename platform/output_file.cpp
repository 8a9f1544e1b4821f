#include "platform/output_file.h"

#include "engine/protocol/temporary_name.h"
#include "platform/engine_process.h"
#include "platform/file_name.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <random>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace zqm::platform {
namespace {

using protocol::Descriptor;

// The formats that are written from beginning to end, which is all that a pipe can take.
constexpr std::array<std::string_view, 1> kStreamedFormats{"ogg"};

constexpr int kMostLinks = 40; // as many as the system follows
constexpr int kMostAttempts = 100;
constexpr mode_t kNewFileMode = 0666;
constexpr mode_t kPermissions = 0777;

std::string folderOf(const std::string& path) {
    return path.substr(0, path.rfind('/') + 1);
}

std::string nameOf(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

std::string extensionOf(const std::string& name) {
    const std::size_t dot = name.rfind('.');
    return dot == std::string::npos || dot == 0 ? std::string() : name.substr(dot + 1);
}

bool isStreamed(std::string extension) {
    std::ranges::transform(extension, extension.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    return std::ranges::find(kStreamedFormats, extension) != kStreamedFormats.end();
}

// Where a chain of links ends, whether or not there is a file.
std::optional<std::string> followLinks(std::string path) {
    for (int count = 0; count < kMostLinks; ++count) {
        std::array<char, PATH_MAX> target{};
        const ssize_t length = ::readlink(path.c_str(), target.data(), target.size());
        if (length < 0) {
            return path;
        }
        const std::string link(target.data(), static_cast<std::size_t>(length));
        path = link.starts_with('/') ? link : folderOf(path).append(link);
    }
    errno = ELOOP;
    return std::nullopt;
}

std::string temporaryName() {
    static std::random_device random;
    return protocol::temporaryName(std::uniform_int_distribution<std::uint64_t>()(random));
}

Descriptor duplicate(const Descriptor& descriptor) {
    return Descriptor(::fcntl(descriptor.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

} // namespace

std::optional<OutputFile> OutputFile::open(const std::string& path, std::string& error) {
    const std::string resolved = resolveFileName(path);
    OutputFile output;
    output.description_.extension = extensionOf(nameOf(resolved));
    struct stat status {};
    const bool present = ::stat(resolved.c_str(), &status) == 0;
    bool opened = false;
    // NOLINTNEXTLINE(bugprone-branch-clone): the errors are of different calls
    if (!present && errno != ENOENT) {
        error = std::strerror(errno);
    } else if (present && !S_ISREG(status.st_mode)) {
        opened = output.openInPlace(resolved, status.st_mode & S_IFMT, error);
    } else if (const auto target = followLinks(resolved)) {
        const auto mode = present ? std::optional<mode_t>(status.st_mode & kPermissions) : std::nullopt;
        opened = output.openBeside(*target, mode, error);
    } else {
        error = std::strerror(errno);
    }
    if (!opened) {
        error = path + ": " + error;
        return std::nullopt;
    }
    return output;
}

bool OutputFile::openInPlace(const std::string& path, mode_t type, std::string& error) {
    if (type == S_IFIFO && !isStreamed(description_.extension)) {
        error = "a pipe can't take a file of this format";
        return false;
    }
    // Without O_NONBLOCK a pipe that nobody reads would hold up the host here, and the engine later.
    file_ = aboveStandardDescriptors(
        Descriptor(::open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK)));
    if (!file_) {
        error = std::strerror(errno);
        return false;
    }
    return true;
}

bool OutputFile::openBeside(const std::string& path, const std::optional<mode_t>& mode, std::string& error) {
    const std::string name = nameOf(path);
    if (name.empty() || name == "." || name == ".." || name.size() > NAME_MAX) {
        error = std::strerror(name.size() > NAME_MAX ? ENAMETOOLONG : EISDIR);
        return false;
    }
    // Replacing a file needs no permission to write to it; that it may not be written is respected all the
    // same.
    if (mode && ::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0) {
        error = std::strerror(errno);
        return false;
    }
    folder_ = aboveStandardDescriptors(
        Descriptor(::open(folderOf(path).c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)));
    if (!folder_) {
        error = std::strerror(errno);
        return false;
    }
    description_.finalName = name;
    mode_ = mode;
    return openTemporary(error);
}

bool OutputFile::openTemporary(std::string& error) {
    // A file without a name leaves nothing behind, whatever becomes of its writers. The engine names it.
    std::string temporary = temporaryName();
    if (::access("/proc/self/fd", X_OK) == 0) {
        file_ = aboveStandardDescriptors(
            Descriptor(::openat(folder_.get(), ".", O_RDWR | O_TMPFILE | O_CLOEXEC, kNewFileMode)));
    }
    for (int attempt = 0; !file_ && attempt < kMostAttempts; ++attempt) {
        temporary = temporaryName();
        file_ = aboveStandardDescriptors(Descriptor(
            ::openat(folder_.get(), temporary.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, kNewFileMode)));
        if (!file_ && errno != EEXIST) {
            break;
        }
    }
    if (!file_) {
        error = std::strerror(errno);
        return false;
    }
    if (mode_) {
        ::fchmod(file_.get(), *mode_);
    }
    description_.temporaryName = temporary;
    return true;
}

std::optional<std::vector<Descriptor>> OutputFile::descriptors(std::string& error) const {
    std::vector<Descriptor> copies;
    for (const Descriptor* const descriptor : {&file_, &folder_}) {
        if (!*descriptor) {
            continue;
        }
        copies.push_back(duplicate(*descriptor));
        if (!copies.back()) {
            error = std::strerror(errno);
            return std::nullopt;
        }
    }
    return copies;
}

void OutputFile::discard() const {
    if (folder_) {
        ::unlinkat(folder_.get(), description_.temporaryName.c_str(), 0);
    }
}

bool OutputFile::renew(std::string& error) {
    if (!folder_) {
        return true;
    }
    discard();
    file_.reset();
    return openTemporary(error);
}

} // namespace zqm::platform
