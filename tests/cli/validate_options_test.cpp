#include "cli/validate/validate_options.h"

#include "tests/cli/wrong_use.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <variant>
#include <vector>

namespace zqm::cli {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

ValidateOptions parse(const std::vector<const char*>& arguments) {
    return std::get<ValidateOptions>(parseValidateOptions(arguments));
}

std::vector<std::string> namesOf(const std::vector<const Check*>& checks) {
    std::vector<std::string> names;
    for (const Check* check : checks) {
        names.emplace_back(check->name);
    }
    return names;
}

TEST(ValidateOptions, ALibraryAloneMeansAllChecks) {
    const ValidateOptions options = parse({"some/lib.so"});
    EXPECT_EQ(options.library, "some/lib.so");
    EXPECT_FALSE(options.list);
    EXPECT_FALSE(options.json);
    EXPECT_THAT(options.only, IsEmpty());
    EXPECT_FALSE(options.seed.has_value());
    EXPECT_EQ(options.timeLimit, 20);
}

TEST(ValidateOptions, EveryOptionIsTaken) {
    EXPECT_TRUE(parse({"--json", "lib.so"}).json);
    EXPECT_TRUE(parse({"--list"}).list);
    EXPECT_EQ(parse({"lib.so", "--seed", "18446744073709551615"}).seed, 18446744073709551615U);
    EXPECT_EQ(parse({"lib.so", "--seed=0"}).seed, 0U);
    EXPECT_EQ(parse({"lib.so", "--time-limit", "0.5"}).timeLimit, 0.5);
    EXPECT_EQ(parse({"--", "-lib.so"}).library, "-lib.so");
}

TEST(ValidateOptions, ChecksRunInTheirOrderAndOnce) {
    EXPECT_THAT(namesOf(parse({"lib.so", "--only", "start"}).only), ElementsAre("start"));
    EXPECT_THAT(namesOf(parse({"--only", "versions,load,versions,start", "lib.so"}).only),
                ElementsAre("load", "start", "versions"));
}

class ValidateOptionsWrongUse : public testing::TestWithParam<WrongUse> {};

TEST_P(ValidateOptionsWrongUse, IsAUsageErrorInOneLine) {
    expectComplaint(parse, GetParam());
}

INSTANTIATE_TEST_SUITE_P(
    All, ValidateOptionsWrongUse,
    testing::Values(
        WrongUse{{}, "there is no library to validate; zqmspeech validate --help tells how"},
        WrongUse{{""}, "there is no library to validate"},
        WrongUse{{"a.so", "b.so"}, "one library is validated at a time, and b.so is a second one"},
        WrongUse{{"-lib.so"}, "-lib.so is not an option (a library that begins with - goes after --)"},
        WrongUse{{"--only", "strat", "a.so"},
                 "no check is called strat (near it: start); zqmspeech validate --list lists them"},
        WrongUse{{"--only", "load,,start", "a.so"}, "no check is called "},
        WrongUse{{"--only", "load,", "a.so"}, "no check is called "},
        WrongUse{{"--only", "", "a.so"}, "no check is called "},
        WrongUse{{"--seed", "x", "a.so"}, "--seed: x is not a whole number"},
        WrongUse{{"--seed=-1", "a.so"}, "--seed: -1 is not a whole number"},
        WrongUse{{"--seed", "18446744073709551616", "a.so"}, "is not a whole number from 0 to"},
        WrongUse{{"--seed", "", "a.so"}, "--seed: "},
        WrongUse{{"--time-limit", "0", "a.so"}, "0 is not a number from 0.1 to 3600"},
        WrongUse{{"--list", "a.so"}, "--list only prints a list: \"a.so\" can't be given with it"},
        WrongUse{{"--list", "--json"}, "--json can't be given with it"},
        WrongUse{{"--json=3", "a.so"}, "--json"}, WrongUse{{"--list=3"}, "--list"}));

TEST(Checks, HaveNamesOfTheirOwnAndNeedEarlierOnes) {
    std::set<std::string_view> names{""};
    for (const Check& check : checks()) {
        EXPECT_TRUE(names.contains(check.needs)) << check.name;
        EXPECT_TRUE(names.insert(check.name).second) << check.name;
        EXPECT_FALSE(check.summary.empty()) << check.name;
        EXPECT_EQ(check.name.find_first_not_of("abcdefghijklmnopqrstuvwxyz-"), std::string_view::npos);
    }
}

} // namespace
} // namespace zqm::cli
