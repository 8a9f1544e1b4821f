// The search for leaks gets through with every block of thread-local variables, wherever it lies.

#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>
#include <sanitizer/lsan_interface.h>

#include <dlfcn.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace zqm {
namespace {

// As many as fill a page and more.
constexpr int kLibraries = 100;
// What the sanitizer takes for the block of a C library that puts a head of its own before it.
constexpr std::uintptr_t kPage = 4096;
constexpr std::uintptr_t kHead = 16;

TEST(ThreadLocalVariables, AreSearchedForLeaksWhereverTheirBlockLies) {
    const support::TemporaryFolder folder;
    std::vector<std::uintptr_t> placesInPages;
    for (int number = 0; number < kLibraries; ++number) {
        const auto copy = folder / (std::to_string(number) + ".so");
        std::filesystem::copy_file(ZQM_THREAD_LOCAL_BLOCK, copy);
        void* const library = ::dlopen(copy.c_str(), RTLD_NOW);
        ASSERT_NE(library, nullptr) << ::dlerror();
        const auto block = reinterpret_cast<const void* (*)()>(::dlsym(library, "blockOfThisThread"));
        ASSERT_NE(block, nullptr);
        placesInPages.push_back(reinterpret_cast<std::uintptr_t>(block()) % kPage);
    }
    EXPECT_NE(std::find(placesInPages.begin(), placesInPages.end(), kHead), placesInPages.end());
    EXPECT_EQ(__lsan_do_recoverable_leak_check(), 0);
}

} // namespace
} // namespace zqm
