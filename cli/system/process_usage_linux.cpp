#include "cli/system/process_usage.h"

#include "cli/system/child_processes.h"
#include "cli/system/orphans.h"

#include <cstddef>
#include <filesystem>
#include <iterator>
#include <malloc.h>
#include <unistd.h>

#ifdef __SANITIZE_ADDRESS__
// Of the sanitizer's library, whose header for it GCC doesn't install.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes(); // NOLINT(bugprone-reserved-identifier)
#endif

namespace zqm::cli {
namespace {

namespace fs = std::filesystem;

std::int64_t heapInUse() {
#ifdef __SANITIZE_ADDRESS__
    return static_cast<std::int64_t>(
        __sanitizer_get_current_allocated_bytes()); // its heap is none of malloc's
#else
    const struct mallinfo2 info = mallinfo2();
    return static_cast<std::int64_t>(info.uordblks + info.hblkhd);
#endif
}

} // namespace

ProcessUsage processUsage() {
    return {.heap = heapInUse(),
            .descriptors = std::distance(fs::directory_iterator("/proc/self/fd"), {}) - 1,
            .processes = static_cast<std::int64_t>(childrenOf(getpid()).size()) + orphansOfParent()};
}

} // namespace zqm::cli
