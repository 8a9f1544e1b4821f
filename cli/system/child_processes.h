#pragma once

#include <vector>

#include <sys/types.h>

namespace zqm::cli {

// Those included that ended and wait to be reaped. On Linux alone, as the next one.
std::vector<pid_t> childrenOf(pid_t process);

// Not one that has gone, nor one of which nothing is left but to be reaped.
bool isRunning(pid_t process);

} // namespace zqm::cli
