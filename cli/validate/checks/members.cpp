#include "cli/validate/checks/checks.h"
#include "cli/validate/checks/host_reports.h"
#include "cli/validate/checks/host_versions.h"
#include "cli/validate/hosted_plugin.h"

namespace zqm::cli {

void checkMembers(const Subject& subject, Findings& findings) {
    tryWithEachVersion(subject, findings, [](const HostVersion& host, const Subject& there, Findings& found) {
        HostedPlugin(there, found, {.version = host.version}).live();
    });
}

void checkUnconstructed(const Subject& subject, Findings& findings) {
    for (const bool extreme : {false, true}) {
        tryApart(subject, findings, extreme ? "extreme arguments" : "ordinary arguments",
                 [&](const Subject& there, Findings& found) {
                     HostedPlugin plugin(there, found);
                     plugin.live({.constructed = false, .extreme = extreme});
                     addReports(plugin.runtime(), found);
                 });
    }
}

void checkArguments(const Subject& subject, Findings& findings) {
    tryApart(subject, findings, "", [](const Subject& there, Findings& found) {
        HostedPlugin plugin(there, found);
        plugin.live({.extreme = true});
        addReports(plugin.runtime(), found);
    });
}

} // namespace zqm::cli
