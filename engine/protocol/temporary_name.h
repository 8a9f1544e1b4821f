// What an output is called until it is whole, beside its final name: by these names alone a file is put in
// its place or removed for an engine.

#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zqm::protocol {

std::string temporaryName(std::uint64_t number);

// Whether it is one of those.
bool isTemporaryName(std::string_view name);

} // namespace zqm::protocol
