// The Debian packages: what is in them, what they say of themselves, and that what is in them works.

#include "tests/install/shipped_files.h"
#include "tests/support/process.h"
#include "tests/support/sound_file.h"
#include "tests/support/temporary_folder.h"

#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <regex>
#include <sstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zqm::tests {
namespace {

namespace fs = std::filesystem;
using support::ProcessResult;
using support::runProcess;
using support::TemporaryFolder;
using testing::ContainerEq;
using testing::HasSubstr;

constexpr const char* kVersion = ZQM_VERSION "-1";

// The standard output of a command that has to succeed.
std::string outputOf(const std::string& program, const std::vector<std::string>& arguments) {
    const ProcessResult result = runProcess(program, arguments);
    EXPECT_TRUE(result.succeeded()) << program << ": " << result.output << result.errors;
    return result.output;
}

std::string contentOf(const fs::path& file) {
    std::ostringstream content;
    content << std::ifstream(file).rdbuf();
    return content.str();
}

// What is at this path of an installation has another one in the package.
std::string pathInPackage(const std::string& path, const std::string& package) {
    static const std::regex document(kDocuments + "(.*)");
    static const std::regex manualPage(ZQM_SHARE "/man/.*");
    static const std::regex zshFunction(ZQM_SHARE "/zsh/site-functions/(.*)");
    std::smatch match;
    if (std::regex_match(path, match, document)) {
        const std::string name = match[1] == "CHANGELOG.md" ? "changelog.gz" : match.str(1);
        return "usr/" ZQM_SHARE "/doc/" + package + "/" + name;
    }
    if (std::regex_match(path, match, zshFunction)) {
        return "usr/" ZQM_SHARE "/zsh/vendor-completions/" + match.str(1);
    }
    return "usr/" + path + (std::regex_match(path, manualPage) ? ".gz" : "");
}

class Packages : public testing::Test {
protected:
    static void SetUpTestSuite() {
        made = std::make_unique<TemporaryFolder>();
        outputOf(ZQM_CPACK, {"--config", ZQM_BUILD_FOLDER "/CPackConfig.cmake", "-B", made->path()});
        for (const Component& component : kComponents) {
            unpack(component.package);
        }
    }
    static void TearDownTestSuite() { made.reset(); }

    static fs::path fileOf(const std::string& package) {
        return *made / (package + "_" + kVersion + "_" + architecture() + ".deb");
    }
    static fs::path treeOf(const std::string& package) { return *made / ("tree of " + package); }
    static std::string field(const std::string& package, const std::string& name) {
        return outputOf("dpkg-deb", {"--field", fileOf(package), name});
    }
    static std::string architecture() {
        std::string name = outputOf("dpkg", {"--print-architecture"});
        name.pop_back();
        return name;
    }

private:
    static void unpack(const std::string& package) {
        outputOf("dpkg-deb", {"--extract", fileOf(package), treeOf(package)});
    }

