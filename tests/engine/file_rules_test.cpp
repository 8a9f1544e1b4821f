// What can be opened where the environment's variables name something else than what they are for.

#include "engine/confinement/file_rules.h"

#include "tests/engine/kernel_confinement.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/temporary_folder.h"

#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

using namespace zqm::engine;
using zqm::support::ScopedEnvironment;
using zqm::support::TemporaryFolder;

namespace {

class FileRules : public testing::Test {
protected:
    void SetUp() override {
        if (zqm::test::kernelLandlockVersion() == 0) {
            GTEST_SKIP() << "this kernel has no Landlock";
        }
        std::filesystem::create_directories(folder_.path() / "client.conf.d");
        std::filesystem::create_directories(folder_.path() / "beneath");
        for (const char* const name : {"file", "client.conf", "client.conf.d/file", "beneath/file"}) {
            std::ofstream(folder_ / name) << name;
        }
    }

    // In a process that goes by the rules.
    [[nodiscard]] bool opens(const char* name, int how = O_RDONLY) const {
        const pid_t process = ::fork();
        if (process == 0) {
            restrictFiles(fileRules());
            ::_exit(::open((folder_ / name).c_str(), how) >= 0 ? 0 : 1);
        }
        int status = 0;
        ::waitpid(process, &status, 0);
        EXPECT_TRUE(WIFEXITED(status)) << "by signal " << WTERMSIG(status);
        return WEXITSTATUS(status) == 0;
    }
    [[nodiscard]] bool lists(const char* name) const { return opens(name, O_RDONLY | O_DIRECTORY); }

    [[nodiscard]] bool opensNothing() const {
        return !lists(".") && !lists("beneath") && !opens("file") && !opens("client.conf") &&
               !opens("client.conf.d/file") && !opens("beneath/file");
    }

    TemporaryFolder folder_;
};

class FileRulesForFiles : public FileRules, public testing::WithParamInterface<const char*> {};

TEST_P(FileRulesForFiles, openTheFile) {
    const ScopedEnvironment use(GetParam(), (folder_ / "file").string());
    EXPECT_TRUE(opens("file"));
    EXPECT_FALSE(opens("file", O_RDWR));
    EXPECT_FALSE(opens("client.conf"));
    EXPECT_FALSE(lists("."));
}

TEST_P(FileRulesForFiles, openNoFolder) {
    const ScopedEnvironment use(GetParam(), folder_.path().string());
    EXPECT_TRUE(opensNothing());
}

INSTANTIATE_TEST_SUITE_P(Variables, FileRulesForFiles, testing::Values("PULSE_COOKIE", "PULSE_CLIENTCONFIG"),
                         [](const auto& variable) { return std::string(variable.param); });

TEST_F(FileRules, openNoFolderInThePlaceOfTheCookie) {
    std::filesystem::rename(folder_ / "beneath", folder_ / ".pulse-cookie");
    const ScopedEnvironment use("HOME", folder_.path().string());
    EXPECT_FALSE(opens(".pulse-cookie/file"));
    EXPECT_FALSE(lists(".pulse-cookie"));
}

TEST_F(FileRules, openTheClientsSettingsAloneInTheFolderForThem) {
    const ScopedEnvironment use("PULSE_CONFIG_PATH", folder_.path().string());
    EXPECT_TRUE(opens("client.conf"));
    EXPECT_TRUE(opens("client.conf.d/file"));
    EXPECT_TRUE(lists("client.conf.d"));
    EXPECT_FALSE(opens("file"));
    EXPECT_FALSE(opens("beneath/file"));
    EXPECT_FALSE(lists("."));
}

TEST_F(FileRules, listTheFolderOfTheServersSocketAndReadNothingInIt) {
    const ScopedEnvironment use("PULSE_RUNTIME_PATH", folder_.path().string());
    EXPECT_TRUE(lists("."));
    EXPECT_FALSE(opens("file"));
    EXPECT_FALSE(opens("beneath/file"));
}

class FileRulesForFolders : public FileRules, public testing::WithParamInterface<const char*> {};

TEST_P(FileRulesForFolders, openNoFile) {
    const ScopedEnvironment use(GetParam(), (folder_ / "file").string());
    EXPECT_TRUE(opensNothing());
}

INSTANTIATE_TEST_SUITE_P(Variables, FileRulesForFolders,
                         testing::Values("PULSE_CONFIG_PATH", "PULSE_RUNTIME_PATH", "ESPEAK_DATA_PATH"),
                         [](const auto& variable) { return std::string(variable.param); });

// Which voices there are is its own affair.
TEST_F(FileRules, openAllOfTheVoices) {
    const ScopedEnvironment use("ESPEAK_DATA_PATH", folder_.path().string());
    EXPECT_TRUE(lists("."));
    EXPECT_TRUE(opens("beneath/file"));
    EXPECT_FALSE(opens("file", O_RDWR));
}

} // namespace
