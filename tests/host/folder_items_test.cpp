#include "tests/host/plain_host.h"
#include "tests/support/temporary_folder.h"

#include <CoreServices/CoreServices.h>
#include <algorithm>
#include <array>
#include <climits>
#include <filesystem>
#include <fstream>

namespace zqm::host::test {
namespace {

constexpr const char* kTrueFolderItem =
    "GetTrueFolderItem(path As String, pathMode As Integer) As FolderItem";
constexpr const char* kTrueItem = "TrueItem(Index as integer) as Folderitem";
constexpr std::int64_t kNativePath = 3;

class FolderItems : public PlainHost {
protected:
    FolderItems() { std::ofstream{file} << "content"; }

    bool reference(const Object& item, FSRef* out, HFSUniStr255* outName) {
        return call<bool>("REALFSRefFromFolderItem", item.handle(), out, outName);
    }
    FolderItem inFolder(const FSRef* parent, const HFSUniStr255* itsName) {
        return FolderItem(runtime.adopt(call<REALobject>("REALFolderItemFromParentFSRef", parent, itsName)));
    }
    FolderItem byPath(const String& path, std::int64_t mode = kNativePath) {
        return FolderItem(runtime.adopt(
            globalMethod<REALobject(REALstring, std::int64_t)>(kTrueFolderItem)(path.handle(), mode)));
    }
    static std::string pathOf(const FSRef& reference) {
        std::array<UInt8, PATH_MAX> path{};
        EXPECT_EQ(FSRefMakePath(&reference, path.data(), path.size()), 0);
        return reinterpret_cast<const char*>(path.data());
    }
    static HFSUniStr255 named(std::u16string_view text) {
        HFSUniStr255 result{};
        result.length = static_cast<UInt16>(text.size());
        std::ranges::copy(text, result.unicode);
        return result;
    }
    static std::u16string textOf(const HFSUniStr255& itsName) {
        return {itsName.unicode, itsName.unicode + itsName.length};
    }

