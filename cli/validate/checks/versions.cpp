#include "cli/validate/checks/checks.h"
#include "cli/validate/checks/host_reports.h"
#include "cli/validate/checks/host_versions.h"
#include "cli/validate/checks/objects.h"

#include <zqmhost/zqmhost.h>

#include <string>

namespace zqm::cli {
namespace {

// In a process of its own: what a plugin has learnt of its host it never forgets.
void checkVersion(const Subject& subject, const HostVersion& host, Findings& findings) {
    host::Runtime runtime({.version = host.version});
    runtime.load(subject.library);
    const std::int32_t announced = runtime.announcedRevision().value_or(host.revision);
    if (announced > host.revision) {
        findings.fail("it announced revision " + std::to_string(announced) + " to a host that knows " +
                      std::to_string(host.revision));
    } else if (announced < host.revision) {
        findings.warn("it announced revision " + std::to_string(announced) + " to a host that knows " +
                      std::to_string(host.revision));
    }
    const host::Ledger before = runtime.ledger();
    makeOneOfEach(runtime, findings);
    if (runtime.ledger() != before) {
        findings.fail("objects that were made and dropped left something behind");
    }
    addReports(runtime, findings);
}

} // namespace

void checkVersions(const Subject& subject, Findings& findings) {
    for (const HostVersion& host : hostVersions()) {
        findings.apart(nameOf(host), [&](Findings& inner) { checkVersion(subject, host, inner); });
    }
}

} // namespace zqm::cli
