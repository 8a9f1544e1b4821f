// Numbers that people write, as on the command lines of the tests' programs.

#pragma once

#include <charconv>
#include <optional>
#include <string_view>
#include <system_error>

namespace zqm::support {

// Nothing, unless the whole text is one that the type can hold.
template <typename Number>
std::optional<Number> numberOf(std::string_view text) {
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

} // namespace zqm::support
