#pragma once

#include <functional>
#include <string>

namespace zqm::cli {

// Does this in a process of its own whose output goes nowhere, and answers what ended that process before it
// was done, in words; empty: nothing did. An exception is no such end.
std::string endInTrial(const std::function<void()>& action);

} // namespace zqm::cli
