#pragma once

#include <vector>

#include <sys/types.h>

namespace zqm::cli {

// Those included that ended and wait to be reaped. On Linux alone.
std::vector<pid_t> childrenOf(pid_t process);

} // namespace zqm::cli
