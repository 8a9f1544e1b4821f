#pragma once

#include <cstddef>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace zqm::cli {

// Not near enough to be what was meant.
inline constexpr std::size_t kFar = std::numeric_limits<std::size_t>::max();

// In small letters of ASCII, and with - for each _: as names are compared that people type.
std::string folded(std::string_view name);

// How many letters were mistyped, left out, added or swapped, if `name` was meant by `typed`; kFar when that
// is unlikely. A name that was only begun, or carried on after a hyphen, is near. Case doesn't count.
std::size_t mistakes(std::string_view typed, std::string_view name);

// Which of the names was probably meant; empty: none.
std::string nearest(std::string_view typed, const std::vector<std::string>& names);

} // namespace zqm::cli
