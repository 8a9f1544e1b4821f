// A host program to which something happens.

#pragma once

#include "tests/live/speaker.h"
#include "tests/support/eventually.h"
#include "tests/support/temporary_folder.h"
#include "zqmhost/zqmhost.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <sys/resource.h>
#include <sys/types.h>
#include <vector>

namespace zqm::faults {

inline constexpr host::Seconds kPatience{120};

inline constexpr const char* kText = "The window is open, and the door is closed.";
inline constexpr std::size_t kWordsOfText = 9;

// That sentence again and again.
std::string sentences(int count);

// So much that an engine writes it for a minute.
std::string veryLongText();

using support::eventually;

// The engines of this process that run, oldest first.
std::vector<pid_t> engines();

// What a process may have of a resource, until the end of the scope.
class ScopedLimit {
public:
    ScopedLimit(__rlimit_resource resource, rlim_t most, pid_t process = 0);
    ~ScopedLimit();
    ScopedLimit(const ScopedLimit&) = delete;
    ScopedLimit& operator=(const ScopedLimit&) = delete;

private:
    __rlimit_resource resource_;
    pid_t process_;
    rlimit before_{};
};

// What a program saw of a speech, or of listening.
enum class Seen { Refused, EndedEarly, HeardNothing, Completed };

// How often something was seen, counted in this process and in its forks, and printed in the end.
class Tally {
public:
    explicit Tally(std::string what);
    ~Tally();
    Tally(const Tally&) = delete;
    Tally& operator=(const Tally&) = delete;

    void add(Seen seen);
    int of(Seen seen) const;
    // How often something else than Completed: 0 tells that what was done to the program did nothing.
    int failures() const;

private:
    std::string what_;
    int* counts_;
};

// Makes something fail until what it answers is dropped.
using Fault = std::function<std::shared_ptr<void>()>;

// Ends with no breach of the interface reported.
class Program {
public:
    Program();
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    // A new synthesizer speaks a text into a file of that name, which is removed again; it may not hang. What
    // the fault answers is kept as long as the host program works at that, and not while the test looks at
    // what came of it.
    Seen speak(const std::string& name, const Fault& fault, const std::string& text = kText);
    // A new recognizer listens to a sound file; EndedEarly: that was given up.
    Seen listen(const Fault& fault);
    // A sentence is spoken into a file, told word by word, and nothing else is left in the folder.
    void expectWorks();
    void expectWorks(live::Speaker& speaker);
    void expectHears();
    // No engine is left, whose objects the caller has dropped, and no descriptor that was not there when all
    // worked for the first time. All of the above but what is given a speaker end with this.
    void expectNoEngine();
    void expectEmptyFolder() const;

    host::Runtime runtime;
    support::TemporaryFolder folder;

private:
    void rememberWhatIsHeld();

    std::optional<std::size_t> held_; // descriptors
};

} // namespace zqm::faults
