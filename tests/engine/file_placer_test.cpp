#include "engine/output/file_placer.h"

#include "tests/support/temporary_folder.h"

#include <cerrno>
#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

using zqm::engine::FilePlacer;
using zqm::protocol::Descriptor;
using zqm::support::TemporaryFolder;

namespace {

class Placing : public testing::Test {
protected:
    [[nodiscard]] Descriptor makeFile(const std::string& name, int mode = O_RDWR) const {
        std::ofstream(folder_ / name) << name;
        return Descriptor(::open((folder_ / name).c_str(), mode | O_CLOEXEC));
    }
    [[nodiscard]] static Descriptor open(const std::filesystem::path& folder) {
        return Descriptor(::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    }
    [[nodiscard]] std::string contentOf(const std::string& name) const {
        std::ifstream file(folder_ / name);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    [[nodiscard]] bool isThere(const std::string& name) const {
        return std::filesystem::exists(folder_ / name);
    }

    TemporaryFolder folder_;
    TemporaryFolder other_;
    Descriptor place_ = open(folder_.path());
    FilePlacer placer_;
};

TEST_F(Placing, givesTheFinalNameInsteadOfTheTemporaryOne) {
    std::ofstream(folder_ / "final") << "old";
    const Descriptor file = makeFile(".temporary");
    EXPECT_EQ(placer_.place(file.get(), place_.get(), ".temporary", "final"), 0);
    EXPECT_EQ(contentOf("final"), ".temporary");
    EXPECT_FALSE(isThere(".temporary"));
}

// A file that was opened without a name in the folder, where the file system has such files.
class PlacingNameless : public Placing {
protected:
    void SetUp() override {
        if (!file_ && (error_ == EOPNOTSUPP || error_ == EISDIR)) {
            GTEST_SKIP() << "no files without names in this folder: "
                         << std::generic_category().message(error_);
        }
        ASSERT_TRUE(file_) << std::generic_category().message(error_);
    }

    Descriptor file_{::open(folder_.path().c_str(), O_RDWR | O_TMPFILE | O_CLOEXEC, 0600)};
    int error_ = errno;
};

TEST_F(PlacingNameless, givesItAName) {
    EXPECT_EQ(placer_.place(file_.get(), place_.get(), ".temporary", "final"), 0);
    EXPECT_TRUE(isThere("final"));
    EXPECT_FALSE(isThere(".temporary"));
}

TEST_F(PlacingNameless, putsItIntoNoOtherFolder) {
    EXPECT_EQ(placer_.place(file_.get(), open(other_.path()).get(), ".temporary", "final"), EPERM);
    const std::filesystem::path beneath = folder_ / "beneath";
    std::filesystem::create_directory(beneath);
    EXPECT_EQ(placer_.place(file_.get(), open(beneath).get(), ".temporary", "final"), EPERM);
    EXPECT_EQ(placer_.place(file_.get(), open(folder_.path().parent_path()).get(), ".temporary", "final"),
              EPERM);
    EXPECT_TRUE(std::filesystem::is_empty(beneath));
    EXPECT_TRUE(std::filesystem::is_empty(other_.path()));
}

TEST_F(Placing, removesTheTemporaryName) {
    const Descriptor file = makeFile(".temporary");
    EXPECT_EQ(placer_.remove(file.get(), place_.get(), ".temporary"), 0);
    EXPECT_FALSE(isThere(".temporary"));
    EXPECT_EQ(placer_.remove(file.get(), place_.get(), ".temporary"), ENOENT);
}

TEST_F(Placing, removesTheTemporaryNameWhenTheOtherCanNotBeGiven) {
    std::filesystem::create_directory(folder_ / "final");
    const Descriptor file = makeFile(".temporary");
    EXPECT_EQ(placer_.place(file.get(), place_.get(), ".temporary", "final"), EISDIR);
    EXPECT_FALSE(isThere(".temporary"));
}

// The name of another file than that which is open.
TEST_F(Placing, touchesNoOtherFile) {
    const Descriptor file = makeFile(".temporary");
    const Descriptor other = makeFile(".other");
    EXPECT_EQ(placer_.place(file.get(), place_.get(), ".other", "final"), EPERM);
    EXPECT_EQ(placer_.remove(file.get(), place_.get(), ".other"), EPERM);
    EXPECT_EQ(placer_.remove(file.get(), open(other_.path()).get(), ".temporary"), EPERM);
    EXPECT_TRUE(isThere(".temporary"));
    EXPECT_TRUE(isThere(".other"));
}

TEST_F(Placing, touchesNoFileThatIsOnlyRead) {
    const Descriptor file = makeFile(".temporary", O_RDONLY);
    EXPECT_EQ(placer_.place(file.get(), place_.get(), ".temporary", "final"), EPERM);
    EXPECT_EQ(placer_.remove(file.get(), place_.get(), ".temporary"), EPERM);
    EXPECT_TRUE(isThere(".temporary"));
}

TEST_F(Placing, touchesNoFileThatIsNotHidden) {
    const Descriptor file = makeFile("shown");
    EXPECT_EQ(placer_.place(file.get(), place_.get(), "shown", "final"), EPERM);
    EXPECT_EQ(placer_.remove(file.get(), place_.get(), "shown"), EPERM);
    EXPECT_TRUE(isThere("shown"));
}

TEST_F(Placing, touchesNothingInMemory) {
    const Descriptor file(::memfd_create("a", MFD_CLOEXEC));
    EXPECT_EQ(placer_.place(file.get(), open("/").get(), ".zqm-memory", "zqm-memory"), EPERM);
}

TEST_F(Placing, goesIntoNoOtherFolderByAName) {
    const Descriptor file = makeFile(".temporary");
    const std::string elsewhere = "../" + other_.path().filename().string() + "/final";
    for (const std::string& name :
         {elsewhere, std::string("."), std::string(".."), (other_ / "final").string()}) {
        EXPECT_EQ(placer_.place(file.get(), place_.get(), ".temporary", name), EPERM) << name;
    }
    EXPECT_EQ(placer_.place(file.get(), place_.get(), ".temporary", ""), ENOENT);
    EXPECT_EQ(placer_.place(file.get(), place_.get(), ".temporary", std::string(300, 'a')), ENAMETOOLONG);
    EXPECT_TRUE(isThere(".temporary"));
    EXPECT_TRUE(std::filesystem::is_empty(other_.path()));
}

TEST_F(Placing, needsAFolder) {
    const Descriptor file = makeFile(".temporary");
    EXPECT_NE(placer_.place(file.get(), file.get(), ".temporary", "final"), 0);
    EXPECT_NE(placer_.place(place_.get(), place_.get(), ".temporary", "final"), 0);
    EXPECT_TRUE(isThere(".temporary"));
}

} // namespace
