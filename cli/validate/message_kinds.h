// What a supervised process tells: a head, and a text of its length.

#pragma once

#include <cstddef>
#include <cstdint>

namespace zqm::cli {

enum class MessageKind : std::uint32_t {
    Found,     // the text begins with the verdict's number as a byte
    Broke,     // what ended the work
    Step,      // while it waits, that of the process that it waits for
    Apart,     // it waits for a process that has a time limit of its own, and whose number is the text
    Back,      // and does so no longer
    Prevented, // the work can't be done, through no fault of its own
    Done,
};

// Chosen anew for each process: what it writes by mistake, or as a guess, is no message.
using MessageNonce = std::uint64_t;

struct MessageHead {
    MessageNonce nonce;
    MessageKind kind;
    std::uint32_t length;
};
static_assert(sizeof(MessageHead) == 16); // nothing in it is left to chance

// Of a text; what is longer is cut off.
inline constexpr std::size_t kLongestMessage = 1 << 20;

// With which a process ends that can't tell any more, since what it tells by was closed there.
inline constexpr int kMutedExitCode = 125;

} // namespace zqm::cli
