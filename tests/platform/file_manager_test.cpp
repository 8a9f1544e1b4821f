#include <CoreServices/CoreServices.h>

#include "tests/platform/file_item_names.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/utf16.h"

#include <array>
#include <climits>
#include <cstddef>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using namespace zqm::platform::test;
using zqm::support::TemporaryFolder;
using zqm::support::toUtf8;
namespace fs = std::filesystem;

static_assert(sizeof(FSRef) == 80 && sizeof(HFSUniStr255) == 512 && sizeof(FSSpec) == 70);
static_assert(sizeof(UTCDateTime) == 8 && sizeof(FSPermissionInfo) == 20);
static_assert(sizeof(FSCatalogInfo) == 148 && offsetof(FSCatalogInfo, nodeFlags) == 0 &&
              offsetof(FSCatalogInfo, volume) == 2 && offsetof(FSCatalogInfo, parentDirID) == 4 &&
              offsetof(FSCatalogInfo, nodeID) == 8 && offsetof(FSCatalogInfo, sharingFlags) == 12 &&
              offsetof(FSCatalogInfo, userPrivileges) == 13 && offsetof(FSCatalogInfo, createDate) == 16 &&
              offsetof(FSCatalogInfo, contentModDate) == 24 &&
              offsetof(FSCatalogInfo, attributeModDate) == 32 && offsetof(FSCatalogInfo, accessDate) == 40 &&
              offsetof(FSCatalogInfo, backupDate) == 48 && offsetof(FSCatalogInfo, permissions) == 56 &&
              offsetof(FSCatalogInfo, finderInfo) == 76 && offsetof(FSCatalogInfo, extFinderInfo) == 92 &&
              offsetof(FSCatalogInfo, dataLogicalSize) == 108 &&
              offsetof(FSCatalogInfo, rsrcPhysicalSize) == 132 && offsetof(FSCatalogInfo, valence) == 140 &&
              offsetof(FSCatalogInfo, textEncodingHint) == 144);

const UInt8* bytes(const std::string& path) {
    return reinterpret_cast<const UInt8*>(path.c_str());
}

OSStatus makeRef(const std::string& path, FSRef& ref) {
    return FSPathMakeRef(bytes(path), &ref, nullptr);
}

FSRef refOf(const std::string& path) {
    FSRef ref{};
    EXPECT_EQ(noErr, makeRef(path, ref)) << path;
    return ref;
}

std::string pathOf(const FSRef& ref) {
    std::array<UInt8, PATH_MAX> path{};
    EXPECT_EQ(noErr, FSRefMakePath(&ref, path.data(), path.size()));
    return reinterpret_cast<const char*>(path.data());
}

std::u16string nameOf(const FSRef& ref) {
    HFSUniStr255 name{};
    EXPECT_EQ(noErr, FSGetCatalogInfo(&ref, kFSCatInfoNone, nullptr, &name, nullptr, nullptr));
    return {reinterpret_cast<const char16_t*>(name.unicode), name.length};
}

FSRef parentOf(const FSRef& ref) {
    FSRef parent{};
    EXPECT_EQ(noErr, FSGetCatalogInfo(&ref, kFSCatInfoNone, nullptr, nullptr, nullptr, &parent));
    return parent;
}

UInt32 nodeOf(const FSRef& ref) {
    FSCatalogInfo info{};
    EXPECT_EQ(noErr, FSGetCatalogInfo(&ref, kFSCatInfoNodeID, &info, nullptr, nullptr, nullptr));
    return info.nodeID;
}

// Of every function that takes a reference.
void expectErrors(OSErr error, const FSRef& ref) {
    FSCatalogInfo info{};
    EXPECT_EQ(error, FSGetCatalogInfo(&ref, kFSCatInfoNodeID, &info, nullptr, nullptr, nullptr));
    std::array<UInt8, PATH_MAX> path{};
    EXPECT_EQ(error, FSRefMakePath(&ref, path.data(), path.size()));
}

std::string repeated(std::string_view text, int times) {
    std::string result;
    for (int count = 0; count < times; ++count) {
        result += text;
    }
    return result;
}

class FileManager : public testing::Test {
protected:
    std::string made(std::string_view name) {
        std::string path = at(name);
        std::ofstream(path).put('x');
        EXPECT_TRUE(fs::exists(path)) << path;
        return path;
    }

