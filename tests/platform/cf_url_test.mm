#include <CoreFoundation/CoreFoundation.h>
#import <Foundation/Foundation.h>

#include <gtest/gtest.h>
#include <string>

namespace {

NSURL* url(NSString* text, NSURL* base = nil) {
    return [(NSURL*)CFURLCreateWithString(nullptr, (CFStringRef)text, (CFURLRef)base) autorelease];
}

NSString* fromUtf8(const char* text) {
    return [NSString stringWithUTF8String:text];
}

TEST(CFURL, IsAFoundationURL) {
    NSURL* const file = url(@"file:///tmp/a%20b%C3%A4.wav");
    ASSERT_NE(nil, file);
    EXPECT_TRUE([file isFileURL]);
    EXPECT_TRUE([[file path] isEqualToString:fromUtf8("/tmp/a bä.wav")]);
    EXPECT_TRUE([[url(@"http://example.org/a?b=c#d") host] isEqualToString:@"example.org"]);
}

TEST(CFURL, GivesOneReference) {
    CFURLRef const file = CFURLCreateWithString(nullptr, (CFStringRef) @"file:///tmp/a.wav", nullptr);
    EXPECT_EQ(1U, [(id)file retainCount]);
    CFRelease(file);
}

TEST(CFURL, MayBeRelative) {
    NSURL* const base = url(@"file:///tmp/folder/");
    EXPECT_TRUE([[[url(@"a.wav", base) absoluteURL] path] isEqualToString:@"/tmp/folder/a.wav"]);
    NSURL* const alone = url(@"a.wav");
    ASSERT_NE(nil, alone);
    EXPECT_EQ(nil, [alone scheme]);
    EXPECT_FALSE([alone isFileURL]);
}

class NoURL : public testing::TestWithParam<const char*> {};

TEST_P(NoURL, IsNull) {
    EXPECT_EQ(nil, url(fromUtf8(GetParam())));
}

INSTANTIATE_TEST_SUITE_P(All, NoURL,
                         testing::Values("", "file:///tmp/a b.wav", " ", "file:///tmp/ä.wav", "file:///tmp/%",
                                         "file:///tmp/%2", "file:///tmp/%zz.wav", "a\nb", "a\"b", "a<b",
                                         "a>b", "a\\b", "a^b", "a`b", "a{b", "a|b", "a}b",
                                         "file:///tmp/\x7F"));

TEST(CFURL, OfNullIsNull) {
    EXPECT_EQ(nullptr, CFURLCreateWithString(nullptr, nullptr, nullptr));
}

} // namespace
