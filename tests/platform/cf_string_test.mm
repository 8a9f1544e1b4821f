#include <CoreFoundation/CoreFoundation.h>
#import <Foundation/Foundation.h>

#include "tests/platform/raised_exception.h"

#include <gtest/gtest.h>
#include <numeric>
#include <string>
#include <string_view>
#include <vector>

extern "C" CFIndex lengthOfHelloInC(void);

namespace {

using namespace std::string_view_literals;
using zqm::platform::test::raisedBy;

CFStringRef create(std::string_view bytes, CFStringEncoding encoding, bool external = false) {
    CFStringRef const string =
        CFStringCreateWithBytes(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(bytes.data()),
                                static_cast<CFIndex>(bytes.size()), encoding, external ? 1 : 0);
    return string != nullptr ? (CFStringRef)[(id)string autorelease] : nullptr;
}

CFStringRef create(std::u16string_view units) {
    return (CFStringRef)[(id)CFStringCreateWithCharacters(kCFAllocatorDefault,
                                                          reinterpret_cast<const UniChar*>(units.data()),
                                                          static_cast<CFIndex>(units.size())) autorelease];
}

std::u16string units(CFStringRef string) {
    std::u16string result(static_cast<std::size_t>(CFStringGetLength(string)), u'\0');
    CFStringGetCharacters(string, CFRangeMake(0, CFStringGetLength(string)),
                          reinterpret_cast<UniChar*>(result.data()));
    return result;
}

std::string bytes(CFStringRef string, CFStringEncoding encoding, bool external = false, UInt8 loss = 0) {
    CFIndex used = 0;
    const CFRange all = CFRangeMake(0, CFStringGetLength(string));
    CFStringGetBytes(string, all, encoding, loss, external ? 1 : 0, nullptr, 0, &used);
    std::string result(static_cast<std::size_t>(used), '\0');
    CFStringGetBytes(string, all, encoding, loss, external ? 1 : 0, reinterpret_cast<UInt8*>(result.data()),
                     used, &used);
    EXPECT_EQ(static_cast<CFIndex>(result.size()), used);
    return result;
}

TEST(CFString, IsUsableFromC) {
    EXPECT_EQ(5, lengthOfHelloInC());
}

TEST(CFString, IsAFoundationString) {
    CFStringRef const string = create("Gr\xC3\xBC\xC3\x9F"sv, kCFStringEncodingUTF8);
    EXPECT_TRUE([(NSString*)string isEqualToString:[NSString stringWithUTF8String:"Grüß"]]);
    EXPECT_EQ(4, CFStringGetLength((CFStringRef) @"abcd"));
}

TEST(CFString, EmptyBytesMakeAnEmptyString) {
    EXPECT_EQ(u"", units(create(""sv, kCFStringEncodingUTF8)));
    CFStringRef const string = CFStringCreateWithBytes(nullptr, nullptr, 0, kCFStringEncodingUTF8, 0);
    ASSERT_NE(nullptr, string);
    EXPECT_EQ(0, CFStringGetLength(string));
    CFRelease(string);
}

TEST(CFString, ImpossibleArgumentsMakeNone) {
    const UInt8 byte = 'a';
    const UniChar unit = 'a';
    EXPECT_EQ(nullptr, CFStringCreateWithBytes(nullptr, &byte, -1, kCFStringEncodingUTF8, 0));
    EXPECT_EQ(nullptr, CFStringCreateWithBytes(nullptr, nullptr, 1, kCFStringEncodingUTF8, 0));
    EXPECT_EQ(nullptr, CFStringCreateWithCharacters(nullptr, &unit, -1));
    EXPECT_EQ(nullptr, CFStringCreateWithCharacters(nullptr, nullptr, 1));
}

TEST(CFString, InvalidBytesMakeNone) {
    for (const std::string_view invalid :
         {"\xC3"sv, "\xFF"sv, "a\xC0\x80"sv, "\xED\xA0\x80"sv, "\xF4\x90\x80\x80"sv}) {
        EXPECT_EQ(nullptr, create(invalid, kCFStringEncodingUTF8));
    }
    EXPECT_EQ(nullptr, create("\x80"sv, kCFStringEncodingASCII));
    EXPECT_EQ(nullptr, create("abc"sv, kCFStringEncodingUTF16)) << "half a unit";
    EXPECT_EQ(nullptr, create("\0\xD8\0\0"sv, kCFStringEncodingUTF32LE)) << "a surrogate";
    EXPECT_EQ(nullptr, create("\0\0\x11\0"sv, kCFStringEncodingUTF32LE)) << "beyond U+10FFFF";
    EXPECT_EQ(nullptr, create("\0\0\0"sv, kCFStringEncodingUTF32LE)) << "three bytes";
}

TEST(CFString, UnknownEncodingsMakeNone) {
    for (const CFStringEncoding encoding : {0xFFFFU, 0xFFFFFFFFU, 0x0101U, 0x00FFU, 0x0BFFU}) {
        EXPECT_EQ(nullptr, create("abc"sv, encoding)) << encoding;
        char buffer[8] = "";
        EXPECT_FALSE(CFStringGetCString((CFStringRef) @"abc", buffer, sizeof buffer, encoding)) << encoding;
        CFIndex used = 7;
        EXPECT_EQ(
            0, CFStringGetBytes((CFStringRef) @"abc", CFRangeMake(0, 3), encoding, 0, 0, nullptr, 0, &used));
        EXPECT_EQ(0, used);
    }
}

struct MarkCase {
    const char* name;
    CFStringEncoding encoding;
    std::string_view bytes;
    bool external;
    std::u16string_view expected;
};

class ByteOrderMarks : public testing::TestWithParam<MarkCase> {};

TEST_P(ByteOrderMarks, AreReadAsTheFlagSays) {
    CFStringRef const string = create(GetParam().bytes, GetParam().encoding, GetParam().external);
    ASSERT_NE(nullptr, string);
    EXPECT_EQ(GetParam().expected, units(string));
}

INSTANTIATE_TEST_SUITE_P(
    All, ByteOrderMarks,
    testing::Values(
        MarkCase{"Utf8External", kCFStringEncodingUTF8, "\xEF\xBB\xBFhi"sv, true, u"hi"sv},
        MarkCase{"Utf8Internal", kCFStringEncodingUTF8, "\xEF\xBB\xBFhi"sv, false, u"\uFEFFhi"sv},
        MarkCase{"Utf8OnlyTheFirst", kCFStringEncodingUTF8, "\xEF\xBB\xBF\xEF\xBB\xBF"sv, true, u"\uFEFF"sv},
        MarkCase{"Utf16LittleExternal", kCFStringEncodingUTF16, "\xFF\xFEh\0"sv, true, u"h"sv},
        MarkCase{"Utf16BigExternal", kCFStringEncodingUTF16, "\xFE\xFF\0h"sv, true, u"h"sv},
        MarkCase{"Utf16NoMark", kCFStringEncodingUTF16, "h\0"sv, true, u"h"sv},
        MarkCase{"Utf16Internal", kCFStringEncodingUTF16, "\xFF\xFEh\0"sv, false, u"\uFEFFh"sv},
        MarkCase{"Utf16OnlyMark", kCFStringEncodingUTF16, "\xFE\xFF"sv, true, u""sv},
        MarkCase{"Utf16BigByName", kCFStringEncodingUTF16BE, "\0h"sv, true, u"h"sv},
        MarkCase{"Utf16LittleByName", kCFStringEncodingUTF16LE, "h\0"sv, true, u"h"sv},
        MarkCase{"Utf16LittleByNameKeepsTheMark", kCFStringEncodingUTF16LE, "\xFF\xFEh\0"sv, true,
                 u"\uFEFFh"sv},
        MarkCase{"Utf32LittleExternal", kCFStringEncodingUTF32, "\xFF\xFE\0\0h\0\0\0"sv, true, u"h"sv},
        MarkCase{"Utf32BigExternal", kCFStringEncodingUTF32, "\0\0\xFE\xFF\0\x01\xF6\0"sv, true,
                 u"\U0001F600"sv},
        MarkCase{"Utf32NoMark", kCFStringEncodingUTF32, "h\0\0\0"sv, true, u"h"sv},
        MarkCase{"Utf32Internal", kCFStringEncodingUTF32, "\xFF\xFE\0\0h\0\0\0"sv, false, u"\uFEFFh"sv},
        MarkCase{"Utf32BigByName", kCFStringEncodingUTF32BE, "\0\0\0h"sv, true, u"h"sv},
        MarkCase{"OthersHaveNone", kCFStringEncodingISOLatin1, "\xFF\xFEh"sv, true, u"\u00FF\u00FEh"sv}),
    [](const auto& row) { return row.param.name; });

TEST(CFString, KeepsLoneSurrogates) {
    for (const std::u16string& text :
         {std::u16string(u"a\xD800"), std::u16string(u"\xDC00z"), std::u16string(u"\xDC00\xD800"),
          std::u16string(u"\xD83D\xD83D\xDE00")}) {
        CFStringRef const string = create(text);
        ASSERT_NE(nullptr, string);
        EXPECT_EQ(text, units(string));
        EXPECT_EQ([(NSString*)string characterAtIndex:0], text[0]);
        NSException* const raised =
            raisedBy([&] { static_cast<void>([(NSString*)string characterAtIndex:text.size()]); });
        EXPECT_TRUE([[raised name] isEqual:NSRangeException]);
        EXPECT_TRUE([(id)string isEqual:(id)create(text)]);
        EXPECT_EQ([(id)string hash], [(id)create(text) hash]);
        NSString* const copy = [[(NSString*)string copy] autorelease];
        EXPECT_EQ(text, units((CFStringRef)copy));
        const std::string raw(reinterpret_cast<const char*>(text.data()), text.size() * 2);
        EXPECT_EQ(text, units(create(raw, kCFStringEncodingUTF16)));
        EXPECT_EQ(raw, bytes(string, kCFStringEncodingUTF16));
    }
}

TEST(CFString, KeepsWhatLooksLikeAByteOrderMark) {
    for (const std::u16string& text : {std::u16string(u"\xFEFF"), std::u16string(u"\xFFFEz"),
                                       std::u16string(u"a\xFFFF\xFEFF"), std::u16string(1, u'\0')}) {
        EXPECT_EQ(text, units(create(text)));
    }
}

TEST(CFString, LoneSurrogatesHaveNoBytes) {
    char buffer[32];
    for (const CFStringEncoding encoding :
         {CFStringEncoding{kCFStringEncodingUTF8}, CFStringEncoding{kCFStringEncodingMacRoman},
          CFStringEncoding{0x0641}}) {
        EXPECT_FALSE(CFStringGetCString(create(u"a\xD800"), buffer, sizeof buffer, encoding));
        EXPECT_FALSE(CFStringGetCString(create(u"\xDC00z"), buffer, sizeof buffer, encoding));
    }
}

TEST(CFString, GetCStringNeedsRoomForTheNul) {
    CFStringRef const string = create("Gr\xC3\xBC\xC3\x9F"sv, kCFStringEncodingUTF8);
    char buffer[7];
    EXPECT_FALSE(CFStringGetCString(string, buffer, 6, kCFStringEncodingUTF8));
    ASSERT_TRUE(CFStringGetCString(string, buffer, 7, kCFStringEncodingUTF8));
    EXPECT_STREQ("Gr\xC3\xBC\xC3\x9F", buffer);
    EXPECT_FALSE(CFStringGetCString(string, buffer, 0, kCFStringEncodingUTF8));
    EXPECT_FALSE(CFStringGetCString(string, buffer, -1, kCFStringEncodingUTF8));
    EXPECT_FALSE(CFStringGetCString(string, nullptr, 7, kCFStringEncodingUTF8));
    EXPECT_FALSE(CFStringGetCString(nullptr, buffer, 7, kCFStringEncodingUTF8));
}

TEST(CFString, GetCStringOfNothingIsAnEmptyText) {
    char buffer[1] = {'x'};
    ASSERT_TRUE(CFStringGetCString((CFStringRef) @"", buffer, 1, kCFStringEncodingUTF8));
    EXPECT_EQ('\0', buffer[0]);
}

TEST(CFString, GetCStringRefusesWhatTheEncodingLacks) {
    char buffer[16];
    CFStringRef const euro = create(u"5 \u20AC");
    EXPECT_FALSE(CFStringGetCString(euro, buffer, sizeof buffer, kCFStringEncodingASCII));
    EXPECT_FALSE(CFStringGetCString(euro, buffer, sizeof buffer, kCFStringEncodingISOLatin1));
    ASSERT_TRUE(CFStringGetCString(euro, buffer, sizeof buffer, kCFStringEncodingWindowsLatin1));
    EXPECT_STREQ("5 \x80", buffer);
    ASSERT_TRUE(CFStringGetCString(euro, buffer, sizeof buffer, kCFStringEncodingMacRoman));
    EXPECT_STREQ("5 \xDB", buffer);
}

TEST(CFString, GetCStringIsForEightBitEncodings) {
    char buffer[64];
    for (const CFStringEncoding encoding :
         {kCFStringEncodingUTF16, kCFStringEncodingUTF16BE, kCFStringEncodingUTF16LE, kCFStringEncodingUTF32,
          kCFStringEncodingUTF32BE, kCFStringEncodingUTF32LE}) {
        EXPECT_FALSE(CFStringGetCString((CFStringRef) @"abc", buffer, sizeof buffer, encoding)) << encoding;
    }
}

TEST(CFString, GetCStringKeepsNulCharacters) {
    char buffer[4] = "xxx";
    ASSERT_TRUE(CFStringGetCString(create(u"a\0b"sv), buffer, sizeof buffer, kCFStringEncodingUTF8));
    EXPECT_EQ("a\0b\0"sv, std::string_view(buffer, 4));
}

// Long ones go to UTF-8 in portions.
TEST(CFString, GetCStringSplitsNoSurrogatePair) {
    for (const std::size_t before : {1022U, 1023U, 1024U, 2046U, 2047U, 2048U}) {
        const std::u16string text = std::u16string(before, u'x') + u"\U0001F600\u20AC";
        std::vector<char> buffer(before + 8, '?');
        EXPECT_FALSE(CFStringGetCString(create(text), buffer.data(), static_cast<CFIndex>(buffer.size() - 1),
                                        kCFStringEncodingUTF8));
        ASSERT_TRUE(CFStringGetCString(create(text), buffer.data(), static_cast<CFIndex>(buffer.size()),
                                       kCFStringEncodingUTF8));
        EXPECT_EQ(std::string(before, 'x') + "\xF0\x9F\x98\x80\xE2\x82\xAC", buffer.data());
    }
}

TEST(CFString, GetCStringRefusesLoneSurrogatesWhereverTheyStand) {
    std::vector<char> buffer(20'000);
    for (const std::size_t before : {1022U, 1023U, 1024U, 2047U}) {
        for (const char16_t* const end : {u"\xD83D", u"\xDE00", u"\xD83Dx", u"\xD83D\xD83D\xDE00"}) {
            const std::u16string text = std::u16string(before, u'\u00E9') + end;
            EXPECT_FALSE(CFStringGetCString(create(text), buffer.data(), static_cast<CFIndex>(buffer.size()),
                                            kCFStringEncodingUTF8));
        }
    }
}

TEST(CFString, OfAsciiKeepsEachCharacter) {
    std::string all(128, '\0');
    std::iota(all.begin(), all.end(), '\0');
    for (const CFStringEncoding encoding : {kCFStringEncodingUTF8, kCFStringEncodingASCII}) {
        EXPECT_EQ(std::u16string(all.begin(), all.end()), units(create(all, encoding)));
    }
}

TEST(CFString, GetCStringOfTenMillionCharacters) {
    const std::u16string text(10'000'000, u'\u00E9');
    CFStringRef const string = create(text);
    std::vector<char> buffer(text.size() * 2 + 1);
    EXPECT_FALSE(CFStringGetCString(string, buffer.data(), static_cast<CFIndex>(buffer.size() - 1),
                                    kCFStringEncodingUTF8));
    ASSERT_TRUE(CFStringGetCString(string, buffer.data(), static_cast<CFIndex>(buffer.size()),
                                   kCFStringEncodingUTF8));
    EXPECT_EQ(text.size() * 2, std::string_view(buffer.data()).size());
}

TEST(CFString, GetCharactersBeyondTheEndRaises) {
    for (CFStringRef const string : {create(u"abc"), create(u"ab\xD800")}) {
        NSException* const raised = raisedBy([&] {
            UniChar buffer[8];
            CFStringGetCharacters(string, CFRangeMake(2, 2), buffer);
        });
        ASSERT_NE(nil, raised);
        EXPECT_TRUE([[raised name] isEqualToString:NSRangeException]);
    }
}

TEST(CFString, GetBytesMarksTheOrderOfAnExternalRepresentation) {
    CFStringRef const string = create(u"h");
    EXPECT_EQ("\xFF\xFEh\0"sv, bytes(string, kCFStringEncodingUTF16, true));
    EXPECT_EQ("h\0"sv, bytes(string, kCFStringEncodingUTF16));
    EXPECT_EQ("\0h"sv, bytes(string, kCFStringEncodingUTF16BE, true));
    EXPECT_EQ("\xFF\xFE\0\0h\0\0\0"sv, bytes(string, kCFStringEncodingUTF32, true));
    EXPECT_EQ("h\0\0\0"sv, bytes(string, kCFStringEncodingUTF32));
    EXPECT_EQ("h"sv, bytes(string, kCFStringEncodingUTF8, true));
}

TEST(CFString, GetBytesStopsAtACharacterWithoutAPlace) {
    CFStringRef const string = create(u"ab\U0001F600cd");
    UInt8 buffer[16];
    CFIndex used = 0;
    EXPECT_EQ(2,
              CFStringGetBytes(string, CFRangeMake(0, 6), kCFStringEncodingASCII, 0, 0, buffer, 16, &used));
    EXPECT_EQ(2, used);
    EXPECT_EQ(6,
              CFStringGetBytes(string, CFRangeMake(0, 6), kCFStringEncodingASCII, '?', 0, buffer, 16, &used));
    EXPECT_EQ("ab?cd"sv, std::string_view(reinterpret_cast<char*>(buffer), static_cast<std::size_t>(used)));
    EXPECT_EQ(2,
              CFStringGetBytes(string, CFRangeMake(0, 6), kCFStringEncodingASCII, '?', 0, buffer, 2, &used));
    EXPECT_EQ(4,
              CFStringGetBytes(string, CFRangeMake(0, 6), kCFStringEncodingASCII, '?', 0, buffer, 3, &used));
    EXPECT_EQ(5,
              CFStringGetBytes(string, CFRangeMake(0, 6), kCFStringEncodingASCII, '?', 0, buffer, 4, &used));
}

TEST(CFString, GetBytesStopsWhereTheRoomEnds) {
    CFStringRef const string = create(u"a\u00E9\U0001F600z");
    const CFIndex fits[] = {0, 1, 1, 2, 2, 2, 2, 4, 5, 5};
    const CFIndex sizes[] = {0, 1, 1, 3, 3, 3, 3, 7, 8, 8};
    for (CFIndex room = 0; room < 10; ++room) {
        UInt8 buffer[16];
        CFIndex used = -1;
        EXPECT_EQ(fits[room], CFStringGetBytes(string, CFRangeMake(0, 5), kCFStringEncodingUTF8, 0, 0, buffer,
                                               room, &used))
            << room;
        EXPECT_EQ(sizes[room], used) << room;
    }
    CFIndex used = 0;
    UInt8 buffer[4];
    EXPECT_EQ(1, CFStringGetBytes(string, CFRangeMake(1, 1), kCFStringEncodingUTF8, 0, 0, buffer, 4, &used));
    EXPECT_EQ(2, used);
}

TEST(CFBase, RetainAndReleaseCountReferences) {
    CFStringRef const string = create(u"a text of its own \xD800");
    const NSUInteger before = [(id)string retainCount];
    EXPECT_EQ(string, CFRetain(string));
    EXPECT_EQ(before + 1, [(id)string retainCount]);
    CFRelease(string);
    EXPECT_EQ(before, [(id)string retainCount]);
}

TEST(CFBaseDeathTest, NullEndsTheProcessWithAMessage) {
    EXPECT_DEATH(CFRetain(nullptr), "CFRetain was called with null");
    EXPECT_DEATH(CFRelease(nullptr), "CFRelease was called with null");
}

} // namespace
