// The platform's log.

#pragma once

#include <string>

namespace zqm::platform {

// As NSLog, but never raises: Foundation's log needs files of its own at its first use, and raises where the
// system has no descriptors left, amid the very work whose failure is to be told. UTF-8.
void logLine(const std::string& line);

} // namespace zqm::platform
