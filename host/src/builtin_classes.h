#pragma once

#include "host_class.h"

#include <deque>

namespace zqm::host {

// The classes that every host has.
void addBuiltinClasses(std::deque<HostClass>& classes);

} // namespace zqm::host
