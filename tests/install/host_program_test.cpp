// Host programs are built on an installation, wherever it was moved to.

#include "tests/install/shipped_files.h"
#include "tests/support/process.h"
#include "tests/support/sound_file.h"
#include "tests/support/temporary_folder.h"

#include <filesystem>
#include <fstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zqm::tests {
namespace {

namespace fs = std::filesystem;
using support::ProcessResult;
using support::runProcess;
using support::SoundFile;
using support::TemporaryFolder;
using testing::HasSubstr;

// A project of one of the examples, which wants the platform library's own headers, too.
constexpr const char* kProject = R"(cmake_minimum_required(VERSION 3.25)
project(lip_sync LANGUAGES CXX)
find_package(zqmhost ${WANTED} REQUIRED)
add_executable(lip_sync ${EXAMPLES}/lip_sync.cpp)
target_link_libraries(lip_sync PRIVATE zqm::host)
file(WRITE ${CMAKE_BINARY_DIR}/plugin ${zqmhost_PLUGIN})
)";

class HostProgram : public testing::Test {
protected:
    void SetUp() override {
        const ProcessResult result = runProcess(
            ZQM_CMAKE, {"--install", ZQM_BUILD_FOLDER, "--strip", "--prefix", folder / "first place"});
        ASSERT_TRUE(result.succeeded()) << result.output << result.errors;
        fs::create_directory(folder / "moved");
        fs::rename(folder / "first place", prefix);
    }

    // What `find_package(zqmhost)` of this version comes to.
    ProcessResult configure(const std::string& version) const {
        fs::create_directory(project);
        std::ofstream(project / "CMakeLists.txt") << kProject;
        return runProcess(ZQM_CMAKE, {"-S", project, "-B", project / "build", "-G", "Ninja",
                                      "-DWANTED=" + version, "-DEXAMPLES=" ZQM_SOURCE_FOLDER "/examples",
                                      std::string("-DCMAKE_CXX_COMPILER=") + ZQM_CXX_COMPILER,
                                      "-DCMAKE_PREFIX_PATH=" + prefix.string()});
    }

    void expectInstalled(const std::string& plugin) const {
        EXPECT_TRUE(fs::equivalent(plugin, prefix / ZQM_LIB / "libZQMNSSpeech.so")) << plugin;
    }

    TemporaryFolder folder;
    fs::path prefix = folder / "moved/a prefix";
    fs::path project = folder / "project";
    fs::path sound = folder / "speech.wav";
};

TEST_F(HostProgram, IsBuiltByPkgConfig) {
    const support::ProcessOptions options{
        .environment = {{"PKG_CONFIG_PATH", (prefix / ZQM_LIB / "pkgconfig").string()}},
        .folder = folder.path()};
    // The flags are quoted for the shell.
    const ProcessResult built =
        runProcess("bash",
                   {"-ec", "eval " ZQM_CXX_COMPILER " -std=c++20 " ZQM_SOURCE_FOLDER
                           "/examples/hello.cpp -o hello $(pkg-config --cflags --libs zqmhost) "
                           "-Wl,-rpath,$(pkg-config --variable=libdir zqmhost)"},
                   options);
    ASSERT_TRUE(built.succeeded()) << built.errors;
    EXPECT_EQ(runProcess("pkg-config", {"--modversion", "zqmhost"}, options).output, ZQM_VERSION "\n");
    const ProcessResult plugin =
        runProcess("bash", {"-ec", "eval printf %s \"$(pkg-config --variable=plugin zqmhost)\""}, options);
    expectInstalled(plugin.output);
    const ProcessResult run = runProcess(folder / "hello", {plugin.output, sound});
    EXPECT_EQ(run.output, "Hello\nworld\n") << run.errors;
    EXPECT_GT(SoundFile(sound).seconds(), 0.4);
}

TEST_F(HostProgram, IsBuiltByCMake) {
    const ProcessResult configured = configure(ZQM_VERSION);
    ASSERT_TRUE(configured.succeeded()) << configured.errors;
    const ProcessResult built = runProcess(ZQM_CMAKE, {"--build", project / "build"});
    ASSERT_TRUE(built.succeeded()) << built.output << built.errors;
    std::string plugin;
    std::getline(std::ifstream(project / "build/plugin"), plugin);
    expectInstalled(plugin);
    const ProcessResult run = runProcess(project / "build/lip_sync", {plugin, "Pa", sound});
    EXPECT_THAT(run.output, HasSubstr(" open\n")) << run.errors;
    EXPECT_GT(SoundFile(sound).seconds(), 0.1);
}

TEST_F(HostProgram, IsToldWhatItLacks) {
    const ProcessResult younger = configure("99.0");
    EXPECT_FALSE(younger.succeeded());
    EXPECT_THAT(younger.errors, HasSubstr("zqmhost-config.cmake, version: " ZQM_VERSION));

    fs::remove(prefix / kPlatformLibrary);
    const ProcessResult withoutPlugin = configure(ZQM_VERSION);
    EXPECT_FALSE(withoutPlugin.succeeded());
    EXPECT_THAT(withoutPlugin.errors, HasSubstr("libzqmplatform.so"));
}

} // namespace
} // namespace zqm::tests
