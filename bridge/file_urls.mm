#include "bridge/file_urls.h"

#include "bridge/owned_cf.h"
#include "plugin/host_handles.h"
#include "plugin/host_strings.h"

#include <CoreServices/CoreServices.h>
#import <Foundation/Foundation.h>
#include <algorithm>
#include <array>
#include <cstring>
#include <optional>

namespace {

constexpr CFIndex kLongestName = 255;   // UTF-16 units
constexpr UInt32 kNodeOfVolumeRoot = 2; // has no parent
constexpr std::int64_t kNativePath = 3; // the host's mode for paths of the system's own form

// Asked for once, whatever the answer.
// NOLINTBEGIN(readability-identifier-naming): the family's names for them
REALobject (*GetTrueFolderItem)(REALstring path, std::int64_t pathMode) = nullptr;
bool doneGetTrueFolderItem = false;
// NOLINTEND(readability-identifier-naming)

struct ParentAndName {
    FSRef parent{};
    HFSUniStr255 name{};
};

// Nothing for the root of a volume.
std::optional<ParentAndName> parentAndName(const FSRef& existing) {
    ParentAndName found;
    FSCatalogInfo info{};
    if (FSGetCatalogInfo(&existing, kFSCatInfoNodeID, &info, nullptr, nullptr, &found.parent) != noErr) {
        return std::nullopt;
    }
    if (info.nodeID == kNodeOfVolumeRoot) {
        found.parent = {};
    }
    if (FSGetCatalogInfo(&existing, kFSCatInfoNone, nullptr, &found.name, nullptr, nullptr) != noErr ||
        FSGetCatalogInfo(&found.parent, kFSCatInfoNone, nullptr, nullptr, nullptr, nullptr) != noErr) {
        return std::nullopt;
    }
    return found;
}

REALobject itemOfPath(const FSRef& existing) {
    std::array<UInt8, 4096> path{};
    if (FSRefMakePath(&existing, path.data(), path.size()) != noErr) {
        return nullptr;
    }
    const auto length = static_cast<std::int64_t>(std::strlen(reinterpret_cast<const char*>(path.data())));
    const OwnedString hostPath{REALBuildUnicodeString(path.data(), length, kCFStringEncodingUTF8)};
    if (!doneGetTrueFolderItem) {
        doneGetTrueFolderItem = true;
        GetTrueFolderItem = reinterpret_cast<decltype(GetTrueFolderItem)>(REALLoadFrameworkMethod(
            nullptr, "GetTrueFolderItem(path As String, pathMode As Integer) As FolderItem"));
    }
    return GetTrueFolderItem != nullptr ? GetTrueFolderItem(hostPath.get(), kNativePath) : nullptr;
}

// The decomposed form, which file systems of the platform keep names in; the string itself when that can't be
// had.
OwnedCF<CFStringRef> decomposed(OwnedCF<CFStringRef> string) {
    CFMutableStringRef copy = CFStringCreateMutableCopy(nullptr, 0, string.get());
    if (copy == nullptr) {
        return string;
    }
    CFStringNormalize(copy, kCFStringNormalizationFormD);
    return OwnedCF<CFStringRef>{copy};
}

REALobject itemToBeMade(CFURLRef url) {
    const OwnedCF<CFURLRef> folder{CFURLCreateCopyDeletingLastPathComponent(nullptr, url)};
    FSRef parent{};
    if (folder.get() == nullptr || !CFURLGetFSRef(folder.get(), &parent)) {
        return nullptr;
    }
    OwnedCF<CFStringRef> component{CFURLCopyLastPathComponent(url)};
    if (component.get() == nullptr) {
        return nullptr;
    }
    const OwnedCF<CFStringRef> text = decomposed(std::move(component));
    HFSUniStr255 name{};
    const CFIndex length = std::min(CFStringGetLength(text.get()), kLongestName);
    CFStringGetCharacters(text.get(), CFRangeMake(0, length), name.unicode);
    name.length = static_cast<UInt16>(length);
    return REALFolderItemFromParentFSRef(&parent, &name);
}

// What the host keeps apart for an item that doesn't exist yet: its folder and its name.
OwnedCF<CFURLRef> urlInFolder(const FSRef& folder, const HFSUniStr255& name) {
    OwnedCF<CFURLRef> url{CFURLCreateFromFSRef(nullptr, &folder)};
    if (url.get() == nullptr || name.length == 0) {
        return url;
    }
    const OwnedCF<CFStringRef> text = decomposed(OwnedCF<CFStringRef>{
        CFStringCreateWithCharacters(nullptr, name.unicode, std::min<CFIndex>(name.length, kLongestName))});
    return OwnedCF<CFURLRef>{CFURLCreateCopyAppendingPathComponent(nullptr, url.get(), text.get(), false)};
}

OwnedCF<CFURLRef> urlOf(REALobject item) {
    FSRef reference{};
    if (REALFSRefFromFolderItem(item, &reference, nullptr)) {
        if (CFURLRef url = CFURLCreateFromFSRef(nullptr, &reference)) {
            return OwnedCF<CFURLRef>{url};
        }
    }
    HFSUniStr255 name{};
    if (!REALFSRefFromFolderItem(item, &reference, &name)) {
        return {};
    }
    return urlInFolder(reference, name);
}

} // namespace

REALobject NSURLRBFile(CFURLRef url) {
    if (url == nullptr) {
        return nullptr;
    }
    FSRef existing{};
    if (!CFURLGetFSRef(url, &existing)) {
        return itemToBeMade(url);
    }
    const auto found = parentAndName(existing);
    return found ? REALFolderItemFromParentFSRef(&found->parent, &found->name) : itemOfPath(existing);
}

NSURL* NewNSURLfile(REALobject item) {
    if (item == nullptr) {
        return nil;
    }
    const void* url = urlOf(item).release();
    return [reinterpret_cast<NSURL*>(const_cast<void*>(url)) autorelease];
}
