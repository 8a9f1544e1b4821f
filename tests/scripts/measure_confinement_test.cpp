// scripts/measure-confinement tells of what is refused, and also where nothing is.

#include "tests/scripts/script_project.h"

#include <gtest/gtest.h>

namespace zqm::tests {
namespace {

// Of a test that runs one engine, of which strace has written this.
support::ProcessResult measured(const std::string& trace) {
    const ScriptProject project("scripts/measure-confinement");
    project.write("trace", trace);
    project.replace("cmake", "");
    project.replace("strace", "while [ \"$1\" != -o ]; do shift; done; cp '" + (project / "trace").string() +
                                  "' \"$2\"");
    project.writeProgram("build/release/zqmspeech-engine", "");
    project.writeProgram("build/release/tests/one_test",
                         '\'' + (project / "build/release/zqmspeech-engine").string() + '\'');
    return project.run({"one_test"});
}

constexpr const char* kConfined = "7 openat(AT_FDCWD, \"/etc/before\", O_RDONLY) = 3</etc/before>\n"
                                  "7 seccomp(SECCOMP_SET_MODE_FILTER, 0, 0x7ffd) = 0\n";

TEST(MeasureConfinement, TellsOfCallsAndFilesAndOfWhatIsRefused) {
    const auto result =
        measured(std::string(kConfined) +
                 "7 openat(AT_FDCWD, \"/etc/one\", O_RDONLY) = 3</etc/one>\n"
                 "7 openat(AT_FDCWD, \"/etc/two\", O_RDONLY) = -1 EACCES (Permission denied)\n"
                 "7 close(3</etc/one>) = 0\n");
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output, "calls\n"
                             "      2 openat\n"
                             "      1 close\n"
                             "\n"
                             "refused\n"
                             "      1 openat(AT_FDCWD, \"/etc/two\"\n"
                             "\n"
                             "files\n"
                             "      1 /etc/one\n");
}

TEST(MeasureConfinement, TellsThatNothingIsRefused) {
    const auto result = measured(std::string(kConfined) + "7 read(0, \"\", 10) = 0\n");
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output, "calls\n"
                             "      1 read\n"
                             "\n"
                             "refused\n"
                             "\n"
                             "files\n");
}

} // namespace
} // namespace zqm::tests
