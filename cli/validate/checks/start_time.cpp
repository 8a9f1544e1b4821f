#include "cli/validate/checks/checks.h"
#include "cli/validate/checks/plugin_file.h"

#include <array>
#include <chrono>
#include <cstdio>

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

void checkStartTime(const Subject& subject, Findings& findings) {
    host::Runtime runtime;
    const Clock::time_point begin = Clock::now();
    const PluginMain entryFunction = entryFunctionOf(subject.library);
    const Clock::time_point loaded = Clock::now();
    runtime.start(entryFunction);
    const Clock::time_point registered = Clock::now();
    const std::string text = "loaded in " + inMilliseconds(loaded - begin) + ", registered in " +
                             inMilliseconds(registered - loaded);
    findings.add({registered - loaded > kMost ? Verdict::Fail : Verdict::Pass, text});
}

} // namespace zqm::cli
