// What leads libFuzzer: how often each edge of all instrumented code was run, be it in this program or in a
// library that it loads. With ZQM_FUZZ_EDGES=FILE the edges that were run at all are written there at the
// end, a line for each: the file it is in, and where (scripts/fuzz-coverage).

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>

namespace {

constexpr unsigned kBits = 18;
constexpr std::size_t kCounters = std::size_t{1} << kBits;

// libFuzzer reads the section of this name after each run, and clears it.
[[gnu::section("__libfuzzer_extra_counters"), gnu::used]] std::uint8_t counters[kCounters];
const void* places[kCounters];

void writeEdges() {
    const char* const name = std::getenv("ZQM_FUZZ_EDGES");
    std::FILE* const file = name != nullptr ? std::fopen(name, "we") : nullptr;
    if (file == nullptr) {
        return;
    }
    for (const void* const place : places) {
        Dl_info info{};
        if (place != nullptr && dladdr(place, &info) != 0) {
            const auto offset = static_cast<const char*>(place) - static_cast<const char*>(info.dli_fbase);
            std::fprintf(file, "%s %#tx\n", info.dli_fname, offset);
        }
    }
    std::fclose(file);
}

const struct AtEnd {
    ~AtEnd() { writeEdges(); }
} atEnd;

} // namespace

// GCC calls it at each edge. The caller's place tells the edge; two that fall together count as one.
extern "C" [[gnu::visibility("default"), gnu::no_sanitize_coverage]] void __sanitizer_cov_trace_pc() {
    constexpr std::uint64_t kGoldenRatio = 0x9E3779B97F4A7C15;
    constexpr unsigned kWordBits = 64;
    const void* const place = __builtin_return_address(0);
    const std::size_t index = reinterpret_cast<std::uint64_t>(place) * kGoldenRatio >> (kWordBits - kBits);
    ++counters[index];
    places[index] = place;
}
