#include "cli/command_line/failure.h"
#include "cli/validate/checks/checks.h"
#include "cli/validate/checks/host_versions.h"
#include "cli/validate/hosted_plugin.h"

#include <algorithm>
#include <array>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <sys/mman.h>

namespace zqm::cli {
namespace {

// A host that can't be told the revision is none.
constexpr std::string_view kRequired = "RegisterPluginVersion";
constexpr std::string_view kRegister = "PluginRegisterClass";
constexpr int kSets = 16;
// A set has each entry point with one of these chances in a hundred.
constexpr std::array kChances{5U, 20U, 50U, 90U};
constexpr std::size_t kFirstFailures = 3; // and one of those behind them

std::vector<std::string> refusable() {
    std::vector<std::string> names = host::EntryPointControl::names();
    std::erase(names, kRequired);
    return names;
}

// Memory that this process shares with those that it starts.
class SharedFlags {
public:
    explicit SharedFlags(std::size_t size)
        : size_(size),
          memory_(mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)) {
        if (memory_ == MAP_FAILED) {
            throw Failure("no memory to share");
        }
    }
    SharedFlags(const SharedFlags&) = delete;
    SharedFlags& operator=(const SharedFlags&) = delete;
    ~SharedFlags() { munmap(memory_, size_); }

    bool& operator[](std::size_t index) { return static_cast<bool*>(memory_)[index]; }

private:
    std::size_t size_;
    void* memory_;
};

// The services that the plugin asks for. The others can't be missed.
std::vector<std::string> usedEntryPoints(const Subject& subject, Findings& findings) {
    const std::vector<std::string> names = refusable();
    SharedFlags used(names.size());
    tryApart(subject, findings, "with all services", [&](const Subject& there, Findings& found) {
        HostedPlugin plugin(there, found);
        plugin.live();
        const host::EntryPointControl control = plugin.runtime().entryPoints();
        for (std::size_t index = 0; index < names.size(); ++index) {
            used[index] = control.lookups(names[index]) > 0;
        }
    });
    std::vector<std::string> result;
    for (std::size_t index = 0; index < names.size(); ++index) {
        if (used[index]) {
            result.push_back(names[index]);
        }
    }
    return result;
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

// Answers how often the service was called.
std::size_t liveWithFailure(HostedPlugin& plugin, const Subject& subject, Findings& findings,
                            const std::string& name, std::size_t nth) {
    host::EntryPointControl control = plugin.runtime().entryPoints();
    control.resetCounts();
    control.failCall(name, nth);
    PluginLife life(plugin.runtime(), subject.seed, {}, [&](const std::string& what) {
        findings.at("failure of call " + std::to_string(nth) + ", " + what);
    });
    life.live();
    control.failNone();
    return control.calls(name);
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
    for (const std::string& name : usedEntryPoints(subject, findings)) {
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
        const HostVersion& host = hostVersions()[random() % hostVersions().size()];
        std::vector<std::string> refused;
        for (const std::string& name : names) {
            // Most sets leave something to use.
            if (random() % 100 < chance && (name != kRegister || chance >= 90)) {
                refused.push_back(name);
            }
        }
        tryApart(subject, findings,
                 "set " + std::to_string(number + 1) + ", " + nameOf(host) + ", without " + listOf(refused),
                 [&](const Subject& there, Findings& found) {
                     liveWithout(there, found, {.version = host.version, .refused = refused});
                 });
    }
}

void checkFailingCalls(const Subject& subject, Findings& findings) {
    for (const std::string& name : usedEntryPoints(subject, findings)) {
        tryApart(subject, findings, name, [&](const Subject& there, Findings& found) {
            HostedPlugin plugin(there, found);
            std::size_t calls = 0;
            for (std::size_t nth = 1; nth <= std::min(kFirstFailures, calls + 1); ++nth) {
                calls = liveWithFailure(plugin, there, found, name, nth);
            }
            if (calls > kFirstFailures) {
                std::mt19937_64 random(there.seed);
                liveWithFailure(plugin, there, found, name,
                                kFirstFailures + 1 + random() % (calls - kFirstFailures));
            }
        });
    }
}

} // namespace zqm::cli
