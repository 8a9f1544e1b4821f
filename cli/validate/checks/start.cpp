#include "cli/validate/checks/checks.h"
#include "cli/validate/checks/observed_start.h"
#include "cli/validate/checks/record_inspection.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <string>

namespace zqm::cli {
namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

// Whoever starts a program waits for all of its plugins.
constexpr Milliseconds kMost{1000};

std::string inMilliseconds(Clock::duration time) {
    std::array<char, 32> text;
    std::snprintf(text.data(), text.size(), "%.1f ms", Milliseconds(time).count());
    return text.data();
}

} // namespace

void checkStart(const Subject& subject, Findings& findings) {
    host::Runtime runtime;
    RecordInspection inspection; // what is wrong in records is told by another check
    std::size_t records = 0;
    const Clock::time_point begin = Clock::now();
    const PluginMain entryFunction = entryFunctionOf(openPlugin(subject.library));
    const Clock::time_point loaded = Clock::now();
    startObserved(runtime, entryFunction, [&](void* record) {
        ++records;
        return inspection.isReadable(record);
    });
    const Clock::time_point started = Clock::now();
    findings.add({started - loaded > kMost ? Verdict::Fail : Verdict::Pass,
                  "loaded in " + inMilliseconds(loaded - begin) + ", registered in " +
                      inMilliseconds(started - loaded)});
    if (records == 0) {
        findings.fail("it registered no class");
    }
    if (!runtime.announcedRevision()) {
        findings.fail("it announced no revision of the plugin interface");
    }
}

} // namespace zqm::cli
