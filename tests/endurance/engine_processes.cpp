#include "tests/endurance/engine_processes.h"

#include "tests/support/process_table.h"

#include <algorithm>
#include <cmath>
#include <csignal>
#include <set>
#include <string>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zqm::endurance {
namespace {

using std::chrono::microseconds;

constexpr microseconds kLookAgain{200};

// An engine leads a group of processes, but for its first moment, in which it is still in ours. That for its
// files is another one of its group, whose name may still be the engine's when that is killed.
bool isForFiles(pid_t child) {
    const pid_t group = getpgid(child);
    return group != child && group != getpgrp();
}

bool isAnyAtWork(const std::vector<pid_t>& processes) {
    return std::ranges::any_of(processes, [](pid_t process) {
        const char state = support::stateOf(process);
        return state == 'R' || state == 'D';
    });
}

} // namespace

EngineProcesses::EngineProcesses() : others_(support::childrenOfThisProcess()) {
    ::prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0);
}

std::vector<pid_t> EngineProcesses::children() const {
    std::vector<pid_t> children;
    std::ranges::set_difference(support::childrenOfThisProcess(), others_, std::back_inserter(children));
    return children;
}

std::vector<pid_t> EngineProcesses::all() const {
    std::vector<pid_t> engines = children();
    std::erase_if(engines, isForFiles);
    return engines;
}

std::vector<pid_t> EngineProcesses::living() const {
    std::vector<pid_t> engines = all();
    std::erase_if(engines, [](pid_t engine) { return !support::isAlive(engine); });
    return engines;
}

bool EngineProcesses::reapOrphans() const {
    std::vector<pid_t> orphans = children();
    std::erase_if(orphans, [](pid_t child) {
        return !isForFiles(child) || ::waitpid(child, nullptr, WNOHANG) == child;
    });
    return orphans.empty();
}

void holdEngine(pid_t engine) {
    kill(engine, SIGSTOP);
    while (support::isAlive(engine) &&
           (support::stateOf(engine) != 'T' || isAnyAtWork(support::childrenOf(engine)))) {
        std::this_thread::sleep_for(kLookAgain);
    }
}

void goOn(pid_t engine) {
    kill(engine, SIGCONT);
}

bool killEngine(pid_t engine) {
    return support::isAlive(engine) && kill(engine, SIGKILL) == 0;
}

microseconds randomMoment(std::mt19937_64& random, microseconds most) {
    constexpr double kDoublings = 12;
    const double less = std::uniform_real_distribution<>(0, kDoublings)(random);
    return microseconds(static_cast<std::int64_t>(static_cast<double>(most.count()) * std::exp2(-less)));
}

template <typename Find>
Killing::Killing(Find find)
    : thread_([this, find](const std::stop_token& isEnough) mutable {
          const pid_t engine = find(isEnough);
          if (engine > 0 && killEngine(engine)) {
              killed_ = engine;
          }
      }) {}

Killing Killing::whenTheCallerWaits(pid_t engine) {
    const pid_t caller = gettid();
    return Killing([engine, caller](const std::stop_token& isEnough) {
        while (!isEnough.stop_requested() && support::stateOf(caller) != 'S') {
            std::this_thread::sleep_for(kLookAgain);
        }
        return engine;
    });
}

Killing Killing::after(microseconds pause, pid_t engine) {
    return Killing([engine, pause](const std::stop_token&) {
        std::this_thread::sleep_for(pause);
        return engine;
    });
}

Killing Killing::ofTheNext(microseconds pause) {
    const std::vector<pid_t> present = support::allProcesses();
    const std::set<pid_t> before(present.begin(), present.end());
    return Killing([pause, known = before](const std::stop_token& isEnough) mutable {
        const pid_t self = getpid();
        for (bool isLast = false; !isLast;) {
            isLast = isEnough.stop_requested();
            for (const pid_t process : support::allProcesses()) {
                if (known.insert(process).second && support::parentOf(process) == self) {
                    std::this_thread::sleep_for(pause);
                    return process;
                }
            }
        }
        return pid_t{0};
    });
}

pid_t Killing::finish() {
    thread_.request_stop();
    thread_.join();
    return killed_;
}

} // namespace zqm::endurance
