// Host strings to platform strings and back, on the reference host, at the versions where the way differs.

#include "plugin/host_strings.h"

#include "tests/plugin/plugin_host.h"
#include "tests/support/fresh_process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <new>
#include <string>
#include <tuple>
#include <vector>

static int arraysAllocated = 0;

void* operator new[](std::size_t size) {
    ++arraysAllocated;
    return std::malloc(size);
}

void operator delete[](void* memory) noexcept {
    std::free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace {

namespace encoding = zqm::host::encoding;
using testing::IsEmpty;

constexpr double kOldest = 2011.0;
constexpr double kVersions[] = {kOldest, 2012.0, 2013.0, 2023.02};

CFStringRef newCFString(const std::string& utf8) {
    return CFStringCreateWithBytes(nullptr, reinterpret_cast<const UInt8*>(utf8.data()),
                                   static_cast<CFIndex>(utf8.size()), kCFStringEncodingUTF8, false);
}

// The text of a CFString that the caller gives up; "(null)" for null.
std::string taken(CFStringRef string) {
    if (string == nullptr) {
        return "(null)";
    }
    std::vector<char> bytes(static_cast<std::size_t>(CFStringGetLength(string)) * 4 + 1);
    const bool fits =
        CFStringGetCString(string, bytes.data(), static_cast<CFIndex>(bytes.size()), kCFStringEncodingUTF8);
    CFRelease(string);
    return fits ? bytes.data() : "(not representable)";
}

template <typename Unit>
std::string bytesOf(const std::basic_string<Unit>& units) {
    return {reinterpret_cast<const char*>(units.data()), units.size() * sizeof(Unit)};
}

// ---- host to platform

struct HostText {
    const char* name;
    std::uint32_t encoding;
    std::string bytes;
    std::string utf8;
};

const HostText kHostTexts[] = {
    {"Utf8", encoding::kUtf8, "Grüße 😀", "Grüße 😀"},
    {"Ascii", encoding::kAscii, "plain", "plain"},
    {"MacRoman", encoding::kMacRoman, "caf\x8E", "café"},
    {"WindowsLatin1", encoding::kWindowsLatin1, "\x80 5", "€ 5"},
    {"IsoLatin1", encoding::kIsoLatin1, "na\xEFve", "naïve"},
    {"Utf16", encoding::kUtf16, bytesOf(std::u16string(u"Ωμέγα 😀")), "Ωμέγα 😀"},
    {"Utf32", encoding::kUtf32, bytesOf(std::u32string(U"日本😀")), "日本😀"},
    {"None", encoding::kNone, "caf\x8E", "café"},
    {"Empty", encoding::kUtf8, "", ""},
};

class HostToPlatform : public testing::TestWithParam<std::tuple<HostText, double>> {};

TEST_P(HostToPlatform, KeepsTheText) {
    const auto& [text, version] = GetParam();
    PluginHost host(version);
    const auto string = host->string(text.bytes, text.encoding);
    const auto before = host->ledger();
    EXPECT_EQ(taken(RBString2CFString(string.handle())), text.utf8);
    EXPECT_EQ(host->ledger(), before);
    EXPECT_THAT(host->reports(), IsEmpty());
}

// The host supplies no CFString: the bytes are read.
TEST_P(HostToPlatform, KeepsTheTextWhereTheHostMakesNoPlatformStrings) {
    zqm::support::inFreshProcess([] {
        const auto& [text, version] = GetParam();
        PluginHost host(version);
        PluginHost::refuse("REALGetStringCFString");
        const auto string = host->string(text.bytes, text.encoding);
        const auto before = host->ledger();
        EXPECT_EQ(taken(RBString2CFString(string.handle())), text.utf8);
        EXPECT_EQ(host->ledger(), before);
        EXPECT_THAT(host->reports(), IsEmpty());
    });
}

INSTANTIATE_TEST_SUITE_P(Encodings, HostToPlatform,
                         testing::Combine(testing::ValuesIn(kHostTexts), testing::ValuesIn(kVersions)),
                         [](const auto& row) {
                             return std::string(std::get<0>(row.param).name) + "At" +
                                    std::to_string(static_cast<int>(std::get<1>(row.param)));
                         });

TEST(RBString2CFString, OfNullIsNull) {
    PluginHost host;
    EXPECT_EQ(RBString2CFString(nullptr), nullptr);
}

TEST(RBString2CFString, ReadsAsMacRomanWhereTheHostCannotTellTheEncoding) {
    zqm::support::inFreshProcess([] {
        PluginHost host;
        PluginHost::refuse("REALGetStringEncoding");
        PluginHost::refuse("REALGetStringCFString");
        const auto string = host->string("caf\x8E", encoding::kWindowsLatin1);
        EXPECT_EQ(taken(RBString2CFString(string.handle())), "café");
    });
}

TEST(RBString2CFString, AsksAnOldHostOnceAndANewerOneTwice) {
    static int calls = 0;
    const auto count = [](REALstring, std::uint32_t options) -> CFStringRef {
        EXPECT_EQ(options, 0U);
        ++calls;
        return nullptr;
    };
    for (const auto& callsOfAHost : {std::pair{2011.999, 1}, std::pair{2012.0, 2}}) {
        zqm::support::inFreshProcess([&] {
            const auto& [version, expected] = callsOfAHost;
            PluginHost host(version);
            PluginHost::replace("REALGetStringCFString", +count);
            const auto string = host->string("text");
            EXPECT_EQ(taken(RBString2CFString(string.handle())), "text");
            EXPECT_EQ(calls, expected);
        });
    }
}

TEST(RBString2CFString, ResolvesTheSameNameOnceForEachOfItsTwoCallers) {
    zqm::support::inFreshProcess([] {
        PluginHost host(2023.02);
        const auto string = host->string("text");
        for (const std::size_t lookups : {1U, 2U, 2U}) {
            EXPECT_EQ(taken(lookups == 1 ? REALGetStringCFString(string.handle(), 0)
                                         : REALCopyStringCFString(string.handle(), 0)),
                      "text");
            EXPECT_EQ(host->entryPoints().lookups("REALGetStringCFString"), lookups);
        }
    });
}

TEST(RBString2CFString, NeverAsksForAPlatformStringOfAStringWithoutEncoding) {
    zqm::support::inFreshProcess([] {
        PluginHost host;
        const auto string = host->string("plain", encoding::kNone);
        const auto before = host->entryPoints().calls("REALGetStringCFString");
        EXPECT_EQ(taken(RBString2CFString(string.handle())), "plain");
        EXPECT_EQ(host->entryPoints().calls("REALGetStringCFString"), before);
    });
}

// Bytes are an external representation, whose mark tells the order and is no text; UTF-16 is read as it is.
TEST(RBString2CFString, TakesByteOrderMarksForWhatTheyAreInEachEncoding) {
    zqm::support::inFreshProcess([] {
        const std::string text16 = bytesOf(std::u16string(u"\uFEFFab"));
        const std::string bigEndian32{"\0\0\xFE\xFF\0\0\0a\0\0\0b", 12};
        for (const auto& [given, bytes, expected] :
             {std::tuple{encoding::kUtf8, std::string("\uFEFFab"), std::string("ab")},
              std::tuple{encoding::kUtf32, bytesOf(std::u32string(U"\uFEFFab")), std::string("ab")},
              std::tuple{encoding::kUtf32, bigEndian32, std::string("ab")},
              std::tuple{encoding::kUtf16, text16, std::string("\uFEFFab")}}) {
            PluginHost host;
            PluginHost::refuse("REALGetStringCFString");
            const auto string = host->string(bytes, given);
            EXPECT_EQ(taken(RBString2CFString(string.handle())), expected) << std::hex << given;
        }
    });
}

std::vector<std::string> hostCalls;

TEST(RBString2CFString, HoldsTheStringWhileItReadsTheBytes) {
    zqm::support::inFreshProcess([] {
        PluginHost host;
        static const auto resolver = zqm::host::Runtime::resolver();
        PluginHost::replace(
            "REALLockString", +[](REALstring string) {
                hostCalls.push_back("lock");
                reinterpret_cast<void (*)(REALstring)>(resolver("REALLockString"))(string);
            });
        PluginHost::replace(
            "StringGetCString", +[](REALstring string) {
                hostCalls.push_back("bytes");
                return reinterpret_cast<const char* (*)(REALstring)>(resolver("StringGetCString"))(string);
            });
        PluginHost::replace(
            "REALUnlockString", +[](REALstring string) {
                hostCalls.push_back("unlock");
                reinterpret_cast<void (*)(REALstring)>(resolver("REALUnlockString"))(string);
            });
        const auto string = host->string("held", encoding::kNone);
        EXPECT_EQ(taken(RBString2CFString(string.handle())), "held");
        EXPECT_THAT(hostCalls, testing::ElementsAre("lock", "bytes", "unlock"));
    });
}

TEST(RBString2CFString, IsNullOrEmptyWithoutWhatItNeedsToReadBytes) {
    for (const char* name : {"StringGetCString", "REALLoadGlobalMethod"}) {
        zqm::support::inFreshProcess([name] {
            PluginHost host;
            PluginHost::refuse(name);
            PluginHost::refuse("REALGetStringCFString");
            const auto string = host->string("text");
            const auto before = host->ledger();
            const std::string got = taken(RBString2CFString(string.handle()));
            EXPECT_EQ(got, std::string(name) == "StringGetCString" ? "(null)" : "");
            EXPECT_EQ(host->ledger(), before);
        });
    }
}

TEST(RBString2CFString, UnlocksNothingWhereTheHostCannotLock) {
    zqm::support::inFreshProcess([] {
        PluginHost host;
        PluginHost::refuse("REALLockString");
        const auto string = host->string("caf\x8E", encoding::kNone);
        const auto before = host->ledger();
        EXPECT_EQ(taken(RBString2CFString(string.handle())), "café");
        EXPECT_EQ(host->ledger(), before);
        EXPECT_THAT(host->reports(), IsEmpty());
    });
}

TEST(HostStringByteLength, AsksAgainForAMethodThatFailedToLoad) {
    zqm::support::inFreshProcess([] {
        PluginHost host;
        host->entryPoints().failCall("REALLoadGlobalMethod", 1);
        const auto string = host->string("four");
        EXPECT_EQ(hostStringByteLength(string.handle()), 0);
        EXPECT_EQ(hostStringByteLength(string.handle()), 4);
        EXPECT_EQ(hostStringByteLength(string.handle()), 4);
        EXPECT_EQ(host->entryPoints().calls("REALLoadGlobalMethod"), 2U);
    });
}

// ---- platform to host

class PlatformToHost : public testing::TestWithParam<std::string> {};

TEST_P(PlatformToHost, ArrivesInUtf8) {
    for (const double version : kVersions) {
        PluginHost host(version);
        CFStringRef text = newCFString(GetParam());
        const auto before = host->ledger();
        {
            const auto string = host->adopt(CFString2RBString(text));
            EXPECT_EQ(string.bytes(), GetParam());
            EXPECT_EQ(string.encoding(), encoding::kUtf8);
        }
        EXPECT_EQ(host->ledger(), before);
        EXPECT_THAT(host->reports(), IsEmpty());
        CFRelease(text);
    }
}

std::string repeated(const std::string& text, int times) {
    std::string result;
    for (int i = 0; i < times; ++i) {
        result += text;
    }
    return result;
}

// 99 and 100 units are either side of the buffer on the stack; three bytes a unit is the most that UTF-8
// needs.
INSTANTIATE_TEST_SUITE_P(Lengths, PlatformToHost,
                         testing::Values("a", "Grüße", "日本語", "😀", std::string(98, 'x'),
                                         std::string(99, 'x'), std::string(100, 'x'), repeated("語", 99),
                                         repeated("語", 100), repeated("😀", 49), repeated("😀", 50),
                                         repeated("日本語 😀 ", 10'000)));

TEST(CFString2RBString, OfNullAndOfAnEmptyStringIsNull) {
    PluginHost host;
    EXPECT_EQ(CFString2RBString(nullptr), nullptr);
    CFStringRef empty = newCFString("");
    EXPECT_EQ(CFString2RBString(empty), nullptr);
    CFRelease(empty);
}

TEST(CFString2RBString, TakesMemoryOnlyForMoreThan99Units) {
    PluginHost host;
    for (const auto& [units, buffers] : {std::pair{99, 0}, std::pair{100, 1}}) {
        CFStringRef string = newCFString(std::string(static_cast<std::size_t>(units), 'x'));
        arraysAllocated = 0;
        const REALstring result = CFString2RBString(string);
        EXPECT_EQ(arraysAllocated, buffers) << units;
        host->adopt(result);
        CFRelease(string);
    }
}

TEST(CFString2RBString, EndsAtTheFirstNul) {
    PluginHost host;
    for (const std::size_t length : {std::size_t{7}, std::size_t{200}}) {
        std::string text(length, 'y');
        text[3] = '\0';
        CFStringRef string = newCFString(text);
        EXPECT_EQ(host->adopt(CFString2RBString(string)).bytes(), "yyy");
        CFRelease(string);
    }
    CFStringRef leading = newCFString(std::string("\0abc", 4));
    EXPECT_EQ(CFString2RBString(leading), nullptr);
    CFRelease(leading);
}

TEST(CFString2RBString, OfALoneSurrogateIsNull) {
    PluginHost host;
    for (const std::size_t length : {std::size_t{3}, std::size_t{300}}) {
        std::u16string text(length, u'z');
        text[1] = 0xD83D;
        CFStringRef string = CFStringCreateWithCharacters(
            nullptr, reinterpret_cast<const UniChar*>(text.data()), static_cast<CFIndex>(text.size()));
        EXPECT_EQ(CFString2RBString(string), nullptr);
        CFRelease(string);
    }
    EXPECT_THAT(host->reports(), IsEmpty());
}

// ---- builders

struct Built {
    std::string bytes;
    std::uint32_t encoding = 0;
    friend bool operator==(const Built&, const Built&) = default;
};
std::ostream& operator<<(std::ostream& out, const Built& built) {
    return out << testing::PrintToString(built.bytes) << " in 0x" << std::hex << built.encoding;
}

Built build(PluginHost& host, const std::string& bytes, std::uint32_t encoding) {
    const auto string =
        host->adopt(REALBuildUnicodeString(bytes.data(), static_cast<std::int64_t>(bytes.size()), encoding));
    return string.isNull() ? Built{"(null)", 0} : Built{string.bytes(), string.encoding()};
}

TEST(REALBuildUnicodeString, RefusesNoDataAndLengthsOutOfRange) {
    PluginHost host;
    const char data[] = "data";
    EXPECT_EQ(REALBuildUnicodeString(nullptr, 4, encoding::kUtf8), nullptr);
    for (const std::int64_t length :
         {std::int64_t{0}, std::int64_t{-1}, std::int64_t{2'147'483'648},
          std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max()}) {
        EXPECT_EQ(REALBuildUnicodeString(data, length, encoding::kUtf8), nullptr) << length;
    }
}

TEST(REALBuildUnicodeString, MarksPlainAsciiInTheThreeEncodingsThatExtendIt) {
    PluginHost host;
    for (const std::uint32_t given : {encoding::kMacRoman, encoding::kWindowsLatin1, encoding::kNone}) {
        EXPECT_EQ(build(host, "abc\x7F", given), (Built{"abc\x7F", encoding::kAscii}));
        EXPECT_EQ(build(host, "ab\x80", given), (Built{"ab\x80", given}));
        EXPECT_EQ(build(host, "\xFF", given), (Built{"\xFF", given}));
    }
}

TEST(REALBuildUnicodeString, KeepsEveryOtherEncodingAsGiven) {
    PluginHost host;
    for (const std::uint32_t given :
         {encoding::kUtf8, encoding::kIsoLatin1, encoding::kAscii, std::uint32_t{0x0A01}}) {
        EXPECT_EQ(build(host, "abc", given), (Built{"abc", given}));
        EXPECT_EQ(build(host, "\xC3\xA9", given), (Built{"\xC3\xA9", given}));
    }
}

class UnicodeBuilders : public testing::TestWithParam<double> {};

TEST_P(UnicodeBuilders, ConvertUtf16ToUtf8) {
    PluginHost host(GetParam());
    const auto before = host->ledger();
    EXPECT_EQ(build(host, bytesOf(std::u16string(u"Grüße 😀")), encoding::kUtf16),
              (Built{"Grüße 😀", encoding::kUtf8}));
    const std::u16string text = u"x😀";
    {
        const auto string =
            host->adopt(REALBuildUnicodeStringUTF16(text.data(), static_cast<std::int64_t>(text.size() * 2)));
        EXPECT_EQ(string.bytes(), "x😀");
        EXPECT_EQ(string.encoding(), encoding::kUtf8);
    }
    EXPECT_EQ(host->ledger(), before);
    EXPECT_THAT(host->reports(), IsEmpty());
}

TEST_P(UnicodeBuilders, ConvertUtf32ToUtf8) {
    PluginHost host(GetParam());
    const auto before = host->ledger();
    // 199 units fit the buffer on the stack, 200 don't.
    for (const std::size_t units : {1U, 199U, 200U, 5'000U}) {
        const std::u32string text(units, U'😀');
        EXPECT_EQ(build(host, bytesOf(text), encoding::kUtf32),
                  (Built{repeated("😀", static_cast<int>(units)), encoding::kUtf8}));
    }
    EXPECT_EQ(build(host, bytesOf(std::u32string(U"aÿ\uFFFF𐀀\U0010FFFF")), encoding::kUtf32),
              (Built{"aÿ\uFFFF𐀀\U0010FFFF", encoding::kUtf8}));
    EXPECT_EQ(host->ledger(), before);
    EXPECT_THAT(host->reports(), IsEmpty());
}

// Which of the host's two builders is used, by the host's version.
TEST_P(UnicodeBuilders, UseTheBuilderWithAnEncodingAsSoonAsTheHostHasIt) {
    for (const auto& [given, since] :
         {std::pair{encoding::kUtf16, 2012.0}, std::pair{encoding::kUtf32, 2013.0}}) {
        PluginHost host(GetParam());
        const std::string bytes =
            given == encoding::kUtf16 ? bytesOf(std::u16string(u"ab")) : bytesOf(std::u32string(U"ab"));
        build(host, bytes, given);
        const bool toldWhole = GetParam() >= since;
        const bool toldAsUtf16 = !toldWhole && GetParam() >= 2012.0; // UTF-32 that was converted here
        EXPECT_EQ(host->entryPoints().calls("REALBuildStringWithEncoding"),
                  toldWhole || toldAsUtf16 ? 1U : 0U);
        EXPECT_EQ(host->entryPoints().calls("REALBuildString"), toldWhole || toldAsUtf16 ? 0U : 1U);
    }
}

TEST_P(UnicodeBuilders, PassOnlyTheLow32BitsOfALength) {
    PluginHost host(GetParam());
    const std::u16string text = u"ab";
    const std::int64_t length = (std::int64_t{1} << 32) + 4;
    EXPECT_EQ(host->adopt(REALBuildUnicodeStringUTF16(text.data(), length)).bytes(), "ab");
}

INSTANTIATE_TEST_SUITE_P(Versions, UnicodeBuilders, testing::ValuesIn(kVersions));

// On an older host the plugin itself makes UTF-16 of UTF-32; what reaches the host is looked at here.
struct Utf32Case {
    const char* name;
    std::u32string units;
    std::u16string expected;
};

class Utf32OnOldHosts : public testing::TestWithParam<Utf32Case> {};

TEST_P(Utf32OnOldHosts, BecomesTheseUnits) {
    zqm::support::inFreshProcess([] {
        PluginHost host(kOldest);
        PluginHost::replace(
            "REALBuildString", +[](const char* bytes, std::int32_t length) -> REALstring {
                EXPECT_EQ(std::u16string(reinterpret_cast<const char16_t*>(bytes),
                                         static_cast<std::size_t>(length) / 2),
                          GetParam().expected);
                return nullptr;
            });
        const std::u32string& units = GetParam().units;
        EXPECT_EQ(REALBuildUnicodeString(units.data(), static_cast<std::int64_t>(units.size() * 4),
                                         encoding::kUtf32),
                  nullptr);
    });
}

INSTANTIATE_TEST_SUITE_P(Units, Utf32OnOldHosts,
                         testing::Values(Utf32Case{"Emoji", {0x1F600}, {0xD83D, 0xDE00}},
                                         Utf32Case{"LastOfPlane0", {0xFFFF}, {0xFFFF}},
                                         Utf32Case{"FirstSupplementary", {0x10000}, {0xD800, 0xDC00}},
                                         Utf32Case{"LastSupplementary", {0x10FFFF}, {0xDBFF, 0xDFFF}},
                                         Utf32Case{"BeyondUnicode", {0x110000, 0xFFFFFFFF}, {0xFFFD, 0xFFFD}},
                                         Utf32Case{"SurrogatesAreDropped",
                                                   {U'a', 0xD800, 0xDBFF, 0xDC00, 0xDFFF, U'b'},
                                                   {u'a', u'b'}},
                                         Utf32Case{"BesideSurrogates", {0xD7FF, 0xE000}, {0xD7FF, 0xE000}}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(REALBuildUnicodeString, IsNullWithoutTheHostsBuilders) {
    for (const double version : kVersions) {
        for (const char* name : {"REALBuildString", "REALBuildStringWithEncoding", "REALConvertString"}) {
            zqm::support::inFreshProcess([version, name] {
                PluginHost host(version);
                PluginHost::refuse(name);
                const auto before = host->ledger();
                for (const std::uint32_t given : {encoding::kUtf8, encoding::kUtf16, encoding::kUtf32}) {
                    const std::string bytes(8, 'a');
                    host->adopt(REALBuildUnicodeString(bytes.data(), 8, given));
                }
                EXPECT_EQ(host->ledger(), before);
                EXPECT_THAT(host->reports(), IsEmpty());
            });
        }
    }
}

} // namespace
