// How many callbacks the calling thread's run loop has delivered.

#pragma once

#include <cstdint>

namespace zqm::platform {

std::uint64_t handledSources();
void noteHandledSource();

} // namespace zqm::platform
