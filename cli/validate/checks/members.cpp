#include "cli/validate/checks/checks.h"
#include "cli/validate/checks/host_reports.h"
#include "cli/validate/checks/host_versions.h"
#include "cli/validate/checks/left_handles.h"
#include "cli/validate/hosted_plugin.h"

#include <string>

namespace zqm::cli {
namespace {

void checkPlan(const Subject& subject, LifePlan plan, Findings& findings) {
    HostedPlugin plugin(subject, findings);
    checkLedger(plugin, plan, 1, findings);
    addReports(plugin.runtime(), findings);
}

} // namespace

void checkMembers(const Subject& subject, Findings& findings) {
    tryWithEachVersion(subject, findings, [](const HostVersion& host, const Subject& there, Findings& found) {
        HostedPlugin plugin(there, found, {.version = host.version});
        for (const std::string& line : plugin.live()) {
            found.warn("it could not be tried: " + line);
        }
    });
}

void checkUnconstructed(const Subject& subject, Findings& findings) {
    for (const bool extreme : {false, true}) {
        tryApart(subject, findings, extreme ? "extreme arguments" : "ordinary arguments",
                 [&](const Subject& there, Findings& found) {
                     checkPlan(there, {.constructed = false, .extreme = extreme}, found);
                 });
    }
}

void checkArguments(const Subject& subject, Findings& findings) {
    tryApart(subject, findings, "",
             [](const Subject& there, Findings& found) { checkPlan(there, {.extreme = true}, found); });
}

} // namespace zqm::cli
