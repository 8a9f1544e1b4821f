#pragma once

#include <string>

namespace zqm::cli {

// The file: URL of a path: absolute, percent-encoded. Throws Failure when a relative path has no current
// folder to begin at.
std::string fileUrl(const std::string& path);

} // namespace zqm::cli
