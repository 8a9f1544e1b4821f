// What a supervised process tells: a byte that is one of these, the length of a text in 4 bytes, the text.

#pragma once

#include <cstdint>

namespace zqm::cli {

inline constexpr char kFoundMessage = 'f'; // the text begins with the verdict's number as a byte
inline constexpr char kStepMessage = 's';
inline constexpr char kApartMessage = 'a'; // it waits for a process that has a time limit of its own
inline constexpr char kBackMessage = 'b';  // and does so no longer
inline constexpr char kDoneMessage = 'd';

using MessageLength = std::uint32_t;

} // namespace zqm::cli
