#include "tests/endurance/engine_processes.h"

#include "tests/support/process_table.h"

#include <algorithm>
#include <cmath>
#include <csignal>
#include <dirent.h>
#include <fstream>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <unistd.h>

namespace zqm::endurance {
namespace {

using std::chrono::microseconds;

constexpr microseconds kLookAgain{200};

bool hasEnded(char state) {
    return state == '\0' || state == 'Z' || state == 'X';
}

std::set<std::string> allProcesses() {
    std::set<std::string> names;
    const std::unique_ptr<DIR, int (*)(DIR*)> folder(opendir("/proc"), closedir);
    while (const dirent* const entry = readdir(folder.get())) {
        if (entry->d_name[0] >= '1' && entry->d_name[0] <= '9') {
            names.emplace(entry->d_name);
        }
    }
    return names;
}

pid_t parentOf(const std::string& process) {
    std::ifstream file("/proc/" + process + "/status");
    constexpr std::string_view kName = "PPid:";
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with(kName)) {
            return std::stoi(line.substr(kName.size()));
        }
    }
    return 0;
}

} // namespace

EngineProcesses::EngineProcesses() : others_(support::childrenOfThisProcess()) {}

std::vector<pid_t> EngineProcesses::all() const {
    std::vector<pid_t> engines;
    std::ranges::set_difference(support::childrenOfThisProcess(), others_, std::back_inserter(engines));
    return engines;
}

std::vector<pid_t> EngineProcesses::living() const {
    std::vector<pid_t> engines = all();
    std::erase_if(engines, [](pid_t engine) { return hasEnded(support::stateOf(engine)); });
    return engines;
}

void holdEngine(pid_t engine) {
    kill(engine, SIGSTOP);
    for (char state = support::stateOf(engine); state != 'T' && !hasEnded(state);
         state = support::stateOf(engine)) {
        std::this_thread::sleep_for(kLookAgain);
    }
}

void goOn(pid_t engine) {
    kill(engine, SIGCONT);
}

bool killEngine(pid_t engine) {
    return !hasEnded(support::stateOf(engine)) && kill(engine, SIGKILL) == 0;
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
    return Killing([pause, known = allProcesses()](const std::stop_token& isEnough) mutable {
        const pid_t self = getpid();
        for (bool isLast = false; !isLast;) {
            isLast = isEnough.stop_requested();
            for (const std::string& process : allProcesses()) {
                if (known.insert(process).second && parentOf(process) == self) {
                    std::this_thread::sleep_for(pause);
                    return static_cast<pid_t>(std::stoi(process));
                }
            }
        }
        return static_cast<pid_t>(0);
    });
}

pid_t Killing::finish() {
    thread_.request_stop();
    thread_.join();
    return killed_;
}

} // namespace zqm::endurance
