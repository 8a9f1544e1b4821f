#include "platform/handled_sources.h"

namespace zqm::platform {
namespace {

thread_local std::uint64_t count = 0;

} // namespace

std::uint64_t handledSources() {
    return count;
}

void noteHandledSource() {
    ++count;
}

} // namespace zqm::platform
