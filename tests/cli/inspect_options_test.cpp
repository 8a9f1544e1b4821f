#include "cli/inspect/inspect_options.h"

#include "tests/cli/wrong_use.h"

#include <gtest/gtest.h>

#include <string>
#include <variant>
#include <vector>

namespace zqm::cli {
namespace {

InspectOptions parse(const std::vector<const char*>& arguments) {
    return std::get<InspectOptions>(parseInspectOptions(arguments));
}

TEST(InspectOptions, ALibraryAloneMeansText) {
    const InspectOptions options = parse({"some/lib.so"});
    EXPECT_EQ(options.library, "some/lib.so");
    EXPECT_FALSE(options.json);
    EXPECT_FALSE(options.markdown);
}

TEST(InspectOptions, EveryOptionIsTakenBeforeAndBehind) {
    EXPECT_TRUE(parse({"--json", "lib.so"}).json);
    EXPECT_FALSE(parse({"--json", "lib.so"}).markdown);
    EXPECT_TRUE(parse({"lib.so", "--markdown"}).markdown);
    EXPECT_FALSE(parse({"lib.so", "--markdown"}).json);
    EXPECT_EQ(parse({"--", "-lib.so"}).library, "-lib.so");
}

class InspectOptionsWrongUse : public testing::TestWithParam<WrongUse> {};

TEST_P(InspectOptionsWrongUse, IsAUsageErrorInOneLine) {
    expectComplaint(parse, GetParam());
}

INSTANTIATE_TEST_SUITE_P(
    All, InspectOptionsWrongUse,
    testing::Values(
        WrongUse{{}, "there is no library to inspect; zqmspeech inspect --help tells how"},
        WrongUse{{""}, "there is no library to inspect"},
        WrongUse{{"--json"}, "there is no library to inspect"},
        WrongUse{{"a.so", "b.so"}, "one library is inspected at a time, and b.so is a second one"},
        WrongUse{{"a.so", "--", "b.so"}, "b.so is a second one"},
        WrongUse{{"--json", "--markdown", "a.so"}, "--json and --markdown can't both be given"},
        WrongUse{{"-lib.so"}, "-lib.so is not an option (a library that begins with - goes after --)"},
        WrongUse{{"--json=3", "a.so"}, "--json"}, WrongUse{{"--markdown=yes", "a.so"}, "--markdown"}));

} // namespace
} // namespace zqm::cli
