#include "cli/system/process_usage.h"
#include "cli/validate/checks/checks.h"
#include "cli/validate/hosted_plugin.h"

#include <string>

namespace zqm::cli {
namespace {

constexpr std::uint64_t kLives = 12;
constexpr host::Seconds kTurn{0.02};
constexpr int kQuietTurns = 25;
constexpr int kMostTurns = 250;

struct Measure {
    const char* name;
    std::int64_t ProcessUsage::*amount;
    std::int64_t most; // for each life; less may be a cache that is still filling
};
constexpr Measure kMeasures[] = {
    {"bytes of memory", &ProcessUsage::heap, 1024},
    {"file descriptors", &ProcessUsage::descriptors, 0},
    {"processes", &ProcessUsage::processes, 0},
};

std::string change(std::int64_t amount) {
    return amount > 0   ? std::to_string(amount) + " more"
           : amount < 0 ? std::to_string(-amount) + " less"
                        : "no more";
}

// The plugin's processes need a moment to end, and the run loop to be told of it.
ProcessUsage settledUsage(HostedPlugin& plugin, const ProcessUsage& before, Findings& findings) {
    ProcessUsage usage = processUsage();
    for (int quiet = 0, turn = 0; quiet < kQuietTurns && turn < kMostTurns; ++turn) {
        if (usage.descriptors <= before.descriptors && usage.processes <= before.processes) {
            break;
        }
        findings.at("looking at what is in use"); // each turn takes little of a step's time, not all of them
        plugin.runtime().runFor(kTurn);
        const ProcessUsage now = processUsage();
        quiet = now.descriptors == usage.descriptors && now.processes == usage.processes ? quiet + 1 : 0;
        usage = now;
    }
    return usage;
}

} // namespace

// The same lives must need no more the second and the third time. The first time fills what is filled once,
// in the host too, which keeps room for as many handles as there were ever at once.
void checkGrowth(const Subject& subject, Findings& findings) {
    tryApart(subject, findings, "", [](const Subject& there, Findings& found) {
        HostedPlugin plugin(there, found);
        const auto liveOften = [&] {
            for (std::uint64_t life = 0; life < kLives; ++life) {
                plugin.runtime().entryPoints().resetCounts(); // the host would note each
                plugin.live({}, life);
            }
        };
        liveOften();
        const ProcessUsage first = settledUsage(plugin, {}, found);
        liveOften();
        const ProcessUsage once = settledUsage(plugin, first, found);
        liveOften();
        const ProcessUsage twice = settledUsage(plugin, once, found);
        for (const Measure& measure : kMeasures) {
            const std::int64_t before = once.*measure.amount - first.*measure.amount;
            const std::int64_t after = twice.*measure.amount - once.*measure.amount;
            const auto most = measure.most * static_cast<std::int64_t>(kLives);
            found.add({before > most && after > most ? Verdict::Fail : Verdict::Pass,
                       std::string(measure.name) + " in use: " + change(before) + " after " +
                           std::to_string(kLives) + " lives, " + change(after) + " after as many again"});
        }
    });
}

} // namespace zqm::cli
