// Dates as texts.

#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zqm::platform {

// "2026-01-31 23:59:00 +0100" in universal time: "2026-01-31 22:59:00 +0000". Nothing for what is written
// otherwise or is no date. Of two answers the later is the greater text.
std::optional<std::string> universalTime(std::string_view date);

} // namespace zqm::platform
