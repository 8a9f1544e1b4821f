// Work that may crash, hang or leave things running, in a process of its own.

#pragma once

#include "cli/validate/finding.h"
#include "cli/validate/findings.h"

#include <functional>
#include <string>

namespace zqm::cli {

struct Supervision {
    Findings::Seconds limit; // for each step of the work
    // In a process group of its own, all of which is killed when the work is done, and with its output kept.
    // Otherwise it shares those of this process.
    bool isSeparate;
    // Is given each finding at once.
    std::function<void(const Finding&)> found;
};

struct SupervisedEnd {
    bool isInterrupted = false; // a signal came that ends this program (Interruption)
    std::string output = {};    // the last of what was written to standard output and error
};

// What ended the work before it was done is the last finding. Throws Failure when there can be no process.
SupervisedEnd supervise(const std::function<void(Findings&)>& work, const Supervision& supervision);

} // namespace zqm::cli
