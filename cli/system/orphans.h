// Processes whose parent has ended.

#pragma once

#include <cstdint>

namespace zqm::cli {

// From now on those that descend from this process become its children. Not on macOS, which has no such
// thing.
void adoptOrphans();

// Those that run and that the parent of this process has adopted, which has no other child than this one.
std::int64_t orphansOfParent();

// Kills all children of a process that adopts orphans, and so all that descends from it.
void endAdopted();

} // namespace zqm::cli
