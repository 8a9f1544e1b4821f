#include "cli/system/process_usage.h"

#include <filesystem>
#include <iterator>
#include <libproc.h>
#include <malloc/malloc.h>
#include <unistd.h>

namespace zqm::cli {

ProcessUsage processUsage() {
    malloc_statistics_t heap{};
    malloc_zone_statistics(nullptr, &heap);
    return {.heap = static_cast<std::int64_t>(heap.size_in_use),
            .descriptors = std::distance(std::filesystem::directory_iterator("/dev/fd"), {}) - 1,
            .processes = proc_listchildpids(getpid(), nullptr, 0)};
}

} // namespace zqm::cli
