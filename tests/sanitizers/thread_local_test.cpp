// The search for leaks gets through with every block of thread-local variables, wherever it lies.

#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>
#include <sanitizer/lsan_interface.h>

#include <dlfcn.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace zqm {
namespace {

// Each has one chance in 64, since blocks of its size lie 64 bytes apart.
constexpr int kMostLibraries = 3000;
constexpr std::size_t kMostBetween = 8;
// What the sanitizer takes for the block of a C library that puts a head of its own before it.
constexpr std::uintptr_t kPage = 4096;
constexpr std::uintptr_t kHead = 16;

using Block = std::array<char, 40>; // as large as that of the library

TEST(ThreadLocalVariables, AreSearchedForLeaksWhereverTheirBlockLies) {
    const support::TemporaryFolder folder;
    std::minstd_rand random(1);
    // How many of that size are taken for a library may be a divisor of how many are in a page; so others
    // stand between them.
    std::vector<std::unique_ptr<Block>> between;
    std::uintptr_t placeInPage = 0;
    for (int number = 0; placeInPage != kHead; ++number) {
        ASSERT_LT(number, kMostLibraries);
        const auto copy = folder / (std::to_string(number) + ".so");
        std::filesystem::copy_file(ZQM_THREAD_LOCAL_BLOCK, copy);
        void* const library = ::dlopen(copy.c_str(), RTLD_NOW);
        ASSERT_NE(library, nullptr) << ::dlerror();
        const auto block = reinterpret_cast<const void* (*)()>(::dlsym(library, "blockOfThisThread"));
        ASSERT_NE(block, nullptr);
        placeInPage = reinterpret_cast<std::uintptr_t>(block()) % kPage;
        for (std::size_t count = random() % kMostBetween; count > 0; --count) {
            between.push_back(std::make_unique<Block>());
        }
    }
    EXPECT_EQ(__lsan_do_recoverable_leak_check(), 0);
}

} // namespace
} // namespace zqm
