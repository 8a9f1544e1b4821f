// The long run of random host programs in small, and what is made of its samples: that what grows is told,
// and what fails.

#include "tests/support/process.h"
#include "tests/support/process_table.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <thread>
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
#else
constexpr const char* kSeconds = "8";
#endif
constexpr std::chrono::minutes kPatience{9};
constexpr std::chrono::milliseconds kLookAgain{10};

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
                AllOf(HasSubstr("<svg"), HasSubstr("change of processes"),
                      HasSubstr("ledger locks, host program 1"), HasSubstr("</svg>")));
}

// Its own folders stand in the one given.
class SoakHost : public Soak {
protected:
    zqm::support::Process start(const char* seconds) const {
        return {
            ZQM_PROGRAMS "/soak_host", {seconds, "1", "0"}, {.environment = {{"TMPDIR", folder_.path()}}}};
    }
    // Until it has written a sample.
    static void awaitSample(const zqm::support::Process& host) {
        while (host.running() && std::ranges::count(host.result().output, '\n') < 2) {
            std::this_thread::sleep_for(kLookAgain);
        }
    }
};

TEST_F(SoakHost, EndsWhenItIsTold) {
    const auto host = start("1000");
    awaitSample(host);
    host.signal(SIGTERM);
    ASSERT_TRUE(host.waitFor(kPatience));
    EXPECT_EQ(host.result().exitCode, 0) << host.result().errors;
    EXPECT_THAT(host.result().output, HasSubstr("# engines killed: "));
    EXPECT_TRUE(fs::is_empty(folder_.path()));
}

TEST_F(SoakHost, TellsTheLogWhenItFails) {
    const auto host = start("1000");
    awaitSample(host);
    const std::vector<pid_t> children = zqm::support::childrenOf(host.pid());
    ASSERT_GE(children.size(), 3U); // the sound server and the engines that stay come first
    std::ofstream("/proc/" + std::to_string(host.pid()) + "/fd/2", std::ios::app) << "it is broken\n";
    kill(children[1], SIGKILL);
    ASSERT_TRUE(host.waitFor(kPatience));
    EXPECT_EQ(host.result().exitCode, 1);
    EXPECT_THAT(host.result().errors, AllOf(ContainsRegex("seed 1, episode [0-9]+: "),
                                            ContainsRegex("    (log: )?it is broken\n")));
    EXPECT_TRUE(fs::is_empty(folder_.path()));
}

TEST_F(SoakHost, NeedsASoundServer) {
    const ProcessResult result =
        zqm::support::runProcess(ZQM_PROGRAMS "/soak_host", {"1", "1", "0"},
                                 {.environment = {{"PATH", folder_.path()}, {"TMPDIR", folder_.path()}}});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("pulseaudio"));
    EXPECT_TRUE(fs::is_empty(folder_.path()));
}

struct Leak {
    const char* what;
    const char* growing;
};

class SoakOfALeak : public Soak, public testing::WithParamInterface<Leak> {};

TEST_P(SoakOfALeak, IsTold) {
    const ProcessResult result =
        soak(ZQM_PROGRAMS, {"--seconds", "1", "--lanes", "1", "--leak", GetParam().what});
    const std::string growing = GetParam().growing;
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.output, ContainsRegex(growing + " .* GROWS\n"));
    EXPECT_THAT(result.errors, HasSubstr("FAILED: host program 1: " + growing + " grows\n"));
}

constexpr auto kLeaks = std::to_array<Leak>({
#if !defined(__SANITIZE_ADDRESS__) // which hides it
    {"memory", "host heap"},
#endif
        {"descriptors", "host descriptors"}, {"handles", "ledger handles"},
});

