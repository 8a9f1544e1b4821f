// A host program that does at random what host programs do. Its life is a row of episodes: objects are made,
// used, copied and released, engines killed and stopped; at the end of each all of that is gone again.

#pragma once

#include "tests/endurance/engine_processes.h"
#include "tests/endurance/log_file.h"
#include "tests/support/pulse_server.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/temporary_folder.h"
#include "zqmhost/zqmhost.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace zqm::soak {

// A speaking object and the locks on it.
struct Speaker {
    std::vector<host::Object> locks; // on the same object
    std::size_t starts = 0;
    std::size_t ends = 0;
};

class RandomProgram {
public:
    RandomProgram(const std::string& plugin, std::uint64_t seed);
    RandomProgram(const RandomProgram&) = delete;
    RandomProgram& operator=(const RandomProgram&) = delete;
    ~RandomProgram();

    // Throws std::runtime_error with what was wrong.
    void episode();

    host::Runtime& runtime() { return runtime_; }
    pid_t speakingEngine() const { return speakingEngine_; }
    pid_t listeningEngine() const { return listeningEngine_; }
    std::size_t processes() const { return engines_->all().size(); }
    bool speaksAloud() const { return server_.has_value(); }
    // How often each thing was done.
    const std::map<std::string, std::size_t>& done() const { return done_; }
    endurance::LogFile& log() { return log_; }

private:
    struct Action {
        const char* name;
        int weight;
        void (RandomProgram::*run)();
    };
    static const std::vector<Action>& actions();

    void speakIntoFile();
    void speakAloud();
    void speakIntoNothing();
    void control();
    void setManner();
    void setProperty();
    void setNestedValue();
    void readProperties();
    void askPhonemes();
    void askVoices();
    void addDictionary();
    void raise();
    void makeSpeaker();
    void copyLock();
    void releaseLock();
    void listen();
    void stopListening();
    void killEngine();
    void stopEngine();
    void runLoop();

    std::size_t below(std::size_t limit) { return random_() % limit; }
    Speaker* anySpeaker();
    std::optional<pid_t> anyEngine();
    std::string text(std::size_t mostUnits);
    host::String hostText(std::size_t mostUnits);
    std::string key(const char* name);
    std::filesystem::path newFile();
    void warmUp();
    void speakThroughResident();
    void listenThroughResident();
    void finish();

    std::string plugin_;
    std::mt19937_64 random_;
    support::TemporaryFolder folder_;
    support::TemporaryFolder user_;
    support::ScopedEnvironment runtimeFolder_;
    std::optional<support::PulseServer> server_;
    std::optional<support::ScopedPulseServer> useServer_;
    endurance::LogFile log_;
    host::Runtime runtime_;
    std::unique_ptr<endurance::EngineProcesses> engines_;
    std::map<std::string, std::string> keys_;
    std::vector<std::string> voices_;
    std::map<std::string, std::size_t> done_;
    std::size_t files_ = 0;
    std::size_t episodes_ = 0;

    std::vector<std::unique_ptr<Speaker>> speakers_; // of the episode
    std::vector<host::Object> recognizers_;

    // These live as long as the program.
    host::Object speaker_;
    host::Object recognizer_;
    std::size_t ends_ = 0;
    std::vector<std::string> heard_;
    pid_t speakingEngine_ = 0;
    pid_t listeningEngine_ = 0;
};

} // namespace zqm::soak
