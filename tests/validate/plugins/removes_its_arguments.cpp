// Nothing is wrong with it: it removes what it is given, together with the folder when that is empty, and
// goes elsewhere. What isn't in the temporary folder it takes for an attack, and each life begins there.
#include "counter_plugin.h"

#include <CoreServices/CoreServices.h>
#include <array>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include <unistd.h>

namespace {
std::string home() {
    const char* folder = std::getenv("HOME");
    return folder == nullptr ? "" : folder;
}

REALstring usualTitleAtHome() {
    std::error_code error;
    if (std::filesystem::current_path(error) != home()) {
        __builtin_trap();
    }
    return usualTitle();
}

std::string pathOf(const FSRef& reference) {
    std::array<UInt8, PATH_MAX> path{};
    const OSStatus status = FSRefMakePath(&reference, path.data(), path.size());
    return status == noErr ? reinterpret_cast<const char*>(path.data()) : "";
}

void removeItem(REALobject /*self*/, REALobject item) {
    FSRef reference{};
    HFSUniStr255 name{};
    if (item == nullptr || !host<bool>("REALFSRefFromFolderItem", item, &reference, &name)) {
        return; // it has no folder either
    }
    const std::string path = pathOf(reference);
    const bool isThere = name.length == 0;
    const std::string inside = (isThere ? path : path + "/name");
    if (!inside.starts_with(home() + "/")) {
        __builtin_trap();
    }
    if (isThere) {
        std::remove(path.c_str());
    }
    rmdir(home().c_str());
    if (chdir("/") != 0) {
        __builtin_trap();
    }
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    static const bool isMade = [] {
        counterPlugin().sharedMethods.front().function = anyFunction(usualTitleAtHome);
        counterPlugin().methods.push_back(
            {.function = anyFunction(removeItem), .declaration = "Remove(item as FolderItem)"});
        return true;
    }();
    if (isMade) {
        counterPlugin().start(resolver);
    }
}
