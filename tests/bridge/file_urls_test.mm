// Folder items of the host as file URLs, and the other way.

#include "bridge/file_urls.h"

#include "tests/bridge/bridge_host.h"
#include "tests/platform/file_item_names.h"
#include "tests/support/temporary_folder.h"

#include <CoreServices/CoreServices.h>
#import <Foundation/Foundation.h>
#include <climits>
#include <cstring>
#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <optional>

namespace {

constexpr UInt32 kNodeOfVolumeRoot = 2;
bool everythingIsAVolume = false;

} // namespace

// Stands before the platform's own, which tells no parent of a volume's root.
OSErr FSGetCatalogInfo(const FSRef* ref, FSCatalogInfoBitmap whichInfo, FSCatalogInfo* catalogInfo,
                       HFSUniStr255* outName, FSSpecPtr fsSpec, FSRef* parentRef) {
    static const auto own = reinterpret_cast<decltype(&FSGetCatalogInfo)>(dlsym(RTLD_NEXT, __func__));
    const OSErr error = own(ref, whichInfo, catalogInfo, outName, fsSpec, parentRef);
    if (everythingIsAVolume && (whichInfo & kFSCatInfoNodeID) != 0) {
        catalogInfo->nodeID = kNodeOfVolumeRoot;
    }
    return error;
}

