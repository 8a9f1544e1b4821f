#pragma once

#include <chrono>

namespace zqm::cli {

// How long a signal may wait to be noticed.
inline constexpr std::chrono::duration<double> kSignalLatency{0.05};

// While one exists, the first SIGINT, SIGTERM or SIGHUP is only noted, so that what is being written can be
// ended well. A second one of the same kind, and the first SIGQUIT, SIGABRT, SIGUSR1, or signal of a timer or
// limit, end the process at once: of what it would have removed, its TemporaryFolder alone is removed then. A
// signal that was ignored stays ignored, and one that somebody else handles stays theirs. One at a time.
class Interruption {
public:
    Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;
    ~Interruption();

    static int signalNumber(); // of the signal that came; 0: none
};

// While one exists, those signals too are only noted, and end the process as soon as it is gone: for what a
// signal's handler can't end well. One at a time.
class DelayedEnd {
public:
    DelayedEnd();
    DelayedEnd(const DelayedEnd&) = delete;
    DelayedEnd& operator=(const DelayedEnd&) = delete;
    ~DelayedEnd();
};

} // namespace zqm::cli
