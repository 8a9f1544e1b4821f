#include "platform/run_loops.h"

#include <array>
#include <fcntl.h>
#include <unistd.h>

namespace zqm::platform {
namespace {

// What Foundation opens for a run loop.
bool canOpenPipe() {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        return false;
    }
    ::close(ends[0]);
    ::close(ends[1]);
    return true;
}

} // namespace

NSRunLoop* currentRunLoop() {
    thread_local bool isThere = false;
    isThere = isThere || canOpenPipe();
    return isThere ? [NSRunLoop currentRunLoop] : nil;
}

NSRunLoop* mainRunLoop() {
    static bool isThere = false;
    isThere = isThere || canOpenPipe();
    return isThere ? [NSRunLoop mainRunLoop] : nil;
}

} // namespace zqm::platform
