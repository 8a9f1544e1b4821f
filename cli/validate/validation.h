// Checks that ran, and what they found.

#pragma once

#include "cli/validate/check.h"
#include "cli/validate/finding.h"
#include "cli/validate/findings.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zqm::cli {

struct CheckResult {
    std::string_view check;
    std::string_view summary;
    Verdict verdict = Verdict::Pass;    // the worst of the findings
    std::vector<Finding> findings = {}; // the first of them, if there are very many
    Findings::Seconds duration{};
    std::string output = {}; // the last of what the plugin wrote, if it failed or crashed
};

struct Validation {
    std::string library; // the name of its file
    std::uint64_t seed;
    std::vector<CheckResult> results;
};

// The worst of the results.
Verdict verdictOf(const Validation& validation);

struct CheckRun {
    CheckResult result;
    bool isInterrupted = false;
};

CheckRun runCheck(const Check& check, const Subject& subject, Findings::Seconds limit);

// Why a check is left out after these results; empty: it is not.
std::string causeToSkip(const Check& check, const std::vector<CheckResult>& earlier);

} // namespace zqm::cli
