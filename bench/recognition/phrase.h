// What is played to the recognizer to measure it.

#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace zqm::recognition {

struct Phrase {
    std::string half;    // "tuning" or "reporting"; the two share no voice and no command
    std::string voice;   // or what else is heard, such as "people" or "noise"
    std::string text;    // what is said, or a name for what is heard
    std::string command; // what should be recognized; empty: nothing
    std::filesystem::path file;

    bool operator==(const Phrase&) const = default;
};

// A list of phrases is a file of one JSON object a line. Files in it are named from the list's own folder, or
// absolutely. Both throw std::runtime_error when the list can't be read or written.
std::vector<Phrase> readPhrases(const std::filesystem::path& list);
void writePhrases(const std::filesystem::path& list, const std::vector<Phrase>& phrases);

// What the recognizer listens for while that half is played: each command that one of its phrases is, once.
std::vector<std::string> commandsOf(const std::vector<Phrase>& phrases, const std::string& half);

} // namespace zqm::recognition