namespace {

using namespace zqm::bridge::test;
using testing::ElementsAre;
using testing::IsEmpty;
using zqm::host::FolderItem;
using zqm::platform::test::kComposed;
using zqm::platform::test::kDecomposed;
using zqm::platform::test::kDecomposedUnits;
using zqm::platform::test::kNoUtf8;
using zqm::support::TemporaryFolder;
namespace fs = std::filesystem;

constexpr const char* kGetTrueFolderItem =
    "GetTrueFolderItem(path As String, pathMode As Integer) As FolderItem";
// A folder where a file system is mounted.
constexpr const char* kMountPoint = "/proc";

CFURLRef urlOfPath(std::string_view path) {
    CFURLRef const url = CFURLCreateFromFileSystemRepresentation(
        nullptr, reinterpret_cast<const UInt8*>(path.data()), static_cast<CFIndex>(path.size()), false);
    return (CFURLRef)[(id)url autorelease];
}

std::string made(const fs::path& path) {
    std::ofstream(path).put('x');
    EXPECT_TRUE(fs::exists(path));
    return path.native();
}

// Of what NSURLRBFile makes of the path's URL; nothing: null.
std::optional<std::string> itemPath(PluginHost& host, std::string_view path) {
    CFURLRef const url = urlOfPath(path);
    const NSUInteger references = [(id)url retainCount];
    REALobject item = NSURLRBFile(url);
    EXPECT_EQ([(id)url retainCount], references);
    return item != nullptr ? std::optional(FolderItem(host->adopt(item)).path()) : std::nullopt;
}

struct Handed {
    std::string parent;
    std::u16string name;
    friend bool operator==(const Handed&, const Handed&) = default;
};
std::vector<Handed> handedOver; // to the host, of each new FolderItem

REALobject noteParentAndName(const FSRef* parent, const HFSUniStr255* name) {
    std::array<UInt8, PATH_MAX> path{};
    EXPECT_EQ(FSRefMakePath(parent, path.data(), path.size()), noErr);
    handedOver.push_back({reinterpret_cast<const char*>(path.data()),
                          {reinterpret_cast<const char16_t*>(name->unicode), name->length}});
    return hostFunction<REALobject(const FSRef*, const HFSUniStr255*)>("REALFolderItemFromParentFSRef")(
        parent, name);
}

void noteFolderItems() {
    PluginHost::replace("REALFolderItemFromParentFSRef", noteParentAndName);
}

struct Loaded {
    bool offered = true;
    std::vector<std::string> declarations;
    std::vector<std::pair<std::string, std::int64_t>> calls; // path and mode
    std::vector<std::uint32_t> encodings;
};
Loaded& loaded() {
    static Loaded all;
    return all;
}

using TrueFolderItem = REALobject(REALstring, std::int64_t);

REALobject noteTrueFolderItem(REALstring path, std::int64_t mode) {
    loaded().calls.emplace_back(hostFunction<const char*(REALstring)>("StringGetCString")(path), mode);
    loaded().encodings.push_back(hostFunction<std::uint32_t(REALstring)>("REALGetStringEncoding")(path));
    void* method =
        hostFunction<void*(const char*, const char*)>("REALLoadGlobalMethod")(nullptr, kGetTrueFolderItem);
    return reinterpret_cast<TrueFolderItem*>(method)(path, mode);
}

void noteGlobalMethods() {
    PluginHost::replace(
        "REALLoadGlobalMethod", +[](const char* module, const char* declaration) {
            EXPECT_EQ(module, nullptr);
            loaded().declarations.emplace_back(declaration);
            return loaded().offered ? reinterpret_cast<void*>(noteTrueFolderItem) : nullptr;
        });
}

// ---- to the host

TEST(UrlToHost, OfAnExistingItemIsItsFolderAndName) {
    inBridge([](PluginHost& host) {
        const TemporaryFolder folder;
        noteFolderItems();
        noteGlobalMethods();
        const std::string file = made(folder / "file.txt");
        fs::create_directory(folder / "inner");
        EXPECT_EQ(itemPath(host, file), file);
        EXPECT_EQ(itemPath(host, (folder / "inner").native()), (folder / "inner").native());
        EXPECT_EQ(itemPath(host, (folder / "inner/").native()), (folder / "inner").native());
        EXPECT_THAT(handedOver,
                    ElementsAre(Handed{folder.path(), u"file.txt"}, Handed{folder.path(), u"inner"},
                                Handed{folder.path(), u"inner"}));
        EXPECT_THAT(loaded().declarations, IsEmpty());
    });
}

TEST(UrlToHost, OfNullAndOfNoFileIsNull) {
    inBridge([](PluginHost& host) {
        EXPECT_EQ(NSURLRBFile(nullptr), nullptr);
        for (NSString* text : {@"http://example.com/a/b", @"mailto:someone@example.com"}) {
            NSURL* url = [NSURL URLWithString:text];
            EXPECT_EQ(NSURLRBFile((CFURLRef)url), nullptr) << [text UTF8String];
        }
        EXPECT_THAT(host->entryPoints().asked(), IsEmpty());
    });
}

TEST(UrlToHost, OfAnItemToBeMadeIsItsFolderAndName) {
    inBridge([](PluginHost& host) {
        const TemporaryFolder folder;
        noteFolderItems();
        const std::string path = (folder / "new.txt").native();
        EXPECT_EQ(itemPath(host, path), path);
        EXPECT_THAT(handedOver, ElementsAre(Handed{folder.path(), u"new.txt"}));
        EXPECT_FALSE(fs::exists(path));
    });
}

TEST(UrlToHost, InAMissingFolderIsNull) {
    inBridge([](PluginHost& host) {
        const TemporaryFolder folder;
        noteFolderItems();
        EXPECT_EQ(itemPath(host, (folder / "missing/new.txt").native()), std::nullopt);
        EXPECT_EQ(itemPath(host, (folder / "a/b/c/new.txt").native()), std::nullopt);
        EXPECT_THAT(handedOver, IsEmpty());
    });
}

TEST(UrlToHost, InAFileIsNull) {
    inBridge([](PluginHost& host) {
        const TemporaryFolder folder;
        const std::string file = made(folder / "file.txt");
        const auto path = itemPath(host, file + "/new.txt");
        // The folder is no folder, but it exists: what the host makes of that is its own.
        EXPECT_TRUE(!path || path == file + "/new.txt") << *path;
    });
}

TEST(UrlToHost, WithoutEntryPointIsNull) {
    inBridge([](PluginHost& host) {
        const TemporaryFolder folder;
        host->entryPoints().refuse("REALFolderItemFromParentFSRef");
        EXPECT_EQ(itemPath(host, made(folder / "file.txt")), std::nullopt);
        EXPECT_EQ(itemPath(host, (folder / "new.txt").native()), std::nullopt);
        EXPECT_EQ(host->entryPoints().lookups("REALLoadGlobalMethod"), 0U);
    });
}

TEST(UrlToHost, OfAVolumesRootGoesByItsPathInTheNativeMode) {
    inBridge([](PluginHost& host) {
        noteFolderItems();
        noteGlobalMethods();
        EXPECT_EQ(itemPath(host, "/"), "/");
        EXPECT_EQ(itemPath(host, kMountPoint), kMountPoint);
        EXPECT_THAT(handedOver, IsEmpty());
        EXPECT_THAT(loaded().calls, ElementsAre(testing::Pair("/", 3), testing::Pair(kMountPoint, 3)));
        EXPECT_THAT(loaded().encodings, testing::Each(0x08000100U));
        EXPECT_THAT(loaded().declarations, ElementsAre(kGetTrueFolderItem)); // once
    });
}

// By its node alone, whatever the platform says of a folder that holds it.
TEST(UrlToHost, TheNodeOfAVolumesRootHasNoFolder) {
    inBridge([](PluginHost& host) {
        const TemporaryFolder folder;
        noteFolderItems();
        noteGlobalMethods();
        const std::string file = made(folder / "file");
        everythingIsAVolume = true;
        REALobject item = NSURLRBFile(urlOfPath(file));
        everythingIsAVolume = false;
        EXPECT_EQ(FolderItem(host->adopt(item)).path(), file);
        EXPECT_THAT(handedOver, IsEmpty());
        EXPECT_THAT(loaded().calls, ElementsAre(testing::Pair(file, 3)));
    });
}

TEST(UrlToHost, AMissingPathMethodIsNotLookedForAgain) {
    inBridge([](PluginHost& host) {
        noteGlobalMethods();
        loaded().offered = false;
        EXPECT_EQ(itemPath(host, "/"), std::nullopt);
        loaded().offered = true;
        EXPECT_EQ(itemPath(host, "/"), std::nullopt);
        EXPECT_THAT(loaded().declarations, ElementsAre(kGetTrueFolderItem));
        EXPECT_THAT(loaded().calls, IsEmpty());
    });
}

TEST(UrlToHost, WithoutGlobalMethodsAtFirstStaysWithoutThePathMethod) {
    inBridge([](PluginHost& host) {
        host->entryPoints().refuse("REALLoadGlobalMethod");
        EXPECT_EQ(itemPath(host, "/"), std::nullopt);
        host->entryPoints().allow("REALLoadGlobalMethod");
        EXPECT_EQ(itemPath(host, "/"), std::nullopt);
    });
}

TEST(UrlToHost, ALinkIsTheItemItself) {
    inBridge([](PluginHost& host) {
        const TemporaryFolder folder;
        noteFolderItems();
        made(folder / "target");
        fs::create_symlink("target", folder / "link");
        fs::create_symlink("nowhere", folder / "dangling");
        EXPECT_EQ(itemPath(host, (folder / "link").native()), (folder / "link").native());
        EXPECT_EQ(itemPath(host, (folder / "dangling").native()), (folder / "dangling").native());
        EXPECT_THAT(handedOver,
                    ElementsAre(Handed{folder.path(), u"link"}, Handed{folder.path(), u"dangling"}));
    });
}

TEST(UrlToHost, ALinkOnTheWayIsFollowed) {
    inBridge([](PluginHost& host) {
        const TemporaryFolder folder;
        fs::create_directory(folder / "real");
        fs::create_directory_symlink("real", folder / "link");
        const std::string file = made(folder / "real/file");
        EXPECT_EQ(itemPath(host, (folder / "link/file").native()), file);
        const auto fresh = itemPath(host, (folder / "link/new").native());
        ASSERT_TRUE(fresh.has_value());
        EXPECT_EQ(fs::weakly_canonical(*fresh), folder / "real/new");
    });
}

// Both forms name the same item; what is handed over is decomposed.
TEST(UrlToHost, NamesAreDecomposed) {
    inBridge([](PluginHost& host) {
        const TemporaryFolder folder;
        noteFolderItems();
        const std::u16string decomposed(kDecomposedUnits);
        EXPECT_TRUE(itemPath(host, (folder / kComposed).native()).has_value()); // new
        EXPECT_TRUE(itemPath(host, (folder / kDecomposed).native()).has_value());
        made(folder / kComposed);
        EXPECT_TRUE(itemPath(host, (folder / kComposed).native()).has_value()); // there
        EXPECT_TRUE(itemPath(host, (folder / kDecomposed).native()).has_value());
        EXPECT_THAT(handedOver, testing::Each(Handed{folder.path(), decomposed}));
        EXPECT_EQ(handedOver.size(), 4U);
    });
}

TEST(UrlToHost, ANameHas255UnitsAtMost) {
    inBridge([](PluginHost& host) {
        const TemporaryFolder folder;
        noteFolderItems();
        for (const std::size_t length : {1U, 254U, 255U, 256U, 300U}) {
            itemPath(host, (folder / std::string(length, 'n')).native());
        }
        const auto expected = [&](std::size_t length) {
            return Handed{folder.path(), std::u16string(length, u'n')};
        };
        EXPECT_THAT(handedOver,
                    ElementsAre(expected(1), expected(254), expected(255), expected(255), expected(255)));
        // Too long by being decomposed: two units for each letter, cut behind the 128th letter's base.
        handedOver.clear();
        std::string letters;
        for (int i = 0; i < 200; ++i) {
            letters += "\xC3\xBC";
        }
        itemPath(host, (folder / letters).native());
        ASSERT_EQ(handedOver.size(), 1U);
        EXPECT_EQ(handedOver.front().name.size(), 255U);
        EXPECT_TRUE(handedOver.front().name.starts_with(u"u\u0308u\u0308"));
    });
}

// No name can stand for it, so there is none to hand over.
TEST(UrlToHost, ANewNameThatIsNoUtf8IsNull) {
    inBridge([](PluginHost& host) {
        const TemporaryFolder folder;
        noteFolderItems();
        EXPECT_EQ(itemPath(host, (folder / kNoUtf8).native()), std::nullopt);
        EXPECT_THAT(handedOver, IsEmpty());
    });
}

// The path route, whose string the host reads as it can.
TEST(UrlToHost, AnExistingNameThatIsNoUtf8GoesByItsPath) {
    inBridge([](PluginHost& host) {
        const TemporaryFolder folder;
        noteFolderItems();
        noteGlobalMethods();
        const std::string path = made(folder / kNoUtf8);
        itemPath(host, path);
        EXPECT_THAT(handedOver, IsEmpty());
        EXPECT_THAT(loaded().calls, ElementsAre(testing::Pair(path, 3)));
    });
}

// ---- to the platform

// Of what NewNSURLfile makes of the path's folder item; nothing: nil.
std::optional<std::string> urlText(PluginHost& host, const std::string& path) {
    const FolderItem item = host->folderItem(path);
    NSURL* url = NewNSURLfile(item.handle());
    if (url == nil) {
        return std::nullopt;
    }
    EXPECT_TRUE([url isFileURL]);
    EXPECT_EQ([url retainCount], 1U);
    return [[url absoluteString] UTF8String];
}

std::vector<bool> namesWanted; // of each "REALFSRefFromFolderItem"

void noteReferences() {
    PluginHost::replace(
        "REALFSRefFromFolderItem", +[](REALobject item, FSRef* out, HFSUniStr255* name) {
            namesWanted.push_back(name != nullptr);
            if (name != nullptr) {
                HFSUniStr255 zero{};
                EXPECT_EQ(std::memcmp(name, &zero, sizeof zero), 0);
            }
            return hostFunction<bool(REALobject, FSRef*, HFSUniStr255*)>("REALFSRefFromFolderItem")(item, out,
                                                                                                    name);
        });
}

TEST(FolderItemToCocoa, OfAnExistingItemIsItsUrl) {
    inBridge([](PluginHost& host) {
        const TemporaryFolder folder;
        noteReferences();
        const std::string file = made(folder / "a file");
        fs::create_directory(folder / "inner");
        EXPECT_EQ(urlText(host, file), "file://" + (folder / "a%20file").native());
        EXPECT_EQ(urlText(host, (folder / "inner").native()), "file://" + (folder / "inner/").native());
        EXPECT_EQ(urlText(host, "/"), "file:///");
        EXPECT_EQ(urlText(host, kMountPoint), std::string("file://") + kMountPoint + "/");
        EXPECT_THAT(namesWanted, ElementsAre(false, false, false, false));
    });
}

TEST(FolderItemToCocoa, OfAnItemToBeMadeIsTheUrlInItsFolder) {
    inBridge([](PluginHost& host) {
        const TemporaryFolder folder;
        noteReferences();
        EXPECT_EQ(urlText(host, (folder / "new file").native()),
                  "file://" + (folder / "new%20file").native());
        EXPECT_EQ(urlText(host, "/zqm-new"), "file:///zqm-new");
        EXPECT_THAT(namesWanted, ElementsAre(false, true, false, true));
    });
}

TEST(FolderItemToCocoa, ANewNameIsDecomposed) {
    inBridge([](PluginHost& host) {
        const TemporaryFolder folder;
        const std::string expected = "file://" + (folder / "Gru%CC%88%C3%9Fe").native();
        EXPECT_EQ(urlText(host, (folder / kComposed).native()), expected);
        EXPECT_EQ(urlText(host, (folder / kDecomposed).native()), expected);
    });
}

TEST(FolderItemToCocoa, ANameOf255UnitsIsWhole) {
    inBridge([](PluginHost& host) {
        const TemporaryFolder folder;
        const std::string name(255, 'n');
        EXPECT_EQ(urlText(host, (folder / name).native()), "file://" + (folder / name).native());
    });
}

// What a host says to be longer than the record is not read beyond it.
TEST(FolderItemToCocoa, ANameSaidToBeLongerEndsWithItsRecord) {
    inBridge([](PluginHost& host) {
        PluginHost::replace(
            "REALFSRefFromFolderItem", +[](REALobject, FSRef* out, HFSUniStr255* name) {
                if (name == nullptr) {
                    return false;
                }
                CFURLRef const root = CFURLCreateFromFileSystemRepresentation(
                    nullptr, reinterpret_cast<const UInt8*>("/"), 1, true);
                EXPECT_TRUE(CFURLGetFSRef(root, out));
                CFRelease(root);
                std::fill(std::begin(name->unicode), std::end(name->unicode), u'n');
                name->length = 0xFFFF;
                return true;
            });
        EXPECT_EQ(urlText(host, "/any"), "file:///" + std::string(255, 'n'));
    });
}

// A single half of a surrogate pair: no URL can hold it.
TEST(FolderItemToCocoa, ANameThatIsNoTextIsNil) {
    inBridge([](PluginHost& host) {
        PluginHost::replace(
            "REALFSRefFromFolderItem", +[](REALobject item, FSRef* out, HFSUniStr255* name) {
                if (name == nullptr || !hostFunction<bool(REALobject, FSRef*, HFSUniStr255*)>(
                                           "REALFSRefFromFolderItem")(item, out, nullptr)) {
                    return false;
                }
                name->unicode[0] = 0xD800;
                name->length = 1;
                return true;
            });
        EXPECT_EQ(urlText(host, "/"), std::nullopt);
    });
}

TEST(FolderItemToCocoa, InAMissingFolderIsNil) {
    inBridge([](PluginHost& host) {
        const TemporaryFolder folder;
        noteReferences();
        EXPECT_EQ(urlText(host, (folder / "missing/new").native()), std::nullopt);
        EXPECT_THAT(namesWanted, ElementsAre(false, true));
    });
}

TEST(FolderItemToCocoa, OfNullIsNil) {
    inBridge([](PluginHost& host) {
        EXPECT_EQ(NewNSURLfile(nullptr), nil);
        EXPECT_THAT(host->entryPoints().asked(), IsEmpty());
    });
}

TEST(FolderItemToCocoa, WithoutEntryPointIsNil) {
    inBridge([](PluginHost& host) {
        host->entryPoints().refuse("REALFSRefFromFolderItem");
        EXPECT_EQ(urlText(host, "/"), std::nullopt);
    });
}

// A reference to nothing: the item is asked for once more, with a name.
TEST(FolderItemToCocoa, AReferenceToNothingIsAskedForAgain) {
    inBridge([](PluginHost& host) {
        PluginHost::replace(
            "REALFSRefFromFolderItem", +[](REALobject, FSRef* out, HFSUniStr255* name) {
                namesWanted.push_back(name != nullptr);
                *out = {};
                return true;
            });
        EXPECT_EQ(urlText(host, "/"), std::nullopt);
        EXPECT_THAT(namesWanted, ElementsAre(false, true));
    });
}

TEST(FolderItemToCocoa, ALinkIsTheItemItself) {
    inBridge([](PluginHost& host) {
        const TemporaryFolder folder;
        made(folder / "target");
        fs::create_symlink("target", folder / "link");
        EXPECT_EQ(urlText(host, (folder / "link").native()), "file://" + (folder / "link").native());
    });
}

TEST(FolderItemToCocoa, ConvertsThereAndBack) {
    inBridge([](PluginHost& host) {
        const TemporaryFolder folder;
        const std::string file = made(folder / "file");
        for (const std::string& path :
             {file, (folder / "new").native(), std::string("/"), std::string(kMountPoint)}) {
            const FolderItem item = host->folderItem(path);
            CFURLRef const url = (CFURLRef)NewNSURLfile(item.handle());
            EXPECT_EQ(FolderItem(host->adopt(NSURLRBFile(url))).path(), path);
        }
    });
}

} // namespace
