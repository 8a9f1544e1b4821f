#include "event_tokens.h"

#include <array>
#include <bit>
#include <deque>

namespace zqm::host {

namespace {

// Far from what a plugin could take for a number of its own.
constexpr std::uint64_t kFirstToken = 0x5A514D0000000001;

using IndirectRecord = std::array<std::uint64_t, 2>;

} // namespace

std::uint64_t newEventToken() {
    static std::uint64_t next = kFirstToken;
    return next++;
}

std::uint64_t indirectEventToken(std::uint64_t token) {
    static std::deque<IndirectRecord> records;
    records.push_back({0, token});
    return std::bit_cast<std::uint64_t>(records.back().data());
}

} // namespace zqm::host
