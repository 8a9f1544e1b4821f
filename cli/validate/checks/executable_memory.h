#pragma once

#include <optional>

namespace zqm::cli {

// Whether there is memory at this address that can be run; nothing where the system doesn't tell. That a
// function begins there nobody can tell.
std::optional<bool> isExecutable(const void* address);

} // namespace zqm::cli
