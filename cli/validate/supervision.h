// Work that may crash, hang or leave things running, in a process of its own.

#pragma once

#include "cli/command_line/failure.h"
#include "cli/validate/finding.h"
#include "cli/validate/findings.h"

#include <functional>
#include <optional>
#include <string>

#include <sys/types.h>

namespace zqm::cli {

struct Supervision {
    Findings::Seconds limit; // for each step of the work
    // With its output kept. Otherwise its output goes where that of this process goes, which is such a one.
    bool isSeparate;
    // Is given each finding at once.
    std::function<void(const Finding&)> found;
    // The same with the process, and with each step.
    std::function<void(pid_t)> begun = {};
    std::function<void(const std::string&)> at = {};
    // For all of the work; none: no limit.
    std::optional<Findings::Seconds> limitInAll = {};
};

struct SupervisedEnd {
    bool isInterrupted = false; // a signal came that ends this program (Interruption)
    std::string output = {};    // the last of what was written to standard output and error
};

// The program lacks what it takes to do the work, a process say: no fault of that.
class SupervisionFailure : public Failure {
public:
    using Failure::Failure;
};

// The process has a group of its own, all of which is killed when the work is done, as is what else it
// started, in whatever group (Adoption). What ended the work before it was done is the last finding. Throws
// SupervisionFailure, also that which the work came upon.
SupervisedEnd supervise(const std::function<void(Findings&)>& work, const Supervision& supervision);

} // namespace zqm::cli
