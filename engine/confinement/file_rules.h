// Which files an engine may open by name. All others come to it open.

#pragma once

#include "engine/confinement/landlock.h"

#include <vector>

namespace zqm::engine {

// Makes the files that the programs of a user lock, where they are absent: an engine can't later.
std::vector<FileRule> fileRules();

} // namespace zqm::engine
