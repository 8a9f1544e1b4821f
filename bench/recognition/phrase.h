// What is played to the recognizer to measure it.

#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace zqm::recognition {

struct Phrase {
    std::string half;    // of the material, such as "Tuning half"; the two share no voice and no command
    std::string voice;   // or what else is heard, such as "people" or "noise"
    std::string kind;    // "command", or another word for what is none
    std::string text;    // what is said, or a name for what is heard
    std::string command; // what should be recognized; empty: nothing
    std::filesystem::path file;

    // So like a command that people might take it for one: counted, but held against nothing.
    bool isNearMiss() const { return kind == "near-miss"; }

    bool operator==(const Phrase&) const = default;
};

// Of a list: a file with a line for each phrase, of voice, kind, text and file, parted by tabs. Throws
// std::runtime_error when the list can't be read.
std::vector<Phrase> readPhrases(const std::filesystem::path& list, const std::string& half);

// What the recognizer listens for while they are played: each command that one of them is, once.
std::vector<std::string> commandsOf(const std::vector<Phrase>& phrases);

} // namespace zqm::recognition
