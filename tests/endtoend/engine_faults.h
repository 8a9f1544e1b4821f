// What can go wrong with an engine or its messages, and a host program that hears of it.

#pragma once

#include "tests/endtoend/faulty_road.h"
#include "tests/endtoend/speaking.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace zqm::endtoend {

inline constexpr const char* kEnded = "the speech engine ended unexpectedly";
inline constexpr const char* kNonsense = "the speech engine said something that makes no sense";
inline constexpr const char* kMute = "the speech engine does not answer";
inline constexpr const char* kNotStarted = "Speech can't be started: ";
inline constexpr const char* kEndedEarly = "Speech ended early: ";

// What is said of it by and by is still every kind of message.
inline constexpr const char* kShortText = "Hi";

struct Fault {
    enum class Effect {
        None,
        Loss,   // the engine is of no more use to the host, for the reason
        Either, // which is a matter of time
    };

    std::string name;
    std::string action;  // of a FaultyRoad
    std::string bytes{}; // for that
    Effect effect = Effect::Loss;
    std::string reason = kEnded;
};

struct FaultCase {
    Place place;
    Fault fault;
    bool isUsed = false; // the engine has served before

    [[nodiscard]] bool isLoss() const { return fault.effect == Fault::Effect::Loss; }
    // The message came to the host before the fault.
    [[nodiscard]] bool isBehind(const std::string& type) const;
};

enum class Garbage {
    Once,     // each kind at one of the messages
    OnDemand, // none, unless all is asked for
};

// At each of these messages: what cuts the conversation before and behind it, what doubles, delays or leaves
// out the message unless the host would wait for it, and garbage in its place. Of that each kind comes at
// every message when the environment has ZQM_ALL_FAULTS.
std::vector<FaultCase> faultCases(const std::vector<Place>& places, Garbage wanted);

// The same, and a speech into a file that comes without its descriptors, or whose engine dies over the file.
std::vector<FaultCase> withFileFaults(std::vector<FaultCase> cases);

// The same with engines that are new to the host and with some that have served before.
std::vector<FaultCase> newAndUsed(const std::vector<FaultCase>& cases);

// One of each `step`, and fewer where engines are slow, unless all is asked for; but where engines are fast,
// all that close the conversation.
std::vector<FaultCase> thinned(const std::vector<FaultCase>& cases, std::size_t step = 1);

std::string nameOf(const testing::TestParamInfo<FaultCase>& each);
void PrintTo(const FaultCase& each, std::ostream* stream);

Place request(const std::string& type);
Place event(const std::string& type, int number = 0);

class EngineFaults : public SpeakingTest {
protected:
    void SetUp() override;
    // Nothing may be left of any engine, nor of any file but whole ones.
    void TearDown() override;

    void plan(const FaultCase& each) const { road.plan(each.place, each.fault.action, each.fault.bytes); }

    // The file is as long as it is when nothing goes wrong.
    void expectWhole(const std::filesystem::path& path) const;

    // What the body logs, but for what the engine says of its host.
    static std::vector<std::string> loggedByHost(const std::function<void()>& body);

    FaultyRoad road;
    std::filesystem::path next = folder / "next.wav";
    double seconds = 0; // of the short text

private:
    void waitUntilNothingIsLeft();

    std::size_t descriptors_ = 0;
    std::vector<pid_t> children_; // that are no engines
};

} // namespace zqm::endtoend
