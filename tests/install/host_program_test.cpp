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

constexpr const char* kExample = ZQM_SOURCE_FOLDER "/examples/hello.cpp";

class HostProgram : public testing::Test {
protected:
    void SetUp() override {
        const ProcessResult result = runProcess(
            ZQM_CMAKE, {"--install", ZQM_BUILD_FOLDER, "--strip", "--prefix", folder / "first place"});
        ASSERT_TRUE(result.succeeded()) << result.output << result.errors;
        fs::create_directory(folder / "moved");
        fs::rename(folder / "first place", prefix);
    }

    // What `find_package(zqmhost)` of this version comes to, in a project that builds the example.
    ProcessResult configure(const std::string& version) const {
        fs::create_directory(project);
        std::ofstream(project / "CMakeLists.txt")
            << "cmake_minimum_required(VERSION 3.25)\n"
               "project(hello LANGUAGES CXX)\n"
               "find_package(zqmhost " +
                   version +
                   " REQUIRED)\n"
                   "add_executable(hello " +
                   kExample +
                   ")\n"
                   "target_link_libraries(hello PRIVATE zqm::host)\n"
                   "file(WRITE ${CMAKE_BINARY_DIR}/plugin ${zqmhost_PLUGIN})\n";
        return runProcess(ZQM_CMAKE, {"-S", project, "-B", project / "build", "-G", "Ninja",
                                      std::string("-DCMAKE_CXX_COMPILER=") + ZQM_CXX_COMPILER,
                                      "-DCMAKE_PREFIX_PATH=" + prefix.string()});
    }

    void expectItSpeaks(const fs::path& program, const std::string& plugin) const {
        EXPECT_TRUE(fs::equivalent(plugin, prefix / ZQM_LIB / "libZQMNSSpeech.so")) << plugin;
        const fs::path sound = folder / "speech.wav";
        const ProcessResult run = runProcess(program, {plugin, sound});
        EXPECT_TRUE(run.succeeded()) << run.errors;
        EXPECT_EQ(run.output, "Hello\nworld\n");
        EXPECT_GT(SoundFile(sound).seconds(), 0.4);
    }

    TemporaryFolder folder;
    fs::path prefix = folder / "moved/a prefix";
    fs::path project = folder / "project";
};

TEST_F(HostProgram, IsBuiltByPkgConfig) {
    const support::ProcessOptions options{
        .environment = {{"PKG_CONFIG_PATH", (prefix / ZQM_LIB / "pkgconfig").string()},
                        {"PREFIX", prefix.string()}},
        .folder = folder.path()};
    // The flags are quoted for the shell.
    const ProcessResult built =
        runProcess("bash",
                   {"-ec", "eval " ZQM_CXX_COMPILER " -std=c++20 " + std::string(kExample) +
                               " -o hello $(pkg-config --cflags --libs zqmhost) "
                               "'-Wl,-rpath,\"$PREFIX/" ZQM_LIB "\"'"},
                   options);
    ASSERT_TRUE(built.succeeded()) << built.errors;
    EXPECT_EQ(runProcess("pkg-config", {"--modversion", "zqmhost"}, options).output, ZQM_VERSION "\n");
    const ProcessResult plugin =
        runProcess("bash", {"-ec", "eval printf %s \"$(pkg-config --variable=plugin zqmhost)\""}, options);
    expectItSpeaks(folder / "hello", plugin.output);
}

TEST_F(HostProgram, IsBuiltByCMake) {
    const ProcessResult configured = configure(ZQM_VERSION);
    ASSERT_TRUE(configured.succeeded()) << configured.errors;
    const ProcessResult built = runProcess(ZQM_CMAKE, {"--build", project / "build"});
    ASSERT_TRUE(built.succeeded()) << built.output << built.errors;
    std::string plugin;
    std::getline(std::ifstream(project / "build/plugin"), plugin);
    expectItSpeaks(project / "build/hello", plugin);
}

TEST_F(HostProgram, IsToldWhatItLacks) {
    const ProcessResult younger = configure("99.0");
    EXPECT_FALSE(younger.succeeded());
    EXPECT_THAT(younger.errors, HasSubstr("zqmhost-config.cmake, version: " ZQM_VERSION));

    fs::remove(prefix / ZQM_LIB / "libzqmplatform.so");
    const ProcessResult withoutPlugin = configure(ZQM_VERSION);
    EXPECT_FALSE(withoutPlugin.succeeded());
    EXPECT_THAT(withoutPlugin.errors, HasSubstr("libzqmplatform.so"));
}

} // namespace
} // namespace zqm::tests
