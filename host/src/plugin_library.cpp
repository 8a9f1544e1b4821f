#include "plugin_library.h"

#include "zqmhost/errors.h"

#include <bit>
#include <cerrno>
#include <cstring>
#include <dlfcn.h>
#include <unistd.h>

namespace zqm::host {

namespace {

constexpr const char* kEntryFunction = "REALPluginMain";

} // namespace

void requireFile(const std::string& plugin) {
    if (access(plugin.c_str(), F_OK) == 0) {
        return;
    }
    if (errno == ENOENT) {
        throw LoadError("there is no plugin " + plugin);
    }
    throw LoadError("can't look for the plugin " + plugin + ": " + std::strerror(errno));
}

PluginMain loadPluginMain(const std::string& plugin) {
    requireFile(plugin);
    // A path without a slash would be searched for in the library folders.
    const std::string path = plugin.find('/') == std::string::npos ? "./" + plugin : plugin;
    void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        throw LoadError("the plugin can't be loaded: " + std::string(dlerror()));
    }
    void* main = dlsym(library, kEntryFunction);
    if (main == nullptr) {
        dlclose(library);
        throw LoadError(plugin + " is no plugin: it has no function " + kEntryFunction);
    }
    return std::bit_cast<PluginMain>(main);
}

std::optional<std::string> libraryBeside(const std::string& plugin, std::string_view name) {
    const std::size_t slash = plugin.rfind('/');
    const std::size_t start = slash == std::string::npos ? 0 : slash + 1;
    const std::size_t dot = plugin.find('.', start);
    std::string library = plugin.substr(0, start);
    library += name;
    library += dot == std::string::npos ? "" : plugin.substr(dot);
    return access(library.c_str(), F_OK) == 0 ? std::optional(library) : std::nullopt;
}

} // namespace zqm::host
