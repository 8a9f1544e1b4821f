#pragma once

#include <string>

namespace zqm::cli {

// The file: URL of a path: absolute, percent-encoded. Throws Failure when the path is no UTF-8 or the
// current folder is gone.
std::string fileUrl(const std::string& path);

} // namespace zqm::cli
