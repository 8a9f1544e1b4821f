#include "cli/validate/checks/checks.h"
#include "cli/validate/checks/host_versions.h"
#include "cli/validate/hosted_plugin.h"
#include "cli/validate/supervision.h"

#include <algorithm>
#include <array>
#include <deque>
#include <iterator>
#include <random>
#include <set>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include <sys/mman.h>

namespace zqm::cli {
namespace {

// A host that can't be told the revision is none.
constexpr std::string_view kRequired = "RegisterPluginVersion";
constexpr std::string_view kRegister = "PluginRegisterClass";
constexpr std::string_view kVersion = "REALGetRBVersion";
constexpr std::size_t kTogether = 8; // of those that are all refused in turn
constexpr int kSets = 16;
// A set has each entry point with one of these chances in a hundred.
constexpr std::array kChances{5U, 20U, 50U, 90U};
constexpr std::size_t kFirstFailures = 3; // and one of those behind them

std::vector<std::string> refusable() {
    std::vector<std::string> names = host::EntryPointControl::names();
    std::erase(names, kRequired);
    return names;
}

// In which host the plugin is, and what is done with it.
struct Situation {
    HostVersion host;
    LifePlan plan = {};
};

// What that host doesn't do.
struct Fault {
    std::vector<std::string> refused = {};
    std::string failing = {}; // a service, whose nth call fails
    std::size_t nth = 0;      // 0: none does
};

// How a service is used, from the loading of the plugin on.
struct Use {
    std::size_t lookups = 0;
    std::size_t calls = 0;
};

// Of each service that can be refused, in memory that this process shares with those that it starts.
class SharedUses {
public:
    explicit SharedUses(std::vector<std::string> names)
        : names_(std::move(names)),
          memory_(mmap(nullptr, size(), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)) {
        if (memory_ == MAP_FAILED) {
            throw SupervisionFailure("no memory to share");
        }
    }
    SharedUses(const SharedUses&) = delete;
    SharedUses& operator=(const SharedUses&) = delete;
    ~SharedUses() { munmap(memory_, size()); }

    void note(const host::EntryPointControl& control) {
        for (std::size_t index = 0; index < names_.size(); ++index) {
            uses()[index] = {control.lookups(names_[index]), control.calls(names_[index])};
        }
    }

    std::vector<std::pair<std::string, Use>> all() const {
        std::vector<std::pair<std::string, Use>> all;
        for (std::size_t index = 0; index < names_.size(); ++index) {
            all.emplace_back(names_[index], uses()[index]);
        }
        return all;
    }

private:
    std::size_t size() const { return names_.size() * sizeof(Use); }
    Use* uses() const { return static_cast<Use*>(memory_); }

