#pragma once

#include <cstddef>
#include <string>

namespace zqm::cli {

// Throws Failure where fewer files than these can still be opened, which tells what they are needed for, as
// "to check a plugin".
void requireFreeDescriptors(std::size_t least, const std::string& purpose);

} // namespace zqm::cli
