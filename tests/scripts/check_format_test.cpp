// scripts/check-format tells what it lacks, or doesn't know, from sources that are not laid out.

#include "tests/scripts/script_project.h"

#include <gtest/gtest.h>

namespace zqm::tests {
namespace {

constexpr const char* kScript = "scripts/check-format";
constexpr const char* kSource = "int  answer ;\n";

TEST(CheckFormat, FindsSourcesAndLaysThemOutWhenAsked) {
    const ScriptProject project(kScript);
    project.write("answer.h", kSource);
    const auto found = project.run({});
    EXPECT_EQ(found.exitCode, 1);
    EXPECT_EQ(found.errors,
              "./answer.h is not laid out as .clang-format wants: clang-format -i ./answer.h\n");
    EXPECT_EQ(project.read("answer.h"), kSource);
    EXPECT_EQ(project.run({"--fix"}).exitCode, 0);
    EXPECT_EQ(project.read("answer.h"), "int answer;\n");
    EXPECT_EQ(project.run({}).exitCode, 0);
}

TEST(CheckFormat, RefusesOtherArguments) {
    const ScriptProject project(kScript);
    project.write("answer.h", kSource);
    for (const char* argument : {"--fixx", "answer.h"}) {
        const auto result = project.run({argument});
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.errors, "scripts/check-format takes nothing but --fix.\n");
    }
    EXPECT_EQ(project.read("answer.h"), kSource);
}

TEST(CheckFormat, SaysThatThereIsNoClangFormat) {
    const ScriptProject project(kScript);
    project.write("answer.h", kSource);
    const auto result = project.runWithOnly({"bash", "dirname", "find"}, {});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors, "clang-format is missing: install the package clang-format\n");
}

} // namespace
} // namespace zqm::tests
