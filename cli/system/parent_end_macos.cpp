#include "cli/system/parent_end.h"

namespace zqm::cli {

void endWithParent(pid_t /*parent*/) {}

} // namespace zqm::cli
