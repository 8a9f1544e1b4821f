#include "platform/file_item.h"

#include "platform/file_name.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace zqm::platform {
namespace {

constexpr std::uint32_t kVolumeRootNode = 2;
constexpr std::uint32_t kFirstNode = 16; // those below are the system's own
constexpr int kHalf = 32;

bool hasLongName(const std::string& path) {
    std::size_t begin = 0;
    while (begin < path.size()) {
        const std::size_t end = std::min(path.find('/', begin), path.size());
        if (end - begin > NAME_MAX) {
            return true;
        }
        begin = end + 1;
    }
    return false;
}

FileError errorOf(int number, const std::string& path) {
    switch (number) {
    case ENOENT:
    case ENOTDIR:
    case ELOOP:
        return FileError::NotFound;
    case ENAMETOOLONG:
        return hasLongName(path) ? FileError::NameTooLong : FileError::PathTooLong;
    case EACCES:
        return FileError::NotPermitted;
    default:
        return FileError::Failed;
    }
}

// Nothing, with errno set, where there is no such item.
std::optional<std::string> realPath(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> resolved(::realpath(path.c_str(), nullptr), &std::free);
    return resolved ? std::optional<std::string>(resolved.get()) : std::nullopt;
}

std::string joined(const std::string& folder, const std::string& name) {
    return folder.ends_with('/') ? folder + name : folder + '/' + name;
}

std::string withoutSlashesAtEnd(const std::string& path) {
    const std::size_t last = path.find_last_not_of('/');
    return last == std::string::npos ? path.substr(0, 1) : path.substr(0, last + 1);
}

// The one path of an item, which need not exist where only its folder was looked up.
std::optional<std::string> canonicalPath(const std::string& path, LastLink lastLink) {
    const std::size_t slash = path.rfind('/');
    const std::string name = path.substr(slash + 1); // all of it, if there is no slash
    if (lastLink == LastLink::IsFollowed || name.empty() || name == "." || name == "..") {
        return realPath(path);
    }
    const auto folder = realPath(slash == std::string::npos ? "." : path.substr(0, slash + 1));
    return folder ? std::optional(joined(*folder, name)) : std::nullopt;
}

// Systems that can't tell keep each volume on a device of its own.
bool isMountPoint(const std::string& path, const struct statx& status) {
    if ((status.stx_attributes_mask & STATX_ATTR_MOUNT_ROOT) != 0) {
        return (status.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0;
    }
    struct stat folder {};
    return ::lstat(folderOfItem(path).c_str(), &folder) == 0 &&
           folder.st_dev != makedev(status.stx_dev_major, status.stx_dev_minor);
}

std::uint32_t foldedNode(std::uint64_t number) {
    const auto folded = static_cast<std::uint32_t>(number ^ (number >> kHalf));
    return folded < kFirstNode ? folded + kFirstNode : folded;
}

} // namespace

FileError findItem(const std::string& path, LastLink lastLink, FileItem& item) {
    const std::string named = resolveFileName(withoutSlashesAtEnd(path));
    const auto canonical = canonicalPath(named, lastLink);
    return canonical ? examineItem(*canonical, item) : errorOf(errno, named);
}

FileError examineItem(const std::string& path, FileItem& item) {
    struct statx status {};
    if (::statx(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, STATX_INO | STATX_TYPE,
                &status) != 0) {
        return errorOf(errno, path);
    }
    item.path = path;
    item.isFolder = S_ISDIR(status.stx_mode);
    item.isVolumeRoot = path == "/" || (item.isFolder && isMountPoint(path, status));
    item.nodeId = item.isVolumeRoot ? kVolumeRootNode : foldedNode(status.stx_ino);
    return FileError::None;
}

std::string nameOfItem(const std::string& path) {
    return path == "/" ? path : path.substr(path.rfind('/') + 1);
}

std::string folderOfItem(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == 0 ? "/" : path.substr(0, slash);
}

} // namespace zqm::platform