    std::string at(std::string_view name) const { return (folder_ / name).native(); }

    // The folder's path may lead over links.
    std::string realAt(std::string_view name) const {
        return (fs::canonical(folder_.path()) / name).native();
    }

    TemporaryFolder folder_;
};

// ---- references

TEST_F(FileManager, ReferenceNamesAnItem) {
    made("a.txt");
    Boolean isDirectory = 7;
    FSRef ref{};
    ASSERT_EQ(noErr, FSPathMakeRef(bytes(at("a.txt")), &ref, &isDirectory));
    EXPECT_EQ(0, isDirectory);
    EXPECT_EQ(realAt("a.txt"), pathOf(ref));
    EXPECT_EQ(u"a.txt", nameOf(ref));
    EXPECT_EQ(fs::canonical(folder_.path()).native(), pathOf(parentOf(ref)));
    ASSERT_EQ(noErr, FSPathMakeRef(bytes(folder_.path().native() + "/"), &ref, &isDirectory));
    EXPECT_EQ(1, isDirectory);
}

TEST_F(FileManager, ReferenceMayBeCopiedAsBytes) {
    made("a.txt");
    made("b.txt");
    const FSRef ref = refOf(at("a.txt"));
    std::array<std::byte, sizeof ref + 1> elsewhere{};
    std::memcpy(elsewhere.data() + 1, &ref, sizeof ref);
    const FSRef other = refOf(at("b.txt"));
    FSRef copy{};
    std::memcpy(&copy, elsewhere.data() + 1, sizeof copy);
    EXPECT_EQ(realAt("a.txt"), pathOf(copy));
    EXPECT_EQ(realAt("b.txt"), pathOf(other));
}

TEST_F(FileManager, ReferencesToTheSameItemAreEqual) {
    made("a.txt");
    fs::create_directory(at("sub"));
    const FSRef straight = refOf(at("a.txt"));
    const FSRef roundAbout = refOf(at("sub/..//./a.txt"));
    EXPECT_EQ(0, std::memcmp(&straight, &roundAbout, sizeof straight));
}

TEST_F(FileManager, RelativePathBeginsAtTheWorkingDirectory) {
    made("a.txt");
    const fs::path before = fs::current_path();
    fs::current_path(folder_.path());
    const FSRef ref = refOf("a.txt");
    fs::current_path(before);
    EXPECT_EQ(realAt("a.txt"), pathOf(ref));
}

TEST(FSRef, ZeroedOrRandomIsNone) {
    FSRef ref{};
    expectErrors(paramErr, ref);
    std::memset(&ref, 0xFF, sizeof ref);
    expectErrors(paramErr, ref);
    std::mt19937 random(1); // NOLINT(cert-msc51-cpp): the same bytes each time
    for (int round = 0; round < 1000; ++round) {
        for (UInt8& byte : ref.hidden) {
            byte = static_cast<UInt8>(random());
        }
        expectErrors(paramErr, ref);
    }
}

TEST(FSRef, WithOneByteChangedIsNoneOrTheSame) {
    const FSRef root = refOf("/");
    int refused = 0;
    for (std::size_t index = 0; index < sizeof root; ++index) {
        FSRef damaged = root;
        damaged.hidden[index] ^= 0x01U;
        std::array<UInt8, PATH_MAX> path{};
        const OSStatus result = FSRefMakePath(&damaged, path.data(), path.size());
        if (result == noErr) {
            EXPECT_STREQ("/", reinterpret_cast<const char*>(path.data())) << index;
        } else {
            EXPECT_EQ(paramErr, result) << index;
            ++refused;
        }
    }
    EXPECT_GE(refused, 16);
}

TEST_F(FileManager, ReferenceToWhatWasDeletedFindsNothing) {
    made("a.txt");
    const FSRef ref = refOf(at("a.txt"));
    fs::remove(at("a.txt"));
    expectErrors(fnfErr, ref);
    HFSUniStr255 name{};
    FSRef parent{};
    EXPECT_EQ(fnfErr, FSGetCatalogInfo(&ref, kFSCatInfoNone, nullptr, &name, nullptr, &parent));
    EXPECT_EQ(0, name.length);
    expectErrors(paramErr, parent);
    made("a.txt");
    EXPECT_EQ(realAt("a.txt"), pathOf(ref));
}

