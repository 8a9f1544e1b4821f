#include "cli/validate/checks/checks.h"
#include "cli/validate/checks/plugin_file.h"
#include "cli/validate/hosted_plugin.h"

#include <zqmhost/zqmhost.h>

#include <dlfcn.h>

namespace zqm::cli {

// No host unloads a plugin that it uses, so whatever happens here is a warning.
void checkUnload(const Subject& subject, Findings& findings) {
    tryApart(
        subject, findings, "",
        [](const Subject& there, Findings& found) {
            void* library = openPlugin(there.library);
            {
                host::Runtime runtime;
                runtime.start(entryFunctionOf(library));
                PluginLife(runtime, there.seed, there.folder, {}, [&](const std::string& what) {
                    found.at(what);
                }).live();
            }
            found.at("unloading it");
            if (dlclose(library) != 0) {
                found.warn(dlerror()); // NOLINT(concurrency-mt-unsafe): one thread
            }
        },
        Verdict::Warning);
}

} // namespace zqm::cli
