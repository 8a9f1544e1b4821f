// The engines of this process: which they are, and how they are held and killed.

#pragma once

#include <atomic>
#include <chrono>
#include <random>
#include <sys/types.h>
#include <thread>
#include <vector>

namespace zqm::endurance {

class EngineProcesses {
public:
    // Children that are there by now are no engines. From now on the process that an engine has for its files
    // becomes this one's child when the engine dies first, so that one that stays is found.
    EngineProcesses();

    // Engines, and processes for files that dead ones left; ascending, those included that ended and wait to
    // be reaped.
    std::vector<pid_t> children() const;
    // The engines among them.
    std::vector<pid_t> all() const;
    // Those of them that have not ended.
    std::vector<pid_t> living() const;
    // Reaps the processes for files that dead engines left; false while one of them still runs.
    bool reapOrphans() const;

private:
    std::vector<pid_t> others_;
};

// Returns once it is stopped, and what it asked its process for files is done; or it has ended.
void holdEngine(pid_t engine);
void goOn(pid_t engine);

// Answers whether it lived until then.
bool killEngine(pid_t engine);

// Of a time that is at most so long; as often of each order of magnitude, so that some are the right ones on
// any machine.
std::chrono::microseconds randomMoment(std::mt19937_64& random, std::chrono::microseconds most);

// Kills an engine from beside the thread that makes it, which is in a call meanwhile.
class Killing {
public:
    // As soon as that thread sleeps, as it does when it waits for the engine. One that is held can't answer
    // it before.
    static Killing whenTheCallerWaits(pid_t engine);
    // So long from now.
    static Killing after(std::chrono::microseconds pause, pid_t engine);
    // The next one that this process starts, so long after it was seen.
    static Killing ofTheNext(std::chrono::microseconds pause);

    // By now.
    bool isDone() const { return killed_ != 0; }

    // Waits until it is done, and answers which engine was killed. 0: none was; it had ended, or none was
    // started before this was called.
    pid_t finish();

private:
    template <typename Find>
    explicit Killing(Find find);

    std::atomic<pid_t> killed_ = 0;
    std::jthread thread_;
};

} // namespace zqm::endurance
