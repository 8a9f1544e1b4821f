// What the platform logs.

#pragma once

#include <functional>
#include <string>
#include <vector>

namespace zqm::support {

// What comes to standard error while the body runs, line by line, without the date and process that stand
// before what the platform logs.
std::vector<std::string> logged(const std::function<void()>& body);

} // namespace zqm::support
