#include "cli/system/process_usage.h"

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <malloc.h>
#include <string>
#include <system_error>

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

// The kernel lists the children of each thread that started them.
std::int64_t children() {
    std::int64_t count = 0;
    for (const fs::directory_entry& thread : fs::directory_iterator("/proc/self/task")) {
        std::ifstream list(thread.path() / "children");
        count += std::distance(std::istream_iterator<std::string>(list), {});
    }
    return count;
}

} // namespace

ProcessUsage processUsage() {
    return {.heap = heapInUse(),
            .descriptors = std::distance(fs::directory_iterator("/proc/self/fd"), {}) - 1,
            .processes = children()};
}

} // namespace zqm::cli
