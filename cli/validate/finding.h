#pragma once

#include <string>

namespace zqm::cli {

// What a check says of a plugin, the worst last.
enum class Verdict { Pass, Skip, Warning, Fail, Crash };

// As people and scripts read it: "pass", "skip", "warning", "fail", "crash".
const char* nameOf(Verdict verdict);

struct Finding {
    Verdict verdict;
    std::string text; // one line

    friend bool operator==(const Finding&, const Finding&) = default;
};

} // namespace zqm::cli
