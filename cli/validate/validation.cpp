#include "cli/validate/validation.h"

#include "cli/validate/supervision.h"

#include <algorithm>
#include <chrono>
#include <optional>

namespace zqm::cli {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kMostFindings = 100;
// Of steps that each take as long as they may. Good plugins need a hundredth of that.
constexpr double kMostSteps = 15;
// However little time a step gets, there are many of them.
constexpr Findings::Seconds kLeastInAll{60};

} // namespace

Verdict verdictOf(const Validation& validation) {
    Verdict worst = Verdict::Pass;
    for (const CheckResult& result : validation.results) {
        worst = std::max(worst, result.verdict);
    }
    return worst;
}

CheckRun runCheck(const Check& check, const Subject& subject, Findings::Seconds limit) {
    CheckResult result{.check = check.name, .summary = check.summary};
    std::size_t leftOut = 0;
    std::optional<Finding> last; // if it is left out
    const Clock::time_point begin = Clock::now();
    const auto keep = [&](const Finding& finding) {
        leftOut += last ? 1 : 0;
        last.reset();
        // The worst must be among them.
        if (result.findings.size() < kMostFindings || finding.verdict > result.verdict) {
            result.findings.push_back(finding);
        } else {
            last = finding;
        }
        result.verdict = std::max(result.verdict, finding.verdict);
    };
    const SupervisedEnd end = supervise([&](Findings& findings) { check.run(subject, findings); },
                                        {.limit = limit,
                                         .isSeparate = true,
                                         .found = keep,
                                         .limitInAll = std::max(limit * kMostSteps, kLeastInAll)});
    if (leftOut > 0) {
        result.findings.push_back({result.verdict, std::to_string(leftOut) + " more like these"});
    }
    if (last) {
        result.findings.push_back(*last); // it tells of the end
    }
    result.duration = Clock::now() - begin;
    if (result.verdict >= Verdict::Fail) {
        result.output = end.output;
    }
    return {std::move(result), end.isInterrupted};
}

std::string causeToSkip(const Check& check, const std::vector<CheckResult>& earlier) {
    for (const CheckResult& result : earlier) {
        // What was skipped itself because of another's failure says as little.
        if (result.check == check.needs &&
            (result.verdict >= Verdict::Fail || result.verdict == Verdict::Skip)) {
            return std::string(check.needs) + " has not passed";
        }
    }
    return {};
}

} // namespace zqm::cli