INSTANTIATE_TEST_SUITE_P(All, SoakOfALeak, testing::ValuesIn(kLeaks),
                         [](const auto& each) { return std::string(each.param.what); });

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
        Row{"Host", "$i,$i,3000000,$((20000000+i*40000)),15000000,29000000,16,18,2,2,2", "host resident"},
        Row{"Speaking", "$i,$i,3000000,20000000,$((15000000+i*20000)),29000000,16,18,2,2,2",
            "speaking engine resident"},
        Row{"Listening", "$i,$i,3000000,20000000,15000000,$((29000000+i*20000)),16,18,2,2,2",
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

TEST_F(Soak, NeedsAllSamplesOfWhatIsMeasured) {
    playSamples(40, "$i,$i,,,,,16,18,2,2,2");
    ProcessResult result = judge();
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(result.output, AllOf(ContainsRegex("host heap .* not measured\n"),
                                     ContainsRegex("listening engine resident .* not measured\n"),
                                     ContainsRegex("host descriptors .* flat\n")));
    playSamples(40, "$i,$i,$(test $i = 3 || echo 3000000),20000000,15000000,29000000,16,18,2,2,2");
    result = judge();
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, ContainsRegex("^FAILED: .*/host program 1.csv: a sample has no host heap\n$"));
    playSamples(40, "$i,$i,3000000,20000000,15000000,29000000,16,,2,2,2");
    EXPECT_THAT(judge().errors, HasSubstr("a sample has no engine descriptors\n"));
}

// Of a curve in a picture, how much higher its end is than its beginning; 0 when it isn't there.
double riseOf(const std::string& curve, const std::string& svg) {
    const std::regex path("<title>" + curve +
                          "</title>[\\s\\S]*?<path [^>]* M[0-9.]+,([0-9.]+) [^>]*,([0-9.]+) *'/>");
    std::smatch ends;
    return std::regex_search(svg, ends, path) ? std::stod(ends[1]) - std::stod(ends[2]) : 0;
}

TEST_F(Soak, DrawsGrowthThatIsSeen) {
    // Half a MiB, a tenth of what it is.
    playSamples(40, "$i,$i,$((5000000+i*13107)),20000000,15000000,29000000,16,18,2,2,2");
    judge();
    constexpr double kPixels = 30;
    EXPECT_GT(riseOf("host heap, host program 1", contentOf(output() / "soak.svg")), kPixels);
}

TEST_F(Soak, OfLinesThatAreNoSamplesIsAFailure) {
    play("soak_host", "echo nothing");
    EXPECT_THAT(judge().errors, ContainsRegex("^FAILED: .*/host program 1.csv: these are no samples\n$"));
    for (const char* const row : {"$i,1,2", "$i,$i,nan,20000000,15000000,29000000,16,18,2,2,2",
                                  "$i,$i,many,20000000,15000000,29000000,16,18,2,2,2", "#", "# killed: x"}) {
        playSamples(10, row);
        EXPECT_THAT(judge().errors, ContainsRegex("a line is not like its first one\n$")) << row;
    }
}

TEST_F(Soak, OfAProgramThatFailsTellsItsWords) {
    playSamples(10, kFlat);
    std::ofstream(folder_ / "soak_host", std::ios::app) << "echo 'it is broken' >&2; exit 3\n";
    const ProcessResult result = judge();
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors, "FAILED: host program 1 (seed 1) failed (3):\nit is broken\n");
    fs::remove(folder_ / "soak_host");
    EXPECT_THAT(
        judge().errors,
        ContainsRegex("^FAILED: host program 1 \\(seed 1\\) can't be started: .*/soak_host: No such"));
}

TEST_F(Soak, GoesOnWithTheOtherPartsWhenOneFails) {
    play("soak_host", "echo 'it is broken' >&2; exit 3");
    play("engine_kills", "echo 'one is left' >&2; exit 1");
    play("calls", "echo $2 calls");
    ProcessResult result = soak(folder_.path(), {"--seconds", "1", "--lanes", "1", "--kills", "1",
                                                 "--fuzz-calls", "5", "--fuzz-program", folder_ / "calls"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors,
                AllOf(HasSubstr("it is broken\n"), HasSubstr("these are no samples\n"),
                      HasSubstr("killing engines 1 (seed 1) failed (1):\none is left\n"),
                      HasSubstr("FAILED: no engine was killed\n"), Not(HasSubstr("Traceback"))));
    EXPECT_THAT(result.output, HasSubstr("5 calls\n"));

    std::ofstream(output() / "file").flush();
    result = zqm::support::runProcess("python3",
                                      {"-B", "-m", "soaking", folder_.path(), output() / "file" / "folder",
                                       "--seconds", "1", "--lanes", "1", "--seed", "1"},
                                      {.folder = ZQM_SCRIPTS});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, ContainsRegex("^FAILED: .*/file/folder: Not a directory\n$"));
}

