#include "cli/validate/checks/checks.h"
#include "cli/validate/checks/host_reports.h"
#include "cli/validate/checks/host_versions.h"
#include "cli/validate/hosted_plugin.h"

#include <string>

namespace zqm::cli {
namespace {

constexpr std::uint64_t kLives = 2;

struct Kind {
    const char* name;
    host::Ledger::Count host::Ledger::*count;
};
constexpr Kind kKinds[] = {
    {"objects", &host::Ledger::objects},
    {"strings", &host::Ledger::strings},
    {"texts", &host::Ledger::texts},
    {"string data", &host::Ledger::stringData},
};

void tellDifference(Findings& findings, std::uint64_t life, const host::Ledger& before,
                    const host::Ledger& after) {
    for (const Kind& kind : kKinds) {
        const host::Ledger::Count& was = before.*kind.count;
        const host::Ledger::Count& is = after.*kind.count;
        if (is != was) {
            findings.fail("life " + std::to_string(life) + " left " +
                          std::to_string(is.handles - was.handles) + " " + kind.name + " and " +
                          std::to_string(is.locks - was.locks) + " locks on them");
        }
    }
}

void checkWith(const HostVersion& host, const Subject& subject, Findings& findings) {
    HostedPlugin plugin(subject, findings, {.version = host.version});
    plugin.live();
    for (std::uint64_t life = 1; life <= kLives; ++life) {
        const host::Ledger before = plugin.runtime().ledger();
        plugin.live({}, life);
        findings.at("looking at the handles");
        tellDifference(findings, life, before, plugin.runtime().ledger());
    }
    addReports(plugin.runtime(), findings);
}

} // namespace

// What a plugin makes once, at its first use, is not left behind by a life.
void checkHandles(const Subject& subject, Findings& findings) {
    tryWithEachVersion(subject, findings, checkWith);
}

} // namespace zqm::cli
