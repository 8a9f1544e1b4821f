#pragma once

#include <functional>
#include <string>

namespace zqm::cli {

// Does this in a process of its own, whose output goes nowhere, and answers what ended or stopped that
// process before it was done, in words; empty: nothing did. An exception is no such end. With the process end
// those that it has started in its group.
std::string endInTrial(const std::function<void()>& action);

} // namespace zqm::cli
