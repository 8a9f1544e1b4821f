// What a host and an engine that listens say to each other (see protocol.h for how).
//
// The road of one session:
//
//   host   -> {"type":"commands","list":1,"commands":["open the door","stop"]}
//   host   -> {"type":"listen","session":3,"reportsLevel":false,"fromFile":false}
//   engine -> {"type":"commandsSet","list":1,"problems":[],"refused":0}   the list is in effect
//   engine -> {"type":"listening","session":3,"wantsNewEngine":false}   capturing; with "error" why it is not
//   engine -> {"type":"heard","session":3,"list":1,"command":0,"begin":0.5,"end":1.25}   any number of these,
//             and of "rejected" and "level"
//   engine -> {"type":"endOfInput","session":3}                   only of a file: all of it was heard
//   host   -> {"type":"stopListening","session":3}
//
// - An engine listens to one session at a time: a new "listen" ends the one before. Of a session that was
//   ended or stopped nothing more is said once the engine has read that.
// - Commands may be set at any time, before a session too. A phrase that is going on is still held against
//   the list before; "commandsSet" says that nothing more will be heard of any earlier list. A list that is
//   replaced before it came into effect gets no "commandsSet".
// - "listening" comes whenever the state changes, and at least once a session. The microphone is tried again
//   until it works or the session ends; a file that fails has failed for good: "listening" with "error" is
//   the last word on its session then.
// - While another program of the user blocks the others, its commands are heard by it alone: of what is said
//   meanwhile there is neither "heard" nor "rejected" here.

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace zqm::protocol {

// ---- host to engine

// Replaces the whole list, for the phrases that begin from now on.
struct SetCommands {
    std::uint64_t list = 0; // counts up, from 1
    std::vector<std::string> commands;

    bool operator==(const SetCommands&) const = default;
};

struct Listen {
    std::uint64_t session = 0; // counts up, from 1
    bool reportsLevel = false;
    bool fromFile = false; // its descriptor, open for reading, travels with the message; else the microphone

    bool operator==(const Listen&) const = default;
};

// Whether this program is to be heard alone while it listens; from now on, in this session and later ones.
struct BlockOthers {
    bool blocks = false;

    bool operator==(const BlockOthers&) const = default;
};

struct StopListening {
    std::uint64_t session = 0;

    bool operator==(const StopListening&) const = default;
};

// ---- engine to host

// A command that can't be listened for.
struct CommandProblem {
    std::uint64_t command = 0; // its index in the list
    std::string message;       // for people

    bool operator==(const CommandProblem&) const = default;
};

struct CommandsSet {
    // More are not told, nor longer ones, so that the line stays short.
    static constexpr std::size_t kMaxProblems = 100;
    static constexpr std::size_t kMaxMessageBytes = 1000;

    std::uint64_t list = 0;
    std::vector<CommandProblem> problems;
    std::uint64_t refused = 0; // how many commands can't be listened for, with those that are not told

    bool operator==(const CommandsSet&) const = default;
};

struct Listening {
    std::uint64_t session = 0;
    std::string error; // empty: it is capturing
    bool wantsNewEngine =
        false; // which may do better, as this one can reach only what was there when it began

    bool operator==(const Listening&) const = default;
};

// Times are seconds of audio since the session's first sample.
struct Heard {
    std::uint64_t session = 0;
    std::uint64_t list = 0;
    std::uint64_t command = 0; // index in that list
    double begin = 0;
    double end = 0;

    bool operator==(const Heard&) const = default;
};

// A phrase that was none of the commands.
struct Rejected {
    std::uint64_t session = 0;
    double begin = 0;
    double end = 0;

    bool operator==(const Rejected&) const = default;
};

// How loud it is, ten times a second of audio.
struct Level {
    std::uint64_t session = 0;
    double decibels = 0; // of full scale

    bool operator==(const Level&) const = default;
};

struct EndOfInput {
    std::uint64_t session = 0;

    bool operator==(const EndOfInput&) const = default;
};

} // namespace zqm::protocol
