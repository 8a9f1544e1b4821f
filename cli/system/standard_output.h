#pragma once

#include <string_view>

namespace zqm::cli {

// Writes the line to standard output at once. What fails shows in ferror(stdout).
void printLine(std::string_view line);

// As long as it lives, what is written to standard output goes nowhere.
class SilentOutput {
public:
    SilentOutput();
    ~SilentOutput();
    SilentOutput(const SilentOutput&) = delete;
    SilentOutput& operator=(const SilentOutput&) = delete;

private:
    int output_; // the real one
};

// Whether standard output takes lines still: that none failed, and that the reader of a pipe has not left.
bool hasReader();

} // namespace zqm::cli