    std::vector<std::string> names_;
    void* memory_;
};

struct Trial {
    Verdict verdict;
    std::vector<std::pair<std::string, Use>> uses; // of each service; none where it could not be lived
};

bool canRegister(const Fault& fault) {
    return fault.failing != kRegister && std::ranges::find(fault.refused, kRegister) == fault.refused.end();
}

// One life of the plugin, with the fault from its loading on.
Trial tryLife(const Subject& subject, Findings& findings, std::string_view step, const Situation& situation,
              const Fault& fault) {
    SharedUses uses(refusable());
    const Verdict verdict = tryApart(subject, findings, step, [&](const Subject& there, Findings& found) {
        const host::Options options{.version = situation.host.version, .refused = fault.refused};
        try {
            HostedPlugin plugin(there, found, options, [&](host::Runtime& runtime) {
                if (fault.nth > 0) {
                    runtime.entryPoints().failCall(fault.failing, fault.nth);
                }
            });
            plugin.live(situation.plan);
            uses.note(plugin.runtime().entryPoints());
        } catch (const host::LoadError& error) {
            if (canRegister(fault)) {
                found.warn(error.what());
            }
        }
    });
    return {verdict, uses.all()};
}

std::string nameOf(const Situation& situation) {
    return nameOf(situation.host) + (situation.plan.extreme ? ", extreme arguments" : "");
}

std::vector<Situation> ordinarySituations() {
    std::vector<Situation> situations;
    for (const HostVersion& host : hostVersionsFromNewest()) {
        situations.push_back({.host = host});
    }
    return situations;
}

// The newest host of each revision before the last one, and extreme arguments.
std::vector<Situation> otherSituations() {
    std::vector<Situation> situations;
    std::int32_t revision = hostVersions().back().revision;
    for (const HostVersion& host : hostVersionsFromNewest()) {
        if (host.revision < std::exchange(revision, host.revision)) {
            situations.push_back({.host = host});
        }
    }
    situations.push_back({.host = hostVersions().back(), .plan = {.extreme = true}});
    return situations;
}

// A service that the plugin uses, and the first situation in which it does.
struct Service {
    std::string name;
    Situation situation;
    std::size_t count;
};

// What it never uses can't be missed.
std::vector<Service> servicesOf(const Subject& subject, Findings& findings, std::size_t Use::*count,
                                const std::vector<Situation>& situations) {
    std::vector<Service> services;
    std::set<std::string> known;
    for (const Situation& situation : situations) {
        const Trial trial =
            tryLife(subject, findings, "with all services, " + nameOf(situation), situation, {});
        for (const auto& [name, use] : trial.uses) {
            if (use.*count > 0 && known.insert(name).second) {
                services.push_back({name, situation, use.*count});
            }
        }
    }
    return services;
}

std::string listOf(const std::vector<std::string>& names) {
    std::string list;
    for (const std::string& name : names) {
        list += (list.empty() ? "" : ", ") + name;
    }
    return list;
}

// The first few, and one of those behind them.
std::vector<std::size_t> failingCalls(std::size_t calls, std::uint64_t seed) {
    std::vector<std::size_t> failing;
    for (std::size_t nth = 1; nth <= std::min(kFirstFailures, calls); ++nth) {
        failing.push_back(nth);
    }
    if (calls > kFirstFailures) {
        std::mt19937_64 random(seed);
        failing.push_back(kFirstFailures + 1 + random() % (calls - kFirstFailures));
    }
    return failing;
}

std::set<std::string> askedFor(const Trial& trial) {
    std::set<std::string> names;
    for (const auto& [name, use] : trial.uses) {
        if (use.lookups > 0) {
            names.insert(name);
        }
    }
    return names;
}

// Refuses all that the plugin asks for in a situation, some at a time: each alone would take far longer.
class RefusalsInTurn {
public:
    RefusalsInTurn(const Subject& subject, Findings& findings, const Situation& situation)
        : subject_(subject), findings_(findings), situation_(situation) {}

    void perform(std::mt19937_64& random) {
        known_ = askedFor(live({}, "with all services"));
        std::vector<std::string> names;
        std::ranges::copy_if(known_, std::back_inserter(names), canBeAmongOthers);
        for (std::size_t before = 0; names.size() != before;) {
            before = names.size();
            std::ranges::shuffle(names, random);
            names = refuseInTurn(names);
        }
    }

private:
    // Without a class nothing else is asked for, and without a version the plugin doesn't know its situation.
    static bool canBeAmongOthers(const std::string& name) { return name != kRegister && name != kVersion; }

    // Answers what it didn't come to ask for, without the others; that is to be refused again, without them.
    std::vector<std::string> refuseInTurn(const std::vector<std::string>& names) {
        std::vector<std::string> left;
        for (std::size_t begin = 0; begin < names.size(); begin += kTogether) {
            const auto some = std::span(names).subspan(begin, std::min(kTogether, names.size() - begin));
            const std::vector<std::string> refused(some.begin(), some.end());
            const Trial trial = live(refused, "without " + listOf(refused));
            if (trial.verdict >= Verdict::Fail) {
                continue; // a hang would take all its time again
            }
            const std::set<std::string> asked = askedFor(trial);
            std::ranges::copy_if(refused, std::back_inserter(left),
                                 [&](const std::string& name) { return !asked.contains(name); });
            refuseInTheirPlace(refused, asked);
        }
        return left;
    }

