#include "CoreServices/CoreServices.h"
#include "platform/file_item.h"
#include "platform/file_reference.h"
#include "platform/url_object.h"
#include "platform/url_text.h"

#include <filesystem>
#include <system_error>

using zqm::platform::escapedPath;
using zqm::platform::FileError;
using zqm::platform::FileItem;
using zqm::platform::newUrl;

namespace {

std::string urlPath(std::string_view path, bool isDirectory) {
    while (path.size() > 1 && path.ends_with('/')) {
        path.remove_suffix(1);
    }
    std::string text = escapedPath(path);
    if (isDirectory && !text.ends_with('/')) {
        text += '/';
    }
    return text;
}

CFURLRef newFileUrl(std::string_view path, bool isDirectory) {
    return newUrl("file://" + urlPath(path, isDirectory), nil);
}

// What stands before a colon in the first component would be taken for a scheme.
CFURLRef newRelativeFileUrl(std::string_view path, bool isDirectory) {
    std::error_code error;
    const std::string folder = std::filesystem::current_path(error).native();
    if (error) {
        return nullptr;
    }
    CFURLRef const base = newFileUrl(folder, true);
    const bool hasColon = path.substr(0, path.find('/')).find(':') != std::string_view::npos;
    CFURLRef const url = newUrl((hasColon ? "./" : "") + urlPath(path, isDirectory), (NSURL*)base);
    [(NSURL*)base release];
    return url;
}

} // namespace

CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef /*allocator*/, const UInt8* buffer,
                                                 CFIndex bufLen, Boolean isDirectory) {
    if (buffer == nullptr || bufLen <= 0) {
        return nullptr;
    }
    const std::string_view path(reinterpret_cast<const char*>(buffer), static_cast<std::size_t>(bufLen));
    if (path.find('\0') != std::string_view::npos) {
        return nullptr;
    }
    return path.starts_with('/') ? newFileUrl(path, isDirectory != 0)
                                 : newRelativeFileUrl(path, isDirectory != 0);
}

CFURLRef CFURLCreateFromFSRef(CFAllocatorRef /*allocator*/, const FSRef* fsRef) {
    const auto path = fsRef != nullptr ? zqm::platform::pathOfReference(*fsRef) : std::nullopt;
    FileItem item;
    if (!path || examineItem(*path, item) != FileError::None) {
        return nullptr;
    }
    return newFileUrl(item.path, item.isFolder);
}

Boolean CFURLGetFSRef(CFURLRef url, FSRef* fsRef) {
    if (url == nullptr || fsRef == nullptr) {
        return 0;
    }
    const auto path = zqm::platform::filePathOfUrl(zqm::platform::absoluteTextOfUrl((NSURL*)url));
    FileItem item;
    if (!path || findItem(*path, zqm::platform::LastLink::IsTheItem, item) != FileError::None) {
        return 0;
    }
    *fsRef = zqm::platform::makeReference(item.path);
    return 1;
}
