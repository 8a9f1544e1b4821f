// `zqmspeech validate` as people run it. What each check refuses is told by tests/validate.

#include "tests/cli/json_schema.h"
#include "tests/cli/one_line.h"
#include "tests/cli/zqmspeech.h"
#include "tests/support/eventually.h"
#include "tests/support/process_table.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <iterator>
#include <sstream>
#include <string>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include <sys/resource.h>

namespace zqm::tests {
namespace {

namespace fs = std::filesystem;
using support::ProcessResult;
using support::TemporaryFolder;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

const std::string kBuild = fs::path(ZQMSPEECH_PROGRAM).parent_path().string();
const std::string kStatic = "load,start,exports,records,versions,restart";

ProcessResult validate(std::vector<std::string> arguments,
                       const support::ProcessOptions& options = bareOptions()) {
    arguments.insert(arguments.begin(), "validate");
    return zqmspeech(arguments, options);
}

// All checks, in parts that take about the same time.
const std::vector<std::string> kParts = {
    kStatic,   "members",      "handles",       "arguments,unconstructed",
    "refused", "refused-sets", "failing-calls", "growth,unload",
};

class OwnPlugin : public testing::TestWithParam<std::tuple<const char*, std::string>> {};

TEST_P(OwnPlugin, PassesAllChecks) {
    const auto& [plugin, checks] = GetParam();
    const ProcessResult result = validate({"--seed", "1", "--only", checks, plugin});
    EXPECT_EQ(result.exitCode, 0) << result.output;
    EXPECT_EQ(result.errors, "");
    EXPECT_THAT(result.output, Not(HasSubstr("fail ")));
    EXPECT_THAT(result.output, Not(HasSubstr("crash ")));
    EXPECT_THAT(result.output, Not(HasSubstr("warning ")));
    EXPECT_THAT(result.output, Not(HasSubstr("skip ")));
}

INSTANTIATE_TEST_SUITE_P(All, OwnPlugin,
                         testing::Combine(testing::Values(ZQM_SPEECH_PLUGIN, ZQM_FOUNDATION_PLUGIN,
                                                          ZQM_TIMER_PLUGIN),
                                          testing::ValuesIn(kParts)));

TEST(OwnPlugins, PassAllChecksThatThereAre) {
    std::string all;
    for (const std::string& part : kParts) {
        all += (all.empty() ? "" : ",") + part;
    }
    std::istringstream list(validate({"--list"}).output);
    std::string listed;
    for (std::string line; std::getline(list, line);) {
        listed += (listed.empty() ? "" : ",") + line.substr(0, line.find('\t'));
    }
    EXPECT_EQ(all, listed);
}

// This seed chooses more and more that is held at once, for which the host then keeps room.
TEST(Validate, WhatIsChosenByChanceIsNoGrowth) {
    const ProcessResult result =
        validate({"--only", "growth", "--seed", "12345", kBuild + "/libZQMNSSpeech.so"});
    EXPECT_EQ(result.exitCode, 0) << result.output;
    EXPECT_THAT(result.output, HasSubstr("bytes of memory in use: "));
}

// Those that look whether all has settled take longer than such a step.
TEST(Validate, AShortTimeLimitIsForEachStep) {
    ProcessResult result;
    for (int round = 0; round < 5 && result.exitCode != 0; ++round) { // the machine may be slower than that
        result = validate({"--only", "growth", "--seed", "1", "--time-limit", "0.4", ZQM_WIDGET_PLUGIN});
    }
    EXPECT_EQ(result.exitCode, 0) << result.output;
    EXPECT_THAT(result.output, HasSubstr("bytes of memory in use: "));
}

// Or a run of one of them wouldn't repeat what was found among others.
TEST(Validate, NoCheckFindsWhatAnotherOneLeft) {
    const ProcessResult result = validate({"--only", "members,unload", ZQM_LITTERING_PLUGIN});
    EXPECT_EQ(result.exitCode, 0) << result.output;
    EXPECT_THAT(result.output, EndsWith(": 2 pass\n"));
}

TEST(Validate, TellsEachCheckAndWhatCameOut) {
    const ProcessResult result = validate({"--seed", "42", "--only", kStatic, kBuild + "/libZQMNSSpeech.so"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output, StartsWith("pass     load "));
    EXPECT_THAT(result.output, HasSubstr("\npass     start "));
    EXPECT_THAT(result.output, EndsWith("\nlibZQMNSSpeech.so, seed 42: 6 pass\n"));
}

TEST(Validate, TheExitCodeTellsOfAFailure) {
    const ProcessResult failed = validate({"--only", kStatic, ZQM_BROKEN_PLUGIN});
    EXPECT_EQ(failed.exitCode, 3);
    EXPECT_EQ(failed.errors, "");
    EXPECT_THAT(failed.output, HasSubstr("\nfail     records "));
    const ProcessResult crashed = validate({ZQM_CRASHING_PLUGIN});
    EXPECT_EQ(crashed.exitCode, 3);
    EXPECT_THAT(crashed.output, HasSubstr("\ncrash    start "));
    EXPECT_THAT(crashed.output, HasSubstr(" SIGSEGV\n"));
}

// As programs leave it to those that they start.
TEST(Validate, ACrashIsToldWhereEndsOfProcessesAreIgnored) {
    const auto earlier = std::signal(SIGCHLD, SIG_IGN);
    const support::Process command(ZQMSPEECH_PROGRAM, {"validate", ZQM_CRASHING_PLUGIN}, bareOptions());
    std::signal(SIGCHLD, earlier);
    ASSERT_TRUE(command.waitFor(support::kProcessDeadline));
    EXPECT_THAT(command.result().output, HasSubstr(" SIGSEGV\n"));
}

TEST(Validate, WarningsAndSkippedChecksAreNoFailure) {
    const ProcessResult result = validate({"--only", "records", ZQM_WIDGET_PLUGIN});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output, StartsWith("warning  records "));
    EXPECT_THAT(result.output, HasSubstr("\"Sink\" can be set, but not read\n"));
}

TEST(Validate, ChecksThatNeedAFailedOneAreSkipped) {
    const ProcessResult result = validate({"--only", "start,exports,records,versions", ZQM_LEAVING_PLUGIN});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_THAT(result.output, HasSubstr(" ended the program with exit code 3\n"));
    EXPECT_THAT(result.output, HasSubstr("\nskip     records "));
    EXPECT_THAT(result.output, HasSubstr(" start has not passed\n"));
    EXPECT_THAT(result.output, HasSubstr(": 1 fail, 3 skip\n"));
}

TEST(Validate, WhatIsNoLibraryFailsToLoad) {
    const TemporaryFolder folder;
    const std::string text = (folder / "text.so").string();
    std::ofstream(text)
        << "This is no library at all, but a text that is longer than any header of one is.\n";
    for (const std::string& file : {text, folder.path().string(), std::string("/dev/null")}) {
        const ProcessResult result = validate({file});
        EXPECT_EQ(result.exitCode, 3) << file;
        EXPECT_THAT(result.output, StartsWith("fail     load "));
        EXPECT_THAT(result.output, HasSubstr(file + ": "));
    }
    const std::string cut = (folder / "cut.so").string();
    fs::copy_file(ZQM_WIDGET_PLUGIN, cut);
    fs::resize_file(cut, 5000);
    EXPECT_EQ(validate({cut}).exitCode, 3);
}

TEST(Validate, TakesAFileOfTheFolderOneIsIn) {
    support::ProcessOptions options = bareOptions();
    options.folder = fs::path(ZQM_WIDGET_PLUGIN).parent_path();
    EXPECT_EQ(validate({"--only", "load,start", "widget_plugin.so"}, options).exitCode, 0);
}

TEST(Validate, ListsItsChecks) {
    const ProcessResult result = validate({"--list"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output, StartsWith("load\tcan be loaded"));
    EXPECT_THAT(result.output, HasSubstr("\nrestart\t"));
}

TEST(Validate, EachCheckIsExplained) {
    std::ifstream file(ZQM_WRITING_A_PLUGIN);
    const std::string page((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    std::istringstream list(validate({"--list"}).output);
    std::size_t count = 0;
    for (std::string line; std::getline(list, line); ++count) {
        EXPECT_THAT(page, HasSubstr("\n| `" + line.substr(0, line.find('\t')) + "` | "));
    }
    EXPECT_GT(count, 0U);
}

TEST(Validate, JsonIsAsTheSchemaSays) {
    for (const char* const library : {ZQM_WIDGET_PLUGIN, ZQM_BROKEN_PLUGIN, ZQM_CRASHING_PLUGIN}) {
        const ProcessResult result = validate({"--json", "--only", kStatic, library});
        EXPECT_EQ(result.errors, "");
        nlohmann::json document = nlohmann::json::parse(result.output);
        EXPECT_EQ(schemaErrors(document.dump(), ZQM_VALIDATE_SCHEMA), "");
        EXPECT_EQ(document["checks"].size(), 6U);
        EXPECT_EQ(result.exitCode, document["verdict"] == "warning" || document["verdict"] == "pass" ? 0 : 3);
        document["checks"][0]["verdict"] = "good";
        EXPECT_THAT(schemaErrors(document.dump(), ZQM_VALIDATE_SCHEMA), HasSubstr("ValidationError"));
    }
}

TEST(Validate, JsonNamesWhatWasGiven) {
    const TemporaryFolder folder;
    fs::create_directory(folder / "folder.so");
    for (const auto& [given, name] : {std::pair<std::string, std::string>{"/", "/"},
                                      {"//", "//"},
                                      {"/tmp/", "tmp"},
                                      {(folder / "folder.so//").string(), "folder.so"},
                                      {"/..", ".."},
                                      {ZQM_WIDGET_PLUGIN, "widget_plugin.so"}}) {
        const ProcessResult result = validate({"--json", "--only", "load", given});
        const nlohmann::json document = nlohmann::json::parse(result.output);
        EXPECT_EQ(document["library"], name);
        EXPECT_EQ(schemaErrors(document.dump(), ZQM_VALIDATE_SCHEMA), "");
    }
}

TEST(Validate, FitsTheTerminal) {
    for (const unsigned short columns : std::initializer_list<unsigned short>{80, 200}) {
        const Terminal terminal(columns);
        const ProcessResult result =
            support::runProcess("/bin/sh",
                                {"-c", "exec \"$0\" validate --only load,start,records \"$1\" > \"$2\"",
                                 ZQMSPEECH_PROGRAM, ZQM_BROKEN_PLUGIN, terminal.path()},
                                bareOptions());
        EXPECT_EQ(result.exitCode, 3);
        std::istringstream written(terminal.written());
        std::size_t longest = 0;
        for (std::string line; std::getline(written, line);) {
            longest = std::max(longest, line.size() - 1); // the terminal adds a carriage return
        }
        EXPECT_LE(longest, columns);
        EXPECT_GT(longest, columns / 2U);
    }
}

class HangingPlugin : public testing::Test {
protected:
    static support::ProcessOptions optionsFor(const TemporaryFolder& place) {
        support::ProcessOptions options = bareOptions();
        options.environment["TMPDIR"] = place.path().string();
        return options;
    }
    // The process in which the plugin does so; 0: none.
    pid_t hangingProcess() const {
        for (int round = 0; round < 6000; ++round) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
            const std::vector<pid_t> children = support::childrenOf(command_.pid());
            if (command_.result().output.find("load") != std::string::npos && !children.empty()) {
                return children.front(); // the next check hangs
            }
        }
        return 0;
    }

    TemporaryFolder place_;
    support::Process command_{
        ZQMSPEECH_PROGRAM, {"validate", "--time-limit", "600", ZQM_HANGING_PLUGIN}, optionsFor(place_)};
};

TEST_F(HangingPlugin, EndsWithTheCommandThatIsKilled) {
    const pid_t child = hangingProcess();
    ASSERT_NE(child, 0);
    command_.signal(SIGKILL);
    ASSERT_TRUE(command_.waitFor(std::chrono::seconds(60)));
    EXPECT_TRUE(support::eventually([child] { return !support::isAlive(child); }));
}

class SignalWhileAPluginHangs : public HangingPlugin, public testing::WithParamInterface<int> {};

TEST_P(SignalWhileAPluginHangs, EndsAllThatWasStarted) {
    const rlimit noCore{0, 0};
    ASSERT_EQ(::prlimit(command_.pid(), RLIMIT_CORE, &noCore, nullptr), 0);
    const pid_t child = hangingProcess();
    ASSERT_NE(child, 0);
    EXPECT_FALSE(fs::is_empty(place_.path()));
    command_.signal(GetParam());
    ASSERT_TRUE(command_.waitFor(std::chrono::seconds(60)));
    const ProcessResult result = command_.result();
    EXPECT_EQ(result.signal == 0 ? result.exitCode : 128 + result.signal, 128 + GetParam());
    EXPECT_FALSE(support::isAlive(child));
    EXPECT_TRUE(fs::is_empty(place_.path()));
}

INSTANTIATE_TEST_SUITE_P(All, SignalWhileAPluginHangs,
                         testing::Values(SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGALRM, SIGUSR1, SIGXCPU));

TEST(Validate, JsonIsNoneWhenASignalEndsIt) {
    const support::Process command(
        ZQMSPEECH_PROGRAM, {"validate", "--json", "--time-limit", "600", ZQM_HANGING_PLUGIN}, bareOptions());
    while (command.running() && support::childrenOf(command.pid()).empty()) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    command.signal(SIGINT);
    ASSERT_TRUE(command.waitFor(support::kProcessDeadline));
    EXPECT_EQ(command.result().exitCode, 130);
    EXPECT_EQ(command.result().output, "");
    EXPECT_THAT(validate({"--help"}).output, HasSubstr("none when a signal"));
}

TEST(ValidateFailure, OfWhatIsNotThere) {
    expectOneLine(validate({"/nonexistent/plugin.so"}), 1, "there is no plugin /nonexistent/plugin.so");
    expectOneLine(validate({"two\nlines"}), 1, "there is no plugin two?lines");
}

TEST(ValidateFailure, OfWhatCantBeLookedForSaysWhy) {
    const TemporaryFolder folder;
    const std::string loop = (folder / "loop").string();
    fs::create_symlink(loop, loop);
    for (const char* const command : {"validate", "inspect"}) {
        expectOneLine(zqmspeech({command, loop + "/plugin.so"}), 1,
                      "can't look for the plugin " + loop + "/plugin.so: Too many levels of symbolic links");
        expectOneLine(zqmspeech({command, std::string(ZQM_WIDGET_PLUGIN) + "/"}), 1, ": Not a directory");
    }
}

TEST(ValidateFailure, OfNoTemporaryFolderIsInTheHelp) {
    support::ProcessOptions options = bareOptions();
    options.environment["TMPDIR"] = "/nonexistent";
    expectOneLine(validate({ZQM_WIDGET_PLUGIN}, options), 1, "can't make a temporary folder in /nonexistent");
    EXPECT_THAT(validate({"--help"}).output, HasSubstr("temporary folder"));
}

TEST(ValidateFailure, OfFewDescriptorsIsNoneOfThePlugin) {
    const ProcessResult result = support::runProcess(
        "/bin/sh", {"-c", "ulimit -n 10; exec \"$0\" validate \"$1\"", ZQMSPEECH_PROGRAM, ZQM_WIDGET_PLUGIN},
        bareOptions());
    expectOneLine(result, 1, "files more, and 64 are needed to check a plugin: Too many open files");
}

TEST(ValidateFailure, OfWrongUse) {
    expectOneLine(validate({}), 2, "there is no library to validate");
    expectOneLine(validate({"--only", "loads", "a.so"}), 2, "no check is called loads (near it: load)");
}

TEST(ValidateFailure, ADocumentThatCantBeWrittenIsSaid) {
    const ProcessResult result = support::runProcess(
        "/bin/sh",
        {"-c", "exec \"$0\" validate --only load \"$1\" > /dev/full", ZQMSPEECH_PROGRAM, ZQM_WIDGET_PLUGIN},
        bareOptions());
    expectOneLine(result, 1, "can't write to standard output");
    EXPECT_THAT(validate({"--help"}).output, HasSubstr("standard output"));
}

} // namespace
} // namespace zqm::tests
