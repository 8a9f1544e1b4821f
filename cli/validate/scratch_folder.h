#pragma once

#include "cli/system/interruption.h"

#include <string>

namespace zqm::cli {

// A folder where temporary files go, for what a plugin writes. Gone afterwards, with all that is in it,
// before any signal that an Interruption knows ends the process, but for that
// of abort(), behind which nothing runs.
class ScratchFolder {
public:
    ScratchFolder(); // throws Failure
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    ~ScratchFolder();

    const std::string& path() const { return path_; }

private:
    const DelayedEnd delayedEnd_;
    std::string path_;
};

} // namespace zqm::cli
