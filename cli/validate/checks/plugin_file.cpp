#include "cli/validate/checks/plugin_file.h"

#include "cli/command_line/failure.h"

#include <bit>
#include <dlfcn.h>

namespace zqm::cli {

void* openPlugin(const std::string& library) {
    // A path without a slash would be searched for in the library folders.
    const std::string path = library.find('/') == std::string::npos ? "./" + library : library;
    void* opened = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (opened == nullptr) {
        throw Failure(dlerror()); // NOLINT(concurrency-mt-unsafe): one thread
    }
    return opened;
}

PluginMain entryFunctionOf(void* library) {
    void* function = dlsym(library, kEntryFunction);
    if (function == nullptr) {
        throw Failure(std::string("it has no function ") + kEntryFunction);
    }
    return std::bit_cast<PluginMain>(function);
}

} // namespace zqm::cli
