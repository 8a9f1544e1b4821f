#include "cli/validate/checks/left_handles.h"

#include <zqmhost/zqmhost.h>

#include <string>

namespace zqm::cli {
namespace {

constexpr host::Seconds kTurn{0.02};
constexpr int kQuietTurns = 10;
constexpr int kMostTurns = 250;

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

// A plugin may give back from the run loop what it held, some time later.
host::Ledger settledLedger(HostedPlugin& plugin, const host::Ledger& before, Findings& findings) {
    host::Ledger ledger = plugin.runtime().ledger();
    for (int quiet = 0, turn = 0; ledger != before && quiet < kQuietTurns && turn < kMostTurns; ++turn) {
        findings.at("looking at the handles"); // each turn takes little of a step's time, not all of them
        plugin.runtime().runFor(kTurn);
        const host::Ledger now = plugin.runtime().ledger();
        quiet = now == ledger ? quiet + 1 : 0;
        ledger = now;
    }
    return ledger;
}

} // namespace

void checkLedger(HostedPlugin& plugin, LifePlan plan, std::uint64_t lives, Findings& findings) {
    for (std::uint64_t life = 1; life <= lives; ++life) {
        const host::Ledger before = plugin.runtime().ledger();
        plugin.live(plan, life);
        const host::Ledger once = settledLedger(plugin, before, findings);
        plugin.live(plan, life);
        tellDifference(findings, life, once, settledLedger(plugin, once, findings));
    }
}

} // namespace zqm::cli