    static inline std::unique_ptr<TemporaryFolder> made;
};

TEST_F(Packages, HoldWhatAnInstallationHolds) {
    for (const Component& component : kComponents) {
        const std::string& package = component.package;
        Files expected{"usr/" ZQM_SHARE "/doc/" + package + "/changelog.Debian.gz",
                       "usr/" ZQM_SHARE "/lintian/overrides/" + package};
        for (const std::string& file : joined(component.files, kCommonDocuments)) {
            expected.insert(pathInPackage(file, package));
        }
        EXPECT_THAT(filesIn(treeOf(package)), ContainerEq(expected)) << package;
    }
}

TEST_F(Packages, BelongToRootAndAreWrittenByNobodyElse) {
    static const std::regex line("[-d][-rwx]{4}-[-rwx]{2}-[-rwx] root/root .*|l.* root/root .*");
    for (const Component& component : kComponents) {
        std::istringstream lines(outputOf("dpkg-deb", {"--contents", fileOf(component.package)}));
        for (std::string entry; std::getline(lines, entry);) {
            EXPECT_TRUE(std::regex_match(entry, line)) << entry;
        }
    }
}

TEST_F(Packages, SayWhatTheyAre) {
    static const std::map<std::string, std::string> sections = {{"zqmspeech-plugin", "sound"},
                                                                {"zqmspeech", "sound"},
                                                                {"libzqmhost-dev", "libdevel"},
                                                                {"python3-zqm", "python"}};
    for (const Component& component : kComponents) {
        const std::string& package = component.package;
        EXPECT_EQ(field(package, "Package"), package + "\n");
        EXPECT_EQ(field(package, "Version"), std::string(kVersion) + "\n");
        EXPECT_EQ(field(package, "Section"), sections.at(package) + "\n");
        EXPECT_EQ(field(package, "Maintainer"), ZQM_CONTACT "\n");
        // A line in short, then in full.
        EXPECT_THAT(field(package, "Description"),
                    testing::MatchesRegex("[a-z][^\n]{1,59}[^.]\n( [^\n]{1,79}\n)+"));
    }
}

TEST_F(Packages, NameWhatTheyNeed) {
    const std::string plugin = field("zqmspeech-plugin", "Depends");
    for (const char* library :
         {"espeak-ng-data", "pocketsphinx-en-us", "libespeak-ng1 (>=", "libgnustep-base", "libicu",
          "libobjc4", "libpulse0 (>=", "libsamplerate0 (>=", "libsndfile1 (>=", "libstdc++6 (>="}) {
        EXPECT_THAT(plugin, HasSubstr(library));
    }
    EXPECT_EQ(field("zqmspeech-plugin", "Suggests"), "pipewire-pulse | pulseaudio\n");
    const std::string pluginOfSameVersion = "zqmspeech-plugin (= " + std::string(kVersion) + ")";
    for (const Component& component : kComponents) {
        if (component.name != "plugin") {
            EXPECT_THAT(field(component.package, "Depends"), HasSubstr(pluginOfSameVersion))
                << component.package;
        }
    }
    EXPECT_THAT(field("zqmspeech", "Depends"), HasSubstr("libffi"));
    EXPECT_THAT(field("libzqmhost-dev", "Depends"), HasSubstr("libffi-dev"));
}

// By this dpkg-shlibdeps knows what a program depends on that is linked with the platform library.
TEST_F(Packages, TellWhichVersionsAProgramThatIsLinkedNeeds) {
    const fs::path library = treeOf("zqmspeech-plugin") / "usr" / kPlatformLibrary;
    const std::string soname = library.filename();
    const std::string version = soname.substr(soname.find(".so.") + 4);
    const std::size_t dot = version.find('.');
    const std::string next =
        version.substr(0, dot + 1) + std::to_string(std::stoi(version.substr(dot + 1)) + 1);
    EXPECT_EQ(outputOf("dpkg-deb", {"--info", fileOf("zqmspeech-plugin"), "shlibs"}),
              "libzqmplatform " + version + " zqmspeech-plugin (>= " + version + "~), zqmspeech-plugin (<< " +
                  next + "~)\n");
}

TEST_F(Packages, BringTheirLicencesAndChanges) {
    for (const Component& component : kComponents) {
        const fs::path documents = treeOf(component.package) / "usr/" ZQM_SHARE "/doc" / component.package;
        const std::string copyright = contentOf(documents / "copyright");
        EXPECT_THAT(copyright, HasSubstr("\nLicense: Expat\n Permission is hereby granted"));
        EXPECT_THAT(copyright, HasSubstr("version 3 of the GNU General\n Public License or any later one"));
        EXPECT_THAT(copyright, HasSubstr("Carnegie Mellon University"));
        EXPECT_EQ(outputOf("gzip", {"--decompress", "--stdout", documents / "changelog.gz"}),
                  contentOf(ZQM_SOURCE_FOLDER "/CHANGELOG.md"));
        const fs::path debian = treeOf(component.package) / "changelog";
        std::ofstream(debian) << outputOf("gzip",
                                          {"--decompress", "--stdout", documents / "changelog.Debian.gz"});
        for (const auto& [name, value] :
             std::map<std::string, std::string>{{"Version", kVersion}, {"Maintainer", ZQM_CONTACT}}) {
            EXPECT_EQ(outputOf("dpkg-parsechangelog", {"--file", debian, "--show-field", name}),
                      value + "\n");
        }
    }
}

TEST_F(Packages, SpeakTogether) {
    const fs::path root = treeOf("zqmspeech") / "all";
    for (const char* package : {"zqmspeech-plugin", "zqmspeech"}) {
        outputOf("dpkg-deb", {"--extract", fileOf(package), root});
    }
    const fs::path sound = root / "speech.wav";
    outputOf(root / "usr" / ZQM_BIN / "zqmspeech", {"say", "-o", sound, "Hello world"});
    EXPECT_GT(support::SoundFile(sound).seconds(), 0.4);
}

// The domains that RFC 2606 and 6761 keep for examples and for nobody.
TEST(Contact, IsAnAddress) {
    EXPECT_THAT(ZQM_CONTACT, testing::MatchesRegex("[^<>@]+ <[^<>@ ]+@[^<>@ ]+\\.[a-z]+>"));
    EXPECT_THAT(ZQM_CONTACT,
                testing::Not(testing::MatchesRegex(
                    ".*[@.](example(\\.com|\\.net|\\.org)?|invalid|test|localhost|localdomain|local)>")));
}

TEST(Changelog, TellsOfThisVersionFirst) {
    static const std::regex release("\n## \\[([0-9][^\\]]*)\\] - [0-9]{4}-[0-9]{2}-[0-9]{2}\n");
    const std::string changelog = contentOf(ZQM_SOURCE_FOLDER "/CHANGELOG.md");
    std::smatch match;
    ASSERT_TRUE(std::regex_search(changelog, match, release));
    EXPECT_EQ(match[1], ZQM_VERSION);
}

} // namespace
} // namespace zqm::tests
