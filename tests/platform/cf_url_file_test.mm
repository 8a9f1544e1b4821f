#include <CoreServices/CoreServices.h>
#import <Foundation/Foundation.h>

#include "tests/platform/file_item_names.h"
#include "tests/support/temporary_folder.h"

#include <array>
#include <climits>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <optional>
#include <string>

namespace {

using namespace zqm::platform::test;
using zqm::support::TemporaryFolder;
namespace fs = std::filesystem;

using Text = std::optional<std::string>;

CFURLRef makeUrl(const std::string& text, CFURLRef base = nullptr) {
    NSString* const string = [NSString stringWithUTF8String:text.c_str()];
    CFURLRef const url = CFURLCreateWithString(nullptr, (CFStringRef)string, base);
    EXPECT_NE(nullptr, url) << text;
    return (CFURLRef)[(id)url autorelease];
}

CFURLRef urlOfPath(std::string_view path, bool isDirectory = false) {
    CFURLRef const url =
        CFURLCreateFromFileSystemRepresentation(nullptr, reinterpret_cast<const UInt8*>(path.data()),
                                                static_cast<CFIndex>(path.size()), isDirectory ? 1 : 0);
    return (CFURLRef)[(id)url autorelease];
}

Text textOf(CFURLRef url) {
    return url != nullptr ? Text([(NSString*)CFURLGetString(url) UTF8String]) : std::nullopt;
}

Text pathOf(CFURLRef url) {
    FSRef ref{};
    std::array<UInt8, PATH_MAX> path{};
    if (CFURLGetFSRef(url, &ref) == 0) {
        return std::nullopt;
    }
    EXPECT_EQ(noErr, FSRefMakePath(&ref, path.data(), path.size()));
    return Text(reinterpret_cast<const char*>(path.data()));
}

Text urlOfItem(const std::string& path) {
    FSRef ref{};
    EXPECT_TRUE(CFURLGetFSRef(urlOfPath(path), &ref)) << path;
    CFURLRef const url = CFURLCreateFromFSRef(nullptr, &ref);
    EXPECT_EQ(1U, [(id)url retainCount]);
    return textOf((CFURLRef)[(id)url autorelease]);
}

class URLOfFile : public testing::Test {
protected:
    std::string made(std::string_view name) {
        std::string path = at(name);
        std::ofstream(path).put('x');
        EXPECT_TRUE(fs::exists(path)) << path;
        return path;
    }

    std::string at(std::string_view name) const { return (folder_ / name).native(); }
    std::string realAt(std::string_view name) const {
        return (fs::canonical(folder_.path()) / name).native();
    }

