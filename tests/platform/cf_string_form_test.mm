#include <CoreFoundation/CoreFoundation.h>
#import <Foundation/Foundation.h>

#include <gtest/gtest.h>
#include <string>
#include <string_view>

namespace {

CFStringRef create(std::u16string_view units) {
    return (CFStringRef)[(id)CFStringCreateWithCharacters(kCFAllocatorDefault,
                                                          reinterpret_cast<const UniChar*>(units.data()),
                                                          static_cast<CFIndex>(units.size())) autorelease];
}

CFMutableStringRef createMutable(std::u16string_view units) {
    return (
        CFMutableStringRef)[(id)CFStringCreateMutableCopy(kCFAllocatorDefault, 0, create(units)) autorelease];
}

std::u16string units(CFStringRef string) {
    std::u16string result(static_cast<std::size_t>(CFStringGetLength(string)), u'\0');
    CFStringGetCharacters(string, CFRangeMake(0, CFStringGetLength(string)),
                          reinterpret_cast<UniChar*>(result.data()));
    return result;
}

std::u16string inForm(CFStringNormalizationForm form, std::u16string_view text) {
    CFMutableStringRef const string = createMutable(text);
    CFStringNormalize(string, form);
    return units(string);
}

TEST(CFMutableString, IsACopyThatCanBeChanged) {
    for (const std::u16string text : {u"", u"a", u"\u00FC\u0000b", u"\U0001F600", u"\xD800", u"a\xDC00z"}) {
        CFStringRef const original = create(text);
        CFMutableStringRef const copy = CFStringCreateMutableCopy(nullptr, 1, original);
        EXPECT_EQ(1U, [(id)copy retainCount]);
        EXPECT_EQ(text, units(copy));
        [(NSMutableString*)copy appendString:@"!"];
        EXPECT_EQ(text + u"!", units(copy));
        EXPECT_EQ(text, units(original));
        CFRelease(copy);
    }
}

TEST(CFMutableString, IsNoCopyOfNull) {
    EXPECT_EQ(nullptr, CFStringCreateMutableCopy(nullptr, 0, nullptr));
}

// One text in all four forms: a letter with a mark, a ligature, a Hangul syllable, and beyond 16 bits.
struct Forms {
    const char* name;
    std::u16string d, kd, c, kc;
};

void PrintTo(const Forms& forms, std::ostream* out) {
    *out << forms.name;
}

class Normalized : public testing::TestWithParam<Forms> {};

TEST_P(Normalized, IsInTheForm) {
    const Forms& forms = GetParam();
    for (const std::u16string& text : {forms.d, forms.c}) {
        EXPECT_EQ(forms.d, inForm(kCFStringNormalizationFormD, text));
        EXPECT_EQ(forms.kd, inForm(kCFStringNormalizationFormKD, text));
        EXPECT_EQ(forms.c, inForm(kCFStringNormalizationFormC, text));
        EXPECT_EQ(forms.kc, inForm(kCFStringNormalizationFormKC, text));
    }
}

INSTANTIATE_TEST_SUITE_P(
    All, Normalized,
    testing::Values(Forms{"Empty", u"", u"", u"", u""}, Forms{"Plain", u"abc", u"abc", u"abc", u"abc"},
                    Forms{"Mark", u"u\u0308", u"u\u0308", u"\u00FC", u"\u00FC"},
                    Forms{"Ligature", u"\uFB01", u"fi", u"\uFB01", u"fi"},
                    Forms{"Hangul", u"\u1112\u1161\u11AB", u"\u1112\u1161\u11AB", u"\uD55C", u"\uD55C"},
                    Forms{"Pair", u"\U00011099\U000110BA", u"\U00011099\U000110BA", u"\U0001109A",
                          u"\U0001109A"},
                    Forms{"LoneSurrogate", u"\xD800u\u0308\xDC00", u"\xD800u\u0308\xDC00",
                          u"\xD800\u00FC\xDC00", u"\xD800\u00FC\xDC00"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(CFStringNormalize, ChangesNothingForWhatIsNoForm) {
    EXPECT_EQ(u"u\u0308", inForm(-1, u"u\u0308"));
    EXPECT_EQ(u"\u00FC", inForm(4, u"\u00FC"));
    CFStringNormalize(nullptr, kCFStringNormalizationFormD);
}

TEST(CFStringNormalize, HasApplesNumbers) {
    EXPECT_EQ(0, kCFStringNormalizationFormD);
    EXPECT_EQ(1, kCFStringNormalizationFormKD);
    EXPECT_EQ(2, kCFStringNormalizationFormC);
    EXPECT_EQ(3, kCFStringNormalizationFormKC);
}

} // namespace
