// The bytes of an input as choices, numbers and texts. What is left out when they are used up is 0 and empty,
// so that every input says something.

#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>

namespace zqm::fuzz {

class ByteSource {
public:
    ByteSource(const std::uint8_t* bytes, std::size_t size)
        : rest_(reinterpret_cast<const char*>(bytes), size) {}

    [[nodiscard]] bool isEmpty() const { return rest_.empty(); }

    template <typename Number>
    requires(std::is_arithmetic_v<Number>) Number number() {
        Number value{};
        const std::string_view bytes = take(sizeof value);
        std::memcpy(&value, bytes.data(), bytes.size());
        return value;
    }

    // Below the count, which is at most 256.
    std::size_t choice(std::size_t count) { return count == 0 ? 0 : number<std::uint8_t>() % count; }
    bool flag() { return choice(2) != 0; }

    // As many bytes as the next one says.
    std::string text() { return std::string(take(number<std::uint8_t>())); }

    std::string rest() { return std::string(take(rest_.size())); }

private:
    std::string_view take(std::size_t count) {
        const std::string_view taken = rest_.substr(0, std::min(count, rest_.size()));
        rest_.remove_prefix(taken.size());
        return taken;
    }

    std::string_view rest_;
};

} // namespace zqm::fuzz
