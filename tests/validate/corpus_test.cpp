// Each check of `zqmspeech validate` refuses the plugins with the fault that it looks for, and those alone.

#include "tests/support/process.h"
#include "tests/support/process_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include <sys/prctl.h>
#include <sys/wait.h>

namespace zqm::tests {
namespace {

namespace fs = std::filesystem;

// What a plugin of the corpus is refused for.
struct Refusal {
    const char* plugin;
    const char* check;            // null: none
    const char* verdict;          // the worst one
    const char* warned = nullptr; // the check that warns of it besides
};

const Refusal kCorpus[] = {
    {"good", nullptr, "pass"},
    {"starts_a_daemon", nullptr, "pass"},
    {"names_files_elsewhere", nullptr, "pass"},
    {"keeps_what_it_knows", nullptr, "pass"},
    {"unlocks_later", nullptr, "pass"},
    {"removes_its_arguments", nullptr, "pass"},
    {"has_room_for_few", nullptr, "pass"},
    {"missing_symbol", "load", "fail"},
    {"no_entry_function", "start", "fail"},
    {"slow_start", "start", "fail"},
    {"crashes_at_start", "start", "crash"},
    {"exits_at_start", "start", "fail"},
    {"hangs_at_start", "start", "fail"},
    {"extra_export", "exports", "fail"},
    {"counts_too_many", "records", "fail"},
    {"counts_without_table", "records", "fail"},
    {"misaligned_record", "records", "fail"},
    {"null_name", "records", "fail"},
    {"duplicate_class", "records", "fail"},
    {"duplicate_member", "records", "fail"},
    {"bad_declaration", "records", "fail"},
    {"no_accessors", "records", "fail"},
    {"ignores_the_version", "versions", "fail"},
    {"fails_when_started_again", "restart", "crash"},
    {"changes_when_started_again", "restart", "fail"},
    {"locks_nothing_when_started_again", "restart", "fail"},
    {"crashes_with_any_argument", "members", "crash"},
    {"crashes_with_older_hosts", "members", "crash"},
    {"crashes_in_an_overload", "members", "crash"},
    {"crashes_in_a_shorter_overload", "members", "crash"},
    {"crashes_as_an_argument", "members", "crash"},
    {"ends_its_own_object", "handles", "fail", "members"},
    {"keeps_a_lock", "handles", "fail"},
    {"unlocks_too_often", "handles", "fail"},
    {"uses_a_dead_handle", "handles", "fail"},
    {"takes_event_tokens_as_they_are", "handles", "fail"},
    {"crashes_on_null", "arguments", "crash"},
    {"crashes_on_extremes", "arguments", "crash"},
    {"crashes_in_a_constructor", "arguments", "crash"},
    {"takes_only_constructed_objects", "arguments", "crash"},
    {"keeps_a_lock_on_nil", "arguments", "fail"},
    {"exits_in_a_member", "arguments", "fail"},
    {"hangs_in_a_member", "arguments", "fail"},
    {"crashes_when_unconstructed", "unconstructed", "crash"},
    {"keeps_a_lock_when_unconstructed", "unconstructed", "fail"},
    {"needs_a_service", "refused", "crash"},
    {"needs_a_service_with_older_hosts", "refused", "crash"},
    {"needs_a_service_for_nil", "refused", "crash"},
    {"needs_the_other_service", "refused", "crash"},
    {"needs_one_of_two_services", "refused-sets", "crash"},
    {"forgets_a_guard_with_older_hosts", "refused-sets", "crash"},
    {"forgets_a_guard_for_nil", "refused-sets", "crash"},
    {"trusts_every_call", "failing-calls", "crash"},
    {"trusts_later_calls", "failing-calls", "crash"},
    {"trusts_calls_at_start", "failing-calls", "crash"},
    {"trusts_kept_calls", "failing-calls", "crash"},
    {"grows", "growth", "fail"},
    {"leaves_descriptors", "growth", "fail"},
    {"leaves_processes", "growth", "fail"},
    {"leaves_orphans", "growth", "fail"},
    {"crashes_when_unloaded", "unload", "warning"},
};

std::string nameOf(const testing::TestParamInfo<Refusal>& info) {
    return info.param.plugin;
}

// Whatever outlives the command becomes a child of this process.
class Corpus : public testing::TestWithParam<Refusal> {
public:
    Corpus() { prctl(PR_SET_CHILD_SUBREAPER, 1); }
    ~Corpus() override {
        for (const pid_t process : support::childrenOfThisProcess()) {
            kill(process, SIGKILL);
            waitpid(process, nullptr, 0);
        }
    }
};

TEST_P(Corpus, IsRefusedByItsCheckAlone) {
    const Refusal& refusal = GetParam();
    const std::string plugin = std::string(ZQM_CORPUS "/") + refusal.plugin + ".so";
    const support::ProcessResult result = support::runProcess(
        ZQMSPEECH_PROGRAM, {"validate", "--json", "--seed", "1", "--time-limit", "10", plugin});
    EXPECT_THAT(support::childrenOfThisProcess(), testing::IsEmpty());
    const auto document = nlohmann::json::parse(result.output, nullptr, false);
    ASSERT_FALSE(document.is_discarded()) << result.output << result.errors;
    const bool isRefused = refusal.verdict == std::string("fail") || refusal.verdict == std::string("crash");
    EXPECT_EQ(result.exitCode, isRefused ? 3 : 0);
    for (const nlohmann::json& check : document["checks"]) {
        const std::string verdict = check["verdict"];
        if (refusal.check != nullptr && check["check"] == refusal.check) {
            EXPECT_EQ(verdict, refusal.verdict) << check.dump(2);
        } else if (refusal.warned != nullptr && check["check"] == refusal.warned) {
            EXPECT_EQ(verdict, "warning") << check.dump(2);
        } else {
            EXPECT_THAT(verdict, testing::AnyOf("pass", "skip")) << check.dump(2);
        }
        if (refusal.check == nullptr) {
            EXPECT_EQ(verdict, "pass") << check.dump(2);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Plugins, Corpus, testing::ValuesIn(kCorpus), nameOf);

TEST(CorpusSteps, ACrashOfAnArgumentIsToldOfTheCallThatItIsFor) {
    const support::ProcessResult result = support::runProcess(
        ZQMSPEECH_PROGRAM, {"validate", "--only", "members", ZQM_CORPUS "/crashes_as_an_argument.so"});
    EXPECT_THAT(result.output, testing::HasSubstr(", at: arguments of Adder.Add(counter as Counter)\n"));
}

TEST(CorpusSteps, AMemberThatCanNotBeCalledIsTold) {
    const support::ProcessResult result = support::runProcess(
        ZQMSPEECH_PROGRAM, {"validate", "--only", "members", ZQM_CORPUS "/ends_its_own_object.so"});
    EXPECT_THAT(
        result.output,
        testing::HasSubstr("it could not be tried: Counter.Twin() as Counter: this object is gone\n"));
}

// What a check by chance tries is what its seed makes of it.
TEST(CorpusSeed, RepeatsWhatACheckByChanceDid) {
    const auto findingWith = [](const char* seed) {
        const std::string output =
            support::runProcess(ZQMSPEECH_PROGRAM, {"validate", "--only", "refused-sets", "--seed", seed,
                                                    ZQM_CORPUS "/needs_one_of_two_services.so"})
                .output;
        EXPECT_THAT(output, testing::StartsWith("crash "));
        return output.substr(0, output.find('\n'));
    };
    EXPECT_EQ(findingWith("7"), findingWith("7"));
    EXPECT_NE(findingWith("7"), findingWith("8"));
}

TEST(CorpusTable, HasEveryPlugin) {
    std::set<std::string> sources;
    for (const fs::directory_entry& entry : fs::directory_iterator(ZQM_CORPUS_SOURCES)) {
        if (entry.path().extension() != ".h") {
            sources.insert(entry.path().stem());
        }
    }
    std::set<std::string> listed;
    for (const Refusal& refusal : kCorpus) {
        listed.insert(refusal.plugin);
    }
    EXPECT_EQ(sources, listed);
}

TEST(CorpusTable, RefusesAPluginForEachCheck) {
    std::set<std::string> refusing;
    for (const Refusal& refusal : kCorpus) {
        if (refusal.check != nullptr) {
            refusing.insert(refusal.check);
        }
    }
    const auto document = nlohmann::json::parse(
        support::runProcess(ZQMSPEECH_PROGRAM, {"validate", "--json", ZQM_CORPUS "/good.so"}).output);
    for (const nlohmann::json& check : document["checks"]) {
        EXPECT_TRUE(refusing.contains(check["check"])) << check["check"];
    }
}

} // namespace
} // namespace zqm::tests