TEST_F(FileManager, ReferenceIntoADeletedFolderFindsNothing) {
    fs::create_directory(at("sub"));
    made("sub/a.txt");
    const FSRef ref = refOf(at("sub/a.txt"));
    fs::remove_all(at("sub"));
    expectErrors(fnfErr, ref);
    made("sub");
    expectErrors(fnfErr, ref);
}

// ---- paths that name nothing

TEST_F(FileManager, WhatIsNotThereIsNotFound) {
    FSRef ref{};
    made("a.txt");
    for (const char* const name : {"none", "none/none", "a.txt/none", "none/../a.txt"}) {
        EXPECT_EQ(fnfErr, makeRef(at(name), ref)) << name;
    }
    EXPECT_EQ(fnfErr, makeRef("", ref));
    EXPECT_EQ(fnfErr, makeRef(at("none/"), ref));
    expectErrors(paramErr, ref);
}

TEST_F(FileManager, RefusedPathLeavesReferenceAndFlagAsTheyAre) {
    FSRef ref = refOf("/");
    Boolean isDirectory = 7;
    EXPECT_EQ(fnfErr, FSPathMakeRef(bytes(at("none")), &ref, &isDirectory));
    EXPECT_EQ("/", pathOf(ref));
    EXPECT_EQ(7, isDirectory);
}

TEST_F(FileManager, NameThatIsTooLongIsBad) {
    FSRef ref{};
    EXPECT_EQ(fnfErr, makeRef(at(std::string(255, 'a')), ref));
    EXPECT_EQ(bdNamErr, makeRef(at(std::string(256, 'a')), ref));
    EXPECT_EQ(bdNamErr, makeRef(at(std::string(256, 'a') + "/b"), ref));
}

TEST_F(FileManager, PathThatIsTooLongIsToldFromANameThatIs) {
    const fs::path before = fs::current_path();
    const std::string name(255, 'a');
    std::string path = folder_.path().native();
    fs::current_path(path);
    while (path.size() <= PATH_MAX) {
        fs::create_directory(name);
        fs::current_path(name);
        path += '/' + name;
    }
    fs::current_path(before);
    FSRef ref{};
    EXPECT_EQ(pathTooLongErr, makeRef(path, ref));
}

