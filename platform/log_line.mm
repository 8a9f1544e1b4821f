#include "platform/log_line.h"

#include "platform/autorelease_pool.h"
#include "platform/exception_guard.h"
#include "platform/foundation_text.h"

#include <cstdio>

namespace zqm::platform {

void logLine(const std::string& line) {
    const AutoreleasePool pool;
    const auto log = [](void* text) { NSLog(@"%@", stringOf(*static_cast<const std::string*>(text))); };
    NSException* const failure = zqmCatchException(log, const_cast<std::string*>(&line));
    if (failure != nil) {
        static_cast<void>(std::fprintf(stderr, "%s\n", line.c_str()));
        [failure release];
    }
}

} // namespace zqm::platform
