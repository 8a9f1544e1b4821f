// The long run of random host programs in small, and what is made of its samples: that what grows is told,
// and what fails.

#include "tests/support/process.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using zqm::support::ProcessResult;

#if defined(__SANITIZE_ADDRESS__)
constexpr const char* kSeconds = "1"; // until there are enough samples
constexpr const char* kLeak = "descriptors";
constexpr const char* kLeaked = "host descriptors";
#else
constexpr const char* kSeconds = "8";
constexpr const char* kLeak = "memory"; // which sanitizers hide
constexpr const char* kLeaked = "host heap";
#endif
constexpr std::chrono::minutes kPatience{9};

constexpr const char* kColumns =
    "seconds,episodes,host heap,host resident,speaking engine resident,listening engine "
    "resident,host descriptors,engine descriptors,processes,ledger handles,ledger locks\n";

std::string contentOf(const fs::path& file) {
    std::ostringstream content;
    content << std::ifstream(file).rdbuf();
    return content.str();
}

class Soak : public testing::Test {
protected:
    ProcessResult soak(const fs::path& programs, const std::vector<std::string>& options) const {
        std::vector<std::string> arguments{"-B",     "-m", "soaking", programs.string(), output().string(),
                                           "--seed", "1"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return zqm::support::runProcess("python3", arguments, {.folder = ZQM_SCRIPTS}, kPatience);
    }
    fs::path output() const { return folder_ / "output"; }

    // A program of that name that does as the shell script says.
    void play(const std::string& program, const std::string& script) const {
        const fs::path file = folder_ / program;
        std::ofstream(file) << "#!/bin/sh\n" << script << '\n';
        fs::permissions(file, fs::perms::owner_all);
    }
    // One whose samples are these, in which "i" counts.
    void playSamples(int count, const std::string& row) const {
        play("soak_host", "cat <<END\n" + std::string(kColumns) + "END\nfor i in $(seq " +
                              std::to_string(count) + "); do echo \"" + row + "\"; done");
    }
    ProcessResult judge() const { return soak(folder_.path(), {"--seconds", "1", "--lanes", "1"}); }

    zqm::support::TemporaryFolder folder_;
};

TEST_F(Soak, OfRandomHostProgramsIsFlat) {
    const ProcessResult result = soak(ZQM_PROGRAMS, {"--seconds", kSeconds, "--lanes", "1"});
    EXPECT_EQ(result.exitCode, 0) << result.errors << result.output;
    EXPECT_THAT(result.output,
                AllOf(ContainsRegex("ledger handles .* flat\n"), Not(HasSubstr("GROWS")),
                      HasSubstr("spoken into files"), HasSubstr("Nothing failed, and nothing grows.")));
    EXPECT_THAT(contentOf(output() / "host program 1.csv"), StartsWith(kColumns));
    EXPECT_THAT(contentOf(output() / "soak.svg"),
                AllOf(HasSubstr("<svg"), HasSubstr("ledger locks, host program 1"), HasSubstr("</svg>")));
}

TEST_F(Soak, OfAHostProgramThatLeaksIsTold) {
    const ProcessResult result = soak(ZQM_PROGRAMS, {"--seconds", "1", "--lanes", "1", "--leak", kLeak});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.output, ContainsRegex(std::string(kLeaked) + " .* GROWS\n"));
    EXPECT_THAT(result.errors, HasSubstr(std::string("FAILED: host program 1: ") + kLeaked + " grows\n"));
}

struct Row {
    const char* name;
    const char* row;     // of a sample
    const char* growing; // the measure that is told; empty: none
};

class SoakOfSamples : public Soak, public testing::WithParamInterface<Row> {};

TEST_P(SoakOfSamples, IsJudged) {
    playSamples(40, GetParam().row);
    const ProcessResult result = judge();
    const std::string growing = GetParam().growing;
    EXPECT_EQ(result.exitCode, growing.empty() ? 0 : 1);
    EXPECT_EQ(result.errors, growing.empty() ? "" : "FAILED: host program 1: " + growing + " grows\n");
}

