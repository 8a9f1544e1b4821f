// Processes whose parent has ended.

#pragma once

#include <cstdint>
#include <vector>

#include <sys/types.h>

namespace zqm::cli {

// From now on those that descend from this process become its children. Not on macOS, which has no such
// thing.
class Adoption {
public:
    Adoption();

    // Kills all that have become its children since then, and so all that descends from them.
    void end() const;

private:
    std::vector<pid_t> earlier_; // children that are others' business, as a shell's that became this program
};

// Those that run and that the parent of this process has adopted, which has no other child than this one.
std::int64_t orphansOfParent();

} // namespace zqm::cli
