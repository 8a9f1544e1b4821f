// What leads libFuzzer: how often each edge of all instrumented code was run, be it in this program or in a
// library that it loads.

#include <cstddef>
#include <cstdint>

namespace {

constexpr unsigned kBits = 18;

// libFuzzer reads the section of this name after each run, and clears it.
[[gnu::section("__libfuzzer_extra_counters"), gnu::used]] std::uint8_t counters[std::size_t{1} << kBits];

} // namespace

// GCC calls it at each edge. The caller's place tells the edge; two that fall together count as one.
extern "C" [[gnu::visibility("default"), gnu::no_sanitize_coverage]] void __sanitizer_cov_trace_pc() {
    constexpr std::uint64_t kGoldenRatio = 0x9E3779B97F4A7C15;
    constexpr unsigned kWordBits = 64;
    const auto place = reinterpret_cast<std::uint64_t>(__builtin_return_address(0));
    ++counters[place * kGoldenRatio >> (kWordBits - kBits)];
}
