// The engine program, looked at from outside.

#include "engine/confinement/landlock.h"
#include "engine/speaker/voices.h"
#include "tests/engine/engine_process.h"
#include "tests/support/process_table.h"
#include "tests/support/temporary_folder.h"

#include <cerrno>
#include <csignal>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <sys/prctl.h>
#include <unistd.h>

using namespace zqm::protocol;
using namespace zqm::test;
using zqm::support::TemporaryFolder;

namespace {

// Of a thread, by name.
std::map<std::string, std::string> statusOf(const std::filesystem::path& folder) {
    std::map<std::string, std::string> values;
    std::ifstream file(folder / "status");
    for (std::string line; std::getline(file, line);) {
        const std::size_t colon = line.find(":\t");
        if (colon != std::string::npos) {
            values[line.substr(0, colon)] = line.substr(colon + 2);
        }
    }
    return values;
}

class ConfinedEngine : public testing::Test {
protected:
    void SetUp() override {
        if (::prctl(PR_GET_SECCOMP, 0, 0, 0, 0) < 0 && errno == EINVAL) {
            GTEST_SKIP() << "this kernel has no seccomp";
        }
        engine_.send(ListVoices{});
        ASSERT_TRUE(engine_.nextOf<Voices>()); // it is confined before it answers
    }

    EngineProcess engine_;
};

TEST_F(ConfinedEngine, isSoInEachOfItsThreads) {
    int threads = 0;
    const std::string process = "/proc/" + std::to_string(engine_.pid());
    for (const auto& thread : std::filesystem::directory_iterator(process + "/task")) {
        auto status = statusOf(thread.path());
        EXPECT_EQ(status["Seccomp"], "2") << thread.path();
        EXPECT_EQ(status["NoNewPrivs"], "1") << thread.path();
        ++threads;
    }
    EXPECT_GE(threads, 1);
}

TEST_F(ConfinedEngine, hasAProcessForItsFilesThatIsConfinedTooAndEndsWithIt) {
    const auto helpers = zqm::support::childrenOf(engine_.pid());
    ASSERT_EQ(helpers.size(), 1U);
    const std::filesystem::path helper = "/proc/" + std::to_string(helpers.front());
    while (statusOf(helper)["Seccomp"] == "0") { // it confines itself while the engine starts
        ::usleep(1000);
    }
    auto status = statusOf(helper);
    EXPECT_EQ(status["Name"], "zqmspeech-files");
    EXPECT_EQ(status["Seccomp"], "2");
    EXPECT_EQ(status["NoNewPrivs"], "1");
    ::kill(engine_.pid(), SIGKILL);
    while (zqm::support::isAlive(helpers.front())) {
        ::usleep(1000);
    }
}

TEST_F(ConfinedEngine, speaksWithoutTheProcessForItsFilesButSaysThatItCanNotPutThemInPlace) {
    const auto helpers = zqm::support::childrenOf(engine_.pid());
    ASSERT_EQ(helpers.size(), 1U);
    ::kill(helpers.front(), SIGKILL);
    const TemporaryFolder folder;
    Target target(folder.path(), "a.wav");
    Speak request = speak(1, "Hello.");
    request.output = target.output;
    engine_.send(request, std::move(target.descriptors));
    const auto end = finished(engine_.untilEnd(1));
    ASSERT_TRUE(end);
    EXPECT_FALSE(end->completed);
    EXPECT_FALSE(std::filesystem::exists(target.file));
}

TEST_F(ConfinedEngine, endsItsHelperWhenItEnds) {
    const auto helpers = zqm::support::childrenOf(engine_.pid());
    ASSERT_EQ(helpers.size(), 1U);
    engine_.hangUp();
    EXPECT_EQ(engine_.wait(), 0);
    EXPECT_FALSE(std::filesystem::exists("/proc/" + std::to_string(helpers.front())));
}

// An engine whose voices are those of a folder.
bool findsVoices(const std::filesystem::path& folder) {
    EngineProcess engine({{"ESPEAK_DATA_PATH", folder.string()}});
    engine.send(ListVoices{});
    const auto answer = engine.nextOf<Voices>();
    return answer && !answer->voices.empty();
}

TEST(ConfinedEngineFiles, areNotThoseThatItsDataLinksToElsewhere) {
    if (zqm::engine::landlockVersion() == 0) {
        GTEST_SKIP() << "this kernel has no Landlock";
    }
    constexpr const char* kFile = "phontab"; // without which nothing is spoken
    const TemporaryFolder data;
    const TemporaryFolder elsewhere;
    std::filesystem::copy(zqm::engine::voiceFolder(), data.path(), std::filesystem::copy_options::recursive);
    const auto findsVoicesWithItIn = [&](const std::filesystem::path& place) {
        std::filesystem::copy_file(std::filesystem::path(zqm::engine::voiceFolder()) / kFile, place);
        std::filesystem::remove(data / kFile);
        std::filesystem::create_symlink(place, data / kFile);
        return findsVoices(data.path());
    };
    EXPECT_TRUE(findsVoicesWithItIn(data / "another name"));
    EXPECT_FALSE(findsVoicesWithItIn(elsewhere / kFile));
}

} // namespace
