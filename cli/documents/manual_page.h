#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zqm::cli {

struct Command;

// The manual page of zqmspeech, for man: made of what the commands declare.
std::string manualPage(const std::vector<Command>& commands, std::string_view version);

} // namespace zqm::cli
