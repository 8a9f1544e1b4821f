// What tests/sanitizers/callers.c finds is what libgcc finds.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <dlfcn.h>
#include <unwind.h>

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <thread>
#include <vector>

namespace zqm {
namespace {

using Addresses = std::vector<std::uintptr_t>;
using Backtrace = _Unwind_Reason_Code (*)(_Unwind_Trace_Fn, void*);

constexpr std::size_t kMostCompared = 40;

_Unwind_Reason_Code visit(_Unwind_Context* context, void* argument) {
    auto& addresses = *static_cast<Addresses*>(argument);
    const std::uintptr_t address = _Unwind_GetIP(context);
    if (address == 0) { // libgcc's, of the outermost
        return _URC_END_OF_STACK;
    }
    addresses.push_back(address);
    return addresses.size() < kMostCompared ? _URC_NO_REASON : _URC_END_OF_STACK;
}

Addresses callersBy(Backtrace backtrace) {
    Addresses addresses;
    addresses.reserve(kMostCompared);
    backtrace(&visit, &addresses);
    return addresses;
}

// From where this is called on: the calls of the two differ in callersOf itself.
void compare() {
    const auto original = reinterpret_cast<Backtrace>(::dlsym(RTLD_NEXT, "_Unwind_Backtrace"));
    ASSERT_NE(original, nullptr);
    ASSERT_NE(original, &_Unwind_Backtrace);
    std::array<Addresses, 2> found;
    const std::array<Backtrace, 2> ways{original, &_Unwind_Backtrace};
    for (std::size_t way = 0; way < ways.size(); ++way) {
        found.at(way) = callersBy(ways.at(way));
    }
    EXPECT_GE(found[0].size(), 5U);
    EXPECT_EQ(found[1], found[0]);
}

struct Case {
    const char* name;
    std::function<void()> run;
};

void PrintTo(const Case& each, std::ostream* stream) {
    *stream << each.name;
}

// Keeps what is at an address in memory.
void use(void* address) {
    asm volatile("" : : "r"(address) : "memory");
}

[[gnu::noinline]] void onAlignedFrame(int count, ...) {
    std::va_list rest;
    va_start(rest, count);
    alignas(64) std::array<int, 100> block{va_arg(rest, int)};
    va_end(rest);
    use(block.data());
    compare();
    use(block.data());
}

[[gnu::noinline]] void onGrowingFrame(std::size_t size) {
    auto* block = static_cast<char*>(__builtin_alloca(size));
    *block = 0;
    use(block);
    compare();
    use(block);
}

[[gnu::noinline]] void deep(int levels) {
    if (levels == 0) {
        compare();
    } else {
        deep(levels - 1);
    }
    asm volatile("");
}

int compareInSort(const void* /*a*/, const void* /*b*/) {
    static thread_local bool isDone = false;
    if (!isDone) {
        isDone = true;
        compare();
    }
    return 0;
}

const std::array<Case, 7> kCases{{
    {"plain", [] { compare(); }},
    {"a callback of the C library",
     [] {
         std::array<int, 3> numbers{3, 2, 1};
         std::qsort(numbers.data(), numbers.size(), sizeof(int), &compareInSort);
     }},
    {"another thread", [] { std::thread(&compare).join(); }},
    {"an aligned frame", [] { onAlignedFrame(1, 2, 3.0, 4, 5, 6, 7, 8, 9); }},
    {"a frame that grows", [] { onGrowingFrame(1000); }},
    {"many frames", [] { deep(100); }},
    {"while an exception is handled",
     [] {
         try {
             throw 1;
         } catch (int) {
             compare();
         }
     }},
}};

class Callers : public testing::TestWithParam<Case> {};

TEST_P(Callers, AreThoseThatLibgccFinds) {
    for (int time = 0; time < 3; ++time) { // the first reads the tables, the others remember
        GetParam().run();
    }
}

INSTANTIATE_TEST_SUITE_P(All, Callers, testing::ValuesIn(kCases));

} // namespace
} // namespace zqm
