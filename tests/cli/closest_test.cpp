#include "cli/command_line/closest.h"

#include <gtest/gtest.h>

#include <string>

namespace zqm::cli {
namespace {

TEST(Mistakes, AreCounted) {
    EXPECT_EQ(mistakes("voices", "voices"), 0U);
    EXPECT_EQ(mistakes("Gmw/EN_us", "gmw/en-US"), 0U);
    EXPECT_EQ(mistakes("sya", "say"), 1U) << "swapped";
    EXPECT_EQ(mistakes("lisen", "listen"), 1U) << "left out";
    EXPECT_EQ(mistakes("listten", "listen"), 1U) << "added";
    EXPECT_EQ(mistakes("listan", "listen"), 1U) << "mistyped";
    EXPECT_EQ(mistakes("lsitan", "listen"), 2U);
}

TEST(Mistakes, OfWhatWasOnlyBegunOrCarriedOnAreFew) {
    EXPECT_EQ(mistakes("Engl", "English (America)"), 1U);
    EXPECT_EQ(mistakes("de-CH", "de"), 1U);
    EXPECT_EQ(mistakes("desk", "de"), kFar);
    EXPECT_EQ(mistakes("e", "English"), kFar) << "too little to go by";
}

TEST(Mistakes, AreTooManyForWhatIsNotAlike) {
    EXPECT_EQ(mistakes("xyzzy", "gmw/de"), kFar);
    EXPECT_EQ(mistakes("", "de"), kFar);
    EXPECT_EQ(mistakes("say", ""), kFar);
    EXPECT_EQ(mistakes("say", "sit"), kFar);
    EXPECT_EQ(mistakes(std::string(100000, 'a'), std::string(100000, 'b')), kFar);
}

TEST(Nearest, IsTheOneWithTheFewestMistakes) {
    EXPECT_EQ(nearest("voice", {"say", "voices", "voice"}), "voice");
    EXPECT_EQ(nearest("vioces", {"say", "voices", "voice"}), "voices");
    EXPECT_EQ(nearest("xyzzy", {"say", "voices"}), "");
    EXPECT_EQ(nearest("-5", {"-f", "-o"}), "") << "too short to tell";
}

} // namespace
} // namespace zqm::cli
