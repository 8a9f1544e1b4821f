#pragma once

#include <functional>

namespace zqm::support {

// Polls without a run loop; false when it never holds, in two minutes.
bool eventually(const std::function<bool()>& holds);

} // namespace zqm::support
