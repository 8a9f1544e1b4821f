#include "cli/system/process_usage.h"

#include <array>
#include <filesystem>
#include <iterator>
#include <libproc.h>
#include <malloc/malloc.h>
#include <unistd.h>

namespace zqm::cli {

ProcessUsage processUsage() {
    constexpr std::size_t kMostProcesses = 4096;
    std::array<pid_t, kMostProcesses> children;
    malloc_statistics_t heap{};
    malloc_zone_statistics(nullptr, &heap);
    return {.heap = static_cast<std::int64_t>(heap.size_in_use),
            .descriptors = std::distance(std::filesystem::directory_iterator("/dev/fd"), {}) - 1,
            .processes = proc_listchildpids(getpid(), children.data(), sizeof children)};
}

} // namespace zqm::cli
