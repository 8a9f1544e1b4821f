// What the platform library and a speech engine say to each other over their socket: messages, and how
// they are written down. Each is one JSON object on a line of its own, in UTF-8, so a conversation can be
// read, replayed and fuzzed. Both ends use this header and nothing else of each other.
//
// The road of one utterance (for that of a listening session see listening_messages.h):
//
//   host   -> {"type":"speak","utterance":7,"text":...,"voice":...,"manner":...,"delimiters":...,
//             "output":...}
//   engine -> {"type":"started","utterance":7}              the one reply; with "error" it never began
//   engine -> {"type":"word","utterance":7,"position":0,"length":5,"at":0.04}    any number of these, and
//             of "phoneme", "sync" and "problem", in the order and at the time of their sound
//   engine -> {"type":"finished","utterance":7,"completed":true,"at":0.52}       the last word on it
//
// - An engine speaks one utterance at a time. A new "speak" ends the one before it: its "finished"
//   precedes the new "started".
// - Each "speak" gets exactly one "started", and one "finished" if that carried no error.
// - A "pause" is answered by "paused" once its boundary is reached, unless the utterance is continued or ends
//   before; each "continue" of the utterance being spoken by "continued", paused or not. After a pause the
//   words from the one that was cut on are told again.
// - Positions and lengths count UTF-16 units of the text, its commands included.
// - "at" is the place in the utterance's sound, in seconds from its beginning and exact to the sample. What
//   is told again after a pause has the place that it had. That of "finished" is the length of the sound.
// - The engine never waits for the host to read: what it has to say it keeps until there is room.
// - A "ping" is answered by "pong", also in the middle of an utterance or session, once the engine comes
//   to it: it may be at work. So a host sees that an engine lives from which it awaits nothing else.
// - End of file on the socket ends the engine.
// - A line that is no message of these ends the conversation: the reader closes the socket.

#pragma once

#include "engine/protocol/listening_messages.h"
#include "engine/protocol/manner.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace zqm::protocol {

// The descriptor on which an engine finds its socket.
inline constexpr int kEngineSocket = 3;

// Longest line that a reader takes, line feed included; a longer one is no message.
inline constexpr std::size_t kMaxRequestLine = std::size_t{1} << 30;
inline constexpr std::size_t kMaxEventLine = std::size_t{1} << 20;

// ---- host to engine

struct ListVoices {
    bool operator==(const ListVoices&) const = default;
};

// Where an utterance is written instead of played. The descriptor of the open, empty file travels with
// the message (SCM_RIGHTS); with a temporary name (temporary_name.h), the descriptor of its folder follows
// it, and the one must be open for reading and writing, the other with O_PATH: no others are put in their
// places. The file may have no name yet, so that nothing is left of it should both ends be killed.
struct Output {
    std::string extension;     // of the final name, without the dot, as written; picks the format
    std::string temporaryName; // renamed to finalName when whole, removed on failure; empty: write in place
    std::string finalName;     // both are names in the folder: never a path, "." or ".."

    bool operator==(const Output&) const = default;
};

struct Speak {
    std::uint64_t utterance = 0; // counts up, from 1
    std::string text;            // UTF-8; lone surrogates stand in it as U+FFFD
    std::string voice;           // identifier
    Manner manner{};
    Delimiters delimiters{};
    std::optional<Output> output{};

    bool operator==(const Speak&) const = default;
};

// Ends the utterance at the boundary, if it is still being spoken: with the last word that was told, or with
// the sentence of that.
struct Stop {
    std::uint64_t utterance = 0;
    Boundary boundary = Boundary::Immediate;

    bool operator==(const Stop&) const = default;
};

// Holds the utterance at the boundary until it is continued.
struct Pause {
    std::uint64_t utterance = 0;
    Boundary boundary = Boundary::Immediate;

    bool operator==(const Pause&) const = default;
};

struct Continue {
    std::uint64_t utterance = 0;

    bool operator==(const Continue&) const = default;
};

// Changes of the utterance being spoken, from the next sound that is made.
struct Adjust {
    std::uint64_t utterance = 0;
    Manner manner{};

    bool operator==(const Adjust&) const = default;
};

struct LexiconEntry {
    std::string spelling;
    std::string phonemes; // symbols

    bool operator==(const LexiconEntry&) const = default;
};

