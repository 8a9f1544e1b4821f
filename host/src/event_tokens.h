// What an event record's word 1 is filled with. Tokens stay good for the life of the process, because a
// plugin keeps its records longer than any runtime.

#pragma once

#include <cstdint>

namespace zqm::host {

// Never zero, never given twice.
std::uint64_t newEventToken();

// The address of a record whose word 1 is the token.
std::uint64_t indirectEventToken(std::uint64_t token);

} // namespace zqm::host
