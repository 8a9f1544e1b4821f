#pragma once

#include <sys/types.h>

namespace zqm::cli {

// This process is killed when its parent, that of the given number, ends; where the system can do so.
void endWithParent(pid_t parent);

} // namespace zqm::cli
