#include "CoreServices/CoreServices.h"
#include "platform/file_item.h"
#include "platform/file_reference.h"
#include "platform/unicode_forms.h"

#include <algorithm>
#include <iterator>

using zqm::platform::examineItem;
using zqm::platform::FileError;
using zqm::platform::FileItem;
using zqm::platform::findItem;
using zqm::platform::inForm;
using zqm::platform::LastLink;
using zqm::platform::makeReference;
using zqm::platform::pathOfReference;
using zqm::platform::UnicodeForm;

namespace {

OSErr resultOf(FileError error) {
    switch (error) {
    case FileError::None:
        return noErr;
    case FileError::NotFound:
        return fnfErr;
    case FileError::NameTooLong:
        return bdNamErr;
    case FileError::PathTooLong:
        return pathTooLongErr;
    case FileError::NotPermitted:
        return permErr;
    case FileError::Failed:
        return ioErr;
    }
    return ioErr;
}

OSErr findReferenced(const FSRef* ref, FileItem& item) {
    const auto path = ref != nullptr ? pathOfReference(*ref) : std::nullopt;
    return path ? resultOf(examineItem(*path, item)) : static_cast<OSErr>(paramErr);
}

// Apple's file names are decomposed. A name that gets too long for the record by that stays as it is, which
// always fits: a unit comes of one byte at least.
OSErr writeName(const std::string& name, HFSUniStr255& outName) {
    const auto stored = zqm::platform::utf16Of(name);
    if (!stored) {
        return bdNamErr;
    }
    std::u16string text = inForm(UnicodeForm::Decomposed, *stored);
    if (text.size() > std::size(outName.unicode)) {
        text = *stored;
    }
    if (text.size() > std::size(outName.unicode)) {
        return bdNamErr;
    }
    outName.length = static_cast<UInt16>(text.size());
    std::ranges::copy(text, outName.unicode);
    return noErr;
}

// A volume's root has no parent; what stands for it is accepted nowhere.
FSRef parentOf(const FileItem& item) {
    return item.isVolumeRoot ? FSRef{} : makeReference(zqm::platform::folderOfItem(item.path));
}

} // namespace

OSErr FSGetCatalogInfo(const FSRef* ref, FSCatalogInfoBitmap whichInfo, FSCatalogInfo* catalogInfo,
                       HFSUniStr255* outName, FSSpecPtr /*fsSpec*/, FSRef* parentRef) {
    FileItem item;
    if (const OSErr error = findReferenced(ref, item); error != noErr) {
        return error;
    }
    if (outName != nullptr) {
        if (const OSErr error = writeName(zqm::platform::nameOfItem(item.path), *outName); error != noErr) {
            return error;
        }
    }
    if (catalogInfo != nullptr) {
        *catalogInfo = {};
        catalogInfo->nodeID = (whichInfo & kFSCatInfoNodeID) != 0 ? item.nodeId : 0;
    }
    if (parentRef != nullptr) {
        *parentRef = parentOf(item);
    }
    return noErr;
}

OSStatus FSRefMakePath(const FSRef* ref, UInt8* path, UInt32 pathBufferSize) {
    if (path == nullptr) {
        return paramErr;
    }
    FileItem item;
    if (const OSErr error = findReferenced(ref, item); error != noErr) {
        return error;
    }
    if (item.path.size() >= pathBufferSize) {
        return pathTooLongErr;
    }
    *std::ranges::copy(item.path, path).out = 0;
    return noErr;
}

OSStatus FSPathMakeRef(const UInt8* path, FSRef* ref, Boolean* isDirectory) {
    if (path == nullptr || ref == nullptr) {
        return paramErr;
    }
    FileItem item;
    const FileError error = findItem(reinterpret_cast<const char*>(path), LastLink::IsFollowed, item);
    if (error != FileError::None) {
        return resultOf(error);
    }
    *ref = makeReference(item.path);
    if (isDirectory != nullptr) {
        *isDirectory = item.isFolder ? 1 : 0;
    }
    return noErr;
}
