#include "platform/utf8.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <string>

namespace zqm::platform {
namespace {

using testing::Optional;

struct Character {
    std::string bytes;
    std::u16string units;
};

const std::array kCharacters = std::to_array<Character>({
    {"\x7F", u"\x7F"},
    {"\xC2\x80", u"\x80"},
    {"\xDF\xBF", u"\x7FF"},
    {"\xE0\xA0\x80", u"\x800"},
    {"\xED\x9F\xBF", u"\xD7FF"},
    {"\xEE\x80\x80", u"\xE000"},
    {"\xEF\xBB\xBF", u"\xFEFF"},
    {"\xEF\xBF\xBF", u"\xFFFF"},
    {"\xF0\x90\x80\x80", u"\xD800\xDC00"},
    {"\xF4\x8F\xBF\xBF", u"\xDBFF\xDFFF"},
});

const std::array<std::string, 15> kMalformed{
    "\x80",             // continues nothing
    "\xBF",             //
    "\xC3",             // ends too early
    "\xE2\x82",         //
    "\xF0\x9F\x98",     //
    "\xC3x",            //
    "\xC0\x80",         // longer than need be
    "\xC1\xBF",         //
    "\xE0\x9F\xBF",     //
    "\xF0\x8F\xBF\xBF", //
    "\xED\xA0\x80",     // surrogates
    "\xED\xBF\xBF",     //
    "\xF4\x90\x80\x80", // beyond Unicode
    "\xFE",             // never in UTF-8
    "\x80\x80\x80\x80\x80",
};

TEST(Utf8, IsConvertedBothWaysWhereverACharacterStands) {
    for (const Character& character : kCharacters) {
        for (const std::size_t before :
             {0U, 1U, 1023U, 1024U, 2044U, 2045U, 2046U, 2047U, 2048U, 4094U, 4095U, 9999U}) {
            const std::string bytes = std::string(before, 'x') + character.bytes + "yz";
            const std::u16string units = std::u16string(before, u'x') + character.units + u"yz";
            EXPECT_THAT(decodeUtf8(bytes), Optional(units)) << before;
            EXPECT_EQ(encodeUtf8(units), bytes) << before;
        }
    }
    EXPECT_THAT(decodeUtf8(""), Optional(std::u16string()));
    EXPECT_EQ(encodeUtf8(u""), "");
}

TEST(Utf8, IsRefusedWhereItIsMalformed) {
    for (const std::string& malformed : kMalformed) {
        for (const std::size_t before : {0U, 1U, 2043U, 2044U, 2045U, 2046U, 2047U, 2048U}) {
            for (const std::size_t after : {0U, 1U, 5000U}) {
                const std::string bytes = std::string(before, 'x') + malformed + std::string(after, 'y');
                EXPECT_EQ(decodeUtf8(bytes), std::nullopt) << testing::PrintToString(bytes);
            }
        }
    }
}

TEST(Utf8, NeedsRoom) {
    std::array<char, 4> room{};
    EXPECT_THAT(encodeUtf8(u"\u20ACx", room), Optional(4U));
    EXPECT_EQ(std::string(room.data(), room.size()), "\u20ACx");
    EXPECT_EQ(encodeUtf8(u"\u20ACxy", room), std::nullopt);
    EXPECT_THAT(encodeUtf8(u"", std::span<char>()), Optional(0U));
    EXPECT_EQ(encodeUtf8(u"x", std::span<char>()), std::nullopt);
}

TEST(Utf8, HasNoLoneSurrogates) {
    std::array<char, 16> room{};
    for (const char16_t* const text : {u"\xD800", u"\xDFFF", u"a\xD83D", u"\xDE00\xD83D"}) {
        EXPECT_EQ(encodeUtf8(text, room), std::nullopt);
    }
}

TEST(Utf8, IsAsciiUnlessAByteIsHigh) {
    for (std::size_t size = 0; size < 40; ++size) {
        EXPECT_TRUE(isAscii(std::string(size, '\x7F')));
        for (std::size_t place = 0; place < size; ++place) {
            std::string bytes(size, '\0');
            bytes[place] = '\x80';
            EXPECT_FALSE(isAscii(bytes)) << place << " of " << size;
        }
    }
}

} // namespace
} // namespace zqm::platform