INSTANTIATE_TEST_SUITE_P(
    All, SoakOfSamples,
    testing::Values(
        Row{"Flat", "$i,$i,3000000,20000000,15000000,29000000,16,18,2,2,2", ""},
        Row{"Noisy",
            "$i,$i,$((3000000+i%3*500000)),$((20000000+i%2*3000000)),15000000,29000000,16,$((18+i%4/"
            "3)),2,2,2",
            ""},
        Row{"Shrinking",
            "$i,$i,$((9000000-i*100000)),$((90000000-i*1000000)),15000000,29000000,$((90-i)),18,2,2,2", ""},
        Row{"Heap", "$i,$i,$((3000000+i*10000)),20000000,15000000,29000000,16,18,2,2,2", "host heap"},
        Row{"Host", "$i,$i,3000000,$((20000000+i*500000)),15000000,29000000,16,18,2,2,2", "host resident"},
        Row{"Speaking", "$i,$i,3000000,20000000,$((15000000+i*200000)),29000000,16,18,2,2,2",
            "speaking engine resident"},
        Row{"Listening", "$i,$i,3000000,20000000,15000000,$((29000000+i*200000)),16,18,2,2,2",
            "listening engine resident"},
        Row{"Descriptors", "$i,$i,3000000,20000000,15000000,29000000,$((16+i/16)),18,2,2,2",
            "host descriptors"},
        Row{"EngineDescriptors", "$i,$i,3000000,20000000,15000000,29000000,16,$((18+i/16)),2,2,2",
            "engine descriptors"},
        Row{"Processes", "$i,$i,3000000,20000000,15000000,29000000,16,18,$((2+i/16)),2,2", "processes"},
        Row{"Handles", "$i,$i,3000000,20000000,15000000,29000000,16,18,2,$((2+i/16)),2", "ledger handles"},
        Row{"Locks", "$i,$i,3000000,20000000,15000000,29000000,16,18,2,2,$((2+i/16))", "ledger locks"}),
    [](const auto& each) { return each.param.name; });

constexpr const char* kFlat = "$i,$i,3000000,20000000,15000000,29000000,16,18,2,2,2";

TEST_F(Soak, IsOfAHeapThatKeepsNothingFreed) {
    playSamples(10, kFlat);
    std::ofstream(folder_ / "soak_host", std::ios::app)
        << "test \"$GLIBC_TUNABLES\" = glibc.malloc.tcache_count=0\n";
    const ProcessResult result = judge();
    EXPECT_EQ(result.exitCode, 0) << result.errors;
}

TEST_F(Soak, WithoutEnoughSamplesSaysNothing) {
    playSamples(7, kFlat);
    const ProcessResult result = judge();
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors, "FAILED: host program 1: 7 samples are too few, 8 are needed\n");
}

TEST_F(Soak, OfLinesThatAreNoSamplesIsAFailure) {
    play("soak_host", "echo nothing");
    EXPECT_THAT(judge().errors, ContainsRegex("^FAILED: .*/host program 1.csv: these are no samples\n$"));
    playSamples(10, "$i,1,2");
    EXPECT_THAT(judge().errors, ContainsRegex("a line is not like its first one\n$"));
}

TEST_F(Soak, OfAProgramThatFailsTellsItsWords) {
    playSamples(10, kFlat);
    std::ofstream(folder_ / "soak_host", std::ios::app) << "echo 'it is broken' >&2; exit 3\n";
    const ProcessResult result = judge();
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors, "FAILED: host program 1 (seed 1) failed (3):\nit is broken\n");
    fs::remove(folder_ / "soak_host");
    EXPECT_EQ(judge().exitCode, 1);
}

