// What an installation holds, and that it works wherever it is.

#include "tests/install/shipped_files.h"
#include "tests/support/process.h"
#include "tests/support/sound_file.h"
#include "tests/support/temporary_folder.h"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zqm::tests {
namespace {

namespace fs = std::filesystem;
using support::ProcessResult;
using support::runProcess;
using support::SoundFile;
using support::TemporaryFolder;
using testing::ContainerEq;
using testing::HasSubstr;

void install(const fs::path& prefix, const std::vector<std::string>& options = {}) {
    std::vector<std::string> arguments{"--install", ZQM_BUILD_FOLDER, "--prefix", prefix.string()};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const ProcessResult result = runProcess(ZQM_CMAKE, arguments);
    ASSERT_TRUE(result.succeeded()) << result.output << result.errors;
}

ProcessResult say(const fs::path& prefix, const fs::path& file) {
    return runProcess(prefix / ZQM_BIN / "zqmspeech", {"say", "-o", file.string(), "Hello world"});
}

void expectItSpeaks(const fs::path& prefix, const fs::path& file) {
    const ProcessResult result = say(prefix, file);
    ASSERT_TRUE(result.succeeded()) << result.errors;
    EXPECT_GT(SoundFile(file).seconds(), 0.4);
    fs::remove(file);
}

// What a program or library says to the linker, in entries of these kinds.
std::vector<std::string> linkerEntries(const fs::path& file, const std::vector<std::string>& kinds) {
    const ProcessResult result = runProcess("readelf", {"--dynamic", "--wide", file.string()});
    EXPECT_TRUE(result.succeeded()) << result.errors;
    std::istringstream lines(result.output);
    std::vector<std::string> entries;
    for (std::string line; std::getline(lines, line);) {
        for (const std::string& kind : kinds) {
            if (line.find("(" + kind + ")") != std::string::npos) {
                const std::size_t begin = line.find('[') + 1;
                entries.push_back(line.substr(begin, line.rfind(']') - begin));
            }
        }
    }
    return entries;
}

// The folders in which it looks for others.
std::vector<std::string> searchedFolders(const fs::path& file) {
    return linkerEntries(file, {"RPATH", "RUNPATH"});
}

std::vector<std::string> elementsOf(const std::string& searchPath) {
    std::vector<std::string> elements;
    std::size_t begin = 0;
    for (std::size_t end = 0; end != std::string::npos; begin = end + 1) {
        end = searchPath.find(':', begin);
        elements.push_back(searchPath.substr(begin, end - begin));
    }
    return elements;
}

// An absolute folder is one of the machine that built it; an empty one is the current folder.
void expectItLooksFromWhereItIs(const fs::path& file) {
    for (const std::string& searchPath : searchedFolders(file)) {
        EXPECT_THAT(elementsOf(searchPath), testing::Each(testing::MatchesRegex("[$]ORIGIN(/.+)?")))
            << file << ": " << searchPath;
    }
}

bool isElf(const fs::path& file) {
    std::string head(4, '\0');
    std::ifstream(file, std::ios::binary).read(head.data(), 4);
    return head == "\177ELF";
}

// The programs and libraries below a prefix, but for links to them.
Files elfFilesIn(const fs::path& prefix) {
    Files files;
    for (const std::string& file : filesIn(prefix)) {
        if (!fs::is_symlink(prefix / file) && isElf(prefix / file)) {
            files.insert(file);
        }
    }
    return files;
}

// What the build has of an installed program or library.
fs::path builtFile(const fs::path& installed) {
    const fs::path folder = installed.filename() == ZQM_PYTHON_MODULE ? "python/zqm" : "";
    return ZQM_BUILD_FOLDER / folder / installed.filename();
}

class Installation : public testing::Test {
protected:
    TemporaryFolder folder;
    fs::path prefix = folder / "a prefix";
    fs::path sound = folder / "speech.wav";
};

TEST_F(Installation, OfEachComponentHoldsItsFiles) {
    for (const Component& component : kComponents) {
        const fs::path here = folder / component.name;
        install(here, {"--component", component.name});
        EXPECT_THAT(filesIn(here), ContainerEq(joined(component.files, kCommonDocuments))) << component.name;
    }
}

TEST_F(Installation, OfAllHoldsWhatTheComponentsHold) {
    install(prefix);
    Files all = kCommonDocuments;
    for (const Component& component : kComponents) {
        all = joined(all, component.files);
    }
    EXPECT_THAT(filesIn(prefix), ContainerEq(all));
}

TEST_F(Installation, OfPluginAndCommandSpeaksAndCanBeMoved) {
    install(prefix, {"--component", "plugin"});
    install(prefix, {"--component", "command"});
    expectItSpeaks(prefix, sound);

    const fs::path moved = folder / "elsewhere/deeper";
    fs::create_directory(moved.parent_path());
    fs::rename(prefix, moved);
    expectItSpeaks(moved, sound);

    // Reached by a link, as from a folder of PATH.
    const fs::path link = folder / "link";
    fs::create_symlink(moved / ZQM_BIN / "zqmspeech", link);
    EXPECT_TRUE(runProcess(link, {"say", "-o", sound.string(), "Hello world"}).succeeded());
}

// Else it might be the build's own engine, library or command that has spoken.
TEST_F(Installation, UsesWhatWasInstalled) {
    install(prefix);
    fs::remove(prefix / ZQM_LIBEXEC / "zqmspeech/zqmspeech-engine");
    const ProcessResult withoutEngine = say(prefix, sound);
    EXPECT_EQ(withoutEngine.exitCode, 1);
    EXPECT_THAT(withoutEngine.errors, HasSubstr("the speech engine is missing"));

    fs::remove(prefix / ZQM_LIB / "libZQMNSSpeech.so");
    const ProcessResult withoutPlugin = say(prefix, sound);
    EXPECT_EQ(withoutPlugin.exitCode, 1);
    EXPECT_THAT(withoutPlugin.errors, HasSubstr("libZQMNSSpeech.so is missing"));

    fs::remove(prefix / kPlatformLibrary);
    const ProcessResult withoutPlatform = say(prefix, sound);
    EXPECT_EQ(withoutPlatform.exitCode, 127);
    EXPECT_THAT(withoutPlatform.errors, HasSubstr("libzqmplatform.so"));
}

// A program that was linked before must not run with another interface: until 1.0.0 each minor version has
// its own.
TEST_F(Installation, NamesThePlatformLibraryByTheVersionOfItsInterface) {
    install(prefix);
    const std::string name = fs::path(kPlatformLibrary).filename();
    EXPECT_THAT(linkerEntries(prefix / kPlatformLibrary, {"SONAME"}), testing::ElementsAre(name));
    for (const fs::path user :
         {ZQM_BIN "/zqmspeech", ZQM_LIB "/libZQMNSSpeech.so", ZQM_LIB "/libZQMFoundation.so",
          ZQM_PYTHON_FOLDER "/zqm/" ZQM_PYTHON_MODULE}) {
        EXPECT_THAT(linkerEntries(prefix / user, {"NEEDED"}), testing::Contains(name)) << user;
    }
    EXPECT_EQ(fs::read_symlink(prefix / ZQM_LIB / "libzqmplatform.so"), name);
}

TEST_F(Installation, LooksForLibrariesInItsOwnFoldersOnly) {
    install(prefix);
    EXPECT_THAT(searchedFolders(prefix / ZQM_LIB / "libZQMNSSpeech.so"), testing::ElementsAre("$ORIGIN"));
    EXPECT_THAT(searchedFolders(prefix / ZQM_LIB / "libZQMFoundation.so"), testing::ElementsAre("$ORIGIN"));
    EXPECT_THAT(searchedFolders(prefix / kPlatformLibrary), testing::IsEmpty());
    EXPECT_THAT(searchedFolders(prefix / ZQM_LIBEXEC / "zqmspeech/zqmspeech-engine"), testing::IsEmpty());
    const fs::path upwards = fs::path(ZQM_LIB).lexically_relative(ZQM_PYTHON_FOLDER "/zqm");
    EXPECT_THAT(searchedFolders(prefix / ZQM_PYTHON_FOLDER "/zqm/" ZQM_PYTHON_MODULE),
                testing::ElementsAre("$ORIGIN:$ORIGIN/" + upwards.string()));
    const fs::path libraries = fs::path(ZQM_LIB).lexically_relative(ZQM_BIN);
    EXPECT_THAT(searchedFolders(prefix / ZQM_BIN / "zqmspeech"),
                testing::ElementsAre("$ORIGIN:$ORIGIN/" + libraries.string()));
}

TEST_F(Installation, AndBuildLookForLibrariesFromWhereTheyAre) {
    install(prefix);
    const Files files = elfFilesIn(prefix);
    EXPECT_THAT(files, testing::SizeIs(6));
    for (const std::string& file : files) {
        expectItLooksFromWhereItIs(prefix / file);
        expectItLooksFromWhereItIs(builtFile(file));
    }
}

TEST_F(Installation, AndBuildTakeNoLibraryFromTheCurrentFolder) {
    install(prefix);
    const fs::path current = folder / "current";
    fs::create_directory(current);
    for (const std::string& file : elfFilesIn(prefix)) {
        for (const std::string& library : linkerEntries(prefix / file, {"NEEDED"})) {
            std::ofstream(current / library) << "Whoever loads this says so, and ends.\n";
        }
    }
    const fs::path program = fs::path(ZQM_BIN) / "zqmspeech";
    for (const fs::path& command : {prefix / program, builtFile(program)}) {
        const ProcessResult result =
            runProcess(command, {"say", "-o", sound.string(), "Hello world"}, {.folder = current});
        EXPECT_TRUE(result.succeeded()) << command << ": " << result.errors;
        fs::remove(sound);
    }
}

} // namespace
} // namespace zqm::tests