    // What it asks for only where one of these is missing is refused with them.
    void refuseInTheirPlace(std::vector<std::string> refused, const std::set<std::string>& asked) {
        const std::size_t count = refused.size();
        std::ranges::copy_if(asked, std::back_inserter(refused),
                             [this](const std::string& name) { return known_.insert(name).second; });
        if (refused.size() > count) {
            live(refused, "without " + listOf(refused));
        }
    }

    Trial live(const std::vector<std::string>& refused, const std::string& how) {
        return tryLife(subject_, findings_, how + ", " + nameOf(situation_), situation_,
                       {.refused = refused});
    }

    const Subject& subject_;
    Findings& findings_;
    const Situation& situation_;
    std::set<std::string> known_; // what it asks for
};

} // namespace

// What the plugin asks for only where another service is missing is refused there together with that one.
void checkRefused(const Subject& subject, Findings& findings) {
    struct Refusal {
        std::vector<std::string> names;
        Situation situation;
    };
    std::vector<Situation> situations = ordinarySituations();
    situations.push_back({.host = hostVersions().back(), .plan = {.extreme = true}});
    std::deque<Refusal> refusals;
    std::set<std::string> known;
    for (const Service& service : servicesOf(subject, findings, &Use::lookups, situations)) {
        refusals.push_back({{service.name}, service.situation});
        known.insert(service.name);
    }
    for (; !refusals.empty(); refusals.pop_front()) {
        const auto& [names, situation] = refusals.front();
        const Trial trial = tryLife(subject, findings, "without " + listOf(names) + ", " + nameOf(situation),
                                    situation, {.refused = names});
        for (const auto& [name, use] : trial.uses) {
            if (use.lookups > 0 && known.insert(name).second) {
                Refusal both = refusals.front();
                both.names.push_back(name);
                refusals.push_back(std::move(both));
            }
        }
    }
}

void checkRefusedSets(const Subject& subject, Findings& findings) {
    std::mt19937_64 random(subject.seed);
    const std::vector<std::string> names = refusable();
    for (int number = 0; number < kSets; ++number) {
        const unsigned chance = kChances[random() % kChances.size()];
        const Situation situation{.host = hostVersions()[random() % hostVersions().size()]};
        std::vector<std::string> refused;
        for (const std::string& name : names) {
            // Most sets leave something to use.
            if (random() % 100 < chance && (name != kRegister || chance >= 90)) {
                refused.push_back(name);
            }
        }
        tryLife(subject, findings,
                "set " + std::to_string(number + 1) + ", " + nameOf(situation) + ", without " +
                    listOf(refused),
                situation, {.refused = refused});
    }
    // A service whose lack was lived with where it was first asked for may be missed elsewhere.
    for (const Situation& situation : otherSituations()) {
        RefusalsInTurn(subject, findings, situation).perform(random);
    }
}

// Each in a process of its own: what the plugin keeps of a call that succeeded it doesn't ask for again.
void checkFailingCalls(const Subject& subject, Findings& findings) {
    for (const Service& service : servicesOf(subject, findings, &Use::calls, ordinarySituations())) {
        for (const std::size_t nth : failingCalls(service.count, subject.seed)) {
            const std::string step =
                service.name + ", failure of call " + std::to_string(nth) + ", " + nameOf(service.situation);
            const Trial trial =
                tryLife(subject, findings, step, service.situation, {.failing = service.name, .nth = nth});
            if (trial.verdict >= Verdict::Fail) {
                break; // a hang would take all its time with each
            }
        }
    }
}

} // namespace zqm::cli