TEST_F(Soak, AddsUpWhatBecameOfKilledEngines) {
    play("engine_kills", "printf 'state\\tkills\\tserved\\nidle\\t%s\\t1\\naloud\\t2\\t0\\n' $1");
    ProcessResult result = soak(folder_.path(), {"--seconds", "0", "--lanes", "2", "--kills", "11"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(result.output, StartsWith("state  kills  served\n"
                                          "idle      11       2\n"
                                          "aloud      4       0\n"
                                          "all       15       2\n"));
    play("engine_kills", "echo 'one is left' >&2; exit 1");
    result = soak(folder_.path(), {"--seconds", "0", "--lanes", "1", "--kills", "1"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("no engine was killed"));
}

TEST_F(Soak, DoesEveryFaultToEngines) {
    play("engine_faults_test", "test \"$ZQM_ALL_FAULTS of $GTEST_TOTAL_SHARDS\" = '1 of 2' || exit 2\n"
                               "echo \"[       OK ] All/Faults.AreTold/$GTEST_SHARD_INDEX (5 ms)\"");
    ProcessResult result = soak(folder_.path(), {"--seconds", "0", "--lanes", "2", "--faults"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(result.output, StartsWith("2 faults of engines and their messages: as expected\n"));
    play("engine_faults_test",
         "echo '[  FAILED  ] All/Faults.AreTold/kill, where GetParam() = kill (5 ms)'\n"
         "echo '[  FAILED  ] All/Faults.AreTold/kill, where GetParam() = kill'; exit 1");
    result = soak(folder_.path(), {"--seconds", "0", "--lanes", "1", "--faults"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.output, StartsWith("0 faults"));
    EXPECT_EQ(result.errors, "FAILED: faults of engines 1 failed (1):\n\n"
                             "FAILED: [  FAILED  ] All/Faults.AreTold/kill\n");
}

TEST_F(Soak, MakesRandomHostCalls) {
    play("calls", "test \"$1 $3\" = '--calls --seed' && echo $2 calls of seed $4");
    const ProcessResult result = soak(folder_.path(), {"--seconds", "0", "--lanes", "2", "--fuzz-calls", "5",
                                                       "--fuzz-program", folder_ / "calls"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(result.output, AllOf(HasSubstr("2 calls of seed 1\n"), HasSubstr("3 calls of seed 2\n")));
}

// ---- the script

ProcessResult script(const std::vector<std::string>& arguments) {
    return zqm::support::runProcess(ZQM_SCRIPTS "/soak", arguments);
}

struct WrongUse {
    std::vector<std::string> arguments;
    const char* told;
};

TEST(SoakScript, RefusesWrongArguments) {
    for (const WrongUse& use : std::vector<WrongUse>{
             {{}, "How many MINUTES?"},
             {{"long"}, "MINUTES is a whole number up to 100000, not \"long\"."},
             {{"-1"}, "-1 is no option of this script."},
             {{"1.5"}, "MINUTES is a whole number up to 100000, not \"1.5\"."},
             {{"100001"}, "MINUTES is a whole number up to 100000, not \"100001\"."},
             {{"1", "2"}, "MINUTES is one number; there is \"2\", too."},
             {{"1", "--seed"}, "--seed needs a value."},
             {{"1", "--seed", "x"}, "--seed is a whole number up to 4294967295, not \"x\"."},
             {{"1", "--kills", ""}, "--kills is a whole number up to 4294967295, not \"\"."},
             {{"1", "--fuzz-calls", "1e6"}, "--fuzz-calls is a whole number up to 4294967295, not \"1e6\"."},
             {{"1", "--lanes", "0"}, "--lanes is at least 1."},
             {{"1", "--fast"}, "--fast is no option of this script."}}) {
        const ProcessResult result = script(use.arguments);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.errors, std::string(use.told) + " See scripts/soak --help.\n");
        EXPECT_EQ(result.output, "");
    }
}

TEST(SoakScript, TellsItsOptions) {
    const ProcessResult result = script({"--help"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output, AllOf(HasSubstr("scripts/soak MINUTES"), HasSubstr("--seed"),
                                     HasSubstr("--kills"), HasSubstr("--faults"), HasSubstr("--fuzz-calls"),
                                     HasSubstr("--lanes"), HasSubstr("--output")));
}

} // namespace
