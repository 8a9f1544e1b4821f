#include "cli/validate/checks/checks.h"

#include <dlfcn.h>
#include <string>

namespace zqm::cli {

// Symbols that are missing would otherwise end the host when they are first used.
void checkLoading(const Subject& subject, Findings& findings) {
    // A path without a slash would be searched for in the library folders.
    const std::string& library = subject.library;
    const std::string path = library.find('/') == std::string::npos ? "./" + library : library;
    if (dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL) == nullptr) {
        const char* error = dlerror(); // NOLINT(concurrency-mt-unsafe): one thread
        findings.fail(error);
    }
}

} // namespace zqm::cli
