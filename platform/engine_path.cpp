#include "platform/engine_path.h"

#include <dlfcn.h>
#include <filesystem>
#include <unistd.h>

namespace zqm::platform {
namespace {

constexpr const char* kEngineName = "zqmspeech-engine";
constexpr const char* kInstalledFolder = ZQM_ENGINE_FOLDER; // seen from the library's

std::string findLibraryFolder() {
    Dl_info info{};
    if (::dladdr(reinterpret_cast<const void*>(&enginePath), &info) == 0 || info.dli_fname == nullptr) {
        return {};
    }
    std::error_code error;
    return std::filesystem::absolute(info.dli_fname, error).parent_path();
}

// Found as the library is loaded: a relative name means nothing once the host has changed its folder.
const std::string libraryFolder = findLibraryFolder();

} // namespace

std::string enginePath() {
    if (libraryFolder.empty()) {
        return {};
    }
    for (const std::string& folder : {libraryFolder, libraryFolder + "/" + kInstalledFolder}) {
        std::string path = folder + "/" + kEngineName;
        if (::access(path.c_str(), X_OK) == 0) {
            return path;
        }
    }
    return {};
}

} // namespace zqm::platform
