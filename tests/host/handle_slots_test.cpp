#include "handle_slots.h"

#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <set>

namespace zqm::host::test {
namespace {

using State = HandleSlots::State;

constexpr HandleLayout kPlain{HandleKind::String, 40};
constexpr HandleLayout kWithBlock{HandleKind::Object, 40, 56};
constexpr std::size_t kLarge = 3'000'000;

std::byte* given(void* memory) {
    return static_cast<std::byte*>(memory) + HandleSlots::lead(kWithBlock.own);
}

void* live(HandleSlots& slots, const HandleLayout& layout) {
    void* memory = slots.take(layout);
    slots.makeLive(memory);
    return memory;
}

TEST(HandleSlots, AreFoundByTheAddressThatIsGiven) {
    HandleSlots slots;
    void* plain = live(slots, kPlain);
    void* withBlock = live(slots, kWithBlock);
    EXPECT_EQ(slots.at(plain).memory, plain);
    EXPECT_EQ(slots.at(plain).kind, HandleKind::String);
    EXPECT_EQ(slots.at(given(withBlock)).memory, withBlock);
    EXPECT_EQ(slots.at(given(withBlock)).kind, HandleKind::Object);
}

TEST(HandleSlots, HaveNothingAtAnyOtherAddress) {
    HandleSlots slots;
    auto* first = static_cast<std::byte*>(live(slots, kWithBlock));
    auto* second = static_cast<std::byte*>(live(slots, kWithBlock));
    for (std::byte* address = first - 64; address < second + 4096; ++address) {
        const bool there = address == given(first) || address == given(second);
        EXPECT_EQ(slots.at(address).state, there ? State::Live : State::Free) << address - first;
    }
    EXPECT_EQ(slots.at(nullptr).state, State::Free);
    EXPECT_EQ(slots.at(&slots).state, State::Free);
}

TEST(HandleSlots, TellTheirState) {
    HandleSlots slots;
    void* memory = slots.take(kPlain);
    EXPECT_EQ(slots.at(memory).state, State::Free) << "before something is made there";
    slots.makeLive(memory);
    EXPECT_EQ(slots.at(memory).state, State::Live);
    slots.makeDead(memory);
    EXPECT_EQ(slots.at(memory).state, State::Dead);
    EXPECT_NE(live(slots, kPlain), memory);
    slots.giveBack(memory);
    EXPECT_EQ(slots.at(memory).state, State::Free);
    EXPECT_EQ(live(slots, kPlain), memory);
}

TEST(HandleSlots, DoNotOverlapHoweverMany) {
    constexpr std::size_t kMany = 20'000; // more than a chunk of them
    HandleSlots slots;
    std::set<std::byte*> taken;
    for (std::size_t i = 0; i < kMany; ++i) {
        auto* memory = static_cast<std::byte*>(live(slots, kWithBlock));
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(given(memory)) % 16, 0U);
        std::memset(memory, 1, kWithBlock.own);
        std::memset(given(memory), 1, kWithBlock.given);
        taken.insert(memory);
    }
    ASSERT_EQ(taken.size(), kMany);
    const std::byte* end = nullptr;
    for (std::byte* memory : taken) {
        EXPECT_TRUE(end == nullptr || memory >= end);
        end = given(memory) + kWithBlock.given;
        EXPECT_EQ(slots.at(given(memory)).memory, memory);
    }
    std::size_t met = 0;
    slots.forEachLive([&](HandleKind kind, void* memory) {
        EXPECT_EQ(kind, HandleKind::Object);
        met += taken.count(static_cast<std::byte*>(memory));
    });
    EXPECT_EQ(met, kMany);
}

TEST(HandleSlots, HoldWhatIsLargerThanAChunk) {
    HandleSlots slots;
    const HandleLayout large{HandleKind::Object, kWithBlock.own, kLarge};
    void* one = live(slots, large);
    void* other = live(slots, large);
    std::memset(given(one), 1, kLarge);
    std::memset(given(other), 2, kLarge);
    EXPECT_EQ(slots.at(given(one)).memory, one);
    EXPECT_EQ(slots.at(given(other)).memory, other);
    EXPECT_EQ(slots.at(given(one) + kLarge / 2).state, State::Free);
    EXPECT_EQ(given(one)[kLarge - 1], std::byte{1});
    slots.makeDead(one);
    EXPECT_EQ(slots.at(given(one)).state, State::Dead);
    slots.giveBack(one);
    EXPECT_EQ(live(slots, large), one);
}

#ifdef __SANITIZE_ADDRESS__
TEST(HandleSlots, LetNobodyReachBeyondThemOrTheDead) {
    HandleSlots slots;
    void* memory = live(slots, kWithBlock);
    volatile auto* block = reinterpret_cast<volatile char*>(given(memory));
    block[kWithBlock.given - 1] = 1;
    EXPECT_DEATH(block[kWithBlock.given] = 1, "use-after-poison");
    EXPECT_DEATH(block[-1] = 1, "use-after-poison");
    slots.makeDead(memory);
    EXPECT_DEATH(block[0] = 1, "use-after-poison");
}
#endif

} // namespace
} // namespace zqm::host::test
