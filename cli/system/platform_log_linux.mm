#include "cli/system/platform_log.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>

#import <Foundation/Foundation.h>

namespace zqm::cli {
namespace {

std::string lastReason;

constexpr std::array<std::string_view, 3> kFailures{
    "Speech can't be started: ", "Speech ended early: ", "Phonemes can't be told: "};
// In lines of what a ListeningObserver is told.
constexpr std::array<std::string_view, 2> kObserved{"Nothing can be heard: ", " can't be listened for"};

NSLog_printf_handler* earlier = nullptr;

// The line begins with the time and the process in brackets.
void takeLine(NSString* line) {
    std::string_view text = [line UTF8String];
    while (text.ends_with('\n')) {
        text.remove_suffix(1);
    }
    for (const std::string_view failure : kFailures) {
        const std::size_t begin = text.find(failure);
        if (begin != std::string_view::npos) {
            lastReason = text.substr(begin + failure.size());
            return;
        }
    }
    const auto isIn = [text](std::string_view part) { return text.find(part) != std::string_view::npos; };
    if (std::ranges::none_of(kObserved, isIn)) {
        earlier(line);
    }
}

} // namespace

PlatformLog::PlatformLog() {
    lastReason.clear();
    earlier = _NSLog_printf_handler;
    _NSLog_printf_handler = takeLine;
}

PlatformLog::~PlatformLog() {
    _NSLog_printf_handler = earlier;
}

std::string PlatformLog::reason() {
    return hasReason() ? lastReason : "the platform does not say why";
}

bool PlatformLog::hasReason() {
    return !lastReason.empty();
}

} // namespace zqm::cli
