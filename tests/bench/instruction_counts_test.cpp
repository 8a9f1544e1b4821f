// What scripts/count-instructions says of counts, which a valgrind of the test's own makes.

#include "tests/support/process.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::ContainsRegex;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using zqm::support::ProcessResult;

class InstructionCounts : public testing::Test {
protected:
    InstructionCounts() {
        fs::create_directory(folder_ / "counts");
        play("valgrind",
             "for each; do case \"$each\" in --callgrind-out-file=*) file=\"${each#*=}\";; esac; done\n"
             "while [ $# -gt 2 ]; do shift; done\n"
             "echo \"totals: $(($(cat '" +
                 (folder_ / "counts").string() + "'/\"$1\") * $2))\" >\"$file\"");
    }

    // A program of that name that does as the shell script says.
    void play(const std::string& program, const std::string& script) const {
        const fs::path file = folder_ / program;
        std::ofstream(file) << "#!/bin/sh\n" << script << '\n';
        fs::permissions(file, fs::perms::owner_all);
    }
    // The paths that there are, and what is counted of each.
    void playCounts(const std::vector<std::pair<std::string, int>>& counts) const {
        std::string names;
        for (const auto& [path, count] : counts) {
            names += path + '\n';
            std::ofstream(folder_ / "counts" / path) << count;
        }
        play("hot_paths", "printf '" + names + '\'');
    }
    void record(const std::string& content) const { std::ofstream(recordFile()) << content; }
    std::string recorded() const {
        std::ifstream stream(recordFile());
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    fs::path recordFile() const { return folder_ / "record.json"; }

    ProcessResult count(const std::vector<std::string>& options = {}) const {
        return countIn(folder_.path().string() + ':' + std::getenv("PATH"), options);
    }
    ProcessResult countIn(const std::string& path, const std::vector<std::string>& options = {}) const {
        std::vector<std::string> arguments{"-B", "-m", "counting", (folder_ / "hot_paths").string(),
                                           recordFile().string()};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return zqm::support::runProcess("/usr/bin/python3", arguments,
                                        {.environment = {{"PATH", path}}, .folder = ZQM_SCRIPTS});
    }

    zqm::support::TemporaryFolder folder_;
};

constexpr const char* kHowToRecord = "If that is meant, record it: scripts/count-instructions --write\n";

TEST_F(InstructionCounts, ThatAreRecordedPass) {
    playCounts({{"one", 12}, {"another", 3456}});
    record(R"({"one": 12, "another": 3456})");
    const ProcessResult result = count();
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.output, "path     recorded  counted  change in %\n"
                             "one            12       12         +0.0\n"
                             "another      3456     3456         +0.0\n");
}

struct Change {
    const char* name;
    int counted; // where 1000 are recorded
    const char* shown;
    bool passes;
};

class InstructionCountsOf : public InstructionCounts, public testing::WithParamInterface<Change> {};

TEST_P(InstructionCountsOf, AChangeAreJudged) {
    playCounts({{"one", GetParam().counted}});
    record(R"({"one": 1000})");
    const ProcessResult result = count();
    EXPECT_EQ(result.exitCode, GetParam().passes ? 0 : 1);
    EXPECT_THAT(result.output, EndsWith(std::string("  ") + GetParam().shown + "\n"));
    EXPECT_EQ(result.errors, GetParam().passes
                                 ? std::string()
                                 : "one takes " + std::to_string(GetParam().counted) +
                                       " instructions and is recorded with 1000\n" + kHowToRecord);
}

INSTANTIATE_TEST_SUITE_P(All, InstructionCountsOf,
                         testing::Values(Change{"Less", 951, "-4.9", true},
                                         Change{"More", 1049, "+4.9", true},
                                         Change{"Just", 1050, "+5.0", true},
                                         Change{"TooFew", 949, "-5.1", false},
                                         Change{"TooMany", 1051, "+5.1", false}),
                         [](const auto& each) { return each.param.name; });

