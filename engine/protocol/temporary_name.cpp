#include "engine/protocol/temporary_name.h"

#include <array>
#include <cinttypes>
#include <cstdio>

namespace zqm::protocol {
namespace {

constexpr std::string_view kBegin = ".zqmspeech-"; // hidden
constexpr std::string_view kDigits = "0123456789abcdef";
constexpr std::size_t kCount = 16; // of them

} // namespace

std::string temporaryName(std::uint64_t number) {
    std::array<char, kCount + 1> digits{};
    std::snprintf(digits.data(), digits.size(), "%016" PRIx64, number);
    return std::string(kBegin) + digits.data();
}

bool isTemporaryName(std::string_view name) {
    return name.size() == kBegin.size() + kCount && name.starts_with(kBegin) &&
           name.find_first_not_of(kDigits, kBegin.size()) == std::string_view::npos;
}

} // namespace zqm::protocol
