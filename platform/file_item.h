// Existing files and folders as the File Manager sees them: each has one path, a number, a name and a volume.

#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace zqm::platform {

// Whether a link as the last component of a path means the item that it leads to, or itself.
enum class LastLink : bool { IsFollowed, IsTheItem };

enum class FileError { None, NotFound, NameTooLong, PathTooLong, NotPermitted, Failed };

struct FileItem {
    std::string path; // absolute, without links on the way, "." or ".."; no slash at its end but that of "/"
    bool isFolder = false;
    bool isVolumeRoot = false; // "/", and every folder where a file system is mounted
    std::uint32_t nodeId = 0;  // 2 for the root of a volume
};

// Every path that is looked up comes through here, so that all find the same item by the same name: exactly,
// or else in another form of the same letters. A path that is not absolute begins at the working directory.
// Slashes at its end are no part of the name.
FileError findItem(const std::string& path, LastLink lastLink, FileItem& item);

// Looks at a path that findItem found. It may be gone since.
FileError examineItem(const std::string& path, FileItem& item);

// Of a path that findItem found; "/" is its own name and folder.
std::string nameOfItem(const std::string& path);
std::string folderOfItem(const std::string& path);

} // namespace zqm::platform
