#include "cli/validate/checks/checks.h"
#include "cli/validate/hosted_plugin.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace zqm::cli {
namespace {

// A host that can't be told the revision is none.
constexpr std::string_view kRequired = "RegisterPluginVersion";
constexpr std::string_view kRegister = "PluginRegisterClass";
constexpr int kSets = 24;
// A set has each entry point with one of these chances in a hundred.
constexpr std::array kChances{5U, 20U, 50U, 90U};
constexpr std::array kVersions{2011.0, 2012.0, 2013.0, 2015.04, 2016.0, host::kDefaultVersion};
constexpr std::size_t kMostFailures = 6;

std::vector<std::string> refusable() {
    std::vector<std::string> names = host::EntryPointControl::names();
    std::erase(names, kRequired);
    return names;
}

void liveWithout(const Subject& subject, Findings& findings, const host::Options& options) {
    const bool canRegister = std::ranges::find(options.refused, kRegister) == options.refused.end();
    try {
        HostedPlugin(subject, findings, options).live();
    } catch (const host::LoadError& error) {
        if (canRegister) {
            findings.warn(error.what());
        }
    }
}

std::string nameOfVersion(double version) {
    std::array<char, 32> text;
    std::snprintf(text.data(), text.size(), "version %.2f", version);
    return text.data();
}

std::string listOf(const std::vector<std::string>& names) {
    std::string list;
    for (const std::string& name : names) {
        list += (list.empty() ? "" : ", ") + name;
    }
    return list;
}

} // namespace

void checkRefused(const Subject& subject, Findings& findings) {
    for (const std::string& name : refusable()) {
        tryApart(subject, findings, "without " + name, [&](const Subject& there, Findings& found) {
            liveWithout(there, found, {.refused = {name}});
        });
    }
}

void checkRefusedSets(const Subject& subject, Findings& findings) {
    std::mt19937_64 random(subject.seed);
    const std::vector<std::string> names = refusable();
    for (int number = 0; number < kSets; ++number) {
        const unsigned chance = kChances[random() % kChances.size()];
        const double version = kVersions[random() % kVersions.size()];
        std::vector<std::string> refused;
        for (const std::string& name : names) {
            // Most sets leave something to use.
            if (random() % 100 < chance && (name != kRegister || chance >= 90)) {
                refused.push_back(name);
            }
        }
        tryApart(subject, findings,
                 "set " + std::to_string(number + 1) + ", " + nameOfVersion(version) + ", without " +
                     listOf(refused),
                 [&](const Subject& there, Findings& found) {
                     liveWithout(there, found, {.version = version, .refused = refused});
                 });
    }
}

void checkFailingCalls(const Subject& subject, Findings& findings) {
    for (const std::string& name : refusable()) {
        tryApart(subject, findings, name, [&](const Subject& there, Findings& found) {
            HostedPlugin plugin(there, found);
            host::EntryPointControl control = plugin.runtime().entryPoints();
            for (std::size_t nth = 1; nth <= kMostFailures; ++nth) {
                control.resetCounts();
                control.failCall(name, nth);
                PluginLife life(plugin.runtime(), there.seed, {}, [&](const std::string& what) {
                    found.at("failure of call " + std::to_string(nth) + ", " + what);
                });
                life.live();
                control.failNone();
                if (control.calls(name) < nth) {
                    break;
                }
            }
        });
    }
}

} // namespace zqm::cli
