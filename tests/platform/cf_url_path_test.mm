#include <CoreFoundation/CoreFoundation.h>
#import <Foundation/Foundation.h>

#include <gtest/gtest.h>
#include <optional>
#include <string>

namespace {

using Text = std::optional<std::string>;

NSString* fromUtf8(const std::string& text) {
    return [NSString stringWithUTF8String:text.c_str()];
}

CFURLRef makeUrl(const std::string& text, const std::string& base = "") {
    CFURLRef const baseUrl = base.empty() ? nullptr : makeUrl(base);
    CFURLRef const url = CFURLCreateWithString(nullptr, (CFStringRef)fromUtf8(text), baseUrl);
    EXPECT_NE(nullptr, url) << text;
    return (CFURLRef)[(id)url autorelease];
}

// Lets go of the one reference.
Text taken(CFStringRef string) {
    NSString* const text = [(NSString*)string autorelease];
    return text != nil ? Text([text UTF8String]) : std::nullopt;
}

Text taken(CFURLRef url) {
    NSURL* const object = [(NSURL*)url autorelease];
    return object != nil ? Text([(NSString*)CFURLGetString(url) UTF8String]) : std::nullopt;
}

Text last(const std::string& url) {
    return taken(CFURLCopyLastPathComponent(makeUrl(url)));
}

Text up(const std::string& url) {
    return taken(CFURLCreateCopyDeletingLastPathComponent(nullptr, makeUrl(url)));
}

Text down(const std::string& url, const std::string& name, bool isDirectory = false) {
    return taken(CFURLCreateCopyAppendingPathComponent(nullptr, makeUrl(url), (CFStringRef)fromUtf8(name),
                                                       isDirectory ? 1 : 0));
}

Text path(const std::string& url, CFURLPathStyle style = kCFURLPOSIXPathStyle) {
    return taken(CFURLCopyFileSystemPath(makeUrl(url), style));
}

TEST(CFURLString, IsThatOfTheURLAlone) {
    EXPECT_TRUE([(NSString*)CFURLGetString(makeUrl("a%20b", "file:///tmp/")) isEqualToString:@"a%20b"]);
    EXPECT_EQ(nullptr, CFURLGetString(nullptr));
}

TEST(LastPathComponent, IsUnescaped) {
    EXPECT_EQ("b", last("file:///a/b"));
    EXPECT_EQ("b", last("file:///a/b/"));
    EXPECT_EQ("b", last("file:///a/b//"));
    EXPECT_EQ("a b%ü", last("file:///x/a%20b%25%C3%BC"));
    EXPECT_EQ("b", last("http://example.org/a/b?q=/c#/d"));
    EXPECT_EQ("a", last("a"));
    EXPECT_EQ("b", last("a/b"));
    EXPECT_EQ("..", last("file:///a/.."));
}

TEST(LastPathComponent, OfARootIsASlash) {
    EXPECT_EQ("/", last("file:///"));
    EXPECT_EQ("/", last("http://example.org/"));
}

TEST(LastPathComponent, WithoutAPathIsEmpty) {
    EXPECT_EQ("", last("http://example.org"));
    EXPECT_EQ("", last("mailto:someone@example.org"));
}

TEST(LastPathComponent, OfBytesThatAreNoTextIsNull) {
    EXPECT_EQ(std::nullopt, last("file:///a/%FF"));
    EXPECT_EQ("b", last("file:///%FF/b"));
}

TEST(DeletingLastPathComponent, LeavesTheFolder) {
    EXPECT_EQ("file:///a/", up("file:///a/b"));
    EXPECT_EQ("file:///a/", up("file:///a/b/"));
    EXPECT_EQ("file:///a/", up("file:///a/b//"));
    EXPECT_EQ("file:///", up("file:///a"));
    EXPECT_EQ("file:///a%20b/", up("file:///a%20b/%FF"));
    EXPECT_EQ("a/", up("a/b"));
    EXPECT_EQ("./", up("a"));
    EXPECT_EQ("http://example.org/a/?q#f", up("http://example.org/a/b?q#f"));
}

TEST(DeletingLastPathComponent, GoesUpFromWhatHasNoName) {
    EXPECT_EQ("file:///../", up("file:///"));
    EXPECT_EQ("file:///a/../../", up("file:///a/.."));
    EXPECT_EQ("./../", up("./"));
}

TEST(DeletingLastPathComponent, NeedsAPath) {
    EXPECT_EQ(std::nullopt, up("http://example.org"));
    EXPECT_EQ(std::nullopt, up("mailto:someone@example.org"));
}

TEST(AppendingPathComponent, IsEscaped) {
    EXPECT_EQ("file:///a/b", down("file:///a", "b"));
    EXPECT_EQ("file:///a/b", down("file:///a/", "b"));
    EXPECT_EQ("file:///a/b/", down("file:///a/", "b", true));
    EXPECT_EQ("file:///a%20b%25%3F%23%3B%C3%BC", down("file:///", "a b%?#;ü"));
    EXPECT_EQ("file:///a/b/c", down("file:///a", "b/c"));
    EXPECT_EQ("a/b", down("a", "b"));
    EXPECT_EQ("http://example.org/a", down("http://example.org", "a"));
    EXPECT_EQ("http://example.org/a/b?q#f", down("http://example.org/a?q#f", "b"));
    EXPECT_EQ("file:///a/", down("file:///a", "", true));
}

TEST(AppendingPathComponent, NeedsAPathAndAText) {
    EXPECT_EQ(std::nullopt, down("mailto:someone@example.org", "a"));
    const UniChar lone = 0xD800;
    CFStringRef const string = CFStringCreateWithCharacters(nullptr, &lone, 1);
    EXPECT_EQ(nullptr, CFURLCreateCopyAppendingPathComponent(nullptr, makeUrl("file:///"), string, 0));
    CFRelease(string);
}

TEST(FileSystemPath, IsUnescaped) {
    EXPECT_EQ("/a/b c%ü", path("file:///a/b%20c%25%C3%BC"));
    EXPECT_EQ("/a/b", path("file:///a/b/"));
    EXPECT_EQ("/", path("file:///"));
    EXPECT_EQ("a/b", path("a/b/?q"));
    EXPECT_EQ("", path("http://example.org"));
}

TEST(FileSystemPath, IsNullForWhatHasNone) {
    EXPECT_EQ(std::nullopt, path("file:///a/%FF"));
    EXPECT_EQ(std::nullopt, path("mailto:someone@example.org"));
    EXPECT_EQ(std::nullopt, path("file:///a", kCFURLHFSPathStyle));
    EXPECT_EQ(std::nullopt, path("file:///a", kCFURLWindowsPathStyle));
}

TEST(CFURLPath, LeavesTheBaseAsItIs) {
    CFURLRef const url = makeUrl("b/c", "file:///a/");
    NSURL* const above = [(NSURL*)CFURLCreateCopyDeletingLastPathComponent(nullptr, url) autorelease];
    EXPECT_TRUE([[above relativeString] isEqualToString:@"b/"]);
    EXPECT_TRUE([[above absoluteString] isEqualToString:@"file:///a/b/"]);
    NSURL* const below =
        [(NSURL*)CFURLCreateCopyAppendingPathComponent(nullptr, url, (CFStringRef) @"d", 0) autorelease];
    EXPECT_TRUE([[below relativeString] isEqualToString:@"b/c/d"]);
    EXPECT_TRUE([[below absoluteString] isEqualToString:@"file:///a/b/c/d"]);
    EXPECT_EQ("b/c", taken(CFURLCopyFileSystemPath(url, kCFURLPOSIXPathStyle)));
}

TEST(CFURLPath, GivesOneReference) {
    CFURLRef const url = makeUrl("file:///a/b");
    CFURLRef const above = CFURLCreateCopyDeletingLastPathComponent(nullptr, url);
    EXPECT_EQ(1U, [(id)above retainCount]);
    CFRelease(above);
    CFURLRef const below = CFURLCreateCopyAppendingPathComponent(nullptr, url, (CFStringRef) @"c", 0);
    EXPECT_EQ(1U, [(id)below retainCount]);
    CFRelease(below);
}

TEST(CFURLPath, OfNullIsNull) {
    EXPECT_EQ(nullptr, CFURLCopyLastPathComponent(nullptr));
    EXPECT_EQ(nullptr, CFURLCreateCopyDeletingLastPathComponent(nullptr, nullptr));
    EXPECT_EQ(nullptr, CFURLCreateCopyAppendingPathComponent(nullptr, nullptr, (CFStringRef) @"a", 0));
    EXPECT_EQ(nullptr, CFURLCreateCopyAppendingPathComponent(nullptr, makeUrl("file:///"), nullptr, 0));
    EXPECT_EQ(nullptr, CFURLCopyFileSystemPath(nullptr, kCFURLPOSIXPathStyle));
}

} // namespace
