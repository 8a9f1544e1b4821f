#include "cli/validate/checks/checks.h"
#include "cli/validate/checks/host_reports.h"
#include "cli/validate/checks/host_versions.h"
#include "cli/validate/checks/left_handles.h"
#include "cli/validate/hosted_plugin.h"

namespace zqm::cli {
namespace {

constexpr std::uint64_t kLives = 2;

void checkWith(const HostVersion& host, const Subject& subject, Findings& findings) {
    HostedPlugin plugin(subject, findings, {.version = host.version});
    checkLedger(plugin, {}, kLives, findings);
    addReports(plugin.runtime(), findings);
}

} // namespace

void checkHandles(const Subject& subject, Findings& findings) {
    tryWithEachVersion(subject, findings, checkWith);
}

} // namespace zqm::cli
