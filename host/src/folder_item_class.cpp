// Files and folders, by the members of their class and by entry points.

#include "builtin_classes.h"
#include "builtin_function.h"
#include "entry_point_types.h"
#include "file_reference.h"
#include "folder_item_content.h"
#include "offered_entry_points.h"

#include <algorithm>
#include <dirent.h>
#include <sys/stat.h>

namespace zqm::host {

namespace {

// ---- members

std::vector<std::string> namesIn(const std::string& folder) {
    std::vector<std::string> names;
    DIR* listing = opendir(folder.c_str());
    if (listing == nullptr) {
        return names;
    }
    while (const dirent* entry = readdir(listing)) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..") {
            names.emplace_back(name);
        }
    }
    closedir(listing);
    std::ranges::sort(names);
    return names;
}

// Counted from 1.
REALobject trueItem(Core& core, FolderItemContent& folder, std::int64_t index) {
    const auto names = namesIn(folder.path);
    if (index < 1 || static_cast<std::size_t>(index) > names.size()) {
        core.raise("OutOfBoundsException", folder.path + " has no item " + std::to_string(index));
        return nullptr;
    }
    const std::string path = folder.path + '/' + names[static_cast<std::size_t>(index) - 1];
    return core.makeObject(kFolderItemClass, std::make_unique<FolderItemContent>(path)).release();
}

std::unique_ptr<ObjectContent> makeContent() {
    return std::make_unique<FolderItemContent>();
}

// ---- entry points

void badArgument(Core& core, const char* where, const char* what) {
    core.reports().add(Report::Kind::BadArgument, std::string(where) + ": " + what);
}

bool isFolder(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool toReference(Core& core, REALobject object, FSRef* out, HFSUniStr255* outName) {
    constexpr const char* kWhere = entry::REALFSRefFromFolderItem::kName;
    const auto* item = core.findContent<FolderItemContent>(object, kWhere);
    if (item == nullptr) {
        return false;
    }
    if (out == nullptr) {
        badArgument(core, kWhere, "no place for the reference");
        return false;
    }
    if (const auto reference = referenceTo(item->path)) {
        *out = *reference;
        if (outName != nullptr) {
            *outName = {};
        }
        return true;
    }
    if (outName == nullptr || item->path.empty() || item->exists()) {
        return false;
    }
    const auto folder = isFolder(item->folder()) ? referenceTo(item->folder()) : std::nullopt;
    const auto name = fileNameOf(item->name());
    if (!folder || !name) {
        return false;
    }
    *out = *folder;
    *outName = *name;
    return true;
}

REALobject fromParent(Core& core, const FSRef* parent, const HFSUniStr255* name) {
    constexpr const char* kWhere = entry::REALFolderItemFromParentFSRef::kName;
    if (parent == nullptr || name == nullptr) {
        badArgument(core, kWhere, parent == nullptr ? "no folder" : "no name");
        return nullptr;
    }
    const auto folder = pathOf(*parent);
    if (!folder) {
        return nullptr;
    }
    const auto text = textOf(*name);
    if (!text) {
        badArgument(core, kWhere, "a name that no item can have");
        return nullptr;
    }
    const std::string path = (*folder == "/" ? "" : *folder) + '/' + *text;
    return core.makeObject(kFolderItemClass, std::make_unique<FolderItemContent>(path)).release();
}

} // namespace

std::vector<BuiltinClass> folderItemClasses() {
    return {
        {.name = kFolderItemClass,
         .methods = {{.declaration = "TrueItem(Index as Integer) as FolderItem",
                      .function = memberFunction<"FolderItem.TrueItem", trueItem>()}},
         .makeContent = makeContent},
    };
}

std::vector<EntryPoints::Entry> folderItemEntryPoints() {
    return {
        offer<entry::REALFSRefFromFolderItem, toReference>(),
        offer<entry::REALFolderItemFromParentFSRef, fromParent>(),
    };
}

} // namespace zqm::host
