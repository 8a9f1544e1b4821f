// scripts/tidy reads what is named, or says that it doesn't.

#include "tests/scripts/script_project.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zqm::tests {
namespace {

using testing::AllOf;
using testing::HasSubstr;

class Tidy : public testing::Test {
protected:
    Tidy() {
        project_.replace("cmake", "");
        project_.replace("clang-tidy", "echo \"$@\" >>'" + (project_ / "read").string() + "'");
        for (const char* file : {"engine/a.c", "engine/b.cpp", "engine/c.m", "engine/d.mm", "engine/e.h"}) {
            project_.write(file, "");
        }
    }

    const ScriptProject project_{"scripts/tidy"};
};

TEST_F(Tidy, ReadsSourcesOfAllLanguagesFromWhereverTheyAreNamed) {
    const auto result = project_.run({"a.c", "b.cpp", "./c.m", "../engine/d.mm"}, project_ / "engine");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors, "clang-tidy found nothing in 4 files.\n");
    const std::string folder = std::filesystem::canonical(project_ / "engine").string();
    EXPECT_THAT(project_.read("read"), AllOf(HasSubstr(' ' + folder + "/a.c " + folder + "/b.cpp\n"),
                                             HasSubstr(' ' + folder + "/c.m " + folder + "/d.mm\n")));
}

TEST_F(Tidy, RefusesAHeader) {
    const auto result = project_.run({"engine/e.h"}, project_ / "");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors, "engine/e.h is no source that is compiled.\n");
}

TEST_F(Tidy, RefusesAFileThatIsNotThere) {
    const auto result = project_.run({"engine/f.cpp"}, project_ / "");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("engine/f.cpp"));
    EXPECT_FALSE(std::filesystem::exists(project_ / "read"));
}

} // namespace
} // namespace zqm::tests
