#pragma once

#include <string>

namespace zqm::cli {

// Why no sound file can be written there, in one line for people.
std::string whyNotWritable(const std::string& path);

} // namespace zqm::cli
