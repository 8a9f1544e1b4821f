// What is logged while a random host program runs, held against what that may bring about.

#pragma once

#include <string>
#include <vector>

namespace zqm::soak {

// Without what the plugin writes of each property that is read or set, and of its value.
std::vector<std::string> withoutProperties(std::vector<std::string> lines);

// Whether it tells that an engine has ended, by whatever cause.
bool tellsEndOfEngine(const std::string& line);

// Those that no action explains. An engine may have ended only where one was killed.
std::vector<std::string> unexplained(std::vector<std::string> lines, bool wereEnginesKilled);

} // namespace zqm::soak
