// Which system calls a process may make from now on, by a filter in the kernel (seccomp).

#pragma once

#include <cstdint>

namespace zqm::engine {

// What the calls are for.
enum class Work : std::uint8_t {
    Speech,     // all of what an engine does
    PutInPlace, // what the process does that puts whole files in their places
};

// From now on no thread of this process, and nothing that it starts, makes any call but those that the work
// needs; others fail with EPERM. False: the kernel has no such filters, or keeps them from this program.
// Throws std::system_error when one that has them can't do it.
bool restrictSystemCalls(Work work);

} // namespace zqm::engine
