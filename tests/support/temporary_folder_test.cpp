#include "tests/support/temporary_folder.h"

#include <fstream>

#include <gtest/gtest.h>

namespace zqm::support {
namespace {

TEST(TemporaryFolder, IsEmptyAndItsOwnAndGoesWithAllItHolds) {
    std::filesystem::path path;
    {
        const TemporaryFolder folder;
        const TemporaryFolder other;
        path = folder.path();
        EXPECT_NE(path, other.path());
        EXPECT_TRUE(std::filesystem::is_empty(path));
        std::filesystem::create_directory(folder / "inner");
        std::ofstream(folder / "inner" / "file") << "text";
    }
    EXPECT_FALSE(std::filesystem::exists(path));
}

} // namespace
} // namespace zqm::support
