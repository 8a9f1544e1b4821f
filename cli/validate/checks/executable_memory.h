#pragma once

namespace zqm::cli {

// Whether there is memory at this address that can be run. That a function begins there nobody can tell.
bool isExecutable(const void* address);

} // namespace zqm::cli