TEST_F(InstructionCounts, OfAPathThatIsNotRecordedFail) {
    playCounts({{"one", 12}, {"another", 3456}});
    record(R"({"one": 12})");
    const ProcessResult result = count();
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors, std::string("another is not recorded\n") + kHowToRecord);
    EXPECT_THAT(result.output, ContainsRegex("another +3456\n"));
}

TEST_F(InstructionCounts, FailWhereAPathIsGone) {
    playCounts({{"one", 12}});
    record(R"({"one": 12, "another": 3456})");
    const ProcessResult result = count();
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors, std::string("another is recorded, but is no path\n") + kHowToRecord);
}

TEST_F(InstructionCounts, NeedARecord) {
    playCounts({{"one", 12}});
    const ProcessResult result = count();
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors, recordFile().string() + ": No such file or directory\n");
}

struct BrokenRecord {
    const char* name;
    const char* content;
    const char* problem;
};

class InstructionCountsWithBrokenRecord : public InstructionCounts,
                                          public testing::WithParamInterface<BrokenRecord> {};

TEST_P(InstructionCountsWithBrokenRecord, SaySo) {
    playCounts({{"one", 12}});
    record(GetParam().content);
    const ProcessResult result = count();
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, AllOf(HasSubstr(recordFile().string()), HasSubstr(GetParam().problem)));
    EXPECT_THAT(result.errors, Not(HasSubstr("Traceback")));
}

INSTANTIATE_TEST_SUITE_P(
    All, InstructionCountsWithBrokenRecord,
    testing::Values(BrokenRecord{"Empty", "", "is no JSON"},
                    BrokenRecord{"Torn", "{\"one\": 1", "is no JSON"},
                    BrokenRecord{"NoText", "\xFF", "is no JSON"},
                    BrokenRecord{"List", "[12]", "is no record"},
                    BrokenRecord{"Text", "{\"one\": \"12\"}", "the count of one is no whole number"},
                    BrokenRecord{"Fraction", "{\"one\": 12.5}", "the count of one is no whole number"},
                    BrokenRecord{"Boolean", "{\"one\": true}", "the count of one is no whole number"},
                    BrokenRecord{"Zero", "{\"one\": 0}", "the count of one is no whole number"}),
    [](const auto& each) { return each.param.name; });

TEST_F(InstructionCounts, AreWhatIsWritten) {
    playCounts({{"one", 12}, {"another", 3456}});
    record("broken");
    ProcessResult result = count({"--write"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(recorded(), "{\n    \"one\": 12,\n    \"another\": 3456\n}\n");
    result = count();
    EXPECT_EQ(result.exitCode, 0) << result.errors;
}

TEST_F(InstructionCounts, AreNotWrittenWhenOneFails) {
    playCounts({{"one", 12}});
    play("valgrind", "echo 'it is broken' >&2; exit 1");
    record(R"({"one": 34})");
    const ProcessResult result = count({"--write"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, AllOf(HasSubstr("valgrind"), HasSubstr("fails:\nit is broken\n")));
    EXPECT_EQ(recorded(), R"({"one": 34})");
}

TEST_F(InstructionCounts, OfNothingFail) {
    playCounts({{"one", 0}});
    record(R"({"one": 12})");
    const ProcessResult result = count();
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors, "one: nothing was counted\n");
}

TEST_F(InstructionCounts, NeedValgrind) {
    playCounts({{"one", 12}});
    record(R"({"one": 12})");
    fs::create_directory(folder_ / "empty");
    const ProcessResult result = countIn((folder_ / "empty").string());
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors, "valgrind is missing: install the package valgrind\n");
}

TEST_F(InstructionCounts, NeedTheProgram) {
    record(R"({"one": 12})");
    const ProcessResult result = count();
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors, (folder_ / "hot_paths").string() + ": No such file or directory\n");
}

} // namespace
