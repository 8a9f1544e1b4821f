// When a dictionary was changed last, as it says itself.

#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace zqm::protocol {

// Seconds since 1970 of a date such as "2024-01-31 12:00:00 +0100"; none when it isn't one.
std::optional<std::int64_t> parseModificationDate(std::string_view date);

} // namespace zqm::protocol
