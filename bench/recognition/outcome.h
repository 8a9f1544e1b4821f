// What came of the phrases that were played.

#pragma once

#include "bench/recognition/phrase.h"

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace zqm::recognition {

struct Outcome {
    std::string way; // "offline": samples straight into the recognizer; "live": through a sound server
    Phrase phrase;
    std::vector<std::string> heard = {}; // the commands that were recognized, in order
    std::optional<double> delay = {};    // seconds from the last sound to the event of the first of them
    double seconds = 0;          // of audio that the recognizer took, silence between phrases included
    double processorSeconds = 0; // that it needed for that

    bool isCommand() const { return !phrase.command.empty(); }
    bool isRight() const { return isCommand() && heard == std::vector<std::string>{phrase.command}; }
    bool isMissed() const { return isCommand() && heard.empty(); }
    bool isWrong() const { return isCommand() && !isRight() && !isMissed(); }
    bool isFalseAccept() const { return !isCommand() && !heard.empty(); }

    bool operator==(const Outcome&) const = default;
};

// One JSON object a line.
void writeOutcome(std::ostream& out, const Outcome& outcome);
// Throws std::runtime_error for a line that is no outcome.
std::vector<Outcome> readOutcomes(std::istream& in);

} // namespace zqm::recognition
