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
#include <string_view>
#include <vector>

namespace zqm::soak {

// A speaking object and the locks on it.
struct Speaker {
    std::vector<host::Object> locks; // on the same object
    std::size_t starts = 0;
    std::size_t ends = 0;
};

struct Recognizer {
    host::Object object;
    bool listens = true;
};

class RandomProgram {
public:
    RandomProgram(const std::string& plugin, std::uint64_t seed);
    RandomProgram(const RandomProgram&) = delete;
    RandomProgram& operator=(const RandomProgram&) = delete;
    ~RandomProgram();

    // Throws std::runtime_error with what was wrong.
    void episode();
    // Does one thing of an episode, by its name; answers whether it could be done.
    bool act(std::string_view name);

    host::Runtime& runtime() { return runtime_; }
    pid_t speakingEngine() const { return speakingEngine_; }
    pid_t listeningEngine() const { return listeningEngine_; }
    std::size_t processes() const { return engines_->children().size(); }
    // How often each thing was done, those included that never were.
    const std::map<std::string, std::size_t>& done() const { return done_; }
    endurance::LogFile& log() { return log_; }

private:
    struct Action {
        const char* name;
        int weight;
        // Answers whether it did that: there may be nothing to do it to, or it may be refused.
        bool (RandomProgram::*run)();
    };
    static const std::vector<Action>& actions();

    bool speakIntoFile(Speaker& speaker);
    bool speakAloud(Speaker& speaker);
    bool speakIntoNothing(Speaker& speaker);
    bool control(Speaker& speaker);
    bool setManner(Speaker& speaker);
    bool setProperty(Speaker& speaker);
    bool setNestedValue(Speaker& speaker);
    bool readProperties(Speaker& speaker);
    bool askPhonemes(Speaker& speaker);
    bool askVoices();
    bool addDictionary(Speaker& speaker);
    bool raise();
    bool makeSpeaker();
    bool copyLock(Speaker& speaker);
    bool releaseLock(Speaker& speaker);
    bool listen();
    bool stopListening();
    bool killEngine();
    bool stopEngine();
    bool runLoop();

    std::size_t below(std::size_t limit) { return random_() % limit; }
    // Does that to any of the speakers, if there is one.
    template <bool (RandomProgram::*run)(Speaker&)>
    bool withAnySpeaker();
    std::optional<pid_t> anyEngine();
    // What is spoken, or asked for phonemes, by the speaker's voice.
    host::String hostText(std::size_t mostUnits, const Speaker& speaker);
    std::string key(const char* name);
    std::filesystem::path newFile();
    void warmUp();
    void speakThroughResident();
    void listenThroughResident();
    bool act(const Action& action);
    void finish();
    void judgeLog();

    std::mt19937_64 random_;
    support::TemporaryFolder folder_;
    support::TemporaryFolder user_;
    support::ScopedEnvironment runtimeFolder_;
    support::PulseServer server_;
    support::ScopedPulseServer useServer_;
    endurance::LogFile log_;
    host::Runtime runtime_;
    std::unique_ptr<endurance::EngineProcesses> engines_;
    std::map<std::string, std::string> keys_;
    std::vector<std::string> voices_;
    std::map<std::string, std::size_t> done_;
    std::size_t files_ = 0;
    std::size_t episodes_ = 0;

    std::vector<std::unique_ptr<Speaker>> speakers_; // of the episode
    std::vector<Recognizer> recognizers_;
    std::vector<std::string> texts_; // of the episode, each behind its voice
    bool hasKilledEngines_ = false;

    // These live as long as the program.
    host::Object speaker_;
    host::Object recognizer_;
    std::size_t ends_ = 0;
    std::vector<std::string> heard_;
    pid_t speakingEngine_ = 0;
    pid_t listeningEngine_ = 0;
};

} // namespace zqm::soak
