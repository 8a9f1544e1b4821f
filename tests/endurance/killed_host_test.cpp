// A host that is killed while it writes a file: nothing of the unfinished file may be left in its folder.

#include "tests/support/process.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace std::chrono_literals;

constexpr int kKills = 40;
constexpr auto kLatest = 80ms; // by then the file is being written

std::vector<std::string> namesIn(const std::filesystem::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        names.push_back(entry.path().filename().string());
    }
    return names;
}

TEST(KilledHost, LeavesNothingOfAFileItWasWriting) {
    const zqm::support::TemporaryFolder folder;
    zqm::support::ProcessOptions options;
    for (int i = 0; i < 100'000; ++i) {
        options.input += "word ";
    }
    for (int kill = 0; kill < kKills; ++kill) {
        const zqm::support::Process host(ZQM_COMMAND, {"say", "-o", folder / "speech.wav"}, options);
        std::this_thread::sleep_for(kLatest * kill / kKills);
        host.signal(SIGKILL);
        ASSERT_TRUE(host.waitFor(60s));
        ASSERT_EQ(namesIn(folder.path()), std::vector<std::string>{}) << "killed after " << kill << " steps";
    }
}

} // namespace
