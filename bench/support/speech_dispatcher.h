// A speech-dispatcher of the benchmark's own, which speaks by espeak-ng to a PulseAudio server.

#pragma once

#include "tests/support/process.h"
#include "tests/support/pulse_server.h"
#include "tests/support/temporary_folder.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace zqm::bench {

// Ends with this process, whatever becomes of that.
class SpeechDispatcher {
public:
    // Returns when it takes clients; throws std::runtime_error with its own words when it doesn't.
    explicit SpeechDispatcher(const support::PulseServer& sound) {
        using namespace std::chrono_literals;
        const std::string folder = folder_.path().string();
        std::filesystem::create_directories(folder_ / "modules");
        std::ofstream(folder_ / "speechd.conf")
            << "AudioOutputMethod \"pulse\"\n"
               "AddModule \"espeak-ng\" \"sd_espeak-ng\" \"espeak-ng.conf\"\n"
               "DefaultModule espeak-ng\n"
               "DefaultLanguage \"en-US\"\n";
        std::filesystem::copy("/etc/speech-dispatcher/modules/espeak-ng.conf",
                              folder_ / "modules/espeak-ng.conf");
        options_.environment = sound.environment();
        options_.environment.insert({{"HOME", folder},
                                     {"XDG_CONFIG_HOME", folder},
                                     {"XDG_CACHE_HOME", folder},
                                     {"XDG_RUNTIME_DIR", folder},
                                     {"SPEECHD_ADDRESS", "unix_socket:" + (folder_ / "socket").string()}});
        server_.emplace("speech-dispatcher",
                        std::vector<std::string>{"-s", "-t", "0", "-c", "unix_socket", "-S",
                                                 folder_ / "socket", "-P", folder_ / "pid", "-C", folder,
                                                 "-L", folder},
                        options_);
        const auto end = std::chrono::steady_clock::now() + 60s;
        while (!std::filesystem::exists(folder_ / "socket")) {
            if (!server_->running() || std::chrono::steady_clock::now() > end) {
                throw std::runtime_error("speech-dispatcher does not start: " + server_->result().errors);
            }
            std::this_thread::sleep_for(20ms);
        }
    }

    // Runs spd-say, which ends once the server has its request.
    void say(const std::vector<std::string>& arguments) const {
        const support::ProcessResult result = support::runProcess("spd-say", arguments, options_);
        if (!result.succeeded()) {
            throw std::runtime_error("spd-say: " + result.errors);
        }
    }

private:
    support::TemporaryFolder folder_;
    support::ProcessOptions options_;
    std::optional<support::Process> server_;
};

} // namespace zqm::bench
