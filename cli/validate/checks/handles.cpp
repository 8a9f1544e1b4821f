#include "cli/validate/checks/checks.h"
#include "cli/validate/hosted_plugin.h"

#include <string>

namespace zqm::cli {
namespace {

constexpr std::uint64_t kLives = 4;

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

} // namespace

// What a plugin makes once, at its first use, is not left behind by a life.
void checkHandles(const Subject& subject, Findings& findings) {
    tryApart(subject, findings, "", [](const Subject& there, Findings& found) {
        HostedPlugin plugin(there, found);
        plugin.live();
        for (std::uint64_t life = 1; life <= kLives; ++life) {
            const host::Ledger before = plugin.runtime().ledger();
            plugin.live({}, life);
            found.at("looking at the handles");
            tellDifference(found, life, before, plugin.runtime().ledger());
        }
        plugin.tellReports();
    });
}

} // namespace zqm::cli
