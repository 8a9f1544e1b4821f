// A host program whose engines are killed: it speaks and listens, notes what it is told, and finds out
// whether something is missing or left over.

#pragma once

#include "tests/endurance/engine_processes.h"
#include "tests/endurance/log_file.h"
#include "tests/support/pulse_server.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/temporary_folder.h"
#include "zqmhost/zqmhost.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace zqm::endurance {

// What the platform logs of an engine's end.
inline constexpr const char* kSpeechEnded = "Speech ended early: the speech engine ended unexpectedly";
inline constexpr const char* kStartRefused = "Speech can't be started: the speech engine ended unexpectedly";
inline constexpr const char* kPhonemesRefused =
    "Phonemes can't be told: the speech engine ended unexpectedly";
inline constexpr const char* kListeningReplaced =
    "the speech engine ended unexpectedly; another one goes on listening";

inline constexpr const char* kWord = "SQL"; // to ask phonemes of
inline constexpr const char* kShortText = "Hi.";
// Of about two minutes, a tenth of a second for an engine; the mark is in its last third.
const std::string& longText();

// Throws std::runtime_error with these words unless it is so.
void require(bool isSo, const std::string& words);

// One speaking object of the host program and what it was told.
struct Speaking {
    explicit Speaking(host::Runtime& runtime);
    Speaking(const Speaking&) = delete;
    Speaking& operator=(const Speaking&) = delete;

    bool start(const std::string& next, const std::filesystem::path& file);
    bool startAloud(const std::string& next);
    bool isSpeaking() const { return object.get("isSpeaking").asBool(); }

    host::Object object;
    std::string text; // of the speech that was begun last
    std::size_t words = 0;
    std::size_t marks = 0;
    std::vector<bool> ends;
    std::function<void()> atEnd; // called once

private:
    void begin(const std::string& next);
};

// One listening object; one at a time.
struct Hearing {
    explicit Hearing(host::Runtime& runtime, const std::vector<std::string>& list);
    Hearing(const Hearing&) = delete;
    Hearing& operator=(const Hearing&) = delete;
    ~Hearing();

    host::Object object;
    std::vector<std::string> commands;
    std::size_t timesBegan = 0;
    std::size_t timesEnded = 0;
    std::vector<std::string> failures;
    std::function<void()> atFirst; // at the first command, called once
};

class KillScene {
public:
    KillScene(const std::string& plugin, std::uint64_t seed);

    // An engine that has spoken and waits, of an object that may have had others before.
    Speaking& idle();
    // A new object, which has no engine yet; there is no other one then.
    Speaking& fresh();
    // Nobody speaks, and no engine is left.
    void silence();
    // Of the only object that has one.
    pid_t engine() const;

    // Held in the middle of the speech, so that it can't come to its end before it is killed. False: it had
    // come there already.
    bool holdSpeaking(Speaking& speaking) const;
    // Waits until the speech that was begun last has ended, and answers how.
    bool waitForEnd(Speaking& speaking);
    // The engine that is killed from beside; one that had ended by itself is a failure.
    void finish(Killing& killing);
    // Whether an engine has taken the place of the one that was killed.
    bool isReplaced() const;
    // After a kill: the engine is replaced and serves, everything was told once, and what is held is what was
    // held before. `expected` is what was logged meanwhile, `possible` a line that may have been: answers
    // whether it was.
    bool check(const std::vector<std::string>& expected, const std::string& possible = {});

    // After a failure: begins anew, with nothing held against what comes.
    void recover();

    bool waitFor(const std::function<bool()>& condition);
    std::filesystem::path file() const { return folder_ / "speech.wav"; }
    bool hasFile() const { return std::filesystem::exists(file()); }
    // Throws unless all of one of the texts above is in the file.
    void requireWhole(const std::filesystem::path& file, const std::string& text) const;
    // The same of file(), which is removed.
    void removeWholeFile(const std::string& text) const;
    // The same of a speech that was stopped, which may be any part of its text.
    void removePart() const;
    std::string phonemesOfWord(Speaking& speaking) const;
    host::Dictionary dictionary();
    std::string key(const char* name);
    std::filesystem::path phrases();

    std::size_t below(std::size_t limit) { return random_() % limit; }
    std::chrono::microseconds moment(std::chrono::microseconds most);

    host::Runtime& runtime() { return runtime_; }
    const EngineProcesses& engines() const { return *engines_; }
    const std::string& plainPhonemes() const { return plainPhonemes_; }
    LogFile& log() { return log_; }
    const std::string& plugin() const { return plugin_; }

    // The pid of the one that was killed last; a new one has another.
    pid_t killed = 0;

private:
    struct Held {
        std::size_t descriptors;
        host::Ledger ledger;
        friend bool operator==(const Held&, const Held&) = default;
    };

    void serve();
    void measure(const std::string& text);

    std::string plugin_;
    std::mt19937_64 random_;
    support::TemporaryFolder folder_;
    support::TemporaryFolder user_;
    support::ScopedEnvironment runtimeFolder_;
    support::PulseServer server_;
    support::ScopedPulseServer useServer_;
    LogFile log_;
    host::Runtime runtime_;
    std::unique_ptr<EngineProcesses> engines_;
    std::map<std::string, std::string> keys_;
    std::map<std::string, double> seconds_; // of texts, spoken without disturbance
    std::unique_ptr<Speaking> speaking_;
    std::string plainPhonemes_;
    std::optional<Held> held_;
};

} // namespace zqm::endurance
