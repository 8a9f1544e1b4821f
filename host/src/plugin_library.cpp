#include "plugin_library.h"

#include "zqmhost/errors.h"

#include <bit>
#include <dlfcn.h>
#include <system_error>

namespace zqm::host {

namespace {

constexpr const char* kEntryFunction = "REALPluginMain";

} // namespace

PluginMain loadPluginMain(const std::filesystem::path& plugin) {
    std::error_code error;
    if (!std::filesystem::exists(plugin, error)) {
        throw LoadError("there is no plugin " + plugin.string());
    }
    // A path without a slash would be searched for in the library folders.
    void* library = dlopen(std::filesystem::absolute(plugin).c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        throw LoadError("the plugin can't be loaded: " + std::string(dlerror()));
    }
    void* main = dlsym(library, kEntryFunction);
    if (main == nullptr) {
        dlclose(library);
        throw LoadError(plugin.string() + " is no plugin: it has no function " + kEntryFunction);
    }
    return std::bit_cast<PluginMain>(main);
}

} // namespace zqm::host
