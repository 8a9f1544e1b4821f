// What GCC's instrumentation calls, in programs that are not fuzzed; those that are define what they count.

#include <cstdint>

#define UNCOUNTED extern "C" [[gnu::visibility("default"), gnu::weak, gnu::no_sanitize_coverage]] void

UNCOUNTED __sanitizer_cov_trace_pc() {}
UNCOUNTED __sanitizer_cov_trace_cmpf(float, float) {}
UNCOUNTED __sanitizer_cov_trace_cmpd(double, double) {}
