#include "tests/support/utf16.h"

#include <stdexcept>

#include <gtest/gtest.h>

namespace zqm::support {
namespace {

TEST(Utf16, ConvertsBothWays) {
    EXPECT_EQ(toUtf16("aé日𝒳"), u"aé日𝒳");
    EXPECT_EQ(toUtf16("𝒳").size(), 2U);
    EXPECT_EQ(toUtf8(u"aé日𝒳"), "aé日𝒳");
    EXPECT_EQ(toUtf16(""), u"");
    EXPECT_EQ(toUtf8({}), "");
    EXPECT_EQ(toUtf16(std::string_view("a\0b", 3)).size(), 3U);
}

TEST(Utf16, ReplacesWhatIsInvalid) {
    EXPECT_EQ(toUtf16("a\xFF"
                      "b"),
              u"a\uFFFD"
              u"b");
    const std::u16string lone = {u'a', 0xD800, u'b'};
    EXPECT_EQ(toUtf8(lone), "a\uFFFDb");
}

TEST(Utf16, CutsInUnits) {
    EXPECT_EQ(cut("𝒳 wort", 3, 4), "wort");
    EXPECT_EQ(cut("ab", 2, 0), "");
    EXPECT_THROW(cut("ab", 1, 2), std::out_of_range);
    EXPECT_THROW(cut("ab", 3, 0), std::out_of_range);
}

TEST(Utf16, KnowsWhereAPairWouldBeParted) {
    EXPECT_TRUE(partsSurrogatePair(u"a𝒳b", 2));
    EXPECT_FALSE(partsSurrogatePair(u"a𝒳b", 1));
    EXPECT_FALSE(partsSurrogatePair(u"a𝒳b", 3));
    EXPECT_FALSE(partsSurrogatePair(u"", 0));
}

} // namespace
} // namespace zqm::support