TEST_F(Soak, EndsAProgramThatDoesNot) {
    playSamples(10, kFlat);
    std::ofstream(folder_ / "soak_host", std::ios::app) << "exec sleep 1000\n";
    const ProcessResult result =
        soak(folder_.path(), {"--seconds", "0.5", "--lanes", "1", "--seconds-beyond", "10"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors, "FAILED: host program 1 (seed 1) doesn't come to its end\n");
    EXPECT_THAT(result.output, HasSubstr("10 samples"));
}

TEST_F(Soak, TellsWhatRuns) {
    playSamples(10, kFlat);
    std::ofstream(folder_ / "soak_host", std::ios::app) << "sleep 3\n";
    const ProcessResult result =
        soak(folder_.path(), {"--seconds", "1", "--lanes", "1", "--seconds-until-told", "1"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.errors, StartsWith("random host programs: 0 minutes so far ...\n"));
}

class EndingSoak : public Soak {
protected:
    // Of a program that waits for its child once it has done this.
    ProcessResult interrupted(const std::string& commands, int signal) const {
        playSamples(10, kFlat);
        std::ofstream(folder_ / "soak_host", std::ios::app)
            << commands << "\nsleep 1000 & echo $! >'" << child_.string() << "'; wait\n";
        const zqm::support::Process soaking(
            "python3",
            {"-B", "-m", "soaking", folder_.path(), output(), "--seconds", "500", "--lanes", "1", "--seed",
             "1", "--kills", "1"},
            {.environment = {{"TMPDIR", folder_.path().string()}}, .folder = ZQM_SCRIPTS});
        while (soaking.running() && contentOf(child_).find('\n') == std::string::npos) {
            std::this_thread::sleep_for(kLookAgain);
        }
        soaking.signal(signal);
        EXPECT_TRUE(soaking.waitFor(kPatience));
        return soaking.result();
    }

    const fs::path child_ = folder_ / "child";
};

class InterruptedSoak : public EndingSoak, public testing::WithParamInterface<int> {};

// What is there is judged and drawn; a child in its group ends with it, and folders are removed.
TEST_P(InterruptedSoak, JudgesWhatThereIs) {
    std::signal(GetParam(), SIG_DFL); // nohup, or a shell in the background, has it ignored
    const ProcessResult result = interrupted("mktemp -d >/dev/null", GetParam());
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors, "FAILED: interrupted\n");
    EXPECT_THAT(result.output, AllOf(HasSubstr("10 samples"), HasSubstr("soak.svg shows it")));
    while (zqm::support::isAlive(std::stoi(contentOf(child_)))) { // it was killed, and ends by and by
        std::this_thread::sleep_for(kLookAgain);
    }
    for (const auto& entry : fs::directory_iterator(folder_.path())) {
        EXPECT_FALSE(entry.path().filename().string().starts_with("zqm-run")) << entry.path();
    }
}

TEST_F(EndingSoak, TellsOfAProgramThatCrashesWhenItIsToldToEnd) {
    const ProcessResult result = interrupted("trap 'kill -SEGV $$' TERM", SIGTERM);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, AllOf(HasSubstr("FAILED: interrupted\n"), HasSubstr("failed (-11)")));
}

INSTANTIATE_TEST_SUITE_P(All, InterruptedSoak, testing::Values(SIGINT, SIGTERM, SIGHUP));