    support::TemporaryFolder temporary;
    std::string folder = std::filesystem::canonical(temporary.path()).string();
    std::string file = folder + "/file \xC3\xA4";
    FSRef ref{};
    HFSUniStr255 name = named(u"before");
};

TEST_F(FolderItems, ThatExistHaveAReference) {
    for (const std::string& path : {file, folder, std::string("/")}) {
        const FolderItem item = runtime.folderItem(path);
        EXPECT_TRUE(item.exists());
        ASSERT_TRUE(reference(item, &ref, nullptr));
        EXPECT_EQ(pathOf(ref), path);
        name = named(u"before");
        ASSERT_TRUE(reference(item, &ref, &name));
        EXPECT_EQ(pathOf(ref), path);
        EXPECT_EQ(name.length, 0);
    }
}

TEST_F(FolderItems, ThatDoNotExistHaveTheirFolderAndName) {
    const FolderItem item = runtime.folderItem(folder + "/neu \xC3\xB6");
    EXPECT_FALSE(item.exists());
    EXPECT_FALSE(reference(item, &ref, nullptr));
    ASSERT_TRUE(reference(item, &ref, &name));
    EXPECT_EQ(pathOf(ref), folder);
    EXPECT_EQ(textOf(name), u"neu \u00F6");
    ASSERT_TRUE(reference(runtime.folderItem("/nothing here"), &ref, &name));
    EXPECT_EQ(pathOf(ref), "/");
    EXPECT_EQ(textOf(name), u"nothing here");
}

TEST_F(FolderItems, InNoFolderHaveNothing) {
    for (const FolderItem& item :
         {runtime.folderItem(folder + "/nowhere/file"), runtime.folderItem(file + "/file"),
          FolderItem(runtime.create("FolderItem"))}) {
        EXPECT_FALSE(reference(item, &ref, nullptr)) << item.path();
        EXPECT_FALSE(reference(item, &ref, &name)) << item.path();
    }
    EXPECT_EQ(textOf(name), u"before");
}

TEST_F(FolderItems, AreMadeOfFolderAndName) {
    ASSERT_TRUE(reference(runtime.folderItem(folder), &ref, nullptr));
    name = named(u"file \u00E4");
    const FolderItem item = inFolder(&ref, &name);
    EXPECT_EQ(item.path(), file);
    EXPECT_TRUE(item.exists());
    name = named(u"new");
    EXPECT_EQ(inFolder(&ref, &name).path(), folder + "/new");
    EXPECT_FALSE(inFolder(&ref, &name).exists());
    ASSERT_TRUE(reference(runtime.folderItem("/"), &ref, nullptr));
    EXPECT_EQ(inFolder(&ref, &name).path(), "/new");
}

TEST_F(FolderItems, GoThereAndBack) {
    const FolderItem item = runtime.folderItem(folder + "/there");
    ASSERT_TRUE(reference(item, &ref, &name));
    EXPECT_EQ(inFolder(&ref, &name).path(), item.path());
}

TEST_F(FolderItems, AreNotMadeOfWhatIsNoFolderOrName) {
    const FSRef nothing{};
    EXPECT_TRUE(inFolder(&nothing, &name).isNull());
    EXPECT_TRUE(inFolder(nullptr, &name).isNull());
    expectReport(Report::Kind::BadArgument, "REALFolderItemFromParentFSRef: no folder");
    ASSERT_TRUE(reference(runtime.folderItem(folder), &ref, nullptr));
    EXPECT_TRUE(inFolder(&ref, nullptr).isNull());
    expectReport(Report::Kind::BadArgument, "REALFolderItemFromParentFSRef: no name");
    for (const std::u16string_view bad : {u"", u"a/b", u"..", u"."}) {
        name = named(bad);
        EXPECT_TRUE(inFolder(&ref, &name).isNull());
        expectReport(Report::Kind::BadArgument, "a name that no item can have");
    }
    name.length = 256;
    EXPECT_TRUE(inFolder(&ref, &name).isNull());
    expectReport(Report::Kind::BadArgument, "a name that no item can have");
}

TEST_F(FolderItems, AreMadeOfPathsByTheGlobalMethod) {
    EXPECT_EQ(byPath(runtime.string(file)).path(), file);
    EXPECT_EQ(byPath(runtime.string("/\xE4", encoding::kIsoLatin1)).path(), "/\xC3\xA4");
    EXPECT_EQ(byPath(runtime.string("/nowhere/at/all/")).path(), "/nowhere/at/all");
    EXPECT_EQ(byPath(runtime.string("/")).path(), "/");
    EXPECT_TRUE(byPath(runtime.string("relative")).isNull());
    EXPECT_TRUE(byPath(runtime.string("")).isNull());
    EXPECT_TRUE(byPath(runtime.string("/\xFF")).isNull());
    EXPECT_TRUE(byPath(String()).isNull());
    EXPECT_TRUE(byPath(runtime.string("/"), 0).isNull());
    expectReport(Report::Kind::BadArgument, "GetTrueFolderItem: path mode 0");
}

TEST_F(FolderItems, KnowTheItemsInThem) {
    const FolderItem item = runtime.folderItem(folder);
    auto* const trueItem = method<REALobject(REALobject, std::int64_t)>(item, kTrueItem);
    ASSERT_NE(trueItem, nullptr);
    EXPECT_EQ(FolderItem(runtime.adopt(trueItem(item.handle(), 1))).path(), file);
    for (const std::int64_t index : {0, 2}) {
        EXPECT_EQ(raisedBy([&] { EXPECT_EQ(trueItem(item.handle(), index), nullptr); }),
                  "OutOfBoundsException");
    }
}

TEST_F(FolderItems, OfTheHostProgram) {
    EXPECT_EQ(runtime.folderItem("/a/b//").path(), "/a/b");
    EXPECT_THROW(runtime.folderItem("a"), CallError);
    EXPECT_THROW(runtime.folderItem(""), CallError);
    EXPECT_EQ(FolderItem().path(), "");
    EXPECT_THROW(FolderItem(runtime.date(2020)), CallError);
    EXPECT_EQ(runtime.folderItem("/").variantType(), 9);
}

TEST_F(FolderItems, MisuseIsReported) {
    const FolderItem item = runtime.folderItem(file);
    EXPECT_FALSE(reference(item, nullptr, nullptr));
    expectReport(Report::Kind::BadArgument, "REALFSRefFromFolderItem: no place for the reference");
    EXPECT_FALSE(reference(Object(), &ref, nullptr));
    expectReport(Report::Kind::NullHandle, "REALFSRefFromFolderItem");
    EXPECT_FALSE(reference(runtime.date(2020), &ref, nullptr));
    expectReport(Report::Kind::WrongKind, "REALFSRefFromFolderItem: Date instead of a FolderItem");
}

TEST(HostsWithoutTrueItem, AnswerNullForIt) {
    Runtime runtime(Options{.without = {"FolderItem.TrueItem"}});
    EXPECT_EQ(call<void*>("REALLoadObjectMethod", runtime.folderItem("/").handle(), kTrueItem), nullptr);
}

} // namespace
} // namespace zqm::host::test
