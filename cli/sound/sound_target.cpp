#include "cli/sound/sound_target.h"

#include "cli/command_line/failure.h"
#include "cli/system/temporary_folder.h"
#include "cli/system/unnamed_file.h"

#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <optional>
#include <random>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zqm::cli {
namespace {

constexpr int kMostLinks = 40; // as many as the system follows
constexpr int kMostAttempts = 100;
constexpr mode_t kNewFileMode = 0666;
constexpr mode_t kPermissions = 0777;
constexpr std::size_t kCopiedAtOnce = 65536;

std::string folderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "./" : path.substr(0, slash + 1);
}

std::string nameOf(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

// Where a chain of links ends, whether or not there is a file; nothing with errno when it has no end.
std::optional<std::string> followLinks(std::string path) {
    for (int count = 0; count < kMostLinks; ++count) {
        std::array<char, PATH_MAX> target{};
        const ssize_t length = readlink(path.c_str(), target.data(), target.size());
        if (length < 0) {
            return path;
        }
        const std::string link(target.data(), static_cast<std::size_t>(length));
        path = link.starts_with('/') ? link : folderOf(path).append(link);
    }
    errno = ELOOP;
    return std::nullopt;
}

std::string newName() {
    static std::random_device random;
    std::array<char, 40> name{};
    std::snprintf(name.data(), name.size(), ".zqmspeech-%08x%08x", random(), random());
    return name.data();
}

// A file that can be read and written, and that nobody sees.
OpenFile openHidden() {
    const std::string place = temporaryPlace();
    const OpenFile folder(open(place.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    OpenFile file(folder.get() < 0 ? -1 : openUnnamedFile(folder.get()));
    if (file.get() < 0) {
        std::string name = place + "/zqmspeech-XXXXXX";
        file = OpenFile(mkstemp(name.data()));
        if (file.get() < 0) {
            throw Failure("can't make a temporary file in " + place + ": " + std::strerror(errno));
        }
        fcntl(file.get(), F_SETFD, FD_CLOEXEC);
        unlink(name.c_str());
    }
    return file;
}

} // namespace

OpenFile::OpenFile(OpenFile&& other) noexcept : descriptor_(other.release()) {}

OpenFile& OpenFile::operator=(OpenFile&& other) noexcept {
    const OpenFile before(std::exchange(descriptor_, other.release()));
    return *this;
}

OpenFile::~OpenFile() {
    if (descriptor_ >= 0) {
        close(descriptor_);
    }
}

int OpenFile::release() {
    return std::exchange(descriptor_, -1);
}

SoundTarget::SoundTarget(const std::string& path) : name_(path == "-" ? "standard output" : path) {
    if (path == "-") {
        receiver_ = OpenFile(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
        if (receiver_.get() < 0) {
            fail(errno);
        }
        file_ = openHidden();
        return;
    }
    struct stat status {};
    const bool isPresent = stat(path.c_str(), &status) == 0;
    if (!isPresent && errno != ENOENT) {
        fail(errno);
    }
    if (isPresent && !S_ISREG(status.st_mode)) {
        openInPlace(path);
    } else if (const auto target = followLinks(path)) {
        openBeside(*target, isPresent, status.st_mode & kPermissions);
    } else {
        fail(errno);
    }
}

SoundTarget::~SoundTarget() {
    if (!temporaryName_.empty()) {
        unlinkat(folder_.get(), temporaryName_.c_str(), 0);
    }
}

// Without O_NONBLOCK a pipe that nobody reads would be waited for.
void SoundTarget::openInPlace(const std::string& path) {
    receiver_ = OpenFile(open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
    if (receiver_.get() < 0) {
        fail(errno);
    }
    file_ = openHidden();
}

void SoundTarget::openBeside(const std::string& path, bool isPresent, unsigned int mode) {
    finalName_ = nameOf(path);
    if (finalName_.size() > NAME_MAX) {
        fail(ENAMETOOLONG);
    }
    if (finalName_.empty() || finalName_ == "." || finalName_ == "..") {
        fail(EISDIR);
    }
    // Replacing a file needs no permission to write to it; that it may not be written is respected all the
    // same.
    if (isPresent && faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0) {
        fail(errno);
    }
    folder_ = OpenFile(open(folderOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder_.get() < 0) {
        fail(errno);
    }
    file_ = OpenFile(openUnnamedFile(folder_.get()));
    for (int attempt = 0; file_.get() < 0 && attempt < kMostAttempts; ++attempt) {
        const std::string name = newName();
        file_ = OpenFile(
            openat(folder_.get(), name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, kNewFileMode));
        if (file_.get() >= 0) {
            temporaryName_ = name;
        } else if (errno != EEXIST) {
            break;
        }
    }
    if (file_.get() < 0) {
        fail(errno);
    }
    if (isPresent) {
        fchmod(file_.get(), static_cast<mode_t>(mode));
    }
}

std::string SoundTarget::fileName() const {
    return receiver_.get() < 0 ? name_ : temporaryPlaceName();
}

void SoundTarget::putInPlace() {
    if (receiver_.get() >= 0) {
        copy();
        return;
    }
    if (temporaryName_.empty()) {
        std::string name = newName();
        if (!nameFile(file_.get(), folder_.get(), name)) {
            fail(errno);
        }
        temporaryName_ = std::move(name);
    }
    if (close(file_.release()) != 0 ||
        renameat(folder_.get(), temporaryName_.c_str(), folder_.get(), finalName_.c_str()) != 0) {
        fail(errno);
    }
    temporaryName_.clear();
}

// A signal does not end it: then too it is to be whole.
void SoundTarget::copy() {
    std::vector<char> bytes(kCopiedAtOnce);
    off_t place = 0;
    for (;;) {
        const ssize_t count = pread(file_.get(), bytes.data(), bytes.size(), place);
        if (count == 0) {
            break;
        }
        if (count < 0) {
            fail(errno);
        }
        const ssize_t written = write(receiver_.get(), bytes.data(), static_cast<std::size_t>(count));
        if (written >= 0) {
            place += written;
        } else if (errno == EAGAIN) {
            pollfd room{receiver_.get(), POLLOUT, 0};
            poll(&room, 1, -1);
        } else if (errno != EINTR) {
            fail(errno);
        }
    }
    if (close(receiver_.release()) != 0) {
        fail(errno);
    }
}

void SoundTarget::fail(int error) const {
    throw Failure("the speech can't be written: " + name_ + ": " + std::strerror(error));
}

} // namespace zqm::cli