TEST_F(FileManager, FolderThatMayNotBeSearchedIsNotPermitted) {
    fs::create_directory(at("closed"));
    made("closed/a.txt");
    fs::permissions(at("closed"), fs::perms::none);
    // Another process, since root may search every folder.
    EXPECT_EXIT(
        {
            FSRef ref{};
            const bool isOther = ::geteuid() != 0 || ::setuid(65534) == 0;
            ::_exit(isOther && makeRef(at("closed/a.txt"), ref) == permErr ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
    fs::permissions(at("closed"), fs::perms::owner_all);
}

TEST_F(FileManager, TooManyLinksLeadNowhere) {
    fs::create_symlink("loop", at("loop"));
    FSRef ref{};
    EXPECT_EQ(fnfErr, makeRef(at("loop"), ref));
}

// ---- links

TEST_F(FileManager, LinksOfAPathAreFollowed) {
    fs::create_directory(at("sub"));
    made("sub/a.txt");
    fs::create_directory_symlink("sub", at("folder_link"));
    fs::create_symlink("sub/a.txt", at("file_link"));
    EXPECT_EQ(realAt("sub/a.txt"), pathOf(refOf(at("folder_link/a.txt"))));
    EXPECT_EQ(realAt("sub/a.txt"), pathOf(refOf(at("file_link"))));
    fs::create_symlink("none", at("dangling"));
    FSRef ref{};
    EXPECT_EQ(fnfErr, makeRef(at("dangling"), ref));
}

// ---- names

TEST_F(FileManager, NamesAreDecomposed) {
    EXPECT_EQ(kDecomposedUnits, nameOf(refOf(made(kComposed))));
    fs::remove(at(kComposed));
    EXPECT_EQ(kDecomposedUnits, nameOf(refOf(made(kDecomposed))));
}

TEST_F(FileManager, EitherFormFindsTheOther) {
    made(kComposed);
    EXPECT_EQ(realAt(kComposed), pathOf(refOf(at(kDecomposed))));
    fs::remove(at(kComposed));
    made(kDecomposed);
    EXPECT_EQ(realAt(kDecomposed), pathOf(refOf(at(kComposed))));
}

TEST_F(FileManager, OfTwoFormsTheExactOneIsFound) {
    made(kComposed);
    made(kDecomposed);
    EXPECT_EQ(realAt(kComposed), pathOf(refOf(at(kComposed))));
    EXPECT_EQ(realAt(kDecomposed), pathOf(refOf(at(kDecomposed))));
}

TEST_F(FileManager, FoldersOnTheWayAreFoundInEitherForm) {
    fs::create_directory(at(kComposed));
    made(std::string(kComposed) + "/a.txt");
    EXPECT_EQ(realAt(std::string(kComposed) + "/a.txt"),
              pathOf(refOf(at(std::string(kDecomposed) + "/a.txt"))));
}

// What FSGetCatalogInfo tells as a name finds the item again, whatever it is stored as.
TEST_F(FileManager, DecomposedNameFindsWhatIsInNoForm) {
    const std::string mixed = "u\xCC\x88\xC3\xBC";            // both forms of one letter
    const std::string angstrom = "\xE2\x84\xAB";              // not the letter, but the unit
    const std::string ideograph = "\xEF\xA8\x99\xE4\xBA\xBA"; // U+FA19, a variant of U+795E
    for (const std::string& name : {mixed, angstrom, ideograph}) {
        const std::u16string text = nameOf(refOf(made(name)));
        EXPECT_EQ(realAt(name), pathOf(refOf(at(toUtf8(text)))));
        EXPECT_EQ(text, nameOf(refOf(at(name))));
    }
    FSRef ref{};
    EXPECT_EQ(fnfErr, makeRef(at("\xC3\xA4"), ref));
}

TEST_F(FileManager, OfSeveralInNoFormTheFirstIsFound) {
    const std::string first = "u\xCC\x88\xC3\xBC";
    const std::string second = "\xC3\xBCu\xCC\x88";
    made(second);
    made(first);
    EXPECT_EQ(realAt(first), pathOf(refOf(at("\xC3\xBC\xC3\xBC"))));
    EXPECT_EQ(realAt(second), pathOf(refOf(at(second))));
}

TEST_F(FileManager, NamesOfAllLengthsFit) {
    EXPECT_EQ(std::u16string(255, u'a'), nameOf(refOf(made(std::string(255, 'a')))));
    // U+1F600 is a surrogate pair.
    EXPECT_EQ(126U, nameOf(refOf(made(repeated("\xF0\x9F\x98\x80", 63)))).size());
}

// U+0390 is two bytes, but three units when decomposed.
TEST_F(FileManager, NameThatIsTooLongDecomposedStaysAsItIs) {
    EXPECT_EQ(255U, nameOf(refOf(made(repeated("\xCE\x90", 85)))).size());
    EXPECT_EQ(std::u16string(86, u'\u0390'), nameOf(refOf(made(repeated("\xCE\x90", 86)))));
}

TEST_F(FileManager, NameThatIsNoUtf8HasAPathButNoText) {
    const FSRef ref = refOf(made(kNoUtf8));
    EXPECT_EQ(realAt(kNoUtf8), pathOf(ref));
    EXPECT_EQ(fs::canonical(folder_.path()).native(), pathOf(parentOf(ref)));
    HFSUniStr255 name{};
    FSRef parent{};
    FSCatalogInfo info{};
    EXPECT_EQ(bdNamErr, FSGetCatalogInfo(&ref, kFSCatInfoNodeID, &info, &name, nullptr, &parent));
    EXPECT_EQ(0, name.length);
    EXPECT_EQ(0U, info.nodeID);
    expectErrors(paramErr, parent);
}

// ---- volumes

TEST(Volume, RootHasNoParent) {
    const FSRef root = refOf("/");
    EXPECT_EQ("/", pathOf(root));
    EXPECT_EQ(u"/", nameOf(root));
    EXPECT_EQ(2U, nodeOf(root));
    expectErrors(paramErr, parentOf(root));
}

TEST(Volume, MountPointIsARoot) {
    const FSRef root = refOf("/proc");
    EXPECT_EQ("/proc", pathOf(root));
    EXPECT_EQ(u"proc", nameOf(root));
    EXPECT_EQ(2U, nodeOf(root));
    expectErrors(paramErr, parentOf(root));
    EXPECT_EQ("/proc", pathOf(parentOf(refOf("/proc/sys"))));
}

TEST(Volume, WaysUpEndAtARoot) {
    FSRef item = refOf("/usr/bin");
    for (const char* const path : {"/usr", "/"}) {
        EXPECT_LE(16U, nodeOf(item));
        item = parentOf(item);
        EXPECT_EQ(path, pathOf(item));
    }
    EXPECT_EQ(2U, nodeOf(item));
}

// ---- catalogue information

TEST_F(FileManager, NodeIsStableAndDistinct) {
    const FSRef a = refOf(made("a.txt"));
    const FSRef b = refOf(made("b.txt"));
    const UInt32 node = nodeOf(a);
    EXPECT_LE(16U, node);
    EXPECT_NE(node, nodeOf(b));
    std::ofstream(at("a.txt")) << "more";
    EXPECT_EQ(node, nodeOf(a));
}

TEST_F(FileManager, InfoIsZeroButForWhatIsAskedFor) {
    const FSRef ref = refOf(made("a.txt"));
    FSCatalogInfo info{};
    FSCatalogInfo zeros{};
    std::memset(&zeros, 0, sizeof zeros);
    std::memset(&info, 0xFF, sizeof info);
    EXPECT_EQ(noErr, FSGetCatalogInfo(&ref, kFSCatInfoNone, &info, nullptr, nullptr, nullptr));
    EXPECT_EQ(0, std::memcmp(&zeros, &info, sizeof info));
    std::memset(&info, 0xFF, sizeof info);
    EXPECT_EQ(noErr, FSGetCatalogInfo(&ref, kFSCatInfoNodeID, &info, nullptr, nullptr, nullptr));
    EXPECT_NE(0U, info.nodeID);
    info.nodeID = 0;
    EXPECT_EQ(0, std::memcmp(&zeros, &info, sizeof info));
}

TEST_F(FileManager, NothingNeedBeAskedFor) {
    const FSRef ref = refOf(made("a.txt"));
    EXPECT_EQ(noErr, FSGetCatalogInfo(&ref, kFSCatInfoNodeID, nullptr, nullptr, nullptr, nullptr));
}

TEST_F(FileManager, SpecificationIsLeftAlone) {
    const FSRef ref = refOf(made("a.txt"));
    FSSpec spec{};
    spec.hidden[0] = 7;
    EXPECT_EQ(noErr, FSGetCatalogInfo(&ref, kFSCatInfoNone, nullptr, nullptr, &spec, nullptr));
    EXPECT_EQ(7, spec.hidden[0]);
}

TEST_F(FileManager, ParentMayTakeThePlaceOfTheItem) {
    FSRef ref = refOf(made("a.txt"));
    HFSUniStr255 name{};
    EXPECT_EQ(noErr, FSGetCatalogInfo(&ref, kFSCatInfoNone, nullptr, &name, nullptr, &ref));
    EXPECT_EQ(5, name.length);
    EXPECT_EQ(fs::canonical(folder_.path()).native(), pathOf(ref));
}

// ---- the caller's own errors

TEST_F(FileManager, NullIsRefused) {
    FSRef ref = refOf(made("a.txt"));
    std::array<UInt8, PATH_MAX> path{};
    FSCatalogInfo info{};
    EXPECT_EQ(paramErr, FSGetCatalogInfo(nullptr, kFSCatInfoNodeID, &info, nullptr, nullptr, nullptr));
    EXPECT_EQ(paramErr, FSRefMakePath(nullptr, path.data(), path.size()));
    EXPECT_EQ(paramErr, FSRefMakePath(&ref, nullptr, 100));
    EXPECT_EQ(paramErr, FSPathMakeRef(nullptr, &ref, nullptr));
    EXPECT_EQ(paramErr, FSPathMakeRef(path.data(), nullptr, nullptr));
}

TEST(FSRefMakePath, NeedsRoomForTheWholePathAndItsNul) {
    const FSRef ref = refOf("/proc");
    for (const UInt32 room : {0U, 1U, 5U}) {
        std::array<UInt8, 6> path{'x', 'x', 'x', 'x', 'x', 'x'};
        EXPECT_EQ(pathTooLongErr, FSRefMakePath(&ref, path.data(), room)) << room;
        EXPECT_THAT(path, testing::Each('x')) << room;
    }
    std::array<UInt8, 6> path{};
    EXPECT_EQ(noErr, FSRefMakePath(&ref, path.data(), path.size()));
    EXPECT_STREQ("/proc", reinterpret_cast<const char*>(path.data()));
}

} // namespace
