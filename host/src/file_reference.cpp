#include "file_reference.h"

#include "text_conversion.h"
#include "zqmhost/string.h"

#include <CoreFoundation/CoreFoundation.h>
#include <array>
#include <climits>
#include <cstring>
#include <iterator>

namespace zqm::host {

std::optional<FSRef> referenceTo(const std::string& path) {
    CFURLRef url = CFURLCreateFromFileSystemRepresentation(kCFAllocatorDefault,
                                                           reinterpret_cast<const UInt8*>(path.data()),
                                                           static_cast<CFIndex>(path.size()), false);
    if (url == nullptr) {
        return std::nullopt;
    }
    FSRef reference{};
    const bool found = CFURLGetFSRef(url, &reference) != 0;
    CFRelease(url);
    return found ? std::optional(reference) : std::nullopt;
}

std::optional<std::string> pathOf(const FSRef& reference) {
    std::array<UInt8, PATH_MAX> path{};
    if (FSRefMakePath(&reference, path.data(), static_cast<UInt32>(path.size())) != noErr) {
        return std::nullopt;
    }
    return reinterpret_cast<const char*>(path.data());
}

std::optional<HFSUniStr255> fileNameOf(std::string_view name) {
    const auto units = convertText(name, encoding::kUtf8, encoding::kUtf16);
    HFSUniStr255 result{};
    if (!units || units->size() > sizeof(result.unicode)) {
        return std::nullopt;
    }
    result.length = static_cast<UInt16>(units->size() / sizeof(UniChar));
    std::memcpy(result.unicode, units->data(), units->size());
    return result;
}

std::optional<std::string> textOf(const HFSUniStr255& name) {
    if (name.length == 0 || name.length > std::size(name.unicode)) {
        return std::nullopt;
    }
    const std::string_view units(reinterpret_cast<const char*>(name.unicode), name.length * sizeof(UniChar));
    auto text = convertText(units, encoding::kUtf16, encoding::kUtf8);
    const bool isName = text && text->find('/') == std::string::npos && *text != "." && *text != "..";
    return isName ? std::move(text) : std::nullopt;
}

} // namespace zqm::host
