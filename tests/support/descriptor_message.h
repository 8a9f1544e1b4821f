// A line with descriptors in one message, as many as the sender likes.

#pragma once

#include <span>
#include <string_view>

namespace zqm::support {

// True: the socket took the whole line. The descriptors stay open.
bool sendWithDescriptors(int socket, std::string_view line, std::span<const int> descriptors);

} // namespace zqm::support
