// What the sanitizers' search for leaks writes without having found anything.

#pragma once

#include <string>

namespace zqm::support {

// Whether a process was ended from outside while it was searched: its threads are gone.
bool tellsOfInterruptedLeakSearch(const std::string& line);

} // namespace zqm::support
