// What a host program and its engines hold of the machine.

#pragma once

#include "tests/support/process_table.h"

#include <cstddef>
#include <fstream>
#include <malloc.h>
#include <string>
#include <sys/types.h>
#include <zqmhost/zqmhost.h>

namespace zqm::endurance {

// Bytes that this process has allocated and not freed; 0 under a sanitizer, which keeps its own books.
inline std::size_t allocatedBytes() {
    const struct mallinfo2 heap = mallinfo2();
    return heap.uordblks + heap.hblkhd; // large blocks are counted apart
}

inline std::size_t residentPagesOf(pid_t process) {
    std::ifstream statm("/proc/" + std::to_string(process) + "/statm");
    std::size_t size = 0;
    std::size_t resident = 0;
    statm >> size >> resident;
    return resident;
}

// Until no engine is left. They end once their objects have, and are reaped when another speech begins.
inline bool waitForEngines(host::Runtime& runtime, host::Seconds patience) {
    return runtime.runUntil(
        [&] {
            runtime.construct("NSSpeechSynthesizerZQM").call("startSpeakingString", "");
            return support::childrenOfThisProcess().empty();
        },
        patience);
}

struct Holdings {
    std::size_t descriptors = support::openDescriptors();
    std::size_t children = support::childrenOfThisProcess().size();
    std::size_t bytes = allocatedBytes();
};

} // namespace zqm::endurance
