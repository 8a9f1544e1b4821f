#include "cli/validate/checks/checks.h"

#include <zqmhost/zqmhost.h>

namespace zqm::cli {

void checkStart(const Subject& subject, Findings& findings) {
    host::Runtime runtime;
    runtime.load(subject.library);
    if (!runtime.announcedRevision()) {
        findings.fail("it announced no revision of the plugin interface");
    }
}

} // namespace zqm::cli