struct LexiconDictionary {
    std::string locale; // such as "en_US"; empty: of every language
    std::string
        modificationDate; // such as "2024-01-31 12:00:00 +0000"; of several for a word the newest counts
    std::vector<LexiconEntry> pronunciations;
    std::vector<LexiconEntry> abbreviations; // matched with their full stop where the text has one

    bool operator==(const LexiconDictionary&) const = default;
};

// Replaces the whole lexicon, for what is spoken from now on.
struct SetLexicon {
    std::vector<LexiconDictionary> dictionaries;

    bool operator==(const SetLexicon&) const = default;
};

// Asks for the phoneme symbols of a text, as it would be spoken.
struct GetPhonemes {
    std::string text;
    std::string voice;
    Manner manner{}; // its spelling modes count: the text is words, whatever else is to be spoken

    bool operator==(const GetPhonemes&) const = default;
};

struct Ping {
    bool operator==(const Ping&) const = default;
};

using Request = std::variant<ListVoices, Speak, Stop, Pause, Continue, Adjust, SetLexicon, GetPhonemes, Ping,
                             SetCommands, Listen, BlockOthers, StopListening>;

// ---- engine to host

struct Voice {
    std::string identifier; // never empty
    std::string name;
    std::string language; // BCP 47, such as "en-US"
    std::string gender;   // "male", "female" or "neuter"
    int age = 0;          // years; 0: not known
    double rate = 0;      // its own manner of speaking
    double pitchBase = 0;
    double pitchModulation = 0;

    bool operator==(const Voice&) const = default;
};

struct Voices {
    std::vector<Voice> voices; // in the engine's stable order
    std::string synthesizer{};
    std::string version{};

    bool operator==(const Voices&) const = default;
};

struct Started {
    std::uint64_t utterance = 0;
    std::string error; // empty: it is being spoken

    bool operator==(const Started&) const = default;
};

struct Word {
    std::uint64_t utterance = 0;
    std::uint64_t position = 0;
    std::uint64_t length = 0;
    double at = 0;

    bool operator==(const Word&) const = default;
};

// Opcodes as NSSpeechSynthesizer's; the first and the last of an utterance are silence.
struct Phoneme {
    std::uint64_t utterance = 0;
    int opcode = 0;
    double at = 0;

    bool operator==(const Phoneme&) const = default;
};

// A mistake in the text, which is spoken all the same.
struct Problem {
    std::uint64_t utterance = 0;
    int code = 0;
    std::uint64_t position = 0;
    std::string message{}; // for people
    double at = 0;

    bool operator==(const Problem&) const = default;
};

struct Sync {
    std::uint64_t utterance = 0;
    std::uint32_t message = 0;
    double at = 0;

    bool operator==(const Sync&) const = default;
};

struct Paused {
    std::uint64_t utterance = 0;

    bool operator==(const Paused&) const = default;
};

struct Continued {
    std::uint64_t utterance = 0;

    bool operator==(const Continued&) const = default;
};

struct Finished {
    std::uint64_t utterance = 0;
    bool completed = false; // to the end, not stopped or failed
    std::string error{};    // why it failed; empty when completed or stopped
    double at = 0;

    bool operator==(const Finished&) const = default;
};

// The answer to GetPhonemes; empty where there is no such voice.
struct Phonemes {
    std::string text;

    bool operator==(const Phonemes&) const = default;
};

struct Pong {
    bool operator==(const Pong&) const = default;
};

using Event = std::variant<Voices, Started, Word, Phoneme, Problem, Sync, Paused, Continued, Finished,
                           Phonemes, Pong, CommandsSet, Listening, Heard, Rejected, Level, EndOfInput>;

// ---- lines

// The line for a message, its line feed included. Bytes that are no UTF-8 are written as U+FFFD, an infinite
// number as the largest, and what is not a number as null.
std::string encode(const Request& request);
std::string encode(const Event& event);

// The message of a line (without line feed), or nothing when it isn't exactly one: unknown type, missing,
// repeated or surplus member, value of the wrong kind or out of range, invalid UTF-8. Never throws. A member
// shown with `std::optional` may be missing; the empty "error" of Started, Finished and Listening always is.
std::optional<Request> decodeRequest(std::string_view line);
std::optional<Event> decodeEvent(std::string_view line);

} // namespace zqm::protocol
