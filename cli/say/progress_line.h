#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zqm::cli {

// " 42%  word", in at most this many columns of a terminal. Control characters are left out.
std::string progressText(double share, std::string_view word, std::size_t columns);

} // namespace zqm::cli