TEST_F(Soak, AddsUpWhatBecameOfKilledEngines) {
    play("engine_kills", "printf 'state\\tkills\\tserved\\nidle\\t%s\\t1\\naloud\\t2\\t0\\n' $1");
    const ProcessResult result = soak(folder_.path(), {"--seconds", "0", "--lanes", "2", "--kills", "11"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(result.output, StartsWith("state  kills  served\n"
                                          "idle      11       2\n"
                                          "aloud      4       0\n"
                                          "all       15       2\n"));
}

constexpr std::array kFaultTests{
    "engine_faults_test", "engine_deadlines_test", "engine_conversation_faults_test",
    "faults_test",        "host_descriptors_test", "mounted_faults_test"};

// The tests of faults, of which each has two; what they do with them is the script's.
class SoakOfFaults : public Soak {
protected:
    void playFaults(const std::string& script) const {
        for (const char* const test : kFaultTests) {
            play(test, "test \"$ZQM_ALL_FAULTS\" = 1 || exit 2\n"
                       "test \"$1\" != --gtest_list_tests || exec printf 'All/Faults.\\n  A # x\\n  B\\n'\n" +
                           script);
        }
    }
    ProcessResult soakFaults(const char* lanes) const {
        return soak(folder_.path(), {"--seconds", "0", "--lanes", lanes, "--faults"});
    }
};

TEST_F(SoakOfFaults, DoesEach) {
    playFaults("test \"$GTEST_TOTAL_SHARDS\" = 2 || exit 2\n"
               "echo \"[       OK ] All/Faults.AreTold/$GTEST_SHARD_INDEX (5 ms)\"");
    const ProcessResult result = soakFaults("2");
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output, "engine faults: 2 of 2 tests as expected\n"
                             "engine deadlines: 2 of 2 tests as expected\n"
                             "engine conversation faults: 2 of 2 tests as expected\n"
                             "faults: 2 of 2 tests as expected\n"
                             "host descriptors: 2 of 2 tests as expected\n"
                             "mounted faults: 2 of 2 tests as expected\n"
                             "Nothing failed.\n");
}

TEST_F(SoakOfFaults, TellsHowManyWereSkipped) {
    playFaults("echo '[       OK ] Faults.A (5 ms)'; echo '[  SKIPPED ] Faults.B (0 ms)'\n"
               "echo '[  SKIPPED ] 1 test, listed below:'; echo '[  SKIPPED ] Faults.B'");
    const ProcessResult result = soakFaults("1");
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(result.output, StartsWith("engine faults: 1 of 2 tests as expected, 1 skipped\n"));
}

TEST_F(SoakOfFaults, TellsWhichFailed) {
    playFaults("echo '[       OK ] Faults.A (5 ms)'\n"
               "echo '[  FAILED  ] All/Faults.AreTold/kill, where GetParam() = kill (5 ms)'\n"
               "echo '[  FAILED  ] 1 test, listed below:'\n"
               "echo '[  FAILED  ] All/Faults.AreTold/kill, where GetParam() = kill'; exit 1");
    const ProcessResult result = soakFaults("1");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, StartsWith("FAILED: engine faults 1 failed (1):\n\n"
                                          "FAILED: engine faults: 1 of 2 tests passed\n"
                                          "FAILED: All/Faults.AreTold/kill failed\n"
                                          "FAILED: engine deadlines 1 failed (1):\n"));
}

TEST_F(SoakOfFaults, NeedsAllOfThem) {
    playFaults("echo '[       OK ] Faults.A (5 ms)'");
    EXPECT_THAT(soakFaults("1").errors, StartsWith("FAILED: engine faults: 1 of 2 tests passed\n"));
    for (const char* const test : kFaultTests) {
        play(test, "true");
    }
    EXPECT_THAT(soakFaults("1").errors, StartsWith("FAILED: engine faults: 0 of 0 tests passed\n"));
}

TEST_F(SoakOfFaults, AreAPartOfAll) {
    playFaults("echo '[       OK ] Faults.A (5 ms)'; echo '[       OK ] Faults.B (5 ms)'");
    play("engine_kills", "printf 'state\\tkills\\nidle\\t%s\\n' $1");
    play("calls", "echo $2 calls");
    ProcessResult result = soak(
        folder_.path(), {"--seconds", "0", "--lanes", "1", "--all", "--fuzz-program", folder_ / "calls"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(result.output, AllOf(HasSubstr("100000\n"), HasSubstr("engine deadlines: 2"),
                                     HasSubstr(" 1000000 calls\n")));
    result = soak(folder_.path(), {"--seconds", "0", "--lanes", "1", "--all", "--kills", "7", "--fuzz-calls",
                                   "0", "--fuzz-program", folder_ / "calls"});
    EXPECT_THAT(result.output, AllOf(HasSubstr("    7\n"), Not(HasSubstr("calls"))));
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
             {{"--all", "1", "--lanes", "0"}, "--lanes is at least 1."},
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
                                     HasSubstr("--all"), HasSubstr("--lanes"), HasSubstr("--output")));
}

} // namespace
