#pragma once

#include "cli/validate/validation.h"

#include <cstddef>
#include <optional>
#include <string>

namespace zqm::cli {

// How text for people to read is laid out.
struct ValidateLayout {
    std::optional<std::size_t> columns; // of the terminal; none: a line for each finding, however long
    bool isColoured;
};

// A line for each finding.
std::string resultText(const CheckResult& result, const ValidateLayout& layout);

// How many checks ended how.
std::string summaryText(const Validation& validation);

// A line for each check: name, tab, what it is about.
std::string checkList();

} // namespace zqm::cli
