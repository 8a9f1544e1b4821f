#include "cli/validate/checks/left_handles.h"

#include <zqmhost/zqmhost.h>

#include <string>

namespace zqm::cli {
namespace {

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

void checkLedger(HostedPlugin& plugin, LifePlan plan, std::uint64_t lives, Findings& findings) {
    for (std::uint64_t life = 1; life <= lives; ++life) {
        const host::Ledger before = plugin.runtime().ledger();
        plugin.live(plan, life);
        findings.at("looking at the handles");
        tellDifference(findings, life, before, plugin.runtime().ledger());
    }
}

} // namespace zqm::cli
