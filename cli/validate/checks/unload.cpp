#include "cli/validate/checks/checks.h"
#include "cli/validate/hosted_plugin.h"

#include <zqmhost/zqmhost.h>

#include <bit>
#include <dlfcn.h>

namespace zqm::cli {

// No host unloads a plugin that it uses, so whatever happens here is a warning.
void checkUnload(const Subject& subject, Findings& findings) {
    tryApart(
        subject, findings, "",
        [](const Subject& there, Findings& found) {
            void* library = dlopen(there.library.c_str(), RTLD_NOW | RTLD_LOCAL);
            if (library == nullptr) {
                found.warn("it can't be loaded");
                return;
            }
            const auto main = std::bit_cast<void (*)(REALresolver)>(dlsym(library, "REALPluginMain"));
            {
                host::Runtime runtime;
                runtime.start(main);
                PluginLife(runtime, there.seed, {}, [&](const std::string& what) { found.at(what); }).live();
            }
            found.at("unloading it");
            if (dlclose(library) != 0) {
                found.warn(dlerror()); // NOLINT(concurrency-mt-unsafe): one thread
            }
        },
        Verdict::Warning);
}

} // namespace zqm::cli
