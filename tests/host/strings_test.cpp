#include "entries.h"

#include "zqmhost/zqmhost.h"

#include <CoreFoundation/CoreFoundation.h>
#include <gmock/gmock.h>
#include <string>

namespace zqm::host::test {
namespace {

using testing::IsEmpty;
using namespace std::string_literals;

struct Encoded {
    std::uint32_t encoding;
    std::string bytes;
    std::string utf8;
};

class StringEncoding : public testing::TestWithParam<Encoded> {
protected:
    Runtime runtime;
};

TEST_P(StringEncoding, IsReadAsText) {
    const String string = runtime.string(GetParam().bytes, GetParam().encoding);
    EXPECT_EQ(string.encoding(), GetParam().encoding);
    EXPECT_EQ(string.bytes(), GetParam().bytes);
    EXPECT_EQ(string.text(), GetParam().utf8);
}

TEST_P(StringEncoding, BecomesACFString) {
    const String string = runtime.string(GetParam().bytes, GetParam().encoding);
    CFStringRef text = call<CFStringRef>("REALGetStringCFString", string.handle(), 0U);
    ASSERT_NE(text, nullptr);
    char buffer[100] = {};
    EXPECT_TRUE(CFStringGetCString(text, buffer, sizeof buffer, kCFStringEncodingUTF8));
    EXPECT_EQ(buffer, GetParam().utf8);
    CFRelease(text);
}

TEST_P(StringEncoding, IsConvertedBothWays) {
    const String string = runtime.string(GetParam().bytes, GetParam().encoding);
    const String utf8 =
        runtime.adopt(call<REALstring>("REALConvertString", string.handle(), encoding::kUtf8));
    EXPECT_EQ(utf8.bytes(), GetParam().utf8);
    EXPECT_EQ(utf8.encoding(), encoding::kUtf8);
    if (GetParam().encoding == encoding::kNone) {
        return;
    }
    const String back =
        runtime.adopt(call<REALstring>("REALConvertString", utf8.handle(), GetParam().encoding));
    EXPECT_EQ(back.bytes(), GetParam().bytes);
    EXPECT_EQ(back.encoding(), GetParam().encoding);
}

TEST_P(StringEncoding, IsHandedOutAsData) {
    const String string = runtime.string(GetParam().bytes, GetParam().encoding);
    REALstringData data{};
    ASSERT_TRUE(call<bool>("PluginGetStringData", string.handle(), encoding::kUtf8, &data));
    EXPECT_EQ(std::string(data.data, static_cast<std::size_t>(data.length)), GetParam().utf8);
    EXPECT_EQ(data.encoding, encoding::kUtf8);
    EXPECT_EQ(runtime.ledger().stringData.handles, 1);
    call<void>("PluginDisposeStringData", &data);
    EXPECT_EQ(runtime.ledger().stringData.handles, 0);
    EXPECT_THAT(runtime.reports(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(All, StringEncoding,
                         testing::Values(Encoded{encoding::kUtf8, "Größe 😀", "Größe 😀"},
                                         Encoded{encoding::kAscii, "abc", "abc"},
                                         Encoded{encoding::kMacRoman, "Gr\x9A\xA7"s + "e", "Größe"},
                                         Encoded{encoding::kIsoLatin1, "Gr\xF6\xDF"s + "e", "Größe"},
                                         Encoded{encoding::kWindowsLatin1, "\x80 5", "€ 5"},
                                         Encoded{encoding::kUtf16, "\x3D\xD8\x00\xDE!\0"s, "😀!"},
                                         Encoded{encoding::kUtf32, "\x00\xF6\x01\x00!\0\0\0"s, "😀!"},
                                         Encoded{encoding::kNone, "Gr\x9A"s, "Grö"},
                                         Encoded{encoding::kUtf8, "", ""}));

class Strings : public testing::Test {
protected:
    Runtime runtime;
};

TEST_F(Strings, BuiltWithoutEncodingHaveNone) {
    const String string = runtime.adopt(call<REALstring>("REALBuildString", "ab\0c", std::int32_t{4}));
    EXPECT_EQ(string.encoding(), encoding::kNone);
    EXPECT_EQ(string.bytes(), "ab\0c"s);
}

TEST_F(Strings, OfLengthZeroAreEmptyAndOfNoBytesAreNil) {
    EXPECT_EQ(call<REALstring>("REALBuildString", static_cast<const char*>(nullptr), std::int32_t{3}),
              nullptr);
    const String empty = runtime.adopt(
        call<REALstring>("REALBuildStringWithEncoding", "x", std::int32_t{0}, encoding::kAscii));
    EXPECT_FALSE(empty.isNull());
    EXPECT_EQ(empty.bytes(), "");
    EXPECT_EQ(empty.encoding(), encoding::kAscii);
    EXPECT_THAT(runtime.reports(), IsEmpty());
}

TEST_F(Strings, BytesAreFollowedByANul) {
    const String string = runtime.string("abc");
    const char* bytes = call<const char*>("StringGetCString", string.handle());
    EXPECT_STREQ(bytes, "abc");
    EXPECT_STREQ(call<const char*>("StringGetCString", REALstring{nullptr}), "");
}

TEST_F(Strings, RelabellingConvertsNothing) {
    const String string = runtime.string("Gr\xF6", encoding::kNone);
    call<void>("REALSetStringEncoding", string.handle(), encoding::kIsoLatin1);
    EXPECT_EQ(call<std::uint32_t>("REALGetStringEncoding", string.handle()), encoding::kIsoLatin1);
    EXPECT_EQ(string.bytes(), "Gr\xF6");
    EXPECT_EQ(string.text(), "Grö");
}

TEST_F(Strings, ThatAreNoTextOfTheirEncodingSaySo) {
    const String string = runtime.string("\xFF\xFE", encoding::kUtf8);
    EXPECT_THROW(string.text(), CallError);
    EXPECT_EQ(call<CFStringRef>("REALGetStringCFString", string.handle(), 0U), nullptr);
    EXPECT_EQ(call<REALstring>("REALConvertString", string.handle(), encoding::kUtf16), nullptr);
    REALstringData data{};
    EXPECT_FALSE(call<bool>("PluginGetStringData", string.handle(), encoding::kUtf8, &data));
}

TEST_F(Strings, OfAnUnknownEncodingAreNoText) {
    constexpr std::uint32_t kNoEncoding = 0x00ABCDEF;
    EXPECT_THROW(runtime.string("abc", kNoEncoding).text(), CallError);
    EXPECT_EQ(call<REALstring>("REALConvertString", runtime.string("abc").handle(), kNoEncoding), nullptr);
}

TEST_F(Strings, CharactersThatTheTargetLacksBecomeQuestionMarks) {
    const String ascii = runtime.adopt(
        call<REALstring>("REALConvertString", runtime.string("a😀b").handle(), encoding::kAscii));
    EXPECT_EQ(ascii.bytes().front(), 'a');
    EXPECT_EQ(ascii.bytes().back(), 'b');
    EXPECT_NE(ascii.bytes().find('?'), std::string::npos);
}

TEST_F(Strings, LenBCountsBytes) {
    auto* lenB = reinterpret_cast<std::int64_t (*)(REALstring)>(call<void*>(
        "REALLoadGlobalMethod", static_cast<const char*>(nullptr), "LenB( s as string ) as integer"));
    ASSERT_NE(lenB, nullptr);
    EXPECT_EQ(lenB(runtime.string("größe").handle()), 7);
    EXPECT_EQ(lenB(runtime.string("a\0b"s).handle()), 3);
    EXPECT_EQ(lenB(nullptr), 0);
    EXPECT_THAT(runtime.reports(), IsEmpty());
    EXPECT_EQ(lenB(reinterpret_cast<REALstring>(this)), 0);
    EXPECT_EQ(runtime.reports().size(), 1U);
}

TEST_F(Strings, GlobalMethodsAreFoundBySignatureAlone) {
    const auto load = [](const char* module, const char* declaration) {
        return call<void*>("REALLoadGlobalMethod", module, declaration);
    };
    EXPECT_NE(load(nullptr, "lenb(text as STRING) as Int64"), nullptr);
    EXPECT_EQ(load(nullptr, "LenB(s as String)"), nullptr);
    EXPECT_EQ(load(nullptr, "Nothing as Integer"), nullptr);
    EXPECT_EQ(load("Module", "LenB(s as String) as Integer"), nullptr);
}

TEST_F(Strings, CopiesAndMovesBalanceTheirLocks) {
    const Ledger before = runtime.ledger();
    {
        String one = runtime.string("x");
        String two = one;
        EXPECT_EQ(runtime.ledger().strings.locks, 2);
        String three = std::move(two);
        EXPECT_EQ(runtime.ledger().strings.locks, 2);
        one = three;
        three = String();
        EXPECT_EQ(runtime.ledger().strings.locks, 1);
        String& same = one;
        one = same;
        EXPECT_EQ(one.text(), "x");
        REALstring released = one.release();
        EXPECT_TRUE(one.isNull());
        const String back = runtime.adopt(released);
        const String borrowed = runtime.borrow(released);
        EXPECT_EQ(runtime.ledger().strings.locks, 2);
    }
    EXPECT_EQ(runtime.ledger(), before);
    EXPECT_THAT(runtime.reports(), IsEmpty());
}

TEST_F(Strings, NilIsTheEmptyText) {
    const String none;
    EXPECT_EQ(none.text(), "");
    EXPECT_EQ(none.bytes(), "");
    EXPECT_TRUE(runtime.adopt(REALstring{nullptr}).isNull());
    EXPECT_TRUE(runtime.borrow(REALobject{nullptr}).isNull());
}

} // namespace
} // namespace zqm::host::test