    TemporaryFolder folder_;
};

// ---- from paths

TEST(URLFromPath, IsEscaped) {
    EXPECT_EQ("file:///a/b", textOf(urlOfPath("/a/b")));
    EXPECT_EQ("file:///a%20b%25%3F%23%3B%C3%BC:x", textOf(urlOfPath("/a b%?#;ü:x")));
    EXPECT_EQ("file:///%FF%FE%0A", textOf(urlOfPath("/\xFF\xFE\n")));
}

TEST(URLFromPath, HasASlashAtTheEndOfADirectory) {
    EXPECT_EQ("file:///a/", textOf(urlOfPath("/a", true)));
    EXPECT_EQ("file:///a/", textOf(urlOfPath("/a//", true)));
    EXPECT_EQ("file:///a", textOf(urlOfPath("/a/")));
    EXPECT_EQ("file:///", textOf(urlOfPath("/", true)));
    EXPECT_EQ("file:///", textOf(urlOfPath("/")));
}

TEST(URLFromPath, TakesItsLengthFromTheCaller) {
    EXPECT_EQ("file:///ab", textOf(urlOfPath(std::string_view("/abcd").substr(0, 3))));
}

TEST_F(URLOfFile, RelativePathIsRelativeToTheWorkingDirectory) {
    const fs::path before = fs::current_path();
    made("a b");
    fs::current_path(folder_.path());
    CFURLRef const url = urlOfPath("a b");
    CFURLRef const withColon = urlOfPath("c:d/e", true);
    fs::current_path(before);
    EXPECT_EQ("a%20b", textOf(url));
    EXPECT_EQ(realAt("a b"), pathOf(url));
    EXPECT_EQ("./c:d/e/", textOf(withColon));
    EXPECT_TRUE([(NSURL*)withColon isFileURL]);
}

TEST_F(URLOfFile, RelativePathNeedsAWorkingDirectory) {
    const fs::path before = fs::current_path();
    fs::create_directory(at("sub"));
    fs::current_path(at("sub"));
    fs::remove(at("sub"));
    EXPECT_EQ(nullptr, urlOfPath("a"));
    fs::current_path(before);
}

TEST(URLFromPath, RefusesWhatIsNoPath) {
    EXPECT_EQ(nullptr, urlOfPath(""));
    EXPECT_EQ(nullptr, urlOfPath(std::string_view("/a\0b", 4)));
    EXPECT_EQ(nullptr, CFURLCreateFromFileSystemRepresentation(nullptr, nullptr, 3, 0));
    const UInt8 path[] = {'/'};
    EXPECT_EQ(nullptr, CFURLCreateFromFileSystemRepresentation(nullptr, path, -1, 0));
}

TEST(URLFromPath, GivesOneReference) {
    const UInt8 path[] = {'a'};
    CFURLRef const url = CFURLCreateFromFileSystemRepresentation(nullptr, path, 1, 0);
    EXPECT_EQ(1U, [(id)url retainCount]);
    CFRelease(url);
}

// ---- to references

TEST_F(URLOfFile, RefersToTheFile) {
    made("a b.txt");
    const std::string folder = folder_.path().native();
    EXPECT_EQ(realAt("a b.txt"), pathOf(makeUrl("file://" + folder + "/a%20b.txt")));
    EXPECT_EQ(realAt("a b.txt"), pathOf(makeUrl("file://localhost" + folder + "/a%20b.txt")));
    EXPECT_EQ(realAt("a b.txt"), pathOf(makeUrl("FILE://LOCALHOST" + folder + "/%61%20b.txt")));
    EXPECT_EQ(realAt("a b.txt"), pathOf(makeUrl("file://" + folder + "/a%20b.txt/")));
    EXPECT_EQ(realAt("a b.txt"), pathOf(makeUrl("file://" + folder + "/a%20b.txt?q#f")));
    CFURLRef const base = makeUrl("file://" + folder + "/sub/");
    fs::create_directory(at("sub"));
    EXPECT_EQ(realAt("a b.txt"), pathOf(makeUrl("../a%20b.txt", base)));
    EXPECT_EQ("/", pathOf(makeUrl("file:///")));
    EXPECT_EQ("/", pathOf(makeUrl("file:///../")));
}

TEST_F(URLOfFile, OfALinkRefersToTheLink) {
    fs::create_directory(at("sub"));
    made("sub/a.txt");
    fs::create_symlink("sub/a.txt", at("link"));
    fs::create_symlink("none", at("dangling"));
    fs::create_directory_symlink("sub", at("folder_link"));
    EXPECT_EQ(realAt("link"), pathOf(urlOfPath(at("link"))));
    EXPECT_EQ(realAt("dangling"), pathOf(urlOfPath(at("dangling"))));
    EXPECT_EQ(realAt("folder_link"), pathOf(urlOfPath(at("folder_link"), true)));
    EXPECT_EQ(realAt("sub/a.txt"), pathOf(urlOfPath(at("folder_link/a.txt"))));
}

TEST_F(URLOfFile, IsFoundInEitherForm) {
    made(kComposed);
    EXPECT_EQ(realAt(kComposed), pathOf(urlOfPath(at(kDecomposed))));
    made(kDecomposed);
    EXPECT_EQ(realAt(kDecomposed), pathOf(urlOfPath(at(kDecomposed))));
    EXPECT_EQ(realAt(kComposed), pathOf(urlOfPath(at(kComposed))));
    fs::remove(at(kComposed));
    EXPECT_EQ(realAt(kDecomposed), pathOf(urlOfPath(at(kComposed))));
}

TEST_F(URLOfFile, NeedBeNoUtf8) {
    made(kNoUtf8);
    EXPECT_EQ(realAt(kNoUtf8), pathOf(urlOfPath(at(kNoUtf8))));
    EXPECT_EQ(std::nullopt, pathOf(urlOfPath(at("b\xFF"))));
}

TEST_F(URLOfFile, OfNothingIsFalse) {
    made("a.txt");
    EXPECT_EQ(std::nullopt, pathOf(urlOfPath(at("none"))));
    EXPECT_EQ(std::nullopt, pathOf(urlOfPath(at(std::string(256, 'a')))));
    EXPECT_EQ(std::nullopt, pathOf(makeUrl("file://" + at("a.txt") + "%00")));
    EXPECT_EQ(std::nullopt, pathOf(makeUrl("file://example.org" + at("a.txt"))));
    EXPECT_EQ(std::nullopt, pathOf(makeUrl("http://localhost" + at("a.txt"))));
    EXPECT_EQ(std::nullopt, pathOf(makeUrl("file:tmp")));
    EXPECT_EQ(std::nullopt, pathOf(makeUrl("tmp")));
    EXPECT_EQ(std::nullopt, pathOf(makeUrl("//localhost/tmp")));
    EXPECT_EQ(std::nullopt, pathOf(makeUrl("mailto:someone@example.org")));
}

TEST(URLToReference, LeavesTheReferenceOfNothingAsItIs) {
    FSRef ref{};
    ASSERT_TRUE(CFURLGetFSRef(urlOfPath("/"), &ref));
    EXPECT_FALSE(CFURLGetFSRef(urlOfPath("/none/at/all"), &ref));
    FSRef root{};
    ASSERT_TRUE(CFURLGetFSRef(urlOfPath("/"), &root));
    EXPECT_EQ(0, std::memcmp(&root, &ref, sizeof ref));
}

TEST(URLToReference, RefusesNull) {
    FSRef ref{};
    EXPECT_FALSE(CFURLGetFSRef(nullptr, &ref));
    EXPECT_FALSE(CFURLGetFSRef(urlOfPath("/"), nullptr));
}

// ---- from references

TEST_F(URLOfFile, ComesFromAReference) {
    EXPECT_EQ("file://" + realAt("a%20b"), urlOfItem(made("a b")));
    EXPECT_EQ("file://" + realAt("a%FF%FE.txt"), urlOfItem(made(kNoUtf8)));
    EXPECT_EQ("file://" + fs::canonical(folder_.path()).native() + "/", urlOfItem(folder_.path().native()));
    EXPECT_EQ("file:///", urlOfItem("/"));
    fs::create_directory_symlink("/", at("link"));
    EXPECT_EQ("file://" + realAt("link"), urlOfItem(at("link")));
}

TEST_F(URLOfFile, DoesNotComeFromWhatReferencesNothing) {
    FSRef ref{};
    EXPECT_EQ(nullptr, CFURLCreateFromFSRef(nullptr, nullptr));
    EXPECT_EQ(nullptr, CFURLCreateFromFSRef(nullptr, &ref));
    ASSERT_TRUE(CFURLGetFSRef(urlOfPath(made("a.txt")), &ref));
    fs::remove(at("a.txt"));
    EXPECT_EQ(nullptr, CFURLCreateFromFSRef(nullptr, &ref));
}

} // namespace
